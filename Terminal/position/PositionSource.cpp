#include "PositionSource.h"

#include "DeviceSource_p.h"
#include "GpsdSource_p.h"
#include "SerialSource_p.h"

#include <algorithm>

namespace rivo::position
{

std::unique_ptr<PositionSource> PositionSource::make(const SourceSettings& settings)
{
    switch (settings.kind) {
    case SourceSettings::Serial:
        return std::make_unique<SerialSource>(settings);
    case SourceSettings::Device:
        return std::make_unique<DeviceSource>(settings);
    case SourceSettings::Gpsd:
        return std::make_unique<GpsdSource>(settings);
    case SourceSettings::None:
        break;
    }
    return nullptr;
}

PositionSource::PositionSource(const SourceSettings& settings)
    : m_settings(settings), m_nextRetry(settings.firstRetry)
{
    m_retry.setSingleShot(true);
    m_silence.setSingleShot(true);
    m_silence.setInterval(settings.silenceAllowed);
    connect(&m_retry, &QTimer::timeout, this, [this] { connectDevice(); });
    connect(&m_silence, &QTimer::timeout, this,
            [this] { disconnected(tr("nothing was received")); });
}

void PositionSource::start() { connectDevice(); }

void PositionSource::connected()
{
    m_silence.start();
    announce(true, QString());
}

void PositionSource::disconnected(const QString& problem)
{
    closeDevice();
    m_silence.stop();
    m_retry.start(m_nextRetry);
    m_nextRetry = std::min(2 * m_nextRetry, m_settings.lastRetry);
    announce(false, problem);
}

void PositionSource::heard() { m_silence.start(); }

void PositionSource::report(const QVector<Report>& reports)
{
    // A device that is not a receiver may connect and send: the waits go on until it makes sense.
    if (!reports.isEmpty())
        m_nextRetry = m_settings.firstRetry;
    for (const Report& each : reports)
        emit reported(each);
}

void PositionSource::announce(bool isConnected, const QString& problem)
{
    if (isConnected == m_isConnected && problem == m_problem)
        return;
    m_isConnected = isConnected;
    m_problem = problem;
    emit connectionChanged();
}

} // namespace rivo::position
