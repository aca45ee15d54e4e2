// The library's hot paths, one at a time, for who counts the instructions of an operation:
//
//     hot_paths NAME COUNT    performs the operation COUNT times, 100 at most
//     hot_paths               prints the names
//
// All that an operation starts from is prepared as if COUNT were 100, and nothing is taken down:
// the counts of two runs differ by operations alone.

#include "PassengerTypeItem.h"
#include "PassengerTypesModel.h"

#include <core/Logging.h>

#include <QCoreApplication>
#include <QEvent>
#include <QVector>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>

using rivo::models::ListItem;
using rivo::models::ListModel;

namespace
{

constexpr int most = 100;      // operations of a run
constexpr int rows = 100;      // of a block, and of the models that an operation goes through
constexpr int manyRows = 1000; // of the model in which one row changes

const QStringList types{QStringLiteral("PT_ADULT"), QStringLiteral("PT_STUDENT_1"),
                        QStringLiteral("PT_SCHOOLBOY"), QStringLiteral("PT_LFS")};

/// Performs the operation for the n-th time; n counts from 0.
using Operation = std::function<void(int n)>;

/// A number from 0 to `count` - 1 for each n from 0 to `count` - 1, each once, in no apparent
/// order. `count` is 100 or 1,000.
int shuffled(int n, int count) { return (n * 37 + 11) % count; }

PassengerTypeItem* newTile(int number, QObject* parent)
{
    return new PassengerTypeItem(number, QStringLiteral("Adult"), QStringLiteral("1"),
                                 QStringLiteral("qrc:/icons/adult.svg"), 1.5 + number, number,
                                 QStringLiteral("Product %1").arg(number), 0, false, 0, 10,
                                 QStringLiteral("#336699"), false, 0.0, false, number, parent);
}

QVector<ListItem*> newTiles(int count, QObject* parent)
{
    QVector<ListItem*> tiles;
    for (int i = 0; i < count; ++i)
        tiles.append(newTile(shuffled(i, count), parent));
    return tiles;
}

ListModel* newModel()
{
    auto* application = QCoreApplication::instance();
    return new ListModel(new PassengerTypeItem(application), application);
}

ListModel* newModel(int count)
{
    ListModel* model = newModel();
    model->appendRows(newTiles(count, model));
    return model;
}

enum class Positions { None, Shuffled };

void addProduct(PassengerTypesModel& grid, int number, Positions positions)
{
    const int product = number / types.size();
    grid.addItem(number % types.size(), QStringLiteral("type"), types.at(number % types.size()),
                 QString(), 1.5, product, QStringLiteral("product"), false, 0, product % 10,
                 QStringLiteral("#336699"), false, 0.0, false,
                 positions == Positions::None ? -1 : shuffled(number, rows) + 1);
}

PassengerTypesModel* newGrid()
{
    auto* grid = new PassengerTypesModel(QCoreApplication::instance());
    grid->setSupportedPassengerTypeCodes(types);
    return grid;
}

Operation layOut(Positions positions)
{
    QVector<PassengerTypesModel*> grids;
    for (int i = 0; i < most; ++i) {
        grids.append(newGrid());
        for (int number = 0; number < rows; ++number)
            addProduct(*grids.last(), number, positions);
    }
    return [grids](int n) { grids.at(n)->sortAndRegroup(types, types.size()); };
}

/// A tile that is made and appended, as one of the row's own.
Operation appendRow()
{
    ListModel* model = newModel();
    return [model](int n) { model->appendRow(newTile(n, model)); };
}

/// 100 rows that are there already, in one block.
Operation appendBlock()
{
    ListModel* model = newModel();
    QVector<QVector<ListItem*>> blocks;
    for (int i = 0; i < most; ++i)
        blocks.append(newTiles(rows, model));
    return [model, blocks](int n) { model->appendRows(blocks.at(n)); };
}

/// All roles of one row, as a view reads them.
Operation readRow()
{
    const ListModel* model = newModel(rows);
    const QList<int> roles = model->roleNames().keys();
    return [model, roles](int n) {
        for (const int role : roles)
            model->data(model->index(n % rows, 0), role);
    };
}

/// One row as a map.
Operation getRow()
{
    ListModel* model = newModel(rows);
    return [model](int n) { model->get(n % rows); };
}

/// A row that changes in a model of 1,000, and is listened to.
Operation changeRow()
{
    ListModel* model = newModel(manyRows);
    QObject::connect(model, &ListModel::dataChanged, model, [] {});
    return [model](int n) {
        auto* tile = static_cast<PassengerTypeItem*>(model->itemFromRow(shuffled(n, manyRows)));
        tile->setSelected(!tile->selected());
    };
}

/// 100 rows by a text, in the order opposite to that of the last time.
Operation sortByRole()
{
    ListModel* model = newModel(rows);
    return [model](int n) {
        model->sortByRole(0, n % 2 == 0 ? Qt::AscendingOrder : Qt::DescendingOrder,
                          PassengerTypeItem::FareProductNameRole);
    };
}

/// 100 rows, and then the turn of the event loop that destroys them.
Operation clear()
{
    QVector<ListModel*> models;
    for (int i = 0; i < most; ++i)
        models.append(newModel(rows));
    return [models](int n) {
        models.at(n)->clear();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::sendPostedEvents(); // forgets the events that were delivered
    };
}

/// One product for the next layout.
Operation addItem()
{
    PassengerTypesModel* grid = newGrid();
    return [grid](int n) { addProduct(*grid, n, Positions::None); };
}

/// 100 products of four types in ten zones.
Operation layOutByZone() { return layOut(Positions::None); }

/// 100 products on as many positions.
Operation layOutByPosition() { return layOut(Positions::Shuffled); }

struct HotPath
{
    const char* name;
    Operation (*prepare)();
};

constexpr HotPath hotPaths[] = {
    {"append-row", appendRow},
    {"append-block", appendBlock},
    {"read-row", readRow},
    {"get-row", getRow},
    {"change-row", changeRow},
    {"sort-by-role", sortByRole},
    {"clear", clear},
    {"add-item", addItem},
    {"lay-out-by-zone", layOutByZone},
    {"lay-out-by-position", layOutByPosition},
};

/// A log that writes nothing: what it writes holds the time of day.
void silence()
{
    el::Logger* logger = el::Loggers::getLogger("default");
    logger->configurations()->set(el::Level::Info, el::ConfigurationType::Enabled, "false");
    logger->reconfigure();
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication application(argc, argv);
    if (argc == 1) {
        for (const HotPath& path : hotPaths)
            std::puts(path.name);
        return EXIT_SUCCESS;
    }
    const int count = argc == 3 ? std::atoi(argv[2]) : 0;
    for (const HotPath& path : hotPaths) {
        if (std::strcmp(path.name, argv[1]) != 0 || count < 1 || count > most)
            continue;
        silence();
        const Operation operation = path.prepare();
        for (int n = 0; n < count; ++n)
            operation(n);
        std::_Exit(EXIT_SUCCESS);
    }
    std::fputs("usage: hot_paths [NAME COUNT]; COUNT is 1 to 100\n", stderr);
    return EXIT_FAILURE;
}
