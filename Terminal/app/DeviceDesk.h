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
}

namespace rivo::terminal
{

/// Events of the terminal's devices, by hand instead of by wire; and the printer's row, which says
/// whether the simulated printer can print.
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
    DeviceDesk(PeripheralsModel& devices, sales::SimulatedPrinter& printer,
               QObject* parent = nullptr);

    /// Watches the devices that are there now. The printer is the first device with the id `id`. If
    /// that is not given, or there is none, it is the first one with the icon
    /// "qrc:/icons/printer.svg" or with "printer" in its name; without one a device "Ticket
    /// printer" that is ready is added.
    void findPrinter(std::optional<int> id = std::nullopt);

    int faults() const; ///< devices with an error

    /// False for no such row.
    Q_INVOKABLE bool isPrinter(int row) const;

    /// What the device of `row` reports: flags, state number and text. False for no such row.
    Q_INVOKABLE bool report(int row, rivo::terminal::DeviceDesk::Event event, const QString& text);

signals:
    void faultsChanged();

private:
    PeripheralItem* device(int row) const;
    PeripheralItem* firstDevice(const std::function<bool(const PeripheralItem&)>& isWanted) const;
    void deviceChanged();

    PeripheralsModel& m_devices;
    sales::SimulatedPrinter& m_printer;
    QPointer<PeripheralItem> m_printerDevice;
    int m_faults = 0;
};

} // namespace rivo::terminal
