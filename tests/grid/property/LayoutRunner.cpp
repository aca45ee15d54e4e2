#include "LayoutRunner.h"

#include "AutomaticSpacing.h"
#include "GridText.h"
#include "SignalLog.h"
#include "StdoutCapture.h"
#include "TerminalHome.h"

#include "PassengerTypeItem.h"
#include "PassengerTypesModel.h"

#include <QCoreApplication>
#include <QEvent>

#include <memory>

using oracle::Outcome;
using oracle::Product;
using oracle::State;

namespace
{

/// Writes down what a model does, with the log messages in between.
class Observer
{
public:
    explicit Observer(LogCapture& log) : m_log(log)
    {
        m_log.clear();
        m_log.observe([this] { noteMessage(); });
    }
    ~Observer() { m_log.observe({}); }
    Q_DISABLE_COPY_MOVE(Observer)

    void watch(const PassengerTypesModel& model)
    {
        m_signals = std::make_unique<SignalLog>(&model);
    }

    /// The steps since the last call.
    QStringList takeSteps()
    {
        noteSignals();
        QStringList steps;
        steps.swap(m_steps);
        return steps;
    }

private:
    void noteSignals()
    {
        if (m_signals)
            m_steps += m_signals->take();
    }

    void noteMessage()
    {
        noteSignals();
        const LogCapture::Record record = m_log.records().last();
        m_log.clear();
        m_steps +=
            oracle::logged(record.level == el::Level::Info ? record.message : "not level Info");
    }

