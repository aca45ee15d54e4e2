#include "HealthWatch.h"

#include <QTimer>

#include <utility>

namespace rivo::health
{

namespace
{

constexpr unsigned long timeToEnd = 2000; // milliseconds

} // namespace

/// What lives in the thread.
class HealthReader : public QObject
{
    Q_OBJECT

public:
    explicit HealthReader(HealthWatch::Settings settings) : m_settings(std::move(settings))
    {
        m_timer.setInterval(m_settings.interval);
        connect(&m_timer, &QTimer::timeout, this, &HealthReader::read);
    }

    void start()
    {
        m_timer.start();
        read();
    }

signals:
    void reported(const rivo::health::Health& health);

private:
    void read() { emit reported(readHealth(m_settings.root, m_settings.journal)); }

    const HealthWatch::Settings m_settings;
    QTimer m_timer{this};
};

HealthWatch::HealthWatch(const Settings& settings, QObject* parent)
    : QObject(parent), m_thread(new QThread), m_reader(new HealthReader(settings))
{
    qRegisterMetaType<rivo::health::Health>();
    m_reader->moveToThread(m_thread);
    connect(m_thread, &QThread::started, m_reader, &HealthReader::start);
    connect(m_thread, &QThread::finished, m_reader, &QObject::deleteLater);
    connect(m_reader, &HealthReader::reported, this, &HealthWatch::reported);
}

HealthWatch::~HealthWatch()
{
    if (!m_thread->isRunning())
        delete m_reader;
    m_thread->quit();
    if (m_thread->wait(timeToEnd))
        delete m_thread;
}

void HealthWatch::start() { m_thread->start(QThread::LowPriority); }

} // namespace rivo::health

#include "HealthWatch.moc"
