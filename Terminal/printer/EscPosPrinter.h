#pragma once

#include "EscPosEncoder.h"
#include "PrinterAnswers.h"

#include <PaperLayout.h>
#include <TicketPrinter.h>

#include <QTimer>

#include <memory>
#include <optional>

namespace rivo::config
{
struct PrinterConfig;
}

namespace rivo::printer
{

class ByteLink;

/// A ticket printer that understands ESC/POS.
///
/// A job is printed when the printer answers the request that follows it, which printers do after
/// they printed and cut what came before. A job is in doubt if a fault, a broken connection or a
/// missing answer came first. Then the printer is made to forget the rest of the job, and inDoubt()
/// follows when it can print again: what is on paper by then is all there will be of it.
class EscPosPrinter : public sales::TicketPrinter
{
    Q_OBJECT

public:
    /// Milliseconds.
    struct Times
    {
        int answer = 5000;    ///< that an answer or any progress may take
        int paper = 60000;    ///< that a job may take in all once it was sent
        int poll = 1000;      ///< between two questions for the state
        int reconnect = 1000; ///< until a lost connection is tried again
    };

    /// What proves that a job is on paper.
    enum class Proof {
        ProcessId, ///< GS ( H: the printer repeats a number of the job
        Sensor     ///< GS r: for printers that do not know GS ( H
    };

    /// Connects at once. `link` is not open.
    EscPosPrinter(std::unique_ptr<ByteLink> link, EscPosFormat format, ticket::PaperContext context,
                  const Times& times, Proof proof = Proof::ProcessId);
    ~EscPosPrinter() override;

    void print(const sales::PrintJob& job) override;

private:
    enum class Step {
        Closed,   ///< until the next attempt to connect
        Opening,  ///< until the link is open
        Clearing, ///< until the printer forgot what it did not print
        Asking,   ///< for the state, before anything else
        Draining, ///< until what the printer did not forget is printed
        Ready,    ///< nothing to do; the state is asked for from time to time
        Faulty,   ///< the same with a fault
        Printing  ///< until the printer proves that the job is on paper
    };
    enum class Progress { None, Waiting, Sent, Doubtful };

    void connectLink();
    void disconnectLink(const QString& fault);
    void clear();
    void ask();
    void drain();
    void beReady();
    void send();
    void finish();
    void doubt(const QString& fault);
    void receive(const QByteArray& bytes);
    void receive(const PrinterAnswer& answer);
    void judge(const PrinterStatus& status);
    void timeOut();
    void poll();
    void requestProof();
    bool isProof(const PrinterAnswer& answer) const;
    void dropJob();

    const std::unique_ptr<ByteLink> m_link;
    const EscPosFormat m_format;
    const ticket::PaperContext m_context;
    const Times m_times;
    const Proof m_proof;

    Step m_step = Step::Closed;
    bool m_isDrained = false; ///< the printer has nothing of an earlier job any more
    AnswerReader m_reader;
    std::array<uchar, 4> m_answers = {}; ///< to the question for the state
    std::size_t m_answerCount = 0;
    bool m_isAsking = false;
    QByteArray m_id; ///< that the printer has to repeat
    quint32 m_lastId;
    int m_pollsWithCutterError = 0;

    sales::PrintJob m_job;
    Progress m_progress = Progress::None;

    QTimer m_patience; ///< ends when an answer is overdue
    QTimer m_deadline; ///< ends when a job takes too long
    QTimer m_nextStep; ///< to connect, or to ask for the state
};

/// The printer of a configuration, which has one. A logo that cannot be read is left out.
std::unique_ptr<EscPosPrinter> makePrinter(const config::PrinterConfig& config,
                                           const ticket::PaperContext& context);

} // namespace rivo::printer
