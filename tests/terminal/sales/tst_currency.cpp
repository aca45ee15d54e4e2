#include "Table.h"

#include <Currency.h>

#include <QTest>

#include <cmath>
#include <limits>

using rivo::sales::Currency;

class TestCurrency : public QObject
{
    Q_OBJECT

private slots:
    void roundsToMinorUnits_data()
    {
        const Table<int, double, qint64> row("decimals", "units", "minor");
        row("nothing", 2, 0.0, qint64(0));
        row("two decimals as they are", 2, 1.9, qint64(190));
        row("a double that is a trifle less", 2, 0.29, qint64(29));
        row("below half goes down", 2, 1.0049, qint64(100));
        row("half goes up", 2, 1.125, qint64(113));
        row("half in decimals, less as a double, goes up", 2, 1.005, qint64(101));
        row("half, more as a double, goes up", 2, 1.015, qint64(102));
        row("negative half goes away from zero", 2, -1.125, qint64(-113));
        row("negative half in decimals too", 2, -1.005, qint64(-101));
        row("no decimals", 0, 250.0, qint64(250));
        row("half without decimals", 0, 2.5, qint64(3));
        row("negative half without decimals", 0, -2.5, qint64(-3));
        row("less than half without decimals", 0, 2.4999, qint64(2));
        row("three decimals", 3, 1.234, qint64(1234));
        row("half of the third decimal", 3, 1.0005, qint64(1001));
        row("four decimals", 4, 1.2345, qint64(12345));
        row("half of the fourth decimal", 4, 1.00005, qint64(10001));
        row("the largest amount", 2, 1e10, qint64(1000000000000));
        row("the largest amount with four decimals", 4, 1e8, qint64(1000000000000));
        row("the largest without decimals", 0, 1e12, qint64(1000000000000));
        row("one below the largest", 2, 9999999999.99, qint64(999999999999));
        row("a large half", 2, 9999999999.985, qint64(999999999999));
        row("more than four decimals are four", 7, 1.0, qint64(10000));
        row("fewer than none are none", -1, 7.0, qint64(7));
    }

    void roundsToMinorUnits()
    {
        QFETCH(int, decimals);
        QFETCH(double, units);
        QFETCH(qint64, minor);
        const std::optional<qint64> amount = Currency("XTS", decimals).fromUnits(units);
        QVERIFY(amount.has_value());
        QCOMPARE(*amount, minor);
    }

    void refusesWhatIsNoAmount_data()
    {
        const Table<double> row("units");
        row("not a number", std::numeric_limits<double>::quiet_NaN());
        row("infinity", std::numeric_limits<double>::infinity());
        row("negative infinity", -std::numeric_limits<double>::infinity());
        row("the largest double", std::numeric_limits<double>::max());
        row("one unit too much", 1e10 + 1);
        row("one unit too little", -1e10 - 1);
    }

    void refusesWhatIsNoAmount()
    {
        QFETCH(double, units);
        QVERIFY(!Currency("EUR", 2).fromUnits(units).has_value());
    }

    /// What the models carry comes back to the last unit.
    void unitsAndBack()
    {
        for (int decimals = 0; decimals <= 4; ++decimals) {
            const Currency currency("XTS", decimals);
            for (qint64 amount = 1; amount <= 1000000000000; amount = amount * 3 + 1) {
                QCOMPARE(currency.fromUnits(currency.toUnits(amount)), std::make_optional(amount));
                QCOMPARE(currency.fromUnits(currency.toUnits(-amount)),
                         std::make_optional(-amount));
            }
        }
    }

