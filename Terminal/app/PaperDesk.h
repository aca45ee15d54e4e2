#pragma once

#include <PaperLayout.h>

#include <QObject>
#include <QUrl>

#include <memory>
#include <optional>

class QQuickImageProvider;

namespace rivo::sales
{
class SalesDesk;
class TicketPrinter;
} // namespace rivo::sales

namespace rivo::terminal
{

/// Pictures of papers for the screen: what came out of the printer, and what past tickets and
/// reports look like. A picture has an address that an Image can load; an empty address if there is
/// no such paper. The newest pictures are kept, the others are gone.
class PaperDesk : public QObject
{
    Q_OBJECT

public:
    static constexpr int mostPictures = 8;

    /// Both outlive the desk.
    PaperDesk(sales::SalesDesk& desk, const sales::TicketPrinter& printer,
              const ticket::PaperContext& context, QObject* parent = nullptr);
    ~PaperDesk() override;

    Q_INVOKABLE QUrl ofLastPrinted();
    Q_INVOKABLE QUrl ofTicket(double number);  ///< of the running shift
    Q_INVOKABLE QUrl ofReport(double zNumber); ///< 0 = the running shift

    /// What gives the pictures to an engine, under the name "paper". Belongs to the caller.
    QQuickImageProvider* makeProvider() const;

private:
    class Pictures;

    QUrl show(const std::optional<sales::PrintJob>& job);

    sales::SalesDesk& m_desk;
    const sales::TicketPrinter& m_printer;
    const ticket::PaperContext m_context;
    const std::shared_ptr<Pictures> m_pictures;
};

} // namespace rivo::terminal
