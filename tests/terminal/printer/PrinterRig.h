#pragma once

#include "../ticket/Papers.h"

#include <ByteLink.h>
#include <Config.h>
#include <EscPosPrinter.h>
#include <PrinterPorts.h>
#include <VirtualPrinter.h>

#include <QDeadlineTimer>
#include <QtTest>

#include <memory>

/// Handles events until the condition holds, without the pauses of QTRY_VERIFY; false after ten
/// seconds.
template <class Condition>
bool comesTrue(const Condition& condition)
{
    const QDeadlineTimer end(10000);
    while (!condition() && !end.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 2);
    return condition();
}

/// A printer that is a program, and what prints on it, connected as `connection` says: "network",
/// "device" or "serial".
struct PrinterRig
{
    using Printer = rivo::printer::EscPosPrinter;
    using Device = rivo::simulators::VirtualPrinter;

    /// Short enough for a test, and long enough for a machine that is busy.
    static Printer::Times times() { return {1500, 8000, 15, 5}; }

    explicit PrinterRig(const QString& connection = QStringLiteral("network"),
                        Printer::Proof proof = Printer::Proof::ProcessId,
                        const Printer::Times& patience = times())
    {
        device.setDrawing(false);
        rivo::config::PrinterConfig config;
        if (connection == QLatin1String("network")) {
            if (!network.listen(0))
                qFatal("no port");
            config.tcp = rivo::config::TcpAddress{QStringLiteral("127.0.0.1"), network.port()};
        } else {
            if (!line.open())
                qFatal("no pseudo terminal");
            if (connection == QLatin1String("device"))
                config.device = line.name();
            else
                config.serial = rivo::config::SerialLine{line.name(), 115200, "none", "none"};
        }
        printer =
            std::make_unique<Printer>(rivo::printer::makeLink(config),
                                      rivo::printer::EscPosFormat(), hillValley(), patience, proof);
        const auto note = [this](const char* what) {
            return [this, what] { outcomes.append(what); };
        };
        QObject::connect(printer.get(), &Printer::printed, printer.get(), note("printed"));
        QObject::connect(printer.get(), &Printer::failed, printer.get(), note("failed"));
        QObject::connect(printer.get(), &Printer::inDoubt, printer.get(), note("in doubt"));
    }

    bool isReady() const { return printer->fault().isEmpty(); }
    bool becomesReady() const
    {
        return comesTrue([this] { return isReady(); });
    }
    bool ends(int jobs) const
    {
        return comesTrue([this, jobs] { return outcomes.size() >= jobs; });
    }

    /// Papers with everything that belongs to this ticket: the check value is the last thing.
    int completePapers() const
    {
        int count = 0;
        const auto isComplete = [](const QString& text) {
            return text.startsWith(QLatin1String("Check"));
        };
        for (const auto& piece : device.pieces())
            count += int(std::count_if(piece.lines.begin(), piece.lines.end(), isComplete));
        const QStringList& rest = device.current().lines;
        return count + int(std::count_if(rest.begin(), rest.end(), isComplete));
    }

    Device device;
    rivo::simulators::NetworkPort network{device};
    rivo::simulators::LinePort line{device};
    std::unique_ptr<Printer> printer;
    QStringList outcomes; ///< "printed", "failed" and "in doubt", in their order
};
