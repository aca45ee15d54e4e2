#include "AssetFields.h"
#include "ItemBattery.h"

#include <QSignalSpy>
#include <QTest>

using rivo::models::ListItem;

namespace
{

/// The members of a vehicle.
struct Members : ListItem
{
    int id;
    QString registrationNumber;
    QString internalNumber;
    QString drivingStatus;
    QString routeStatus;
    int routeId;
    QString routeName;
    QGeoCoordinate assetCoordinate;
    bool updated;
    bool inView;
    double direction;
};

ItemUnderTest assetItem()
{
    return itemUnderTest<AssetItem, Members>(
        assetItemClass(),
        {{257, "id"},
         {258, "registrationNumber"},
         {259, "internalNumber"},
         {260, "drivingStatus"},
         {261, "routeStatus"},
         {262, "routeId"},
         {263, "routeName"},
         {264, "assetCoordinate"},
         {265, "inView"},
         {266, "direction"}},
        AssetItemRolesHandling::ASSETS_HASH_TABLE.hash,
        {"AssetItem::AssetItem(QObject*)",
         "AssetItem::AssetItem(int const&, QString const&, QString const&, QString const&, "
         "QString const&, int const&, QString const&, QGeoCoordinate const&, bool const&, "
         "bool const&, double const&, QObject*)"},
        false);
}

} // namespace

class TestAssetItem : public ItemBattery
{
    Q_OBJECT

public:
    TestAssetItem() : ItemBattery(assetItem()) {}

private slots:
    void initialValuesOfAPrototype()
    {
        compare(AssetItem(), {-1, "", "", "", "", -1, "", QVariant::fromValue(QGeoCoordinate()),
                              false, false, 0.0});
    }

    void anUnknownPlaceIsAnInvalidCoordinateInAValidValue()
    {
        const QVariant place = AssetItem().data(264);
        QVERIFY(place.isValid());
        QCOMPARE(place.typeName(), "QGeoCoordinate");
        QVERIFY(!place.value<QGeoCoordinate>().isValid());
    }

    void place_data()
    {
        QTest::addColumn<QGeoCoordinate>("value");
        QTest::addColumn<bool>("announced");
        QTest::newRow("the same place is silent") << QGeoCoordinate(52.25, 20.75, 80.0) << false;
        QTest::newRow("another latitude is announced") << QGeoCoordinate(52.5, 20.75, 80.0) << true;
        QTest::newRow("another longitude is announced")
            << QGeoCoordinate(52.25, 20.5, 80.0) << true;
        QTest::newRow("another altitude is announced")
            << QGeoCoordinate(52.25, 20.75, 81.0) << true;
        QTest::newRow("no altitude is announced") << QGeoCoordinate(52.25, 20.75) << true;
        QTest::newRow("no place is announced") << QGeoCoordinate() << true;
        QTest::newRow("noise in the latitude is silent")
            << QGeoCoordinate(52.25 + 1e-13, 20.75, 80.0) << false;
    }

    void place()
    {
        QFETCH(QGeoCoordinate, value);
        QFETCH(bool, announced);
        AssetItem vehicle;
        vehicle.setAssetCoordinate(QGeoCoordinate(52.25, 20.75, 80.0));
        QSignalSpy changes(&vehicle, &ListItem::dataChanged);
        vehicle.setAssetCoordinate(value);
        QCOMPARE(changes.count(), announced ? 1 : 0);
        // Bit by bit, since coordinates that differ by noise are equal: what is silent is not
        // stored.
        const QGeoCoordinate expected = announced ? value : QGeoCoordinate(52.25, 20.75, 80.0);
        const auto numbers = [](const QGeoCoordinate& place) {
            return QVariantList{place.latitude(), place.longitude(), place.altitude()};
        };
        for (const QGeoCoordinate& stored :
             {vehicle.assetCoordinate(), vehicle.data(264).value<QGeoCoordinate>()}) {
            for (int i = 0; i < 3; ++i)
                QVERIFY(sameValue(numbers(stored).at(i), numbers(expected).at(i)));
        }
    }

    void noiseInTheDirectionIsIgnored()
    {
        AssetItem vehicle;
        vehicle.setDirection(90.0 + 1e-11);
        QSignalSpy changes(&vehicle, &ListItem::dataChanged);
        vehicle.setDirection(90.0);
        QCOMPARE(changes.count(), 0);
        QVERIFY(sameValue(vehicle.data(266), 90.0 + 1e-11));
        vehicle.setDirection(91.0);
        QCOMPARE(changes.count(), 1);

        AssetItem northbound(1, {}, {}, {}, {}, 2, {}, {}, false, false, 1e-13, nullptr);
        QSignalSpy northboundChanges(&northbound, &ListItem::dataChanged);
        northbound.setDirection(0.0);
        QCOMPARE(northboundChanges.count(), 0);
        QVERIFY(sameValue(northbound.data(266), 1e-13));
    }

    void theDirectionIsNotNormalised()
    {
        AssetItem vehicle;
        for (double direction : {-90.0, 360.0, 720.5}) {
            vehicle.setDirection(direction);
            QVERIFY(sameValue(vehicle.data(266), direction));
        }
    }

    void theMarkOfTheApplicationIsStoredSilently()
    {
        AssetItem vehicle;
        QSignalSpy changes(&vehicle, &ListItem::dataChanged);
        vehicle.setUpdated(true);
        QVERIFY(vehicle.updated());
        vehicle.setUpdated(false);
        QVERIFY(!vehicle.updated());
        QCOMPARE(changes.count(), 0);
        QVERIFY(!vehicle.roleNames().values().contains("updated"));
    }
};

QTEST_GUILESS_MAIN(TestAssetItem)

#include "tst_assetitem.moc"
