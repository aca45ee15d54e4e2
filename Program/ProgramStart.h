#pragma once

#include <QString>
#include <QStringList>

/// Sets name and version of the application that runs.
void nameProgram(const QString& name);

/// Writes the lines to standard error, in UTF-8.
void complain(const QStringList& lines);

/// Writes one line to standard error that begins with the name of the program.
void reportFailure(const QString& failure);
