#include "ProgramStart.h"

#include <QCoreApplication>
#include <QTextStream>

void nameProgram(const QString& name)
{
    QCoreApplication::setApplicationName(name);
    QCoreApplication::setApplicationVersion(QStringLiteral(RIVO_VERSION));
}

void complain(const QStringList& lines)
{
    QTextStream standardError(stderr);
    standardError.setCodec("UTF-8");
    for (const QString& line : lines)
        standardError << line << '\n';
}

void reportFailure(const QString& failure)
{
    complain({QCoreApplication::applicationName() + QStringLiteral(": ") + failure});
}
