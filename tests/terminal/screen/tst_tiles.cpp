#include "../ScreenUnderTest.h"
#include "Pointer.h"
#include "Table.h"

#include <Benchmark.h>
#include <PassengerTypeItem.h>
#include <ShoppingItem.h>

#include <QtTest>

using rivo::feed::Feed;
using rivo::feed::FeedProduct;
using rivo::terminal::TileDesk;

namespace
{

const QVector<QSize> g_sizes{{800, 480}, {1024, 600}, {1280, 800}};

Feed lakeside()
{
    const auto result = rivo::feed::loadFeed(QStringLiteral(FEED_TEST_DATA "/gtfs-lakeside"));
    if (!result.feed)
        qFatal("%s", qPrintable(result.problemLines().join('\n')));
    return *result.feed;
}

/// Names that differ at the begin, in the middle or at the end alone, and the same names with other
/// numbers.
Feed longNames()
{
    Feed feed = exampleFeed("coast-line");
    const FeedProduct first = feed.products.first();
    feed.tariff.reset();
    feed.products.clear();
    const QString middle = "Einzelfahrschein Verbundgebiet Grossraum Nordwest Preisstufe %1 "
                           "mit Umsteigen innerhalb von neunzig Minuten";
    const QStringList names{middle.arg('A'),
                            middle.arg('B'),
                            "Nacht-" + middle.arg('A'),
                            middle.arg('A') + " hin",
                            middle.arg('A') + " her",
                            "Donaudampfschifffahrtsgesellschaftskapitaenstageskarte Nord",
                            "Donaudampfschifffahrtsgesellschaftskapitaenstageskarte West"};
    const QStringList passengers{
        "Ermaessigte Fahrgaeste mit Schwerbehindertenausweis und Begleitperson",
        "Ermaessigte Fahrgaeste mit Schwerbehindertenausweis ohne Begleitperson"};
    for (int i = 0; i < names.size() * passengers.size() * 2; ++i) {
        FeedProduct product = first;
        product.pos = -1;
        product.fareProductName = names.at(i % names.size());
        product.description = passengers.at(i / names.size() % passengers.size());
        product.fareProductId = 100 + i; // the second half has other numbers alone
        product.price = 1234.5;
        feed.products.append(product);
    }
    feed.products.append(feed.products.first()); // the same in all
    return feed;
}

Feed feedNamed(const QString& name)
{
    return name == "long names" ? longNames() : name == "lakeside" ? lakeside() : exampleFeed(name);
}

/// The text of a named part of a tile; fails if some of it is cut.
QString textOf(QQuickItem* tile, const char* name)
{
    QString text;
    ScreenUnderTest::forEachItem(tile, [&](QQuickItem* item) {
        if (item->objectName() != name)
            return;
        text = item->property("text").toString();
        QVERIFY2(!item->property("truncated").toBool(),
                 qPrintable(QString("%1 \"%2\" is cut").arg(name, text)));
        QVERIFY2(item->property("contentWidth").toDouble() <= item->width() + 1,
                 qPrintable(QString("%1 \"%2\" is too wide").arg(name, text)));
        QVERIFY2(item->property("contentHeight").toDouble() <= item->height() + 1,
                 qPrintable(QString("%1 \"%2\" is too high").arg(name, text)));
    });
    return text;
}

QVector<QQuickItem*> tilesIn(ScreenUnderTest& shown)
{
    QVector<QQuickItem*> tiles;
    shown.forEachItem(shown.item("grid"), [&](QQuickItem* item) {
        if (item->property("isMade").toBool() && item->isEnabled())
            tiles.append(item);
    });
    return tiles;
}

bool isInView(ScreenUnderTest& shown, const QQuickItem* tile)
{
    const QQuickItem* grid = shown.item("grid");
    const QPointF middle = tile->mapToItem(grid, {tile->width() / 2, tile->height() / 2});
    return grid->contains(middle);
}

QString lastProduct(ScreenUnderTest& shown)
{
    auto* basket = shown.terminal().basket();
    const auto* line = qobject_cast<ShoppingItem*>(basket->itemFromRow(basket->rowCount() - 1));
    return line == nullptr ? QString()
                           : QString("%1 %2").arg(line->description()).arg(line->toStopGroupId());
}

} // namespace

/// What the tiles show, and how quickly the one that is wanted is found.
class TestTiles : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        prepareScreens();
        m_complaints = std::make_unique<Complaints>();
    }
    void cleanup() { QCOMPARE(Complaints::take().join('\n'), QString()); }
    void cleanupTestCase() { m_complaints.reset(); }

    void noTwoLookAlike_data();
    void noTwoLookAlike();
    void theMostSoldIsAtMostTwoTapsAway_data();
    void theMostSoldIsAtMostTwoTapsAway();
    void aSearchFindsATileByLetters_data();
    void aSearchFindsATileByLetters();
    void aTabHasTheTilesOfItsZone();
    void tilesThatAreNotSoldShowTheReason();
    void severalAtOnce_data();
    void severalAtOnce();
    void moreLikeALineOfTheBasket();
    void theLastSaleAgain();

