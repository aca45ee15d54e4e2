#include "Renderer.h"

#include <QDir>

namespace rivo::terminal
{

bool isRasterQuicker(const QString& platform, const QString& devices)
{
    if (qEnvironmentVariableIsSet("QT_QUICK_BACKEND") ||
        platform.startsWith(QLatin1String("eglfs")))
        return false;
    const QStringList renderNodes{QStringLiteral("renderD*")};
    const bool hasGraphicsProcessor =
        !QDir(devices + QLatin1String("/dri")).entryList(renderNodes, QDir::System).isEmpty();
    const bool hasDriverOfItsMaker = QFile::exists(devices + QLatin1String("/nvidia0"));
    return !hasGraphicsProcessor && !hasDriverOfItsMaker;
}

} // namespace rivo::terminal
