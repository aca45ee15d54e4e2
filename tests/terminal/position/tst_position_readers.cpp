#include "GpsdReader.h"
#include "LineSplitter.h"
#include "NmeaReader.h"

#include <QtTest>

using namespace rivo::position;

namespace
{

/// "latitude longitude speed direction time", "-" for what is unknown, "no fix", or "" for nothing.
QString text(const QVector<Report>& reports)
{
    const auto number = [](double value, int decimals) {
        return qIsNaN(value) ? QString("-") : QString::number(value, 'f', decimals);
    };
    QStringList texts;
    for (const Report& report : reports) {
        if (!report.fix) {
            texts.append("no fix");
            continue;
        }
        const Fix& fix = *report.fix;
        texts.append(
            QStringList{number(fix.coordinate.latitude(), 4), number(fix.coordinate.longitude(), 4),
                        number(fix.speed, 1), number(fix.direction, 1),
                        fix.time.isValid() ? fix.time.toString("yyyyMMdd-HHmmss.zzz") : "-"}
                .join(' '));
    }
    return texts.join(" | ");
}

QByteArray checked(const QByteArray& body)
{
    int sum = 0;
    for (const char byte : body)
        sum ^= static_cast<unsigned char>(byte);
    return '$' + body + '*' + QByteArray::number(sum, 16).rightJustified(2, '0').toUpper() + "\r\n";
}

const QByteArray rmc =
    checked("GPRMC,081530.00,A,4807.038,N,01131.000,E,022.4,084.4,220326,003.1,W");
const QByteArray gga = checked("GPGGA,081530.00,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,");

} // namespace

class PositionReadersTest : public QObject
{
    Q_OBJECT

private slots:
    void lines_data();
    void lines();
    void aLineOfPieces();
    void sentences_data();
    void sentences();
    void sentencesInPieces();
    void rmcIsPreferred();
    void gpsd_data();
    void gpsd();
    void request();
};

void PositionReadersTest::lines_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QList<QByteArray>>("lines");
    using Lines = QList<QByteArray>;
    QTest::newRow("nothing") << QByteArray() << Lines();
    QTest::newRow("a line that does not end") << QByteArray("abc") << Lines();
    QTest::newRow("ends of both kinds") << QByteArray("a\nb\r\nc\n") << Lines{"a", "b", "c"};
    QTest::newRow("empty lines") << QByteArray("\n\r\n\na\n\n") << Lines{"a"};
    QTest::newRow("as long as allowed") << QByteArray("12345678\nx\n") << Lines{"12345678", "x"};
    QTest::newRow("longer than allowed") << QByteArray("123456789\nx\n") << Lines{"x"};
    QTest::newRow("much longer than allowed") << QByteArray(100000, 'y') + "\nx\n" << Lines{"x"};
    QTest::newRow("zero bytes") << QByteArray("a\0b\n", 4) << Lines{QByteArray("a\0b", 3)};
}

void PositionReadersTest::lines()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QList<QByteArray>, lines);
    QCOMPARE(LineSplitter(8).split(bytes), lines);

    LineSplitter oneByOne(8);
    QList<QByteArray> pieces;
    for (const char byte : bytes)
        pieces += oneByOne.split(QByteArray(1, byte));
    QCOMPARE(pieces, lines);
}

void PositionReadersTest::aLineOfPieces()
{
    LineSplitter splitter(8);
    QVERIFY(splitter.split("ab").isEmpty());
    QCOMPARE(splitter.split("c\nx"), QList<QByteArray>{"abc"});
    splitter.clear();
    QCOMPARE(splitter.split("e\n"), QList<QByteArray>{"e"});
    QVERIFY(splitter.split("123456789").isEmpty());
    splitter.clear();
    QCOMPARE(splitter.split("f\n"), QList<QByteArray>{"f"});
}

void PositionReadersTest::sentences_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("reports");
    const QString position = "48.1173 11.5167";
    const QString moving = position + " 11.5 84.4 20260322-081530.000";
    QTest::newRow("RMC") << rmc << moving;
    QTest::newRow("RMC of several systems")
        << checked("GNRMC,081530.00,A,4807.038,N,01131.000,E,022.4,084.4,220326,003.1,W") << moving;
    QTest::newRow("south and west")
        << checked("GPRMC,081530.25,A,3352.128,S,15112.558,W,0.0,,220326,,")
        << "-33.8688 -151.2093 0.0 - 20260322-081530.250";
    QTest::newRow("RMC without a fix") << checked("GPRMC,081530,V,,,,,,,220326,,") << "no fix";
    QTest::newRow("RMC without a position") << checked("GPRMC,081530,A,,,,,,,220326,,") << "no fix";
    QTest::newRow("a position that does not exist")
        << checked("GPRMC,081530,A,9907.038,N,01131.000,E,022.4,084.4,220326,003.1,W") << "no fix";
    QTest::newRow("GGA has neither speed nor date") << gga << position + " - - -";
    QTest::newRow("GGA without a fix")
        << checked("GPGGA,081530,4807.038,N,01131.000,E,0,00,,,M,,M,,") << "no fix";
    QTest::newRow("GLL") << checked("GPGLL,4807.038,N,01131.000,E,081530,A") << position + " - - -";
    QTest::newRow("GLL without a fix")
        << checked("GPGLL,4807.038,N,01131.000,E,081530,V") << "no fix";
    QTest::newRow("satellites in view count as nothing")
        << checked("GPGSV,1,1,01,01,40,083,46") << "";
    QTest::newRow("a sentence without a checksum counts as nothing")
        << QByteArray("$GPRMC,081530,A,4807.038,N,01131.000,E,022.4,084.4,220326,003.1,W\r\n")
        << "";
    QTest::newRow("a wrong checksum counts as nothing")
        << QByteArray(rmc).replace("4807", "4817") << "";
    QTest::newRow("half a sentence counts as nothing") << rmc.left(40) + "\r\n"
                                                       << "";
    QTest::newRow("bytes of another speed count as nothing")
        << QByteArray("\xff\x00\x1c$GPRMC\xe0\xf8\n", 12) << "";
    QTest::newRow("after noise comes a sentence") << "\xff\xfe\x80\r\n" + rmc << moving;
    QTest::newRow("a line that does not end") << QByteArray(100000, '$') + "\n" + rmc << moving;
}

