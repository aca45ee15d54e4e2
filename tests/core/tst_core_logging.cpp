#include "LogCapture.h"
#include "Table.h"
#include "TemporaryConfig.h"

#include <QProcess>
#include <QRegularExpression>
#include <QtTest>

#include <sys/stat.h>

namespace
{

/// One run of the probe in an empty working directory.
struct ProbeRun
{
    explicit ProbeRun(const QStringList& arguments)
    {
        QProcess process;
        process.setWorkingDirectory(folder.path());
        process.start(LOG_PROBE, arguments);
        isGood = process.waitForFinished() && process.exitStatus() == QProcess::NormalExit &&
                 process.exitCode() == 0;
        output = process.readAllStandardOutput();
        lines = QString::fromUtf8(process.readAllStandardError()).split('\n', Qt::SkipEmptyParts);
        leftovers = TemporaryConfig::entries(folder.path());
    }

    QTemporaryDir folder;
    bool isGood = false;
    QByteArray output;
    QStringList lines;
    QStringList leftovers;
};

ProbeRun runWith(const TemporaryConfig& config)
{
    return ProbeRun({"config", config.base(), TemporaryConfig::subFolder()});
}

const QString RecordStart = R"(^\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} )";
const QString ProbeOrigin = R"(tests/core/core_log_probe\.cpp:\d+ )";

QStringList defaultPatterns()
{
    return {RecordStart + "INFO " + ProbeOrigin + QString::fromUtf8("count 3 żółć$"),
            RecordStart + "WARNING " + ProbeOrigin + "careful$",
            RecordStart + "DEBUG " + ProbeOrigin + "detail$"};
}

bool matchAll(const QStringList& lines, const QStringList& patterns)
{
    if (lines.size() != patterns.size())
        return false;
    for (int i = 0; i < lines.size(); ++i) {
        if (!QRegularExpression(patterns.at(i)).match(lines.at(i)).hasMatch())
            return false;
    }
    return true;
}

} // namespace

class CoreLoggingTest : public QObject
{
    Q_OBJECT

private slots:
    void loadAndUnloadAreSilent();
    void recordsAreReadableLinesOnStandardError();
    void automaticSpacingFollowsTheFlag();
    void valuesOfQtAreWrittenTheSameWithEveryQt();
    void captureSeesTheDefaultLoggerOnly();
    void loggingConfOverrides();
    void loggingConfWritesToAFile();
    void fileNameMayHoldADate();
    void fileNameAloneWritesNoRecordThere();
    void loggingConfThatIsMissingChangesNothing();
    void badLoggingConfIsOneWarning_data();
    void badLoggingConfIsOneWarning();
    void strangeLoggingConfNeverBlocks();
    void applicationMayOutliveTheLibrary();
    void goodLoggingConfIsTaken_data();
    void goodLoggingConfIsTaken();
};

void CoreLoggingTest::loadAndUnloadAreSilent()
{
    const ProbeRun run({});
    QVERIFY(run.isGood);
    QCOMPARE(run.output, QByteArray());
    QCOMPARE(run.lines, QStringList());
    QCOMPARE(run.leftovers, QStringList());
}

void CoreLoggingTest::recordsAreReadableLinesOnStandardError()
{
    const ProbeRun run({"log"});
    QVERIFY(run.isGood);
    QCOMPARE(run.output, QByteArray());
    QVERIFY2(matchAll(run.lines, defaultPatterns()), qPrintable(run.lines.join('\n')));
    QCOMPARE(run.leftovers, QStringList());
}

void CoreLoggingTest::automaticSpacingFollowsTheFlag()
{
    const LogCapture log;
    LOG(INFO) << "a" << 1 << QString("b") << "c";
    el::Loggers::addFlag(el::LoggingFlag::AutoSpacing);
    LOG(INFO) << "a" << 1 << QString("b") << "c";
    el::Loggers::removeFlag(el::LoggingFlag::AutoSpacing);
    QCOMPARE(log.messages(), (QStringList{"a1bc", "a 1 bc "}));
}

