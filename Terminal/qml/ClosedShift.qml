import QtQuick 2.15
import Rivo.Terminal 1.0

/// One shift that is over.
ShiftReport {
    id: root

    required property SalesDesk desk
    required property int parcelCountData
    required property double parcelAmountData
    required property double commission
    required property date paymentDate ///< an invalid date if not paid yet

    readonly property bool isPaid: !isNaN(paymentDate)
    readonly property bool isOwn: desk.keepsShift(zNumberData) ///< of this terminal's journal
    readonly property bool isPayable: !isPaid && isOwn
    /// As SalesDesk::zReport() has it; read again when it is paid, and after a card day.
    property var report: ({})
    readonly property double difference: isPaid ? Number(report["difference"]) : 0
    readonly property double cardDayDifference: Number(report["cardDayDifference"])
    signal handOverRequested
    signal reportRequested

    function readReport() {
        report = isOwn ? desk.zReport(zNumberData) : ({})
    }
    function signedText(amount) {
        return (amount < 0 ? "−" : "+") + desk.amountText(Math.abs(amount))
    }

    implicitHeight: content.height + 3 * Theme.gap
    onIsPaidChanged: readReport()
    Component.onCompleted: readReport()

    Connections {
        target: root.desk.card
        function onCardDayEnded() {
            root.readReport()
        }
    }
    Column {
        id: content

        x: 2 * Theme.gap
        y: 1.5 * Theme.gap
        width: parent.width - 2 * x
        spacing: Theme.mm(0.4)
        PlainText {
            width: parent.width
            text: qsTr("Z report %1").arg(root.number)
            font.pixelSize: Theme.mediumText
            font.weight: Font.DemiBold
        }
        AmountLine {
            width: parent.width
            label: qsTr("Sum")
            value: root.money(root.zSumData)
        }
        ReportLine {
            width: parent.width
            label: qsTr("Tickets")
            value: root.ticketCountData < 0 ? "–" : root.ticketCountData
        }
        ReportLine {
            width: parent.width
            label: qsTr("Numbers")
            value: root.fromTicketData === "" ? "–"
                 : root.fromTicketData + " – " + root.toTicketData
        }
        ReportLine {
            width: parent.width
            label: qsTr("Paid by card")
            value: root.cardText
        }
        ReportLine {
            width: parent.width
            label: qsTr("Parcels")
            value: root.countText(root.parcelCountData, root.parcelAmountData)
        }
        ReportLine {
            width: parent.width
            label: qsTr("Commission")
            value: root.money(root.commission)
        }
        ReportLine {
            objectName: "countedLine"
            width: parent.width
            visible: root.difference < 0 || root.difference > 0
            label: qsTr("Counted")
            value: visible ? qsTr("%1 (%2)", "counted amount, difference to what is due")
                                 .arg(root.desk.amountText(root.report["counted"]))
                                 .arg(root.signedText(root.difference))
                           : ""
        }
        ReportLine {
            objectName: "cardDayLine"
            width: parent.width
            visible: root.cardDayDifference < 0 || root.cardDayDifference > 0
            label: qsTr("Card terminal")
            value: visible ? qsTr("%1 (%2)", "total of the card terminal, difference to the journal")
                                 .arg(root.desk.amountText(root.report["cardDayTotal"]))
                                 .arg(root.signedText(root.cardDayDifference))
                           : ""
        }
        Row {
            width: parent.width
            spacing: Theme.gap
            Icon {
                id: mark

                anchors.verticalCenter: parent.verticalCenter
                size: Theme.smallIcon
                source: root.isPaid ? "qrc:/icons/ok.svg" : "qrc:/icons/warning.svg"
                ink: payment.color
            }
            PlainText {
                id: payment

                objectName: "paymentText"
                width: parent.width - mark.width - parent.spacing
                text: root.isPaid ? qsTr("Paid %1").arg(Qt.formatDateTime(
                                        root.paymentDate, Qt.DefaultLocaleShortDate))
                                  : qsTr("Not paid, %1 due").arg(
                                        root.money(root.currentDebt))
                wrapMode: Text.Wrap
                font.pixelSize: Theme.smallText
                font.weight: Font.DemiBold
                color: root.isPaid ? Theme.ok : Theme.warning
            }
        }
        Row {
            width: parent.width
            spacing: Theme.gap
            visible: root.isOwn
            PanelButton {
                objectName: "reportButton"
                height: Theme.mm(11)
                width: root.isPayable ? implicitWidth : parent.width
                text: root.isPayable ? "" : qsTr("Show report")
                iconSource: "qrc:/icons/zreport.svg"
                Accessible.name: qsTr("Show report")
                onClicked: root.reportRequested()
            }
            PanelButton {
                objectName: "handOverButton"
                height: Theme.mm(11)
                padding: 0
                stacked: true
                width: parent.width - Theme.touch - Theme.gap
                visible: root.isPayable
                text: qsTr("Hand over cash")
                iconSource: root.width < 9 * Theme.touch ? "" : "qrc:/icons/cash.svg"
                onClicked: root.handOverRequested()
            }
        }
    }
    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: Theme.thinLine
        color: Theme.line
    }
}
