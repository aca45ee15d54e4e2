// The input is what a printer sends, and when its connection breaks. Some bytes stand for the
// answers that a printer would give, so that the inputs come far.

#include "Fuzzing.h"

#include <ByteLink.h>
#include <EscPosPrinter.h>

#include <QCoreApplication>

using namespace rivo::printer;

namespace
{

enum Input : std::uint8_t {
    Ready = 0xF0, ///< the answers of a printer that can print
    PaperOut,     ///< the answers of one that cannot
    Cleared,
    Proof, ///< the number that was asked for last
    Lost,  ///< the connection breaks, and is there again
    Print  ///< the desk has a job
};

/// A connection whose other end is the input.
class InputLink : public ByteLink
{
public:
    void open() override { m_isOpen = true; }
    void close() override { m_isOpen = false; }
    void write(const QByteArray& bytes) override
    {
        if (m_isOpen)
            m_sent = (m_sent + bytes).right(32768);
    }
    qint64 bytesToWrite() const override { return 0; }

    QByteArray lastId() const
    {
        const QByteArray request = processIdRequest({});
        const int at = m_sent.lastIndexOf(request);
        return at < 0 ? QByteArray() : m_sent.mid(at + request.size(), 4);
    }

private:
    bool m_isOpen = false;
    QByteArray m_sent;
};

rivo::ticket::PaperContext context()
{
    return {QStringLiteral("Hill"), rivo::sales::Currency(QStringLiteral("EUR"), 2), "key",
            QLocale(QLocale::C)};
}

/// The same bytes in one piece and one by one are the same answers.
void checkReader(const QByteArray& bytes)
{
    const auto same = [](const PrinterAnswer& a, const PrinterAnswer& b) {
        return a.kind == b.kind && a.byte == b.byte && a.id == b.id;
    };
    AnswerReader whole;
    AnswerReader divided;
    const QVector<PrinterAnswer> expected = whole.read(bytes);
    QVector<PrinterAnswer> found;
    for (const char byte : bytes)
        found += divided.read(QByteArray(1, byte));
    fuzzing::require(expected.size() == found.size() &&
                         std::equal(expected.begin(), expected.end(), found.begin(), same),
                     "the answers depend on how the bytes are divided");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray input = fuzzing::bytes(data, size);
    checkReader(input);

    auto owned = std::make_unique<InputLink>();
    InputLink* const link = owned.get();
    EscPosFormat format;
    format.codePage = CodePage(QStringLiteral("PC858"));
    EscPosPrinter printer(std::move(owned), format, context(), {100000, 100000, 100000, 0});
    int started = 0;
    int printed = 0;
    int ended = 0;
    QObject::connect(&printer, &EscPosPrinter::printed, &printer, [&] {
        ++printed;
        ++ended;
    });
    for (const auto signal : {&EscPosPrinter::failed, &EscPosPrinter::inDoubt})
        QObject::connect(&printer, signal, &printer, [&] { ++ended; });
    emit link->opened();

    int proofs = 0;
    QByteArray seen;
    for (const char byte : input) {
        QByteArray bytes(1, byte);
        switch (static_cast<std::uint8_t>(byte)) {
        case Ready:
            bytes = QByteArrayLiteral("\x12\x12\x12\x12");
            break;
        case PaperOut:
            bytes = QByteArrayLiteral("\x1A\x32\x12\x7E");
            break;
        case Cleared:
            bytes = QByteArrayLiteral("\x37\x25\x00");
            break;
        case Proof:
            bytes = "\x37\x22" + link->lastId() + '\0';
            ++proofs;
            break;
        case Lost:
            emit link->closed(QStringLiteral("gone"));
            QCoreApplication::processEvents();
            emit link->opened();
            continue;
        case Print:
            if (printer.fault().isEmpty() && started == ended) {
                ++started;
                printer.print({});
            }
            continue;
        default:
            break;
        }
        seen += bytes;
        emit link->received(bytes);
    }
    fuzzing::require(ended <= started, "a job ended twice");
    fuzzing::require(printed <= proofs + seen.count("\x37\x22"), "printed without a proof");
    return 0;
}
