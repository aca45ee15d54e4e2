#include "TicketPrinter.h"

namespace rivo::sales
{

void TicketPrinter::storeFault(const QString& fault)
{
    if (m_fault == fault)
        return;
    m_fault = fault;
    emit faultChanged();
}

void TicketPrinter::storeNotice(const QString& notice)
{
    if (m_notice == notice)
        return;
    m_notice = notice;
    emit noticeChanged();
}

} // namespace rivo::sales
