#include "LayoutRunner.h"

#include "PassengerTypeItem.h"
#include "PassengerTypesModel.h"
#include "PassengerTypesModelInspector.h"

#include <QCoreApplication>
#include <QDir>
#include <QEvent>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <memory>

using oracle::Outcome;
using oracle::Product;
using oracle::State;
using oracle::Step;

namespace
{

// ---- watching a model ----

/// Writes down what a model does, with the log messages in between.
class Observer : public QObject
{
public:
    explicit Observer(LogCapture& log) : m_log(log) { m_log.clear(); }

    void watch(PassengerTypesModel& model)
    {
        using Model = PassengerTypesModel;
        connect(&model, &Model::numberOfColumnsChanged, this, [this](int columns) {
            note({Step::Columns, columns, {}});
        });
        connect(&model, &Model::numberOfRowsChanged, this, [this](int rows) {
            note({Step::Rows, rows, {}});
        });
        connect(&model, &Model::rowsInserted, this,
                [this, &model](const QModelIndex&, int first, int last) {
                    if (first == last && last == model.rowCount() - 1)
                        note({Step::Appended, first, {}});
                    else
                        noteOther(QStringLiteral("insertion of rows %1 to %2 of %3")
                                      .arg(first)
                                      .arg(last)
                                      .arg(model.rowCount()));
                });
        connect(&model, &Model::rowsRemoved, this, [this](const QModelIndex&, int first, int last) {
            if (first == 0)
                note({Step::Removed, last + 1, {}});
            else
                noteOther(QStringLiteral("removal of rows %1 to %2").arg(first).arg(last));
        });
        connect(&model, &Model::rowsMoved, this,
                [this] { noteOther(QStringLiteral("move of rows")); });
        connect(&model, &Model::modelReset, this, [this] { noteOther(QStringLiteral("reset")); });
        connect(&model, &Model::layoutChanged, this,
                [this] { noteOther(QStringLiteral("change of layout")); });
        connect(&model, &Model::dataChanged, this,
                [this] { noteOther(QStringLiteral("change of data")); });
    }

    /// The steps since the last call.
    QVector<Step> takeSteps()
    {
        noteMessages();
        QVector<Step> steps;
        steps.swap(m_steps);
        return steps;
    }

private:
    void noteMessages()
    {
        const QVector<LogCapture::Record> records = m_log.records();
        for (const LogCapture::Record& record : records) {
            if (record.level == el::Level::Info)
                m_steps.append({Step::Log, 0, record.message});
            else
                m_steps.append(
                    {Step::Log, -1, QStringLiteral("not level Info: ") + record.message});
        }
        m_log.clear();
    }

    void note(const Step& step)
    {
        noteMessages();
        m_steps.append(step);
    }

    void noteOther(const QString& what) { note({Step::Other, 0, what}); }

