#include <Zvt_p.h>

#include <QTest>

using namespace rivo::payment;

namespace
{

QByteArray hex(const char* text) { return QByteArray::fromHex(text); }

} // namespace

/// The messages of the card terminal's protocol: what is made, and what is read.
class TestZvtMessages : public QObject
{
    Q_OBJECT

private slots:
    void messagesAreMade_data()
    {
        QTest::addColumn<int>("command");
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<QByteArray>("head");

        QTest::newRow("without data") << int(zvt::Accepted) << QByteArray() << hex("800000");
        QTest::newRow("with data") << int(zvt::Authorisation) << hex("0102") << hex("060102");
        QTest::newRow("254 bytes have a short length")
            << 0x06d1 << QByteArray(254, 'a') << hex("06d1fe");
        QTest::newRow("255 bytes have a long length, low byte first")
            << 0x06d1 << QByteArray(255, 'a') << hex("06d1ffff00");
        QTest::newRow("256 bytes") << 0x06d1 << QByteArray(256, 'a') << hex("06d1ff0001");
        QTest::newRow("the longest") << 0x06d1 << QByteArray(65535, 'a') << hex("06d1ffffff");
    }
    void messagesAreMade()
    {
        QFETCH(int, command);
        QFETCH(QByteArray, data);
        QFETCH(QByteArray, head);
        QByteArray bytes = zvt::encoded({quint16(command), data});
        QCOMPARE(bytes, head + data);

        // It is read again, also in two parts cut anywhere, and what follows stays.
        const QByteArray next = hex("80");
        const int cuts = qMin(bytes.size(), 8);
        for (int cut = 0; cut < cuts; ++cut) {
            QByteArray received = bytes.left(cut);
            QVERIFY(!zvt::takeMessage(received));
            QCOMPARE(received, bytes.left(cut));
            received += bytes.mid(cut) + next;
            const auto message = zvt::takeMessage(received);
            QVERIFY(message);
            QCOMPARE(int(message->command), command);
            QCOMPARE(message->data, data);
            QCOMPARE(received, next);
        }
    }

    void aMessageThatIsTooLongIsNotMade()
    {
        QCOMPARE(zvt::encoded({0x06d1, QByteArray(65536, 'a')}), QByteArray());
    }

    void refusalsAreKnown()
    {
        const zvt::Message refusal{0x849c, {}};
        QVERIFY(refusal.isRefusal());
        QCOMPARE(int(refusal.refusal()), 0x9c);
        const zvt::Message acceptance{zvt::Accepted, {}};
        QVERIFY(!acceptance.isRefusal());
    }

    void numbersAreDecimalDigits()
    {
        QCOMPARE(zvt::digits(1250, 6), hex("000000001250"));
        QCOMPARE(zvt::digits(999999999999, 6), hex("999999999999"));
        QCOMPARE(zvt::digits(978, 2), hex("0978"));
        QCOMPARE(zvt::numberOf(hex("000000001250")), std::make_optional<qint64>(1250));
        QCOMPARE(zvt::numberOf(hex("")), std::make_optional<qint64>(0));
        QVERIFY(!zvt::numberOf(hex("00a0")));
        QVERIFY(!zvt::numberOf(hex("0f")));
        QVERIFY(!zvt::numberOf(hex("000000000000000001")));
    }

    void fieldsAreRead()
    {
        const auto fields = zvt::fieldsOf(hex("27000400000000125049097887004222f4123456788bf2f1f3")
                                              .replace(hex("22f4"), hex("22f0f4"))
                                              .replace(hex("8bf2f1f3"), hex("8bf0f24100")) +
                                          hex("3cf0f0f24142") + hex("068104") + hex("1f120102"));
        QVERIFY(fields);
        QCOMPARE(fields->value(zvt::ResultCode), hex("00"));
        QCOMPARE(fields->value(zvt::Amount), hex("000000001250"));
        QCOMPARE(fields->value(zvt::CurrencyCode), hex("0978"));
        QCOMPARE(fields->value(zvt::ReceiptNumber), hex("0042"));
        QCOMPARE(fields->value(zvt::CardNumber), hex("12345678"));
        QCOMPARE(fields->value(zvt::CardName), hex("4100"));
        QCOMPARE(fields->value(0x3c), QByteArray("AB"));
        QCOMPARE(fields->value(zvt::Container), hex("1f120102"));
        QCOMPARE(fields->size(), 8);
        QVERIFY(zvt::fieldsOf({}));
    }

