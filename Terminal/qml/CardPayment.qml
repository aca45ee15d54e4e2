import QtQuick 2.15
import Rivo.Terminal 1.0

/// What the card terminal is doing with a payment, and how the driver can end it; then why it was
/// not paid, until that is tapped.
Rectangle {
    id: root

    required property CardDesk card
    readonly property bool isResult: !card.busy && card.result !== ""

    height: column.height + 2 * Theme.gap
    radius: Theme.radius
    color: Theme.background
    border.width: isResult ? 2 : 0
    border.color: Theme.error
    visible: card.busy || isResult

    TapHandler {
        enabled: root.isResult
        onTapped: root.card.forgetResult()
    }
    Column {
        id: column

        x: Theme.gap
        y: Theme.gap
        width: parent.width - 2 * x
        spacing: Theme.gap
        PlainText {
            objectName: "cardStatus"
            width: parent.width
            text: root.isResult ? qsTr("Not paid: %1").arg(root.card.result)
                                : root.card.statusText
            wrapMode: Text.Wrap
            elide: Text.ElideNone
            font.pixelSize: Theme.smallText
            font.weight: Font.DemiBold
            color: root.isResult ? Theme.error : Theme.text
        }
        PanelButton {
            objectName: "abortCard"
            width: parent.width
            visible: root.card.mayAbort
            text: qsTr("Stop")
            onClicked: root.card.abort()
        }
        PanelButton {
            objectName: "releaseCard"
            width: parent.width
            visible: root.card.mayRelease
            text: qsTr("Go on")
            onClicked: releasing.open()
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
