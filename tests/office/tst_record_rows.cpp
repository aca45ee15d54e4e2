#include "Table.h"

#include <RecordRows.h>

#include <QTest>

using namespace rivo::backoffice;

namespace
{

/// "table: value value"
QString text(const QVector<RecordRow>& rows)
{
    QStringList lines;
    for (const RecordRow& row : rows) {
        QStringList values;
        for (const QVariant& value : row.values)
            values.append(value.isValid() ? QString("%1=%2").arg(value.typeName(), value.toString())
                                          : QString("null"));
        lines.append(row.table + ": " + values.join(' '));
    }
    return lines.join('|');
}

} // namespace

/// How the office reads the content of a record.
class TestRecordRows : public QObject
{
    Q_OBJECT

private slots:
    void contentIsRead_data()
    {
        const Table<QByteArray, QString> row("content", "rows");
        row("nothing has no rows", "", "");
        row("a row without values", "shift;\n", "shift: ");
        row("each type", "a;ni-7;f1.5;t3:EURb2:xy\n",
            "a: null qlonglong=-7 double=1.5 QString=EUR QByteArray=xy");
        row("rows follow one another", "a;i1;\nb;i2;\n", "a: qlonglong=1|b: qlonglong=2");
        row("a text may have what ends a row", "a;t3:;\n:\n", "a: QString=;\n:");
        row("an empty text", "a;t0:\n", "a: QString=");
        row("a length is of bytes", "a;t2:\xC3\xBC\n", QString::fromUtf8("a: QString=\xC3\xBC"));
        row("a zero byte", QByteArray("a;t2:x\0\n", 8), QString("a: QString=x") + QChar(0));
        row("the largest number", "a;i9223372036854775807;\n", "a: qlonglong=9223372036854775807");
    }

    void contentIsRead()
    {
        QFETCH(QByteArray, content);
        const auto rows = rowsOf(content);
        QVERIFY(rows.has_value());
        QTEST(text(*rows), "rows");
    }

    void otherBytesAreRefused_data()
    {
        const Table<QByteArray> row("content");
        row("a table without a name", ";i1;\n");
        row("a table without an end", "sale");
        row("a row without an end", "sale;i1;");
        row("an unknown type", "a;x1;\n");
        row("a number without an end", "a;i1");
        row("a number with a letter", "a;i1x;\n");
        row("a number that is too large", "a;i9223372036854775808;\n");
        row("no floating point number", "a;fx;\n");
        row("a floating point number without an end", "a;f1");
        row("a text without a length", "a;t:x\n");
        row("a text without a colon", "a;t3");
        row("a negative length", "a;t-1:x\n");
        row("a text beyond the end", "a;t5:abc\n");
        row("a length beyond all", "a;t2147483647:abc\n");
        row("bytes beyond the end", "a;b9:abc\n");
        row("bytes without a length", "a;bx:abc\n");
    }

    void otherBytesAreRefused()
    {
        QFETCH(QByteArray, content);
        QVERIFY(!rowsOf(content).has_value());
    }
};

QTEST_GUILESS_MAIN(TestRecordRows)
#include "tst_record_rows.moc"
