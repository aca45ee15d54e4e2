#pragma once

#include <QString>
#include <QtGlobal>

#include <unistd.h>

/// A file that root may read or write can still be refused to other users: as long as this object
/// lives, a process of root is another user. Its files lie in a folder named by everybodysPlace.
class WithoutRootRights
{
public:
    WithoutRootRights() : m_user(::geteuid())
    {
        if (m_user == 0)
            m_isDropped = ::seteuid(65534) == 0;
    }
    ~WithoutRootRights()
    {
        if (m_isDropped)
            m_isDropped = ::seteuid(m_user) != 0;
    }
    Q_DISABLE_COPY(WithoutRootRights)

private:
    const uid_t m_user;
    bool m_isDropped = false;
};

/// A template for QTemporaryDir: a folder that other users can reach, wherever the build and TMPDIR
/// are. They can enter it after it got the permissions for that.
inline QString everybodysPlace() { return QStringLiteral("/tmp/rivo-test-XXXXXX"); }
