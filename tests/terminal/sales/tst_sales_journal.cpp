#include "DeskJournal.h"
#include "Table.h"

#include <QDir>
#include <QRandomGenerator>

using namespace rivo::sales;

namespace
{

const QString fullJournal = "There is no space left for the sales journal. Nothing can be sold.";

} // namespace

/// A desk and its journal: each change is stored first, and a journal that fails stops the sale.
class TestSalesJournal : public QObject, private DeskJournal
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale("en_GB")); }
    void init() { renew(); }

    void everyFaultOfTheJournalIsExplained_data()
    {
        QTest::addColumn<QString>("change"); // of a journal, or of the file; "open" elsewhere
        QTest::addColumn<QString>("obstacle");
        const auto add = [](const char* fault, const char* change, const QString& what) {
            QTest::newRow(fault) << change << what + " Nothing can be sold.";
        };
        add("locked", "open", "The sales journal is in use by another program.");
        add("damaged", "text", "The sales journal is damaged.");
        add("foreign", "PRAGMA application_id=7",
            "The file given as sales journal is not one of this terminal.");
        add("other version", "PRAGMA user_version=8",
            "The sales journal was kept by another version of this terminal.");
        add("other currency", "UPDATE journal SET currency = 'PLN'",
            "The sales journal is kept in another currency.");
        add("unreachable", "folder", "The sales journal cannot be written.");
    }

    void everyFaultOfTheJournalIsExplained()
    {
        QFETCH(QString, change);
        QFETCH(QString, obstacle);
        auto other = std::make_unique<Journal>();
        if (change == "text") {
            QFile text(file());
            QVERIFY(text.open(QIODevice::WriteOnly) && text.write("nothing to see here") > 0);
        } else if (change == "folder") {
            QVERIFY(QDir().mkdir(file()));
        } else {
            other->open(file(), euro, 1);
        }
        if (change.contains(' ')) {
            rowsOf(onlyConnection(), change);
            other.reset();
        }
        Counter counter(file());
        QCOMPARE(counter.desk.obstacle(), obstacle);
        QCOMPARE(counter.zReports.rowCount(), 0);
        SignalLog log(&counter.desk);
        QVERIFY(!play(counter, "adult"));
        QVERIFY(!play(counter, "close"));
        QCOMPARE(log.take(),
                 (QStringList{"refused(" + obstacle + ")", "refused(" + obstacle + ")"}));
        QCOMPARE(counter.basket.rowCount(), 0);
    }

    void journalThatFillsUpStopsSelling_data()
    {
        const Table<QString, QString> row("step", "state");
        for (const auto& [step, state] : {std::pair("adult", "basket"),
                                          {"remove:0", "basket"},
                                          {"clear", "basket"},
                                          {"cash", "basket"},
                                          {"close", "empty"},
                                          {"hand:17", "closed"},
                                          {"out", "doubt"}})
            row(step, step, state);
    }

    void journalThatFillsUpStopsSelling()
    {
        QFETCH(QString, step);
        QFETCH(QString, state);
        auto counter = counterIn(state);
        const QVector<qint64> prices = counter->prices();
        const QStringList reports = reportsOf(*counter);
        const SalesDesk::State before = counter->desk.state();
        const QString progress = progressOf(*counter);
        fillUp();
        const QStringList stopped = refusal(fullJournal, {"obstacleChanged()"});
        QCOMPARE(outcomeOf(*counter, step), stopped);
        QCOMPARE(counter->desk.obstacle(), fullJournal);
        QCOMPARE(counter->desk.state(), before);
        QCOMPARE(counter->prices(), prices);
        QCOMPARE(reportsOf(*counter), reports);
        QCOMPARE(progressOf(*counter), progress);
        for (const char* next : {"adult", "clear", "cash", "close"})
            QCOMPARE(outcomeOf(*counter, next), refusal(fullJournal));
        if (state == "doubt") {
            QCOMPARE(outcomeOf(*counter, step), stopped);
            QCOMPARE(counter->desk.ticketsInDoubt(), 2);
        }
        counter.reset();
        Counter again(file());
        QCOMPARE(again.desk.obstacle(), QString());
        QCOMPARE(again.prices(), prices);
        QCOMPARE(reportsOf(again), reports);
        QVERIFY(play(again, step));
    }

    /// The passenger has paid: the tickets come out. After a restart the driver says that they are,
    /// since the journal could not.
    void journalThatFillsUpWhilePrintingFinishesTheSale()
    {
        {
            Counter counter(file());
            QVERIFY(play(counter, "adult child cash"));
            fillUp();
            SignalLog log(&counter.desk);
            QVERIFY(play(counter, "end"));
            QVERIFY(log.take().contains("saleFinished()"));
            QVERIFY(!counter.desk.obstacle().isEmpty());
            QCOMPARE(counter.basket.rowCount(), 0);
            QVERIFY(!play(counter, "adult"));
        }
        Counter again(file());
        QCOMPARE(again.prices(), (QVector<qint64>{190, 95}));
        QCOMPARE(again.desk.state(), SalesDesk::Interrupted);
        SignalLog printer(&again.printer);
        QVERIFY(play(again, "out out"));
        QCOMPARE(again.desk.state(), SalesDesk::Selling);
        QCOMPARE(printer.take(), QStringList());
        QCOMPARE(again.report()->ticketCount(), 2);
    }

    void journalComesBeforeTheScreen()
    {
        Counter counter(file());
        const auto count = [](const char* what) {
            return rowsOf(onlyConnection(), QStringLiteral("SELECT COUNT(*) FROM ") + what)
                .at(0)
                .toInt();
        };
        QStringList seen;
        connect(&counter.basket, &QAbstractItemModel::rowsAboutToBeInserted, this,
                [&] { seen.append(QStringLiteral("insert %1").arg(count("basket"))); });
        connect(&counter.basket, &QAbstractItemModel::rowsAboutToBeRemoved, this,
                [&] { seen.append(QStringLiteral("remove %1").arg(count("basket"))); });
        connect(&counter.zReports, &QAbstractItemModel::dataChanged, this, [&] {
            seen.append(QStringLiteral("report %1 %2").arg(count("sale")).arg(count("closing")));
        });
        connect(&counter.desk, &SalesDesk::saleConfirmed, this,
                [&] { seen.append(QStringLiteral("confirmed %1").arg(count("sale"))); });
        connect(&counter.basket, &QAbstractItemModel::dataChanged, this,
                [&](const QModelIndex& index) {
                    if (counter.line(index.row())->printed())
                        seen.append(QStringLiteral("printed %1").arg(count("printout")));
                });
        QVERIFY(play(counter, "adult adult adult remove:1 cash end close"));
        seen.removeDuplicates();
        QCOMPARE(seen,
                 (QStringList{"insert 1", "insert 2", "insert 3", "remove 2", "report 1 0",
                              "confirmed 1", "printed 1", "printed 2", "remove 0", "report 1 1"}));
    }

    /// What the driver taps is on the disk as it is shown.
    void randomTapsLeaveJournalAndScreenEqual()
    {
        QRandomGenerator random(7);
        auto counter = std::make_unique<Counter>(file());
        rowsOf(onlyConnection(), "PRAGMA synchronous=OFF");
        for (int tap = 0; tap < 400; ++tap) {
            const int kind = random.bounded(20);
            if (kind < 12)
                counter->desk.add(random.bounded(-1, TileCount + 1));
            else if (kind < 15)
                counter->desk.remove(random.bounded(-1, 8));
            else if (kind == 15)
                counter->desk.clear();
            else if (kind < 18 && counter->desk.pay(SalesDesk::Cash))
                QVERIFY(waitForEndOfSale(*counter));
            else if (kind == 18)
                counter->desk.closeShift();
            else if (kind == 19) {
                const QVector<qint64> before = counter->prices();
                counter.reset();
                counter = std::make_unique<Counter>(file());
                rowsOf(onlyConnection(), "PRAGMA synchronous=OFF");
                QCOMPARE(counter->prices(), before);
            }
            QStringList shown;
            for (const qint64 price : counter->prices())
                shown.append(QString::number(price));
            QCOMPARE(rowsOf(onlyConnection(), "SELECT price FROM basket ORDER BY line"), shown);
            QCOMPARE(rowsOf(onlyConnection(), "SELECT IFNULL(SUM(price), 0) FROM basket"),
                     QStringList(QString::number(counter->desk.total())));
        }
        QVERIFY(rowsOf(onlyConnection(), "SELECT COUNT(*) FROM sale").at(0).toInt() > 5);
    }
};

QTEST_GUILESS_MAIN(TestSalesJournal)
#include "tst_sales_journal.moc"
