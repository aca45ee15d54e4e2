import QtQuick 2.15
import Rivo.Terminal 1.0

/// Asks how many tickets of one kind go into the basket.
AmountPad {
    id: root

    required property Presentation presentation
    property string product
    property string passenger
    property double price: 0
    readonly property int most: 200 ///< more than any sale has
    signal chosen(int count)

    /// `ticket` has the texts and the price of a tile or a line of the basket.
    function askFor(ticket) {
        root.product = ticket.fareProductName
        root.passenger = ticket.description
        root.price = ticket.price
        root.ask(0)
    }

    title: qsTr("How many tickets?")
    confirmText: root.isConfirmable ? qsTr("Add %n", "tickets", root.amount) : qsTr("Add")
    isConfirmable: root.amount >= 1 && root.amount <= root.most
    onConfirmed: root.chosen(root.amount)

    PlainText {
        width: parent.width
        text: root.product
        wrapMode: Text.Wrap
        maximumLineCount: 3
        font.weight: Font.DemiBold
    }
    PlainText {
        width: parent.width
        text: root.passenger
        wrapMode: Text.Wrap
        maximumLineCount: 2
        font.pixelSize: Theme.smallText
        color: Theme.mutedText
    }
    AmountLine {
        width: parent.width
        label: qsTr("Tickets")
        value: root.amount
        valueSize: Theme.hugeText
        valueName: "padQuantity"
    }
    AmountLine {
        width: parent.width
        label: qsTr("Together")
        value: root.presentation.priceText(root.price * root.amount)
        valueSize: Theme.largeText
        valueName: "padTogether"
    }
}
