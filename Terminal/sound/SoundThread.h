#pragma once

#include "SoundPlayer.h"

#include <QThread>

#include <functional>
#include <memory>

namespace rivo::sound
{

/// A player in a thread of its own: a sound device may block, and nothing waits for it. While the
/// thread is busy, the most important of the sounds that come is kept for it.
class SoundThread : public SoundPlayer
{
public:
    using MakePlayer = std::function<std::unique_ptr<SoundPlayer>()>;

    /// `make` is called in the thread, before the first sound.
    explicit SoundThread(MakePlayer make);

    /// Waits for a device that blocks for at most `patience` milliseconds.
    ~SoundThread() override;

    void play(Sound sound) override;

    static constexpr int patience = 1000;

private:
    class Worker;

    std::unique_ptr<QThread> m_thread;
    Worker* m_worker; ///< destroyed by the thread
};

} // namespace rivo::sound
