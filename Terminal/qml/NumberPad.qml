import QtQuick 2.15

/// Ten keys for a number, one to erase the last digit, and "00" for amounts.
Grid {
    id: root

    required property string digits
    property int most: 9 ///< digits
    property bool isAmount: false ///< has "00", and no zeros in front
    property int keyWidth: Theme.mm(12.5)
    signal edited(string digits)

    function press(key) {
        const all = root.digits + key
        root.edited((root.isAmount ? all.replace(/^0+/, "") : all).slice(0, root.most))
    }

    columns: 3
    spacing: Theme.gap

    Repeater {
        model: 9
        PanelButton {
            required property int index

            objectName: "key-" + text
            width: root.keyWidth
            text: index + 1
            onClicked: root.press(text)
        }
    }
    PanelButton {
        objectName: "eraseKey"
        width: root.keyWidth
        enabled: root.digits !== ""
        iconSource: "qrc:/icons/back.svg"
        Accessible.name: qsTr("Erase the last digit")
        onClicked: root.edited(root.digits["slice"](0, -1))
    }
    PanelButton {
        objectName: "key-0"
        width: root.keyWidth
        text: "0"
        onClicked: root.press(text)
    }
    PanelButton {
        objectName: "key-00"
        width: root.keyWidth
        opacity: root.isAmount ? 1 : 0 // keeps its place
        enabled: root.isAmount
        text: "00"
        onClicked: root.press(text)
    }
}
