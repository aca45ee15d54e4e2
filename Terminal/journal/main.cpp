#include "JournalExport.h"
#include "TrialSales.h"

#include <JournalAudit.h>
#include <PaperLayout.h>
#include <ProgramStart.h>
#include <StandardOutput.h>

#include <QCommandLineParser>
#include <QCoreApplication>

#include <clocale>
#include <functional>

namespace
{

using namespace rivo::sales;

enum ExitCode { Done = 0, NotWhole = 1, BadInput = 2 };

const QStringList faultTexts{QStringLiteral("it is in use"),
                             QStringLiteral("there is no space left"),
                             QStringLiteral("it is damaged"),
                             QStringLiteral("it is not a journal"),
                             QStringLiteral("another version keeps it"),
                             QStringLiteral("it is kept in another currency"),
                             QStringLiteral("a file that belongs to it is missing or was replaced"),
                             QStringLiteral("it cannot be opened")};

int failed(const QString& file, const JournalFault& fault)
{
    reportFailure(QStringLiteral("%1: %2 (%3)")
                      .arg(file, faultTexts.value(static_cast<int>(fault.kind)), fault.detail));
    return BadInput;
}

int print(const QString& text) { return writeToStandardOutput(text.toUtf8()) ? Done : BadInput; }

QString prunedText(const JournalAudit& audit)
{
    return audit.pruned > 0 ? QStringLiteral(" %1 more pruned,").arg(audit.pruned) : QString();
}

int verify(const QString& file, const QString& head, const QString& key)
{
    const JournalAudit audit = auditJournal(file, head, key);
    switch (audit.verdict) {
    case JournalAudit::Verdict::Whole:
        return print(
            QStringLiteral(
                "%1: whole, %2 records, %3 of them from before the seals,%4 head %5 (%6)\n")
                .arg(file)
                .arg(audit.records)
                .arg(audit.unsealed)
                .arg(prunedText(audit), audit.head,
                     audit.isHeadCompared ? QStringLiteral("compared")
                                          : QStringLiteral("not compared")));
    case JournalAudit::Verdict::NotWhole:
        print(audit.record > 0 ? QStringLiteral("%1: not whole: record %2: %3\n")
                                     .arg(file)
                                     .arg(audit.record)
                                     .arg(audit.reason)
                               : QStringLiteral("%1: not whole: %2\n").arg(file, audit.reason));
        return NotWhole;
    case JournalAudit::Verdict::Unreadable:
        break;
    }
    reportFailure(QStringLiteral("%1: %2").arg(file, audit.reason));
    return BadInput;
}

int printReport(Journal& journal, qint64 zNumber)
{
    const auto currency = journal.currency();
    const auto report = journal.closedShift(zNumber);
    if (!currency || !report) {
        reportFailure(QStringLiteral("there is no closed shift %1").arg(zNumber));
        return BadInput;
    }
    PrintJob job;
    job.report = report;
    const rivo::ticket::PaperContext context{QString(), *currency, {}, QLocale::c()};
    return print(rivo::ticket::textOf(rivo::ticket::layOut(job, context)) + QLatin1Char('\n'));
}

/// Opens a journal for `use`, which returns the exit code.
int withJournal(const QString& file, const std::function<int(Journal&)>& use)
{
    Journal journal;
    if (const auto fault = journal.openToRead(file))
        return failed(file, *fault);
    const int code = use(journal);
    return journal.fault() ? failed(file, *journal.fault()) : code;
}

/// What the user wants; `command` is empty if the command line is not understood.
struct Wanted
{
    QString command;
    QString file;
    qint64 zNumber = 0;
    QString head;
    QString key;
    QString format;
    qint64 sales = 0;
    quint32 seed = 0;
    qint64 perShift = 0;
    int keptShifts = 0; ///< 0 = all
};

/// Appends to a journal, or makes one in euros whose first shift is 1.
int simulate(const Wanted& wanted)
{
    const QString& file = wanted.file;
    Currency currency(QStringLiteral("EUR"), 2);
    Journal journal;
    if (!journal.openToRead(file))
        currency = journal.currency().value_or(currency);
    if (const auto fault = journal.open(file, currency, 1))
        return failed(file, *fault);
    if (journal.recordForTrials() &&
        sellForTrial(journal, wanted.sales, wanted.seed, wanted.perShift) &&
        (wanted.keptShifts == 0 || pruneForTrial(journal, wanted.keptShifts)))
        return print(journal.head() + QLatin1Char('\n'));
    return failed(file, journal.fault().value_or(JournalFault()));
}

/// A whole number that is at least 1; 0 for anything else.
qint64 countOf(const QString& text)
{
    bool isNumber = false;
    const qint64 number = text.toLongLong(&isNumber);
    return isNumber && number >= 1 ? number : 0;
}

void describe(QCommandLineParser& parser)
{
    parser.setApplicationDescription(QStringLiteral(
        "Looks into the sales journal of a terminal that does not run. "
        "verify: checks that nothing was changed; the exit code is 0 if it is whole, 1 if not, "
        "with the first record that differs, and 2 if it cannot be read. "
        "head: prints the number of the last record and the first digits of its seal. "
        "export: prints all records. "
        "report: prints the Z report of a shift. "
        "simulate: adds made-up sales and closes the shift, for trials."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions(
        {{QStringLiteral("head"),
          QStringLiteral("verify: a head file, or what a Z report has; otherwise "
                         "the head file beside the journal, if there is one."),
          QStringLiteral("head")},
         {QStringLiteral("key"), QStringLiteral("verify: the public key, in PEM."),
          QStringLiteral("file")},
         {QStringLiteral("format"), QStringLiteral("export: json or csv."),
          QStringLiteral("format"), QStringLiteral("json")},
         {QStringLiteral("sales"), QStringLiteral("simulate: how many."), QStringLiteral("count"),
          QStringLiteral("100")},
         {QStringLiteral("seed"),
          QStringLiteral("simulate: a number; the same gives the same sales."),
          QStringLiteral("number"), QStringLiteral("1")},
         {QStringLiteral("per-shift"), QStringLiteral("simulate: sales in each shift."),
          QStringLiteral("count"), QStringLiteral("300")},
         {QStringLiteral("keep-shifts"),
          QStringLiteral("simulate: removes the records of all closed shifts but the last ones, as "
                         "a terminal does that keeps some days; 0 = none are removed."),
          QStringLiteral("count"), QStringLiteral("0")}});
    parser.addPositionalArgument(QStringLiteral("command"),
                                 QStringLiteral("verify, head, export, report or simulate."));
    parser.addPositionalArgument(QStringLiteral("journal"), QStringLiteral("The file."));
    parser.addPositionalArgument(
        QStringLiteral("z"), QStringLiteral("report: number of the shift."), QStringLiteral("[z]"));
}

Wanted wantedOf(const QCommandLineParser& parser)
{
    const QStringList arguments = parser.positionalArguments();
    const auto value = [&](const char* option) { return parser.value(QLatin1String(option)); };
    bool isSeed = false;
    bool isKeptShifts = false;
    Wanted wanted{arguments.value(0),
                  arguments.value(1),
                  countOf(arguments.value(2)),
                  value("head"),
                  value("key"),
                  value("format"),
                  countOf(value("sales")),
                  value("seed").toUInt(&isSeed),
                  countOf(value("per-shift")),
                  value("keep-shifts").toInt(&isKeptShifts)};
    const bool isReport = wanted.command == QLatin1String("report");
    const bool isUnderstood =
        arguments.size() == (isReport ? 3 : 2) && (!isReport || wanted.zNumber > 0) &&
        wanted.sales > 0 && isSeed && wanted.perShift > 0 && isKeptShifts &&
        wanted.keptShifts >= 0 &&
        (wanted.format == QLatin1String("json") || wanted.format == QLatin1String("csv"));
    return isUnderstood ? wanted : Wanted();
}

int run(const Wanted& wanted)
{
    if (wanted.command == QLatin1String("verify"))
        return verify(wanted.file, wanted.head, wanted.key);
    if (wanted.command == QLatin1String("simulate"))
        return simulate(wanted);
    if (wanted.command == QLatin1String("head"))
        return withJournal(wanted.file, [](Journal& journal) {
            return print(journal.head() + QLatin1Char('\n'));
        });
    if (wanted.command == QLatin1String("report"))
        return withJournal(wanted.file,
                           [&](Journal& journal) { return printReport(journal, wanted.zNumber); });
    if (wanted.command == QLatin1String("export"))
        return withJournal(wanted.file, [&](Journal& journal) {
            const bool isCsv = wanted.format == QLatin1String("csv");
            return (isCsv ? exportAsCsv(journal) : exportAsJson(journal)) ? Done : BadInput;
        });
    reportFailure(QStringLiteral("this command line is not understood; --help shows what is"));
    return BadInput;
}

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    nameProgram(QStringLiteral("rivo-journal"));
    static_cast<void>(std::setlocale(LC_CTYPE, "C.UTF-8"));
    QCommandLineParser parser;
    describe(parser);
    parser.process(application);
    return run(wantedOf(parser));
}
