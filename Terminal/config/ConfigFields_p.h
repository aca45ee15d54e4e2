#pragma once

#include "Config.h"

#include <JsonRecord.h>

namespace rivo::config
{

bool isConfigFormat(const QString& text);
bool isPrinterType(const QString& text);
bool isConfirmation(const QString& text);
bool isCodePage(const QString& text);
bool isCardTerminalType(const QString& text);
bool isPositionType(const QString& text);
bool isVehiclesType(const QString& text);
bool isOfficeType(const QString& text);
bool isTopicName(const QString& text);
bool isParity(const QString& text);
bool isFlowControl(const QString& text);
bool isPassword(const QString& text);
bool isWebAddress(const QString& text);
bool isFileName(const QString& text);

} // namespace rivo::config

namespace rivo::feed::json
{

constexpr FieldRule portRule = required.within(1, 65535);
constexpr FieldRule ownPortRule = optional.within(1, 65535);
constexpr FieldRule timeoutRule = optional.within(100, 600000);
constexpr FieldRule keepDaysRule = optional.within(7, 3650);
constexpr FieldRule fileRule = optional.satisfying(config::isFileName, "a file");

template <>
struct Fields<config::Config>
{
    using R = config::Config;
    static constexpr std::tuple table{
        Field{"format", &R::format,
              required.satisfying(config::isConfigFormat, "\"rivo-terminal\"")},
        Field{"version", &R::version, required.within(1, 1)},
        Field{"vehicle", &R::vehicle, optional},
        Field{"sounds", &R::sounds, optional},
        Field{"printer", &R::printer, optional},
        Field{"cardTerminal", &R::cardTerminal, optional},
        Field{"position", &R::position, optional},
        Field{"vehicles", &R::vehicles, optional},
        Field{"office", &R::office, optional},
    };
};

template <>
struct Fields<config::SerialLine>
{
    using R = config::SerialLine;
    static constexpr std::tuple table{
        Field{"port", &R::port, required},
        Field{"baud", &R::baud, optional.within(1200, 4000000)},
        Field{"parity", &R::parity,
              optional.satisfying(config::isParity, R"("none", "even" or "odd")")},
        Field{"flowControl", &R::flowControl,
              optional.satisfying(config::isFlowControl, R"("none", "hardware" or "software")")},
    };
};

template <>
struct Fields<config::TcpAddress>
{
    using R = config::TcpAddress;
    static constexpr std::tuple table{
        Field{"host", &R::host, required},
        Field{"port", &R::port, portRule},
    };
};

template <>
struct Fields<config::PrinterConfig>
{
    using R = config::PrinterConfig;
    static constexpr std::tuple table{
        Field{"type", &R::type,
              required.satisfying(config::isPrinterType, R"("none" or "escpos")")},
        Field{"device", &R::device, optional},
        Field{"serial", &R::serial, optional},
        Field{"tcp", &R::tcp, optional},
        Field{"codePage", &R::codePage,
              optional.satisfying(config::isCodePage, R"(a code page such as "PC858")")},
        Field{"codePageNumber", &R::codePageNumber, optional.within(0, 255)},
        Field{"columns", &R::columns, optional.within(20, 96)},
        Field{"dotsPerLine", &R::dotsPerLine, optional.within(192, 1664)},
        Field{"logo", &R::logo, optional},
        Field{"openDrawer", &R::openDrawer, optional},
        Field{"cut", &R::cut, optional},
        Field{"nativeCode", &R::nativeCode, optional},
        Field{"confirmation", &R::confirmation,
              optional.satisfying(config::isConfirmation, R"("process-id" or "sensor")")},
        Field{"timeout", &R::timeout, timeoutRule},
    };
};

template <>
struct Fields<config::CardTerminalConfig>
{
    using R = config::CardTerminalConfig;
    static constexpr std::tuple table{
        Field{"type", &R::type,
              required.satisfying(config::isCardTerminalType, R"("none" or "zvt")")},
        Field{"host", &R::host, optional},
        Field{"port", &R::port, ownPortRule},
        Field{"password", &R::password, optional.satisfying(config::isPassword, "six digits")},
        Field{"timeout", &R::timeout, timeoutRule},
    };
};

template <>
struct Fields<config::PositionConfig>
{
    using R = config::PositionConfig;
    static constexpr std::tuple table{
        Field{"type", &R::type,
              required.satisfying(config::isPositionType, R"("none", "nmea" or "gpsd")")},
        Field{"device", &R::device, optional},
        Field{"serial", &R::serial, optional},
        Field{"host", &R::host, optional},
        Field{"port", &R::port, ownPortRule},
    };
};

template <>
struct Fields<config::VehiclesConfig>
{
    using R = config::VehiclesConfig;
    static constexpr std::tuple table{
        Field{"type", &R::type,
              required.satisfying(config::isVehiclesType, R"("none" or "gtfs-realtime")")},
        Field{"url", &R::url,
              optional.satisfying(config::isWebAddress, "an address with http or https")},
        Field{"file", &R::file, optional},
        Field{"interval", &R::interval, optional.within(1, 3600)},
        Field{"caFile", &R::caFile, fileRule},
        Field{"certificate", &R::certificate, fileRule},
        Field{"key", &R::key, fileRule},
    };
};

constexpr FieldRule topicRule =
    optional.satisfying(config::isTopicName, R"(1 to 64 letters, digits, ".", "_" or "-")");

template <>
struct Fields<config::OfficeConfig>
{
    using R = config::OfficeConfig;
    static constexpr std::tuple table{
        Field{"type", &R::type, required.satisfying(config::isOfficeType, R"("none" or "mqtt")")},
        Field{"host", &R::host, optional},
        Field{"port", &R::port, ownPortRule},
        Field{"operator", &R::operatorName, topicRule},
        Field{"vehicle", &R::vehicle, topicRule},
        Field{"caFile", &R::caFile, fileRule},
        Field{"certificate", &R::certificate, fileRule},
        Field{"key", &R::key, fileRule},
        Field{"publisher", &R::publisher, fileRule},
        Field{"store", &R::store, fileRule},
        Field{"keepDays", &R::keepDays, keepDaysRule},
    };
};

} // namespace rivo::feed::json
