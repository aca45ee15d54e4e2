#include "PrinterPorts.h"
#include "VirtualPrinter.h"

#include <ProgramStart.h>

#include <QCommandLineParser>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QMap>
#include <QSocketNotifier>
#include <QTextStream>

#include <cstdio>
#include <unistd.h>

namespace
{

using namespace rivo::simulators;

enum ExitCode { Done = 0, Failed = 1, BadInput = 2 };

void say(const QString& line) { QTextStream(stdout) << line << '\n'; }

/// Saves each piece of paper as it is cut off.
class Tray
{
public:
    Tray(VirtualPrinter& printer, const QDir& folder) : m_printer(printer), m_folder(folder)
    {
        QObject::connect(&printer, &VirtualPrinter::cutOff, &printer, [this] { takePieces(); });
    }

private:
    void takePieces()
    {
        for (const VirtualPrinter::Piece& piece : m_printer.pieces()) {
            const QString file = m_folder.filePath(
                QStringLiteral("paper-%1.png").arg(++m_count, 4, 10, QLatin1Char('0')));
            if (piece.picture.save(file))
                say(file);
            else
                reportFailure(QStringLiteral("cannot write %1").arg(file));
        }
        m_printer.takePieces();
    }

    VirtualPrinter& m_printer;
    const QDir m_folder;
    int m_count = 0;
};

/// Carries out one line of the standard input; false if it is none that is known.
bool obey(const QString& line, VirtualPrinter& printer, NetworkPort& network, LinePort& serial)
{
    using Fault = VirtualPrinter::Fault;
    using Answers = VirtualPrinter::Answers;
    static const QMap<QString, Fault> faults{{QStringLiteral("ok"), Fault::None},
                                             {QStringLiteral("paper-out"), Fault::PaperOut},
                                             {QStringLiteral("cover-open"), Fault::CoverOpen},
                                             {QStringLiteral("cutter-jam"), Fault::CutterJam},
                                             {QStringLiteral("off-line"), Fault::Offline},
                                             {QStringLiteral("defect"), Fault::Defect}};
    static const QMap<QString, Answers> answers{{QStringLiteral("normal"), Answers::Normal},
                                                {QStringLiteral("never"), Answers::Never},
                                                {QStringLiteral("garbage"), Answers::Garbage},
                                                {QStringLiteral("late"), Answers::Late}};
    const QStringList words = line.simplified().split(QLatin1Char(' '));
    const QString& name = words.first();
    const QString parameter = words.value(1);
    if (faults.contains(name) && parameter.isEmpty())
        printer.setFault(faults.value(name));
    else if (faults.contains(name))
        printer.setFaultAfter(parameter.toInt(), faults.value(name));
    else if (name == QLatin1String("near-end"))
        printer.setPaperNearEnd(parameter != QLatin1String("no"));
    else if (name == QLatin1String("answers") && answers.contains(parameter))
        printer.setAnswers(answers.value(parameter), words.value(2).toInt());
    else if (name == QLatin1String("drop"))
        network.dropAfter(parameter.toLongLong());
    else if (name == QLatin1String("unplug")) {
        network.setPlugged(false);
        serial.unplug();
    } else if (name == QLatin1String("plug"))
        network.setPlugged(true);
    else
        return false;
    return true;
}

} // namespace

int main(int argc, char* argv[])
{
    // The paper is drawn without a screen.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    nameProgram(QStringLiteral("virtual-printer"));
    const QGuiApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "A ticket printer that draws its paper. Reads faults from the standard input: ok, "
        "paper-out, cover-open, cutter-jam, off-line, defect (each also after a number of "
        "commands), near-end [no], answers normal|never|garbage|late MILLISECONDS, drop BYTES, "
        "unplug, plug."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption tcp(QStringLiteral("tcp"),
                                 QStringLiteral("TCP port to listen on; 0 = any."),
                                 QStringLiteral("port"), QStringLiteral("9100"));
    const QCommandLineOption pty(
        QStringLiteral("pty"), QStringLiteral("Be a serial printer at a pseudo terminal instead."));
    const QCommandLineOption paper(QStringLiteral("paper"),
                                   QStringLiteral("Folder for pictures of the paper."),
                                   QStringLiteral("folder"), QStringLiteral("."));
    const QCommandLineOption width(QStringLiteral("width"),
                                   QStringLiteral("Dots of a line, 192 to 1664."),
                                   QStringLiteral("dots"), QStringLiteral("384"));
    const QCommandLineOption simple(QStringLiteral("simple"),
                                    QStringLiteral("Know neither GS ( H nor DLE DC4."));
    parser.addOptions({tcp, pty, paper, width, simple});
    parser.process(application);

    const int dots = parser.value(width).toInt();
    if (dots < 192 || dots > 1664 || !parser.positionalArguments().isEmpty()) {
        reportFailure(QStringLiteral("--width is a number from 192 to 1664"));
        return BadInput;
    }
    const QDir folder(parser.value(paper));
    if (!folder.mkpath(QStringLiteral("."))) {
        reportFailure(QStringLiteral("cannot write %1").arg(folder.path()));
        return Failed;
    }
    VirtualPrinter printer(dots);
    printer.setSimple(parser.isSet(simple));
    const Tray tray(printer, folder);
    NetworkPort network(printer);
    LinePort serial(printer);
    const bool isOpen =
        parser.isSet(pty) ? serial.open() : network.listen(parser.value(tcp).toInt());
    if (!isOpen) {
        reportFailure(QStringLiteral("cannot be reached"));
        return Failed;
    }
    say(parser.isSet(pty) ? QStringLiteral("device %1").arg(serial.name())
                          : QStringLiteral("port %1").arg(network.port()));

    QFile input;
    QSocketNotifier hasInput(STDIN_FILENO, QSocketNotifier::Read);
    if (!input.open(STDIN_FILENO, QIODevice::ReadOnly | QIODevice::Unbuffered))
        return Failed;
    QObject::connect(&hasInput, &QSocketNotifier::activated, &application, [&] {
        const QByteArray line = input.readLine();
        if (line.isEmpty())
            hasInput.setEnabled(false); // goes on printing without orders
        else if (!obey(QString::fromUtf8(line), printer, network, serial))
            reportFailure(QStringLiteral("not known: %1").arg(QString::fromUtf8(line).trimmed()));
    });
    return QGuiApplication::exec();
}
