#pragma once

#include "Records.h"

#include <QDateTime>
#include <QObject>
#include <QTimer>

#include <functional>
#include <optional>

namespace rivo::sales
{

class Journal;

/// Puts remarks about the clock into the journal, and few of them: after a remark the next one of
/// its kind waits for the pause. What comes meanwhile is one remark then: of offsets the last, if
/// it differs from that in the journal; of steps the largest one back, or the largest one ahead.
class ClockNotes : public QObject
{
    Q_OBJECT

public:
    static constexpr qint64 noticed = 1000; ///< milliseconds; smaller differences are none

    /// `journal` outlives this. Remarks have the time of `clock`.
    ClockNotes(Journal& journal, const std::function<QDateTime()>& clock,
               QObject* parent = nullptr);

    /// Milliseconds; ten minutes at first.
    void setPause(int milliseconds);

    /// Remarks if the clock is behind the last record; for the start of the program.
    void compareWithLastRecord();

    /// The satellites are `milliseconds` ahead of the clock.
    void noteOffset(qint64 milliseconds);

    /// The clock was set by `milliseconds`, backwards if negative.
    void noteStep(qint64 milliseconds);

signals:
    /// A remark could not be written, and the journal has stopped.
    void failed();

private:
    /// Remarks of one kind.
    struct Kind
    {
        explicit Kind(ClockRemark of) : remark(of) {}
        const ClockRemark remark;
        QTimer pause;
        std::optional<qint64> waiting;
    };

    void write(Kind& kind, qint64 milliseconds);
    void writeWaiting(Kind& kind);

    Journal& m_journal;
    const std::function<QDateTime()> m_clock;
    Kind m_offsets{ClockRemark::Offset};
    Kind m_steps{ClockRemark::Step};
    std::optional<qint64> m_writtenOffset;
};

} // namespace rivo::sales
