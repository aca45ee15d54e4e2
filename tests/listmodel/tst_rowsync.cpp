#include "AssetItem.h"
#include "AssetsModel.h"
#include "DeferredDeletions.h"
#include "ModelBattery.h"
#include "RowSync.h"
#include "SignalLog.h"
#include "Table.h"
#include "TopLevelOnly.h"

#include <QAbstractItemModelTester>
#include <QItemSelectionModel>
#include <QPersistentModelIndex>
#include <QPointer>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QSortFilterProxyModel>
#include <QTest>

#include <algorithm>

using rivo::models::findRow;
using rivo::models::ListItem;
using rivo::models::rowAs;
using rivo::models::RowSync;

namespace
{

struct Vehicle
{
    int id = 0;
    QString route;
    double heading = 0.0;
};

using Fleet = RowSync<AssetItem, Vehicle>;
using Vehicles = QVector<Vehicle>;

AssetItem* makeRow(const Vehicle& vehicle, QObject* parent)
{
    auto* row = new AssetItem(parent);
    row->setId(vehicle.id);
    row->setRouteName(vehicle.route);
    row->setDirection(vehicle.heading);
    return row;
}

Fleet fleetSync()
{
    Fleet sync(&Vehicle::id, &AssetItem::id, makeRow);
    sync.field(&Vehicle::route, &AssetItem::routeName, &AssetItem::setRouteName)
        .field(&Vehicle::heading, &AssetItem::direction, &AssetItem::setDirection);
    return sync;
}

/// "3 1:North" are the vehicles 3 and 1, the latter on route North.
Vehicles vehicles(const QString& text)
{
    Vehicles list;
    for (const QString& word : text.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        const QStringList parts = word.split(QLatin1Char(':'));
        list.append({parts.first().toInt(), parts.value(1), 0.0});
    }
    return list;
}

QString rowsOf(const AssetsModel& model)
{
    QStringList words;
    for (int row = 0; row < model.rowCount(); ++row) {
        const auto* item = rowAs<AssetItem>(model, row);
        words.append(item->routeName().isEmpty()
                         ? QString::number(item->id())
                         : QStringLiteral("%1:%2").arg(item->id()).arg(item->routeName()));
    }
    return words.join(QLatin1Char(' '));
}

/// The length of the longest ascending sequence, by trying every predecessor.
int longestAscent(const QVector<int>& numbers)
{
    QVector<int> lengths;
    for (int i = 0; i < numbers.size(); ++i) {
        int length = 1;
        for (int j = 0; j < i; ++j) {
            if (numbers.at(j) < numbers.at(i))
                length = std::max(length, lengths.at(j) + 1);
        }
        lengths.append(length);
    }
    return lengths.isEmpty() ? 0 : *std::max_element(lengths.cbegin(), lengths.cend());
}

/// A row that is no vehicle.
class Stranger : public rivo::models::ListItem
{
    Q_OBJECT

public:
    using ListItem::ListItem;
    int id() const override { return 1; }
    QVariant data(int /*role*/) const override { return QVariant(); }
    QHash<int, QByteArray> roleNames() const override { return {}; }
};

} // namespace

class TestRowSync : public QObject
{
    Q_OBJECT

private slots:
    void oneList_data()
    {
        const Table<QString, QString, QVector<int>, QStringList> row(
            "before", "after", "inserted_removed_moved_set", "emitted");
        const QStringList none;
        row("the same list changes and emits nothing", "1 2:North", "1 2:North", {0, 0, 0, 0},
            none);
        row("an empty list stays empty", "", "", {0, 0, 0, 0}, none);
        row("a first list is appended in one block", "", "4 2 9", {3, 0, 0, 0},
            announcedInsertion(0, 2, 3));
        row("no record is left: one block is removed", "1 2 3", "", {0, 3, 0, 0},
            announcedRemoval(0, 2, 0));
        row("a changed field changes its row alone", "1:North 2 3", "1:North 2:West 3",
            {0, 0, 0, 1}, QStringList(rowChanged(1)));
        row("rows are removed in blocks, the last first", "1 2 3 4 5", "1 4", {0, 3, 0, 0},
            announcedRemoval(4, 4, 4) + announcedRemoval(1, 2, 2));
        row("new rows in between come one by one", "1 4", "1 2 3 4", {2, 0, 0, 0},
            announcedInsertion(1, 1, 3) + announcedInsertion(2, 2, 4));
        row("new rows at the end come in one block", "1", "1 2 3", {2, 0, 0, 0},
            announcedInsertion(1, 2, 3));
        row("the first row that becomes the last is the only one that moves", "1 2 3", "2 3 1",
            {0, 0, 1, 0}, announcedRemoval(0, 0, 2) + announcedInsertion(2, 2, 3));
        row("a row that moves shows its new value when it is back", "1 2 3", "2 3 1:East",
            {0, 0, 1, 1}, announcedRemoval(0, 0, 2) + announcedInsertion(2, 2, 3));
        row("adjacent rows leave in one block when they move", "1 2 3 4 5", "3 4 5 1 2",
            {0, 0, 2, 0}, announcedRemoval(0, 1, 3) + announcedInsertion(3, 4, 5));
        row("equal keys are matched in their order", "7:a 7:b", "7:a 7:b 7:c", {1, 0, 0, 0},
            announcedInsertion(2, 2, 3));
        row("of equal keys the last row goes", "7:a 7:b 7:c", "7:a 7:b", {0, 1, 0, 0},
            announcedRemoval(2, 2, 2));
    }

