#pragma once

#include "Journal.h"

#include <QSqlQuery>
#include <QString>
#include <QStringList>

namespace rivo::sales
{

class JournalFile;

/// What a record of the journal is about; the number that table `record` has for it. Records are
/// added and never changed. What changes are two tables of the moment, which follow from them: the
/// unfinished basket, and the tickets that are not printed.
enum class RecordKind {
    Opening = 1,  ///< the float of the shift
    Sale = 2,     ///< with its tickets
    Printout = 3, ///< of one ticket, or a copy
    Reversal = 4, ///< of tickets of one sale
    Closing = 5,  ///< of the shift, with its figures
    HandOver = 6, ///< of the shift's cash
    Payment = 7,  ///< with a card, before the terminal is asked
    Outcome = 8,  ///< of such a payment
    CardDay = 9,  ///< of the card terminal, after the shift
    Clock = 10,   ///< a remark about the clock
    Pruning = 11  ///< of the records of old shifts
};

/// Makes the tables of a new journal, and its first shift.
bool createJournal(JournalFile& file, const Currency& currency, qint64 firstZNumber);

/// Makes the tables alone, in the transaction that runs.
bool createTables(JournalFile& file);

// The statements that make tables and indexes.
QStringList paymentTables(); ///< of payments with cards
QStringList clockTables();   ///< of remarks about the clock
QStringList chainTables();   ///< of seals
QStringList pruningTables(); ///< of what was pruned

/// The version of `file`, if it has the tables of that version and nothing else, figures that
/// agree, and amounts in `currency`; a fault otherwise.
std::optional<int> validVersion(JournalFile& file, const Currency& currency);

/// That of a new journal. The first pruning makes the next one of it: a program of the version
/// before, which an update may put back, goes on with a journal that was never pruned.
int newestVersion();

/// Whether `file` has the tables and indexes of the newest version, or of a pruned journal, and
/// nothing else; a fault otherwise.
bool hasNewestSchema(JournalFile& file);

/// Whether the figures of such a journal agree; a fault otherwise.
bool passesAll(JournalFile& file);

/// Makes the journal one that may be pruned, in the transaction that runs.
bool admitPruning(JournalFile& file);

/// The money that it is kept in.
std::optional<Currency> currencyOf(JournalFile& file);

/// Makes a journal of the newest version of one of an earlier valid version, in one transaction,
/// and checks it.
bool takeOver(JournalFile& file, int version);

/// A statement with one result, and the result that it has in a journal that is whole.
struct Check
{
    QString statement;
    const char* result = "0";
};

/// Whether all have their result; a fault otherwise.
bool passes(JournalFile& file, const QVector<Check>& checks);

/// What holds for the payments with cards of every journal.
QVector<Check> checksOfPayments();

/// The last record that was pruned, 0 if there is none, as an expression.
QString lastPrunedRecord();

/// The last shift that was pruned, or the number before the first one, as an expression.
QString lastPrunedShift();

/// What holds in every journal of version 2, and "type name" of all that it has.
QVector<Check> checksOfVersion2();
QStringList objectsOfVersion2();

// The steps of taking over, in the transaction that runs.
bool setVersion2Aside(JournalFile& file); ///< its tables get other names
bool copyVersion2(JournalFile& file);     ///< its rows become records; its tables are gone

/// The columns that the tables of tickets and of the unfinished basket share: "passenger_type,
/// ...".
QString ticketColumnNames();
QString ticketColumnDefinitions(); ///< of a statement that makes a table
int ticketColumnCount();

/// The values of these columns.
QVector<QVariant> ticketValues(const Ticket& ticket);

/// Reads these columns, the first ones of `row`.
Ticket ticketOf(const QSqlQuery& row);

} // namespace rivo::sales
