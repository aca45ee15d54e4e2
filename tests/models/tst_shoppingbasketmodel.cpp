#include "LibraryModels.h"
#include "ModelCalls.h"
#include "ShoppingBasketModel.h"
#include "ShoppingItem.h"
#include "SignalLog.h"
#include "Table.h"
#include "TopLevelOnly.h"

#include <QAbstractItemModelTester>
#include <QTest>

#include <climits>
#include <memory>

using rivo::models::ListItem;

namespace
{

/// A trip as an application may have it; notes what is read of it.
class Trip : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int routeId READ routeId)
    Q_PROPERTY(int fromStopId READ fromStopId)
    Q_PROPERTY(int toStopId READ toStopId)
    Q_PROPERTY(int currentStopId READ currentStopId)
    Q_PROPERTY(int tripsRouteId READ tripsRouteId)
    Q_PROPERTY(int tripsExecutionId READ tripsExecutionId)
    Q_PROPERTY(QString publicRouteExecutionId READ publicRouteExecutionId)
    Q_PROPERTY(int payMethod READ payMethod)

public:
    explicit Trip(const ShoppingBasketModel& basket) : m_basket(basket) {}

    int routeId() const { return number("routeId", 11); }
    int fromStopId() const { return number("fromStopId", 12); }
    int toStopId() const { return number("toStopId", 13); }
    int currentStopId() const { return number("currentStopId", 14); }
    int tripsRouteId() const { return number("tripsRouteId", 15); }
    int tripsExecutionId() const { return number("tripsExecutionId", 16); }
    QString publicRouteExecutionId() const
    {
        number("publicRouteExecutionId", 0);
        return "2024-05-01/17";
    }
    int payMethod() const { return number("payMethod", 18); }

    mutable QStringList reads;      ///< names in order
    mutable QVector<int> rowCounts; ///< of the basket at each read

private:
    int number(const char* name, int value) const
    {
        reads.append(name);
        rowCounts.append(m_basket.rowCount());
        return value;
    }

    const ShoppingBasketModel& m_basket;
};

/// Claims ten rows more than there are.
class LongBasket : public ShoppingBasketModel
{
public:
    using ShoppingBasketModel::ShoppingBasketModel;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override
    {
        return ShoppingBasketModel::rowCount(parent) + 10;
    }
};

/// A ticket of which nothing but the trip matters.
void addTicket(ShoppingBasketModel& basket, QObject* trip)
{
    basket.addItem(1, 12, 10, 20, "Student", "Day", "qrc:/icons/student.svg", 2.75, "Harbour",
                   "Castle", true, false, trip);
}

/// What addTicket() must show.
QVariantMap ticketValues(int id, const QVariantMap& trip = {})
{
    QVariantMap values{{"id", id},
                       {"passengerTypeId", 1},
                       {"fareProductId", 12},
                       {"fromStopGroupId", 10},
                       {"toStopGroupId", 20},
                       {"description", "Student"},
                       {"fareProductName", "Day"},
                       {"icon", "qrc:/icons/student.svg"},
                       {"price", 2.75},
                       {"origin", "Harbour"},
                       {"destination", "Castle"},
                       {"isReturnFee", true}};
    // What the trip does not have.
    for (const char* number :
         {"routeId", "fromStopId", "toStopId", "currentStopId", "tripsRouteId", "tripsExecutionId"})
        values.insert(number, 0);
    for (auto value = trip.cbegin(); value != trip.cend(); ++value)
        values.insert(value.key(), value.value());
    return values;
}

} // namespace

