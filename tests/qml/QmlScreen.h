#pragma once

#include "DeferredDeletions.h"

#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQmlExpression>
#include <QTest>

#include <memory>

/// A QML engine that finds the module.
class QmlScreen
{
public:
    QmlScreen() { engine.addImportPath(QStringLiteral(RIVO_QML_IMPORT_PATH)); }

    void show(const char* name, QObject* object)
    {
        engine.rootContext()->setContextProperty(QLatin1String(name), object);
    }

    /// Object of a QML document that imports QtQml and the module.
    std::unique_ptr<QObject> create(const QString& body, QString* error = nullptr)
    {
        return createWith(QStringLiteral("import QtQml 2.15\nimport Rivo.GuiCore 1.0\n"), body,
                          error);
    }

    std::unique_ptr<QObject> createWith(const QString& imports, const QString& body,
                                        QString* error = nullptr)
    {
        QQmlComponent component(&engine);
        component.setData((imports + body).toUtf8(), QUrl(QStringLiteral("qrc:/test.qml")));
        if (component.isReady())
            return std::unique_ptr<QObject>(component.create());
        if (error)
            *error = component.errorString();
        else
            qWarning("%s", qPrintable(component.errorString()));
        return nullptr;
    }

    /// Imports the module, as the first QML file of an interface would.
    void importModule() { QVERIFY(create(QStringLiteral("QtObject {}"))); }

    /// Value of a script that sees the module and the objects shown.
    QVariant evaluate(const QString& script)
    {
        const std::unique_ptr<QObject> object =
            create(QStringLiteral("QtObject { function run() { return %1 } }").arg(script));
        QVariant result;
        if (!object ||
            !QMetaObject::invokeMethod(object.get(), "run", Q_RETURN_ARG(QVariant, result)))
            return QStringLiteral("no result");
        return result.userType() == qMetaTypeId<QJSValue>() ? result.value<QJSValue>().toVariant()
                                                            : result;
    }

    QQmlEngine engine;
};
