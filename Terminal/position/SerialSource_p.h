#pragma once

#include "PositionSource.h"

#include <QSerialPort>

namespace rivo::position
{

/// A receiver that sends NMEA 0183 over a serial line.
class SerialSource : public PositionSource
{
    Q_OBJECT

public:
    explicit SerialSource(const SourceSettings& settings);

protected:
    void connectDevice() override;
    void closeDevice() override;

private:
    void read();

    QSerialPort m_port;
    NmeaReader m_reader;
};

} // namespace rivo::position