void CoreLoggingTest::valuesOfQtAreWrittenTheSameWithEveryQt()
{
    const LogCapture log;
    const auto write = [] {
        LOG(INFO) << QByteArray("\xc3\xb3") << QLatin1String("text") << QChar('c') << qint64(-1)
                  << quint64(2) << '.';
        LOG(INFO) << QList<QString>{"a", "b"} << QList<int>{4, 2} << QList<int>() << '.';
    };
    write();
    el::Loggers::addFlag(el::LoggingFlag::AutoSpacing);
    write();
    el::Loggers::removeFlag(el::LoggingFlag::AutoSpacing);
    el::Loggers::addFlag(el::LoggingFlag::NewLineForContainer);
    LOG(INFO) << QList<QString>{"a", "b"};
    el::Loggers::removeFlag(el::LoggingFlag::NewLineForContainer);
    QCOMPARE(log.messages(), (QStringList{QString::fromUtf8("ótextc-12."), "[a, b][4, 2][].",
                                          QString::fromUtf8("ótextc-12. "), "[a, b] [4 , 2 ] [] . ",
                                          "[a\n    b]"}));

    QList<QString> many;
    for (int i = 0; i < 101; ++i)
        many.append("x");
    LOG(INFO) << many;
    QCOMPARE(log.messages().last(), '[' + QString("x, ").repeated(100) + "...]");
}

void CoreLoggingTest::captureSeesTheDefaultLoggerOnly()
{
    el::Loggers::getLogger("other");
    LogCapture outer;
    {
        const LogCapture inner;
        LOG(INFO) << QString::fromUtf8("żółć");
        CLOG(INFO, "other") << "not ours";
        QCOMPARE(inner.messages(), QStringList{QString::fromUtf8("żółć")});
        const LogCapture::Record record = inner.records().first();
        QCOMPARE(record.level, el::Level::Info);
        QCOMPARE(record.loggerId, QString("default"));
        QCOMPARE(record.file, QString("tests/core/tst_core_logging.cpp"));
        QVERIFY(record.line > 0);
        QCOMPARE(record.function,
                 QString("void CoreLoggingTest::captureSeesTheDefaultLoggerOnly()"));
    }
    LOG(ERROR) << "second";
    QCOMPARE(outer.messages().size(), 2);
    QCOMPARE(outer.messages(el::Level::Error), QStringList{"second"});
    outer.clear();
    QCOMPARE(outer.messages(), QStringList());
}

void CoreLoggingTest::loggingConfOverrides()
{
    const TemporaryConfig config;
    QVERIFY(TemporaryConfig::write(config.loggingPath(), "## in the field\r\n"
                                                         "* GLOBAL:\r\n"
                                                         "  FORMAT = \"%level|%msg\" ## short\r\n"
                                                         "* DEBUG:\r\n"
                                                         "  ENABLED = false\r\n"));
    const ProbeRun run = runWith(config);
    QVERIFY(run.isGood);
    QCOMPARE(run.output, QByteArray());
    QCOMPARE(run.lines, (QStringList{QString::fromUtf8("INFO|count 3 żółć"), "WARNING|careful"}));
    QCOMPARE(run.leftovers, QStringList());
}

void CoreLoggingTest::loggingConfWritesToAFile()
{
    const TemporaryConfig config;
    const QString logFile = config.base() + "/var/log/grid.log";
    QVERIFY(TemporaryConfig::write(config.loggingPath(), "* GLOBAL:\n"
                                                         "FORMAT = %level %msg\n"
                                                         "TO_STANDARD_OUTPUT = false\n"
                                                         "TO_FILE = true\n"
                                                         "FILENAME = " +
                                                             logFile.toUtf8()));
    const ProbeRun run = runWith(config);
    QVERIFY(run.isGood);
    QCOMPARE(run.output, QByteArray());
    QCOMPARE(run.lines, QStringList());
    QCOMPARE(run.leftovers, QStringList());
    QCOMPARE(TemporaryConfig::read(logFile),
             QByteArray("INFO count 3 żółć\nWARNING careful\nDEBUG detail\n"));
}

