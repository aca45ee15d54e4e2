#include "Pruning.h"

#include <SalesDesk.h>

namespace rivo::terminal
{

namespace
{

constexpr int minute = 60000;
constexpr int hour = 60 * minute;

} // namespace

Pruning::Pruning(sales::SalesDesk& desk, const std::function<qint64()>& acknowledged, int keepDays,
                 QObject* parent)
    : QObject(parent), m_desk(desk), m_acknowledged(acknowledged), m_keepDays(keepDays)
{
    connect(&m_looks, &QTimer::timeout, this, &Pruning::look);
    m_looks.start(minute);
}

void Pruning::look()
{
    const qint64 acknowledged = m_acknowledged();
    const auto pruned =
        acknowledged > 0 ? m_desk.pruneJournal(acknowledged, m_keepDays) : std::nullopt;
    const bool isDone = pruned && *pruned == 0;
    m_looks.setInterval(isDone ? hour : minute);
}

} // namespace rivo::terminal
