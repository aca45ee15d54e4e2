#include "ConfigFields_p.h"

#include <QFile>
#include <QRegularExpression>
#include <QUrl>

#include <algorithm>
#include <cerrno>
#include <sys/stat.h>
#include <utility>

namespace rivo::config
{

namespace
{

using feed::FeedProblem;
using feed::FeedReport;

constexpr qint64 largestFile = 1024 * 1024;

bool isOneOf(const QString& text, std::initializer_list<const char*> names)
{
    return std::any_of(names.begin(), names.end(),
                       [&text](const char* name) { return text == QLatin1String(name); });
}

/// What the rules of single keys cannot state.
class SectionChecks
{
public:
    SectionChecks(const QString& file, const QJsonObject& document, FeedReport& report)
        : m_file(file), m_document(document), m_report(report)
    {
    }

    void check(const Config& config)
    {
        if (config.printer.isThere())
            checkChoice("printer", {"device", "serial", "tcp"});
        if (config.printer.dotsPerLine % 8 != 0)
            add("/printer/dotsPerLine", QString::number(config.printer.dotsPerLine),
                QStringLiteral("a multiple of 8"));
        if (config.cardTerminal.isThere() && config.cardTerminal.host.isEmpty())
            add("/cardTerminal/host", QStringLiteral("missing"), QStringLiteral("a host"));
        if (config.position.type == QLatin1String("nmea"))
            checkChoice("position", {"device", "serial"});
        if (config.position.type == QLatin1String("gpsd") && config.position.host.isEmpty())
            add("/position/host", QStringLiteral("empty"), QStringLiteral("a host"));
        if (config.vehicles.isThere())
            checkChoice("vehicles", {"url", "file"});
        if (config.vehicles.certificate.isEmpty() != config.vehicles.key.isEmpty())
            add("/vehicles", QStringLiteral("one"), QStringLiteral("certificate and key, or none"));
        if (config.office.isThere())
            checkOffice(config.office);
    }

private:
    void checkOffice(const OfficeConfig& office)
    {
        const std::pair<const char*, QString> needed[] = {{"/office/host", office.host},
                                                          {"/office/operator", office.operatorName},
                                                          {"/office/vehicle", office.vehicle}};
        for (const auto& [pointer, value] : needed) {
            if (value.isEmpty())
                add(pointer, QStringLiteral("missing"), QStringLiteral("a name"));
        }
        if (office.certificate.isEmpty() != office.key.isEmpty())
            add("/office", QStringLiteral("one"), QStringLiteral("certificate and key, or none"));
        if (office.caFile.isEmpty() && !office.key.isEmpty())
            add("/office/caFile", QStringLiteral("missing"), QStringLiteral("a file"));
    }

    /// Exactly one of the keys is there, and not empty.
    void checkChoice(const char* section, std::initializer_list<const char*> keys)
    {
        const QJsonObject object = m_document.value(QLatin1String(section)).toObject();
        QStringList names;
        int given = 0;
        for (const char* key : keys) {
            const QJsonValue value = object.value(QLatin1String(key));
            names.append(QLatin1String(key));
            given += value.isObject() || !value.toString().isEmpty() ? 1 : 0;
        }
        if (given != 1)
            add('/' + QByteArray(section),
                given == 0 ? QStringLiteral("none") : QStringLiteral("%1 connections").arg(given),
                QStringLiteral("one of ") + names.join(QStringLiteral(", ")));
    }

    void add(const QByteArray& pointer, const QString& value, const QString& expected)
    {
        const QString place = QString::fromLatin1(pointer);
        m_report.add(FeedProblem{m_file, 0, 0, place,
                                 place.mid(place.lastIndexOf(QLatin1Char('/')) + 1), value,
                                 expected});
    }

    const QString m_file;
    const QJsonObject m_document;
    FeedReport& m_report;
};

QStringList linesOf(const FeedReport& report)
{
    QStringList lines;
    for (const FeedProblem& problem : report.problems())
        lines.append(problem.toString());
    if (report.furtherProblems() > 0)
        lines.append(QStringLiteral("... and %1 further problems").arg(report.furtherProblems()));
    return lines;
}

} // namespace

bool isConfigFormat(const QString& text) { return isOneOf(text, {"rivo-terminal"}); }
bool isPrinterType(const QString& text) { return isOneOf(text, {"none", "escpos"}); }
bool isConfirmation(const QString& text) { return isOneOf(text, {"process-id", "sensor"}); }
bool isCodePage(const QString& text) { return codePageNames().contains(text); }
bool isCardTerminalType(const QString& text) { return isOneOf(text, {"none", "zvt"}); }
bool isPositionType(const QString& text) { return isOneOf(text, {"none", "nmea", "gpsd"}); }
bool isVehiclesType(const QString& text) { return isOneOf(text, {"none", "gtfs-realtime"}); }
bool isOfficeType(const QString& text) { return isOneOf(text, {"none", "mqtt"}); }
bool isParity(const QString& text) { return isOneOf(text, {"none", "even", "odd"}); }
bool isFlowControl(const QString& text) { return isOneOf(text, {"none", "hardware", "software"}); }

bool isPassword(const QString& text)
{
    return text.size() == 6 && std::all_of(text.begin(), text.end(), [](QChar letter) {
               return letter >= QLatin1Char('0') && letter <= QLatin1Char('9');
           });
}

bool isWebAddress(const QString& text)
{
    const QUrl url(text, QUrl::StrictMode);
    return url.isValid() && isOneOf(url.scheme(), {"http", "https"}) && !url.host().isEmpty();
}

bool isTopicName(const QString& text)
{
    static const QRegularExpression name(QStringLiteral("\\A[A-Za-z0-9._-]{1,64}\\z"));
    return name.match(text).hasMatch();
}

bool isFileName(const QString& text) { return !text.isEmpty(); }

QString defaultFile() { return QStringLiteral("/etc/rivo-terminal/terminal.conf"); }

const QStringList& codePageNames()
{
    static const QStringList names{
        QStringLiteral("PC437"),   QStringLiteral("PC850"),   QStringLiteral("PC852"),
        QStringLiteral("PC858"),   QStringLiteral("PC860"),   QStringLiteral("PC863"),
        QStringLiteral("PC865"),   QStringLiteral("PC866"),   QStringLiteral("WPC1250"),
        QStringLiteral("WPC1251"), QStringLiteral("WPC1252"), QStringLiteral("WPC1253"),
        QStringLiteral("WPC1254"), QStringLiteral("WPC1257")};
    return names;
}

ConfigResult readConfig(const QString& file)
{
    feed::FeedLimits limits;
    limits.jsonBytes = largestFile;
    FeedReport report;
    Config config;
    const auto text = feed::json::readJsonText(file, limits, report);
    if (text) {
        feed::json::RecordReader(file, limits, report)
            .read(text->object, feed::json::Place(), config);
        if (!report.hasProblems())
            SectionChecks(file, text->object, report).check(config);
        feed::json::completeProblems(text->utf8, report.keptProblems());
    }
    return report.hasProblems() ? ConfigResult{std::nullopt, linesOf(report)}
                                : ConfigResult{config, {}};
}

ConfigResult readConfigIfThere(const QString& file)
{
    struct stat status = {};
    const bool isMissing =
        ::lstat(QFile::encodeName(file).constData(), &status) != 0 && errno == ENOENT;
    return isMissing ? ConfigResult{Config(), {}} : readConfig(file);
}

} // namespace rivo::config
