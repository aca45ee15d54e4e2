#include "Amount.h"
#include "FeedFile_p.h"
#include "TextForms.h"

#include <QtTest>

#include <limits>

using namespace rivo::feed;

namespace
{

constexpr qint64 none = std::numeric_limits<qint64>::min();

} // namespace

/// The small forms of text that all readers share.
class FeedTextsTest : public QObject
{
    Q_OBJECT

private slots:
    void bytesInUtf8_data();
    void bytesInUtf8();
    void lines_data();
    void lines();
    void times_data();
    void times();
    void dates_data();
    void dates();
    void amounts_data();
    void amounts();
};

void FeedTextsTest::bytesInUtf8_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("isValid");
    const auto row = [](const char* name, const QByteArray& bytes, bool isValid) {
        QTest::newRow(name) << bytes << isValid;
    };
    row("no byte", "", true);
    row("the first and the last character of one byte", QByteArray("\x00\x7F", 2), true);
    row("the first character of two bytes", "\xC2\x80", true);
    row("the last character of two bytes", "\xDF\xBF", true);
    row("the first character of three bytes", "\xE0\xA0\x80", true);
    row("the last character before the surrogates", "\xED\x9F\xBF", true);
    row("the first character behind the surrogates", "\xEE\x80\x80", true);
    row("the last character of three bytes", "\xEF\xBF\xBF", true);
    row("the first character of four bytes", "\xF0\x90\x80\x80", true);
    row("the last character of four bytes", "\xF4\x8F\xBF\xBF", true);
    row("a byte that only continues a character", "\x80", false);
    row("an ASCII character in two bytes", "\xC1\xBF", false);
    row("a character of two bytes in three", "\xE0\x9F\xBF", false);
    row("a character of three bytes in four", "\xF0\x8F\xBF\xBF", false);
    row("the first surrogate", "\xED\xA0\x80", false);
    row("a character beyond the last one", "\xF4\x90\x80\x80", false);
    row("a first byte beyond the last one", "\xF5\x80\x80\x80", false);
    row("two bytes of which the second is missing", "\xC2", false);
    row("three bytes of which the third is missing", "\xE2\x82", false);
    row("four bytes of which the fourth is missing", "\xF0\x9F\x9A", false);
    row("a second byte below the range", "\xC2\x7F", false);
    row("a second byte above the range", "\xC2\xC0", false);
    row("a third byte out of the range", "\xE2\x82\x41", false);
    row("a fourth byte out of the range", "\xF0\x9F\x9A\xC0", false);
}

void FeedTextsTest::bytesInUtf8()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, isValid);
    const auto judged = [](const QByteArray& text) {
        return isUtf8({text.constData(), static_cast<size_t>(text.size())});
    };
    QCOMPARE(judged(bytes), isValid);
    QCOMPARE(judged("a" + bytes + "b"), isValid);
}

void FeedTextsTest::lines_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("length"); // of the first line
    QTest::newRow("LF") << QByteArray("ab\nc") << 3;
    QTest::newRow("CR") << QByteArray("ab\rc") << 3;
    QTest::newRow("CR LF") << QByteArray("ab\r\nc") << 4;
    QTest::newRow("LF CR is the end of two lines") << QByteArray("ab\n\rc") << 3;
    QTest::newRow("CR at the end of the text") << QByteArray("ab\r") << 3;
    QTest::newRow("no line end") << QByteArray("ab") << 2;
}

void FeedTextsTest::lines()
{
    QFETCH(QByteArray, text);
    QTEST(lineLength(text, 0), "length");
    QCOMPARE(lineLength("xy" + text, 2), lineLength(text, 0));
}

void FeedTextsTest::times_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("time"); // -1 = none
    QTest::newRow("one digit of hours") << "5:06:07" << 5 * 3600 + 6 * 60 + 7;
    QTest::newRow("two digits of hours") << "25:59:59" << 25 * 3600 + 59 * 60 + 59;
    QTest::newRow("three digits of hours") << "100:00:00" << 100 * 3600;
    QTest::newRow("no hours") << ":06:07" << -1;
    QTest::newRow("no text") << "" << -1;
    QTest::newRow("no seconds") << "05:06" << -1;
    QTest::newRow("four digits of hours") << "1000:00:00" << -1;
    QTest::newRow("no colon behind the hours") << "05.06:07" << -1;
    QTest::newRow("no colon behind the minutes") << "05:06.07" << -1;
    QTest::newRow("sixty minutes") << "05:60:07" << -1;
    QTest::newRow("sixty seconds") << "05:06:60" << -1;
    QTest::newRow("a sign for a digit of the hours") << "-5:06:07" << -1;
    QTest::newRow("a letter for a digit of the minutes") << "05:0a:07" << -1;
    QTest::newRow("a blank for a digit of the seconds") << "05:06: 7" << -1;
}

void FeedTextsTest::times()
{
    QFETCH(QString, text);
    QFETCH(int, time);
    QCOMPARE(seconds(text), time);
    QCOMPARE(isTime(text), time >= 0);
    QCOMPARE(isTimeOfDay(text), time >= 0 && time <= 24 * 3600);
}

void FeedTextsTest::dates_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isGtfs");
    QTest::addColumn<bool>("isIso");
    QTest::newRow("a date without dashes") << "20240229" << true << false;
    QTest::newRow("a date with dashes") << "2024-02-29" << false << true;
    QTest::newRow("a day that does not exist, without dashes") << "20230229" << false << false;
    QTest::newRow("a day that does not exist, with dashes") << "2023-02-29" << false << false;
    QTest::newRow("eight characters with a letter") << "2024022a" << false << false;
    QTest::newRow("no text") << "" << false << false;
    QTest::newRow("another first dash") << "2024/02-29" << false << false;
    QTest::newRow("another second dash") << "2024-02/29" << false << false;
    QTest::newRow("a letter between dashes") << "2024-0a-29" << false << false;
    QTest::newRow("one digit of the day") << "2024-02-9" << false << false;
}

void FeedTextsTest::dates()
{
    QFETCH(QString, text);
    QTEST(isGtfsDate(text), "isGtfs");
    QTEST(isIsoDate(text), "isIso");
}

void FeedTextsTest::amounts_data()
{
    QTest::addColumn<double>("units");
    QTest::addColumn<int>("decimals");
    QTest::addColumn<qint64>("minor"); // or none
    QTest::newRow("a price in cents") << 2.5 << 2 << qint64(250);
    QTest::newRow("a price without cents") << 250.0 << 0 << qint64(250);
    QTest::newRow("a discount") << -0.07 << 2 << qint64(-7);
    QTest::newRow("more decimals than the currency has") << 2.505 << 2 << none;
    QTest::newRow("the largest price") << 1e6 << 3 << qint64(1'000'000'000);
    QTest::newRow("more than the largest price") << 1'000'000.01 << 2 << none;
    QTest::newRow("a discount of more than the largest price") << -1'000'000.01 << 2 << none;
    QTest::newRow("no number") << qQNaN() << 2 << none;
    QTest::newRow("an infinite number") << qInf() << 2 << none;
}

void FeedTextsTest::amounts()
{
    QFETCH(double, units);
    QFETCH(int, decimals);
    QFETCH(qint64, minor);
    const std::optional<qint64> found = toMinorUnits(units, decimals);
    QCOMPARE(found.value_or(none), minor);
    if (found)
        QCOMPARE(toUnits(*found, decimals), units);
}

QTEST_APPLESS_MAIN(FeedTextsTest)
#include "tst_feed_texts.moc"
