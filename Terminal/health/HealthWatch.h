#pragma once

#include "Health.h"

#include <QObject>
#include <QThread>

namespace rivo::health
{

class HealthReader;

/// Reads the health of the system again and again, in a thread of its own: a disk or a sensor that
/// does not answer stops the reports, and nothing else.
class HealthWatch : public QObject
{
    Q_OBJECT

public:
    struct Settings
    {
        QString root;         ///< where /sys is; empty on a real system
        QString journal;      ///< file of the journal
        int interval = 10000; ///< milliseconds between two reports
    };

    explicit HealthWatch(const Settings& settings, QObject* parent = nullptr);
    /// Waits for the thread for a moment. One that does not answer is left behind, with what it
    /// needs.
    ~HealthWatch() override;

    void start();

signals:
    void reported(const rivo::health::Health& health);

private:
    QThread* m_thread;
    HealthReader* m_reader;
};

} // namespace rivo::health
