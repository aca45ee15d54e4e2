import QtQuick 2.15

/// One line of a shift that is over: what was counted, and how much of it.
Item {
    id: root

    property string label
    property string value

    implicitHeight: Math.max(labelText.height, valueText.height)

    PlainText {
        id: labelText

        width: Math.min(root.width * 0.55, labelText.implicitWidth + Theme.gap)
        text: root.label
        font.pixelSize: Theme.smallText
        color: Theme.mutedText
    }
    PlainText {
        id: valueText

        objectName: "lineText"
        anchors.left: labelText.right
        anchors.right: parent.right
        text: root.value
        horizontalAlignment: Text.AlignRight
        wrapMode: Text.Wrap
        font.pixelSize: Theme.smallText
    }
}
