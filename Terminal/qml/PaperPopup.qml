import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import Rivo.Terminal 1.0

/// The paper of a ticket as it was printed.
T.Popup {
    id: root

    required property PaperDesk papers

    function show(ticket) {
        paper.source = root.papers.ofTicket(ticket)
        scrolled.contentY = 0
        root.open()
    }

    objectName: "paperPopup"
    parent: T.Overlay["overlay"] // qmllint reads no attached properties
    anchors.centerIn: parent
    width: Math.max(paper.width, closeButton.width) + 6 * Theme.gap
    height: Math.min(parent ? parent.height - 2 * Theme.gap : paper.height,
                     paper.height + closeButton.height + 4 * Theme.gap)
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
            anchors.bottom: closeButton.top
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
        PanelButton {
            id: closeButton

            objectName: "closePaper"
            anchors.bottom: parent.bottom
            anchors.bottomMargin: Theme.gap
            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.max(Theme.mm(40), implicitWidth)
            text: qsTr("Close", "what was opened")
            onClicked: root.close()
        }
    }
}
