import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import Rivo.Terminal 1.0

/// One fare product of the catalogue.
T.AbstractButton {
    id: root

    required property Presentation presentation
    required property int index
    required property int fareProductId
    required property string description
    required property string productFairIcon
    required property double price
    required property double discount
    required property bool freeReturn
    required property bool paperTicket
    required property int totalInBasket
    property bool chosen: false

    readonly property url picture: presentation.icon(productFairIcon, "qrc:/icons/products.svg")
    readonly property string discountText: discount === 0 ? ""
        : (discount > 0 ? "−" : "+")
          + Math.abs(discount).toLocaleString(Qt.locale(), "f", -128) + "%"

    implicitHeight: 76
    focusPolicy: Qt.NoFocus
    Accessible.name: root.description

    background: Rectangle {
        color: root.chosen ? Theme.raised : root.down ? Theme.raised : Theme.surface
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
        Icon {
            id: icon

            x: 2 * Theme.gap
            anchors.verticalCenter: parent.verticalCenter
            size: 32
            source: root.picture
        }
        PlainText {
            anchors.left: icon.right
            anchors.leftMargin: Theme.gap + 4
            anchors.right: side.left
            anchors.rightMargin: Theme.gap
            anchors.verticalCenter: parent.verticalCenter
            text: root.description
            wrapMode: Text.Wrap
            maximumLineCount: 2
            font.weight: Font.DemiBold
        }
        Column {
            id: side

            anchors.right: parent.right
            anchors.rightMargin: 2 * Theme.gap
            anchors.verticalCenter: parent.verticalCenter
            spacing: 4
            PlainText {
                objectName: "priceText"
                anchors.right: parent.right
                text: root.presentation.priceText(root.price)
                font.pixelSize: Theme.largeText
                font.weight: Font.Bold
            }
            Row {
                anchors.right: parent.right
                height: 24
                spacing: 6
                PlainText {
                    anchors.verticalCenter: parent.verticalCenter
                    visible: text !== ""
                    text: root.discountText
                    font.pixelSize: Theme.smallText
                }
                Icon {
                    anchors.verticalCenter: parent.verticalCenter
                    visible: root.freeReturn
                    size: 20
                    source: "qrc:/icons/return.svg"
                }
                Icon {
                    anchors.verticalCenter: parent.verticalCenter
                    visible: root.paperTicket
                    size: 20
                    source: "qrc:/icons/printer.svg"
                }
                Badge {
                    objectName: "badge"
                    count: root.totalInBasket
                }
            }
        }
    }
}
