#include "Table.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QtTest>

namespace
{

QString outputOf(const QString& program, const QStringList& arguments)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("LC_ALL", "C");
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    return process.waitForFinished() && process.exitCode() == 0
               ? QString::fromUtf8(process.readAllStandardOutput())
               : QString();
}

} // namespace

class CoreLibraryTest : public QObject
{
    Q_OBJECT

private slots:
    void fileAndSonameAreThePlainName();
    void symbolIsExported_data();
    void symbolIsExported();
    void helperIsNotExported_data();
    void helperIsNotExported();
    void onlyTheRunpathNamesThisMachine();
};

void CoreLibraryTest::fileAndSonameAreThePlainName()
{
    QCOMPARE(QFileInfo(CORE_LIBRARY).fileName(), QString("libRIVO_ARM_QtLib.so"));
    QVERIFY(!QFileInfo(CORE_LIBRARY).isSymLink());
    const QString dynamic = outputOf(READELF, {"-d", CORE_LIBRARY});
    QVERIFY2(dynamic.contains("Library soname: [libRIVO_ARM_QtLib.so]\n"), qPrintable(dynamic));
}

void CoreLibraryTest::symbolIsExported_data()
{
    const Table<QString> row("symbol");
    const char* const symbols[] = {
        "el::base::elStorage",
        "el::base::Writer::construct(int, char const*, ...)",
        "el::base::Writer::construct(el::Logger*, bool)",
        "el::base::Writer::processDispatch()",
        "el::base::MessageBuilder::initialize(el::Logger*)",
        "el::LogDispatchCallback::handle(el::LogDispatchData const*)",
        "typeinfo for el::LogDispatchCallback",
        "vtable for el::LogDispatchCallback",
        "typeinfo for el::base::DefaultLogDispatchCallback",
        ("el::Loggers::getLogger(std::__cxx11::basic_string<char, std::char_traits<char>, "
         "std::allocator<char> > const&, bool)"),
        "el::Loggers::reconfigureLogger(el::Logger*, el::Configurations const&)",
        "rivo::core::ConfigManager::instance(QString, QString)",
        "rivo::core::ConfigManager::settingsConfig() const",
        "rivo::core::SettingsConfig::SettingsConfig(QObject*)",
        "rivo::core::SettingsConfig::~SettingsConfig()",
        "rivo::core::SettingsConfig::getLogLevels()",
        "rivo::core::SettingsConfig::passengerTypeCodesOrder() const",
        "rivo::core::SettingsConfig::logLevelsChanged(QStringList)",
        "rivo::core::SettingsConfig::staticMetaObject",
        "vtable for rivo::core::SettingsConfig",
        "QJsonWrapper::JsonObjectFactory::isRegistered(QString)",
        "QJsonWrapper::JsonObjectFactory::m_ObjectsMap()"};
    for (const char* symbol : symbols)
        row(symbol, symbol);
}

void CoreLibraryTest::symbolIsExported()
{
    QFETCH(QString, symbol);
    static const QString symbols = outputOf(NM, {"-DC", "--defined-only", CORE_LIBRARY})
                                       .replace("QList<QString>", "QStringList"); // so with Qt 6
    QVERIFY(!symbols.isEmpty());
    QVERIFY(symbols.contains(" " + symbol + "\n"));
}

void CoreLibraryTest::helperIsNotExported_data()
{
    const Table<QString> row("name");
    for (const char* name :
         {"rivo::core::FileFollower", "rivo::core::RegularFile", "rivo::core::SettingsFile",
          "rivo::core::applyLoggerConfiguration", "rivo::core::SettingsConfigPrivate"})
        row(name, name);
}

void CoreLibraryTest::helperIsNotExported()
{
    QFETCH(QString, name);
    static const QString symbols = outputOf(NM, {"-DC", "--defined-only", CORE_LIBRARY});
    QVERIFY(!symbols.isEmpty());
    QVERIFY(!symbols.contains(" " + name));
}

void CoreLibraryTest::onlyTheRunpathNamesThisMachine()
{
#ifdef __SANITIZE_ADDRESS__
    QSKIP("Sanitizers write source paths into their reports");
#endif
    QFile file(CORE_LIBRARY);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray content = file.readAll();
    const QString dynamic = outputOf(READELF, {"-d", CORE_LIBRARY});
    const QRegularExpressionMatch runpath =
        QRegularExpression(R"(Library (?:runpath|rpath): \[([^\]]*)\])").match(dynamic);
    const QByteArray allowed = runpath.captured(1).toUtf8();

    for (const QByteArray& folder : {QByteArray(SOURCE_FOLDER), QByteArray(BUILD_FOLDER)}) {
        for (int at = content.indexOf(folder); at >= 0; at = content.indexOf(folder, at + 1)) {
            const int begin = content.lastIndexOf('\0', at) + 1;
            const QByteArray text = content.mid(begin, content.indexOf('\0', at) - begin);
            QVERIFY2(!allowed.isEmpty() && text.endsWith(allowed), text.constData());
        }
    }
}

QTEST_GUILESS_MAIN(CoreLibraryTest)
#include "tst_core_library.moc"
