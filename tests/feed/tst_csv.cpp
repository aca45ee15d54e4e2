#include "CsvTable_p.h"
#include "FeedProblem.h"
#include "Table.h"

#include <QtTest>

using namespace rivo::feed;

class CsvTest : public QObject
{
    Q_OBJECT

private slots:
    void records_data();
    void records();
    void problems_data();
    void problems();
    void aLongFieldIsCutAtOnce();
    void linesEndAnywhereInAStream_data();
    void linesEndAnywhereInAStream();

private:
    /// Reads the columns id (required) and name, in blocks of `block` bytes: "line:id|name" per
    /// record; problems to m_lines.
    QStringList read(const QByteArray& text, int block)
    {
        m_lines.clear();
        QStringList records;
        CsvReading reading;
        reading.file = "t.txt";
        reading.columns = {{"id", true}, {"name", false}};
        reading.mostRecords = 4;
        reading.limits.csvColumns = 5;
        reading.limits.textLength = 10;
        reading.limits.csvLineBytes = 1'000'100;
        reading.report = [this](const FeedProblem& problem) { m_lines.append(problem.toString()); };
        reading.reportEncoding = reading.report;
        reading.takeHeader = [](const CsvHeader&) {};
        reading.takeRecord = [&](int line, const std::vector<std::string_view>& values) {
            const auto value = [&](size_t index) {
                return QString::fromUtf8(values[index].data(), int(values[index].size()));
            };
            records.append(QStringLiteral("%1:%2|%3").arg(line).arg(value(0), value(1)));
        };
        int at = 0;
        const ByteReader bytes = [&](char* into, qint64 size) -> qint64 {
            const int count = qMin(qMin(block, int(size)), text.size() - at);
            std::copy_n(text.constData() + at, count, into);
            at += count;
            return count;
        };
        m_isWhole = readCsv(bytes, reading);
        return records;
    }

