#include "../ScreenUnderTest.h"
#include "../payment/FakeCards.h"

#include <CardDesk.h>
#include <PeripheralItem.h>

#include <QtTest>

using rivo::sales::SalesDesk;
using rivo::terminal::Terminal;

/// What the driver sees while a card is charged.
class TestCardPayment : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        prepareScreens();
        m_complaints = std::make_unique<Complaints>();
    }
    void init()
    {
        QFETCH_GLOBAL(QSize, size);
        m_size = size;
    }
    void cleanup()
    {
        m_shown.reset();
        QCOMPARE(Complaints::take(), QStringList());
    }
    void cleanupTestCase() { m_complaints.reset(); }

    void initTestCase_data()
    {
        QTest::addColumn<QSize>("size");
        for (const QSize size : {QSize(800, 480), QSize(1024, 600), QSize(1280, 800)})
            QTest::addRow("%dx%d", size.width(), size.height()) << size;
    }

    void theStatusIsShownUntilItIsPaid()
    {
        show(300);
        QCOMPARE(m_shown->all("cardPayment").size(), 0);
        m_shown->tap("payCard");
        QTRY_COMPARE(m_shown->text("cardStatus"), QString("Simulated card terminal"));
        QCOMPARE(m_shown->all("payCash").size(), 0);
        QCOMPARE(m_shown->all("abortCard").size(), 1);
        QCOMPARE(m_shown->all("releaseCard").size(), 0);
        QVERIFY(!m_shown->item("cardStatus")->property("truncated").toBool());
        picture("busy");
        QTRY_VERIFY(isInside("abortCard"));
        QTRY_COMPARE(m_shown->all("paidText").size(), 1);
        QCOMPARE(m_shown->all("cardPayment").size(), 0);
    }

    void aPaymentIsStopped()
    {
        show(5000);
        m_shown->tap("payCard");
        m_shown->tap("abortCard");
        QTRY_COMPARE(m_shown->text("cardStatus"), QString("Not paid: The payment was stopped."));
        QCOMPARE(m_shown->all("abortCard").size(), 0);
        QCOMPARE(m_shown->all("payCash").size(), 1);
        picture("declined");
        QTRY_VERIFY(isInside("payCash"));
        m_shown->tap("cardStatus");
        QTRY_COMPARE(m_shown->all("cardPayment").size(), 0);
        m_shown->tap("payCash");
        QTRY_COMPARE(m_shown->all("paidText").size(), 1);
    }

    void withoutACardTerminalTheButtonSaysWhy()
    {
        show(0);
        m_shown->terminal().desk()->card()->setTerminal(nullptr);
        QTRY_COMPARE(m_shown->text("cardObstacle"), QString("No card terminal is connected."));
        QVERIFY(!m_shown->item("payCard")->isEnabled());
        QVERIFY(m_shown->item("payCash")->isEnabled());
        QVERIFY(!m_shown->item("cardObstacle")->property("truncated").toBool());
        picture("absent");
        m_shown->tap("payCard");
        QCOMPARE(m_shown->terminal().desk()->state(), SalesDesk::Selling);
    }

    /// As after a power cut, with a card terminal that cannot be reached.
    void anUnknownResultCanBeLeft()
    {
        const QTemporaryDir folder;
        const QString file = folder.filePath("sales.journal");
        {
            rivo::sales::Journal journal;
            journal.open(file, rivo::sales::Currency(QStringLiteral("EUR"), 2), 1);
            rivo::sales::Ticket ticket;
            ticket.price = 140;
            QVERIFY(journal.appendToBasket(ticket));
            QVERIFY(journal.beginCharge(140, QDateTime::currentDateTime()));
        }
        m_shown = std::make_unique<ScreenUnderTest>(
            exampleFeed("coast-line"), "sell", m_size, [file](Terminal::Settings& settings) {
                settings.journalFile = file;
                settings.config.cardTerminal.type = QStringLiteral("zvt");
                settings.config.cardTerminal.host = QStringLiteral("127.0.0.1");
                settings.config.cardTerminal.port = 1; // nothing listens there
            });
        QTRY_COMPARE(m_shown->text("cardStatus"),
                     QString("Asking the card terminal whether it was paid"));
        QCOMPARE(m_shown->all("payCash").size(), 0);
        QCOMPARE(m_shown->all("abortCard").size(), 0);
        picture("unknown");
        m_shown->tap("releaseCard");
        m_shown->tap("confirmButton");
        QTRY_COMPARE(m_shown->all("payCash").size(), 1);
        QVERIFY(!m_shown->item("payCard")->isEnabled());
        QCOMPARE(m_shown->text("cardObstacle"),
                 QString("The last card payment is not cleared yet."));
    }

    void theDayOfTheCardTerminalIsOnTheReport_data()
    {
        QTest::addColumn<qint64>("total");
        QTest::addColumn<QString>("shown");
        QTest::newRow("it agrees") << qint64(140) << QString();
        QTest::newRow("less than in the journal")
            << qint64(100) << QString::fromUtf8("€1.00 (−€0.40)");
        QTest::newRow("more than in the journal") << qint64(150) << "€1.50 (+€0.10)";
    }

    void theDayOfTheCardTerminalIsOnTheReport()
    {
        QFETCH(qint64, total);
        QFETCH(QString, shown);
        m_cards = std::make_unique<FakeCards>();
        show(0, "zreport");
        SalesDesk& desk = *m_shown->terminal().desk();
        desk.card()->setTerminal(m_cards.get());
        QVERIFY(desk.add(0));
        QVERIFY(desk.pay(SalesDesk::Card));
        m_cards->approve();
        QTRY_COMPARE(desk.state(), SalesDesk::Selling);
        QVERIFY(desk.closeShift());
        QTRY_COMPARE(m_shown->all("reportButton").size(), 1);
        QCOMPARE(m_shown->all("cardDayLine").size(), 0);
        m_cards->answerDay(total);
        QTRY_COMPARE(m_shown->all("cardDayLine").size(), shown.isEmpty() ? 0 : 1);
        if (!shown.isEmpty())
            QCOMPARE(m_shown->item("cardDayLine")->property("value").toString(), shown);
    }

    void theCardTerminalIsADevice()
    {
        m_shown = std::make_unique<ScreenUnderTest>(
            exampleFeed("coast-line"), "devices", m_size, [](Terminal::Settings& settings) {
                settings.config.cardTerminal.type = QStringLiteral("zvt");
                settings.config.cardTerminal.host = QStringLiteral("127.0.0.1");
                settings.config.cardTerminal.port = 1;
            });
        const PeripheralsModel& devices = *m_shown->terminal().peripherals();
        const auto* const row =
            qobject_cast<PeripheralItem*>(devices.itemFromRow(devices.rowCount() - 1));
        QCOMPARE(row->name(), QString("Card terminal"));
        QTRY_VERIFY(row->error());
        QCOMPARE(row->stateStr(), QString("No connection to the card terminal"));
    }