void PositionReadersTest::sentences()
{
    QFETCH(QByteArray, bytes);
    QTEST(text(NmeaReader().read(bytes)), "reports");
}

void PositionReadersTest::sentencesInPieces()
{
    NmeaReader reader;
    QVERIFY(reader.read(rmc.left(20)).isEmpty());
    QCOMPARE(reader.read(rmc.mid(20)).size(), 1);
    QVERIFY(reader.read(rmc.left(20)).isEmpty());
    reader.clear();
    QVERIFY(reader.read(rmc.mid(20)).isEmpty());
}

void PositionReadersTest::rmcIsPreferred()
{
    NmeaReader reader;
    QCOMPARE(reader.read(gga).size(), 1);
    QCOMPARE(reader.read(rmc + gga + gga).size(), 1);
    int others = 0;
    while (reader.read(gga).isEmpty())
        ++others;
    QCOMPARE(others, 17); // the twentieth in a row counts
    QCOMPARE(reader.read(gga).size(), 1);
    QCOMPARE(reader.read(rmc + gga).size(), 1);
}

void PositionReadersTest::gpsd_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("reports");
    const QByteArray tpv = R"({"class":"TPV","device":"/dev/pts/1","mode":3,)"
                           R"("time":"2026-03-22T08:15:30.000Z","lat":48.1173,"lon":11.5167,)"
                           R"("alt":545.4,"track":84.4,"speed":11.52})"
                           "\r\n";
    const QString position = "48.1173 11.5167";
    QTest::newRow("TPV") << tpv << position + " 11.5 84.4 20260322-081530.000";
    QTest::newRow("TPV without altitude, speed and time")
        << QByteArray(R"({"class":"TPV","mode":2,"lat":48.1173,"lon":11.5167})"
                      "\n")
        << position + " - - -";
    QTest::newRow("no fix") << QByteArray("{\"class\":\"TPV\",\"mode\":1}\n") << "no fix";
    QTest::newRow("mode unknown") << QByteArray("{\"class\":\"TPV\",\"lat\":48.1,\"lon\":11.5}\n")
                                  << "no fix";
    QTest::newRow("a fix without a position")
        << QByteArray("{\"class\":\"TPV\",\"mode\":3}\n") << "no fix";
    QTest::newRow("a position that does not exist")
        << QByteArray("{\"class\":\"TPV\",\"mode\":3,\"lat\":91,\"lon\":11.5}\n") << "no fix";
    QTest::newRow("a position that is a text")
        << QByteArray("{\"class\":\"TPV\",\"mode\":3,\"lat\":\"48\",\"lon\":11.5}\n") << "no fix";
    QTest::newRow("other answers count as nothing")
        << QByteArray("{\"class\":\"VERSION\",\"release\":\"3.22\"}\n{\"class\":\"SKY\"}\n") << "";
    QTest::newRow("lines that are no JSON count as nothing")
        << QByteArray("GPSD,O=?\n{\"class\":\n[1]\n\xff\xfe\nnull\n") << "";
    QTest::newRow("a line that is too long counts as nothing")
        << "{\"class\":\"TPV\",\"x\":\"" + QByteArray(20000, 'x') + "\"}\n" + tpv
        << position + " 11.5 84.4 20260322-081530.000";
    QTest::newRow("JSON that is nested deeply counts as nothing") << QByteArray(16000, '[') + "\n"
                                                                  << "";
}

void PositionReadersTest::gpsd()
{
    QFETCH(QByteArray, bytes);
    QTEST(text(GpsdReader().read(bytes)), "reports");
    GpsdReader reader;
    QVERIFY(reader.read(R"({"class":"TPV",)").isEmpty());
    reader.clear();
    QTEST(text(reader.read(bytes)), "reports");
}

void PositionReadersTest::request()
{
    QCOMPARE(GpsdReader::request(), QByteArray("?WATCH={\"enable\":true,\"json\":true}\n"));
}

QTEST_GUILESS_MAIN(PositionReadersTest)
#include "tst_position_readers.moc"
