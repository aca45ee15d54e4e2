#pragma once

#include "FeedFiles.h"

#include <QByteArray>
#include <QMap>
#include <QString>

#include <zip.h>

using Entries = QMap<QString, QByteArray>;

inline void writeArchive(const QString& path, const Entries& entries)
{
    zip_t* const archive = zip_open(path.toUtf8().constData(), ZIP_CREATE | ZIP_TRUNCATE, nullptr);
    for (auto entry = entries.begin(); entry != entries.end(); ++entry)
        zip_file_add(archive, entry.key().toUtf8().constData(),
                     zip_source_buffer(archive, entry->constData(), zip_uint64_t(entry->size()), 0),
                     0);
    if (entries.isEmpty()) { // which libzip would delete
        zip_discard(archive);
        FeedFiles::write(path, QByteArray("PK\x05\x06", 4) + QByteArray(18, '\0'));
    } else if (zip_close(archive) != 0) {
        qFatal("%s cannot be written", qPrintable(path));
    }
}
