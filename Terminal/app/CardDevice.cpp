#include "CardDevice.h"

#include <Config.h>
#include <PeripheralsModel.h>
#include <SimulatedPaymentTerminal.h>
#include <ZvtTerminal.h>

namespace rivo::terminal
{

CardDevice::CardDevice(PeripheralsModel& devices, QObject* parent)
    : QObject(parent), m_devices(devices)
{
}

CardDevice::~CardDevice() = default;

void CardDevice::connectTo(const config::CardTerminalConfig& config, const QString& currency,
                           int simulatedTime)
{
    m_isSimulated = !config.isThere() && simulatedTime >= 0;
    if (m_isSimulated) {
        auto simulated = std::make_unique<payment::SimulatedPaymentTerminal>();
        simulated->setTime(simulatedTime);
        m_terminal = std::move(simulated);
    }
    if (!config.isThere())
        return;
    payment::ZvtSettings settings;
    settings.host = config.host;
    settings.port = static_cast<quint16>(config.port);
    settings.password = config.password;
    settings.currency = currency;
    settings.answerTime = config.timeout;
    auto made = std::make_unique<payment::ZvtTerminal>(settings);
    made->start();
    m_terminal = std::move(made);
}

void CardDevice::addRow()
{
    if (m_terminal == nullptr || m_isSimulated)
        return;
    m_row = new PeripheralItem(0, tr("Card terminal"), 0, QStringLiteral("qrc:/icons/paycard.svg"),
                               false, false, false, false, 0, QString(), &m_devices);
    m_devices.appendRow(m_row);
    connect(m_terminal.get(), &payment::PaymentTerminal::changed, this, &CardDevice::update);
    connect(m_terminal.get(), &payment::PaymentTerminal::statusTextChanged, this,
            &CardDevice::update);
    update();
}

/// Signals follow every step: a fault is gone before its text is, and there after it.
void CardDevice::update()
{
    if (m_row.isNull())
        return;
    const QString fault = m_terminal->fault();
    const QString status = m_terminal->statusText();
    if (fault.isEmpty())
        m_row->setError(false);
    m_row->setStateStr(!fault.isEmpty() ? fault : !status.isEmpty() ? status : tr("Ready"));
    if (!fault.isEmpty())
        m_row->setError(true);
}

} // namespace rivo::terminal
