#pragma once

namespace rivo::sound
{

/// What is heard, the least important first.
enum class Sound { Tap, Payment, Refusal };

/// Where sounds come out.
class SoundPlayer
{
public:
    SoundPlayer() = default;
    SoundPlayer(const SoundPlayer&) = delete;
    SoundPlayer& operator=(const SoundPlayer&) = delete;
    virtual ~SoundPlayer() = default;

    /// Starts the sound and returns. A sound that still plays ends, or if it is more important than
    /// this one, this one is left out.
    virtual void play(Sound sound) = 0;
};

} // namespace rivo::sound
