#include "PassengerTypesModel.h"
#include "Table.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QSet>
#include <QSvgRenderer>
#include <QXmlStreamReader>
#include <QtTest>

#include <cstdlib>

namespace
{

constexpr int side = 32;     // pixels of an icon on a tile
constexpr int visible = 128; // alpha of a pixel that counts as drawn
constexpr int maximumBytes = 4096;
const QRectF viewBox(0, 0, 24, 24);
const QString ink = "#1b1f24"; // the screen replaces it by the colour of its theme

const QStringList passengerIcons = {"adult.svg",      "student.svg", "school.svg",
                                    "wheelchair.svg", "soldier.svg", "family_large.svg"};

// Shapes that every renderer of SVG Tiny draws; whatever is not here is text, a picture, a style, a
// script or a reference to something outside of the file.
const QSet<QString> allowedElements = {"svg", "g", "path", "circle", "ellipse", "rect"};
const QSet<QString> allowedAttributes = {
    "version", "baseProfile",  "width", "height", "viewBox", "fill",           "fill-rule",
    "stroke",  "stroke-width", "d",     "cx",     "cy",      "stroke-linecap", "stroke-linejoin",
    "r",       "rx",           "ry",    "x",      "y"};

QStringList icons() { return QDir(":/icons").entryList(QDir::Files, QDir::Name); }

QString resource(const QString& icon) { return ":/icons/" + icon; }

QByteArray source(const QString& icon)
{
    QFile file(resource(icon));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QImage rendered(const QString& icon)
{
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QSvgRenderer renderer(resource(icon));
    QPainter painter(&image);
    renderer.render(&painter);
    return image;
}

/// The smallest rectangle that holds every pixel that is not wholly transparent.
QRect drawnArea(const QImage& image)
{
    QRect area;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (qAlpha(image.pixel(x, y)) > 0)
                area |= QRect(x, y, 1, 1);
    return area;
}

int drawnPixels(const QImage& image)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            count += qAlpha(image.pixel(x, y)) >= visible ? 1 : 0;
    return count;
}

/// Share of the pixels drawn in either image that is drawn in one of them only.
double difference(const QImage& one, const QImage& other)
{
    int either = 0;
    int single = 0;
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            const bool inOne = qAlpha(one.pixel(x, y)) >= visible;
            const bool inOther = qAlpha(other.pixel(x, y)) >= visible;
            either += inOne || inOther ? 1 : 0;
            single += inOne != inOther ? 1 : 0;
        }
    }
    return either == 0 ? 0 : double(single) / either;
}

void everyIcon()
{
    const Table<QString> row("icon");
    for (const QString& icon : icons())
        row(qPrintable(icon), icon);
}

} // namespace

class TestIcons : public QObject
{
    Q_OBJECT

private slots:
    void resourcesHoldEveryFile();
    void screenFindsItsIcons_data();
    void screenFindsItsIcons();
    void passengerTypesFindTheirIcons();

    void fileIsSmallAndPlain_data() { everyIcon(); }
    void fileIsSmallAndPlain();
    void rendererTakesIt_data() { everyIcon(); }
    void rendererTakesIt();
    void isDrawnInsideAMargin_data() { everyIcon(); }
    void isDrawnInsideAMargin();
    void hasOneColour_data() { everyIcon(); }
    void hasOneColour();

    void passengerTypesCanBeDistinguished_data();
    void passengerTypesCanBeDistinguished();
    void noTwoIconsAreAlike();
    void vehicleTurnsAboutItsCentre();
};

void TestIcons::resourcesHoldEveryFile()
{
    QVERIFY(!icons().isEmpty());
    QCOMPARE(icons(), QDir(ICONS).entryList({"*.svg"}, QDir::Files, QDir::Name));
}

void TestIcons::screenFindsItsIcons_data()
{
    const Table<QStringList> row("names");
    row("passenger types", passengerIcons);
    row("devices", {"printer.svg", "card.svg", "validator.svg", "router.svg", "gps.svg",
                    "coins.svg", "device.svg"});
    row("navigation",
        {"sell.svg", "products.svg", "zreport.svg", "fleet.svg", "devices.svg", "settings.svg"});
    row("actions", {"remove.svg", "clear.svg", "cash.svg", "paycard.svg", "back.svg", "next.svg",
                    "previous.svg"});
    row("states",
        {"moon.svg", "sun.svg", "warning.svg", "error.svg", "ok.svg", "info.svg", "offline.svg"});
    row("tickets and trip", {"return.svg", "day.svg", "stop.svg", "vehicle.svg"});
}

void TestIcons::screenFindsItsIcons()
{
    QFETCH(QStringList, names);
    for (const QString& name : names)
        QVERIFY2(icons().contains(name), qPrintable(name));
}

