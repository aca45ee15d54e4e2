#pragma once

#include <FeedLoader.h>
#include <Screen.h>
#include <SimulatedPrinter.h>
#include <Terminal.h>

#include <QFile>
#include <QLocale>
#include <QQuickItem>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>
#include <cstdio>
#include <functional>
#include <memory>

/// What Qt and QML complain of while this lives. Nothing may be left in it.
class Complaints
{
public:
    Complaints()
    {
        lines().clear();
        previous() = qInstallMessageHandler(keep);
    }
    ~Complaints() { qInstallMessageHandler(previous()); }
    Complaints(const Complaints&) = delete;
    Complaints& operator=(const Complaints&) = delete;

    static QStringList take()
    {
        const QStringList taken = lines();
        lines().clear();
        return taken;
    }

private:
    static QStringList& lines()
    {
        static QStringList kept;
        return kept;
    }
    static QtMessageHandler& previous()
    {
        static QtMessageHandler handler = nullptr;
        return handler;
    }
    /// Of Qt's render loop, when a window goes while its animations are drawn late.
    static bool isOfQt(const QString& message)
    {
        return message == "QUnifiedTimer::stopAnimationDriver: driver is not running";
    }
    static void keep(QtMsgType type, const QMessageLogContext& context, const QString& message)
    {
        if (isOfQt(message))
            return;
        if (type == QtWarningMsg || type == QtCriticalMsg)
            lines().append(message);
        else if (previous() != nullptr)
            previous()(type, context, message);
        else if (type == QtFatalMsg)
            std::fprintf(stderr, "%s\n", qPrintable(message));
    }
};

/// Once per program, before any screen.
inline void prepareScreens()
{
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedKingdom));
    QQuickStyle::setStyle("Default");
    rivo::terminal::Screen::registerTypes();
}

inline rivo::feed::Feed exampleFeed(const QString& name)
{
    const rivo::feed::FeedResult result =
        rivo::feed::loadFeed(QStringLiteral(EXAMPLE_FEEDS "/%1.json").arg(name));
    if (!result.feed)
        qFatal("%s", qPrintable(result.problemLines().join('\n')));
    return *result.feed;
}

/// Millimetres of a panel of 7 inches by its diagonal.
inline QSizeF sevenInches(const QSize& pixels)
{
    return QSizeF(pixels) * (7.0 * 25.4 / std::hypot(pixels.width(), pixels.height()));
}

inline rivo::sales::SimulatedPrinter& simulatedPrinter(rivo::terminal::Terminal& terminal)
{
    return dynamic_cast<rivo::sales::SimulatedPrinter&>(terminal.printer());
}

/// A terminal with a journal in a folder of its own, in its window.
class ScreenUnderTest
{
public:
    using Feed = rivo::feed::Feed;
    using Terminal = rivo::terminal::Terminal;
    using Screen = rivo::terminal::Screen;

    /// Without a size of the glass the window fills a panel of 7 inches.
    explicit ScreenUnderTest(const Feed& feed, const QString& page = "sell",
                             const QSize& size = {1024, 600},
                             const std::function<void(Terminal::Settings&)>& change = {},
                             const QSizeF& millimetres = {})
        : m_feed(feed), m_page(page), m_size(size),
          m_change(change), m_glass{millimetres.isEmpty() ? sevenInches(size) : millimetres}
    {
        start();
    }

    ~ScreenUnderTest() { stop(); }
    ScreenUnderTest(const ScreenUnderTest&) = delete;
    ScreenUnderTest& operator=(const ScreenUnderTest&) = delete;

    /// As after a power cut between two calls: the same journal, everything else anew.
    void restart()
    {
        stop();
        start();
    }

    Terminal& terminal() { return *m_terminal; }
    Screen& screen() { return *m_screen; }
    QQuickWindow* window() { return m_screen->window(); }
    QString folder() const { return m_folder.path(); }

    /// Calls `visit` with every visible item, parents first; items of popups too.
    static void forEachItem(QQuickItem* top, const std::function<void(QQuickItem*)>& visit)
    {
        if (!top->isVisible())
            return;
        visit(top);
        const QList<QQuickItem*> children = top->childItems();
        for (QQuickItem* child : children)
            forEachItem(child, visit);
    }
    void forEachItem(const std::function<void(QQuickItem*)>& visit)
    {
        forEachItem(window()->contentItem(), visit);
    }

    QVector<QQuickItem*> all(const QString& name)
    {
        QVector<QQuickItem*> found;
        forEachItem([&](QQuickItem* item) {
            if (item->objectName() == name)
                found.append(item);
        });
        return found;
    }

    QQuickItem* item(const QString& name) { return all(name).value(0); }

    QStringList texts(const QString& name)
    {
        QStringList texts;
        for (const QQuickItem* item : all(name))
            texts.append(item->property("text").toString());
        return texts;
    }
    QString text(const QString& name) { return texts(name).value(0); }

    /// Scrolls the lists that hide the item, as a driver would; everything is where it is drawn.
    void bringIntoView(QQuickItem* item)
    {
        window()->grabWindow();
        for (QQuickItem* list = item->parentItem(); list != nullptr; list = list->parentItem()) {
            if (!list->inherits("QQuickFlickable") || list->property("interactive") == false)
                continue;
            const QRectF place = item->mapRectToItem(list, {0, 0, item->width(), item->height()});
            const double y = list->property("contentY").toDouble();
            if (place.bottom() > list->height())
                list->setProperty("contentY", y + place.bottom() - list->height());
            else if (place.top() < 0)
                list->setProperty("contentY", y + place.top());
        }
        window()->grabWindow();
    }

    /// The one item of this name, which may still have to come.
    void tap(const QString& name)
    {
        QTRY_COMPARE(all(name).size(), 1);
        tap(item(name));
    }
    void tap(QQuickItem* item)
    {
        QVERIFY(item != nullptr);
        const QPointF center(item->width() / 2, item->height() / 2);
        QTest::mouseClick(window(), Qt::LeftButton, {}, item->mapToScene(center).toPoint());
    }

private:
    void start()
    {
        Terminal::Settings settings;
        settings.journalFile = m_folder.filePath("sales.journal");
        settings.isDemo = true;
        settings.date = QDate(2026, 6, 1); // a Monday
        settings.startTime = 30000;
        settings.pace = 0.0;
        settings.ticketTime = 0;
        if (m_change)
            m_change(settings);
        m_terminal = std::make_unique<Terminal>(m_feed, settings);
        m_screen = std::make_unique<Screen>(*m_terminal, m_page, m_size, m_glass);
        if (window() == nullptr)
            qFatal("%s", qPrintable(Complaints::take().join('\n')));
        window()->show();
        if (!QTest::qWaitForWindowExposed(window()))
            qFatal("There is no screen to show a window on");
    }
    void stop()
    {
        m_screen.reset();
        m_terminal.reset();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    const Feed m_feed;
    const QString m_page;
    const QSize m_size;
    const std::function<void(Terminal::Settings&)> m_change;
    const rivo::terminal::Glass m_glass;
    const QTemporaryDir m_folder;
    std::unique_ptr<Terminal> m_terminal;
    std::unique_ptr<Screen> m_screen;
};
