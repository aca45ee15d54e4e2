#include "PaperLayout.h"

#include "TicketCode.h"

#include <QCoreApplication>
#include <QStringList>

namespace rivo::ticket
{

namespace
{

using sales::Minor;
using Kind = PaperBlock::Kind;

/// The words on the paper.
struct Paper
{
    Q_DECLARE_TR_FUNCTIONS(rivo::ticket::Paper)
};

/// A text of a feed as one line. Embeddings and marks of direction would turn around what stands
/// behind them.
QString plain(const QString& text)
{
    QString line;
    for (const QChar letter : text) {
        const QChar::Category category = letter.category();
        if (category == QChar::Other_Control || category == QChar::Separator_Line ||
            category == QChar::Separator_Paragraph)
            line.append(QLatin1Char(' '));
        else if (category != QChar::Other_Format)
            line.append(letter);
    }
    return line.simplified();
}

class Writer
{
public:
    explicit Writer(const PaperContext& context) : m_context(context) {}

    void add(Kind kind, const QString& text, const QString& value = {})
    {
        m_layout.append({kind, text, value});
    }
    /// Nothing for an empty text.
    void text(Kind kind, const QString& content)
    {
        if (!plain(content).isEmpty())
            add(kind, plain(content));
    }
    /// Nothing for an empty value.
    void field(const QString& label, const QString& value)
    {
        if (!plain(value).isEmpty())
            add(Kind::Field, label, plain(value));
    }
    void amount(Kind kind, const QString& label, Minor amount)
    {
        add(kind, label, m_context.currency.text(amount, m_context.locale));
    }
    /// "3 × €4.50"; nothing for none.
    void countedAmount(const QString& label, int count, Minor amount)
    {
        if (count != 0)
            add(Kind::Field, label,
                QStringLiteral("%1 / %2").arg(m_context.locale.toString(count),
                                              m_context.currency.text(amount, m_context.locale)));
    }
    void amountUnlessZero(const QString& label, Minor sum)
    {
        if (sum != 0)
            amount(Kind::Field, label, sum);
    }
    void time(const QString& label, const QDateTime& at)
    {
        if (at.isValid())
            field(label, m_context.locale.toString(at, QLocale::ShortFormat));
    }
    void rule() { add(Kind::Rule, {}); }
    PaperLayout layout() const { return m_layout; }

private:
    const PaperContext& m_context;
    PaperLayout m_layout;
};

/// "zone 1, Market"; one of both if they are the same or one is empty.
QString placeOf(const QString& zone, const QString& stop)
{
    QStringList parts{plain(zone), plain(stop)};
    parts.removeAll(QString());
    parts.removeDuplicates();
    return parts.join(QLatin1String(", "));
}

void writeTicket(Writer& writer, const sales::PrintJob& job, const PaperContext& context)
{
    const sales::Ticket& ticket = job.ticket;
    if (job.copy > 0)
        writer.add(Kind::Mark, Paper::tr("COPY %1").arg(job.copy));
    writer.text(Kind::Title, ticket.fareProductName);
    writer.text(Kind::Text, ticket.description);
    if (ticket.isReturnFee)
        writer.add(Kind::Text, Paper::tr("Return"));
    writer.rule();
    writer.field(Paper::tr("From"), placeOf(ticket.origin, ticket.fromStopName));
    writer.field(Paper::tr("To"), placeOf(ticket.destination, ticket.toStopName));
    writer.field(Paper::tr("Route"), ticket.routeName);
    const QString day = context.locale.toString(ticket.soldAt.date(), QLocale::ShortFormat);
    writer.field(Paper::tr("Valid"), plain(ticket.validity).isEmpty() && ticket.isDaily
                                         ? Paper::tr("on %1").arg(day)
                                         : ticket.validity);
    writer.rule();
    writer.amount(Kind::Sum, Paper::tr("Price"), ticket.price);
    writer.text(Kind::Text, ticket.tax);
    writer.field(Paper::tr("Paid"), ticket.payMethod == static_cast<int>(sales::PayMethod::Card)
                                        ? Paper::tr("by card")
                                        : Paper::tr("in cash"));
    writer.rule();
    writer.field(Paper::tr("Ticket"), sales::ticketNumberText(ticket.number));
    writer.time(Paper::tr("Sold"), ticket.soldAt);
    writer.field(Paper::tr("Driver"),
                 ticket.driver == 0 ? QString() : QString::number(ticket.driver));
    writer.field(Paper::tr("Vehicle"), ticket.vehicle);
    const QString code = codeOf(ticket, context.currency, context.checkKey);
    writer.add(Kind::Code, code);
    writer.field(Paper::tr("Check"), checkText(code));
}

/// Known only after the shift was closed: the paper of a closing has no such lines.
void writeCardDay(Writer& writer, const sales::ShiftReport& report)
{
    if (!report.isCardDayEnded)
        return;
    writer.rule();
    writer.amount(Kind::Field, Paper::tr("Day of the card terminal"), report.cardDayTotal);
    writer.amountUnlessZero(Paper::tr("Difference to the journal"), report.cardDayDifference);
}

void writeReport(Writer& writer, const sales::ShiftReport& report)
{
    const bool isClosed = report.closedAt.isValid();
    const QString title = isClosed ? Paper::tr("Z report %1") : Paper::tr("X report %1");
    writer.add(Kind::Title, title.arg(report.zNumber));
    if (!isClosed)
        writer.add(Kind::Mark, Paper::tr("The shift is running"));
    writer.field(Paper::tr("Driver"),
                 report.driver == 0 ? QString() : QString::number(report.driver));
    writer.time(Paper::tr("Closed"), report.closedAt);
    writer.rule();
    writer.field(Paper::tr("First ticket"), sales::ticketNumberText(report.firstTicket));
    writer.field(Paper::tr("Last ticket"), sales::ticketNumberText(report.lastTicket));
    writer.add(Kind::Field, Paper::tr("Tickets"), QString::number(report.ticketCount));
    writer.amount(Kind::Field, Paper::tr("Tickets sold for"), report.ticketSum);
    writer.countedAmount(Paper::tr("Void"), report.voidCount, report.voidSum);
    writer.countedAmount(Paper::tr("Refunded"), report.refundCount, report.refundSum);
    writer.amountUnlessZero(Paper::tr("Rounding of cash"), report.rounding);
    writer.amount(Kind::Sum, Paper::tr("Takings"), report.takings());
    writer.rule();
    writer.amount(Kind::Field, Paper::tr("By card"), report.cardTakings());
    writer.amount(Kind::Field, Paper::tr("In cash"), report.cash());
    writer.amountUnlessZero(Paper::tr("Opening float"), report.openingFloat);
    writer.amount(Kind::Sum, Paper::tr("Cash to hand over"), report.due());
    if (report.copyCount > 0)
        writer.add(Kind::Field, Paper::tr("Copies printed"), QString::number(report.copyCount));
    writeCardDay(writer, report);
    writer.field(Paper::tr("Journal"), report.head.section(QLatin1Char('-'), 0, 0));
    writer.text(Kind::Text, report.head.section(QLatin1Char('-'), 1));
    if (!report.paidAt.isValid())
        return;
    writer.rule();
    writer.time(Paper::tr("Handed over"), report.paidAt);
    writer.amount(Kind::Field, Paper::tr("Counted"), report.counted);
    writer.amount(Kind::Field, Paper::tr("Difference"), report.difference);
}

} // namespace

PaperLayout layOut(const sales::PrintJob& job, const PaperContext& context)
{
    Writer writer(context);
    writer.text(Kind::Title, context.operatorName);
    if (job.report)
        writeReport(writer, *job.report);
    else
        writeTicket(writer, job, context);
    return writer.layout();
}

QString textOf(const PaperLayout& layout)
{
    QStringList lines;
    for (const PaperBlock& block : layout) {
        if (block.kind == Kind::Rule)
            lines.append(QStringLiteral("--"));
        else if (block.value.isEmpty())
            lines.append(block.text);
        else
            lines.append(QStringLiteral("%1: %2").arg(block.text, block.value));
    }
    return lines.join(QLatin1Char('\n'));
}

} // namespace rivo::ticket
