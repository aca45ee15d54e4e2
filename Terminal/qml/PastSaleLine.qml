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
    height: Math.max(Theme.touch, first.height + second.height + 1.5 * Theme.gap)
    focusPolicy: Qt.NoFocus
    Accessible.name: root.numbers
    background: Rectangle {
        color: root.chosen ? Theme.tile : "transparent"
        Rectangle {
            width: Theme.thickLine
            height: parent.height
            visible: root.chosen
            color: Theme.accent
        }
        Rectangle {
            anchors.bottom: parent.bottom
            width: parent.width
            height: Theme.thinLine
            color: Theme.line
        }
    }
    contentItem: Item {
        Item {
            id: first

            x: 2 * Theme.gap
            y: 0.75 * Theme.gap
            width: parent.width - 2 * x
            height: paidText.height
            PlainText {
                id: timeText

                objectName: "pastSaleTime"
                height: parent.height
                text: root.time
                font.pixelSize: Theme.mediumText
            }
            Icon {
                anchors.left: timeText.right
                anchors.leftMargin: Theme.gap
                anchors.verticalCenter: parent.verticalCenter
                source: root.isCash ? "qrc:/icons/cash.svg" : "qrc:/icons/paycard.svg"
            }
            PlainText {
                id: paidText

                objectName: "pastSalePaid"
                anchors.right: parent.right
                text: root.paid
                font.weight: Font.Bold
            }
        }
        Item {
            id: second

            anchors.top: first.bottom
            x: 2 * Theme.gap
            width: parent.width - 2 * x
            height: numbersText.height + (stateText.visible ? stateText.height : 0)
            PlainText {
                id: numbersText

                objectName: "pastSaleNumbers"
                width: parent.width
                text: root.numbers
                font.pixelSize: Theme.smallText
            }
            PlainText {
                id: stateText

                objectName: "pastSaleState"
                anchors.top: numbersText.bottom
                width: parent.width
                visible: text !== ""
                text: root.reversal
                font.pixelSize: Theme.smallText
                font.weight: Font.DemiBold
                color: root.chosen ? Theme.text : Theme.warning
            }
        }
    }
}
