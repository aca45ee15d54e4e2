#include "SimulatedPrinter.h"

namespace rivo::sales
{

SimulatedPrinter::SimulatedPrinter(QObject* parent) : QObject(parent)
{
    m_work.setSingleShot(true);
    m_work.setInterval(350);
    connect(&m_work, &QTimer::timeout, this, [this] {
        if (m_isSpoiled) {
            emit failed();
            return;
        }
        m_lastPrinted = m_job;
        emit printed();
    });
}

void SimulatedPrinter::setTicketTime(int milliseconds) { m_work.setInterval(milliseconds); }

void SimulatedPrinter::setFault(const QString& fault)
{
    if (m_fault == fault)
        return;
    m_fault = fault;
    m_isSpoiled = m_isSpoiled || !m_fault.isEmpty();
    emit faultChanged();
}

void SimulatedPrinter::print(const PrintJob& job)
{
    m_job = job;
    m_isSpoiled = !m_fault.isEmpty();
    m_work.start();
}

} // namespace rivo::sales