    LogCapture& m_log;
    QVector<Step> m_steps;
};

// ---- comparing ----

using ::describe;

QString describe(const Step& step)
{
    switch (step.kind) {
    case Step::Columns:
        return QStringLiteral("numberOfColumnsChanged(%1)").arg(step.value);
    case Step::Rows:
        return QStringLiteral("numberOfRowsChanged(%1)").arg(step.value);
    case Step::Appended:
        return QStringLiteral("insertion of row %1").arg(step.value);
    case Step::Removed:
        return QStringLiteral("removal of the first %1 rows").arg(step.value);
    case Step::Other:
        return step.text;
    case Step::Log:
        return QStringLiteral("message \"") + step.text + QLatin1Char('"');
    }
    return {};
}

QString describe(int value) { return QString::number(value); }

QString compareValues(const QString& what, const QString& actual, const QString& expected)
{
    return actual == expected ? QString()
                              : QStringLiteral("%1:\n  model:  ").arg(what) + actual +
                                    QStringLiteral("\n  oracle: ") + expected;
}

template <typename T>
QString compareLists(const QString& what, const QVector<T>& actual, const QVector<T>& expected)
{
    if (actual == expected)
        return {};
    int place = 0;
    while (place < qMin(actual.size(), expected.size()) && actual.at(place) == expected.at(place))
        ++place;
    const auto at = [place](const QVector<T>& list) {
        return place < list.size() ? describe(list.at(place)) : QStringLiteral("nothing");
    };
    const QString where = QStringLiteral("%1, entry %2 (of %3, expected %4)")
                              .arg(what)
                              .arg(place)
                              .arg(actual.size())
                              .arg(expected.size());
    return compareValues(where, at(actual), at(expected));
}

Product recorded(const sProduct& record)
{
    Product product;
    product.passengerTypeId = record.passengerTypeId;
    product.description = record.description;
    product.passengerTypeCode = record.passengerTypeCode;
    product.icon = record.icon;
    product.price = record.price;
    product.fareProductId = record.fareProductId;
    product.fareProductName = record.fareProductName;
    product.isReturnFee = record.isReturnFee;
    product.fromStopGroupId = record.fromStopGroupId;
    product.toStopGroupId = record.toStopGroupId;
    product.fareProductColor = record.fareProductColor;
    product.hasExpired = record.hasExpired;
    product.fareDiscount = record.fareDiscount;
    product.isDaily = record.isDaily;
    product.pos = record.pos;
    return product;
}

QVector<Product> recorded(const QVector<sProduct>& records)
{
    QVector<Product> products;
    products.reserve(records.size());
    for (const sProduct& record : records)
        products.append(recorded(record));
    return products;
}

bool sameValue(const QVariant& left, const QVariant& right)
{
    return left.userType() == right.userType() && left == right;
}

QString compareTile(const PassengerTypesModel& model, int row, const Product& expected)
{
    const oracle::Tile tile = oracle::tileOf(expected);
    const QModelIndex index = model.index(row, 0);
    for (int i = 0; i < tile.roles.size(); ++i) {
        const int role = Qt::UserRole + 1 + i;
        const QVariant actual = model.data(index, role);
        if (!sameValue(actual, tile.roles.at(i))) {
            return QStringLiteral("row %1, role %2: model %3 %4, oracle %5 %6")
                .arg(row)
                .arg(role)
                .arg(QLatin1String(actual.typeName()), actual.toString(),
                     QLatin1String(tile.roles.at(i).typeName()), tile.roles.at(i).toString());
        }
    }
    const auto* item = qobject_cast<const PassengerTypeItem*>(model.itemFromRow(row));
    return compareValues(QStringLiteral("row %1, code text").arg(row),
                         item ? item->code() : QStringLiteral("no PassengerTypeItem"), tile.code);
}

QString compareTiles(const PassengerTypesModel& model, const QVector<Product>& expected)
{
    if (model.rowCount() != expected.size()) {
        return compareValues(QStringLiteral("row count"), describe(model.rowCount()),
                             describe(expected.size()));
    }
    for (int row = 0; row < expected.size(); ++row) {
        QString difference = compareTile(model, row, expected.at(row));
        if (!difference.isEmpty())
            return difference;
    }
    return {};
}

QString compareStates(const PassengerTypesModel& model, const State& expected)
{
    const PassengerTypesModelInspector kept(model);
    const QStringList differences{
        compareValues(QStringLiteral("numberOfColumns"), describe(model.numberOfColumns()),
                      describe(expected.columns)),
        compareValues(QStringLiteral("numberOfRows"), describe(model.numberOfRows()),
                      describe(expected.rows)),
        compareLists(QStringLiteral("display order"), kept.typeCodesOrder(), expected.order),
        compareLists(QStringLiteral("supported types"), kept.supportedTypeCodes(),
                     expected.supported),
        compareLists(QStringLiteral("local types"), kept.localTypeCodes(), expected.local),
        compareLists(QStringLiteral("products"), recorded(kept.products()), expected.products),
        compareLists(QStringLiteral("daily products"), recorded(kept.dailyProducts()),
                     expected.dailyProducts),
        compareLists(QStringLiteral("grouped products"), recorded(kept.groupedProducts()),
                     expected.groupedProducts),
        compareTiles(model, expected.tiles)};
    for (const QString& difference : differences) {
        if (!difference.isEmpty())
            return difference;
    }
    return {};
}

// ---- playing ----

void addTo(PassengerTypesModel& model, const Record& record)
{
    const Product& product = record.product;
    model.addItem(product.passengerTypeId, product.description, record.typeText, product.icon,
                  product.price, product.fareProductId, product.fareProductName,
                  product.isReturnFee, product.fromStopGroupId, product.toStopGroupId,
                  product.fareProductColor, product.hasExpired, product.fareDiscount,
                  product.isDaily, product.pos);
}

void play(PassengerTypesModel& model, const Call& call)
{
    switch (call.kind) {
    case Call::Clear:
        model.clearData();
        break;
    case Call::Support:
        model.setSupportedPassengerTypeCodes(call.typeTexts);
        break;
    case Call::Add:
        for (const Record& record : call.records)
            addTo(model, record);
        break;
    case Call::SwitchLogging:
        model.setLogFareProducts(call.number != 0);
        break;
    case Call::SetColumns:
        model.setNumberOfColumns(call.number);
        break;
    case Call::SetRows:
        model.setNumberOfRows(call.number);
        break;
    case Call::LayOut:
        model.sortAndRegroup(call.typeTexts, call.number);
        break;
    case Call::LayOutByPosition:
        model.sortBasedOnBackendAssignment();
        break;
    case Call::LayOutByZone:
        model.sortBasedOnLocalData(call.typeTexts);
        break;
    case Call::GroupZone:
        model.sortAndGroupProductsForZone(call.number);
        break;
    }
}

Outcome quietly(const State& state)
{
    Outcome outcome;
    outcome.state = state;
    return outcome;
}

Outcome foretell(const State& state, const Call& call)
{
    switch (call.kind) {
    case Call::Clear:
        return oracle::cleared(state);
    case Call::Support:
        return oracle::supporting(state, call.typeTexts);
    case Call::Add: {
        State after = state;
        for (const Record& record : call.records)
            after = oracle::added(std::move(after), record.product, record.typeText);
        return quietly(after);
    }
    case Call::SwitchLogging: {
        State after = state;
        after.logging = call.number != 0;
        return quietly(after);
    }
    case Call::SetColumns:
        return oracle::withColumns(state, call.number);
    case Call::SetRows:
        return oracle::withRows(state, call.number);
    case Call::LayOut:
        return oracle::laidOut(state, call.typeTexts, call.number);
    case Call::LayOutByPosition:
        return oracle::laidOutByPosition(state);
    case Call::LayOutByZone:
        return oracle::laidOutByZone(state, call.typeTexts);
    case Call::GroupZone:
        return oracle::withZone(state, call.number);
    }
    return {};
}

bool isLayout(const Call& call) { return call.kind >= Call::LayOut; }

bool isPossible(const Call& call, const State& state)
{
    return call.kind != Call::LayOutByPosition || !state.products.isEmpty();
}

/// What the event loop would do. The second call empties the queue, which only grows otherwise and
/// slows every deletion of an object down.
void destroyClearedRows()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::sendPostedEvents();
}

