import QtQuick 2.15
import QtQuick.Templates 2.15 as T

/// One of several in a list, as a button with a title and a detail.
T.AbstractButton {
    id: root

    property string title
    property string detail
    property bool chosen: false
    property bool muted: false
    readonly property color ink: root.chosen ? Theme.accentInk
                               : root.muted ? Theme.mutedText : Theme.text

    implicitHeight: Math.max(Theme.touch, texts.height + Theme.gap)
    focusPolicy: Qt.NoFocus
    Accessible.name: root.detail === "" ? root.title : root.title + ", " + root.detail
    background: Rectangle {
        radius: Theme.radius
        color: root.chosen ? Theme.accent : root.down ? Qt.darker(Theme.raised, 1.2) : Theme.raised
    }
    contentItem: Item {
        Column {
            id: texts

            x: Theme.gap
            width: parent.width - 2 * Theme.gap
            anchors.verticalCenter: parent.verticalCenter
            PlainText {
                objectName: "choiceTitle"
                width: parent.width
                text: root.title
                wrapMode: Text.Wrap
                maximumLineCount: 3
                font.weight: Font.DemiBold
                color: root.ink
            }
            PlainText {
                objectName: "choiceDetail"
                width: parent.width
                visible: root.detail !== ""
                text: root.detail
                wrapMode: Text.Wrap
                maximumLineCount: 3
                font.pixelSize: Theme.smallText
                color: root.ink
            }
        }
    }
}
