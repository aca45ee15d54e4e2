#include "GuiCorePlugin.h"

#include "ListItem.h"
#include "ListModel.h"

#include <QQmlEngine>

// Generated from GuiCoreTypes.h: registers the types when an engine first imports the module.
#include <GuiCoreRegistration.inc>

using rivo::models::ListItem;
using rivo::models::ListModel;

namespace
{

void keepFromGarbageCollection(ListItem* row)
{
    QQmlEngine::setObjectOwnership(row, QQmlEngine::CppOwnership);
}

} // namespace

GuiCorePlugin::GuiCorePlugin(QObject* parent) : QQmlEngineExtensionPlugin(parent)
{
    ListModel::setRowExposureHandler(keepFromGarbageCollection);
}

GuiCorePlugin::~GuiCorePlugin()
{
    // This library may be unloaded next. Another handler is not this plugin's to reset.
    if (ListModel::rowExposureHandler() == keepFromGarbageCollection)
        ListModel::setRowExposureHandler(nullptr);
}
