#include "TextForms.h"

#include <QDateTime>
#include <QRegularExpression>
#include <QStringList>

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

int seconds(const QString& text)
{
    const QStringList parts = text.split(QLatin1Char(':'));
    const bool isTime = parts.size() == 3 && std::all_of(parts.begin(), parts.end(), isDigits) &&
                        parts.at(0).size() <= 3 && parts.at(1).size() == 2 &&
                        parts.at(2).size() == 2 && parts.at(1).toInt() < 60 &&
                        parts.at(2).toInt() < 60;
    return isTime ? (parts.at(0).toInt() * 60 + parts.at(1).toInt()) * 60 + parts.at(2).toInt()
                  : -1;
}

bool isTime(const QString& text) { return seconds(text) >= 0; }

bool isDecimal(const QString& text)
{
    static const QRegularExpression form(QStringLiteral("\\A[0-9]+(\\.[0-9]+)?\\z"));
    return form.match(text).hasMatch();
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
