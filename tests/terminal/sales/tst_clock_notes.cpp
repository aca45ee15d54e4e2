#include "JournalFiles.h"

#include <ClockNotes.h>

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace rivo::sales;

namespace
{

/// Remark, milliseconds, shift and driver of each record of the clock.
QStringList remarks()
{
    return rowsOf(onlyConnection(), "SELECT remark, milliseconds, shift, driver FROM clock JOIN"
                                    " record ON id = record ORDER BY id");
}

} // namespace

/// What the journal says about the clock, and that it does not say it too often.
class TestClockNotes : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
        m_journal = std::make_unique<OpenJournal>(fileIn(m_folder->path()));
        m_now = noon;
        m_notes = std::make_unique<ClockNotes>(*m_journal, [this] { return m_now; });
    }

    void everyRemarkIsARecordOfTheRunningShift()
    {
        m_journal->setDriver(7);
        m_notes->noteOffset(-100000);
        QVERIFY(m_journal->closeShift(noon));
        m_journal->setDriver(8);
        m_notes->noteStep(3600000);
        QCOMPARE(remarks(), (QStringList{"1|-100000|17|7", "2|3600000|18|8"}));
        QCOMPARE(rowsOf(onlyConnection(), "SELECT kind, at FROM record WHERE kind = 10"),
                 (QStringList{"10|2026-03-29T12:00:00.250Z", "10|2026-03-29T12:00:00.250Z"}));
    }

    void remarksChangeNoFigures()
    {
        QVERIFY(sell(*m_journal, {190, 95}));
        const QString before = text(m_journal->runningShift());
        m_notes->noteStep(-5000);
        m_notes->noteOffset(5000);
        QCOMPARE(text(m_journal->runningShift()), before);
        QVERIFY(m_journal->closeShift(noon));
        m_journal.reset();
        Journal again;
        QCOMPARE(kindOf(again.open(fileIn(m_folder->path()), euro, 17)), "none");
    }

    void clockBehindTheLastRecordIsRemarkedAtTheStart_data()
    {
        QTest::addColumn<bool>("hasRecord");
        QTest::addColumn<qint64>("moved");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("a new journal") << false << qint64(-5000) << QStringList();
        QTest::newRow("later") << true << qint64(1) << QStringList();
        QTest::newRow("the same time") << true << qint64(0) << QStringList();
        QTest::newRow("a little behind") << true << qint64(-999) << QStringList();
        QTest::newRow("a second behind") << true << qint64(-1000) << QStringList("3|-1000|17|0");
        QTest::newRow("a day behind")
            << true << qint64(-86400000) << QStringList("3|-86400000|17|0");
    }

    void clockBehindTheLastRecordIsRemarkedAtTheStart()
    {
        QFETCH(bool, hasRecord);
        QFETCH(qint64, moved);
        QFETCH(QStringList, expected);
        if (hasRecord)
            QVERIFY(sell(*m_journal, {190}));
        m_now = noon.addMSecs(moved);
        m_notes->compareWithLastRecord();
        QCOMPARE(remarks(), expected);
    }

    /// A clock that was ahead once is not remarked at every start from then on.
    void clockBehindTheLastRecordIsRemarkedOnce()
    {
        QVERIFY(sell(*m_journal, {190}));
        m_now = noon.addDays(-1);
        m_notes->compareWithLastRecord();
        m_now = noon.addDays(-1).addSecs(60);
        m_notes->compareWithLastRecord();
        QCOMPARE(remarks(), QStringList("3|-86400000|17|0"));
    }

    void jitterIsNotRemarked()
    {
        for (const qint64 offset : {2000, 2400, 2999, 1500})
            m_notes->noteOffset(offset);
        QCOMPARE(remarks(), QStringList("1|2000|17|0"));
    }

    void remarksWaitForThePause_data()
    {
        QTest::addColumn<QVector<qint64>>("offsets");
        QTest::addColumn<QVector<qint64>>("steps");
        QTest::addColumn<QStringList>("expected");
        using Values = QVector<qint64>;
        QTest::newRow("of offsets the last one")
            << Values{5000, 90000, 7000} << Values() << QStringList{"1|5000|17|0", "1|7000|17|0"};
        QTest::newRow("no offset that is in the journal already")
            << Values{5000, 90000, 5500} << Values() << QStringList("1|5000|17|0");
        QTest::newRow("of steps the largest one back")
            << Values() << Values{4000, 9000, -3000, -8000, -5000, 7000}
            << QStringList{"2|4000|17|0", "2|-8000|17|0"};
        QTest::newRow("without a step back the largest one ahead")
            << Values() << Values{-4000, 3000, 9000, 5000}
            << QStringList{"2|-4000|17|0", "2|9000|17|0"};
    }

    void remarksWaitForThePause()
    {
        QFETCH(QVector<qint64>, offsets);
        QFETCH(QVector<qint64>, steps);
        QFETCH(QStringList, expected);
        constexpr int pause = 300; // milliseconds
        m_notes->setPause(pause);
        for (const qint64 offset : qAsConst(offsets))
            m_notes->noteOffset(offset);
        for (const qint64 step : qAsConst(steps))
            m_notes->noteStep(step);
        QCOMPARE(remarks(), expected.mid(0, 1));
        QTRY_COMPARE(remarks(), expected);
        QTest::qWait(2 * pause);
        QCOMPARE(remarks(), expected);
    }

    /// Ten minutes at first: a clock that is set every second fills no disk.
    void aThousandStepsAreOneRecord()
    {
        for (int step = 0; step < 1000; ++step)
            m_notes->noteStep(step % 2 == 0 ? -5000 : 5000);
        QCOMPARE(remarks(), QStringList("2|-5000|17|0"));
    }

    void journalThatStoppedIsReported()
    {
        QVERIFY(sell(*m_journal, {190}));
        const QSignalSpy failed(m_notes.get(), &ClockNotes::failed);
        QSqlQuery(onlyConnection()).exec("DROP TABLE clock");
        m_now = noon.addDays(-1);
        m_notes->compareWithLastRecord();
        QCOMPARE(failed.count(), 1);
        QVERIFY(m_journal->fault().has_value());
        QVERIFY(!m_journal->lastRecordAt().isValid());
        m_notes->noteStep(-5000);
        m_notes->noteOffset(5000);
        QCOMPARE(failed.count(), 3);
    }

    void recordsWithoutTheirRemarksAreDamage_data()
    {
        QTest::addColumn<QString>("harm");
        for (const char* harm :
             {"DELETE FROM clock", "DROP TABLE clock", "UPDATE record SET kind = 9",
              "INSERT INTO clock VALUES (9, 1, 1)"})
            QTest::newRow(harm) << harm;
    }

    void recordsWithoutTheirRemarksAreDamage()
    {
        QFETCH(QString, harm);
        m_notes->noteStep(-5000);
        m_journal.reset();
        executeIn(fileIn(m_folder->path()), {"PRAGMA foreign_keys=OFF", harm});
        Journal journal;
        QCOMPARE(kindOf(journal.open(fileIn(m_folder->path()), euro, 17)), "damaged");
    }

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<OpenJournal> m_journal;
    QDateTime m_now;
    std::unique_ptr<ClockNotes> m_notes;
};

QTEST_GUILESS_MAIN(TestClockNotes)
#include "tst_clock_notes.moc"
