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
        QTest::addColumn<int>("decimals");
        QTest::addColumn<double>("units");
        QTest::addColumn<qint64>("minor");

        QTest::newRow("nothing") << 2 << 0.0 << qint64(0);
        QTest::newRow("two decimals as they are") << 2 << 1.9 << qint64(190);
        QTest::newRow("a double that is a trifle less") << 2 << 0.29 << qint64(29);
        QTest::newRow("below half goes down") << 2 << 1.0049 << qint64(100);
        QTest::newRow("half goes up") << 2 << 1.125 << qint64(113);
        QTest::newRow("half in decimals, less as a double, goes up") << 2 << 1.005 << qint64(101);
        QTest::newRow("half, more as a double, goes up") << 2 << 1.015 << qint64(102);
        QTest::newRow("negative half goes away from zero") << 2 << -1.125 << qint64(-113);
        QTest::newRow("negative half in decimals too") << 2 << -1.005 << qint64(-101);
        QTest::newRow("no decimals") << 0 << 250.0 << qint64(250);
        QTest::newRow("half without decimals") << 0 << 2.5 << qint64(3);
        QTest::newRow("negative half without decimals") << 0 << -2.5 << qint64(-3);
        QTest::newRow("less than half without decimals") << 0 << 2.4999 << qint64(2);
        QTest::newRow("three decimals") << 3 << 1.234 << qint64(1234);
        QTest::newRow("half of the third decimal") << 3 << 1.0005 << qint64(1001);
        QTest::newRow("four decimals") << 4 << 1.2345 << qint64(12345);
        QTest::newRow("half of the fourth decimal") << 4 << 1.00005 << qint64(10001);
        QTest::newRow("the largest amount") << 2 << 1e10 << qint64(1000000000000);
        QTest::newRow("the largest amount with four decimals") << 4 << 1e8 << qint64(1000000000000);
        QTest::newRow("the largest without decimals") << 0 << 1e12 << qint64(1000000000000);
        QTest::newRow("one below the largest") << 2 << 9999999999.99 << qint64(999999999999);
        QTest::newRow("a large half") << 2 << 9999999999.985 << qint64(999999999999);
        QTest::newRow("more than four decimals are four") << 7 << 1.0 << qint64(10000);
        QTest::newRow("fewer than none are none") << -1 << 7.0 << qint64(7);
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
        QTest::addColumn<double>("units");

        QTest::newRow("not a number") << std::numeric_limits<double>::quiet_NaN();
        QTest::newRow("infinity") << std::numeric_limits<double>::infinity();
        QTest::newRow("negative infinity") << -std::numeric_limits<double>::infinity();
        QTest::newRow("the largest double") << std::numeric_limits<double>::max();
        QTest::newRow("one unit too much") << 1e10 + 1;
        QTest::newRow("one unit too little") << -1e10 - 1;
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

    void textOfPeople_data()
    {
        QTest::addColumn<QString>("code");
        QTest::addColumn<int>("decimals");
        QTest::addColumn<qint64>("amount");
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QString>("text");

        const auto row = [](const char* name, const char* code, int decimals, qint64 amount,
                            const char* locale, const QString& text) {
            QTest::newRow(name) << code << decimals << amount << locale << text;
        };
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
