#include "FleetPage.h"

#include <FleetOverview.h>
#include <ReportText.h>

#include <QDateTime>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <map>

/// A static library's resources are registered by those who use them, outside of namespaces.
static void registerFiles() { Q_INIT_RESOURCE(page); }

namespace rivo::backoffice
{

namespace
{

/// Files of the page, and what they are.
const std::map<QByteArray, std::pair<const char*, const char*>>& files()
{
    static const std::map<QByteArray, std::pair<const char*, const char*>> all{
        {"/", {"index.html", "text/html; charset=utf-8"}},
        {"/page.css", {"page.css", "text/css; charset=utf-8"}},
        {"/page.js", {"page.js", "text/javascript; charset=utf-8"}}};
    return all;
}

HttpAnswer fileAnswer(const std::pair<const char*, const char*>& file)
{
    QFile content(QStringLiteral(":/office/") + QLatin1String(file.first));
    if (!content.open(QIODevice::ReadOnly))
        return {500, "text/plain", {}};
    return {200, file.second, content.readAll()};
}

QJsonValue timeValue(const QDateTime& time)
{
    return time.isValid() ? QJsonValue(time.toUTC().toString(Qt::ISODate)) : QJsonValue();
}

QJsonValue numberValue(double number) { return qIsNaN(number) ? QJsonValue() : QJsonValue(number); }

QJsonValue placeValue(const std::optional<office::PositionReport>& place)
{
    if (!place)
        return {};
    return QJsonObject{{QStringLiteral("at"), timeValue(place->at)},
                       {QStringLiteral("latitude"), place->latitude},
                       {QStringLiteral("longitude"), place->longitude},
                       {QStringLiteral("direction"), numberValue(place->direction)},
                       {QStringLiteral("trip"), place->trip}};
}

QJsonObject objectOf(const office::DeviceReport& device)
{
    return {{QStringLiteral("name"), device.name},
            {QStringLiteral("level"), device.level},
            {QStringLiteral("text"), device.text}};
}

QJsonObject objectOf(const VehicleOverview& vehicle);
QJsonObject objectOf(const KeptFault& fault);
QJsonObject objectOf(const ReportLine& line);

template <typename Row>
QJsonArray arrayOf(const QVector<Row>& rows)
{
    QJsonArray array;
    for (const Row& row : rows)
        array.append(objectOf(row));
    return array;
}

QJsonObject objectOf(const VehicleOverview& vehicle)
{
    return {{QStringLiteral("name"), vehicle.name},
            {QStringLiteral("records"), vehicle.records},
            {QStringLiteral("last"), timeValue(vehicle.lastAt)},
            {QStringLiteral("faults"), vehicle.faults},
            {QStringLiteral("alive"), vehicle.isAlive},
            {QStringLiteral("position"), placeValue(vehicle.position)},
            {QStringLiteral("devices"), arrayOf(vehicle.devices)}};
}

QJsonObject objectOf(const KeptFault& fault)
{
    return {{QStringLiteral("topic"), fault.topic},
            {QStringLiteral("kind"), fault.kind},
            {QStringLiteral("number"), fault.number},
            {QStringLiteral("reason"), fault.reason},
            {QStringLiteral("times"), fault.times},
            {QStringLiteral("last"), timeValue(fault.lastAt)}};
}

/// Amounts as texts: a browser's numbers and its language do not touch them.
QJsonObject objectOf(const ReportLine& line)
{
    return {{QStringLiteral("key"), line.key},
            {QStringLiteral("currency"), line.currency},
            {QStringLiteral("tickets"), line.tickets},
            {QStringLiteral("sold"), amountText(line.sold, line.decimals)},
            {QStringLiteral("card"), amountText(line.card, line.decimals)},
            {QStringLiteral("reversed"), amountText(line.reversed, line.decimals)},
            {QStringLiteral("total"), amountText(line.total(), line.decimals)}};
}

std::optional<QJsonObject> sumsOf(Database& database, const QDate& day)
{
    QJsonObject sums;
    for (const ReportBy by :
         {ReportBy::Product, ReportBy::Route, ReportBy::Vehicle, ReportBy::Driver}) {
        const auto lines = salesReport(database, by, day, day);
        if (!lines)
            return std::nullopt;
        sums.insert(nameOf(by), arrayOf(*lines));
    }
    return sums;
}

std::optional<QByteArray> fleetOf(Database& database, const QDateTime& now)
{
    const QDate day = now.date();
    const auto overview = fleetOverview(database);
    const auto sums = overview ? sumsOf(database, day) : std::nullopt;
    if (!sums)
        return std::nullopt;
    return QJsonDocument(QJsonObject{{QStringLiteral("at"), timeValue(now)},
                                     {QStringLiteral("day"), day.toString(Qt::ISODate)},
                                     {QStringLiteral("vehicles"), arrayOf(overview->vehicles)},
                                     {QStringLiteral("vehicleCount"), overview->vehicleCount},
                                     {QStringLiteral("sums"), *sums},
                                     {QStringLiteral("faults"), arrayOf(overview->faults)},
                                     {QStringLiteral("faultCount"), overview->faultCount}})
        .toJson(QJsonDocument::Compact);
}

} // namespace

FleetPage::FleetPage(const DatabaseSettings& database, const QByteArray& routes)
    : m_routes(routes), m_database(database)
{
    registerFiles();
}

HttpAnswer FleetPage::answer(const QByteArray& path)
{
    if (path == "/fleet.json")
        return answered(m_fleet, "application/json", fleetOf);
    if (path == "/vehicle-positions.pb")
        return answered(m_positions, "application/x-protobuf",
                        [this](Database& database, const QDateTime& now) {
                            return m_publicPositions.message(database, now);
                        });
    if (path == "/routes.json")
        return {200, "application/json", m_routes};
    const auto file = files().find(path);
    return file != files().end() ? fileAnswer(file->second)
                                 : HttpAnswer{404, "text/plain", "There is no such page\n"};
}

HttpAnswer FleetPage::answered(Kept& kept, const QByteArray& type, const Maker& make)
{
    if (!kept.content || kept.since.hasExpired(pause)) {
        kept.content = m_isConnected || m_database.openToRead(mostSeconds)
                           ? make(m_database, QDateTime::currentDateTime())
                           : std::nullopt;
        m_isConnected = kept.content.has_value();
        kept.since.start();
    }
    if (!kept.content)
        return {503, "application/json", R"({"problem":"the database cannot be reached"})"};
    return {200, type, *kept.content};
}

} // namespace rivo::backoffice
