// A process that logs its arguments, for a test that looks at it from outside.
//
//   core_log_probe                        does nothing
//   core_log_probe log                    writes one record per level
//   core_log_probe config BASE SUBFOLDER  the same after asking for a manager
//   core_log_probe leave BASE SUBFOLDER   the same with an application that is never destroyed

#include <core/ConfigManager.h>
#include <core/Logging.h>

#include <QCoreApplication>
#include <QString>

#include <cstring>

// Once more, as two headers of a program may do.
#include <core/Logging.h>

int main(int argc, char** argv)
{
    if (argc < 2)
        return 0;
    if (argc == 4 && std::strcmp(argv[1], "leave") == 0)
        new QCoreApplication(argc, argv);
    if (argc == 4) {
        rivo::core::ConfigManager::instance(QString::fromLocal8Bit(argv[2]),
                                            QString::fromLocal8Bit(argv[3]));
    }
    LOG(INFO) << "count " << 3 << QString::fromUtf8(" żółć");
    LOG(WARNING) << "careful";
    LOG(DEBUG) << "detail";
    return 0;
}
