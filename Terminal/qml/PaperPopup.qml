import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import Rivo.Terminal 1.0

/// The paper of a ticket as it was printed, or of a report, which can be printed here.
T.Popup {
    id: root

    required property PaperDesk papers
    property bool isPrintable: false
    property string notice ///< what became of printing
    property bool isTrouble: false ///< the notice is about a failure
    signal printRequested

    function show(ticket) {
        root.showPaper(root.papers.ofTicket(ticket))
    }
    /// A closed shift by its number; 0 is the running one at this moment.
    function showReport(zNumber) {
        root.showPaper(root.papers.ofReport(zNumber))
    }
    function showPaper(source) {
        root.notice = ""
        paper.source = source
        scrolled.contentY = 0
        root.open()
    }
    function say(notice, isTrouble) {
        root.notice = notice
        root.isTrouble = isTrouble
    }

    objectName: "paperPopup"
    parent: T.Overlay["overlay"] // qmllint reads no attached properties
    anchors.centerIn: parent
    width: Math.max(paper.width, buttons.implicitWidth) + 6 * Theme.gap
    height: Math.min(parent ? parent.height - 2 * Theme.gap : 0,
                     paper.height + noticeText.height + buttons.height + 5 * Theme.gap)
    modal: true
    T.Overlay.modal: Rectangle {
        color: "#99000000"
    }
    background: Rectangle {
        radius: Theme.radius
        color: Theme.surface
        border.width: Theme.thinLine
        border.color: Theme.line
    }
    contentItem: Item {
        Flickable {
            id: scrolled

            objectName: "paperScroll"
            anchors.top: parent.top
            anchors.topMargin: Theme.gap
            anchors.bottom: noticeText.top
            anchors.bottomMargin: Theme.gap
            anchors.horizontalCenter: parent.horizontalCenter
            width: paper.width + 2 * Theme.gap
            contentWidth: paper.width
            contentHeight: paper.height
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            T.ScrollBar.vertical: ScrollMark {}
            Image {
                id: paper

                objectName: "paper"
                asynchronous: false
                cache: false
            }
        }
        PlainText {
            id: noticeText

            objectName: "paperNotice"
            anchors.bottom: buttons.top
            anchors.bottomMargin: root.notice === "" ? 0 : Theme.gap
            anchors.horizontalCenter: parent.horizontalCenter
            width: paper.width
            height: root.notice === "" ? 0 : implicitHeight
            text: root.notice
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignHCenter
            font.weight: Font.DemiBold
            color: root.isTrouble ? Theme.error : Theme.ok
        }
        Row {
            id: buttons

            anchors.bottom: parent.bottom
            anchors.bottomMargin: Theme.gap
            anchors.horizontalCenter: parent.horizontalCenter
            spacing: Theme.gap
            PanelButton {
                objectName: "printReport"
                visible: root.isPrintable
                width: Math.max(Theme.mm(40), implicitWidth)
                text: qsTr("Print")
                iconSource: "qrc:/icons/printer.svg"
                onClicked: root.printRequested()
            }
            PanelButton {
                objectName: "closePaper"
                width: Math.max(Theme.mm(40), implicitWidth)
                text: qsTr("Close", "what was opened")
                onClicked: root.close()
            }
        }
    }
}
