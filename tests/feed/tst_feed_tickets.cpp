#include "FeedToModels.h"
#include "RowRoles.h"
#include "TripContext.h"
#include "ZoneNames.h"

#include "PassengerTypeItem.h"
#include "ShoppingBasketModel.h"
#include "ShoppingItem.h"
#include "Table.h"

#include <QMetaProperty>
#include <QtTest>

#include <memory>
#include <vector>

using namespace rivo::feed;

namespace
{

FeedTripContext distinctTrip()
{
    FeedTripContext trip;
    trip.routeId = 1;
    trip.fromStopId = 2;
    trip.toStopId = 3;
    trip.currentStopId = 4;
    trip.tripsRouteId = 5;
    trip.tripsExecutionId = 6;
    trip.publicRouteExecutionId = "seven";
    return trip;
}

NetworkStop stop(const QString& name, const QVector<int>& areas)
{
    NetworkStop stop;
    stop.name = name;
    stop.areas = areas;
    return stop;
}

} // namespace

class FeedTicketsTest : public QObject
{
    Q_OBJECT

private slots:
    void tripContextOfAFeed();
    void tripContextAnnouncesEachChangeOnce();
    void anotherTripIsThereAsAWholeBeforeItIsAnnounced();
    void zoneNames_data();
    void zoneNames();
    void tickets();
    void ticketsOfADynamicTrip();
};

void FeedTicketsTest::tripContextOfAFeed()
{
    const auto values = [](const TripContext& trip) {
        QStringList texts;
        for (const char* name : {"routeId", "fromStopId", "toStopId", "currentStopId",
                                 "tripsRouteId", "tripsExecutionId", "publicRouteExecutionId"}) {
            const QMetaProperty property =
                trip.metaObject()->property(trip.metaObject()->indexOfProperty(name));
            if (!property.isWritable() || !property.hasNotifySignal())
                return QString("%1 is not as QML needs it").arg(name);
            texts.append(QString(property.typeName()) + ' ' + property.read(&trip).toString());
        }
        return texts.join(", ");
    };
    Feed feed;
    const QString inNoService("int -1, int -1, int -1, int -1, int -1, int -1, QString ");
    QCOMPARE(values(TripContext()), inNoService);
    QCOMPARE(values(TripContext(feed)), inNoService);
    feed.trip = distinctTrip();
    QCOMPARE(values(TripContext(feed)), "int 1, int 2, int 3, int 4, int 5, int 6, QString seven");
    QObject parent;
    const TripContext& child = *new TripContext(distinctTrip(), &parent);
    QCOMPARE(child.parent(), &parent);
    QCOMPARE(values(child), values(TripContext(feed)));
}

void FeedTicketsTest::tripContextAnnouncesEachChangeOnce()
{
    TripContext trip(distinctTrip());
    const QMetaObject* type = trip.metaObject();
    QCOMPARE(type->propertyCount() - type->propertyOffset(), 7);
    for (int index = type->propertyOffset(); index < type->propertyCount(); ++index) {
        const QMetaProperty property = type->property(index);
        std::vector<std::unique_ptr<QSignalSpy>> spies; // one per property
        for (int other = type->propertyOffset(); other < type->propertyCount(); ++other)
            spies.push_back(
                std::make_unique<QSignalSpy>(&trip, type->property(other).notifySignal()));
        const auto announced = [&] {
            QString counts;
            for (const auto& spy : spies)
                counts += QString::number(spy->size());
            return counts;
        };
        const QVariant value =
            property.userType() == QMetaType::Int ? QVariant(100 + index) : QVariant("changed");
        QString expected(int(spies.size()), '0');
        QVERIFY(property.write(&trip, property.read(&trip)));
        QCOMPARE(announced(), expected);
        QVERIFY(property.write(&trip, value));
        QVERIFY(property.write(&trip, value));
        QCOMPARE(property.read(&trip), value);
        expected[index - type->propertyOffset()] = '1';
        QCOMPARE(announced(), expected);
    }
}

void FeedTicketsTest::anotherTripIsThereAsAWholeBeforeItIsAnnounced()
{
    TripContext trip;
    QStringList announced;
    const auto valuesOf = [&] {
        QStringList values;
        for (int at = trip.metaObject()->propertyOffset(); at < trip.metaObject()->propertyCount();
             ++at)
            values.append(trip.metaObject()->property(at).read(&trip).toString());
        return values.join(' ');
    };
    const auto note = [&] { announced.append(valuesOf()); };
    connect(&trip, &TripContext::routeIdChanged, this, note);
    connect(&trip, &TripContext::fromStopIdChanged, this, note);
    connect(&trip, &TripContext::toStopIdChanged, this, note);
    connect(&trip, &TripContext::currentStopIdChanged, this, note);
    connect(&trip, &TripContext::tripsRouteIdChanged, this, note);
    connect(&trip, &TripContext::tripsExecutionIdChanged, this, note);
    connect(&trip, &TripContext::publicRouteExecutionIdChanged, this, note);

    trip.setTrip(distinctTrip());
    const QString whole = "1 2 3 4 5 6 seven";
    QCOMPARE(announced, QStringList(QVector<QString>(7, whole).toList()));
    trip.setTrip(distinctTrip());
    QCOMPARE(announced.size(), 7);
    FeedTripContext next = distinctTrip();
    next.currentStopId = 8;
    trip.setTrip(next);
    QCOMPARE(announced.mid(7), QStringList("1 2 3 8 5 6 seven"));
}

