import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import Rivo.GuiCore 1.0
import Rivo.Terminal 1.0

/// How the screen looks, what is logged, and what this terminal is. Nothing here can stop sales.
Flickable {
    id: root

    required property PassengerTypesModel tiles
    required property Sounds sounds
    required property bool night
    required property string operatorName
    required property string journalFile
    signal nightRequested(bool night)

    contentHeight: panels.height + 4 * Theme.gap
    clip: true
    boundsBehavior: Flickable.StopAtBounds
    T.ScrollBar.vertical: ScrollMark {}

    Flow {
        id: panels

        readonly property int columns: Math.max(1, Math.floor(width / Theme.mm(58)))
        readonly property int columnWidth: Math.floor((width - (columns - 1) * spacing) / columns)

        x: 2 * Theme.gap
        y: 2 * Theme.gap
        width: root.width - 4 * Theme.gap
        spacing: 2 * Theme.gap

        Panel {
            width: panels.columnWidth
            title: qsTr("Screen")
            SettingSwitch {
                objectName: "nightSwitch"
                width: parent.width
                text: qsTr("Night colours")
                hint: qsTr("Light text on dark ground, for driving in the dark")
                checked: root.night
                onToggled: root.nightRequested(checked)
            }
            SettingSwitch {
                objectName: "soundSwitch"
                width: parent.width
                text: qsTr("Sounds")
                hint: qsTr("For taps, payments and what is refused")
                checked: root.sounds.on
                onToggled: root.sounds.on = checked
            }
        }
        Panel {
            width: panels.columnWidth
            title: qsTr("This terminal")
            Fact {
                width: parent.width
                label: qsTr("Operator")
                value: root.operatorName
            }
            Fact {
                width: parent.width
                label: qsTr("Language")
                value: qsTr("English", "name of the language of these texts")
            }
            Fact {
                width: parent.width
                label: qsTr("Version of terminal and library")
                value: Qt.application.version
            }
            Fact {
                width: parent.width
                label: qsTr("Sales journal")
                value: root.journalFile
            }
        }
        Panel {
            width: panels.columnWidth
            title: qsTr("Log")
            SettingSwitch {
                objectName: "logSwitch"
                width: parent.width
                text: qsTr("Layout of the tiles")
                hint: qsTr("Puts the tiles in order anew, and writes down how")
                checked: root.tiles.logFareProducts
                onToggled: root.tiles.logFareProducts = checked
            }
            SettingSwitch {
                objectName: "extraLogSwitch"
                width: parent.width
                text: qsTr("Extra diagnostics")
                hint: qsTr("Only if the support asks for it")
                checked: root.tiles.logExtraFareProducts
                onToggled: root.tiles.logExtraFareProducts = checked
            }
            PlainText {
                objectName: "logNote"
                width: parent.width
                text: qsTr("The log is written where logging.conf says, and shown with --verbose.")
                wrapMode: Text.Wrap
                font.pixelSize: Theme.smallText
                color: Theme.mutedText
            }
        }
    }
}
