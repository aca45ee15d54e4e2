#include "BrokerLink.h"

#include <QFile>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mosquitto.h>
#include <mutex>
#include <thread>

namespace rivo::office
{

namespace
{

constexpr int qualityOfService = 1;

/// libmosquitto is set up before the first connection, and not taken down: others may use it.
void setUpOnce()
{
    static const int result = mosquitto_lib_init();
    Q_UNUSED(result)
}

QString textOf(int code) { return QString::fromUtf8(mosquitto_strerror(code)); }

} // namespace

/// The thread, and what libmosquitto calls in it. All that the link has to know is queued to the
/// link's own thread.
class BrokerLink::Loop
{
public:
    Loop(BrokerLink* link, const BrokerSettings& settings) : m_link(link), m_settings(settings)
    {
        setUpOnce();
        m_client = mosquitto_new(settings.clientId.toUtf8().constData(), false, this);
        mosquitto_threaded_set(m_client, true);
        mosquitto_connect_callback_set(m_client, onConnect);
        mosquitto_message_callback_set(m_client, onMessage);
    }

    ~Loop()
    {
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_isStopping = true;
        }
        m_wake.notify_all();
        if (m_settings.willTopic
                .isEmpty()) // after a farewell the broker does not send the last will
            mosquitto_disconnect(m_client);
        if (m_thread.joinable())
            m_thread.join();
        mosquitto_destroy(m_client);
    }

    /// What is wrong with the settings; empty if they can be used.
    QString configure()
    {
        const auto name = [](const QString& file) { return QFile::encodeName(file); };
        if (!m_settings.willTopic.isEmpty())
            mosquitto_will_set(m_client, m_settings.willTopic.toUtf8().constData(), 1, "0",
                               qualityOfService, true);
        if (m_settings.authority.isEmpty())
            return {};
        const int result = mosquitto_tls_set(
            m_client, name(m_settings.authority).constData(), nullptr,
            m_settings.certificate.isEmpty() ? nullptr : name(m_settings.certificate).constData(),
            m_settings.key.isEmpty() ? nullptr : name(m_settings.key).constData(),
            // Without a password: a callback would ask for one on the terminal.
            [](char*, int, int, void*) { return 0; });
        return result == MOSQ_ERR_SUCCESS ? QString() : textOf(result);
    }

    void start()
    {
        m_thread = std::thread([this] { run(); });
    }

    int publish(const QString& topic, const QByteArray& payload, bool isRetained)
    {
        return mosquitto_publish(m_client, nullptr, topic.toUtf8().constData(), payload.size(),
                                 payload.constData(), qualityOfService, isRetained);
    }

    void subscribe(const QString& topic, int quality = qualityOfService)
    {
        mosquitto_subscribe(m_client, nullptr, topic.toUtf8().constData(), quality);
    }

    void unsubscribe(const QString& topic)
    {
        mosquitto_unsubscribe(m_client, nullptr, topic.toUtf8().constData());
    }

private:
    void run()
    {
        constexpr int patience = 1000; // milliseconds that the loop waits for something to do
        int result = mosquitto_connect_async(m_client, m_settings.host.toUtf8().constData(),
                                             m_settings.port, m_settings.keepAlive);
        while (!isStopping()) {
            if (result == MOSQ_ERR_SUCCESS) {
                result = mosquitto_loop(m_client, patience, 1);
                continue;
            }
            report(result);
            if (pause())
                result = mosquitto_reconnect_async(m_client);
        }
    }

    bool isStopping()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_isStopping;
    }

    /// Waits until it is time for another attempt; false if there is none.
    bool pause()
    {
        constexpr std::chrono::seconds longest(60);
        std::unique_lock<std::mutex> lock(m_mutex);
        m_wake.wait_for(lock, m_pause, [this] { return m_isStopping; });
        m_pause = std::min(m_pause * 2, longest);
        return !m_isStopping;
    }

    void report(int code)
    {
        QMetaObject::invokeMethod(
            m_link, [link = m_link, code] { link->onDisconnected(textOf(code)); },
            Qt::QueuedConnection);
    }

    static void onConnect(mosquitto* client, void* object, int code)
    {
        auto* loop = static_cast<Loop*>(object);
        if (code != 0) {
            mosquitto_disconnect(client);
            return;
        }
        const std::lock_guard<std::mutex> lock(loop->m_mutex);
        loop->m_pause = std::chrono::seconds(1);
        QMetaObject::invokeMethod(
            loop->m_link, [link = loop->m_link] { link->onConnected(); }, Qt::QueuedConnection);
    }

    static void onMessage(mosquitto*, void* object, const mosquitto_message* message)
    {
        auto* loop = static_cast<Loop*>(object);
        const QString topic = QString::fromUtf8(message->topic);
        const QByteArray payload(static_cast<const char*>(message->payload), message->payloadlen);
        QMetaObject::invokeMethod(
            loop->m_link,
            [link = loop->m_link, topic, payload] { emit link->received(topic, payload); },
            Qt::QueuedConnection);
    }

    BrokerLink* m_link;
    BrokerSettings m_settings;
    mosquitto* m_client = nullptr;
    std::thread m_thread;
    std::mutex m_mutex; ///< of what follows
    std::condition_variable m_wake;
    std::chrono::seconds m_pause{1};
    bool m_isStopping = false;
};

BrokerLink::BrokerLink(const BrokerSettings& settings, QObject* parent)
    : QObject(parent), m_settings(settings)
{
}

BrokerLink::~BrokerLink() = default;

void BrokerLink::subscribe(const QString& topic) { m_topics.append(topic); }

void BrokerLink::follow(const QString& topic, bool isFollowed)
{
    m_followed.removeAll(topic);
    if (isFollowed)
        m_followed.append(topic);
    if (m_isConnected && isFollowed)
        m_loop->subscribe(topic, 0);
    else if (m_isConnected)
        m_loop->unsubscribe(topic);
}

bool BrokerLink::start()
{
    m_loop = std::make_unique<Loop>(this, m_settings);
    m_problem = m_loop->configure();
    if (!m_problem.isEmpty())
        return false;
    m_loop->start();
    return true;
}

bool BrokerLink::publish(const QString& topic, const QByteArray& payload, bool isRetained)
{
    return m_isConnected && m_loop->publish(topic, payload, isRetained) == MOSQ_ERR_SUCCESS;
}

void BrokerLink::onConnected()
{
    m_isConnected = true;
    for (const QString& topic : qAsConst(m_topics))
        m_loop->subscribe(topic);
    for (const QString& topic : qAsConst(m_followed))
        m_loop->subscribe(topic, 0);
    if (!m_settings.willTopic.isEmpty())
        publish(m_settings.willTopic, "1", true);
    emit connected();
}

void BrokerLink::onDisconnected(const QString& problem)
{
    m_isConnected = false;
    m_problem = problem;
    emit disconnected(problem);
}

} // namespace rivo::office
