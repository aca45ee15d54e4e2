#include "DeferredDeletions.h"
#include "SampleModel.h"
#include "SignalLog.h"
#include "Table.h"

#include <QEventLoop>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <memory>

using rivo::models::ListItem;
using rivo::models::ListModel;

namespace
{

using Model = SampleModel;

/// A model that notes every removal.
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

} // namespace

/// What becomes of rows that leave the model, and of all rows when the model is destroyed.
class TestListModelLifetime : public QObject
{
    Q_OBJECT

private slots:
    void takeRowCutsEveryConnectionOfTheItem()
    {
        for (int row : {0, -2}) {
            Model model(2);
            SampleItem* item = model.item(0);
            QSignalSpy names(item, &QObject::objectNameChanged);
            QSignalSpy ends(item, &QObject::destroyed);
            QCOMPARE(model.takeRow(row), item);
            QVERIFY(!QObject::disconnect(item, nullptr, nullptr, nullptr)); // nothing left to cut
            item->setObjectName("taken");
            delete item;
            QCOMPARE(names.count() + ends.count(), 0);
        }
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

    void removedRowsAreDestroyedByTheEventLoopFrontToBack_data()
    {
        const Table<QString> row("destroyed");
        row("removeRow 1", "1");
        row("removeRows 1 3", "1 2 3");
        row("clear", "0 1 2 3 4");
    }

    void removedRowsAreDestroyedByTheEventLoopFrontToBack()
    {
        QFETCH(QString, destroyed);
        QStringList ended;
        Model model(5);
        for (int row = 0; row < 5; ++row) {
            connect(model.item(row), &QObject::destroyed, this,
                    [&ended, row] { ended << QString::number(row); });
        }
        const QVector<ListItem*> items = itemsOf(model);

        make(model, QTest::currentDataTag());

        // Until then they are whole, but no rows: their signals reach no view.
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
        runDeferredDeletions();
        for (const QPointer<ListItem>& item : qAsConst(taken))
            QVERIFY(item);
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
        runDeferredDeletions();

        QCOMPARE(log.take(), QStringList());
        QCOMPARE(prototypeEnd.count() + secondEnd.count(), 0);
        QCOMPARE(prototype.parent(), nullptr);
        first.triggerItemUpdate(); // no one listens any more
        QCOMPARE(second->id(), 2);
    }

    void clearGoesThroughTheVirtualRemoval()
    {
        WatchfulModel model(3);
        model.clear();
        QCOMPARE(model.removals, QStringList{"0 3 0"});
        model.clear();
        QCOMPARE(model.removals.size(), 1);
    }
};

QTEST_GUILESS_MAIN(TestListModelLifetime)

#include "tst_listmodel_lifetime.moc"
