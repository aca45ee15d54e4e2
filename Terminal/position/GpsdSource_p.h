#pragma once

#include "GpsdReader.h"
#include "PositionSource.h"

#include <QTcpSocket>

namespace rivo::position
{

/// A gpsd, which shares one receiver among programs.
class GpsdSource : public PositionSource
{
    Q_OBJECT

public:
    explicit GpsdSource(const SourceSettings& settings);

protected:
    void connectDevice() override;
    void closeDevice() override;

private:
    void read();
    void lose(const QString& problem);

    QTcpSocket m_socket;
    QTimer m_deadline; ///< of connecting
    GpsdReader m_reader;
};

} // namespace rivo::position