    LogCapture& m_log;
    std::unique_ptr<SignalLog> m_signals;
    QStringList m_steps;
};

// ---- comparing ----

QString compareValues(const QString& what, const QString& actual, const QString& expected)
{
    return actual == expected ? QString()
                              : what + ":\n  model:  " + actual + "\n  oracle: " + expected;
}

QString compareSteps(const QStringList& actual, const QStringList& expected)
{
    int place = 0;
    while (place < qMin(actual.size(), expected.size()) && actual.at(place) == expected.at(place))
        ++place;
    return actual == expected
               ? QString()
               : compareValues(QString("step %1 of %2, expected %3")
                                   .arg(place)
                                   .arg(actual.size())
                                   .arg(expected.size()),
                               actual.value(place, "none"), expected.value(place, "none"));
}

QString compareTile(const PassengerTypesModel& model, int row, const Product& expected)
{
    const oracle::Tile tile = oracle::tileOf(expected);
    const QModelIndex index = model.index(row, 0);
    for (int i = 0; i < tile.roles.size(); ++i) {
        const int role = Qt::UserRole + 1 + i;
        const QVariant actual = model.data(index, role);
        const QVariant& wanted = tile.roles.at(i);
        if (actual.userType() != wanted.userType() || actual != wanted)
            return compareValues(QString("row %1, role %2").arg(row).arg(role),
                                 actual.typeName() + (' ' + actual.toString()),
                                 wanted.typeName() + (' ' + wanted.toString()));
    }
    const auto* item = qobject_cast<const PassengerTypeItem*>(model.itemFromRow(row));
    return compareValues(QString("row %1, code text").arg(row),
                         item ? item->code() : "no PassengerTypeItem", tile.code);
}

QString compareSizes(const PassengerTypesModel& model, const State& expected)
{
    const auto compare = [](const char* what, int actual, int wanted) {
        return compareValues(what, QString::number(actual), QString::number(wanted));
    };
    return compare("numberOfColumns", model.numberOfColumns(), expected.columns) +
           compare("numberOfRows", model.numberOfRows(), expected.rows) +
           compare("row count", model.rowCount(), expected.tiles.size());
}

QString compareTiles(const PassengerTypesModel& model, const State& expected, int firstRow)
{
    QString difference;
    for (int row = firstRow; difference.isEmpty() && row < expected.tiles.size(); ++row)
        difference = compareTile(model, row, expected.tiles.at(row));
    return difference;
}

// ---- playing ----

QVector<sProduct> recordsOf(const Call& call)
{
    QVector<sProduct> records;
    for (const NewProduct& product : call.products)
        records.append(product.record);
    return records;
}

QStringList namesOf(const QVector<sProduct>& records)
{
    QStringList names;
    for (const sProduct& record : records)
        names.append(record.fareProductName);
    return names;
}

QString joined(const QVector<int>& numbers)
{
    QStringList texts;
    for (const int number : numbers)
        texts.append(QString::number(number));
    return texts.join(' ');
}

QString judge(PassengerTypesModel& model, const QVector<int>& positions)
{
    QVector<sProduct> products(positions.size());
    for (int i = 0; i < positions.size(); ++i)
        products[i].pos = positions.at(i);
    QStringList answers;
    if (model.hasBackendAssignedSortingToProducts(products))
        answers.append("some assigned");
    if (model.hasBackendAssignedPosToProduct(products))
        answers.append("all assigned");
    if (model.checkForPosDuplicates(products))
        answers.append("duplicates");
    if (model.hasBackendAssignedPosToZero(products))
        answers.append("zero");
    if (PassengerTypesModel::hasBackendAssignedPosOutOfRange(products))
        answers.append("out of range");
    return answers.join(", ");
}

QString moved(PassengerTypesModel& model, QVector<sProduct> products, QVector<int> numbers)
{
    model.reOrder(products, numbers);
    return namesOf(products).join(' ') + " to " + joined(numbers);
}

Product productOf(const sProduct& record)
{
    const auto& [typeId, description, type, icon, price, fareProductId, name, returnFee, from, to,
                 color, expired, discount, daily, pos] = record;
    return {typeId, description, type,  icon,    price,    fareProductId, name, returnFee,
            from,   to,          color, expired, discount, daily,         pos};
}

/// Performs a call on the model, which gives `result`, and returns what the oracle expects.
Outcome perform(PassengerTypesModel& model, const State& state, const Call& call, QString& result)
{
    switch (call.kind) {
    case Call::Clear:
        model.clearData();
        return oracle::cleared(state);
    case Call::Support:
        model.setSupportedPassengerTypeCodes(call.typeTexts);
        return oracle::supporting(state, call.typeTexts);
    case Call::Add: {
        Outcome outcome{state, {}, {}, {}, {}};
        for (const NewProduct& product : call.products) {
            addItem(model, product);
            outcome.state = oracle::added(std::move(outcome.state), productOf(product.record),
                                          product.typeText);
        }
        return outcome;
    }
    case Call::SwitchLogging:
        model.setLogFareProducts(call.number() != 0);
        return oracle::withLogging(state, call.number() != 0);
    case Call::SetColumns:
        model.setNumberOfColumns(call.number());
        return oracle::withColumns(state, call.number());
    case Call::SetRows:
        model.setNumberOfRows(call.number());
        return oracle::withRows(state, call.number());
    case Call::Slots:
        result = joined(model.getIndeces(call.numbers));
        return oracle::withSlots(state, call.numbers);
    case Call::Move:
        result = moved(model, recordsOf(call), call.numbers);
        return oracle::moved(state, namesOf(recordsOf(call)), call.numbers);
    case Call::Judge:
        result = judge(model, call.numbers);
        return oracle::judged(state, call.numbers);
    case Call::Print: {
        QVector<Product> products;
        for (const NewProduct& product : call.products)
            products.append(productOf(product.record));
        model.printProducts(recordsOf(call));
        return oracle::printed(state, products);
    }
    case Call::LayOut:
        model.sortAndRegroup(call.typeTexts, call.number());
        return oracle::laidOut(state, call.typeTexts, call.number());
    case Call::LayOutByPosition:
        model.sortBasedOnBackendAssignment();
        return oracle::laidOutByPosition(state);
    case Call::LayOutByZone:
        model.sortBasedOnLocalData(call.typeTexts);
        return oracle::laidOutByZone(state, call.typeTexts);
    case Call::GroupZone:
        model.sortAndGroupProductsForZone(call.number());
        return oracle::withZone(state, call.number());
    }
    return {};
}

/// Show what a model keeps to itself: the slots the display order and the types of the last layout,
/// a layout by position the products, one without products how many types there were.
QVector<Call> revealingCalls(const State& state)
{
    constexpr int mostTiles = 1000;
    QVector<Call> calls{{Call::Slots, {}, {}, {0, 1, 3, 4, 5, 7, 8, 9, 10}}};
    if (!state.products.isEmpty())
        calls.append({Call::GroupZone, {}, {}, {state.products.first().toStopGroupId}});
    if (state.tiles.size() <= mostTiles)
        calls.append(Call{Call::LayOutByPosition});
    return calls + QVector<Call>{Call{Call::Clear}, Call{Call::LayOut, {}, {}, {0}}};
}

/// What the event loop would do. The second call empties the queue, which only grows otherwise and
/// slows every deletion of an object down.
void destroyClearedRows()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::sendPostedEvents();
}

} // namespace

