#include "GridOptions.h"

#include "QueryText.h"

#include <FeedProblem.h>

#include <QMap>

#include <algorithm>

using rivo::feed::OfferQuery;
using rivo::feed::quoted;

namespace
{

const QLatin1String routeOption("route");
const QLatin1String stopOption("stop");
const QLatin1String atOption("at");
const QLatin1String toOption("to");
const QLatin1String mediaOption("media");
const QLatin1String queriesOption("queries");
const QLatin1String productOption("product");

QString takePositional(QStringList arguments, GridOptions& options)
{
    const QMap<QString, GridCommand> commands{{QStringLiteral("check"), GridCommand::Check},
                                              {QStringLiteral("offers"), GridCommand::Offers},
                                              {QStringLiteral("why"), GridCommand::Why}};
    if (!arguments.isEmpty() && commands.contains(arguments.first()))
        options.command = commands.value(arguments.takeFirst());
    if (arguments.size() != 1)
        return QStringLiteral("expected one feed, got %1").arg(arguments.size());
    options.feed = arguments.first();
    return {};
}

void addOptions(FeedCommandLine& line)
{
    line.addOption(
        {routeOption, QStringLiteral("Route that the vehicle runs on."), QStringLiteral("ID")});
    line.addOption(
        {stopOption, QStringLiteral("Stop where the ticket is sold."), QStringLiteral("ID")});
    line.addOption(
        {atOption, QStringLiteral("Local time of the sale."), QStringLiteral("YYYY-MM-DDTHH:MM")});
    line.addOption(
        {toOption, QStringLiteral("Stop where the ride ends. Default: any that the route reaches."),
         QStringLiteral("ID")});
    line.addOption({mediaOption,
                    QStringLiteral("Types of fare media that are sold: 0 none, 1 paper, 2 transit "
                                   "card, 3 bank card, 4 mobile app. Default: 0,1."),
                    QStringLiteral("TYPE,TYPE")});
    line.addOption({queriesOption,
                    QStringLiteral("offers: a file with one JSON object of route, stop, at, to and "
                                   "media per line; prints one JSON object per line."),
                    QStringLiteral("FILE")});
    line.addOption({productOption, QStringLiteral("why: the fare product."), QStringLiteral("ID")});
}

/// The query, if the command line has one.
void takeQuery(FeedCommandLine& line, GridOptions& options)
{
    QStringList missing;
    for (const QLatin1String& name : {routeOption, stopOption, atOption}) {
        if (!line.isSet(name))
            missing.append(QLatin1String("--") + name);
    }
    const bool isGiven = missing.size() < 3 || line.isSet(toOption) || line.isSet(mediaOption);
    const bool isWanted = options.command == GridCommand::Offers && options.queriesFile.isEmpty();
    if (!isGiven && !isWanted)
        return;
    if (!missing.isEmpty())
        return line.reject(QStringLiteral("%1: missing").arg(missing.join(QLatin1String(", "))));
    OfferQuery query;
    query.route = line.value(routeOption);
    query.stop = line.value(stopOption);
    query.to = line.value(toOption);
    query.at = localTime(line.value(atOption));
    if (!query.at.isValid())
        line.reject(QStringLiteral("--at: %1, expected a time such as 2026-03-02T08:15")
                        .arg(quoted(line.value(atOption))));
    if (line.isSet(mediaOption)) {
        const auto media = mediaTypes(line.value(mediaOption));
        if (!media)
            line.reject(QStringLiteral("--media: %1, expected types from 0 to 4, such as 0,1")
                            .arg(quoted(line.value(mediaOption))));
        query.media = media.value_or(query.media);
    }
    options.query = query;
}

void checkOptions(FeedCommandLine& line, const GridOptions& options)
{
    const auto onlyFor = [&](const QLatin1String& option, GridCommand command, const char* name) {
        if (line.isSet(option) && options.command != command)
            line.reject(QStringLiteral("--%1: only for %2").arg(option, QLatin1String(name)));
    };
    onlyFor(queriesOption, GridCommand::Offers, "offers");
    onlyFor(productOption, GridCommand::Why, "why");
    if (options.command == GridCommand::Why && !line.isSet(productOption))
        line.reject(QStringLiteral("--product: missing"));
    if (options.command == GridCommand::Check && options.query)
        line.reject(QStringLiteral("check judges the whole feed, not one stop"));
    if (options.command == GridCommand::Offers && options.format == OutputFormat::Csv)
        line.reject(QStringLiteral("--format: offers are text or json"));
}

} // namespace

std::optional<GridOptions> parseCommandLine(const QStringList& arguments)
{
    FeedCommandLine line(
        QStringLiteral(
            "Prints what a terminal sells from a feed: a rivo-feed JSON file, or a GTFS folder or "
            ".zip.\n\n"
            "  rivo-grid FEED                     print the grid of everything that is sold\n"
            "  rivo-grid FEED --route --stop --at print the grid of one stop\n"
            "  rivo-grid offers FEED --route ...  list what is sold at a stop, and why the rest is "
            "not\n"
            "  rivo-grid why FEED --product ...   explain one product in sentences\n"
            "  rivo-grid check FEED               judge the fares and the back-office positions\n\n"
            "Exit code: 0 done; 1 the terminal would not use the positions (check); 2 the feed or "
            "the\ncommand line is wrong, or the output cannot be written."),
        QStringLiteral("[check | offers | why] FEED"));
    addOptions(line);
    GridOptions options;
    line.read(arguments, options);
    options.reading.timetableOf = QStringList();
    options.queriesFile = line.value(queriesOption);
    options.product = line.value(productOption);
    line.reject(takePositional(line.positionalArguments(), options));
    takeQuery(line, options);
    checkOptions(line, options);
    if (!line.isAccepted())
        return std::nullopt;
    return options;
}
