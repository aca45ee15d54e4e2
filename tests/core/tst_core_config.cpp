#include "LogCapture.h"
#include "Table.h"
#include "TemporaryConfig.h"

#include <core/ConfigManager.h>
#include <core/SettingsConfig.h>

#include <QSignalSpy>
#include <QtTest>

#include <functional>
#include <sys/stat.h>

using rivo::core::ConfigManager;
using rivo::core::SettingsConfig;

namespace
{

const QByteArray GoodSettings =
    R"({"logLevels": ["good"], "passengerTypeCodesOrder": ["PT_ADULT", "PT_LFS"]})";

QList<QVariant> texts(const QStringList& list) { return QVariant(list).toList(); }

/// Puts something at a path. Returns whether it is there.
using Make = std::function<bool(const QString&)>;

} // namespace

Q_DECLARE_METATYPE(Make)

class CoreConfigTest : public QObject
{
    Q_OBJECT

private slots:
    void settingsWithoutAManagerAreEmpty();
    void valuesAreRead_data();
    void valuesAreRead();
    void badInputIsOneWarningAndKeepsTheLastGoodValue_data();
    void badInputIsOneWarningAndKeepsTheLastGoodValue();
    void badInputAtStartLeavesTheDefaults_data();
    void badInputAtStartLeavesTheDefaults();
    void strangeFileIsReportedAndNeverBlocks_data();
    void strangeFileIsReportedAndNeverBlocks();
    void sameArgumentsGiveTheSameManager();
    void managerIsKnownWhileItReads();
    void nothingIsWrittenUnlessAsked();
};

void CoreConfigTest::settingsWithoutAManagerAreEmpty()
{
    QObject parent;
    auto* settings = new SettingsConfig(&parent);
    QCOMPARE(settings->parent(), &parent);
    QCOMPARE(settings->getLogLevels(), QStringList());
    QCOMPARE(settings->passengerTypeCodesOrder(), QList<QVariant>());
    // One pointer of its own: other libraries allocate this class.
    QCOMPARE(sizeof(SettingsConfig), sizeof(QObject) + sizeof(void*));
}

void CoreConfigTest::valuesAreRead_data()
{
    const Table<QByteArray, QStringList, QStringList> row("content", "logLevels", "order");
    row("both keys", GoodSettings, {"good"}, {"PT_ADULT", "PT_LFS"});
    row("an absent key is empty", R"({"logLevels": ["a", "b"]})", {"a", "b"}, {});
    row("empty lists", R"({"logLevels": [], "passengerTypeCodesOrder": []})", {}, {});
    row("an empty object", "{}", {}, {});
    row("other keys of any type are ignored",
        R"({"x": 1, "logLevels": ["a"], "y": {"logLevels": 5}, "LogLevels": 7})", {"a"}, {});
    row("texts are taken literally: blanks, case, repetition, non-ASCII",
        R"({"logLevels": [" a ", "A", "A", ""], "passengerTypeCodesOrder": ["żółć"]})",
        {" a ", "A", "A", ""}, QStringList{QString::fromUtf8("żółć")});
    row("byte order mark and CRLF", "\xEF\xBB\xBF{\r\n\"logLevels\": [\"a\"]\r\n}\r\n", {"a"}, {});
    row("exactly 1 MiB", QByteArray(R"({"logLevels": ["a"]})").leftJustified(1024 * 1024, ' '),
        {"a"}, {});
}

void CoreConfigTest::valuesAreRead()
{
    QFETCH(QByteArray, content);
    const TemporaryConfig config;
    QVERIFY(config.writeSettings(content));
    const LogCapture log;
    SettingsConfig* settings = config.settings();
    QTEST(settings->getLogLevels(), "logLevels");
    QFETCH(QStringList, order);
    QCOMPARE(settings->passengerTypeCodesOrder(), texts(order));
    for (const QVariant& code : settings->passengerTypeCodesOrder())
        QCOMPARE(code.userType(), static_cast<int>(QMetaType::QString));
    QCOMPARE(log.messages(), QStringList());
}

