#include "ListModel.h"
#include "MetaObjectText.h"
#include "ModelBattery.h"
#include "SampleItem.h"
#include "SignalLog.h"

#include <QEventLoop>
#include <QPointer>
#include <QSignalSpy>
#include <QStringListModel>
#include <QTest>
#include <QTimer>

#include <climits>
#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

using rivo::models::ListItem;
using rivo::models::ListModel;

namespace
{

// The interface as it is declared: const only where stated, references and values as stated.
template <typename Member, typename Declared>
constexpr bool isDeclared = std::is_same_v<Member, Declared>;

static_assert(std::is_base_of_v<QAbstractListModel, ListModel>);
static_assert(std::is_constructible_v<ListModel, ListItem*, QObject*>);
static_assert(!std::is_constructible_v<ListModel, ListItem*>, "the parent is not optional");
static_assert(
    isDeclared<decltype(&ListModel::rowCount), int (ListModel::*)(const QModelIndex&) const>);
static_assert(
    isDeclared<decltype(&ListModel::data), QVariant (ListModel::*)(const QModelIndex&, int) const>);
static_assert(
    isDeclared<decltype(&ListModel::roleNames), QHash<int, QByteArray> (ListModel::*)() const>);
static_assert(
    isDeclared<decltype(&ListModel::findById), ListItem* (ListModel::*)(const int&) const>);
static_assert(isDeclared<decltype(&ListModel::indexFromItem),
                         QModelIndex (ListModel::*)(const ListItem*) const>);
static_assert(
    isDeclared<decltype(&ListModel::itemFromRow), ListItem* (ListModel::*)(const int&) const>);
static_assert(isDeclared<decltype(&ListModel::rowIndexFromId), int (ListModel::*)(const int&)>);
static_assert(isDeclared<decltype(&ListModel::appendRow), void (ListModel::*)(ListItem*)>);
static_assert(isDeclared<decltype(&ListModel::appendRowFromQml), void (ListModel::*)(QObject*)>);
static_assert(
    isDeclared<decltype(&ListModel::appendRows), void (ListModel::*)(QVector<ListItem*>)>);
static_assert(isDeclared<decltype(&ListModel::insertRow), void (ListModel::*)(int, ListItem*)>);
static_assert(isDeclared<decltype(&ListModel::clear), void (ListModel::*)()>);
static_assert(
    isDeclared<decltype(&ListModel::removeRow), bool (ListModel::*)(int, const QModelIndex&)>);
static_assert(isDeclared<decltype(&ListModel::removeRows),
                         bool (ListModel::*)(int, int, const QModelIndex&)>);
static_assert(
    isDeclared<decltype(&ListModel::takeRow), ListItem* (ListModel::*)(int, const QModelIndex&)>);
static_assert(isDeclared<decltype(&ListModel::takeRows),
                         QVector<ListItem*> (ListModel::*)(int, int, const QModelIndex&)>);
static_assert(isDeclared<decltype(&ListModel::sort), void (ListModel::*)(int, Qt::SortOrder)>);
static_assert(
    isDeclared<decltype(&ListModel::sortByRole), void (ListModel::*)(int, Qt::SortOrder, int)>);
static_assert(isDeclared<decltype(&ListModel::sortRangeByRole),
                         void (ListModel::*)(int, Qt::SortOrder, int, int, int)>);
static_assert(isDeclared<decltype(&ListModel::countByRole), int (ListModel::*)(int, QVariant)>);
static_assert(isDeclared<decltype(&ListModel::countChanged), void (ListModel::*)(int)>);
[[maybe_unused]] constexpr QVariant (ListModel::*getByRow)(const int&) = &ListModel::get;
[[maybe_unused]] constexpr QVariant (ListModel::*getByIndex)(const QModelIndex&) = &ListModel::get;

/// The members that a model may add to its base.
struct Members : QAbstractListModel
{
    ListItem* prototype;
    QVector<ListItem*> rows;
};
static_assert(sizeof(ListModel) == sizeof(Members));

/// A model of SampleItems: "0", "1", ... up to the count wanted, owned by the model.
class Model : public ListModel
{
public:
    explicit Model(int rows = 0, QObject* parent = nullptr) : ListModel(prototype(), parent)
    {
        for (int id = 0; id < rows; ++id)
            appendRow(new SampleItem(id, QVariant(), this));
    }

    SampleItem* item(int row) const { return static_cast<SampleItem*>(itemFromRow(row)); }
    SampleItem* newItem(int id) { return new SampleItem(id, QVariant(), this); }
    QModelIndex anyIndex(int row, int column) const { return createIndex(row, column); }

private:
    static ListItem* prototype()
    {
        static SampleItem item;
        return &item;
    }
};

/// A model that counts its rows in its own way.
class MiscountingModel : public Model
{
public:
    using Model::Model;

    int reported = 0;

    int rowCount(const QModelIndex& = QModelIndex()) const override { return reported; }
};

/// A model that wants to know of every removal.
class WatchfulModel : public Model
{
public:
    using Model::Model;

    QStringList removals;

