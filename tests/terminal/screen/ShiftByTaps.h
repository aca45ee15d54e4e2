#pragma once

#include "PageTest.h"
#include "ShiftLedger.h"

#include <QTranslator>

/// What a driver does in a shift, by taps, and a count of it, which knows the prices of the feed.
class ShiftByTaps : public PageTest
{
protected:
    ShiftByTaps() : PageTest({{800, 480}}) {}

    void start() override;
    void keepPicture(const QString& what);
    bool isFailed() const { return QTest::currentTestFailed(); }

    void openPage(const char* page);
    void signIn(int number, const QString& pin);
    void recordFloat(const QString& digits);
    void moveOn(int sale);

    QVector<QQuickItem*> tiles();
    void addTickets(int seed, int kinds, int count);
    void sellNext(int seed);
    void payExactly();
    void payByCard();
    void payWithANote();
    void payWithKeys();
    void paid(bool isCard, qint64 given);
    qint64 amountOn(const QString& name) { return amountIn(m_shown->text(name)); }
    /// Cents: of "€2.10", and of "€5", as notes are named.
    static qint64 amountIn(QString text)
    {
        return qRound64(text.remove(QRegExp("[^0-9.]")).toDouble() * 100);
    }

    void sellThroughAJam(int seed);
    void sellThroughAStop(int seed);
    void restartWithABasket(int seed);
    void changeDriver(int seed);
    void voidLast();
    void refundOneTicket();
    void printCopy();
    void printFigures();
    void closeShift();
    void handOver();

    void judgePaper();

    QTranslator m_english;           ///< plurals
    QHash<QString, qint64> m_prices; ///< of the feed, by product and passenger
    QVector<qint64> m_basket;
    ShiftLedger m_ledger;
    int m_driver = 0;
    int m_direction = 1;
    int m_trips = 1;
    double m_zNumber = 0;
    qint64 m_counted = 0;
};
