#pragma once

class QString;

namespace rivo::ticket
{

/// Whether the file has a picture that is safe to load: a regular file of at most 8 MiB, in a
/// format that Qt reads, of at most 4096 x 4096 pixels by its own header. Nothing of the picture is
/// decoded.
///
/// A file of some bytes can ask for gigabytes of pixels.
bool isPictureWithinBounds(const QString& file);

} // namespace rivo::ticket
