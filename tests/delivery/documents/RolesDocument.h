#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

/// Lines of an interface by class and table, as comparable texts: "257, id, int, int".
using InterfaceLines = QMap<QString, QMap<QString, QStringList>>;

/// What docs/roles.md states.
struct RolesDocument
{
    InterfaceLines lines;            ///< without the columns that only explain
    QMap<QString, QString> examples; ///< QML by class
    QStringList faults; ///< tables and examples out of place, rows of a wrong width, and roles
                        ///< without a meaning or a unit
};

/// Reads the markdown: a class per "## " heading, a table or an example per "### " heading below.
RolesDocument parseRolesDocument(const QString& markdown);

/// One line per difference: "FareProductsModel, Roles: missing 257, ...". Empty if there is none.
QStringList differences(const InterfaceLines& document, const InterfaceLines& library);
