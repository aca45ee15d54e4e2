import QtQuick 2.15

/// Buttons for amounts in notes and coins, all of one width; the smallest ones if not all
/// fit.
Grid {
    id: root

    required property var amounts ///< as SalesDesk::quickAmounts() has them
    property int rows: 1
    readonly property real longest: amounts["reduce"](
        (length, each) => Math.max(length, metrics.advanceWidth(each["text"])), 0)
    readonly property int fitting: Math.max(
        1, Math.floor((width + spacing) / (longest + 2 * Theme.gap + spacing)))
    readonly property var shown: amounts["slice"](0, rows * Math.min(3, fitting))
    signal chosen(double amount)

    columns: Math.max(1, Math.min(3, fitting, shown["length"]))
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
            text: modelData["text"]
            onClicked: root.chosen(modelData["amount"])
        }
    }
}
