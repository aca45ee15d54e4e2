#include "LiveMessage.h"
#include "Table.h"

#include "vehicle_positions.pb.h"

#include <QtTest>

using namespace rivo::live;

namespace
{

QByteArray stored(const QString& name)
{
    QFile file(QStringLiteral(LIVE_TEST_DATA "/") + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray bytesOf(const wire::FeedMessage& message)
{
    return QByteArray::fromStdString(message.SerializeAsString());
}

wire::FeedMessage messageOf(int vehicles)
{
    wire::FeedMessage message;
    message.mutable_header()->set_timestamp(1774166400);
    for (int i = 0; i < vehicles; ++i) {
        wire::FeedEntity* entity = message.add_entity();
        entity->set_id(std::to_string(i));
        entity->mutable_vehicle()->mutable_position()->set_latitude(1.0F);
        entity->mutable_vehicle()->mutable_position()->set_longitude(2.0F);
    }
    return message;
}

QString text(const LiveVehicle& vehicle)
{
    const QString direction =
        qIsNaN(vehicle.direction) ? QString("-") : QString::number(vehicle.direction);
    return QStringList{vehicle.id,
                       vehicle.label,
                       vehicle.plate,
                       vehicle.trip,
                       vehicle.route,
                       QString::number(vehicle.coordinate.latitude(), 'f', 4),
                       QString::number(vehicle.coordinate.longitude(), 'f', 4),
                       direction,
                       QString::number(vehicle.time),
                       vehicle.isStopped ? "stopped" : "moving"}
        .join('|');
}

} // namespace

class LiveMessageTest : public QObject
{
    Q_OBJECT

private slots:
    void messagesOfAnotherEncoder_data();
    void messagesOfAnotherEncoder();
    void problems_data();
    void problems();
    void everyPrefixIsHarmless();
    void limits();
    void times_data();
    void times();
};

void LiveMessageTest::messagesOfAnotherEncoder_data()
{
    const Table<QString, QStringList, int> row("file", "vehicles", "ignored");
    row("everything.pb", "everything.pb",
        {"4711|Bus 11|AB-CD 11|T1|R1|48.1173|11.5167|84.5|1774166390|stopped",
         "south-west|||||-33.8688|-70.2500|-|0|moving",
         QString::fromUtf8("Zürich 7|Großraumbus|||R2|47.2500|8.5000|0|0|moving")},
        0);
    row("empty.pb", "empty.pb", {}, 0);
    row("wrong.pb", "wrong.pb", {"good|||||1.0000|1.0000|-|0|moving"}, 6);
}

void LiveMessageTest::messagesOfAnotherEncoder()
{
    QFETCH(QString, file);
    const LiveResult result = readMessage(stored(file));
    QVERIFY2(result.message, qPrintable(result.problem));
    QCOMPARE(result.message->time, 1774166400);
    QStringList vehicles;
    for (const LiveVehicle& vehicle : result.message->vehicles)
        vehicles.append(text(vehicle));
    QTEST(vehicles, "vehicles");
    QTEST(result.message->ignored, "ignored");
}

void LiveMessageTest::problems_data()
{
    const Table<QByteArray, QString> row("bytes", "problem");
    const QString other = "no message of GTFS-Realtime";
    row("nothing", {}, other);
    row("a page", "<!DOCTYPE html><html><body>Login</body></html>", other);
    row("JSON", "{\"header\":{}}", other);
    row("no header", bytesOf([] {
            auto made = messageOf(1);
            made.clear_header();
            return made;
        }()),
        other);
    row("cut", stored("everything.pb").left(200), other);
    row("a length beyond the end", QByteArray("\x0a\xff\xff\xff\xff\x07", 6), other);
    row("changes only", stored("changes.pb"), "a message with changes only");
}

void LiveMessageTest::problems()
{
    QFETCH(QByteArray, bytes);
    const LiveResult result = readMessage(bytes);
    QVERIFY(!result.message);
    QTEST(result.problem, "problem");
}

void LiveMessageTest::everyPrefixIsHarmless()
{
    const QByteArray whole = stored("everything.pb");
    QVERIFY(whole.size() > 200);
    int read = 0;
    for (int size = 0; size < whole.size(); ++size)
        read += readMessage(whole.left(size)).message ? 1 : 0;
    QVERIFY(read > 0); // between two entities
    QVERIFY(read < 10);
    for (int at = 0; at < whole.size(); ++at) {
        for (const char byte : {'\x00', '\x7f', '\xff'}) {
            QByteArray damaged = whole;
            damaged[at] = byte;
            const LiveResult result = readMessage(damaged);
            QCOMPARE(result.message.has_value(), result.problem.isEmpty());
        }
    }
}

void LiveMessageTest::limits()
{
    wire::FeedMessage many = messageOf(mostVehicles + 5);
    LiveResult result = readMessage(bytesOf(many));
    QCOMPARE(result.message->vehicles.size(), mostVehicles);
    QCOMPARE(result.message->ignored, 5);

    wire::FeedMessage texts = messageOf(1);
    auto* vehicle = texts.mutable_entity(0)->mutable_vehicle();
    vehicle->mutable_vehicle()->set_label(std::string(100000, 'x'));
    vehicle->mutable_vehicle()->set_license_plate("\xff\xfe bad \xc3");
    result = readMessage(bytesOf(texts));
    QCOMPARE(result.message->vehicles.first().label, QString(longestText, 'x'));
    QVERIFY(result.message->vehicles.first().plate.contains("bad"));
}

void LiveMessageTest::times_data()
{
    const Table<quint64, qint64> row("given", "time");
    row("a time", quint64(1774166400), qint64(1774166400));
    row("no time", quint64(0), qint64(0));
    row("far in the future", quint64(9000000000000), qint64(9000000000000));
    row("no time at all", quint64(0xffffffffffffffff), qint64(0));
}

void LiveMessageTest::times()
{
    QFETCH(quint64, given);
    wire::FeedMessage message = messageOf(1);
    message.mutable_header()->set_timestamp(given);
    message.mutable_entity(0)->mutable_vehicle()->set_timestamp(given);
    const LiveResult result = readMessage(bytesOf(message));
    QTEST(result.message->time, "time");
    QTEST(result.message->vehicles.first().time, "time");
}

QTEST_GUILESS_MAIN(LiveMessageTest)
#include "tst_live_message.moc"
