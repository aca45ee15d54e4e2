#include "TextForms.h"

#include <QDateTime>
#include <QRegularExpression>

#include <algorithm>

namespace rivo::feed
{

namespace
{

bool isDigits(const QString& text)
{
    return !text.isEmpty() && std::all_of(text.begin(), text.end(), [](QChar c) {
        return c >= QLatin1Char('0') && c <= QLatin1Char('9');
    });
}

} // namespace

int positiveInteger(const QString& text)
{
    return isDigits(text) && !text.startsWith(QLatin1Char('0')) ? text.toInt() : 0;
}

int seconds(std::string_view text)
{
    // H:MM:SS, HH:MM:SS or HHH:MM:SS
    const size_t hours = text.size() - 6;
    if (text.size() < 7 || text.size() > 9 || text[hours] != ':' || text[hours + 3] != ':')
        return -1;
    const auto numberAt = [text](size_t from, size_t length) {
        int number = 0;
        for (const char digit : text.substr(from, length)) {
            if (digit < '0' || digit > '9')
                return -1;
            number = number * 10 + (digit - '0');
        }
        return number;
    };
    const int hour = numberAt(0, hours);
    const int minute = numberAt(hours + 1, 2);
    const int second = numberAt(hours + 4, 2);
    const bool isTime = hour >= 0 && minute >= 0 && minute < 60 && second >= 0 && second < 60;
    return isTime ? (hour * 60 + minute) * 60 + second : -1;
}

int seconds(const QString& text)
{
    const QByteArray utf8 = text.toUtf8();
    return seconds(std::string_view(utf8.constData(), static_cast<size_t>(utf8.size())));
}

bool isTime(const QString& text) { return seconds(text) >= 0; }

bool isTimeOfDay(const QString& text) { return isTime(text) && seconds(text) <= 24 * 3600; }

QDate gtfsDate(const QString& text)
{
    if (text.size() != 8 || !isDigits(text))
        return {};
    const int number = text.toInt();
    return {number / 10000, number / 100 % 100, number % 100};
}

bool isGtfsDate(const QString& text) { return gtfsDate(text).isValid(); }

bool isIsoDate(const QString& text)
{
    return text.size() == 10 && text.at(4) == QLatin1Char('-') && text.at(7) == QLatin1Char('-') &&
           isGtfsDate(text.left(4) + text.mid(5, 2) + text.mid(8));
}

bool isDecimal(const QString& text)
{
    const auto point = text.indexOf(QLatin1Char('.'));
    return point < 0 ? isDigits(text) : isDigits(text.left(point)) && isDigits(text.mid(point + 1));
}

bool isAmount(const QString& text)
{
    return isDecimal(text.startsWith(QLatin1Char('-')) ? text.mid(1) : text);
}

bool isColor(const QString& text)
{
    static const QRegularExpression form(QStringLiteral("\\A[0-9A-Fa-f]{6}\\z"));
    return form.match(text).hasMatch();
}

bool isSharpColor(const QString& text)
{
    return text.startsWith(QLatin1Char('#')) && isColor(text.mid(1));
}

bool isFormatName(const QString& text) { return text == QLatin1String("rivo-feed"); }

bool isCurrencyCode(const QString& text)
{
    static const QRegularExpression form(QStringLiteral("\\A[A-Z]{3}\\z"));
    return form.match(text).hasMatch();
}

bool isDateAndTime(const QString& text)
{
    // Qt alone would also read a date without the others, and 24:00:00.
    static const QRegularExpression form(
        QStringLiteral("\\A[0-9]{4}-(0[1-9]|1[0-2])-(0[1-9]|[12][0-9]|3[01])"
                       "T([01][0-9]|2[0-3]):[0-5][0-9]:[0-5][0-9](\\.[0-9]{1,3})?"
                       "(Z|[+-](0[0-9]|1[0-4]):[0-5][0-9])\\z"));
    if (!form.match(text).hasMatch())
        return false;
    return QDateTime::fromString(text, Qt::ISODateWithMs).isValid();
}

} // namespace rivo::feed
