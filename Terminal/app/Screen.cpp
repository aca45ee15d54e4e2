#include "Screen.h"

#include "PictureFile.h"
#include "TerminalTypes.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QGuiApplication>
#include <QImage>
#include <QMouseEvent>
#include <QQuickImageProvider>
#include <QQuickWindow>
#include <QScreen>
#include <QStyleHints>
#include <QTimer>
#include <QTouchEvent>

// Generated from TerminalTypes.h: registers the types when an engine first imports them.
#include <TerminalRegistration.inc>

// The resources of a static library. The macro wants a function outside of all namespaces.
static void initResources()
{
    Q_INIT_RESOURCE(icons);
    Q_INIT_RESOURCE(qml);
}

namespace rivo::terminal
{

namespace
{

/// Long enough for pages that load on demand, and for animations to end.
constexpr int settlingTime = 1200;

/// Sees every press on a window, also on panels. Reports it to the desk that locks an idle
/// terminal, and to the sounds if it was a tap: what moves scrolls.
class PressWatch : public QObject
{
public:
    PressWatch(Terminal& terminal, QObject* window) : QObject(window), m_terminal(terminal)
    {
        window->installEventFilter(this);
    }

    bool eventFilter(QObject*, QEvent* event) override
    {
        switch (event->type()) {
        case QEvent::MouseButtonPress:
            m_pressedAt = static_cast<QMouseEvent*>(event)->windowPos();
            m_terminal.drivers()->touch();
            break;
        case QEvent::TouchBegin:
            m_terminal.drivers()->touch();
            break;
        case QEvent::MouseButtonRelease:
            endPress(m_pressedAt, static_cast<QMouseEvent*>(event)->windowPos());
            break;
        case QEvent::TouchUpdate:
        case QEvent::TouchEnd:
            endTouches(static_cast<QTouchEvent*>(event)->touchPoints());
            break;
        default:
            break;
        }
        return false;
    }

private:
    void endPress(const QPointF& from, const QPointF& to)
    {
        const int limit = QGuiApplication::styleHints()->startDragDistance();
        if ((to - from).manhattanLength() < limit)
            m_terminal.sounds()->tap();
    }

    void endTouches(const QList<QTouchEvent::TouchPoint>& points)
    {
        for (const QTouchEvent::TouchPoint& point : points) {
            if (point.state() == Qt::TouchPointReleased)
                endPress(point.startPos(), point.pos());
        }
    }

    Terminal& m_terminal;
    QPointF m_pressedAt;
};

void measure(const Glass& glass, const QSize& window)
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    GlassScale::set(pixelsPerMillimetre(glass, window, screen == nullptr ? QSize() : screen->size(),
                                        screen == nullptr ? QSizeF() : screen->physicalSize()));
}

QString nameOf(Screen::Unusable file)
{
    switch (file) {
    case Screen::Unusable::Drivers:
        return QStringLiteral("drivers");
    case Screen::Unusable::Config:
        return QStringLiteral("config");
    case Screen::Unusable::Feed:
        break;
    }
    return QStringLiteral("feed");
}

} // namespace

void Screen::registerTypes()
{
    initResources();
    // Drawn once in its size, which is also sharper: distance fields cost a fast processor.
    QQuickWindow::setTextRenderType(QQuickWindow::NativeTextRendering);
    // Buttons ignore the second press of a double click. Nothing here is double-clicked.
    QGuiApplication::styleHints()->setMouseDoubleClickInterval(0);
}

Screen::Screen(Terminal& terminal, const QString& page, const QSize& size, const Glass& glass)
{
    measure(glass, size);
    m_engine.addImageProvider(QStringLiteral("paper"), terminal.papers()->makeProvider());
    load(QStringLiteral("Main.qml"), {{QStringLiteral("terminal"), QVariant::fromValue(&terminal)},
                                      {QStringLiteral("page"), page},
                                      {QStringLiteral("width"), size.width()},
                                      {QStringLiteral("height"), size.height()}});
    if (m_window != nullptr)
        new PressWatch(terminal, m_window);
}

Screen::Screen(const QStringList& problems, const QSize& size, Unusable file, const Glass& glass)
{
    measure(glass, size);
    load(QStringLiteral("ProblemsWindow.qml"), {{QStringLiteral("problems"), problems},
                                                {QStringLiteral("unusable"), nameOf(file)},
                                                {QStringLiteral("width"), size.width()},
                                                {QStringLiteral("height"), size.height()}});
}

void Screen::load(const QString& document, const QVariantMap& properties)
{
    // In the build tree, and in an installed one that is not Qt's own.
    for (const char* folder : {"/../qml", RIVO_QML_FOLDER})
        m_engine.addImportPath(QCoreApplication::applicationDirPath() + QLatin1String(folder));
    m_engine.setInitialProperties(properties);
    m_engine.load(QUrl(QStringLiteral("qrc:/qml/") + document));
    if (!m_engine.rootObjects().isEmpty())
        m_window = qobject_cast<QQuickWindow*>(m_engine.rootObjects().constFirst());
}

QString Screen::savePicture(const QString& file)
{
    QEventLoop settle;
    QTimer::singleShot(settlingTime, &settle, &QEventLoop::quit);
    settle.exec();
    return savePictureFile(m_window->grabWindow(), file);
}

} // namespace rivo::terminal
