#include "FileSizeLimit.h"
#include "JournalFiles.h"
#include "SmallDisk.h"
#include "Table.h"

#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <memory>
#include <vector>

using namespace rivo::sales;

namespace
{

/// Something that the journal writes.
struct Step
{
    const char* name;
    std::function<bool(Journal&)> run;
};

const std::vector<Step>& steps()
{
    static const QString longText(20000, 'x');
    static const std::vector<Step> all{
        {"a line of the basket", [](Journal& j) { return j.appendToBasket(ticket(95, longText)); }},
        {"a sale",
         [](Journal& j) {
             return j
                 .confirmSale({ticket(190), ticket(95, longText), ticket(95)}, {PayMethod::Card},
                              noon)
                 .has_value();
         }},
        {"a printed ticket", [](Journal& j) { return j.markPrinted(2); }},
        {"a removed line", [](Journal& j) { return j.removeFromBasket(0); }},
        {"an emptied basket", [](Journal& j) { return j.clearBasket(); }},
        {"a closed shift", [](Journal& j) { return j.closeShift(noon).has_value(); }},
        {"cash handed over", [](Journal& j) { return j.handOver(16, noon).has_value(); }},
        {"a pruned shift",
         [](Journal& j) { return j.prune(1000, noon.addDays(1), noon.addDays(1)) > 0; }}};
    return all;
}

} // namespace

