#pragma once

class QImage;
class QString;

namespace rivo::terminal
{

/// Saves a picture as PNG, readable by the user alone. Creates the file, or replaces one that an
/// earlier call made. Returns why it did not, in English, or nothing.
///
/// The file is replaced as a whole or stays as it was. It is never written through: a link, also
/// one to a missing file, a second name of a file, a device, a pipe, a file of another user and one
/// that is no picture of this program stay untouched.
QString savePictureFile(const QImage& picture, const QString& file);

} // namespace rivo::terminal