    bool removeRows(int row, int count, const QModelIndex& parent = QModelIndex()) override
    {
        removals << QStringLiteral("%1 %2 %3").arg(row).arg(count).arg(parent.isValid());
        return Model::removeRows(row, count, parent);
    }
};

QString ids(const QVector<ListItem*>& items)
{
    QStringList texts;
    for (const ListItem* item : items)
        texts << QString::number(item->id());
    return texts.join(QLatin1Char(' '));
}

QString ids(const ListModel& model) { return ids(battery::itemsOf(model)); }

QString text(bool result) { return result ? QStringLiteral("true") : QStringLiteral("false"); }
QString text(const ListItem* item) { return item ? QString::number(item->id()) : QString(); }

using Call = std::function<QString(Model&)>;

} // namespace

Q_DECLARE_METATYPE(Call)

class TestListModel : public QObject
{
    Q_OBJECT

private slots:
    // What QML and the meta-object see.

    void metaObject()
    {
        const QMetaObject& type = ListModel::staticMetaObject;
        QCOMPARE(type.className(), "rivo::models::ListModel");
        QCOMPARE(type.superClass(), &QAbstractListModel::staticMetaObject);
        QCOMPARE(metaobject::methods(type),
                 (QStringList{
                     "public signal void countChanged(int)",
                     "private slot void onHandleItemChange()",
                     "public invokable int rowCount(QModelIndex parent)",
                     "public invokable int rowCount() clone",
                     "public invokable void appendRowFromQml(QObject* item)",
                     "public invokable bool removeRow(int row, QModelIndex parent)",
                     "public invokable bool removeRow(int row) clone",
                     "public invokable ListItem* itemFromRow(int iRow)",
                     "public invokable QVariant get(int index)",
                     "public invokable QVariant get(QModelIndex index)",
                     "public invokable int rowIndexFromId(int id)",
                     "public invokable void clear()",
                 }));
        QCOMPARE(metaobject::properties(type),
                 QStringList{"int count: readable designable scriptable stored, countChanged"});
        QCOMPARE(metaobject::enums(type), QStringList());
        QVERIFY(metaobject::hasNothingElse(type));
    }

    void arrivesEmptyWithTheParentItIsGiven()
    {
        QObject parent;
        const Model model(0, &parent);
        QCOMPARE(model.parent(), &parent);
        QCOMPARE(model.rowCount(), 0);
        QCOMPARE(static_cast<const QAbstractItemModel&>(model).columnCount(), 1);
        QCOMPARE(model.property("count").toInt(), 0);
    }

    void roleNamesAreThoseOfThePrototype()
    {
        SampleItem prototype;
        ListModel model(&prototype, nullptr);
        QCOMPARE(model.roleNames(), prototype.roleNames());
        QCOMPARE(model.rowCount(), 0);
    }

    void rowCountIgnoresTheParent()
    {
        const Model model(3);
        QCOMPARE(model.rowCount(), 3);
        QCOMPARE(model.rowCount(model.index(1, 0)), 3);
        QCOMPARE(model.property("count").toInt(), 3);
    }

    void dataLooksAtTheRowAlone()
    {
        const Model model(3);
        QStringListModel foreign({"a", "b", "c", "d"});
        QCOMPARE(model.data(model.index(1, 0), SampleItem::IdRole), QVariant(1));
        QCOMPARE(model.data(model.anyIndex(2, 7), SampleItem::IdRole), QVariant(2));
        QCOMPARE(model.data(foreign.index(0, 0), SampleItem::IdRole), QVariant(0));
        QVERIFY(!model.data(foreign.index(3, 0), SampleItem::IdRole).isValid());
        QVERIFY(!model.data(model.anyIndex(3, 0), SampleItem::IdRole).isValid());
        QVERIFY(!model.data(model.anyIndex(-1, 0), SampleItem::IdRole).isValid());
        QVERIFY(!model.data(QModelIndex(), SampleItem::IdRole).isValid());
        QVERIFY(!model.data(model.index(1, 0), 256).isValid());
        QVERIFY(!model.data(model.index(1, 0), Qt::DisplayRole).isValid());
    }

    void lookups()
    {
        Model model;
        auto* first = model.newItem(7);
        auto* second = model.newItem(7);
        auto* third = model.newItem(8);
        const SampleItem stranger(7);
        model.appendRows({first, second, third});

        QCOMPARE(model.findById(7), first);
        QCOMPARE(model.findById(8), third);
        QCOMPARE(model.findById(9), nullptr);
        QCOMPARE(model.rowIndexFromId(7), 0);
        QCOMPARE(model.rowIndexFromId(8), 2);
        QCOMPARE(model.rowIndexFromId(9), -1);
        QCOMPARE(model.indexFromItem(second), model.index(1, 0));
        QVERIFY(!model.indexFromItem(&stranger).isValid());
        QVERIFY(!model.indexFromItem(nullptr).isValid());
        QCOMPARE(model.itemFromRow(2), third);
        QCOMPARE(model.itemFromRow(3), nullptr);
    }

    // Operations that are carried out: result, rows afterwards, everything emitted in order.

