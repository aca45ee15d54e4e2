import QtQuick 2.15

/// Buttons for amounts in notes and coins, all of one width; the smallest ones if not all
/// fit. Where not even one fits, its text is smaller: no amount loses its end.
Grid {
    id: root

    required property var amounts ///< as SalesDesk::quickAmounts() has them
    property string textKey: "text" ///< which of their texts
    property int rows: 1
    readonly property int margin: Math.floor(Theme.gap / 2) ///< beside a text, so that two notes fit
    readonly property int fitting: canShow(4) ? 4 : canShow(3) ? 3 : canShow(2) ? 2 : 1 ///< columns
    readonly property int columnWidth: Math.floor((width - (fitting - 1) * spacing) / fitting)
    readonly property int textSize: Math.max(
        Theme.smallText,
        Math.floor(Theme.normalText * Math.min(1, (columnWidth - 2 * margin)
                                                / longest(rows * fitting))))
    readonly property var shown: amounts["slice"](0, rows * fitting)
    signal chosen(double amount)

    function longest(count) {
        return Math.ceil(amounts["slice"](0, count)["reduce"](
            (length, each) => Math.max(length, metrics.advanceWidth(each[textKey])), 1))
    }

    function canShow(columns) {
        return columns * (longest(rows * columns) + 2 * margin + spacing) - spacing <= width
    }

    columns: Math.max(1, Math.min(fitting, shown["length"]))
    spacing: Theme.gap

    FontMetrics {
        id: metrics

        font.pixelSize: Theme.normalText
        font.weight: Font.DemiBold
    }
    Repeater {
        model: root.shown
        PanelButton {
            required property var modelData

            objectName: "quickAmount"
            width: Math.floor((root.width - (root.columns - 1) * root.spacing) / root.columns)
            text: modelData[root.textKey]
            textSize: root.textSize
            padding: root.margin
            onClicked: root.chosen(modelData["amount"])
        }
    }
}
