// What live vehicles cost: messages with 2,000 vehicles that all move, one after the other.
//
//     bench-live [VEHICLES [MESSAGES]]
//
// Prints the processor time of one message in milliseconds: reading it, and bringing the rows of a
// model to it, with a list of ten visible rows that reads what has changed. The share is that of
// one core, with a message a second.

#include <AssetItem.h>
#include <AssetsModel.h>
#include <Feed.h>
#include <LiveFleet.h>
#include <LiveMessage.h>

#include <vehicle_positions.pb.h>

#include <QCoreApplication>
#include <QTextStream>

#include <algorithm>
#include <cmath>
#include <ctime>

namespace
{

using namespace rivo;

constexpr qint64 startTime = 1774166400;
constexpr int visibleRows = 10;

double processorTime()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

QByteArray messageOf(int vehicles, int second)
{
    live::wire::FeedMessage message;
    message.mutable_header()->set_gtfs_realtime_version("2.0");
    message.mutable_header()->set_timestamp(static_cast<quint64>(startTime + second));
    for (int i = 0; i < vehicles; ++i) {
        live::wire::FeedEntity* entity = message.add_entity();
        entity->set_id("entity-" + std::to_string(i));
        live::wire::VehiclePosition* vehicle = entity->mutable_vehicle();
        vehicle->mutable_vehicle()->set_id("vehicle-" + std::to_string(i));
        vehicle->mutable_vehicle()->set_label(std::to_string(i));
        vehicle->mutable_vehicle()->set_license_plate("AB-CD " + std::to_string(i));
        vehicle->mutable_trip()->set_trip_id("trip-" + std::to_string(i % 500));
        vehicle->mutable_trip()->set_route_id("route-" + std::to_string(i % 50));
        const double way = second * 0.0001 + i * 0.001;
        vehicle->mutable_position()->set_latitude(static_cast<float>(48.0 + std::sin(way) / 5));
        vehicle->mutable_position()->set_longitude(static_cast<float>(11.0 + std::cos(way) / 5));
        vehicle->mutable_position()->set_bearing(static_cast<float>((i + second) % 360));
        vehicle->set_timestamp(static_cast<quint64>(startTime + second));
    }
    return QByteArray::fromStdString(message.SerializeAsString());
}

void print(const QString& name, QVector<double> times)
{
    std::sort(times.begin(), times.end());
    QTextStream(stdout) << name
                        << QStringLiteral(" median %1 p95 %2 worst %3\n")
                               .arg(times.at(times.size() / 2), 0, 'f', 2)
                               .arg(times.at(times.size() * 95 / 100), 0, 'f', 2)
                               .arg(times.last(), 0, 'f', 2);
}

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const int vehicles = arguments.value(1, QStringLiteral("2000")).toInt();
    const int messages = arguments.value(2, QStringLiteral("100")).toInt();
    if (vehicles < 1 || messages < 1 || arguments.size() > 3) {
        QTextStream(stderr) << "usage: bench-live [VEHICLES [MESSAGES]]\n";
        return 2;
    }
    QObject prototypes;
    AssetsModel model(&prototypes);
    live::LiveFleet fleet(feed::Network(), fleet::Timetable(), model);
    int announcements = 0;
    QObject::connect(&model, &AssetsModel::dataChanged, &model,
                     [&](const QModelIndex& first, const QModelIndex& last) {
                         ++announcements;
                         const int end = std::min(last.row(), first.row() + visibleRows - 1);
                         for (int row = first.row(); row <= end; ++row) {
                             const QHash<int, QByteArray> roles = model.roleNames();
                             for (auto role = roles.cbegin(); role != roles.cend(); ++role)
                                 model.data(model.index(row, 0), role.key());
                         }
                     });
    QVector<double> reading;
    QVector<double> bringing;
    QVector<double> both;
    int bytes = 0;
    for (int second = 0; second <= messages; ++second) {
        const QByteArray message = messageOf(vehicles, second);
        const double begin = processorTime();
        const live::LiveResult result = live::readMessage(message);
        const double read = processorTime();
        fleet.apply(*result.message, startTime + second);
        const double end = processorTime();
        if (second == 0) // makes the rows
            continue;
        reading.append(read - begin);
        bringing.append(end - read);
        both.append(end - begin);
        bytes = message.size();
    }
    QTextStream(stdout) << "vehicles " << model.rowCount() << ", bytes " << bytes
                        << ", announcements of a message "
                        << announcements / static_cast<double>(messages) << '\n';
    print(QStringLiteral("reading_ms"), reading);
    print(QStringLiteral("rows_ms"), bringing);
    print(QStringLiteral("message_ms"), both);
    double sum = 0.0;
    for (const double time : qAsConst(both))
        sum += time;
    QTextStream(stdout) << "share_of_a_core " << QString::number(sum / messages / 10.0, 'f', 2)
                        << " %\n";
    return 0;
}