    void call_data()
    {
        QTest::addColumn<int>("rows");
        QTest::addColumn<Call>("call");
        QTest::addColumn<QString>("result");
        QTest::addColumn<QString>("after");
        QTest::addColumn<QStringList>("emitted");
        const auto row = [](const char* name, int rows, Call call, const QString& result,
                            const QString& after, const QStringList& emitted) {
            QTest::newRow(name) << rows << std::move(call) << result << after << emitted;
        };
        const auto quietly = [](std::function<void(Model&)> action) {
            return [action](Model& model) {
                action(model);
                return QString();
            };
        };

        row("append to an empty model", 0, quietly([](Model& m) { m.appendRow(m.newItem(9)); }), "",
            "9", announcedInsertion(0, 0, 1));
        row("append after the last row", 2, quietly([](Model& m) { m.appendRow(m.newItem(9)); }),
            "", "0 1 9", announcedInsertion(2, 2, 3));
        row("append from QML is an append", 2,
            quietly([](Model& m) { m.appendRowFromQml(m.newItem(9)); }), "", "0 1 9",
            announcedInsertion(2, 2, 3));
        row("append three rows in one block", 2, quietly([](Model& m) {
                m.appendRows({m.newItem(7), m.newItem(8), m.newItem(9)});
            }),
            "", "0 1 7 8 9", announcedInsertion(2, 4, 5));
        row("append a list of one", 0, quietly([](Model& m) { m.appendRows({m.newItem(9)}); }), "",
            "9", announcedInsertion(0, 0, 1));
        row("insert at the front", 2, quietly([](Model& m) { m.insertRow(0, m.newItem(9)); }), "",
            "9 0 1", announcedInsertion(0, 0, 3));
        row("insert in the middle", 2, quietly([](Model& m) { m.insertRow(1, m.newItem(9)); }), "",
            "0 9 1", announcedInsertion(1, 1, 3));
        row("insert at the end", 2, quietly([](Model& m) { m.insertRow(2, m.newItem(9)); }), "",
            "0 1 9", announcedInsertion(2, 2, 3));
        row("insert into an empty model", 0,
            quietly([](Model& m) { m.insertRow(0, m.newItem(9)); }), "", "9",
            announcedInsertion(0, 0, 1));
        row("one item inserted twice is two rows", 1,
            quietly([](Model& m) { m.insertRow(0, m.item(0)); }), "", "0 0",
            announcedInsertion(0, 0, 2));

        row(
            "remove the first row", 3, [](Model& m) { return text(m.removeRow(0)); }, "true", "1 2",
            announcedRemoval(0, 0, 2));
        row(
            "remove the last row", 3, [](Model& m) { return text(m.removeRow(2)); }, "true", "0 1",
            announcedRemoval(2, 2, 2));
        row(
            "remove the only row", 1, [](Model& m) { return text(m.removeRow(0)); }, "true", "",
            announcedRemoval(0, 0, 0));
        row(
            "removing one row is announced for the top level whatever parent is given", 3,
            [](Model& m) { return text(m.removeRow(1, m.index(2, 0))); }, "true", "0 2",
            announcedRemoval(1, 1, 2));
        row(
            "remove a block at the end", 5, [](Model& m) { return text(m.removeRows(2, 3)); },
            "true", "0 1", announcedRemoval(2, 4, 2));
        row(
            "remove a block in the middle", 5, [](Model& m) { return text(m.removeRows(1, 2)); },
            "true", "0 3 4", announcedRemoval(1, 2, 3));
        row(
            "remove all rows", 5, [](Model& m) { return text(m.removeRows(0, 5)); }, "true", "",
            announcedRemoval(0, 4, 0));
        row(
            "removing a block is announced under the parent given", 3,
            [](Model& m) { return text(m.removeRows(1, 2, m.index(0, 0))); }, "true", "0",
            announcedRemoval(1, 2, 1, "0"));

        row(
            "take the first row by number", 3, [](Model& m) { return text(m.takeRow(0)); }, "0",
            "1 2", announcedRemoval(0, 0, 2));
        row(
            "take row -2, the first row", 3, [](Model& m) { return text(m.takeRow(-2)); }, "0",
            "1 2", announcedRemoval(0, 0, 2));
        row(
            "take the last row", 3, [](Model& m) { return text(m.takeRow(2)); }, "2", "0 1",
            announcedRemoval(2, 2, 2));
        row(
            "taking a row is announced under the parent given", 3,
            [](Model& m) { return text(m.takeRow(1, m.index(0, 0))); }, "1", "0 2",
            announcedRemoval(1, 1, 2, "0"));
        row(
            "take the first two rows", 3, [](Model& m) { return ids(m.takeRows(0, 2)); }, "0 1",
            "2", announcedRemoval(0, 1, 1));
        row(
            "take rows from the middle in their order", 5,
            [](Model& m) { return ids(m.takeRows(1, 3)); }, "1 2 3", "0 4",
            announcedRemoval(1, 3, 2));
        row(
            "take two rows from row -2, the first row", 3,
            [](Model& m) { return ids(m.takeRows(-2, 2)); }, "0 1", "2", announcedRemoval(0, 1, 1));
        row(
            "take count -1, every row", 3, [](Model& m) { return ids(m.takeRows(0, -1)); }, "0 1 2",
            "", announcedRemoval(0, 2, 0));
        row(
            "take every row from row -2, the first row", 3,
            [](Model& m) { return ids(m.takeRows(-2, -1)); }, "0 1 2", "",
            announcedRemoval(0, 2, 0));
        row(
            "taking rows is announced under the parent given", 3,
            [](Model& m) { return ids(m.takeRows(0, 2, m.index(2, 0))); }, "0 1", "2",
            announcedRemoval(0, 1, 1, "2"));

        row("clear announces the count twice", 3, quietly([](Model& m) { m.clear(); }), "", "",
            announcedRemoval(0, 2, 0) << countChanged(0));
    }

