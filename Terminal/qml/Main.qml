import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import QtQuick.Window 2.15
import Rivo.Terminal 1.0
import "."

/// The window of the terminal: status line on top, navigation at the left, one page.
T.ApplicationWindow {
    id: root

    required property Terminal terminal
    property string page: "sell"

    readonly property var pages: [
        { name: "sell", text: qsTr("Sell"), icon: "qrc:/icons/sell.svg" },
        { name: "products", text: qsTr("Products"), icon: "qrc:/icons/products.svg" },
        { name: "zreport", text: qsTr("Z report"), icon: "qrc:/icons/zreport.svg" },
        { name: "fleet", text: qsTr("Fleet"), icon: "qrc:/icons/fleet.svg" },
        { name: "devices", text: qsTr("Devices"), icon: "qrc:/icons/devices.svg" },
        { name: "settings", text: qsTr("Settings"), icon: "qrc:/icons/settings.svg" }
    ]

    title: terminal.operatorName === "" ? qsTr("Ticket terminal") : terminal.operatorName
    color: Theme.background

    Binding {
        target: Theme
        property: "night"
        value: root.terminal.night
    }
    Connections {
        target: root.terminal.desk
        function onRefused(reason) {
            toast.show(reason)
        }
    }

    StatusLine {
        id: status

        anchors.top: parent.top
        anchors.left: parent.left
        anchors.right: parent.right
        height: 52
        terminal: root.terminal
        onDevicesRequested: root.page = "devices"
    }
    Rectangle {
        anchors.fill: navigation
        color: Theme.surface
    }
    Column {
        id: navigation

        objectName: "navigation"
        anchors.top: status.bottom
        anchors.bottom: parent.bottom
        width: root.width < 900 ? 76 : 92
        Repeater {
            model: root.pages
            NavButton {
                required property var modelData

                objectName: "nav-" + modelData.name
                width: navigation.width
                height: navigation.height / root.pages.length
                text: modelData.text
                iconSource: modelData.icon
                alerts: modelData.name === "devices" ? root.terminal.devices.faults : 0
                checked: root.page === modelData.name
                onClicked: root.page = modelData.name
            }
        }
    }
    Item {
        anchors.top: status.bottom
        anchors.bottom: parent.bottom
        anchors.left: navigation.right
        anchors.right: parent.right

        PageLoader {
            shown: root.page === "sell"
            sourceComponent: SellPage { terminal: root.terminal }
        }
        PageLoader {
            shown: root.page === "products"
            sourceComponent: ProductsPage { terminal: root.terminal }
        }
        PageLoader {
            shown: root.page === "zreport"
            sourceComponent: ZReportPage { terminal: root.terminal }
        }
        PageLoader {
            shown: root.page === "fleet"
            sourceComponent: FleetPage { terminal: root.terminal }
        }
        PageLoader {
            shown: root.page === "devices"
            sourceComponent: DevicesPage { terminal: root.terminal }
        }
        PageLoader {
            shown: root.page === "settings"
            sourceComponent: SettingsPage { terminal: root.terminal }
        }
    }
    Toast {
        id: toast

        objectName: "toast"
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 20
    }
}
