#pragma once

#include <LiveFleet.h>
#include <OfficeLink.h>

#include <QObject>
#include <QTimer>

#include <functional>
#include <map>

namespace rivo::terminal
{

/// The other vehicles of the operator as the broker knows them: keeps the rows of the fleet while
/// somebody looks at them. Then alone they are asked for, for every place costs about 120 bytes of
/// the vehicle's network.
class OtherVehicles : public QObject
{
    Q_OBJECT

public:
    static constexpr int pause = 1000; ///< milliseconds in which messages are collected

    /// `own` are the topics of this vehicle, whose place is known better. `now` gives the seconds
    /// since 1970. `link` and `fleet` outlive this; the others are those of LiveFleet.
    OtherVehicles(office::OfficeLink& link, const office::Topics& own, const feed::Network& network,
                  AssetsModel& fleet, std::function<qint64()> now, QObject* parent = nullptr);

    void setShown(bool isShown);

    /// See LiveFleet::silences().
    QHash<int, fleet::Seconds> silences() const { return m_fleet.silences(m_now()); }

signals:
    /// The rows, or how old their reports are, may have changed.
    void reported();

private:
    void take(const QString& topic, const QByteArray& message);
    void apply();

    office::OfficeLink& m_link;
    const office::Topics m_own;
    const office::Topics m_all; ///< of the operator
    live::LiveFleet m_fleet;
    const std::function<qint64()> m_now;
    std::map<QString, live::LiveVehicle> m_collected; ///< since the last time, by name
    QTimer m_timer;
    bool m_isShown = false;
};

} // namespace rivo::terminal
