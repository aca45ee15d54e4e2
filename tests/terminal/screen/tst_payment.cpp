#include "PageTest.h"
#include "Pointer.h"

using rivo::feed::Feed;

namespace
{

/// Francs, which have no coin of less than 0.05; the first tile costs 1.42.
Feed feedInFrancs()
{
    Feed feed = exampleFeed("coast-line");
    feed.currency = "CHF";
    for (auto& product : feed.products)
        product.price = 1.42;
    return feed;
}

} // namespace

/// What the driver sees while a sale is paid: what is due, given and given back.
class TestPayment : public PageTest
{
    Q_OBJECT

public:
    TestPayment() : PageTest({{800, 480}, {1024, 600}, {1280, 800}}) {}

private slots:
    void twoTapsSellExactly();
    void oneTapGivesANote();
    void commonNotesCanBeReached();
    void theKeypadTakesAnAmount();
    void keysHearQuickPresses_data();
    void keysHearQuickPresses();
    void quickAmountsFillThePad();
    void tooLittleCannotBePaid();
    void aCancelledPaymentSellsNothing();
    void cashIsRounded();
    void aCardPaysTheExactAmount();
    void whatWasPaidStaysUntilTheNextTicket();
    void noAmountIsCut_data();
    void noAmountIsCut();

private:
    void showFeed(const Feed& feed) { show(feed, "sell"); }
    void tapTile();
    QVariantMap lastSale() { return desk().lastSale(); }
    void tapQuickAmount(const QString& text);
};

void TestPayment::tapTile()
{
    m_shown->tap(m_shown->item("productText"));
    m_shown->window()->grabWindow();
}

void TestPayment::tapQuickAmount(const QString& text)
{
    const auto buttons = m_shown->all("quickAmount");
    const auto found = std::find_if(buttons.rbegin(), buttons.rend(), [&](QQuickItem* button) {
        return button->property("text").toString() == text;
    });
    QVERIFY2(found != buttons.rend(), qPrintable(m_shown->texts("quickAmount").join(", ")));
    m_shown->tap(*found);
}

void TestPayment::twoTapsSellExactly()
{
    showFeed(exampleFeed("coast-line"));
    tapTile();
    m_shown->tap("payCash");
    QCOMPARE(lastSale()["given"].toDouble(), lastSale()["paid"].toDouble());
    QCOMPARE(m_shown->text("paidText"), lastSale()["paidText"].toString());
    QCOMPARE(m_shown->all("changeText").size(), 0);
    QCOMPARE(m_shown->all("roundingText").size(), 0);
}

void TestPayment::oneTapGivesANote()
{
    showFeed(exampleFeed("coast-line"));
    tapTile();
    tapQuickAmount("€5");
    QCOMPARE(lastSale()["given"].toDouble(), 500.0);
    QCOMPARE(m_shown->text("paidText"), QString("€1.40"));
    QCOMPARE(m_shown->text("givenText"), QString("€5.00"));
    QCOMPARE(m_shown->text("changeText"), QString("€3.60"));
}

/// The next notes are on the page, those that passengers have all the same in the pad.
void TestPayment::commonNotesCanBeReached()
{
    Feed feed = exampleFeed("coast-line");
    for (auto& product : feed.products)
        product.price = 2.1;
    showFeed(feed);
    tapTile();
    const auto buttons = m_shown->texts("quickAmount");
    QCOMPARE(buttons.mid(0, 2), QStringList({"€5", "€10"}));
    m_shown->tap("givenButton");
    QTRY_COMPARE(m_shown->all("padDue").size(), 1);
    QCOMPARE(m_shown->texts("quickAmount").mid(buttons.size()),
             QStringList({"€2.10", "€2.50", "€3", "€4", "€5", "€10", "€20", "€50"}));
    QVERIFY(m_shown->window()->grabWindow().save(
        QString(PICTURES "/notes-pad-%1x%2.png").arg(m_size.width()).arg(m_size.height())));
    tapQuickAmount("€50");
    QTRY_COMPARE(m_shown->text("padChange"), QString("€47.90"));
    m_shown->tap("padCancel");
    QTRY_COMPARE(m_shown->all("padDue").size(), 0);
    QVERIFY(m_shown->window()->grabWindow().save(
        QString(PICTURES "/notes-page-%1x%2.png").arg(m_size.width()).arg(m_size.height())));
}

