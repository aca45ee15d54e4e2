#include "Server.h"

#include <ProgramStart.h>

#include <QDateTime>
#include <QFile>
#include <QThread>

#include <array>
#include <csignal>
#include <mosquitto.h>

namespace rivo::backoffice
{

namespace
{

constexpr int qualityOfService = 1;

/// What vehicles send to the office: each message is for one of its programs.
constexpr std::array sharedTopics{"/rivo/+/+/records", "/rivo/+/+/wanted",
                                  "/rivo/+/+/publications"};

/// What vehicles say of themselves. The broker keeps it, but not for those who share.
constexpr std::array keptTopics{"rivo/+/+/alive", "rivo/+/+/position", "rivo/+/+/devices"};

constexpr size_t subscriptionCount = sharedTopics.size() + keptTopics.size();

volatile std::sig_atomic_t isStopping = 0;

QString textOf(int code) { return QString::fromUtf8(mosquitto_strerror(code)); }

void log(const QString& line) { reportFailure(line); }

} // namespace

Server::Server(const office::BrokerSettings& broker, const QString& share,
               const DatabaseSettings& database)
    : m_broker(broker), m_share("$share/" + share.toUtf8()), m_store(database), m_intake(m_store),
      m_publisher(m_store), m_states(m_store)
{
    mosquitto_lib_init();
    // Without a name and a session of its own.
    m_client = mosquitto_new(nullptr, true, this);
    mosquitto_connect_callback_set(m_client, [](mosquitto*, void* object, int code) {
        auto* server = static_cast<Server*>(object);
        if (code == 0)
            server->subscribe();
        else
            server->loseBroker(QString::fromUtf8(mosquitto_connack_string(code)));
    });
    mosquitto_subscribe_callback_set(
        m_client, [](mosquitto*, void* object, int, int count, const int* granted) {
            auto* server = static_cast<Server*>(object);
            if (count != 1 || *granted > qualityOfService)
                return server->loseBroker(QStringLiteral("the broker refuses the subscription"));
            server->m_pause = 1;
            if (++server->m_subscribed == subscriptionCount)
                log(QStringLiteral("takes records"));
        });
    mosquitto_message_callback_set(m_client,
                                   [](mosquitto*, void* object, const mosquitto_message* message) {
                                       static_cast<Server*>(object)->take(*message);
                                   });
}

Server::~Server()
{
    mosquitto_destroy(m_client);
    mosquitto_lib_cleanup();
}

QString Server::configure()
{
    const auto name = [](const QString& file) { return QFile::encodeName(file); };
    if (m_broker.authority.isEmpty())
        return {};
    const int result = mosquitto_tls_set(
        m_client, name(m_broker.authority).constData(), nullptr,
        m_broker.certificate.isEmpty() ? nullptr : name(m_broker.certificate).constData(),
        m_broker.key.isEmpty() ? nullptr : name(m_broker.key).constData(),
        // Without a password: a callback would ask for one on the terminal.
        [](char*, int, int, void*) { return 0; });
    return result == MOSQ_ERR_SUCCESS ? QString() : textOf(result);
}

void Server::run()
{
    constexpr int patience = 500; // milliseconds that the loop waits for something to do
    while (isStopping == 0) {
        if ((!m_hasDatabase && !connectDatabase()) || (!m_hasBroker && !connectBroker())) {
            pause();
            continue;
        }
        announce();
        if (!m_states.store() && !m_store.isAlive())
            loseDatabase();
        const int result = mosquitto_loop(m_client, patience, 1);
        if (result != MOSQ_ERR_SUCCESS && m_hasBroker)
            loseBroker(textOf(result));
    }
    mosquitto_disconnect(m_client);
}

void Server::stop() { isStopping = 1; }

bool Server::connectDatabase()
{
    m_hasDatabase = m_store.open();
    if (!m_hasDatabase)
        log(QStringLiteral("no database: %1").arg(m_store.problem()));
    return m_hasDatabase;
}

bool Server::connectBroker()
{
    const int result = mosquitto_connect(m_client, m_broker.host.toUtf8().constData(),
                                         m_broker.port, m_broker.keepAlive);
    m_hasBroker = result == MOSQ_ERR_SUCCESS;
    if (!m_hasBroker)
        log(QStringLiteral("no broker: %1").arg(textOf(result)));
    return m_hasBroker;
}

void Server::subscribe()
{
    m_subscribed = 0;
    for (const char* topic : sharedTopics)
        mosquitto_subscribe(m_client, nullptr, (m_share + topic).constData(), qualityOfService);
    for (const char* topic : keptTopics)
        mosquitto_subscribe(m_client, nullptr, topic, qualityOfService);
    m_publisher.announceAgain();
    m_announced.invalidate();
}

/// The broker gives what comes from now on to other programs.
void Server::loseBroker(const QString& problem)
{
    log(QStringLiteral("no broker: %1").arg(problem));
    mosquitto_disconnect(m_client);
    m_hasBroker = false;
    m_subscribed = 0;
    pause();
}

void Server::pause()
{
    constexpr int longest = 8;
    for (int second = 0; second < m_pause && isStopping == 0; ++second)
        QThread::sleep(1);
    m_pause = qMin(m_pause * 2, longest);
}

void Server::take(const mosquitto_message& message)
{
    if (!m_hasDatabase)
        return;
    const QString topic = QString::fromUtf8(message.topic);
    const QByteArray bytes(static_cast<const char*>(message.payload), message.payloadlen);
    const QDateTime now = QDateTime::currentDateTimeUtc();
    if (m_states.note(topic, bytes, now))
        return;
    std::optional<Reply> reply;
    const bool isTaken = Publisher::isFor(topic)
                             ? m_publisher.take(topic, bytes, reply) || m_store.isAlive()
                             : m_intake.take(topic, bytes, now, reply);
    if (!isTaken)
        loseDatabase();
    else if (reply)
        publish(reply->topic, reply->message, false);
}

/// The broker keeps what was announced; all programs announce the same.
void Server::announce()
{
    constexpr int pause = 3000; // milliseconds
    if (!m_hasDatabase || m_subscribed < subscriptionCount ||
        (m_announced.isValid() && !m_announced.hasExpired(pause)))
        return;
    m_announced.start();
    const auto fresh = m_publisher.fresh();
    if (!fresh && !m_store.isAlive())
        return loseDatabase();
    const auto announcements = fresh.value_or(QVector<PublicationRows::ToAnnounce>());
    for (const auto& each : announcements)
        publish(each.topic, each.message, true);
}

void Server::loseDatabase()
{
    m_hasDatabase = false;
    log(QStringLiteral("no database: %1").arg(m_store.database().problem()));
    mosquitto_disconnect(m_client);
    m_hasBroker = false;
}

void Server::publish(const QString& topic, const QByteArray& message, bool isRetained)
{
    mosquitto_publish(m_client, nullptr, topic.toUtf8().constData(), message.size(),
                      message.constData(), qualityOfService, isRetained);
}

} // namespace rivo::backoffice
