#include "OfferCommand.h"

#include "OfferWriter.h"
#include "QueryText.h"

#include <ProgramStart.h>
#include <StandardOutput.h>
#include <ToolProgram.h>

#include <QFile>
#include <QJsonDocument>

using namespace rivo::feed;

namespace
{

/// One line of JSON with the answer to one line of JSON.
QByteArray answerTo(const QByteArray& line, const Tariff& tariff, bool& hasFailed)
{
    QString error;
    const OfferQuery query = queryOf(line, error);
    OfferList list;
    if (error.isEmpty())
        list = offersOf(tariff, query);
    if (error.isEmpty() && !list.errors.isEmpty())
        error = list.errors.join(QLatin1String("; "));
    hasFailed = hasFailed || !error.isEmpty();
    const QJsonObject answer = error.isEmpty() ? offersAsJson(tariff, list)
                                               : QJsonObject{{QStringLiteral("error"), error}};
    return QJsonDocument(answer).toJson(QJsonDocument::Compact) + '\n';
}

int answerQueries(const QString& path, const Tariff& tariff)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        reportFailure(QStringLiteral("--queries: %1: %2").arg(printable(path), file.errorString()));
        return BadInput;
    }
    bool hasFailed = false;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine().trimmed();
        if (!line.isEmpty() && !writeToStandardOutput(answerTo(line, tariff, hasFailed)))
            return BadInput;
    }
    return hasFailed ? BadInput : Done;
}

} // namespace

int printOffers(const GridOptions& options, const Feed& feed)
{
    if (!options.queriesFile.isEmpty())
        return answerQueries(options.queriesFile, *feed.tariff);
    const OfferList list = offersOf(*feed.tariff, *options.query);
    for (const QString& error : list.errors)
        reportFailure(error);
    if (!list.errors.isEmpty())
        return BadInput;
    const QByteArray text = options.format == OutputFormat::Json
                                ? QJsonDocument(offersAsJson(*feed.tariff, list)).toJson()
                                : offersAsText(feed, list);
    return writeToStandardOutput(text) ? Done : BadInput;
}
