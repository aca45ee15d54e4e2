#include "Table.h"

#include <Instructions.h>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace rivo::office;

namespace
{

const QByteArray key(64, 'a');

QByteArray limits(const QByteArray& more)
{
    return R"({"format": "rivo-limits", "version": 1)" + more + "}";
}

QByteArray paid(const QByteArray& shifts)
{
    return R"({"format": "rivo-paid", "version": 1, "shifts": )" + shifts + "}";
}

} // namespace

/// What the office publishes about cash.
class TestInstructions : public QObject
{
    Q_OBJECT

private slots:
    void limitsAreRead()
    {
        const auto read = readLimits(write(limits(R"(, "maxDebt": 150.5, "drivers": [
                {"number": 42, "maxDebt": 0}, {"number": 43, "maxDebt": 200}])")));
        QCOMPARE(read.problems, QStringList());
        QCOMPARE(read.limits->maxDebt, 150.5);
        QCOMPARE(read.limits->ofDrivers, (QMap<qint64, double>{{42, 0.0}, {43, 200.0}}));
        QVERIFY(!readLimits(write(limits(""))).limits->maxDebt);
    }

    void paidShiftsAreRead()
    {
        const auto read = readPaidShifts(
            write(paid(R"([{"journal": ")" + key.toUpper() + R"(", "shift": 17}])")));
        QCOMPARE(read.problems, QStringList());
        QCOMPARE(read.shifts->size(), 1);
        QCOMPARE(read.shifts->first().journal.toHex(), key);
        QCOMPARE(read.shifts->first().shift, 17);
        QVERIFY(readPaidShifts(write(paid("[]"))).shifts->isEmpty());
    }

    void limitsAreRefused_data()
    {
        const Table<QByteArray, QString> row("content", "problem");
        const QString amount = "\"maxDebt\" is an amount from 0 to 999999999";
        row("no JSON", "{", "at byte 1: unterminated object");
        row("another format", paid("[]"), "expected the format \"rivo-limits\", version 1");
        row("another version", R"({"format": "rivo-limits", "version": 2})",
            "expected the format \"rivo-limits\", version 1");
        row("a negative limit", limits(R"(, "maxDebt": -1)"), amount);
        row("a limit that is text", limits(R"(, "maxDebt": "5")"), amount);
        row("a limit beyond all", limits(R"(, "maxDebt": 1e300)"), amount);
        row("drivers that are no list", limits(R"(, "drivers": 5)"), "\"drivers\" is a list");
        row("an unknown key", limits(R"(, "x": 5)"), "unknown key \"x\"");
        row("a driver without a number", limits(R"(, "drivers": [{"maxDebt": 5}])"),
            "driver 1: \"number\" is a whole number from 1 to 999999999");
        row("half a driver", limits(R"(, "drivers": [{"number": 1.5, "maxDebt": 5}])"),
            "driver 1: \"number\" is a whole number from 1 to 999999999");
        row("a driver without a limit", limits(R"(, "drivers": [{"number": 1}])"),
            "driver 1: " + amount);
        row("a driver twice",
            limits(R"(, "drivers": [{"number": 1, "maxDebt": 5}, {"number": 1, "maxDebt": 6}])"),
            "driver 2: number 1 is there twice");
        row("a driver with an unknown key",
            limits(R"(, "drivers": [{"number": 1, "maxDebt": 5, "x": 1}])"),
            "driver 1: unknown key \"x\"");
    }

    void limitsAreRefused()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, problem);
        const QString file = write(content);
        const auto read = readLimits(file);
        QVERIFY(!read.limits);
        QCOMPARE(read.problems, QStringList(file + ": " + problem));
    }

    void paidShiftsAreRefused_data()
    {
        const Table<QByteArray, QString> row("content", "problem");
        const QString journal = "shift 1: \"journal\" is 32 bytes in hexadecimal digits";
        row("another format", limits(""), "expected the format \"rivo-paid\", version 1");
        row("no list", paid("5"), "\"shifts\" is a list");
        row("no key", paid(R"([{"shift": 17}])"), journal);
        row("a key that is too short",
            paid(R"([{"journal": ")" + key.chopped(2) + R"(", "shift": 17}])"), journal);
        row("a key with other letters", paid(R"([{"journal": ")" + key + R"(zz", "shift": 17}])"),
            journal);
        row("no shift", paid(R"([{"journal": ")" + key + R"("}])"),
            "shift 1: \"shift\" is a whole number from 1 to 999999999");
        row("shift 0", paid(R"([{"journal": ")" + key + R"(", "shift": 0}])"),
            "shift 1: \"shift\" is a whole number from 1 to 999999999");
        row("an unknown key", paid(R"([{"journal": ")" + key + R"(", "shift": 17, "x": 1}])"),
            "shift 1: unknown key \"x\"");
        row("larger than 4 MiB", paid("[]") + QByteArray(4 * 1024 * 1024, ' '),
            "larger than 4 MiB");
    }

    void paidShiftsAreRefused()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, problem);
        const QString file = write(content);
        const auto read = readPaidShifts(file);
        QVERIFY(!read.shifts);
        QCOMPARE(read.problems, QStringList(file + ": " + problem));
    }

private:
    QString write(const QByteArray& content) const
    {
        QFile file(m_folder.filePath("file.json"));
        return file.open(QIODevice::WriteOnly) && file.write(content) == content.size()
                   ? file.fileName()
                   : QString();
    }

    QTemporaryDir m_folder;
};

QTEST_GUILESS_MAIN(TestInstructions)
#include "tst_instructions.moc"
