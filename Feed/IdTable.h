#pragma once

#include <QPair>
#include <QString>
#include <QVector>

#include <string>
#include <string_view>
#include <vector>

namespace rivo::feed
{

/// Identifiers of one kind, numbered from 0 in order of appearance. They are kept sorted, so that
/// no choice of identifiers makes them slow to find.
class IdTable
{
public:
    /// Adds an identifier behind the others; it is found after seal().
    int append(std::string_view id);

    /// Makes the identifiers findable. Returns every number whose identifier has an earlier one,
    /// with the first number of that identifier.
    QVector<QPair<int, int>> seal();

    /// Leaves every identifier once, sealed. Returns the new number of each former one.
    QVector<int> unify();

    /// The first number of an identifier; -1 if there is none.
    int find(std::string_view id) const;
    int find(const QString& id) const;

    int size() const { return static_cast<int>(m_ends.size()); }
    std::string_view at(int number) const;
    QString text(int number) const; ///< empty for -1

    /// The number that is shown for each identifier: its own if all are positive integers, else
    /// from 1 in order of appearance.
    QVector<int> publicNumbers() const;

private:
    std::string m_texts; ///< one behind the other
    std::vector<size_t> m_ends;
    std::vector<int> m_order; ///< sorted numbers of the distinct identifiers
};

} // namespace rivo::feed
