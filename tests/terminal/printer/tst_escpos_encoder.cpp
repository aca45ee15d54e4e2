#include <EscPosEncoder.h>
#include <PrinterAnswers.h>

#include <Config.h>

#include <QtTest>

using namespace rivo::printer;
using rivo::ticket::PaperBlock;
using Kind = PaperBlock::Kind;

Q_DECLARE_METATYPE(PaperBlock)

namespace
{

/// What every paper begins and ends with.
const QByteArray start = QByteArray::fromHex("1b40 1c2e 1b5200 1b7400");
const QByteArray end = QByteArray::fromHex("1d564200");

QByteArray hex(const char* digits) { return QByteArray::fromHex(digits); }

} // namespace

class TestEscPosEncoder : public QObject
{
    Q_OBJECT

private slots:
    void blocks_data()
    {
        QTest::addColumn<PaperBlock>("block");
        QTest::addColumn<QByteArray>("bytes");
        const auto row = [](const char* what, const PaperBlock& block, const QByteArray& bytes) {
            QTest::newRow(what) << block << bytes;
        };
        row("a text is a line", {Kind::Text, "Adult", {}}, "Adult\n");
        row("a text is broken at blanks", {Kind::Text, "one two three four five six", {}},
            "one two three four\nfive six\n");
        row("a word that is too long is divided", {Kind::Text, "a bcdefghijklmnopqrstuvwxyz", {}},
            "a\nbcdefghijklmnopqrstu\nvwxyz\n");
        row("a text that fits is not broken", {Kind::Text, "12345678901234567890", {}},
            "12345678901234567890\n");
        row("a field fills the line", {Kind::Field, "To", "Valley"}, "To            Valley\n");
        row("a field that fits by a blank", {Kind::Field, "Label", "1234567890123"},
            "Label  1234567890123\n");
        row("a field that is too long takes two lines", {Kind::Field, "Label", "12345678901234"},
            "Label\n      12345678901234\n");
        row("a long value goes on at the right", {Kind::Field, "To", "New Street and Old Street"},
            "To\n  New Street and Old\n              Street\n");
        row("a rule is a dashed line", {Kind::Rule, {}, {}}, "--------------------\n");
        row("a title is large, bold and in the middle", {Kind::Title, "Day", {}},
            hex("1b6101 1b4501 1d2111") + "Day\n" + hex("1d2100 1b4500 1b6100"));
        row("a title has half the letters in a line", {Kind::Title, "Hill and Valley", {}},
            hex("1b6101 1b4501 1d2111") + "Hill and\nValley\n" + hex("1d2100 1b4500 1b6100"));
        row("a mark is white on black", {Kind::Mark, "COPY 1", {}},
            hex("1b4501 1d4201") + "       COPY 1       \n" + hex("1d4200 1b4500"));
        row("a sum is high and bold", {Kind::Sum, "Price", "1.90"},
            hex("1b4501 1d2101") + "Price           1.90\n" + hex("1d2100 1b4500"));
        row("a code is described to the printer", {Kind::Code, "R1|1", {}},
            hex("1b6101") + '\n' + hex("1d286b040031413200 1d286b0300314306 1d286b0300314531") +
                hex("1d286b0700315030") + "R1|1" + hex("1d286b0300315130") + '\n' + hex("1b6100"));
        row("letters of the code page", {Kind::Text, QString::fromUtf8("Größe £"), {}},
            hex("47 72 94 e1 65 20 9c") + '\n');
        row("blanks and dashes that the code page lacks",
            {Kind::Text, QString::fromUtf8("1\u202F000 – ‘a’ “b”"), {}}, "1 000 - 'a' \"b\"\n");
    }

    void blocks()
    {
        QFETCH(PaperBlock, block);
        QFETCH(QByteArray, bytes);
        EscPosFormat format;
        format.columns = 20;
        QCOMPARE(encode({block}, format).toHex(' '), (start + bytes + end).toHex(' '));
    }

