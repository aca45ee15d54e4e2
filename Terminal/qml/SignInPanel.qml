import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import Rivo.Terminal 1.0

/// Covers the whole screen until a driver has given number and PIN, also the panels that were open.
T.Popup {
    id: root

    required property DriverDesk drivers
    property bool isOther: false ///< another driver than the one who locked
    property string number
    property string pin
    property bool isPinNext: false ///< keys go to the PIN
    property string refusal
    readonly property bool isKnown: drivers.signedIn && !isOther

    function enter() {
        const given = root.pin
        root.pin = ""
        if (root.isKnown)
            root.drivers.unlock(given)
        else
            root.drivers.signIn(root.number, given)
    }
    function reset() {
        root.number = ""
        root.pin = ""
        root.refusal = ""
        root.isOther = false
        root.isPinNext = root.drivers.signedIn
    }

    objectName: "signInPanel"
    parent: T.Overlay["overlay"] // qmllint reads no attached properties
    width: parent ? parent.width : 0
    height: parent ? parent.height : 0
    modal: true
    closePolicy: T.Popup.NoAutoClose
    visible: drivers.locked
    z: 1
    onAboutToShow: root.reset()

    Connections {
        target: root.drivers
        function onRefused(reason) {
            root.refusal = reason
        }
    }
    background: Rectangle {
        color: Theme.background
    }
    contentItem: Item {
        Row {
            anchors.centerIn: parent
            spacing: 5 * Theme.gap
            Column {
                width: Math.min(Theme.mm(80), root.width - keys.width - 10 * Theme.gap)
                spacing: 2 * Theme.gap
                PlainText {
                    objectName: "signInTitle"
                    width: parent.width
                    text: root.isKnown ? qsTr("Locked: %1").arg(root.drivers.name) : qsTr("Sign in")
                    wrapMode: Text.Wrap
                    maximumLineCount: 2
                    font.pixelSize: Theme.largeText
                    font.weight: Font.DemiBold
                }
                EntryField {
                    objectName: "numberField"
                    width: parent.width
                    visible: !root.isKnown
                    label: qsTr("Driver number")
                    value: root.number
                    chosen: !root.isPinNext
                    onClicked: root.isPinNext = false
                }
                EntryField {
                    objectName: "pinField"
                    width: parent.width
                    label: qsTr("PIN")
                    value: "●".repeat(root.pin.length)
                    chosen: root.isPinNext
                    onClicked: root.isPinNext = true
                }
                PlainText {
                    objectName: "signInRefusal"
                    width: parent.width
                    height: 3.6 * Theme.normalText
                    text: root.refusal
                    wrapMode: Text.Wrap
                    maximumLineCount: 3
                    color: Theme.error
                    font.weight: Font.DemiBold
                }
                PanelButton {
                    objectName: "otherDriver"
                    width: parent.width
                    visible: root.isKnown
                    text: qsTr("Other driver")
                    onClicked: {
                        root.isOther = true
                        root.isPinNext = false
                        root.pin = ""
                    }
                }
            }
            Column {
                spacing: 2 * Theme.gap
                NumberPad {
                    id: keys

                    digits: root.isPinNext ? root.pin : root.number
                    most: root.isPinNext ? 16 : 9
                    onEdited: digits => {
                        if (root.isPinNext)
                            root.pin = digits
                        else
                            root.number = digits
                    }
                }
                PanelButton {
                    objectName: "signInButton"
                    width: keys.width
                    height: Theme.mm(11)
                    accent: true
                    text: !root.isPinNext ? qsTr("PIN") : root.isKnown ? qsTr("Unlock") : qsTr("Sign in")
                    enabled: root.isPinNext ? root.pin !== "" && (root.isKnown || root.number !== "")
                                            : root.number !== ""
                    onClicked: {
                        if (root.isPinNext)
                            root.enter()
                        else
                            root.isPinNext = true
                    }
                }
            }
        }
    }
}
