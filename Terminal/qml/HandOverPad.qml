import QtQuick 2.15
import Rivo.Terminal 1.0

/// Asks how much cash of a closed shift was counted, and says how that differs from what is due.
AmountPad {
    id: root

    required property SalesDesk desk
    property double shift: 0
    property double due: 0
    readonly property double difference: amount - due

    function askFor(shift) {
        root.shift = shift
        root.due = Number(root.desk.zReport(shift)["due"])
        root.ask(0)
    }

    title: qsTr("Hand over cash of Z report %1").arg(Number(shift).toFixed(0))
    confirmText: qsTr("Hand over")
    danger: true
    isConfirmable: amount > 0
    onConfirmed: desk.handOverCounted(shift, amount)

    AmountLine {
        width: parent.width
        label: qsTr("Due")
        value: root.desk.amountText(root.due)
        valueSize: Theme.largeText
        valueName: "padDue"
    }
    AmountLine {
        width: parent.width
        label: qsTr("Counted")
        value: root.amount > 0 ? root.desk.amountText(root.amount) : "–"
        valueSize: Theme.hugeText
        valueName: "padCounted"
    }
    AmountLine {
        width: parent.width
        label: qsTr("Difference")
        value: root.amount === 0 ? "–"
             : (root.difference < 0 ? "−" : root.difference > 0 ? "+" : "")
               + root.desk.amountText(Math.abs(root.difference))
        valueSize: Theme.largeText
        ink: root.amount > 0 && root.difference !== 0 ? Theme.error : Theme.text
        valueName: "padDifference"
    }
    PanelButton {
        objectName: "allOfIt"
        width: parent.width
        text: qsTr("All of it")
        enabled: root.due > 0
        onClicked: root.amount = root.due
    }
}
