#pragma once

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QString>
#include <QVariant>
#include <QVector>

#include <algorithm>

/// What a test sold, counted by itself: amounts in minor units.
struct ShiftLedger
{
    struct Sale
    {
        QVector<qint64> prices; ///< of its tickets
        bool isCard = false;
        qint64 given = 0;
        int driver = 0;

        qint64 total() const
        {
            qint64 sum = 0;
            for (const qint64 price : prices)
                sum += price;
            return sum;
        }
    };

    QVector<Sale> sales;
    qint64 openingFloat = 0;
    QVector<qint64> voids;   ///< prices of tickets that were void
    QVector<qint64> refunds; ///< prices of tickets that were refunded
    qint64 cardRefunds = 0;  ///< of voids and refunds, given back to cards
    int copies = 0;

    static qint64 sumOf(const QVector<qint64>& prices)
    {
        qint64 sum = 0;
        for (const qint64 price : prices)
            sum += price;
        return sum;
    }
    int ticketCount(bool isCardOnly = false) const
    {
        int count = 0;
        for (const Sale& sale : sales)
            count += sale.isCard || !isCardOnly ? sale.prices.size() : 0;
        return count;
    }
    qint64 sold(bool isCardOnly = false) const
    {
        qint64 sum = 0;
        for (const Sale& sale : sales)
            sum += sale.isCard || !isCardOnly ? sale.total() : 0;
        return sum;
    }
    qint64 reversed() const { return sumOf(voids) + sumOf(refunds); }
    qint64 takings() const { return sold() - reversed(); }
    /// What the driver has to hand over.
    qint64 due() const { return takings() - (sold(true) - cardRefunds) + openingFloat; }
    int salesOf(int driver) const
    {
        return static_cast<int>(
            std::count_if(sales.begin(), sales.end(),
                          [driver](const Sale& sale) { return sale.driver == driver; }));
    }
};

/// A journal as the test reads it: SQL on the file alone.
class JournalReader
{
public:
    explicit JournalReader(const QString& file)
        : m_database(QSqlDatabase::addDatabase("QSQLITE", "reader"))
    {
        m_database.setDatabaseName(file);
        if (!m_database.open())
            qFatal("%s", qPrintable(m_database.lastError().text()));
    }
    ~JournalReader()
    {
        m_database.close();
        m_database = QSqlDatabase();
        QSqlDatabase::removeDatabase("reader");
    }
    JournalReader(const JournalReader&) = delete;
    JournalReader& operator=(const JournalReader&) = delete;

    /// Rows of the answer, their values separated by blanks.
    QStringList rows(const QString& statement)
    {
        QSqlQuery query(m_database);
        if (!query.exec(statement))
            qFatal("%s: %s", qPrintable(statement), qPrintable(query.lastError().text()));
        QStringList rows;
        while (query.next()) {
            QStringList values;
            for (int column = 0; query.value(column).isValid(); ++column)
                values.append(query.value(column).toString());
            rows.append(values.join(' '));
        }
        return rows;
    }
    /// Its one value.
    qint64 number(const QString& statement) { return rows(statement).value(0).toLongLong(); }

private:
    QSqlDatabase m_database;
};
