#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QFileSystemWatcher>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QTimer>

namespace rivo::core
{

/// Tells when what some paths lead to may have changed: a file rewritten, replaced, removed or
/// created, and the same for every folder and symbolic link on the way to it.
///
/// Must not outlive the QCoreApplication. One is enough for the whole process, and kinder to the
/// system, which allows a user only so many watchers.
class FileFollower : public QObject
{
    Q_OBJECT

public:
    FileFollower();

    /// Follows @p path, an absolute one, as well. Read the file after this call: what changes from
    /// here on is told.
    void follow(const QString& path);

signals:
    /// Read the files now. Told once for changes in quick succession, after they have calmed down.
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
