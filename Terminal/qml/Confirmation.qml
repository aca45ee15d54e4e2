import QtQuick 2.15
import QtQuick.Templates 2.15 as T

/// Asks before something that cannot be taken back. Nothing but its two buttons closes it.
T.Popup {
    id: root

    property string question
    property string consequence
    property string confirmText
    signal confirmed

    parent: T.Overlay["overlay"] // qmllint reads no attached properties
    anchors.centerIn: parent
    width: Math.min(Theme.mm(120), parent ? parent.width - 4 * Theme.gap : Theme.mm(120))
    height: column.implicitHeight + 6 * Theme.gap
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
                width: parent.width
                text: root.question
                font.pixelSize: Theme.largeText
                font.weight: Font.DemiBold
                wrapMode: Text.Wrap
            }
            PlainText {
                width: parent.width
                visible: text !== ""
                text: root.consequence
                color: Theme.mutedText
                wrapMode: Text.Wrap
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
                    objectName: "confirmButton"
                    text: root.confirmText
                    width: Math.max(Theme.mm(28), implicitWidth)
                    danger: true
                    onClicked: {
                        root.close()
                        root.confirmed()
                    }
                }
            }
        }
    }
}
