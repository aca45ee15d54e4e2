import QtQuick 2.15
import QtQuick.Templates 2.15 as T

/// What the keys were pressed for; the frame marks the one that they go to.
T.AbstractButton {
    id: root

    property bool chosen: false // a button that is "checked" would turn that off when it is tapped
    property string label
    property string value

    implicitHeight: Math.max(Theme.touch, caption.height + entry.height + Theme.gap)
    focusPolicy: Qt.NoFocus
    Accessible.name: root.label
    background: Rectangle {
        radius: Theme.radius
        color: Theme.surface
        border.width: root.chosen ? Theme.thickLine : Theme.thinLine
        border.color: root.chosen ? Theme.accent : Theme.line
    }
    contentItem: Item {
        PlainText {
            id: caption

            x: 2 * Theme.gap
            y: Theme.gap / 2
            width: parent.width - 2 * x
            text: root.label
            font.pixelSize: Theme.smallText
            color: Theme.mutedText
        }
        PlainText {
            id: entry

            objectName: root.objectName + "Text"
            x: 2 * Theme.gap
            anchors.top: caption.bottom
            width: parent.width - 2 * x
            text: root.value
            font.pixelSize: Theme.largeText
            font.weight: Font.Bold
        }
    }
}