private:
    std::unique_ptr<Complaints> m_complaints;
};

void TestTiles::noTwoLookAlike_data()
{
    addColumns<QString, QSize>("feed", "size");
    for (const char* feed : {"coast-line", "hill-valley", "lakeside", "long names"}) {
        for (const QSize& size : g_sizes)
            QTest::addRow("%s at %dx%d", feed, size.width(), size.height()) << feed << size;
    }
}

void TestTiles::noTwoLookAlike()
{
    QFETCH(QString, feed);
    QFETCH(QSize, size);
    ScreenUnderTest shown(feedNamed(feed), "sell", size);
    QMap<QString, int> tileOfFace;
    QSet<int> seen;
    QQuickItem* grid = shown.item("grid");
    const double end = grid->property("contentHeight").toDouble() - grid->height();
    for (double y = 0; y < end + grid->height(); y += grid->height() / 2) {
        grid->setProperty("contentY", qMin(y, qMax(0.0, end)));
        shown.window()->grabWindow();
        for (QQuickItem* tile : tilesIn(shown)) {
            const int row = tile->property("tile").toInt();
            seen.insert(row);
            QStringList face;
            for (const char* part : {"passengerText", "productText", "zoneText", "priceText"})
                face.append(textOf(tile, part));
            QVERIFY(!face.at(0).isEmpty() && !face.at(1).isEmpty());
            const QString text = face.join('|');
            QVERIFY2(tileOfFace.value(text, row) == row, qPrintable(text));
            tileOfFace.insert(text, row);
        }
    }
    QCOMPARE(seen.size(), shown.terminal().offers()->products().size());
    QCOMPARE(tileOfFace.size(), seen.size());
}

void TestTiles::theMostSoldIsAtMostTwoTapsAway_data()
{
    QTest::addColumn<QSize>("size");
    for (const QSize& size : g_sizes)
        QTest::addRow("at %dx%d", size.width(), size.height()) << size;
}

/// Also in the shift that sells it, and after a restart.
void TestTiles::theMostSoldIsAtMostTwoTapsAway()
{
    QFETCH(QSize, size);
    ScreenUnderTest shown(rivo::terminal::benchmark::withTiles(exampleFeed("coast-line"), 1000),
                          "sell", size);
    auto* grid = shown.terminal().grid();
    const int wanted = 777;
    for (const int row : {3, 500, 500, wanted, wanted, wanted, 900})
        QVERIFY(shown.terminal().desk()->add(row));
    const auto* tile = qobject_cast<PassengerTypeItem*>(grid->itemFromRow(wanted));
    const QString product = QString("%1 %2").arg(tile->description()).arg(tile->toStopGroupId());
    QVERIFY(shown.terminal().desk()->pay(rivo::sales::SalesDesk::Cash));
    QTRY_COMPARE(shown.terminal().basket()->rowCount(), 0);
    for (const bool isRestarted : {false, true}) {
        if (isRestarted)
            shown.restart();
        int taps = 0;
        Pointer finger(shown.window(), true);
        const auto visible = [&]() -> QQuickItem* {
            shown.window()->grabWindow();
            const QVector<QQuickItem*> tiles = tilesIn(shown);
            const auto found = std::find_if(tiles.begin(), tiles.end(), [&](QQuickItem* each) {
                return each->property("tile").toInt() == wanted && isInView(shown, each);
            });
            return found == tiles.end() ? nullptr : *found;
        };
        if (visible() == nullptr) {
            finger.tap(middleOf(shown.item("tab-0")));
            ++taps;
        }
        QVERIFY(visible() != nullptr);
        finger.tap(middleOf(visible()));
        ++taps;
        QCOMPARE(lastProduct(shown), product);
        QCOMPARE(taps, isRestarted ? 1 : 2);
    }
}

void TestTiles::aSearchFindsATileByLetters_data()
{
    const Table<bool> row("isTouch");
    row("mouse", false);
    row("touch", true);
}

void TestTiles::aSearchFindsATileByLetters()
{
    QFETCH(bool, isTouch);
    ScreenUnderTest shown(exampleFeed("coast-line"), "sell", {800, 480});
    Pointer pointer(shown.window(), isTouch);
    const int all = shown.terminal().tiles()->count();
    shown.window()->grabWindow();
    pointer.tap(middleOf(shown.item("searchButton")));
    QVERIFY(shown.terminal().tiles()->isSearching());
    for (const char* letter : {"letter-F", "letter-E", "letter-R"}) {
        shown.window()->grabWindow();
        QVERIFY(shown.item(letter) != nullptr);
        pointer.tap(middleOf(shown.item(letter)));
    }
    QCOMPARE(shown.text("searchText"), QString("FER…"));
    shown.window()->grabWindow();
    QVERIFY(shown.terminal().tiles()->count() < all);
    pointer.tap(middleOf(tilesIn(shown).first()));
    QCOMPARE(lastProduct(shown), QString("Adult 4"));
    pointer.tap(middleOf(shown.item("eraseLetter")));
    QCOMPARE(shown.text("searchText"), QString("FE…"));
    pointer.tap(middleOf(shown.item("searchButton")));
    QVERIFY(!shown.terminal().tiles()->isSearching());
    QCOMPARE(shown.terminal().tiles()->count(), all);
}

