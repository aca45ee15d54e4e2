#include "ShownItems.h"
#include "Table.h"

#include "../ScreenUnderTest.h"

#include <QDir>
#include <QFontMetricsF>
#include <QSet>
#include <QTranslator>
#include <QtMath>
#include <QtTest>

#include <cmath>

using rivo::sales::SalesDesk;

namespace
{

constexpr double fingerMillimetres = 9.0;
constexpr double viewingDistance = 700.0;
constexpr double mainArcMinutes = 20.0;
constexpr double leastArcMinutes = 12.0;
constexpr double slack = 1.5; ///< pixels that rounding may take

/// What is read while selling; every button's text is, too.
const QStringList g_mainTexts{
    "runningSum",  "debtText",      "padTitle",    "padDue",       "padGiven",       "padChange",
    "padCounted",  "padFloat",      "detailPaid",  "pastSalePaid", "refundQuestion", "toastText",
    "signInTitle", "signInRefusal", "detailTitle", "totalText",    "priceText"};

bool isTarget(const QQuickItem* item) { return item->inherits("QQuickAbstractButton"); }

QString nameOf(const QQuickItem* item)
{
    const QString type = QString(item->metaObject()->className()).section("_QML", 0, 0);
    const QString name = item->objectName();
    return isText(item) ? QString("%1 \"%2\"").arg(name.isEmpty() ? type : name, shownText(item))
                        : QString("%1 %2").arg(type, name);
}

/// What is drawn of a text, without the room that its item has beside it.
QRectF drawnPlace(const QQuickItem* text)
{
    const double width = std::min(text->property("contentWidth").toDouble(), text->width());
    const double height = std::min(text->property("contentHeight").toDouble(), text->height());
    const int alignment = text->property("effectiveHorizontalAlignment").toInt();
    const double x = alignment == Qt::AlignRight     ? text->width() - width
                     : alignment == Qt::AlignHCenter ? (text->width() - width) / 2
                                                     : 0.0;
    return text->mapRectToScene({x, (text->height() - height) / 2, width, height});
}

QQuickItem* ancestor(const QQuickItem* item, const char* type)
{
    for (QQuickItem* p = item->parentItem(); p != nullptr; p = p->parentItem()) {
        if (p->inherits(type))
            return p;
    }
    return nullptr;
}

/// All that is wrong with the sizes of what a window shows.
class Findings
{
public:
    Findings(ScreenUnderTest& shown, double pixelsPerMillimetre)
        : m_shown(shown), m_pixelsPerMillimetre(pixelsPerMillimetre)
    {
    }

    /// A popup hides what is below it.
    void look(const QString& state)
    {
        QVector<QQuickItem*> texts;
        const bool hasPopup = isModal();
        m_shown.forEachItem([&](QQuickItem* item) {
            if (hasPopup && ancestor(item, "QQuickPopupItem") == nullptr)
                return;
            if (isTarget(item) && item->isEnabled())
                judgeTarget(state, item);
            if (isText(item) && !shownText(item).trimmed().isEmpty() &&
                ancestor(item, "QDeclarativeGeoMap") == nullptr && !visiblePart(item).isEmpty()) {
                judgeText(state, item);
                texts.append(item);
            }
        });
        judgeOverlaps(state, texts);
        QVERIFY(m_shown.window()->grabWindow().save(
            QString("%1/%2, %3.png").arg(PICTURES, state, QTest::currentDataTag())));
        m_counted += texts.size();
    }

    /// Lists all of them, and has their number.
    int report() const
    {
        for (const QString& line : m_lines)
            qInfo("%s", qPrintable(line));
        return m_lines.size();
    }
    int counted() const { return m_counted; }

private:
    bool isModal() const
    {
        bool found = false;
        m_shown.forEachItem([&](QQuickItem* item) {
            found = found || (item->inherits("QQuickPopupItem") && item->opacity() > 0.0);
        });
        return found;
    }

    void add(const QString& state, const QQuickItem* item, const QString& what)
    {
        const QString finding = nameOf(item) + ' ' + what;
        if (m_findings.contains(finding))
            return;
        m_findings.insert(finding);
        m_lines.append(state + ": " + finding);
    }

