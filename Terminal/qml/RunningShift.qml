import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import Rivo.Terminal 1.0

/// The shift that is being worked: what was sold, and the cash that the driver has to hand over,
/// that of unpaid shifts before it included.
ShiftReport {
    id: root

    required property SalesDesk desk
    required property double maxAllowedDebt
    property string closedNumber ///< of the shift before, if it was closed on this page

    readonly property double ownCash: zSumData - cardSellAmountData ///< of this shift alone
    readonly property bool hasLimit: maxAllowedDebt > 0
    readonly property bool isLimitReached: hasLimit && currentDebt >= maxAllowedDebt
    /// What closing means, for the question before it.
    readonly property string consequence:
        qsTr("%n ticket(s) for %1, of it %2 in cash. Shift %3 starts at once; a closed shift cannot be opened again.",
             "", ticketCountData).arg(money(zSumData)).arg(money(ownCash))
                                 .arg((zNumberData + 1).toFixed(0))
    property var figures: ({}) ///< as SalesDesk::xReport() has them
    readonly property bool isUnused: ticketCountData === 0
    signal floatRequested(double amount) ///< what was recorded so far
    signal closeRequested
    signal salesRequested
    signal figuresRequested

    function refresh() {
        root.figures = root.desk.xReport()
    }
    function countedText(text, count, sum) {
        return root.figures[count] > 0
               ? [text.arg(root.figures[count]).arg(root.desk.amountText(root.figures[sum]))] : []
    }
    /// What is not shown above, as far as there is some of it.
    function otherFigures() {
        const rounding = Number(root.figures["rounding"])
        const start = Number(root.figures["openingFloat"])
        return root.countedText(qsTr("Void: %1 for %2"), "voidCount", "voidSum")
            .concat(root.countedText(qsTr("Refunded: %1 for %2"), "refundCount", "refundSum"))
            .concat(rounding < 0 || rounding > 0
                    ? [qsTr("Rounding: %1").arg((rounding < 0 ? "−" : "+")
                                                + root.desk.amountText(Math.abs(rounding)))] : [])
            .concat(start > 0 ? [qsTr("Float: %1").arg(root.desk.amountText(start))] : [])
            .join(" · ")
    }

    onZSumDataChanged: root.refresh()
    onTicketCountDataChanged: root.refresh()
    onCurrentDebtChanged: root.refresh()
    Component.onCompleted: root.refresh()

    Connections {
        target: root.desk
        function onSaleReversed() {
            root.refresh()
        }
        function onOpeningFloatChanged() {
            root.refresh()
        }
    }

    // What does not fit is scrolled.
    Flickable {
        id: scrolled

        anchors.top: parent.top
        anchors.bottom: buttons.top
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.margins: 2 * Theme.gap
        anchors.bottomMargin: Theme.gap
        contentWidth: width
        contentHeight: figuresColumn.height
        clip: true
        interactive: contentHeight > height
        boundsBehavior: Flickable.StopAtBounds
        T.ScrollBar.vertical: ScrollMark {}
        Column {
            id: figuresColumn

            width: scrolled.width
            spacing: root.height < Theme.mm(100) ? Theme.gap : 2 * Theme.gap

            Item {
                width: parent.width
                height: Math.max(sum.height, names.height)
                Column {
                    id: names

                    anchors.left: parent.left
                    anchors.right: sum.left
                    anchors.rightMargin: Theme.gap
                    anchors.verticalCenter: parent.verticalCenter
                    PlainText {
                        objectName: "runningNumber"
                        width: parent.width
                        text: qsTr("Z report %1").arg(root.number)
                        wrapMode: Text.Wrap
                        font.pixelSize: Theme.mediumText
                        font.weight: Font.DemiBold
                    }
                    PlainText {
                        objectName: "runningState"
                        width: parent.width
                        text: root.closedNumber !== "" && root.ticketCountData === 0
                              ? qsTr("Shift %1 is closed.").arg(root.closedNumber)
                              : root.desk.driverName !== ""
                                ? qsTr("Running shift, driver %1").arg(root.desk.driverName)
                                : qsTr("Running shift")
                        wrapMode: Text.Wrap
                        font.pixelSize: Theme.smallText
                        color: Theme.ok
                        font.weight: Font.DemiBold
                    }
                }
                PlainText {
                    id: sum

                    objectName: "runningSum"
                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                    text: root.money(root.zSumData)
                    font.pixelSize: Theme.hugeText
                    font.weight: Font.Bold
                }
            }
            Grid {
                id: facts

                readonly property real cellWidth: (width - columnSpacing) / columns

                width: parent.width
                columns: 2
                columnSpacing: 2 * Theme.gap
                rowSpacing: Theme.gap
                Fact {
                    width: facts.cellWidth
                    label: qsTr("Tickets")
                    value: root.ticketCountData < 0 ? "" : root.ticketCountData
                }
                Fact {
                    width: facts.cellWidth
                    label: qsTr("Paid by card")
                    value: root.cardText
                }
                Fact {
                    width: facts.cellWidth
                    label: qsTr("First ticket")
                    value: root.fromTicketData
                }
                Fact {
                    width: facts.cellWidth
                    label: qsTr("Last ticket")
                    value: root.toTicketData
                }
            }
            Rectangle {
                id: cashBox

                readonly property color ink: root.isLimitReached ? Theme.errorInk : Theme.text

                width: parent.width
                height: cash.height + 2 * Theme.gap
                radius: Theme.radius
                color: root.isLimitReached ? Theme.error : Theme.raised

                Column {
                    id: cash

                    x: 2 * Theme.gap
                    y: Theme.gap
                    width: parent.width - 2 * x
                    spacing: Theme.mm(0.5)
                    Item {
                        width: parent.width
                        height: Math.max(amount.height, 2.4 * Theme.smallText)
                        Icon {
                            id: mark

                            anchors.verticalCenter: parent.verticalCenter
                            source: root.isLimitReached ? "qrc:/icons/warning.svg"
                                                        : "qrc:/icons/cash.svg"
                            ink: cashBox.ink
                        }
                        PlainText {
                            anchors.left: mark.right
                            anchors.leftMargin: Theme.gap
                            anchors.right: amount.left
                            anchors.rightMargin: Theme.gap
                            anchors.verticalCenter: parent.verticalCenter
                            text: qsTr("Cash to hand over")
                            wrapMode: Text.Wrap
                            maximumLineCount: 2
                            font.pixelSize: Theme.smallText
                            color: cashBox.ink
                        }
                        PlainText {
                            id: amount

                            objectName: "debtText"
                            anchors.right: parent.right
                            anchors.verticalCenter: parent.verticalCenter
                            text: root.money(root.currentDebt)
                            font.pixelSize: Theme.largeText
                            font.weight: Font.Bold
                            color: cashBox.ink
                        }
                    }
                    Rectangle {
                        width: parent.width
                        height: Theme.gap
                        radius: height / 2
                        visible: root.hasLimit && !root.isLimitReached
                        color: Theme.line
                        Rectangle {
                            width: parent.width * Math.max(0, root.currentDebt / root.maxAllowedDebt)
                            height: parent.height
                            radius: parent.radius
                            color: Theme.accent
                        }
                    }
                    PlainText {
                        objectName: "limitText"
                        width: parent.width
                        text: !root.hasLimit ? qsTr("There is no limit.")
                            : root.isLimitReached
                              ? (root.ownCash > 0
                                 ? qsTr("The limit of %1 is reached: close the shift and hand the cash over.")
                                 : qsTr("The limit of %1 is reached: hand the cash over."))
                                    .arg(root.money(root.maxAllowedDebt))
                              : qsTr("Limit %1").arg(root.money(root.maxAllowedDebt))
                        wrapMode: Text.Wrap
                        font.pixelSize: Theme.smallText
                        font.weight: root.isLimitReached ? Font.DemiBold : Font.Normal
                        color: root.isLimitReached ? Theme.errorInk : Theme.mutedText
                    }
                }
            }
            PlainText {
                objectName: "otherFigures"
                width: parent.width
                visible: text !== ""
                text: root.otherFigures()
                wrapMode: Text.Wrap
                font.pixelSize: Theme.smallText
                color: Theme.mutedText
            }
        }
    }
    Row {
        id: buttons

        readonly property Item first: root.isUnused ? floatButton : salesButton
        /// What each gets besides the room for its text.
        readonly property real share: Math.floor((width - 2 * spacing - first.implicitWidth
                                                  - figuresButton.implicitWidth
                                                  - closeButton.implicitWidth) / 3)

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        anchors.margins: 2 * Theme.gap
        anchors.topMargin: Theme.gap
        spacing: Theme.gap
        PanelButton {
            id: salesButton

            objectName: "salesButton"
            width: implicitWidth + buttons.share
            height: Theme.mm(11)
            padding: 0
            visible: !root.isUnused
            stacked: true
            text: qsTr("Sales", "of the running shift")
            iconSource: "qrc:/icons/cash.svg"
            onClicked: root.salesRequested()
        }
        PanelButton {
            id: floatButton

            objectName: "floatButton"
            width: implicitWidth + buttons.share
            height: Theme.mm(11)
            padding: 0
            visible: root.isUnused
            stacked: true
            text: qsTr("Float")
            iconSource: "qrc:/icons/coins.svg"
            onClicked: root.floatRequested(Number(root.figures["openingFloat"]))
        }
        PanelButton {
            id: figuresButton

            objectName: "figuresButton"
            width: implicitWidth + buttons.share
            height: Theme.mm(11)
            padding: 0
            stacked: true
            text: qsTr("X report")
            iconSource: "qrc:/icons/info.svg"
            onClicked: root.figuresRequested()
        }
        PanelButton {
            id: closeButton

            objectName: "closeShiftButton"
            width: implicitWidth + buttons.share
            height: Theme.mm(11)
            padding: 0
            accent: true
            stacked: true
            text: qsTr("Close shift")
            iconSource: "qrc:/icons/zreport.svg"
            onClicked: root.closeRequested()
        }
    }
}
