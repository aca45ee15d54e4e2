#include "Migrations_p.h"

#include "Database.h"

#include <QVector>

namespace rivo::backoffice
{

namespace
{

// A step that was delivered is not changed: another one follows it. Amounts are in minor units of
// the journal's currency.

QStringList firstStep()
{
    return {QStringLiteral(R"(CREATE TABLE vehicle (
            id bigint GENERATED ALWAYS AS IDENTITY PRIMARY KEY,
            operator text NOT NULL,
            name text NOT NULL,
            first_seen timestamptz NOT NULL DEFAULT now(),
            UNIQUE (operator, name)))"),
            QStringLiteral(R"(CREATE TABLE journal (
            id bigint GENERATED ALWAYS AS IDENTITY PRIMARY KEY,
            vehicle bigint NOT NULL REFERENCES vehicle,
            public_key bytea NOT NULL UNIQUE CHECK (length(public_key) = 32),
            base bigint NOT NULL,
            currency text NOT NULL,
            decimals integer NOT NULL,
            last_number bigint NOT NULL,
            last_hash bytea NOT NULL,
            last_signature bytea NOT NULL,
            last_at timestamptz,
            first_seen timestamptz NOT NULL DEFAULT now()))"),
            QStringLiteral("CREATE INDEX journal_vehicle ON journal (vehicle)"),
            QStringLiteral(R"(CREATE TABLE record (
            journal bigint NOT NULL REFERENCES journal,
            number bigint NOT NULL,
            kind integer,
            shift bigint,
            driver bigint,
            at timestamptz,
            day date,
            content bytea NOT NULL,
            hash bytea NOT NULL,
            signature bytea NOT NULL,
            received timestamptz NOT NULL DEFAULT now(),
            PRIMARY KEY (journal, number)))"),
            // Sales and reversals, which reports add up by the day.
            QStringLiteral("CREATE INDEX record_day ON record (day) WHERE kind IN (2, 4)"),
            QStringLiteral(R"(CREATE TABLE sale (
            journal bigint NOT NULL REFERENCES journal,
            record bigint NOT NULL,
            pay_method integer NOT NULL,
            total bigint NOT NULL,
            rounding bigint NOT NULL,
            PRIMARY KEY (journal, record)))"),
            QStringLiteral(R"(CREATE TABLE ticket (
            journal bigint NOT NULL REFERENCES journal,
            number bigint NOT NULL,
            sale bigint NOT NULL,
            description text NOT NULL,
            product text NOT NULL,
            price bigint NOT NULL,
            route bigint NOT NULL,
            route_name text NOT NULL,
            PRIMARY KEY (journal, number)))"),
            QStringLiteral("CREATE INDEX ticket_sale ON ticket (journal, sale)"),
            QStringLiteral(R"(CREATE TABLE reversal (
            journal bigint NOT NULL REFERENCES journal,
            record bigint NOT NULL,
            sale bigint NOT NULL,
            reason_kind integer NOT NULL,
            total bigint NOT NULL,
            paid_out bigint NOT NULL,
            PRIMARY KEY (journal, record)))"),
            QStringLiteral(R"(CREATE TABLE reversed_ticket (
            journal bigint NOT NULL REFERENCES journal,
            ticket bigint NOT NULL,
            reversal bigint NOT NULL,
            PRIMARY KEY (journal, ticket)))"),
            QStringLiteral("CREATE INDEX reversed_ticket_reversal ON reversed_ticket"
                           " (journal, reversal)"),
            QStringLiteral(R"(CREATE TABLE closing (
            journal bigint NOT NULL REFERENCES journal,
            shift bigint NOT NULL,
            record bigint NOT NULL,
            ticket_count bigint NOT NULL,
            ticket_sum bigint NOT NULL,
            card_sum bigint NOT NULL,
            void_sum bigint NOT NULL,
            refund_sum bigint NOT NULL,
            reversed_card_sum bigint NOT NULL,
            rounding bigint NOT NULL,
            opening_float bigint NOT NULL,
            PRIMARY KEY (journal, shift)))"),
            QStringLiteral(R"(CREATE TABLE hand_over (
            journal bigint NOT NULL REFERENCES journal,
            shift bigint NOT NULL,
            record bigint NOT NULL,
            counted bigint NOT NULL,
            difference bigint NOT NULL,
            PRIMARY KEY (journal, shift)))"),
            QStringLiteral(R"(CREATE TABLE clock (
            journal bigint NOT NULL REFERENCES journal,
            record bigint NOT NULL,
            remark integer NOT NULL,
            milliseconds bigint NOT NULL,
            PRIMARY KEY (journal, record)))"),
            QStringLiteral(R"(CREATE TABLE fault (
            id bigint GENERATED ALWAYS AS IDENTITY PRIMARY KEY,
            vehicle bigint REFERENCES vehicle,
            topic text NOT NULL,
            public_key bytea NOT NULL,
            kind text NOT NULL,
            number bigint NOT NULL,
            reason text NOT NULL,
            digest bytea NOT NULL,
            bytes bytea NOT NULL,
            times bigint NOT NULL DEFAULT 1,
            first_at timestamptz NOT NULL DEFAULT now(),
            last_at timestamptz NOT NULL DEFAULT now(),
            closed_at timestamptz,
            UNIQUE (topic, public_key, kind, number, digest)))"),
            QStringLiteral("CREATE INDEX fault_vehicle ON fault ((COALESCE(vehicle, 0)))"),
            QStringLiteral("CREATE INDEX fault_gap ON fault (public_key, number)"
                           " WHERE kind = 'gap' AND closed_at IS NULL")};
}

