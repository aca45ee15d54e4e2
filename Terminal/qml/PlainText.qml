import QtQuick 2.15

/// The only way that texts come onto the screen: what a feed says is never markup.
Text {
    textFormat: Text.PlainText
    elide: Text.ElideRight
    color: Theme.text
    font.pixelSize: Theme.normalText
    verticalAlignment: Text.AlignVCenter
}
