#include "GridText.h"
#include "LogCapture.h"
#include "PassengerTypesModel.h"
#include "PassengerTypesModelInspector.h"
#include "Products.h"
#include "Soak.h"
#include "StdoutCapture.h"
#include "TerminalHome.h"

#include <QtTest>

#include <functional>
#include <limits>
#include <memory>

namespace
{

using Action = std::function<void(PassengerTypesModel&)>;

constexpr int lowest = std::numeric_limits<int>::min();
constexpr int highest = std::numeric_limits<int>::max();

const QStringList layoutTypes{"PT_ADULT", "PT_STUDENT_1"};

/// Performs an action at one call of it, or at every call that no own action has led to.
class Trigger : public QObject
{
    Q_OBJECT

public:
    static constexpr int everyCall = 0;

    Trigger(PassengerTypesModel& model, const Action& action, int call)
        : m_model(model), m_action(action), m_wantedCall(call)
    {
    }

    /// Whether the wanted call has come.
    bool hasFired() const { return m_hasFired; }

public slots:
    void call()
    {
        if (m_isBusy)
            return;
        ++m_calls;
        if (m_wantedCall != everyCall && m_wantedCall != m_calls)
            return;
        m_hasFired = true;
        m_isBusy = true;
        m_action(m_model);
        m_isBusy = false;
    }

private:
    PassengerTypesModel& m_model;
    const Action m_action;
    const int m_wantedCall;
    int m_calls = 0;
    bool m_hasFired = false;
    bool m_isBusy = false;
};

/// Calls a trigger at every log record.
struct LogTrigger : el::LogDispatchCallback
{
    Trigger* trigger = nullptr;

    void handle(const el::LogDispatchData*) override
    {
        if (trigger)
            trigger->call();
    }
};

/// Connects a trigger with a signal of the model, or with the log, while it lives.
class Connected
{
public:
    Connected(const PassengerTypesModel& model, const QByteArray& signal, Trigger& trigger)
        : m_isLog(signal == "log")
    {
        if (m_isLog) {
            el::Helpers::installLogDispatchCallback<LogTrigger>("LogTrigger");
            el::Helpers::logDispatchCallback<LogTrigger>("LogTrigger")->trigger = &trigger;
            return;
        }
        const QMetaObject* meta = model.metaObject();
        for (int i = 0; i < meta->methodCount(); ++i) {
            if (meta->method(i).methodType() == QMetaMethod::Signal &&
                meta->method(i).name() == signal)
                m_isConnected = QObject::connect(
                    &model, meta->method(i), &trigger,
                    trigger.metaObject()->method(trigger.metaObject()->indexOfSlot("call()")));
        }
    }

    ~Connected()
    {
        if (m_isLog)
            el::Helpers::uninstallLogDispatchCallback<LogTrigger>("LogTrigger");
    }

    Q_DISABLE_COPY_MOVE(Connected)

