#include "FeedLoader.h"

#include <QCoreApplication>

#include <cstdio>

/// Prints one line per feed named on the command line: "good", or "bad" and the first problem.
int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    for (const QString& path : application.arguments().mid(1)) {
        const rivo::feed::FeedResult result = rivo::feed::loadFeed(path);
        const QString verdict =
            result.feed ? QStringLiteral("good") : "bad " + result.problemLines().first();
        std::puts(verdict.toUtf8().constData());
    }
    return 0;
}
