#include "Table.h"

#include <DriversFile.h>

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace rivo::drivers;

namespace
{

const QString salt(32, 'a');
const QString hash(64, 'b');

/// One entry with `change` in it: {"key", "value as JSON"}; an empty value leaves the key out.
QByteArray entryWith(const QString& key = {}, const QString& value = {})
{
    QMap<QString, QString> fields{{"number", "42"},
                                  {"name", "\"A. Nowak\""},
                                  {"iterations", "10000"},
                                  {"salt", '"' + salt + '"'},
                                  {"hash", '"' + hash + '"'}};
    fields.insert(key, value);
    QStringList parts;
    for (auto field = fields.cbegin(); field != fields.cend(); ++field) {
        if (!field.value().isEmpty())
            parts.append(QStringLiteral("\"%1\": %2").arg(field.key(), field.value()));
    }
    return '{' + parts.join(", ").toUtf8() + '}';
}

QByteArray fileOf(const QList<QByteArray>& entries)
{
    return "{\"drivers\": [" + entries.join(", ") + "]}";
}

} // namespace

class TestDriversFile : public QObject
{
    Q_OBJECT

private slots:
    void driversAreRead()
    {
        write(fileOf({entryWith(), entryWith("number", "1"), entryWith("number", "999999999")}));
        const DriversResult result = readDrivers(file());
        QCOMPARE(result.problems, QStringList());
        QVERIFY(result.drivers.has_value());
        QCOMPARE(result.drivers->size(), 3);
        const Driver driver = result.drivers->first();
        QCOMPARE(driver.number, 42);
        QCOMPARE(driver.name, "A. Nowak");
        QCOMPARE(driver.iterations, 10000);
        QCOMPARE(driver.salt, QByteArray(16, '\xaa'));
        QCOMPARE(driver.hash, QByteArray(32, '\xbb'));
    }

    void limitsAreAccepted_data()
    {
        const Table<QString, QString> row("key", "value");
        row("most iterations", "iterations", "10000000");
        row("shortest salt", "salt", '"' + QString(16, '1') + '"');
        row("longest salt", "salt", '"' + QString(128, '1') + '"');
        row("large digits", "hash", '"' + QString(64, 'F') + '"');
        row("longest name", "name", '"' + QString(100, 'x') + '"');
        row("letters of all kinds", "name", "\"Łukasz Ö\"");
    }

    void limitsAreAccepted()
    {
        QFETCH(QString, key);
        QFETCH(QString, value);
        write(fileOf({entryWith(key, value)}));
        QCOMPARE(readDrivers(file()).problems, QStringList());
    }

    void wrongFiles_data()
    {
        const Table<QByteArray, QString> add("content", "problem");
        add("empty", "", "at byte 0: illegal value");
        add("no JSON", "{\"drivers\": [}", "at byte 14: object is missing after a comma");
        for (const char* other : {"[]", "{}", "{\"drivers\": {}}", "{\"drivers\": [], \"a\": 1}"})
            add(other, other, "expected {\"drivers\": [...]}");
        add("no driver", fileOf({}), "there are no drivers");
        add("too large", QByteArray(4 * 1024 * 1024 + 1, ' '), "larger than 4 MiB");
        const auto entry = [&](const char* what, const char* key, const QString& value,
                               const QString& problem) {
            add(what, fileOf({entryWith("number", "7"), entryWith(key, value)}),
                "driver 2: " + problem);
        };
        add("not an object", fileOf({"7"}),
            "driver 1: \"number\" is a whole number from 1 to 999999999");
        add("twice", fileOf({entryWith(), entryWith()}), "driver 2: number 42 is there twice");
        entry("unknown key", "pin", "\"1234\"", "unknown key \"pin\"");
        for (const char* number : {"", "0", "-1", "1.5", "1000000000", "\"42\"", "null"})
            entry(qPrintable(QStringLiteral("number '%1'").arg(number)), "number", number,
                  "\"number\" is a whole number from 1 to 999999999");
        for (const QString& name :
             {QString(), QString("\" \""), QString("7"), '"' + QString(101, 'x') + '"'})
            entry(qPrintable("name '" + name + '\''), "name", name,
                  "\"name\" is a text of 1 to 100 letters");
        for (const char* iterations : {"", "9999", "10000001", "20000.5", "\"20000\""})
            entry(qPrintable(QStringLiteral("iterations '%1'").arg(iterations)), "iterations",
                  iterations, "\"iterations\" is a whole number from 10000 to 10000000");
        for (const QString& other :
             {QString(), '"' + QString(14, '1') + '"', '"' + QString(130, '1') + '"',
              '"' + QString(17, '1') + '"', '"' + QString(16, 'g') + '"', QString("7")})
            entry(qPrintable("salt '" + other + '\''), "salt", other,
                  "\"salt\" is 8 to 64 bytes in hexadecimal digits");
        for (const QString& other : {QString(), '"' + QString(62, '1') + '"',
                                     '"' + QString(66, '1') + '"', '"' + QString(64, 'x') + '"'})
            entry(qPrintable("hash '" + other + '\''), "hash", other,
                  "\"hash\" is 32 bytes in hexadecimal digits");
    }

