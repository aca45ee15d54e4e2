#include <QAbstractTextDocumentLayout>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QPdfWriter>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextTable>
#include <QUrl>
#include <QtTest>

namespace
{

// A4 at 96 dots an inch, which is what a point of the fonts is counted by.
const QSizeF g_page(794, 1123);
constexpr double margin = 42.0;
constexpr double textSize = 9.0; // points; two pictures beside each other fill the rest

bool isPicture(const QTextFragment& fragment) { return fragment.charFormat().isImageFormat(); }

/// The guide as it is printed.
class Guide
{
public:
    explicit Guide(const QString& folder) : m_folder(folder)
    {
        QFile file(folder + "/driver.md");
        if (!file.open(QIODevice::ReadOnly))
            qFatal("There is no guide for drivers");
        QFont font("DejaVu Sans");
        font.setPointSizeF(textSize);
        m_document.setBaseUrl(QUrl::fromLocalFile(folder + '/'));
        m_document.setDefaultFont(font);
        m_document.setMarkdown(QString::fromUtf8(file.readAll()),
                               QTextDocument::MarkdownDialectGitHub);
        m_document.setPageSize(g_page);
        QTextFrameFormat frame = m_document.rootFrame()->frameFormat();
        frame.setMargin(margin);
        m_document.rootFrame()->setFrameFormat(frame);
        for (QTextBlock block = m_document.begin(); block.isValid(); block = block.next())
            layOut(block);
        const QVector<QTextTable*> all = tables();
        for (QTextTable* table : all)
            layOut(*table);
        for (QTextTable* table : all)
            keepTogether(*table);
        // A table that moves leaves what follows it where it was.
        m_document.setPageSize(QSizeF());
        m_document.setPageSize(g_page);
    }

    int pages() const { return m_document.pageCount(); }
    bool hasEnd() const ///< the last line is on the last page
    {
        const QRectF place = m_document.documentLayout()->blockBoundingRect(m_document.lastBlock());
        return !place.isEmpty() && place.bottom() < pages() * g_page.height() - margin;
    }
    int pictures() const { return m_pictures; }
    const QStringList& missing() const { return m_missing; } ///< pictures

    /// Tables of which a part is on another page.
    int tornTables() const
    {
        int torn = 0;
        const QVector<QTextTable*> all = tables();
        for (const QTextTable* table : all)
            torn += isTorn(*table) ? 1 : 0;
        return torn;
    }

    void print(const QString& name) const
    {
        QPdfWriter writer(name);
        writer.setPageSize(QPageSize(QPageSize::A4));
        writer.setPageMargins({});
        m_document.print(&writer);
    }

    QImage picture(int page) const
    {
        constexpr double scale = 1.3;
        QImage image((g_page * scale).toSize(), QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.scale(scale, scale);
        painter.translate(0, -page * g_page.height());
        QAbstractTextDocumentLayout::PaintContext context;
        context.clip = QRectF({0, page * g_page.height()}, g_page);
        context.palette.setColor(QPalette::Text, Qt::black);
        m_document.documentLayout()->draw(&painter, context);
        return image;
    }

private:
    QVector<QTextTable*> tables() const
    {
        QVector<QTextTable*> found;
        const QList<QTextFrame*> frames = m_document.rootFrame()->childFrames();
        for (QTextFrame* frame : frames) {
            if (auto* table = qobject_cast<QTextTable*>(frame))
                found.append(table);
        }
        return found;
    }

    void layOut(const QTextBlock& block)
    {
        QTextCursor cursor(block);
        QTextBlockFormat format = block.blockFormat();
        const bool isHeading = format.headingLevel() > 0;
        const bool isClose = cursor.currentTable() != nullptr || block.textList() != nullptr;
        format.setTopMargin(isHeading ? 6 : isClose ? 0 : 2);
        format.setBottomMargin(isHeading || !isClose ? 2 : 0);
        cursor.setBlockFormat(format);
        if (isHeading) {
            QTextCharFormat large;
            large.setFontPointSize(textSize * (format.headingLevel() == 1 ? 1.6 : 1.2));
            cursor.select(QTextCursor::BlockUnderCursor);
            cursor.mergeCharFormat(large);
        }
        QVector<QTextFragment> found;
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            if (isPicture(it.fragment()))
                found.append(it.fragment());
        }
        for (const QTextFragment& picture : qAsConst(found))
            resize(picture);
    }

    void resize(const QTextFragment& picture)
    {
        constexpr double share = 0.42; // of the width of the text
        QTextImageFormat format = picture.charFormat().toImageFormat();
        const QImage image(m_folder + '/' + format.name());
        ++m_pictures;
        if (image.isNull()) {
            m_missing.append(format.name());
            return;
        }
        format.setWidth((g_page.width() - 2 * margin) * share);
        format.setHeight(format.width() * image.height() / image.width());
        QTextCursor cursor(&m_document);
        cursor.setPosition(picture.position());
        cursor.setPosition(picture.position() + picture.length(), QTextCursor::KeepAnchor);
        cursor.setCharFormat(format);
    }

    static void layOut(QTextTable& table)
    {
        QTextTableFormat format = table.format();
        format.setBorder(0);
        format.setCellPadding(1.5);
        format.setCellSpacing(0);
        format.setTopMargin(2);
        format.setBottomMargin(2);
        table.setFormat(format);
    }

    int pageOf(const QTextTable& table, int row) const
    {
        const QTextBlock block = table.cellAt(row, 0).firstCursorPosition().block();
        const QRectF place = m_document.documentLayout()->blockBoundingRect(block);
        return static_cast<int>(place.center().y() / g_page.height());
    }
    bool isTorn(const QTextTable& table) const
    {
        return pageOf(table, 0) != pageOf(table, table.rows() - 1);
    }
    void keepTogether(QTextTable& table)
    {
        if (!isTorn(table))
            return;
        QTextTableFormat format = table.format();
        format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
        table.setFormat(format);
    }

    const QString m_folder;
    QTextDocument m_document;
    int m_pictures = 0;
    QStringList m_missing;
};

} // namespace

/// The guide for drivers, as it is handed to them: one sheet of paper. RIVO_GUIDE names a file
/// without its ending for the print, FILE.pdf, and for pictures of its pages, FILE-1.png and so on.
class TestDriverGuide : public QObject
{
    Q_OBJECT

private slots:
    void fitsOnOneSheet()
    {
        const Guide guide(DOCUMENTS);
        const QString file = qEnvironmentVariable("RIVO_GUIDE");
        if (!file.isEmpty()) {
            guide.print(file + ".pdf");
            for (int page = 0; page < guide.pages(); ++page)
                QVERIFY(guide.picture(page).save(QString("%1-%2.png").arg(file).arg(page + 1)));
        }
        QCOMPARE(guide.missing(), QStringList());
        QCOMPARE(guide.pictures(), 10);
        QCOMPARE(guide.pages(), 2);
        QCOMPARE(guide.tornTables(), 0);
        QVERIFY(guide.hasEnd());
    }
};

QTEST_MAIN(TestDriverGuide)
#include "tst_driver_guide.moc"
