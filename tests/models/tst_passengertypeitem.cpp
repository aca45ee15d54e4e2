#include "ItemBattery.h"
#include "PassengerTypeFields.h"

#include <QSignalSpy>
#include <QTest>

using rivo::models::ListItem;

namespace
{

/// The members of a tile.
struct Members : ListItem
{
    int id;
    QString description;
    QString code;
    QString icon;
    double price;
    int fareProductId;
    QString fareProductName;
    int totalInBasket;
    bool isReturnFee;
    int fromStopGroupId;
    int toStopGroupId;
    QString fareProductColor;
    bool hasExpired;
    double fareDiscount;
    bool selected;
    bool isDaily;
    int pos;
};

static_assert(std::is_default_constructible_v<PassengerTypeItem>);

ItemUnderTest passengerTypeItem()
{
    return itemUnderTest<PassengerTypeItem, Members>(
        passengerTypeItemClass(),
        {{257, "passengerTypeId"},
         {258, "description"},
         {259, "fareProductIcon"},
         {260, "price"},
         {261, "fareProductId"},
         {262, "fareProductName"},
         {263, "totalInBasket"},
         {264, "isReturnFee"},
         {265, "fromStopGroupId"},
         {266, "toStopGroupId"},
         {267, "fareProductColor"},
         {268, "hasExpired"},
         {269, "fareDiscount"},
         {270, "selected"},
         {271, "isDaily"},
         {272, "pos"}},
        PassengerTypeItemRolesHandling::PASSENGER_TYPE_ROLES_HASH_TABLE.hash,
        {"PassengerTypeItem::PassengerTypeItem(QObject*)",
         "PassengerTypeItem::PassengerTypeItem(int const&, QString const&, QString const&, "
         "QString const&, double const&, int const&, QString const&, int const&, bool const&, "
         "int const&, int const&, QString const&, bool const&, double const&, bool const&, int, "
         "QObject*)"});
}

} // namespace

class TestPassengerTypeItem : public ItemBattery
{
    Q_OBJECT

public:
    TestPassengerTypeItem() : ItemBattery(passengerTypeItem()) {}

private slots:
    void initialValuesOfAPrototype()
    {
        const PassengerTypeItem tile;
        compare(tile,
                {-1, "", "", "", 0.0, -1, "", 0, false, -1, -1, "", false, 0.0, false, false, -1});
    }

    // The setters that differ from the others, in plain values.

    void noiseInThePriceIsIgnored()
    {
        PassengerTypeItem tile;
        tile.setPrice(5.0);
        QSignalSpy changes(&tile, &ListItem::dataChanged);
        tile.setPrice(5.0 + 1e-13);
        QCOMPARE(changes.count(), 0);
        QVERIFY(sameValue(tile.data(260), 5.0));
        tile.setPrice(5.01);
        QCOMPARE(changes.count(), 1);

        PassengerTypeItem almostFree(-1, {}, {}, {}, 1e-13, -1, {}, 0, false, -1, -1, {}, false,
                                     0.0, false, -1, nullptr);
        QSignalSpy freeChanges(&almostFree, &ListItem::dataChanged);
        almostFree.setPrice(0.0);
        QCOMPARE(freeChanges.count(), 0);
        QVERIFY(sameValue(almostFree.data(260), 1e-13));
    }

    void noiseInTheDiscountIsAnnounced()
    {
        PassengerTypeItem tile;
        QSignalSpy changes(&tile, &ListItem::dataChanged);
        tile.setFareDiscount(1e-13);
        QCOMPARE(changes.count(), 1);
        tile.setFareDiscount(0.5);
        tile.setFareDiscount(0.5 + 1e-13);
        QCOMPARE(changes.count(), 3);
        QVERIFY(sameValue(tile.data(269), 0.5 + 1e-13));
        tile.setFareDiscount(0.5 + 1e-13);
        QCOMPARE(changes.count(), 3);
    }

    void theNameOfTheFareProductIsStoredSilently()
    {
        PassengerTypeItem tile;
        QSignalSpy changes(&tile, &ListItem::dataChanged);
        tile.setFareProductName("Single");
        QCOMPARE(tile.fareProductName(), "Single");
        QCOMPARE(tile.data(262), QVariant("Single"));
        QCOMPARE(changes.count(), 0);
    }
};

QTEST_GUILESS_MAIN(TestPassengerTypeItem)

#include "tst_passengertypeitem.moc"
