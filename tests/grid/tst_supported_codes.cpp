#include "LogCapture.h"
#include "PassengerTypesModel.h"
#include "PassengerTypesModelInspector.h"
#include "Products.h"
#include "SignalLog.h"
#include "StdoutCapture.h"
#include "TerminalHome.h"

#include <QtTest>

#include <memory>

namespace
{

QString appended(int code) { return QString("Append missing type code %1 from config").arg(code); }

QString defaultOrder(const QString& codes)
{
    return "Products ordering in config is empty. Set default ordering. TypeCodes Order:" + codes;
}

} // namespace

class TestSupportedCodes : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void displayOrderIsCompleted_data();
    void displayOrderIsCompleted();
    void messagesDoNotDependOnTheSwitch_data();
    void messagesDoNotDependOnTheSwitch();
    void laterCallReplacesSupportedCodes_data();
    void laterCallReplacesSupportedCodes();
    void clearDataKeepsCodes();
    void layoutKeepsCodes();
    void ownCodesMayChangeMeanwhile();

private:
    std::unique_ptr<QObject> m_owner; // of models and their prototypes
    std::unique_ptr<LogCapture> m_log;
};

void TestSupportedCodes::init()
{
    m_owner = std::make_unique<QObject>();
    m_log = std::make_unique<LogCapture>();
}

void TestSupportedCodes::cleanup()
{
    m_log.reset();
    m_owner.reset();
}

void TestSupportedCodes::displayOrderIsCompleted_data()
{
    QTest::addColumn<QStringList>("configured");
    QTest::addColumn<QStringList>("texts");
    QTest::addColumn<QVector<int>>("supported");
    QTest::addColumn<QVector<int>>("order");
    QTest::addColumn<QStringList>("messages");

    const QStringList none;
    QTest::newRow("order of the same length is trusted though it names another type")
        << QStringList{"PT_ADULT", "PT_STUDENT_1"} << QStringList{"PT_ADULT", "PT_LFS"}
        << QVector<int>{1, 8} << QVector<int>{1, 3} << none;
    QTest::newRow("order of the same length is trusted though all its types are unknown")
        << QStringList{"X", "Y"} << QStringList{"PT_ADULT", "PT_LFS"} << QVector<int>{1, 8}
        << QVector<int>{0, 0} << none;
    QTest::newRow("order that names the supported types keeps its own sequence")
        << QStringList{"PT_LFS", "PT_ADULT"} << QStringList{"PT_ADULT", "PT_LFS"}
        << QVector<int>{1, 8} << QVector<int>{8, 1} << none;
    QTest::newRow("repeated types count for the length")
        << QStringList{"PT_ADULT", "PT_STUDENT_1"} << QStringList{"PT_LFS", "PT_LFS"}
        << QVector<int>{8, 8} << QVector<int>{1, 3} << none;

    QTest::newRow("missing types are appended ascending, not as given")
        << QStringList{"PT_STUDENT_1"} << QStringList{"PT_LFS", "PT_ADULT"} << QVector<int>{1, 8}
        << QVector<int>{3, 1, 8} << QStringList{appended(1), appended(8)};
    QTest::newRow("repeated type is appended once")
        << QStringList{"PT_ADULT"} << QStringList{"PT_ADULT", "PT_ADULT", "PT_LFS"}
        << QVector<int>{1, 1, 8} << QVector<int>{1, 8} << QStringList{appended(8)};
    QTest::newRow("repeated missing type is appended once")
        << QStringList{"PT_ADULT"} << QStringList{"PT_LFS", "PT_LFS"} << QVector<int>{8, 8}
        << QVector<int>{1, 8} << QStringList{appended(8)};
    QTest::newRow("types of the order that are not supported stay")
        << QStringList{"PT_LFS", "PT_DISABLED", "PT_ADULT"} << QStringList{"PT_ADULT"}
        << QVector<int>{1} << QVector<int>{8, 5, 1} << none;
    QTest::newRow("unknown text is a type of its own, appended as 0")
        << QStringList{"PT_ADULT"} << QStringList{"PT_ADULT", "PT_PENSIONER"} << QVector<int>{0, 1}
        << QVector<int>{1, 0} << QStringList{appended(0)};
    QTest::newRow("0 of the order covers unknown texts")
        << QStringList{"X"} << QStringList{"Y", "Z", "PT_ADULT"} << QVector<int>{0, 0, 1}
        << QVector<int>{0, 1} << QStringList{appended(1)};
    QTest::newRow("all types are appended to the configured one")
        << QStringList{"PT_DISABLED"}
        << QStringList{"PT_MILITARY_2", "PT_STUDENT_2", "PT_LFS",       "PT_MILITARY_1",
                       "PT_DISABLED",   "PT_SCHOOLBOY", "PT_STUDENT_1", "PT_ADULT"}
        << QVector<int>{1, 3, 4, 5, 7, 8, 9, 10} << QVector<int>{5, 1, 3, 4, 7, 8, 9, 10}
        << QStringList{appended(1), appended(3), appended(4), appended(7),
                       appended(8), appended(9), appended(10)};
    QTest::newRow("nothing supported leaves the order as it is")
        << QStringList{"PT_ADULT"} << none << QVector<int>() << QVector<int>{1} << none;

    QTest::newRow("without an order the supported types are it, ascending")
        << none << QStringList{"PT_SCHOOLBOY", "PT_ADULT", "PT_STUDENT_1"} << QVector<int>{1, 3, 4}
        << QVector<int>{1, 3, 4} << QStringList{defaultOrder(" [1],[3],[4]")};
    QTest::newRow("without an order repeated types are copied")
        << none << QStringList{"PT_SCHOOLBOY", "PT_ADULT", "PT_ADULT"} << QVector<int>{1, 1, 4}
        << QVector<int>{1, 1, 4} << QStringList{defaultOrder(" [1],[1],[4]")};
    QTest::newRow("without an order a single type has no comma")
        << none << QStringList{"PT_MILITARY_2"} << QVector<int>{10} << QVector<int>{10}
        << QStringList{defaultOrder(" [10]")};
    QTest::newRow("without an order unknown texts come first as 0")
        << none << QStringList{"PT_ADULT", "X", ""} << QVector<int>{0, 0, 1}
        << QVector<int>{0, 0, 1} << QStringList{defaultOrder(" [0],[0],[1]")};
    QTest::newRow("without an order and types the message ends in a colon")
        << none << none << QVector<int>() << QVector<int>() << QStringList{defaultOrder("")};
}

