import QtQuick 2.15
import QtQuick.Window 2.15

/// A window of Qt Quick alone, to measure beside the terminal: 2,000 plain tiles with a text, and a
/// text that counts taps.
Window {
    id: root

    property int taps: 0

    visible: true

    GridView {
        id: grid

        objectName: "grid"
        width: root.width * 2 / 3
        height: root.height
        model: 2000
        cellWidth: width / 4
        cellHeight: height / 4
        delegate: Rectangle {
            id: tile

            required property int index

            width: grid.cellWidth - 6
            height: grid.cellHeight - 6
            color: "#cfe3f3"
            Text {
                anchors.centerIn: parent
                text: "Tile " + tile.index
            }
            MouseArea {
                anchors.fill: parent
                onPressed: root.taps += 1
            }
        }
    }
    Text {
        x: grid.width
        y: root.height / 2
        text: root.taps
    }
}
