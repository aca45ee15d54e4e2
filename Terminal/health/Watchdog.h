#pragma once

#include "ServiceManager.h"

#include <QObject>
#include <QTimer>

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace rivo::health
{

/// Notices that the thread of the screen is stuck. While it turns, the service manager gets its
/// signs of life; when it does not, the manager gets none, and restarts the program.
///
/// To be made and destroyed in the thread that it watches, which needs an event loop.
class Watchdog : public QObject
{
    Q_OBJECT

public:
    static constexpr int stuckAfter = 5000; ///< milliseconds without a turn of the event loop

    /// `complain` is called in another thread, once each time that the watched one gets stuck, with
    /// what is wrong. The time is limited to half of the manager's.
    Watchdog(const ServiceManager& manager, std::function<void(const QString&)> complain,
             int stuckTime = stuckAfter);
    ~Watchdog() override;

private:
    void watch();

    const ServiceManager m_manager;
    const std::function<void(const QString&)> m_complain;
    const int m_stuckTime;
    QTimer m_beats;
    std::atomic<qint64> m_lastBeat;
    std::mutex m_mutex;
    std::condition_variable m_end;
    bool m_isEnding = false;
    std::thread m_thread;
};

} // namespace rivo::health