void TestPayment::theKeypadTakesAnAmount()
{
    showFeed(exampleFeed("coast-line"));
    tapTile();
    m_shown->tap("givenButton");
    QTRY_COMPARE(m_shown->text("padDue"), QString("€1.40"));
    for (const char* key : {"key-0", "key-2", "key-7", "eraseKey", "key-00"})
        m_shown->tap(key);
    QTRY_COMPARE(m_shown->text("padGiven"), QString("€2.00"));
    QCOMPARE(m_shown->text("padChange"), QString("€0.60"));
    QCOMPARE(m_shown->text("padPieces"), QString("€0.50 + €0.10"));
    m_shown->tap("padConfirm");
    QTRY_COMPARE(m_shown->text("changeText"), QString("€0.60"));
    QCOMPARE(lastSale()["given"].toDouble(), 200.0);
    QCOMPARE(m_shown->all("padConfirm").size(), 0);
}

void TestPayment::keysHearQuickPresses_data()
{
    QTest::addColumn<bool>("isTouch");
    QTest::newRow("by mouse") << false;
    QTest::newRow("by touch") << true;
}

void TestPayment::keysHearQuickPresses()
{
    QFETCH(bool, isTouch);
    showFeed(exampleFeed("coast-line"));
    tapTile();
    m_shown->tap("givenButton");
    QTRY_COMPARE(m_shown->all("key-1").size(), 1);
    QTest::qWait(200); // the panel comes to rest
    m_shown->window()->grabWindow();
    Pointer pointer(m_shown->window(), isTouch);
    for (int press = 0; press < 6; ++press)
        pointer.tap(middleOf(m_shown->item("key-1")));
    QCOMPARE(m_shown->text("padGiven"), QString("€1,111.11"));
    for (int press = 0; press < 4; ++press)
        pointer.tap(middleOf(m_shown->item("eraseKey")));
    QCOMPARE(m_shown->text("padGiven"), QString("€0.11"));
}

void TestPayment::quickAmountsFillThePad()
{
    showFeed(exampleFeed("coast-line"));
    tapTile();
    m_shown->tap("givenButton");
    QTRY_COMPARE(m_shown->all("padDue").size(), 1);
    tapQuickAmount("€1.40");
    QTRY_COMPARE(m_shown->text("padChange"), QString("€0.00"));
    tapQuickAmount("€10");
    QTRY_COMPARE(m_shown->text("padChange"), QString("€8.60"));
    m_shown->tap("eraseKey");
    QTRY_COMPARE(m_shown->text("padGiven"), QString("€1.00"));
    QVERIFY(lastSale().isEmpty());
}

void TestPayment::tooLittleCannotBePaid()
{
    showFeed(exampleFeed("coast-line"));
    tapTile();
    m_shown->tap("givenButton");
    QTRY_COMPARE(m_shown->all("padConfirm").size(), 1);
    QVERIFY(!m_shown->item("padConfirm")->isEnabled());
    m_shown->tap("key-1");
    m_shown->tap("key-00");
    QTRY_COMPARE(m_shown->text("padGiven"), QString("€1.00"));
    QVERIFY(!m_shown->item("padConfirm")->isEnabled());
    QCOMPARE(m_shown->text("padChange"), QString("–"));
    m_shown->tap("padConfirm");
    QVERIFY(lastSale().isEmpty());
    QCOMPARE(m_shown->all("padConfirm").size(), 1);
}

void TestPayment::aCancelledPaymentSellsNothing()
{
    showFeed(exampleFeed("coast-line"));
    tapTile();
    m_shown->tap("givenButton");
    m_shown->tap("key-9");
    m_shown->tap("padCancel");
    QTRY_COMPARE(m_shown->all("padCancel").size(), 0);
    QVERIFY(lastSale().isEmpty());
    QCOMPARE(m_shown->terminal().basket()->rowCount(), 1);
    m_shown->tap("givenButton");
    QTRY_COMPARE(m_shown->text("padGiven"), QString("€0.00")); // each begins anew
}