void CoreLoggingTest::fileNameMayHoldADate()
{
    const TemporaryConfig config;
    const QByteArray name = config.base().toUtf8() + "/var/grid-%datetime{%Y}.log";
    QVERIFY(TemporaryConfig::write(config.loggingPath(),
                                   "* GLOBAL:\nTO_FILE = true\nFILENAME = " + name));
    const ProbeRun run = runWith(config);
    QVERIFY(run.isGood);
    QVERIFY2(matchAll(run.lines, defaultPatterns()), qPrintable(run.lines.join('\n')));
    const QStringList files = TemporaryConfig::entries(config.base() + "/var");
    QVERIFY2(matchAll(files, {R"(^grid-2\d{3}\.log$)"}), qPrintable(files.join('\n')));
    const QByteArray written = TemporaryConfig::read(config.base() + "/var/" + files.first());
    QCOMPARE(QString::fromUtf8(written).split('\n', Qt::SkipEmptyParts), run.lines);
}

void CoreLoggingTest::fileNameAloneWritesNoRecordThere()
{
    const TemporaryConfig config;
    const QString logFile = config.base() + "/grid.log";
    QVERIFY(
        TemporaryConfig::write(config.loggingPath(), "* GLOBAL:\nFILENAME = " + logFile.toUtf8()));
    const ProbeRun run = runWith(config);
    QVERIFY(run.isGood);
    QVERIFY2(matchAll(run.lines, defaultPatterns()), qPrintable(run.lines.join('\n')));
    QCOMPARE(TemporaryConfig::read(logFile), QByteArray());
}

void CoreLoggingTest::loggingConfThatIsMissingChangesNothing()
{
    const TemporaryConfig config;
    const ProbeRun run = runWith(config);
    QVERIFY(run.isGood);
    QVERIFY2(matchAll(run.lines, defaultPatterns()), qPrintable(run.lines.join('\n')));
    QCOMPARE(TemporaryConfig::entries(config.folder()), QStringList());
}

