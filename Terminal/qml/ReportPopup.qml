import QtQml 2.15
import QtQuick 2.15
import Rivo.Terminal 1.0

/// The paper of a report: the figures of the running shift, or those of a closed one.
PaperPopup {
    id: root

    required property SalesDesk desk
    property double zNumber: 0 ///< 0 = the running shift

    function ask(zNumber) {
        root.zNumber = zNumber
        root.showReport(zNumber)
    }
    /// What is on the screen then is what is printed.
    function printNow() {
        root.showReport(root.zNumber)
        root.say(qsTr("Being printed"), false)
        root.desk.printReport(root.zNumber)
    }

    isPrintable: true
    onPrintRequested: root.printNow()

    Connections {
        target: root.desk
        enabled: root.visible
        function onReportPrinted() {
            root.say(qsTr("Printed"), false)
        }
        function onRefused(reason) {
            root.say(reason, true)
        }
    }
}
