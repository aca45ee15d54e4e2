#pragma once

#include "TicketPrinter.h"

namespace rivo::sales
{

/// The place of a printer where none is set up: has a fault from the start, and prints nothing.
class NoPrinter : public TicketPrinter
{
    Q_OBJECT

public:
    explicit NoPrinter(QObject* parent = nullptr);

    void print(const PrintJob& job) override; ///< failed()
};

} // namespace rivo::sales
