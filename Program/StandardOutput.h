#pragma once

#include <QtGlobal>

class QByteArray;

/// While it lives, what the library writes to standard output (the slot lists of the layout, the
/// types left out) goes to standard error, or nowhere: standard output carries the result alone.
class DiagnosticsElsewhere
{
public:
    enum class Destination { StandardError, Nowhere };

    explicit DiagnosticsElsewhere(Destination destination);
    ~DiagnosticsElsewhere();
    Q_DISABLE_COPY_MOVE(DiagnosticsElsewhere)

private:
    int m_savedOutput;
};

/// Writes everything to standard output; false, with a message on standard error, if that fails.
bool writeToStandardOutput(const QByteArray& bytes);

/// Standard output is a terminal that shows colours and NO_COLOR is not set.
bool standardOutputHasColours();
