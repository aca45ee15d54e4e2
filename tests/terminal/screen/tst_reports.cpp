#include "PageTest.h"

#include <QSignalSpy>
#include <QTranslator>

using rivo::sales::PrintJob;

/// X and Z reports by taps: on the screen and on paper.
class TestReports : public PageTest
{
    Q_OBJECT

private slots:
    void theFiguresAreShownAndPrinted();
    void theFiguresPrintedAreThoseOfTheMoment();
    void theFiguresAreShownWithoutAPrinter();
    void theFiguresOfAnUnusedShift();
    void aClosedShiftIsPrintedAndShown();
    void aShiftIsClosedWithoutAPrinter();
    void aClosedShiftIsPrintedAgain();
    void aPaidShiftIsPrinted();
    void aShiftOfTheBackOfficeHasNoPaper();
    void theDriverOfTheShiftIsNamed();
    void everyButtonHasRoomForItsText();
    void figuresCoverNothing();

private:
    void start() override { show(exampleFeed("coast-line"), "zreport"); }
    /// What came out of the printer last.
    PrintJob paper() { return m_shown->terminal().printer().lastPrinted().value_or(PrintJob()); }
    void closeShift();
    void closePaper();
};

void TestReports::closeShift()
{
    m_shown->tap("closeShiftButton");
    m_shown->tap("confirmButton");
    QTRY_COMPARE(m_shown->all("closePaper").size(), 1);
}

void TestReports::closePaper()
{
    m_shown->tap("closePaper");
    QTRY_COMPARE(m_shown->all("closePaper").size(), 0);
}

void TestReports::theFiguresAreShownAndPrinted()
{
    sell(2);
    m_shown->tap("figuresButton");
    QTRY_COMPARE(m_shown->all("paper").size(), 1);
    QCOMPARE(m_shown->item("paper")->property("status").toInt(), 1); // it is loaded
    QVERIFY(!paper().report);                                        // nothing but tickets so far
    m_shown->tap("printReport");
    QTRY_COMPARE(m_shown->text("paperNotice"), QString("Printed"));
    QVERIFY(paper().report);
    QCOMPARE(paper().report->ticketCount, 2);
    QVERIFY(!paper().report->closedAt.isValid());
    closePaper();
    QVERIFY(desk().add(0)); // the shift goes on
}

void TestReports::theFiguresPrintedAreThoseOfTheMoment()
{
    sell(1);
    m_shown->tap("figuresButton");
    QTRY_COMPARE(m_shown->all("paper").size(), 1);
    const QUrl before = m_shown->item("paper")->property("source").toUrl();
    sell(2);
    m_shown->tap("printReport");
    QTRY_COMPARE(m_shown->text("paperNotice"), QString("Printed"));
    QCOMPARE(paper().report->ticketCount, 3);
    QVERIFY(m_shown->item("paper")->property("source").toUrl() != before);
}

void TestReports::theFiguresAreShownWithoutAPrinter()
{
    sell(1);
    simulatedPrinter(m_shown->terminal()).setFault("Paper out");
    m_shown->tap("figuresButton");
    QTRY_COMPARE(m_shown->all("paper").size(), 1);
    m_shown->tap("printReport");
    QTRY_COMPARE(m_shown->text("paperNotice"),
                 QString("The ticket printer cannot print: Paper out"));
    QVERIFY(!m_shown->item("paperNotice")->property("truncated").toBool());
    QVERIFY(!paper().report);
}

void TestReports::theFiguresOfAnUnusedShift()
{
    m_shown->tap("figuresButton");
    m_shown->tap("printReport");
    QTRY_COMPARE(m_shown->text("paperNotice"), QString("Printed"));
    QCOMPARE(paper().report->ticketCount, 0);
}

void TestReports::aClosedShiftIsPrintedAndShown()
{
    sell(3);
    QSignalSpy printed(&desk(), &SalesDesk::reportPrinted);
    closeShift();
    QTRY_COMPARE(m_shown->text("paperNotice"), QString("Printed"));
    QCOMPARE(m_shown->item("paper")->property("status").toInt(), 1);
    QCOMPARE(printed.size(), 1);
    QVERIFY(paper().report->closedAt.isValid());
    QCOMPARE(paper().report->ticketCount, 3);
    closePaper();
    QCOMPARE(desk().xReport()["ticketCount"].toInt(), 0);
}

