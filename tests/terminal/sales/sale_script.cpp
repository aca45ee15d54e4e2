// Sells scripted baskets until it is killed: sale_script JOURNAL SEED [SALES]
//
// Says on standard output what it is about to do and what is done, each line flushed:
//   restored PRICES...            the basket that the journal had
//   next PRICES...                the basket that the next step leads to
//   basket PRICES...              the step is done
//   paying METHOD                 the basket is about to be sold
//   sold METHOD NUMBER:PRICE...   the sale is confirmed
//   closing Z, closed Z           the same for a shift
//   handing Z, handed Z           the same for the cash of a closed one
//   reversing NUMBER..., reversed NUMBER...   the same for tickets that are taken back

#include "Counter.h"

#include <QCoreApplication>
#include <QRandomGenerator>

#include <cstdio>

using namespace rivo::sales;

namespace
{

void say(const QString& what, const QVector<qint64>& prices)
{
    QString line = what;
    for (const qint64 price : prices)
        line += QStringLiteral(" %1").arg(price);
    std::puts(qPrintable(line));
    std::fflush(stdout);
}

class Script
{
public:
    Script(const QString& file, quint32 seed) : m_counter(file), m_random(seed)
    {
        QObject::connect(&m_counter.desk, &SalesDesk::saleConfirmed, [this] { confirm(); });
    }

    bool isReady() const { return m_counter.desk.obstacle().isEmpty(); }

    void restore()
    {
        if (m_counter.desk.state() == SalesDesk::Selling)
            say("restored", m_counter.prices());
        while (m_counter.desk.ticketsInDoubt() > 0) {
            if (m_random.bounded(2) == 0)
                m_counter.desk.confirmTicketInDoubt();
            else
                m_counter.desk.printTicketsInDoubt();
        }
        finishPrinting();
    }

    bool sell()
    {
        for (int taps = 1 + m_random.bounded(4); taps > 0; --taps) {
            if (!tap())
                return false;
        }
        if (m_counter.basket.rowCount() > 0) {
            m_payment = m_random.bounded(2) == 0 ? SalesDesk::Cash : SalesDesk::Card;
            say("paying", {m_payment});
            if (!m_counter.desk.pay(m_payment))
                return false;
            finishPrinting();
            if (m_random.bounded(5) == 0 && !takeBack())
                return false;
        }
        return m_random.bounded(8) != 0 || closeShift();
    }

private:
    bool tap()
    {
        QVector<qint64> prices = m_counter.prices();
        const int kind = m_random.bounded(10);
        if (kind == 0) {
            say("next", {});
            return m_counter.desk.clear() && done();
        }
        if (kind == 1 && !prices.isEmpty()) {
            const int row = m_random.bounded(prices.size());
            prices.remove(row);
            say("next", prices);
            return m_counter.desk.remove(row) && done();
        }
        const int tile = QVector<int>{AdultSingle, ChildSingle, DayTicket, Free, TooExact}.at(
            m_random.bounded(5));
        prices.append(QVector<qint64>{190, 95, 450, 0, 101}.at(
            QVector<int>{AdultSingle, ChildSingle, DayTicket, Free, TooExact}.indexOf(tile)));
        say("next", prices);
        return m_counter.desk.add(tile) && done();
    }

    bool done()
    {
        say("basket", m_counter.prices());
        return true;
    }

    /// The last sale, or its first ticket.
    bool takeBack()
    {
        const QVariantMap sale = m_counter.desk.lastSale();
        const qint64 first = sale.value("firstTicket").toLongLong();
        const bool isVoid = m_random.bounded(2) == 0;
        QVector<qint64> numbers{first};
        while (isVoid && numbers.last() < sale.value("lastTicket").toLongLong())
            numbers.append(numbers.last() + 1);
        say("reversing", numbers);
        if (!(isVoid ? m_counter.desk.voidLastSale()
                     : m_counter.desk.refundTicket(static_cast<double>(first), "late")))
            return false;
        say("reversed", numbers);
        return true;
    }

    bool closeShift()
    {
        const auto zNumber = static_cast<qint64>(m_counter.report()->zNumber());
        say("closing", {zNumber});
        if (!m_counter.desk.closeShift())
            return false;
        say("closed", {zNumber});
        return m_random.bounded(2) == 0 || handOver();
    }

    /// The oldest shift that owes something, if any.
    bool handOver()
    {
        for (int row = m_counter.zReports.rowCount() - 1; row > 0; --row) {
            const ZReportItem* report = m_counter.report(row);
            if (report->paymentDate().isValid())
                continue;
            const double zNumber = report->zNumber();
            say("handing", {static_cast<qint64>(zNumber)});
            if (!m_counter.desk.handOver(zNumber))
                return false;
            say("handed", {static_cast<qint64>(zNumber)});
            break;
        }
        return true;
    }

    /// The numbers as the report on the screen has them.
    void confirm()
    {
        const QVector<qint64> prices = m_counter.prices();
        const qint64 last = m_counter.report()->toTicketNumber().toLongLong();
        QString line = QStringLiteral("sold %1").arg(m_payment);
        for (int row = 0; row < prices.size(); ++row)
            line +=
                QStringLiteral(" %1:%2").arg(last - prices.size() + 1 + row).arg(prices.at(row));
        say(line, {});
    }

    void finishPrinting()
    {
        while (m_counter.desk.state() != SalesDesk::Selling)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

    Counter m_counter;
    QRandomGenerator m_random;
    SalesDesk::Payment m_payment = SalesDesk::Cash;
};

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 3)
        return 2;
    Script script(arguments.at(1), arguments.at(2).toUInt());
    if (!script.isReady())
        return 1;
    script.restore();
    const int sales = arguments.value(3, QStringLiteral("100000")).toInt();
    for (int sale = 0; sale < sales; ++sale) {
        if (!script.sell())
            return 1;
    }
    return 0;
}
