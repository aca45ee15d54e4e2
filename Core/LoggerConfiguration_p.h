#pragma once

#include <core/Logging.h>

#include <QtCore/QString>

namespace rivo::core
{

/// What every logger starts with: one readable line per record on standard error, no log file.
el::Configurations defaultLoggerConfiguration();

/// Gives every logger the default configuration, changed by the logging.conf at @p path.
///
/// The format is Easylogging++'s: a line "* LEVEL:" opens a section (GLOBAL stands for all levels
/// and comes first), lines "KEY = value" follow, "##" starts a comment. Useful keys:
///   ENABLED             true or false
///   FORMAT              "%datetime %level %loc %msg", also %func, %logger, %thread
///   TO_STANDARD_OUTPUT  true or false; this is standard error here. Default: true
///   TO_FILE             true or false. Default: false
///   FILENAME            absolute path; its folder is created; its name may contain %datetime{...}
///   MAX_LOG_FILE_SIZE   bytes, after which the file starts anew; 0 for no limit
///   LOG_FLUSH_THRESHOLD records between two flushes; 0 for the stream's own choice
///   SUBSECOND_PRECISION digits of a second, 1 to 6
///
/// Returns what is wrong, naming file, line and reason; then no logger is changed. A missing file
/// changes nothing either and is no problem.
QString applyLoggerConfiguration(const QString& path);

} // namespace rivo::core
