#pragma once

#include <QByteArray>
#include <QImage>
#include <QObject>
#include <QStringList>
#include <QVector>

#include <optional>

namespace rivo::simulators
{

/// A ticket printer that is a program: understands the commands of ESC/POS that ticket printers
/// have in common, draws what would be on the paper, and answers as a printer does. It has its own
/// reading of the commands and shares nothing with the program that prints.
class VirtualPrinter : public QObject
{
    Q_OBJECT

public:
    enum class Fault {
        None,
        PaperOut,
        CoverOpen,
        CutterJam, ///< stays after the cause is gone, until the host ends the error
        Offline,
        Defect ///< cannot be ended by the host
    };
    enum class Answers {
        Normal,
        Never,
        Garbage, ///< other bytes than those that are expected
        Late     ///< after lateness() milliseconds
    };

    /// What came out, from one cut to the next.
    struct Piece
    {
        QImage picture; ///< null if nothing is drawn
        QStringList lines;
        QStringList codes; ///< contents of square codes
    };

    explicit VirtualPrinter(int dotsPerLine = 384, QObject* parent = nullptr);

    /// Bytes from the host.
    void receive(const QByteArray& bytes);

    void setFault(Fault fault);
    Fault fault() const { return m_fault; }

    /// A fault after so many further commands were carried out.
    void setFaultAfter(int commands, Fault fault);

    void setPaperNearEnd(bool isNear) { m_isPaperNearEnd = isNear; }
    void setAnswers(Answers answers, int lateness = 0);

    /// Without pictures of the paper; they take most of the time.
    void setDrawing(bool isDrawing) { m_isDrawing = isDrawing; }

    /// GS ( H is not known, and neither is DLE DC4.
    void setSimple(bool isSimple) { m_isSimple = isSimple; }

    const QVector<Piece>& pieces() const { return m_pieces; } ///< that were cut off
    const Piece& current() const { return m_current; }        ///< that is still in the printer
    void takePieces() { m_pieces.clear(); }                   ///< the passengers have them

    int commandCount() const { return m_commandCount; } ///< that were carried out
    int drawerPulses() const { return m_drawerPulses; }
    const QStringList& unknownCommands() const { return m_unknown; } ///< in hexadecimal digits

    /// The uncut piece as a picture.
    QImage pictureOfCurrent() const;

signals:
    void answered(const QByteArray& bytes);
    void cutOff(); ///< a piece was added to pieces()
    void faultChanged();

private:
    struct Style
    {
        int codePage = 0;
        int align = 0;
        bool isBold = false;
        bool isReverse = false;
        int width = 1;
        int height = 1;
    };
    struct Letter
    {
        QChar letter;
        Style style;
    };

    bool isStopped() const;
    void answer(const QByteArray& bytes);
    bool takeRealTime();
    void answerStatus(int request);
    void clear();
    void recover();
    void work();
    int commandLength() const;
    int parametricLength(int header) const;
    void carryOut(const QByteArray& command);
    void carryOutEsc(const QByteArray& command);
    void carryOutGs(const QByteArray& command);
    void carryOutCode(const QByteArray& command);
    void unknown(const QByteArray& command);
    void print(uchar byte);
    void endLine();
    void feed(int dots);
    void addRaster(const QByteArray& command);
    void addCode();
    void addStrip(const QImage& strip);
    void cut();
    QImage drawLine() const;

    const int m_dotsPerLine;
    Fault m_fault = Fault::None;
    bool m_isErrorPending = false; ///< the cutter was repaired, and the host did not end the error
    Fault m_nextFault = Fault::None;
    int m_commandsToFault = -1;
    bool m_isPaperNearEnd = false;
    bool m_isDrawing = true;
    bool m_isSimple = false;
    Answers m_answers = Answers::Normal;
    int m_lateness = 0;

    QByteArray m_realTime; ///< the beginning of a command of the real-time kind
    QByteArray m_buffer;   ///< what is not carried out yet
    Style m_style;
    QVector<Letter> m_line;
    QByteArray m_code;
    int m_codeModule = 3;
    int m_codeLevel = '0';
    Piece m_current;
    QVector<QImage> m_strips; ///< of m_current
    QVector<Piece> m_pieces;
    int m_commandCount = 0;
    int m_drawerPulses = 0;
    QStringList m_unknown;
};

} // namespace rivo::simulators
