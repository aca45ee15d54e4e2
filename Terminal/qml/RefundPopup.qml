import QtQuick 2.15
import QtQuick.Templates 2.15 as T

/// Asks for the reason of a refund, and whether it is one ticket or all that are left of the sale.
T.Popup {
    id: root

    property string ticketText
    property string priceText
    property int remaining: 1 ///< tickets of the sale that were not taken back
    property bool isWhole: false
    property int reason: -1
    readonly property var reasons: [qsTr("Wrong ticket"), qsTr("Badly printed"),
                                    qsTr("Ride cancelled"), qsTr("Other reason")]
    signal confirmed(bool isWhole, string reason)

    function ask() {
        root.isWhole = false
        root.reason = -1
        root.open()
    }

    parent: T.Overlay["overlay"] // qmllint reads no attached properties
    anchors.centerIn: parent
    width: Math.min(Theme.mm(146), parent ? parent.width - 2 * Theme.gap : Theme.mm(146))
    height: column.height + 5 * Theme.gap
    modal: true
    closePolicy: T.Popup.NoAutoClose
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
        Column {
            id: column

            readonly property real half: Math.floor((width - Theme.gap) / 2)

            anchors.centerIn: parent
            width: parent.width - 5 * Theme.gap
            spacing: 1.5 * Theme.gap
            PlainText {
                objectName: "refundQuestion"
                width: parent.width
                text: root.isWhole ? qsTr("Refund %n ticket(s)?", "", root.remaining)
                                   : qsTr("Refund ticket %1, %2?").arg(root.ticketText)
                                                                  .arg(root.priceText)
                font.pixelSize: Theme.largeText
                font.weight: Font.DemiBold
                wrapMode: Text.Wrap
            }
            Row {
                spacing: Theme.gap
                visible: root.remaining > 1
                PanelButton {
                    objectName: "refundOne"
                    width: column.half
                    text: qsTr("This ticket")
                    chosen: !root.isWhole
                    onClicked: root.isWhole = false
                }
                PanelButton {
                    objectName: "refundAll"
                    width: column.half
                    text: qsTr("All %n ticket(s)", "", root.remaining)
                    chosen: root.isWhole
                    onClicked: root.isWhole = true
                }
            }
            PlainText {
                text: qsTr("Reason")
                font.pixelSize: Theme.smallText
                color: Theme.mutedText
            }
            Grid {
                columns: 2
                spacing: Theme.gap
                Repeater {
                    model: root.reasons
                    PanelButton {
                        required property int index
                        required property string modelData

                        objectName: "reason-" + index
                        width: column.half
                        text: modelData
                        chosen: root.reason === index
                        onClicked: root.reason = index
                    }
                }
            }
            Row {
                anchors.right: parent.right
                spacing: Theme.gap
                PanelButton {
                    objectName: "cancelButton"
                    text: qsTr("Cancel")
                    width: Math.max(Theme.mm(28), implicitWidth)
                    onClicked: root.close()
                }
                PanelButton {
                    objectName: "confirmRefund"
                    text: qsTr("Refund")
                    width: Math.max(Theme.mm(28), implicitWidth)
                    danger: true
                    enabled: root.reason >= 0
                    onClicked: {
                        root.close()
                        root.confirmed(root.isWhole, root.reasons[root.reason])
                    }
                }
            }
        }
    }
}
