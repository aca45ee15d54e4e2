#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QFileSystemWatcher>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QTimer>

namespace rivo::core
{

/// Signals that a followed path may have changed: a file rewritten, replaced, removed or created,
/// and the same for every folder and symbolic link on the way to it.
///
/// Must not outlive the QCoreApplication. One follower serves the whole process: the system limits
/// the watchers of a user.
class FileFollower : public QObject
{
    Q_OBJECT

public:
    FileFollower();

    /// Follows @p path, an absolute one, as well. Read the file after this call: changes from then
    /// on are signalled.
    void follow(const QString& path);

signals:
    /// Read the files now. Emitted once for changes in quick succession, after the last of them.
    void changed();

private:
    void expectMore();
    void announce();
    void watch();

    QStringList m_paths;
    QFileSystemWatcher m_watcher;
    QTimer m_quiet;
    QElapsedTimer m_sinceFirstChange;
};

} // namespace rivo::core
