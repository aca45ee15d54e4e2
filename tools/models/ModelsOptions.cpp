#include "ModelsOptions.h"

#include <FeedProblem.h>

#include <algorithm>
#include <array>

using rivo::feed::quoted;

namespace
{

struct ModelChoice
{
    ModelKind kind;
    const char* name;
    const char* rows;
};

constexpr std::array<ModelChoice, 6> choices{{
    {ModelKind::Grid, "grid", "tiles of the selection grid, laid out"},
    {ModelKind::Basket, "basket", "tickets of the grid's tiles, sold on the feed's trip"},
    {ModelKind::FareProducts, "fare-products", "fare product catalogue"},
    {ModelKind::ZReports, "z-reports", "reports of shifts"},
    {ModelKind::Fleet, "fleet", "vehicles"},
    {ModelKind::Devices, "devices", "peripherals of the terminal"},
}};

const QLatin1String ticketsOption("tickets");

/// "  fleet          vehicles", one line per model.
QString choicesExplained()
{
    QString lines;
    for (const ModelChoice& choice : choices)
        lines += QStringLiteral("  %1 %2\n")
                     .arg(QLatin1String(choice.name), -14)
                     .arg(QLatin1String(choice.rows));
    return lines;
}

QString choicesListed()
{
    QStringList names;
    for (const ModelChoice& choice : choices)
        names.append(QLatin1String(choice.name));
    const QString last = names.takeLast();
    return names.join(QStringLiteral(", ")) + QStringLiteral(" or ") + last;
}

QString takePositional(const QStringList& arguments, ModelsOptions& options)
{
    if (arguments.size() != 2)
        return QStringLiteral("expected a model and a feed, got %1 arguments")
            .arg(arguments.size());
    options.modelName = arguments.first();
    options.feed = arguments.last();
    const auto* choice =
        std::find_if(choices.cbegin(), choices.cend(), [&](const ModelChoice& candidate) {
            return options.modelName == QLatin1String(candidate.name);
        });
    if (choice == choices.cend())
        return QStringLiteral("unknown model %1, expected %2")
            .arg(quoted(options.modelName), choicesListed());
    options.model = choice->kind;
    return {};
}

QString takeTickets(const QString& list, ModelsOptions& options)
{
    QVector<int> tickets;
    const QStringList parts = list.split(QLatin1Char(','));
    for (const QString& part : parts) {
        bool isNumber = false;
        tickets.append(part.trimmed().toInt(&isNumber));
        if (!isNumber || tickets.last() < 0)
            return QStringLiteral("--tickets: %1, expected grid slots from 0, such as 0,3,3")
                .arg(quoted(list));
    }
    options.tickets = tickets;
    return {};
}

/// The options that are set although `options.model` has no use for them.
QStringList optionsOutOfPlace(const FeedCommandLine& line, const ModelsOptions& options)
{
    QStringList names;
    if (options.model != ModelKind::Basket)
        names.append(ticketsOption);
    if (options.model != ModelKind::Basket && options.model != ModelKind::Grid)
        names.append(FeedCommandLine::layoutOptions());
    names.erase(std::remove_if(names.begin(), names.end(),
                               [&](const QString& name) { return !line.isSet(name); }),
                names.end());
    return names;
}

} // namespace

std::optional<ModelsOptions> parseCommandLine(const QStringList& arguments)
{
    FeedCommandLine line(
        QStringLiteral(
            "Prints all roles of all rows of one model as a feed fills it. FEED is a rivo-feed "
            "JSON file\nor a GTFS folder with Fares V2, MODEL one of:\n\n%1\n"
            "--columns, --order and --supported are for grid and basket.\n\n"
            "Exit code: 0 done; 2 the feed or the command line is wrong, or the output cannot be\n"
            "written.")
            .arg(choicesExplained()),
        QStringLiteral("MODEL FEED"));
    line.addOption(
        {ticketsOption,
         QStringLiteral("Grid slots, from 0, of the tickets in the basket; a slot may repeat. "
                        "Default: every tile for sale, once."),
         QStringLiteral("SLOT,SLOT,...")});

    ModelsOptions options;
    line.read(arguments, options);
    const QString wrongArguments = takePositional(line.positionalArguments(), options);
    line.reject(wrongArguments);
    if (line.isSet(ticketsOption))
        line.reject(takeTickets(line.value(ticketsOption), options));
    if (wrongArguments.isEmpty()) {
        const QStringList outOfPlace = optionsOutOfPlace(line, options);
        for (const QString& name : outOfPlace)
            line.reject(QStringLiteral("--%1: not for %2").arg(name, options.modelName));
    }
    if (!line.isAccepted())
        return std::nullopt;
    return options;
}
