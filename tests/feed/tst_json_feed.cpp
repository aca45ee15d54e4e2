#include "FeedFiles.h"
#include "JsonDocuments.h"

#include "Feed.h"

#include <limits>

using namespace rivo::feed;

namespace
{

QString asText(const QString& text) { return text; }
QString asText(const QDateTime& time) { return time.toString(Qt::ISODateWithMs); }

template <typename Number>
QString asText(Number number)
{
    return QStringLiteral("%1").arg(number);
}

QString asText(const NetworkShapePoint& point)
{
    return asText(point.latitude) + QLatin1Char(' ') + asText(point.longitude);
}

template <typename Element>
QString asText(const QVector<Element>& list)
{
    QStringList texts;
    for (const Element& element : list)
        texts.append(asText(element));
    return texts.join(QLatin1Char(','));
}

QString asText(const QVariantList& values)
{
    QStringList texts;
    for (const QVariant& value : values)
        texts.append(QLatin1String(value.typeName()) + QLatin1Char(' ') + value.toString());
    return texts.join(QLatin1Char(','));
}

/// The fields of a record, one after the other.
template <typename... Fields>
QString joined(const Fields&... fields)
{
    return QStringList{asText(fields)...}.join(QLatin1Char('|'));
}

QString dump(const FeedProduct& p)
{
    return joined(p.passengerTypeId, p.description, p.passengerTypeCode, p.icon, p.price,
                  p.fareProductId, p.fareProductName, p.isReturnFee, p.fromStopGroupId,
                  p.toStopGroupId, p.fareProductColor, p.hasExpired, p.fareDiscount, p.isDaily,
                  p.pos);
}

QString dump(const FeedFareProduct& p)
{
    return joined(p.id, p.description, p.icon, p.price, p.discount, p.freeReturn, p.paperTicket,
                  p.passengerTypes, p.ticketMaterial, p.paymentMethod, p.paymentChannel);
}

QString dump(const FeedTripContext& t)
{
    return joined(t.routeId, t.fromStopId, t.toStopId, t.currentStopId, t.tripsRouteId,
                  t.tripsExecutionId, t.publicRouteExecutionId);
}

QString dump(const FeedVehicle& v)
{
    return joined(v.id, v.registrationNumber, v.internalNumber, v.drivingStatus, v.routeStatus,
                  v.routeId, v.routeName, v.latitude, v.longitude, v.altitude, v.updated, v.inView,
                  v.direction);
}

QString dump(const FeedPeripheral& p)
{
    return joined(p.id, p.name, p.identity, p.icon, p.warning, p.blueWarning, p.yellowWarning,
                  p.error, p.deviceState, p.stateStr);
}

QString dump(const FeedZReport& z)
{
    return joined(z.id, z.ticketCount, z.ticketSumAmnt, z.cardSellCount, z.cardSellAmnt,
                  z.parcelCount, z.parcelAmnt, z.fromTicketNumber, z.toTicketNumber, z.zSum,
                  z.zNumber, z.isClosed, z.commission, z.paymentDate, z.currentDebt,
                  z.maxAllowedDebt);
}

/// One line per record.
QStringList dump(const Network& network)
{
    QStringList lines;
    for (const NetworkZone& zone : network.zones)
        lines.append("zone " + joined(zone.number, zone.name));
    for (const NetworkStop& s : network.stops)
        lines.append("stop " + joined(s.id, s.code, s.name, s.latitude, s.longitude, s.areas));
    for (const NetworkRoute& r : network.routes)
        lines.append("route " + joined(r.id, r.shortName, r.longName, r.color, r.textColor));
    for (const NetworkTrip& t : network.trips)
        lines.append("trip " + joined(t.id, t.routeId, t.serviceId, t.headsign, t.shapeId));
    for (const NetworkStopTime& t : network.stopTimes)
        lines.append("time " + joined(t.tripId, t.stopId, t.sequence, t.arrival, t.departure));
    for (const NetworkShape& shape : network.shapes)
        lines.append("shape " + joined(shape.id, shape.points));
    return lines;
}

} // namespace

class JsonFeedTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_files = std::make_unique<FeedFiles>(); }
    void cleanup() { m_files.reset(); }

    void everyKeyReachesItsField();
    void whatIsLeftOutHasItsDefault();
    void numbersOfAnyKind();
    void supportedTypesDefaultToThoseOfTheProducts();
    void unknownTypesAreLoadedAndNoticed();
    void emptyFeedIsNoFeed();

private:
    std::unique_ptr<FeedFiles> m_files;
};

