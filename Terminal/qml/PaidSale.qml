import QtQuick 2.15
import Rivo.Terminal 1.0

/// What the last sale cost, what was given for it and what goes back.
Rectangle {
    id: root

    required property var sale ///< as SalesDesk::lastSale has it
    required property SalesDesk desk
    readonly property double rounding: Number(sale["rounding"])
    readonly property bool hasChange: Number(sale["change"]) > 0
    signal seen

    function textOf(name) {
        const text = root.sale[name]
        return text === undefined ? "" : text
    }

    height: column.height + 2 * Theme.gap
    radius: Theme.radius
    color: Theme.raised
    TapHandler {
        onTapped: root.seen()
    }
    Column {
        id: column

        x: Theme.gap
        y: Theme.gap
        width: parent.width - 2 * x
        AmountLine {
            width: parent.width
            label: root.sale["isCash"] === true ? qsTr("Paid in cash") : qsTr("Paid by card")
            value: root.textOf("paidText")
            valueSize: root.hasChange ? Theme.largeText : Theme.hugeText
            valueName: "paidText"
        }
        AmountLine {
            width: parent.width
            visible: root.rounding < 0 || root.rounding > 0
            label: qsTr("Rounding")
            value: (root.rounding < 0 ? "−" : "+") + root.desk.amountText(Math.abs(root.rounding))
            valueName: "roundingText"
        }
        AmountLine {
            width: parent.width
            visible: root.hasChange
            label: qsTr("Given")
            value: root.textOf("givenText")
            valueSize: Theme.largeText
            valueName: "givenText"
        }
        AmountLine {
            width: parent.width
            visible: root.hasChange
            label: qsTr("Change")
            value: root.textOf("changeText")
            valueSize: Theme.hugeText
            valueName: "changeText"
        }
    }
}
