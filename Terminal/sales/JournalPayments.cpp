// The journal's payments with cards: begun before the terminal is asked, ended by an outcome.

#include "JournalRecords_p.h"

#include <algorithm>

namespace rivo::sales
{

namespace
{

constexpr int approved = static_cast<int>(payment::Verdict::Approved);
constexpr int unknown = static_cast<int>(payment::Verdict::Unknown);
constexpr int charge = static_cast<int>(CardDirection::Charge);

/// A condition for rows of table payment: no outcome is known.
QString withoutOutcome()
{
    return QStringLiteral("NOT EXISTS (SELECT 1 FROM outcome WHERE outcome.payment ="
                          " payment.record AND verdict <> %1)")
        .arg(unknown);
}

/// The only one that may be open, see checksOfPayments().
const auto isLast = QStringLiteral("payment.record = (SELECT MAX(record) FROM payment)");

QVariant text(const QString& value)
{
    return value.isNull() ? QVariant(QLatin1String("")) : QVariant(value);
}

} // namespace

QStringList paymentTables()
{
    const auto table = [](const char* name, const char* definitions) {
        return QStringLiteral("CREATE TABLE %1 (%2)")
            .arg(QLatin1String(name), QLatin1String(definitions));
    };
    return {table("payment", "record INTEGER PRIMARY KEY REFERENCES record,"
                             " direction INTEGER NOT NULL, amount INTEGER NOT NULL,"
                             " origin INTEGER REFERENCES payment, reason_kind INTEGER NOT NULL,"
                             " reason TEXT NOT NULL"),
            QStringLiteral("CREATE INDEX payment_origin ON payment (origin) WHERE origin NOT NULL"),
            table("payment_ticket", "payment INTEGER NOT NULL REFERENCES payment,"
                                    " ticket INTEGER NOT NULL REFERENCES ticket,"
                                    " PRIMARY KEY (payment, ticket)"),
            QStringLiteral("CREATE INDEX payment_ticket_ticket ON payment_ticket (ticket)"),
            table("outcome",
                  "record INTEGER PRIMARY KEY REFERENCES record,"
                  " payment INTEGER NOT NULL REFERENCES payment, verdict INTEGER NOT NULL,"
                  " receipt INTEGER NOT NULL, trace INTEGER NOT NULL,"
                  " terminal TEXT NOT NULL, card TEXT NOT NULL, card_at TEXT NOT NULL,"
                  " reason TEXT NOT NULL"),
            QStringLiteral("CREATE UNIQUE INDEX outcome_known ON outcome (payment)"
                           " WHERE verdict <> %1")
                .arg(unknown),
            QStringLiteral("CREATE INDEX outcome_payment ON outcome (payment)"),
            QStringLiteral("CREATE INDEX outcome_receipt ON outcome (trace, receipt)"),
            table("card_sale", "sale INTEGER PRIMARY KEY REFERENCES sale,"
                               " payment INTEGER NOT NULL UNIQUE REFERENCES payment"),
            table("card_reversal", "reversal INTEGER PRIMARY KEY REFERENCES reversal,"
                                   " payment INTEGER NOT NULL UNIQUE REFERENCES payment"),
            // Without an answer of the terminal total and difference are null.
            table("card_day", "record INTEGER PRIMARY KEY REFERENCES record, total INTEGER,"
                              " difference INTEGER")};
}

QVector<Check> checksOfPayments()
{
    const auto none = [](const QString& rows) {
        return Check{QStringLiteral("SELECT COUNT(*) FROM %1").arg(rows)};
    };
    const QString approvedOne = QStringLiteral("EXISTS (SELECT 1 FROM outcome WHERE outcome.payment"
                                               " = payment.record AND verdict = %1)")
                                    .arg(approved);
    return {
        // One payment is open at most, the last one.
        none(QStringLiteral("payment WHERE %1 AND NOT %2").arg(withoutOutcome(), isLast)),
        none(QStringLiteral("payment WHERE amount < 1 OR (direction = %1) <> (origin IS NULL)")
                 .arg(charge)),
        // Sales and reversals have the amounts of payments that were approved.
        none(
            QStringLiteral("card_sale JOIN sale ON sale.record = card_sale.sale"
                           " JOIN payment ON payment.record = card_sale.payment"
                           " WHERE amount <> total OR pay_method <> 2 OR direction <> %1 OR NOT %2")
                .arg(charge)
                .arg(approvedOne)),
        none(QStringLiteral("card_reversal JOIN reversal ON reversal.record = reversal"
                            " JOIN payment ON payment.record = card_reversal.payment"
                            " LEFT JOIN card_sale ON card_sale.sale = reversal.sale"
                            " WHERE amount <> paid_out OR payment.origin IS NOT card_sale.payment"
                            " OR NOT %1")
                 .arg(approvedOne)),
        // Not more is given back than was taken.
        none(QStringLiteral("payment AS taken WHERE direction = %1 AND amount <"
                            " (SELECT IFNULL(SUM(amount), 0) FROM payment WHERE"
                            " payment.origin = taken.record AND %2)")
                 .arg(charge)
                 .arg(approvedOne)),
        none(QStringLiteral("card_day WHERE (total IS NULL) <> (difference IS NULL)"))};
}

std::optional<CardPayment> Journal::begin(CardPayment payment, const QDateTime& at)
{
    const bool isDone = payment.amount > 0 && m_file->inTransaction([&] {
        const auto open =
            m_file->value(QStringLiteral("SELECT COUNT(*) FROM payment WHERE %1 AND %2")
                              .arg(isLast, withoutOutcome()));
        const auto shift = open && open->toInt() == 0 ? runningZNumber() : std::nullopt;
        if (!shift)
            return false;
        const auto record = addRecord(RecordKind::Payment, *shift, at);
        const QVariant origin = payment.origin != 0 ? QVariant(payment.origin) : QVariant();
        const int kind = payment.tickets.isEmpty() ? 0 : static_cast<int>(payment.kind);
        if (!record ||
            !m_file->insert("payment", {*record, static_cast<int>(payment.direction),
                                        payment.amount, origin, kind, text(payment.reason)}))
            return false;
        payment.id = *record;
        return std::all_of(payment.tickets.begin(), payment.tickets.end(), [&](qint64 ticket) {
            return m_file->insert("payment_ticket", {payment.id, ticket}).has_value();
        });
    });
    return isDone ? std::make_optional(payment) : std::nullopt;
}

std::optional<CardPayment> Journal::beginCharge(Minor amount, const QDateTime& at)
{
    CardPayment payment;
    payment.amount = amount;
    return begin(payment, at);
}

std::optional<CardPayment> Journal::beginReturn(const CardPayment& wanted, const QDateTime& at)
{
    CardPayment payment = wanted;
    payment.direction = CardDirection::Return;
    payment.verdict.reset();
    return begin(payment, at);
}

bool Journal::recordOutcome(const CardOutcome& outcome, const QDateTime& at)
{
    return m_file->inTransaction([&] { return addOutcome(outcome, at); });
}

bool Journal::addOutcome(const CardOutcome& outcome, const QDateTime& at)
{
    const auto shift = runningZNumber();
    const auto record = shift ? addRecord(RecordKind::Outcome, *shift, at) : std::nullopt;
    const payment::Receipt& receipt = outcome.receipt;
    return record &&
           m_file->insert("outcome",
                          {*record, outcome.payment, static_cast<int>(outcome.verdict),
                           receipt.number, receipt.trace, text(receipt.terminalId),
                           text(receipt.card),
                           receipt.at.isValid() ? timeText(receipt.at) : QLatin1String(""),
                           text(outcome.reason)});
}

/// `condition`: what stands after WHERE for rows of table payment.
std::optional<CardPayment> Journal::readPayment(const QString& condition)
{
    if (m_file->fault())
        return std::nullopt;
    std::optional<CardPayment> found;
    QSqlQuery query = m_file->prepared(
        QStringLiteral("SELECT payment.record, direction, amount, origin, reason_kind,"
                       " payment.reason, verdict, receipt, trace, terminal, card, card_at"
                       " FROM payment LEFT JOIN outcome ON outcome.record ="
                       " (SELECT MAX(record) FROM outcome WHERE outcome.payment = payment.record)"
                       " WHERE %1 ORDER BY payment.record DESC LIMIT 1")
            .arg(condition));
    const bool isRead = m_file->forEachRow(query, [&] {
        CardPayment made;
        made.id = query.value(0).toLongLong();
        made.direction = static_cast<CardDirection>(query.value(1).toInt());
        made.amount = query.value(2).toLongLong();
        made.origin = query.value(3).toLongLong();
        made.kind = static_cast<ReversalKind>(query.value(4).toInt());
        made.reason = query.value(5).toString();
        if (!query.value(6).isNull())
            made.verdict = static_cast<payment::Verdict>(query.value(6).toInt());
        made.receipt.number = query.value(7).toInt();
        made.receipt.trace = query.value(8).toInt();
        made.receipt.terminalId = query.value(9).toString();
        made.receipt.card = query.value(10).toString();
        made.receipt.at = timeOf(query.value(11));
        made.receipt.amount = made.amount;
        found = made;
    });
    if (!isRead || !found)
        return std::nullopt;
    QSqlQuery tickets = m_file->prepared(
        QStringLiteral("SELECT ticket FROM payment_ticket WHERE payment = %1 ORDER BY ticket")
            .arg(found->id));
    const bool areRead =
        m_file->forEachRow(tickets, [&] { found->tickets.append(tickets.value(0).toLongLong()); });
    return areRead ? found : std::nullopt;
}

std::optional<CardPayment> Journal::openPayment()
{
    return readPayment(QStringLiteral("%1 AND %2").arg(isLast, withoutOutcome()));
}

QVector<CardPayment> Journal::unbookedCharges()
{
    QVector<qint64> numbers;
    if (m_file->fault())
        return {};
    QSqlQuery query = m_file->prepared(
        QStringLiteral("SELECT payment.record FROM payment JOIN outcome ON outcome.payment ="
                       " payment.record AND verdict = %2 WHERE direction = %1 AND payment.record"
                       " NOT IN (SELECT payment FROM card_sale) AND NOT EXISTS (SELECT 1 FROM"
                       " payment AS back JOIN outcome AS given ON given.payment = back.record AND"
                       " given.verdict = %2 WHERE back.origin = payment.record)"
                       " ORDER BY payment.record")
            .arg(charge)
            .arg(approved));
    QVector<CardPayment> found;
    if (m_file->forEachRow(query, [&] { numbers.append(query.value(0).toLongLong()); })) {
        for (const qint64 number : qAsConst(numbers)) {
            if (const auto payment = cardPayment(number))
                found.append(*payment);
        }
    }
    return found;
}

std::optional<CardPayment> Journal::cardPayment(qint64 id)
{
    return readPayment(QStringLiteral("payment.record = %1").arg(id));
}

std::optional<CardPayment> Journal::chargeOf(qint64 sale)
{
    return readPayment(
        QStringLiteral("payment.record = (SELECT payment FROM card_sale WHERE sale = %1)")
            .arg(sale));
}

qint64 Journal::saleOfCharge(qint64 payment)
{
    const auto sale =
        m_file->fault()
            ? std::nullopt
            : m_file->value(QStringLiteral("SELECT IFNULL((SELECT sale FROM card_sale WHERE"
                                           " payment = %1), 0)")
                                .arg(payment));
    return sale ? sale->toLongLong() : 0;
}

bool Journal::knowsReceipt(const payment::Receipt& receipt)
{
    QSqlQuery query = m_file->prepared(
        QStringLiteral("SELECT 1 FROM outcome WHERE trace = ? AND receipt = ? AND terminal = ?"
                       " AND verdict = %1")
            .arg(approved));
    query.addBindValue(receipt.trace);
    query.addBindValue(receipt.number);
    query.addBindValue(text(receipt.terminalId));
    bool isKnown = false;
    return !m_file->fault() && m_file->forEachRow(query, [&] { isKnown = true; }) && isKnown;
}

bool Journal::isReversible(const CardPayment& payment)
{
    const auto obstacles =
        m_file->fault()
            ? std::nullopt
            : m_file->value(
                  QStringLiteral("SELECT (SELECT COUNT(*) FROM card_day WHERE record > %1 AND"
                                 " total NOT NULL) +"
                                 " (SELECT COUNT(*) FROM payment JOIN outcome ON"
                                 " outcome.payment = payment.record AND verdict = %2"
                                 " WHERE origin = %1)")
                      .arg(payment.id)
                      .arg(approved));
    return obstacles && obstacles->toInt() == 0 && payment.receipt.number > 0;
}

// The day of the terminal.

/// What was approved after a record, as far as the terminal adds it up.
std::optional<Minor> Journal::cardTotalSince(qint64 record)
{
    const auto total = m_file->value(
        QStringLiteral("SELECT IFNULL(SUM(CASE direction WHEN %1 THEN amount ELSE -amount END), 0)"
                       " FROM payment JOIN outcome ON outcome.payment = payment.record"
                       " AND verdict = %2 WHERE payment.record > %3")
            .arg(charge)
            .arg(approved)
            .arg(record));
    return total ? std::make_optional(total->toLongLong()) : std::nullopt;
}

qint64 Journal::shiftOfOpenCardDay()
{
    const auto shift =
        m_file->fault()
            ? std::nullopt
            : m_file->value(
                  QStringLiteral("SELECT IFNULL((SELECT MAX(closing.shift) FROM closing WHERE"
                                 " record > (SELECT MIN(payment.record) FROM payment JOIN outcome"
                                 " ON outcome.payment = payment.record AND verdict = %1"
                                 " WHERE payment.record > (SELECT IFNULL(MAX(record), 0) FROM"
                                 " card_day WHERE total NOT NULL))), 0)")
                      .arg(approved));
    return shift ? shift->toLongLong() : 0;
}

bool Journal::beginCardDay(qint64 shift, const QDateTime& at)
{
    return m_file->inTransaction([&] {
        const auto record = addRecord(RecordKind::CardDay, shift, at);
        return record && m_file->insert("card_day", {*record, QVariant(), QVariant()});
    });
}

std::optional<Minor> Journal::recordCardDay(qint64 shift, Minor total, const QDateTime& at)
{
    Minor difference = 0;
    const bool isDone = m_file->inTransaction([&] {
        // The last end that is certain, then those whose answers were lost, then this one.
        QVector<qint64> ends;
        QSqlQuery query = m_file->prepared(
            QStringLiteral("SELECT record FROM card_day WHERE record > (SELECT IFNULL(MAX(record),"
                           " 0) FROM card_day WHERE total NOT NULL) ORDER BY record"));
        const auto certain = m_file->value(
            QStringLiteral("SELECT IFNULL(MAX(record), 0) FROM card_day WHERE total NOT NULL"));
        if (!certain ||
            !m_file->forEachRow(query, [&] { ends.append(query.value(0).toLongLong()); }))
            return false;
        if (!ends.isEmpty())
            ends.removeLast();
        ends.prepend(certain->toLongLong());
        QVector<Minor> differences; // a terminal reports no negative sum
        for (const qint64 end : qAsConst(ends)) {
            const auto expected = cardTotalSince(end);
            if (!expected)
                return false;
            differences.append(total - std::max(Minor(0), *expected));
        }
        difference = differences.contains(0) ? 0 : differences.first();
        const auto record = addRecord(RecordKind::CardDay, shift, at);
        return record && m_file->insert("card_day", {*record, total, difference});
    });
    return isDone ? std::make_optional(difference) : std::nullopt;
}

} // namespace rivo::sales
