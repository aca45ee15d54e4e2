import QtQuick 2.15
import Rivo.Terminal 1.0

/// Asks for the change that the driver begins the shift with.
AmountPad {
    id: root

    required property SalesDesk desk

    title: qsTr("Opening float")
    confirmText: qsTr("Record")
    onConfirmed: desk.setOpeningFloat(amount)

    AmountLine {
        width: parent.width
        label: qsTr("Counted")
        value: root.desk.amountText(root.amount)
        valueSize: Theme.hugeText
        valueName: "padFloat"
    }
}
