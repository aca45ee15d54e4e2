#include "GridText.h"
#include "GridUnderTest.h"
#include "Soak.h"
#include "StdoutCapture.h"
#include "Table.h"

#include <QtTest>

#include <functional>

namespace
{

using Model = PassengerTypesModel;
using Action = std::function<void(Model&)>;

const QStringList otherTypes{"PT_LFS", "X", "PT_MILITARY_1", "PT_MILITARY_2"};

/// Performs an action at one call of it, or at every call that no own action has led to.
class Trigger
{
public:
    static constexpr int everyCall = 0;

    Trigger(PassengerTypesModel& model, Action action, int call)
        : m_model(model), m_action(std::move(action)), m_wantedCall(call)
    {
    }

    /// Whether the wanted call has come.
    bool hasFired() const { return m_hasFired; }

    void operator()()
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

/// What a trigger may follow. Without a way to connect it is the log.
struct Occasion
{
    const char* name;
    void (*connect)(PassengerTypesModel& model, QObject& context, Trigger& trigger) = nullptr;
};

template <auto signal>
void connectTo(PassengerTypesModel& model, QObject& context, Trigger& trigger)
{
    QObject::connect(&model, signal, &context, [&trigger] { trigger(); });
}

const Occasion rowsRemoved[] = {{"rowsAboutToBeRemoved", connectTo<&Model::rowsAboutToBeRemoved>},
                                {"rowsRemoved", connectTo<&Model::rowsRemoved>},
                                {"countChanged", connectTo<&Model::countChanged>}};

const Occasion layoutSteps[] = {
    {"numberOfColumnsChanged", connectTo<&Model::numberOfColumnsChanged>},
    {"numberOfRowsChanged", connectTo<&Model::numberOfRowsChanged>},
    {"rowsAboutToBeInserted", connectTo<&Model::rowsAboutToBeInserted>},
    {"rowsInserted", connectTo<&Model::rowsInserted>},
    {"countChanged", connectTo<&Model::countChanged>},
    {"log"}};

void addManyItems(PassengerTypesModel& model)
{
    for (int i = 0; i < 9; ++i)
        addProducts(model, i % 4 == 3 ? "1m>9! 3n>8!" : "1m>7 3n#0>-7");
}

void layOutAgain(Model& model) { model.sortAndRegroup(layoutTypes, 3); }

struct NamedAction
{
    const char* name;
    Action perform;
    bool addsRows = false; // at every call it would never end
};

const QVector<NamedAction> actions{
    {"addItem", addManyItems},
    {"clearData", [](Model& model) { model.clearData(); }},
    {"clear", [](Model& model) { model.clear(); }},
    {"removeRow", [](Model& model) { model.removeRow(0); }},
    {"takeRow and delete", [](Model& model) { delete model.takeRow(0); }},
    {"no columns", [](Model& model) { model.setNumberOfColumns(0); }},
    {"lowest number of columns", [](Model& model) { model.setNumberOfColumns(lowest); }},
    {"highest number of rows", [](Model& model) { model.setNumberOfRows(highest); }},
    {"lowest number of rows", [](Model& model) { model.setNumberOfRows(lowest); }},
    {"setSupportedPassengerTypeCodes",
     [](Model& model) { model.setSupportedPassengerTypeCodes(otherTypes); }},
    {"sortAndRegroup", layOutAgain, true},
    {"addItem and sortAndRegroup",
     [](Model& model) {
         addManyItems(model);
         layOutAgain(model);
     },
     true},
    {"clearData, addItem and sortAndRegroup",
     [](Model& model) {
         model.clearData();
         addManyItems(model);
         layOutAgain(model);
     },
     true},
    {"sortAndGroupProductsForZone",
     [](Model& model) {
         for (int zone = 0; zone < 3; ++zone)
             model.sortAndGroupProductsForZone(zone);
     }},
    {"sortByPrice", [](Model& model) { model.sortByPrice(Qt::AscendingOrder); }},
    {"switch flipped", [](Model& model) { model.setLogFareProducts(!model.logFareProducts()); }},
};

} // namespace

Q_DECLARE_METATYPE(Action)
Q_DECLARE_METATYPE(Occasion)

class TestLayoutReentrancy : public QObject, private GridUnderTest
{
    Q_OBJECT

private slots:
    void initTestCase() { configure(); }
    void init() { start(); }
    void cleanup() { end(); }

    void modelMayBeCalledInTheMiddleOfLayout_data()
    {
        addColumns<QString, Occasion, Action, bool>("products", "occasion", "action", "addsRows");

        const QVector<std::pair<const char*, const char*>> layouts{
            {"numbered", "1a@2 3b@4 1c@5 1x>2! 1y>1!"},
            {"fallback", "1a@2 3b@2 1c@5 1x>2! 1y>1!"},
            {"zones", "1a>1 3b>1 1c>2 9d>3 3e>2 1x>2! 1y>1!"},
        };
        for (const auto& layout : layouts) {
            for (const Occasion& occasion : layoutSteps) {
                for (const NamedAction& action : actions) {
                    QTest::addRow("%s: %s at %s", layout.first, action.name, occasion.name)
                        << layout.second << occasion << action.perform << action.addsRows;
                }
            }
        }
    }

