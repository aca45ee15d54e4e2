#include "JournalFiles.h"
#include "Publishing.h"
#include "Table.h"

#include <OfficeOrders.h>
#include <TakeOver.h>

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace rivo;
using namespace rivo::office;
using sales::SalesDesk;
using terminal::OfficeOrders;
using terminal::TakeOver;

namespace
{

QByteArray coast() { return contentOf(EXAMPLE_FEEDS "/coast-line.json"); }

QByteArray drivers(int iterations)
{
    return QStringLiteral(R"({"drivers": [{"number": 42, "name": "A. Nowak", "iterations": %1,
                            "salt": "0f1e2d3c4b5a6978", "hash": "%2"}]})")
        .arg(iterations)
        .arg(QString(64, 'a'))
        .toUtf8();
}

} // namespace

Q_DECLARE_METATYPE(rivo::office::PublicationKind)

/// What the terminal starts with.
class TestTakeOver : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qRegisterMetaType<PublicationKind>("rivo::office::PublicationKind"); }

    void init()
    {
        m_folder.emplace();
        QVERIFY(m_publisher.key.write(file("publisher.key"), file("publisher.pem")));
        m_office = {};
        m_office.type = "mqtt";
        m_office.operatorName = "lakeside";
        m_office.publisher = file("publisher.pem");
        m_office.store = file("store");
    }

    void withoutAPublisherNothingIsTaken()
    {
        m_office.publisher.clear();
        TakeOver takeOver(m_office, {});
        QVERIFY(!takeOver.isThere());
        QVERIFY(!takeOver.begin(PublicationKind::Feed));
        QVERIFY(!takeOver.isDue(QDateTime::currentDateTimeUtc()));
        QVERIFY(!QFile::exists(file("store")));
    }

    void newestIsBegun()
    {
        put(1, "one");
        put(2, "two");
        TakeOver takeOver(m_office, {});
        QCOMPARE(contentOf(takeOver.begin(PublicationKind::Feed).value_or("")), "two");
        QCOMPARE(takeOver.inUse(PublicationKind::Feed), 2);
        QVERIFY(!takeOver.begin(PublicationKind::Drivers));
        QCOMPARE(takeOver.inUse(PublicationKind::Drivers), 0);
    }

    void oneThatCannotBeUsedIsFollowedByThatBefore()
    {
        put(1, "one");
        put(2, "two");
        TakeOver takeOver(m_office, {});
        QVERIFY(takeOver.begin(PublicationKind::Feed));
        takeOver.refuse(PublicationKind::Feed, "broken");
        QCOMPARE(contentOf(takeOver.begin(PublicationKind::Feed).value_or("")), "one");
        takeOver.refuse(PublicationKind::Feed, "broken, too");
        QVERIFY(!takeOver.begin(PublicationKind::Feed));
        QCOMPARE(takeOver.store().refusal(PublicationKind::Feed).refused, 2);
    }

    void startsThatCannotBeCountedAreNotTried()
    {
        put(1, "one");
        TakeOver takeOver(m_office, {});
        QVERIFY(QDir(file("store")).removeRecursively());
        QVERIFY(!takeOver.begin(PublicationKind::Feed));
    }

    void crashesLeadToTheOneBefore()
    {
        put(1, "one");
        {
            TakeOver first(m_office, {});
            QVERIFY(first.begin(PublicationKind::Feed));
            first.confirmStart();
        }
        put(2, "two");
        for (int start = 0; start < 3; ++start)
            QCOMPARE(contentOf(TakeOver(m_office, {}).begin(PublicationKind::Feed).value_or("")),
                     "two");
        for (int start = 0; start < 5; ++start)
            QCOMPARE(contentOf(TakeOver(m_office, {}).begin(PublicationKind::Feed).value_or("")),
                     "one");
    }

    void newerOneIsDueFromItsTimeOn()
    {
        put(1, "one");
        TakeOver takeOver(m_office, {});
        QVERIFY(takeOver.begin(PublicationKind::Feed));
        const QDateTime now = QDateTime::currentDateTimeUtc();
        QVERIFY(!takeOver.isDue(now));
        Announcement later = m_publisher.announce(2, "two");
        later.validFrom = now.addSecs(60);
        later = m_publisher.resigned(later);
        takeOver.store().begin(later);
        QCOMPARE(takeOver.store().append(later, "two"), QString());
        QCOMPARE(takeOver.store().accept(later), QString());
        QVERIFY(!takeOver.isDue(now));
        QVERIFY(takeOver.isDue(now.addSecs(61)));
    }

    void shiftsPaidInTheOfficeAreRecordedOnce()
    {
        TakeOver takeOver(m_office, {});
        Counter counter(file("sales.journal"));
        counter.desk.setDriver(42, "A. Nowak");
        for (int shift = 0; shift < 3; ++shift) {
            QVERIFY(counter.desk.add(AdultSingle) && counter.desk.pay(SalesDesk::Cash));
            QTRY_COMPARE(counter.desk.state(), SalesDesk::Selling);
            QVERIFY(counter.desk.closeShift());
        }
        QVERIFY(counter.desk.handOver(17));
        OfficeOrders orders(takeOver, counter.desk, counter.journal, 0.0);
        const QSignalSpy used(&orders, &OfficeOrders::inUse);
        const QString own = counter.journal.publicKey().toHex();
        const QString other = QString(64, 'a');
        const auto paid = [](const QString& journal, int shift) {
            return QStringLiteral(R"({"journal": "%1", "shift": %2})").arg(journal).arg(shift);
        };
        const auto publish = [&](int version, const QStringList& shifts) {
            putInto(takeOver.store(), version,
                    QStringLiteral(R"({"format": "rivo-paid", "version": 1, "shifts": [%1]})")
                        .arg(shifts.join(','))
                        .toUtf8(),
                    PublicationKind::Paid);
            orders.look();
        };
        // Paid before, paid now, of another vehicle, running, and unknown.
        const QStringList shifts{paid(own, 17), paid(own, 18), paid(other, 19), paid(own, 20),
                                 paid(own, 99)};
        publish(1, shifts);
        QCOMPARE(handOvers(), "17 42, 18 0");
        QCOMPARE(counter.report(0)->currentDebt(), 1.9); // that of 19 is carried on
        QCOMPARE(used.size(), 1);
        publish(2, shifts);
        orders.look();
        QCOMPARE(handOvers(), "17 42, 18 0");
        QCOMPARE(used.size(), 2);
        publish(3, shifts + QStringList{paid(own, 19), paid(own, 19)});
        QCOMPARE(handOvers(), "17 42, 18 0, 19 0");
        QVERIFY(counter.desk.add(AdultSingle) && counter.desk.pay(SalesDesk::Cash));
        QTRY_COMPARE(counter.desk.state(), SalesDesk::Selling);
        QCOMPARE(rowsOf(onlyConnection(), "SELECT driver FROM record ORDER BY id DESC LIMIT 1"),
                 QStringList("42"));
    }

    void shiftsAreNotRecordedInASale()
    {
        TakeOver takeOver(m_office, {});
        Counter counter(file("sales.journal"));
        QVERIFY(counter.desk.add(AdultSingle) && counter.desk.pay(SalesDesk::Cash));
        QTRY_COMPARE(counter.desk.state(), SalesDesk::Selling);
        QVERIFY(counter.desk.closeShift());
        OfficeOrders orders(takeOver, counter.desk, counter.journal, 0.0);
        putInto(takeOver.store(), 1,
                R"({"format": "rivo-paid", "version": 1, "shifts": [{"journal": ")" +
                    counter.journal.publicKey().toHex() + R"(", "shift": 17}]})",
                PublicationKind::Paid);
        counter.printer.setTicketTime(100);
        QVERIFY(counter.desk.add(AdultSingle) && counter.desk.pay(SalesDesk::Cash));
        QCOMPARE(counter.desk.state(), SalesDesk::Printing);
        orders.look();
        QCOMPARE(handOvers(), "");
        QTRY_COMPARE(counter.desk.state(), SalesDesk::Selling);
        orders.look();
        QCOMPARE(handOvers(), "17 0");
    }

    void limitsCountAtOnce()
    {
        TakeOver takeOver(m_office, {});
        Counter counter(file("sales.journal"), euro, 300.0);
        OfficeOrders orders(takeOver, counter.desk, counter.journal, 300.0);
        QVERIFY(counter.desk.add(AdultSingle) && counter.desk.pay(SalesDesk::Cash));
        QTRY_COMPARE(counter.desk.state(), SalesDesk::Selling);
        QVERIFY(counter.desk.closeShift());
        orders.look();
        QCOMPARE(counter.report(0)->maxAllowedDebt(), 300.0);
        putInto(takeOver.store(), 1,
                R"({"format": "rivo-limits", "version": 1, "maxDebt": 150,
                    "drivers": [{"number": 42, "maxDebt": 80.5}]})",
                PublicationKind::Limits);
        orders.look();
        QCOMPARE(counter.report(0)->maxAllowedDebt(), 150.0);
        QCOMPARE(counter.report(1)->maxAllowedDebt(), 150.0);
        counter.desk.setDriver(42, "A. Nowak");
        QCOMPARE(counter.report(0)->maxAllowedDebt(), 80.5);
        counter.desk.setDriver(43, "B. Nowak");
        QCOMPARE(counter.report(0)->maxAllowedDebt(), 150.0);
        putInto(takeOver.store(), 2, R"({"format": "rivo-limits", "version": 1})",
                PublicationKind::Limits);
        orders.look();
        QCOMPARE(counter.report(0)->maxAllowedDebt(), 300.0);
        QVERIFY(counter.desk.closeShift());
        QCOMPARE(counter.report(0)->maxAllowedDebt(), 300.0);
    }

    void contentIsReadBeforeItIsTaken_data()
    {
        const Table<PublicationKind, QByteArray, QString> row("kind", "content", "fault");
        row("a feed", PublicationKind::Feed, coast(), "");
        row("a feed in another currency", PublicationKind::Feed,
            contentOf(EXAMPLE_FEEDS "/hill-valley.json"), "its currency is GBP");
        row("no feed", PublicationKind::Feed, "{", "content.json:1");
        row("drivers", PublicationKind::Drivers, drivers(100000), "");
        row("no drivers", PublicationKind::Drivers, drivers(1), "iterations");
        row("limits", PublicationKind::Limits, R"({"format": "rivo-limits", "version": 1})", "");
        row("no limits", PublicationKind::Limits, "{}", "rivo-limits");
        row("paid shifts", PublicationKind::Paid,
            R"({"format": "rivo-paid", "version": 1, "shifts": []})", "");
        row("no paid shifts", PublicationKind::Paid, "{}", "rivo-paid");
    }

    void contentIsReadBeforeItIsTaken()
    {
        QFETCH(PublicationKind, kind);
        QFETCH(QByteArray, content);
        QFETCH(QString, fault);
        QFile target(file("content.json"));
        QVERIFY(target.open(QIODevice::WriteOnly) && target.write(content) == content.size());
        target.close();
        const QString found = TakeOver(m_office, {}).check("EUR")(kind, target.fileName());
        QVERIFY2(fault.isEmpty() ? found.isEmpty() : found.contains(fault), qPrintable(found));
    }

private:
    QString file(const QString& name) const { return m_folder->filePath(name); }

    void put(qint64 version, const QByteArray& content) const
    {
        PublicationStore store(m_office.store, "lakeside", m_publisher.key.publicKey());
        putInto(store, version, content, PublicationKind::Feed);
    }

    /// "17 42, 18 0": shifts that were handed over, and by whom.
    static QString handOvers()
    {
        return rowsOf(onlyConnection(), "SELECT hand_over.shift || ' ' || driver FROM hand_over"
                                        " JOIN record ON record.id = hand_over.record ORDER BY id")
            .join(", ");
    }

    void putInto(PublicationStore& store, qint64 version, const QByteArray& content,
                 PublicationKind kind) const
    {
        const Announcement made = m_publisher.announce(version, content, kind);
        store.begin(made);
        QCOMPARE(store.append(made, content), QString());
        QCOMPARE(store.accept(made), QString());
    }

    const TestPublisher m_publisher;
    std::optional<QTemporaryDir> m_folder;
    config::OfficeConfig m_office;
};

QTEST_GUILESS_MAIN(TestTakeOver)
#include "tst_take_over.moc"
