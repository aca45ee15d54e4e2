import QtQuick 2.15
import Rivo.Terminal 1.0

/// Asks how much a passenger gives in cash for the basket, and says what goes back.
AmountPad {
    id: root

    required property SalesDesk desk
    readonly property var back: desk.total >= 0 ? desk.changeFor(amount) : ({})
    readonly property double rounding: desk.due - desk.total

    title: qsTr("Amount given")
    confirmText: qsTr("Cash")
    isConfirmable: back["isEnough"] === true
    onConfirmed: desk.payCash(amount)

    AmountLine {
        width: parent.width
        visible: root.rounding !== 0
        label: qsTr("Rounding")
        value: (root.rounding < 0 ? "−" : "+") + root.desk.amountText(Math.abs(root.rounding))
        valueName: "padRounding"
    }
    AmountLine {
        width: parent.width
        label: qsTr("To pay")
        value: root.desk.dueText
        valueSize: Theme.largeText
        valueName: "padDue"
    }
    AmountLine {
        width: parent.width
        label: qsTr("Given")
        value: root.desk.amountText(root.amount)
        valueSize: Theme.largeText
        valueName: "padGiven"
    }
    AmountLine {
        width: parent.width
        label: qsTr("Change")
        value: root.isConfirmable ? root.back["changeText"] : "–"
        valueSize: Theme.hugeText
        valueName: "padChange"
    }
    PlainText {
        objectName: "padPieces"
        width: parent.width
        visible: root.rounding === 0 // its line needs the room
        text: root.isConfirmable ? root.back["pieces"].join(" + ") : ""
        font.pixelSize: Theme.smallText
        color: Theme.mutedText
    }
    QuickAmounts {
        width: parent.width
        rows: 2
        textKey: "shortText"
        amounts: root.opened ? root.desk.quickAmounts() : []
        onChosen: amount => root.amount = amount
    }
}
