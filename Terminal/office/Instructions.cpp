#include "Instructions.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>

namespace rivo::office
{

namespace
{

constexpr qint64 largestFile = 4 * 1024 * 1024;
constexpr double largestNumber = 999999999;
constexpr int keySize = 32;

std::optional<double> numberIn(const QJsonValue& value, double least)
{
    const double number = value.toDouble(-1.0);
    return number >= least && number <= largestNumber ? std::make_optional(number) : std::nullopt;
}

std::optional<qint64> wholeNumberIn(const QJsonValue& value)
{
    const auto number = numberIn(value, 1.0);
    return number && *number == std::floor(*number)
               ? std::make_optional(static_cast<qint64>(*number))
               : std::nullopt;
}

QString unknownKeyIn(const QJsonObject& object, const QStringList& known)
{
    const QStringList given = object.keys();
    const auto unknown = std::find_if(given.begin(), given.end(),
                                      [&](const QString& key) { return !known.contains(key); });
    return unknown == given.end() ? QString() : QStringLiteral("unknown key \"%1\"").arg(*unknown);
}

/// The document in a file of a format; a problem if it is none.
QString readDocument(const QString& file, const QString& format, QJsonObject& document)
{
    QFile content(file);
    if (!content.open(QIODevice::ReadOnly))
        return content.errorString();
    const QByteArray bytes = content.read(largestFile + 1);
    if (bytes.size() > largestFile)
        return QStringLiteral("larger than 4 MiB");
    QJsonParseError error{};
    document = QJsonDocument::fromJson(bytes, &error).object();
    if (error.error != QJsonParseError::NoError)
        return QStringLiteral("at byte %1: %2").arg(error.offset).arg(error.errorString());
    const bool isFormat = document.value(QLatin1String("format")).toString() == format &&
                          document.value(QLatin1String("version")).toDouble() == 1.0;
    return isFormat ? QString()
                    : QStringLiteral("expected the format \"%1\", version 1").arg(format);
}

QString readLimit(const QJsonObject& entry, Limits& limits)
{
    const auto number = wholeNumberIn(entry.value(QLatin1String("number")));
    const auto most = numberIn(entry.value(QLatin1String("maxDebt")), 0.0);
    if (!number)
        return QStringLiteral("\"number\" is a whole number from 1 to 999999999");
    if (!most)
        return QStringLiteral("\"maxDebt\" is an amount from 0 to 999999999");
    if (limits.ofDrivers.contains(*number))
        return QStringLiteral("number %1 is there twice").arg(*number);
    limits.ofDrivers.insert(*number, *most);
    return unknownKeyIn(entry, {QStringLiteral("number"), QStringLiteral("maxDebt")});
}

QString readPaidShift(const QJsonObject& entry, QVector<PaidShift>& shifts)
{
    const QByteArray digits = entry.value(QLatin1String("journal")).toString().toLatin1().toLower();
    const QByteArray key = QByteArray::fromHex(digits);
    const auto shift = wholeNumberIn(entry.value(QLatin1String("shift")));
    if (key.size() != keySize || key.toHex() != digits)
        return QStringLiteral("\"journal\" is 32 bytes in hexadecimal digits");
    if (!shift)
        return QStringLiteral("\"shift\" is a whole number from 1 to 999999999");
    shifts.append({key, *shift});
    return unknownKeyIn(entry, {QStringLiteral("journal"), QStringLiteral("shift")});
}

/// The problems of a list of entries, each of which is read by `read`.
template <typename Read>
QStringList readEntries(const QJsonValue& list, const QString& name, const Read& read)
{
    QStringList problems;
    const QJsonArray entries = list.toArray();
    for (int at = 0; at < entries.size(); ++at) {
        const QString wrong = read(entries.at(at).toObject());
        if (!wrong.isEmpty())
            problems.append(QStringLiteral("%1 %2: %3").arg(name).arg(at + 1).arg(wrong));
    }
    return problems;
}

QStringList inFile(const QString& file, const QStringList& problems)
{
    QStringList lines;
    for (const QString& each : problems)
        lines.append(QStringLiteral("%1: %2").arg(file, each));
    return lines;
}

QStringList problemsOfLimits(const QJsonObject& document, Limits& limits)
{
    const QJsonValue most = document.value(QLatin1String("maxDebt"));
    const QJsonValue drivers = document.value(QLatin1String("drivers"));
    limits.maxDebt = numberIn(most, 0.0);
    QStringList problems;
    if (!most.isUndefined() && !limits.maxDebt)
        problems.append(QStringLiteral("\"maxDebt\" is an amount from 0 to 999999999"));
    if (!drivers.isUndefined() && !drivers.isArray())
        problems.append(QStringLiteral("\"drivers\" is a list"));
    const QString unknown =
        unknownKeyIn(document, {QStringLiteral("format"), QStringLiteral("version"),
                                QStringLiteral("maxDebt"), QStringLiteral("drivers")});
    if (!unknown.isEmpty())
        problems.append(unknown);
    return problems + readEntries(drivers, QStringLiteral("driver"), [&](const QJsonObject& entry) {
               return readLimit(entry, limits);
           });
}

QStringList problemsOfPaid(const QJsonObject& document, QVector<PaidShift>& paid)
{
    const QJsonValue shifts = document.value(QLatin1String("shifts"));
    QStringList problems;
    if (!shifts.isArray())
        problems.append(QStringLiteral("\"shifts\" is a list"));
    const QString unknown = unknownKeyIn(
        document, {QStringLiteral("format"), QStringLiteral("version"), QStringLiteral("shifts")});
    if (!unknown.isEmpty())
        problems.append(unknown);
    return problems + readEntries(shifts, QStringLiteral("shift"), [&](const QJsonObject& entry) {
               return readPaidShift(entry, paid);
           });
}

} // namespace

LimitsResult readLimits(const QString& file)
{
    QJsonObject document;
    Limits limits;
    const QString problem = readDocument(file, QStringLiteral("rivo-limits"), document);
    const QStringList problems =
        problem.isEmpty() ? problemsOfLimits(document, limits) : QStringList(problem);
    return {problems.isEmpty() ? std::make_optional(limits) : std::nullopt, inFile(file, problems)};
}

PaidResult readPaidShifts(const QString& file)
{
    QJsonObject document;
    QVector<PaidShift> shifts;
    const QString problem = readDocument(file, QStringLiteral("rivo-paid"), document);
    const QStringList problems =
        problem.isEmpty() ? problemsOfPaid(document, shifts) : QStringList(problem);
    return {problems.isEmpty() ? std::make_optional(shifts) : std::nullopt, inFile(file, problems)};
}

} // namespace rivo::office
