#pragma once

#include "PositionSource.h"

#include <QSocketNotifier>

namespace rivo::position
{

/// A receiver behind a device file that the system has set up, or a named pipe, with NMEA 0183.
class DeviceSource : public PositionSource
{
    Q_OBJECT

public:
    explicit DeviceSource(const SourceSettings& settings) : PositionSource(settings) {}
    ~DeviceSource() override;

protected:
    void connectDevice() override;
    void closeDevice() override;

private:
    void read();

    int m_file = -1;
    std::unique_ptr<QSocketNotifier> m_notifier;
    NmeaReader m_reader;
};

} // namespace rivo::position
