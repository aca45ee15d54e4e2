#pragma once

#include "Records.h"

#include <QObject>
#include <QString>

#include <optional>

namespace rivo::sales
{

/// What puts tickets and reports on paper, one at a time. Nothing here waits: what happens is
/// reported by signals from the event loop.
class TicketPrinter : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString fault READ fault NOTIFY faultChanged)

public:
    using QObject::QObject;

    /// Why it cannot print, in words for the driver; empty if it can.
    QString fault() const { return m_fault; }

    /// What the driver should know though it can print, such as that paper is near its end.
    QString notice() const { return m_notice; }

    /// Starts one job, not while another one is being printed. One of printed(), failed() and
    /// inDoubt() follows from the event loop, later for a printer that must be repaired first.
    virtual void print(const PrintJob& job) = 0;

    /// What came out last, for those who want to see it; nothing before.
    const std::optional<PrintJob>& lastPrinted() const { return m_lastPrinted; }

signals:
    void printed(); ///< the job is on paper
    void failed();  ///< nothing usable of the job is on paper, and nothing of it will be
    void inDoubt(); ///< the job may be on paper or not; nothing more of it will be
    void faultChanged();
    void noticeChanged();

protected:
    void storeFault(const QString& fault);
    void storeNotice(const QString& notice);
    void keep(const PrintJob& job) { m_lastPrinted = job; }

private:
    QString m_fault;
    QString m_notice;
    std::optional<PrintJob> m_lastPrinted;
};

} // namespace rivo::sales
