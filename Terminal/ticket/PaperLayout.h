#pragma once

#include <Records.h>

#include <QByteArray>
#include <QLocale>
#include <QString>
#include <QVector>

namespace rivo::ticket
{

/// One part of a paper, from top to bottom.
struct PaperBlock
{
    enum class Kind {
        Title, ///< large, in the middle
        Mark,  ///< white on black, in the middle: what must not be missed
        Text,  ///< a line over the whole width
        Field, ///< `text` is the label, `value` stands at the right edge
        Sum,   ///< as Field, large
        Rule,  ///< a line between two parts
        Code   ///< `text` as a square code
    };
    Kind kind = Kind::Text;
    QString text;
    QString value;
};

using PaperLayout = QVector<PaperBlock>;

/// What is on every paper of a terminal.
struct PaperContext
{
    QString operatorName;
    sales::Currency currency{QString(), 2};
    QByteArray checkKey; ///< see codeOf()
    QLocale locale;      ///< for amounts and dates
};

/// What is on the paper of `job`. The same job and context give the same layout. Texts of feeds are
/// one line each, without characters that change the direction of what follows.
PaperLayout layOut(const sales::PrintJob& job, const PaperContext& context);

/// A layout as text, a line for each block: for logs, and for those who cannot see the picture.
QString textOf(const PaperLayout& layout);

} // namespace rivo::ticket