/// A journal that cannot store: not opened, or on a disk that is full or fails in the middle.
/// Nothing is half done.
class TestJournalDisk : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
    }

    void notOpenedIsStopped()
    {
        Journal journal;
        QCOMPARE(kindOf(journal.fault()), "unreachable");
        for (const Step& step : steps())
            QVERIFY2(!step.run(journal), step.name);
        QVERIFY(journal.basket().isEmpty());
        QVERIFY(journal.unprintedTickets().isEmpty());
        QCOMPARE(shiftsOf(journal), QStringList("none"));
    }

    void fullDiskStopsWithNothingHalfDone_data()
    {
        addColumns<int, bool>("step", "isRefusedByTheSystem");

        for (int step = 0; step < 2; ++step) {
            QTest::addRow("no page left for %s", steps().at(step).name) << step << false;
        }
        for (int step = 0; step < static_cast<int>(steps().size()); ++step)
            QTest::addRow("no byte left for %s", steps().at(step).name) << step << true;
    }

    void fullDiskStopsWithNothingHalfDone()
    {
        QFETCH(int, step);
        QFETCH(bool, isRefusedByTheSystem);
        prepareDay();
        QStringList before;
        {
            Journal journal;
            QCOMPARE(kindOf(journal.open(file(), euro, 17)), "none");
            before = journalContent();
            bool isDone = true;
            if (isRefusedByTheSystem) {
                const FileSizeLimit limit(16); // not even the start of a log
                isDone = steps().at(step).run(journal);
            } else {
                const QString pages = rowsOf(onlyConnection(), "PRAGMA page_count").at(0);
                rowsOf(onlyConnection(), "PRAGMA max_page_count=" + pages);
                isDone = steps().at(step).run(journal);
            }
            QVERIFY(!isDone);
            QCOMPARE(kindOf(journal.fault()), isRefusedByTheSystem ? "unreachable" : "full");
            QCOMPARE(journalContent(), before);
            for (const Step& each : steps())
                QVERIFY2(!each.run(journal), each.name); // until it is opened anew
            QCOMPARE(journalContent(), before);
            QVERIFY(journal.basket().isEmpty());
        }
        Journal journal;
        QCOMPARE(kindOf(journal.open(file(), euro, 17)), "none");
        QCOMPARE(journalContent(), before);
        QVERIFY(steps().at(step).run(journal));
    }

    void saleThatCannotBeFinishedIsUndone()
    {
        // A fault that does not make SQLite itself undo the transaction; no running shift.
        const char* const jam = "CREATE TEMP TRIGGER jam BEFORE INSERT ON ticket"
                                " WHEN NEW.price = 95 BEGIN SELECT RAISE(FAIL, 'jam'); END";
        for (const auto& [harm, fault] :
             {std::pair(jam, "unreachable"),
              {"INSERT INTO closing SELECT 17, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0",
               "damaged"}}) {
            removeJournal(file());
            prepareDay();
            OpenJournal journal(file());
            rowsOf(onlyConnection(), harm);
            const QStringList before = journalContent();
            QVERIFY(!sell(journal, {190, 95}));
            QCOMPARE(kindOf(journal.fault()), fault);
            QCOMPARE(journalContent(), before);
            QVERIFY(!journal.runningShift());
        }
    }

    /// The system takes some of a transaction's bytes and not the rest.
    void transactionCutOffAtAnyByteIsUndone()
    {
        int cuts = 0;
        for (rlim_t extra = 0;; extra += 1500) {
            removeJournal(file());
            prepareDay();
            QStringList before;
            bool isDone = false;
            {
                Journal journal;
                QCOMPARE(kindOf(journal.open(file(), euro, 17)), "none");
                before = journalContent();
                const FileSizeLimit limit(extra);
                isDone = steps().at(1).run(journal);
                QCOMPARE(isDone, !journal.fault().has_value());
            }
            if (isDone)
                break;
            ++cuts;
            Journal journal;
            QCOMPARE(kindOf(journal.open(file(), euro, 17)), "none");
            QCOMPARE(journalContent(), before);
        }
        QVERIFY2(cuts > 10, qPrintable(QString::number(cuts)));
    }

    void diskThatFillsUpLosesNoSale()
    {
        SmallDisk disk(QFileInfo(file()).path(), 512);
        if (!disk.isThere())
            QSKIP("only root may have a disk of its own");
        int sold = 0;
        {
            Journal journal;
            QCOMPARE(kindOf(journal.open(file(), euro, 17)), "none");
            QVERIFY(disk.fill(64));
            while (sold < 1000 && sell(journal, {95}))
                ++sold;
            QCOMPARE(kindOf(journal.fault()), "full");
        }
        QVERIFY2(sold > 0, "nothing fits");
        QVERIFY(disk.fill(256));
        Journal journal;
        QCOMPARE(kindOf(journal.open(file(), euro, 17)), "none");
        QCOMPARE(journal.runningShift().value().ticketCount, qint64(sold));
        QVERIFY(sell(journal, {95}));
        QCOMPARE(journal.runningShift().value().ticketCount, qint64(sold) + 1);
    }

    void fullDiskLeavesNoNewFileBehindThatIsRefusedLater()
    {
        for (const rlim_t bytes : {0U, 100U, 4096U, 5000U, 12288U, 20000U}) {
            removeJournal(file());
            Journal journal;
            {
                const FileSizeLimit limit(bytes);
                QCOMPARE(kindOf(journal.open(file(), euro, 17)), "unreachable");
                QVERIFY(!sell(journal, {95}));
            }
            QCOMPARE(kindOf(journal.open(file(), euro, 17)), "none");
            QCOMPARE(text(journal.runningShift()), "17: 0 tickets 0, 0 by card 0, 0-0");
        }
    }

private:
    QString file() const { return fileIn(m_folder->path()); }

    /// A shift without a sale, one with cash, a sale of which one ticket is printed, and an
    /// unfinished basket.
    void prepareDay()
    {
        OpenJournal journal(file(), 15);
        journal.closeShift(noon);
        sell(journal, {100});
        journal.markPrinted(1);
        journal.closeShift(noon);
        sell(journal, {190, 95});
        journal.markPrinted(3);
        journal.appendToBasket(ticket(450));
        journal.appendToBasket(ticket(95));
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_GUILESS_MAIN(TestJournalDisk)
#include "tst_journal_disk.moc"