void CoreLoggingTest::badLoggingConfIsOneWarning_data()
{
    // content: BASE stands for the base path
    // reason: what follows the file's path
    const Table<QByteArray, QString> row("content", "reason");
    const char* expected = ":1: expected \"* LEVEL:\", \"KEY = value\" or \"## comment\"";
    row("garbage", "\x01\xFF garbage \"\"\"\n", expected);
    row("JSON", "{\"a\": 1}", expected);
    row("a section without a colon", "* GLOBAL\n", expected);
    row("a section without a name", "*\n", expected);
    row("an unknown level", "* NOTICE:\n", ":1: NOTICE is not a level");
    row("a key before any section", "\nENABLED = true\n",
        ":2: ENABLED stands before the first \"* LEVEL:\"");
    row("an unknown key", "* GLOBAL:\nCOLOUR = red\n", ":2: COLOUR: is not a known key");
    row("a key without a value", "* GLOBAL:\nENABLED =\n", ":2: ENABLED: has no value");
    row("an empty format", "* GLOBAL:\nFORMAT = \"\"\n", ":2: FORMAT: has no value");
    row("an open quote", "* GLOBAL:\nFORMAT = \"%msg\n",
        ":2: expected \"* LEVEL:\", \"KEY = value\" or \"## comment\"");
    row("neither true nor false", "* GLOBAL:\nENABLED = yes\n",
        ":2: ENABLED: expected true or false");
    row("not a number", "* GLOBAL:\nMAX_LOG_FILE_SIZE = 1k\n",
        ":2: MAX_LOG_FILE_SIZE: expected a number from 0 to 2147483647");
    row("a negative number", "* GLOBAL:\nLOG_FLUSH_THRESHOLD = -1\n",
        ":2: LOG_FLUSH_THRESHOLD: expected a number from 0 to 2147483647");
    row("a number with a sign", "* GLOBAL:\nMAX_LOG_FILE_SIZE = +1\n",
        ":2: MAX_LOG_FILE_SIZE: expected a number from 0 to 2147483647");
    row("a number out of range", "* GLOBAL:\nMAX_LOG_FILE_SIZE = 99999999999999999999\n",
        ":2: MAX_LOG_FILE_SIZE: expected a number from 0 to 2147483647");
    row("too many digits of a second", "* GLOBAL:\nSUBSECOND_PRECISION = 7\n",
        ":2: SUBSECOND_PRECISION: expected a number from 1 to 6");
    row("no digits of a second", "* GLOBAL:\nSUBSECOND_PRECISION = 0\n",
        ":2: SUBSECOND_PRECISION: expected a number from 1 to 6");
    row("a long date with a percent sign at its end",
        "* GLOBAL:\nFORMAT = \"%datetime{" + QByteArray(29, 'x') + "%}\"\n",
        ":2: FORMAT: the date in %datetime{...} can exceed 29 characters");
    row("a relative file name", "* GLOBAL:\nFILENAME = myeasylog.log\n",
        ":2: FILENAME: expected an absolute path");
    row("an escaped time stamp in the file name", "* GLOBAL:\nFILENAME = \"BASE/%%datetime.log\"\n",
        ":2: FILENAME: %datetime must not be escaped");
    const QByteArray longDate = "%datetime{%A, %d. %B %Y %H:%m:%s}";
    row("a date that the logger has no room for", "* GLOBAL:\nFORMAT = \"%msg " + longDate + "\"\n",
        ":2: FORMAT: the date in %datetime{...} can exceed 29 characters");
    row("a date without an end", "* GLOBAL:\nFORMAT = \"%datetime{" + QByteArray(30, 'x') + "\"\n",
        ":2: FORMAT: the date in %datetime{...} can exceed 29 characters");
    row("such a date in the file name", "* GLOBAL:\nFILENAME = BASE/" + longDate + ".log\n",
        ":2: FILENAME: the date in %datetime{...} can exceed 29 characters");
    row("a log folder that cannot be made", "* GLOBAL:\nFILENAME = /proc/nowhere/x.log\n",
        ":2: FILENAME: cannot create the folder /proc/nowhere/");
    row("a log file in place of a folder", "* GLOBAL:\nFILENAME = BASE/ProjectLink\n",
        ":2: FILENAME: cannot write there");
    row("a log file that is a FIFO", "* GLOBAL:\nFILENAME = BASE/fifo\n",
        ":2: FILENAME: cannot write there");
    row("a good beginning does not count", "* GLOBAL:\nFORMAT = \"%msg\"\nENABLED = false\nx\n",
        ":4: expected \"* LEVEL:\", \"KEY = value\" or \"## comment\"");
    row("over 1 MiB", QByteArray(1024 * 1024 + 1, '\n'), ": is larger than 1048576 bytes");
}

void CoreLoggingTest::badLoggingConfIsOneWarning()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, reason);
    const TemporaryConfig config;
    QCOMPARE(::mkfifo(qPrintable(config.base() + "/fifo"), 0600), 0);
    QVERIFY(TemporaryConfig::write(config.loggingPath(),
                                   content.replace("BASE", config.base().toUtf8())));
    const ProbeRun run = runWith(config);
    QVERIFY(run.isGood);
    QCOMPARE(run.output, QByteArray());
    // The default stays, for the warning itself as well.
    const QString warning =
        RecordStart + R"(WARNING Core/ConfigManager\.cpp:\d+ )" +
        QRegularExpression::escape(config.loggingPath() + reason + "; logging stays as it was") +
        "$";
    QVERIFY2(matchAll(run.lines, QStringList{warning} + defaultPatterns()),
             qPrintable(run.lines.join('\n')));
    QCOMPARE(run.leftovers, QStringList());
    QCOMPARE(TemporaryConfig::entries(config.base()), (QStringList{"fifo", "ProjectLink"}));
}

void CoreLoggingTest::strangeLoggingConfNeverBlocks()
{
    const TemporaryConfig fifo;
    QCOMPARE(::mkfifo(qPrintable(fifo.loggingPath()), 0600), 0);
    const ProbeRun withFifo = runWith(fifo);
    QVERIFY(withFifo.isGood);
    QCOMPARE(withFifo.lines.size(), 4);
    QVERIFY(withFifo.lines.first().contains(fifo.loggingPath() + ": is not a regular file; "));

    const TemporaryConfig folder;
    QVERIFY(QDir().mkpath(folder.loggingPath()));
    const ProbeRun withFolder = runWith(folder);
    QVERIFY(withFolder.isGood);
    QCOMPARE(withFolder.lines.size(), 4);
    QVERIFY(
        withFolder.lines.first().contains(folder.loggingPath() + ": is a folder, not a file; "));
}

