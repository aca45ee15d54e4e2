#include "ItemBattery.h"
#include "ZReportFields.h"

#include <QSignalSpy>
#include <QTest>
#include <QTimeZone>

#include <cmath>

using rivo::models::ListItem;

namespace
{

/// The members of a report.
struct Members : ListItem
{
    int id;
    int ticketCount;
    double ticketSumAmnt;
    int cardSellCount;
    double cardSellAmnt;
    int parcelCount;
    double parcelAmnt;
    QString fromTicketNumber;
    QString toTicketNumber;
    double zSum;
    double zNumber;
    bool isClosed;
    double commission;
    QDateTime paymentDate;
    double currentDebt;
    double maxAllowedDebt;
};

ItemUnderTest zReportItem()
{
    return itemUnderTest<ZReportItem, Members>(
        zReportItemClass(),
        {{257, "id"},
         {258, "ticketCountData"},
         {259, "ticketSumData"},
         {260, "cardSellCountData"},
         {261, "cardSellAmountData"},
         {262, "parcelCountData"},
         {263, "parcelAmountData"},
         {264, "fromTicketData"},
         {265, "toTicketData"},
         {266, "zSumData"},
         {267, "zNumberData"},
         {268, "isClosedData"},
         {269, "commission"},
         {270, "paymentDate"},
         {271, "currentDebt"},
         {272, "maxAllowedDebt"}},
        ZReportItemRolesHandling::Z_REPORT_ROLES_HASH_TABLE.hash,
        {"ZReportItem::ZReportItem(QObject*)",
         "ZReportItem::ZReportItem(int const&, int const&, double const&, int const&, "
         "double const&, int const&, double const&, QString const&, QString const&, double const&, "
         "double const&, bool const&, double const&, QDateTime const&, double const&, "
         "double const&, QObject*)"});
}

/// A report with these sums; the other amounts are 5.
class Report : public ZReportItem
{
public:
    explicit Report(double ticketSumAmnt, double cardSellAmnt)
        : ZReportItem(1, 2, ticketSumAmnt, 3, cardSellAmnt, 4, 5.0, "A-0001", "A-0009", 5.0, 5.0,
                      false, 5.0, QDateTime(), 5.0, 5.0, nullptr)
    {
    }
};

} // namespace

class TestZReportItem : public ItemBattery
{
    Q_OBJECT

public:
    TestZReportItem() : ItemBattery(zReportItem()) {}

private slots:
    void initialValuesOfAPrototype()
    {
        compare(ZReportItem(), {-1, -1, 0.0, -1, 0.0, -1, 0.0, "", "", 0.0, 0.0, false, 0.0,
                                QDateTime(), 0.0, 0.0});
    }

    void anUnknownDateIsAnInvalidDateInAValidValue()
    {
        const QVariant date = ZReportItem().data(270);
        QVERIFY(date.isValid());
        QCOMPARE(date.userType(), int(QMetaType::QDateTime));
        QVERIFY(!date.toDateTime().isValid());
    }

    void cardSales_data()
    {
        QTest::addColumn<double>("ticketSum");
        QTest::addColumn<double>("stored");
        QTest::addColumn<double>("value");
        QTest::addColumn<bool>("accepted");
        QTest::newRow("the ticket sum is ignored") << 100.0 << 20.0 << 100.0 << false;
        QTest::newRow("almost the ticket sum is ignored")
            << 100.0 << 20.0 << 100.0 + 1e-11 << false;
        QTest::newRow("the stored amount is stored again") << 100.0 << 20.0 << 20.0 << true;
        QTest::newRow("another amount is stored") << 100.0 << 20.0 << 30.0 << true;
        QTest::newRow("noise in the stored amount is stored")
            << 100.0 << 20.0 << 20.0 + 1e-13 << true;
        QTest::newRow("the stored amount is ignored if it is the ticket sum")
            << 20.0 << 20.0 << 20.0 << false;
        QTest::newRow("almost nothing is ignored beside no tickets")
            << 0.0 << 20.0 << 1e-13 << false;
        QTest::newRow("nothing is stored beside tickets") << 100.0 << 20.0 << 0.0 << true;
    }

    void cardSales()
    {
        QFETCH(double, ticketSum);
        QFETCH(double, stored);
        QFETCH(double, value);
        QFETCH(bool, accepted);
        Report report(ticketSum, stored);
        QSignalSpy changes(&report, &ListItem::dataChanged);
        for (int times = 1; times <= 2; ++times) {
            report.setCardSellAmnt(value);
            QCOMPARE(changes.count(), accepted ? times : 0);
            QVERIFY(sameValue(report.data(261), accepted ? value : stored));
            QVERIFY(sameValue(report.data(259), ticketSum));
        }
    }

