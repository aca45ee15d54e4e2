#include "FileFollower_p.h"

#include <QtCore/QFileInfo>
#include <QtCore/QSet>

namespace rivo::core
{

namespace
{

// A writer truncates the file first and fills it later, in several pieces: reading at the first
// sign of life would find a malformed file. So the file has to be quiet for a moment, unless it
// never is.
constexpr int QuietMs = 50;
constexpr int LongestWaitMs = 500;

/// Appends @p path and everything that decides where it leads: the folders above it, and for
/// symbolic links their targets with the folders above those. Outermost first.
void appendWatchPoints(const QString& path, QSet<QString>* visited, QStringList* points)
{
    if (visited->contains(path))
        return;
    visited->insert(path);

    const QFileInfo info(path);
    if (!info.isRoot())
        appendWatchPoints(info.path(), visited, points);
    if (info.isSymLink())
        appendWatchPoints(info.symLinkTarget(), visited, points);
    if (info.isReadable())
        points->append(path);
}

QStringList watchPoints(const QStringList& paths)
{
    QSet<QString> visited;
    QStringList points;
    for (const QString& path : paths)
        appendWatchPoints(path, &visited, &points);
    return points;
}

} // namespace

FileFollower::FileFollower()
{
    m_quiet.setSingleShot(true);
    connect(&m_quiet, &QTimer::timeout, this, &FileFollower::announce);
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &FileFollower::expectMore);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &FileFollower::expectMore);
}

void FileFollower::follow(const QString& path)
{
    m_paths.append(path);
    watch();
}

void FileFollower::expectMore()
{
    if (!m_quiet.isActive())
        m_sinceFirstChange.start();
    m_quiet.start(m_sinceFirstChange.hasExpired(LongestWaitMs) ? 0 : QuietMs);
}

void FileFollower::announce()
{
    // A watch belongs to the file or folder that was there when it was put up, not to the path.
    const QStringList outdated = m_watcher.files() + m_watcher.directories();
    if (!outdated.isEmpty())
        m_watcher.removePaths(outdated);
    watch();
    // Reading comes after watching, so that no change falls in between.
    emit changed();
}

void FileFollower::watch()
{
    // Twice: the second look finds what appeared in a folder before its watch was up; the watch
    // reports what appears later.
    for (int round = 0; round < 2; ++round) {
        const QStringList watched = m_watcher.files() + m_watcher.directories();
        const QSet<QString> known(watched.begin(), watched.end());
        const QStringList points = watchPoints(m_paths);
        QStringList missing;
        for (const QString& point : points) {
            if (!known.contains(point))
                missing.append(point);
        }
        if (!missing.isEmpty())
            m_watcher.addPaths(missing);
    }
}

} // namespace rivo::core