    bool isConnected() const { return m_isLog || m_isConnected; }

private:
    const bool m_isLog;
    bool m_isConnected = false;
};

void addManyItems(PassengerTypesModel& model)
{
    for (int i = 0; i < 9; ++i)
        addProducts(model, i % 4 == 3 ? "1m>9! 3n>8!" : "1m>7 3n#0>-7");
}

void layOutAgain(PassengerTypesModel& model) { model.sortAndRegroup(layoutTypes, 3); }

void addItemsAndLayOutAgain(PassengerTypesModel& model)
{
    addManyItems(model);
    layOutAgain(model);
}

void startAnew(PassengerTypesModel& model)
{
    model.clearData();
    addItemsAndLayOutAgain(model);
}

void supportOtherTypes(PassengerTypesModel& model)
{
    model.setSupportedPassengerTypeCodes({"PT_LFS", "X", "PT_MILITARY_1", "PT_MILITARY_2"});
}

void takeFirstRow(PassengerTypesModel& model) { delete model.takeRow(0); }

void groupAnyZone(PassengerTypesModel& model)
{
    for (int zone = 0; zone < 3; ++zone)
        model.sortAndGroupProductsForZone(zone);
}

struct NamedAction
{
    const char* name;
    Action perform;
    bool addsRows = false; // at every call it would never end
};

const QVector<NamedAction> actions{
    {"addItem", addManyItems},
    {"clearData", [](PassengerTypesModel& model) { model.clearData(); }},
    {"clear", [](PassengerTypesModel& model) { model.clear(); }},
    {"removeRow", [](PassengerTypesModel& model) { model.removeRow(0); }},
    {"takeRow and delete", takeFirstRow},
    {"no columns", [](PassengerTypesModel& model) { model.setNumberOfColumns(0); }},
    {"lowest number of columns",
     [](PassengerTypesModel& model) { model.setNumberOfColumns(lowest); }},
    {"highest number of rows", [](PassengerTypesModel& model) { model.setNumberOfRows(highest); }},
    {"lowest number of rows", [](PassengerTypesModel& model) { model.setNumberOfRows(lowest); }},
    {"setSupportedPassengerTypeCodes", supportOtherTypes},
    {"sortAndRegroup", layOutAgain, true},
    {"addItem and sortAndRegroup", addItemsAndLayOutAgain, true},
    {"clearData, addItem and sortAndRegroup", startAnew, true},
    {"sortAndGroupProductsForZone", groupAnyZone},
    {"sortByPrice", [](PassengerTypesModel& model) { model.sortByPrice(Qt::AscendingOrder); }},
    {"switch flipped",
     [](PassengerTypesModel& model) { model.setLogFareProducts(!model.logFareProducts()); }},
};

} // namespace

Q_DECLARE_METATYPE(Action)

class TestLayoutReentrancy : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void modelMayBeCalledInTheMiddleOfLayout_data();
    void modelMayBeCalledInTheMiddleOfLayout();
    void modelMayBeCalledInTheMiddleOfClearing_data();
    void modelMayBeCalledInTheMiddleOfClearing();
    void modelMayBeCalledInTheMiddleOfSelecting();
    void argumentsMayChangeInTheMiddleOfLayout();
    void otherModelMayBeLaidOutInTheMiddleOfLayout_data();
    void otherModelMayBeLaidOutInTheMiddleOfLayout();

private:
    std::unique_ptr<PassengerTypesModel> newModel(const QString& products, bool logFareProducts);
    QString faultOf(const PassengerTypesModel& model) const;

    std::unique_ptr<QObject> m_owner; // of models and their prototypes
    std::unique_ptr<LogCapture> m_log;
    std::unique_ptr<TerminalHome> m_home;
};

void TestLayoutReentrancy::init()
{
    m_owner = std::make_unique<QObject>();
    m_log = std::make_unique<LogCapture>();
    m_home = std::make_unique<TerminalHome>(QStringList{"PT_STUDENT_1", "PT_DISABLED", "PT_ADULT"});
}

void TestLayoutReentrancy::cleanup()
{
    m_home.reset();
    m_log.reset();
    m_owner.reset();
}

std::unique_ptr<PassengerTypesModel> TestLayoutReentrancy::newModel(const QString& products,
                                                                    bool logFareProducts)
{
    auto model = std::make_unique<PassengerTypesModel>(m_owner.get());
    model->setLogFareProducts(logFareProducts);
    addProducts(*model, products);
    return model;
}

/// What is wrong with the rows; empty if nothing is.
QString TestLayoutReentrancy::faultOf(const PassengerTypesModel& model) const
{
    for (int row = 0; row < model.rowCount(); ++row) {
        const rivo::models::ListItem* item = model.itemFromRow(row);
        if (!qobject_cast<const PassengerTypeItem*>(item))
            return QString("row %1 is no tile").arg(row);
        if (item->parent() != &model)
            return QString("row %1 belongs to another").arg(row);
    }
    return QString();
}

