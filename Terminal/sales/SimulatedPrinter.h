#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

namespace rivo::sales
{

/// A ticket printer without paper: takes one ticket at a time and a moment for each.
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

    /// Starts one ticket, not while another is being printed. printed() or failed() follows from
    /// the event loop.
    void print();

signals:
    void printed();
    void failed();
    void faultChanged();

private:
    QTimer m_work;
    QString m_fault;
    bool m_isSpoiled = false;
};

} // namespace rivo::sales
