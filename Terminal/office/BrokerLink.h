#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>

namespace rivo::office
{

/// How a broker of MQTT 3.1.1 is reached, and as whom.
struct BrokerSettings
{
    QString host;
    int port = 8883;
    QString clientId; ///< the broker keeps a session for each
    // PEM files for TLS; without an authority the connection is plain.
    QString authority;
    QString certificate;
    QString key;
    QString willTopic;  ///< has "0", retained, when the connection is lost, "1" while it is there
    int keepAlive = 60; ///< seconds
};

/// A connection to a broker, in a thread of its own: no function here waits for the network. A lost
/// connection is made again, after 1 second, then twice as long each time, up to a minute. What is
/// published has quality of service 1.
class BrokerLink : public QObject
{
    Q_OBJECT

public:
    explicit BrokerLink(const BrokerSettings& settings, QObject* parent = nullptr);

    /// Ends the connection, which takes a second if there is a last will. May wait for the system
    /// if it looks for the address of the host.
    ~BrokerLink() override;

    /// Subscribes at each connection. Before start().
    void subscribe(const QString& topic);

    /// Gets messages of a topic from now on, or no longer. Those of a time without a connection are
    /// not kept by the broker.
    void follow(const QString& topic, bool isFollowed);

    /// Begins to connect. False if a file for TLS cannot be used, see problem().
    bool start();

    /// False, and nothing is published, without a connection.
    bool publish(const QString& topic, const QByteArray& payload, bool isRetained = false);

    bool isConnected() const { return m_isConnected; }
    const QString& problem() const { return m_problem; } ///< the last one

signals:
    void connected();
    void disconnected(const QString& problem); ///< also when no connection could be made
    void received(const QString& topic, const QByteArray& payload);

private:
    class Loop;
    friend class Loop;

    void onConnected();
    void onDisconnected(const QString& problem);

    BrokerSettings m_settings;
    QStringList m_topics;
    QStringList m_followed;
    QString m_problem;
    bool m_isConnected = false;
    std::unique_ptr<Loop> m_loop;
};

} // namespace rivo::office
