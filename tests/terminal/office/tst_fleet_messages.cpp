#include "Table.h"

#include <FleetMessages.h>
#include <QCborArray>
#include <QCborValue>
#include <QTest>

using namespace rivo::office;
using rivo::sales::SealedRecord;

namespace
{

const QByteArray key(32, 'k');

QCborArray recordOf(qint64 number)
{
    return {number, QByteArray("record;n\n"), QByteArray(32, 'h'), QByteArray(64, 's')};
}

QByteArray message(const QCborArray& items) { return QCborValue(items).toCbor(); }

QByteArray batchWith(const QCborArray& records) { return message({1, key, records}); }

} // namespace

/// What vehicles and the office send to each other.
class TestFleetMessages : public QObject
{
    Q_OBJECT

private slots:
    void batchComesBack()
    {
        const Batch sent{key,
                         {{7, "seven", QByteArray(32, '\0'), QByteArray(64, '7')},
                          {8, "eight;\n", QByteArray(32, '8'), QByteArray(64, '\xFF')}}};
        const auto read = batchOf(encode(sent));
        QVERIFY(read.has_value());
        QCOMPARE(read->publicKey, key);
        QCOMPARE(read->records.size(), 2);
        for (int at = 0; at < 2; ++at) {
            QCOMPARE(read->records.at(at).number, sent.records.at(at).number);
            QCOMPARE(read->records.at(at).content, sent.records.at(at).content);
            QCOMPARE(read->records.at(at).hash, sent.records.at(at).hash);
            QCOMPARE(read->records.at(at).signature, sent.records.at(at).signature);
        }
    }

    void batchIsRefused_data()
    {
        const Table<QByteArray, bool> row("bytes", "isBatch");
        QCborArray tooMany;
        for (int number = 0; number <= mostRecordsOfBatch; ++number)
            tooMany.append(recordOf(number));
        QCborArray shortHash = recordOf(1);
        shortHash[2] = QByteArray(31, 'h');
        QCborArray shortSignature = recordOf(1);
        shortSignature[3] = QByteArray(63, 's');
        QCborArray noContent = recordOf(1);
        noContent[1] = QByteArray();
        QCborArray textContent = recordOf(1);
        textContent[1] = "text";
        row("a question has no records", batchWith({}), true);
        row("records follow one another", batchWith({recordOf(4), recordOf(5)}), true);
        row("a record is left out", batchWith({recordOf(4), recordOf(6)}), false);
        row("a record comes twice", batchWith({recordOf(4), recordOf(4)}), false);
        row("a number is negative", batchWith({recordOf(-1)}), false);
        row("there are too many", batchWith(tooMany), false);
        row("a hash is too short", batchWith({shortHash}), false);
        row("a signature is too short", batchWith({shortSignature}), false);
        row("a record has no content", batchWith({noContent}), false);
        row("a content is text", batchWith({textContent}), false);
        row("a record is a number", batchWith({5}), false);
        row("no bytes", "", false);
        row("no CBOR", "\xFF\xFF", false);
        row("bytes follow", batchWith({}) + '\0', false);
        row("the end is cut off", batchWith({recordOf(4)}).chopped(1), false);
        row("another version", message({2, key, QCborArray()}), false);
        row("a key is too short", message({1, key.chopped(1), QCborArray()}), false);
        row("records are no list", message({1, key, 5}), false);
        row("an item more", message({1, key, QCborArray(), 5}), false);
        row("larger than a message may be", batchWith({}) + QByteArray(mostBytesOfMessage, '\0'),
            false);
        row("deeply nested", QByteArray(100000, '\x81'), false);
    }

    void batchIsRefused()
    {
        QFETCH(QByteArray, bytes);
        QTEST(batchOf(bytes).has_value(), "isBatch");
    }

    void acknowledgementComesBack()
    {
        const auto read = acknowledgementOf(encode(Acknowledgement{key, -1, "gap ü"}));
        QVERIFY(read.has_value());
        QCOMPARE(read->publicKey, key);
        QCOMPARE(read->number, -1);
        QCOMPARE(read->refusal, "gap ü");
    }

    void acknowledgementIsRefused_data()
    {
        const Table<QByteArray> row("bytes");
        row("no bytes", "");
        row("a batch", batchWith({}));
        row("the number is text", message({1, key, "7", ""}));
        row("the refusal is a number", message({1, key, 7, 7}));
    }

    void acknowledgementIsRefused()
    {
        QFETCH(QByteArray, bytes);
        QVERIFY(!acknowledgementOf(bytes).has_value());
    }

    void positionComesBack()
    {
        const PositionReport sent{QDateTime::fromSecsSinceEpoch(1790000000, Qt::UTC),
                                  43.5,
                                  -7.25,
                                  270.0,
                                  qQNaN(),
                                  "12-ü"};
        const auto read = positionOf(encode(sent));
        QVERIFY(read.has_value());
        QCOMPARE(read->at, sent.at);
        QCOMPARE(read->latitude, 43.5);
        QCOMPARE(read->longitude, -7.25);
        QCOMPARE(read->direction, 270.0);
        QVERIFY(qIsNaN(read->speed));
        QCOMPARE(read->trip, sent.trip);
    }

