#include "TripContext.h"

#include <utility>

namespace rivo::feed
{

TripContext::TripContext(QObject* parent) : QObject(parent) {}

TripContext::TripContext(const FeedTripContext& trip, QObject* parent)
    : QObject(parent), m_trip(trip)
{
}

TripContext::TripContext(const Feed& feed, QObject* parent)
    : TripContext(feed.trip.value_or(FeedTripContext()), parent)
{
}

template <class T>
void TripContext::store(T FeedTripContext::*field, const T& value, void (TripContext::*changed)())
{
    if (m_trip.*field == value)
        return;
    m_trip.*field = value;
    emit(this->*changed)();
}

void TripContext::setTrip(const FeedTripContext& trip)
{
    const FeedTripContext before = std::exchange(m_trip, trip);
    if (before.routeId != trip.routeId)
        emit routeIdChanged();
    if (before.fromStopId != trip.fromStopId)
        emit fromStopIdChanged();
    if (before.toStopId != trip.toStopId)
        emit toStopIdChanged();
    if (before.currentStopId != trip.currentStopId)
        emit currentStopIdChanged();
    if (before.tripsRouteId != trip.tripsRouteId)
        emit tripsRouteIdChanged();
    if (before.tripsExecutionId != trip.tripsExecutionId)
        emit tripsExecutionIdChanged();
    if (before.publicRouteExecutionId != trip.publicRouteExecutionId)
        emit publicRouteExecutionIdChanged();
}

void TripContext::setRouteId(int routeId)
{
    store(&FeedTripContext::routeId, routeId, &TripContext::routeIdChanged);
}

void TripContext::setFromStopId(int fromStopId)
{
    store(&FeedTripContext::fromStopId, fromStopId, &TripContext::fromStopIdChanged);
}

void TripContext::setToStopId(int toStopId)
{
    store(&FeedTripContext::toStopId, toStopId, &TripContext::toStopIdChanged);
}

void TripContext::setCurrentStopId(int currentStopId)
{
    store(&FeedTripContext::currentStopId, currentStopId, &TripContext::currentStopIdChanged);
}

void TripContext::setTripsRouteId(int tripsRouteId)
{
    store(&FeedTripContext::tripsRouteId, tripsRouteId, &TripContext::tripsRouteIdChanged);
}

void TripContext::setTripsExecutionId(int tripsExecutionId)
{
    store(&FeedTripContext::tripsExecutionId, tripsExecutionId,
          &TripContext::tripsExecutionIdChanged);
}

void TripContext::setPublicRouteExecutionId(const QString& publicRouteExecutionId)
{
    store(&FeedTripContext::publicRouteExecutionId, publicRouteExecutionId,
          &TripContext::publicRouteExecutionIdChanged);
}

} // namespace rivo::feed
