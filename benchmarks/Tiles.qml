import QtQuick 2.15

GridView {
    id: view

    width: 600
    height: 480
    cellWidth: width / 4
    cellHeight: height / 6
    delegate: Rectangle {
        id: tile

        required property string fareProductName
        required property double price
        required property int totalInBasket
        required property bool hasExpired
        required property bool selected

        width: view.cellWidth
        height: view.cellHeight
        color: selected ? "orange" : hasExpired ? "silver" : "white"

        Text {
            textFormat: Text.PlainText
            text: tile.fareProductName + " " + Number(tile.price).toFixed(2) + " " + tile.totalInBasket
        }
    }
}