void TestLayoutReentrancy::modelMayBeCalledInTheMiddleOfLayout_data()
{
    QTest::addColumn<QString>("products");
    QTest::addColumn<QByteArray>("signal");
    QTest::addColumn<Action>("action");
    QTest::addColumn<bool>("addsRows");

    const QVector<std::pair<const char*, const char*>> layouts{
        {"numbered", "1a@2 3b@4 1c@5 1x>2! 1y>1!"},
        {"fallback", "1a@2 3b@2 1c@5 1x>2! 1y>1!"},
        {"zones", "1a>1 3b>1 1c>2 9d>3 3e>2 1x>2! 1y>1!"},
    };
    const QVector<const char*> emitted{"numberOfColumnsChanged", "numberOfRowsChanged",
                                       "rowsAboutToBeInserted",  "rowsInserted",
                                       "countChanged",           "log"};
    for (const auto& layout : layouts) {
        for (const char* signal : emitted) {
            for (const NamedAction& action : actions) {
                QTest::addRow("%s: %s at %s", layout.first, action.name, signal)
                    << layout.second << QByteArray(signal) << action.perform << action.addsRows;
            }
        }
    }
}

void TestLayoutReentrancy::modelMayBeCalledInTheMiddleOfLayout()
{
    QFETCH(QString, products);
    QFETCH(QByteArray, signal);
    QFETCH(Action, action);
    QFETCH(bool, addsRows);

    const bool isLog = signal == "log";
    QStringList faults;
    bool hasFired = false;
    {
        const StdoutCapture quiet;
        const auto undisturbed = newModel(products, false);
        undisturbed->sortAndRegroup(layoutTypes, 2);
        const QStringList expected = allRoles(*undisturbed);

        // At every call, then only at the first, the second, ... until no call is left; where
        // programs run slowly, at some of them.
        const int firstRound = addsRows ? 1 : Trigger::everyCall;
        for (int call = firstRound; hasFired || call == firstRound;
             call += call == Trigger::everyCall ? 1 : soakDivisor()) {
            const auto model = newModel(products, isLog);
            Trigger trigger(*model, action, call);
            {
                const Connected connected(*model, signal, trigger);
                if (!connected.isConnected())
                    faults << "no such signal";
                model->sortAndRegroup(layoutTypes, 2);
            }
            model->disconnect(&trigger);
            const QString place = QString("call %1: ").arg(call);
            if (!faultOf(*model).isEmpty())
                faults << place + faultOf(*model);

            // A new list is laid out as if nothing had happened.
            model->clearData();
            addProducts(*model, products);
            model->sortAndRegroup(layoutTypes, 2);
            if (allRoles(*model) != expected)
                faults << place + "next grid is " + gridText(*model);
            if (model->numberOfRows() != undisturbed->numberOfRows())
                faults << place + QString("next grid has %1 rows").arg(model->numberOfRows());
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);

            hasFired = trigger.hasFired();
            if (call == firstRound && !hasFired)
                faults << "never emitted";
        }
    }
    QCOMPARE(faults, QStringList());
}

void TestLayoutReentrancy::modelMayBeCalledInTheMiddleOfClearing_data()
{
    QTest::addColumn<QByteArray>("signal");
    QTest::addColumn<Action>("action");

    for (const char* signal : {"rowsAboutToBeRemoved", "rowsRemoved", "countChanged"}) {
        for (const NamedAction& action : actions)
            QTest::addRow("%s at %s", action.name, signal) << QByteArray(signal) << action.perform;
    }
}

