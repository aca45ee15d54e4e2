#pragma once

#include "SoundPlayer.h"

#include <QBuffer>

#include <memory>

class QAudioOutput;

namespace rivo::sound
{

/// Plays at the system's default sound device, with or without a sound server. Without a device, or
/// when it fails, nothing is heard until the program is started again. Belongs into a SoundThread:
/// a device can take its time.
class Loudspeaker : public SoundPlayer
{
public:
    Loudspeaker();
    ~Loudspeaker() override;

    void play(Sound sound) override;

private:
    std::unique_ptr<QAudioOutput> m_output; ///< null without a device
    QBuffer m_samples;
    Sound m_last = Sound::Tap;
};

} // namespace rivo::sound
