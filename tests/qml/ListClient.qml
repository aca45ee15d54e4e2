import QtQuick 2.15
import Rivo.GuiCore 1.0

// A list in which every delegate shows all roles of its row.
ListView {
    id: view

    required property ListModel rows
    required property var roles
    readonly property int announcedCount: rows.count

    function valuesOf(row) {
        return Array.prototype.map.call(roles, role => row[role]);
    }

    width: 100
    height: 600
    model: rows
    delegate: Item {
        id: row

        required property int index
        required property var model
        readonly property var shown: view.valuesOf(model)

        width: view.width
        height: 10

        Rectangle {
            anchors.fill: parent
            color: row.index % 2 === 0 ? "black" : "white"
        }
    }
}
