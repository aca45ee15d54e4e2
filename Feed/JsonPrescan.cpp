#include "JsonPrescan_p.h"

#include "FeedFile_p.h"
#include "FeedProblem.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <cstring>
#include <limits>
#include <set>

namespace rivo::feed
{

namespace
{

bool isDigit(char character) { return character >= '0' && character <= '9'; }

bool isOneOf(char character, const char* characters)
{
    return character != '\0' && std::strchr(characters, character) != nullptr;
}

/// `key` as it stands in the text, quotes included, with its escapes resolved.
QString decoded(const QByteArray& key)
{
    if (!key.contains('\\'))
        return toText(key.mid(1, key.size() - 2));
    return QJsonDocument::fromJson('[' + key + ']').array().at(0).toString();
}

class Scanner
{
public:
    Scanner(const QByteArray& text, const FeedLimits& limits) : m_text(text), m_limits(limits) {}

    bool scan()
    {
        skipBlanks();
        if (peek() != '{')
            return fail(QStringLiteral("an object"));
        if (!value())
            return false;
        skipBlanks();
        if (m_position < m_text.size())
            return fail(QStringLiteral("the end of the file"));
        return true;
    }

    void reportTo(FeedReport& report, const QString& file)
    {
        m_report = &report;
        m_file = file;
    }

    void findLines(std::map<QString, int>& lines) { m_lines = &lines; }

private:
    /// '\0' at the end of the text.
    char peek() const { return m_position < m_text.size() ? m_text.at(m_position) : '\0'; }

    bool take(char character)
    {
        const bool isNext = m_position < m_text.size() && m_text.at(m_position) == character;
        m_position += isNext;
        return isNext;
    }

    void skipBlanks()
    {
        while (isOneOf(peek(), " \t\r\n")) {
            if (peek() == '\n' || peek() == '\r') {
                m_position += lineLength(m_text, m_position);
                m_lineStart = m_position;
                ++m_line;
            } else {
                ++m_position;
            }
        }
    }

    bool value()
    {
        noteLine();
        if (++m_values > m_limits.jsonValues)
            return fail(QStringLiteral("at most %1 values").arg(m_limits.jsonValues));
        switch (peek()) {
        case '{':
            return nested(&Scanner::object);
        case '[':
            return nested(&Scanner::list);
        case '"':
            return text();
        case 't':
            return literal("true");
        case 'f':
            return literal("false");
        case 'n':
            return literal("null");
        default:
            return number();
        }
    }

    bool nested(bool (Scanner::*content)())
    {
        if (++m_depth > m_limits.jsonDepth)
            return fail(QStringLiteral("at most %1 objects and lists within one another")
                            .arg(m_limits.jsonDepth));
        ++m_position;
        skipBlanks();
        const bool isRead = (this->*content)();
        --m_depth;
        return isRead;
    }

    bool object()
    {
        if (take('}'))
            return true;
        std::set<QString> keys;
        do {
            skipBlanks();
            if (!member(keys))
                return false;
            skipBlanks();
        } while (take(','));
        if (!take('}'))
            return fail(QStringLiteral("',' or '}'"));
        return true;
    }

    bool member(std::set<QString>& keys)
    {
        const int start = m_position;
        if (peek() != '"')
            return fail(QStringLiteral("a key in quotes"));
        if (!text())
            return false;
        const QString key = decoded(m_text.mid(start, m_position - start));
        if (key.size() > m_limits.textLength)
            return fail(QStringLiteral("keys of at most %1 characters").arg(m_limits.textLength));
        const int outer = enter(key);
        if (!keys.insert(key).second)
            add({m_file, m_line, 0, m_pointer, key, QStringLiteral("given twice"),
                 QStringLiteral("each key of an object once")});
        noteLine();
        skipBlanks();
        if (!take(':'))
            return fail(QStringLiteral("':'"));
        skipBlanks();
        const bool isRead = value();
        m_pointer.truncate(outer);
        return isRead;
    }

    bool list()
    {
        if (take(']'))
            return true;
        int index = 0;
        do {
            skipBlanks();
            const int outer = enter(QString::number(index++));
            if (!value())
                return false;
            m_pointer.truncate(outer);
            skipBlanks();
        } while (take(','));
        if (!take(']'))
            return fail(QStringLiteral("',' or ']'"));
        return true;
    }

