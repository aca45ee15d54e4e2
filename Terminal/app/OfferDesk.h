#pragma once

#include <Offers.h>
#include <TripContext.h>

#include <QObject>
#include <QStringList>
#include <QVariantList>

#include <functional>
#include <optional>

class PassengerTypeItem;

namespace rivo::terminal
{

/// What may be sold on the route of this trip, at its current stop, now.
///
/// Everything that the feed sells anywhere, if the feed says nothing of places and times, or the
/// vehicle is at no route and stop that the feed knows.
class OfferDesk : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString objection READ objection NOTIFY changed)
    Q_PROPERTY(QVariantList notSold READ notSold NOTIFY changed)

public:
    /// Local time of the sale.
    using Clock = std::function<QDateTime()>;

    /// `feed` and `trip` outlive the desk. Nothing is sold before the first update().
    OfferDesk(const feed::Feed& feed, const feed::TripContext& trip, Clock clock,
              QObject* parent = nullptr);

    /// Asks the feed again if the route, the stop or what holds at this time has changed. Emits
    /// changed() if something else is sold now. Called by the desk itself when route or stop of the
    /// trip change; call it when time passes.
    void update();

    const QVector<feed::FeedProduct>& products() const { return m_products; }
    QStringList passengerTypes() const { return m_passengerTypes; } ///< of the products

    /// Why nothing is sold here, in words for the driver; empty if something is.
    QString objection() const { return m_objection; }

    /// Products that are sold, but not here and now: maps of name and reason, in words.
    QVariantList notSold() const { return m_notSold; }

    /// How products with the same texts and price differ: media, routes, times and number of
    /// the `which`-th product that a tile can be of, each empty if nothing is said of it.
    QStringList details(const PassengerTypeItem& tile, int which) const;

    /// Who runs the route of the trip.
    QString operatorName() const;

    /// Zones of the current stop, by number; empty if they are not known.
    QVector<int> zones() const;

signals:
    void changed();

private:
    /// Between two moments of the same value the same timeframes hold.
    struct Moment
    {
        QDate date;
        int span = 0; ///< of the day, between two turning points

        bool operator==(const Moment& other) const
        {
            return date == other.date && span == other.span;
        }
    };
    struct Place
    {
        int route = -1;
        int stop = -1;

        bool operator==(const Place& other) const
        {
            return route == other.route && stop == other.stop;
        }
    };

    Place place() const { return {m_trip.routeId(), m_trip.currentStopId()}; }
    Moment momentOf(const QDateTime& time) const;
    bool isKnown(const Place& place) const;
    feed::OfferQuery queryAt(const Place& place, const QDateTime& time) const;
    void sellEverything();
    void sell(const feed::OfferList& list);
    QVariantList namedReasons(const QVector<feed::LeftOutProduct>& leftOut) const;
    QString mediaOf(int product) const;
    QString numberOf(const feed::FeedProduct& product) const;

    const feed::Feed& m_feed;
    const feed::TripContext& m_trip;
    const Clock m_clock;
    QVector<int> m_routeNumbers; ///< by which the trip knows the routes of the tariff
    QVector<int> m_stopNumbers;
    QVector<int> m_turningPoints;

    bool m_isAsked = false;
    Place m_place;
    Moment m_moment;
    std::optional<feed::OfferList> m_offers; ///< none = everything
    QVector<feed::FeedProduct> m_products;
    QStringList m_passengerTypes;
    QString m_objection;
    QVariantList m_notSold;
};

} // namespace rivo::terminal
