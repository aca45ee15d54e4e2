#include "RoleValueOrder_p.h"

namespace rivo
{
namespace models
{

QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED
bool isLessRoleValue(const QVariant& a, const QVariant& b) { return a < b; }
bool isGreaterRoleValue(const QVariant& a, const QVariant& b) { return a > b; }
QT_WARNING_POP

bool areEqualRoleValues(const QVariant& a, const QVariant& b) { return a == b; }
bool areEqualRoleValues(const QVariantList& a, const QVariantList& b) { return a == b; }

} // namespace models
} // namespace rivo
