#include "HostileFeed.h"
#include "ShownItems.h"
#include "Table.h"

#include "../Contrast.h"
#include "../ScreenUnderTest.h"

#include <PassengerTypeItem.h>

#include <QImage>
#include <QUrl>
#include <QtTest>

#include <utility>

using rivo::feed::Feed;

namespace
{

const QStringList g_pages{"sell", "products", "zreport", "fleet", "devices", "settings"};

void isReadable(const QQuickItem* text, const QColor& ground)
{
    const double found = contrast(colorOf(text), ground);
    QVERIFY2(found >= 4.5,
             qPrintable(QString("%1 \"%2\": %3 on %4 is %5:1")
                            .arg(where(text), shownText(text), colorOf(text).name(), ground.name())
                            .arg(found)));
}

} // namespace

/// What a hostile feed can do to the screen: nothing but be shown as the plain text that it is.
class TestScreenTexts : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        prepareScreens();
        m_complaints = std::make_unique<Complaints>();
    }
    void cleanup() { QCOMPARE(Complaints::take(), QStringList()); }
    void cleanupTestCase() { m_complaints.reset(); }

    void hostileTextsStayTexts_data()
    {
        addColumns<QString, bool, QString, QSize>("page", "night", "popup", "size");
        for (const bool night : {false, true}) {
            const auto add = [night](const QString& page, const QString& popup = {},
                                     const QSize& size = {800, 480}) {
                QTest::addRow("%s %s at %d %s", qPrintable(page), qPrintable(popup), size.width(),
                              night ? "at night" : "by day")
                    << page << night << popup << size;
            };
            for (const QString& page : g_pages)
                add(page);
            add("sell", "clearConfirmation");
            add("zreport", "closeConfirmation");
            add("zreport", "handOverPad");
            add("zreport", "otherFigures");
            add("sell", "signIn");
            add("sell", "signIn", {1280, 800});
            add("sales");
            add("sales", "refundPopup");
            add("sales", "voidConfirmation");
            add("sell", "paymentPad");
            add("sell", "paidSale");
            add("sell", "toast");
            add("sell", {}, {1280, 800});
        }
    }

    void hostileTextsStayTexts()
    {
        const auto shown = this->shown(hostileFeed());
        everyTextIsPlain(*shown);
        textsStayInside(*shown);
        textsCanBeRead(*shown);
        everythingToTapIsLargeEnough(*shown);
    }

    void textsOnTheMapCanBeRead_data()
    {
        const Table<QString, bool> row("feed", "night");
        for (const QString feed : {"coast-line", "hill-valley", "hostile"}) {
            row(qPrintable(feed + " by day"), feed, false);
            row(qPrintable(feed + " at night"), feed, true);
        }
    }

    void textsOnTheMapCanBeRead()
    {
        QFETCH(QString, feed);
        QFETCH(bool, night);
        ScreenUnderTest shown(
            feed == "hostile" ? hostileFeed() : exampleFeed(feed), "fleet", {1024, 600},
            [night](rivo::terminal::Terminal::Settings& settings) { settings.night = night; });
        QTRY_VERIFY(shown.item("stopLabel") != nullptr);
        int texts = 0;
        shown.forEachItem([&](QQuickItem* item) {
            if (!isText(item) || !isOnMap(item) || shownText(item).isEmpty())
                return;
            ++texts;
            const QColor ground = backing(item);
            QVERIFY2(ground.isValid(), qPrintable(where(item) + " has nothing behind it"));
            isReadable(item, ground);
        });
        QVERIFY2(texts > 4, qPrintable(QString::number(texts)));
    }

    void tilesNameTheirZone_data()
    {
        addColumns<QString, QSize>("feed", "size");
        for (const char* feed : {"coast-line", "hill-valley"}) {
            for (const QSize size : {QSize(800, 480), QSize(1024, 600), QSize(1280, 800)})
                QTest::addRow("%s at %dx%d", feed, size.width(), size.height()) << feed << size;
        }
    }

    void tilesNameTheirZone()
    {
        QFETCH(QString, feed);
        QFETCH(QSize, size);
        ScreenUnderTest shown(exampleFeed(feed), "sell", size);
        // Tiles are made piece by piece, and texts fit into rooms that are laid out.
        shown.window()->grabWindow();
        QTRY_VERIFY(!shown.texts("zoneText").contains(QString()));
        int tiles = 0;
        for (QQuickItem* zone : shown.all("zoneText")) {
            const QQuickItem* tile = zone;
            while (!tile->property("tile").isValid())
                tile = tile->parentItem();
            ++tiles;
            const auto* product = qobject_cast<PassengerTypeItem*>(
                shown.terminal().grid()->itemFromRow(tile->property("tile").toInt()));
            const QString name =
                shown.terminal().presentation()->zoneName(product->toStopGroupId());
            // Behind it is what else a tile of equal look needs.
            const QString zones = shownText(zone).section(" · ", 0, 0);
            QVERIFY2(zones.endsWith(name), qPrintable(shownText(zone) + ", not " + name));
            QVERIFY2(!zone->property("truncated").toBool(), qPrintable(shownText(zone)));
        }
        QVERIFY2(tiles > 5, qPrintable(QString::number(tiles)));
    }

    void picturesComeFromTheProgram_data()
    {
        const Table<QString, bool, QString, QSize, bool> row("page", "night", "popup", "size",
                                                             "allowFileIcons");
        for (const bool allowed : {false, true}) {
            for (const QString& page : g_pages)
                row(qPrintable(page + (allowed ? ", files allowed" : "")), page, false, "",
                    QSize(1024, 600), allowed);
        }
    }

    void picturesComeFromTheProgram()
    {
        QFETCH(QString, page);
        QFETCH(bool, allowFileIcons);
        Feed feed = hostileFeed();
        const QString picture = QDir::current().filePath("picture.png");
        QImage image(8, 8, QImage::Format_RGB32);
        image.fill(Qt::red);
        QVERIFY(image.save(picture));
        feed.products[0].icon = QUrl::fromLocalFile(picture).toString();
        feed.products[0].pos = 1;
        const auto shown = this->shown(feed, allowFileIcons);
        int pictures = 0;
        QStringList files;
        const auto look = [&](QQuickItem* item) {
            if (!item->inherits("QQuickImageBase"))
                return;
            ++pictures;
            const QUrl source = item->property("source").toUrl();
            if (source.isLocalFile())
                files.append(source.toLocalFile());
            else
                QVERIFY2(source.isEmpty() || source.scheme() == "qrc",
                         qPrintable(where(item) + " " + source.toString()));
            QVERIFY2(source.isEmpty() || item->property("status").toInt() == 1,
                     qPrintable(where(item) + " " + source.toString()));
        };
        shown->forEachItem(look);
        QVERIFY(pictures > 5);
        // A tile with tickets in the basket shows their number instead of its picture.
        if (shown->terminal().basket()->rowCount() > 0)
            QVERIFY(shown->terminal().desk()->clear());
        shown->window()->grabWindow();
        shown->forEachItem(look);
        files.removeDuplicates();
        QCOMPARE(files, allowFileIcons && page == "sell" ? QStringList(picture) : QStringList());
    }

