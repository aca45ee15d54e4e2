#pragma once

#include <SoundPlayer.h>

#include <QMetaType>
#include <QVector>

using rivo::sound::Sound;
using Heard = QVector<Sound>;
Q_DECLARE_METATYPE(Heard)

/// Notes what would be heard.
class FakePlayer : public rivo::sound::SoundPlayer
{
public:
    void play(Sound sound) override { heard.append(sound); }

    Heard heard;
};

inline char* toString(const Heard& heard)
{
    QByteArray text;
    for (const Sound sound : heard)
        text += sound == Sound::Tap ? "tap " : sound == Sound::Payment ? "payment " : "refusal ";
    return qstrdup(text.constData());
}
