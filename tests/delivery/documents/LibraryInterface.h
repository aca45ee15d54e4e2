#pragma once

#include "RolesDocument.h"

#include <QSet>

/// What the library has, as docs/roles.md ought to say it.
InterfaceLines libraryInterface();

/// Public operations that a header declares, invokables included, as declared but without
/// `override`; those with a body in the header end with " inline".
QStringList declaredOperations(const QString& className);

/// The same operations as nm prints a symbol: without class, argument names and defaults. Without
/// those that the library exports no symbol for.
QSet<QString> declaredSymbols(const QString& className);

/// Symbols of public operations of the class that libGuiCore.so exports.
QSet<QString> exportedSymbols(const QString& className);

/// Setters of the class that libGuiCore.so exports.
QSet<QString> exportedSetters(const QString& className);

/// Role numbers by the enumerator's name in the header of an item class.
QMap<QString, int> declaredRoles(const QString& itemClass);
