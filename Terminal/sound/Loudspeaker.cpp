#include "Loudspeaker.h"

#include "Tones.h"

#include <QAudioDeviceInfo>
#include <QAudioFormat>
#include <QAudioOutput>

namespace rivo::sound
{

namespace
{

QAudioFormat formatOfTones()
{
    QAudioFormat format;
    format.setCodec(QStringLiteral("audio/pcm"));
    format.setSampleRate(samplesPerSecond);
    format.setChannelCount(channels);
    format.setSampleSize(16);
    format.setSampleType(QAudioFormat::SignedInt);
    format.setByteOrder(QAudioFormat::LittleEndian);
    return format;
}

} // namespace

Loudspeaker::Loudspeaker()
{
    const QAudioDeviceInfo device = QAudioDeviceInfo::defaultOutputDevice();
    if (device.isNull())
        return;
    m_output = std::make_unique<QAudioOutput>(device, formatOfTones());
    // Other programs get the device between two sounds.
    QObject::connect(m_output.get(), &QAudioOutput::stateChanged, &m_samples,
                     [this](QAudio::State state) {
                         if (state == QAudio::IdleState)
                             m_output->stop();
                     });
}

Loudspeaker::~Loudspeaker() = default;

void Loudspeaker::play(Sound sound)
{
    if (!m_output)
        return;
    if (m_output->state() == QAudio::ActiveState && m_last > sound)
        return;
    m_output->reset();
    m_samples.close();
    m_samples.setData(samplesOf(sound));
    m_samples.open(QIODevice::ReadOnly);
    m_last = sound;
    m_output->start(&m_samples);
    const QAudio::Error error = m_output->error();
    if (error == QAudio::OpenError || error == QAudio::FatalError)
        m_output.reset();
}

} // namespace rivo::sound
