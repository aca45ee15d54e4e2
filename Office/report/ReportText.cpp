#include "ReportText.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

#include <array>

namespace rivo::backoffice
{

namespace
{

/// A number of a line: its name, and whether it is an amount.
struct Figure
{
    const char* name;
    bool isAmount;
    qint64 (*of)(const ReportLine&);
};

constexpr std::array<Figure, 6> figures{
    {{"tickets", false, [](const ReportLine& line) { return line.tickets; }},
     {"sold", true, [](const ReportLine& line) { return line.sold; }},
     {"card", true, [](const ReportLine& line) { return line.card; }},
     {"reversed_tickets", false, [](const ReportLine& line) { return line.reversedTickets; }},
     {"reversed", true, [](const ReportLine& line) { return line.reversed; }},
     {"total", true, [](const ReportLine& line) { return line.total(); }}}};

/// What comes from vehicles is on one line, and has no codes for terminals.
QString printable(QString text)
{
    for (QChar& each : text) {
        if (!each.isPrint() && !each.isSurrogate())
            each = QLatin1Char('?');
    }
    return text;
}

QByteArray csvText(const QStringList& fields)
{
    QStringList quoted;
    for (QString field : fields)
        quoted.append(QLatin1Char('"') + field.replace(QLatin1Char('"'), QLatin1String("\"\"")) +
                      QLatin1Char('"'));
    return quoted.join(QLatin1Char(',')).toUtf8() + "\r\n";
}

QByteArray csvOf(const QVector<ReportLine>& lines, ReportBy by)
{
    QStringList header{nameOf(by), QStringLiteral("currency"), QStringLiteral("decimals")};
    for (const Figure& figure : figures)
        header.append(QLatin1String(figure.name));
    QByteArray text = csvText(header);
    for (const ReportLine& line : lines) {
        QStringList fields{line.key, line.currency, QString::number(line.decimals)};
        for (const Figure& figure : figures)
            fields.append(QString::number(figure.of(line)));
        text += csvText(fields);
    }
    return text;
}

QByteArray jsonOf(const QVector<ReportLine>& lines, ReportBy by)
{
    QJsonArray all;
    for (const ReportLine& line : lines) {
        QJsonObject object{{nameOf(by), line.key},
                           {QStringLiteral("currency"), line.currency},
                           {QStringLiteral("decimals"), line.decimals}};
        for (const Figure& figure : figures)
            object.insert(QLatin1String(figure.name), figure.of(line));
        all.append(object);
    }
    return QJsonDocument(all).toJson();
}

/// The first column to the left, all others to the right.
QByteArray columnsOf(const QVector<QStringList>& rows)
{
    QVector<int> widths(rows.first().size());
    for (const QStringList& row : rows) {
        for (int at = 0; at < row.size(); ++at)
            widths[at] = qMax(widths.at(at), row.at(at).size());
    }
    QByteArray text;
    for (const QStringList& row : rows) {
        QString line = row.first().leftJustified(widths.first());
        for (int at = 1; at < row.size(); ++at)
            line += QLatin1String("  ") + row.at(at).rightJustified(widths.at(at));
        text += line.toUtf8() + '\n';
    }
    return text;
}

QByteArray plainOf(const QVector<ReportLine>& lines, ReportBy by)
{
    QStringList header{nameOf(by)};
    for (const Figure& figure : figures)
        header.append(QString::fromLatin1(figure.name).replace(QLatin1Char('_'), QLatin1Char(' ')));
    QVector<QStringList> rows{header << QStringLiteral("currency")};
    for (const ReportLine& line : lines) {
        QStringList row{printable(line.key)};
        for (const Figure& figure : figures)
            row.append(figure.isAmount ? amountText(figure.of(line), line.decimals)
                                       : QString::number(figure.of(line)));
        rows.append(row << printable(line.currency));
    }
    return columnsOf(rows);
}

QString timeText(const QDateTime& time) { return time.toUTC().toString(Qt::ISODate); }

} // namespace

QString amountText(qint64 amount, int decimals)
{
    QString digits = QString::number(qAbs(amount)).rightJustified(decimals + 1, QLatin1Char('0'));
    if (decimals > 0)
        digits.insert(digits.size() - decimals, QLatin1Char('.'));
    return amount < 0 ? QLatin1Char('-') + digits : digits;
}

QString nameOf(ReportBy by)
{
    static const std::array names{"driver", "route", "vehicle", "product"};
    return QString::fromLatin1(names.at(static_cast<size_t>(by)));
}

QByteArray textOf(const QVector<ReportLine>& lines, ReportBy by, ReportFormat format)
{
    switch (format) {
    case ReportFormat::Csv:
        return csvOf(lines, by);
    case ReportFormat::Json:
        return jsonOf(lines, by);
    case ReportFormat::Text:
        break;
    }
    return plainOf(lines, by);
}

QByteArray textOf(const QVector<KeptFault>& faults)
{
    QByteArray text;
    for (const KeptFault& fault : faults) {
        QStringList parts{timeText(fault.firstAt), printable(fault.topic), fault.kind};
        if (fault.number >= 0)
            parts.append(QStringLiteral("record %1").arg(fault.number));
        QString line = parts.join(QLatin1Char(' ')) + QLatin1String(": ") + printable(fault.reason);
        if (fault.times > 1)
            line +=
                QStringLiteral(" (%1 times, last %2)").arg(fault.times).arg(timeText(fault.lastAt));
        if (fault.closedAt.isValid())
            line += QStringLiteral(" (closed %1)").arg(timeText(fault.closedAt));
        text += line.toUtf8() + '\n';
    }
    return text;
}

} // namespace rivo::backoffice