    void judgeTarget(const QString& state, const QQuickItem* item)
    {
        const double least = fingerMillimetres * m_pixelsPerMillimetre - 0.01;
        if (item->width() < least || item->height() < least)
            add(state, item,
                QString("is %1 x %2 mm")
                    .arg(item->width() / m_pixelsPerMillimetre, 0, 'f', 1)
                    .arg(item->height() / m_pixelsPerMillimetre, 0, 'f', 1));
        if (ancestor(item, "QQuickFlickable") == nullptr && !windowPlace().contains(placeOf(item)))
            add(state, item, "sticks out of the window");
    }

    QRectF windowPlace() const
    {
        return QRectF(QPointF(0, 0), QSizeF(m_shown.window()->size()))
            .adjusted(-slack, -slack, slack, slack);
    }

    double arcMinutes(const QQuickItem* text) const
    {
        QFont font = text->property("font").value<QFont>();
        font.setPixelSize(qRound(shownPixels(text)));
        const double millimetres = QFontMetricsF(font).capHeight() / m_pixelsPerMillimetre;
        return qRadiansToDegrees(std::atan(millimetres / viewingDistance)) * 60.0;
    }

    /// Of the font as drawn, which is smaller if the text is fitted into its item.
    static double shownPixels(const QQuickItem* text)
    {
        const QVariant info = text->property("fontInfo");
        const QVariant gadget = info.isValid() ? readGadget(info, "pixelSize") : QVariant();
        return gadget.isValid() && gadget.toDouble() > 0
                   ? gadget.toDouble()
                   : text->property("font").value<QFont>().pixelSize();
    }
    static QVariant readGadget(const QVariant& value, const char* name)
    {
        const QMetaObject* meta = QMetaType::metaObjectForType(value.userType());
        const int index = meta == nullptr ? -1 : meta->indexOfProperty(name);
        return index < 0 ? QVariant() : meta->property(index).readOnGadget(value.constData());
    }

    void judgeText(const QString& state, const QQuickItem* item)
    {
        const QQuickItem* button = ancestor(item, "QQuickAbstractButton");
        // The text of a button; below an icon it is a label.
        const bool isButtonText = button != nullptr && shownText(button) == shownText(item) &&
                                  button->property("stacked") == false;
        const bool isMain = isButtonText || g_mainTexts.contains(item->objectName());
        const double found = arcMinutes(item);
        // Letters are drawn in whole pixels.
        const double pixel = qRadiansToDegrees(0.5 / m_pixelsPerMillimetre / viewingDistance) * 60;
        if (found < (isMain ? mainArcMinutes : leastArcMinutes) - pixel)
            add(state, item, QString("has %1 arc minutes").arg(found, 0, 'f', 1));
        if (item->property("truncated").toBool())
            add(state, item, "is cut");
        if (item->property("contentWidth").toDouble() > item->width() + slack)
            add(state, item, "is wider than its item");
        if (item->property("contentHeight").toDouble() > item->height() + slack)
            add(state, item, "is higher than its item");
        judgePlace(state, item);
    }

    void judgePlace(const QString& state, const QQuickItem* item)
    {
        const QRectF drawn = drawnPlace(item);
        for (const QQuickItem* box = item->parentItem(); box != nullptr; box = box->parentItem()) {
            const bool isBox = isTarget(box) || box->inherits("QQuickRectangle") ||
                               box->inherits("QQuickPopupItem");
            if (box->inherits("QQuickFlickable")) {
                const QRectF room = placeOf(box);
                if (drawn.left() < room.left() - slack || drawn.right() > room.right() + slack)
                    add(state, item, "sticks out of its list");
                return;
            }
            if (!isBox || box->width() <= 0)
                continue;
            if (!placeOf(box).adjusted(-slack, -slack, slack, slack).contains(drawn))
                add(state, item, "sticks out of " + nameOf(box));
            return;
        }
        if (!windowPlace().contains(drawn))
            add(state, item, "sticks out of the window");
    }

