#pragma once

#include <QVariant>
#include <QVariantList>

namespace rivo
{
namespace models
{

// How values of roles compare: by the operators of Qt 5's QVariant, with every Qt. Numbers compare
// by value, doubles fuzzily; values of different types after a conversion, and as texts without
// regard to case if there is none.

bool isLessRoleValue(const QVariant& a, const QVariant& b);
bool isGreaterRoleValue(const QVariant& a, const QVariant& b);
bool areEqualRoleValues(const QVariant& a, const QVariant& b);
bool areEqualRoleValues(const QVariantList& a, const QVariantList& b);

} // namespace models
} // namespace rivo
