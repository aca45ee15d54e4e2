#include "NoPrinter.h"

#include <QTimer>

namespace rivo::sales
{

NoPrinter::NoPrinter(QObject* parent) : TicketPrinter(parent)
{
    storeFault(tr("No ticket printer is set up"));
}

void NoPrinter::print(const PrintJob&) { QTimer::singleShot(0, this, &NoPrinter::failed); }

} // namespace rivo::sales