    void call()
    {
        QFETCH(int, rows);
        QFETCH(Call, call);
        QFETCH(QString, result);
        QFETCH(QString, after);
        QFETCH(QStringList, emitted);
        Model model(rows);
        SignalLog log(&model);

        QCOMPARE(call(model), result);

        QCOMPARE(log.take(), emitted);
        QCOMPARE(ids(model), after);
        QCOMPARE(model.rowCount(), model.property("count").toInt());
    }

    void rejectedCall_data() { battery::rejectedCallRows(); }
    void rejectedCall()
    {
        SampleItem prototype;
        battery::TopLevelOnly<ListModel> model(&prototype, nullptr);
        battery::runRejectedCall(model, sampleItemClass());
    }

    void rowsAreThereWhenTheirArrivalIsAnnounced()
    {
        Model model(1);
        QStringList seen;
        const auto note = [&] { seen << ids(model); };
        connect(&model, &ListModel::rowsAboutToBeInserted, this, note);
        connect(&model, &ListModel::rowsInserted, this, note);
        connect(&model, &ListModel::rowsAboutToBeRemoved, this, note);
        connect(&model, &ListModel::rowsRemoved, this, note);
        connect(&model, &ListModel::countChanged, this, note);
        model.appendRows({model.newItem(7), model.newItem(8)});
        QCOMPARE(seen, (QStringList{"0", "0 7 8", "0 7 8"}));
        seen.clear();
        model.takeRows(0, 2);
        QCOMPARE(seen, (QStringList{"0 7 8", "8", "8"}));
    }

    // Forwarding of item changes.

    void anItemsChangeIsReportedForItsRowWithNoRoleList()
    {
        Model model(3);
        SignalLog log(&model);
        model.item(1)->setValue(5);
        QCOMPARE(log.take(), QStringList{"dataChanged(1, 1, [])"});
        model.item(1)->setValue(5);
        QCOMPARE(log.take(), QStringList());
        model.item(2)->triggerItemUpdate();
        QCOMPARE(log.take(), QStringList{"dataChanged(2, 2, [])"});
    }

    void everyWayInConnectsTheItemOnce()
    {
        Model model;
        QVector<ListItem*> items;
        for (int id = 0; id < 5; ++id)
            items << model.newItem(id);
        model.appendRow(items.at(0));
        model.appendRowFromQml(items.at(1));
        model.appendRows({items.at(2), items.at(3)});
        model.insertRow(4, items.at(4));
        SignalLog log(&model);
        for (int row = 0; row < 5; ++row) {
            items.at(row)->triggerItemUpdate();
            QCOMPARE(log.take(), QStringList{rowChanged(row)});
        }
    }

    void anItemThatMovedIsReportedWhereItIsNow()
    {
        Model model(3);
        SampleItem* item = model.item(1);
        SignalLog log(&model);
        const auto reportedRow = [&] {
            log.take();
            item->triggerItemUpdate();
            return log.take();
        };
        model.insertRow(0, model.newItem(9));
        QCOMPARE(reportedRow(), QStringList{rowChanged(2)});
        model.removeRows(0, 2);
        QCOMPARE(reportedRow(), QStringList{rowChanged(0)});
        model.sort(0, Qt::DescendingOrder);
        QCOMPARE(reportedRow(), QStringList{rowChanged(1)});
    }

    void anIndexBeyondTheRowsIsNotReported()
    {
        class Displaced : public Model
        {
        public:
            using Model::Model;
            int shift = 0;
            QModelIndex index(int row, int column, const QModelIndex&) const override
            {
                return createIndex(row + shift, column);
            }
        } model(2);
        SignalLog log(&model);
        model.shift = 1;
        model.item(0)->triggerItemUpdate();
        QCOMPARE(log.take(), QStringList{rowChanged(1)});
        model.item(1)->triggerItemUpdate();
        QCOMPARE(log.take(), QStringList());
    }

    void everyItemIsConnectedBehindItsPredecessor()
    {
        class Witness : public SampleItem
        {
        public:
            Witness(int id, Model& list) : SampleItem(id, QVariant(), &list), m_list(list) {}
            int rowsBefore = -1;

        protected:
            void connectNotify(const QMetaMethod&) override
            {
                for (rowsBefore = 0; m_list.itemFromRow(rowsBefore) != nullptr;)
                    ++rowsBefore;
            }

        private:
            Model& m_list;
        };
        Model model(1);
        auto* first = new Witness(1, model);
        auto* second = new Witness(2, model);
        model.appendRows({first, second});
        QCOMPARE(first->rowsBefore, 1);
        QCOMPARE(second->rowsBefore, 2);
    }

