#pragma once

#include <QString>

namespace rivo::health
{

/// Bytes that the system allows this program, as `MemoryMax=` of its unit says; 0 without a limit.
/// `ownGroups`: the file with the control groups of a process. `groups`: the folder of all groups.
qint64 memoryCeiling(const QString& ownGroups = QStringLiteral("/proc/self/cgroup"),
                     const QString& groups = QStringLiteral("/sys/fs/cgroup"));

} // namespace rivo::health
