import QtQuick 2.15
import QtQuick.Templates 2.15 as T

/// Something to turn on and off, with what it does. The whole line takes taps.
T.Switch {
    id: root

    property string hint

    implicitHeight: Math.max(Theme.touch, texts.implicitHeight + 2 * Theme.gap)
    focusPolicy: Qt.NoFocus
    Accessible.name: root.text

    indicator: Rectangle {
        x: root.width - width - Theme.gap
        anchors.verticalCenter: parent.verticalCenter
        width: 60
        height: 32
        radius: height / 2
        color: root.checked ? Theme.accent : Theme.raised
        border.width: root.checked ? 0 : 2
        border.color: Theme.mutedText
        Rectangle {
            x: 4 + root.visualPosition * (parent.width - width - 8)
            anchors.verticalCenter: parent.verticalCenter
            width: 24
            height: 24
            radius: height / 2
            color: root.checked ? Theme.accentInk : Theme.mutedText
        }
    }
    contentItem: Item {
        Column {
            id: texts

            anchors.left: parent.left
            anchors.right: parent.right
            anchors.rightMargin: root.indicator.width + 3 * Theme.gap
            anchors.verticalCenter: parent.verticalCenter
            spacing: 2
            PlainText {
                width: parent.width
                text: root.text
                wrapMode: Text.Wrap
                font.weight: Font.DemiBold
            }
            PlainText {
                width: parent.width
                visible: text !== ""
                text: root.hint
                wrapMode: Text.Wrap
                font.pixelSize: Theme.smallText
                color: Theme.mutedText
            }
        }
    }
}
