#include "VirtualPrinter.h"

#include <QRandomGenerator>
#include <QTimer>

#include <algorithm>

namespace rivo::simulators
{

namespace
{

constexpr char DLE = 0x10;
constexpr char ESC = 0x1B;
constexpr char FS = 0x1C;
constexpr char GS = 0x1D;

int byteAt(const QByteArray& bytes, int at)
{
    return at < bytes.size() ? static_cast<uchar>(bytes.at(at)) : 0;
}

int wordAt(const QByteArray& bytes, int at)
{
    return byteAt(bytes, at) + 256 * byteAt(bytes, at + 1);
}

/// The commands that printers obey at once, whatever they are doing. Which of them `bytes` begin
/// with: their length, 0 if more bytes are needed to know, -1 for none.
int realTimeLength(const QByteArray& bytes)
{
    static const QByteArray clearing("\x10\x14\x08\x01\x03\x14\x01\x06\x02\x08", 10);
    if (bytes.size() == 1)
        return 0;
    const int kind = byteAt(bytes, 1);
    const int parameter = byteAt(bytes, 2);
    if (kind == 0x04 || kind == 0x05) {
        if (bytes.size() < 3)
            return 0;
        return parameter >= 1 && parameter <= (kind == 0x04 ? 4 : 2) ? 3 : -1;
    }
    if (!clearing.startsWith(bytes))
        return -1;
    return bytes.size() == clearing.size() ? bytes.size() : 0;
}

} // namespace

VirtualPrinter::VirtualPrinter(int dotsPerLine, QObject* parent)
    : QObject(parent), m_dotsPerLine(dotsPerLine)
{
}

bool VirtualPrinter::isStopped() const { return m_fault != Fault::None || m_isErrorPending; }

void VirtualPrinter::setFault(Fault fault)
{
    if (m_fault == fault)
        return;
    m_isErrorPending = m_isErrorPending || m_fault == Fault::CutterJam;
    m_fault = fault;
    m_commandsToFault = -1;
    emit faultChanged();
    work();
}

void VirtualPrinter::setFaultAfter(int commands, Fault fault)
{
    m_commandsToFault = commands;
    m_nextFault = fault;
}

void VirtualPrinter::setAnswers(Answers answers, int lateness)
{
    m_answers = answers;
    m_lateness = lateness;
}

void VirtualPrinter::answer(const QByteArray& bytes)
{
    switch (m_answers) {
    case Answers::Normal:
        emit answered(bytes);
        return;
    case Answers::Never:
        return;
    case Answers::Garbage: {
        QByteArray other(bytes.size() + 1, '\0');
        for (char& byte : other)
            byte = static_cast<char>(QRandomGenerator::global()->bounded(256));
        emit answered(other);
        return;
    }
    case Answers::Late:
        QTimer::singleShot(m_lateness, this, [this, bytes] { emit answered(bytes); });
        return;
    }
}

// What is obeyed at once.

void VirtualPrinter::receive(const QByteArray& bytes)
{
    for (const char byte : bytes) {
        if (m_realTime.isEmpty() && byte != DLE) {
            m_buffer.append(byte);
            continue;
        }
        m_realTime.append(byte);
        while (!m_realTime.isEmpty() && takeRealTime()) {
        }
    }
    work();
}

/// Whether something of m_realTime was taken.
bool VirtualPrinter::takeRealTime()
{
    if (m_realTime.at(0) != DLE) {
        m_buffer.append(m_realTime.at(0));
        m_realTime.remove(0, 1);
        return true;
    }
    const int length = realTimeLength(m_realTime);
    if (length == 0)
        return false;
    if (length < 0) {
        m_buffer.append(DLE);
        m_realTime.remove(0, 1);
        return true;
    }
    const QByteArray command = m_realTime.left(length);
    m_realTime.remove(0, length);
    if (command.at(1) == 0x04)
        answerStatus(command.at(2));
    else if (command.at(1) == 0x05)
        recover();
    else if (!m_isSimple)
        clear();
    return true;
}

void VirtualPrinter::answerStatus(int request)
{
    const bool isPaperOut = m_fault == Fault::PaperOut;
    const bool isJammed = m_fault == Fault::CutterJam || m_isErrorPending;
    const bool isError = isJammed || m_fault == Fault::Defect;
    int status = 0x12;
    switch (request) {
    case 1:
        status |= isStopped() ? 0x08 : 0;
        break;
    case 2:
        status |= (m_fault == Fault::CoverOpen ? 0x04 : 0) | (isPaperOut ? 0x20 : 0) |
                  (isError ? 0x40 : 0);
        break;
    case 3:
        status |= (isJammed ? 0x08 : 0) | (m_fault == Fault::Defect ? 0x20 : 0);
        break;
    default:
        status |= (m_isPaperNearEnd || isPaperOut ? 0x0C : 0) | (isPaperOut ? 0x60 : 0);
    }
    answer(QByteArray(1, static_cast<char>(status)));
}

/// What is on the paper already stays there.
void VirtualPrinter::clear()
{
    m_buffer.clear();
    m_line.clear();
    recover();
    answer(QByteArray("\x37\x25\x00", 3));
}

void VirtualPrinter::recover()
{
    if (m_isErrorPending && m_fault != Fault::CutterJam) {
        m_isErrorPending = false;
        m_buffer.clear();
        m_line.clear();
    }
}

// What is carried out in turn.

void VirtualPrinter::work()
{
    while (!isStopped() && !m_buffer.isEmpty()) {
        if (m_commandsToFault == 0)
            return setFault(m_nextFault);
        const int length = commandLength();
        if (length == 0 || length > m_buffer.size())
            return;
        const QByteArray command = m_buffer.left(length);
        m_buffer.remove(0, length);
        ++m_commandCount;
        if (m_commandsToFault > 0)
            --m_commandsToFault;
        carryOut(command);
    }
}

/// Of the command that m_buffer begins with; 0 if too little of it is there.
int VirtualPrinter::commandLength() const
{
    const char first = m_buffer.at(0);
    if (first != ESC && first != FS && first != GS)
        return 1;
    if (m_buffer.size() < 2)
        return 0;
    const char second = m_buffer.at(1);
    if (first == FS)
        return 2;
    if (first == ESC) {
        static const QByteArray bare("@2");
        return bare.contains(second) ? 2 : second == 'p' ? 5 : 3;
    }
    if (second == '(')
        return m_buffer.size() < 5 ? 0 : 5 + wordAt(m_buffer, 3);
    if (second == 'v')
        return m_buffer.size() < 8 ? 0 : 8 + wordAt(m_buffer, 4) * wordAt(m_buffer, 6);
    if (second == 'V')
        return m_buffer.size() < 3 ? 0 : byteAt(m_buffer, 2) >= 65 ? 4 : 3;
    return 3;
}

void VirtualPrinter::carryOut(const QByteArray& command)
{
    const char first = command.at(0);
    if (first == '\n')
        endLine();
    else if (first == ESC)
        carryOutEsc(command);
    else if (first == GS)
        carryOutGs(command);
    else if (static_cast<uchar>(first) >= 0x20)
        print(static_cast<uchar>(first));
    else if (first != FS || command.at(1) != '.')
        unknown(command);
}

void VirtualPrinter::carryOutEsc(const QByteArray& command)
{
    const int parameter = byteAt(command, 2);
    switch (command.at(1)) {
    case '@':
        m_style = Style();
        m_line.clear();
        break;
    case 'R':
    case 'M':
        break; // the letters and the font that are there already
    case 't':
        m_style.codePage = parameter;
        break;
    case 'a':
        m_style.align = parameter % 48;
        break;
    case 'E':
        m_style.isBold = parameter % 2 == 1;
        break;
    case 'd':
        endLine();
        feed(parameter * 30);
        break;
    case 'J':
        feed(parameter);
        break;
    case 'p':
        ++m_drawerPulses;
        break;
    default:
        unknown(command);
    }
}

void VirtualPrinter::carryOutGs(const QByteArray& command)
{
    const int parameter = byteAt(command, 2);
    switch (command.at(1)) {
    case '!':
        m_style.width = 1 + (parameter >> 4 & 7);
        m_style.height = 1 + (parameter & 7);
        break;
    case 'B':
        m_style.isReverse = parameter % 2 == 1;
        break;
    case 'v':
        addRaster(command);
        break;
    case 'V':
        cut();
        break;
    case 'r':
        answer(QByteArray(1, static_cast<char>(m_isPaperNearEnd ? 0x03 : 0)));
        break;
    case '(':
        if (parameter == 'k')
            carryOutCode(command);
        else if (parameter == 'H' && byteAt(command, 5) == 48 && !m_isSimple)
            answer(QByteArray(R"(7")") + command.mid(7, 4) + '\0');
        else
            unknown(command);
        break;
    default:
        unknown(command);
    }
}

void VirtualPrinter::carryOutCode(const QByteArray& command)
{
    if (byteAt(command, 5) != '1')
        return unknown(command);
    switch (byteAt(command, 6)) {
    case 65:
        break; // the model
    case 67:
        m_codeModule = std::clamp(byteAt(command, 7), 1, 16);
        break;
    case 69:
        m_codeLevel = byteAt(command, 7);
        break;
    case 80:
        m_code = command.mid(8);
        break;
    case 81:
        addCode();
        break;
    default:
        unknown(command);
    }
}

void VirtualPrinter::unknown(const QByteArray& command)
{
    m_unknown.append(QString::fromLatin1(command.left(8).toHex(' ')));
}

void VirtualPrinter::cut()
{
    m_current.picture = pictureOfCurrent();
    m_pieces.append(m_current);
    m_current = Piece();
    m_strips.clear();
    emit cutOff();
}

} // namespace rivo::simulators
