import QtQuick 2.15

/// What something is called, and below it what it is; a dash if nothing is known.
Column {
    id: root

    property string label
    property string value

    spacing: Theme.mm(0.2)
    PlainText {
        width: parent.width
        text: root.label
        wrapMode: Text.Wrap
        font.pixelSize: Theme.smallText
        color: Theme.mutedText
    }
    PlainText {
        id: valueText

        objectName: "valueText"
        width: parent.width
        text: root.value === "" ? "–" : root.value
        font.pixelSize: Theme.mediumText
        wrapMode: Text.Wrap // at words, within a word that is too long
    }
}
