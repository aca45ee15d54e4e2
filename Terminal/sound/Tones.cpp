#include "Tones.h"

#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <vector>

namespace rivo::sound
{

namespace
{

struct Tone
{
    double hertz;
    int milliseconds;
    double loudness; ///< 1 = as loud as can be; 0 hertz is a rest
};

std::vector<Tone> tonesOf(Sound sound)
{
    switch (sound) {
    case Sound::Payment:
        return {{880.0, 60, 0.5}, {1320.0, 100, 0.5}};
    case Sound::Refusal:
        return {{330.0, 70, 0.7}, {0.0, 40, 0.0}, {330.0, 70, 0.7}};
    case Sound::Tap:
        break;
    }
    return {{1500.0, 25, 0.35}};
}

/// Without a jump, which would be heard as a click: a ramp at both ends.
double rampAt(int sample, int count)
{
    constexpr double rampSamples = samplesPerSecond * 0.004;
    return std::min({1.0, sample / rampSamples, (count - 1 - sample) / rampSamples});
}

void append(QByteArray& samples, const Tone& tone)
{
    const double pi = std::acos(-1.0);
    const int count = samplesPerSecond * tone.milliseconds / 1000;
    for (int i = 0; i < count; ++i) {
        const double wave = std::sin(2.0 * pi * tone.hertz * i / samplesPerSecond);
        const double value = 32767.0 * tone.loudness * rampAt(i, count) * wave;
        const auto sample = qToLittleEndian(static_cast<qint16>(std::lround(value)));
        for (int channel = 0; channel < channels; ++channel)
            samples.append(reinterpret_cast<const char*>(&sample), sizeof sample);
    }
}

} // namespace

QByteArray samplesOf(Sound sound)
{
    QByteArray samples;
    for (const Tone& tone : tonesOf(sound))
        append(samples, tone);
    return samples;
}

} // namespace rivo::sound
