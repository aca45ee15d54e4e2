#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

#include <sched.h>
#include <sys/mount.h>

/// A disk of little space over an empty folder, in memory, for this process alone and as long as it
/// lives. Only root may have one, see isThere().
class SmallDisk
{
public:
    SmallDisk(const QString& folder, int kibibytes) : m_folder(QFile::encodeName(folder))
    {
        const QByteArray size = "size=" + QByteArray::number(kibibytes) + 'k';
        m_isThere = ::unshare(CLONE_NEWNS) == 0 &&
                    ::mount("none", "/", "none", MS_REC | MS_PRIVATE, nullptr) == 0 &&
                    ::mount("tmpfs", m_folder.constData(), "tmpfs", 0, size.constData()) == 0;
    }
    ~SmallDisk()
    {
        if (m_isThere)
            m_isThere = ::umount2(m_folder.constData(), MNT_DETACH) != 0;
    }
    Q_DISABLE_COPY(SmallDisk)

    bool isThere() const { return m_isThere; }

    /// Fills all space but `kibibytes`. A second call replaces the first.
    bool fill(int kibibytes)
    {
        QFile other(QFile::decodeName(m_folder) + "/of somebody else");
        if (!other.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
            return false;
        const QByteArray block(1024, 'x');
        qint64 size = 0;
        while (other.write(block) == block.size())
            size += block.size();
        return other.resize(qMax<qint64>(0, size - qint64(kibibytes) * 1024));
    }

private:
    const QByteArray m_folder;
    bool m_isThere = false;
};
