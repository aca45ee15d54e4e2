import QtQuick 2.15
import QtQuick.Templates 2.15 as T

/// Asks for an amount of money: what it is about at the left, the keys at the right. Nothing but its
/// two buttons closes it.
T.Popup {
    id: root

    property string title
    property string confirmText
    property bool danger: false
    property bool isConfirmable: true
    property double amount: 0 ///< in minor units
    default property alias facts: left.data
    signal confirmed

    function ask(amount) {
        root.amount = amount
        root.open()
    }

    parent: T.Overlay["overlay"] // qmllint reads no attached properties
    anchors.centerIn: parent
    width: Math.min(Theme.mm(160), parent ? parent.width - 4 * Theme.gap : Theme.mm(160))
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

            anchors.centerIn: parent
            width: parent.width - 6 * Theme.gap
            spacing: 2 * Theme.gap
            PlainText {
                objectName: "padTitle"
                width: parent.width
                text: root.title
                font.pixelSize: Theme.largeText
                font.weight: Font.DemiBold
                wrapMode: Text.Wrap
            }
            Item {
                width: parent.width
                height: Math.max(left.height, keys.height)
                Column {
                    id: left

                    anchors.left: parent.left
                    anchors.right: keys.left
                    anchors.rightMargin: 3 * Theme.gap
                    spacing: Theme.gap
                }
                NumberPad {
                    id: keys

                    anchors.right: parent.right
                    isAmount: true
                    digits: root.amount > 0 ? Number(root.amount).toFixed(0) : ""
                    onEdited: digits => root.amount = Number(digits)
                }
            }
            Row {
                anchors.right: parent.right
                spacing: Theme.gap
                PanelButton {
                    objectName: "padCancel"
                    text: qsTr("Cancel")
                    width: Math.max(Theme.mm(28), implicitWidth)
                    onClicked: root.close()
                }
                PanelButton {
                    objectName: "padConfirm"
                    text: root.confirmText
                    width: Math.max(Theme.mm(36), implicitWidth)
                    accent: !root.danger
                    danger: root.danger
                    enabled: root.isConfirmable
                    onClicked: {
                        root.close()
                        root.confirmed()
                    }
                }
            }
        }
    }
}
