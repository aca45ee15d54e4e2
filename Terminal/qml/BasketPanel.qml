import QtQuick 2.15
import Rivo.GuiCore 1.0
import Rivo.Terminal 1.0

/// The tickets of the sale in progress, and what can be done with them.
Rectangle {
    id: root

    required property SalesDesk desk
    required property ShoppingBasketModel tickets
    required property Presentation presentation
    readonly property bool isSelling: desk.state === SalesDesk.Selling
    readonly property bool isInterrupted: desk.state === SalesDesk.Interrupted
    readonly property bool isEmpty: tickets.count === 0
    readonly property bool isAwaitingCard: desk.state === SalesDesk.AwaitingCard
    readonly property bool isPayable: isSelling && !isEmpty && desk.obstacle === ""
    signal moreRequested(BasketLine line) ///< of the kind of a line
    property bool isPaidShown: false ///< the last sale, until the next ticket

    color: Theme.surface

    Connections {
        target: root.desk
        function onSaleConfirmed() {
            root.isPaidShown = true
        }
        function onSaleReversed() {
            root.isPaidShown = false
        }
    }
    Connections {
        target: root.tickets
        function onCountChanged() {
            if (root.isSelling && !root.isEmpty)
                root.isPaidShown = false
        }
    }

    PlainText {
        id: title

        x: Theme.gap
        width: parent.width - clearButton.width - 3 * Theme.gap
        height: Theme.touch
        fontSizeMode: Text.HorizontalFit
        minimumPixelSize: Theme.smallText
        text: root.isEmpty ? qsTr("Basket") : qsTr("%n ticket(s)", "", root.tickets.count)
        font.pixelSize: Theme.largeText
        font.weight: Font.DemiBold
    }
    PanelButton {
        id: clearButton

        objectName: "clearButton"
        anchors.right: parent.right
        text: ""
        iconSource: "qrc:/icons/clear.svg"
        enabled: root.isSelling && !root.isEmpty
        Accessible.name: qsTr("Clear the basket")
        onClicked: clearing.open()
    }
    ListView {
        id: lines

        objectName: "basketLines"
        anchors.top: title.bottom
        anchors.bottom: footer.top
        anchors.left: parent.left
        anchors.right: parent.right
        visible: !inDoubt.visible
        clip: true
        model: root.tickets
        boundsBehavior: Flickable.StopAtBounds

        property int shownCount: 0
        property int printedRow: -1

        function showPrinted() {
            if (!root.isSelling && printedRow >= 0)
                positionViewAtIndex(printedRow, ListView["Contain"])
        }

        onHeightChanged: showPrinted()

        // A new line comes into view; one that goes moves nothing under the finger.
        onCountChanged: {
            if (count > shownCount)
                Qt.callLater(positionViewAtEnd)
            shownCount = count
        }
        delegate: BasketLine {
            width: lines.width
            presentation: root.presentation
            removable: root.isSelling
            enabled: root.isSelling
            onPressAndHold: root.moreRequested(this)
            onRemoveRequested: root.desk.remove(index)
        }
        Column {
            anchors.centerIn: parent
            width: parent.width - 2 * Theme.gap
            spacing: 2 * Theme.gap
            visible: root.isEmpty
            PlainText {
                width: parent.width
                horizontalAlignment: Text.AlignHCenter
                text: qsTr("Tap a tile to add a ticket")
                wrapMode: Text.Wrap
                color: Theme.mutedText
            }
            PanelButton {
                objectName: "repeatButton"
                width: parent.width
                visible: root.desk.mayRepeat
                enabled: root.isSelling
                text: qsTr("Last sale again")
                onClicked: root.desk.addLastSale()
            }
        }
    }
    // The ticket that is being printed is in view.
    Connections {
        target: root.tickets
        function onDataChanged(first) {
            lines.printedRow = root.isSelling ? -1 : first["row"]
            lines.showPrinted()
        }
    }
    TicketsInDoubt {
        id: inDoubt

        anchors.fill: lines
        tickets: root.desk.interruptedSale
    }
    Column {
        id: footer

        anchors.bottom: parent.bottom
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.margins: Theme.gap
        spacing: Theme.gap
        Rectangle {
            width: parent.width
            height: obstacleText.implicitHeight + 2 * Theme.gap
            visible: obstacleText.text !== "" && !root.isInterrupted
            radius: Theme.radius
            color: Theme.error
            PlainText {
                id: obstacleText

                objectName: "obstacleText"
                anchors.fill: parent
                anchors.margins: Theme.gap
                text: root.desk.obstacle
                wrapMode: Text.Wrap
                elide: Text.ElideNone
                color: Theme.errorInk
                font.pixelSize: Theme.smallText
                font.weight: Font.DemiBold
            }
        }
        PaidSale {
            objectName: "paidSale"
            width: parent.width
            visible: root.isPaidShown
            sale: root.desk.lastSale
            desk: root.desk
            onSeen: root.isPaidShown = false
        }
        CardPayment {
            objectName: "cardPayment"
            width: parent.width
            card: root.desk.card
        }
        AmountLine {
            width: parent.width
            visible: !root.isPaidShown && !root.isInterrupted
            label: root.isSelling || root.isAwaitingCard ? qsTr("Total") : qsTr("Printing")
            value: root.desk.totalText
            valueSize: Theme.hugeText
            valueName: "totalText"
        }
        PlainText {
            objectName: "doubtText"
            width: parent.width
            visible: root.isInterrupted
            text: qsTr("Is ticket %1 out?").arg(root.desk.firstTicketInDoubt)
            wrapMode: Text.Wrap
            elide: Text.ElideNone
            font.weight: Font.DemiBold
            color: Theme.warning
        }
        PlainText {
            width: parent.width
            visible: root.isInterrupted
            text: qsTr("Paid, but printing was interrupted.")
            wrapMode: Text.Wrap
            font.pixelSize: Theme.smallText
        }
        // Both ask once more: they stand where the driver is used to pay.
        Row {
            width: parent.width
            spacing: Theme.gap
            visible: root.isInterrupted
            PanelButton {
                objectName: "confirmDoubt"
                width: (parent.width - Theme.gap) / 2
                text: qsTr("It is out")
                onClicked: {
                    confirming.question = qsTr("Is ticket %1 out?")
                                              .arg(root.desk.firstTicketInDoubt)
                    confirming.open()
                }
            }
            PanelButton {
                objectName: "printDoubts"
                width: (parent.width - Theme.gap) / 2
                text: qsTr("Print (%1)", "as a button, how many tickets")
                          .arg(root.desk.ticketsInDoubt)
                onClicked: {
                    printing.question = qsTr("Print %n ticket(s)?", "",
                                             root.desk.ticketsInDoubt)
                    printing.open()
                }
            }
        }
        AmountLine {
            width: parent.width
            visible: !root.isPaidShown && !root.isEmpty && root.desk.due !== root.desk.total
            label: qsTr("In cash")
            value: root.desk.dueText
            valueName: "dueText"
        }
        // Each of them sells at once, as Cash does.
        Row {
            width: parent.width
            spacing: Theme.gap
            visible: root.isPayable
            QuickAmounts {
                width: parent.width - givenButton.width - Theme.gap
                textKey: "shortText"
                // One note or coin each: 1, 2 or 5 times a power of ten.
                amounts: root.desk.total > 0
                         ? root.desk.quickAmounts().slice(1).filter(
                               each => /^[125]0*$/.test(each["amount"].toFixed(0)))
                         : []
                onChosen: amount => root.desk.payCash(amount)
            }
            PanelButton {
                id: givenButton

                objectName: "givenButton"
                iconSource: "qrc:/icons/coins.svg"
                Accessible.name: qsTr("Amount given")
                onClicked: paying.ask(0)
            }
        }
        PlainText {
            objectName: "cardObstacle"
            width: parent.width
            visible: root.isPayable && text !== ""
            text: root.desk.card.obstacle
            wrapMode: Text.Wrap
            elide: Text.ElideNone
            font.pixelSize: Theme.smallText
            color: Theme.mutedText
        }
        Row {
            width: parent.width
            spacing: Theme.gap
            visible: !root.isInterrupted && !root.isAwaitingCard
            PanelButton {
                objectName: "payCash"
                width: (parent.width - Theme.gap) / 2
                height: Theme.touch + Theme.gap
                accent: true
                text: qsTr("Cash")
                iconSource: "qrc:/icons/cash.svg"
                enabled: root.isPayable
                onClicked: root.desk.pay(SalesDesk.Cash)
            }
            PanelButton {
                objectName: "payCard"
                width: (parent.width - Theme.gap) / 2
                height: Theme.touch + Theme.gap
                accent: true
                text: qsTr("Card")
                iconSource: "qrc:/icons/paycard.svg"
                enabled: root.isPayable && root.desk.card.obstacle === ""
                onClicked: root.desk.pay(SalesDesk.Card)
            }
        }
    }
    PaymentPad {
        id: paying

        objectName: "paymentPad"
        desk: root.desk
    }
    Confirmation {
        id: clearing

        objectName: "clearConfirmation"
        question: qsTr("Remove all tickets from the basket?")
        confirmText: qsTr("Remove all")
        onConfirmed: root.desk.clear()
    }
    Confirmation {
        id: confirming

        objectName: "doubtConfirmation"
        consequence: qsTr("It will not be printed again.")
        confirmText: qsTr("It is out")
        onConfirmed: root.desk.confirmTicketInDoubt()
    }
    Confirmation {
        id: printing

        objectName: "printConfirmation"
        consequence: qsTr("Those that are out already come out twice.")
        confirmText: qsTr("Print")
        onConfirmed: root.desk.printTicketsInDoubt()
    }
}
