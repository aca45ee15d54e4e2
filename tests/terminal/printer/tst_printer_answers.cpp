#include <PrinterAnswers.h>

#include <QtTest>

using namespace rivo::printer;
using Kind = PrinterAnswer::Kind;

namespace
{

QString textOf(const QVector<PrinterAnswer>& answers)
{
    QStringList texts;
    for (const PrinterAnswer& answer : answers) {
        const QString byte = QString::number(answer.byte, 16);
        texts.append(answer.kind == Kind::Status      ? "status " + byte
                     : answer.kind == Kind::Sensor    ? "sensor " + byte
                     : answer.kind == Kind::ProcessId ? "id " + QString::fromLatin1(answer.id)
                     : answer.kind == Kind::Cleared   ? QString("cleared")
                                                      : "unknown " + byte);
    }
    return texts.join(", ");
}

QByteArray hex(const char* digits) { return QByteArray::fromHex(digits); }

/// A row of bytes and what they mean.
void row(const char* what, const char* bytes, const char* meaning)
{
    QTest::newRow(what) << hex(bytes) << QString(meaning);
}

} // namespace

class TestPrinterAnswers : public QObject
{
    Q_OBJECT

private slots:
    void answers_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("answers");
        row("nothing", "", "");
        row("states", "12 16 1a 72", "status 12, status 16, status 1a, status 72");
        row("sensors", "00 03 0c 6f", "sensor 0, sensor 3, sensor c, sensor 6f");
        row("the number of a job", "37 22 41 42 43 44 00", "id ABCD");
        row("the limits of letters", "37 22 20 7e 20 7e 00", "id  ~ ~");
        row("forgotten", "37 25 00", "cleared");
        row("one behind the other", "12 37 25 00 37 22 41 41 41 41 00 12",
            "status 12, cleared, id AAAA, status 12");
        row("bytes that are none", "ff 80 90 92 13",
            "unknown ff, unknown 80, unknown 90, "
            "unknown 92, unknown 13");
        row("a header of nothing", "37 40 12", "unknown 37, sensor 40, status 12");
        row("a number with a byte that is no letter", "37 22 41 12 41 41 00",
            "unknown 37, sensor 22, sensor 41, status 12, sensor 41, sensor 41, sensor 0");
        row("a number without its end", "37 22 41 41 41 41 12",
            "unknown 37, sensor 22, sensor 41, sensor 41, sensor 41, sensor 41, status 12");
        row("forgotten without its end", "37 25 12", "unknown 37, sensor 25, status 12");
        row("two headers", "37 37 25 00", "unknown 37, cleared");
        row("the beginning of an answer", "12 37 22 41", "status 12");
    }

    void answers()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, answers);
        AnswerReader whole;
        QCOMPARE(textOf(whole.read(bytes)), answers);
        AnswerReader divided;
        QVector<PrinterAnswer> found;
        for (const char byte : bytes)
            found += divided.read(QByteArray(1, byte));
        QCOMPARE(textOf(found), answers);
    }

    void beginningIsForgotten()
    {
        AnswerReader reader;
        QCOMPARE(reader.read(hex("37 22 41")).size(), 0);
        reader.reset();
        QCOMPARE(textOf(reader.read(hex("12"))), "status 12");
    }

    void states_data()
    {
        QTest::addColumn<QByteArray>("answers");
        QTest::addColumn<QString>("state");
        row("ready", "12 12 12 12", "");
        row("drawer is open", "16 12 12 12", "");
        row("off-line", "1a 12 12 12", "offline");
        row("cover", "1a 16 12 12", "offline cover");
        row("button", "1a 1a 12 12", "offline feeding");
        row("paper out, printing stops", "1a 32 12 12", "offline paper");
        row("paper out, sensor", "12 12 12 7e", "paper low");
        row("one bit of two", "12 12 12 32", "paper");
        row("little paper", "12 12 12 1e", "low");
        row("cutter", "1a 52 1a 12", "offline cutter error");
        row("defect", "1a 52 32 12", "offline defect error");
        row("hot", "1a 12 52 12", "offline passing");
    }

    void states()
    {
        QFETCH(QByteArray, answers);
        QFETCH(QString, state);
        std::array<uchar, 4> bytes = {};
        std::copy(answers.begin(), answers.end(), bytes.begin());
        const PrinterStatus status = statusOf(bytes);
        QStringList parts;
        for (const auto& [is, name] : {std::pair(status.isOffline, "offline"),
                                       {status.isCoverOpen, "cover"},
                                       {status.isFeeding, "feeding"},
                                       {status.isPaperOut, "paper"},
                                       {status.isPaperNearEnd, "low"},
                                       {status.hasCutterError, "cutter"},
                                       {status.hasUnrecoverableError, "defect"},
                                       {status.hasPassingError, "passing"},
                                       {status.hasOtherError, "error"}}) {
            if (is)
                parts.append(name);
        }
        QCOMPARE(parts.join(' '), state);
        QCOMPARE(status.canPrint(), state.isEmpty() || state == "low");
    }

    void requests()
    {
        QCOMPARE(statusRequests(), hex("100401 100402 100403 100404"));
        QCOMPARE(sensorRequest(), hex("1d7201"));
        QCOMPARE(processIdRequest("ABCD"), hex("1d284806003030 41424344"));
        QCOMPARE(clearRequest(), hex("10140801031401060208"));
        QCOMPARE(recoverRequest(), hex("100502"));
    }
};

QTEST_GUILESS_MAIN(TestPrinterAnswers)
#include "tst_printer_answers.moc"