    void cashIsRoundedToTheSmallestCoin_data()
    {
        addColumns<QString, int, qint64, qint64>("code", "decimals", "amount", "cash");
        const auto add = [](const char* code, int decimals, const QVector<qint64>& pairs) {
            for (int at = 0; at < pairs.size(); at += 2)
                QTest::addRow("%s %lld is %lld in cash", code, pairs.at(at), pairs.at(at + 1))
                    << code << decimals << pairs.at(at) << pairs.at(at + 1);
        };
        add("EUR", 2, {0, 0, 1, 1, 192, 192, -3, -3});
        add("GBP", 2, {199, 199});
        add("USD", 2, {1, 1, 199, 199});
        add("PLN", 2, {348, 348});
        add("RON", 2, {348, 348});
        add("JPY", 0, {7, 7});
        add("ISK", 0, {7, 7});
        add("CHF", 2, {0, 0, 1, 0, 2, 0, 3, 5, 192, 190, 193, 195, 197, 195, 198, 200});
        add("CHF", 2, {-2, 0, -3, -5, -192, -190, -193, -195});
        add("SEK", 2, {49, 0, 50, 100, 149, 100, 150, 200, -50, -100, -49, 0});
        add("NOK", 2, {3849, 3800, 3850, 3900});
        add("DKK", 2, {24, 0, 25, 50, 74, 50, 75, 100, 1224, 1200});
        add("HUF", 2, {100, 0, 200, 0, 300, 500, 249, 0, 250, 500, 36200, 36000, 36300, 36500});
        add("CZK", 2, {49, 0, 50, 100, 2449, 2400, 2450, 2500});
        add("AUD", 2, {252, 250, 253, 255});
        add("CAD", 2, {252, 250, 253, 255});
        add("NZD", 2, {254, 250, 255, 260});
        add("HKD", 2, {254, 250, 255, 260});
        add("MYR", 2, {252, 250, 253, 255});
        add("SGD", 2, {252, 250, 253, 255});
        add("ZAR", 2, {254, 250, 255, 260});
        add("ILS", 2, {254, 250, 255, 260});
        add("XTS", 2, {192, 192});
        add("CHF", 3, {1921, 1921}); // not the decimals of the table: nothing is known
        add("CHF", 2, {999999999999, 1000000000000});
    }

    void cashIsRoundedToTheSmallestCoin()
    {
        QFETCH(QString, code);
        QFETCH(int, decimals);
        QFETCH(qint64, amount);
        QTEST(Currency(code, decimals).cashAmount(amount), "cash");
    }

    /// What is rounded can be paid: it is made of notes and coins, and no other amount is nearer.
    void roundedAmountsCanBePaid()
    {
        for (const char* code : {"EUR", "CHF", "SEK", "NOK", "DKK", "HUF", "CZK", "NZD", "XTS"}) {
            const Currency currency(code, 2);
            const qint64 coin = currency.smallestCoin();
            for (qint64 amount = 0; amount < 3000; amount += 7) {
                const qint64 cash = currency.cashAmount(amount);
                QCOMPARE(cash % coin, 0);
                QVERIFY(2 * std::abs(cash - amount) <= coin);
                qint64 sum = 0;
                for (const qint64 piece : currency.inNotesAndCoins(cash))
                    sum += piece;
                QCOMPARE(sum, cash);
            }
        }
    }

    void notesAndCoinsGrow()
    {
        for (const char* code :
             {"AUD", "CAD", "CHF", "CZK", "DKK", "EUR", "GBP", "HKD", "HUF", "ILS",
              "MYR", "NOK", "NZD", "PLN", "RON", "SEK", "SGD", "USD", "ZAR", "XTS"}) {
            const Currency currency(code, 2);
            const QVector<qint64> all = currency.coins() + currency.notes();
            QVERIFY2(currency.coins().size() > 2 && currency.notes().size() > 3, code);
            for (int at = 1; at < all.size(); ++at)
                QVERIFY2(all.at(at) > all.at(at - 1), code);
            for (const qint64 piece : all)
                QVERIFY2(piece % currency.smallestCoin() == 0, code);
        }
    }

    void quickAmounts_data()
    {
        const Table<QString, qint64, QVector<qint64>> row("code", "due", "amounts");
        using Amounts = QVector<qint64>;
        row("nothing is due", "EUR", 0LL, Amounts{0});
        row("a single ticket", "EUR", 285LL, Amounts{285, 300, 400, 500, 1000, 2000});
        row("the value of a note", "EUR", 500LL, Amounts{500, 600, 1000, 2000, 5000, 10000});
        row("a large amount", "EUR", 38000LL, Amounts{38000, 40000});
        row("more than all notes", "GBP", 1000000LL, Amounts{1000000});
        row("crowns without small coins", "SEK", 3900LL,
            Amounts{3900, 4000, 5000, 10000, 20000, 50000});
        row("francs", "CHF", 320LL, Amounts{320, 350, 400, 500, 1000, 2000});
        row("an unknown currency", "XTS", 99LL, Amounts{99, 100, 200, 500, 1000, 2000});
    }

