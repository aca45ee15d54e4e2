#include "EscPosPrinter.h"

#include "ByteLink.h"

#include <QRandomGenerator>

namespace rivo::printer
{

namespace
{

using Kind = PrinterAnswer::Kind;

/// The cutter moves when an error is ended, so that is not tried at every question.
constexpr int pollsPerRecovery = 4;

/// Four letters of a number, none of which begins another answer or a command.
QByteArray lettersOf(quint32 number)
{
    constexpr quint32 letters = 26;
    QByteArray id;
    for (int at = 0; at < 4; ++at) {
        id.append(static_cast<char>('A' + number % letters));
        number /= letters;
    }
    return id;
}

} // namespace

EscPosPrinter::EscPosPrinter(std::unique_ptr<ByteLink> link, EscPosFormat format,
                             ticket::PaperContext context, const Times& times, Proof proof)
    : m_link(std::move(link)), m_format(std::move(format)), m_context(std::move(context)),
      m_times(times), m_proof(proof), m_lastId(QRandomGenerator::global()->generate())
{
    for (QTimer* timer : {&m_patience, &m_deadline, &m_nextStep})
        timer->setSingleShot(true);
    connect(&m_patience, &QTimer::timeout, this, &EscPosPrinter::timeOut);
    connect(&m_deadline, &QTimer::timeout, this, &EscPosPrinter::timeOut);
    connect(&m_nextStep, &QTimer::timeout, this, &EscPosPrinter::poll);
    connect(m_link.get(), &ByteLink::opened, this, [this] {
        if (m_step == Step::Opening)
            clear();
    });
    connect(m_link.get(), &ByteLink::closed, this,
            [this](const QString& reason) { disconnectLink(tr("Not connected: %1").arg(reason)); });
    connect(m_link.get(), &ByteLink::received, this,
            qOverload<const QByteArray&>(&EscPosPrinter::receive));
    connect(m_link.get(), &ByteLink::progress, this, [this] {
        if (m_patience.isActive())
            m_patience.start();
    });
    storeFault(tr("Being connected"));
    connectLink();
}

EscPosPrinter::~EscPosPrinter() { m_link->close(); }

void EscPosPrinter::print(const sales::PrintJob& job)
{
    m_job = job;
    m_progress = Progress::Waiting;
    if (!fault().isEmpty())
        QTimer::singleShot(0, this, &EscPosPrinter::dropJob);
    else if (m_step == Step::Ready)
        ask();
}

/// A job of which nothing was sent.
void EscPosPrinter::dropJob()
{
    if (m_progress != Progress::Waiting)
        return;
    m_progress = Progress::None;
    emit failed();
}

// The connection.

void EscPosPrinter::connectLink()
{
    m_step = Step::Opening;
    m_reader.reset();
    m_isAsking = false;
    m_isDrained = false;
    m_patience.start(m_times.answer);
    m_link->open();
}

void EscPosPrinter::disconnectLink(const QString& fault)
{
    m_link->close();
    m_step = Step::Closed;
    m_isAsking = false;
    m_patience.stop();
    m_deadline.stop();
    m_nextStep.start(m_times.reconnect);
    if (m_progress == Progress::Sent)
        m_progress = Progress::Doubtful;
    storeFault(fault);
    dropJob();
}

/// An answer, or the progress of a job, is overdue.
void EscPosPrinter::timeOut()
{
    if (m_step == Step::Clearing)
        return ask(); // it does not know the command
    disconnectLink(m_step == Step::Opening ? tr("Not connected") : tr("Does not answer"));
}

void EscPosPrinter::poll()
{
    if (m_step == Step::Closed)
        return connectLink();
    if (m_step == Step::Printing && m_link->bytesToWrite() > 0)
        return m_nextStep.start(m_times.poll); // a question could become part of a picture
    ask();
}

// What the printer is asked.

void EscPosPrinter::clear()
{
    m_step = Step::Clearing;
    m_isAsking = false;
    m_isDrained = false;
    m_nextStep.stop();
    m_patience.start(m_times.answer);
    m_link->write(clearRequest());
}

/// While a job is printed, the state is asked for beside.
void EscPosPrinter::ask()
{
    m_nextStep.stop();
    if (m_step != Step::Printing && m_step != Step::Draining)
        m_step = Step::Asking;
    if (m_isAsking)
        return;
    m_isAsking = true;
    m_answerCount = 0;
    m_patience.start(m_times.answer);
    m_link->write(statusRequests());
}

/// What the printer did not forget is printed before it answers. The remains of a job are cut off.
void EscPosPrinter::drain()
{
    m_step = Step::Draining;
    m_deadline.start(m_times.paper);
    if (m_progress == Progress::Doubtful && m_format.cut)
        m_link->write(cut());
    m_patience.start(m_times.answer);
    m_nextStep.start(m_times.poll);
    requestProof();
}

void EscPosPrinter::requestProof()
{
    m_id = lettersOf(++m_lastId);
    m_link->write(m_proof == Proof::ProcessId ? processIdRequest(m_id) : sensorRequest());
}

bool EscPosPrinter::isProof(const PrinterAnswer& answer) const
{
    return m_proof == Proof::Sensor ? answer.kind == Kind::Sensor
                                    : answer.kind == Kind::ProcessId && answer.id == m_id;
}

// What the printer answers.

void EscPosPrinter::receive(const QByteArray& bytes)
{
    const QVector<PrinterAnswer> answers = m_reader.read(bytes);
    for (const PrinterAnswer& answer : answers)
        receive(answer);
}

void EscPosPrinter::receive(const PrinterAnswer& answer)
{
    switch (m_step) {
    case Step::Clearing:
        if (answer.kind == Kind::Cleared)
            ask(); // what was answered before is of no interest
        return;
    case Step::Draining:
    case Step::Printing:
        if (isProof(answer))
            return m_step == Step::Printing ? finish() : beReady();
        break;
    case Step::Asking:
        if (answer.kind == Kind::Cleared)
            m_answerCount = 0; // a late answer: those to the question follow
        break;
    default:
        return;
    }
    if (!m_isAsking || answer.kind != Kind::Status)
        return;
    m_answers[m_answerCount++] = answer.byte;
    if (m_answerCount < m_answers.size())
        return;
    m_isAsking = false;
    m_patience.stop();
    judge(statusOf(m_answers));
}

void EscPosPrinter::judge(const PrinterStatus& status)
{
    storeNotice(status.isPaperNearEnd ? tr("Little paper left") : QString());
    if (!status.canPrint()) {
        const QString fault = status.isPaperOut              ? tr("Out of paper")
                              : status.isCoverOpen           ? tr("Cover open")
                              : status.hasCutterError        ? tr("The cutter is jammed")
                              : status.hasUnrecoverableError ? tr("Defective: switch it off and on")
                              : status.hasPassingError       ? tr("Too hot: it goes on by itself")
                              : status.isFeeding             ? tr("Paper is being fed")
                              : status.hasOtherError         ? tr("Error")
                                                             : tr("Off-line");
        if (m_step == Step::Printing)
            return doubt(fault);
        m_step = Step::Faulty;
        m_deadline.stop();
        m_nextStep.start(m_times.poll);
        m_pollsWithCutterError = status.hasCutterError ? m_pollsWithCutterError + 1 : 0;
        if (m_pollsWithCutterError % pollsPerRecovery == 1)
            m_link->write(recoverRequest());
        storeFault(fault);
        return dropJob();
    }
    if (m_step == Step::Asking && !m_isDrained)
        return drain();
    if (m_step == Step::Asking)
        return beReady();
    m_nextStep.start(m_times.poll); // the job, or an earlier one, is not out yet
    m_patience.start(m_times.answer);
}

// The job.

void EscPosPrinter::beReady()
{
    m_isDrained = true;
    m_pollsWithCutterError = 0;
    m_deadline.stop();
    if (m_progress == Progress::Waiting)
        return send();
    m_step = m_isAsking ? Step::Asking : Step::Ready; // an answer may still be missing
    if (!m_isAsking) {
        m_patience.stop();
        m_nextStep.start(m_times.poll);
    }
    const bool isDoubtful = m_progress == Progress::Doubtful;
    m_progress = Progress::None;
    storeFault({}); // may bring the next job
    if (isDoubtful)
        emit inDoubt();
}

void EscPosPrinter::send()
{
    // Before the time of the answer begins: the first picture of a text loads fonts.
    const QByteArray paper = encode(ticket::layOut(m_job, m_context), m_format);
    m_step = Step::Printing;
    m_progress = Progress::Sent;
    m_deadline.start(m_times.paper);
    m_patience.start(m_times.answer);
    m_nextStep.start(m_times.poll);
    if (m_job.opensDrawer)
        m_link->write(drawerPulse());
    m_link->write(paper);
    requestProof();
}

void EscPosPrinter::finish()
{
    m_progress = Progress::None;
    keep(m_job);
    beReady();
    emit printed();
}

/// The rest of the job must not come out when the fault is gone.
void EscPosPrinter::doubt(const QString& fault)
{
    m_progress = Progress::Doubtful;
    m_deadline.stop();
    clear();
    storeFault(fault);
}

} // namespace rivo::printer
