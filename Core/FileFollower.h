#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QFileSystemWatcher>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QTimer>

#include <memory>

namespace rivo::core
{

/// Tells when what a path leads to may have changed: the file rewritten, replaced, removed or
/// created, and the same for every folder and symbolic link on the way to it.
class FileFollower : public QObject
{
    Q_OBJECT

public:
    /// @p path is absolute. Follows nothing yet.
    explicit FileFollower(const QString& path);

    /// Needs a QCoreApplication, which must outlive the following. Read the file after this call:
    /// what changes from here on is told.
    void start();
    void stop();
    bool isFollowing() const { return m_watcher != nullptr; }

signals:
    /// Read the file now. Told once for changes in quick succession, after they have calmed down.
    void changed();

private:
    void arm();
    void expectMore();
    void announce();

    const QString m_path;
    std::unique_ptr<QFileSystemWatcher> m_watcher;
    QTimer m_quiet;
    QElapsedTimer m_sinceFirstChange;
};

} // namespace rivo::core