void TestPayment::cashIsRounded()
{
    showFeed(feedInFrancs());
    tapTile();
    QVERIFY(m_shown->text("totalText").contains("1.42"));
    QVERIFY(m_shown->text("dueText").contains("1.40"));
    m_shown->tap("givenButton");
    QTRY_VERIFY(m_shown->text("padDue").contains("1.40"));
    QVERIFY(m_shown->text("padRounding").startsWith(QString::fromUtf8("−")));
    QVERIFY(m_shown->text("padRounding").contains("0.02"));
    m_shown->tap("key-2");
    m_shown->tap("key-00");
    m_shown->tap("padConfirm");
    QTRY_VERIFY(m_shown->text("paidText").contains("1.40"));
    QVERIFY(m_shown->text("roundingText").contains("0.02"));
    QVERIFY(m_shown->text("changeText").contains("0.60"));
}

void TestPayment::aCardPaysTheExactAmount()
{
    showFeed(feedInFrancs());
    tapTile();
    m_shown->tap("payCard");
    QTRY_VERIFY(m_shown->text("paidText").contains("1.42"));
    QCOMPARE(m_shown->all("roundingText").size(), 0);
}

void TestPayment::whatWasPaidStaysUntilTheNextTicket()
{
    showFeed(exampleFeed("coast-line"));
    tapTile();
    const QPoint cash = middleOf(m_shown->item("payCash"));
    Pointer pointer(m_shown->window(), false);
    for (int press = 0; press < 3; ++press) // too many presses hide nothing
        pointer.tap(cash);
    QTRY_COMPARE(m_shown->terminal().basket()->rowCount(), 0);
    m_shown->tap("nav-devices");
    m_shown->tap("nav-sell");
    QTRY_COMPARE(m_shown->text("paidText"), QString("€1.40"));
    tapTile();
    QCOMPARE(m_shown->all("paidText").size(), 0);
    QCOMPARE(m_shown->text("totalText"), QString("€1.40"));
    m_shown->tap("payCard");
    m_shown->tap("paidSale");
    QTRY_COMPARE(m_shown->all("paidText").size(), 0);
}

void TestPayment::noAmountIsCut_data()
{
    QTest::addColumn<QString>("currency");
    QTest::addColumn<double>("price");
    QTest::newRow("euro") << "EUR" << 99.99;
    QTest::newRow("francs") << "CHF" << 99.99;
    QTest::newRow("forints") << "HUF" << 12345.0;
    QTest::newRow("yen") << "JPY" << 9999.0;
}

void TestPayment::noAmountIsCut()
{
    QFETCH(QString, currency);
    QFETCH(double, price);
    Feed feed = exampleFeed("coast-line");
    feed.currency = currency;
    for (auto& product : feed.products)
        product.price = price;
    showFeed(feed);
    const auto nothingIsCut = [this] {
        m_shown->window()->grabWindow();
        int amounts = 0;
        for (const char* name : {"totalText", "dueText", "paidText", "givenText", "changeText",
                                 "padDue", "padGiven", "padChange"}) {
            for (const QQuickItem* item : m_shown->all(name)) {
                ++amounts;
                QVERIFY2(!item->property("truncated").toBool(), name);
                QVERIFY2(item->x() >= 0, name);
            }
        }
        QVERIFY(amounts > 0);
        for (const QQuickItem* button : m_shown->all("quickAmount"))
            QVERIFY2(button->implicitWidth() <= button->width() + 2, // whole pixels
                     qPrintable(button->property("text").toString()));
    };
    tapTile();
    nothingIsCut();
    m_shown->tap("givenButton");
    QTRY_COMPARE(m_shown->all("padDue").size(), 1);
    for (int i = 0; i < 7; ++i)
        m_shown->tap("key-9");
    nothingIsCut();
    m_shown->tap("padConfirm");
    QTRY_COMPARE(m_shown->all("changeText").size(), 1);
    nothingIsCut();
}

QTEST_MAIN(TestPayment)
#include "tst_payment.moc"
