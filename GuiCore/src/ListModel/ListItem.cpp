#include "ListItem.h"

namespace rivo
{
namespace models
{

ListItem::ListItem(QObject* parent) : QObject(parent) {}

ListItem::~ListItem() = default;

void ListItem::triggerItemUpdate() { emit dataChanged(); }

bool ListItem::fuzzilyEqual(double a, double b) { return qFuzzyCompare(a + 1.0, b + 1.0); }

void ListItem::storeFuzzy(double& field, double value)
{
    if (fuzzilyEqual(field, value))
        return;
    field = value;
    emit dataChanged();
}

} // namespace models
} // namespace rivo
