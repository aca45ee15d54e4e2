import QtQml 2.15
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

    onPageChanged: toast.hide()
    title: terminal.operatorName === "" ? qsTr("Ticket terminal") : terminal.operatorName
    color: Theme.background

    Binding {
        target: Theme
        property: "night"
        value: root.terminal.night
    }
    Binding {
        target: root.terminal
        property: "fleetShown"
        value: root.page === "fleet"
    }
    Connections {
        target: root.terminal.desk
        function onRefused(reason) {
            toast.show(reason)
        }
    }

    StatusLine {
        id: status

        anchors.top: root.contentItem.top
        anchors.left: root.contentItem.left
        anchors.right: root.contentItem.right
        height: Theme.mm(10)
        trip: root.terminal.trip
        tiles: root.terminal.grid
        time: root.terminal.fleet.timeText
        faults: root.terminal.devices.faults
        night: root.terminal.night
        drivers: root.terminal.drivers
        demo: root.terminal.isDemo
        onDevicesRequested: root.page = "devices"
        onTripRequested: trips.ask(root.terminal.fleet.time)
        onNightRequested: night => root.terminal.night = night
    }
    Rectangle {
        anchors.fill: navigation
        color: Theme.surface
    }
    Column {
        id: navigation

        objectName: "navigation"
        anchors.top: status.bottom
        anchors.bottom: demoMark.top
        width: Theme.mm(18)
        NavButton {
            page: "sell"
            shownPage: root.page
            text: qsTr("Sell")
            iconSource: "qrc:/icons/sell.svg"
            onClicked: root.page = page
        }
        NavButton {
            page: "products"
            shownPage: root.page
            text: qsTr("Products")
            iconSource: "qrc:/icons/products.svg"
            onClicked: root.page = page
        }
        NavButton {
            page: "zreport"
            shownPage: root.page === "sales" ? page : root.page // that page is part of it
            text: qsTr("Z report")
            iconSource: "qrc:/icons/zreport.svg"
            onClicked: root.page = page
        }
        NavButton {
            page: "fleet"
            shownPage: root.page
            text: qsTr("Fleet")
            iconSource: "qrc:/icons/fleet.svg"
            onClicked: root.page = page
        }
        NavButton {
            page: "devices"
            shownPage: root.page
            text: qsTr("Devices")
            iconSource: "qrc:/icons/devices.svg"
            alerts: root.terminal.devices.faults
            onClicked: root.page = page
        }
        NavButton {
            page: "settings"
            shownPage: root.page
            text: qsTr("Settings")
            iconSource: "qrc:/icons/settings.svg"
            onClicked: root.page = page
        }
    }
    Rectangle {
        id: demoMark

        anchors.left: root.contentItem.left
        anchors.bottom: root.contentItem.bottom
        width: navigation.width
        height: root.terminal.isDemo ? demoText.implicitHeight : 0
        visible: root.terminal.isDemo
        color: Theme.warning
        PlainText {
            id: demoText

            objectName: "demoText"
            anchors.fill: parent
            horizontalAlignment: Text.AlignHCenter
            text: qsTr("DEMO")
            font.pixelSize: Theme.smallText
            font.weight: Font.Bold
            color: Theme.surface
        }
    }
    Item {
        anchors.top: status.bottom
        anchors.bottom: root.contentItem.bottom
        anchors.left: navigation.right
        anchors.right: root.contentItem.right

        PageLoader {
            shown: root.page === "sell"
            sourceComponent: SellPage {
                grid: root.terminal.grid
                tiles: root.terminal.tiles
                tickets: root.terminal.basket
                desk: root.terminal.desk
                offers: root.terminal.offers
                presentation: root.terminal.presentation
            }
        }
        PageLoader {
            shown: root.page === "products"
            sourceComponent: ProductsPage {
                fareProducts: root.terminal.fareProducts
                catalogue: root.terminal.catalogue
                presentation: root.terminal.presentation
            }
        }
        PageLoader {
            shown: root.page === "zreport"
            sourceComponent: ZReportPage {
                desk: root.terminal.desk
                papers: root.terminal.papers
                runningShift: root.terminal.runningShift
                closedShifts: root.terminal.closedShifts
                presentation: root.terminal.presentation
                onSalesRequested: root.page = "sales"
            }
        }
        PageLoader {
            shown: root.page === "sales"
            sourceComponent: PastSalesPage {
                desk: root.terminal.desk
                papers: root.terminal.papers
                onLeft: root.page = "zreport"
            }
        }
        PageLoader {
            shown: root.page === "fleet"
            sourceComponent: FleetPage {
                fleet: root.terminal.fleet
                vehicles: root.terminal.vehicles
                trip: root.terminal.trip.context
                demo: root.terminal.isDemo
                presentation: root.terminal.presentation
            }
        }
        PageLoader {
            shown: root.page === "devices"
            sourceComponent: DevicesPage {
                peripherals: root.terminal.peripherals
                desk: root.terminal.devices
                demo: root.terminal.isDemo
                presentation: root.terminal.presentation
            }
        }
        PageLoader {
            shown: root.page === "settings"
            sourceComponent: SettingsPage {
                tiles: root.terminal.grid
                sounds: root.terminal.sounds
                night: root.terminal.night
                operatorName: root.terminal.operatorName
                journalFile: root.terminal.journalFile
                onNightRequested: night => root.terminal.night = night
            }
        }
    }
    Toast {
        id: toast

        objectName: "toast"
        anchors.horizontalCenter: root.contentItem.horizontalCenter
        anchors.bottom: root.contentItem.bottom
        anchors.bottomMargin: 2 * Theme.gap
    }
    TripPopup {
        id: trips

        trip: root.terminal.trip
    }
    SignInPanel {
        drivers: root.terminal.drivers
    }
}
