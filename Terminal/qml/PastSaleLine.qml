import QtQuick 2.15
import QtQuick.Templates 2.15 as T

/// One sale in the list of past sales.
T.AbstractButton {
    id: root

    property bool chosen: false // a button that is "checked" would turn that off when it is tapped
    required property int index
    required property string time
    required property string numbers
    required property string paid
    required property bool isCash
    required property string reversal

    objectName: "pastSale"
    height: 60
    focusPolicy: Qt.NoFocus
    Accessible.name: root.numbers
    background: Rectangle {
        color: root.chosen ? Theme.tile : "transparent"
        Rectangle {
            width: 4
            height: parent.height
            visible: root.chosen
            color: Theme.accent
        }
        Rectangle {
            anchors.bottom: parent.bottom
            width: parent.width
            height: 1
            color: Theme.line
        }
    }
    contentItem: Item {
        PlainText {
            id: timeText

            objectName: "pastSaleTime"
            x: 2 * Theme.gap
            anchors.verticalCenter: parent.verticalCenter
            text: root.time
        }
        Icon {
            id: icon

            anchors.left: timeText.right
            anchors.leftMargin: Theme.gap
            anchors.verticalCenter: parent.verticalCenter
            source: root.isCash ? "qrc:/icons/cash.svg" : "qrc:/icons/paycard.svg"
        }
        Column {
            anchors.left: icon.right
            anchors.leftMargin: Theme.gap
            anchors.right: paidText.left
            anchors.rightMargin: Theme.gap
            anchors.verticalCenter: parent.verticalCenter
            PlainText {
                objectName: "pastSaleNumbers"
                width: parent.width
                text: root.numbers
                font.pixelSize: Theme.smallText
            }
            PlainText {
                objectName: "pastSaleState"
                width: parent.width
                visible: text !== ""
                text: root.reversal
                font.pixelSize: Theme.smallText
                font.weight: Font.DemiBold
                color: root.chosen ? Theme.text : Theme.warning
            }
        }
        PlainText {
            id: paidText

            objectName: "pastSalePaid"
            anchors.right: parent.right
            anchors.rightMargin: 2 * Theme.gap
            anchors.verticalCenter: parent.verticalCenter
            text: root.paid
            font.weight: Font.Bold
        }
    }
}
