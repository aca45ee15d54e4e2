#include "LiveVehicles.h"

#include <utility>

namespace rivo::live
{

namespace
{

constexpr int agingTime = 5000; // milliseconds

} // namespace

LiveVehicles::LiveVehicles(const LiveSettings& settings, const feed::Network& network,
                           const fleet::Timetable& timetable, AssetsModel& fleet,
                           std::function<qint64()> now, QObject* parent)
    : QObject(parent), m_fetcher(settings), m_fleet(network, timetable, fleet),
      m_now(std::move(now))
{
    m_aging.setInterval(agingTime);
    connect(&m_aging, &QTimer::timeout, this, [this] {
        m_fleet.age(m_now());
        emit reported();
    });
    connect(&m_fetcher, &LiveFetcher::received, this, &LiveVehicles::read);
    connect(&m_fetcher, &LiveFetcher::unchanged, this, [this] { announce(true, QString()); });
    connect(&m_fetcher, &LiveFetcher::failed, this,
            [this](const QString& problem) { announce(false, problem); });
}

void LiveVehicles::start()
{
    m_aging.start();
    m_fetcher.start();
}

void LiveVehicles::read(const QByteArray& bytes)
{
    const LiveResult result = readMessage(bytes);
    if (!result.message) {
        m_fetcher.reject();
        announce(false, result.problem);
        return;
    }
    m_fleet.apply(*result.message, m_now());
    announce(true, QString());
    emit reported();
}

void LiveVehicles::announce(bool isConnected, const QString& problem)
{
    const int count = m_fleet.reportedCount();
    if (isConnected == m_isConnected && problem == m_problem && count == m_count)
        return;
    m_isConnected = isConnected;
    m_problem = problem;
    m_count = count;
    emit stateChanged();
}

QString LiveVehicles::stateText() const
{
    if (m_isConnected)
        return tr("%n vehicle(s)", "", m_count);
    return m_problem.isEmpty() ? tr("no answer yet") : m_problem;
}

} // namespace rivo::live
