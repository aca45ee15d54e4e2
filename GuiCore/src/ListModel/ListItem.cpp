#include "ListItem.h"

#include <QMetaType>

namespace rivo
{
namespace models
{

namespace
{
// ListModel::itemFromRow() is declared as returning "ListItem*" inside the namespace, and that
// unqualified text is what its meta-object records. QML engines look the type up by that text.
[[maybe_unused]] const int unqualifiedPointerType = qRegisterMetaType<ListItem*>("ListItem*");
} // namespace

ListItem::ListItem(QObject* parent) : QObject(parent) {}

ListItem::~ListItem() = default;

void ListItem::triggerItemUpdate() { emit dataChanged(); }

void ListItem::storeFuzzy(double& field, double value)
{
    if (qFuzzyCompare(field + 1.0, value + 1.0))
        return;
    field = value;
    emit dataChanged();
}

} // namespace models
} // namespace rivo
