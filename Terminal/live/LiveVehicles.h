#pragma once

#include "LiveFetcher.h"
#include "LiveFleet.h"

#include <QObject>
#include <QTimer>

#include <functional>

namespace rivo::live
{

/// The vehicles of the operator as its server reports them: fetches messages and keeps the rows of
/// the fleet.
class LiveVehicles : public QObject
{
    Q_OBJECT

public:
    /// `now` gives the seconds since 1970. The others are those of LiveFleet.
    LiveVehicles(const LiveSettings& settings, const feed::Network& network,
                 const fleet::Timetable& timetable, AssetsModel& fleet, std::function<qint64()> now,
                 QObject* parent = nullptr);

    void start();

    /// Whether the last answer was a good one.
    bool isConnected() const { return m_isConnected; }
    /// What is known of the server, for people.
    QString stateText() const;
    /// See LiveFleet::silences().
    QHash<int, fleet::Seconds> silences() const { return m_fleet.silences(m_now()); }

signals:
    /// isConnected() or stateText() is another one.
    void stateChanged();
    /// The rows, or how old their reports are, may have changed.
    void reported();

private:
    void read(const QByteArray& bytes);
    void announce(bool isConnected, const QString& problem);

    LiveFetcher m_fetcher;
    LiveFleet m_fleet;
    const std::function<qint64()> m_now;
    QTimer m_aging;
    bool m_isConnected = false;
    int m_count = 0;
    QString m_problem;
};

} // namespace rivo::live