void TestReports::aShiftIsClosedWithoutAPrinter()
{
    sell(1);
    simulatedPrinter(m_shown->terminal()).setFault("Paper out");
    closeShift();
    QCOMPARE(m_shown->text("paperNotice"), QString("The ticket printer cannot print: Paper out"));
    QCOMPARE(m_shown->item("paper")->property("status").toInt(), 1);
    simulatedPrinter(m_shown->terminal()).setFault({});
    m_shown->tap("printReport");
    QTRY_COMPARE(m_shown->text("paperNotice"), QString("Printed"));
    QVERIFY(paper().report->closedAt.isValid());
}

void TestReports::aClosedShiftIsPrintedAgain()
{
    sell(1);
    const double shift = desk().xReport()["zNumber"].toDouble();
    QVERIFY(desk().closeShift());
    sell(2);
    m_shown->tap("reportButton");
    m_shown->tap("printReport");
    QTRY_COMPARE(m_shown->text("paperNotice"), QString("Printed"));
    QCOMPARE(static_cast<double>(paper().report->zNumber), shift);
    QCOMPARE(paper().report->ticketCount, 1);
}

void TestReports::aPaidShiftIsPrinted()
{
    sell(1);
    const double shift = desk().xReport()["zNumber"].toDouble();
    QVERIFY(desk().closeShift());
    QVERIFY(desk().handOverCounted(shift, 100));
    QTRY_COMPARE(m_shown->all("handOverButton").size(), 0);
    m_shown->tap("reportButton");
    m_shown->tap("printReport");
    QTRY_COMPARE(m_shown->text("paperNotice"), QString("Printed"));
    QCOMPARE(paper().report->counted, 100);
    QCOMPARE(paper().report->difference, -40);
}

void TestReports::aShiftOfTheBackOfficeHasNoPaper()
{
    QVERIFY(m_shown->item("closedShifts")->property("count").toInt() > 0);
    QCOMPARE(m_shown->all("reportButton").size(), 0);
}

void TestReports::theDriverOfTheShiftIsNamed()
{
    desk().setDriver(42, "A. Nowak");
    QTRY_COMPARE(m_shown->text("runningState"), QString("Running shift, driver A. Nowak"));
    m_shown->tap("figuresButton");
    m_shown->tap("printReport");
    QTRY_COMPARE(m_shown->text("paperNotice"), QString("Printed"));
    QCOMPARE(paper().report->driver, 42);
}

void TestReports::everyButtonHasRoomForItsText()
{
    QTranslator translator;
    QVERIFY(translator.load(":/i18n/rivo-terminal_de"));
    QCoreApplication::installTranslator(&translator);
    show(exampleFeed("coast-line"), "zreport");
    sell(1);
    m_shown->window()->grabWindow();
    const double width = m_shown->item("runningShift")->width();
    for (const char* name : {"salesButton", "figuresButton", "closeShiftButton"}) {
        QQuickItem* button = m_shown->item(name);
        m_shown->forEachItem(button, [name](QQuickItem* item) {
            QVERIFY2(!item->property("truncated").toBool(), name);
        });
        QVERIFY2(button->mapToScene({button->width(), 0}).x() <=
                     m_shown->item("runningShift")->mapToScene({width, 0}).x(),
                 name);
    }
    QCoreApplication::removeTranslator(&translator);
}

void TestReports::figuresCoverNothing()
{
    QVERIFY(desk().setOpeningFloat(40000)); // more than a driver may carry
    sell(1);
    QVERIFY(desk().voidLastSale());
    m_shown->window()->grabWindow();
    const auto place = [this](const char* name) {
        const QQuickItem* item = m_shown->item(name);
        return item->mapRectToScene(item->boundingRect());
    };
    QVERIFY(m_shown->text("limitText").contains("reached"));
    QVERIFY(place("otherFigures").top() >= place("limitText").bottom());
}

QTEST_MAIN(TestReports)
#include "tst_reports.moc"
