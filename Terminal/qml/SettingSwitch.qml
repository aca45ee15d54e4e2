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
        width: Theme.mm(11)
        height: Theme.mm(6)
        radius: height / 2
        color: root.checked ? Theme.accent : Theme.raised
        border.width: root.checked ? 0 : Theme.thinLine
        border.color: Theme.mutedText
        Rectangle {
            x: Theme.mm(0.7) + root.visualPosition * (parent.width - width - 2 * Theme.mm(0.7))
            anchors.verticalCenter: parent.verticalCenter
            width: parent.height - 2 * Theme.mm(0.7)
            height: width
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
            spacing: 0
            PlainText {
                width: parent.width
                text: root.text
                wrapMode: Text.Wrap
                font.pixelSize: Theme.mediumText
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
