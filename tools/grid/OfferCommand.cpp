#include "OfferCommand.h"

#include "OfferWriter.h"
#include "QueryText.h"

#include <Explanation.h>
#include <OfferProducts.h>
#include <ProgramStart.h>
#include <StandardOutput.h>
#include <ToolProgram.h>

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

using namespace rivo::feed;

namespace
{

/// Answers one line of JSON by another one. False if it cannot be written.
bool answer(const QByteArray& line, const Tariff& tariff, bool& hasFailed)
{
    QString error;
    const OfferQuery query = queryOf(line, error);
    OfferList list;
    if (error.isEmpty())
        list = offersOf(tariff, query);
    if (error.isEmpty() && !list.errors.isEmpty())
        error = list.errors.join(QLatin1String("; "));
    if (error.isEmpty())
        return writeAsJson(tariff, list, QJsonDocument::Compact);
    hasFailed = true;
    const QJsonObject object{{QStringLiteral("error"), error}};
    return writeToStandardOutput(QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n');
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
        if (!line.isEmpty() && !answer(line, tariff, hasFailed))
            return BadInput;
    }
    return hasFailed ? BadInput : Done;
}

/// False after reporting why the query has no answer.
bool isAnswer(const OfferList& list)
{
    for (const QString& error : list.errors)
        reportFailure(error);
    return list.errors.isEmpty();
}

} // namespace

int printOffers(const GridOptions& options, const Feed& feed)
{
    if (!options.queriesFile.isEmpty())
        return answerQueries(options.queriesFile, *feed.tariff);
    const OfferList list = offersOf(*feed.tariff, *options.query);
    if (!isAnswer(list))
        return BadInput;
    const bool isWritten = options.format == OutputFormat::Json
                               ? writeAsJson(*feed.tariff, list, QJsonDocument::Indented)
                               : writeAsText(feed, list);
    return isWritten ? Done : BadInput;
}

int explainProduct(const GridOptions& options, const Feed& feed)
{
    const QStringList sentences = explained(*feed.tariff, options.product, options.query);
    if (sentences.isEmpty()) {
        reportFailure(QStringLiteral("unknown fare product %1").arg(quoted(options.product)));
        return BadInput;
    }
    if (options.query && !isAnswer(offersOf(*feed.tariff, *options.query)))
        return BadInput;
    return writeToStandardOutput((sentences.join(QLatin1Char('\n')) + QLatin1Char('\n')).toUtf8())
               ? Done
               : BadInput;
}

bool narrow(const GridOptions& options, Feed& feed)
{
    OfferQuery query = options.query.value_or(OfferQuery());
    query.withExpired = true;
    const OfferList list =
        options.query ? offersOf(*feed.tariff, query) : everythingSold(*feed.tariff);
    if (!isAnswer(list))
        return false;
    feed.products = productsOf(feed, list.offers);
    feed.supportedPassengerTypes = passengerTypesFor(feed, feed.products);
    return true;
}
