#pragma once

#include <QByteArray>
#include <QVector>

#include <array>

namespace rivo::printer
{

/// What a printer reports about itself, of the answers to DLE EOT 1 to 4.
struct PrinterStatus
{
    bool isOffline = false;
    bool isCoverOpen = false;
    bool isFeeding = false; ///< by its button
    bool isPaperOut = false;
    bool isPaperNearEnd = false;
    bool hasCutterError = false;
    bool hasUnrecoverableError = false;
    bool hasPassingError = false; ///< recovers by itself, such as a hot print head
    bool hasOtherError = false;

    bool canPrint() const;
};

/// The status of the four answers, in the order of the requests.
PrinterStatus statusOf(const std::array<uchar, 4>& answers);

/// Something that a printer sent.
struct PrinterAnswer
{
    enum class Kind {
        Status,    ///< to DLE EOT: `byte`
        Sensor,    ///< to GS r: `byte`
        ProcessId, ///< to GS ( H: `id`
        Cleared,   ///< to DLE DC4 8
        Unknown    ///< a byte that is no answer
    };
    Kind kind = Kind::Unknown;
    uchar byte = 0;
    QByteArray id; ///< four letters
};

/// Takes the bytes of a printer apart, however they are divided. Any bytes are accepted.
class AnswerReader
{
public:
    QVector<PrinterAnswer> read(const QByteArray& bytes);

    /// Forgets the beginning of an answer.
    void reset() { m_pending.clear(); }

private:
    QByteArray m_pending; ///< the beginning of an answer; at most 6 bytes between calls
};

// What is sent for these answers.

QByteArray statusRequests(); ///< DLE EOT 1 to 4
QByteArray sensorRequest();  ///< GS r 1
/// GS ( H. `id`: four letters from blank to "~".
QByteArray processIdRequest(const QByteArray& id);
QByteArray clearRequest();   ///< DLE DC4 8: forgets what is not printed yet
QByteArray recoverRequest(); ///< DLE ENQ 2: ends an error that was repaired, and forgets the rest

} // namespace rivo::printer
