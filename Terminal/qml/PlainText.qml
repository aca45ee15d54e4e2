import QtQuick 2.15

/// The only way that texts come onto the screen: text of a feed is never markup.
Text {
    textFormat: Text.PlainText
    elide: Text.ElideRight
    horizontalAlignment: Text.AlignLeft // also of names that are written from right to left
    maximumLineCount: wrapMode === Text.NoWrap ? 1 : 1000 // whatever line breaks it has
    color: Theme.text
    font.pixelSize: Theme.normalText
    verticalAlignment: Text.AlignVCenter
}
