#include "SoundThread.h"

#include <QMutex>
#include <QObject>

#include <algorithm>
#include <optional>
#include <utility>

namespace rivo::sound
{

class SoundThread::Worker : public QObject
{
public:
    explicit Worker(MakePlayer make) : m_make(std::move(make)) {}

    /// Whether the thread has to be woken for it.
    bool keep(Sound sound)
    {
        const QMutexLocker lock(&m_mutex);
        const bool isFirst = !m_next;
        m_next = std::max(m_next.value_or(sound), sound);
        return isFirst;
    }

    void playNext()
    {
        if (!m_player)
            m_player = m_make();
        m_player->play(take());
    }

private:
    Sound take()
    {
        const QMutexLocker lock(&m_mutex);
        return *std::exchange(m_next, std::nullopt);
    }

    const MakePlayer m_make;
    std::unique_ptr<SoundPlayer> m_player;
    QMutex m_mutex;
    std::optional<Sound> m_next;
};

SoundThread::SoundThread(MakePlayer make)
    : m_thread(std::make_unique<QThread>()), m_worker(new Worker(std::move(make)))
{
    m_worker->moveToThread(m_thread.get());
    QObject::connect(m_thread.get(), &QThread::finished, m_worker, &QObject::deleteLater);
    m_thread->start();
}

SoundThread::~SoundThread()
{
    m_thread->quit();
    if (!m_thread->wait(patience))
        static_cast<void>(m_thread.release()); // ends with the process
}

void SoundThread::play(Sound sound)
{
    if (m_worker->keep(sound))
        QMetaObject::invokeMethod(
            m_worker, [worker = m_worker] { worker->playNext(); }, Qt::QueuedConnection);
}

} // namespace rivo::sound
