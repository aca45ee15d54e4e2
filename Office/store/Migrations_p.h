#pragma once

#include <QString>

namespace rivo::backoffice
{

class Database;

/// Brings the tables of a database up to this program's version, in one transaction, while no other
/// program does. False if that fails, or if a newer program made them; `problem` has why.
bool migrate(Database& database, QString& problem);

} // namespace rivo::backoffice
