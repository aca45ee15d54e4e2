#include "SimulatedPrinter.h"

namespace rivo::sales
{

SimulatedPrinter::SimulatedPrinter(QObject* parent) : QObject(parent)
{
    m_work.setSingleShot(true);
    m_work.setInterval(350);
    connect(&m_work, &QTimer::timeout, this, [this] {
        if (m_fault.isEmpty())
            emit printed();
        else
            emit failed();
    });
}

void SimulatedPrinter::setTicketTime(int milliseconds) { m_work.setInterval(milliseconds); }

void SimulatedPrinter::setFault(const QString& fault)
{
    if (m_fault == fault)
        return;
    m_fault = fault;
    emit faultChanged();
}

void SimulatedPrinter::print() { m_work.start(); }

} // namespace rivo::sales
