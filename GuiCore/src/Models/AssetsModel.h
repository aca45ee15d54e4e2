#pragma once

#include "GuiCoreExport.h"
#include "ListModel.h"

/// The vehicles of the fleet for a map in QML; rows are AssetItem objects that the application
/// creates, inserts with the operations of ListModel and updates through their setters.
class GUICORE_EXPORT AssetsModel : public rivo::models::ListModel
{
    Q_OBJECT

public:
    /// A prototype row becomes a child of `parent`, which must outlive the model's last use;
    /// without a parent the prototype is never freed.
    explicit AssetsModel(QObject* parent = nullptr);
    ~AssetsModel() override;
};
