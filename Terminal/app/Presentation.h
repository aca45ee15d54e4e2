#pragma once

#include <Currency.h>
#include <ZoneNames.h>

#include <QColor>
#include <QObject>
#include <QUrl>

namespace rivo::terminal
{

/// How the screen shows what a feed says: amounts, zones and placeholders, and pictures and colours
/// as far as a feed may choose them.
class Presentation : public QObject
{
    Q_OBJECT

public:
    /// Without `allowFileIcons` pictures come from qrc: alone.
    Presentation(const feed::Feed& feed, const sales::Currency& currency, bool allowFileIcons,
                 QObject* parent = nullptr);

    /// An amount in currency units as people read it; a dash for one that is beyond Currency's.
    Q_INVOKABLE QString priceText(double units) const;

    /// What a zone is called; empty for zone 0, which is no zone.
    Q_INVOKABLE QString zoneName(int zone) const;

    /// "Student −50%"; the name alone without a discount. A name that is written from right to left
    /// does not turn the number.
    Q_INVOKABLE QString withDiscount(const QString& passenger, double percent) const;

    /// "from → to"; one name if the other is empty or the same.
    Q_INVOKABLE QString zonesText(const QString& from, const QString& to) const;

    /// Whether a tile with these values is a filler of the layout, which has no product at all.
    Q_INVOKABLE bool isPlaceholder(const QString& fareProductName, bool hasExpired) const;

    /// `url` if the screen may load it, otherwise `fallback`. What is not in the resources, or is a
    /// file without a picture, is `fallback` too.
    Q_INVOKABLE QUrl icon(const QString& url, const QUrl& fallback) const;

    /// The colour that a feed names, `fallback` for a text that names none. Never translucent.
    Q_INVOKABLE QColor color(const QString& name, const QColor& fallback) const;

    /// Black or white, whichever is easier to read on `background`.
    Q_INVOKABLE QColor textOn(const QColor& background) const;

    /// Colour of a frame on `background`: `preferred` if its contrast is at least 3, otherwise
    /// that of textOn().
    Q_INVOKABLE QColor frameOn(const QColor& background, const QColor& preferred) const;

private:
    const feed::ZoneNames m_zoneNames;
    const sales::Currency m_currency;
    const bool m_allowFileIcons;
};

} // namespace rivo::terminal
