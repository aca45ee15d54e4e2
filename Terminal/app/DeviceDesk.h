#pragma once

#include <QObject>
#include <QPointer>

#include <functional>
#include <optional>

class PeripheralItem;
class PeripheralsModel;

namespace rivo::sales
{
class SimulatedPrinter;
class TicketPrinter;
} // namespace rivo::sales

namespace rivo::terminal
{

/// The terminal's devices. Real ones report by themselves; of the others events are made by hand.
/// The row of a simulated printer decides whether it can print; the row of a real printer shows
/// what the printer reports.
class DeviceDesk : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int faults READ faults NOTIFY faultsChanged)

public:
    enum Event {
        Ready,          ///< nothing to report
        Notice,         ///< blue warning
        Warning,        ///< yellow warning
        SeriousWarning, ///< warning
        Fault           ///< error
    };
    Q_ENUM(Event)

    /// Both outlive the desk.
    DeviceDesk(PeripheralsModel& devices, sales::TicketPrinter& printer, QObject* parent = nullptr);

    /// Watches the devices that are there now. The printer is the first device with the id `id`. If
    /// that is not given, or there is none, it is the first one with the icon
    /// "qrc:/icons/printer.svg" or with "printer" in its name; without one a device "Ticket
    /// printer" that is ready is added.
    void findPrinter(std::optional<int> id = std::nullopt);

    /// Which devices besides a real printer report by themselves; none at first.
    using Selection = std::function<bool(const PeripheralItem& device)>;
    void setReal(const Selection& isReal) { m_isReal = isReal; }

    /// The printer's row has not reported: for a terminal without a printer.
    void disconnectPrinter();

    int faults() const; ///< devices with an error

    /// False for no such row.
    Q_INVOKABLE bool isPrinter(int row) const;

    /// Whether the device of a row reports by itself. False for no such row.
    Q_INVOKABLE bool isReal(int row) const;

    /// What the device of `row` reports: flags, state number and text. False for no such row, and
    /// for a device that reports by itself.
    Q_INVOKABLE bool report(int row, rivo::terminal::DeviceDesk::Event event, const QString& text);

signals:
    void faultsChanged();

private:
    PeripheralItem* device(int row) const;
    PeripheralItem* firstDevice(const Selection& isWanted) const;
    void deviceChanged();
    void controlPrinter();
    void showPrinter();
    static void write(PeripheralItem& device, Event event, const QString& text);

    PeripheralsModel& m_devices;
    sales::TicketPrinter& m_printer;
    sales::SimulatedPrinter* const m_simulated; ///< null for a real printer
    QPointer<PeripheralItem> m_printerDevice;
    Selection m_isReal = [](const PeripheralItem&) { return false; };
    int m_faults = 0;
};

} // namespace rivo::terminal