    void devicesComeBack()
    {
        QVector<DeviceReport> devices{{"Printer", 4, "no paper"}, {"", 0, ""}};
        const auto read = devicesOf(encode(devices));
        QVERIFY(read.has_value());
        QCOMPARE(*read, devices);
        QCOMPARE(devicesOf(encode(QVector<DeviceReport>()))->size(), 0);
        devices.fill({QString(300, 'n'), 1, QString(300, 't')}, 2 * mostDevices);
        const auto shortened = devicesOf(encode(devices));
        QVERIFY(shortened.has_value());
        QCOMPARE(shortened->size(), mostDevices);
        QCOMPARE(shortened->last().name.size(), 200);
        QCOMPARE(shortened->last().text.size(), 200);
    }

    void devicesAreRefused_data()
    {
        const Table<QCborArray, bool> row("items", "isDevices");
        const QCborArray printer{"Printer", 4, "no paper"};
        row("devices", {1, QCborArray{printer}}, true);
        row("another version", {2, QCborArray{printer}}, false);
        row("no array", {1, 5}, false);
        row("an item more", {1, QCborArray{printer}, 5}, false);
        row("a name that is none", {1, QCborArray{QCborArray{5, 4, "no paper"}}}, false);
        row("a level that is none", {1, QCborArray{QCborArray{"Printer", "bad", ""}}}, false);
        row("a level that is too low", {1, QCborArray{QCborArray{"Printer", -1, ""}}}, false);
        row("a level that is too high", {1, QCborArray{QCborArray{"Printer", 5, ""}}}, false);
        row("a level of another number",
            {1, QCborArray{QCborArray{"Printer", qint64(4294967296), ""}}}, false);
        row("no text", {1, QCborArray{QCborArray{"Printer", 4}}}, false);
        row("a text that is too long", {1, QCborArray{QCborArray{"Printer", 4, QString(201, 'x')}}},
            false);
        QCborArray many;
        for (int device = 0; device <= mostDevices; ++device)
            many.append(printer);
        row("too many devices", {1, many}, false);
    }

    void devicesAreRefused()
    {
        QFETCH(QCborArray, items);
        QTEST(devicesOf(QCborValue(items).toCbor()).has_value(), "isDevices");
    }

    void positionIsRefused_data()
    {
        const Table<QByteArray, bool> row("bytes", "isPosition");
        const QCborValue none(QCborValue::Null);
        row("without speed and direction", message({1, 5, 43.5, -7.0, none, none, ""}), true);
        row("whole numbers", message({1, 5, 43, -7, 0, 0, ""}), true);
        row("a direction that is none", message({1, 5, 43.5, -7.0, 361.0, none, ""}), true);
        row("beyond the pole", message({1, 5, 90.5, -7.0, none, none, ""}), false);
        row("beyond the date line", message({1, 5, 43.5, 180.5, none, none, ""}), false);
        row("no place", message({1, 5, none, none, none, none, ""}), false);
        row("not a number", message({1, 5, qQNaN(), -7.0, none, none, ""}), false);
        row("a time that is text", message({1, "5", 43.5, -7.0, none, none, ""}), false);
        row("before all times", message({1, -1, 43.5, -7.0, none, none, ""}), false);
        row("after all times", message({1, Q_INT64_C(1) << 62, 43.5, -7.0, none, none, ""}), false);
        row("a trip that is a number", message({1, 5, 43.5, -7.0, none, none, 7}), false);
        row("a trip that is long", message({1, 5, 43.5, -7.0, none, none, QString(201, 't')}),
            false);
        row("another version", message({2, 5, 43.5, -7.0, none, none, ""}), false);
        row("no bytes", "", false);
        row("a batch", batchWith({}), false);
    }

    void positionIsRefused()
    {
        QFETCH(QByteArray, bytes);
        QTEST(positionOf(bytes).has_value(), "isPosition");
    }

    void vehicleIsInTheTopic_data()
    {
        const Table<QString, QString> row("topic", "vehicle");
        row("records of a vehicle", "rivo/lakeside/4711/records", "4711");
        row("another root", "other/lakeside/4711/records", "");
        row("a part is missing", "rivo/lakeside/records", "");
        row("a part more", "rivo/lakeside/4711/records/1", "");
        row("a wildcard is no vehicle", "rivo/lakeside/+/records", "");
        row("an empty vehicle", "rivo/lakeside//records", "");
        row("a quote is no name", "rivo/lakeside/4'7/records", "");
        row("a name that is too long", "rivo/lakeside/" + QString(65, 'v') + "/records", "");
    }

    void vehicleIsInTheTopic()
    {
        QFETCH(QString, topic);
        QTEST(Topics::vehicleOf(topic), "vehicle");
    }

    void topicsAreThoseOfTheDocument()
    {
        const Topics topics{"lakeside", "4711"};
        QCOMPARE(topics.records(), "rivo/lakeside/4711/records");
        QCOMPARE(topics.acknowledged(), "rivo/lakeside/4711/acknowledged");
        QCOMPARE(topics.alive(), "rivo/lakeside/4711/alive");
        QCOMPARE(topics.position(), "rivo/lakeside/4711/position");
    }
};

QTEST_GUILESS_MAIN(TestFleetMessages)
#include "tst_fleet_messages.moc"
