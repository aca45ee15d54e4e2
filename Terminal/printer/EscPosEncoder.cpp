#include "EscPosEncoder.h"

#include <PaperPicture.h>

#include <QStringList>

#include <algorithm>

namespace rivo::printer
{

namespace
{

using ticket::PaperBlock;
using ticket::PaperLayout;
using Kind = PaperBlock::Kind;

constexpr int rowsPerCommand = 128; ///< printers with little memory take no more
constexpr int darkest = 128;        ///< grey values below are black
constexpr int feedLines = 4;        ///< from the print head to the tear bar
constexpr int pictureMargin = 16;   ///< at both sides of a picture of a paper
constexpr int gapAbovePicture = 4;
constexpr int gapBelowPicture = 8;
constexpr int codeGap = 24; ///< the same for a square code
/// Dots of a module of a square code: 0.6 mm at 8 dots per millimetre.
constexpr int leastModule = 5;
constexpr int mostModule = 8;

QByteArray command(std::initializer_list<int> bytes)
{
    QByteArray result;
    for (const int byte : bytes)
        result.append(static_cast<char>(byte));
    return result;
}

QByteArray initialise(int codePage)
{
    return command({0x1B, '@'})              // defaults
           + command({0x1C, '.'})            // no two-byte letters
           + command({0x1B, 'R', 0})         // letters of ASCII as they are
           + command({0x1B, 't', codePage}); // the others by the code page
}

QByteArray align(int how) { return command({0x1B, 'a', how}); }
QByteArray bold(bool on) { return command({0x1B, 'E', on}); }
QByteArray reverse(bool on) { return command({0x1D, 'B', on}); }
QByteArray size(int width, int height)
{
    return command({0x1D, '!', (width - 1) << 4 | (height - 1)});
}

/// Commands of the family GS ( k, which describe a square code.
QByteArray codeCommand(int function, const QByteArray& parameters)
{
    const int length = parameters.size() + 2;
    return command({0x1D, '(', 'k', length & 0xFF, length >> 8, '1', function}) + parameters;
}

/// Lines of at most `width` letters, broken at blanks; a longer word is divided.
QStringList wrapped(const QString& text, int width)
{
    QStringList lines;
    QString line;
    const QStringList words = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (QString word : words) {
        if (!line.isEmpty() && line.size() + 1 + word.size() > width) {
            lines.append(line);
            line.clear();
        }
        while (word.size() > width) {
            lines.append(word.left(width));
            word.remove(0, width);
        }
        line += line.isEmpty() ? word : QLatin1Char(' ') + word;
    }
    lines.append(line);
    return lines;
}

/// Rows of `picture` from the first to the last that is not white.
QImage withoutBlankEdges(const QImage& picture)
{
    const auto isBlank = [&picture](int row) {
        const uchar* const bytes = picture.constScanLine(row);
        return std::all_of(bytes, bytes + picture.width(),
                           [](uchar grey) { return grey >= darkest; });
    };
    int top = 0;
    int bottom = picture.height();
    while (top < bottom && isBlank(top))
        ++top;
    while (bottom > top && isBlank(bottom - 1))
        --bottom;
    return picture.copy(0, top, picture.width(), bottom - top);
}

QImage grey(const QImage& picture)
{
    QImage onWhite(picture.size(), QImage::Format_RGB32);
    onWhite.fill(Qt::white);
    if (!picture.hasAlphaChannel())
        onWhite = picture;
    for (int y = 0; picture.hasAlphaChannel() && y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.pixelColor(x, y).alpha() >= darkest)
                onWhite.setPixelColor(x, y, picture.pixelColor(x, y));
        }
    }
    return onWhite.convertToFormat(QImage::Format_Grayscale8);
}

/// Printers look for DLE EOT, DLE ENQ and DLE DC4 in pictures, too. One dot more in the second
/// byte makes it another one, which cannot be seen.
void hideCommands(QByteArray& bits)
{
    for (int at = 1; at < bits.size(); ++at) {
        const char byte = bits.at(at);
        if (bits.at(at - 1) == 0x10 && (byte == 0x04 || byte == 0x05 || byte == 0x14))
            bits[at] = static_cast<char>(byte | 0x08);
    }
}

/// Rows of a picture in grey as bits, from the left, one for a black dot.
QByteArray bitsOf(const QImage& picture, int dotsPerLine)
{
    const int left = std::max(0, (dotsPerLine - picture.width()) / 2);
    const int width = std::min(dotsPerLine, picture.width());
    QByteArray bits(dotsPerLine / 8 * picture.height(), '\0');
    for (int y = 0; y < picture.height(); ++y) {
        const uchar* const row = picture.constScanLine(y);
        for (int x = 0; x < width; ++x) {
            if (row[x] < darkest) {
                const int dot = left + x;
                char& byte = bits.data()[y * (dotsPerLine / 8) + dot / 8];
                byte = static_cast<char>(byte | 0x80 >> dot % 8);
            }
        }
    }
    return bits;
}

class Encoder
{
public:
    explicit Encoder(const EscPosFormat& format) : m_format(format) {}

