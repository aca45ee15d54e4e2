#pragma once

#include <QStringList>
#include <QTemporaryDir>

/// Makes `order` the configured display order of passenger types for models made afterwards.
///
/// The model takes the order from the configuration below the home directory; this points HOME to
/// a temporary copy of that configuration with the order put in. The user's own is not touched.
class ConfiguredOrder
{
public:
    explicit ConfiguredOrder(const QStringList& order);

    bool isValid() const { return m_isValid; }

private:
    QTemporaryDir m_home;
    bool m_isValid;
};
