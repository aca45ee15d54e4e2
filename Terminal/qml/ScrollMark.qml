import QtQuick 2.15
import QtQuick.Templates 2.15 as T

/// Shows that there is more, and where one is; scrolling is done on the list itself.
T.ScrollBar {
    implicitWidth: Theme.mm(1)
    interactive: false
    visible: size < 1
    contentItem: Rectangle {
        radius: width / 2
        color: Theme.inertInk
    }
}
