#include "Fuzzing.h"

#include <core/Logging.h>

#include <QCoreApplication>

#include <cstdio>
#include <cstdlib>
#include <memory>

namespace
{

std::unique_ptr<QTemporaryDir> ownFolder;
/// Never destroyed: libFuzzer ends through exit(), and Qt's own statics go first.
QCoreApplication* application = nullptr;

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    fuzzing::start();
    return 0;
}

namespace fuzzing
{

void start()
{
    static int count = 1;
    static char name[] = "fuzzer";
    static char* arguments[] = {name, nullptr};
    ownFolder = std::make_unique<QTemporaryDir>();
    if (!ownFolder->isValid())
        fail(QStringLiteral("no temporary folder"));
    qputenv("HOME", ownFolder->path().toUtf8());
    application = new QCoreApplication(count, arguments);
    el::Configurations quiet;
    quiet.setToDefault();
    quiet.setGlobally(el::ConfigurationType::ToFile, "false");
    quiet.setGlobally(el::ConfigurationType::ToStandardOutput, "false");
    el::Loggers::setDefaultConfigurations(quiet, true);
}

QString folder() { return ownFolder->path(); }

void fail(const QString& what)
{
    std::fprintf(stderr, "%s\n", qUtf8Printable(what));
    std::abort();
}

void write(const QString& path, const QByteArray& content)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadWrite) || !file.resize(content.size()) ||
        file.write(content) != content.size())
        fail(QStringLiteral("%1 cannot be written").arg(path));
}

} // namespace fuzzing