    void oneList()
    {
        QFETCH(QString, before);
        QFETCH(QString, after);
        QFETCH(QVector<int>, inserted_removed_moved_set);
        QFETCH(QStringList, emitted);
        AssetsModel model(this);
        const Fleet sync = fleetSync();
        sync.apply(model, vehicles(before));
        QCOMPARE(rowsOf(model), before);

        SignalLog log(&model);
        const Fleet::Changes changes = sync.apply(model, vehicles(after));
        QCOMPARE(log.take(), emitted);
        QCOMPARE(rowsOf(model), after);
        const QVector<int> counted{changes.inserted, changes.removed, changes.moved, changes.set};
        QCOMPARE(counted, inserted_removed_moved_set);
    }

    void setterIsNotCalledForAnEqualValue()
    {
        int calls = 0;
        Fleet sync(&Vehicle::id, &AssetItem::id, makeRow);
        sync.field(&Vehicle::heading, &AssetItem::direction,
                   [&calls](AssetItem& /*item*/, double /*value*/) { ++calls; });
        AssetsModel model(this);
        sync.apply(model, {{1, {}, 90.0}});
        sync.apply(model, {{1, {}, 90.0}});
        QCOMPARE(calls, 0);
        QCOMPARE(sync.apply(model, {{1, {}, 91.0}}).set, 1);
        QCOMPARE(calls, 1);
    }

    void rowsAreChildrenOfTheModelAndRemovedOnesAreDestroyed()
    {
        AssetsModel model(this);
        fleetSync().apply(model, vehicles("1 2"));
        const QPointer<ListItem> removed = model.itemFromRow(0);
        QCOMPARE(removed->parent(), &model);
        fleetSync().apply(model, vehicles("2"));
        QVERIFY(removed);
        runDeferredDeletions();
        QVERIFY(!removed);
    }

    void movedRowKeepsItsObjectAndTheApplicationsConnections()
    {
        AssetsModel model(this);
        fleetSync().apply(model, vehicles("1 2 3"));
        auto* first = rowAs<AssetItem>(model, 0);
        const QSignalSpy heard(first, &ListItem::dataChanged);
        QCOMPARE(fleetSync().apply(model, vehicles("2 3 1")).moved, 1);
        QCOMPARE(rowAs<AssetItem>(model, 2), first);

        SignalLog log(&model);
        first->setRouteName(QStringLiteral("South"));
        QCOMPARE(heard.count(), 1);
        QCOMPARE(log.take(), QStringList(rowChanged(2)));
    }

    void rowOfAnotherClassIsRemoved()
    {
        AssetsModel model(this);
        model.appendRow(new Stranger(&model));
        const Fleet::Changes changes = fleetSync().apply(model, vehicles("1"));
        QCOMPARE(changes.removed, 1);
        QCOMPARE(rowsOf(model), QStringLiteral("1"));
    }

    void selectionStaysOnTheVehicle()
    {
        AssetsModel model(this);
        fleetSync().apply(model, vehicles("1 2 3 4"));
        QItemSelectionModel selection(&model);
        selection.setCurrentIndex(model.index(2), QItemSelectionModel::Select);
        fleetSync().apply(model, vehicles("9 2 3:North 5 6"));
        QCOMPARE(selection.currentIndex().row(), 2);
        QCOMPARE(rowAs<AssetItem>(model, selection.currentIndex().row())->id(), 3);
        QVERIFY(selection.isSelected(model.index(2)));
    }

    void randomLists_data() { battery::seedRows(4); }

