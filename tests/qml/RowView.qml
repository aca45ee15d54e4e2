import QtQuick 2.15

// A delegate that shows all roles of its row.
Item {
    id: tile

    required property int index
    required property var model
    property var roles: []
    readonly property var shown: valuesOf(model)

    function valuesOf(row) {
        return Array.prototype.map.call(roles, role => row[role]);
    }

    Rectangle {
        anchors.fill: parent
        color: tile.index % 2 === 0 ? "black" : "white"
    }
}
