#pragma once

#include "StandardOutput.h"

/// Decides, while it lives, where the log of the library and its notes on standard output go:
/// nowhere, or (verbose) all to standard error. Make it before the models.
///
/// The library always logs at level Info, which is of no use to a user who prints a feed.
/// Other levels, and a log file that logging.conf names, stay as they are.
class LibraryDiagnostics
{
public:
    explicit LibraryDiagnostics(bool verbose);

private:
    DiagnosticsElsewhere m_notes;
};
