#pragma once

#include <QByteArray>

#include <optional>

namespace rivo::live
{

/// The content of gzip data; nothing if it is damaged or has more than `most` bytes.
std::optional<QByteArray> inflated(const QByteArray& data, int most);

} // namespace rivo::live