    void wrongFieldsAreNotRead_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::newRow("a field that is not known") << hex("7700");
        QTest::newRow("a field that is cut off") << hex("040000000012");
        QTest::newRow("a field without its value") << hex("27");
        QTest::newRow("a field that is there twice") << hex("27002700");
        QTest::newRow("a length that is cut off") << hex("22f0");
        QTest::newRow("a length that is no number") << hex("22f0fa12");
        QTest::newRow("a length without its mark") << hex("22040412");
        QTest::newRow("a length beyond the end") << hex("22f9f912");
        QTest::newRow("a long length beyond the end") << hex("3cf9f9f912");
        QTest::newRow("a container beyond the end") << hex("060512");
        QTest::newRow("a container without a length") << hex("06");
        QTest::newRow("a container with a length of three bytes") << hex("0683000001aa");
        QTest::newRow("a container with a length that is cut off") << hex("068201");
        QTest::newRow("a container without an end") << hex("068000");
    }
    void wrongFieldsAreNotRead()
    {
        QFETCH(QByteArray, data);
        QVERIFY(!zvt::fieldsOf(data));
    }

    void objectsAreReadWithThoseInside()
    {
        const auto objects = zvt::objectsOf(
            hex("2405070341424340011f1201021f820101ff").replace(hex("40011f"), hex("4001aa1f")));
        QVERIFY(objects);
        QStringList texts;
        for (const zvt::Object& each : *objects)
            texts.append(QString::number(each.tag, 16) + '=' + QString(each.value.toHex()));
        QCOMPARE(texts,
                 (QStringList{"24=0703414243", "7=414243", "40=aa", "1f12=02", "1f8201=ff"}));
    }

    void wrongObjectsAreNotRead_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::newRow("a tag alone") << hex("40");
        QTest::newRow("a long tag that is cut off") << hex("1f");
        QTest::newRow("a tag of four bytes") << hex("1f8181010101");
        QTest::newRow("a value that is cut off") << hex("400201");
        QTest::newRow("a wrong object inside") << hex("2402070a");
        QByteArray deep;
        for (int depth = 0; depth < 10; ++depth)
            deep = hex("24") + char(deep.size()) + deep;
        QTest::newRow("objects in objects without end") << deep;
    }
    void wrongObjectsAreNotRead()
    {
        QFETCH(QByteArray, data);
        QVERIFY(!zvt::objectsOf(data));
    }

    void numbersOfCardsAreMasked()
    {
        QCOMPARE(zvt::maskedNumber(hex("4111111111111234")), QString("**** 1234"));
        QCOMPARE(zvt::maskedNumber(hex("67eeeeeeeeee123f")), QString("**** *123"));
        QCOMPARE(zvt::maskedNumber({}), QString());
    }

    void enquiriesAreAnsweredByACode()
    {
        QCOMPARE(zvt::statusCode(hex("00")), std::make_optional<quint8>(0));
        QCOMPARE(zvt::statusCode(hex("f0f0f241429c")), std::make_optional<quint8>(0x9c));
        QVERIFY(!zvt::statusCode({}));
        QVERIFY(!zvt::statusCode(hex("f0")));
        QVERIFY(!zvt::statusCode(hex("f0f0f24142")));
        QVERIFY(!zvt::statusCode(hex("f0f9f94142")));
    }

    void currenciesHaveNumbers()
    {
        QCOMPARE(zvt::currencyNumber("EUR"), 978);
        QCOMPARE(zvt::currencyNumber("SEK"), 752);
        QCOMPARE(zvt::currencyNumber("XXX"), 0);
        QCOMPARE(zvt::currencyNumber(QString()), 0);
    }

    void codesHaveWords()
    {
        QCOMPARE(zvt::textOfCode(0x6c), QString("The payment was stopped."));
        QCOMPARE(zvt::textOfCode(0xee), QString("Declined by the card terminal (ee)."));
    }

    void statusesHaveWords_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<QString>("text");
        QTest::newRow("none") << hex("") << "";
        QTest::newRow("a code") << hex("0a") << "Present the card";
        QTest::newRow("a code that is not known") << hex("77") << "See the card terminal";
        QTest::newRow("the terminal's own text") << hex("0a0606240407024142") << "AB";
        QTest::newRow("the terminal's own text after a time")
            << hex("0a050606240407024142") << "AB";
        QTest::newRow("two lines of it") << hex("0a0609240707024142070143") << "AB C";
        QTest::newRow("a container that is broken") << hex("0a06032401") << "Present the card";
    }
    void statusesHaveWords()
    {
        QFETCH(QByteArray, data);
        QFETCH(QString, text);
        QCOMPARE(zvt::textOfStatus(data), text);
    }
};

QTEST_APPLESS_MAIN(TestZvtMessages)
#include "tst_zvt_messages.moc"
