#include "RecordRows.h"

#include <QString>

namespace rivo::backoffice
{

namespace
{

/// Reads a content from its first byte to its last.
class Reader
{
public:
    explicit Reader(const QByteArray& content) : m_content(content) {}

    bool isAtEnd() const { return m_at == m_content.size(); }

    std::optional<RecordRow> row()
    {
        const auto table = before(';');
        if (!table || table->isEmpty())
            return std::nullopt;
        RecordRow row{*table, {}};
        while (!isAtEnd() && m_content.at(m_at) != '\n') {
            if (!addValue(row.values))
                return std::nullopt;
        }
        if (isAtEnd())
            return std::nullopt;
        ++m_at;
        return row;
    }

private:
    /// The bytes before the next `end`, which is passed.
    std::optional<QByteArray> before(char end)
    {
        const int found = m_content.indexOf(end, m_at);
        if (found < 0)
            return std::nullopt;
        const QByteArray bytes = m_content.mid(m_at, found - m_at);
        m_at = found + 1;
        return bytes;
    }

    /// The bytes of a text: their number, a colon, and they.
    std::optional<QByteArray> withLength()
    {
        const auto digits = before(':');
        bool isNumber = false;
        const int size = digits ? digits->toInt(&isNumber) : 0;
        if (!isNumber || size < 0 || size > m_content.size() - m_at)
            return std::nullopt;
        const QByteArray bytes = m_content.mid(m_at, size);
        m_at += size;
        return bytes;
    }

    bool addValue(QVector<QVariant>& values)
    {
        switch (m_content.at(m_at++)) {
        case 'n':
            values.append(QVariant());
            return true;
        case 'i': {
            const auto digits = before(';');
            bool isNumber = false;
            values.append(digits ? digits->toLongLong(&isNumber) : 0);
            return isNumber;
        }
        case 'f': {
            const auto digits = before(';');
            bool isNumber = false;
            values.append(digits ? digits->toDouble(&isNumber) : 0);
            return isNumber;
        }
        case 't': {
            const auto bytes = withLength();
            values.append(bytes ? QString::fromUtf8(bytes->constData(), bytes->size()) : QString());
            return bytes.has_value();
        }
        case 'b': {
            const auto bytes = withLength();
            values.append(bytes.value_or(QByteArray()));
            return bytes.has_value();
        }
        default:
            return false;
        }
    }

    const QByteArray& m_content;
    int m_at = 0;
};

} // namespace

std::optional<QVector<RecordRow>> rowsOf(const QByteArray& content)
{
    Reader reader(content);
    QVector<RecordRow> rows;
    while (!reader.isAtEnd()) {
        const auto row = reader.row();
        if (!row)
            return std::nullopt;
        rows.append(*row);
    }
    return rows;
}

} // namespace rivo::backoffice
