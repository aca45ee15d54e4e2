#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

namespace rivo::printer
{

/// A character set of a printer: one byte for each letter.
class CodePage
{
public:
    /// `name` as in config::codePageNames(). `number` is what the printer calls it, -1 for what
    /// most printers call it.
    explicit CodePage(const QString& name, int number = -1);

    /// What ESC t selects the code page with.
    int number() const { return m_number; }

    /// Whether it has all letters of a text, or letters that mean the same.
    bool hasAll(const QString& text) const;

    /// The text in the code page. Dashes, quotation marks and blanks that it lacks become plain
    /// ones, and all other letters that it lacks "?".
    QByteArray encode(const QString& text) const;

private:
    QHash<QChar, char> m_bytes;
    int m_number = 0;
};

} // namespace rivo::printer
