// What an operation costs, counted: the figures are the same in every run, on every machine. They
// hold for Qt 5.15.8 and libstdc++ 12; a change that makes an operation cheaper lowers its row of
// the table.

#include "AllocationCount.h"
#include "DeferredDeletions.h"
#include "ListModel.h"
#include "PassengerTypeItem.h"
#include "Products.h"
#include "SignalLog.h"

#include <core/Logging.h>

#include <QtTest>

#include <cstdlib>
#include <memory>
#include <vector>

using rivo::models::ListItem;
using rivo::models::ListModel;

namespace
{

struct Counts
{
    int connections = 0;
    int dataCalls = 0;
    int copies = 0;
};

Counts counts;

/// A number that counts its copies. It is small enough and movable, so that a QVariant holds it
/// itself: each copy of the QVariant is one of the number.
class CountedNumber
{
public:
    explicit CountedNumber(int number = 0) : m_number(number) {}
    CountedNumber(const CountedNumber& other) : m_number(other.m_number) { ++counts.copies; }
    CountedNumber& operator=(const CountedNumber& other)
    {
        m_number = other.m_number;
        ++counts.copies;
        return *this;
    }
    ~CountedNumber() = default;

    bool operator==(const CountedNumber& other) const { return m_number == other.m_number; }
    bool operator<(const CountedNumber& other) const { return m_number < other.m_number; }

private:
    int m_number;
};

} // namespace

