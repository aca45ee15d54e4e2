import QtQuick 2.15

/// A page that is made when it is first shown, and kept.
Loader {
    property bool shown: false

    anchors.fill: parent
    visible: shown
    active: false
    onShownChanged: if (shown) active = true
    Component.onCompleted: if (shown) active = true
}
