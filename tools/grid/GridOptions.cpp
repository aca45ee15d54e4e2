#include "GridOptions.h"

#include <QCommandLineParser>
#include <QMap>
#include <QTextStream>

namespace
{

QStringList splitTypes(const QString& list)
{
    QStringList types;
    const QStringList parts = list.split(QLatin1Char(','), Qt::SkipEmptyParts);
    for (const QString& part : parts)
        types.append(part.trimmed());
    return types;
}

QString takeColumns(const QString& text, GridOptions& options)
{
    bool isNumber = false;
    const int columns = text.toInt(&isNumber);
    if (!isNumber || columns < 0 || columns > 1000)
        return QStringLiteral("--columns: \"%1\", expected a number from 0 to 1000").arg(text);
    options.columns = columns;
    return {};
}

QString takeFormat(const QString& text, GridOptions& options)
{
    const QMap<QString, GridFormat> formats{{QStringLiteral("text"), GridFormat::Text},
                                            {QStringLiteral("json"), GridFormat::Json},
                                            {QStringLiteral("csv"), GridFormat::Csv}};
    if (!formats.contains(text))
        return QStringLiteral("--format: \"%1\", expected text, json or csv").arg(text);
    options.format = formats.value(text);
    return {};
}

QString takeRiderCategory(const QString& text, GridOptions& options)
{
    const int equals = text.lastIndexOf(QLatin1Char('='));
    if (equals < 1 || equals == text.size() - 1)
        return QStringLiteral("--rider-category: \"%1\", expected ID=PT_X").arg(text);
    options.reading.riderCategories.insert(text.left(equals), text.mid(equals + 1));
    return {};
}

QString takePositional(QStringList arguments, GridOptions& options)
{
    if (!arguments.isEmpty() && arguments.first() == QLatin1String("check")) {
        options.command = GridCommand::Check;
        arguments.removeFirst();
    }
    if (arguments.size() != 1)
        return QStringLiteral("expected one feed, got %1").arg(arguments.size());
    options.feed = arguments.first();
    return {};
}

} // namespace

std::optional<GridOptions> parseCommandLine(const QStringList& arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Prints the selection grid that a terminal would show for a feed: a rivo-feed JSON file\n"
        "or a GTFS folder with Fares V2.\n\n"
        "  rivo-grid FEED         print the grid\n"
        "  rivo-grid check FEED   judge the back-office positions\n\n"
        "Exit code: 0 done; 1 the terminal would not use the positions (check); 2 the feed or the\n"
        "command line is wrong, or the output cannot be written."));
    const QCommandLineOption help = parser.addHelpOption();
    const QCommandLineOption version = parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("FEED"),
                                 QStringLiteral("JSON file or GTFS folder."),
                                 QStringLiteral("[check] FEED"));

    const QCommandLineOption columns(
        QStringLiteral("columns"),
        QStringLiteral("Grid columns; 0 lets the model choose. Default: the feed's."),
        QStringLiteral("N"));
    const QCommandLineOption order(
        QStringLiteral("order"),
        QStringLiteral("Display order of passenger types. Default: the configured one."),
        QStringLiteral("PT_A,PT_B"));
    const QCommandLineOption supported(
        QStringLiteral("supported"),
        QStringLiteral("Passenger types that the terminal sells to. Default: the feed's."),
        QStringLiteral("PT_A,PT_B"));
    const QCommandLineOption format(QStringLiteral("format"),
                                    QStringLiteral("text (default), json or csv; json and csv "
                                                   "hold all roles of all rows."),
                                    QStringLiteral("FORMAT"), QStringLiteral("text"));
    const QCommandLineOption riderCategory(
        QStringLiteral("rider-category"),
        QStringLiteral("Passenger type of a GTFS rider category; may be repeated."),
        QStringLiteral("ID=PT_X"));
    const QCommandLineOption riderCategories(
        QStringLiteral("rider-categories"),
        QStringLiteral("CSV file rider_category_id,passenger_type. Default: passenger_types.txt "
                       "in the GTFS folder."),
        QStringLiteral("FILE"));
    const QCommandLineOption verbose(QStringLiteral("verbose"),
                                     QStringLiteral("Show the model's log on standard error."));
    parser.addOptions({columns, order, supported, format, riderCategory, riderCategories, verbose});

    const bool isParsed = parser.parse(arguments);
    if (isParsed && parser.isSet(help))
        parser.showHelp(0);
    if (isParsed && parser.isSet(version))
        parser.showVersion();

    GridOptions options;
    QStringList errors;
    if (!isParsed)
        errors.append(parser.errorText());
    else
        errors.append(takePositional(parser.positionalArguments(), options));
    if (parser.isSet(columns))
        errors.append(takeColumns(parser.value(columns), options));
    errors.append(takeFormat(parser.value(format), options));
    const QStringList categories = parser.values(riderCategory);
    for (const QString& category : categories)
        errors.append(takeRiderCategory(category, options));
    options.reading.mappingFile = parser.value(riderCategories);
    if (parser.isSet(order))
        options.order = splitTypes(parser.value(order));
    if (parser.isSet(supported))
        options.supported = splitTypes(parser.value(supported));
    options.verbose = parser.isSet(verbose);

    errors.removeAll(QString());
    if (errors.isEmpty())
        return options;
    QTextStream standardError(stderr);
    for (const QString& error : qAsConst(errors))
        standardError << "rivo-grid: " << error << '\n';
    standardError << "Try rivo-grid --help\n";
    return std::nullopt;
}
