#pragma once

#include "SoundPlayer.h"

#include <QObject>

#include <memory>
#include <optional>

namespace rivo::sound
{

/// Which sound is heard for what happens. Of all that happens at once, which is until control
/// returns to the event loop, the most important is heard once.
class Sounds : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool on READ isOn WRITE setOn NOTIFY onChanged)

public:
    /// Without a player nothing is heard.
    Sounds(std::shared_ptr<SoundPlayer> player, bool isOn, QObject* parent = nullptr);

    bool isOn() const { return m_isOn; }
    void setOn(bool isOn); ///< off = silent, also for what happened just now

    void tap() { want(Sound::Tap); }
    void pay() { want(Sound::Payment); }
    void refuse() { want(Sound::Refusal); }

signals:
    void onChanged();

private:
    void want(Sound sound);
    void play();

    const std::shared_ptr<SoundPlayer> m_player;
    bool m_isOn;
    std::optional<Sound> m_wanted;
};

} // namespace rivo::sound
