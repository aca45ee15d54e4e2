import QtQuick 2.15
import Rivo.GuiCore 1.0

// The rows in a grid of four columns.
GridView {
    id: view

    required property ListModel rows
    required property var roles
    readonly property int announcedCount: rows.count

    width: 100
    height: 600
    cellWidth: 25
    cellHeight: 25
    model: rows
    delegate: RowView {
        width: view.cellWidth
        height: view.cellHeight
        roles: view.roles
    }
}