    void judgeOverlaps(const QString& state, const QVector<QQuickItem*>& texts)
    {
        for (int i = 0; i < texts.size(); ++i) {
            for (int j = i + 1; j < texts.size(); ++j) {
                if (texts[i]->objectName() == "toastText" || texts[j]->objectName() == "toastText")
                    continue;
                const QRectF common = drawnPlace(texts[i]) & visiblePart(texts[i]) &
                                      drawnPlace(texts[j]) & visiblePart(texts[j]);
                // Lines of text have room above and below their letters.
                const double room =
                    std::min(drawnPlace(texts[i]).height(), drawnPlace(texts[j]).height()) * 0.25;
                if (common.width() > slack && common.height() > std::max(room, 2 * slack))
                    add(state, texts[i], "lies on " + nameOf(texts[j]));
            }
        }
    }

    ScreenUnderTest& m_shown;
    const double m_pixelsPerMillimetre;
    QSet<QString> m_findings; ///< each is named once, not in every state
    QStringList m_lines;
    int m_counted = 0;
};

} // namespace

/// Every page and panel on the glass of a vehicle: fingers hit, and eyes 70 cm away read.
class TestSizes : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        prepareScreens();
        QVERIFY(QDir().mkpath(PICTURES));
        m_complaints = std::make_unique<Complaints>();
    }
    void cleanup()
    {
        m_translator.reset();
        QCOMPARE(Complaints::take(), QStringList());
    }
    void cleanupTestCase() { m_complaints.reset(); }

    void everythingCanBeReadAndHit_data();
    void everythingCanBeReadAndHit();
    void theSellPage_data() { panels(); }
    void theSellPage();
    void theLockedTerminal_data() { panels(); }
    void theLockedTerminal();

private:
    static void panels();
    static void walk(ScreenUnderTest& shown, Findings& findings);
    std::unique_ptr<ScreenUnderTest>
    shown(const std::function<void(ScreenUnderTest::Terminal::Settings&)>& change = {});
    double scale() const;

    std::unique_ptr<Complaints> m_complaints;
    std::unique_ptr<QTranslator> m_translator;
};

void TestSizes::panels()
{
    addColumns<QSize, double, QString>("pixels", "inches", "language");
    for (const char* language : {"en", "de"}) {
        for (const auto& [pixels, inches] : {std::pair(QSize(800, 480), 7.0),
                                             {{1024, 600}, 7.0},
                                             {{1280, 800}, 7.0},
                                             {{1280, 800}, 10.1}})
            QTest::addRow("%g inches with %dx%d pixels in %s", inches, pixels.width(),
                          pixels.height(), language)
                << pixels << inches << language;
    }
}

void TestSizes::everythingCanBeReadAndHit_data() { panels(); }

double TestSizes::scale() const
{
    QFETCH(QSize, pixels);
    QFETCH(double, inches);
    return std::hypot(pixels.width(), pixels.height()) / (inches * 25.4);
}

std::unique_ptr<ScreenUnderTest>
TestSizes::shown(const std::function<void(ScreenUnderTest::Terminal::Settings&)>& change)
{
    QFETCH(QSize, pixels);
    QFETCH(QString, language);
    m_translator = std::make_unique<QTranslator>();
    if (!m_translator->load(":/i18n/rivo-terminal_" + language))
        qFatal("There are no texts in %s", qPrintable(language));
    QCoreApplication::installTranslator(m_translator.get());
    return std::make_unique<ScreenUnderTest>(exampleFeed("coast-line"), "products", pixels, change,
                                             QSizeF(pixels) / scale());
}