Verdict LayoutRunner::run(const Case& layoutCase, const Watcher& watch)
{
    const AutomaticSpacing spacing(layoutCase.autoSpacing);
    useConfiguration(layoutCase.configuration);

    Verdict verdict;
    State state;
    Seen seen;
    QObject owner; // of the model and of its prototype row
    Observer observer(m_log);
    PassengerTypesModel* model = nullptr;
    bool isLastCall = false;

    // `perform` makes the model do something and returns what is expected of it.
    const auto agrees = [&](const QString& place, const auto& perform) {
        Outcome expected;
        seen.result.clear();
        seen.output = QString::fromUtf8(stdoutOf([&] { expected = perform(); }));
        seen.steps = observer.takeSteps();
        if (m_distortion)
            m_distortion(expected);
        verdict.branches += expected.branches;
        const int firstNewTile = isLastCall ? 0 : state.tiles.size();
        state = expected.state;
        QString difference =
            compareSteps(seen.steps, expected.steps) +
            compareValues("standard output", seen.output, expected.standardOutput) +
            compareValues("result", seen.result, expected.result);
        if (difference.isEmpty())
            difference = compareSizes(*model, state);
        if (difference.isEmpty())
            difference = compareTiles(*model, state, firstNewTile);
        if (!difference.isEmpty())
            verdict.difference = place + ": " + difference;
        return difference.isEmpty();
    };
    const auto playsAlike = [&](const QString& place, const Call& call) {
        return agrees(place, [&] { return perform(*model, state, call, seen.result); });
    };

    if (!agrees("construction", [&] {
            model = new PassengerTypesModel(&owner);
            return oracle::constructed(layoutCase.configuration.order,
                                       layoutCase.configuration.logging, layoutCase.autoSpacing);
        }))
        return verdict;
    if (watch)
        watch(-1, seen);
    observer.watch(*model);

    for (int i = 0; i < layoutCase.calls.size(); ++i) {
        const Call& call = layoutCase.calls.at(i);
        const bool isLayout = call.kind >= Call::LayOut;
        isLastCall = i == layoutCase.calls.size() - 1;
        verdict.layouts += isLayout ? 1 : 0;
        if (isLayout && !state.tiles.isEmpty())
            verdict.branches.append("grid: behind earlier rows");
        if (!playsAlike(QString("call %1").arg(i + 1), call))
            return verdict;
        if (isLayout)
            seen.result = sizedGridText(*model);
        if (watch)
            watch(i, seen);
    }
    isLastCall = false;
    const QStringList branches = verdict.branches;
    for (const Call& call : revealingCalls(state)) {
        if (!playsAlike("revealing call", call))
            return verdict;
    }
    verdict.branches = branches; // those of the case are counted
    destroyClearedRows();
    return verdict;
}

/// Each configuration is followed by a manager of its own: cases share the home that has it.
void LayoutRunner::useConfiguration(const Configuration& configuration)
{
    QByteArray& home = m_homes[{configuration.order.join('\n'), configuration.logging}];
    if (home.isEmpty()) {
        const TerminalHome written(configuration.order, configuration.logging
                                                            ? QStringList("log_fareproducts")
                                                            : QStringList());
        home = qgetenv("HOME");
    }
    qputenv("HOME", home);
}
