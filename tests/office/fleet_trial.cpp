// A fleet without vehicles: real journals, outboxes and connections, for test-office.sh.
//
// fleet_trial run FOLDER FIRST COUNT RECORDS SECONDS SEED PORT
//     Vehicles FIRST to FIRST + COUNT - 1 sell until each journal in FOLDER has about RECORDS,
//     within about SECONDS, and send them to a broker on PORT of the loopback. 0 seconds: they sell
//     before they connect. Ends when the office has all. It may be killed and started again.
// fleet_trial compare FOLDER COUNT HOST DATABASE USER
//     Compares all journals with the office's database, and prints what is lost or doubled.

#include <BrokerLink.h>
#include <Database.h>
#include <Journal.h>
#include <Outbox.h>

#include <QCoreApplication>
#include <QJsonArray>
#include <QRandomGenerator>
#include <QTimer>

#include <array>
#include <cstdio>
#include <memory>
#include <vector>

#include <sys/resource.h>

using namespace rivo::office;
using namespace rivo::sales;

namespace
{

QString nameOf(int vehicle) { return QStringLiteral("bus-%1").arg(vehicle); }

QString fileOf(const QString& folder, int vehicle)
{
    return QStringLiteral("%1/%2.db").arg(folder, nameOf(vehicle));
}

/// Ends the program with a message.
void check(bool isDone, const QString& what)
{
    if (isDone)
        return;
    std::fprintf(stderr, "fleet_trial: %s\n", qPrintable(what));
    std::exit(2);
}

/// What a vehicle sells: by cash and by card, with printed tickets, some taken back, in shifts.
class Seller
{
public:
    Seller(Journal& journal, quint32 seed) : m_journal(journal), m_random(seed) {}

    /// One sale and what follows it.
    bool sell()
    {
        constexpr int salesOfShift = 40;
        const QDateTime now = QDateTime::currentDateTime();
        m_journal.setDriver(1 + m_random.bounded(9));
        const PayMethod method = m_random.bounded(4) == 0 ? PayMethod::Card : PayMethod::Cash;
        const auto sold = m_journal.confirmSale(tickets(), {method}, now);
        return sold && print(*sold, now) &&
               (m_random.bounded(30) != 0 || takeBack(sold->first(), now)) &&
               (m_random.bounded(salesOfShift) != 0 || closeShift(now));
    }

private:
    QVector<Ticket> tickets()
    {
        QVector<Ticket> made(1 + m_random.bounded(3));
        for (Ticket& each : made) {
            each.fareProductName = QStringLiteral("Single");
            each.description = QStringLiteral("Adult");
            each.trip.routeId = 1 + m_random.bounded(20);
            each.price = 5 * (10 + m_random.bounded(90));
        }
        return made;
    }

    bool print(const QVector<Ticket>& sold, const QDateTime& now)
    {
        return std::all_of(sold.begin(), sold.end(), [&](const Ticket& each) {
            return m_journal.markPrinted(each.number, now);
        });
    }

    bool takeBack(const Ticket& ticket, const QDateTime& now)
    {
        return m_journal
            .reverse(m_journal.saleOf(ticket.number), {ticket.number}, ReversalKind::Refund,
                     QStringLiteral("trial"), ticket.price, now)
            .has_value();
    }

    bool closeShift(const QDateTime& now)
    {
        const auto closed = m_journal.closeShift(now);
        return closed && (closed->due() == 0 || m_journal.handOver(closed->zNumber, now));
    }

    Journal& m_journal;
    QRandomGenerator m_random;
};

/// How the vehicles of one process sell and send.
struct Trial
{
    QString folder;
    qint64 records = 0;
    int seconds = 0;
    quint32 seed = 0;
    int port = 0;
};

class Vehicle : public QObject
{
public:
    Vehicle(const Trial& trial, int number)
        : m_trial(trial), m_random(trial.seed + quint32(number)),
          m_name(nameOf(number)), m_topics{QStringLiteral("trial"), m_name}
    {
        const auto fault =
            m_journal.open(fileOf(trial.folder, number), Currency(QStringLiteral("EUR"), 2), 1);
        check(!fault, fault ? m_name + QStringLiteral(": ") + fault->detail : QString());
        check(m_journal.recordForTrials(), m_name);
        // The seed of a run that goes on is another one.
        m_seller = std::make_unique<Seller>(m_journal, m_random.generate() + quint32(last()));
        if (trial.seconds == 0) {
            while (last() < trial.records)
                check(m_seller->sell(), m_name);
        }
        QObject::connect(&m_timer, &QTimer::timeout, this, [this] { sellNext(); });
    }

