#include "PictureBounds.h"

#include <QFileInfo>
#include <QImageReader>

namespace rivo::ticket
{

namespace
{

constexpr qint64 mostBytes = 8 << 20;
constexpr int mostPixels = 4096; ///< in each direction

} // namespace

bool isPictureWithinBounds(const QString& file)
{
    // Not a pipe or a device, which would not end.
    const QFileInfo info(file);
    if (!info.isFile() || info.size() > mostBytes)
        return false;
    const QImageReader reader(file);
    const QSize size = reader.canRead() ? reader.size() : QSize();
    return !size.isEmpty() && size.width() <= mostPixels && size.height() <= mostPixels;
}

} // namespace rivo::ticket
