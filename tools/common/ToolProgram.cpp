#include "ToolProgram.h"

#include <FeedLoader.h>

#include <QCoreApplication>
#include <QTextStream>

#include <clocale>

void nameProgram(const QString& name)
{
    QCoreApplication::setApplicationName(name);
    QCoreApplication::setApplicationVersion(QStringLiteral(RIVO_VERSION));
    static_cast<void>(std::setlocale(LC_CTYPE, "C.UTF-8"));
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

std::optional<rivo::feed::Feed> readFeed(const QString& path,
                                         const rivo::feed::FeedOptions& options)
{
    rivo::feed::FeedResult result = rivo::feed::loadFeed(path, options);
    complain(result.noticeLines());
    complain(result.problemLines());
    return std::move(result.feed);
}
