#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace rivo::config
{

/// A serial line, as devices are delivered: 8 data bits, 1 stop bit, no parity.
struct SerialLine
{
    QString port; ///< "/dev/ttyUSB0"
    int baud = 9600;
    QString parity = QStringLiteral("none");      ///< "none", "even" or "odd"
    QString flowControl = QStringLiteral("none"); ///< "none", "hardware" or "software"
};

struct TcpAddress
{
    QString host;
    int port = 0;
};

/// The ticket printer. With a type, exactly one of `device`, `serial` and `tcp` is given.
struct PrinterConfig
{
    QString type = QStringLiteral("none"); ///< "none" or "escpos"
    QString device;                        ///< "/dev/usb/lp0"; empty = another connection
    std::optional<SerialLine> serial;
    std::optional<TcpAddress> tcp;
    QString codePage = QStringLiteral("PC437"); ///< one of codePageNames()
    int codePageNumber = -1; ///< what the printer calls it; -1 = as most printers do
    int columns = 32;        ///< letters of the normal font on a line
    int dotsPerLine = 384;   ///< a multiple of 8
    QString logo;            ///< file of a picture, black on white; empty = none
    bool openDrawer = false; ///< when a sale is paid in cash
    bool cut = true;         ///< the printer has a cutter
    bool nativeCode = true;  ///< the printer draws QR codes; otherwise they are sent as a picture
    /// What proves that a ticket is on paper: "process-id", or "sensor" for simpler printers.
    QString confirmation = QStringLiteral("process-id");
    int timeout = 5000; ///< milliseconds that an answer may take

    bool isThere() const { return type != QLatin1String("none"); }
};

struct CardTerminalConfig
{
    QString type = QStringLiteral("none"); ///< "none" or "zvt"
    QString host;
    int port = 20007;
    QString password = QStringLiteral("000000"); ///< six digits
    int timeout = 90000;                         ///< milliseconds that a passenger may take

    bool isThere() const { return type != QLatin1String("none"); }
};

/// Where the vehicle is. "nmea" reads `device` or `serial`, "gpsd" asks `host` and `port`.
struct PositionConfig
{
    QString type = QStringLiteral("none"); ///< "none", "nmea" or "gpsd"
    QString device;                        ///< a file or a device with NMEA lines
    std::optional<SerialLine> serial;
    QString host = QStringLiteral("localhost");
    int port = 2947;

    bool isThere() const { return type != QLatin1String("none"); }
};

/// Where the positions of other vehicles come from: with a type, from exactly one of `url` and
/// `file`.
struct VehiclesConfig
{
    QString type = QStringLiteral("none"); ///< "none" or "gtfs-realtime"
    QString url;                           ///< http or https; empty = a file
    QString file;                          ///< empty = an address
    int interval = 15;                     ///< seconds between two requests
    /// For https, files in PEM form: whose certificates are trusted (empty = those of the system),
    /// and how the server knows this terminal (both or none).
    QString caFile;
    QString certificate;
    QString key;

    bool isThere() const { return type != QLatin1String("none"); }
};

/// The broker of MQTT over which the journal's records go to the office. With a type, `host`,
/// `operatorName` and `vehicle` are given.
struct OfficeConfig
{
    QString type = QStringLiteral("none"); ///< "none" or "mqtt"
    QString host;
    int port = 8883;
    QString operatorName; ///< "operator" in the file: 1 to 64 letters, digits, ".", "_", "-"
    QString vehicle;      ///< likewise; what the office calls this vehicle
    /// For TLS, files in PEM form: whose certificates are trusted (empty = a connection without
    /// TLS), and how the broker knows this vehicle (both or none).
    QString caFile;
    QString certificate;
    QString key;
    QString
        publisher; ///< PEM file with the key of what the office publishes; empty = none is taken
    QString store; ///< folder for it; empty = one beside the journal's usual place
    /// Records of shifts that were closed more days ago are removed from the journal when the
    /// office has them, 7 to 3650. 0, without the key: all are kept.
    int keepDays = 0;

    bool isThere() const { return type != QLatin1String("none"); }
};

/// What the operator's configuration file says about a terminal. Without a file there are no
/// devices.
struct Config
{
    QString format;
    int version = 1;
    QString vehicle; ///< name of the vehicle on tickets; empty = none
    bool sounds = true;
    PrinterConfig printer;
    CardTerminalConfig cardTerminal;
    PositionConfig position;
    VehiclesConfig vehicles;
    OfficeConfig office;
};

struct ConfigResult
{
    std::optional<Config> config; ///< nothing if there are problems
    QStringList problems;         ///< "FILE:3: /printer/type: ...", one a line, as those of feeds
};

/// The file that is read without --config.
QString defaultFile();

/// The names that PrinterConfig::codePage may have.
const QStringList& codePageNames();

/// Reads a configuration file, see docs/hardware.md. A file with a problem is wrong as a whole.
ConfigResult readConfig(const QString& file);

/// The same, but a file that does not exist is a configuration without devices. A file that exists
/// and cannot be read is a problem.
ConfigResult readConfigIfThere(const QString& file);

} // namespace rivo::config
