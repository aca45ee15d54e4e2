#pragma once

#include "FeedLoader.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

/// Makes an empty folder the working directory, so that feeds have short relative paths.
class FeedFiles
{
public:
    FeedFiles() { QVERIFY(QDir::setCurrent(m_folder.path())); }
    ~FeedFiles() { QDir::setCurrent(QDir::rootPath()); }

    static void write(const QString& path, const QByteArray& content)
    {
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        // Not truncated first: file systems then flush every file at once, which takes minutes.
        QVERIFY(file.open(QIODevice::ReadWrite) && file.resize(content.size()));
        QCOMPARE(file.write(content), qint64(content.size()));
    }

private:
    QTemporaryDir m_folder;
};

/// The feed at `path`. Fails unless it is a feed or problems, never both and never neither.
inline rivo::feed::FeedResult load(const QString& path, const rivo::feed::FeedOptions& options = {})
{
    rivo::feed::FeedResult result = rivo::feed::loadFeed(path, options);
    if (result.feed.has_value() != result.problems.isEmpty())
        QTest::qFail("neither a feed nor problems, or both", __FILE__, __LINE__);
    return result;
}

/// The feed that `json` describes, read from the file feed.json.
inline rivo::feed::FeedResult loadJson(const QByteArray& json,
                                       const rivo::feed::FeedOptions& options = {})
{
    FeedFiles::write(QStringLiteral("feed.json"), json);
    return load(QStringLiteral("feed.json"), options);
}

/// Fails with the problems, if there are any.
#define REQUIRE_FEED(result)                                                                       \
    QVERIFY2((result).feed, qPrintable((result).problemLines().join(QLatin1Char('\n'))))
