#pragma once

#include <Feed.h>

#include <QString>

namespace rivo::terminal
{

/// `text` without the invisible characters that set the direction of writing. Letters that are
/// written from right to left stay.
QString withoutDirectionControls(const QString& text);

/// The names that people read, without such characters.
feed::FeedProduct withoutDirectionControls(feed::FeedProduct product);
feed::Feed withoutDirectionControls(feed::Feed feed);

} // namespace rivo::terminal
