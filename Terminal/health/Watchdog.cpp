#include "Watchdog.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace rivo::health
{

namespace
{

constexpr int turnsPerLimit = 4;

qint64 now()
{
    const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(sinceStart).count();
}

int limited(int stuckTime, int watchdogTime)
{
    return watchdogTime > 0 ? std::min(stuckTime, watchdogTime / 2) : stuckTime;
}

} // namespace

Watchdog::Watchdog(const ServiceManager& manager, std::function<void(const QString&)> complain,
                   int stuckTime)
    : m_manager(manager), m_complain(std::move(complain)),
      m_stuckTime(limited(stuckTime, manager.watchdogTime())), m_lastBeat(now())
{
    m_beats.setInterval(m_stuckTime / turnsPerLimit);
    connect(&m_beats, &QTimer::timeout, this, [this] { m_lastBeat = now(); });
    m_beats.start();
    QTimer::singleShot(0, this, [this] { m_manager.reportReady(); });
    m_thread = std::thread([this] { watch(); });
}

Watchdog::~Watchdog()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isEnding = true;
    }
    m_end.notify_one();
    m_thread.join();
}

void Watchdog::watch()
{
    const std::chrono::milliseconds turn(m_stuckTime / turnsPerLimit);
    bool wasStuck = false;
    std::unique_lock<std::mutex> lock(m_mutex);
    while (!m_end.wait_for(lock, turn, [this] { return m_isEnding; })) {
        const bool isStuck = now() - m_lastBeat > m_stuckTime;
        if (isStuck && !wasStuck) {
            m_complain(QStringLiteral("the screen has not answered for %1 ms").arg(m_stuckTime));
            m_manager.reportStatus("The screen does not answer");
        }
        if (!isStuck && wasStuck)
            m_manager.reportStatus("Running");
        if (!isStuck && m_manager.watchdogTime() > 0)
            m_manager.reportLife();
        wasStuck = isStuck;
    }
}

} // namespace rivo::health
