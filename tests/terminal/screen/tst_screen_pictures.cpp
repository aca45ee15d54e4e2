#include "Table.h"

#include "../ScreenUnderTest.h"

#include <QDir>
#include <QImage>
#include <QSet>
#include <QTranslator>
#include <QtTest>

/// Every page in every size, by day and by night, as pictures to look at.
class TestScreenPictures : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        prepareScreens();
        QCoreApplication::setApplicationVersion(RIVO_VERSION);
        QVERIFY(QDir().mkpath(PICTURES));
        m_complaints = std::make_unique<Complaints>();
    }
    void cleanupTestCase() { m_complaints.reset(); }

    void pageIsDrawn_data();
    void pageIsDrawn();

private:
    static void keepPicture(ScreenUnderTest& shown, const QString& what);

    std::unique_ptr<Complaints> m_complaints;
};

void TestScreenPictures::pageIsDrawn_data()
{
    addColumns<QString, QSize, QString, bool>("feed", "size", "language", "night");
    const auto add = [](const QString& feed, const QSize& size, const QString& language) {
        for (const bool night : {false, true}) {
            const QString name = QString("%1-%2x%3-%4%5")
                                     .arg(feed)
                                     .arg(size.width())
                                     .arg(size.height())
                                     .arg(language, night ? "-night" : "");
            QTest::newRow(qPrintable(name)) << feed << size << language << night;
        }
    };
    for (const QSize size : {QSize(800, 480), QSize(1024, 600), QSize(1280, 800)})
        add("coast-line", size, "en");
    add("coast-line", {1280, 800}, "de");
    add("hill-valley", {800, 480}, "de");
}

void TestScreenPictures::pageIsDrawn()
{
    QFETCH(QString, feed);
    QFETCH(QSize, size);
    QFETCH(QString, language);
    QFETCH(bool, night);
    QTranslator translator;
    QVERIFY(translator.load(":/i18n/rivo-terminal_" + language));
    QCoreApplication::installTranslator(&translator);
    ScreenUnderTest shown(
        exampleFeed(feed), "sell", size,
        [&](rivo::terminal::Terminal::Settings& settings) { settings.night = night; });
    auto* desk = shown.terminal().desk();
    if (desk->obstacle().isEmpty()) {
        for (const int row : {0, 1, 4})
            desk->add(row);
        QVERIFY(desk->pay(rivo::sales::SalesDesk::Cash));
        QTRY_COMPARE(desk->state(), rivo::sales::SalesDesk::Selling);
    }
    for (const int row : {0, 0, 5, 9}) {
        if (desk->add(row))
            shown.terminal().grid()->setSelected(row, true);
    }
    for (const char* page : {"sell", "products", "zreport", "fleet", "devices", "settings"}) {
        shown.tap(shown.item(QString("nav-") + page));
        QTest::qWait(250); // map and lists settle
        keepPicture(shown, page);
    }
    if (!desk->obstacle().isEmpty())
        return; // nothing can be paid
    shown.tap("nav-zreport");
    shown.tap("salesButton");
    QTest::qWait(250);
    keepPicture(shown, "sales");
    shown.tap("showPaper");
    QTest::qWait(250);
    keepPicture(shown, "paper");
    shown.tap("closePaper");
    shown.tap("refundButton");
    shown.tap("reason-1");
    QTest::qWait(250);
    keepPicture(shown, "refund");
    shown.tap("cancelButton");
    shown.tap("nav-sell");
    shown.tap("givenButton");
    shown.tap("key-9");
    shown.tap("key-00");
    QTest::qWait(250);
    keepPicture(shown, "payment");
    shown.tap("padConfirm");
    QTRY_VERIFY(!shown.all("changeText").isEmpty());
    QTest::qWait(250);
    keepPicture(shown, "paid");

    QVERIFY(desk->setOpeningFloat(5000));
    QVERIFY(desk->voidLastSale());
    shown.tap("nav-zreport");
    QTest::qWait(250);
    keepPicture(shown, "figures");
    shown.tap("figuresButton");
    shown.tap("printReport");
    QTest::qWait(250);
    keepPicture(shown, "xreport");
    shown.tap("closePaper");
    shown.tap("closeShiftButton");
    shown.tap("confirmButton");
    shown.tap("closePaper");
    shown.tap("handOverButton");
    for (const char* key : {"key-5", "key-00", "key-0"})
        shown.tap(key);
    QTest::qWait(250);
    keepPicture(shown, "handover");
    shown.tap("padConfirm");
    QTest::qWait(250);
    keepPicture(shown, "closed");
}

void TestScreenPictures::keepPicture(ScreenUnderTest& shown, const QString& what)
{
    const QImage image = shown.window()->grabWindow();
    QCOMPARE(image.size(), shown.window()->size());
    QSet<QRgb> colours;
    for (int y = 60; y < image.height(); y += 3) {
        for (int x = 100; x < image.width(); x += 3)
            colours.insert(image.pixel(x, y));
    }
    QVERIFY2(colours.size() > 20, qPrintable(what));
    QVERIFY(image.save(QString("%1/%2-%3.png").arg(PICTURES, what, QTest::currentDataTag())));
    QCOMPARE(Complaints::take(), QStringList());
}

QTEST_MAIN(TestScreenPictures)
#include "tst_screen_pictures.moc"
