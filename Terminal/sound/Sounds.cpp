#include "Sounds.h"

#include <algorithm>
#include <utility>

namespace rivo::sound
{

Sounds::Sounds(std::shared_ptr<SoundPlayer> player, bool isOn, QObject* parent)
    : QObject(parent), m_player(std::move(player)), m_isOn(isOn)
{
}

void Sounds::setOn(bool isOn)
{
    if (m_isOn == isOn)
        return;
    m_isOn = isOn;
    emit onChanged();
}

void Sounds::want(Sound sound)
{
    const bool isFirst = !m_wanted;
    m_wanted = std::max(m_wanted.value_or(sound), sound);
    if (isFirst)
        QMetaObject::invokeMethod(
            this, [this] { play(); }, Qt::QueuedConnection);
}

void Sounds::play()
{
    const Sound sound = *std::exchange(m_wanted, std::nullopt);
    if (m_isOn && m_player)
        m_player->play(sound);
}

} // namespace rivo::sound