void TestTiles::aTabHasTheTilesOfItsZone()
{
    ScreenUnderTest shown(exampleFeed("coast-line"), "sell", {1280, 800});
    const QVariantList tabs = shown.terminal().tiles()->tabs();
    int zones = 0;
    for (int i = 0; i < tabs.size(); ++i) {
        const QVariantMap tab = tabs.at(i).toMap();
        if (tab.value("kind").toInt() != TileDesk::Zone)
            continue;
        ++zones;
        shown.terminal().tiles()->setTab(i);
        shown.window()->grabWindow();
        QCOMPARE(tilesIn(shown).size(), tab.value("count").toInt());
        for (const QQuickItem* tile : tilesIn(shown)) {
            const auto* product = qobject_cast<PassengerTypeItem*>(
                shown.terminal().grid()->itemFromRow(tile->property("tile").toInt()));
            QCOMPARE(product->toStopGroupId(), tab.value("zone").toInt());
        }
    }
    QCOMPARE(zones, 4);
}

void TestTiles::tilesThatAreNotSoldShowTheReason()
{
    ScreenUnderTest shown(lakeside(), "sell", {800, 480});
    const QVariantList notSold = shown.terminal().offers()->notSold();
    QVERIFY(!notSold.isEmpty());
    TileDesk* tiles = shown.terminal().tiles();
    tiles->setTab(tiles->tabs().size() - 1);
    QCOMPARE(tiles->kind(), TileDesk::NotSold);
    shown.window()->grabWindow();
    Pointer pointer(shown.window(), true);
    pointer.tap(middleOf(shown.item("notSoldLine")));
    const QVariantMap first = notSold.first().toMap();
    QCOMPARE(shown.text("toastText"), first["name"].toString() + ": " + first["reason"].toString());
    QCOMPARE(shown.terminal().basket()->rowCount(), 0);
}

void TestTiles::severalAtOnce_data() { aSearchFindsATileByLetters_data(); }

void TestTiles::severalAtOnce()
{
    QFETCH(bool, isTouch);
    ScreenUnderTest shown(exampleFeed("coast-line"), "sell", {800, 480});
    Pointer pointer(shown.window(), isTouch);
    shown.window()->grabWindow();
    pointer.hold(middleOf(tilesIn(shown).first()));
    QTRY_VERIFY(shown.item("padQuantity") != nullptr);
    QCOMPARE(shown.terminal().basket()->rowCount(), 0);
    shown.window()->grabWindow();
    QVERIFY(!shown.item("padConfirm")->isEnabled());
    pointer.tap(middleOf(shown.item("key-4")));
    QCOMPARE(shown.text("padQuantity"), QString("4"));
    QCOMPARE(shown.text("padTogether"), QString("€5.60"));
    pointer.tap(middleOf(shown.item("padConfirm")));
    QCOMPARE(shown.terminal().basket()->rowCount(), 4);
    QCOMPARE(shown.terminal().desk()->totalText(), QString("€5.60"));
}

void TestTiles::moreLikeALineOfTheBasket()
{
    ScreenUnderTest shown(exampleFeed("coast-line"), "sell", {1024, 600});
    QVERIFY(shown.terminal().desk()->add(1));
    shown.window()->grabWindow();
    Pointer pointer(shown.window(), true);
    pointer.hold(middleOf(shown.item("lineProduct")));
    QTRY_VERIFY(shown.item("padQuantity") != nullptr);
    shown.window()->grabWindow();
    pointer.tap(middleOf(shown.item("key-2")));
    pointer.tap(middleOf(shown.item("padConfirm")));
    QCOMPARE(shown.terminal().basket()->rowCount(), 3);
    QCOMPARE(lastProduct(shown), QString("Student 1"));
}

void TestTiles::theLastSaleAgain()
{
    ScreenUnderTest shown(exampleFeed("coast-line"), "sell", {1024, 600});
    QVERIFY(shown.item("repeatButton") == nullptr);
    auto& terminal = shown.terminal();
    for (const int row : {0, 1, 1})
        QVERIFY(terminal.desk()->add(row));
    QVERIFY(terminal.desk()->pay(rivo::sales::SalesDesk::Card));
    QTRY_COMPARE(terminal.basket()->rowCount(), 0);
    shown.restart();
    shown.window()->grabWindow();
    Pointer pointer(shown.window(), true);
    pointer.tap(middleOf(shown.item("repeatButton")));
    QCOMPARE(shown.terminal().basket()->rowCount(), 3);
    QCOMPARE(shown.terminal().desk()->totalText(), QString("€2.80"));
}

QTEST_MAIN(TestTiles)
#include "tst_tiles.moc"
