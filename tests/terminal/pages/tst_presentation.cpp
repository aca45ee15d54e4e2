#include "Table.h"

#include "../Contrast.h"

#include <DirectionControls.h>
#include <Presentation.h>

#include <Currency.h>
#include <Feed.h>

#include <QtTest>

using rivo::sales::Currency;
using rivo::terminal::Presentation;
using rivo::terminal::withoutDirectionControls;

/// What can be read on any tile, whatever colours and names a feed has.
class TestPresentation : public QObject
{
    Q_OBJECT

private slots:
    void everyTileCanBeRead_data();
    void everyTileCanBeRead();
    void framesKeepTheirColourWhereItCanBeSeen();
    void discountsAreShownBehindThePassenger_data();
    void discountsAreShownBehindThePassenger();
    void namesKeepTheirDirection_data();
    void namesKeepTheirDirection();
    void aFeedsNamesAreClean();

private:
    const rivo::feed::Feed m_feed;
    const Presentation m_presentation{m_feed, Currency("EUR", 2), false};
};

void TestPresentation::everyTileCanBeRead_data()
{
    const Table<QColor> row("accent");
    row("by day", QColor("#0b5a94"));
    row("at night", QColor("#5aa9e6"));
}

void TestPresentation::everyTileCanBeRead()
{
    QFETCH(QColor, accent);
    constexpr int step = 15;
    for (int red = 0; red <= 255; red += step) {
        for (int green = 0; green <= 255; green += step) {
            for (int blue = 0; blue <= 255; blue += step) {
                const QColor tile(red, green, blue);
                const double text = contrast(tile, m_presentation.textOn(tile));
                const double frame = contrast(tile, m_presentation.frameOn(tile, accent));
                QVERIFY2(
                    text >= 4.5 && frame >= 3.0,
                    qPrintable(
                        QString("%1: text %2, frame %3").arg(tile.name()).arg(text).arg(frame)));
            }
        }
    }
}

void TestPresentation::framesKeepTheirColourWhereItCanBeSeen()
{
    const QColor accent("#0b5a94");
    QCOMPARE(m_presentation.frameOn(Qt::white, accent), accent);
    QCOMPARE(m_presentation.frameOn(accent, accent), QColor(Qt::white));
    QCOMPARE(m_presentation.frameOn(Qt::yellow, Qt::white), QColor(Qt::black));
}

void TestPresentation::discountsAreShownBehindThePassenger_data()
{
    const Table<double, QString> row("percent", "text");
    row("none", 0.0, "Student");
    row("a whole number", 50.0, QString::fromUtf8("Student −50%"));
    row("a half", 12.5, QString::fromUtf8("Student −12,5%"));
    row("more than a tenth", 33.33, QString::fromUtf8("Student −33,3%"));
    row("a surcharge", -10.0, "Student");
    row("not a number", qQNaN(), "Student");
}

void TestPresentation::discountsAreShownBehindThePassenger()
{
    QFETCH(double, percent);
    QFETCH(QString, text);
    const QLocale before;
    QLocale::setDefault(QLocale("de_DE"));
    const QString shown = m_presentation.withDiscount("Student", percent);
    QLocale::setDefault(before);
    QCOMPARE(shown, text);
}

void TestPresentation::namesKeepTheirDirection_data()
{
    const Table<QString, QString> row("text", "clean");
    row("a usual name", "Single 2 → 3", "Single 2 → 3");
    row("an empty name", "", "");
    row("letters from right to left stay", "שלום مرحبا", "שלום مرحبا");
    row("a family of emoji stays whole", "\U0001F468\u200D\U0001F469",
        "\U0001F468\u200D\U0001F469");
    for (const int control : {0x061c, 0x200e, 0x200f, 0x202a, 0x202b, 0x202c, 0x202d, 0x202e,
                              0x2066, 0x2067, 0x2068, 0x2069})
        QTest::addRow("a name with U+%04X", control)
            << QString("Sin%1gle").arg(QChar(control)) << "Single";
}

void TestPresentation::namesKeepTheirDirection()
{
    QFETCH(QString, text);
    QTEST(withoutDirectionControls(text), "clean");
}

void TestPresentation::aFeedsNamesAreClean()
{
    const QString turned = QString("a%1b").arg(QChar(0x202e));
    rivo::feed::Feed feed;
    feed.name = turned;
    feed.products.resize(2);
    feed.products[1].fareProductName = feed.products[1].description = turned;
    feed.fareProducts.resize(1);
    feed.fareProducts[0].description = turned;
    feed.vehicles.resize(1);
    feed.vehicles[0].registrationNumber = feed.vehicles[0].routeName = turned;
    feed.peripherals.resize(1);
    feed.peripherals[0].name = turned;
    feed.network.zones.resize(1);
    feed.network.zones[0].name = turned;
    feed.network.routes.resize(1);
    feed.network.routes[0].shortName = turned;
    feed.network.trips.resize(1);
    feed.network.trips[0].headsign = turned;
    feed.network.stops.resize(1);
    feed.network.stops[0].name = turned;

    const rivo::feed::Feed clean = withoutDirectionControls(feed);
    QCOMPARE(clean.name, QString("ab"));
    QCOMPARE(clean.products[1].fareProductName, QString("ab"));
    QCOMPARE(clean.products[1].description, QString("ab"));
    QCOMPARE(clean.fareProducts[0].description, QString("ab"));
    QCOMPARE(clean.vehicles[0].registrationNumber, QString("ab"));
    QCOMPARE(clean.vehicles[0].routeName, QString("ab"));
    QCOMPARE(clean.peripherals[0].name, QString("ab"));
    QCOMPARE(clean.network.zones[0].name, QString("ab"));
    QCOMPARE(clean.network.routes[0].shortName, QString("ab"));
    QCOMPARE(clean.network.trips[0].headsign, QString("ab"));
    QCOMPARE(clean.network.stops[0].name, QString("ab"));
    QCOMPARE(withoutDirectionControls(feed.products[1]).fareProductName, QString("ab"));
}

QTEST_MAIN(TestPresentation)
#include "tst_presentation.moc"
