import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import Rivo.GuiCore 1.0
import Rivo.Terminal 1.0

/// The tiles, a choice of them, and the basket beside them.
Item {
    id: root

    required property PassengerTypesModel grid ///< all tiles
    required property TileDesk tiles ///< those on the screen
    required property ShoppingBasketModel tickets
    required property SalesDesk desk
    required property OfferDesk offers
    required property Presentation presentation

    /// Row of the grid whose tile was tapped last; -1 for none.
    property int selectedTile: -1
    readonly property bool isNotSoldShown: tiles.kind === TileDesk.NotSold && !tiles.searching

    function select(tile) {
        if (tile === root.selectedTile)
            return
        if (root.selectedTile >= 0)
            root.grid.setSelected(root.selectedTile, false)
        root.selectedTile = tile
        if (tile >= 0)
            root.grid.setSelected(tile, true)
    }

    Component.onCompleted: tiles.showFirstTab(view.columns * Math.floor(view.height
                                                                        / view.cellHeight))

    Connections {
        target: root.tickets
        function onCountChanged() {
            if (root.tickets.count === 0)
                root.select(-1)
        }
    }

    Connections {
        target: root.grid
        function onCountChanged() {
            if (root.grid.count === 0) // laid out anew: no tile is selected
                root.selectedTile = -1
        }
    }

    TabStrip {
        id: strip

        anchors.left: parent.left
        anchors.top: parent.top
        anchors.right: basket.left
        anchors.margins: Theme.gap
        tiles: root.tiles
    }
    Item {
        id: room

        anchors.left: parent.left
        anchors.leftMargin: Theme.gap
        anchors.top: strip.bottom
        anchors.topMargin: Theme.gap
        anchors.bottom: pad.visible ? pad.top : parent.bottom
        anchors.right: basket.left
        anchors.rightMargin: Theme.gap

        TileMeasure {
            id: tileMeasure

            width: view.cellWidth
        }
        GridView {
            id: view

            readonly property int leastWidth: Math.round(Theme.smallText * 7.4)
            readonly property int gridColumns: Math.max(1, root.grid.numberOfColumns)
            readonly property bool isGridWide: gridColumns * leastWidth <= width
            readonly property int columns: root.tiles.kind === TileDesk.All && isGridWide
                                           && !root.tiles.searching
                                           ? gridColumns
                                           : Math.max(1, Math.floor(width / leastWidth))

            objectName: "grid"
            anchors.fill: parent
            visible: !root.isNotSoldShown
            clip: true
            model: root.tiles.filled ? root.tiles : null
            cellWidth: Math.floor((width - mark.width) / columns)
            cellHeight: tileMeasure.height
            boundsBehavior: Flickable.StopAtBounds
            cacheBuffer: cellHeight * 2
            delegate: Tile {
                presentation: root.presentation
                names: root.tiles
                measure: tileMeasure
                width: view.cellWidth
                height: view.cellHeight
                onClicked: {
                    if (root.desk.add(tile))
                        root.select(tile)
                }
                onPressAndHold: quantity.askForTile(this)
            }
            T.ScrollBar.vertical: ScrollMark {
                id: mark
            }

            Binding {
                target: root.tiles
                property: "keepsLayout"
                value: view.isGridWide
            }
        }
        NotSoldList {
            objectName: "notSoldList"
            anchors.fill: parent
            visible: root.isNotSoldShown
            products: root.offers.notSold
            onRefused: reason => root.desk.refused(reason)
        }
        PlainText {
            objectName: "emptyGridText"
            anchors.centerIn: parent
            width: Math.min(implicitWidth, parent.width)
            visible: view.count === 0 && !root.isNotSoldShown
            text: root.tiles.searching ? qsTr("No ticket has such a word.")
                : root.offers.objection !== "" ? root.offers.objection
                : qsTr("This feed has nothing to sell.")
            wrapMode: Text.Wrap
            font.pixelSize: Theme.largeText
            color: Theme.mutedText
        }
    }
    SearchPad {
        id: pad

        objectName: "searchPad"
        anchors.left: parent.left
        anchors.right: basket.left
        anchors.bottom: parent.bottom
        visible: root.tiles.searching
        tiles: root.tiles
    }
    BasketPanel {
        id: basket

        anchors.right: parent.right
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        width: Math.max(Theme.touch * 4.5, Math.min(Theme.touch * 6.5, parent.width * 0.32))
        desk: root.desk
        tickets: root.tickets
        presentation: root.presentation
        onMoreRequested: line => quantity.askForLine(line)
    }
    QuantityPad {
        id: quantity

        property int tile: -1
        property int line: -1

        function askForTile(tile) {
            quantity.tile = tile.tile
            quantity.line = -1
            quantity.askFor(tile)
        }

        function askForLine(line) {
            quantity.tile = -1
            quantity.line = line.index
            quantity.askFor(line)
        }

        objectName: "quantityPad"
        presentation: root.presentation
        onChosen: count => {
            if (quantity.line >= 0)
                root.desk.addLike(quantity.line, count)
            else if (root.desk.addSeveral(quantity.tile, count))
                root.select(quantity.tile)
        }
    }
}
