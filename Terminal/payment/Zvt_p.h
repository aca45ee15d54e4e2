#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QVector>

#include <optional>

/// The messages of the protocol ZVT between a cash register and a card terminal, over TCP: how they
/// are made and read. Pure functions. What is read is checked to its last byte: nothing is returned
/// for what is cut off, too long, or has a field that the protocol does not know.
namespace rivo::payment::zvt
{

/// Class and instruction of a message.
enum Command : quint16 {
    StatusInformation = 0x040f,
    IntermediateStatus = 0x04ff,
    StatusEnquiry = 0x0501,
    Registration = 0x0600,
    Authorisation = 0x0601,
    Completion = 0x060f,
    AbortByTerminal = 0x061e,
    RepeatReceipt = 0x0620,
    Reversal = 0x0630,
    Refund = 0x0631,
    EndOfDay = 0x0650,
    AbortByRegister = 0x06b0,
    PrintLine = 0x06d1,
    PrintTextBlock = 0x06d3,
    Accepted = 0x8000
};

/// Numbers of the fields that are used.
enum Field : quint8 {
    Amount = 0x04,
    Container = 0x06,
    Trace = 0x0b,
    Time = 0x0c,
    Date = 0x0d,
    CardNumber = 0x22,
    ResultCode = 0x27,
    TerminalId = 0x29,
    OriginalTrace = 0x37,
    CurrencyCode = 0x49,
    Totals = 0x60,
    ReceiptNumber = 0x87,
    CardName = 0x8b
};

/// Codes with which a terminal says why it does not do something.
enum Code : quint8 {
    Done = 0x00,
    AbortedByKey = 0x6c,
    NotPossible = 0x83,
    PleaseWait = 0x9c,
    AlreadyReversed = 0xb4
};

struct Message
{
    quint16 command = 0;
    QByteArray data;

    /// The terminal does not accept what was sent; the code is refusal().
    bool isRefusal() const { return (command >> 8) == 0x84; }
    quint8 refusal() const { return static_cast<quint8>(command & 0xff); }
};

constexpr int mostData = 0xffff;

/// The bytes of a message; empty if it has more than mostData.
QByteArray encoded(const Message& message);

/// Takes the first message out of `received`; nothing, and no change, if it is not there as a
/// whole.
std::optional<Message> takeMessage(QByteArray& received);

/// `value` as decimal digits, two in each of `bytes` bytes.
QByteArray digits(qint64 value, int bytes);

/// The number that such digits are; nothing if one of them is none.
std::optional<qint64> numberOf(const QByteArray& digits);

QByteArray field(Field number, const QByteArray& value);

using Fields = QHash<quint8, QByteArray>;

/// The fields of a message, without their lengths. Nothing if one is there twice, too.
std::optional<Fields> fieldsOf(const QByteArray& data);

/// One object of a container, and those in it.
struct Object
{
    quint32 tag = 0;
    QByteArray value;
};

/// The objects of a container, each followed by those inside of it.
std::optional<QVector<Object>> objectsOf(const QByteArray& container);

/// A number of a card without all but its last four digits: "**** 1234"; empty for none.
QString maskedNumber(const QByteArray& value);

/// What a terminal answers to an enquiry: its code, Done = it is ready.
std::optional<quint8> statusCode(const QByteArray& data);

/// The number of a currency (ISO 4217) by its code; 0 for one that is not in the table.
int currencyNumber(const QString& code);

/// What a code means, in words for the driver.
QString textOfCode(quint8 code);

/// The data of an intermediate status in words: those of the terminal, if it sends them.
QString textOfStatus(const QByteArray& data);

} // namespace rivo::payment::zvt
