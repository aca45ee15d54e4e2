#include "FeedLoader.h"

#include <QCoreApplication>
#include <QTextStream>

/// Prints one line per feed named on the command line: "good", or "bad" and the first problem.
int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    QTextStream out(stdout);
    out.setCodec("UTF-8");
    for (const QString& path : application.arguments().mid(1)) {
        const rivo::feed::FeedResult result = rivo::feed::loadFeed(path);
        out << (result.feed ? QStringLiteral("good") : "bad " + result.problemLines().first())
            << '\n';
    }
    return 0;
}