void CoreLoggingTest::applicationMayOutliveTheLibrary()
{
    const TemporaryConfig config;
    const ProbeRun run({"leave", config.base(), TemporaryConfig::subFolder()});
    QVERIFY(run.isGood);
    QCOMPARE(run.output, QByteArray());
    QVERIFY2(matchAll(run.lines, defaultPatterns()), qPrintable(run.lines.join('\n')));
    QCOMPARE(run.leftovers, QStringList());
}

void CoreLoggingTest::goodLoggingConfIsTaken_data()
{
    const Table<QByteArray, QStringList> row("content", "patterns");
    row("an empty file is the default", {}, defaultPatterns());
    row("comments only", "## one\n\n   ## two", defaultPatterns());
    row("everything off", "* GLOBAL:\nENABLED = FALSE\n", {});
    row("keys and levels in any case, blanks anywhere",
        "  *global :\n\tformat=%msg\n*Warning:\nEnabled = 0",
        {QString::fromUtf8("^count 3 żółć$"), "^detail$"});
    row("a comment mark within quotes", "* GLOBAL:\nFORMAT = \"##%msg\"\n* DEBUG:\nENABLED=false\n",
        {QString::fromUtf8("^##count 3 żółć$"), "^##careful$"});
    row("six digits of a second", "* GLOBAL:\nSUBSECOND_PRECISION = 6\nFORMAT = \"%datetime{%g}\"",
        {R"(^\d{6}$)", R"(^\d{6}$)", R"(^\d{6}$)"});
    row("a date of 29 characters",
        "* GLOBAL:\nFORMAT = \"%datetime{%g%gxxxxxxxxxxxxxxxxx} %level\"\n",
        {"x{17} INFO$", "x{17} WARNING$", "x{17} DEBUG$"});
    row("a date of 29 characters with names",
        "* GLOBAL:\nFORMAT = \"%datetime{%A%Bxxxxxxxxxxx} %level\"\n",
        {"x{11} INFO$", "x{11} WARNING$", "x{11} DEBUG$"});
    row("a date of 29 characters with a time zone",
        "* GLOBAL:\nFORMAT = \"%datetime{%z%zxxxxxxxxxxxxxxxxx} %level\"\n",
        {"x{17} INFO$", "x{17} WARNING$", "x{17} DEBUG$"});
    row("a date of 29 characters with numbers",
        "* GLOBAL:\nFORMAT = \"%datetime{%Y%M%d%H%m%sxxxxx} %level\"\n",
        {"x{5} INFO$", "x{5} WARNING$", "x{5} DEBUG$"});
    row("a device as the log file",
        "* GLOBAL:\nFILENAME = /dev/null\nTO_FILE = true\nMAX_LOG_FILE_SIZE = 10\n",
        defaultPatterns());
    row("a log file on a full disk: the records are on standard error",
        "* GLOBAL:\nFILENAME = /dev/full\nTO_FILE = true\nLOG_FLUSH_THRESHOLD = 1\n",
        defaultPatterns());
}

void CoreLoggingTest::goodLoggingConfIsTaken()
{
    QFETCH(QByteArray, content);
    QFETCH(QStringList, patterns);
    const TemporaryConfig config;
    QVERIFY(TemporaryConfig::write(config.loggingPath(), content));
    const ProbeRun run = runWith(config);
    QVERIFY(run.isGood);
    QCOMPARE(run.output, QByteArray());
    QVERIFY2(matchAll(run.lines, patterns), qPrintable(run.lines.join('\n')));
    QCOMPARE(run.leftovers, QStringList());
}

QTEST_GUILESS_MAIN(CoreLoggingTest)
#include "tst_core_logging.moc"