    /// The same, however the bytes come.
    QStringList read(const QByteArray& text)
    {
        const QStringList records = read(text, text.size() + 1);
        const QStringList lines = m_lines;
        const bool isWhole = m_isWhole;
        for (const int block : {1, 2, 7}) {
            if (text.size() > 1'000)
                break;
            QTest::qCompare(read(text, block), records, "records", "in blocks", __FILE__, __LINE__);
            QTest::qCompare(m_lines, lines, "problems", "in blocks", __FILE__, __LINE__);
            QTest::qCompare(m_isWhole, isWhole, "whole", "in blocks", __FILE__, __LINE__);
        }
        return records;
    }

    QStringList m_lines;
    bool m_isWhole = false;
};

void CsvTest::records_data()
{
    const Table<QByteArray, QStringList> row("text", "records");
    row("plain", "id,name\n1,a\n2,b\n", {"2:1|a", "3:2|b"});
    row("last line end missing", "id,name\n1,a", {"2:1|a"});
    row("CR LF", "id,name\r\n1,a\r\n2,b\r\n", {"2:1|a", "3:2|b"});
    row("CR alone", "id,name\r1,a\r2,b", {"2:1|a", "3:2|b"});
    row("columns in another order", "name,id\na,1\n", {"2:1|a"});
    row("columns that were not asked for", "x,name,y,id\n9,a,8,1\n", {"2:1|a"});
    row("optional column missing", "id\n1\n", {"2:1|"});
    row("blanks around header names", " id ,\tname\n1,a\n", {"2:1|a"});
    row("blanks within the quotes of header names", "\" id\",\"name \"\n1,a\n", {"2:1|a"});
    row("blanks around fields are dropped", "id,name\n 1 ,\ta b \n", {"2:1|a b"});
    row("blanks within quotes are kept", "id,name\n\"1\",\" a \"\n", {"2:1| a "});
    row("blanks around quotes are dropped", "id,name\n 1 , \"a\" \n", {"2:1|a"});
    row("quoted comma", "id,name\n1,\"a,b\"\n", {"2:1|a,b"});
    row("quoted quote", "id,name\n1,\"a\"\"b\"\n", {"2:1|a\"b"});
    row("quoted line ends count as lines", "id,name\n1,\"a\nb\r\nc\"\n2,d\n",
        {"2:1|a\nb\r\nc", "5:2|d"});
    row("quoted blank lines", "id,name\n1,\"\n\n\"\n2,d\n", {"2:1|\n\n", "5:2|d"});
    row("header over two lines", "\"id\n\",name\n1,a\n", {"3:1|a"});
    row("blank lines are skipped and counted", "\n \nid,name\n\n1,a\n\t\n\r\n2,b\n\n",
        {"5:1|a", "8:2|b"});
    row("too few fields are empty", "id,name\n1\n2,\n", {"2:1|", "3:2|"});
    row("fields do not linger from the record before", "id,name\n1,a\n2\n", {"2:1|a", "3:2|"});
    row("empty quoted field", "id,name\n\"\",\"\"\n", {"2:|"});
    row("byte-order mark", "\xEF\xBB\xBFid,name\n1,a\n", {"2:1|a"});
    row("quotes and no quotes in turn", "id,name\n1,\"a\"\n2,b\n\"3\",c\n4,d",
        {"2:1|a", "3:2|b", "4:3|c", "5:4|d"});
    row("only a header", "id,name\n", {});
    row("only a header without the required column", "name\n", {});
    row("only a header without a line end", "id,name", {});
    row("letters beyond ASCII", "id,name\n1,Żółć\n", {QString::fromUtf8("2:1|Żółć")});
    row("four records are allowed", "id\n1\n2\n3\n4\n", {"2:1|", "3:2|", "4:3|", "5:4|"});
    row("five columns are allowed", "a,b,c,d,id\n1,2,3,4,5\n", {"2:5|"});
}

void CsvTest::records()
{
    QFETCH(QByteArray, text);
    QFETCH(QStringList, records);
    QCOMPARE(read(text), records);
    QCOMPARE(m_lines, QStringList());
    QVERIFY(m_isWhole);
}

void CsvTest::problems_data()
{
    const Table<QByteArray, QStringList, QStringList> row("text", "records", "problems");
    const QString quoting = "expected a comma or the end of the line after a closing quote, and "
                            "two quotes for one within a text";
    row("nothing", "", {}, {"t.txt:1: id: missing, expected a column of this name"});
    row("blank lines only", "\n \n", {}, {"t.txt:2: id: missing, expected a column of this name"});
    row("required column missing, its records are not read", "key,name\n1,a\n2,b,c,d\n", {},
        {"t.txt:1: id: missing, expected a column of this name"});
    row("header in another case", "ID,name\n1,a\n", {},
        {"t.txt:1: id: missing, expected a column of this name"});
    row("column given twice", "id,name,id\n1,a,2\n", {"2:2|a"},
        {"t.txt:1: id: given twice, expected each column once"});
    row("too many fields, the other records are read", "id,name\n1,a,x,y\n2,b\n", {"3:2|b"},
        {"t.txt:2: 4 fields, expected at most 2, as in the header"});
    row("comma too many at the end", "id,name\n1,a,\n", {},
        {"t.txt:2: 3 fields, expected at most 2, as in the header"});
    row("quote within an unquoted field, the other records are read",
        "id,name\n1,a\n2,b\"c\"\n3,d\n", {"2:1|a", "4:3|d"}, {"t.txt:3:4: \"\"c\"\", " + quoting});
    row("text after a closing quote", "id,name\n1,\"a\"b\n3,d\n", {"3:3|d"},
        {"t.txt:2:6: \"b\", " + quoting});
    row("column counts letters, not bytes", "id,name\n1,\"ąć\"b\n", {},
        {"t.txt:2:7: \"b\", " + quoting});
    row("zero bytes are letters too", QByteArray("id,name\n1,\"\0\"b\0\n", 16), {},
        {"t.txt:2:6: \"b\\u0000\", " + quoting});
    row("broken quoting of a record over several lines", "id,name\n1,\"a\nb\"c\n3,d\n", {"4:3|d"},
        {"t.txt:3:3: \"c\", " + quoting + " (record from line 2 on)"});
    row("two broken records", "id,name\n1,\"a\"b\n2,\"a\"b\n", {},
        {"t.txt:2:6: \"b\", " + quoting, "t.txt:3:6: \"b\", " + quoting});
    row("broken record leaves no field behind", "id,name\n1,a,\"b\"c\n2\n", {"3:2|"},
        {"t.txt:2:8: \"c\", " + quoting});
    row("broken header, nothing is read", "\"id\"x,name\n1,a\n", {},
        {"t.txt:1:5: \"x,name\", " + quoting});
    row("quote that is never closed", "id,name\n1,a\n2,\"b\n3,c\n", {"2:1|a"},
        {"t.txt:3: the end of the file, expected a closing quote"});
    row("quote that is never closed in the header", "id,\"name\n1,a\n", {},
        {"t.txt:1: the end of the file, expected a closing quote"});
    row("a record too many ends the reading", "id\n1\n2\n3\n4\n5\n6\n",
        {"2:1|", "3:2|", "4:3|", "5:4|"},
        {"t.txt:6: a further record, expected at most 4 records"});
    row("text in UTF-16", QByteArray("\xFF\xFEi\0d\0\n\0", 8), {},
        {"t.txt:1: text in UTF-16, expected text in UTF-8 (save the file in this encoding)"});
    row("text in UTF-16 of the other byte order", QByteArray("\xFE\xFF\0i\0d\0\n", 8), {},
        {"t.txt:1: text in UTF-16, expected text in UTF-8 (save the file in this encoding)"});
    row("bytes that are no UTF-8, the record is read", "id,name\n1,\xFF\n2,b\n",
        {QString("2:1|") + QChar(0xFFFD), "3:2|b"},
        {"t.txt:2: bytes that are no UTF-8, expected text in UTF-8 (save the file in this "
         "encoding)"});
    row("a record that is too long", "id\n" + QByteArray(1'000'200, 'a') + "\n2\n", {},
        {"t.txt:2: a longer record, expected at most 1000100 bytes in one"});
    row("a quoted record that is too long", "id\n\"" + QByteArray(1'000'000, '\n'), {},
        {"t.txt:2: the end of the file, expected a closing quote"});
    row("a quoted record of too many lines", "id\n1\n\"" + QByteArray(1'000'200, '\n'), {"2:1|"},
        {"t.txt:3: a longer record, expected at most 1000100 bytes in one"});
    row("a column too many", "a,b,c,d,id,f\n1,2,3,4,5\n", {},
        {"t.txt:1: 6 columns, expected at most 5 columns"});
}

void CsvTest::problems()
{
    QFETCH(QByteArray, text);
    QFETCH(QStringList, records);
    QFETCH(QStringList, problems);
    QCOMPARE(read(text), records);
    QCOMPARE(m_lines, problems);
    QVERIFY(!m_isWhole);
}

void CsvTest::aLongFieldIsCutAtOnce()
{
    const QStringList records = read("id,name\n1," + QByteArray(1'000'000, 'a') + "\n");
    QCOMPARE(records.size(), 1);
    // More than the 10 characters that are allowed, so that the reader of the value sees it.
    QVERIFY(records.first().size() > 15 && records.first().size() < 100);
}

void CsvTest::linesEndAnywhereInAStream_data()
{
    const Table<QByteArray> row("lineEnd");
    row("LF", "\n");
    row("CR LF", "\r\n");
    row("CR", "\r");
}

/// The reader takes blocks of 64 KiB.
void CsvTest::linesEndAnywhereInAStream()
{
    QFETCH(QByteArray, lineEnd);
    const QByteArray header = "id,name" + lineEnd;
    for (int at = 64 * 1024 - 2; at <= 64 * 1024 + 1; ++at) {
        const QByteArray first = "1,a," + QByteArray(at - header.size() - 4, 'x');
        for (const QByteArray& rest : {QByteArray("2,b"), "2,b" + lineEnd, QByteArray()}) {
            const QStringList records = read(header + first + lineEnd + rest, 1'000'000);
            QCOMPARE(records, rest.isEmpty() ? QStringList() : QStringList("3:2|b"));
            QCOMPARE(m_lines,
                     QStringList("t.txt:2: 3 fields, expected at most 2, as in the header"));
        }
    }
}

QTEST_GUILESS_MAIN(CsvTest)
#include "tst_csv.moc"
