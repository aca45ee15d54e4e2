#pragma once

#include "Fix.h"
#include "NmeaReader.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <memory>

namespace rivo::position
{

/// Where reports of the vehicle's position come from: the operator's choice.
struct SourceSettings
{
    enum Kind {
        None,
        Serial, ///< a receiver at a serial line, NMEA 0183
        Device, ///< a device file that the system has set up, or a named pipe, NMEA 0183
        Gpsd    ///< a gpsd, by TCP
    };
    Kind kind = None;
    QString device;  ///< or serial line, such as /dev/ttyUSB0
    int baud = 9600; ///< of the serial line
    QString host = QStringLiteral("127.0.0.1");
    quint16 port = 2947;
    int firstRetry = 1000;      ///< milliseconds; doubles up to lastRetry
    int lastRetry = 60000;      ///< milliseconds
    int silenceAllowed = 60000; ///< milliseconds without a byte until the connection is made anew
};

/// A receiver behind its connection. It connects by itself, again and again, and never blocks.
class PositionSource : public QObject
{
    Q_OBJECT

public:
    /// The source for `settings`; null for None.
    static std::unique_ptr<PositionSource> make(const SourceSettings& settings);

    /// Connects now, and whenever the connection is lost.
    void start();

    bool isConnected() const { return m_isConnected; }
    /// Why there is no connection, as the system words it; empty while there is one.
    QString problem() const { return m_problem; }

signals:
    /// A fix was reported, or that there is none.
    void reported(const rivo::position::Report& report);
    /// isConnected() or problem() is another one.
    void connectionChanged();

protected:
    explicit PositionSource(const SourceSettings& settings);

    /// Begins to connect; connected() or disconnected() follows, at once or later.
    virtual void connectDevice() = 0;
    virtual void closeDevice() = 0;

    const SourceSettings& settings() const { return m_settings; }
    void connected();
    /// Closes the device and tries again after a while.
    void disconnected(const QString& problem);
    /// Any byte came.
    void heard();
    void report(const QVector<Report>& reports);

private:
    void announce(bool isConnected, const QString& problem);

    const SourceSettings m_settings;
    QTimer m_retry;
    QTimer m_silence;
    int m_nextRetry;
    bool m_isConnected = false;
    QString m_problem;
};

} // namespace rivo::position

Q_DECLARE_METATYPE(rivo::position::Report)
