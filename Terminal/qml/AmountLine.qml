import QtQuick 2.15

/// What an amount is, and at the right edge the amount. An amount that is too long becomes smaller;
/// it is never cut.
Item {
    id: root

    property string label
    property string value
    property int valueSize: Theme.normalText
    property color ink: Theme.text
    property string valueName ///< objectName of the amount

    implicitHeight: smallLabel.advanceWidth > root.width * 0.4
                    ? Math.max(amount.height, Math.ceil(Theme.smallText * 2.7)) : amount.height

    TextMetrics {
        id: metrics

        text: root.value
        font.pixelSize: root.valueSize
        font.weight: Font.Bold
    }
    TextMetrics {
        id: smallLabel

        text: root.label
        font.pixelSize: Theme.smallText
    }
    PlainText {
        id: labelText

        anchors.left: parent.left
        anchors.right: amount.left
        anchors.rightMargin: Theme.gap
        height: parent.height
        text: root.label
        wrapMode: Text.Wrap
        maximumLineCount: 2
        font.pixelSize: Theme.normalText
        fontSizeMode: Text.Fit
        minimumPixelSize: Theme.smallText
        color: root.ink === Theme.text ? Theme.mutedText : root.ink
    }
    PlainText {
        id: amount

        readonly property real room: root.width - Theme.gap
                                     - Math.min(root.width * 0.45, smallLabel.advanceWidth)

        objectName: root.valueName
        anchors.right: parent.right
        text: root.value
        font.pixelSize: Math.floor(root.valueSize * Math.min(1, amount.room / Math.max(1, metrics.advanceWidth)))
        font.weight: Font.Bold
        color: root.ink
    }
}
