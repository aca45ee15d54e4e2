#include <Config.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace rivo::config;

namespace
{

QString textOf(const std::optional<SerialLine>& line)
{
    return line ? QStringLiteral("%1 %2 %3 %4")
                      .arg(line->port)
                      .arg(line->baud)
                      .arg(line->parity, line->flowControl)
                : QStringLiteral("-");
}

QString textOf(const Config& config)
{
    const PrinterConfig& printer = config.printer;
    const CardTerminalConfig& card = config.cardTerminal;
    const PositionConfig& position = config.position;
    const VehiclesConfig& vehicles = config.vehicles;
    const OfficeConfig& office = config.office;
    QStringList parts{config.vehicle, config.sounds ? "on" : "off", printer.type, printer.device,
                      textOf(printer.serial)};
    if (printer.tcp)
        parts.append(QStringLiteral("%1 %2").arg(printer.tcp->host).arg(printer.tcp->port));
    parts.append({printer.codePage, printer.confirmation});
    for (const int number :
         {printer.codePageNumber, printer.columns, printer.dotsPerLine, int(printer.openDrawer),
          int(printer.cut), int(printer.nativeCode), printer.timeout, card.port, card.timeout,
          position.port, vehicles.interval, office.port, office.keepDays})
        parts.append(QString::number(number));
    parts.append({printer.logo,
                  card.type,
                  card.host,
                  card.password,
                  position.type,
                  position.device,
                  textOf(position.serial),
                  position.host,
                  vehicles.type,
                  vehicles.url,
                  vehicles.file,
                  vehicles.caFile,
                  vehicles.certificate,
                  vehicles.key,
                  office.type,
                  office.host,
                  office.operatorName,
                  office.vehicle,
                  office.caFile,
                  office.certificate,
                  office.key,
                  office.publisher,
                  office.store});
    return parts.join('|');
}

const QByteArray head = R"("format": "rivo-terminal", "version": 1)";

} // namespace

class TestConfig : public QObject
{
    Q_OBJECT

private slots:
    void withoutKeysThereAreNoDevices()
    {
        const ConfigResult result = readConfig(written('{' + head + '}'));
        QCOMPARE(result.problems, QStringList());
        QCOMPARE(textOf(*result.config), textOf(Config()));
        QVERIFY(!result.config->printer.isThere());
        QVERIFY(!result.config->cardTerminal.isThere());
        QVERIFY(!result.config->position.isThere());
        QVERIFY(!result.config->vehicles.isThere());
        QVERIFY(!result.config->office.isThere());
    }

    void everyKeyIsRead()
    {
        const ConfigResult result = readConfig(CONFIG_TEST_DATA "/everything.json");
        QCOMPARE(result.problems, QStringList());
        QCOMPARE(
            textOf(*result.config),
            QStringLiteral(
                "4711|off|none|/dev/usb/lp0|/dev/ttyS0 38400 even hardware|printer.local 9100|"
                "PC858|sensor|13|48|576|1|0|0|3000|22000|60000|2948|30|1883|400|logo.png|zvt|192.0."
                "2.7|"
                "123456|none|/dev/gps0|/dev/ttyUSB1 4800 odd software|gpsd.local|none|"
                "https://example.org/vehicles.pb|vehicles.pb|ca.pem|terminal.pem|terminal.key|"
                "mqtt|broker.example.org|lakeside|4711|fleet.pem|4711.pem|4711.key|publisher.pem|"
                "/var/lib/publications"));
        QVERIFY(result.config->cardTerminal.isThere());
    }

