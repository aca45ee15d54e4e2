#include "FeedCommandLine.h"

#include <FeedProblem.h>
#include <ProgramStart.h>

#include <QCoreApplication>
#include <QMap>

using rivo::feed::quoted;

namespace
{

const QLatin1String columnsOption("columns");
const QLatin1String orderOption("order");
const QLatin1String supportedOption("supported");
const QLatin1String formatOption("format");
const QLatin1String riderCategoryOption("rider-category");
const QLatin1String riderCategoriesOption("rider-categories");
const QLatin1String verboseOption("verbose");

QString takeColumns(const QString& text, FeedToolOptions& options)
{
    bool isNumber = false;
    const int columns = text.toInt(&isNumber);
    if (!isNumber || columns < 0 || columns > 1000)
        return QStringLiteral("--columns: %1, expected a number from 0 to 1000").arg(quoted(text));
    options.layout.columns = columns;
    return {};
}

QString takeFormat(const QString& text, FeedToolOptions& options)
{
    const QMap<QString, OutputFormat> formats{{QStringLiteral("text"), OutputFormat::Text},
                                              {QStringLiteral("json"), OutputFormat::Json},
                                              {QStringLiteral("csv"), OutputFormat::Csv}};
    if (!formats.contains(text))
        return QStringLiteral("--format: %1, expected text, json or csv").arg(quoted(text));
    options.format = formats.value(text);
    return {};
}

QString takeRiderCategory(const QString& text, FeedToolOptions& options)
{
    const auto equals = text.lastIndexOf(QLatin1Char('='));
    if (equals < 1 || equals == text.size() - 1)
        return QStringLiteral("--rider-category: %1, expected ID=PT_X").arg(quoted(text));
    options.reading.riderCategories.insert(text.left(equals), text.mid(equals + 1));
    return {};
}

} // namespace

FeedCommandLine::FeedCommandLine(const QString& description, const QString& syntax)
    : m_help(m_parser.addHelpOption()), m_version(m_parser.addVersionOption())
{
    m_parser.setApplicationDescription(description);
    m_parser.addPositionalArgument(QStringLiteral("FEED"),
                                   QStringLiteral("JSON file or GTFS folder."), syntax);
    m_parser.addOptions({
        {columnsOption,
         QStringLiteral("Grid columns; 0 lets the model choose. Default: the feed's."),
         QStringLiteral("N")},
        {orderOption,
         QStringLiteral("Display order of passenger types. Default: the configured one."),
         QStringLiteral("PT_A,PT_B")},
        {supportedOption,
         QStringLiteral("Passenger types that the terminal sells to. Default: the feed's."),
         QStringLiteral("PT_A,PT_B")},
        {formatOption,
         QStringLiteral("text (default), json or csv; json and csv hold all roles of all rows, "
                        "uncut."),
         QStringLiteral("FORMAT"), QStringLiteral("text")},
        {riderCategoryOption,
         QStringLiteral("Passenger type of a GTFS rider category; may be repeated."),
         QStringLiteral("ID=PT_X")},
        {riderCategoriesOption,
         QStringLiteral("CSV file rider_category_id,passenger_type. Default: passenger_types.txt "
                        "in the GTFS folder."),
         QStringLiteral("FILE")},
        {verboseOption, QStringLiteral("Show the library's log on standard error.")},
    });
}

void FeedCommandLine::read(const QStringList& arguments, FeedToolOptions& options)
{
    if (!m_parser.parse(arguments))
        reject(rivo::feed::printable(m_parser.errorText()));
    else if (m_parser.isSet(m_help))
        m_parser.showHelp(0);
    else if (m_parser.isSet(m_version))
        m_parser.showVersion();

    if (m_parser.isSet(columnsOption))
        reject(takeColumns(m_parser.value(columnsOption), options));
    if (m_parser.isSet(orderOption))
        options.layout.order = partsOf(m_parser.value(orderOption));
    if (m_parser.isSet(supportedOption))
        options.layout.supported = partsOf(m_parser.value(supportedOption));
    reject(takeFormat(m_parser.value(formatOption), options));
    const QStringList categories = m_parser.values(riderCategoryOption);
    for (const QString& category : categories)
        reject(takeRiderCategory(category, options));
    options.reading.mappingFile = m_parser.value(riderCategoriesOption);
    options.verbose = m_parser.isSet(verboseOption);
}

void FeedCommandLine::reject(const QString& error)
{
    if (!error.isEmpty())
        m_errors.append(error);
}

bool FeedCommandLine::isAccepted() const
{
    if (m_errors.isEmpty())
        return true;
    for (const QString& error : m_errors)
        reportFailure(error);
    complain({QStringLiteral("Try %1 --help").arg(QCoreApplication::applicationName())});
    return false;
}

QStringList FeedCommandLine::layoutOptions()
{
    return {columnsOption, orderOption, supportedOption};
}

QStringList partsOf(const QString& list)
{
    QStringList parts;
    const QStringList texts = list.split(QLatin1Char(','), Qt::SkipEmptyParts);
    for (const QString& text : texts)
        parts.append(text.trimmed());
    return parts;
}
