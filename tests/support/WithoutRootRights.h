#pragma once

#include <QtGlobal>

#include <unistd.h>

/// A file that root may read or write can still be refused to everybody else: as long as it lives,
/// the process is nobody if it was root.
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
