#include "Journal.h"

#include "JournalChain_p.h"
#include "JournalFile_p.h"
#include "JournalRecords_p.h"
#include "JournalSchema_p.h"

namespace rivo::sales
{

namespace
{

/// Looks before it writes: a file that is not ours stays as it is.
bool prepare(JournalFile& file, const Currency& currency, qint64 firstZNumber)
{
    const std::optional<QVariant> objects =
        file.setPragma("locking_mode", "exclusive") &&
                file.run(QStringLiteral("PRAGMA trusted_schema=OFF"))
            ? file.value(QStringLiteral("SELECT COUNT(*) FROM sqlite_master"))
            : std::nullopt;
    if (!objects || !file.run(QStringLiteral("PRAGMA synchronous=FULL")) ||
        !file.run(QStringLiteral("PRAGMA foreign_keys=ON")))
        return false;
    // The tables come before the write-ahead log, so that the file itself has them.
    const bool isNew = objects->toInt() == 0;
    if (isNew && !createJournal(file, currency, firstZNumber))
        return false;
    const std::optional<int> version = isNew ? newestVersion() : validVersion(file, currency);
    if (!version || !file.setPragma("journal_mode", "wal"))
        return false;
    return *version >= newestVersion() ? file.inTransaction([] { return true; }) // may write
                                       : takeOver(file, *version);
}

} // namespace

Journal::Journal() : m_file(std::make_unique<JournalFile>()) {}

Journal::~Journal() = default;

std::optional<JournalFault> Journal::open(const QString& file, const Currency& currency,
                                          qint64 firstZNumber)
{
    if (m_file->open(file) && !prepare(*m_file, currency, firstZNumber))
        m_file->close();
    return m_file->fault();
}

std::optional<JournalFault> Journal::openToRead(const QString& file)
{
    if (m_file->openToRead(file) && !hasNewestSchema(*m_file))
        m_file->close();
    return m_file->fault();
}

bool Journal::recordForTrials()
{
    if (m_file->fault() || !m_file->run(QStringLiteral("PRAGMA synchronous=OFF")))
        return false;
    m_file->chain().keepHeadAtEnd();
    return true;
}

std::optional<Currency> Journal::currency()
{
    return m_file->fault() ? std::nullopt : currencyOf(*m_file);
}

QString Journal::head()
{
    const auto last = m_file->fault() ? std::nullopt : m_file->chain().reader().lastSeal();
    return last ? headText(last->record, last->hash) : QString();
}

bool Journal::forEachRecord(const std::function<bool(const QJsonObject&)>& use)
{
    const auto last = m_file->fault()
                          ? std::nullopt
                          : m_file->value(QStringLiteral("SELECT IFNULL(MAX(id), 0) FROM record"));
    for (qint64 number = lastPruned() + 1; last && number <= last->toLongLong(); ++number) {
        QJsonObject record = m_file->chain().reader().content().json(number);
        const auto seal = m_file->chain().reader().sealOf(number);
        if (seal && number > m_file->chain().reader().base())
            record.insert(QStringLiteral("seal"), QString::fromLatin1(seal->hash.toHex()));
        if (record.isEmpty() || !use(record))
            return false;
    }
    return last.has_value();
}

bool Journal::isCheckedWhole() const
{
    return !m_file->fault() && m_file->chain().isCheckedWhole();
}

const std::optional<JournalFault>& Journal::fault() const { return m_file->fault(); }

bool Journal::appendToBasket(const Ticket& ticket)
{
    return m_file->inTransaction([&] {
        return m_file->insert("basket", QVector<QVariant>{QVariant()} + ticketValues(ticket))
            .has_value();
    });
}

bool Journal::removeFromBasket(int row)
{
    return m_file->inTransaction([&] {
        QSqlQuery query = m_file->prepared(
            QStringLiteral("DELETE FROM basket WHERE line ="
                           " (SELECT line FROM basket ORDER BY line LIMIT 1 OFFSET ?)"));
        query.addBindValue(row);
        return m_file->run(query);
    });
}

bool Journal::clearBasket()
{
    return m_file->inTransaction([&] { return m_file->run(QStringLiteral("DELETE FROM basket")); });
}

QVector<Ticket> Journal::basket()
{
    return readTickets(*m_file, QStringLiteral("0, -1, NULL, 0 FROM basket ORDER BY line"));
}

std::optional<QVector<Ticket>> Journal::confirmSale(const QVector<Ticket>& tickets,
                                                    const Payment& payment, const QDateTime& at,
                                                    const std::optional<CardOutcome>& card)
{
    Minor total = 0;
    for (const Ticket& ticket : tickets)
        total += ticket.price;
    const bool isCash = payment.method == PayMethod::Cash;
    const Minor due = isCash ? total + payment.rounding : 0;
    const Minor given = isCash && payment.given != 0 ? payment.given : due;
    if (tickets.isEmpty() || given < due)
        return std::nullopt;
    QVector<Ticket> sold = tickets;
    const bool isDone = m_file->inTransaction([&] {
        if (card && !addOutcome(*card, at))
            return false;
        const auto shift = runningZNumber();
        const auto sale = shift ? addRecord(RecordKind::Sale, *shift, at) : std::nullopt;
        if (!sale || !m_file->insert("sale", {*sale, static_cast<int>(payment.method), total,
                                              isCash ? payment.rounding : 0, given, given - due}))
            return false;
        if (card && !m_file->insert("card_sale", {*sale, card->payment}))
            return false;
        for (Ticket& ticket : sold) {
            const auto number = m_file->insert("ticket", QVector<QVariant>{QVariant(), *sale} +
                                                             ticketValues(ticket));
            if (!number || !m_file->insert("unprinted", {*number}))
                return false;
            ticket.number = *number;
            ticket.payMethod = static_cast<int>(payment.method);
            ticket.soldAt = at;
            ticket.driver = m_driver;
        }
        return m_file->run(QStringLiteral("DELETE FROM basket"));
    });
    return isDone ? std::make_optional(sold) : std::nullopt;
}

bool Journal::markPrinted(qint64 ticketNumber, const QDateTime& at)
{
    return m_file->inTransaction([&] {
        QSqlQuery query =
            m_file->prepared(QStringLiteral("DELETE FROM unprinted WHERE ticket = ?"));
        query.addBindValue(ticketNumber);
        return m_file->run(query) &&
               (query.numRowsAffected() == 0 || addPrintout(ticketNumber, false, at));
    });
}

bool Journal::recordCopy(qint64 ticketNumber, const QDateTime& at)
{
    return m_file->inTransaction([&] { return addPrintout(ticketNumber, true, at); });
}

bool Journal::addPrintout(qint64 ticketNumber, bool isCopy, const QDateTime& at)
{
    const auto shift = runningZNumber();
    const auto record = shift ? addRecord(RecordKind::Printout, *shift, at) : std::nullopt;
    return record && m_file->insert("printout", {*record, ticketNumber, isCopy ? 1 : 0});
}

QVector<Ticket> Journal::unprintedTickets()
{
    return readTickets(*m_file, QStringLiteral("number, pay_method, at, driver FROM unprinted"
                                               " CROSS JOIN ticket ON number = unprinted.ticket"
                                               " JOIN sale ON sale.record = ticket.sale"
                                               " JOIN record ON record.id = ticket.sale"
                                               " ORDER BY unprinted.ticket"));
}

std::optional<qint64> Journal::addRecord(RecordKind kind, qint64 shift, const QDateTime& at)
{
    return m_file->insert("record",
                          {QVariant(), static_cast<int>(kind), shift, timeText(at), m_driver});
}

} // namespace rivo::sales
