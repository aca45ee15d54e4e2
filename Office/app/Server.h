#pragma once

#include <BrokerLink.h>
#include <Database.h>
#include <Intake.h>
#include <Publisher.h>

#include <QElapsedTimer>
#include <VehicleStates.h>

#include <QString>

struct mosquitto;
struct mosquitto_message;

namespace rivo::backoffice
{

/// Takes what vehicles send, one message after the other: none is read from the broker before the
/// one before is stored and answered. So a slow database slows the broker, and nothing piles up.
///
/// The broker keeps no session for it: it divides the messages among the programs that are
/// connected. What one of them had and did not answer, the vehicle sends again.
class Server
{
public:
    /// Only host, port and the files for TLS of `broker` are used. `share`: programs with the same
    /// name share the messages.
    Server(const office::BrokerSettings& broker, const QString& share,
           const DatabaseSettings& database);
    ~Server();
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    /// What is wrong with the files for TLS; empty if they can be used.
    QString configure();

    /// Until stop() is called. Broker and database are looked for again when they are lost.
    void run();

    /// May be called by a signal.
    static void stop();

private:
    bool connectDatabase();
    bool connectBroker();
    void loseBroker(const QString& problem);
    void pause();
    void subscribe();
    void take(const mosquitto_message& message);
    void announce();
    void loseDatabase();
    void publish(const QString& topic, const QByteArray& message, bool isRetained);

    office::BrokerSettings m_broker;
    QByteArray m_share;
    OfficeStore m_store;
    Intake m_intake;
    Publisher m_publisher;
    VehicleStates m_states;
    QElapsedTimer m_announced;
    mosquitto* m_client = nullptr;
    bool m_hasDatabase = false;
    bool m_hasBroker = false;
    size_t m_subscribed = 0; ///< topics, of this connection
    int m_pause = 1;         ///< seconds until the next attempt
};

} // namespace rivo::backoffice