void TestIcons::passengerTypesFindTheirIcons()
{
    QVERIFY(!PassengerTypesModel::iconMap.isEmpty());
    for (const QString& url : PassengerTypesModel::iconMap) {
        QVERIFY2(url.startsWith("qrc:/icons/"), qPrintable(url));
        QVERIFY2(QFile::exists(url.mid(int(qstrlen("qrc")))), qPrintable(url));
    }
}

void TestIcons::fileIsSmallAndPlain()
{
    QFETCH(QString, icon);
    const QByteArray text = source(icon);
    QVERIFY(!text.isEmpty());
    QVERIFY2(text.size() <= maximumBytes, qPrintable(QString::number(text.size())));

    QXmlStreamReader xml(text);
    while (!xml.atEnd()) {
        const QXmlStreamReader::TokenType token = xml.readNext();
        QVERIFY2(token != QXmlStreamReader::DTD, "document type");
        QVERIFY2(token != QXmlStreamReader::ProcessingInstruction, "processing instruction");
        QVERIFY2(token != QXmlStreamReader::Characters || xml.isWhitespace(), "text");
        if (token != QXmlStreamReader::StartElement)
            continue;
        QVERIFY2(allowedElements.contains(xml.name().toString()),
                 qPrintable(xml.name().toString()));
        for (const QXmlStreamAttribute& attribute : xml.attributes()) {
            const QString name = attribute.qualifiedName().toString();
            QVERIFY2(allowedAttributes.contains(name), qPrintable(name));
            const QString value = attribute.value().toString();
            if (name == "fill" || name == "stroke")
                QVERIFY2(value == ink || value == "none", qPrintable(value));
            if (name == "viewBox")
                QCOMPARE(value, QString("0 0 24 24"));
        }
    }
    QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
}

void TestIcons::rendererTakesIt()
{
    QFETCH(QString, icon);
    QSvgRenderer renderer;
    QVERIFY(renderer.load(resource(icon)));
    QVERIFY(renderer.isValid());
    QVERIFY(!renderer.animated());
    QCOMPARE(renderer.viewBoxF(), viewBox);
    QCOMPARE(renderer.defaultSize(), viewBox.size().toSize());
}

void TestIcons::isDrawnInsideAMargin()
{
    QFETCH(QString, icon);
    const QImage image = rendered(icon);
    const QRect area = drawnArea(image);
    QVERIFY2(QRect(1, 1, side - 2, side - 2).contains(area), "is empty or touches the edge");
    QVERIFY2(qMax(area.width(), area.height()) >= side / 2, "does not use the room");
    QVERIFY2(drawnPixels(image) >= side * side / 20, "is too faint");
}

void TestIcons::hasOneColour()
{
    QFETCH(QString, icon);
    const QImage image = rendered(icon);
    int solid = 0;
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            if (qAlpha(image.pixel(x, y)) != 255)
                continue;
            QCOMPARE(image.pixelColor(x, y), QColor(ink));
            ++solid;
        }
    }
    QVERIFY(solid > 0);
}

void TestIcons::passengerTypesCanBeDistinguished_data()
{
    addColumns<QString, QString>("one", "other");
    for (int i = 0; i < passengerIcons.size(); ++i)
        for (int j = i + 1; j < passengerIcons.size(); ++j)
            QTest::addRow("%s and %s", qPrintable(passengerIcons[i]), qPrintable(passengerIcons[j]))
                << passengerIcons[i] << passengerIcons[j];
}

void TestIcons::passengerTypesCanBeDistinguished()
{
    QFETCH(QString, one);
    QFETCH(QString, other);
    const double share = difference(rendered(one), rendered(other));
    QVERIFY2(share >= 0.4, qPrintable(QString::number(share)));
}

void TestIcons::noTwoIconsAreAlike()
{
    const QStringList names = icons();
    QVector<QImage> images;
    for (const QString& name : names)
        images.append(rendered(name));
    for (int i = 0; i < names.size(); ++i) {
        for (int j = i + 1; j < names.size(); ++j) {
            const double share = difference(images[i], images[j]);
            QVERIFY2(share >= 0.2,
                     qPrintable(QString("%1 and %2: %3").arg(names[i], names[j]).arg(share)));
        }
    }
}

void TestIcons::vehicleTurnsAboutItsCentre()
{
    const QImage vehicle = rendered("vehicle.svg");
    const QRect area = drawnArea(vehicle);
    QVERIFY(std::abs(area.left() + area.right() - (side - 1)) <= 1);
    QVERIFY(std::abs(area.top() + area.bottom() - (side - 1)) <= 1);
    QVERIFY(difference(vehicle, vehicle.mirrored(true, false)) <= 0.02);
    QVERIFY2(difference(vehicle, vehicle.mirrored(false, true)) >= 0.1, "front and back are alike");
}

QTEST_GUILESS_MAIN(TestIcons)
#include "tst_icons.moc"
