#pragma once

#include <QStringList>
#include <QTemporaryDir>

#include <optional>

/// Makes `order` the configured display order of passenger types for models made while it lives;
/// nothing to do without an order.
///
/// The model takes the order from the configuration below the home directory; this points HOME to
/// a temporary copy of that configuration with the order put in. The user's own is not touched.
class ConfiguredOrder
{
public:
    explicit ConfiguredOrder(const std::optional<QStringList>& order);

    /// The temporary configuration is there, if one is needed.
    bool isValid() const { return m_isValid; }

private:
    bool configure(const QStringList& order);

    std::optional<QTemporaryDir> m_home;
    bool m_isValid;
};
