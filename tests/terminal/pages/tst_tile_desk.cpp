#include "ShortNames.h"
#include "Table.h"
#include "TextFit.h"
#include "TileDesk.h"
#include "WordSearch.h"

#include <PassengerTypeItem.h>
#include <PassengerTypesModel.h>

#include <QAbstractItemModelTester>
#include <QFontMetricsF>
#include <QSignalSpy>
#include <QtTest>

using namespace rivo::terminal;

namespace
{

using Details = QHash<int, QStringList>;

struct Product
{
    const char* passenger;
    const char* name;
    int to;
    double price = 1.0;
    int id = 1;
    bool hasExpired = false;
};

/// A desk over a grid of its own: passengers are columns, as they come.
struct Desk
{
    explicit Desk(const QVector<Product>& products) { layOut(products); }

    void layOut(const QVector<Product>& products)
    {
        tiles.clear();
        grid.clearData();
        QVector<sProduct> records;
        for (const Product& product : products) {
            sProduct record;
            record.passengerTypeId = 1;
            record.description = product.passenger;
            record.fareProductId = product.id;
            record.fareProductName = product.name;
            record.toStopGroupId = product.to;
            record.price = product.price;
            record.hasExpired = product.hasExpired;
            records.append(record);
        }
        grid.addItemsToModel(records);
        tiles.layOut();
    }

    /// "Adult A > 1 [mark]" of each tile that is shown.
    QStringList shown() const
    {
        QStringList texts;
        for (int row = 0; row < tiles.rowCount(); ++row) {
            const QModelIndex index = tiles.index(row);
            QString text = tiles.data(index, PassengerTypeItem::DescriptionRole).toString() + ' ' +
                           tiles.data(index, PassengerTypeItem::FareProductNameRole).toString() +
                           ' ' + tiles.data(index, TileDesk::ZonesRole).toString();
            const QString mark = tiles.data(index, TileDesk::MarkRole).toString();
            texts.append(mark.isEmpty() ? text : text + " [" + mark + ']');
        }
        return texts;
    }

    QStringList tabs() const
    {
        QStringList titles;
        for (const QVariant& tab : tiles.tabs())
            titles.append(tab.toMap()["title"].toString() + ' ' + tab.toMap()["count"].toString());
        return titles;
    }

    QObject prototypes;
    PassengerTypesModel grid{&prototypes};
    QVector<int> zonesAhead{3, 2};
    QHash<int, QStringList> detailsOfProducts;
    int origin = 1;
    TileDesk tiles{grid,
                   {[](int zone) { return zone == 0 ? QString() : QString("Z%1").arg(zone); },
                    [](int from, int to) { return QString("%1>%2").arg(from).arg(to); },
                    [](double units) { return qRound64(units * 100); },
                    [this](const PassengerTypeItem&) { return origin; },
                    [this](const PassengerTypeItem& tile, int) {
                        return detailsOfProducts.value(tile.fareProductId());
                    },
                    [this] { return zonesAhead; }}};
};

const sProduct placeholder;

} // namespace

Q_DECLARE_METATYPE(Details)

class TileDeskTest : public QObject
{
    Q_OBJECT

private slots:
    void tilesThatLookAlikeGetMarks_data();
    void tilesThatLookAlikeGetMarks();
    void tabsAreInTheOrderOfTheTrip();
    void aTabShowsItsTiles();
    void theTabStaysWhenTheGridIsLaidOut();
    void whatIsSoldOftenComesFirst();
    void theFirstTab();
    void placeholdersKeepTheColumnsOfTheGrid();
    void searches_data();
    void searches();
    void aSearchEnds();
    void changesOfTilesAreReported();
    void theTesterFindsNoFault();

    void shortNames_data();
    void shortNames();
    void fittedTexts();
    void words();
};

void TileDeskTest::tilesThatLookAlikeGetMarks_data()
{
    const Table<Details, QVector<int>, QStringList> row("details", "ids", "shown");
    row("different media", Details{{1, {"paper", "route 1"}}, {2, {"card", "route 2"}}}, {1, 2},
        {"Adult Single 1>2 [paper]", "Adult Single 1>2 [card]"});
    row("equal media are left out", Details{{1, {"paper", "route 1"}}, {2, {"paper", "route 2"}}},
        {1, 2}, {"Adult Single 1>2 [route 1]", "Adult Single 1>2 [route 2]"});
    row("two details, if one is not enough",
        Details{{1, {"paper", "route 1"}}, {2, {"paper", "route 2"}}, {3, {"card", "route 2"}}},
        {1, 2, 3},
        {"Adult Single 1>2 [paper · route 1]", "Adult Single 1>2 [paper · route 2]",
         "Adult Single 1>2 [card · route 2]"});
    row("they do not differ in any detail", Details{{1, {"paper"}}}, {1, 1},
        {"Adult Single 1>2 [(1)]", "Adult Single 1>2 [(2)]"});
    row("nothing is known", {}, {1, 1}, {"Adult Single 1>2 [(1)]", "Adult Single 1>2 [(2)]"});
    row("one tile needs none", Details{{1, {"paper"}}}, {1}, {"Adult Single 1>2"});
}