    void theSlotIsSilentForAnyoneButARow()
    {
        Model model(2);
        SampleItem stranger;
        QTimer notAnItem;
        connect(&stranger, SIGNAL(dataChanged()), &model, SLOT(onHandleItemChange()));
        connect(&notAnItem, SIGNAL(objectNameChanged(QString)), &model, SLOT(onHandleItemChange()));
        SignalLog log(&model);
        QVERIFY(QMetaObject::invokeMethod(&model, "onHandleItemChange"));
        stranger.triggerItemUpdate();
        notAnItem.setObjectName("changed");
        QCOMPARE(log.take(), QStringList());
    }

    void anItemInsertedTwiceReportsItsFirstRowTwice()
    {
        Model model(2);
        model.insertRow(1, model.item(1));
        QCOMPARE(ids(model), "0 1 1");
        SignalLog log(&model);
        model.item(1)->triggerItemUpdate();
        QCOMPARE(log.take(), (QStringList{rowChanged(1), rowChanged(1)}));

        model.takeRows(1, 1); // both connections stay
        log.take();
        model.item(1)->triggerItemUpdate();
        QCOMPARE(log.take(), (QStringList{rowChanged(1), rowChanged(1)}));

        model.appendRow(model.item(1));
        ListItem* taken = model.takeRow(1); // cuts them all, even those for the row that stays
        log.take();
        QCOMPARE(ids(model), "0 1");
        taken->triggerItemUpdate();
        QCOMPARE(log.take(), QStringList());
    }

    // Rows on their way out.

    void takeRowCutsEveryConnectionOfTheItem_data()
    {
        QTest::addColumn<int>("row");
        QTest::newRow("by number") << 0;
        QTest::newRow("as the first row") << -2;
    }

    void takeRowCutsEveryConnectionOfTheItem()
    {
        QFETCH(int, row);
        Model model(2);
        SampleItem* item = model.item(0);
        QSignalSpy changes(item, &ListItem::dataChanged);
        QSignalSpy names(item, &QObject::objectNameChanged);
        QSignalSpy ends(item, &QObject::destroyed);
        SignalLog log(&model);

        QCOMPARE(model.takeRow(row), item);
        log.take();
        QVERIFY(!QObject::disconnect(item, nullptr, nullptr, nullptr)); // nothing left to cut
        item->triggerItemUpdate();
        item->setObjectName("taken");
        delete item;

        QCOMPARE(changes.count() + names.count() + ends.count(), 0);
        QCOMPARE(log.take(), QStringList());
    }

    void takeRowCutsAfterTheRowLeftAndBeforeItIsAnnounced()
    {
        Model model(1);
        SampleItem* item = model.item(0);
        SignalLog log(&model);
        connect(&model, &ListModel::rowsAboutToBeRemoved, this,
                [item] { item->triggerItemUpdate(); });
        QSignalSpy changes(item, &ListItem::dataChanged);
        connect(&model, &ListModel::rowsRemoved, this, [item] { item->triggerItemUpdate(); });
        model.takeRow(0);
        QStringList expected = announcedRemoval(0, 0, 0);
        expected.insert(1, rowChanged(0));
        QCOMPARE(log.take(), expected);
        QCOMPARE(changes.count(), 1);
    }

    void takeRowsKeepsTheConnections()
    {
        Model model(3);
        const QVector<ListItem*> taken = model.takeRows(0, 2);
        QSignalSpy changes(taken.at(1), &ListItem::dataChanged);
        SignalLog log(&model);
        taken.at(1)->triggerItemUpdate(); // no row: nothing
        QCOMPARE(log.take(), QStringList());
        QCOMPARE(changes.count(), 1);
        // One from the model, one from the spy.
        QVERIFY(QObject::disconnect(taken.at(1), &ListItem::dataChanged, &model, nullptr));
    }

    void rowsPutBackAfterTakeRowsReportTwice_data()
    {
        QTest::addColumn<Call>("putBack");
        QTest::addColumn<int>("row");
        const auto with = [](void (*action)(Model&, ListItem*)) {
            return Call([action](Model& model) {
                ListItem* item = model.takeRows(1, 1).first();
                action(model, item);
                return QString();
            });
        };
        QTest::newRow("with appendRow")
            << with([](Model& model, ListItem* item) { model.appendRow(item); }) << 2;
        QTest::newRow("with appendRowFromQml")
            << with([](Model& model, ListItem* item) { model.appendRowFromQml(item); }) << 2;
        QTest::newRow("with appendRows")
            << with([](Model& model, ListItem* item) { model.appendRows({item}); }) << 2;
        QTest::newRow("with insertRow")
            << with([](Model& model, ListItem* item) { model.insertRow(0, item); }) << 0;
    }

    void rowsPutBackAfterTakeRowsReportTwice()
    {
        QFETCH(Call, putBack);
        QFETCH(int, row);
        Model model(3);
        putBack(model);
        SignalLog log(&model);
        model.item(row)->triggerItemUpdate();
        QCOMPARE(log.take(), (QStringList{rowChanged(row), rowChanged(row)}));
    }