/// The logger's flag for the duration of a case.
class AutoSpacing
{
public:
    explicit AutoSpacing(bool on) : m_on(on)
    {
        if (m_on)
            el::Loggers::addFlag(el::LoggingFlag::AutoSpacing);
    }
    ~AutoSpacing()
    {
        if (m_on)
            el::Loggers::removeFlag(el::LoggingFlag::AutoSpacing);
    }
    AutoSpacing(const AutoSpacing&) = delete;
    AutoSpacing& operator=(const AutoSpacing&) = delete;

private:
    const bool m_on;
};

} // namespace

Verdict LayoutRunner::run(const Case& layoutCase)
{
    const AutoSpacing spacing(layoutCase.autoSpacing);
    useConfiguration(layoutCase.configuration);

    Verdict verdict;
    State state;
    QObject owner; // of the model and of its prototype row
    Observer observer(m_log);

    const auto differs = [&](const PassengerTypesModel& model, Outcome expected,
                             const QString& output) {
        if (m_distortion)
            m_distortion(expected);
        verdict.branches += expected.branches;
        QString& difference = verdict.difference;
        difference = compareLists(QStringLiteral("steps"), observer.takeSteps(), expected.steps);
        if (difference.isEmpty()) {
            difference =
                compareValues(QStringLiteral("standard output"), output, expected.standardOutput);
        }
        if (difference.isEmpty())
            difference = compareStates(model, expected.state);
        state = expected.state;
        return !difference.isEmpty();
    };

    m_output.start();
    auto* model = new PassengerTypesModel(&owner);
    const QString constructionOutput = m_output.stop();
    if (differs(*model,
                oracle::constructed(layoutCase.configuration.order,
                                    layoutCase.configuration.logging, layoutCase.autoSpacing),
                constructionOutput)) {
        verdict.difference.prepend(QStringLiteral("after construction, "));
        return verdict;
    }
    observer.watch(*model);

    for (int i = 0; i < layoutCase.calls.size(); ++i) {
        const Call& call = layoutCase.calls.at(i);
        if (!isPossible(call, state))
            continue;
        verdict.layouts += isLayout(call) ? 1 : 0;
        if (isLayout(call) && !state.tiles.isEmpty())
            verdict.branches.append(QStringLiteral("layout behind earlier rows"));
        m_output.start();
        play(*model, call);
        const QString output = m_output.stop();
        if (differs(*model, foretell(state, call), output)) {
            verdict.difference.prepend(QStringLiteral("after call %1, ").arg(i + 1));
            return verdict;
        }
    }
    destroyClearedRows();
    return verdict;
}

void LayoutRunner::useConfiguration(const Configuration& configuration)
{
    const QJsonObject settings{
        {QStringLiteral("passengerTypeCodesOrder"),
         QJsonArray::fromStringList(configuration.order)},
        {QStringLiteral("logLevels"),
         configuration.logging ? QJsonArray{QStringLiteral("log_fareproducts")} : QJsonArray{}}};
    const QByteArray text = QJsonDocument(settings).toJson();
    QByteArray& home = m_homeOfSettings[QString::fromUtf8(text)];
    if (home.isEmpty()) {
        const QString path = m_homes.filePath(QString::number(m_homeOfSettings.size()));
        const QString folder = path + QStringLiteral("/ProjectLink");
        QFile file(folder + QStringLiteral("/settings.json"));
        if (!QDir().mkpath(folder) || !file.open(QIODevice::WriteOnly) ||
            file.write(text) != text.size())
            qFatal("The settings cannot be written");
        home = path.toUtf8();
    }
    qputenv("HOME", home);
}