void TileDeskTest::tilesThatLookAlikeGetMarks()
{
    QFETCH(QVector<int>, ids);
    Desk desk({});
    QFETCH(Details, details);
    desk.detailsOfProducts = details;
    QVector<Product> products;
    for (const int id : ids)
        products.append({"Adult", "Single", 2, 1.0, id});
    desk.layOut(products);
    QTEST(desk.shown(), "shown");
}

void TileDeskTest::tabsAreInTheOrderOfTheTrip()
{
    Desk desk({{"Adult", "A", 1},
               {"Adult", "B", 2},
               {"Child", "B", 2},
               {"Adult", "C", 3},
               {"Adult", "D", 0},
               {"Adult", "E", 5, 1.0, 1, true}});
    QCOMPARE(desk.tabs(), QStringList({"All 6", "Z3 1", "Z2 2", "Anywhere 1", "Z1 1", "Z5 1"}));
    desk.zonesAhead.clear();
    desk.tiles.setNotSold(4);
    desk.tiles.layOut();
    QCOMPARE(desk.tabs(),
             QStringList({"All 6", "Anywhere 1", "Z1 1", "Z2 2", "Z3 1", "Z5 1", "Not now 4"}));
    desk.tiles.setTab(6);
    QCOMPARE(desk.shown(), QStringList());
    desk.layOut({{"Adult", "A", 1}});
    QCOMPARE(desk.tabs(), QStringList({"All 1", "Not now 4"})); // one zone needs no tab
    Desk empty({});
    QCOMPARE(empty.tabs(), QStringList("All 0"));
}

void TileDeskTest::aTabShowsItsTiles()
{
    Desk desk({{"Adult", "A", 1}, {"Adult", "B", 2}, {"Child", "B", 2}});
    QSignalSpy tab(&desk.tiles, &TileDesk::tabChanged);
    QSignalSpy tiles(&desk.tiles, &TileDesk::tilesChanged);
    desk.tiles.setTab(1);
    QCOMPARE(desk.shown(), QStringList({"Adult B 1>2", "Child B 1>2"}));
    QCOMPARE(desk.tiles.data(desk.tiles.index(0), TileDesk::TileRole).toInt(), 1);
    QCOMPARE(tab.size(), 1);
    QCOMPARE(tiles.size(), 1);
    for (const int ignored : {1, -1, 3})
        desk.tiles.setTab(ignored);
    QCOMPARE(desk.tiles.tab(), 1);
    QCOMPARE(tab.size(), 1);
    QCOMPARE(tiles.size(), 1);
}

void TileDeskTest::theTabStaysWhenTheGridIsLaidOut()
{
    Desk desk({{"Adult", "A", 1}, {"Adult", "B", 2}, {"Adult", "C", 3}});
    desk.tiles.setTab(2); // zone 2
    desk.zonesAhead = {2};
    desk.layOut({{"Adult", "B", 2}, {"Adult", "C", 3}});
    QCOMPARE(desk.tiles.tab(), 1);
    QCOMPARE(desk.shown(), QStringList("Adult B 1>2"));
    desk.layOut({{"Adult", "A", 1}, {"Adult", "C", 3}});
    QCOMPARE(desk.tiles.kind(), TileDesk::All); // nothing leads there any more
    QCOMPARE(desk.shown(), QStringList({"Adult A 1>1", "Adult C 1>3"}));
}

void TileDeskTest::whatIsSoldOftenComesFirst()
{
    const QVector<Product> products{{"Adult", "A", 1},
                                    {"Adult", "B", 2},
                                    {"Child", "B", 2},
                                    {"Adult", "C", 3},
                                    {"Adult", "D", 4, 1.0, 1, true}};
    Desk desk(products);
    desk.tiles.setTab(2); // zone 2
    desk.tiles.countSold("Child", "B", 2);
    QCOMPARE(desk.tabs().first(), QString("Often 1"));
    QCOMPARE(desk.tiles.kind(), TileDesk::Zone); // the tab that is shown stays
    desk.tiles.countSold("Adult", "C", 3, 2);
    desk.tiles.countSold("Adult", "D", 4, 9); // has expired
    desk.tiles.countSold("Adult", "C", 9, 9); // leads elsewhere
    desk.tiles.setTab(0);
    QCOMPARE(desk.shown(), QStringList({"Adult C 1>3", "Child B 1>2"}));
    desk.tiles.countSold("Child", "B", 2, 5);
    QCOMPARE(desk.shown().first(), QString("Adult C 1>3")); // nothing moves under the finger
    desk.layOut(products);
    QCOMPARE(desk.tiles.kind(), TileDesk::Often);
    QCOMPARE(desk.shown(), QStringList({"Child B 1>2", "Adult C 1>3"}));
    desk.layOut({{"Adult", "A", 1}});
    QCOMPARE(desk.tiles.kind(), TileDesk::All);
}