    void quickAmounts()
    {
        QFETCH(QString, code);
        QFETCH(qint64, due);
        QTEST(Currency(code, 2).quickAmounts(due), "amounts");
    }

    void quickAmountsAreLimited()
    {
        QCOMPARE(Currency("EUR", 2).quickAmounts(285, 2), (QVector<qint64>{285, 300}));
        QCOMPARE(Currency("JPY", 0).quickAmounts(210, 4), (QVector<qint64>{210, 250, 300, 500}));
    }

    void changeInNotesAndCoins()
    {
        QCOMPARE(Currency("EUR", 2).inNotesAndCoins(1715),
                 (QVector<qint64>{1000, 500, 200, 10, 5}));
        QCOMPARE(Currency("SEK", 2).inNotesAndCoins(6150), (QVector<qint64>{5000, 1000, 100}));
        QCOMPARE(Currency("EUR", 2).inNotesAndCoins(0), QVector<qint64>{});
        QCOMPARE(Currency("EUR", 2).inNotesAndCoins(-5), QVector<qint64>{});
    }

    void notesHaveNoDecimals()
    {
        const QLocale british(QLocale::English, QLocale::UnitedKingdom);
        QCOMPARE(Currency("GBP", 2).shortText(500, british), QString::fromUtf8("£5"));
        QCOMPARE(Currency("GBP", 2).shortText(50, british), QString::fromUtf8("£0.50"));
        QCOMPARE(Currency("GBP", 2).shortText(1000000, british), QString::fromUtf8("£10,000"));
        QCOMPARE(Currency("JPY", 0).shortText(500, british), Currency("JPY", 0).text(500, british));
    }

    void textOfPeople_data()
    {
        const Table<QString, int, qint64, QString, QString> row("code", "decimals", "amount",
                                                                "locale", "text");
        // U+00A0, which keeps amount and symbol on one line.
        row("pounds in Britain", "GBP", 2, 190, "en_GB", "£1.90");
        row("thousands in Britain", "GBP", 2, 123456, "en_GB", "£1,234.56");
        row("negative in Britain, in brackets", "GBP", 2, -190, "en_GB", "(£1.90)");
        row("nothing", "GBP", 2, 0, "en_GB", "£0.00");
        row("euro in Germany", "EUR", 2, 123456, "de_DE", "1.234,56\u00a0€");
        row("negative in Germany", "EUR", 2, -5, "de_DE", "-0,05\u00a0€");
        row("zloty in Poland", "PLN", 2, 350, "pl_PL", "3,50\u00a0zł");
        row("no decimals", "JPY", 0, 250, "en_GB", "¥250");
        row("three decimals", "KWD", 3, 1005, "en_GB", "KWD1.005");
        row("four decimals", "CLF", 4, 12345, "en_GB", "CLF1.2345");
        row("zloty in Britain", "PLN", 2, 350, "en_GB", "zł3.50");
    }

    void textOfPeople()
    {
        QFETCH(QString, code);
        QFETCH(int, decimals);
        QFETCH(qint64, amount);
        QFETCH(QString, locale);
        QTEST(Currency(code, decimals).text(amount, QLocale(locale)), "text");
    }

    void textOfUnits()
    {
        const Currency euro("EUR", 2);
        const QLocale britain("en_GB");
        QCOMPARE(euro.unitsText(1.005, britain), "€1.01");
        for (const double none : {1e10 + 0.01, -1e10 - 0.01, std::nan("")})
            QCOMPARE(euro.unitsText(none, britain), "–");
    }
};

QTEST_APPLESS_MAIN(TestCurrency)
#include "tst_currency.moc"