    QByteArray encode(const PaperLayout& layout)
    {
        m_bytes = initialise(m_format.codePage.number());
        if (!m_format.logo.isNull())
            m_bytes += encodePicture(m_format.logo, m_format.dotsPerLine);
        for (const PaperBlock& block : layout)
            add(block);
        m_bytes += m_format.cut ? cut() : command({0x1B, 'd', feedLines});
        return m_bytes;
    }

private:
    void add(const PaperBlock& block)
    {
        const bool isCode = block.kind == Kind::Code;
        if (isCode
                ? !m_format.nativeCode
                : !m_format.codePage.hasAll(block.text) || !m_format.codePage.hasAll(block.value))
            return addPicture(block);
        switch (block.kind) {
        case Kind::Title:
            return addTitle(block.text);
        case Kind::Mark:
            return addMark(block.text);
        case Kind::Text:
            return addLines(wrapped(block.text, m_format.columns));
        case Kind::Field:
            return addField(block);
        case Kind::Sum:
            m_bytes += bold(true) + size(1, 2);
            addField(block);
            m_bytes += size(1, 1) + bold(false);
            return;
        case Kind::Rule:
            return addLines({QString(m_format.columns, QLatin1Char('-'))});
        case Kind::Code:
            return addCode(block.text.toUtf8());
        }
    }

    void addLines(const QStringList& lines)
    {
        for (const QString& line : lines)
            m_bytes += m_format.codePage.encode(line) + '\n';
    }

    void addTitle(const QString& text)
    {
        m_bytes += align(1) + bold(true) + size(2, 2);
        addLines(wrapped(text, m_format.columns / 2));
        m_bytes += size(1, 1) + bold(false) + align(0);
    }

    /// The whole width is black.
    void addMark(const QString& text)
    {
        m_bytes += bold(true) + reverse(true);
        const QStringList lines = wrapped(text, m_format.columns);
        for (const QString& line : lines) {
            const int left = (m_format.columns - line.size()) / 2;
            addLines({(QString(left, QLatin1Char(' ')) + line).leftJustified(m_format.columns)});
        }
        m_bytes += reverse(false) + bold(false);
    }

    /// Label and value on one line if there is room, otherwise one below the other.
    void addField(const PaperBlock& block)
    {
        constexpr int gap = 2;
        const int columns = m_format.columns;
        if (block.text.size() + gap + block.value.size() <= columns)
            return addLines({block.text + block.value.rightJustified(columns - block.text.size())});
        addLines(wrapped(block.text, columns));
        QStringList lines = wrapped(block.value, columns);
        for (QString& line : lines)
            line = line.rightJustified(columns);
        addLines(lines);
    }

    /// As wide as the texts: pictures of papers have a margin.
    void addPicture(const PaperBlock& block)
    {
        const bool isCode = block.kind == Kind::Code;
        const int width = m_format.dotsPerLine;
        const QImage whole = ticket::draw({block}, width + 2 * pictureMargin);
        const QImage picture = whole.copy(pictureMargin, 0, width, whole.height());
        m_bytes += command({0x1B, 'J', isCode ? codeGap : gapAbovePicture}) +
                   encodePicture(picture, width) +
                   command({0x1B, 'J', isCode ? codeGap : gapBelowPicture});
    }

    /// Model 2, error correction level M. The printer leaves no white around it.
    void addCode(const QByteArray& data)
    {
        const int module = std::clamp(m_format.dotsPerLine / 64, leastModule, mostModule);
        m_bytes += align(1) + '\n' + codeCommand('A', command({'2', 0})) +
                   codeCommand('C', command({module})) + codeCommand('E', "1") +
                   codeCommand('P', '0' + data) + codeCommand('Q', "0") + '\n' + align(0);
    }

    const EscPosFormat& m_format;
    QByteArray m_bytes;
};

} // namespace

QByteArray encode(const PaperLayout& layout, const EscPosFormat& format)
{
    return Encoder(format).encode(layout);
}

QByteArray cut() { return command({0x1D, 'V', 'B', 0}); }

QByteArray drawerPulse() { return command({0x1B, 'p', 0, 25, 250}); }

QByteArray encodePicture(const QImage& picture, int dotsPerLine)
{
    const QImage fitting = picture.width() > dotsPerLine
                               ? picture.scaledToWidth(dotsPerLine, Qt::SmoothTransformation)
                               : picture;
    const QImage rows = withoutBlankEdges(grey(fitting));
    const int bytesPerRow = dotsPerLine / 8;
    QByteArray bytes;
    for (int from = 0; from < rows.height(); from += rowsPerCommand) {
        const int count = std::min(rowsPerCommand, rows.height() - from);
        QByteArray bits = bitsOf(rows.copy(0, from, rows.width(), count), dotsPerLine);
        hideCommands(bits);
        bytes += command({0x1D, 'v', '0', 0, bytesPerRow & 0xFF, bytesPerRow >> 8, count & 0xFF,
                          count >> 8}) +
                 bits;
    }
    return bytes;
}

} // namespace rivo::printer
