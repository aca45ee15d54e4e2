#include <core/JsonObjectFactory.h>
#include <core/SettingsConfig.h>

#include <QtTest>

#include <dlfcn.h>
#include <memory>
#include <optional>

using QJsonWrapper::JsonObjectFactory;
using rivo::core::SettingsConfig;

namespace
{

template <typename T>
using Registration = JsonObjectFactory::JsonObjectRegistration<T>;

/// Counts how many of its kind were made.
class Counted : public QObject
{
public:
    explicit Counted(QObject* parent) : QObject(parent) { ++made; }
    static int made;
};
int Counted::made = 0;

class NeverNeeded : public QObject
{
public:
    explicit NeverNeeded(QObject* parent) : QObject(parent) { ++made; }
    static int made;
};
int NeverNeeded::made = 0;

const Registration<SettingsConfig> atLoad(QStringLiteral("settingsAtLoad"));

QStringList debugMessages;

void collectMessage(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    if (type == QtDebugMsg)
        debugMessages.append(message);
}

} // namespace

class CoreRegistryTest : public QObject
{
    Q_OBJECT

private slots:
    void staticRegistrationIsThereBeforeMain();
    void absentKeyIsRegistered();
    void presentKeyIsLeftAsItIs();
    void oneObjectPerType();
    void emptyKeyIsOnlyReportedThroughDebug();
    void foreignEntryIsNotTakenBack();
    void unloadedLibraryLeavesNothingBehind();
};

void CoreRegistryTest::staticRegistrationIsThereBeforeMain()
{
    QVERIFY(JsonObjectFactory::isRegistered("settingsAtLoad"));
    const QObject* object = JsonObjectFactory::m_ObjectsMap().value("settingsAtLoad");
    QVERIFY(qobject_cast<const SettingsConfig*>(object));
    QVERIFY(!object->parent());
}

void CoreRegistryTest::absentKeyIsRegistered()
{
    QVERIFY(!JsonObjectFactory::isRegistered("counted"));
    QVERIFY(!JsonObjectFactory::isRegistered(""));
    {
        const Registration<Counted> registration("counted");
        QVERIFY(JsonObjectFactory::isRegistered("counted"));
        QVERIFY(!JsonObjectFactory::isRegistered("Counted"));
        const QObject* object = JsonObjectFactory::m_ObjectsMap().value("counted");
        QVERIFY(dynamic_cast<const Counted*>(object));
        QVERIFY(!object->parent());
    }
    QVERIFY(!JsonObjectFactory::isRegistered("counted"));
    QVERIFY(!JsonObjectFactory::m_ObjectsMap().contains("counted"));
}

void CoreRegistryTest::presentKeyIsLeftAsItIs()
{
    const QObject mine;
    JsonObjectFactory::m_ObjectsMap().insert("present", &mine);
    {
        const Registration<NeverNeeded> registration("present");
        QCOMPARE(JsonObjectFactory::m_ObjectsMap().value("present"), &mine);
        QCOMPARE(NeverNeeded::made, 0);
    }
    // Nor is it taken back with the registration that did not make it.
    QCOMPARE(JsonObjectFactory::m_ObjectsMap().value("present"), &mine);
    JsonObjectFactory::m_ObjectsMap().remove("present");
}

void CoreRegistryTest::oneObjectPerType()
{
    std::optional<Registration<Counted>> first(std::in_place, QString("first"));
    const std::optional<Registration<Counted>> second(std::in_place, QString("second"));
    QCOMPARE(JsonObjectFactory::m_ObjectsMap().value("first"),
             JsonObjectFactory::m_ObjectsMap().value("second"));
    first.reset();
    QVERIFY(!JsonObjectFactory::isRegistered("first"));
    QVERIFY(JsonObjectFactory::isRegistered("second"));
    QCOMPARE(Counted::made, 1);
}

void CoreRegistryTest::emptyKeyIsOnlyReportedThroughDebug()
{
    const auto before = JsonObjectFactory::m_ObjectsMap();
    debugMessages.clear();
    const QtMessageHandler previous = qInstallMessageHandler(collectMessage);
    {
        const Registration<NeverNeeded> registration{QString()};
        const Registration<NeverNeeded> another("");
    }
    qInstallMessageHandler(previous);
    const QString message = "\n\n\n Requested empty class registration \n\n\n";
    QCOMPARE(debugMessages, (QStringList{message, message}));
    QCOMPARE(JsonObjectFactory::m_ObjectsMap(), before);
    QCOMPARE(NeverNeeded::made, 0);
}

void CoreRegistryTest::foreignEntryIsNotTakenBack()
{
    const QObject mine;
    {
        const Registration<Counted> registration("replaced");
        JsonObjectFactory::m_ObjectsMap().insert("replaced", &mine);
    }
    QCOMPARE(JsonObjectFactory::m_ObjectsMap().value("replaced"), &mine);
    JsonObjectFactory::m_ObjectsMap().remove("replaced");
}

void CoreRegistryTest::unloadedLibraryLeavesNothingBehind()
{
    for (int round = 0; round < 2; ++round) {
        QVERIFY(!JsonObjectFactory::isRegistered("loadedSettings"));
        void* library = ::dlopen(REGISTERING_LIBRARY, RTLD_NOW | RTLD_LOCAL);
        QVERIFY2(library, ::dlerror());
        QVERIFY(JsonObjectFactory::isRegistered("loadedSettings"));
        const QObject* object = JsonObjectFactory::m_ObjectsMap().value("loadedSettings");
        QVERIFY(qobject_cast<const SettingsConfig*>(object));
        QCOMPARE(::dlclose(library), 0);
        QVERIFY(!JsonObjectFactory::isRegistered("loadedSettings"));
    }
    QVERIFY(JsonObjectFactory::isRegistered("settingsAtLoad"));
}

QTEST_GUILESS_MAIN(CoreRegistryTest)
#include "tst_core_registry.moc"