Q_DECLARE_TYPEINFO(CountedNumber, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(CountedNumber)

namespace
{

constexpr int rows = 100;

/// A row that counts what is asked of it.
class CountedRow : public ListItem // has the signals of ListItem: no Q_OBJECT
{
public:
    enum Role { IdRole = Qt::UserRole + 1, NumberRole };

    CountedRow(int id, QObject* parent)
        : ListItem(parent), m_id(id), m_number(QVariant::fromValue(CountedNumber(id)))
    {
    }

    int id() const override { return m_id; }

    QVariant data(int role) const override
    {
        ++counts.dataCalls;
        return role == IdRole ? QVariant(m_id) : role == NumberRole ? m_number : QVariant();
    }

    QHash<int, QByteArray> roleNames() const override
    {
        static const QHash<int, QByteArray> names{{IdRole, "id"}, {NumberRole, "number"}};
        return names;
    }

    void setId(int id) { store(m_id, id); }

protected:
    void connectNotify(const QMetaMethod& signal) override
    {
        ++counts.connections;
        ListItem::connectNotify(signal);
    }

private:
    int m_id;
    QVariant m_number;
};

/// A model that counts what is connected to it.
template <typename Model>
class Counted : public Model // has the signals of Model: no Q_OBJECT
{
public:
    using Model::Model;

protected:
    void connectNotify(const QMetaMethod& signal) override
    {
        ++counts.connections;
        Model::connectNotify(signal);
    }
};

/// What is connected to a row of any class.
int connectionsOf(const ListItem* row)
{
    struct Access : QObject
    {
        using QObject::receivers;
    };
    return (row->*&Access::receivers)(SIGNAL(dataChanged()));
}

/// What an operation has to work with.
struct Scene
{
    QObject owner; // of all rows
    CountedRow prototype{0, &owner};
    Counted<ListModel> model{&prototype, &owner}; // with `rows` rows
    Counted<ListModel> emptyModel{&prototype, &owner};
    QVector<ListItem*> spare;                                // as many that are in no model
    Counted<PassengerTypesModel> grid{&owner};               // with `rows` tiles
    Counted<PassengerTypesModel> productsByZone{&owner};     // not yet laid out
    Counted<PassengerTypesModel> productsByPosition{&owner}; // not yet laid out

    const QStringList types = typeTexts({1, 3, 4, 8});
    const QStringList otherTypes = typeTexts({10, 9, 7, 5}); // as many
    const NewProduct product = usualProduct(PassengerTypesModel::PT_ADULT, 0);

    Scene()
    {
        QVector<ListItem*> block;
        for (int i = 0; i < rows; ++i) {
            block.append(new CountedRow(shuffled(i), &owner));
            spare.append(new CountedRow(rows + i, &owner));
        }
        model.appendRows(block);
        for (PassengerTypesModel* each : {&grid, &productsByZone, &productsByPosition})
            each->setSupportedPassengerTypeCodes(types);
        QVector<sProduct> products(rows);
        for (int i = 0; i < rows; ++i) {
            products[i].fareProductId = i;
            products[i].price = shuffled(i);
        }
        grid.addItemsToModel(products);
        addProducts(productsByZone, QStringLiteral("1>1 3>1 1>2 4>2 1>3 3>3 4>3 1>3 8>4 3>4!"));
        addProducts(productsByPosition,
                    QStringLiteral("1@3 3@1 4@2 8@7 1@8 3@10 4@11 1@12 3@5 1!"));
    }

    QVector<ListModel*> models()
    {
        return {&model, &emptyModel, &grid, &productsByZone, &productsByPosition};
    }

    /// The numbers from 0, each once, in no apparent order.
    static int shuffled(int number) { return (number * 37 + 11) % rows; }

    CountedRow& row(int number) { return static_cast<CountedRow&>(*model.itemFromRow(number)); }
};

void readRoles(const ListModel& model, int row)
{
    const QHash<int, QByteArray> names = model.roleNames();
    for (auto name = names.cbegin(); name != names.cend(); ++name)
        model.data(model.index(row, 0), name.key());
}

/// Removed rows destroyed, and the events for that forgotten.
void settle()
{
    runDeferredDeletions();
    QCoreApplication::sendPostedEvents();
}

struct Budget
{
    const char* operation;
    int allocations64;     ///< blocks asked for, where a pointer has 64 bits
    int allocations32;     ///< where it has 32, and lists grow in other steps
    int connections;       ///< made, to rows and to models
    int dataCalls;         ///< of a CountedRow's data()
    int copies;            ///< of the QVariant that a CountedRow holds
    const char* announced; ///< signals of rows and models, in the order of their first ones
    void (*operate)(Scene& scene);
};

const char nothing[] = "";
const char oneInsertion[] = "1 rowsAboutToBeInserted, 1 rowsInserted, 1 countChanged";
const char oneRemoval[] = "1 rowsAboutToBeRemoved, 1 rowsRemoved, 1 countChanged";
const char oneChange[] = "1 row's dataChanged, 1 dataChanged";

#define OPERATION(statement) [](Scene& s) { statement; }

// clang-format off
const Budget budgets[] = {
    //                                             allocations      connec- data()
    // operation                                   64 bit  32 bit   tions   calls  copies  announced
    {"appending one row",                               9,      9,      1,      0,      0, oneInsertion,
     OPERATION(s.emptyModel.appendRow(s.spare.at(0)))},
    {"appending one row to a hundred",                  5,      5,      1,      0,      0, oneInsertion,
     OPERATION(s.model.appendRow(s.spare.at(0)))},
    {"appending a block of a hundred rows",           508,    508,    100,      0,      0, oneInsertion,
     OPERATION(s.emptyModel.appendRows(s.spare))},
    {"appending a hundred rows one by one",           508,    508,    100,      0,      0, "100 rowsAboutToBeInserted, 100 rowsInserted, 100 countChanged",
     OPERATION(for (ListItem* row : qAsConst(s.spare)) s.emptyModel.appendRow(row))},
    {"appending no row",                                0,      0,      0,      0,      0, nothing,
     OPERATION(s.model.appendRow(nullptr))},
    {"inserting a row in front",                        5,      5,      1,      0,      0, oneInsertion,
     OPERATION(s.model.insertRow(0, s.spare.at(0)))},
    {"reading all roles of a row",                      0,      0,      0,      2,      1, nothing,
     OPERATION(readRoles(s.model, 50))},
    {"reading a role of a row that is not there",       0,      0,      0,      0,      0, nothing,
     OPERATION(s.model.data(s.model.index(rows, 0), CountedRow::NumberRole))},
    {"reading the role names",                          0,      0,      0,      0,      0, nothing,
     OPERATION(s.model.roleNames())},
    {"a row as a map",                                  5,      5,      0,      2,      2, nothing,
     OPERATION(s.model.get(50))},
    {"a row that is not there as a map",                0,      0,      0,      0,      0, nothing,
     OPERATION(s.model.get(rows))},
    {"the row of an index as a map",                    5,      5,      0,      2,      2, nothing,
     OPERATION(s.model.get(s.model.index(50, 0)))},
    {"the item of a row",                               0,      0,      0,      0,      0, nothing,
     OPERATION(s.model.itemFromRow(50))},
    {"finding the last row by its id",                  0,      0,      0,      0,      0, nothing,
     OPERATION(s.model.findById(s.row(rows - 1).id()))},
    {"the number of the last row by its id",            0,      0,      0,      0,      0, nothing,
     OPERATION(s.model.rowIndexFromId(s.row(rows - 1).id()))},
    {"the index of the last row",                       0,      0,      0,      0,      0, nothing,
     OPERATION(s.model.indexFromItem(&s.row(rows - 1)))},
    {"counting the rows with a value",                  0,      0,      0,    100,    101, nothing,
     OPERATION(s.model.countByRole(CountedRow::NumberRole, QVariant::fromValue(CountedNumber(7))))},
    {"a change of a row in the middle",                 0,      0,      0,      0,      0, oneChange,
     OPERATION(s.row(50).setId(-1))},
    {"storing the value that is there",                 0,      0,      0,      0,      0, nothing,
     OPERATION(s.row(50).setId(s.row(50).id()))},
    {"refreshing a row",                                0,      0,      0,      0,      0, oneChange,
     OPERATION(s.row(50).triggerItemUpdate())},
    {"sorting a hundred rows by id",                    0,      0,      0,      0,      0, nothing,
     OPERATION(s.model.sort(0, Qt::AscendingOrder))},
    {"sorting a hundred rows by a role",                1,      1,      0,   1234,   1234, nothing,
     OPERATION(s.model.sortByRole(0, Qt::AscendingOrder, CountedRow::NumberRole))},
    {"sorting fifty of the rows by a role",             0,      0,      0,    586,    586, nothing,
     OPERATION(s.model.sortRangeByRole(0, Qt::AscendingOrder, 25, 75, CountedRow::NumberRole))},
    {"removing a row from the middle",                  3,      3,      0,      0,      0, oneRemoval,
     OPERATION(s.model.removeRow(50); settle())},
    {"removing a row that is not there",                0,      0,      0,      0,      0, nothing,
     OPERATION(s.model.removeRow(rows); settle())},
    {"removing a block of ten rows",                   12,     12,      0,      0,      0, oneRemoval,
     OPERATION(s.model.removeRows(50, 10); settle())},
    {"clearing a hundred rows",                       102,    102,      0,      0,      0, "1 rowsAboutToBeRemoved, 1 rowsRemoved, 2 countChanged",
     OPERATION(s.model.clear(); settle())},
    {"clearing no rows",                                0,      0,      0,      0,      0, nothing,
     OPERATION(s.emptyModel.clear(); settle())},
    {"taking a row",                                    2,      2,      0,      0,      0, oneRemoval,
     OPERATION(s.model.takeRow(50))},
    {"taking a block of ten rows",                      2,      2,      0,      0,      0, oneRemoval,
     OPERATION(s.model.takeRows(50, 10))},
    // Tiles, which do not count what is read of them.
    {"making a tile",                                   2,      2,      0,      0,      0, nothing,
     OPERATION(new PassengerTypeItem(&s.owner))},
    {"making and destroying a tile",                    2,      2,      0,      0,      0, nothing,
     OPERATION(delete new PassengerTypeItem(&s.owner))},
    {"reading all roles of a tile",                     0,      0,      0,      0,      0, nothing,
     OPERATION(readRoles(s.grid, 50))},
    {"a tile as a map",                                33,     33,      0,      0,      0, nothing,
     OPERATION(s.grid.get(50))},
    {"selecting a tile",                                0,      0,      0,      0,      0, oneChange,
     OPERATION(s.grid.setSelected(50, true))},
    {"deselecting a tile that is not selected",        0,      0,      0,      0,      0, nothing,
     OPERATION(s.grid.setSelected(50, false))},
    {"sorting a hundred tiles by price",                0,      0,      0,      0,      0, nothing,
     OPERATION(s.grid.sortByPrice(Qt::DescendingOrder))},
    {"counting the tiles that have not expired",        0,      0,      0,      0,      0, nothing,
     OPERATION(s.grid.getNumberOfNonExpiredProducts())},
    {"the name of the last product",                    3,      3,      0,      0,      0, nothing,
     OPERATION(s.grid.getFareProductName(rows - 1))},
    {"adding a product",                                1,      1,      0,      0,      0, nothing,
     OPERATION(addItem(s.grid, s.product))},
    {"setting other supported types, as many",          0,      0,      0,      0,      0, nothing,
     OPERATION(s.grid.setSupportedPassengerTypeCodes(s.otherTypes))},
    {"laying out ten products by zone",               212,    210,     21,      0,      0, "1 numberOfColumnsChanged, 5 numberOfRowsChanged, 21 rowsAboutToBeInserted, 21 rowsInserted, 21 countChanged",
     OPERATION(s.productsByZone.sortAndRegroup(s.types, 4))},
    {"laying out ten products by position",           121,    122,     13,      0,      0, "1 numberOfColumnsChanged, 2 numberOfRowsChanged, 13 rowsAboutToBeInserted, 13 rowsInserted, 13 countChanged",
     OPERATION(s.productsByPosition.sortAndRegroup(s.types, 4))},
    {"clearing a grid of a hundred tiles",            102,    102,      0,      0,      0, "1 rowsAboutToBeRemoved, 1 rowsRemoved, 2 countChanged",
     OPERATION(s.grid.clearData(); settle())},
};
// clang-format on

#undef OPERATION

/// "2 countChanged, 1 dataChanged" and so on.
QString counted(const QStringList& signalTexts, const char* ofWhom)
{
    QStringList names;
    QHash<QString, int> times;
    for (const QString& text : signalTexts) {
        const QString name = QLatin1String(ofWhom) + text.section('(', 0, 0);
        if (++times[name] == 1)
            names.append(name);
    }
    for (QString& name : names)
        name.prepend(QStringLiteral("%1 ").arg(times.value(name)));
    return names.join(", ");
}

QString asText(int blocks, const Counts& found, const QString& announced)
{
    return QStringLiteral("%1 allocations, %2 connections, %3 data() calls, %4 copies; %5")
        .arg(blocks)
        .arg(found.connections)
        .arg(found.dataCalls)
        .arg(found.copies)
        .arg(announced.isEmpty() ? QStringLiteral("nothing announced") : announced);
}

/// All but the allocations, for which those who count would allocate.
QPair<Counts, QString> measured(const Budget& budget)
{
    Scene scene;
    std::vector<std::unique_ptr<SignalLog>> logs;
    for (const ListModel* model : scene.models())
        logs.push_back(std::make_unique<SignalLog>(model));
    QStringList rowChanges;
    for (const ListItem* row : scene.owner.findChildren<ListItem*>())
        QObject::connect(row, &ListItem::dataChanged, &scene.owner,
                         [&rowChanges] { rowChanges.append("dataChanged"); });
    counts = {};
    budget.operate(scene);
    Counts result = counts;
    for (const PassengerTypesModel* grid : {&scene.productsByZone, &scene.productsByPosition}) {
        for (int row = 0; row < grid->rowCount(); ++row)
            result.connections += connectionsOf(grid->itemFromRow(row));
    }
    QStringList announced;
    for (const auto& log : logs)
        announced.append(log->take());
    QStringList texts{counted(rowChanges, "row's "), counted(announced, "")};
    texts.removeAll(QString());
    return {result, texts.join(", ")};
}

int allocations(const Budget& budget)
{
    Scene scene;
    const AllocationCount count;
    budget.operate(scene);
    return static_cast<int>(count.allocations());
}

} // namespace

class OperationBudgetTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void countsWhatItClaimsToCount();
    void anOperationCostsItsBudget_data();
    void anOperationCostsItsBudget();
};

