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
    width: Math.min(460, parent ? parent.width - 40 : 460)
    height: column.implicitHeight + 40
    modal: true
    closePolicy: T.Popup.NoAutoClose
    T.Overlay.modal: Rectangle {
        color: "#99000000"
    }
    background: Rectangle {
        radius: Theme.radius
        color: Theme.surface
        border.color: Theme.line
    }
    contentItem: Item {
        Column {
            id: column

            anchors.centerIn: parent
            width: parent.width - 40
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
                    width: 140
                    onClicked: root.close()
                }
                PanelButton {
                    objectName: "confirmButton"
                    text: root.confirmText
                    width: Math.max(140, implicitWidth)
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
