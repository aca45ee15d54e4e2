import QtQuick 2.15
import Rivo.Terminal 1.0

/// One row of the Z reports, with its numbers as people read them. A count of -1 was not counted.
Item {
    required property Presentation presentation
    required property double zNumberData
    required property double zSumData
    required property int ticketCountData
    required property int cardSellCountData
    required property double cardSellAmountData
    required property string fromTicketData
    required property string toTicketData
    required property double currentDebt

    readonly property string number: Number(zNumberData).toFixed(0)
    readonly property string cardText: countText(cardSellCountData, cardSellAmountData)

    function money(amount) {
        return presentation.priceText(amount)
    }
    function countText(count, amount) {
        return count < 0 ? "–"
             : count === 0 ? "0"
             : qsTr("%1 for %2", "a count, an amount").arg(count).arg(money(amount))
    }
}