void OperationBudgetTest::initTestCase()
{
    QMetaType::registerComparators<CountedNumber>();
    // What the log writes holds the time of day.
    el::Logger* logger = el::Loggers::getLogger("default");
    logger->configurations()->set(el::Level::Info, el::ConfigurationType::Enabled, "false");
    logger->reconfigure();
}

void OperationBudgetTest::countsWhatItClaimsToCount()
{
    const QVariant number = QVariant::fromValue(CountedNumber(1));
    counts = {};
    const QVariant copy = number;
    QCOMPARE(counts.copies, 1);
    QCOMPARE(copy, number);

    const Budget everything{
        "", 0, 0, 0, 0, 0, "", [](Scene& s) {
            QObject::connect(&s.model, &ListModel::countChanged, &s.owner, [] {});
            QObject::connect(&s.row(0), &ListItem::dataChanged, &s.owner, [] {});
            s.row(1).triggerItemUpdate();
            emit s.model.countChanged(1);
            emit s.model.countChanged(2);
            s.row(2).data(CountedRow::IdRole);
            s.row(2).data(CountedRow::NumberRole);
        }};
    const auto [found, announced] = measured(everything);
    QCOMPARE(asText(0, found, announced), "0 allocations, 2 connections, 2 data() calls, 1 copies; "
                                          "1 row's dataChanged, 1 dataChanged, 2 countChanged");

    if (!AllocationCount::isPossible())
        QSKIP("a sanitizer or valgrind counts the allocations of this process");
    const Budget blocksOnly{"", 0, 0, 0, 0, 0, "", [](Scene&) {
                                void* volatile block = std::malloc(1);
                                block = std::realloc(block, 2);
                                std::free(block);
                                std::unique_ptr<QObject>(new QObject).reset();
                            }};
    QCOMPARE(allocations(blocksOnly), 4); // an object is two
}

void OperationBudgetTest::anOperationCostsItsBudget_data()
{
    QTest::addColumn<int>("number");
    int number = 0;
    for (const Budget& budget : budgets)
        QTest::newRow(budget.operation) << number++;
}

void OperationBudgetTest::anOperationCostsItsBudget()
{
    QFETCH(int, number);
    const Budget& budget = budgets[number];
    const Counts expected{budget.connections, budget.dataCalls, budget.copies};
    // Once more, for what is made once for the process does not belong to the operation.
    measured(budget);
    const auto [found, announced] = measured(budget);
    const int stored = sizeof(void*) == 4 ? budget.allocations32 : budget.allocations64;
    int blocks = stored;
    if (AllocationCount::isPossible()) {
        blocks = allocations(budget);
        QCOMPARE(allocations(budget), blocks);
    }
    QCOMPARE(asText(blocks, found, announced), asText(stored, expected, budget.announced));
}

QTEST_GUILESS_MAIN(OperationBudgetTest)
#include "tst_operation_budget.moc"
