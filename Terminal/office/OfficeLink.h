#pragma once

#include "BrokerLink.h"
#include "Outbox.h"

namespace rivo::office
{

/// A vehicle's connection to the office: sends the records of its journal as long as there is a
/// network, and says whether the vehicle is there. Nothing here waits for the network.
class OfficeLink : public QObject
{
    Q_OBJECT

public:
    enum class State {
        Unusable,  ///< a file for TLS cannot be used
        Away,      ///< no connection; records wait in the journal
        Refused,   ///< the office does not take the records
        Connected, ///< records go to the office
        Complete   ///< the office has all records
    };

    /// `broker` with host, port and files of TLS; the other fields are made of `topics`. The
    /// journal outlives this.
    OfficeLink(BrokerSettings broker, const Topics& topics, sales::Journal& journal,
               const OutboxPace& pace = {}, QObject* parent = nullptr);

    /// Connects, again and again.
    void start();

    /// Says where the vehicle is, at most every 5 seconds; in between the last report counts. The
    /// broker keeps it.
    void report(const PositionReport& report);

    /// Says how the devices are, at once with each connection, then at most every 5 seconds and if
    /// something has changed. The broker keeps it.
    void report(const QVector<DeviceReport>& devices);

    // For what else goes between this vehicle and the office.

    /// Subscribes at each connection. Before start().
    void subscribe(const QString& topic) { m_link.subscribe(topic); }

    /// False, and nothing is published, without a connection.
    bool publish(const QString& topic, const QByteArray& message)
    {
        return m_link.publish(topic, message);
    }

    /// See BrokerLink::follow(); what comes is received().
    void follow(const QString& topic, bool isFollowed) { m_link.follow(topic, isFollowed); }

    /// The last record that the office said it has; -1 = none, or not known yet.
    qint64 acknowledged() const { return m_outbox.acknowledged(); }

    State state() const { return m_state; }
    QString stateText() const; ///< for people

signals:
    void stateChanged(); ///< or its text
    void connected();
    void disconnected();
    void received(const QString& topic, const QByteArray& message);

private:
    void take(const QString& topic, const QByteArray& message);
    void show(State state);
    void sendPosition();
    void sendDevices();

    const Topics m_topics;
    Outbox m_outbox;
    BrokerLink m_link;
    State m_state = State::Away;
    std::optional<PositionReport> m_position; ///< that was not sent yet
    QTimer m_positionPause;
    QVector<DeviceReport> m_devices; ///< the last ones
    QByteArray m_sentDevices;        ///< of this connection
    QTimer m_devicesPause;
};

} // namespace rivo::office
