#include <Config.h>

#include <QCoreApplication>

#include <cstdio>

/// Prints one line per file named on the command line: "good", or "bad" and the first problem.
int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    for (const QString& path : application.arguments().mid(1)) {
        const rivo::config::ConfigResult result = rivo::config::readConfig(path);
        const QString verdict =
            result.config ? QStringLiteral("good") : "bad " + result.problems.first();
        std::puts(verdict.toUtf8().constData());
    }
    return 0;
}
