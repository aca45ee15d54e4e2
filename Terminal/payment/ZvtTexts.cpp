// The words for what a card terminal says in numbers, and the numbers of currencies.

#include "Zvt_p.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>

namespace rivo::payment::zvt
{

namespace
{

struct Text
{
    quint8 code;
    const char* text;
};

struct CurrencyNumber
{
    const char* code;
    int number;
};

constexpr std::array<CurrencyNumber, 21> currencies{
    {{"AUD", 36},  {"BAM", 977}, {"BGN", 975}, {"CAD", 124}, {"CHF", 756}, {"CZK", 203},
     {"DKK", 208}, {"EUR", 978}, {"GBP", 826}, {"HUF", 348}, {"ISK", 352}, {"MKD", 807},
     {"NOK", 578}, {"NZD", 554}, {"PLN", 985}, {"RON", 946}, {"RSD", 941}, {"SEK", 752},
     {"TRY", 949}, {"UAH", 980}, {"USD", 840}}};

constexpr std::array<Text, 23> codes{
    {{0x64, QT_TRANSLATE_NOOP("CardTerminal", "The card cannot be read.")},
     {0x65, QT_TRANSLATE_NOOP("CardTerminal", "There is no card.")},
     {0x66, QT_TRANSLATE_NOOP("CardTerminal", "The card terminal could not do this.")},
     {0x67, QT_TRANSLATE_NOOP("CardTerminal", "This card cannot be used for this.")},
     {0x68, QT_TRANSLATE_NOOP("CardTerminal", "This card cannot be used for this.")},
     {0x6a, QT_TRANSLATE_NOOP("CardTerminal", "The card terminal is full: end its day.")},
     {0x6b, QT_TRANSLATE_NOOP("CardTerminal", "The card terminal is not registered.")},
     {AbortedByKey, QT_TRANSLATE_NOOP("CardTerminal", "The payment was stopped.")},
     {0x6e, QT_TRANSLATE_NOOP("CardTerminal", "The card is blocked.")},
     {0x6f, QT_TRANSLATE_NOOP("CardTerminal", "The card terminal takes another currency.")},
     {0x71, QT_TRANSLATE_NOOP("CardTerminal", "There is not enough money on the card.")},
     {0x72, QT_TRANSLATE_NOOP("CardTerminal", "The chip of the card does not work.")},
     {0x78, QT_TRANSLATE_NOOP("CardTerminal", "The card has expired.")},
     {0x7a, QT_TRANSLATE_NOOP("CardTerminal", "This card is not accepted.")},
     {0x7d, QT_TRANSLATE_NOOP("CardTerminal", "The bank cannot be reached.")},
     {NotPossible, QT_TRANSLATE_NOOP("CardTerminal", "The card terminal cannot do this.")},
     {0x85, QT_TRANSLATE_NOOP("CardTerminal", "The card terminal has no key.")},
     {0x9a, QT_TRANSLATE_NOOP("CardTerminal", "The card terminal was not understood.")},
     {0x9b, QT_TRANSLATE_NOOP("CardTerminal", "The bank cannot be reached.")},
     {PleaseWait, QT_TRANSLATE_NOOP("CardTerminal", "The card terminal is busy.")},
     {0xa1, QT_TRANSLATE_NOOP("CardTerminal", "The bank does not answer.")},
     {AlreadyReversed, QT_TRANSLATE_NOOP("CardTerminal", "The payment was taken back already.")},
     {0xb5, QT_TRANSLATE_NOOP("CardTerminal", "The payment cannot be taken back.")}}};

constexpr std::array<Text, 17> statuses{
    {{0x00, QT_TRANSLATE_NOOP("CardTerminal", "Confirm the amount")},
     {0x01, QT_TRANSLATE_NOOP("CardTerminal", "Enter the PIN")},
     {0x02, QT_TRANSLATE_NOOP("CardTerminal", "See the card terminal")},
     {0x03, QT_TRANSLATE_NOOP("CardTerminal", "Not accepted")},
     {0x04, QT_TRANSLATE_NOOP("CardTerminal", "Asking the bank")},
     {0x05, QT_TRANSLATE_NOOP("CardTerminal", "The payment is being taken back")},
     {0x06, QT_TRANSLATE_NOOP("CardTerminal", "The payment is being taken back")},
     {0x07, QT_TRANSLATE_NOOP("CardTerminal", "The card is not accepted")},
     {0x08, QT_TRANSLATE_NOOP("CardTerminal", "The card is not accepted")},
     {0x09, QT_TRANSLATE_NOOP("CardTerminal", "The card has expired")},
     {0x0a, QT_TRANSLATE_NOOP("CardTerminal", "Present the card")},
     {0x0b, QT_TRANSLATE_NOOP("CardTerminal", "Remove the card")},
     {0x0c, QT_TRANSLATE_NOOP("CardTerminal", "The card cannot be read")},
     {0x0d, QT_TRANSLATE_NOOP("CardTerminal", "Stopped")},
     {0x0e, QT_TRANSLATE_NOOP("CardTerminal", "Please wait")},
     {0x0f, QT_TRANSLATE_NOOP("CardTerminal", "The day is being closed")},
     {0x15, QT_TRANSLATE_NOOP("CardTerminal", "Wrong PIN")}}};

QString translated(const char* text) { return QCoreApplication::translate("CardTerminal", text); }

template <typename Table>
const char* textIn(const Table& table, quint8 code)
{
    const auto found = std::find_if(table.begin(), table.end(),
                                    [code](const Text& each) { return each.code == code; });
    return found == table.end() ? nullptr : found->text;
}

/// The texts of the terminal itself, which are objects 07 in object 24.
QString ownText(const QByteArray& data)
{
    constexpr int longest = 120;
    constexpr quint32 line = 0x07;
    for (int at = 1; at < data.size() && at <= 2; ++at) { // after the code, and maybe a time
        const auto fields = fieldsOf(data.mid(at));
        const QVector<Object> objects =
            fields ? objectsOf(fields->value(Container)).value_or(QVector<Object>())
                   : QVector<Object>();
        QStringList lines;
        for (const Object& each : objects) {
            if (each.tag == line)
                lines.append(QString::fromLatin1(each.value).simplified());
        }
        if (!lines.isEmpty())
            return lines.join(QLatin1Char(' ')).left(longest);
    }
    return {};
}

} // namespace

int currencyNumber(const QString& code)
{
    const auto* const found =
        std::find_if(currencies.begin(), currencies.end(), [&code](const CurrencyNumber& each) {
            return code == QLatin1String(each.code);
        });
    return found == currencies.end() ? 0 : found->number;
}

QString textOfCode(quint8 code)
{
    if (const char* const text = textIn(codes, code))
        return translated(text);
    return translated(QT_TRANSLATE_NOOP("CardTerminal", "Declined by the card terminal (%1)."))
        .arg(code, 2, 16, QLatin1Char('0'));
}

QString textOfStatus(const QByteArray& data)
{
    QString own = ownText(data);
    if (!own.isEmpty() || data.isEmpty())
        return own;
    const char* const text = textIn(statuses, static_cast<quint8>(data.at(0)));
    return translated(text != nullptr ? text
                                      : QT_TRANSLATE_NOOP("CardTerminal", "See the card terminal"));
}

} // namespace rivo::payment::zvt