void TestSupportedCodes::displayOrderIsCompleted()
{
    QFETCH(QStringList, configured);
    QFETCH(QStringList, texts);
    QFETCH(QVector<int>, supported);
    QFETCH(QVector<int>, order);
    QFETCH(QStringList, messages);

    const TerminalHome home(configured);
    PassengerTypesModel model(m_owner.get());
    SignalLog signalLog(&model);
    m_log->clear();

    model.setSupportedPassengerTypeCodes(texts);

    const PassengerTypesModelInspector inspector(model);
    QCOMPARE(inspector.supportedTypeCodes(), supported);
    QCOMPARE(inspector.typeCodesOrder(), order);
    QCOMPARE(m_log->messages(), messages);
    QCOMPARE(signalLog.take(), QStringList());
    QCOMPARE(inspector.localTypeCodes(), QVector<int>());
    QCOMPARE(model.numberOfColumns(), 3);
}

void TestSupportedCodes::messagesDoNotDependOnTheSwitch_data()
{
    QTest::addColumn<bool>("logFareProducts");
    QTest::newRow("switched off") << false;
    QTest::newRow("switched on") << true;
}

void TestSupportedCodes::messagesDoNotDependOnTheSwitch()
{
    QFETCH(bool, logFareProducts);

    const TerminalHome home;
    PassengerTypesModel model(m_owner.get());
    model.setLogFareProducts(logFareProducts);
    m_log->clear();
    model.setSupportedPassengerTypeCodes({"PT_ADULT"});
    model.setSupportedPassengerTypeCodes({"PT_ADULT", "PT_LFS"});
    QCOMPARE(m_log->messages(), (QStringList{defaultOrder(" [1]"), appended(8)}));
}

