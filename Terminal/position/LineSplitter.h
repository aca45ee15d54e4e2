#pragma once

#include <QByteArray>
#include <QList>

namespace rivo::position
{

/// Cuts a stream of bytes into lines. It keeps one unfinished line of limited length, so that a
/// device that never ends a line needs no more memory.
class LineSplitter
{
public:
    /// Longer lines are left out as a whole.
    explicit LineSplitter(int longestLine) : m_longest(longestLine) {}

    /// The lines that end in `bytes`, without their ends (LF or CR LF). Empty lines are left out.
    QList<QByteArray> split(const QByteArray& bytes);

    /// Forgets the unfinished line.
    void clear();

private:
    int m_longest;
    QByteArray m_unfinished;
    bool m_isTooLong = false;
};

} // namespace rivo::position
