#include "../ticket/Papers.h"

#include <EscPosEncoder.h>
#include <VirtualPrinter.h>

#include <QPainter>
#include <QtTest>

using rivo::printer::CodePage;
using rivo::printer::EscPosFormat;
using rivo::simulators::VirtualPrinter;

namespace
{

/// Papers with letters, lengths and marks of all kinds.
rivo::sales::PrintJob paper(const QString& kind)
{
    rivo::sales::PrintJob job = fullTicket();
    if (kind == "copy")
        job.copy = 2;
    if (kind == "long") {
        job.ticket.fareProductName = "Day ticket for the whole network and all operators";
        job.ticket.toStopName = "Hauptbahnhof, Eingang Friedrich-Ebert-Straße";
    }
    if (kind == "polish") {
        job.ticket.fareProductName = QString::fromUtf8("Bilet jednorazowy ulgowy żółty");
        job.ticket.fromStopName = QString::fromUtf8("Gąsocin, Łęg");
    }
    if (kind == "greek and hebrew") {
        job.ticket.description = QString::fromUtf8("Ενήλικας");
        job.ticket.toStopName = QString::fromUtf8("תל אביב");
    }
    if (kind == "report") {
        job.report = rivo::sales::ShiftReport();
        job.report->zNumber = 17;
        job.report->ticketCount = 3;
        job.report->ticketSum = 825;
    }
    return job;
}

QImage logo()
{
    QImage picture(300, 60, QImage::Format_ARGB32);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setBrush(Qt::black);
    painter.drawEllipse(2, 2, 56, 56);
    painter.fillRect(70, 20, 225, 20, Qt::darkGray);
    return picture;
}

} // namespace

class TestEscPosPaper : public QObject
{
    Q_OBJECT

private slots:
    void papers_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("codePage");
        QTest::addColumn<int>("columns");
        QTest::addColumn<int>("pictures");
        QTest::newRow("ticket") << "ticket"
                                << "PC858" << 32 << 0;
        QTest::newRow("ticket on wide paper") << "ticket"
                                              << "WPC1252" << 48 << 0;
        QTest::newRow("copy") << "copy"
                              << "PC858" << 32 << 1;
        QTest::newRow("long texts") << "long"
                                    << "PC858" << 32 << 0;
        QTest::newRow("letters that the code page has") << "polish"
                                                        << "PC852" << 32 << 2;
        QTest::newRow("letters that it lacks") << "polish"
                                               << "PC437" << 32 << 4;
        QTest::newRow("letters of other scripts") << "greek and hebrew"
                                                  << "PC858" << 32 << 2;
        QTest::newRow("report") << "report"
                                << "PC858" << 32 << 0;
    }

    /// The virtual printer reads the commands by itself and understands all of them. Its pictures
    /// are saved for those who want to look at them.
    void papers()
    {
        QFETCH(QString, kind);
        QFETCH(QString, codePage);
        QFETCH(int, columns);
        QFETCH(int, pictures);
        for (const bool isNative : {true, false}) {
            EscPosFormat format;
            format.codePage = CodePage(codePage);
            format.columns = columns;
            format.dotsPerLine = columns * 12;
            format.nativeCode = isNative;
            if (kind == "copy")
                format.logo = logo();
            VirtualPrinter printer(format.dotsPerLine);
            printer.receive(
                rivo::printer::encode(rivo::ticket::layOut(paper(kind), hillValley()), format));
            QCOMPARE(printer.unknownCommands(), QStringList());
            QCOMPARE(printer.pieces().size(), 1);
            const VirtualPrinter::Piece piece = printer.pieces().first();
            const bool hasCode = kind != "report";
            QCOMPARE(piece.codes.size(), int(isNative && hasCode));
            const auto isPicture = [](const QString& line) { return line.startsWith("[picture"); };
            QVERIFY(piece.picture.save(QString("%1-%2.png")
                                           .arg(QTest::currentDataTag())
                                           .arg(isNative ? "native" : "raster")));
            const auto found = std::count_if(piece.lines.begin(), piece.lines.end(), isPicture);
            if (isNative || !hasCode)
                QCOMPARE(int(found), pictures);
            else
                QVERIFY(found > pictures);
            if (hasCode)
                QCOMPARE(piece.lines.last(),
                         QString("Check") +
                             QString("2367-6D23-5A16-D892").rightJustified(columns - 5));
        }
    }
};

QTEST_MAIN(TestEscPosPaper)
#include "tst_escpos_paper.moc"
