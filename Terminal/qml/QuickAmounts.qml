import QtQuick 2.15

/// Buttons for amounts in notes and coins, all of one width; the smallest ones if not all
/// fit. Where two do not fit, their texts are smaller, and where not even one fits, its text: no
/// amount loses its end.
Grid {
    id: root

    required property var amounts ///< as SalesDesk::quickAmounts() has them
    property string textKey: "text" ///< which of their texts
    property int rows: 1
    readonly property int fitting: canShow(4, Theme.normalText) ? 4
                                 : canShow(3, Theme.normalText) ? 3
                                 : canShow(2, Theme.mediumText) ? 2 : 1 ///< columns
    readonly property int columnWidth: Math.floor((width - (fitting - 1) * spacing) / fitting)
    readonly property int textSize: Math.max(
        Theme.smallText,
        Math.floor(Theme.normalText * Math.min(1, (columnWidth - 2 * Theme.gap)
                                                / longest(rows * fitting))))
    readonly property var shown: amounts["slice"](0, rows * fitting)
    signal chosen(double amount)

    function longest(count) {
        return Math.ceil(amounts["slice"](0, count)["reduce"](
            (length, each) => Math.max(length, metrics.advanceWidth(each[textKey])), 1))
    }

    function canShow(columns, size) {
        const text = longest(rows * columns) * size / Theme.normalText
        return columns * (text + 2 * Theme.gap + spacing) - spacing <= width
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
            onClicked: root.chosen(modelData["amount"])
        }
    }
}
