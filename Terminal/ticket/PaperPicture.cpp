#include "PaperPicture.h"

#include <QFont>
#include <QFontMetrics>
#include <QPainter>

#include <qrencode.h>

#include <algorithm>
#include <memory>

namespace rivo::ticket
{

namespace
{

using Kind = PaperBlock::Kind;

constexpr int margin = 16;
constexpr int gap = 6;
constexpr int textSize = 24;
constexpr int sumSize = 32;
constexpr int titleSize = 30;
constexpr int quietZone = 4; ///< modules of white around a code
constexpr int codeShare = 2; ///< a code takes at most two thirds of the width
constexpr int wrapping = Qt::TextWrapAnywhere;

QFont fontOf(Kind kind)
{
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(kind == Kind::Title ? titleSize : kind == Kind::Sum ? sumSize : textSize);
    font.setBold(kind == Kind::Title || kind == Kind::Sum || kind == Kind::Mark);
    return font;
}

using Code = std::unique_ptr<QRcode, decltype(&QRcode_free)>;

/// Null if the text is longer than a code can be.
Code encode(const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    return {QRcode_encodeData(bytes.size(),
                              reinterpret_cast<const unsigned char*>(bytes.constData()), 0,
                              QR_ECLEVEL_M),
            QRcode_free};
}

/// Draws blocks one below the other, or only measures them if there is no painter.
class Roll
{
public:
    Roll(int width, QPainter* painter) : m_width(width), m_painter(painter) {}

    void add(const PaperBlock& block)
    {
        switch (block.kind) {
        case Kind::Title:
            write(block, block.text, Qt::AlignHCenter | Qt::TextWordWrap);
            break;
        case Kind::Text:
            write(block, block.text, Qt::AlignLeft | Qt::TextWordWrap);
            break;
        case Kind::Mark:
            addMark(block);
            break;
        case Kind::Field:
        case Kind::Sum:
            addField(block);
            break;
        case Kind::Rule:
            fill({margin, m_y + gap / 2, m_width - 2 * margin, 2});
            m_y += 2 * gap;
            break;
        case Kind::Code:
            addCode(encode(block.text));
            break;
        }
    }

    int height() const { return m_y + margin; }

private:
    QRect area(int height) const { return {margin, m_y, m_width - 2 * margin, height}; }

    void fill(const QRect& place) const
    {
        if (m_painter != nullptr)
            m_painter->fillRect(place, Qt::black);
    }

    /// Height of a text that may have many lines. A word that is wider than the paper is divided.
    int heightOf(const PaperBlock& block, const QString& text, int& flags) const
    {
        const QFontMetrics metrics(fontOf(block.kind));
        const QRect wanted = area(1 << 20);
        QRect found = metrics.boundingRect(wanted, flags, text);
        if (found.width() > wanted.width()) {
            flags = (flags & ~Qt::TextWordWrap) | wrapping;
            found = metrics.boundingRect(wanted, flags, text);
        }
        return found.height();
    }

    void write(const PaperBlock& block, const QString& text, int flags)
    {
        const int height = heightOf(block, text, flags);
        if (m_painter != nullptr) {
            m_painter->setFont(fontOf(block.kind));
            m_painter->drawText(area(height), flags, text);
        }
        m_y += height + gap;
    }

    void addMark(const PaperBlock& block)
    {
        int flags = Qt::AlignHCenter | Qt::TextWordWrap;
        fill(area(heightOf(block, block.text, flags) + gap));
        if (m_painter != nullptr)
            m_painter->setPen(Qt::white);
        m_y += gap / 2;
        write(block, block.text, flags);
        m_y += gap;
        if (m_painter != nullptr)
            m_painter->setPen(Qt::black);
    }

    /// Label and value on one line if there is room, otherwise one below the other.
    void addField(const PaperBlock& block)
    {
        const QFontMetrics metrics(fontOf(block.kind));
        const int needed =
            metrics.horizontalAdvance(block.text + QLatin1String("  ") + block.value);
        const int y = m_y;
        write(block, block.text, Qt::AlignLeft | Qt::TextWordWrap);
        if (needed <= m_width - 2 * margin)
            m_y = y;
        write(block, block.value, Qt::AlignRight | Qt::TextWordWrap);
    }

    void addCode(const Code& code)
    {
        if (code == nullptr)
            return;
        const int modules = code->width + 2 * quietZone;
        const int module = std::max(2, m_width * codeShare / 3 / modules);
        const int left = (m_width - code->width * module) / 2;
        const int top = m_y + quietZone * module;
        for (int y = 0; y < code->width; ++y) {
            for (int x = 0; x < code->width; ++x) {
                if ((code->data[y * code->width + x] & 1) != 0)
                    fill({left + x * module, top + y * module, module, module});
            }
        }
        m_y += modules * module;
    }

    const int m_width;
    QPainter* const m_painter;
    int m_y = margin;
};

int roll(const PaperLayout& layout, int width, QPainter* painter)
{
    Roll paper(width, painter);
    for (const PaperBlock& block : layout)
        paper.add(block);
    return paper.height();
}

} // namespace

QImage draw(const PaperLayout& layout, int width)
{
    QImage image(width, roll(layout, width, nullptr), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setPen(Qt::black);
    roll(layout, width, &painter);
    return image;
}

} // namespace rivo::ticket
