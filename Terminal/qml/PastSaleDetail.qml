import QtQuick 2.15
import Rivo.Terminal 1.0

/// One past sale with its tickets, and what can be done with them.
Item {
    id: root

    required property SalesDesk desk
    required property PaperDesk papers
    required property var sale ///< as SalesDesk::pastSale() has it
    required property bool isNewest
    property int selected: 0 ///< ticket of the sale
    readonly property var tickets: sale["tickets"] === undefined ? [] : sale["tickets"]
    readonly property var ticket: tickets[Math.min(selected, tickets["length"] - 1)]
    readonly property bool isTicketLeft: ticket !== undefined && ticket["isReversed"] !== true

    function textOf(name) {
        const text = root.sale[name]
        return text === undefined ? "" : String(text)
    }

    Column {
        id: facts

        x: 2 * Theme.gap
        y: Theme.gap
        width: parent.width - 2 * x
        AmountLine {
            width: parent.width
            label: root.sale["isCash"] === true ? qsTr("Paid in cash") : qsTr("Paid by card")
            value: root.textOf("paidText")
            valueSize: Theme.largeText
            valueName: "detailPaid"
        }
        AmountLine {
            width: parent.width
            visible: root.sale["change"] > 0
            label: qsTr("Given")
            value: root.textOf("givenText")
        }
        AmountLine {
            width: parent.width
            visible: root.sale["change"] > 0
            label: qsTr("Change")
            value: root.textOf("changeText")
            valueName: "detailChange"
        }
        AmountLine {
            width: parent.width
            visible: root.sale["reversedCount"] > 0
            label: qsTr("Given back")
            value: root.textOf("paidOutText")
            ink: Theme.warning
            valueName: "detailPaidOut"
        }
    }
    ListView {
        id: list

        objectName: "pastTickets"
        anchors.top: facts.bottom
        anchors.topMargin: Theme.gap
        anchors.bottom: buttons.top
        anchors.bottomMargin: Theme.gap
        x: 2 * Theme.gap
        width: parent.width - 2 * x
        clip: true
        spacing: Theme.gap / 2
        model: root.tickets
        boundsBehavior: Flickable.StopAtBounds
        delegate: PastTicketLine {
            required property int index
            required property var modelData

            width: list.width
            ticket: modelData
            chosen: root.selected === index
            onClicked: root.selected = index
        }
    }
    Row {
        id: buttons

        readonly property real share: (width - 3 * spacing) / 4

        anchors.bottom: parent.bottom
        anchors.bottomMargin: Theme.gap
        x: Theme.gap
        width: parent.width - 2 * x
        spacing: Theme.gap
        PanelButton {
            objectName: "showPaper"
            width: buttons.share
            height: Theme.mm(12)
            padding: 0
            stacked: true
            text: qsTr("Show", "the paper of a ticket")
            iconSource: "qrc:/icons/zreport.svg"
            Accessible.name: qsTr("Show ticket")
            onClicked: paper.show(root.ticket["number"])
        }
        PanelButton {
            objectName: "printCopy"
            width: buttons.share
            height: Theme.mm(12)
            padding: 0
            stacked: true
            text: qsTr("Copy", "of a ticket, on paper")
            iconSource: "qrc:/icons/printer.svg"
            Accessible.name: qsTr("Print copy")
            onClicked: root.desk.printCopy(root.ticket["number"])
        }
        PanelButton {
            objectName: "refundButton"
            width: buttons.share
            height: Theme.mm(12)
            padding: 0
            stacked: true
            enabled: root.isTicketLeft
            text: qsTr("Refund")
            iconSource: "qrc:/icons/return.svg"
            onClicked: refunding.ask()
        }
        PanelButton {
            objectName: "voidButton"
            width: buttons.share
            height: Theme.mm(12)
            padding: 0
            stacked: true
            enabled: root.isNewest
            text: qsTr("Void", "take the last sale back")
            iconSource: "qrc:/icons/clear.svg"
            Accessible.name: qsTr("Void sale")
            onClicked: voiding.open()
        }
    }
    PaperPopup {
        id: paper

        papers: root.papers
    }
    RefundPopup {
        id: refunding

        objectName: "refundPopup"
        ticketText: root.ticket === undefined ? "" : root.ticket["numberText"]
        priceText: root.ticket === undefined ? "" : root.ticket["priceText"]
        remaining: Number(root.sale["ticketCount"]) - Number(root.sale["reversedCount"])
        onConfirmed: (isWhole, reason) => {
            if (isWhole)
                root.desk.refundSale(root.sale["id"], reason)
            else
                root.desk.refundTicket(root.ticket["number"], reason)
        }
    }
    Confirmation {
        id: voiding

        objectName: "voidConfirmation"
        question: qsTr("Void the last sale, %1?").arg(root.textOf("paidText"))
        consequence: qsTr("Take the tickets back, and give the money back.")
        confirmText: qsTr("Void sale")
        onConfirmed: root.desk.voidLastSale()
    }
}
