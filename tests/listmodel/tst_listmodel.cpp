#include "DeferredDeletions.h"
#include "MetaObjectText.h"
#include "SampleModel.h"
#include "SignalLog.h"
#include "Table.h"

#include <QStringListModel>
#include <QTest>
#include <QTimer>

#include <functional>
#include <utility>

using rivo::models::ListItem;
using rivo::models::ListModel;

namespace
{

using Model = SampleModel;

/// A model that counts its rows in its own way, unless by -1.
class CountingModel : public Model
{
public:
    explicit CountingModel(int rows, int reported) : Model(rows), m_reported(reported) {}

    int rowCount(const QModelIndex& parent = QModelIndex()) const override
    {
        return m_reported < 0 ? Model::rowCount(parent) : m_reported;
    }

private:
    const int m_reported;
};

} // namespace

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

    // Operations that are carried out: result, rows afterwards, everything emitted in order.

    void call_data()
    {
        addColumns<int, int, QString, QString, QString, QStringList>("rows", "reported", "call",
                                                                     "result", "after", "emitted");
        const auto miscounted = [](int rows, int reported, const char* call, const char* result,
                                   const char* after, const QStringList& emitted) {
            QTest::addRow("%s (%d rows, %d reported)", call, rows, reported)
                << rows << reported << QString(call) << QString(result) << QString(after)
                << emitted;
        };
        const auto row = [miscounted](int rows, const char* call, const char* result,
                                      const char* after, const QStringList& emitted) {
            miscounted(rows, -1, call, result, after, emitted);
        };
        row(0, "appendRow 9", "", "9", announcedInsertion(0, 0, 1));
        row(2, "appendRow 9", "", "0 1 9", announcedInsertion(2, 2, 3));
        row(2, "appendRowFromQml 9", "", "0 1 9", announcedInsertion(2, 2, 3));
        row(2, "appendRows 7 8 9", "", "0 1 7 8 9", announcedInsertion(2, 4, 5));
        row(0, "appendRows 9", "", "9", announcedInsertion(0, 0, 1));
        row(2, "insertRow 0 9", "", "9 0 1", announcedInsertion(0, 0, 3));
        row(2, "insertRow 1 9", "", "0 9 1", announcedInsertion(1, 1, 3));
        row(2, "insertRow 2 9", "", "0 1 9", announcedInsertion(2, 2, 3));
        row(0, "insertRow 0 9", "", "9", announcedInsertion(0, 0, 1));
        row(1, "insertAgain 0 0", "", "0 0", announcedInsertion(0, 0, 2));

        row(3, "removeRow 0", "true", "1 2", announcedRemoval(0, 0, 2));
        row(3, "removeRow 2", "true", "0 1", announcedRemoval(2, 2, 2));
        row(1, "removeRow 0", "true", "", announcedRemoval(0, 0, 0));
        row(5, "removeRows 2 3", "true", "0 1", announcedRemoval(2, 4, 2));
        row(5, "removeRows 1 2", "true", "0 3 4", announcedRemoval(1, 2, 3));
        row(5, "removeRows 0 5", "true", "", announcedRemoval(0, 4, 0));
        row(3, "clear", "", "", announcedRemoval(0, 2, 0) << countChanged(0));

        // -2 means the first row, -1 every row.
        row(3, "takeRow 0", "0", "1 2", announcedRemoval(0, 0, 2));
        row(3, "takeRow -2", "0", "1 2", announcedRemoval(0, 0, 2));
        row(3, "takeRow 2", "2", "0 1", announcedRemoval(2, 2, 2));
        row(3, "takeRows 0 2", "0 1", "2", announcedRemoval(0, 1, 1));
        row(5, "takeRows 1 3", "1 2 3", "0 4", announcedRemoval(1, 3, 2));
        row(3, "takeRows -2 2", "0 1", "2", announcedRemoval(0, 1, 1));
        row(3, "takeRows 0 -1", "0 1 2", "", announcedRemoval(0, 2, 0));
        row(3, "takeRows -2 -1", "0 1 2", "", announcedRemoval(0, 2, 0));

        // All but one announce the removal under the parent given.
        row(3, "removeRow 1 below 2", "true", "0 2", announcedRemoval(1, 1, 2));
        row(3, "removeRows 1 2 below 0", "true", "0", announcedRemoval(1, 2, 1, "0"));
        row(3, "takeRow 1 below 0", "1", "0 2", announcedRemoval(1, 1, 2, "0"));
        row(3, "takeRows 0 2 below 2", "0 1", "2", announcedRemoval(0, 1, 1, "2"));

        // A derived model that counts in its own way is asked for positions and counts; what is in
        // range is decided by the rows that are there.
        miscounted(2, 7, "appendRow 8", "", "0 1 8", announcedInsertion(7, 7, 7));
        miscounted(2, 7, "appendRows 8 9", "", "0 1 8 9", announcedInsertion(7, 8, 7));
        miscounted(2, 7, "insertRow 1 9", "", "0 9 1", announcedInsertion(1, 1, 7));
        miscounted(3, 2, "clear", "", "2", announcedRemoval(0, 1, 2) << countChanged(2));
        miscounted(0, 7, "clear", "", "", {});
        for (int reported : {0, 7}) {
            miscounted(3, reported, "clear", "", "0 1 2", {countChanged(reported)});
            miscounted(3, reported, "removeRow 2", "true", "0 1", announcedRemoval(2, 2, reported));
            miscounted(3, reported, "removeRows 0 2", "true", "2",
                       announcedRemoval(0, 1, reported));
            miscounted(3, reported, "takeRow 0", "0", "1 2", announcedRemoval(0, 0, reported));
            miscounted(3, reported, "takeRows 0 -1", "0 1 2", "", announcedRemoval(0, 2, reported));
            miscounted(3, reported, "itemFromRow 2", "2", "0 1 2", {});
            miscounted(3, reported, "get 2", "2", "0 1 2", {});
            for (const char* rejected : {"itemFromRow 3", "takeRow 3"})
                miscounted(3, reported, rejected, "null", "0 1 2", {});
            for (const char* rejected : {"removeRow 3", "removeRows 2 2"})
                miscounted(3, reported, rejected, "false", "0 1 2", {});
            miscounted(3, reported, "get 3", "invalid", "0 1 2", {});
            miscounted(3, reported, "takeRows 2 2", "", "0 1 2", {});
        }
    }

    void call()
    {
        QFETCH(int, rows);
        QFETCH(int, reported);
        QFETCH(QString, call);
        QFETCH(QString, result);
        QFETCH(QString, after);
        QFETCH(QStringList, emitted);
        CountingModel model(rows, reported);
        SignalLog log(&model);

        QCOMPARE(make(model, call), result);

        QCOMPARE(log.take(), emitted);
        QCOMPARE(idsOf(model), after);
        QCOMPARE(model.rowCount(), model.property("count").toInt());
        const int rowsLeft = itemsOf(model).size();
        QCOMPARE(model.data(model.anyIndex(rowsLeft - 1, 0), SampleItem::IdRole).isValid(),
                 rowsLeft > 0);
        QVERIFY(!model.data(model.anyIndex(rowsLeft, 0), SampleItem::IdRole).isValid());
    }

    void rowsAreThereWhenTheirArrivalIsAnnounced()
    {
        Model model(1);
        QStringList seen;
        const auto note = [&] { seen << idsOf(model); };
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

    void theSlotIsSilentForOtherSendersThanRows()
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
        QCOMPARE(idsOf(model), "0 1 1");
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
        QCOMPARE(idsOf(model), "0 1");
        taken->triggerItemUpdate();
        QCOMPARE(log.take(), QStringList());
    }

    // Slots that call back.

    void callBack_data()
    {
        addColumns<QString, QByteArray, QString, QString, QStringList>("call", "moment", "callBack",
                                                                       "after", "emitted");
        const char* arriving = "rowsAboutToBeInserted(QModelIndex,int,int)";
        const char* arrived = "rowsInserted(QModelIndex,int,int)";
        const char* leaving = "rowsAboutToBeRemoved(QModelIndex,int,int)";
        const char* left = "rowsRemoved(QModelIndex,int,int)";
        const char* counted = "countChanged(int)";
        const char* changed = "dataChanged(QModelIndex,QModelIndex,QVector<int>)";
        const QStringList cleared = announcedRemoval(0, 2, 0) << countChanged(0);
        const QStringList clearedFour = announcedRemoval(0, 3, 0) << countChanged(0);
        const auto inside = [](QStringList outer, int position, const QStringList& inner) {
            return outer.mid(0, position) + inner + outer.mid(position);
        };
        const auto row = [](const char* call, const char* moment, const char* callBack,
                            const char* after, const QStringList& emitted) {
            QTest::addRow("%s, at %s %s", call, moment, callBack)
                << QString(call) << QByteArray(moment) << QString(callBack) << QString(after)
                << emitted;
        };
        row("removeRow 1", leaving, "clear", "", inside(announcedRemoval(1, 1, 0), 1, cleared));
        row("removeRows 1 2", leaving, "clear", "", inside(announcedRemoval(1, 2, 0), 1, cleared));
        row("takeRow 2", leaving, "clear", "", inside(announcedRemoval(2, 2, 0), 1, cleared));
        row("takeRows 0 -1", leaving, "clear", "", inside(announcedRemoval(0, 2, 0), 1, cleared));
        row("clear", leaving, "clear", "", inside(cleared, 1, cleared));
        row("removeRow 2", leaving, "removeRow 2", "0 1",
            inside(announcedRemoval(2, 2, 2), 1, announcedRemoval(2, 2, 2)));
        row("removeRows 0 2", leaving, "appendRow 9", "2 9",
            inside(announcedRemoval(0, 1, 2), 1, announcedInsertion(3, 3, 4)));
        row("removeRows 0 2", left, "clear", "",
            inside(announcedRemoval(0, 1, 0), 2, announcedRemoval(0, 0, 0) << countChanged(0)));
        row("removeRow 0", left, "appendRow 9", "1 2 9",
            inside(announcedRemoval(0, 0, 3), 2, announcedInsertion(2, 2, 3)));
        row("appendRow 8", counted, "appendRow 9", "0 1 2 8 9",
            announcedInsertion(3, 3, 4) + announcedInsertion(4, 4, 5));
        row("appendRow 8", arrived, "appendRow 9", "0 1 2 8 9",
            inside(announcedInsertion(3, 3, 5), 2, announcedInsertion(4, 4, 5)));
        row("appendRow 9", arrived, "clear", "",
            inside(announcedInsertion(3, 3, 0), 2, clearedFour));
        row("appendRow 9", counted, "clear", "", announcedInsertion(3, 3, 4) + clearedFour);
        row("appendRow 9", arriving, "clear", "9", inside(announcedInsertion(3, 3, 1), 1, cleared));
        row("insertRow 3 9", arriving, "clear", "9",
            inside(announcedInsertion(3, 3, 1), 1, cleared));
        row("changeRow 1", changed, "removeRow 1", "0 2",
            QStringList{rowChanged(1)} + announcedRemoval(1, 1, 2));
        row("changeRow 1", changed, "takeRow 1", "0 2",
            QStringList{rowChanged(1)} + announcedRemoval(1, 1, 2));
    }

    void callBack()
    {
        QFETCH(QString, call);
        QFETCH(QByteArray, moment);
        QFETCH(QString, callBack);
        QFETCH(QString, after);
        QFETCH(QStringList, emitted);
        Model model(3);
        SignalLog log(&model); // connected first, called first
        m_callBack = [&model, callBack, once = true]() mutable {
            if (std::exchange(once, false))
                make(model, callBack);
        };
        QVERIFY(connect(&model, '2' + moment, this, SLOT(runCallBack())));

        make(model, call);
        m_callBack = nullptr;

        QCOMPARE(log.take(), emitted);
        QCOMPARE(idsOf(model), after);
        runDeferredDeletions();
        QCOMPARE(idsOf(model), after); // every row left is alive
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
