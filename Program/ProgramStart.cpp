#include "ProgramStart.h"

#include <QByteArray>
#include <QCoreApplication>

#include <cstddef>
#include <cstdio>

void nameProgram(const QString& name)
{
    QCoreApplication::setApplicationName(name);
    QCoreApplication::setApplicationVersion(QStringLiteral(RIVO_VERSION));
}

void complain(const QStringList& lines)
{
    QByteArray text;
    for (const QString& line : lines)
        text += line.toUtf8() + '\n';
    static_cast<void>(
        std::fwrite(text.constData(), 1, static_cast<std::size_t>(text.size()), stderr));
}

void reportFailure(const QString& failure)
{
    complain({QCoreApplication::applicationName() + QStringLiteral(": ") + failure});
}
