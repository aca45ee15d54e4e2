#pragma once

#include "Records.h"

#include <QObject>
#include <QString>
#include <QTimer>

namespace rivo::sales
{

/// A ticket printer without paper: takes one ticket or report at a time and a moment for each.
class SimulatedPrinter : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString fault READ fault NOTIFY faultChanged)

public:
    explicit SimulatedPrinter(QObject* parent = nullptr);

    /// Time per ticket in milliseconds; 0 prints in the next turn of the event loop.
    void setTicketTime(int milliseconds);

    /// Why it cannot print; empty if it can.
    QString fault() const { return m_fault; }

    /// A fault while a ticket is being printed spoils that ticket, even if it is gone before the
    /// ticket would be out: failed().
    void setFault(const QString& fault);

    /// Starts one job, not while another is being printed. printed() or failed() follows from the
    /// event loop. Without a job the paper is fed.
    void print(const PrintJob& job = {});

    /// What came out last, for those who want to see it; nothing before.
    const std::optional<PrintJob>& lastPrinted() const { return m_lastPrinted; }

signals:
    void printed();
    void failed();
    void faultChanged();

private:
    QTimer m_work;
    PrintJob m_job;
    std::optional<PrintJob> m_lastPrinted;
    QString m_fault;
    bool m_isSpoiled = false;
};

} // namespace rivo::sales