void JsonFeedTest::everyKeyReachesItsField()
{
    const FeedResult result = load(QStringLiteral(FEED_TEST_DATA "/json/everything.json"));
    REQUIRE_FEED(result);
    const Feed& feed = *result.feed;
    QCOMPARE(feed.name, QStringLiteral("Every Key Lines"));
    QCOMPARE(feed.currency, QStringLiteral("EUR"));
    QCOMPARE(feed.columns, 5);
    QCOMPARE(feed.taxPercent, 5.5);
    QCOMPARE(feed.supportedPassengerTypes, QStringList({"PT_ADULT", "PT_LFS"}));
    QCOMPARE(feed.products.size(), 1);
    const FeedProduct& restricted = feed.products.first();
    QCOMPARE(restricted.validZones, QVector<int>({32, 31}));
    QCOMPARE(restricted.validRoutes, QVector<int>({61}));
    QCOMPARE(restricted.validMedia, QVector<int>({0, 4}));
    QCOMPARE(restricted.validMinutes, 90);
    const FeedTime& time = restricted.validTimes.first();
    QCOMPARE(time.days, QVector<int>({1, 7}));
    QCOMPARE(QStringList({time.begin, time.end, time.firstDate, time.lastDate}).join(' '),
             QString("06:00:00 18:30:00 2024-05-31 2026-12-31"));
    QCOMPARE(dump(feed.products.first()),
             QStringLiteral("11|Adult|PT_ADULT|qrc:/icons/one.svg|12.5|21|Single|1|31|"
                            "32|#123456|1|7.25|1|41"));
    QCOMPARE(feed.fareProducts.size(), 1);
    QCOMPARE(dump(feed.fareProducts.first()),
             QStringLiteral("51|Day ticket|qrc:/icons/two.svg|8.75|1.5|1|1|"
                            "int 1,QString PT_LFS|int 2|QString cash|int 3,int 4"));
    QVERIFY(feed.trip.has_value());
    QCOMPARE(dump(*feed.trip), QStringLiteral("61|62|63|64|65|66|R-67"));
    QCOMPARE(feed.vehicles.size(), 1);
    QCOMPARE(dump(feed.vehicles.first()), QStringLiteral("71|EK 71|I71|driving|on time|72|A - B|"
                                                         "52.5|-13.25|34.5|1|1|271.5"));
    QCOMPARE(feed.peripherals.size(), 1);
    QCOMPARE(dump(feed.peripherals.first()),
             QStringLiteral("81|Printer|4294967295|qrc:/icons/three.svg|0|0|0|0|82|Ready"));
    QCOMPARE(feed.printerId, std::optional<int>(81));
    QCOMPARE(feed.zReports.size(), 1);
    QCOMPARE(dump(feed.zReports.first()),
             QStringLiteral("91|92|93.5|94|95.5|96|97.5|N1|N92|98.5|99.5|1|100.5|"
                            "2024-05-31T18:30:00.250+02:00|101.5|102.5"));
    QCOMPARE(dump(feed.network),
             QStringList({"zone 31|Harbour", "zone 32|Hills", "stop 62||Quay|52.5|-13.25|31,32",
                          "stop 63||Summit|nan|nan|", "route 61|6|Quay - Summit|#1a2B3c|#FFFFFF",
                          "trip 66|61|W|Summit|up", "time 66|62|0|86100|86190",
                          "time 66|63|1|87600|-1", "shape up|52.5 -13.25,52.75 -13.5"}));
    QVERIFY(result.notices.isEmpty());
}