private:
    static void everyTextIsPlain(ScreenUnderTest& shown)
    {
        int texts = 0;
        shown.forEachItem([&](QQuickItem* item) {
            QVERIFY2(!item->inherits("QQuickTextEdit") && !item->inherits("QQuickTextInput"),
                     qPrintable(where(item)));
            if (!isText(item))
                return;
            ++texts;
            QVERIFY2(item->property("textFormat").toInt() == Qt::PlainText,
                     qPrintable(where(item)));
        });
        QVERIFY2(texts > 10, qPrintable(QString::number(texts)));
    }

    static void textsStayInside(ScreenUnderTest& shown)
    {
        shown.forEachItem([&](QQuickItem* item) {
            if (!isText(item) || shownText(item).isEmpty())
                return;
            const QString what = where(item) + " \"" + shownText(item) + "\"";
            // What is drawn is not wider or higher than the item.
            const double slack = 1.5;
            QVERIFY2(item->property("contentWidth").toDouble() <= item->width() + slack,
                     qPrintable(what + " is wider than its item"));
            QVERIFY2(item->property("contentHeight").toDouble() <= item->height() + slack,
                     qPrintable(what + " is higher than its item"));
            // The item does not stick out of the button, tile or line that it is part of.
            for (const QQuickItem* box = item->parentItem(); box != nullptr;
                 box = box->parentItem()) {
                const bool isBox =
                    box->inherits("QQuickAbstractButton") || box->inherits("QQuickRectangle");
                if (box->inherits("QDeclarativeGeoMapQuickItem"))
                    return; // texts on the map belong to the map
                if (!isBox || box->width() <= 0)
                    continue;
                const QRectF inner =
                    item->mapRectToItem(box, {0, 0, item->width(), item->height()});
                QVERIFY2(inner.left() >= -slack && inner.right() <= box->width() + slack,
                         qPrintable(what + " sticks out of " + where(box)));
                break;
            }
        });
    }

    static void textsCanBeRead(ScreenUnderTest& shown)
    {
        // A busy machine is still moving tiles to their places: until nothing moves any more.
        QImage image;
        QVERIFY(QTest::qWaitFor([&] {
            const QImage before = std::exchange(image, shown.window()->grabWindow());
            return !image.isNull() && image == before;
        }));
        const bool hasPopup = !shown.all("cancelButton").isEmpty() ||
                              !shown.all("padCancel").isEmpty() ||
                              !shown.all("signInButton").isEmpty();
        const QQuickItem* toast = shown.item("toast");
        const QRectF covered = toast == nullptr ? QRectF() : placeOf(toast);
        int compared = 0;
        shown.forEachItem([&](QQuickItem* item) {
            if (!isText(item) || shownText(item).trimmed().isEmpty() ||
                isWithin(item, [](const QQuickItem* each) { return each->opacity() < 1.0; }))
                return;
            if (isOnMap(item))
                return; // lies over lines and other marks, see textsOnTheMapCanBeRead()
            if (hasPopup && !isWithin(item, "QQuickPopupItem"))
                return;
            if (item->objectName() != "toastText" && covered.intersects(visiblePart(item)))
                return;
            const QRect part = visiblePart(item).toRect() & image.rect();
            if (part.width() < 4 || part.height() < 4)
                return;
            ++compared;
            isReadable(item, mostOf(image, part));
        });
        QVERIFY2(compared > 2, qPrintable(QString::number(compared)));
    }

    static void everythingToTapIsLargeEnough(ScreenUnderTest& shown)
    {
        int targets = 0;
        shown.forEachItem([&](QQuickItem* item) {
            if (!item->inherits("QQuickAbstractButton"))
                return;
            ++targets;
            QVERIFY2(
                item->width() >= 48 && item->height() >= 48,
                qPrintable(where(item) + QString(" %1x%2").arg(item->width()).arg(item->height())));
            const QRectF place = placeOf(item);
            QVERIFY2(place.left() >= -1 && place.right() <= shown.window()->width() + 1,
                     qPrintable(where(item) + " sticks out of the window"));
        });
        QVERIFY(targets > 5);
    }

    static void sell(rivo::sales::SalesDesk& desk)
    {
        QVERIFY(desk.pay(rivo::sales::SalesDesk::Cash));
        QTRY_COMPARE(desk.state(), rivo::sales::SalesDesk::Selling);
    }

    /// The screen of this row, with tickets in the basket and its popup open if it has one.
    std::unique_ptr<ScreenUnderTest> shown(const Feed& feed, bool allowFileIcons = false)
    {
        QFETCH(QString, page);
        QFETCH(bool, night);
        QFETCH(QString, popup);
        QFETCH(QSize, size);
        auto shown = std::make_unique<ScreenUnderTest>(
            feed, page, size, [&](rivo::terminal::Terminal::Settings& settings) {
                settings.night = night;
                settings.allowFileIcons = allowFileIcons;
                const bool hasSold = page == "sales" || page == "zreport";
                settings.ticketTime = hasSold ? 0 : 60000;
                if (popup == "signIn")
                    settings.drivers = {{42, text(3), 1, "salt", {}}};
            });
        auto* desk = shown->terminal().desk();
        for (int row = 0; row < shown->terminal().grid()->rowCount(); ++row) {
            if (shown->terminal().basket()->rowCount() < 6)
                desk->add(row);
        }
        if (page == "sales") {
            desk->payCash(1000000);
            [&] { QTRY_VERIFY(!shown->all("pastTicket").isEmpty()); }();
        }
        if (popup == "clearConfirmation")
            shown->tap(shown->item("clearButton"));
        else if (popup == "closeConfirmation")
            shown->tap(shown->item("closeShiftButton"));
        else if (popup == "handOverPad") {
            sell(*desk);
            desk->closeShift();
            shown->tap("handOverButton");
        } else if (popup == "otherFigures") {
            desk->setOpeningFloat(123456789);
            sell(*desk);
            desk->voidLastSale();
        } else if (popup == "refundPopup")
            shown->tap("refundButton");
        else if (popup == "voidConfirmation")
            shown->tap("voidButton");
        else if (popup == "paymentPad")
            shown->tap(shown->item("givenButton"));
        else if (popup == "paidSale")
            desk->payCash(1000000);
        else if (popup == "toast")
            emit desk->refused(text(2) + " " + text(0));
        QTest::qWait(400); // animations
        return shown;
    }

    std::unique_ptr<Complaints> m_complaints;
};

QTEST_MAIN(TestScreenTexts)
#include "tst_screen_texts.moc"
