// What the virtual printer puts on its paper.

#include "VirtualPrinter.h"

#include <QFont>
#include <QPainter>
#include <QTextCodec>

#include <qrencode.h>

#include <algorithm>
#include <memory>

namespace rivo::simulators
{

namespace
{

// Of the normal font.
constexpr int cellWidth = 12;
constexpr int cellHeight = 24;
constexpr int lineSpacing = 30;

/// The letters behind the upper half of the bytes.
const QTextCodec* codecOf(int codePage)
{
    switch (codePage) {
    case 0:
        return QTextCodec::codecForName("IBM437");
    case 2:
        return QTextCodec::codecForName("IBM850");
    case 3:
        return QTextCodec::codecForName("IBM860");
    case 4:
        return QTextCodec::codecForName("IBM863");
    case 5:
        return QTextCodec::codecForName("IBM865");
    case 16:
        return QTextCodec::codecForName("windows-1252");
    case 17:
        return QTextCodec::codecForName("IBM866");
    case 18:
        return QTextCodec::codecForName("IBM852");
    case 19:
        return QTextCodec::codecForName("IBM00858");
    case 45:
        return QTextCodec::codecForName("windows-1250");
    case 46:
        return QTextCodec::codecForName("windows-1251");
    case 47:
        return QTextCodec::codecForName("windows-1253");
    case 48:
        return QTextCodec::codecForName("windows-1254");
    case 51:
        return QTextCodec::codecForName("windows-1257");
    default:
        return nullptr;
    }
}

QImage blank(int width, int height)
{
    QImage image(width, height, QImage::Format_Grayscale8);
    image.fill(Qt::white);
    return image;
}

} // namespace

/// A line that is full goes on in the next one.
void VirtualPrinter::print(uchar byte)
{
    QChar letter = QLatin1Char(static_cast<char>(byte));
    if (byte >= 0x80) {
        const QTextCodec* const codec = codecOf(m_style.codePage);
        const QString text =
            codec == nullptr ? QString() : codec->toUnicode(QByteArray(1, static_cast<char>(byte)));
        letter = text.isEmpty() ? QChar(QChar::ReplacementCharacter) : text.at(0);
    }
    int width = m_style.width * cellWidth;
    for (const Letter& each : qAsConst(m_line))
        width += each.style.width * cellWidth;
    if (width > m_dotsPerLine)
        endLine();
    m_line.append({letter, m_style});
}

void VirtualPrinter::endLine()
{
    QString text;
    for (const Letter& each : qAsConst(m_line))
        text.append(each.letter);
    m_current.lines.append(text);
    if (m_isDrawing)
        addStrip(drawLine());
    m_line.clear();
}

QImage VirtualPrinter::drawLine() const
{
    int width = 0;
    int height = 1;
    for (const Letter& each : m_line) {
        width += each.style.width * cellWidth;
        height = std::max(height, each.style.height);
    }
    const int align = m_line.isEmpty() ? 0 : m_line.first().style.align;
    int x = align == 1 ? (m_dotsPerLine - width) / 2 : align == 2 ? m_dotsPerLine - width : 0;
    QImage strip = blank(m_dotsPerLine, height * cellHeight + lineSpacing - cellHeight);
    QPainter painter(&strip);
    QFont font(QStringLiteral("DejaVu Sans Mono"));
    font.setPixelSize(20);
    for (const Letter& each : m_line) {
        const Style& style = each.style;
        font.setBold(style.isBold);
        painter.setFont(font);
        painter.save();
        painter.translate(x, (height - style.height) * cellHeight);
        painter.scale(style.width, style.height);
        if (style.isReverse)
            painter.fillRect(0, 0, cellWidth, cellHeight, Qt::black);
        painter.setPen(style.isReverse ? Qt::white : Qt::black);
        painter.drawText(QRect(-cellWidth, 0, 3 * cellWidth, cellHeight), Qt::AlignCenter,
                         each.letter);
        painter.restore();
        x += style.width * cellWidth;
    }
    return strip;
}

void VirtualPrinter::feed(int dots)
{
    if (m_isDrawing && dots > 0)
        addStrip(blank(m_dotsPerLine, dots));
}

void VirtualPrinter::addRaster(const QByteArray& command)
{
    const auto byte = [&command](int at) { return static_cast<uchar>(command.at(at)); };
    const int bytesPerRow = byte(4) + 256 * byte(5);
    const int rows = byte(6) + 256 * byte(7);
    m_current.lines.append(QStringLiteral("[picture of %1 rows]").arg(rows));
    if (!m_isDrawing || rows == 0)
        return;
    QImage strip = blank(m_dotsPerLine, rows);
    for (int y = 0; y < rows; ++y) {
        for (int x = 0; x < std::min(8 * bytesPerRow, m_dotsPerLine); ++x) {
            if ((byte(8 + y * bytesPerRow + x / 8) & 0x80 >> x % 8) != 0)
                strip.scanLine(y)[x] = 0;
        }
    }
    addStrip(strip);
}

void VirtualPrinter::addCode()
{
    m_current.codes.append(QString::fromUtf8(m_code));
    if (!m_isDrawing)
        return;
    const QRecLevel level = m_codeLevel == '1'   ? QR_ECLEVEL_M
                            : m_codeLevel == '2' ? QR_ECLEVEL_Q
                            : m_codeLevel == '3' ? QR_ECLEVEL_H
                                                 : QR_ECLEVEL_L;
    const std::unique_ptr<QRcode, decltype(&QRcode_free)> code(
        QRcode_encodeData(m_code.size(), reinterpret_cast<const uchar*>(m_code.constData()), 0,
                          level),
        QRcode_free);
    if (code == nullptr)
        return;
    const int side = code->width * m_codeModule;
    const int left = m_style.align == 1   ? (m_dotsPerLine - side) / 2
                     : m_style.align == 2 ? m_dotsPerLine - side
                                          : 0;
    QImage strip = blank(m_dotsPerLine, side);
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            const int module = y / m_codeModule * code->width + x / m_codeModule;
            if (left + x >= 0 && left + x < m_dotsPerLine && (code->data[module] & 1) != 0)
                strip.scanLine(y)[left + x] = 0;
        }
    }
    addStrip(strip);
}

void VirtualPrinter::addStrip(const QImage& strip) { m_strips.append(strip); }

QImage VirtualPrinter::pictureOfCurrent() const
{
    if (!m_isDrawing)
        return {};
    constexpr int margin = 16;
    int height = 2 * margin;
    for (const QImage& strip : m_strips)
        height += strip.height();
    QImage picture = blank(m_dotsPerLine + 2 * margin, height);
    QPainter painter(&picture);
    int y = margin;
    for (const QImage& strip : m_strips) {
        painter.drawImage(margin, y, strip);
        y += strip.height();
    }
    return picture;
}

} // namespace rivo::simulators
