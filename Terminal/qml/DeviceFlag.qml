import QtQuick 2.15

/// One of a device's four flags, shown by colour, symbol and word while it is on.
Rectangle {
    id: root

    property bool on: false
    property url iconSource
    property string text
    property color face
    property color ink

    visible: root.on
    implicitWidth: row.implicitWidth + 2 * Theme.gap
    height: Math.ceil(1.6 * Theme.smallText)
    radius: height / 2
    color: root.face
    Accessible.role: Accessible["Indicator"]
    Accessible.name: root.text
    Accessible.checked: root.on

    Row {
        id: row

        anchors.centerIn: parent
        spacing: Theme.mm(0.6)
        Icon {
            anchors.verticalCenter: parent.verticalCenter
            size: Theme.smallIcon
            source: root.iconSource
            ink: root.ink
        }
        PlainText {
            anchors.verticalCenter: parent.verticalCenter
            text: root.text
            font.pixelSize: Theme.smallText
            font.weight: Font.DemiBold
            color: root.ink
        }
    }
}