    bool text()
    {
        ++m_position;
        while (!take('"')) {
            if (m_position == m_text.size())
                return fail(QStringLiteral("the closing quote of a text"));
            if (static_cast<unsigned char>(peek()) < 0x20)
                return fail(QStringLiteral("an escape such as \\n instead of a control character"));
            if (!(peek() == '\\' ? escape() : ++m_position > 0))
                return false;
        }
        return true;
    }

    bool escape()
    {
        ++m_position;
        if (isOneOf(peek(), "\"\\/bfnrt"))
            return ++m_position > 0;
        bool isValid = take('u');
        for (int digit = 0; digit < 4 && isValid; ++digit) {
            isValid = isOneOf(peek(), "0123456789abcdefABCDEF");
            m_position += isValid;
        }
        if (!isValid)
            return fail(QStringLiteral("an escape such as \\n or \\u00e9"));
        return true;
    }

    bool number()
    {
        const int start = m_position;
        const bool isNumber = isDigit(peek()) || peek() == '-';
        const QString expected =
            isNumber ? QStringLiteral("a number such as -12.5") : QStringLiteral("a value");
        take('-');
        if (!take('0') && !digits())
            return fail(expected);
        if (take('.') && !digits())
            return fail(expected);
        if (take('e') || take('E')) {
            if (!take('+'))
                take('-');
            if (!digits())
                return fail(expected);
        }
        bool isRepresentable = false;
        QByteArray::fromRawData(m_text.constData() + start, m_position - start)
            .toDouble(&isRepresentable);
        if (isRepresentable)
            return true;
        m_position = start;
        return fail(QStringLiteral("a number that a double can hold"));
    }

    bool digits()
    {
        const int start = m_position;
        while (isDigit(peek()))
            ++m_position;
        return m_position > start;
    }

    bool literal(const char* word)
    {
        const int length = static_cast<int>(std::strlen(word));
        if (m_text.mid(m_position, length) != word)
            return fail(QStringLiteral("a value"));
        m_position += length;
        return true;
    }

    int enter(const QString& key)
    {
        const int outer = static_cast<int>(m_pointer.size());
        m_pointer += jsonPointerToken(key);
        return outer;
    }

    void noteLine()
    {
        if (!m_lines)
            return;
        const auto line = m_lines->find(m_pointer);
        if (line != m_lines->end() && line->second == 0)
            line->second = m_line;
    }

    bool fail(const QString& expected)
    {
        const QByteArray before = m_text.mid(m_lineStart, m_position - m_lineStart);
        add({m_file,
             m_line,
             static_cast<int>(toText(before).size() + 1),
             m_pointer,
             {},
             found(),
             expected});
        return false;
    }

    QString found() const
    {
        if (m_position == m_text.size())
            return QStringLiteral("the end of the file");
        const int length = lineLength(m_text, m_position);
        const QByteArray rest = m_text.mid(m_position, length).trimmed();
        return rest.isEmpty() ? QStringLiteral("the end of the line") : quoted(toText(rest));
    }

    void add(FeedProblem problem)
    {
        if (m_report)
            m_report->add(std::move(problem));
    }

    const QByteArray& m_text;
    const FeedLimits m_limits;
    FeedReport* m_report = nullptr;
    std::map<QString, int>* m_lines = nullptr;
    QString m_file;
    QString m_pointer;
    int m_position = 0;
    int m_line = 1;
    int m_lineStart = 0;
    int m_values = 0;
    int m_depth = 0;
};

} // namespace

bool checkJson(const QByteArray& text, const QString& file, const FeedLimits& limits,
               FeedReport& report)
{
    Scanner scanner(text, limits);
    scanner.reportTo(report, file);
    return scanner.scan();
}

void findJsonLines(const QByteArray& text, std::map<QString, int>& lines)
{
    FeedLimits limits;
    limits.jsonDepth = std::numeric_limits<int>::max();
    limits.jsonValues = std::numeric_limits<int>::max();
    limits.textLength = std::numeric_limits<int>::max();
    Scanner scanner(text, limits);
    scanner.findLines(lines);
    scanner.scan();
}

QString jsonPointerToken(const QString& key)
{
    QString token = key;
    token.replace(QLatin1Char('~'), QLatin1String("~0"));
    token.replace(QLatin1Char('/'), QLatin1String("~1"));
    return QLatin1Char('/') + token;
}

} // namespace rivo::feed