    void modelMayBeCalledInTheMiddleOfLayout()
    {
        QFETCH(QString, products);
        QFETCH(Occasion, occasion);
        QFETCH(Action, action);
        QFETCH(bool, addsRows);

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
                const auto model = newModel(products, !occasion.connect);
                Trigger trigger(*model, action, call);
                {
                    const auto context = follow(occasion, *model, trigger);
                    model->sortAndRegroup(layoutTypes, 2);
                }
                m_log->observe({});
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

    /// Zones are laid out in ascending order, each with the products of that moment.
    void aProductAddedBetweenTwoZonesBelongsToTheLaterOne_data()
    {
        const Table<QString, bool> row("product", "isLaidOut");
        row("one of a zone that is still to come", "3c>2", true);
        row("one of a zone that is done", "3c>1", false);
    }

    void aProductAddedBetweenTwoZonesBelongsToTheLaterOne()
    {
        QFETCH(QString, product);
        QString grid;
        bool hasFired = false;
        stdoutOf([&] {
            const auto model = newModel("1a>1 2b>2", false);
            Trigger trigger(
                *model, [&product](Model& busy) { addProducts(busy, product); }, 1);
            const auto context = follow(
                {"numberOfRowsChanged", connectTo<&Model::numberOfRowsChanged>}, *model, trigger);
            model->sortAndRegroup(layoutTypes, 2);
            hasFired = trigger.hasFired();
            grid = gridText(*model);
        });
        QVERIFY(hasFired);
        QVERIFY2(grid.contains("1a") && grid.contains("2b"), qPrintable(grid));
        QTEST(grid.contains("3c"), "isLaidOut");
    }

    void modelMayBeCalledInTheMiddleOfClearing()
    {
        for (const Occasion& occasion : rowsRemoved) {
            for (const NamedAction& action : actions)
                QCOMPARE(faultAfter([](Model& model) { model.clearData(); }, occasion, action),
                         QString());
        }
    }

    void modelMayBeCalledInTheMiddleOfSelecting()
    {
        const Occasion selection{"dataChanged", connectTo<&Model::dataChanged>};
        const auto select = [](Model& model) { model.setSelected(0, true); };
        for (const NamedAction& action : actions) {
            // The tile that is just being selected must not be deleted meanwhile.
            if (action.name != QByteArray("takeRow and delete"))
                QCOMPARE(faultAfter(select, selection, action), QString());
        }
    }

    void supportedTypesMayChangeWhileTheyAreLogged()
    {
        const auto model = newModel("", false);
        Trigger trigger(
            *model, [](Model& busy) { busy.setSupportedPassengerTypeCodes(otherTypes); }, 1);
        const auto context = follow({"log"}, *model, trigger);
        model->setSupportedPassengerTypeCodes({"PT_STUDENT_2", "PT_SCHOOLBOY"});
        m_log->observe({});
        QVERIFY(trigger.hasFired());
        // The configured order, what the inner call appends, what the outer one does.
        QString order;
        const QString written = stdoutOf([&] { model->getIndeces({}); });
        for (const QString& line : written.split('\n', Qt::SkipEmptyParts))
            order += line.section(' ', 2, 2) + ' ';
        QCOMPARE(order, QString("3 5 1 0 7 8 10 4 9 "));
    }

private:
    /// What is wrong after an action in the middle of an operation; empty if nothing is.
    QString faultAfter(const Action& operation, const Occasion& occasion, const NamedAction& action)
    {
        QString fault = "not reached";
        stdoutOf([&] {
            const auto model = newModel("1a>1 3b>1 1c>2 1x!", false);
            model->sortAndRegroup(layoutTypes, 2);
            Trigger trigger(*model, action.perform, Trigger::everyCall);
            const auto context = follow(occasion, *model, trigger);
            operation(*model);
            if (trigger.hasFired())
                fault = faultOf(*model);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        });
        return fault.isEmpty() ? fault : action.name + (" at " + (occasion.name + (": " + fault)));
    }

    /// Calls the trigger at each occasion until the result dies, or observe({}) for the log.
    std::unique_ptr<QObject> follow(const Occasion& occasion, Model& model, Trigger& trigger)
    {
        auto context = std::make_unique<QObject>();
        if (occasion.connect)
            occasion.connect(model, *context, trigger);
        else
            m_log->observe([&trigger] { trigger(); });
        return context;
    }

    /// What is wrong with the rows; empty if nothing is.
    static QString faultOf(const PassengerTypesModel& model)
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
};

QTEST_GUILESS_MAIN(TestLayoutReentrancy)
#include "tst_layout_reentrancy.moc"
