import QtQuick 2.15
import Rivo.GuiCore 1.0

// A list of the rows.
ListView {
    id: view

    required property ListModel rows
    required property var roles
    readonly property int announcedCount: rows.count

    width: 100
    height: 600
    model: rows
    delegate: RowView {
        width: view.width
        height: 10
        roles: view.roles
    }
}
