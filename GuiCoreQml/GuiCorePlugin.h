#pragma once

#include <QQmlEngineExtensionPlugin>

/// The QML module Rivo.GuiCore 1.0. While it is loaded, a row that QML got from itemFromRow() or
/// gave to appendRowFromQml() belongs to C++, with or without a QObject parent: garbage collection
/// never destroys it and destroy() is refused. That holds in every engine, for every model.
class GuiCorePlugin : public QQmlEngineExtensionPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QQmlEngineExtensionInterface_iid)

public:
    explicit GuiCorePlugin(QObject* parent = nullptr);
    ~GuiCorePlugin() override;
};
