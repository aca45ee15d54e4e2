#include "PageTest.h"
#include "Table.h"

/// The cash of a shift by taps: the float, the figures so far, and what is counted at the end.
class TestHandOver : public PageTest
{
    Q_OBJECT

private slots:
    void theCountedAmountIsHandedOver_data();
    void theCountedAmountIsHandedOver();
    void nothingCountedIsNotHandedOver();
    void theFloatIsRecordedAndCorrected();
    void theFloatMakesRoomForTheSales();
    void figuresOfTheRunningShift();

private:
    void start() override { show(exampleFeed("coast-line"), "zreport"); }
};

void TestHandOver::theCountedAmountIsHandedOver_data()
{
    const Table<QString, double, QString> row("counted", "difference", "shown");
    row("too little", "100", -40.0, "−€0.40");
    row("exactly", "140", 0.0, "€0.00");
    row("too much", "1000", 860.0, "+€8.60");
}

void TestHandOver::theCountedAmountIsHandedOver()
{
    QFETCH(QString, counted);
    QFETCH(double, difference);
    QFETCH(QString, shown);
    sell(1);
    const double shift = desk().xReport()["zNumber"].toDouble();
    QVERIFY(desk().closeShift());
    m_shown->tap("handOverButton");
    QTRY_COMPARE(m_shown->text("padDue"), QString("€1.40"));
    enter(counted);
    QTRY_COMPARE(m_shown->text("padDifference"), shown);
    m_shown->tap("padConfirm");
    QTRY_VERIFY(desk().zReport(shift)["paidAt"].toDateTime().isValid());
    QCOMPARE(desk().zReport(shift)["counted"].toDouble(), counted.toDouble());
    QCOMPARE(desk().zReport(shift)["difference"].toDouble(), difference);
    QTRY_COMPARE(m_shown->all("handOverButton").size(), 0);
    QCOMPARE(m_shown->all("countedLine").size(), difference == 0.0 ? 0 : 1);
    if (difference != 0.0)
        QVERIFY(m_shown->item("countedLine")->property("value").toString().contains(shown));
}

void TestHandOver::nothingCountedIsNotHandedOver()
{
    sell(1);
    QVERIFY(desk().closeShift());
    m_shown->tap("handOverButton");
    QTRY_COMPARE(m_shown->all("padConfirm").size(), 1);
    QVERIFY(!m_shown->item("padConfirm")->isEnabled());
    m_shown->tap("padConfirm");
    m_shown->tap("padCancel");
    QTRY_COMPARE(m_shown->all("padCancel").size(), 0);
    QCOMPARE(m_shown->all("handOverButton").size(), 1);
}

void TestHandOver::theFloatIsRecordedAndCorrected()
{
    m_shown->tap("floatButton");
    enter("5000");
    m_shown->tap("padConfirm");
    QTRY_COMPARE(m_shown->text("otherFigures"), QString("Float: €50.00"));
    QCOMPARE(m_shown->text("debtText"), QString("€50.00"));
    m_shown->tap("floatButton");
    QTRY_COMPARE(m_shown->text("padFloat"), QString("€50.00"));
    m_shown->tap("eraseKey");
    m_shown->tap("padConfirm");
    QTRY_COMPARE(m_shown->text("otherFigures"), QString("Float: €5.00"));
}

void TestHandOver::theFloatMakesRoomForTheSales()
{
    QCOMPARE(m_shown->all("salesButton").size(), 0);
    sell(1);
    QTRY_COMPARE(m_shown->all("salesButton").size(), 1);
    QCOMPARE(m_shown->all("floatButton").size(), 0);
}

void TestHandOver::figuresOfTheRunningShift()
{
    QCOMPARE(m_shown->text("otherFigures"), QString());
    QVERIFY(desk().setOpeningFloat(2000));
    sell(2);
    sell(1);
    QVERIFY(desk().voidLastSale());
    QVERIFY(desk().refundTicket(1, "Wrong ticket"));
    QTRY_COMPARE(m_shown->text("otherFigures"),
                 QString::fromUtf8("Void: 1 for €1.40 · Refunded: 1 for €1.40 · Float: €20.00"));
    QVERIFY(!m_shown->item("otherFigures")->property("truncated").toBool());
    QCOMPARE(m_shown->text("debtText"), QString("€21.40"));
}

QTEST_MAIN(TestHandOver)
#include "tst_hand_over.moc"
