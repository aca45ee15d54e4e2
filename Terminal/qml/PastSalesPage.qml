import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import Rivo.Terminal 1.0

/// The sales of the running shift, the newest first, and beside them the one that is selected.
Item {
    id: root

    required property SalesDesk desk
    required property PaperDesk papers
    property double selectedSale: 0 ///< its id; 0 = none
    property var sale: ({})
    readonly property int batch: 50 ///< sales that are read at once
    signal left

    function lineOf(sale) {
        const isOne = sale["ticketCount"] === 1
        return {
            saleId: sale["id"],
            time: Qt.formatTime(sale["at"], Qt.DefaultLocaleShortDate),
            numbers: isOne ? sale["firstTicket"]
                           : sale["firstTicket"] + " – " + sale["lastTicket"],
            paid: sale["paidText"],
            isCash: sale["isCash"],
            reversal: sale["isReversed"] ? qsTr("taken back")
                    : sale["reversedCount"] > 0
                      ? qsTr("%1 of %2 taken back").arg(sale["reversedCount"])
                                                   .arg(sale["ticketCount"])
                      : ""
        }
    }
    function more() {
        for (const sale of root.desk.pastSales(lines.count, root.batch))
            lines["append"](root.lineOf(sale))
    }
    function select(id) {
        root.selectedSale = id
        root.sale = root.desk.pastSale(id)
        detail.selected = 0
    }
    /// Something happened to a sale: only its line changes.
    function refresh(id) {
        for (let i = 0; i < lines.count; ++i) {
            if (lines.get(i)["saleId"] === id)
                lines["set"](i, root.lineOf(root.desk.pastSale(id)))
        }
        root.sale = root.desk.pastSale(root.selectedSale)
    }
    function reload() {
        lines.clear()
        root.more()
        root.select(lines.count > 0 ? lines.get(0)["saleId"] : 0)
    }

    onVisibleChanged: if (visible) root.reload()
    Component.onCompleted: root.reload()

    Connections {
        target: root.desk
        function onSaleFinished() {
            root.reload()
        }
        function onSaleReversed(sale) {
            root.refresh(sale)
        }
        function onCopyPrinted() {
            root.refresh(root.selectedSale)
        }
    }
    ListModel {
        id: lines
    }
    Item {
        id: newest

        width: Math.floor(parent.width * 0.42)
        height: parent.height
        PanelButton {
            id: backButton

            objectName: "backButton"
            width: Theme.mm(11)
            iconSource: "qrc:/icons/back.svg"
            Accessible.name: qsTr("Back to the Z report")
            onClicked: root.left()
        }
        PlainText {
            id: listTitle

            anchors.left: backButton.right
            anchors.leftMargin: Theme.gap
            anchors.right: parent.right
            height: Math.max(Theme.touch, implicitHeight)
            text: qsTr("Sales of this shift")
            wrapMode: Text.Wrap
            font.pixelSize: Theme.mediumText
            font.weight: Font.DemiBold
        }
        ListView {
            id: list

            objectName: "pastSales"
            anchors.top: listTitle.bottom
            anchors.bottom: parent.bottom
            width: parent.width
            clip: true
            model: lines
            boundsBehavior: Flickable.StopAtBounds
            T.ScrollBar.vertical: ScrollMark {}
            onAtYEndChanged: if (atYEnd && lines.count > 0) root.more()
            delegate: PastSaleLine {
                required property double saleId

                width: list.width
                chosen: root.selectedSale === saleId
                onClicked: root.select(saleId)
            }
        }
    }
    Rectangle {
        anchors.left: newest.right
        anchors.right: parent.right
        height: parent.height
        color: Theme.surface
        PastSaleDetail {
            id: detail

            anchors.fill: parent
            visible: root.selectedSale > 0
            desk: root.desk
            papers: root.papers
            sale: root.sale
            isNewest: lines.count > 0 && lines.get(0)["saleId"] === root.selectedSale
        }
        EmptyText {
            objectName: "noSalesText"
            visible: lines.count === 0
            text: qsTr("Nothing was sold in this shift.")
        }
    }
}