    void problemsHaveLineAndPlace_data()
    {
        QTest::addColumn<QByteArray>("section");
        QTest::addColumn<QString>("problem");
        const auto row = [](const char* what, const char* section, const char* problem) {
            QTest::newRow(what) << QByteArray(section) << QString(problem);
        };
        row("unknown printer", R"("printer": {"type": "laser"})",
            R"(2: /printer/type: "laser", expected "none" or "escpos")");
        row("no type", R"("printer": {"device": "a"})",
            R"(2: /printer/type: missing, expected "none" or "escpos")");
        row("no connection", R"("printer": {"type": "escpos"})",
            "2: /printer: none, expected one of device, serial, tcp");
        row("two connections",
            R"("printer": {"type": "escpos", "device": "a", "serial": {"port": "b"}})",
            "2: /printer: 2 connections, expected one of device, serial, tcp");
        row("dots", R"("printer": {"type": "none", "dotsPerLine": 385})",
            "2: /printer/dotsPerLine: 385, expected a multiple of 8");
        row("code page", R"("printer": {"type": "none", "codePage": "437"})",
            R"(2: /printer/codePage: "437", expected a code page such as "PC858")");
        row("no host", R"("cardTerminal": {"type": "zvt"})",
            "2: /cardTerminal/host: missing, expected a host");
        row("unknown key", R"("vehicel": "1")",
            "2: /vehicel: unknown key, expected one of format, version, vehicle, sounds, "
            "printer, cardTerminal, position, vehicles, office");
        row("gpsd without a host", R"("position": {"type": "gpsd", "host": ""})",
            "2: /position/host: empty, expected a host");
        row("certificate without a key",
            R"("vehicles": {"type": "none", "certificate": "terminal.pem"})",
            "2: /vehicles: one, expected certificate and key, or none");
        row("office without a name of the vehicle",
            R"("office": {"type": "mqtt", "host": "a", "operator": "b"})",
            "2: /office/vehicle: missing, expected a name");
        row("office with a name that is no part of a topic",
            R"("office": {"type": "mqtt", "host": "a", "operator": "b", "vehicle": "47/11"})",
            R"(2: /office/vehicle: "47/11", expected 1 to 64 letters, digits, ".", "_" or "-")");
        row("office with a certificate that has no key",
            R"("office": {"type": "mqtt", "host": "a", "operator": "b", "vehicle": "c",)"
            R"( "caFile": "ca.pem", "certificate": "terminal.pem"})",
            "2: /office: one, expected certificate and key, or none");
        row("office with a key, but not whom to trust",
            R"("office": {"type": "mqtt", "host": "a", "operator": "b", "vehicle": "c",)"
            R"( "certificate": "terminal.pem", "key": "terminal.key"})",
            "2: /office/caFile: missing, expected a file");
        row("office that keeps too few days", R"("office": {"type": "none", "keepDays": 6})",
            "2: /office/keepDays: 6, expected an integer from 7 to 3650");
        row("key given twice", R"("vehicle": "1", "vehicle": "2")",
            "2: /vehicle: given twice, expected each key of an object once");
    }

    void problemsHaveLineAndPlace()
    {
        QFETCH(QByteArray, section);
        QFETCH(QString, problem);
        const QString file = written('{' + head + ",\n" + section + "\n}");
        const ConfigResult result = readConfig(file);
        QVERIFY(!result.config);
        QCOMPARE(result.problems, QStringList(file + ':' + problem));
    }

    void everyProblemIsReported()
    {
        const ConfigResult result = readConfig(written("{\n\"format\": \"x\",\n\"version\": 2}"));
        QCOMPARE(result.problems.size(), 2);
    }

    void moreProblemsThanAreKeptAreCounted()
    {
        QByteArray text = '{' + head;
        for (int i = 0; i < 1003; ++i)
            text += ",\n\"k" + QByteArray::number(i) + "\": 1";
        const ConfigResult result = readConfig(written(text + '}'));
        QCOMPARE(result.problems.size(), 1001);
        QCOMPARE(result.problems.last(), "... and 3 further problems");
    }

    void fileThatIsNotThere()
    {
        const QString file = m_folder.filePath("none.conf");
        QVERIFY(!readConfig(file).config);
        QCOMPARE(readConfig(file).problems.size(), 1);
        const ConfigResult result = readConfigIfThere(file);
        QCOMPARE(result.problems, QStringList());
        QCOMPARE(textOf(*result.config), textOf(Config()));
        QVERIFY(readConfigIfThere(m_folder.filePath("no-folder/none.conf")).config);
    }

    void fileThatIsThereIsRead() { QVERIFY(!readConfigIfThere(written("{}")).config); }

    void whatCannotBeReadIsNoMissingFile_data()
    {
        QTest::addColumn<QString>("kind");
        for (const char* kind : {"folder", "link to nothing", "file as a folder", "too large"})
            QTest::newRow(kind) << kind;
    }

    void whatCannotBeReadIsNoMissingFile()
    {
        QFETCH(QString, kind);
        QString file = m_folder.filePath("unreadable");
        QFile::remove(file);
        QDir().rmdir(file);
        if (kind == "folder")
            QVERIFY(QDir().mkpath(file));
        else if (kind == "link to nothing")
            QVERIFY(QFile::link(m_folder.filePath("none.conf"), file));
        else if (kind == "file as a folder")
            file = written("{}") + "/terminal.conf";
        else
            file = written(QByteArray(1024 * 1024 + 1, ' '));
        const ConfigResult result = readConfigIfThere(file);
        QVERIFY(!result.config);
        QCOMPARE(result.problems.size(), 1);
        QVERIFY2(result.problems.first().startsWith(file + ": "),
                 qPrintable(result.problems.first()));
    }

    void defaultFileIsTheOperators()
    {
        QCOMPARE(defaultFile(), "/etc/rivo-terminal/terminal.conf");
    }

private:
    QString written(const QByteArray& content) const
    {
        QFile target(m_folder.filePath("terminal.conf"));
        if (!target.open(QIODevice::WriteOnly) || target.write(content) != content.size())
            qFatal("cannot write");
        return target.fileName();
    }

    QTemporaryDir m_folder;
};

QTEST_GUILESS_MAIN(TestConfig)
#include "tst_config.moc"