    void withoutACutterThePaperIsFed()
    {
        EscPosFormat format;
        format.cut = false;
        QCOMPARE(encode({}, format), start + hex("1b6404"));
    }

    void largeCodesOnWidePaper()
    {
        EscPosFormat format;
        format.dotsPerLine = 832;
        QVERIFY(encode({{Kind::Code, "a", {}}}, format).contains(hex("1d286b0300314308")));
    }

    void longCodesHaveTheirLength()
    {
        const QByteArray bytes = encode({{Kind::Code, QString(300, 'a'), {}}}, {});
        QVERIFY(bytes.contains(hex("1d286b2f01315030") + QByteArray(300, 'a')));
    }

    /// Letters that the code page lacks: the block is a picture.
    void otherLettersArePictures_data()
    {
        QTest::addColumn<PaperBlock>("block");
        QTest::newRow("text") << PaperBlock{Kind::Text, QString::fromUtf8("ż"), {}};
        QTest::newRow("label") << PaperBlock{Kind::Field, QString::fromUtf8("ż"), "1"};
        QTest::newRow("value") << PaperBlock{Kind::Sum, "1", QString::fromUtf8("€")};
        QTest::newRow("letter of two parts") << PaperBlock{Kind::Title, QString::fromUtf8("🚌"), {}};
        QTest::newRow("letter with a mark")
            << PaperBlock{Kind::Mark, QString::fromUtf8("z\u0307"), {}};
    }

    void otherLettersArePictures()
    {
        QFETCH(PaperBlock, block);
        const QByteArray bytes = encode({block}, {});
        QCOMPARE(bytes.mid(start.size(), 7).toHex(' '), hex("1b4a04 1d763000").toHex(' '));
    }

    void pictures_data()
    {
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("height");
        QTest::addColumn<QByteArray>("bytes");
        // Two black dots at the upper left and the lower right.
        QTest::newRow("as wide as the paper") << 16 << 2 << hex("1d763000 0200 0200 8000 0001");
        QTest::newRow("narrower, in the middle") << 8 << 2 << hex("1d763000 0200 0200 0800 0010");
        QTest::newRow("a single row") << 16 << 1 << hex("1d763000 0200 0100 8001");
    }

    void pictures()
    {
        QFETCH(int, width);
        QFETCH(int, height);
        QFETCH(QByteArray, bytes);
        QImage picture(width, height + 4, QImage::Format_RGB32); // white above and below
        picture.fill(Qt::white);
        picture.setPixelColor(0, 2, Qt::black);
        picture.setPixelColor(width - 1, height + 1, QColor(127, 127, 127));
        picture.setPixelColor(1, 2, QColor(128, 128, 128)); // too bright
        QCOMPARE(encodePicture(picture, 16).toHex(' '), bytes.toHex(' '));
    }

    void whiteAndTransparentPicturesAreNothing()
    {
        QImage picture(16, 4, QImage::Format_ARGB32);
        picture.fill(Qt::white);
        QCOMPARE(encodePicture(picture, 16), QByteArray());
        picture.fill(Qt::transparent);
        QCOMPARE(encodePicture(picture, 16), QByteArray());
        picture.setPixelColor(0, 0, Qt::black);
        QCOMPARE(encodePicture(picture, 16), hex("1d763000 0200 0100 8000"));
    }

    void largePicturesAreFittedAndDivided()
    {
        QImage picture(768, 400, QImage::Format_RGB32);
        picture.fill(Qt::black);
        const QByteArray bytes = encodePicture(picture, 384);
        QCOMPARE(bytes.size(), 2 * 8 + 200 * 48);
        QVERIFY(bytes.startsWith(hex("1d763000 3000 8000")));
        QCOMPARE(bytes.mid(8 + 128 * 48, 8), hex("1d763000 3000 4800"));
    }

