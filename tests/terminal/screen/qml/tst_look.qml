import QtQuick 2.15
import Rivo.SellingTest 1.0

ScreenCase {
    id: test

    name: "Look"

    function test_everyPageIsReached() {
        Harness.open("coast-line", "sell")
        const marks = [["products", "productLines"], ["zreport", "closedShifts"],
                       ["fleet", "map"], ["devices", "deviceCards"],
                       ["settings", "nightSwitch"], ["sell", "grid"]]
        for (const [page, mark] of marks) {
            test.compare(Harness.countOf(mark), 0, page + " is not shown yet")
            test.tap("nav-" + page)
            test.tryVerify(() => Harness.countOf(mark) === 1, 5000, page)
            for (const [, other] of marks)
                test.compare(Harness.countOf(other), other === mark ? 1 : 0, page + ": " + other)
        }
    }

    function test_settingsSayWhereTheLogIs() {
        Harness.open("coast-line", "settings")
        test.tryVerify(() => Harness.countOf("logNote") === 1)
        for (const name of ["logging.conf", "--verbose"])
            test.verify(Harness.textOf("logNote").includes(name), name)
    }

    function test_nightColours() {
        Harness.open("coast-line", "sell")
        test.compare(Harness.background(), "#eef1f4")
        test.tap("nightButton")
        test.tryVerify(() => Harness.background() === Qt.rgba(14 / 255, 18 / 255, 22 / 255, 1))
        test.tap("nightButton")
        test.compare(Harness.background(), "#eef1f4")
        Harness.setNight(true)
        test.compare(Harness.background(), "#0e1216")
    }
}
