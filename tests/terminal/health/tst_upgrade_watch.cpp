#include "Table.h"
#include "UpgradeWatch.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

using rivo::health::UpgradeWatch;

/// When the program restarts after the package was upgraded.
class TestUpgradeWatch : public QObject
{
    Q_OBJECT

private slots:
    void restarts_data();
    void restarts();
    void waitsUntilItMayRestart();
};

namespace
{

constexpr int fast = 10;
constexpr int manyLooks = 20 * fast;

void upgrade(const QString& file)
{
    QFile::remove(file);
    QFile stamp(file);
    QVERIFY(stamp.open(QIODevice::WriteOnly));
    // Another time than before, whatever the file system's clock has.
    static int upgrades = 0;
    const QDateTime time = QDateTime::currentDateTime().addSecs(++upgrades);
    QVERIFY(stamp.setFileTime(time, QFileDevice::FileModificationTime));
}

} // namespace

void TestUpgradeWatch::restarts_data()
{
    const Table<bool, bool, bool, int> row("isThereBefore", "isUpgraded", "isRemoved", "restarts");
    row("without an upgrade nothing is due", false, false, false, 0);
    row("an upgrade before the start does not count", true, false, false, 0);
    row("the first upgrade since the system started", false, true, false, 1);
    row("another upgrade since the system started", true, true, false, 1);
    row("a file that was removed is no upgrade", true, false, true, 0);
}

void TestUpgradeWatch::restarts()
{
    QFETCH(bool, isThereBefore);
    QFETCH(bool, isUpgraded);
    QFETCH(bool, isRemoved);
    const QTemporaryDir folder;
    const QString file = folder.filePath("upgraded");
    if (isThereBefore)
        upgrade(file);
    const UpgradeWatch watch(
        file, [] { return true; }, fast);
    QSignalSpy due(&watch, &UpgradeWatch::restartDue);
    if (isUpgraded)
        upgrade(file);
    if (isRemoved)
        QVERIFY(QFile::remove(file));
    QFETCH(int, restarts);
    if (restarts > 0)
        QTRY_COMPARE(due.size(), restarts);
    QTest::qWait(manyLooks);
    QCOMPARE(due.size(), restarts);
}

void TestUpgradeWatch::waitsUntilItMayRestart()
{
    const QTemporaryDir folder;
    bool isSelling = true;
    int questions = 0;
    const UpgradeWatch watch(
        folder.filePath("upgraded"),
        [&] {
            ++questions;
            return !isSelling;
        },
        fast);
    QSignalSpy due(&watch, &UpgradeWatch::restartDue);
    QTest::qWait(manyLooks);
    QCOMPARE(questions, 0);
    upgrade(folder.filePath("upgraded"));
    QTRY_VERIFY(questions > 2);
    QCOMPARE(due.size(), 0);
    isSelling = false;
    QTRY_COMPARE(due.size(), 1);
}

QTEST_GUILESS_MAIN(TestUpgradeWatch)
#include "tst_upgrade_watch.moc"