class TestShoppingBasketModel : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_owner = std::make_unique<QObject>();
        m_basket = new TopLevelOnly<ShoppingBasketModel>(m_owner.get());
        new QAbstractItemModelTester(
            m_basket, QAbstractItemModelTester::FailureReportingMode::Fatal, m_basket);
    }

    void cleanup() { m_owner.reset(); }

    void aTicketTakesOverTheArgumentsAndTheTrip()
    {
        Trip trip(*m_basket);
        addTicket(*m_basket, &trip);
        QCOMPARE(m_basket->rowCount(), 1);
        compare(0, ticketValues(0, {{"routeId", 11},
                                    {"fromStopId", 12},
                                    {"toStopId", 13},
                                    {"currentStopId", 14},
                                    {"tripsRouteId", 15},
                                    {"tripsExecutionId", 16},
                                    {"publicRouteExecutionId", "2024-05-01/17"}}));
        QCOMPARE(ticket(0)->metaObject(), &ShoppingItem::staticMetaObject);
        QCOMPARE(ticket(0)->parent(), m_basket);
    }

    void eachArgumentIsTakenAsItIs()
    {
        QObject trip;
        m_basket->addItem(INT_MIN, INT_MAX, -1, 0, QString(), "", "Dorosły 成人", -0.5, " ", "x",
                          false, true, &trip);
        compare(0, ticketValues(0, {{"passengerTypeId", INT_MIN},
                                    {"fareProductId", INT_MAX},
                                    {"fromStopGroupId", -1},
                                    {"toStopGroupId", 0},
                                    {"description", ""},
                                    {"fareProductName", ""},
                                    {"icon", "Dorosły 成人"},
                                    {"price", -0.5},
                                    {"origin", " "},
                                    {"destination", "x"},
                                    {"isReturnFee", false},
                                    {"isDaily", true}}));
    }

    void theTripIsReadOnceInOrderBeforeTheRowIsThere()
    {
        QObject other;
        addTicket(*m_basket, &other);
        Trip trip(*m_basket);
        addTicket(*m_basket, &trip);
        QCOMPARE(trip.reads,
                 QStringList({"routeId", "fromStopId", "toStopId", "currentStopId", "tripsRouteId",
                              "tripsExecutionId", "publicRouteExecutionId"}));
        QCOMPARE(trip.rowCounts, QVector<int>(7, 1));
    }

    // Views see one insertion: the stops are set before the row is connected.
    void emissions()
    {
        Trip trip(*m_basket);
        SignalLog log(m_basket);
        addTicket(*m_basket, &trip);
        QCOMPARE(log.take(), announcedInsertion(0, 0, 1));
        addTicket(*m_basket, &trip);
        QCOMPARE(log.take(), announcedInsertion(1, 1, 2));

        ticket(1)->setProperty("routeId", 99);
        ticket(1)->setProperty("payMethod", 99);
        QCOMPARE(log.take(), QStringList());
        ticket(1)->setProperty("fromStopId", 99);
        QCOMPARE(log.take(), QStringList{rowChanged(1)});
        ticket(0)->setProperty("isReturnFee", false);
        QCOMPARE(log.take(), QStringList{rowChanged(0)});
    }

    void anIdIsGivenTwiceAfterARemoval()
    {
        QObject trip;
        for (int row = 0; row < 3; ++row)
            addTicket(*m_basket, &trip);
        QVERIFY(m_basket->removeRow(0));
        addTicket(*m_basket, &trip);
        QCOMPARE(idsOf(*m_basket), "1 2 2");
        QCOMPARE(m_basket->findById(2), ticket(1));
        m_basket->clear();
        addTicket(*m_basket, &trip);
        QCOMPARE(idsOf(*m_basket), "0");
    }

    void idsAskTheVirtualRowCount()
    {
        QObject trip;
        LongBasket basket(m_owner.get());
        addTicket(basket, &trip);
        QCOMPARE(basket.itemFromRow(0)->id(), 10);
    }

    void execution_data()
    {
        const Table<QVariant, QString> row("execution", "stored");
        const auto kept = [](const char* sentence, const char* text) {
            QTest::newRow(sentence) << QVariant(text) << QString(text);
        };
        row("a dynamic trip has none", QVariant("DynamicTrip"), {});
        row("the same as bytes has none", QVariant(QByteArray("DynamicTrip")), {});
        kept("lower case is kept", "dynamictrip");
        kept("upper case is kept", "DYNAMICTRIP");
        kept("one other letter is kept", "Dynamictrip");
        kept("a trailing blank is kept", "DynamicTrip ");
        kept("a leading blank is kept", " DynamicTrip");
        kept("a longer text is kept", "DynamicTrip1");
        kept("a shorter text is kept", "DynamicTri");
        kept("an execution of the timetable is kept", "2024-05-01/17");
        kept("an empty text is kept", "");
        row("a number is kept as text", QVariant(4711), "4711");
        row("a list has no text", QVariant(QVariantList{1, 2}), {});
    }

    void execution()
    {
        QFETCH(QVariant, execution);
        QFETCH(QString, stored);
        QObject trip;
        trip.setProperty("publicRouteExecutionId", execution);
        addTicket(*m_basket, &trip);
        compare(0, ticketValues(0, {{"publicRouteExecutionId", stored}}));
        // As in a new ticket.
        QVERIFY(execution != "DynamicTrip" || !ticket(0)->publicRouteExecutionId().isNull());
    }

    void tripNumber_data()
    {
        const Table<QVariant, int> row("value", "stored");
        row("a number", QVariant(7), 7);
        row("the largest number", QVariant(INT_MAX), INT_MAX);
        row("a negative number", QVariant(-999999), -999999);
        row("a number as text", QVariant("7"), 7);
        row("a text that is no number is 0", QVariant("seven"), 0);
        row("a fraction is rounded", QVariant(7.5), 8);
        row("a flag is a number", QVariant(true), 1);
        row("a list is 0", QVariant(QVariantList{7}), 0);
        row("nothing is 0", {}, 0);
    }

    void tripNumber()
    {
        QFETCH(QVariant, value);
        QFETCH(int, stored);
        for (const char* name : {"routeId", "fromStopId", "toStopId", "currentStopId",
                                 "tripsRouteId", "tripsExecutionId"}) {
            QObject trip;
            trip.setProperty(name, value);
            m_basket->clear();
            addTicket(*m_basket, &trip);
            compare(0, ticketValues(0, {{name, stored}}));
        }
    }

private:
    ShoppingItem* ticket(int row) const
    {
        return qobject_cast<ShoppingItem*>(m_basket->itemFromRow(row));
    }

    /// The row has these values and initial ones in all other fields.
    void compare(int row, const QVariantMap& values) const
    {
        const ItemClass& tickets = rowsOf("ShoppingBasketModel");
        QCOMPARE(differences(*ticket(row), tickets.fields, tickets.initialValuesBut(values)),
                 QStringList());
    }

    std::unique_ptr<QObject> m_owner;
    ShoppingBasketModel* m_basket = nullptr;
};

QTEST_GUILESS_MAIN(TestShoppingBasketModel)

#include "tst_shoppingbasketmodel.moc"