    void connectToBroker()
    {
        BrokerSettings settings;
        settings.host = QStringLiteral("127.0.0.1");
        settings.port = m_trial.port;
        settings.clientId = m_name;
        settings.willTopic = m_topics.alive();
        m_link = std::make_unique<BrokerLink>(settings);
        // Half of the time between two questions of a vehicle that gets no answer.
        m_outbox = std::make_unique<Outbox>(m_journal, OutboxPace{50, 1000, 10000, 20000});
        m_link->subscribe(m_topics.acknowledged());
        connect(m_outbox.get(), &Outbox::ready, this, [this](const QByteArray& message) {
            m_link->publish(m_topics.records(), message);
        });
        connect(m_outbox.get(), &Outbox::refused, this, [this](const QString& reason) {
            std::fprintf(stderr, "fleet_trial: %s is refused: %s\n", qPrintable(m_name),
                         qPrintable(reason));
        });
        connect(m_link.get(), &BrokerLink::connected, this,
                [this] { m_outbox->setConnected(true); });
        connect(m_link.get(), &BrokerLink::disconnected, this,
                [this] { m_outbox->setConnected(false); });
        connect(m_link.get(), &BrokerLink::received, this,
                [this](const QString&, const QByteArray& message) { m_outbox->take(message); });
        check(m_link->start(), m_name);
        m_timer.start(pause());
    }

    bool isDone() { return last() >= m_trial.records && m_outbox->acknowledged() == last(); }

private:
    qint64 last() { return m_journal.head().section(QLatin1Char('-'), 0, 0).toLongLong(); }

    /// A sale is about 3 records.
    int pause()
    {
        constexpr int recordsOfSale = 3;
        const qint64 mean =
            1000 * recordsOfSale * m_trial.seconds / qMax<qint64>(1, m_trial.records);
        return int(mean / 2) + m_random.bounded(int(mean) + 1);
    }

    void sellNext()
    {
        if (last() >= m_trial.records)
            return m_timer.stop();
        check(m_seller->sell(), m_name);
        m_timer.start(pause());
    }

    const Trial& m_trial;
    QRandomGenerator m_random;
    QString m_name;
    Topics m_topics;
    Journal m_journal;
    std::unique_ptr<Seller> m_seller;
    std::unique_ptr<Outbox> m_outbox;
    std::unique_ptr<BrokerLink> m_link;
    QTimer m_timer;
};

/// Each vehicle has files and a connection.
void allowManyFiles()
{
    rlimit limit = {};
    if (getrlimit(RLIMIT_NOFILE, &limit) == 0) {
        limit.rlim_cur = limit.rlim_max;
        setrlimit(RLIMIT_NOFILE, &limit);
    }
}

int run(const Trial& trial, int first, int count)
{
    allowManyFiles();
    std::vector<std::unique_ptr<Vehicle>> vehicles;
    for (int vehicle = first; vehicle < first + count; ++vehicle)
        vehicles.push_back(std::make_unique<Vehicle>(trial, vehicle));
    std::puts("sends");
    std::fflush(stdout);
    for (const auto& vehicle : vehicles)
        vehicle->connectToBroker();
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&vehicles] {
        if (std::all_of(vehicles.begin(), vehicles.end(),
                        [](const auto& vehicle) { return vehicle->isDone(); }))
            QCoreApplication::exit(0);
    });
    timer.start(200);
    return QCoreApplication::exec();
}

/// What a journal, or the office of it, adds up to.
struct Sums
{
    enum What { Tickets, Sold, Rounding, Reversed, PaidOut, Shifts, ShiftSums, Counted, Count };
    std::array<qint64, Count> of = {};
};

qint64 sumOf(const QJsonObject& record, const char* table, const char* column)
{
    qint64 sum = 0;
    for (const QJsonValue& row : record.value(QLatin1String(table)).toArray())
        sum += row.toObject().value(QLatin1String(column)).toVariant().toLongLong();
    return sum;
}

Sums sumsOf(Journal& journal)
{
    Sums sums;
    const bool isRead = journal.forEachRecord([&](const QJsonObject& record) {
        sums.of[Sums::Tickets] += record.value(QLatin1String("ticket")).toArray().size();
        sums.of[Sums::Sold] += sumOf(record, "ticket", "price");
        sums.of[Sums::Rounding] += sumOf(record, "sale", "rounding");
        sums.of[Sums::Reversed] += record.value(QLatin1String("reversed_ticket")).toArray().size();
        sums.of[Sums::PaidOut] += sumOf(record, "reversal", "paid_out");
        sums.of[Sums::Shifts] += record.value(QLatin1String("closing")).toArray().size();
        sums.of[Sums::ShiftSums] += sumOf(record, "closing", "ticket_sum");
        sums.of[Sums::Counted] += sumOf(record, "hand_over", "counted");
        return true;
    });
    check(isRead, QStringLiteral("a journal cannot be read"));
    return sums;
}

class Comparison
{
public:
    explicit Comparison(const rivo::backoffice::DatabaseSettings& settings) : m_database(settings)
    {
        check(m_database.open(), m_database.problem());
    }

