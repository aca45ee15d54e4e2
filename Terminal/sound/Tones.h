#pragma once

#include "SoundPlayer.h"

#include <QByteArray>

namespace rivo::sound
{

// What most sound devices play as it is.
constexpr int samplesPerSecond = 48000;
constexpr int channels = 2;

/// The sound as signed samples of 16 bits, least byte first, all channels in turn. Begins and ends
/// softly; at most 200 milliseconds.
QByteArray samplesOf(Sound sound);

} // namespace rivo::sound