void TileDeskTest::theFirstTab()
{
    Desk desk({{"Adult", "A", 1}, {"Adult", "B", 2}, {"Child", "B", 2}});
    desk.tiles.showFirstTab(2);
    QCOMPARE(desk.tiles.kind(), TileDesk::All);
    desk.tiles.countSold("Child", "B", 2);
    desk.tiles.showFirstTab(3);
    QCOMPARE(desk.tiles.kind(), TileDesk::All);
    desk.tiles.showFirstTab(2);
    QCOMPARE(desk.tiles.kind(), TileDesk::Often);
}

void TileDeskTest::placeholdersKeepTheColumnsOfTheGrid()
{
    Desk desk({});
    desk.tiles.clear();
    sProduct product;
    product.description = "Adult";
    product.fareProductName = "A";
    product.hasExpired = false;
    desk.grid.addItemsToModel({placeholder, product});
    desk.tiles.layOut();
    QCOMPARE(desk.tiles.count(), 2);
    QSignalSpy spy(&desk.tiles, &TileDesk::keepsLayoutChanged);
    desk.tiles.setKeepsLayout(false);
    QCOMPARE(desk.shown(), QStringList("Adult A 1>0"));
    desk.tiles.setKeepsLayout(false);
    QCOMPARE(spy.size(), 1);
    desk.tiles.setKeepsLayout(true);
    QCOMPARE(desk.tiles.count(), 2);
}

void TileDeskTest::searches_data()
{
    const Table<QString, QStringList, QString> row("search", "shown", "letters");
    const QStringList all{"Adult Żabno 1>2", "Child Zebra 1>2", "Child Day 1>3"};
    row("nothing entered", "", all, "123ACDZ");
    row("a letter without its accent", "Z", QStringList(all.mid(0, 2)), "AE");
    row("lower case", "ze", QStringList(all.mid(1, 1)), "B");
    row("a passenger", "CHILD", QStringList(all.mid(1)), "");
    row("a zone", "3", QStringList(all.mid(2)), "");
    row("not inside of a word", "BRA", {}, "");
}

void TileDeskTest::searches()
{
    QFETCH(QString, search);
    Desk desk({{"Adult", "Żabno", 2}, {"Child", "Zebra", 2}, {"Child", "Day", 3}});
    desk.tiles.setSearch("A"); // no search yet
    QCOMPARE(desk.tiles.search(), QString());
    QCOMPARE(desk.tiles.letters(), QStringList());
    desk.tiles.setSearching(true);
    desk.tiles.setSearch(search);
    QTEST(desk.shown(), "shown");
    QTEST(desk.tiles.letters().join(""), "letters");
}

void TileDeskTest::aSearchEnds()
{
    Desk desk({{"Adult", "A", 1}, {"Adult", "B", 2}});
    QSignalSpy spy(&desk.tiles, &TileDesk::searchChanged);
    desk.tiles.setSearching(true);
    desk.tiles.setSearching(true);
    QCOMPARE(spy.size(), 1);
    desk.tiles.setSearch("B");
    desk.tiles.setSearch("B");
    QCOMPARE(spy.size(), 2);
    QCOMPARE(desk.tiles.count(), 1);
    desk.tiles.setSearching(false);
    QCOMPARE(spy.size(), 3);
    QCOMPARE(desk.tiles.count(), 2);
    desk.tiles.setSearching(true);
    QCOMPARE(desk.tiles.search(), QString());
    desk.tiles.setTab(0);
    QCOMPARE(desk.tiles.isSearching(), false);
    QCOMPARE(spy.size(), 5);
}

void TileDeskTest::changesOfTilesAreReported()
{
    Desk desk({{"Adult", "A", 1}, {"Adult", "B", 2}, {"Adult", "C", 2}});
    desk.tiles.setTab(1); // zone 2
    QSignalSpy spy(&desk.tiles, &QAbstractItemModel::dataChanged);
    desk.grid.setSelected(0, true);
    QCOMPARE(spy.size(), 0);
    desk.grid.setSelected(2, true);
    QCOMPARE(spy.size(), 1);
    QCOMPARE(spy.first().first().toModelIndex().row(), 1);
    QCOMPARE(desk.tiles.data(desk.tiles.index(1), PassengerTypeItem::SelectedRole).toBool(), true);
    desk.origin = 7;
    desk.tiles.nameZones();
    QCOMPARE(spy.size(), 2);
    QCOMPARE(desk.shown().first(), QString("Adult B 7>2"));
}

