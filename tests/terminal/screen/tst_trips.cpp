#include "PageTest.h"

/// The trip in the status line, and how the next one begins.
class TestTrips : public PageTest
{
    Q_OBJECT

private slots:
    void nextTripIsOfferedAtTheLastStop();
    void otherTripsCanBeChosenThere();

protected:
    void start() override
    {
        show(exampleFeed("coast-line"), "sell");
        trip().setStop(trip().stopCount() - 2);
        m_first = trip().stops().first();
        m_last = trip().stops().last();
    }

private:
    rivo::terminal::TripDesk& trip() { return *m_shown->terminal().trip(); }
    bool isAsking() { return m_shown->item("tripLines") != nullptr; }
    void askAtTheEnd()
    {
        m_shown->tap("nextStop");
        QCOMPARE(trip().stopName(), m_last);
        QVERIFY(!isAsking());
        m_shown->tap("nextStop");
        QTRY_VERIFY(isAsking());
        m_shown->window()->grabWindow(); // everything is where it is drawn
    }

    QString m_first;
    QString m_last;
};

void TestTrips::nextTripIsOfferedAtTheLastStop()
{
    const rivo::fleet::Seconds end = trip().trip()->end();
    askAtTheEnd();
    const QString offered = m_shown->text("choiceDetail"); // of the first trip
    QCOMPARE(offered, m_first + ", next trip");
    QVERIFY(m_shown->window()->grabWindow().save(
        QString(PICTURES "/next-trip-%1x%2.png").arg(m_size.width()).arg(m_size.height())));

    m_shown->tap(m_shown->all("choiceDetail").first());
    QTRY_VERIFY(!isAsking());
    QCOMPARE(trip().stops().first(), m_last);
    QCOMPARE(trip().stops().last(), m_first);
    QCOMPARE(trip().stop(), 0);
    QVERIFY(trip().trip()->start() >= end);
    QVERIFY(m_shown->text("routeText").contains(m_first));
    m_shown->tap("nextStop"); // goes on as before
    QCOMPARE(trip().stop(), 1);
}

/// A trip that is not the next one leaves the panel open, for its stop.
void TestTrips::otherTripsCanBeChosenThere()
{
    askAtTheEnd();
    const QString before = trip().tripText();
    m_shown->tap(m_shown->all("choiceDetail").at(1));
    QTRY_VERIFY(trip().tripText() != before);
    QVERIFY(isAsking());
    m_shown->tap("stop-1");
    QTRY_VERIFY(!isAsking());
    QCOMPARE(trip().stop(), 1);
}

QTEST_MAIN(TestTrips)
#include "tst_trips.moc"
