import QtQml 2.15
import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import Rivo.Terminal 1.0

/// The running shift, and beside it those that are closed.
Item {
    id: root

    required property SalesDesk desk
    required property PaperDesk papers
    required property QtObject runningShift ///< a model of one row, or of none
    required property QtObject closedShifts ///< a model
    required property Presentation presentation
    property string closedNumber
    signal salesRequested

    /// A shift is closed whether its report can be printed or not; it can be printed later, too.
    function closeShift() {
        if (!root.desk.closeShift())
            return
        reporting.ask(Number(root.closedNumber))
        reporting.printNow()
    }

    Connections {
        target: root.desk
        function onShiftClosed(zNumber) {
            root.closedNumber = zNumber.toFixed(0)
        }
    }
    Item {
        id: running

        anchors.left: parent.left
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        width: Math.floor(parent.width * 0.58)
        Repeater {
            id: shifts

            model: root.runningShift
            RunningShift {
                objectName: "runningShift"
                anchors.fill: parent
                desk: root.desk
                presentation: root.presentation
                closedNumber: root.closedNumber
                onFloatRequested: amount => floating.ask(amount)
                onSalesRequested: root.salesRequested()
                onFiguresRequested: reporting.ask(0)
                onCloseRequested: {
                    closing.question = qsTr("Close shift %1?").arg(number)
                    closing.consequence = consequence
                    closing.open()
                }
            }
        }
        EmptyText {
            objectName: "noShiftText"
            visible: shifts.count === 0
            text: root.desk.obstacle
            color: Theme.error
            font.pixelSize: Theme.largeText
            font.weight: Font.DemiBold
        }
    }
    Rectangle {
        anchors.left: running.right
        anchors.right: parent.right
        height: parent.height
        color: Theme.surface
        PlainText {
            id: title

            x: 2 * Theme.gap
            width: parent.width - 2 * x
            height: Theme.touch
            text: qsTr("Closed shifts")
            font.pixelSize: Theme.normalText
            fontSizeMode: Text.HorizontalFit
            minimumPixelSize: Theme.mediumText
            font.weight: Font.DemiBold
        }
        ListView {
            id: closed

            objectName: "closedShifts"
            anchors.top: title.bottom
            anchors.bottom: parent.bottom
            width: parent.width
            clip: true
            model: root.closedShifts
            boundsBehavior: Flickable.StopAtBounds
            T.ScrollBar.vertical: ScrollMark {}
            delegate: ClosedShift {
                width: closed.width
                desk: root.desk
                presentation: root.presentation
                onHandOverRequested: handingOver.askFor(zNumberData)
                onReportRequested: reporting.ask(zNumberData)
            }
            EmptyText {
                visible: closed.count === 0
                text: qsTr("No shift has been closed yet.")
            }
        }
        Rectangle {
            width: Theme.thinLine
            height: parent.height
            color: Theme.line
        }
    }
    Confirmation {
        id: closing

        objectName: "closeConfirmation"
        confirmText: qsTr("Close shift")
        onConfirmed: root.closeShift()
    }
    ReportPopup {
        id: reporting

        desk: root.desk
        papers: root.papers
    }
    HandOverPad {
        id: handingOver

        objectName: "handOverPad"
        desk: root.desk
    }
    FloatPad {
        id: floating

        objectName: "floatPad"
        desk: root.desk
    }
}
