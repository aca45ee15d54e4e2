#include "GuiCorePlugin.h"

#include "ListItem.h"
#include "ListModel.h"

#include <QQmlEngine>

using rivo::models::ListItem;
using rivo::models::ListModel;

// Generated from GuiCoreTypes.h; runs when an engine first imports the module.
void qml_register_types_Rivo_GuiCore();

namespace
{

void keepFromGarbageCollection(ListItem* row)
{
    QQmlEngine::setObjectOwnership(row, QQmlEngine::CppOwnership);
}

} // namespace

GuiCorePlugin::GuiCorePlugin(QObject* parent) : QQmlEngineExtensionPlugin(parent)
{
    // The generated registration must be linked in even if nothing else refers to it.
    volatile auto registration = &qml_register_types_Rivo_GuiCore;
    Q_UNUSED(registration)

    ListModel::setRowExposureHandler(keepFromGarbageCollection);
}

GuiCorePlugin::~GuiCorePlugin()
{
    // This library may be unloaded next. Another handler is not this plugin's to reset.
    if (ListModel::rowExposureHandler() == keepFromGarbageCollection)
        ListModel::setRowExposureHandler(nullptr);
}
