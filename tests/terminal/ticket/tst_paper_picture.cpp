#include "Papers.h"
#include "Table.h"

#include <PaperPicture.h>

#include <QGuiApplication>
#include <QTest>

#include <qrencode.h>

#include <algorithm>

using namespace rivo::ticket;

namespace
{

using Kind = PaperBlock::Kind;

bool isBlack(const QImage& image, int x, int y) { return qGray(image.pixel(x, y)) < 128; }

/// The box around everything black; null if all is white.
QRect inkOf(const QImage& image)
{
    QRect box;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (isBlack(image, x, y))
                box |= QRect(x, y, 1, 1);
        }
    }
    return box;
}

} // namespace

class TestPaperPicture : public QObject
{
    Q_OBJECT

private slots:
    void paperIsAsWideAsAskedForAndInkStaysOnIt_data()
    {
        QTest::addColumn<int>("width");
        for (const int width : {narrowPaper, 576, 200})
            QTest::addRow("%d dots", width) << width;
    }

    void paperIsAsWideAsAskedForAndInkStaysOnIt()
    {
        QFETCH(int, width);
        rivo::sales::PrintJob job = fullTicket();
        job.copy = 1;
        const QImage image = draw(layOut(job, hillValley()), width);
        QCOMPARE(image.width(), width);
        const QRect ink = inkOf(image);
        QVERIFY(ink.left() >= 8 && ink.right() < width - 8);
        QVERIFY(ink.top() >= 8 && ink.bottom() < image.height() - 8);
        if (qEnvironmentVariableIsSet("RIVO_TICKET_PICTURES"))
            QVERIFY(image.save(QStringLiteral("%1/ticket-%2.png")
                                   .arg(qEnvironmentVariable("RIVO_TICKET_PICTURES"))
                                   .arg(width)));
    }

    void sameLayoutIsTheSamePicture()
    {
        const PaperLayout layout = layOut(fullTicket(), hillValley());
        QCOMPARE(draw(layout), draw(layout));
    }

    void nothingIsWhitePaper() { QVERIFY(inkOf(draw({})).isNull()); }

    /// A name is not cut off: its end is on the paper, in a line of its own.
    void longTextsGoOnInTheNextLine_data()
    {
        addColumns<int, QString>("kind", "text");
        const QString words = QString("Half fare for travellers ").repeated(6).trimmed();
        for (const auto& [name, text] :
             {std::pair("words", words), {"one word", QString(80, 'W')}}) {
            QTest::addRow("%s in a title", name) << int(Kind::Title) << text;
            QTest::addRow("%s in a line", name) << int(Kind::Text) << text;
            QTest::addRow("%s in a mark", name) << int(Kind::Mark) << text;
        }
    }

    void longTextsGoOnInTheNextLine()
    {
        QFETCH(int, kind);
        QFETCH(QString, text);
        const int oneLine = draw({{static_cast<Kind>(kind), "W", {}}}).height();
        const QImage image = draw({{static_cast<Kind>(kind), text, {}}});
        QVERIFY(image.height() > oneLine + 40);
        const QRect ink = inkOf(image);
        QVERIFY2(ink.left() >= 8 && ink.right() < image.width() - 8, "beyond the edge");
        QVERIFY(ink.bottom() > oneLine);
    }

    void fieldsTakeOneLineIfThereIsRoom()
    {
        const int oneLine = draw({{Kind::Text, "From", {}}}).height();
        QCOMPARE(draw({{Kind::Field, "From", "Hill"}}).height(), oneLine);
        const QImage two = draw({{Kind::Field, "From", QString(20, 'W')}});
        QVERIFY(two.height() > oneLine);
        QVERIFY(inkOf(two).right() < two.width() - 8);
        QVERIFY(draw({{Kind::Sum, "Price", "€1.90"}}).height() > oneLine);
    }

    void markIsWhiteOnBlack()
    {
        const QImage image = draw({{Kind::Mark, "COPY 1", {}}, {Kind::Text, "W", {}}});
        int black = 0;
        const QRect ink = inkOf(image);
        for (int x = ink.left(); x <= ink.right(); ++x)
            black += isBlack(image, x, ink.top()) ? 1 : 0;
        QCOMPARE(black, ink.width()); // a bar from edge to edge
        const QImage bar = draw({{Kind::Mark, " ", {}}});
        QVERIFY(image != bar);
    }

    /// Each module of the code is where the standard's encoder puts it.
    void codeIsDrawnModuleByModule()
    {
        const PaperLayout layout = layOut(fullTicket(), hillValley());
        const auto block = std::find_if(layout.begin(), layout.end(), [](const PaperBlock& each) {
            return each.kind == Kind::Code;
        });
        const QByteArray text = block->text.toUtf8();
        QRcode* const code = QRcode_encodeString8bit(text.constData(), 0, QR_ECLEVEL_M);
        QVERIFY(code != nullptr);
        const QImage image = draw({*block});
        const QRect ink = inkOf(image);
        QCOMPARE(ink.width(), ink.height());
        QCOMPARE(ink.width() % code->width, 0);
        const int module = ink.width() / code->width;
        QVERIFY2(module >= 5, qPrintable(QString::number(module))); // 0.6 mm
        QVERIFY(ink.left() >= 4 * module && ink.top() >= 4 * module);
        for (int y = 0; y < code->width; ++y) {
            for (int x = 0; x < code->width; ++x)
                QCOMPARE(isBlack(image, ink.left() + x * module + module / 2,
                                 ink.top() + y * module + module / 2),
                         (code->data[y * code->width + x] & 1) != 0);
        }
        QRcode_free(code);
    }

    void textThatIsTooLongForACodeIsLeftOut()
    {
        QVERIFY(inkOf(draw({{Kind::Code, QString(4000, 'x'), {}}})).isNull());
    }
};

QTEST_MAIN(TestPaperPicture)
#include "tst_paper_picture.moc"
