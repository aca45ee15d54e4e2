#pragma once

#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QTextStream>

#include <functional>

/// Shows Main.qml with the given properties until the window is closed. With the argument --once it
/// prints what `report` returns after the first frame, and ends.
///
/// The engine is destroyed before the models that are declared before this call: delegates read
/// their rows to the last.
inline int runExample(QGuiApplication& application, const QVariantMap& properties,
                      const std::function<QString(QObject& window)>& report)
{
    QQmlApplicationEngine engine;
    engine.addImportPath(QStringLiteral(GUICORE_QML_DIR));
    engine.setInitialProperties(properties);
    engine.load(QUrl(QStringLiteral("qrc:/Main.qml")));
    if (engine.rootObjects().isEmpty())
        return 1;
    if (application.arguments().contains(QStringLiteral("--once"))) {
        auto* window = qobject_cast<QQuickWindow*>(engine.rootObjects().constFirst());
        QObject::connect(
            window, &QQuickWindow::frameSwapped, &application,
            [&report, window] {
                QTextStream(stdout) << report(*window) << '\n';
                QCoreApplication::quit();
            },
            Qt::QueuedConnection);
    }
    return application.exec();
}
