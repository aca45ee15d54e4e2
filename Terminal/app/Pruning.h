#pragma once

#include <QObject>
#include <QTimer>

#include <functional>

namespace rivo::sales
{
class SalesDesk;
}

namespace rivo::terminal
{

/// Lets the journal remove old records that the office has: a part each minute until nothing is to
/// be removed, then it looks each hour.
class Pruning : public QObject
{
    Q_OBJECT

public:
    /// `acknowledged`: the last record that the office has, -1 if that is not known. `keepDays`:
    /// see SalesDesk::pruneJournal(). The desk outlives this.
    Pruning(sales::SalesDesk& desk, const std::function<qint64()>& acknowledged, int keepDays,
            QObject* parent = nullptr);

    void look();
    int pause() const { return m_looks.interval(); } ///< milliseconds until it looks again

private:
    sales::SalesDesk& m_desk;
    const std::function<qint64()> m_acknowledged;
    const int m_keepDays;
    QTimer m_looks;
};

} // namespace rivo::terminal