void TestSupportedCodes::laterCallReplacesSupportedCodes_data()
{
    QTest::addColumn<QStringList>("first");
    QTest::addColumn<QStringList>("second");
    QTest::addColumn<QVector<int>>("supported");
    QTest::addColumn<QVector<int>>("order");
    QTest::addColumn<QStringList>("messages");

    QTest::newRow("same types again say nothing")
        << QStringList{"PT_ADULT", "PT_LFS"} << QStringList{"PT_LFS", "PT_ADULT"}
        << QVector<int>{1, 8} << QVector<int>{1, 8} << QStringList();
    QTest::newRow("fewer types do not shorten the order")
        << QStringList{"PT_ADULT", "PT_LFS"} << QStringList{"PT_LFS"} << QVector<int>{8}
        << QVector<int>{1, 8} << QStringList();
    QTest::newRow("more types are appended")
        << QStringList{"PT_LFS"} << QStringList{"PT_LFS", "PT_ADULT"} << QVector<int>{1, 8}
        << QVector<int>{8, 1} << QStringList{appended(1)};
    QTest::newRow("another type in the same number is not appended")
        << QStringList{"PT_LFS"} << QStringList{"PT_ADULT"} << QVector<int>{1} << QVector<int>{8}
        << QStringList();
    QTest::newRow("no types at first leave the choice to the second call")
        << QStringList() << QStringList{"PT_LFS", "PT_ADULT"} << QVector<int>{1, 8}
        << QVector<int>{1, 8} << QStringList{defaultOrder(" [1],[8]")};
    QTest::newRow("no types at last empty the supported ones only")
        << QStringList{"PT_LFS"} << QStringList() << QVector<int>() << QVector<int>{8}
        << QStringList();
}

void TestSupportedCodes::laterCallReplacesSupportedCodes()
{
    QFETCH(QStringList, first);
    QFETCH(QStringList, second);
    QFETCH(QVector<int>, supported);
    QFETCH(QVector<int>, order);
    QFETCH(QStringList, messages);

    const TerminalHome home;
    PassengerTypesModel model(m_owner.get());
    model.setSupportedPassengerTypeCodes(first);
    m_log->clear();
    model.setSupportedPassengerTypeCodes(second);

    const PassengerTypesModelInspector inspector(model);
    QCOMPARE(inspector.supportedTypeCodes(), supported);
    QCOMPARE(inspector.typeCodesOrder(), order);
    QCOMPARE(m_log->messages(), messages);
}

void TestSupportedCodes::clearDataKeepsCodes()
{
    const TerminalHome home({"PT_STUDENT_1"});
    PassengerTypesModel model(m_owner.get());
    model.setSupportedPassengerTypeCodes({"PT_LFS", "PT_ADULT"});
    model.clearData();
    const PassengerTypesModelInspector inspector(model);
    QCOMPARE(inspector.supportedTypeCodes(), (QVector<int>{1, 8}));
    QCOMPARE(inspector.typeCodesOrder(), (QVector<int>{3, 1, 8}));
}

void TestSupportedCodes::layoutKeepsCodes()
{
    const TerminalHome home({"PT_STUDENT_1"});
    PassengerTypesModel model(m_owner.get());
    model.setSupportedPassengerTypeCodes({"PT_LFS", "PT_ADULT"});
    for (const char* products : {"1a 4b 8c", "1a@2 4b@3"}) {
        model.clearData();
        addProducts(model, products);
        stdoutOf([&model] { model.sortAndRegroup({"PT_ADULT", "PT_SCHOOLBOY"}, 0); });
        const PassengerTypesModelInspector inspector(model);
        QCOMPARE(inspector.supportedTypeCodes(), (QVector<int>{1, 8}));
        QCOMPARE(inspector.typeCodesOrder(), (QVector<int>{3, 1, 8}));
    }
}

void TestSupportedCodes::ownCodesMayChangeMeanwhile()
{
    // Whoever receives the log records may call back into the model.
    struct Caller : el::LogDispatchCallback
    {
        PassengerTypesModel* model = nullptr;
        bool isBusy = false;

        void handle(const el::LogDispatchData*) override
        {
            if (!model || isBusy)
                return;
            isBusy = true;
            model->setSupportedPassengerTypeCodes({"PT_MILITARY_2", "PT_STUDENT_2", "X", "Y"});
            isBusy = false;
        }
    };
    const TerminalHome home({"PT_STUDENT_1"});
    PassengerTypesModel model(m_owner.get());
    el::Helpers::installLogDispatchCallback<Caller>("Caller");
    el::Helpers::logDispatchCallback<Caller>("Caller")->model = &model;

    model.setSupportedPassengerTypeCodes({"PT_LFS", "PT_ADULT"});
    el::Helpers::uninstallLogDispatchCallback<Caller>("Caller");

    const PassengerTypesModelInspector inspector(model);
    QCOMPARE(inspector.supportedTypeCodes(), (QVector<int>{0, 0, 9, 10}));
    for (const int code : {3, 0, 1, 8, 9, 10})
        QVERIFY2(inspector.typeCodesOrder().contains(code), qPrintable(QString::number(code)));
}

QTEST_GUILESS_MAIN(TestSupportedCodes)
#include "tst_supported_codes.moc"
