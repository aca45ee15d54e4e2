#include "ItemBattery.h"
#include "ShoppingFields.h"

#include <QSignalSpy>
#include <QTest>

#include <cmath>
#include <limits>

using rivo::models::ListItem;

namespace
{

/// The members of a ticket.
struct Members : ListItem
{
    int id;
    int passengerTypeId;
    int fareProductId;
    int fromStopGroupId;
    int toStopGroupId;
    QString description;
    QString fareProductName;
    QString icon;
    double price;
    QString origin;
    QString destination;
    bool isReturnFee;
    bool isDaily;
    bool accepted;
    bool printed;
    int routeId;
    int fromStopId;
    int toStopId;
    int currentStopId;
    int tripsRouteId;
    int tripsExecutionId;
    int payMethod;
    int ticketMaterialId;
    int pasengerType;
    int payChannel;
    QString publicRouteExecutionId;
};

/// A property as it appears in the meta-object: without a notify signal.
QString property(const char* typeAndName)
{
    return QString("%1: readable writable designable scriptable stored").arg(typeAndName);
}

ItemUnderTest shoppingItem()
{
    return itemUnderTest<ShoppingItem, Members>(
        shoppingItemClass(),
        {{257, "id"},
         {258, "passengerTypeId"},
         {259, "fareProductId"},
         {260, "fromStopGroupId"},
         {261, "toStopGroupId"},
         {262, "description"},
         {263, "fareProductName"},
         {264, "shoppingItemIcon"},
         {265, "price"},
         {266, "accepted"},
         {267, "printed"},
         {268, "origin"},
         {269, "destination"},
         {270, "isReturnFee"},
         {271, "isDaily"}},
        ShoppingItemRolesHandling::SHOPPING_ITEM_ROLES_HASH_TABLE.hash,
        {"ShoppingItem::ShoppingItem(QObject*)",
         "ShoppingItem::ShoppingItem(int const&, int const&, int const&, int const&, int const&, "
         "QString const&, QString const&, QString const&, double const&, QString const&, "
         "QString const&, bool const&, bool const&, QObject*)"},
        true,
        {property("int routeId"), property("int fromStopId"), property("int toStopId"),
         property("int currentStopId"), property("int tripsRouteId"),
         property("int tripsExecutionId"), property("QString publicRouteExecutionId"),
         property("int payMethod"), property("int ticketMaterialId"), property("int pasengerType"),
         property("int payChannel"), property("bool isReturnFee")});
}

} // namespace

class TestShoppingItem : public ItemBattery
{
    Q_OBJECT

public:
    TestShoppingItem() : ItemBattery(shoppingItem()) {}

private slots:
    void initialValuesOfAPrototype()
    {
        const ShoppingItem ticket;
        compare(ticket, {-1,    -1,    -1,      -1, -1, "", "", "", 0.0, "", "", false, false,
                         false, false, -999999, -1, -1, -1, -1, -1, -1,  -1, -1, -1,    ""});
    }

    void aTicketOfTheSaleIsNeitherAcceptedNorPrintedAndHasNoTrip()
    {
        const ShoppingItem ticket(3, 1, 12, 10, 20, "Student", "Day", "qrc:/icons/student.svg",
                                  2.75, "Harbour", "Castle", true, true, nullptr);
        compare(ticket,
                {3,    1,         12,       10,   20,   "Student", "Day", "qrc:/icons/student.svg",
                 2.75, "Harbour", "Castle", true, true, false,     false, -999999,
                 -1,   -1,        -1,       -1,   -1,   -1,        -1,    -1,
                 -1,   ""});
    }

    void thePriceIsComparedExactly()
    {
        ShoppingItem ticket;
        ticket.setPrice(1.0);
        QSignalSpy changes(&ticket, &ListItem::dataChanged);
        ticket.setPrice(1.0);
        QCOMPARE(changes.count(), 0);
        ticket.setPrice(1.0 + 1e-15);
        QCOMPARE(changes.count(), 1);
        QVERIFY(sameValue(ticket.data(265), 1.0 + 1e-15));
        ticket.setPrice(std::nextafter(1.0 + 1e-15, 2.0));
        QCOMPARE(changes.count(), 2);
        ticket.setPrice(0.0);
        ticket.setPrice(std::numeric_limits<double>::denorm_min());
        QCOMPARE(changes.count(), 4);
    }

    void aPriceThatIsNoNumberIsAlwaysANewOne()
    {
        const double notANumber = std::numeric_limits<double>::quiet_NaN();
        const double infinity = std::numeric_limits<double>::infinity();
        ShoppingItem ticket;
        QSignalSpy changes(&ticket, &ListItem::dataChanged);
        ticket.setPrice(notANumber);
        ticket.setPrice(notANumber);
        QCOMPARE(changes.count(), 2);
        ticket.setPrice(infinity);
        ticket.setPrice(infinity);
        QCOMPARE(changes.count(), 3);
        ticket.setPrice(-infinity);
        QCOMPARE(changes.count(), 4);
    }

    void silentProperty_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QVariant>("value");
        for (const char* name : {"routeId", "currentStopId", "tripsRouteId", "tripsExecutionId",
                                 "payMethod", "ticketMaterialId", "pasengerType", "payChannel"})
            QTest::addRow("%s", name) << QByteArray(name) << QVariant(7);
        QTest::newRow("publicRouteExecutionId")
            << QByteArray("publicRouteExecutionId") << QVariant("2024-05-01/1");
    }

    void silentProperty()
    {
        QFETCH(QByteArray, name);
        QFETCH(QVariant, value);
        ShoppingItem ticket;
        QSignalSpy changes(&ticket, &ListItem::dataChanged);
        QVERIFY(ticket.setProperty(name.constData(), value));
        QVERIFY(sameValue(ticket.property(name.constData()), value));
        QVERIFY(sameValue(field(name.constData()).get(ticket), value));
        QCOMPARE(changes.count(), 0);
    }

    void announcedProperty_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QVariant>("value");
        QTest::newRow("fromStopId") << QByteArray("fromStopId") << QVariant(7);
        QTest::newRow("toStopId") << QByteArray("toStopId") << QVariant(7);
        QTest::newRow("isReturnFee") << QByteArray("isReturnFee") << QVariant(true);
    }

    void announcedProperty()
    {
        QFETCH(QByteArray, name);
        QFETCH(QVariant, value);
        ShoppingItem ticket;
        QSignalSpy changes(&ticket, &ListItem::dataChanged);
        QVERIFY(ticket.setProperty(name.constData(), value));
        QVERIFY(sameValue(ticket.property(name.constData()), value));
        QVERIFY(sameValue(field(name.constData()).get(ticket), value));
        QCOMPARE(changes.count(), 1);
        QVERIFY(ticket.setProperty(name.constData(), value));
        QCOMPARE(changes.count(), 1);
    }
};

QTEST_GUILESS_MAIN(TestShoppingItem)

#include "tst_shoppingitem.moc"
