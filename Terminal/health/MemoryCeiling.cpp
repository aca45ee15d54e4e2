#include "MemoryCeiling.h"

#include <QFile>
#include <QStringList>

namespace rivo::health
{

namespace
{

QString textOf(const QString& file)
{
    QFile content(file);
    constexpr qint64 most = 64LL * 1024;
    return content.open(QIODevice::ReadOnly) ? QString::fromUtf8(content.read(most)) : QString();
}

/// The file with the limit of a group, from a line "4:memory:/path" (version 1) or "0::/path"
/// (version 2); empty for a line about something else.
QString limitFileOf(const QString& line, const QString& groups)
{
    const QString controllers = line.section(QLatin1Char(':'), 1, 1);
    const QString path = line.section(QLatin1Char(':'), 2);
    if (controllers == QLatin1String("memory"))
        return groups + QLatin1String("/memory") + path + QLatin1String("/memory.limit_in_bytes");
    return controllers.isEmpty() && !path.isEmpty() ? groups + path + QLatin1String("/memory.max")
                                                    : QString();
}

} // namespace

qint64 memoryCeiling(const QString& ownGroups, const QString& groups)
{
    constexpr qint64 noLimit = Q_INT64_C(1) << 50; // version 1 says a number beyond any memory
    const QStringList lines = textOf(ownGroups).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString& line : lines) {
        const QString file = limitFileOf(line, groups);
        bool isNumber = false;
        const qint64 limit =
            file.isEmpty() ? 0 : textOf(file).trimmed().toLongLong(&isNumber); // or "max"
        if (isNumber && limit > 0 && limit < noLimit)
            return limit;
    }
    return 0;
}

} // namespace rivo::health
