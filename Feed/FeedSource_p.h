#pragma once

#include "FeedOptions.h"
#include "OpenFile_p.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

namespace rivo::feed
{

class FeedReport;

/// Reads at most `size` bytes to `into`; their number, 0 at the end, -1 after reporting a failure.
using ByteReader = std::function<qint64(char* into, qint64 size)>;

/// The files of a GTFS feed: those of a folder, or of an archive.
class FeedSource
{
public:
    virtual ~FeedSource() = default;

    /// The names of all files, in no order.
    virtual QStringList names() const = 0;

    /// The path of a file for messages.
    virtual QString pathOf(const QString& name) const = 0;

    /// What reads the file `name`, which is one of names(); nothing after reporting why it cannot
    /// be read. `fail` is also called by the reader.
    virtual ByteReader open(const QString& name, const FileFailure& fail) = 0;

    /// No file was replaced, added or removed since the source was opened.
    virtual bool isUnchanged() const = 0;
};

/// The files of a folder; null after reporting that it cannot be listed.
std::unique_ptr<FeedSource> openFolder(const QString& path, const FeedLimits& limits,
                                       FeedReport& report);

/// The files at the top of a .zip; null after reporting what is wrong with it.
std::unique_ptr<FeedSource> openArchive(const QString& path, const FeedLimits& limits,
                                        FeedReport& report);

/// What reads the file `path`; nothing after reporting why it cannot be read.
ByteReader openFile(const QString& path, const FeedLimits& limits, const FileFailure& fail);

} // namespace rivo::feed
