#include "JournalFiles.h"

#include <Pruning.h>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using rivo::sales::SalesDesk;
using rivo::terminal::Pruning;

namespace
{

constexpr int minute = 60000;
constexpr int hour = 60 * minute;
constexpr int keepDays = 30;

} // namespace

/// When the terminal removes old records, and what the driver sees of it.
class TestPruning : public QObject
{
    Q_OBJECT

private slots:
    void oldShiftsLeaveTheZReports()
    {
        Vehicle vehicle;
        QVERIFY(vehicle.keepShift() && vehicle.keepShift());
        vehicle.now = noon.addDays(keepDays);
        QVERIFY(vehicle.keepShift());
        QCOMPARE(vehicle.zNumbers(), (QVector<int>{20, 19, 18, 17}));
        vehicle.acknowledged = 99;
        vehicle.pruning.look();
        QCOMPARE(vehicle.zNumbers().size(), 4); // not older than 30 days
        QCOMPARE(vehicle.pruning.pause(), hour);
        vehicle.now = vehicle.now.addSecs(1);
        vehicle.pruning.look();
        QCOMPARE(vehicle.zNumbers(), (QVector<int>{20, 19}));
        QCOMPARE(vehicle.pruning.pause(), minute);
        vehicle.pruning.look();
        QCOMPARE(vehicle.pruning.pause(), hour);
        QVERIFY(!vehicle.counter.desk.handOver(18));
        QCOMPARE(rowsOf(onlyConnection(), "SELECT driver FROM record WHERE kind = 11"),
                 QStringList("0"));
    }

    void nothingGoesBeforeTheOfficeAnswers()
    {
        Vehicle vehicle;
        QVERIFY(vehicle.keepShift());
        vehicle.now = noon.addYears(1);
        vehicle.pruning.look();
        QCOMPARE(vehicle.counter.journal.lastPruned(), 0);
        QCOMPARE(vehicle.pruning.pause(), minute);
        vehicle.acknowledged = 4; // all but the hand-over, which belongs to the next part
        vehicle.pruning.look();
        QCOMPARE(vehicle.counter.journal.lastPruned(), 3);
    }

    void nothingGoesInTheMiddleOfASale()
    {
        Vehicle vehicle;
        QVERIFY(vehicle.keepShift());
        vehicle.now = noon.addYears(1);
        vehicle.acknowledged = 99;
        QVERIFY(vehicle.counter.desk.add(AdultSingle));
        vehicle.pruning.look();
        QCOMPARE(vehicle.counter.journal.lastPruned(), 0);
        QCOMPARE(vehicle.pruning.pause(), minute);
        QVERIFY(vehicle.counter.desk.clear());
        vehicle.pruning.look();
        QCOMPARE(vehicle.counter.journal.lastPruned(), 3);
    }

    void aJournalThatFailsIsTold()
    {
        Vehicle vehicle;
        QVERIFY(vehicle.keepShift());
        vehicle.now = noon.addYears(1);
        vehicle.acknowledged = 99;
        rowsOf(onlyConnection(), "CREATE TEMP TRIGGER jam BEFORE DELETE ON sale"
                                 " BEGIN SELECT RAISE(FAIL, 'jam'); END");
        const QSignalSpy refused(&vehicle.counter.desk, &SalesDesk::refused);
        vehicle.pruning.look();
        QVERIFY(vehicle.counter.journal.fault());
        QCOMPARE(refused.size(), 1);
        vehicle.pruning.look();
        QCOMPARE(refused.size(), 1); // once
    }

private:
    /// A desk over a journal, and what the office says.
    struct Vehicle
    {
        Vehicle()
        {
            counter.desk.setClock([this] { return now; });
        }

        /// A sale, its ticket, the closed shift and its hand-over: 4 records.
        bool keepShift()
        {
            const double zNumber = counter.report()->zNumber();
            return counter.desk.add(AdultSingle) && counter.desk.pay(SalesDesk::Cash) &&
                   QTest::qWaitFor([&] { return counter.desk.state() == SalesDesk::Selling; }) &&
                   counter.desk.closeShift() && counter.desk.handOver(zNumber);
        }

        QVector<int> zNumbers() const
        {
            QVector<int> numbers;
            for (int row = 0; row < counter.zReports.rowCount(); ++row)
                numbers.append(static_cast<int>(counter.report(row)->zNumber()));
            return numbers;
        }

        QTemporaryDir folder;
        Counter counter{fileIn(folder.path())};
        QDateTime now = noon;
        qint64 acknowledged = -1;
        Pruning pruning{counter.desk, [this] { return acknowledged; }, keepDays};
    };
};

QTEST_GUILESS_MAIN(TestPruning)
#include "tst_pruning.moc"
