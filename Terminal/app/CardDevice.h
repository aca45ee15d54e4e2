#pragma once

#include <PeripheralItem.h>

#include <QObject>
#include <QPointer>

#include <memory>

class PeripheralsModel;

namespace rivo::config
{
struct CardTerminalConfig;
}

namespace rivo::payment
{
class PaymentTerminal;
}

namespace rivo::terminal
{

/// The card terminal of a vehicle, and its row on the page of devices.
class CardDevice : public QObject
{
    Q_OBJECT

public:
    explicit CardDevice(PeripheralsModel& devices, QObject* parent = nullptr);
    ~CardDevice() override;

    /// Makes the card terminal of `config`. If that has none, it is one that is simulated and takes
    /// `simulatedTime` milliseconds for a payment, or none if that is negative.
    void connectTo(const config::CardTerminalConfig& config, const QString& currency,
                   int simulatedTime);

    payment::PaymentTerminal* terminal() const { return m_terminal.get(); }

    /// Adds the row of the card terminal, if there is one that is not simulated.
    void addRow();
    const PeripheralItem* row() const { return m_row.data(); } ///< null if there is none

private:
    void update();

    PeripheralsModel& m_devices;
    std::unique_ptr<payment::PaymentTerminal> m_terminal;
    QPointer<PeripheralItem> m_row;
    bool m_isSimulated = false;
};

} // namespace rivo::terminal
