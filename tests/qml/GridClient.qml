import QtQuick 2.15
import Rivo.GuiCore 1.0

// A grid of four columns in which every delegate shows all roles of its row.
GridView {
    id: view

    required property ListModel rows
    required property var roles
    readonly property int announcedCount: rows.count

    function valuesOf(row) {
        return Array.prototype.map.call(roles, role => row[role]);
    }

    width: 100
    height: 600
    cellWidth: 25
    cellHeight: 25
    model: rows
    delegate: Item {
        id: tile

        required property int index
        required property var model
        readonly property var shown: view.valuesOf(model)

        width: view.cellWidth
        height: view.cellHeight

        Rectangle {
            anchors.fill: parent
            color: tile.index % 2 === 0 ? "black" : "white"
        }
    }
}