private:
    void show(int cardTime, const QString& page = QStringLiteral("sell"))
    {
        m_shown = std::make_unique<ScreenUnderTest>(exampleFeed("coast-line"), page, m_size,
                                                    [cardTime](Terminal::Settings& settings) {
                                                        settings.cardTime = cardTime;
                                                        settings.isDemo = true;
                                                    });
        if (page != "sell")
            return;
        QVERIFY(m_shown->terminal().desk()->add(0));
        QTRY_COMPARE(m_shown->all("payCash").size(), 1);
    }

    bool isInside(const QString& name)
    {
        const QQuickItem* const item = m_shown->item(name);
        const QRectF area = item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));
        return QRectF(QPointF(), m_size).contains(area);
    }

    void picture(const QString& name)
    {
        QDir().mkpath(PICTURES);
        m_shown->window()->grabWindow().save(QStringLiteral("%1/card-%2-%3x%4.png")
                                                 .arg(PICTURES, name)
                                                 .arg(m_size.width())
                                                 .arg(m_size.height()));
    }

    std::unique_ptr<Complaints> m_complaints;
    std::unique_ptr<FakeCards> m_cards; ///< outlives what is shown
    std::unique_ptr<ScreenUnderTest> m_shown;
    QSize m_size;
};

QTEST_MAIN(TestCardPayment)
#include "tst_card_payment.moc"