void TestLayoutReentrancy::modelMayBeCalledInTheMiddleOfClearing()
{
    QFETCH(QByteArray, signal);
    QFETCH(Action, action);

    QString fault;
    bool hasFired = false;
    {
        const StdoutCapture quiet;
        const auto model = newModel("1a>1 3b>1 1c>2 1x!", false);
        model->sortAndRegroup(layoutTypes, 2);
        Trigger trigger(*model, action, Trigger::everyCall);
        const Connected connected(*model, signal, trigger);
        model->clearData();
        fault = faultOf(*model);
        hasFired = trigger.hasFired();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    QVERIFY(hasFired);
    QCOMPARE(fault, QString());
}

void TestLayoutReentrancy::modelMayBeCalledInTheMiddleOfSelecting()
{
    for (const NamedAction& action : actions) {
        QString fault;
        bool hasFired = false;
        {
            const StdoutCapture quiet;
            const auto model = newModel("1a>1 3b>1 1c>2 1x!", false);
            model->sortAndRegroup(layoutTypes, 2);
            // The tile that is just being selected must not be deleted under its own feet.
            if (action.name == QByteArray("takeRow and delete"))
                continue;
            Trigger trigger(*model, action.perform, Trigger::everyCall);
            const Connected connected(*model, "dataChanged", trigger);
            model->setSelected(0, true);
            fault = faultOf(*model);
            hasFired = trigger.hasFired();
        }
        QVERIFY2(hasFired, action.name);
        QVERIFY2(fault.isEmpty(), qPrintable(fault));
    }
}

void TestLayoutReentrancy::argumentsMayChangeInTheMiddleOfLayout()
{
    const auto model = newModel("1a>1 3b>2", false);
    QStringList codes = layoutTypes;
    int columns = 2;
    connect(model.get(), &PassengerTypesModel::numberOfColumnsChanged, model.get(), [&] {
        codes.clear();
        columns = 0;
    });
    QString grid;
    {
        const StdoutCapture quiet;
        model->sortAndRegroup(codes, columns);
        grid = gridText(*model, 2);
    }
    QCOMPARE(grid, QString("(3) 1a | 3b (1)"));
    QCOMPARE(PassengerTypesModelInspector(*model).localTypeCodes(), (QVector<int>{1, 3}));

    codes = layoutTypes;
    connect(model.get(), &PassengerTypesModel::numberOfRowsChanged, model.get(),
            [&] { codes.clear(); });
    {
        const StdoutCapture quiet;
        model->sortBasedOnLocalData(codes);
    }
    QVERIFY(codes.isEmpty());
    QCOMPARE(PassengerTypesModelInspector(*model).localTypeCodes(), (QVector<int>{1, 3}));
}

void TestLayoutReentrancy::otherModelMayBeLaidOutInTheMiddleOfLayout_data()
{
    QTest::addColumn<Action>("action");
    QTest::addColumn<QString>("otherGrouped");

    const QString block = "3y 1x (3) 1z";
    QTest::newRow("whole layout") << Action([](PassengerTypesModel& other) {
        other.sortAndRegroup(layoutTypes, 2);
    }) << block;
    QTest::newRow("one zone") << Action([](PassengerTypesModel& other) {
        other.sortAndGroupProductsForZone(2);
    }) << block + " (3) 1z";
    QTest::newRow("one zone without products")
        << Action([](PassengerTypesModel& other) { other.sortAndGroupProductsForZone(7); })
        << block;
}

void TestLayoutReentrancy::otherModelMayBeLaidOutInTheMiddleOfLayout()
{
    QFETCH(Action, action);
    QFETCH(QString, otherGrouped);

    const QString products = "1a>1 3b>1 1c>2 3d>3 1e>7";
    QString expected;
    QString grid;
    QString otherGrid;
    {
        const StdoutCapture quiet;
        const auto undisturbed = newModel(products, false);
        undisturbed->sortAndRegroup(layoutTypes, 2);
        expected = gridText(*undisturbed);

        const auto model = newModel(products, false);
        const auto other = newModel("1x>1 3y>1 1z>2", false);
        other->sortAndRegroup(layoutTypes, 2);
        connect(model.get(), &PassengerTypesModel::numberOfRowsChanged, model.get(), [&] {
            other->sortBasedOnLocalData(layoutTypes);
            action(*other);
        });
        model->sortAndRegroup(layoutTypes, 2);
        grid = gridText(*model);
        otherGrid = gridText(PassengerTypesModelInspector(*other).groupedProducts());
    }
    QCOMPARE(expected, QString("3b 1a | (3) 1c | 3d (1) | (3) 1e"));
    QCOMPARE(grid, expected);
    QCOMPARE(otherGrid, otherGrouped);
}

QTEST_GUILESS_MAIN(TestLayoutReentrancy)
#include "tst_layout_reentrancy.moc"
