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

    implicitHeight: Math.max(Theme.touch, name.height, side.height) + 2 * Theme.gap
    focusPolicy: Qt.NoFocus
    Accessible.name: root.description

    background: Rectangle {
        color: root.chosen ? Theme.raised : root.down ? Theme.raised : Theme.surface
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
        Icon {
            id: icon

            x: 2 * Theme.gap
            anchors.verticalCenter: parent.verticalCenter
            size: Theme.largeIcon
            source: root.picture
        }
        PlainText {
            id: name

            anchors.left: icon.right
            anchors.leftMargin: Theme.gap
            anchors.right: side.left
            anchors.rightMargin: Theme.gap
            anchors.verticalCenter: parent.verticalCenter
            text: root.description
            wrapMode: Text.Wrap
            maximumLineCount: 4
            font.pixelSize: Theme.mediumText
            font.weight: Font.DemiBold
        }
        Column {
            id: side

            anchors.right: parent.right
            anchors.rightMargin: 2 * Theme.gap
            anchors.verticalCenter: parent.verticalCenter
            spacing: Theme.mm(0.4)
            PlainText {
                objectName: "priceText"
                anchors.right: parent.right
                text: root.presentation.priceText(root.price)
                font.pixelSize: Theme.normalText
                font.weight: Font.Bold
            }
            Row {
                anchors.right: parent.right
                height: Theme.icon
                spacing: Theme.gap
                PlainText {
                    anchors.verticalCenter: parent.verticalCenter
                    visible: text !== ""
                    text: root.discountText
                    font.pixelSize: Theme.smallText
                }
                Icon {
                    anchors.verticalCenter: parent.verticalCenter
                    visible: root.freeReturn
                    size: Theme.smallIcon
                    source: "qrc:/icons/return.svg"
                }
                Icon {
                    anchors.verticalCenter: parent.verticalCenter
                    visible: root.paperTicket
                    size: Theme.smallIcon
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
