#pragma once

#include "GlassScale.h"

#include <QObject>
#include <QQmlApplicationEngine>
#include <QSize>
#include <QStringList>

class QQuickWindow;

namespace rivo::terminal
{

class Terminal;

/// The window of the terminal: loads the QML and holds the engine.
class Screen
{
public:
    /// Makes the QML documents and icons known, and every press of a quick series count. Once per
    /// process, after the application was made and before any Screen.
    static void registerTypes();

    /// Shows `terminal`, opened at `page`. `terminal` outlives the screen.
    Screen(Terminal& terminal, const QString& page, const QSize& size, const Glass& glass = {});

    /// The file that was not loaded.
    enum class Unusable { Feed, Drivers, Config };

    /// Shows the problems that kept a file from being loaded, and nothing else.
    Screen(const QStringList& problems, const QSize& size, Unusable file = Unusable::Feed,
           const Glass& glass = {});

    QQuickWindow* window() const { return m_window; } ///< null if the QML could not be loaded

    /// Saves the window as it is drawn next, see savePictureFile(); returns why it did not, or
    /// nothing.
    QString savePicture(const QString& file);

private:
    void load(const QString& document, const QVariantMap& properties);

    QQmlApplicationEngine m_engine;
    QQuickWindow* m_window = nullptr;
};

} // namespace rivo::terminal
