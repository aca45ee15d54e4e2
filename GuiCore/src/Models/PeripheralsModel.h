#pragma once

#include "GuiCoreExport.h"
#include "ListModel.h"

/// The devices attached to the terminal; rows are PeripheralItem objects that the application
/// creates, inserts with the operations of ListModel and updates through their setters.
class GUICORE_EXPORT PeripheralsModel : public rivo::models::ListModel
{
    Q_OBJECT

public:
    /// A prototype row becomes a child of `parent`, which must outlive the model's last use;
    /// without a parent the prototype is never freed.
    explicit PeripheralsModel(QObject* parent = nullptr);
    ~PeripheralsModel() override;
};
