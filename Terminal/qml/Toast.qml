import QtQml 2.15
import QtQuick 2.15

/// Says for a few seconds why something was refused.
Rectangle {
    id: root

    function show(message) {
        label.text = message
        opacity = 1
        timer.restart()
    }

    function hide() {
        opacity = 0
    }

    width: Math.min(parent.width - 4 * Theme.gap, label.implicitWidth + 4 * Theme.gap)
    height: Math.max(Theme.touch, label.implicitHeight + 2 * Theme.gap)
    radius: Theme.radius
    color: Theme.error
    opacity: 0
    visible: opacity > 0
    z: 10
    Behavior on opacity {
        NumberAnimation { duration: 120 }
    }
    Timer {
        id: timer

        interval: 4000
        onTriggered: root.hide()
    }
    PlainText {
        id: label

        objectName: "toastText"
        anchors.centerIn: parent
        width: Math.min(implicitWidth, root.parent.width - 8 * Theme.gap)
        wrapMode: Text.Wrap
        maximumLineCount: 4
        color: Theme.errorInk
        font.weight: Font.DemiBold
    }
}