void TestSizes::walk(ScreenUnderTest& shown, Findings& findings)
{
    const auto look = [&](const QString& state) {
        QTest::qWait(200);
        findings.look(state);
    };
    auto* desk = shown.terminal().desk();
    look("products");
    shown.tap("nav-zreport");
    look("shift without sales");
    shown.tap("floatButton");
    look("float");
    shown.tap("padCancel");
    for (const int row : {0, 1, 4})
        desk->add(row);
    QVERIFY(desk->pay(SalesDesk::Cash));
    QTRY_COMPARE(desk->state(), SalesDesk::Selling);
    desk->add(0);
    QVERIFY(desk->payCash(10000));
    QTRY_COMPARE(desk->state(), SalesDesk::Selling);
    QVERIFY(desk->voidLastSale());
    look("shift");
    shown.tap("closeShiftButton");
    look("question before the shift is closed");
    shown.tap("cancelButton");
    shown.tap("salesButton");
    look("past sales");
    shown.tap(shown.all("pastSale").value(1));
    look("past sale of many tickets");
    shown.tap("showPaper");
    look("paper");
    shown.tap("closePaper");
    shown.tap("refundButton");
    look("refund");
    shown.tap("cancelButton");
    shown.tap("nav-devices");
    look("devices");
    shown.tap("nav-settings");
    look("settings");
    desk->add(0);
    emit desk->refused("The printer is out of paper. Put a new roll in and close the cover.");
    look("refusal");
    shown.tap("nav-zreport");
    desk->clear();
    QVERIFY(desk->closeShift());
    look("closed shift");
    shown.tap(shown.item("handOverButton"));
    look("hand-over");
    for (const char* key : {"key-5", "key-00"})
        shown.tap(key);
    look("hand-over with an amount");
}

void TestSizes::everythingCanBeReadAndHit()
{
    const auto screen = shown();
    Findings findings(*screen, scale());
    walk(*screen, findings);
    QCOMPARE(findings.report(), 0);
    QVERIFY2(findings.counted() > 200, qPrintable(QString::number(findings.counted())));
}

void TestSizes::theSellPage()
{
    const auto screen = shown();
    Findings findings(*screen, scale());
    const auto areTilesMade = [&] {
        bool areMade = true;
        screen->forEachItem([&](QQuickItem* item) {
            const QVariant isMade = item->property("isMade");
            areMade = areMade && (!isMade.isValid() || isMade.toBool());
        });
        return areMade;
    };
    const auto look = [&](const QString& state) {
        QTest::qWait(200);
        QTRY_VERIFY(areTilesMade());
        findings.look(state);
    };
    auto* desk = screen->terminal().desk();
    auto* tiles = screen->terminal().tiles();
    screen->tap("nav-sell");
    look("empty basket");
    for (const int row : {0, 1, 4, 16})
        QVERIFY(desk->add(row));
    look("basket");
    screen->item("basketLines")->setProperty("contentY", 0);
    QMetaObject::invokeMethod(screen->item("lineProduct")->parentItem()->parentItem()->parentItem(),
                              "pressAndHold");
    look("number of tickets");
    screen->tap("key-4");
    look("four tickets");
    screen->tap("padCancel");
    tiles->setTab(1);
    look("tiles of a zone");
    screen->tap("searchButton");
    look("search");
    tiles->setSearch("DU");
    look("search for a word");
    screen->tap("searchButton");
    QVERIFY(desk->payCash(10000));
    QTRY_COMPARE(desk->state(), SalesDesk::Selling);
    QTest::qWait(200);
    look("paid");
    tiles->setTab(0);
    look("sold often");
    screen->tap("tripButton");
    look("trips and stops");
    screen->tap("closeTrips");
    QCOMPARE(findings.report(), 0);
    QVERIFY2(findings.counted() > 100, qPrintable(QString::number(findings.counted())));
}

void TestSizes::theLockedTerminal()
{
    const auto screen = shown([](ScreenUnderTest::Terminal::Settings& settings) {
        settings.drivers = {{42, "Christine Longname-Example", 1, "salt", {}}};
    });
    Findings findings(*screen, scale());
    QTest::qWait(200);
    findings.look("sign-in");
    for (const char* key : {"key-4", "key-2", "signInButton", "key-1", "signInButton"})
        screen->tap(key);
    QTest::qWait(400);
    findings.look("wrong PIN");
    QCOMPARE(findings.report(), 0);
    QVERIFY2(findings.counted() > 20, qPrintable(QString::number(findings.counted())));
}

QTEST_MAIN(TestSizes)
#include "tst_sizes.moc"
