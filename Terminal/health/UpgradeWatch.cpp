#include "UpgradeWatch.h"

#include <QFile>

#include <utility>

#include <sys/stat.h>

namespace rivo::health
{

namespace
{

/// Differs after each change of the file; empty if there is none.
QByteArray identityOf(const QByteArray& file)
{
    struct stat status = {};
    if (::lstat(file.constData(), &status) != 0)
        return {};
    return QByteArray::number(static_cast<qulonglong>(status.st_ino)) + ' ' +
           QByteArray::number(static_cast<qlonglong>(status.st_mtim.tv_sec)) + ' ' +
           QByteArray::number(static_cast<qlonglong>(status.st_mtim.tv_nsec));
}

} // namespace

UpgradeWatch::UpgradeWatch(const QString& file, std::function<bool()> mayRestart, int interval,
                           QObject* parent)
    : QObject(parent), m_file(QFile::encodeName(file)), m_mayRestart(std::move(mayRestart)),
      m_before(identityOf(m_file))
{
    connect(&m_looks, &QTimer::timeout, this, &UpgradeWatch::look);
    m_looks.start(interval);
}

void UpgradeWatch::look()
{
    const QByteArray now = identityOf(m_file);
    if (now.isEmpty() || now == m_before || !m_mayRestart())
        return;
    m_looks.stop();
    emit restartDue();
}

} // namespace rivo::health
