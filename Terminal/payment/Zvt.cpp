#include "Zvt_p.h"

#include <algorithm>
#include <array>

namespace rivo::payment::zvt
{

namespace
{

constexpr int headSize = 3;
constexpr int extendedHeadSize = 5;
constexpr int extended = 0xff; ///< the length is in the two bytes that follow

/// Lengths of fields that are not fixed: two or three digits, each in a byte F0 to F9.
enum : int { TwoDigits = -2, ThreeDigits = -3, ByContainer = -1 };

struct FieldLength
{
    quint8 number;
    int length;
};

constexpr std::array<FieldLength, 49> lengths{{{0x01, 1},
                                               {0x02, 1},
                                               {0x03, 1},
                                               {Amount, 6},
                                               {0x05, 1},
                                               {Container, ByContainer},
                                               {Trace, 3},
                                               {Time, 3},
                                               {Date, 2},
                                               {0x0e, 2},
                                               {0x17, 2},
                                               {0x19, 1},
                                               {CardNumber, TwoDigits},
                                               {0x23, TwoDigits},
                                               {0x24, ThreeDigits},
                                               {ResultCode, 1},
                                               {TerminalId, 4},
                                               {0x2a, 15},
                                               {0x2d, TwoDigits},
                                               {0x2e, ThreeDigits},
                                               {OriginalTrace, 3},
                                               {0x3a, 2},
                                               {0x3b, 8},
                                               {0x3c, ThreeDigits},
                                               {0x3d, 3},
                                               {CurrencyCode, 2},
                                               {Totals, ThreeDigits},
                                               {ReceiptNumber, 2},
                                               {0x88, 3},
                                               {0x8a, 1},
                                               {CardName, TwoDigits},
                                               {0x8c, 1},
                                               {0x92, ThreeDigits},
                                               {0x9a, ThreeDigits},
                                               {0xa0, 1},
                                               {0xa7, TwoDigits},
                                               {0xaa, 3},
                                               {0xaf, ThreeDigits},
                                               {0xba, 5},
                                               {0xd0, 1},
                                               {0xd1, TwoDigits},
                                               {0xd2, 1},
                                               {0xd3, 1},
                                               {0xe0, 1},
                                               {0xe1, TwoDigits},
                                               {0xe2, TwoDigits},
                                               {0xe3, TwoDigits},
                                               {0xe4, TwoDigits},
                                               {0xf0, TwoDigits}}};

quint8 byteAt(const QByteArray& data, int at) { return static_cast<quint8>(data.at(at)); }

std::optional<int> lengthOf(quint8 number)
{
    const auto* const found =
        std::find_if(lengths.begin(), lengths.end(),
                     [number](const FieldLength& each) { return each.number == number; });
    return found == lengths.end() ? std::nullopt : std::make_optional(found->length);
}

/// Reads `count` digits of a length, each in the lower half of a byte Fx.
std::optional<int> lengthInDigits(const QByteArray& data, int& at, int count)
{
    if (data.size() - at < count)
        return std::nullopt;
    int length = 0;
    for (const int end = at + count; at < end; ++at) {
        const int digit = byteAt(data, at) - 0xf0;
        if (digit < 0 || digit > 9)
            return std::nullopt;
        length = 10 * length + digit;
    }
    return length;
}

/// Reads the length of an object: one byte below 80, else 81 or 82 and one or two bytes.
std::optional<int> lengthOfObject(const QByteArray& data, int& at)
{
    if (at >= data.size())
        return std::nullopt;
    const quint8 first = byteAt(data, at++);
    if (first < 0x80)
        return first;
    const int more = first - 0x80;
    if (more < 1 || more > 2 || data.size() - at < more)
        return std::nullopt;
    int length = 0;
    for (const int end = at + more; at < end; ++at)
        length = 256 * length + byteAt(data, at);
    return length;
}

std::optional<int> lengthOfField(const QByteArray& data, int& at, int length)
{
    switch (length) {
    case TwoDigits:
    case ThreeDigits:
        return lengthInDigits(data, at, -length);
    case ByContainer:
        return lengthOfObject(data, at);
    default:
        return length;
    }
}

/// Takes `length` bytes from `at` on.
std::optional<QByteArray> take(const QByteArray& data, int& at, std::optional<int> length)
{
    if (!length || *length > data.size() - at)
        return std::nullopt;
    const QByteArray taken = data.mid(at, *length);
    at += *length;
    return taken;
}

std::optional<quint32> takeTag(const QByteArray& data, int& at)
{
    constexpr quint8 longTag = 0x1f;
    quint32 tag = byteAt(data, at++);
    if ((tag & longTag) != longTag)
        return tag;
    for (int bytes = 0; bytes < 2 && at < data.size(); ++bytes) {
        const quint8 next = byteAt(data, at++);
        tag = tag << 8 | next;
        if ((next & 0x80) == 0)
            return tag;
    }
    return std::nullopt;
}

bool isConstructed(quint32 tag)
{
    while (tag > 0xff)
        tag >>= 8;
    return (tag & 0x20) != 0;
}

bool addObjects(const QByteArray& data, int depth, QVector<Object>& objects)
{
    constexpr int deepest = 8;
    if (depth > deepest)
        return false;
    int at = 0;
    while (at < data.size()) {
        const auto tag = takeTag(data, at);
        const auto value = tag ? take(data, at, lengthOfObject(data, at)) : std::nullopt;
        if (!value)
            return false;
        objects.append({*tag, *value});
        if (isConstructed(*tag) && !addObjects(*value, depth + 1, objects))
            return false;
    }
    return true;
}

} // namespace

QByteArray encoded(const Message& message)
{
    const int size = message.data.size();
    if (size > mostData)
        return {};
    QByteArray bytes;
    bytes.append(static_cast<char>(message.command >> 8));
    bytes.append(static_cast<char>(message.command & 0xff));
    if (size < extended) {
        bytes.append(static_cast<char>(size));
    } else {
        bytes.append(static_cast<char>(extended));
        bytes.append(static_cast<char>(size & 0xff));
        bytes.append(static_cast<char>(size >> 8));
    }
    return bytes + message.data;
}

std::optional<Message> takeMessage(QByteArray& received)
{
    if (received.size() < headSize)
        return std::nullopt;
    int head = headSize;
    int size = byteAt(received, 2);
    if (size == extended) {
        head = extendedHeadSize;
        if (received.size() < head)
            return std::nullopt;
        size = byteAt(received, 3) | byteAt(received, 4) << 8;
    }
    if (received.size() - head < size)
        return std::nullopt;
    Message message;
    message.command = static_cast<quint16>(byteAt(received, 0) << 8 | byteAt(received, 1));
    message.data = received.mid(head, size);
    received.remove(0, head + size);
    return message;
}

QByteArray digits(qint64 value, int bytes)
{
    QByteArray made(bytes, '\0');
    for (int at = bytes - 1; at >= 0; --at, value /= 100)
        made[at] = static_cast<char>(value / 10 % 10 << 4 | value % 10);
    return made;
}

std::optional<qint64> numberOf(const QByteArray& digits)
{
    constexpr int mostBytes = 8;
    qint64 number = 0;
    if (digits.size() > mostBytes)
        return std::nullopt;
    for (const char each : digits) {
        const int high = static_cast<quint8>(each) >> 4;
        const int low = static_cast<quint8>(each) & 0x0f;
        if (high > 9 || low > 9)
            return std::nullopt;
        number = number * 100 + high * 10 + low;
    }
    return number;
}

QByteArray field(Field number, const QByteArray& value)
{
    return QByteArray(1, static_cast<char>(number)) + value;
}

std::optional<Fields> fieldsOf(const QByteArray& data)
{
    Fields fields;
    int at = 0;
    while (at < data.size()) {
        const quint8 number = byteAt(data, at++);
        const auto length = lengthOf(number);
        const auto value = length ? take(data, at, lengthOfField(data, at, *length)) : std::nullopt;
        if (!value || fields.contains(number))
            return std::nullopt;
        fields.insert(number, *value);
    }
    return fields;
}

std::optional<QVector<Object>> objectsOf(const QByteArray& container)
{
    QVector<Object> objects;
    return addObjects(container, 0, objects) ? std::make_optional(objects) : std::nullopt;
}

QString maskedNumber(const QByteArray& value)
{
    constexpr int shown = 4;
    const QByteArray hex = value.toHex();
    QString digits;
    for (const char each : hex) {
        if (each == 'f')
            break;
        digits.append(QLatin1Char(each >= '0' && each <= '9' ? each : '*'));
    }
    return digits.isEmpty() ? QString() : QStringLiteral("**** ") + digits.right(shown);
}

std::optional<quint8> statusCode(const QByteArray& data)
{
    int at = 0;
    if (!data.isEmpty() && byteAt(data, 0) == 0xf0) {
        ++at;
        if (!take(data, at, lengthInDigits(data, at, 2)))
            return std::nullopt;
    }
    return at < data.size() ? std::make_optional(byteAt(data, at)) : std::nullopt;
}

} // namespace rivo::payment::zvt
