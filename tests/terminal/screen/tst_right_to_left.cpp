#include "PageTest.h"

#include <PassengerTypeItem.h>

#include <QTextLayout>

using rivo::feed::Feed;

namespace
{

/// Arabic and Hebrew in turn, and each with letters and digits of Europe.
const QStringList names{QString::fromUtf8("تذكرة مفردة"),
                        QString::fromUtf8("כרטיס יומי"),
                        QString::fromUtf8("المحطة المركزية"),
                        QString::fromUtf8("תחנה מרכזית 12"),
                        QString::fromUtf8("الميناء 3"),
                        QString::fromUtf8("נמל Port"),
                        QString::fromUtf8("بالغ"),
                        QString::fromUtf8("ילד (עד 15)")};

/// As a careless export writes them: each turns all that follows.
QString withMarks(const QString& name, int n)
{
    static const QVector<int> marks{0x200f, 0x202e, 0x202b, 0x2067};
    return QChar(marks.at(n % marks.size())) + name;
}

Feed feedFromRightToLeft(bool hasMarks)
{
    Feed feed = exampleFeed("coast-line");
    int n = 0;
    const auto next = [&] {
        const QString number = n < names.size() ? QString() : QString(" %1").arg(n);
        const QString name = names.at(n % names.size()) + number;
        ++n;
        return hasMarks ? withMarks(name, n) : name;
    };
    QMap<QString, QString> renamed;
    const auto rename = [&](QString& text) {
        if (!renamed.contains(text))
            renamed.insert(text, next());
        text = renamed.value(text);
    };
    for (auto& product : feed.products) {
        rename(product.description);
        rename(product.fareProductName);
    }
    for (auto& zone : feed.network.zones)
        rename(zone.name);
    for (auto& route : feed.network.routes) {
        rename(route.shortName);
        rename(route.longName);
    }
    for (auto& trip : feed.network.trips)
        rename(trip.headsign);
    for (auto& stop : feed.network.stops)
        rename(stop.name);
    return feed;
}

/// Where letters of the text are drawn on its line.
QVector<double> placesOf(const QString& text, const QVector<int>& letters)
{
    QTextLayout layout(text);
    layout.beginLayout();
    QTextLine line = layout.createLine();
    layout.endLayout();
    QVector<double> places;
    for (const int letter : letters)
        places.append(line.cursorToX(letter));
    return places;
}

} // namespace

/// Names that are written from right to left, with and without the marks that say so.
class TestRightToLeft : public PageTest
{
    Q_OBJECT

public:
    TestRightToLeft() : PageTest({{800, 480}, {1024, 600}, {1280, 800}}) {}

private slots:
    void amountsAreWhole_data() { marks(); }
    void amountsAreWhole();
    void marksChangeNothing();
    void arrowsPointToTheDestination_data();
    void arrowsPointToTheDestination();
    void discountsAreReadFromLeftToRight_data();
    void discountsAreReadFromLeftToRight();

protected:
    void start() override { show(feedFromRightToLeft(false), "sell"); }

private:
    static void marks()
    {
        QTest::addColumn<bool>("hasMarks");
        QTest::newRow("names without marks") << false;
        QTest::newRow("names with marks") << true;
    }
    /// The page with tickets in the basket.
    void takePicture(bool hasMarks, QImage& picture)
    {
        show(feedFromRightToLeft(hasMarks), "sell");
        for (int tile = 0; tile < 3; ++tile)
            desk().add(tile);
        QTRY_VERIFY(m_shown->all("linePrice").size() > 0);
        QTest::qWait(300); // the list of the basket comes to rest
        picture = m_shown->window()->grabWindow();
    }
};

void TestRightToLeft::amountsAreWhole()
{
    QFETCH(bool, hasMarks);
    QImage picture;
    takePicture(hasMarks, picture);
    QVERIFY(picture.save(
        QString(PICTURES "/right-to-left-%1x%2.png").arg(m_size.width()).arg(m_size.height())));
    const auto* presentation = m_shown->terminal().presentation();
    int prices = 0;
    for (const QString& name : {QString("priceText"), QString("linePrice"), QString("totalText")}) {
        for (QQuickItem* text : m_shown->all(name)) {
            const QString shown = text->property("text").toString();
            QVERIFY2(shown.startsWith(QString::fromUtf8("€")), qPrintable(shown));
            QVERIFY2(!text->property("truncated").toBool(), qPrintable(shown));
            QVERIFY2(text->property("contentWidth").toDouble() <= text->width() + 1,
                     qPrintable(shown));
            ++prices;
        }
    }
    QVERIFY2(prices > 5, qPrintable(QString::number(prices)));
    const auto* first =
        qobject_cast<PassengerTypeItem*>(m_shown->terminal().grid()->itemFromRow(0));
    QVERIFY(m_shown->texts("priceText").contains(presentation->priceText(first->price())));
}

void TestRightToLeft::marksChangeNothing()
{
    QImage without;
    QImage with;
    takePicture(false, without);
    takePicture(true, with);
    QVERIFY(!without.isNull());
    QCOMPARE(with, without);
}

void TestRightToLeft::arrowsPointToTheDestination_data()
{
    QTest::addColumn<QString>("origin");
    QTest::addColumn<QString>("destination");
    QTest::newRow("both from right to left") << names.at(2) << names.at(3);
    QTest::newRow("the origin") << names.at(2) << "Port";
    QTest::newRow("the destination") << "Port" << names.at(3);
    QTest::newRow("with digits") << names.at(4) << names.at(3);
}

/// Texts are read from left to right here, whatever the names are.
void TestRightToLeft::arrowsPointToTheDestination()
{
    QFETCH(QString, origin);
    QFETCH(QString, destination);
    const QString text =
        m_shown->terminal().presentation()->zonesText(origin, destination) + " · 17";
    const QVector<double> places =
        placesOf(text, {text.indexOf(origin) + 1, text.indexOf(QString::fromUtf8("→")),
                        text.lastIndexOf(destination) + 1, text.lastIndexOf("17")});
    QVERIFY2(std::is_sorted(places.begin(), places.end()), qPrintable(text));
}

void TestRightToLeft::discountsAreReadFromLeftToRight_data()
{
    QTest::addColumn<QString>("passenger");
    QTest::newRow("from left to right") << "Student";
    QTest::newRow("from right to left") << names.at(2);
    QTest::newRow("with digits") << names.at(4);
    QTest::newRow("with a place for a number") << "%2 of %1";
}

void TestRightToLeft::discountsAreReadFromLeftToRight()
{
    QFETCH(QString, passenger);
    const QString text = m_shown->terminal().presentation()->withDiscount(passenger, 50.0);
    const int discount = text.lastIndexOf(QString::fromUtf8("−50%"));
    QVERIFY2(discount > 0 && text.contains(passenger), qPrintable(text));
    const QVector<double> places =
        placesOf(text, {text.indexOf(passenger) + 1, discount, discount + 1, discount + 3});
    QVERIFY2(std::is_sorted(places.begin(), places.end()), qPrintable(text));
}

QTEST_MAIN(TestRightToLeft)
#include "tst_right_to_left.moc"