void TileDeskTest::theTesterFindsNoFault()
{
    Desk desk({});
    const QAbstractItemModelTester tester(&desk.tiles,
                                          QAbstractItemModelTester::FailureReportingMode::QtTest);
    desk.tiles.nameZones();
    desk.layOut({{"Adult", "A", 1}, {"Adult", "B", 2}});
    desk.tiles.setTab(1);
    desk.tiles.setSearching(true);
    desk.tiles.setSearch("A");
    desk.grid.setSelected(0, true);
    desk.layOut({});
    QCOMPARE(desk.tiles.data({}, TileDesk::TileRole), QVariant());
    QCOMPARE(desk.tiles.rowCount(), 0);
    QCOMPARE(desk.tiles.roleNames().value(TileDesk::MarkRole), QByteArray("mark"));
}

void TileDeskTest::shortNames_data()
{
    const Table<QStringList, int, QStringList> row("names", "letters", "shortened");
    row("short enough", {"Single A"}, 8, {"Single A"});
    row("different at the begin", {"Adult single", "Child single"}, 6, {"Adult…", "Child…"});
    row("different at the end", {"Single to Northend", "Single to Southend"}, 10,
        {"Sin…rthend", "Sin…uthend"});
    row("different in the middle",
        {"Single via zone A with change", "Single via zone B with change"}, 14,
        {"Sing…e A with…", "Sing…e B with…"});
    row("one continues the other", {"Single to town", "Single to town and back"}, 10,
        {"Sin…o town", "Sin…d back"});
    row("alone", {"Single to town"}, 7, {"Single…"});
    row("no letter is torn from its accent", QStringList{QString::fromUtf8("abcde\u0301fgh")}, 6,
        {"abcd…"});
}

void TileDeskTest::shortNames()
{
    QFETCH(QStringList, names);
    QFETCH(int, letters);
    const ShortNames shortNames(names);
    QStringList shortened;
    for (const QString& name : names)
        shortened.append(shortNames.shortened(name, letters));
    QTEST(shortened, "shortened");
}

void TileDeskTest::fittedTexts()
{
    QFont font;
    font.setPixelSize(20);
    const ShortNames names({"Single Northend", "Single Southend"});
    const QFontMetricsF metrics(font);
    const double wide = metrics.horizontalAdvance("Single Northend") + 4;
    const double narrow = metrics.horizontalAdvance("Northend") + 4;
    const double line = std::ceil(metrics.height()) + 1;
    const auto fit = [&](const QString& text, double width, double height) {
        const FittedText found = fitted(text, {width, height}, font, 14, names);
        return QString("%1 %2").arg(found.text).arg(found.pixelSize);
    };
    QCOMPARE(fit("Single Northend", wide, line), QString("Single Northend 20"));
    QCOMPARE(fit("Single Northend", narrow, 2 * line), QString("Single Northend 20"));
    // Smaller before a word is torn.
    QCOMPARE(fit("Single Northend", narrow * 0.75, 2 * line), QString("Single Northend 15"));
    // Torn before something is left out.
    QCOMPARE(fit("Single Northend", narrow * 0.5, 5 * line), QString("Single Northend 14"));
    const QString north = fit("Single Northend", narrow * 0.9, line * 0.8);
    const QString south = fit("Single Southend", narrow * 0.9, line * 0.8);
    QVERIFY2(north.contains(QChar(0x2026)) && north != south, qPrintable(north + south));
    QCOMPARE(fit("", wide, line), QString(" 20"));

    Desk desk({{"Adult", "Single Northend", 1}});
    const QVariantMap shown = desk.tiles.fit("Single Northend", wide, line, 20, 14, QFont::Normal);
    QCOMPARE(shown["text"].toString(), QString("Single Northend"));
    QCOMPARE(shown["pixelSize"].toInt(), 20);
}

void TileDeskTest::words()
{
    QCOMPARE(searchableWords("Żabno (night)-bus 12 "),
             QStringList({"ZABNO", "NIGHT", "BUS", "12"}));
    QCOMPARE(searchableWords("…"), QStringList());
    QCOMPARE(nextLetters({"AB", "AC", "AB", "B", "A"}, "A"), QStringList({"B", "C"}));
    QVERIFY(hasWord({"AB"}, "A"));
    QVERIFY(!hasWord({"AB"}, "B"));
}

QTEST_MAIN(TileDeskTest)
#include "tst_tile_desk.moc"
