#include "ClockNotes.h"

#include "Journal.h"

#include <algorithm>

namespace rivo::sales
{

namespace
{

constexpr int defaultPause = 600000; // milliseconds

} // namespace

ClockNotes::ClockNotes(Journal& journal, const std::function<QDateTime()>& clock, QObject* parent)
    : QObject(parent), m_journal(journal), m_clock(clock)
{
    setPause(defaultPause);
    for (Kind* kind : {&m_offsets, &m_steps}) {
        kind->pause.setSingleShot(true);
        connect(&kind->pause, &QTimer::timeout, this, [this, kind] { writeWaiting(*kind); });
    }
}

void ClockNotes::setPause(int milliseconds)
{
    m_offsets.pause.setInterval(milliseconds);
    m_steps.pause.setInterval(milliseconds);
}

void ClockNotes::compareWithLastRecord()
{
    const QDateTime last = m_journal.lastRecordAt();
    const QDateTime now = m_clock();
    if (!last.isValid() || last.msecsTo(now) > -noticed)
        return;
    if (!m_journal.recordClock(ClockRemark::Behind, last.msecsTo(now), now))
        emit failed();
}

void ClockNotes::noteOffset(qint64 milliseconds)
{
    if (m_offsets.pause.isActive())
        m_offsets.waiting = milliseconds;
    else
        write(m_offsets, milliseconds);
}

void ClockNotes::noteStep(qint64 milliseconds)
{
    if (!m_steps.pause.isActive()) {
        write(m_steps, milliseconds);
        return;
    }
    const qint64 before = m_steps.waiting.value_or(milliseconds);
    m_steps.waiting = std::min(before, milliseconds) < 0 ? std::min(before, milliseconds)
                                                         : std::max(before, milliseconds);
}

void ClockNotes::writeWaiting(Kind& kind)
{
    const std::optional<qint64> waiting = kind.waiting;
    kind.waiting.reset();
    if (waiting)
        write(kind, *waiting);
}

void ClockNotes::write(Kind& kind, qint64 milliseconds)
{
    if (kind.remark == ClockRemark::Offset) {
        if (m_writtenOffset && qAbs(milliseconds - *m_writtenOffset) < noticed)
            return;
        m_writtenOffset = milliseconds;
    }
    kind.pause.start();
    if (!m_journal.recordClock(kind.remark, milliseconds, m_clock()))
        emit failed();
}

} // namespace rivo::sales
