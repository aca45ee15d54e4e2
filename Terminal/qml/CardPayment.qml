import QtQuick 2.15
import Rivo.Terminal 1.0

/// What the card terminal is doing with a payment, and how the driver can end it.
Rectangle {
    id: root

    required property CardDesk card
    readonly property bool isResult: !card.busy && card.result !== ""

    height: column.height + 2 * Theme.gap
    radius: Theme.radius
    color: Theme.raised
    visible: card.busy || isResult

    Column {
        id: column

        x: Theme.gap
        y: Theme.gap
        width: parent.width - 2 * x
        spacing: Theme.gap
        PlainText {
            width: parent.width
            visible: root.isResult
            text: qsTr("Not paid")
            font.pixelSize: Theme.largeText
            font.weight: Font.Bold
            color: Theme.error
        }
        PlainText {
            objectName: "cardStatus"
            width: parent.width
            text: root.isResult ? root.card.result : root.card.statusText
            wrapMode: Text.Wrap
            elide: Text.ElideNone
            maximumLineCount: 4
            font.weight: Font.DemiBold
        }
        PanelButton {
            objectName: "abortCard"
            width: parent.width
            visible: root.card.mayAbort
            text: qsTr("Stop payment")
            onClicked: root.card.abort()
        }
        PanelButton {
            objectName: "releaseCard"
            width: parent.width
            visible: root.card.mayRelease
            text: qsTr("Do not wait")
            onClicked: releasing.open()
        }
        PanelButton {
            objectName: "forgetCard"
            width: parent.width
            visible: root.isResult
            text: qsTr("OK")
            onClicked: root.card.forgetResult()
        }
    }
    Confirmation {
        id: releasing

        objectName: "releaseConfirmation"
        question: qsTr("Go on without knowing whether the card was charged?")
        consequence: qsTr("If it was, the card terminal gives the money back.")
        confirmText: qsTr("Go on")
        onConfirmed: root.card.release()
    }
}
