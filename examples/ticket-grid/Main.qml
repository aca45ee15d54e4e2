import QtQuick 2.15
import QtQuick.Window 2.15
import Rivo.GuiCore 1.0

Window {
    id: window

    required property PassengerTypesModel grid
    required property ShoppingBasketModel basket
    required property QtObject sale

    width: 800
    height: 480
    visible: true
    title: qsTr("Tickets")

    GridView {
        id: tiles

        anchors { left: parent.left; right: lines.left; top: parent.top; bottom: parent.bottom }
        model: window.grid
        cellWidth: width / Math.max(1, window.grid.numberOfColumns)
        cellHeight: 96
        delegate: Rectangle {
            id: tile

            required property int index
            required property string description
            required property string fareProductName
            required property real price
            required property bool hasExpired

            width: tiles.cellWidth - 4
            height: tiles.cellHeight - 4
            visible: !hasExpired // a placeholder, or a fare that is over
            color: touch.pressed ? "#9cc3e6" : "#d6e6f4"

            Text {
                anchors.centerIn: parent
                horizontalAlignment: Text.AlignHCenter
                font.pixelSize: 20
                textFormat: Text.PlainText
                text: tile.description + "\n" + tile.fareProductName + "  " + tile.price.toFixed(2)
            }
            MouseArea {
                id: touch

                anchors.fill: parent
                onClicked: window.sale.add(tile.index)
            }
        }
    }
    ListView {
        id: lines

        anchors { right: parent.right; top: parent.top; bottom: parent.bottom; margins: 12 }
        width: 240
        model: window.basket
        delegate: Text {
            required property string description
            required property string fareProductName
            required property real price

            font.pixelSize: 18
            textFormat: Text.PlainText
            text: fareProductName + " (" + description + ")  " + price.toFixed(2)
        }
    }
}