void FeedTicketsTest::zoneNames_data()
{
    const Table<int, QString> row("zone", "name");
    row("the only stop", 1, "Ostra Market");
    row("platforms of one station", 2, "Brenno Spa");
    row("several stops: the number", 3, "3");
    row("several stops, the first name again at the end: the number", 4, "4");
    row("a stop without a name: the number", 5, "5");
    row("no stop: the number", 6, "6");
    row("the zone's own name, whatever its stops are called", 9, "Old Town");
    row("a zone that is named but nowhere", 10, "Hills");
    row("a name of nothing: the stop's", 11, "Mill");
    row("negative number", -7, "-7");
    row("zone 0 is no zone", 0, "");
    row("the only stop, of two zones", 8, "Brenno Spa");
}

void FeedTicketsTest::zoneNames()
{
    QFETCH(int, zone);
    QFETCH(QString, name);
    Feed feed;
    feed.network.stops = {stop("Ostra Market", {1}),
                          stop("Brenno Spa", {2, 8}),
                          stop("Brenno Spa", {2}),
                          stop("Pier", {3, 4, 0}),
                          stop("Camp Site", {3, 4}),
                          stop("Pier", {4}),
                          stop("", {5}),
                          stop("Mill", {9, 11})};
    feed.network.zones = {{9, "Old Town"}, {10, "Hills"}, {11, ""}, {0, "Everywhere"}};
    QCOMPARE(ZoneNames(feed).name(zone), name);
}

void FeedTicketsTest::tickets()
{
    Feed feed;
    feed.trip = distinctTrip();
    feed.network.stops = {stop("Ostra Market", {31}), stop("Brenno Spa", {32})};
    TripContext trip(feed);
    const PassengerTypeItem tile(11, "Large family", "8", "qrc:/icons/one.svg", 12.5, 21, "Single",
                                 2, true, 31, 32, "#123456", false, 7.25, false, 41, nullptr);
    const PassengerTypeItem daily(12, "Adult", "1", "", 3.0, 22, "Day", 0, false, 0, 33, "", true,
                                  0.0, true, -1, nullptr);
    QObject owner; // of the prototype row
    ShoppingBasketModel basket(&owner);
    addTicket(tile, ZoneNames(feed), basket, trip);
    trip.setCurrentStopId(44);
    addTicket(daily, ZoneNames(feed), basket, trip);

    QVERIFY(ownsItsRows(basket));
    QCOMPARE(basket.rowCount(), 2);
    COMPARE_ROLES(basket, 0, "accepted=bool(false)", "description=QString(Large family)",
                  "destination=QString(Brenno Spa)", "fareProductId=int(21)",
                  "fareProductName=QString(Single)", "fromStopGroupId=int(31)", "id=int(0)",
                  "isDaily=bool(false)", "isReturnFee=bool(true)", "origin=QString(Ostra Market)",
                  "passengerTypeId=int(11)", "price=double(12.5)", "printed=bool(false)",
                  "shoppingItemIcon=QString(qrc:/icons/one.svg)", "toStopGroupId=int(32)");
    COMPARE_ROLES(basket, 1, "accepted=bool(false)", "description=QString(Adult)",
                  "destination=QString(33)", "fareProductId=int(22)",
                  "fareProductName=QString(Day)", "fromStopGroupId=int(0)", "id=int(1)",
                  "isDaily=bool(true)", "isReturnFee=bool(false)", "origin=QString()",
                  "passengerTypeId=int(12)", "price=double(3)", "printed=bool(false)",
                  "shoppingItemIcon=QString()", "toStopGroupId=int(33)");
    const auto* first = qobject_cast<ShoppingItem*>(basket.itemFromRow(0));
    QCOMPARE(first->routeId(), 1);
    QCOMPARE(first->fromStopId(), 2);
    QCOMPARE(first->toStopId(), 3);
    QCOMPARE(first->currentStopId(), 4);
    QCOMPARE(first->tripsRouteId(), 5);
    QCOMPARE(first->tripsExecutionId(), 6);
    QCOMPARE(first->publicRouteExecutionId(), "seven");
    QCOMPARE(qobject_cast<ShoppingItem*>(basket.itemFromRow(1))->currentStopId(), 44);
    QCOMPARE(tile.totalInBasket(), 2);
}

void FeedTicketsTest::ticketsOfADynamicTrip()
{
    TripContext trip;
    trip.setPublicRouteExecutionId("DynamicTrip");
    QObject owner; // of the prototype row
    ShoppingBasketModel basket(&owner);
    addTicket(PassengerTypeItem(), ZoneNames(Feed()), basket, trip);
    const auto* ticket = qobject_cast<ShoppingItem*>(basket.itemFromRow(0));
    QCOMPARE(ticket->publicRouteExecutionId(), "");
    QCOMPARE(ticket->routeId(), -1);
    QCOMPARE(trip.publicRouteExecutionId(), "DynamicTrip");
}

QTEST_GUILESS_MAIN(FeedTicketsTest)
#include "tst_feed_tickets.moc"
