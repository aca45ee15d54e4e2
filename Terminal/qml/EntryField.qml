import QtQuick 2.15
import QtQuick.Templates 2.15 as T

/// What the keys were pressed for; the frame marks the one that they go to.
T.AbstractButton {
    id: root

    property bool chosen: false // a button that is "checked" would turn that off when it is tapped
    property string label
    property string value

    implicitHeight: 64
    focusPolicy: Qt.NoFocus
    Accessible.name: root.label
    background: Rectangle {
        radius: Theme.radius
        color: Theme.surface
        border.width: root.chosen ? 3 : 1
        border.color: root.chosen ? Theme.accent : Theme.line
    }
    contentItem: Item {
        PlainText {
            x: Theme.gap + 4
            y: 6
            width: parent.width - 2 * x
            text: root.label
            font.pixelSize: Theme.smallText
            color: Theme.mutedText
        }
        PlainText {
            objectName: root.objectName + "Text"
            x: Theme.gap + 4
            anchors.bottom: parent.bottom
            anchors.bottomMargin: 6
            width: parent.width - 2 * x
            text: root.value
            font.pixelSize: Theme.largeText
            font.weight: Font.Bold
        }
    }
}