    void add(const QString& folder, int vehicle)
    {
        Journal journal;
        const auto fault = journal.openToRead(fileOf(folder, vehicle));
        check(!fault, fault ? fault->detail : QString());
        const qint64 id = idOf(nameOf(vehicle));
        addRecords(journal, id);
        compareSums(sumsOf(journal), id, nameOf(vehicle));
    }

    int result(int vehicles)
    {
        const qint64 all = value(QStringLiteral("SELECT COUNT(*) FROM record"));
        const qint64 doubled = all - (m_records - m_lost);
        std::printf("sold %lld, taken back %lld, in %lld shifts; faults other than gaps: %lld\n",
                    value(QStringLiteral("SELECT CAST(SUM(price) AS bigint) FROM ticket")),
                    value(QStringLiteral("SELECT CAST(SUM(paid_out) AS bigint) FROM reversal")),
                    value(QStringLiteral("SELECT COUNT(*) FROM closing")),
                    value(QStringLiteral("SELECT COUNT(*) FROM fault WHERE kind <> 'gap'")));
        std::printf(
            "bytes of a record: %lld in messages, %lld in the database\n", m_bytes / m_records,
            value(QStringLiteral("SELECT pg_database_size(current_database())")) / m_records);
        if (m_different > 0)
            std::printf("%d vehicles have other sums than the office\n", m_different);
        std::printf("%d vehicles, %lld records, %lld lost, %lld doubled\n", vehicles, m_records,
                    m_lost, doubled);
        return m_lost == 0 && doubled == 0 && m_different == 0 ? 0 : 1;
    }

private:
    qint64 value(const QString& statement, const QVariantList& values = {})
    {
        QSqlQuery* found = m_database.run(statement, values);
        check(found != nullptr, m_database.problem());
        return found->next() ? found->value(0).toLongLong() : -1;
    }

    /// Of the one journal that a vehicle has.
    qint64 idOf(const QString& name)
    {
        return value(QStringLiteral("SELECT MAX(journal.id) FROM journal JOIN vehicle ON vehicle.id"
                                    " = vehicle WHERE name = ? HAVING COUNT(*) = 1"),
                     {name});
    }

    /// A record is there if its content and its hash are.
    void addRecords(Journal& journal, qint64 id)
    {
        constexpr int count = 200;
        for (qint64 after = -1;;) {
            const QVector<SealedRecord> records = journal.sealedRecords(after, count);
            if (records.isEmpty())
                return;
            after = records.last().number;
            m_records += records.size();
            m_bytes += encode(Batch{journal.publicKey(), records}).size();
            for (const SealedRecord& record : records)
                m_lost += value(QStringLiteral("SELECT COUNT(*) FROM record WHERE journal = ? AND"
                                               " number = ? AND hash = ? AND content = ?"),
                                {id, record.number, record.hash, record.content}) == 1
                              ? 0
                              : 1;
        }
    }

    void compareSums(const Sums& sums, qint64 id, const QString& name)
    {
        static const std::array<const char*, Sums::Count> statements{
            "COUNT(*) FROM ticket",         "SUM(price) FROM ticket",
            "SUM(rounding) FROM sale",      "COUNT(*) FROM reversed_ticket",
            "SUM(paid_out) FROM reversal",  "COUNT(*) FROM closing",
            "SUM(ticket_sum) FROM closing", "SUM(counted) FROM hand_over"};
        bool isSame = true;
        for (size_t at = 0; at < statements.size(); ++at)
            isSame = isSame && value(QStringLiteral("SELECT %1 WHERE journal = ?")
                                         .arg(QLatin1String(statements.at(at))),
                                     {id}) == sums.of.at(at);
        if (!isSame) {
            std::printf("%s has other sums than the office\n", qPrintable(name));
            ++m_different;
        }
    }

    rivo::backoffice::Database m_database;
    long long m_records = 0;
    long long m_lost = 0;
    long long m_bytes = 0; ///< in messages
    int m_different = 0;
};

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList given = QCoreApplication::arguments();
    if (given.value(1) == QLatin1String("run") && given.size() == 9) {
        const Trial trial{given.at(2), given.at(5).toLongLong(), given.at(6).toInt(),
                          given.at(7).toUInt(), given.at(8).toInt()};
        return run(trial, given.at(3).toInt(), given.at(4).toInt());
    }
    check(given.value(1) == QLatin1String("compare") && given.size() == 7,
          QStringLiteral("wrong arguments"));
    Comparison comparison({given.at(4), 0, given.at(5), given.at(6), {}});
    for (int vehicle = 0; vehicle < given.at(3).toInt(); ++vehicle)
        comparison.add(given.at(2), vehicle);
    return comparison.result(given.at(3).toInt());
}