void CoreConfigTest::badInputIsOneWarningAndKeepsTheLastGoodValue_data()
{
    // warnings: what follows the file's path
    // logLevelsTaken: the new value is ["new"]
    // orderTaken: the new value is ["PT_NEW"]
    const Table<QByteArray, QStringList, bool, bool> row("content", "warnings", "logLevelsTaken",
                                                         "orderTaken");
    const auto syntax = [](const char* name, const QByteArray& content, const char* warning) {
        QTest::newRow(name) << content << QStringList{warning} << false << false;
    };
    syntax("an empty file", "", ":1:1: illegal value");
    syntax("blanks only", " \n \n", ":3:1: illegal value");
    syntax("an unterminated object", "{\n  \"logLevels\": [\"new\"]\n",
           ":3:1: unterminated object");
    syntax("a comma too many", "{\"logLevels\": [\"new\"],}",
           ":1:24: object is missing after a comma");
    syntax("a missing comma on the second line", "{\n  \"logLevels\": [\"new\" \"x\"]\n}",
           ":2:24: missing value separator");
    syntax("a column counts characters, not bytes", "{\"żó\": x}", ":1:8: illegal number");
    syntax("text after the end", "{}\nx", ":2:1: garbage at the end of the document");
    syntax("broken UTF-8", "{\"a\": \"\xFF\"}", ":1:8: invalid UTF8 string");
    syntax("nested too deeply", QByteArray(5000, '['), ":1:1026: too deeply nested document");
    syntax("the root is a list", "[\"new\"]", ":1:1: expected an object, found a list");
    syntax("the root is a number", "42", ":1:2: illegal value");
    syntax("one byte over 1 MiB",
           QByteArray(R"({"logLevels": ["new"]})").leftJustified(1024 * 1024 + 1, ' '),
           ": is larger than 1048576 bytes");

    const auto wrongLevels = [](const char* name, const QByteArray& value, const char* warning) {
        QTest::newRow(name) << QByteArray("{\"logLevels\": " + value +
                                          ", \"passengerTypeCodesOrder\": [\"PT_NEW\"]}")
                            << QStringList{warning} << false << true;
    };
    wrongLevels("log levels are a text", "\"new\"",
                ": /logLevels: expected a list of texts, found a text");
    wrongLevels("log levels are a number", "1.5",
                ": /logLevels: expected a list of texts, found a number");
    wrongLevels("log levels are a truth value", "true",
                ": /logLevels: expected a list of texts, found a truth value");
    wrongLevels("log levels are null", "null",
                ": /logLevels: expected a list of texts, found null");
    wrongLevels("log levels are an object", "{}",
                ": /logLevels: expected a list of texts, found an object");
    wrongLevels("the first log level is a number", "[1, \"new\"]",
                ": /logLevels/0: expected a text, found a number");
    wrongLevels("the last log level is a list", "[\"new\", []]",
                ": /logLevels/1: expected a text, found a list");
    wrongLevels("several elements are wrong, the first is named", "[\"new\", null, 7, true]",
                ": /logLevels/1: expected a text, found null");

    const auto wrongOrder = [](const char* name, const QByteArray& value, const char* warning) {
        QTest::newRow(name) << QByteArray(R"({"logLevels": ["new"], "passengerTypeCodesOrder": )" +
                                          value + "}")
                            << QStringList{warning} << true << false;
    };
    wrongOrder("the order is a number", "3",
               ": /passengerTypeCodesOrder: expected a list of texts, found a number");
    wrongOrder("an element of the order is an object", "[\"PT_NEW\", {}]",
               ": /passengerTypeCodesOrder/1: expected a text, found an object");

    row("both keys are wrong, each is reported",
        R"({"logLevels": 1, "passengerTypeCodesOrder": [2]})",
        {": /logLevels: expected a list of texts, found a number",
         ": /passengerTypeCodesOrder/0: expected a text, found a number"},
        false, false);
}

void CoreConfigTest::badInputIsOneWarningAndKeepsTheLastGoodValue()
{
    QFETCH(QByteArray, content);
    QFETCH(QStringList, warnings);
    QFETCH(bool, logLevelsTaken);
    QFETCH(bool, orderTaken);
    const TemporaryConfig config;
    QVERIFY(config.writeSettings(GoodSettings));
    SettingsConfig* settings = config.settings();
    QSignalSpy changes(settings, &SettingsConfig::logLevelsChanged);

    const LogCapture log;
    QVERIFY(config.writeSettings(content));
    QStringList expected;
    for (const QString& warning : warnings)
        expected.append(config.settingsPath() + warning + "; the last good value stays");
    QTRY_COMPARE(log.messages(el::Level::Warning), expected);
    QCOMPARE(log.messages(), expected);

    const QStringList levels{logLevelsTaken ? "new" : "good"};
    QCOMPARE(settings->getLogLevels(), levels);
    QCOMPARE(changes.count(), logLevelsTaken ? 1 : 0);
    QCOMPARE(settings->passengerTypeCodesOrder(),
             texts(orderTaken ? QStringList{"PT_NEW"} : QStringList{"PT_ADULT", "PT_LFS"}));
    // The file was not repaired.
    QCOMPARE(TemporaryConfig::read(config.settingsPath()), content);
}

void CoreConfigTest::badInputAtStartLeavesTheDefaults_data()
{
    badInputIsOneWarningAndKeepsTheLastGoodValue_data();
}

void CoreConfigTest::badInputAtStartLeavesTheDefaults()
{
    QFETCH(QByteArray, content);
    QFETCH(QStringList, warnings);
    QFETCH(bool, logLevelsTaken);
    QFETCH(bool, orderTaken);
    const TemporaryConfig config;
    QVERIFY(config.writeSettings(content));
    const LogCapture log;
    SettingsConfig* settings = config.settings();
    QCOMPARE(log.records().size(), warnings.size());
    for (int i = 0; i < warnings.size(); ++i) {
        const LogCapture::Record record = log.records().at(i);
        QCOMPARE(record.level, el::Level::Warning);
        QCOMPARE(record.loggerId, QString("default"));
        QCOMPARE(record.file, QString("Core/ConfigManager.cpp"));
        QVERIFY(record.message.startsWith(config.settingsPath() + warnings.at(i) + ";"));
    }
    QCOMPARE(settings->getLogLevels(), logLevelsTaken ? QStringList{"new"} : QStringList());
    QCOMPARE(settings->passengerTypeCodesOrder(),
             texts(orderTaken ? QStringList{"PT_NEW"} : QStringList()));
}

