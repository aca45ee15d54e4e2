#pragma once

#include "GuiCoreExport.h"

#include <QByteArray>
#include <QHash>
#include <QObject>
#include <QVariant>

namespace rivo
{
namespace models
{

/// Base of every row of a ListModel: an object that knows its identity, answers role queries and
/// announces changes of its visible state.
///
/// Roles are numbered per item class from 257 (Qt::UserRole + 1); the numbers are part of the
/// interface. Items live on the GUI thread and are owned by their QObject parent alone.
class GUICORE_EXPORT ListItem : public QObject
{
    Q_OBJECT

public:
    /// `parent` owns the row.
    explicit ListItem(QObject* parent = nullptr);
    ~ListItem() override;

    /// Identity of the row, as used by findById(), rowIndexFromId() and sort() of ListModel. Need
    /// not be unique within a model.
    virtual int id() const = 0;

    /// Value of one role; an invalid QVariant for a role that the item class does not have.
    virtual QVariant data(int role) const = 0;

    /// Role table of the item class (number to name); a shared copy of one static table.
    virtual QHash<int, QByteArray> roleNames() const = 0;

    /// Emits dataChanged() although nothing changed: refreshes the row in all views.
    virtual void triggerItemUpdate();

signals:
    /// A field has changed, mostly one that views show. Setters emit it once, after storing, and
    /// only if the value differs; exceptions are noted at the setter.
    void dataChanged();

protected:
    /// Stores `value` and announces it, unless it equals the stored one.
    template <typename T>
    void store(T& field, const T& value)
    {
        if (field == value)
            return;
        field = value;
        emit dataChanged();
    }

    /// Equality of doubles whose noise must not repaint the row: qFuzzyCompare() of both values
    /// shifted by one. The shift makes it work near zero. NaN equals nothing and an infinity not
    /// even itself, but opposite infinities count as equal.
    static bool fuzzilyEqual(double a, double b);

    /// store() under fuzzilyEqual().
    void storeFuzzy(double& field, double value);
};

} // namespace models
} // namespace rivo
