#include "Options.h"

#include <FleetMessages.h>
#include <QCommandLineParser>
#include <QCoreApplication>

#include <limits>

namespace rivo::backoffice
{

namespace
{

QCommandLineOption option(const char* name, const char* text, const char* value,
                          const char* ifMissing = "")
{
    return {QLatin1String(name), QLatin1String(text), QLatin1String(value),
            QLatin1String(ifMissing)};
}

void describe(QCommandLineParser& parser)
{
    parser.setApplicationDescription(QStringLiteral(
        "The office of a fleet: takes the records of vehicles from a broker of MQTT and keeps them"
        " in PostgreSQL. "
        "serve: takes records until it is stopped; several may run at a time. "
        "report: prints what was sold. "
        "gaps: prints what is missing or wrong; the exit code is 1 if there is something. "
        "web: shows all of that in a browser until it is stopped, without a sign-in. "
        "positions: writes where the vehicles are into a file, as GTFS-Realtime. "
        "publish FILE: signs a file for the vehicles of an operator; the exit code is 1 if it is"
        " not taken. "
        "publications: prints what is published, and which vehicles lack it or refuse it; the exit"
        " code is 1 if one refuses something. "
        "A password of the database is read from the file that PGPASSFILE names, or ~/.pgpass."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions(
        {option("database", "Name of the database.", "name", "rivo"),
         option("database-host", "Its host, or the folder of its socket.", "host"),
         option("database-port", "Its port.", "port", "5432"),
         option("database-user", "Its user.", "user"),
         option("database-options", "More settings, such as sslmode=verify-full.", "settings"),
         option("broker", "serve: host of the broker.", "host", "localhost"),
         option("port", "serve: its port.", "port", "8883"),
         option("authority", "serve: certificate of the authority, for TLS, in PEM.", "file"),
         option("certificate", "serve: own certificate.", "file"),
         option("key", "serve: own private key. publish: that of the publisher, Ed25519.", "file"),
         option("share", "serve: the same for all programs, and known to no vehicle.", "name",
                "office"),
         option("from", "report: the first day, such as 2026-03-29.", "day"),
         option("to", "report: the last day.", "day"),
         option("by", "report: driver, route, vehicle or product.", "what", "vehicle"),
         option("format", "report: text, csv or json.", "format", "text"),
         option("listen", "web: address and port.", "address", "127.0.0.1:8080"),
         option("feed", "web: rivo-feed JSON or GTFS, whose routes are on the map.", "feed"),
         option("output", "positions: the file, which is replaced as a whole.", "file"),
         option("every", "positions: write again after so many seconds, until stopped.", "seconds"),
         option("kind", "publish: feed, drivers, limits or paid.", "what", "feed"),
         option("operator", "publish: whose vehicles get it, as in their topics.", "name"),
         option("valid-from", "publish: such as 2026-04-01T03:00:00+02:00.", "time"),
         option("number",
                "publish: its version, a number larger than the last. Default: the next one.",
                "number"),
         {QStringLiteral("all"), QStringLiteral("gaps: those that are closed, too.")}});
    parser.addPositionalArgument(
        QStringLiteral("command"),
        QStringLiteral("serve, report, gaps, web, positions, publish or publications."));
    parser.addPositionalArgument(QStringLiteral("file"), QStringLiteral("publish: what."),
                                 QStringLiteral("[file]"));
}

/// 0 for anything but a port.
int portOf(const QString& text)
{
    bool isNumber = false;
    const int port = text.toInt(&isNumber);
    return isNumber && port > 0 && port <= std::numeric_limits<quint16>::max() ? port : 0;
}

/// A second to a day, or nothing.
bool readPause(const QString& text, int& seconds)
{
    constexpr int most = 86400;
    seconds = text.toInt();
    return text.isEmpty() || (seconds > 0 && seconds <= most);
}

/// The place of a name in a list; -1 if it is not there.
int placeOf(const QString& name, const char* names)
{
    return QString::fromLatin1(names).split(QLatin1Char(' ')).indexOf(name);
}

/// A time with its zone, or UTC; invalid for anything else.
QDateTime momentOf(const QString& text)
{
    QDateTime moment = QDateTime::fromString(text, Qt::ISODate);
    if (moment.timeSpec() == Qt::LocalTime) // none was given
        moment.setTimeSpec(Qt::UTC);
    return moment.isValid() && moment.toSecsSinceEpoch() >= 0 ? moment.toUTC() : QDateTime();
}

bool readPublication(const QStringList& arguments, const QCommandLineParser& parser,
                     ToPublish& publication)
{
    const auto value = [&](const char* name) { return parser.value(QLatin1String(name)); };
    const auto kind = office::publicationKindOf(value("kind"));
    bool isNumber = true;
    publication.file = arguments.value(1);
    publication.operatorName = value("operator");
    publication.kind = kind.value_or(office::PublicationKind::Feed);
    publication.validFrom = momentOf(value("valid-from"));
    if (parser.isSet(QStringLiteral("number")))
        publication.version = value("number").toLongLong(&isNumber);
    publication.keyFile = value("key");
    constexpr qint64 largest = Q_INT64_C(1) << 40;
    const bool isVersion = !parser.isSet(QStringLiteral("number")) ||
                           (isNumber && publication.version > 0 && publication.version <= largest);
    return arguments.size() == 2 && kind && isVersion && publication.validFrom.isValid() &&
           office::isTopicName(publication.operatorName) && !publication.keyFile.isEmpty();
}

} // namespace

Options optionsOf(const QCoreApplication& application)
{
    QCommandLineParser parser;
    describe(parser);
    parser.process(application);
    const auto value = [&](const char* name) { return parser.value(QLatin1String(name)); };
    const QStringList arguments = parser.positionalArguments();
    const int by = placeOf(value("by"), "driver route vehicle product");
    const int format = placeOf(value("format"), "text csv json");
    Options options;
    options.command = arguments.value(0);
    options.database = {value("database-host"), portOf(value("database-port")), value("database"),
                        value("database-user"), value("database-options")};
    options.broker.host = value("broker");
    options.broker.port = portOf(value("port"));
    options.broker.authority = value("authority");
    options.broker.certificate = value("certificate");
    options.broker.key = value("key");
    options.share = value("share");
    options.from = QDate::fromString(value("from"), Qt::ISODate);
    options.to = QDate::fromString(value("to"), Qt::ISODate);
    options.feed = value("feed");
    options.listen = value("listen");
    options.output = value("output");
    const bool isPause = readPause(value("every"), options.every);
    options.all = parser.isSet(QStringLiteral("all"));
    const bool isReport = options.command == QLatin1String("report");
    const bool isPublication = options.command == QLatin1String("publish") &&
                               readPublication(arguments, parser, options.publication);
    const bool isOther =
        arguments.size() == 1 &&
        placeOf(options.command, "serve report gaps web positions publications") >= 0;
    const bool isUnderstood =
        (isOther || isPublication) && by >= 0 && format >= 0 && options.database.port > 0 &&
        options.broker.port > 0 && office::isTopicName(options.share) &&
        (!isReport || (options.from.isValid() && options.to.isValid())) && isPause &&
        (options.command != QLatin1String("positions") || !options.output.isEmpty());
    if (!isUnderstood)
        return {};
    options.by = static_cast<ReportBy>(by);
    options.format = static_cast<ReportFormat>(format);
    return options;
}

} // namespace rivo::backoffice