    void aRowPutBackAfterTakeRowReportsOnce()
    {
        Model model(3);
        model.appendRow(model.takeRow(1));
        SignalLog log(&model);
        model.item(2)->triggerItemUpdate();
        QCOMPARE(log.take(), QStringList{rowChanged(2)});
    }

    void aRowMovedToAnotherModelReportsThere()
    {
        Model from(1);
        Model to(0);
        to.appendRow(from.takeRow(0));
        SignalLog fromLog(&from);
        SignalLog toLog(&to);
        to.item(0)->triggerItemUpdate();
        QCOMPARE(fromLog.take(), QStringList());
        QCOMPARE(toLog.take(), QStringList{rowChanged(0)});
        to.takeRow(0);
    }

    // Ownership.

    void removedRowsAreDestroyedByTheEventLoop_data()
    {
        QTest::addColumn<Call>("remove");
        QTest::addColumn<QString>("destroyed");
        QTest::newRow("removeRow") << Call([](Model& m) { return text(m.removeRow(1)); }) << "1";
        QTest::newRow("removeRows, front to back")
            << Call([](Model& m) { return text(m.removeRows(1, 3)); }) << "1 2 3";
        QTest::newRow("clear, front to back") << Call([](Model& m) {
            m.clear();
            return text(true);
        }) << "0 1 2 3 4";
    }

    void removedRowsAreDestroyedByTheEventLoop()
    {
        QFETCH(Call, remove);
        QFETCH(QString, destroyed);
        QStringList ended;
        Model model(5);
        for (int row = 0; row < 5; ++row) {
            connect(model.item(row), &QObject::destroyed, this,
                    [&ended, row] { ended << QString::number(row); });
        }
        const QVector<ListItem*> items = battery::itemsOf(model);

        QCOMPARE(remove(model), "true");

        // Until then they are whole, but no rows: what they say reaches no view.
        QCOMPARE(ended, QStringList());
        SignalLog log(&model);
        for (const QString& id : destroyed.split(' '))
            items.at(id.toInt())->triggerItemUpdate();
        QCOMPARE(log.take(), QStringList());

        QEventLoop loop;
        QTimer::singleShot(0, &loop, &QEventLoop::quit);
        loop.exec();
        QCOMPARE(ended.join(' '), destroyed);
        QCOMPARE(log.take(), QStringList());
    }

    void takenRowsOutliveTheEventLoop()
    {
        Model model(4);
        QVector<QPointer<ListItem>> taken{model.takeRow(0)};
        for (ListItem* item : model.takeRows(0, 2))
            taken.append(item);
        battery::runDeferredDeletions();
        for (const QPointer<ListItem>& item : qAsConst(taken))
            QVERIFY(item);
    }

    void theModelNeverReparents_data()
    {
        QTest::addColumn<bool>("hasParent");
        QTest::newRow("a row with a parent") << true;
        QTest::newRow("a row without a parent") << false;
    }

    void theModelNeverReparents()
    {
        QFETCH(bool, hasParent);
        QObject owner;
        QObject* parent = hasParent ? &owner : nullptr;
        Model model;
        QPointer<SampleItem> item = new SampleItem(1, QVariant(), parent);
        model.appendRow(item);
        QCOMPARE(item->parent(), parent);
        model.takeRow(0);
        QCOMPARE(item->parent(), parent);
        model.insertRow(0, item);
        QCOMPARE(item->parent(), parent);
        model.takeRows(0, 1);
        QCOMPARE(item->parent(), parent);
        model.appendRows({item});
        model.removeRow(0);
        QCOMPARE(item->parent(), parent);
        battery::runDeferredDeletions();
        QVERIFY(!item);
    }

    void theDestructorDeletesNothingAndEmitsNothing()
    {
        SampleItem prototype;
        SampleItem first(1);
        auto second = std::make_unique<SampleItem>(2);
        auto model = std::make_unique<ListModel>(&prototype, nullptr);
        model->appendRows({&first, second.get()});
        SignalLog log(model.get());
        QSignalSpy prototypeEnd(&prototype, &QObject::destroyed);
        QSignalSpy secondEnd(second.get(), &QObject::destroyed);

        model.reset();
        battery::runDeferredDeletions();

        QCOMPARE(log.take(), QStringList());
        QCOMPARE(prototypeEnd.count() + secondEnd.count(), 0);
        QCOMPARE(prototype.parent(), nullptr);
        first.triggerItemUpdate(); // no one listens any more
        QCOMPARE(second->id(), 2);
    }

    void rowsThatAreChildrenGoWithTheModel()
    {
        auto model = std::make_unique<Model>(2);
        const QPointer<SampleItem> item = model->item(1);
        model.reset();
        QVERIFY(!item);
    }

    // A derived model that counts in its own way is asked for positions and counts; what is in
    // range is decided by the rows that are there.

