#include "FileFollower.h"

#include <QtCore/QFileInfo>
#include <QtCore/QSet>
#include <QtCore/QStringList>

namespace rivo::core
{

namespace
{

// A writer truncates the file first and fills it later, in several pieces: reading at the first
// sign of life would find a malformed file. So the file has to be quiet for a moment, unless it
// never is.
constexpr int QuietMs = 50;
constexpr int LongestWaitMs = 500;

/// Appends @p path and whatever decides where it leads: the folders above it, and for symbolic
/// links their targets with the folders above those. Outermost first.
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

QStringList watchPoints(const QString& path)
{
    QSet<QString> visited;
    QStringList points;
    appendWatchPoints(path, &visited, &points);
    return points;
}

} // namespace

FileFollower::FileFollower(const QString& path) : QObject(nullptr), m_path(path), m_quiet(this)
{
    m_quiet.setSingleShot(true);
    connect(&m_quiet, &QTimer::timeout, this, &FileFollower::announce);
}

void FileFollower::start()
{
    m_watcher = std::make_unique<QFileSystemWatcher>();
    connect(m_watcher.get(), &QFileSystemWatcher::fileChanged, this, &FileFollower::expectMore);
    connect(m_watcher.get(), &QFileSystemWatcher::directoryChanged, this,
            &FileFollower::expectMore);
    arm();
}

void FileFollower::stop()
{
    m_quiet.stop();
    m_watcher.reset();
}

void FileFollower::arm()
{
    // A watch belongs to the file or folder that was there when it was put up, not to the path.
    const QStringList outdated = m_watcher->files() + m_watcher->directories();
    if (!outdated.isEmpty())
        m_watcher->removePaths(outdated);

    // Twice: what appears in a folder before its watch is up is found by looking again, what
    // appears later is told by that watch.
    for (int round = 0; round < 2; ++round) {
        QStringList points = watchPoints(m_path);
        const QStringList watched = m_watcher->files() + m_watcher->directories();
        for (const QString& point : watched)
            points.removeOne(point);
        if (!points.isEmpty())
            m_watcher->addPaths(points);
    }
}

void FileFollower::expectMore()
{
    if (!m_quiet.isActive())
        m_sinceFirstChange.start();
    m_quiet.start(m_sinceFirstChange.hasExpired(LongestWaitMs) ? 0 : QuietMs);
}

void FileFollower::announce()
{
    arm();
    emit changed();
}

} // namespace rivo::core
