#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

namespace rivo::core
{

/// The content of a small file that another program wrote, read without trusting what is there.
struct RegularFile
{
    static constexpr qint64 MaximumSize = qint64(1024) * 1024;

    /// Never blocks. A folder, a FIFO or device, more than MaximumSize bytes, or whatever cannot be
    /// read gives a problem; a path that leads nowhere gives neither content nor problem.
    static RegularFile read(const QString& path);

    bool exists = false;
    QByteArray content;
    QString problem; ///< the reason why there is no content; empty if there is none
};

} // namespace rivo::core
