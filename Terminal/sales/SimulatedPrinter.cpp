#include "SimulatedPrinter.h"

namespace rivo::sales
{

SimulatedPrinter::SimulatedPrinter(QObject* parent) : TicketPrinter(parent)
{
    m_work.setSingleShot(true);
    m_work.setInterval(350);
    connect(&m_work, &QTimer::timeout, this, [this] {
        if (m_isSpoiled) {
            emit failed();
            return;
        }
        keep(m_job);
        emit printed();
    });
}

void SimulatedPrinter::setTicketTime(int milliseconds) { m_work.setInterval(milliseconds); }

void SimulatedPrinter::setFault(const QString& fault)
{
    m_isSpoiled = m_isSpoiled || !fault.isEmpty();
    storeFault(fault);
}

void SimulatedPrinter::print(const PrintJob& job)
{
    m_job = job;
    m_isSpoiled = !this->fault().isEmpty();
    m_work.start();
}

} // namespace rivo::sales
