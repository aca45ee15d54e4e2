#pragma once

#include <PublicationMessages.h>

#include <QStringList>

namespace rivo::backoffice
{

/// What is wrong with the content of a file that is to be published; empty if nothing is.
QStringList problemsOf(office::PublicationKind kind, const QString& file);

} // namespace rivo::backoffice
