#include "PrinterAnswers.h"

#include <algorithm>
#include <optional>

namespace rivo::printer
{

namespace
{

using Kind = PrinterAnswer::Kind;

constexpr uchar header = 0x37; ///< of the answers with more than one byte
constexpr uchar processId = 0x22;
constexpr uchar cleared = 0x25;
constexpr int idSize = 4;

bool isStatus(uchar byte) { return (byte & 0x93) == 0x12; }
bool isSensor(uchar byte) { return (byte & 0x90) == 0; }
bool isLetter(char byte) { return byte >= ' ' && byte <= '~'; }

enum class Found { Answer, Nothing, TooLittle };

/// An answer of several bytes at the beginning of `bytes`, which begin with the header.
Found readBlock(const QByteArray& bytes, PrinterAnswer& answer, int& length)
{
    if (bytes.size() < 2)
        return Found::TooLittle;
    const auto kind = static_cast<uchar>(bytes.at(1));
    if (kind != processId && kind != cleared)
        return Found::Nothing;
    const int letters = kind == processId ? idSize : 0;
    for (int at = 2; at < std::min(bytes.size(), 2 + letters); ++at) {
        if (!isLetter(bytes.at(at)))
            return Found::Nothing;
    }
    length = 2 + letters + 1;
    if (bytes.size() < length)
        return Found::TooLittle;
    if (bytes.at(length - 1) != '\0')
        return Found::Nothing;
    answer.kind = kind == processId ? Kind::ProcessId : Kind::Cleared;
    answer.id = bytes.mid(2, letters);
    return Found::Answer;
}

PrinterAnswer singleByte(uchar byte)
{
    const Kind kind = isStatus(byte) ? Kind::Status : isSensor(byte) ? Kind::Sensor : Kind::Unknown;
    return {kind, byte, {}};
}

} // namespace

bool PrinterStatus::canPrint() const
{
    return !isOffline && !isCoverOpen && !isFeeding && !isPaperOut && !hasCutterError &&
           !hasUnrecoverableError && !hasPassingError && !hasOtherError;
}

PrinterStatus statusOf(const std::array<uchar, 4>& answers)
{
    const auto has = [&answers](std::size_t request, int bits) {
        return (answers[request - 1] & bits) != 0;
    };
    PrinterStatus status;
    status.isOffline = has(1, 0x08);
    status.isCoverOpen = has(2, 0x04);
    status.isFeeding = has(2, 0x08);
    status.isPaperOut = has(2, 0x20) || has(4, 0x60);
    status.isPaperNearEnd = has(4, 0x0C);
    status.hasCutterError = has(3, 0x08);
    status.hasUnrecoverableError = has(3, 0x20);
    status.hasPassingError = has(3, 0x40);
    status.hasOtherError = has(2, 0x40);
    return status;
}

QVector<PrinterAnswer> AnswerReader::read(const QByteArray& bytes)
{
    m_pending += bytes;
    QVector<PrinterAnswer> answers;
    int at = 0;
    while (at < m_pending.size()) {
        const auto byte = static_cast<uchar>(m_pending.at(at));
        PrinterAnswer answer = singleByte(byte);
        int length = 1;
        if (byte == header) {
            const Found found = readBlock(m_pending.mid(at, 2 + idSize + 1), answer, length);
            if (found == Found::TooLittle)
                break;
            if (found == Found::Nothing)
                length = 1;
        }
        answers.append(answer);
        at += length;
    }
    m_pending.remove(0, at);
    return answers;
}

QByteArray statusRequests()
{
    return QByteArrayLiteral("\x10\x04\x01\x10\x04\x02\x10\x04\x03\x10\x04\x04");
}

QByteArray sensorRequest() { return QByteArrayLiteral("\x1Dr\x01"); }

QByteArray processIdRequest(const QByteArray& id)
{
    return QByteArrayLiteral("\x1D(H\x06\x00\x30\x30") + id;
}

QByteArray clearRequest() { return QByteArrayLiteral("\x10\x14\x08\x01\x03\x14\x01\x06\x02\x08"); }

QByteArray recoverRequest() { return QByteArrayLiteral("\x10\x05\x02"); }

} // namespace rivo::printer
