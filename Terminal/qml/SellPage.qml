import QtQuick 2.15
import Rivo.GuiCore 1.0
import Rivo.Terminal 1.0

/// The selection grid, and the basket beside it.
Item {
    id: root

    required property PassengerTypesModel tiles
    required property ShoppingBasketModel tickets
    required property SalesDesk desk
    required property OfferDesk offers
    required property Presentation presentation

    /// The tile that was tapped last; -1 for none.
    property int selectedTile: -1

    function select(tile) {
        if (tile === root.selectedTile)
            return
        if (root.selectedTile >= 0)
            root.tiles.setSelected(root.selectedTile, false)
        root.selectedTile = tile
        if (tile >= 0)
            root.tiles.setSelected(tile, true)
    }

    Connections {
        target: root.tickets
        function onCountChanged() {
            if (root.tickets.count === 0)
                root.select(-1)
        }
    }

    Connections {
        target: root.tiles
        function onCountChanged() {
            if (root.tiles.count === 0) // laid out anew: no tile is selected
                root.selectedTile = -1
        }
    }

    // Scrolls sideways if tiles would become too narrow to read.
    Flickable {
        id: sideways

        anchors.left: parent.left
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        anchors.right: basket.left
        anchors.margins: Theme.gap
        clip: true
        contentWidth: grid.width
        flickableDirection: Flickable.HorizontalFlick
        boundsBehavior: Flickable.StopAtBounds
        interactive: contentWidth > width

        GridView {
            id: grid

            readonly property int columns: Math.max(1, root.tiles.numberOfColumns)
            readonly property int rows: Math.max(1, root.tiles.numberOfRows)

            objectName: "grid"
            width: Math.max(sideways.width, columns * 104)
            height: sideways.height
            model: root.tiles
            cellWidth: Math.floor(width / columns)
            cellHeight: Math.min(132, Math.max(cellWidth < 170 ? 132 : 104,
                                               Math.floor(height / rows)))
            boundsBehavior: Flickable.StopAtBounds
            cacheBuffer: cellHeight * 2
            delegate: Tile {
                presentation: root.presentation
                width: grid.cellWidth
                height: grid.cellHeight
                onClicked: {
                    if (root.desk.add(index))
                        root.select(index)
                }
            }
        }
    }
    PlainText {
        objectName: "emptyGridText"
        anchors.centerIn: sideways
        width: Math.min(implicitWidth, sideways.width)
        visible: grid.count === 0
        text: root.offers.objection === "" ? qsTr("This feed has nothing to sell.")
                                           : root.offers.objection
        wrapMode: Text.Wrap
        font.pixelSize: Theme.largeText
        color: Theme.mutedText
    }
    BasketPanel {
        id: basket

        anchors.right: parent.right
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        width: Math.max(250, Math.min(340, parent.width * 0.3))
        desk: root.desk
        tickets: root.tickets
        presentation: root.presentation
    }
}