    void wrongFiles()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, problem);
        write(content);
        const DriversResult result = readDrivers(file());
        QVERIFY(!result.drivers);
        QCOMPARE(result.problems, QStringList(file() + ": " + problem));
    }

    void everyProblemIsReported()
    {
        write(fileOf({entryWith("name", ""), entryWith("hash", "")}));
        QCOMPARE(readDrivers(file()).problems.size(), 2);
    }

    void missingFile()
    {
        const DriversResult result = readDrivers(m_folder.filePath("none"));
        QVERIFY(!result.drivers);
        QCOMPARE(result.problems.size(), 1);
    }

    /// Values of PBKDF2 with HMAC-SHA-256 that are public.
    void pinIsCheckedByItsHash_data()
    {
        const Table<int, QByteArray> row("iterations", "digest");
        row("1", 1,
            "120fb6cffcf8b32c43e7225256c4f837"
            "a86548c92ccc35480805987cb70be17b");
        row("2", 2,
            "ae4d0c95af6b46d32d0adff928f06dd0"
            "2a303f8ef3c251dfd6e2d85a95474c43");
        row("4096", 4096,
            "c5e478d59288c841aa530db6845c4c8d"
            "962893a001ce4e11a4963873aa98134a");
    }

    void pinIsCheckedByItsHash()
    {
        QFETCH(int, iterations);
        QFETCH(QByteArray, digest);
        Driver driver{1, "A", iterations, "salt", QByteArray::fromHex(digest)};
        QVERIFY(isPinOf(driver, "password"));
        for (const char* wrong : {"Password", "password ", "", "passwor"})
            QVERIFY(!isPinOf(driver, wrong));
        driver.hash.chop(1);
        QVERIFY(!isPinOf(driver, "password"));
    }

    void pinsAreBytesOfUtf8()
    {
        // hashlib.pbkdf2_hmac("sha256", "pół1".encode(), b"salt", 1)
        const Driver driver{
            1, "A", 1, "salt",
            QByteArray::fromHex(
                "472e26f617934616e12b9a9e2af3a3fedcdbb950fcc4c9f8e01946ceb35e2d1c")};
        QVERIFY(isPinOf(driver, "pół1"));
        QVERIFY(!isPinOf(driver, "pol1"));
    }

    /// The line that the document gives to operators makes entries that are read.
    void lineOfTheDocumentMakesAnEntry()
    {
        QFile document(TERMINAL_DOCUMENT);
        QVERIFY(document.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(document.readAll());
        const int from = text.indexOf("import getpass");
        QVERIFY(from > 0);
        const QString program = text.mid(from, text.indexOf('\'', from) - from);
        QProcess python;
        // Without a terminal the PIN is read from the standard input.
        python.start("setsid", {"-w", "python3", "-c", program});
        QVERIFY(python.waitForStarted());
        python.write("42\nA. Nowak\n1234\n");
        python.closeWriteChannel();
        QVERIFY(python.waitForFinished());
        const QByteArray output = python.readAllStandardOutput();
        const int entry = output.indexOf('{');
        QVERIFY2(entry >= 0, python.readAllStandardError());
        write(fileOf({output.mid(entry)}));
        const DriversResult result = readDrivers(file());
        QCOMPARE(result.problems, QStringList());
        QCOMPARE(result.drivers->first().number, 42);
        QCOMPARE(result.drivers->first().name, "A. Nowak");
        QVERIFY(isPinOf(result.drivers->first(), "1234"));
        QVERIFY(!isPinOf(result.drivers->first(), "1235"));
    }

private:
    QString file() const { return m_folder.filePath("drivers.json"); }

    void write(const QByteArray& content) const
    {
        QFile target(file());
        QVERIFY(target.open(QIODevice::WriteOnly));
        QCOMPARE(target.write(content), qint64(content.size()));
    }

    QTemporaryDir m_folder;
};

QTEST_GUILESS_MAIN(TestDriversFile)
#include "tst_drivers_file.moc"
