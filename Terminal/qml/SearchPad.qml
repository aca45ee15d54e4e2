import QtQuick 2.15
import Rivo.Terminal 1.0

/// The letters that lead to tiles, and one to erase the last.
Rectangle {
    id: root

    required property TileDesk tiles
    readonly property int columns: Math.max(1, Math.floor((width - Theme.gap)
                                                          / (Theme.touch + Theme.gap)))
    /// Rows for the first letter; there are never more later.
    property int rows: 1

    function countRows() {
        if (root.tiles.searching && root.tiles.search === "")
            root.rows = Math.min(3, Math.ceil((root.tiles["letters"]["length"] + 1) / root.columns))
    }

    implicitHeight: root.rows * (Theme.touch + Theme.gap) + Theme.gap
    color: Theme.surface
    onVisibleChanged: countRows()
    onColumnsChanged: countRows()

    Flickable {
        anchors.fill: parent
        anchors.margins: Theme.gap
        clip: true
        contentHeight: keys.height
        boundsBehavior: Flickable.StopAtBounds
        Flow {
            id: keys

            width: parent.width
            spacing: Theme.gap
            PanelButton {
                objectName: "eraseLetter"
                width: Theme.touch
                enabled: root.tiles.search !== ""
                iconSource: "qrc:/icons/back.svg"
                Accessible.name: qsTr("Erase the last letter")
                onClicked: root.tiles.search = root.tiles.search["slice"](0, -1)
            }
            Repeater {
                model: root.tiles.letters
                PanelButton {
                    required property string modelData

                    objectName: "letter-" + modelData
                    width: Theme.touch
                    text: modelData
                    onClicked: root.tiles.search += modelData
                }
            }
        }
    }
}
