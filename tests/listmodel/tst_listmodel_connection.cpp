// The connection between a row and its model, as an application sees it.

#include "ListModel.h"
#include "SampleItem.h"
#include "SignalLog.h"
#include "Table.h"

#include <QCoreApplication>
#include <QMetaMethod>
#include <QRegularExpression>
#include <QTest>
#include <QThread>

#include <functional>
#include <memory>

using rivo::models::ListItem;
using rivo::models::ListModel;

namespace
{

/// A row that notes what is connected to it.
class WatchedItem : public SampleItem
{
public:
    using SampleItem::SampleItem;

    QStringList connected;

protected:
    void connectNotify(const QMetaMethod& signal) override
    {
        connected.append(QString::fromLatin1(signal.methodSignature()));
        SampleItem::connectNotify(signal);
    }
};

int receiversOf(const ListItem& item)
{
    struct Access : QObject
    {
        using QObject::receivers;
    };
    return (item.*&Access::receivers)(SIGNAL(dataChanged()));
}

bool cut(const ListItem& item, const ListModel& model)
{
    return QObject::disconnect(&item, SIGNAL(dataChanged()), &model, SLOT(onHandleItemChange()));
}

QStringList* messages = nullptr;

/// What QObject::dumpObjectInfo() writes.
QString objectInfo(const QObject& object)
{
    QStringList lines;
    messages = &lines;
    const QtMessageHandler previous = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext&, const QString& text) { messages->append(text); });
    object.dumpObjectInfo();
    qInstallMessageHandler(previous);
    return lines.join('\n');
}

/// A row that does not show in its meta-object that it is one.
class DisguisedItem : public SampleItem
{
public:
    using SampleItem::SampleItem;

    const QMetaObject* metaObject() const override { return &QObject::staticMetaObject; }
};

using Insertion = std::function<void(ListModel&, ListItem*)>;

} // namespace

Q_DECLARE_METATYPE(Insertion)

class TestListModelConnection : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_model = std::make_unique<ListModel>(&m_prototype, nullptr);
        m_item = std::make_unique<WatchedItem>(7);
    }

    void everyInsertionMakesTheStatedConnection_data()
    {
        const Table<Insertion> row("insert");
        row("appendRow", [](ListModel& m, ListItem* i) { m.appendRow(i); });
        row("appendRows", [](ListModel& m, ListItem* i) { m.appendRows({i}); });
        row("insertRow", [](ListModel& m, ListItem* i) { m.insertRow(0, i); });
        row("appendRowFromQml", [](ListModel& m, ListItem* i) { m.appendRowFromQml(i); });
    }

    void everyInsertionMakesTheStatedConnection()
    {
        QFETCH(Insertion, insert);
        insert(*m_model, m_item.get());
        QCOMPARE(m_item->connected, QStringList("dataChanged()"));
        QCOMPARE(receiversOf(*m_item), 1);

        insert(*m_model, m_item.get());
        QCOMPARE(receiversOf(*m_item), 2);
        QVERIFY(cut(*m_item, *m_model)); // both at once
        QCOMPARE(receiversOf(*m_item), 0);
        QVERIFY(!cut(*m_item, *m_model));
    }

    void appendRowFromQmlChecksNoType()
    {
        DisguisedItem item(4);
        QVERIFY(!qobject_cast<ListItem*>(static_cast<QObject*>(&item)));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("QObject::connect: No such signal "));
        m_model->appendRowFromQml(&item);
        QCOMPARE(m_model->rowCount(), 1);
        QCOMPARE(m_model->itemFromRow(0), &item);
    }

    void theConnectionCanBeCutByName()
    {
        m_model->appendRow(m_item.get());
        SignalLog log(m_model.get());
        QVERIFY(cut(*m_item, *m_model));
        m_item->setId(8);
        m_item->triggerItemUpdate();
        QCOMPARE(log.take(), QStringList());
        QCOMPARE(m_model->itemFromRow(0), m_item.get()); // still a row

        QVERIFY(connect(m_item.get(), SIGNAL(dataChanged()), m_model.get(),
                        SLOT(onHandleItemChange())));
        m_item->setId(9);
        QCOMPARE(log.take(), QStringList(rowChanged(0)));
    }

    void aUniqueConnectionIsThereAlready()
    {
        m_model->appendRow(m_item.get());
        QVERIFY(!connect(m_item.get(), SIGNAL(dataChanged()), m_model.get(),
                         SLOT(onHandleItemChange()), Qt::UniqueConnection));
        SignalLog log(m_model.get());
        m_item->setId(8);
        QCOMPARE(log.take(), QStringList(rowChanged(0)));
    }

    void theConnectionHasItsNameInADump()
    {
        m_model->setObjectName("fleet");
        m_model->appendRow(m_item.get());
        QVERIFY2(objectInfo(*m_item).contains("ListModel::fleet onHandleItemChange()"),
                 qPrintable(objectInfo(*m_item)));
    }

    void anItemThatAnnouncesItselfInsideAnotherRowsChange_data()
    {
        const Table<bool> row("fromTheModel");
        row("as a receiver of that row", false);
        row("as a receiver of the model", true);
    }

    void anItemThatAnnouncesItselfInsideAnotherRowsChange()
    {
        QFETCH(bool, fromTheModel);
        SampleItem first(1);
        SampleItem last(3);
        m_model->appendRows({&first, m_item.get(), &last});
        SignalLog log(m_model.get());
        const auto answer = [this, &last] {
            last.setId(30);
            m_item->setId(20);
        };
        if (fromTheModel)
            connect(m_model.get(), &ListModel::dataChanged, m_item.get(), answer);
        else
            connect(&first, &ListItem::dataChanged, m_item.get(), answer);
        first.setId(10);
        QCOMPARE(log.take(), (QStringList{rowChanged(0), rowChanged(2), rowChanged(1)}));
        first.setId(11); // the others have their values
        QCOMPARE(log.take(), QStringList(rowChanged(0)));
    }

    void theRowIsThatOfTheEmission()
    {
        SampleItem first(1);
        m_model->appendRows({&first, m_item.get()});
        connect(&first, &ListItem::dataChanged, m_model.get(),
                [this, &first] { m_model->takeRows(m_model->indexFromItem(&first).row(), 1); });
        SignalLog log(m_model.get());
        m_item->setId(8);
        QCOMPARE(log.take(), QStringList(rowChanged(1)));
        first.setId(2); // the model is called first, as it was connected first
        QCOMPARE(log.take(), QStringList(rowChanged(0)) + announcedRemoval(0, 0, 1));
        m_item->setId(9);
        QCOMPARE(log.take(), QStringList(rowChanged(0)));
    }

    void aChangeInAnotherThreadArrivesInTheModelsOwn()
    {
        SampleItem other(1);
        m_model->appendRows({&other, m_item.get()});
        SignalLog log(m_model.get());
        const std::unique_ptr<QThread> thread(QThread::create([this] { m_item->setId(8); }));
        thread->start();
        QVERIFY(thread->wait());
        QCOMPARE(log.take(), QStringList());
        QCoreApplication::processEvents();
        QCOMPARE(log.take(), QStringList(rowChanged(1)));
    }

private:
    SampleItem m_prototype;
    std::unique_ptr<ListModel> m_model;
    std::unique_ptr<WatchedItem> m_item;
};

QTEST_GUILESS_MAIN(TestListModelConnection)
#include "tst_listmodel_connection.moc"
