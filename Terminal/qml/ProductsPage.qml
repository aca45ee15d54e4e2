import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import Rivo.GuiCore 1.0
import Rivo.Terminal 1.0

/// The fare catalogue, and beside it the product that was tapped.
Item {
    id: root

    required property FareProductsModel fareProducts
    required property CatalogueDesk catalogue
    required property Presentation presentation

    ListView {
        id: products

        objectName: "productLines"
        anchors.left: parent.left
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        width: Math.floor(parent.width * 0.57)
        clip: true
        model: root.fareProducts
        boundsBehavior: Flickable.StopAtBounds
        T.ScrollBar.vertical: ScrollMark {}
        delegate: ProductRow {
            presentation: root.presentation
            width: products.width
            chosen: products.currentIndex === index
            onClicked: products.currentIndex = index
        }
    }
    Rectangle {
        anchors.left: products.right
        anchors.right: parent.right
        height: parent.height
        visible: products.count > 0
        color: Theme.surface
        Rectangle {
            width: Theme.thinLine
            height: parent.height
            color: Theme.line
        }
        Loader {
            anchors.fill: parent
            active: products.currentItem !== null
            sourceComponent: ProductDetail {
                objectName: "productDetail"
                product: products.currentItem
                catalogue: root.catalogue
                presentation: root.presentation
            }
        }
    }
    EmptyText {
        objectName: "emptyCatalogueText"
        visible: products.count === 0
        text: qsTr("This feed has no fare catalogue.")
        font.pixelSize: Theme.largeText
    }
}
