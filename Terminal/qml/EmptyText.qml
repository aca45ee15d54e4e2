import QtQuick 2.15

/// Says in the middle of a page or list that there is nothing to show, and why.
PlainText {
    anchors.centerIn: parent
    width: parent.width - 4 * Theme.gap
    horizontalAlignment: Text.AlignHCenter
    wrapMode: Text.Wrap
    color: Theme.mutedText
}
