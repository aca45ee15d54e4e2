#include "Amount.h"
#include "FeedFile_p.h"
#include "Table.h"
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
    const Table<QByteArray, bool> row("bytes", "isValid");
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
    // length: of the first line
    const Table<QByteArray, int> row("text", "length");
    row("LF", "ab\nc", 3);
    row("CR", "ab\rc", 3);
    row("CR LF", "ab\r\nc", 4);
    row("LF CR is the end of two lines", "ab\n\rc", 3);
    row("CR at the end of the text", "ab\r", 3);
    row("no line end", "ab", 2);
}

void FeedTextsTest::lines()
{
    QFETCH(QByteArray, text);
    QTEST(lineLength(text, 0), "length");
    QCOMPARE(lineLength("xy" + text, 2), lineLength(text, 0));
}

void FeedTextsTest::times_data()
{
    // time: -1 = none
    const Table<QString, int> row("text", "time");
    row("one digit of hours", "5:06:07", 5 * 3600 + 6 * 60 + 7);
    row("two digits of hours", "25:59:59", 25 * 3600 + 59 * 60 + 59);
    row("three digits of hours", "100:00:00", 100 * 3600);
    row("no hours", ":06:07", -1);
    row("no text", "", -1);
    row("no seconds", "05:06", -1);
    row("four digits of hours", "1000:00:00", -1);
    row("no colon behind the hours", "05.06:07", -1);
    row("no colon behind the minutes", "05:06.07", -1);
    row("sixty minutes", "05:60:07", -1);
    row("sixty seconds", "05:06:60", -1);
    row("a sign for a digit of the hours", "-5:06:07", -1);
    row("a letter for a digit of the minutes", "05:0a:07", -1);
    row("a blank for a digit of the seconds", "05:06: 7", -1);
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
    const Table<QString, bool, bool> row("text", "isGtfs", "isIso");
    row("a date without dashes", "20240229", true, false);
    row("a date with dashes", "2024-02-29", false, true);
    row("a day that does not exist, without dashes", "20230229", false, false);
    row("a day that does not exist, with dashes", "2023-02-29", false, false);
    row("eight characters with a letter", "2024022a", false, false);
    row("no text", "", false, false);
    row("another first dash", "2024/02-29", false, false);
    row("another second dash", "2024-02/29", false, false);
    row("a letter between dashes", "2024-0a-29", false, false);
    row("one digit of the day", "2024-02-9", false, false);
}

void FeedTextsTest::dates()
{
    QFETCH(QString, text);
    QTEST(isGtfsDate(text), "isGtfs");
    QTEST(isIsoDate(text), "isIso");
}

void FeedTextsTest::amounts_data()
{
    // minor: -1 if there is none
    const Table<double, int, qint64> row("units", "decimals", "minor");
    row("a price in cents", 2.5, 2, qint64(250));
    row("a price without cents", 250.0, 0, qint64(250));
    row("a discount", -0.07, 2, qint64(-7));
    row("more decimals than the currency has", 2.505, 2, none);
    row("the largest price", 1e6, 3, qint64(1'000'000'000));
    row("more than the largest price", 1'000'000.01, 2, none);
    row("a discount of more than the largest price", -1'000'000.01, 2, none);
    row("no number", qQNaN(), 2, none);
    row("an infinite number", qInf(), 2, none);
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