void CoreConfigTest::strangeFileIsReportedAndNeverBlocks_data()
{
    const Table<Make, QString> row("make", "warning");
    row(
        "a folder", [](const QString& path) { return QDir().mkpath(path); },
        ": is a folder, not a file");
    row(
        "a FIFO without a writer",
        [](const QString& path) { return ::mkfifo(qPrintable(path), 0600) == 0; },
        ": is not a regular file");
    row(
        "a device that never ends",
        [](const QString& path) { return QFile::link("/dev/zero", path); },
        ": is not a regular file");
    row(
        "a file that opens and cannot be read",
        [](const QString& path) { return QFile::link("/proc/self/mem", path); },
        ": cannot be read: " + qt_error_string(EIO));
    row(
        "a symbolic link to itself", [](const QString& path) { return QFile::link(path, path); },
        ": cannot be read: " + qt_error_string(ELOOP));
}

void CoreConfigTest::strangeFileIsReportedAndNeverBlocks()
{
    QFETCH(Make, make);
    QFETCH(QString, warning);
    const QString expected = "; the last good value stays";

    const TemporaryConfig fromStart;
    QVERIFY(make(fromStart.settingsPath()));
    const LogCapture log;
    SettingsConfig* settings = fromStart.settings();
    QCOMPARE(log.messages(el::Level::Warning),
             QStringList{fromStart.settingsPath() + warning + expected});
    QCOMPARE(settings->getLogLevels(), QStringList());

    const TemporaryConfig later;
    QVERIFY(later.writeSettings(GoodSettings));
    settings = later.settings();
    QVERIFY(QFile::remove(later.settingsPath()));
    QVERIFY(make(later.settingsPath()));
    QTRY_COMPARE(log.messages(el::Level::Warning).size(), 2);
    QCOMPARE(log.messages().last(), later.settingsPath() + warning + expected);
    QCOMPARE(settings->getLogLevels(), QStringList{"good"});
}

void CoreConfigTest::sameArgumentsGiveTheSameManager()
{
    const TemporaryConfig config;
    ConfigManager* manager = ConfigManager::instance(config.base(), "ProjectLink/");
    QVERIFY(manager);
    QVERIFY(manager->settingsConfig());
    QCOMPARE(ConfigManager::instance(config.base(), "ProjectLink/"), manager);
    // The path counts, see SettingsFile::pathIn().
    QCOMPARE(ConfigManager::instance(config.base() + "/.", "//ProjectLink"), manager);
    QCOMPARE(ConfigManager::instance(config.base(), "ProjectLink/")->settingsConfig(),
             manager->settingsConfig());
    QVERIFY(ConfigManager::instance(config.base(), "Other/") != manager);
    QVERIFY(ConfigManager::instance(config.base() + "/deeper", "ProjectLink/") != manager);
    QVERIFY(ConfigManager::instance(config.base(), "Other/")->settingsConfig() !=
            manager->settingsConfig());
}

void CoreConfigTest::managerIsKnownWhileItReads()
{
    const TemporaryConfig config;
    QVERIFY(config.writeSettings("not JSON"));

    struct Asker : el::LogDispatchCallback
    {
        const TemporaryConfig* config = nullptr;
        ConfigManager* heard = nullptr;
        void handle(const el::LogDispatchData*) override { heard = config->manager(); }
    };
    const LogCapture quiet;
    el::Helpers::installLogDispatchCallback<Asker>("asker");
    auto* asker = el::Helpers::logDispatchCallback<Asker>("asker");
    asker->config = &config;
    ConfigManager* manager = config.manager();
    QCOMPARE(asker->heard, manager);
    el::Helpers::uninstallLogDispatchCallback<Asker>("asker");
    QCOMPARE(quiet.messages().size(), 1);
}

void CoreConfigTest::nothingIsWrittenUnlessAsked()
{
    const TemporaryConfig config;
    QVERIFY(config.removeFolder());
    SettingsConfig* settings = config.settings();
    QCOMPARE(settings->getLogLevels(), QStringList());
    QCOMPARE(TemporaryConfig::entries(config.base()), QStringList());

    QVERIFY(config.makeFolder());
    QVERIFY(config.writeSettings(GoodSettings));
    QTRY_COMPARE(settings->getLogLevels(), QStringList{"good"});
    QCOMPARE(TemporaryConfig::entries(config.folder()), QStringList{"settings.json"});
    QCOMPARE(TemporaryConfig::read(config.settingsPath()), GoodSettings);
    QCOMPARE(QDir().entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList());
}

QTEST_GUILESS_MAIN(CoreConfigTest)
#include "tst_core_config.moc"
