import QtQuick 2.15

/// One of a device's four flags. Colour, symbol and word show it; while it is off it is an
/// empty frame.
Rectangle {
    id: root

    property bool on: false
    property url iconSource
    property string text
    property color face
    property color ink

    implicitWidth: row.implicitWidth + 16
    height: 30
    radius: height / 2
    color: root.on ? root.face : "transparent"
    border.width: 1
    border.color: root.on ? root.face : Theme.line
    Accessible.role: Accessible["Indicator"]
    Accessible.name: root.text
    Accessible.checked: root.on

    Row {
        id: row

        anchors.centerIn: parent
        spacing: 4
        Icon {
            anchors.verticalCenter: parent.verticalCenter
            size: 18
            source: root.iconSource
            ink: root.on ? root.ink : Theme.inertInk
        }
        PlainText {
            anchors.verticalCenter: parent.verticalCenter
            text: root.text
            font.pixelSize: Theme.smallText
            font.weight: root.on ? Font.DemiBold : Font.Normal
            color: root.on ? root.ink : Theme.inertInk
        }
    }
}
