#pragma once

#include "TicketPrinter.h"

#include <QTimer>

namespace rivo::sales
{

/// A ticket printer without paper: takes one ticket or report at a time and a moment for each.
class SimulatedPrinter : public TicketPrinter
{
    Q_OBJECT

public:
    explicit SimulatedPrinter(QObject* parent = nullptr);

    /// Time per ticket in milliseconds; 0 prints in the next turn of the event loop.
    void setTicketTime(int milliseconds);

    /// A fault while a ticket is being printed spoils that ticket, even if it is gone before the
    /// ticket would be out: failed().
    void setFault(const QString& fault);

    /// Without a job the paper is fed.
    void print(const PrintJob& job = {}) override;

private:
    QTimer m_work;
    PrintJob m_job;
    bool m_isSpoiled = false;
};

} // namespace rivo::sales
