#include "Presentation.h"

#include <Feed.h>
#include <PictureBounds.h>
#include <sProduct.h>

#include <QFileInfo>
#include <QLocale>

#include <algorithm>
#include <cmath>

namespace rivo::terminal
{

namespace
{

/// Relative luminance as the web's accessibility guidelines define it, 0 to 1.
double luminance(const QColor& color)
{
    const auto linear = [](double channel) {
        return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

double contrast(const QColor& a, const QColor& b)
{
    const double first = luminance(a) + 0.05;
    const double second = luminance(b) + 0.05;
    return std::max(first, second) / std::min(first, second);
}

/// A text that is written from right to left does not turn what stands beside it.
QString isolated(const QString& text)
{
    const auto turns = [](const QChar& letter) {
        switch (letter.direction()) {
        case QChar::DirL:
        case QChar::DirEN:
        case QChar::DirES:
        case QChar::DirET:
        case QChar::DirCS:
        case QChar::DirWS:
        case QChar::DirON:
        case QChar::DirNSM:
            return false;
        default:
            return true;
        }
    };
    return std::any_of(text.begin(), text.end(), turns)
               ? QChar(0x2068) + text + QChar(0x2069) // first strong isolate
               : text;
}

} // namespace

Presentation::Presentation(const feed::Feed& feed, const sales::Currency& currency,
                           bool allowFileIcons, QObject* parent)
    : QObject(parent), m_zoneNames(feed), m_currency(currency), m_allowFileIcons(allowFileIcons)
{
}

QString Presentation::priceText(double units) const { return m_currency.unitsText(units); }

QString Presentation::zoneName(int zone) const { return m_zoneNames.name(zone); }

QString Presentation::withDiscount(const QString& passenger, double percent) const
{
    if (!(percent > 0.0))
        return passenger;
    const bool isWhole = percent == std::floor(percent);
    const QString number = QLocale().toString(percent, 'f', isWhole ? 0 : 1);
    return tr("%1 −%2%", "passenger, discount").arg(isolated(passenger), number);
}

QString Presentation::zonesText(const QString& from, const QString& to) const
{
    if (from.isEmpty() || to.isEmpty() || from == to)
        return to.isEmpty() ? from : to;
    return QStringLiteral("%1 → %2").arg(isolated(from), isolated(to));
}

bool Presentation::isPlaceholder(const QString& fareProductName, bool hasExpired) const
{
    return hasExpired && fareProductName == sProduct().fareProductName;
}

QUrl Presentation::icon(const QString& url, const QUrl& fallback) const
{
    const QUrl wanted(url, QUrl::StrictMode);
    if (wanted.scheme() == QLatin1String("qrc"))
        return QFileInfo(QLatin1Char(':') + wanted.path()).isFile() ? wanted : fallback;
    if (!m_allowFileIcons || !wanted.isLocalFile())
        return fallback;
    return ticket::isPictureWithinBounds(wanted.toLocalFile()) ? wanted : fallback;
}

QColor Presentation::color(const QString& name, const QColor& fallback) const
{
    QColor color;
    if (name.isEmpty() || name.size() > 64 || !QColor::isValidColor(name))
        return fallback;
    color.setNamedColor(name);
    if (color.alpha() == 0)
        return fallback;
    color.setAlpha(255);
    return color;
}

QColor Presentation::textOn(const QColor& background) const
{
    const QColor white(Qt::white);
    const QColor black(Qt::black);
    return contrast(background, white) >= contrast(background, black) ? white : black;
}

QColor Presentation::frameOn(const QColor& background, const QColor& preferred) const
{
    constexpr double leastContrast = 3.0;
    return contrast(background, preferred) >= leastContrast ? preferred : textOn(background);
}

} // namespace rivo::terminal
