#include "ModelRows.h"
#include "Table.h"

#include <QtTest>

class TestModelsValues : public QObject
{
    Q_OBJECT

private slots:
    void values_data();
    void values();
    void textIsCutAndPrintable();
};

void TestModelsValues::values_data()
{
    const Table<QString, QString, QJsonObject, QString, QJsonValue, QByteArray> row(
        "model", "section", "record", "role", "json", "csv");
    const QJsonValue null(QJsonValue::Null);
    const auto report = [&](const char* name, const QJsonObject& fields, const QString& role,
                            const QJsonValue& json, const QByteArray& csv) {
        QJsonObject record{{"id", 1}};
        for (auto field = fields.begin(); field != fields.end(); ++field)
            record.insert(field.key(), field.value());
        QTest::newRow(name) << "z-reports"
                            << "zReports" << record << role << json << csv;
    };
    report("date with an offset", {{"paymentDate", "2024-06-14T21:05:30+02:00"}}, "paymentDate",
           "2024-06-14T21:05:30+02:00", "2024-06-14T21:05:30+02:00");
    report("date in UTC", {{"paymentDate", "2024-06-14T21:05:30Z"}}, "paymentDate",
           "2024-06-14T21:05:30Z", "2024-06-14T21:05:30Z");
    report("date west of Greenwich", {{"paymentDate", "2024-01-01T00:00:00-09:30"}}, "paymentDate",
           "2024-01-01T00:00:00-09:30", "2024-01-01T00:00:00-09:30");
    report("date with milliseconds", {{"paymentDate", "2024-06-14T21:05:30.250+02:00"}},
           "paymentDate", "2024-06-14T21:05:30.250+02:00", "2024-06-14T21:05:30.250+02:00");
    report("no date", {}, "paymentDate", null, "");
    report("a double in its shortest form", {{"zSum", 0.1}}, "zSumData", 0.1, "0.1");
    report("a double with all its digits", {{"zSum", 0.30000000000000004}}, "zSumData",
           0.30000000000000004, "0.30000000000000004");
    report("a negative double", {{"zSum", -22.4}}, "zSumData", -22.4, "-22.4");
    report("a flag", {{"isClosed", true}}, "isClosedData", true, "true");
    report("a count that is not given", {}, "ticketCountData", -1, "-1");
    report("a text with quotes and commas", {{"fromTicketNumber", "a,\"b\""}}, "fromTicketData",
           "a,\"b\"", "\"a,\"\"b\"\"\"");

    const auto vehicle = [&](const char* name, const QJsonObject& position, const QJsonValue& json,
                             const QByteArray& csv) {
        QJsonObject record{{"id", 1}, {"registrationNumber", "R"}};
        for (auto field = position.begin(); field != position.end(); ++field)
            record.insert(field.key(), field.value());
        QTest::newRow(name) << "fleet"
                            << "vehicles" << record << "assetCoordinate" << json << csv;
    };
    vehicle("position with altitude", {{"latitude", 54.5}, {"longitude", -3.25}, {"altitude", -4}},
            QJsonObject{{"latitude", 54.5}, {"longitude", -3.25}, {"altitude", -4}},
            "54.5 -3.25 -4");
    vehicle("position without altitude", {{"latitude", 54.123456789}, {"longitude", 180}},
            QJsonObject{{"latitude", 54.123456789}, {"longitude", 180}, {"altitude", null}},
            "54.123456789 180");
    vehicle("position 0, 0", {{"latitude", 0}, {"longitude", 0}, {"altitude", 0}},
            QJsonObject{{"latitude", 0}, {"longitude", 0}, {"altitude", 0}}, "0 0 0");
    vehicle("no position", {}, null, "");

    row("the largest identity", "devices", "peripherals",
        QJsonObject{{"id", 1}, {"name", "P"}, {"identity", 4294967295.0}}, "identity",
        QJsonValue(4294967295.0), "4294967295");
}

void TestModelsValues::values()
{
    QFETCH(QString, model);
    QFETCH(QString, section);
    QFETCH(QJsonObject, record);
    QFETCH(QString, role);
    QFETCH(QJsonValue, json);
    QFETCH(QByteArray, csv);

    const ToolRunner runner(RIVO_MODELS);
    const QString feed = runner.writeFeed(feedOf(section, {record}));
    const QJsonArray rows = rowsOf(runner.run({model, feed, "--format", "json"}));
    QCOMPARE(rows.size(), 1);
    QVERIFY(rows.first().toObject().contains(role));
    QCOMPARE(rows.first().toObject().value(role), json);

    const QByteArrayList lines = runner.run({model, feed, "--format", "csv"}).output.split('\n');
    const int column = lines.value(0).trimmed().split(',').indexOf(role.toLatin1());
    QVERIFY(column >= 0);
    // Only the one text that is tried holds commas, and no text field before it does.
    const QByteArray fields = lines.value(1).chopped(1);
    QVERIFY2(fields.split(',').mid(column).join(',').startsWith(csv + ',') || //
                 fields.split(',').mid(column).join(',') == csv,
             fields);
}

void TestModelsValues::textIsCutAndPrintable()
{
    const ToolRunner runner(RIVO_MODELS);
    QJsonObject feed =
        feedOf("peripherals", {QJsonObject{{"id", 1},
                                           {"name", QString("a\x1b[31mb\nc\x7f\u202e")},
                                           {"stateStr", QString(50, 'x')}},
                               QJsonObject{{"id", 22}, {"name", "車検"}, {"stateStr", "ok"}}});
    feed.insert("name", QString("Line\x1b[0m\n"));
    const Outcome outcome = runner.run({"devices", runner.writeFeed(feed)});
    QCOMPARE(outcome.exitCode, 0);
    const QString text = QString::fromUtf8(outcome.output);
    const QStringList lines = text.split('\n');
    QCOMPARE(lines.value(0), "Line\\u001b[0m\\u000a: devices, 2 rows");
    QCOMPARE(lines.size(), 6); // with the empty text behind the last line
    QVERIFY2(lines.value(3).startsWith("   1 | a\\u001b[31mb\\u000ac\\u007f\\u202e | "),
             outcome.output);
    QVERIFY2(lines.value(3).endsWith(" | " + QString(35, 'x') + QChar(0x2026)), outcome.output);
    // Wide characters take two columns: the separators stay below one another.
    QVERIFY2(lines.value(4).startsWith("  22 | 車検" + QString(27, ' ') + " | "), outcome.output);
}

QTEST_GUILESS_MAIN(TestModelsValues)
#include "tst_models_values.moc"
