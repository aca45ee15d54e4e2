#include "Tiles.h"

#include "QmlPeer.h"

#include <QAbstractItemModel>
#include <QQmlEngine>
#include <QQuickItem>

Tiles::Tiles() : m_window(&qmlEngine(), nullptr)
{
    m_window.setSource(QUrl(QStringLiteral("qrc:/Tiles.qml")));
    if (!m_window.rootObject())
        qFatal("no tiles");
    m_window.show();
}

void Tiles::show(QAbstractItemModel* model)
{
    if (model)
        QQmlEngine::setObjectOwnership(model, QQmlEngine::CppOwnership);
    m_window.rootObject()->setProperty("model", QVariant::fromValue<QObject*>(model));
}

void Tiles::update() { QMetaObject::invokeMethod(m_window.rootObject(), "forceLayout"); }

int Tiles::count() const
{
    const auto* const content = m_window.rootObject()->property("contentItem").value<QQuickItem*>();
    return content->childItems().size();
}