void JsonFeedTest::whatIsLeftOutHasItsDefault()
{
    const FeedResult result = loadJson(
        document(product(), R"(, "fareProducts": [{"id": 1, "description": "D", "price": 2}],
            "vehicles": [{"id": 1, "registrationNumber": "R"}],
            "peripherals": [{"id": 1, "name": "N"}], "zReports": [{"id": 1}],
            "trip": {"routeId": 1, "fromStopId": 2, "toStopId": 3, "currentStopId": 4,
                     "tripsRouteId": 5, "tripsExecutionId": 6})"));
    REQUIRE_FEED(result);
    const Feed& feed = *result.feed;
    QCOMPARE(feed.name, QString());
    QCOMPARE(feed.columns, 0);
    QCOMPARE(feed.taxPercent, 0.0);
    QCOMPARE(feed.products.first().validMinutes, 0);
    QCOMPARE(dump(feed.products.first()), QStringLiteral("1|Adult|PT_ADULT||2.5|3|Single|0|4|"
                                                         "5||0|0|0|-1"));
    QCOMPARE(dump(feed.fareProducts.first()), QStringLiteral("1|D||2|0|0|0||||"));
    QCOMPARE(dump(*feed.trip), QStringLiteral("1|2|3|4|5|6|"));
    QCOMPARE(dump(feed.vehicles.first()), QStringLiteral("1|R||||-1||nan|nan|nan|0|0|0"));
    QCOMPARE(dump(feed.peripherals.first()), QStringLiteral("1|N|0||1|1|1|1|0|"));
    QVERIFY(!feed.printerId);
    QCOMPARE(dump(feed.zReports.first()), QStringLiteral("1|-1|0|-1|0|-1|0|||0|0|0|0||0|0"));
    QVERIFY(!loadJson(document({})).feed->trip.has_value());
    QVERIFY(dump(loadJson(document({})).feed->network).isEmpty());
    const FeedResult bare =
        loadJson(document({}, R"(, "network": {"zones": [], "stops": [{"id": 1, "name": "S"}],
            "routes": [{"id": 2}], "shapes": [{"id": "p", "points": []}],
            "trips": [{"id": 3, "routeId": 2, "stopTimes": [{"stopId": 1}]}]})"));
    REQUIRE_FEED(bare);
    QCOMPARE(dump(bare.feed->network),
             QStringList({"stop 1||S|nan|nan|", "route 2||||", "trip 3|2|||", "time 3|1|0|-1|-1",
                          "shape p|"}));
}

void JsonFeedTest::numbersOfAnyKind()
{
    const FeedResult result = loadJson(document(
        R"({"passengerTypeId": -2147483648, "description": "D", "passengerTypeCode": "C",
            "price": 0.1, "fareProductId": 2147483647, "fareProductName": "N",
            "fromStopGroupId": -0, "toStopGroupId": 1.2e1, "pos": -5})"));
    REQUIRE_FEED(result);
    const FeedProduct& product = result.feed->products.first();
    QCOMPARE(product.passengerTypeId, std::numeric_limits<int>::min());
    QCOMPARE(product.fareProductId, std::numeric_limits<int>::max());
    QCOMPARE(product.fromStopGroupId, 0);
    QCOMPARE(product.toStopGroupId, 12);
    QCOMPARE(product.pos, -5);
    QVERIFY(product.price == 0.1); // the nearest double, not merely a near one
}

void JsonFeedTest::supportedTypesDefaultToThoseOfTheProducts()
{
    const auto ofType = [](const QByteArray& type) { return product().replace("PT_ADULT", type); };
    const QByteArray products = QByteArrayList({ofType("PT_LFS"), ofType("PT_ADULT"), ofType("?"),
                                                ofType("PT_STUDENT_2"), ofType("PT_LFS")})
                                    .join(',');
    QCOMPARE(loadJson(document(products)).feed->supportedPassengerTypes,
             QStringList({"?", "PT_ADULT", "PT_LFS", "PT_STUDENT_2"}));
    QCOMPARE(loadJson(document(products, ", \"supportedPassengerTypes\": []"))
                 .feed->supportedPassengerTypes,
             QStringList());
    QCOMPARE(loadJson(document(products, R"(, "supportedPassengerTypes": ["Z", "PT_LFS", "Z"])"))
                 .feed->supportedPassengerTypes,
             QStringList({"Z", "PT_LFS", "Z"}));
}

void JsonFeedTest::unknownTypesAreLoadedAndNoticed()
{
    const QByteArray giant = product().replace("PT_ADULT", "PT_GIANT");
    const FeedResult result = loadJson(document(product() + ",\n" + giant + ",\n" + giant + ",\n" +
                                                product().replace("PT_ADULT", "pt_adult")));
    REQUIRE_FEED(result);
    QCOMPARE(result.feed->products.at(1).passengerTypeCode, QStringLiteral("PT_GIANT"));
    QCOMPARE(result.noticeLines(),
             QStringList({"feed.json: /products/1/passengerTypeCode: unknown passenger type "
                          "\"PT_GIANT\", taken as type 0",
                          "feed.json: /products/3/passengerTypeCode: unknown passenger type "
                          "\"pt_adult\", taken as type 0"}));
}

void JsonFeedTest::emptyFeedIsNoFeed()
{
    const FeedResult result = loadJson(document({}));
    REQUIRE_FEED(result);
    QVERIFY(result.feed->products.isEmpty());
    QVERIFY(result.feed->supportedPassengerTypes.isEmpty());
}

QTEST_GUILESS_MAIN(JsonFeedTest)
#include "tst_json_feed.moc"
