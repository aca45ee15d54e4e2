// Cost of the list models beside that of Qt's own, and of the baseline, in one run.

#include "Measure.h"
#include "QmlPeer.h"
#include "Records.h"

#include <core/Logging.h>

#include <QFile>
#include <QGuiApplication>
#include <QSysInfo>
#include <QTemporaryDir>
#include <QtGlobal>

#include <benchmark/benchmark.h>

#include <iterator>
#include <malloc.h>

namespace
{

/// The same in every run, independent of the user's settings.
void settleEnvironment(const QString& home)
{
    qSetGlobalQHashSeed(0);
    qputenv("HOME", home.toLocal8Bit());
    qputenv("TMPDIR", home.toLocal8Bit());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    qputenv("QSG_RENDER_LOOP", "basic");
}

/// Memory that was freed stays with the process while a benchmark runs: what the kernel takes to
/// map pages is not measured here.
void keepMemory()
{
    mallopt(M_MMAP_MAX, 0);
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
}

void silenceLog()
{
    el::Logger* logger = el::Loggers::getLogger("default");
    logger->configurations()->set(el::Level::Info, el::ConfigurationType::Enabled, "false");
    logger->reconfigure();
}

std::string processor()
{
    QFile file(QStringLiteral("/proc/cpuinfo"));
    if (file.open(QIODevice::ReadOnly)) {
        const QList<QByteArray> lines = file.readAll().split('\n');
        for (const QByteArray& line : lines) {
            if (line.startsWith("model name"))
                return line.mid(line.indexOf(':') + 1).trimmed().toStdString();
        }
    }
    return QSysInfo::currentCpuArchitecture().toStdString();
}

void nameMachine()
{
#ifdef __clang__
    const char* const compiler = __VERSION__; // names itself
#else
    const char* const compiler = "GCC " __VERSION__;
#endif
    benchmark::AddCustomContext("processor", processor());
    benchmark::AddCustomContext("system", QSysInfo::prettyProductName().toStdString());
    benchmark::AddCustomContext("qt", qVersion());
    benchmark::AddCustomContext("compiler", compiler);
}

} // namespace

int main(int argc, char* argv[])
{
    const QTemporaryDir home;
    settleEnvironment(home.path());
    keepMemory();
    QGuiApplication application(argc, argv);
    silenceLog();
    nameMachine();
    record(0); // makes them all
    const QmlEngine engine;
    addRows();
    addReading();
    addChanging();
    addSorting();
    addRemoving();
    addGrid();
    addViews();
    addSyncing();
    addMemory();
    registerAdded();

    // So short that all of them take minutes. Options of the caller come later and replace it.
    char shortRuns[] = "--benchmark_min_time=0.01";
    std::vector<char*> arguments(argv, argv + argc);
    arguments.insert(std::next(arguments.begin()), shortRuns);
    int count = static_cast<int>(arguments.size());
    arguments.push_back(nullptr);
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data()))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    cleanUp();
    return 0;
}