/// What the office publishes. Pieces are read of content that is not compressed.
QStringList publicationStep()
{
    return {QStringLiteral(R"(CREATE TABLE publication (
            id bigint GENERATED ALWAYS AS IDENTITY PRIMARY KEY,
            operator text NOT NULL,
            kind text NOT NULL,
            version bigint NOT NULL,
            valid_from timestamptz NOT NULL,
            name text NOT NULL,
            size bigint NOT NULL,
            announcement bytea NOT NULL,
            content bytea NOT NULL,
            published timestamptz NOT NULL DEFAULT now(),
            UNIQUE (operator, kind, version)))"),
            QStringLiteral("ALTER TABLE publication ALTER content SET STORAGE EXTERNAL"),
            QStringLiteral(R"(CREATE TABLE publication_state (
            vehicle bigint NOT NULL REFERENCES vehicle,
            kind text NOT NULL,
            taken bigint NOT NULL,
            in_use bigint NOT NULL,
            refused bigint NOT NULL,
            refusal text NOT NULL,
            at timestamptz NOT NULL,
            PRIMARY KEY (vehicle, kind)))")};
}

/// What vehicles last reported besides records. Coordinates are degrees of WGS 84, directions
/// clockwise from north, speeds metres per second.
QStringList stateStep()
{
    return {QStringLiteral(R"(CREATE TABLE vehicle_state (
            vehicle bigint PRIMARY KEY REFERENCES vehicle,
            alive boolean NOT NULL,
            alive_since timestamptz NOT NULL DEFAULT now(),
            position_at timestamptz,
            latitude double precision,
            longitude double precision,
            direction double precision,
            speed double precision,
            trip text NOT NULL DEFAULT '',
            devices jsonb NOT NULL DEFAULT '[]',
            devices_at timestamptz NOT NULL DEFAULT now()))")};
}

QVector<QStringList> steps() { return {firstStep(), publicationStep(), stateStep()}; }

/// Programs that start together take turns.
constexpr char lock[] = "SELECT pg_advisory_xact_lock(1383692108)";

bool takeSteps(Database& database, QString& problem)
{
    if (!database.runAll({QString::fromLatin1(lock),
                          QStringLiteral("CREATE TABLE IF NOT EXISTS schema_version (version"
                                         " integer PRIMARY KEY, at timestamptz NOT NULL)")}))
        return false;
    QSqlQuery* found =
        database.run(QStringLiteral("SELECT COALESCE(MAX(version), 0) FROM schema_version"));
    if (found == nullptr || !found->next())
        return false;
    const QVector<QStringList> all = steps();
    const int version = found->value(0).toInt();
    if (version > all.size()) {
        problem = QStringLiteral("the database has version %1, this program knows %2")
                      .arg(version)
                      .arg(all.size());
        return false;
    }
    for (int step = version; step < all.size(); ++step) {
        if (!database.runAll(all.at(step)) ||
            database.run(QStringLiteral("INSERT INTO schema_version VALUES (?, now())"),
                         {step + 1}) == nullptr)
            return false;
    }
    return true;
}

} // namespace

bool migrate(Database& database, QString& problem)
{
    if (database.begin() && takeSteps(database, problem) && database.commit())
        return true;
    if (problem.isEmpty())
        problem = database.problem();
    database.rollBack();
    return false;
}

} // namespace rivo::backoffice