    void cardSalesFollowTheTicketSum()
    {
        Report report(100.0, 20.0);
        report.setTicketSumAmnt(200.0);
        QSignalSpy changes(&report, &ListItem::dataChanged);
        report.setCardSellAmnt(200.0);
        QCOMPARE(changes.count(), 0);
        report.setCardSellAmnt(100.0);
        QCOMPARE(changes.count(), 1);
        QVERIFY(sameValue(report.data(261), 100.0));
    }

    void theTicketSumIsComparedWithItselfOnly()
    {
        Report report(100.0, 20.0);
        QSignalSpy changes(&report, &ListItem::dataChanged);
        report.setTicketSumAmnt(100.0);
        QCOMPARE(changes.count(), 0);
        report.setTicketSumAmnt(20.0);
        QCOMPARE(changes.count(), 1);
        QVERIFY(sameValue(report.data(259), 20.0));
    }

    void theCommissionIsComparedExactly()
    {
        Report report(100.0, 20.0);
        QSignalSpy changes(&report, &ListItem::dataChanged);
        report.setZSum(5.0 + 1e-12);
        QCOMPARE(changes.count(), 0);
        QVERIFY(sameValue(report.data(266), 5.0));
        report.setCommission(5.0 + 1e-12);
        QCOMPARE(changes.count(), 1);
        QVERIFY(sameValue(report.data(269), 5.0 + 1e-12));
        report.setCommission(5.0 + 1e-12);
        QCOMPARE(changes.count(), 1);
        report.setCommission(std::nextafter(5.0 + 1e-12, 6.0));
        QCOMPARE(changes.count(), 2);
    }

    void paymentDate_data()
    {
        QTest::addColumn<QDateTime>("stored");
        QTest::addColumn<QDateTime>("value");
        QTest::addColumn<bool>("announced");
        const QDate day(2024, 5, 1);
        const QDateTime greenwich(day, QTime(10, 0), Qt::UTC);
        const QTimeZone warsaw("Europe/Warsaw");
        QVERIFY(warsaw.isValid());
        QTest::newRow("the same moment is silent")
            << greenwich << QDateTime(day, QTime(10, 0), Qt::UTC) << false;
        QTest::newRow("the same moment in another offset is silent")
            << greenwich << QDateTime(day, QTime(12, 0), Qt::OffsetFromUTC, 7200) << false;
        QTest::newRow("the same moment in another time zone is silent")
            << greenwich << QDateTime(day, QTime(12, 0), warsaw) << false;
        QTest::newRow("the same clock reading in another time zone is announced")
            << greenwich << QDateTime(day, QTime(10, 0), warsaw) << true;
        QTest::newRow("a millisecond later is announced")
            << greenwich << greenwich.addMSecs(1) << true;
        QTest::newRow("no date is announced") << greenwich << QDateTime() << true;
        QTest::newRow("no date again is silent") << QDateTime() << QDateTime() << false;
        QTest::newRow("a first date is announced") << QDateTime() << greenwich << true;
    }

    void paymentDate()
    {
        QFETCH(QDateTime, stored);
        QFETCH(QDateTime, value);
        QFETCH(bool, announced);
        ZReportItem report;
        report.setPaymentDate(stored);
        QSignalSpy changes(&report, &ListItem::dataChanged);
        report.setPaymentDate(value);
        QCOMPARE(changes.count(), announced ? 1 : 0);
        const QDateTime& kept = announced ? value : stored;
        QCOMPARE(report.paymentDate(), kept);
        QCOMPARE(report.paymentDate().timeSpec(), kept.timeSpec());
        QCOMPARE(report.data(270).toDateTime().timeSpec(), kept.timeSpec());
    }

    void anythingIsStored()
    {
        const ZReportItem report(-7, -1, -0.5, INT_MIN, -2.0, -3, -4.0, "", "", 0.0, -1.5, true,
                                 -0.25, QDateTime(QDate(2023, 2, 30), QTime(25, 0)), -9.0, -8.0,
                                 nullptr);
        QCOMPARE(report.ticketCount(), -1);
        QCOMPARE(report.cardSellCount(), INT_MIN);
        QVERIFY(report.isClosed());
        QVERIFY(!report.paymentDate().isValid());
        QVERIFY(sameValue(report.data(267), -1.5));
        QVERIFY(sameValue(report.data(272), -8.0));
    }
};

QTEST_GUILESS_MAIN(TestZReportItem)

#include "tst_zreportitem.moc"
