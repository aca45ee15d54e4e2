#include "OfficeLink.h"

namespace rivo::office
{

namespace
{

BrokerSettings completed(BrokerSettings broker, const Topics& topics)
{
    broker.clientId = topics.operatorName + QLatin1Char('/') + topics.vehicle;
    broker.willTopic = topics.alive();
    return broker;
}

} // namespace

OfficeLink::OfficeLink(BrokerSettings broker, const Topics& topics, sales::Journal& journal,
                       const OutboxPace& pace, QObject* parent)
    : QObject(parent), m_topics(topics), m_outbox(journal, pace),
      m_link(completed(std::move(broker), topics))
{
    constexpr int pause = 5000;
    for (QTimer* each : {&m_positionPause, &m_devicesPause}) {
        each->setInterval(pause);
        each->setSingleShot(true);
    }
    connect(&m_positionPause, &QTimer::timeout, this, &OfficeLink::sendPosition);
    connect(&m_devicesPause, &QTimer::timeout, this, &OfficeLink::sendDevices);
    m_link.subscribe(m_topics.acknowledged());
    connect(&m_link, &BrokerLink::connected, this, [this] {
        show(State::Connected);
        m_outbox.setConnected(true);
        sendPosition();
        m_sentDevices.clear();
        sendDevices();
        emit connected();
    });
    connect(&m_link, &BrokerLink::disconnected, this, [this] {
        m_outbox.setConnected(false);
        show(State::Away);
        emit disconnected();
    });
    connect(&m_link, &BrokerLink::received, this, &OfficeLink::take);
    connect(&m_outbox, &Outbox::ready, this,
            [this](const QByteArray& message) { m_link.publish(m_topics.records(), message); });
    connect(&m_outbox, &Outbox::sent, this, [this] { show(State::Connected); });
    connect(&m_outbox, &Outbox::completed, this, [this] { show(State::Complete); });
    connect(&m_outbox, &Outbox::refused, this, [this] { show(State::Refused); });
}

void OfficeLink::start()
{
    if (!m_link.start())
        show(State::Unusable);
}

void OfficeLink::report(const PositionReport& report)
{
    m_position = report;
    sendPosition();
}

void OfficeLink::sendPosition()
{
    if (!m_position || m_positionPause.isActive() ||
        !m_link.publish(m_topics.position(), encode(*m_position), true))
        return;
    m_position.reset();
    m_positionPause.start();
}

void OfficeLink::report(const QVector<DeviceReport>& devices)
{
    m_devices = devices;
    sendDevices();
}

void OfficeLink::sendDevices()
{
    const QByteArray message = encode(m_devices);
    if (m_devices.isEmpty() || message == m_sentDevices || m_devicesPause.isActive() ||
        !m_link.publish(m_topics.devices(), message, true))
        return;
    m_sentDevices = message;
    m_devicesPause.start();
}

void OfficeLink::take(const QString& topic, const QByteArray& message)
{
    if (topic == m_topics.acknowledged())
        m_outbox.take(message);
    else
        emit received(topic, message);
}

void OfficeLink::show(State state)
{
    const bool hasText = state == State::Refused || state == State::Unusable;
    if (m_state == state && !hasText)
        return;
    m_state = state;
    emit stateChanged();
}

QString OfficeLink::stateText() const
{
    switch (m_state) {
    case State::Unusable:
        return tr("cannot be used: %1").arg(m_link.problem());
    case State::Refused:
        return tr("takes no records: %1").arg(m_outbox.refusal());
    case State::Connected:
        return tr("records are on their way");
    case State::Complete:
        return tr("has all records");
    case State::Away:
        break;
    }
    return tr("no connection, records wait");
}

} // namespace rivo::office
