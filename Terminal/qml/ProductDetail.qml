import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import Rivo.Terminal 1.0

/// All that is known of one fare product, with who may buy it and how.
Flickable {
    id: root

    required property ProductRow product
    required property CatalogueDesk catalogue
    required property Presentation presentation

    clip: true
    contentHeight: content.height + 4 * Theme.gap
    boundsBehavior: Flickable.StopAtBounds
    T.ScrollBar.vertical: ScrollMark {}

    Column {
        id: content

        x: 2 * Theme.gap
        y: 2 * Theme.gap
        width: root.width - 4 * Theme.gap
        spacing: 2 * Theme.gap
        PlainText {
            objectName: "detailTitle"
            width: parent.width
            text: root.product.description
            wrapMode: Text.Wrap
            font.pixelSize: Theme.normalText
            font.weight: Font.DemiBold
        }
        Fact {
            width: parent.width
            label: qsTr("Passengers")
            value: root.catalogue.passengerTypes(root.product.index).join(", ")
        }
        Rectangle {
            width: parent.width
            height: Theme.thinLine
            color: Theme.line
        }
        Grid {
            id: facts

            readonly property real cellWidth: (width - columnSpacing) / columns

            width: parent.width
            columns: Math.max(2, Math.floor(width / Theme.mm(34)))
            columnSpacing: 2 * Theme.gap
            rowSpacing: 1.5 * Theme.gap
            Fact {
                width: facts.cellWidth
                label: qsTr("Price")
                value: root.presentation.priceText(root.product.price)
            }
            Fact {
                width: facts.cellWidth
                label: qsTr("Discount")
                value: root.product.discountText
            }
            Fact {
                width: facts.cellWidth
                label: qsTr("Way back")
                value: root.product.freeReturn ? qsTr("included") : qsTr("not included")
            }
            Fact {
                width: facts.cellWidth
                label: qsTr("Paper ticket")
                value: root.product.paperTicket ? qsTr("yes") : qsTr("no")
            }
            Fact {
                width: facts.cellWidth
                label: qsTr("Means of payment")
                value: root.catalogue.paymentMethods(root.product.index).join(", ")
            }
            Fact {
                width: facts.cellWidth
                label: qsTr("Sales channels")
                value: root.catalogue.paymentChannels(root.product.index).join(", ")
            }
            Fact {
                width: facts.cellWidth
                label: qsTr("Ticket materials")
                value: root.catalogue.ticketMaterials(root.product.index).join(", ")
            }
            Fact {
                width: facts.cellWidth
                label: qsTr("Product number")
                value: root.product.fareProductId
            }
            Fact {
                width: facts.cellWidth
                label: qsTr("In the basket")
                value: root.product.totalInBasket
            }
        }
    }
}
