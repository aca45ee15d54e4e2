#include "DeviceDesk.h"

#include <PeripheralItem.h>
#include <PeripheralsModel.h>
#include <SimulatedPrinter.h>

namespace rivo::terminal
{

namespace
{

bool looksLikePrinter(const PeripheralItem& device)
{
    return device.icon() == QLatin1String("qrc:/icons/printer.svg") ||
           device.name().contains(QLatin1String("printer"), Qt::CaseInsensitive);
}

/// A device that is not connected has all flags and no text: no alarm.
bool hasReported(const PeripheralItem& device)
{
    return !device.stateStr().isEmpty() || !device.warning() || !device.blueWarning() ||
           !device.yellowWarning() || !device.error();
}

} // namespace

DeviceDesk::DeviceDesk(PeripheralsModel& devices, sales::TicketPrinter& printer, QObject* parent)
    : QObject(parent), m_devices(devices), m_printer(printer),
      m_simulated(qobject_cast<sales::SimulatedPrinter*>(&printer))
{
}

PeripheralItem* DeviceDesk::device(int row) const
{
    return qobject_cast<PeripheralItem*>(m_devices.itemFromRow(row));
}

PeripheralItem* DeviceDesk::firstDevice(const Selection& isWanted) const
{
    for (int row = 0; row < m_devices.rowCount(); ++row) {
        if (isWanted(*device(row)))
            return device(row);
    }
    return nullptr;
}

void DeviceDesk::findPrinter(std::optional<int> id)
{
    m_printerDevice = firstDevice([id](const PeripheralItem& device) { return device.id() == id; });
    if (m_printerDevice.isNull())
        m_printerDevice = firstDevice(looksLikePrinter);
    if (m_printerDevice.isNull()) {
        m_printerDevice =
            new PeripheralItem(0, tr("Ticket printer"), 0, QStringLiteral("qrc:/icons/printer.svg"),
                               false, false, false, false, 0, tr("Ready"), &m_devices);
        m_devices.appendRow(m_printerDevice);
    }
    for (int row = 0; row < m_devices.rowCount(); ++row)
        connect(device(row), &PeripheralItem::dataChanged, this, &DeviceDesk::deviceChanged);
    connect(&m_devices, &PeripheralsModel::rowsRemoved, this, &DeviceDesk::deviceChanged);
    if (m_simulated == nullptr) {
        connect(&m_printer, &sales::TicketPrinter::faultChanged, this, &DeviceDesk::showPrinter);
        connect(&m_printer, &sales::TicketPrinter::noticeChanged, this, &DeviceDesk::showPrinter);
        showPrinter();
    }
    deviceChanged();
}

void DeviceDesk::deviceChanged()
{
    if (!m_devices.indexFromItem(m_printerDevice).isValid())
        m_printerDevice.clear(); // removed, and about to be destroyed
    if (m_simulated != nullptr)
        controlPrinter();
    int faults = 0;
    for (int row = 0; row < m_devices.rowCount(); ++row)
        faults += device(row)->error() && hasReported(*device(row)) ? 1 : 0;
    if (faults == m_faults)
        return;
    m_faults = faults;
    emit faultsChanged();
}

void DeviceDesk::controlPrinter()
{
    const bool isFaulty = m_printerDevice.isNull() || m_printerDevice->error();
    const QString state = m_printerDevice.isNull() ? QString() : m_printerDevice->stateStr();
    m_simulated->setFault(!isFaulty         ? QString()
                          : state.isEmpty() ? tr("The ticket printer is not connected.")
                                            : state);
}

void DeviceDesk::showPrinter()
{
    if (m_printerDevice.isNull())
        return;
    if (!m_printer.fault().isEmpty())
        write(*m_printerDevice, Fault, m_printer.fault());
    else if (!m_printer.notice().isEmpty())
        write(*m_printerDevice, Warning, m_printer.notice());
    else
        write(*m_printerDevice, Ready, tr("Ready"));
}

void DeviceDesk::disconnectPrinter()
{
    if (m_printerDevice.isNull())
        return;
    m_printerDevice->setStateStr(QString());
    m_printerDevice->setBlueWarning(true);
    m_printerDevice->setYellowWarning(true);
    m_printerDevice->setWarning(true);
    m_printerDevice->setError(true);
}

int DeviceDesk::faults() const { return m_faults; }

bool DeviceDesk::isPrinter(int row) const
{
    return m_printerDevice != nullptr && device(row) == m_printerDevice;
}

bool DeviceDesk::isReal(int row) const
{
    const PeripheralItem* const of = device(row);
    return of != nullptr && (isPrinter(row) ? m_simulated == nullptr : m_isReal(*of));
}

bool DeviceDesk::report(int row, DeviceDesk::Event event, const QString& text)
{
    if (device(row) == nullptr || isReal(row))
        return false;
    write(*device(row), event, text);
    return true;
}

void DeviceDesk::write(PeripheralItem& device, Event event, const QString& text)
{
    // Signals follow every step: a fault is gone before its text is, and there after it.
    if (event != Fault)
        device.setError(false);
    device.setStateStr(text);
    device.setDeviceState(event);
    device.setBlueWarning(event == Notice);
    device.setYellowWarning(event == Warning);
    device.setWarning(event == SeriousWarning);
    device.setError(event == Fault);
}

} // namespace rivo::terminal