    /// Beside a list of what the model must hold, the fewest moves by another way of counting, the
    /// model tester, a sorted view and a persistent index on every row that stays.
    void randomLists()
    {
        QFETCH(quint32, seed);
        QRandomGenerator random(seed);
        QObject owner;
        TopLevelOnly<AssetsModel> model(&owner);
        const QAbstractItemModelTester tester(
            &model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QSortFilterProxyModel sorted;
        sorted.setSourceModel(&model);
        sorted.setDynamicSortFilter(true);
        sorted.setSortRole(AssetItem::RouteNameRole);
        sorted.sort(0);
        const Fleet sync = fleetSync();

        Vehicles held;
        for (int round = 0; round < 300; ++round) {
            const Vehicles wanted = changed(held, random);
            QHash<int, ListItem*> before;
            QVector<QPersistentModelIndex> places;
            for (int row = 0; row < model.rowCount(); ++row) {
                before.insert(model.itemFromRow(row)->id(), model.itemFromRow(row));
                places.append(model.index(row));
            }
            QVector<int> kept; // former rows of the records that have one
            for (const Vehicle& vehicle : wanted) {
                const auto isIt = [&](const Vehicle& other) { return other.id == vehicle.id; };
                const auto found = std::find_if(held.cbegin(), held.cend(), isIt);
                if (found != held.cend())
                    kept.append(static_cast<int>(found - held.cbegin()));
            }

            const Fleet::Changes changes = sync.apply(model, wanted);
            QCOMPARE(changes.moved, kept.size() - longestAscent(kept));
            QCOMPARE(changes.inserted, wanted.size() - kept.size());
            QCOMPARE(changes.removed, held.size() - kept.size());
            QCOMPARE(model.rowCount(), wanted.size());
            for (int row = 0; row < wanted.size(); ++row) {
                const auto* item = rowAs<AssetItem>(model, row);
                const Vehicle& vehicle = wanted.at(row);
                QCOMPARE(item->id(), vehicle.id);
                QCOMPARE(item->routeName(), vehicle.route);
                QCOMPARE(item->direction(), vehicle.heading);
                if (before.contains(vehicle.id))
                    QCOMPARE(before.value(vehicle.id), static_cast<const ListItem*>(item));
            }
            int followed = 0;
            for (int row = 0; row < places.size(); ++row) {
                if (!places.at(row).isValid())
                    continue;
                ++followed;
                QCOMPARE(model.itemFromRow(places.at(row).row())->id(), held.at(row).id);
            }
            QCOMPARE(followed, kept.size() - changes.moved);
            QCOMPARE(sorted.rowCount(), wanted.size());
            QCOMPARE(sync.apply(model, wanted).set, 0);
            held = wanted;
            runDeferredDeletions();
        }
    }

    void rowIsFoundByTheValueOfARole_data()
    {
        const Table<QVariant, int, int> row("value", "from", "row");
        row("the first one", QVariant("North"), 0, 1);
        row("the next one from a row", QVariant("North"), 2, 3);
        row("none from a row beyond the last", QVariant("North"), 4, -1);
        row("a negative row means the first", QVariant("North"), -5, 1);
        row("none for a value that no row has", QVariant("South"), 0, -1);
        row("none for a value of another kind", QVariant(1), 0, -1);
    }

    void rowIsFoundByTheValueOfARole()
    {
        QFETCH(QVariant, value);
        QFETCH(int, from);
        AssetsModel model(this);
        fleetSync().apply(model, vehicles("1 2:North 3 4:North"));
        QTEST(findRow(model, AssetItem::RouteNameRole, value, from), "row");
    }

    void rowIsNullOutOfRangeOrOfAnotherClass()
    {
        AssetsModel model(this);
        model.appendRow(new Stranger(&model));
        QVERIFY(!rowAs<AssetItem>(model, 0));
        QVERIFY(!rowAs<AssetItem>(model, 1));
        QVERIFY(!rowAs<AssetItem>(model, -1));
        QVERIFY(rowAs<Stranger>(model, 0));
    }

private:
    /// The list after a few vehicles left, came, moved or changed.
    static Vehicles changed(Vehicles list, QRandomGenerator& random)
    {
        static int lastId = 0;
        for (int steps = random.bounded(6); steps > 0; --steps) {
            const int at = list.isEmpty() ? 0 : random.bounded(list.size());
            switch (random.bounded(list.isEmpty() ? 1 : 5)) {
            case 0:
                list.insert(at, {++lastId, QString::number(random.bounded(3)), 0.0});
                break;
            case 1:
                list.remove(at);
                break;
            case 2:
                list.move(at, random.bounded(list.size()));
                break;
            case 3:
                list[at].route = QString::number(random.bounded(3));
                break;
            default:
                list[at].heading = random.bounded(360);
            }
        }
        if (random.bounded(20) == 0)
            std::shuffle(list.begin(), list.end(), random);
        return list;
    }
};

QTEST_GUILESS_MAIN(TestRowSync)

#include "tst_rowsync.moc"
