#include "ListItem.h"

namespace rivo
{
namespace models
{

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
