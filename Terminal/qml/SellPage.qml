import QtQuick 2.15
import Rivo.GuiCore 1.0
import Rivo.Terminal 1.0

/// The selection grid, and the basket beside it.
Item {
    id: root

    required property Terminal terminal

    GridView {
        id: grid

        readonly property int columns: Math.max(1, root.terminal.grid.numberOfColumns)
        readonly property int rows: Math.max(1, root.terminal.grid.numberOfRows)

        objectName: "grid"
        anchors.left: parent.left
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        anchors.right: basket.left
        anchors.margins: Theme.gap
        clip: true
        model: root.terminal.grid
        cellWidth: Math.floor(width / columns)
        cellHeight: Math.min(132, Math.max(cellWidth < 170 ? 118 : 104, Math.floor(height / rows)))
        boundsBehavior: Flickable.StopAtBounds
        cacheBuffer: cellHeight * 2
        delegate: Tile {
            terminal: root.terminal
            width: grid.cellWidth
            height: grid.cellHeight
            onClicked: {
                if (root.terminal.desk.add(index))
                    root.terminal.grid.setSelected(index, true)
            }
        }
        PlainText {
            objectName: "emptyGridText"
            anchors.centerIn: parent
            visible: grid.count === 0
            text: qsTr("This feed has nothing to sell.")
            font.pixelSize: Theme.largeText
            color: Theme.mutedText
        }
    }
    BasketPanel {
        id: basket

        anchors.right: parent.right
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        width: Math.max(250, Math.min(340, parent.width * 0.3))
        terminal: root.terminal
    }
}
