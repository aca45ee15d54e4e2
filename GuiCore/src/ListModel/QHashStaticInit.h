#pragma once

#include <QHash>
#include <QPair>

#include <initializer_list>

namespace rivo
{
namespace models
{

/// Holder of one table that is built during static initialisation and read-only afterwards, such
/// as the role names of an item class. Users read `hash` directly; copies of it share its storage.
template <typename Key, typename Value>
struct QHashStaticInit
{
    /// Inserts the pairs in list order: a later pair with the same key replaces the earlier one.
    QHashStaticInit(std::initializer_list<QPair<Key, Value>> pairs)
    {
        for (const QPair<Key, Value>& pair : pairs)
            hash.insert(pair.first, pair.second);
    }

    QHash<Key, Value> hash; ///< the table
};

} // namespace models
} // namespace rivo
