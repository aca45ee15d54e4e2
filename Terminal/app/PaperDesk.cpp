#include "PaperDesk.h"

#include <PaperPicture.h>
#include <SalesDesk.h>
#include <TicketPrinter.h>

#include <QMap>
#include <QMutex>
#include <QMutexLocker>
#include <QQuickImageProvider>

namespace rivo::terminal
{

/// Drawn by the thread of the window, and loaded by any.
class PaperDesk::Pictures
{
public:
    int add(const QImage& picture)
    {
        const QMutexLocker lock(&m_mutex);
        m_pictures.insert(++m_last, picture);
        if (m_pictures.size() > mostPictures)
            m_pictures.erase(m_pictures.begin());
        return m_last;
    }
    QImage picture(int number) const
    {
        const QMutexLocker lock(&m_mutex);
        return m_pictures.value(number);
    }

private:
    mutable QMutex m_mutex;
    QMap<int, QImage> m_pictures;
    int m_last = 0;
};

PaperDesk::PaperDesk(sales::SalesDesk& desk, const sales::TicketPrinter& printer,
                     const ticket::PaperContext& context, QObject* parent)
    : QObject(parent), m_desk(desk), m_printer(printer), m_context(context),
      m_pictures(std::make_shared<Pictures>())
{
}

PaperDesk::~PaperDesk() = default;

QUrl PaperDesk::ofLastPrinted() { return show(m_printer.lastPrinted()); }

QUrl PaperDesk::ofTicket(double number)
{
    return show(m_desk.paperOf(static_cast<qint64>(number)));
}

QUrl PaperDesk::ofReport(double zNumber) { return show(m_desk.paperOfReport(zNumber)); }

QUrl PaperDesk::show(const std::optional<sales::PrintJob>& job)
{
    if (!job)
        return {};
    const int number = m_pictures->add(ticket::draw(ticket::layOut(*job, m_context)));
    return QUrl(QStringLiteral("image://paper/%1").arg(number));
}

QQuickImageProvider* PaperDesk::makeProvider() const
{
    class Provider : public QQuickImageProvider
    {
    public:
        explicit Provider(std::shared_ptr<Pictures> pictures)
            : QQuickImageProvider(Image), m_pictures(std::move(pictures))
        {
        }
        QImage requestImage(const QString& id, QSize* size, const QSize& wanted) override
        {
            const QImage picture = m_pictures->picture(id.toInt());
            if (size != nullptr)
                *size = picture.size();
            return wanted.width() > 0 && !picture.isNull()
                       ? picture.scaledToWidth(wanted.width(), Qt::SmoothTransformation)
                       : picture;
        }

    private:
        const std::shared_ptr<Pictures> m_pictures;
    };
    return new Provider(m_pictures);
}

} // namespace rivo::terminal
