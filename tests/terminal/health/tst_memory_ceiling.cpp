#include "Table.h"

#include <MemoryCeiling.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using rivo::health::memoryCeiling;

/// How much memory the system allows.
class TestMemoryCeiling : public QObject
{
    Q_OBJECT

private slots:
    void ceilings_data();
    void ceilings();
    void thisProgramHasNoneOrOne();
};

namespace
{

void write(const QString& file, const QByteArray& text)
{
    QDir().mkpath(QFileInfo(file).path());
    QFile target(file);
    QVERIFY(target.open(QIODevice::WriteOnly) && target.write(text) == text.size());
}

} // namespace

void TestMemoryCeiling::ceilings_data()
{
    const Table<QByteArray, QString, QByteArray, qint64> row("own", "file", "limit", "ceiling");
    row("a unit", "0::/system.slice/bus.service\n", "system.slice/bus.service/memory.max",
        "402653184\n", Q_INT64_C(402653184));
    row("a unit without a limit", "0::/system.slice/bus.service\n",
        "system.slice/bus.service/memory.max", "max\n", Q_INT64_C(0));
    row("no group", "", "memory.max", "5\n", Q_INT64_C(0));
    row("a group that is not there", "0::/a\n", "b/memory.max", "5\n", Q_INT64_C(0));
    row("version 1", "9:cpu:/\n4:memory:/bus\n0::/\n", "memory/bus/memory.limit_in_bytes",
        "402653184\n", Q_INT64_C(402653184));
    row("version 1 without a limit", "4:memory:/bus\n", "memory/bus/memory.limit_in_bytes",
        "9223372036854771712\n", Q_INT64_C(0));
    row("version 1 in the root", "4:memory:/\n", "memory/memory.limit_in_bytes", "7000000\n",
        Q_INT64_C(7000000));
    row("nonsense", "::::\n\n:\n", "memory.max", "-5", Q_INT64_C(0));
    row("no number", "0::/\n", "memory.max", "12 MB\n", Q_INT64_C(0));
}

void TestMemoryCeiling::ceilings()
{
    QFETCH(QByteArray, own);
    QFETCH(QString, file);
    QFETCH(QByteArray, limit);
    const QTemporaryDir folder;
    write(folder.filePath("own"), own);
    write(folder.filePath("groups/") + file, limit);
    QTEST(memoryCeiling(folder.filePath("own"), folder.filePath("groups")), "ceiling");
}

void TestMemoryCeiling::thisProgramHasNoneOrOne() { QVERIFY(memoryCeiling() >= 0); }

QTEST_GUILESS_MAIN(TestMemoryCeiling)
#include "tst_memory_ceiling.moc"
