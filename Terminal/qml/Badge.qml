import QtQuick 2.15

/// A count in a round; hidden while it is 0.
Rectangle {
    id: root

    property int count: 0
    property color textColor: Theme.accentInk

    visible: count > 0
    width: Math.max(height, label.implicitWidth + Theme.gap)
    height: Math.ceil(1.3 * Theme.smallText)
    radius: height / 2
    color: Theme.accent
    PlainText {
        id: label

        anchors.centerIn: parent
        elide: Text.ElideNone
        text: root.count
        font.pixelSize: Theme.smallText
        font.weight: Font.Bold
        color: root.textColor
    }
}
