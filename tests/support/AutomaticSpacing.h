#pragma once

#include <core/Logging.h>

#include <QtGlobal>

/// Turns the automatic spacing of log records on while it lives.
class AutomaticSpacing
{
public:
    explicit AutomaticSpacing(bool isOn)
    {
        if (isOn)
            el::Loggers::addFlag(el::LoggingFlag::AutoSpacing);
    }

    ~AutomaticSpacing() { el::Loggers::removeFlag(el::LoggingFlag::AutoSpacing); }

    Q_DISABLE_COPY_MOVE(AutomaticSpacing)
};
