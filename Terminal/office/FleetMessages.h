#pragma once

#include <SealedRecord.h>

#include <QDateTime>
#include <QString>
#include <QVector>
#include <QtNumeric>

#include <optional>

// What vehicles and the office say to each other: docs/fleet.md has the format.

namespace rivo::office
{

/// Names of topics, "rivo/<operator>/<vehicle>/<what>".
struct Topics
{
    QString operatorName;
    QString vehicle; ///< "+" for the topics of all

    QString records() const { return of("records"); }
    QString acknowledged() const { return of("acknowledged"); }
    QString alive() const { return of("alive"); }
    QString position() const { return of("position"); }
    QString devices() const { return of("devices"); }
    QString wanted() const { return of("wanted"); }
    QString piece() const { return of("piece"); }
    QString publications() const { return of("publications"); }

    /// The vehicle of a topic; empty if it is none of these.
    static QString vehicleOf(const QString& topic);

private:
    QString of(const char* what) const;
};

/// Whether a name may be a part of a topic: 1 to 64 letters, digits, ".", "_" and "-" of ASCII.
bool isTopicName(const QString& name);

/// Records of one journal that follow one another. Without records it asks what the office has.
struct Batch
{
    QByteArray publicKey; ///< 32 bytes, the journal's
    QVector<sales::SealedRecord> records;
};

/// The office's answer: what it has of a journal.
struct Acknowledgement
{
    QByteArray publicKey;
    qint64 number = -1; ///< all records to this one are stored; -1 = none, not even the start
    QString refusal;    ///< why the office does not take what follows; empty if it does
};

/// Where a vehicle is.
struct PositionReport
{
    QDateTime at;
    double latitude = qQNaN();  ///< degrees of WGS 84, -90 to 90
    double longitude = qQNaN(); ///< -180 to 180
    double direction =
        qQNaN();            ///< of travel, degrees clockwise from north, 0 to 360; NaN = unknown
    double speed = qQNaN(); ///< metres per second, 0 to 200; NaN = unknown
    QString trip;           ///< the timetable's id of it, at most 200 letters; empty = none
};

/// A device of a vehicle, as its Devices page shows it.
struct DeviceReport
{
    static constexpr int worst = 4;

    QString name;  ///< at most 200 letters
    int level = 0; ///< 0 = ready, 1 = notice, 2 = warning, 3 = serious warning, 4 = fault
    QString text;  ///< the state in the language of the terminal, at most 200 letters

    bool operator==(const DeviceReport& other) const
    {
        return name == other.name && level == other.level && text == other.text;
    }
};

constexpr int mostDevices = 50;
constexpr int mostBytesOfMessage = 1024 * 1024;
constexpr int mostRecordsOfBatch = 200;

QByteArray encode(const Batch& batch);
QByteArray encode(const Acknowledgement& answer);

QByteArray encode(const PositionReport& report);

/// What is more than a message may have is left out.
QByteArray encode(const QVector<DeviceReport>& devices);

// Nothing for anything but a message of this version, and for one that is too large.
std::optional<Batch> batchOf(const QByteArray& message);
std::optional<Acknowledgement> acknowledgementOf(const QByteArray& message);
std::optional<PositionReport> positionOf(const QByteArray& message);
std::optional<QVector<DeviceReport>> devicesOf(const QByteArray& message);

} // namespace rivo::office
