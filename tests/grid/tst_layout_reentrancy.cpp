#include "GridText.h"
#include "LogCapture.h"
#include "PassengerTypesModel.h"
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

using Model = PassengerTypesModel;
using Action = std::function<void(Model&)>;

constexpr int lowest = std::numeric_limits<int>::min();
constexpr int highest = std::numeric_limits<int>::max();

const QStringList layoutTypes{"PT_ADULT", "PT_STUDENT_1"};
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

class TestLayoutReentrancy : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        const TerminalHome home({"PT_STUDENT_1", "PT_DISABLED", "PT_ADULT"});
        m_home = qgetenv("HOME");
    }

    void init()
    {
        qputenv("HOME", m_home);
        m_owner = std::make_unique<QObject>();
        m_log = std::make_unique<LogCapture>();
    }

    void cleanup()
    {
        m_log.reset();
        m_owner.reset();
    }

    void modelMayBeCalledInTheMiddleOfLayout_data()
    {
        QTest::addColumn<QString>("products");
        QTest::addColumn<Occasion>("occasion");
        QTest::addColumn<Action>("action");
        QTest::addColumn<bool>("addsRows");

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

    void argumentsMayChangeInTheMiddleOfLayout()
    {
        const auto model = newModel("1a>1 3b>2", false);
        QStringList codes = layoutTypes;
        int columns = 2;
        connect(model.get(), &PassengerTypesModel::numberOfColumnsChanged, model.get(), [&] {
            codes.clear();
            columns = 0;
        });
        stdoutOf([&] { model->sortAndRegroup(codes, columns); });
        QCOMPARE(gridText(*model, 2), QString("(3) 1a | 3b (1)"));

        codes = layoutTypes;
        model->clear();
        connect(model.get(), &PassengerTypesModel::numberOfRowsChanged, model.get(),
                [&] { codes.clear(); });
        stdoutOf([&] { model->sortBasedOnLocalData(codes); });
        QVERIFY(codes.isEmpty());
        QCOMPARE(gridText(*model, 2), QString("(3) 1a | 3b (1)"));
    }

    void listOfTilesMayChangeWhileItIsAppended()
    {
        const auto model = newModel("", false);
        QVector<sProduct> products{sProduct(), sProduct(), sProduct()};
        connect(model.get(), &PassengerTypesModel::countChanged, this, [&] { products.clear(); });
        model->addItemsToModel(products);
        QCOMPARE(model->rowCount(), 3);
    }

    void otherModelMayBeLaidOutInTheMiddleOfLayout()
    {
        // Its second zone a second time, or a zone without products.
        for (const auto& [zone, otherRows] : {std::pair(2, 3), std::pair(7, 2)}) {
            const auto model = newModel("1a>1 3b>1 1c>2 3d>3 1e>7", false);
            const auto other = newModel("1x>1 3y>1 1z>2", false);
            other->setNumberOfColumns(2);
            connect(model.get(), &Model::numberOfRowsChanged, model.get(), [&, number = zone] {
                other->clear();
                other->sortBasedOnLocalData(layoutTypes);
                other->sortAndGroupProductsForZone(number);
            });
            stdoutOf([&] { model->sortAndRegroup(layoutTypes, 2); });
            QCOMPARE(gridText(*model), QString("3b 1a | (3) 1c | 3d (1) | (3) 1e"));
            QCOMPARE(gridText(*other), QString("3y 1x | (3) 1z"));
            QCOMPARE(other->numberOfRows(), otherRows);
        }
    }

    void layoutIsChosenBeforeTheColumns()
    {
        // By position "1b@-5" would come first; zone by zone "1a" does.
        const auto tooLate = newModel("1a#1", false);
        connect(tooLate.get(), &Model::numberOfColumnsChanged, tooLate.get(),
                [&] { addProducts(*tooLate, "1b#2@-5"); });
        stdoutOf([&] { tooLate->sortAndRegroup({"PT_ADULT"}, 1); });
        QCOMPARE(gridText(*tooLate), QString("1a | 1b@-5"));

        // The position that goes with the columns has decided: by zone "1a" would come first.
        const auto decided = newModel("1c@2", false);
        connect(decided.get(), &Model::numberOfColumnsChanged, decided.get(), [&] {
            decided->clearData();
            addProducts(*decided, "1b#2 1a#1");
        });
        stdoutOf([&] { decided->sortAndRegroup({"PT_ADULT"}, 1); });
        QCOMPARE(gridText(*decided), QString("1b | 1a"));
    }

    void columnsMayBeWrittenInTheMiddleOfLayout_data()
    {
        QTest::addColumn<int>("columns");
        QTest::addColumn<QString>("grid");

        // Two columns at first, in the order 3, 1.
        QTest::newRow("two as before") << 2 << "3a 1a";
        QTest::newRow("one: slots repeat") << 1 << "1a 3a";
        QTest::newRow("none counts as one") << 0 << "1a 3a";
        QTest::newRow("three: the row is filled") << 3 << "3a 1a (8)";
        QTest::newRow("four: the row is filled, the slots do not reach") << 4 << "1a 3a (8) (8)";
        QTest::newRow("five: too long to be filled") << 5 << "3a 1a";
        QTest::newRow("minus one") << -1 << "3a 1a";
        QTest::newRow("lowest number") << lowest << "3a 1a";
        QTest::newRow("highest number") << highest << "3a 1a";
    }

    void columnsMayBeWrittenInTheMiddleOfLayout()
    {
        QFETCH(int, columns);
        QFETCH(QString, grid);

        const TerminalHome home({"PT_STUDENT_1", "PT_ADULT"});
        const auto model = newModel("1a 3a", false);
        connect(model.get(), &PassengerTypesModel::numberOfRowsChanged, model.get(),
                [&] { model->setNumberOfColumns(columns); });
        stdoutOf([&] { model->sortAndRegroup(layoutTypes, 2); });
        QCOMPARE(gridText(*model, 0), grid);
        QCOMPARE(model->numberOfRows(), 1);
        QCOMPARE(model->numberOfColumns(), columns);
    }

    void fillingRereadsTheGridSize_data()
    {
        QTest::addColumn<int>("columns");
        QTest::addColumn<int>("rows");
        QTest::addColumn<QString>("filling");

        QTest::newRow("columns raised meanwhile") << 5 << 2 << " (@5) (@6) (@7) (@8) (@9) (@10)";
        QTest::newRow("columns changed to a divisor of the count") << 2 << 2 << "";
        QTest::newRow("rows raised meanwhile") << 3 << 3 << " (@5) (@6) (@7) (@8) (@9)";
        QTest::newRow("rows lowered meanwhile") << 3 << 1 << "";
        QTest::newRow("columns set to 0 meanwhile") << 0 << 2 << "";
        QTest::newRow("columns set to the lowest number meanwhile") << lowest << 2 << "";
        QTest::newRow("both set to the highest number meanwhile: too many to be filled")
            << highest << highest << "";
    }

    void fillingRereadsTheGridSize()
    {
        QFETCH(int, columns);
        QFETCH(int, rows);
        QFETCH(QString, filling);

        const auto model = newModel("1a@1 1b@2 1c@3 1d@4", false);
        connect(model.get(), &PassengerTypesModel::numberOfRowsChanged, model.get(), [&] {
            model->setNumberOfColumns(columns);
            model->setNumberOfRows(rows);
        });
        model->sortBasedOnBackendAssignment();
        QCOMPARE(gridText(*model, 0), "1a@1 1b@2 1c@3 1d@4" + filling);
        QCOMPARE(model->numberOfRows(), rows);
    }

    void typesOfTheLayoutFollowTheResetOfTheRows()
    {
        const auto model = newModel("1a", false);
        stdoutOf([&] { model->sortBasedOnLocalData(layoutTypes); });
        connect(model.get(), &PassengerTypesModel::numberOfRowsChanged, model.get(),
                [&] { model->getIndeces({}); });
        // At 0 rows the layout is made for no type yet, at 1 row for both.
        const QByteArray written = stdoutOf([&] { model->sortBasedOnLocalData(layoutTypes); });
        QCOMPARE(QString(written).remove("Remove : ").replace(" from vTypeCodesOrderCpy\n", " "),
                 QString("3 5 1 5 "));
    }

    void zoneGroupedInTheMiddleOfLayoutIsShown()
    {
        const auto model = newModel("1a>1 3b>2 1c>2", false);
        connect(model.get(), &PassengerTypesModel::numberOfRowsChanged, model.get(), [&](int rows) {
            if (rows == 1)
                model->sortAndGroupProductsForZone(2);
        });
        stdoutOf([&] { model->sortAndRegroup(layoutTypes, 2); });
        QCOMPARE(gridText(*model), QString("3b 1c | (3) 1a | 3b 1c"));
        QCOMPARE(model->numberOfRows(), 3);
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

    std::unique_ptr<PassengerTypesModel> newModel(const QString& products, bool logFareProducts)
    {
        auto model = std::make_unique<PassengerTypesModel>(m_owner.get());
        model->setLogFareProducts(logFareProducts);
        addProducts(*model, products);
        return model;
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

    std::unique_ptr<QObject> m_owner; // of models and their prototypes
    std::unique_ptr<LogCapture> m_log;
    QByteArray m_home;
};

QTEST_GUILESS_MAIN(TestLayoutReentrancy)
#include "tst_layout_reentrancy.moc"
