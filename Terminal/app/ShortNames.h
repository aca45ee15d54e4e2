#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

namespace rivo::terminal
{

/// Shortens long names so that each still differs from the names that it begins or ends like.
class ShortNames
{
public:
    explicit ShortNames(QStringList names = {});

    /// At most `letters` of `name`, with "…" where some are left out: its begin, and the part where
    /// it differs from the others. The whole name if it is not longer.
    QString shortened(const QString& name, int letters) const;

private:
    int commonBegin(const QString& name) const;
    int commonEnd(const QString& name) const;

    QStringList m_names;     ///< sorted, each once
    QStringList m_backwards; ///< the same with their letters in reverse order
};

} // namespace rivo::terminal
