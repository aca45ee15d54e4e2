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

} // namespace

DeviceDesk::DeviceDesk(PeripheralsModel& devices, sales::SimulatedPrinter& printer, QObject* parent)
    : QObject(parent), m_devices(devices), m_printer(printer)
{
}

PeripheralItem* DeviceDesk::device(int row) const
{
    return qobject_cast<PeripheralItem*>(m_devices.itemFromRow(row));
}

PeripheralItem*
DeviceDesk::firstDevice(const std::function<bool(const PeripheralItem&)>& isWanted) const
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
    deviceChanged();
}

void DeviceDesk::deviceChanged()
{
    if (!m_devices.indexFromItem(m_printerDevice).isValid())
        m_printerDevice.clear(); // removed, and about to be destroyed
    const bool isFaulty = m_printerDevice.isNull() || m_printerDevice->error();
    const QString state = m_printerDevice.isNull() ? QString() : m_printerDevice->stateStr();
    m_printer.setFault(!isFaulty         ? QString()
                       : state.isEmpty() ? tr("no report from the printer")
                                         : state);
    int faults = 0;
    for (int row = 0; row < m_devices.rowCount(); ++row)
        faults += device(row)->error() ? 1 : 0;
    if (faults == m_faults)
        return;
    m_faults = faults;
    emit faultsChanged();
}

int DeviceDesk::faults() const { return m_faults; }

bool DeviceDesk::isPrinter(int row) const
{
    return m_printerDevice != nullptr && device(row) == m_printerDevice;
}

bool DeviceDesk::report(int row, DeviceDesk::Event event, const QString& text)
{
    PeripheralItem* device = this->device(row);
    if (device == nullptr)
        return false;
    // Signals follow every step: a fault is gone before its text is, and there after it.
    if (event != Fault)
        device->setError(false);
    device->setStateStr(text);
    device->setDeviceState(event);
    device->setBlueWarning(event == Notice);
    device->setYellowWarning(event == Warning);
    device->setWarning(event == SeriousWarning);
    device->setError(event == Fault);
    return true;
}

} // namespace rivo::terminal
