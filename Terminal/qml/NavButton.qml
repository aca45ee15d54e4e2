import QtQuick 2.15
import QtQuick.Templates 2.15 as T

/// One entry of the navigation: icon above its name, with a count of what needs attention.
T.AbstractButton {
    id: root

    property string page ///< that it leads to
    property string shownPage
    property url iconSource
    property int alerts: 0

    objectName: "nav-" + root.page
    width: parent.width
    height: parent.height / 6
    focusPolicy: Qt.NoFocus
    checked: root.shownPage === root.page
    checkable: true
    autoExclusive: true
    Accessible.name: root.text

    background: Rectangle {
        color: root.checked ? Theme.accent : root.down ? Theme.raised : "transparent"
    }
    contentItem: Item {
        Column {
            anchors.centerIn: parent
            spacing: Theme.mm(0.3)
            Icon {
                anchors.horizontalCenter: parent.horizontalCenter
                source: root.iconSource
                size: Theme.mm(5.2)
                ink: root.checked ? Theme.accentInk : Theme.text
            }
            PlainText {
                width: root.width - Theme.gap
                horizontalAlignment: Text.AlignHCenter
                text: root.text
                font.pixelSize: Theme.smallText
                color: root.checked ? Theme.accentInk : Theme.text
            }
        }
        Badge {
            anchors.right: parent.right
            anchors.top: parent.top
            anchors.margins: Theme.mm(0.6)
            count: root.alerts
            color: Theme.error
            textColor: Theme.errorInk
        }
    }
}