    void insertionsGoByTheVirtualCount()
    {
        MiscountingModel model(2);
        model.reported = 7;
        SignalLog log(&model);
        model.appendRow(model.newItem(8));
        QCOMPARE(log.take(), announcedInsertion(7, 7, 7));
        model.appendRows({model.newItem(9), model.newItem(10)});
        QCOMPARE(log.take(), announcedInsertion(7, 8, 7));
        model.insertRow(1, model.newItem(11));
        QCOMPARE(log.take(), announcedInsertion(1, 1, 7));
        QCOMPARE(ids(model), "0 11 1 8 9 10");
        QCOMPARE(model.property("count").toInt(), 7);
    }

    void removalsReportTheVirtualCount()
    {
        MiscountingModel model(6);
        model.reported = 7;
        SignalLog log(&model);
        QVERIFY(model.removeRow(0));
        QCOMPARE(log.take(), announcedRemoval(0, 0, 7));
        QVERIFY(model.removeRows(0, 2));
        QCOMPARE(log.take(), announcedRemoval(0, 1, 7));
        QVERIFY(model.takeRow(0));
        QCOMPARE(log.take(), announcedRemoval(0, 0, 7));
        QCOMPARE(model.takeRows(0, -1).size(), 2);
        QCOMPARE(log.take(), announcedRemoval(0, 1, 7));
    }

    void rangesGoByTheRowsThatAreThere_data()
    {
        QTest::addColumn<int>("reported");
        QTest::newRow("a model that counts too many") << 7;
        QTest::newRow("a model that counts too few") << 0;
    }

    void rangesGoByTheRowsThatAreThere()
    {
        QFETCH(int, reported);
        MiscountingModel model(3);
        model.reported = reported;
        SignalLog log(&model);
        QVERIFY(model.itemFromRow(2) && !model.itemFromRow(3));
        QVERIFY(model.get(2).isValid() && !model.get(3).isValid());
        QVERIFY(model.data(model.anyIndex(2, 0), SampleItem::IdRole).isValid());
        QVERIFY(!model.data(model.anyIndex(3, 0), SampleItem::IdRole).isValid());
        QVERIFY(!model.removeRow(3));
        QVERIFY(!model.removeRows(2, 2));
        QVERIFY(!model.takeRow(3));
        QVERIFY(model.takeRows(2, 2).isEmpty());
        QCOMPARE(log.take(), QStringList());
        QVERIFY(model.removeRow(2));
        QVERIFY(model.takeRow(1));
        QVERIFY(model.removeRows(0, 1));
        QCOMPARE(model.itemFromRow(0), nullptr);
    }

    void clearRemovesAsManyRowsAsTheVirtualCountSays_data()
    {
        QTest::addColumn<int>("rows");
        QTest::addColumn<int>("reported");
        QTest::addColumn<QString>("after");
        QTest::addColumn<QStringList>("emitted");
        QTest::newRow("too few: the rest stays")
            << 3 << 2 << "2" << (announcedRemoval(0, 1, 2) << countChanged(2));
        QTest::newRow("too many: the removal is rejected")
            << 3 << 7 << "0 1 2" << QStringList{countChanged(7)};
        QTest::newRow("none: the removal is rejected")
            << 3 << 0 << "0 1 2" << QStringList{countChanged(0)};
        QTest::newRow("without rows nothing happens whatever the count")
            << 0 << 7 << "" << QStringList();
    }

    void clearRemovesAsManyRowsAsTheVirtualCountSays()
    {
        QFETCH(int, rows);
        QFETCH(int, reported);
        QFETCH(QString, after);
        QFETCH(QStringList, emitted);
        MiscountingModel model(rows);
        model.reported = reported;
        SignalLog log(&model);
        model.clear();
        QCOMPARE(log.take(), emitted);
        QCOMPARE(ids(model), after);
    }

    void clearGoesThroughTheVirtualRemoval()
    {
        WatchfulModel model(3);
        model.clear();
        QCOMPARE(model.removals, QStringList{"0 3 0"});
        model.clear();
        QCOMPARE(model.removals.size(), 1);
    }

    // Slots that call back.

