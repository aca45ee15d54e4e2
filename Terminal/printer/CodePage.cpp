#include "CodePage.h"

#include <QTextCodec>

#include <algorithm>
#include <array>

namespace rivo::printer
{

namespace
{

struct KnownPage
{
    const char* name;
    const char* codec;
    int number; ///< of ESC t
};

constexpr std::array knownPages{
    KnownPage{"PC437", "IBM437", 0},          KnownPage{"PC850", "IBM850", 2},
    KnownPage{"PC860", "IBM860", 3},          KnownPage{"PC863", "IBM863", 4},
    KnownPage{"PC865", "IBM865", 5},          KnownPage{"WPC1252", "windows-1252", 16},
    KnownPage{"PC866", "IBM866", 17},         KnownPage{"PC852", "IBM852", 18},
    KnownPage{"PC858", "IBM00858", 19},       KnownPage{"WPC1250", "windows-1250", 45},
    KnownPage{"WPC1251", "windows-1251", 46}, KnownPage{"WPC1253", "windows-1253", 47},
    KnownPage{"WPC1254", "windows-1254", 48}, KnownPage{"WPC1257", "windows-1257", 51},
};

/// A letter that means the same and that more code pages have: blanks that keep words together
/// only matter where lines are broken.
QChar plainLetter(QChar letter)
{
    switch (letter.unicode()) {
    case 0x00A0: // no-break space
    case 0x2009: // thin space
    case 0x202F: // narrow no-break space
        return QLatin1Char(' ');
    case 0x2010: // hyphen
    case 0x2011: // non-breaking hyphen
    case 0x2013: // en dash
    case 0x2014: // em dash
    case 0x2212: // minus
        return QLatin1Char('-');
    case 0x2018: // single quotation marks
    case 0x2019:
        return QLatin1Char('\'');
    case 0x201C: // double quotation marks
    case 0x201D:
    case 0x201E:
        return QLatin1Char('"');
    default:
        return letter;
    }
}

} // namespace

CodePage::CodePage(const QString& name, int number) : m_number(number)
{
    const auto* known = std::find_if(knownPages.begin(), knownPages.end(), [&](const auto& page) {
        return name == QLatin1String(page.name);
    });
    Q_ASSERT(known != knownPages.end());
    if (m_number < 0)
        m_number = known->number;
    for (int byte = 0x20; byte < 0x7F; ++byte)
        m_bytes.insert(QChar(byte), static_cast<char>(byte));
    const QTextCodec* const codec = QTextCodec::codecForName(known->codec);
    for (int byte = 0x80; codec != nullptr && byte <= 0xFF; ++byte) {
        const QString letter = codec->toUnicode(QByteArray(1, static_cast<char>(byte)));
        // Bytes without a letter decode to controls or to the replacement character.
        if (letter.size() == 1 && letter.at(0).isPrint() &&
            letter.at(0) != QChar(QChar::ReplacementCharacter) && !m_bytes.contains(letter.at(0)))
            m_bytes.insert(letter.at(0), static_cast<char>(byte));
    }
}

bool CodePage::hasAll(const QString& text) const
{
    return std::all_of(text.begin(), text.end(), [this](QChar letter) {
        return m_bytes.contains(letter) || m_bytes.contains(plainLetter(letter));
    });
}

QByteArray CodePage::encode(const QString& text) const
{
    QByteArray bytes;
    bytes.reserve(text.size());
    for (const QChar letter : text)
        bytes.append(m_bytes.value(letter, m_bytes.value(plainLetter(letter), '?')));
    return bytes;
}

} // namespace rivo::printer
