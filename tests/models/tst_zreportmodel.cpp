#include "AutomaticSpacing.h"
#include "LibraryModels.h"
#include "LogCapture.h"
#include "SignalLog.h"
#include "Table.h"
#include "TopLevelOnly.h"
#include "ZReportItem.h"
#include "ZReportModel.h"

#include <QAbstractItemModelTester>
#include <QTest>

#include <climits>
#include <limits>
#include <memory>

namespace
{

const QDateTime evening(QDate(2024, 5, 1), QTime(22, 15), Qt::UTC);

/// A report of which nothing but the id and the debts matters.
void addReport(ZReportModel& reports, int id, double currentDebt = 12.5,
               double maxAllowedDebt = 100.0)
{
    reports.addItem(id, 9, 100.5, 3, 20.25, 2, 7.75, "A-0001", "A-0009", 108.25, 17.0, true, 0.1,
                    evening, currentDebt, maxAllowedDebt);
}

} // namespace

class TestZReportModel : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_log = std::make_unique<LogCapture>();
        m_owner = std::make_unique<QObject>();
        m_reports = new TopLevelOnly<ZReportModel>(m_owner.get());
        new QAbstractItemModelTester(
            m_reports, QAbstractItemModelTester::FailureReportingMode::Fatal, m_reports);
    }

    void cleanup()
    {
        m_owner.reset();
        m_log.reset();
    }

    void aReportTakesOverTheArguments()
    {
        SignalLog log(m_reports);
        addReport(*m_reports, 7);
        QCOMPARE(log.take(), announcedInsertion(0, 0, 1));
        m_reports->addItem(-1, INT_MIN, -0.5, -1, 0.0, INT_MAX, -2.0, QString(), "", 0.0, -1.5,
                           false, 1e-13, QDateTime(), -3.0, -4.0);
        QCOMPARE(log.take(), announcedInsertion(1, 1, 2));

        compare(0, {7, 9, 100.5, 3, 20.25, 2, 7.75, "A-0001", "A-0009", 108.25, 17.0, true, 0.1,
                    evening, 12.5, 100.0});
        compare(1, {-1, INT_MIN, -0.5, -1, 0.0, INT_MAX, -2.0, "", "", 0.0, -1.5, false, 1e-13,
                    QDateTime(), -3.0, -4.0});
        QCOMPARE(m_reports->itemFromRow(0)->metaObject(), &ZReportItem::staticMetaObject);
        QCOMPARE(m_reports->itemFromRow(0)->parent(), m_reports);
    }

    void message_data()
    {
        const Table<int, double, double, bool, QString> row("id", "currentDebt", "maxAllowedDebt",
                                                            "automaticSpacing", "message");
        using Limits = std::numeric_limits<double>;
        row("without automatic spacing nothing stands between the pieces", 7, 12.5, 100.0, false,
            "id: 7 currentDept: 12.5 maxAllowedDebt: 100");
        row("with automatic spacing a blank follows each piece", 7, 12.5, 100.0, true,
            "id:  7  currentDept:  12.5  maxAllowedDebt:  100 ");
        row("negative numbers", INT_MIN, -0.5, -2.0, false,
            "id: -2147483648 currentDept: -0.5 maxAllowedDebt: -2");
        row("six significant digits", 0, 1234.5678, 0.1 + 0.2, false,
            "id: 0 currentDept: 1234.57 maxAllowedDebt: 0.3");
        row("amounts that are no numbers", 1, Limits::infinity(), -Limits::infinity(), false,
            "id: 1 currentDept: inf maxAllowedDebt: -inf");
    }

    void message()
    {
        QFETCH(int, id);
        QFETCH(double, currentDebt);
        QFETCH(double, maxAllowedDebt);
        QFETCH(bool, automaticSpacing);
        QFETCH(QString, message);
        const AutomaticSpacing spacing(automaticSpacing);
        addReport(*m_reports, id, currentDebt, maxAllowedDebt);
        QCOMPARE(m_log->messages(), QStringList{message});
        QCOMPARE(m_reports->rowCount(), 1);
    }

    void theRecordIsWrittenBeforeTheRowExists()
    {
        addReport(*m_reports, 7);
        SignalLog log(m_reports);
        const int children = m_reports->children().size();
        int records = 0;
        m_log->observe([&] {
            ++records;
            QCOMPARE(m_reports->rowCount(), 1);
            QCOMPARE(m_reports->children().size(), children);
            QCOMPARE(log.take(), QStringList());
        });
        addReport(*m_reports, 8);
        QCOMPARE(records, 1);
        QCOMPARE(m_reports->rowCount(), 2);
        QCOMPARE(m_reports->children().size(), children + 1);
    }

    void onlyAddingIsRecorded()
    {
        addReport(*m_reports, 7);
        m_log->clear();
        m_reports->appendRow(new ZReportItem(m_reports));
        qobject_cast<ZReportItem*>(m_reports->itemFromRow(0))->setCurrentDebt(0.0);
        m_reports->clear();
        QCOMPARE(m_log->messages(), QStringList());
    }

private:
    /// The row has exactly these values.
    void compare(int row, const QVariantList& values) const
    {
        QCOMPARE(differences(*m_reports->itemFromRow(row), rowsOf("ZReportModel").fields, values),
                 QStringList());
    }

    std::unique_ptr<LogCapture> m_log;
    std::unique_ptr<QObject> m_owner;
    ZReportModel* m_reports = nullptr;
};

QTEST_GUILESS_MAIN(TestZReportModel)

#include "tst_zreportmodel.moc"