    void callBack_data()
    {
        QTest::addColumn<Call>("call");
        QTest::addColumn<QByteArray>("moment");
        QTest::addColumn<Call>("callBack");
        QTest::addColumn<QString>("after");
        QTest::addColumn<QStringList>("emitted");
        const Call clear([](Model& m) {
            m.clear();
            return QString();
        });
        const Call append([](Model& m) {
            m.appendRow(m.newItem(9));
            return QString();
        });
        const QByteArray arriving = "rowsAboutToBeInserted(QModelIndex,int,int)";
        const QByteArray arrived = "rowsInserted(QModelIndex,int,int)";
        const QByteArray leaving = "rowsAboutToBeRemoved(QModelIndex,int,int)";
        const QByteArray left = "rowsRemoved(QModelIndex,int,int)";
        const QByteArray counted = "countChanged(int)";
        const QByteArray changed = "dataChanged(QModelIndex,QModelIndex,QVector<int>)";
        const QStringList cleared = announcedRemoval(0, 2, 0) << countChanged(0);
        const auto inside = [](QStringList outer, int position, const QStringList& inner) {
            return outer.mid(0, position) + inner + outer.mid(position);
        };

        QTest::newRow("clear while a row is about to be removed")
            << Call([](Model& m) { return text(m.removeRow(1)); }) << leaving << clear << ""
            << inside(announcedRemoval(1, 1, 0), 1, cleared);
        QTest::newRow("clear while rows are about to be removed")
            << Call([](Model& m) { return text(m.removeRows(1, 2)); }) << leaving << clear << ""
            << inside(announcedRemoval(1, 2, 0), 1, cleared);
        QTest::newRow("clear while a row is about to be taken")
            << Call([](Model& m) { return text(m.takeRow(2)); }) << leaving << clear << ""
            << inside(announcedRemoval(2, 2, 0), 1, cleared);
        QTest::newRow("clear while rows are about to be taken")
            << Call([](Model& m) { return ids(m.takeRows(0, -1)); }) << leaving << clear << ""
            << inside(announcedRemoval(0, 2, 0), 1, cleared);
        QTest::newRow("clear while the model is being cleared")
            << clear << leaving << clear << "" << inside(cleared, 1, cleared);
        QTest::newRow("remove the last row while it is about to be removed")
            << Call([](Model& m) { return text(m.removeRow(2)); }) << leaving
            << Call([](Model& m) { return text(m.removeRow(2)); }) << "0 1"
            << inside(announcedRemoval(2, 2, 2), 1, announcedRemoval(2, 2, 2));
        QTest::newRow("append while rows are about to be removed")
            << Call([](Model& m) { return text(m.removeRows(0, 2)); }) << leaving << append << "2 9"
            << inside(announcedRemoval(0, 1, 2), 1, announcedInsertion(3, 3, 4));
        QTest::newRow("clear when rows were removed")
            << Call([](Model& m) { return text(m.removeRows(0, 2)); }) << left << clear << ""
            << inside(announcedRemoval(0, 1, 0), 2, announcedRemoval(0, 0, 0) << countChanged(0));
        QTest::newRow("append when rows were removed")
            << Call([](Model& m) { return text(m.removeRow(0)); }) << left << append << "1 2 9"
            << inside(announcedRemoval(0, 0, 3), 2, announcedInsertion(2, 2, 3));
        QTest::newRow("append when the count changed")
            << append << counted << append << "0 1 2 9 9"
            << announcedInsertion(3, 3, 4) + announcedInsertion(4, 4, 5);
        QTest::newRow("append when a row has arrived")
            << append << arrived << append << "0 1 2 9 9"
            << inside(announcedInsertion(3, 3, 5), 2, announcedInsertion(4, 4, 5));
        QTest::newRow("clear when a row has arrived")
            << append << arrived << clear << ""
            << inside(announcedInsertion(3, 3, 0), 2, announcedRemoval(0, 3, 0) << countChanged(0));
        QTest::newRow("clear when the count changed")
            << append << counted << clear << ""
            << announcedInsertion(3, 3, 4) + announcedRemoval(0, 3, 0) +
                   QStringList{countChanged(0)};
        QTest::newRow("clear while a row is about to arrive")
            << append << arriving << clear << "9"
            << inside(announcedInsertion(3, 3, 1), 1, cleared);
        QTest::newRow("clear while a row is about to be inserted at the end") << Call([](Model& m) {
            m.insertRow(3, m.newItem(9));
            return QString();
        }) << arriving << clear << "9" << inside(announcedInsertion(3, 3, 1), 1, cleared);
        QTest::newRow("remove a row when it changed") << Call([](Model& m) {
            m.item(1)->setValue(1);
            return QString();
        }) << changed << Call([](Model& m) {
            return text(m.removeRow(1));
        }) << "0 2" << QStringList{rowChanged(1)} + announcedRemoval(1, 1, 2);
        QTest::newRow("take a row when it changed") << Call([](Model& m) {
            m.item(1)->setValue(1);
            return QString();
        }) << changed << Call([](Model& m) {
            return text(m.takeRow(1));
        }) << "0 2" << QStringList{rowChanged(1)} + announcedRemoval(1, 1, 2);
    }

    void callBack()
    {
        QFETCH(Call, call);
        QFETCH(QByteArray, moment);
        QFETCH(Call, callBack);
        QFETCH(QString, after);
        QFETCH(QStringList, emitted);
        Model model(3);
        SignalLog log(&model); // connected first, hears first
        m_callBack = [&model, callBack, once = true]() mutable {
            if (std::exchange(once, false))
                callBack(model);
        };
        QVERIFY(connect(&model, '2' + moment, this, SLOT(runCallBack())));

        call(model);
        m_callBack = nullptr;

        QCOMPARE(log.take(), emitted);
        QCOMPARE(ids(model), after);
        battery::runDeferredDeletions();
        QCOMPARE(ids(model), after); // every row left is alive
        for (int row = 0; row < model.property("count").toInt(); ++row) {
            model.item(row)->triggerItemUpdate();
            QCOMPARE(log.take(), QStringList{rowChanged(row)});
        }
    }

protected slots:
    void runCallBack()
    {
        if (m_callBack)
            m_callBack();
    }

private:
    std::function<void()> m_callBack;
};

QTEST_GUILESS_MAIN(TestListModel)

#include "tst_listmodel.moc"