    /// No bytes of a picture are taken for a command.
    void picturesHaveNoCommands_data()
    {
        QTest::addColumn<int>("second");
        QTest::addColumn<int>("instead");
        QTest::newRow("DLE EOT") << 0x04 << 0x0C;
        QTest::newRow("DLE ENQ") << 0x05 << 0x0D;
        QTest::newRow("DLE DC4") << 0x14 << 0x1C;
        QTest::newRow("no command") << 0x06 << 0x06;
    }

    void picturesHaveNoCommands()
    {
        QFETCH(int, second);
        QFETCH(int, instead);
        QImage picture(16, 1, QImage::Format_RGB32);
        picture.fill(Qt::white);
        picture.setPixelColor(3, 0, Qt::black);
        for (int bit = 0; bit < 8; ++bit) {
            if ((second & 0x80 >> bit) != 0)
                picture.setPixelColor(8 + bit, 0, Qt::black);
        }
        QCOMPARE(encodePicture(picture, 16),
                 hex("1d763000 0200 0100 10") + static_cast<char>(instead));
    }

    void logoIsAboveThePaper()
    {
        EscPosFormat format;
        format.logo = QImage(384, 1, QImage::Format_RGB32);
        format.logo.fill(Qt::black);
        QCOMPARE(encode({}, format),
                 start + hex("1d763000 3000 0100") + QByteArray(48, '\xFF') + end);
    }

    void drawer() { QCOMPARE(drawerPulse().toHex(' '), hex("1b700019fa").toHex(' ')); }

    void codePages_data()
    {
        QTest::addColumn<int>("number");
        QTest::addColumn<QString>("letters");
        QTest::addColumn<QByteArray>("bytes");
        const auto row = [](const char* name, int number, const char* letters, const char* bytes) {
            QTest::newRow(name) << number << QString::fromUtf8(letters) << hex(bytes);
        };
        row("PC437", 0, "äñ½", "84 a4 ab");
        row("PC850", 2, "äÁ×", "84 b5 9e");
        row("PC860", 3, "ãÓ", "84 9f");
        row("PC863", 4, "ÂÊ", "84 92");
        row("PC865", 5, "åØ", "86 9d");
        row("WPC1252", 16, "€–ß", "80 96 df");
        row("PC866", 17, "Ая", "80 ef");
        row("PC852", 18, "żŁő", "be 9d 8b");
        row("PC858", 19, "€ä", "d5 84");
        row("WPC1250", 45, "€żŁ", "80 bf a3");
        row("WPC1251", 46, "Ая№", "c0 ff b9");
        row("WPC1253", 47, "Αω", "c1 f9");
        row("WPC1254", 48, "ğİ", "f0 dd");
        row("WPC1257", 51, "ąŠ", "e0 d0");
    }

    void codePages()
    {
        QFETCH(int, number);
        QFETCH(QString, letters);
        QFETCH(QByteArray, bytes);
        const CodePage page(QTest::currentDataTag());
        QCOMPARE(page.number(), number);
        QVERIFY(page.hasAll(letters));
        QCOMPARE(page.encode(letters).toHex(' '), bytes.toHex(' '));
        QVERIFY(!page.hasAll(QString::fromUtf8("日")));
        QVERIFY(!page.hasAll("\n"));
        QCOMPARE(page.encode(QString::fromUtf8("a日~")), QByteArray("a?~"));
        QCOMPARE(CodePage(QTest::currentDataTag(), 77).number(), 77);
    }

    void everyCodePageOfTheConfigurationIsKnown()
    {
        for (const QString& name : rivo::config::codePageNames())
            QVERIFY2(
                CodePage(name).hasAll(name == "PC866" || name == "WPC1251" ? QString::fromUtf8("Я")
                                      : name == "WPC1253"                  ? QString::fromUtf8("Ω")
                                      : name == "WPC1257" || name == "PC852" || name == "WPC1250"
                                          ? QString::fromUtf8("ö")
                                          : QString::fromUtf8("ç")),
                qPrintable(name));
    }
};

QTEST_MAIN(TestEscPosEncoder)
#include "tst_escpos_encoder.moc"
