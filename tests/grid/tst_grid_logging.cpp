#include "AutomaticSpacing.h"
#include "ForeignRow.h"
#include "LogCapture.h"
#include "PassengerTypesModel.h"
#include "Products.h"
#include "StdoutCapture.h"
#include "Table.h"
#include "TerminalHome.h"

#include <QtTest>

#include <memory>

namespace
{

const QStringList layoutTypes{"PT_ADULT", "PT_STUDENT_1"};

/// How the logger passed the records of "default" on.
struct Listener : el::LogDispatchCallback
{
    QVector<el::base::DispatchAction> actions;

    void handle(const el::LogDispatchData* data) override
    {
        if (data->logMessage()->logger()->id() == "default")
            actions.append(data->dispatchAction());
    }
};

} // namespace

/// What is logged, and that the switch counts anew for each record. The texts are in cases/, where
/// records come from is in tst_log_origin.
class TestGridLogging : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_owner = std::make_unique<QObject>();
        m_log = std::make_unique<LogCapture>();
    }

    void cleanup()
    {
        m_model.reset();
        m_log.reset();
        m_owner.reset();
    }

    void recordsArePassedOnAsNormalOnes()
    {
        makeModel(true, "1a@2 1x!");
        el::Helpers::installLogDispatchCallback<Listener>("Listener");
        auto* listener = el::Helpers::logDispatchCallback<Listener>("Listener");
        const PassengerTypesModel other(m_owner.get());
        m_model->setSupportedPassengerTypeCodes({"PT_LFS"});
        m_model->sortAndRegroup({}, 2);
        for (const char* products : {"1a@2 1b@2", "1a>3 3b>3"}) {
            m_model->clearData();
            addProducts(*m_model, products);
            stdoutOf([this] { m_model->sortAndRegroup(layoutTypes, 2); });
        }
        const QVector<el::base::DispatchAction> actions = listener->actions;
        el::Helpers::uninstallLogDispatchCallback<Listener>("Listener");
        QCOMPARE(actions, QVector<el::base::DispatchAction>(m_log->records().size(),
                                                            el::base::DispatchAction::NormalLog));
    }

    void rowsOfOtherClassesAreNotDumped()
    {
        makeModel(true, "1a");
        m_model->appendRow(new ForeignRow("a description", m_model.get()));
        stdoutOf([this] { m_model->sortAndRegroup({"PT_ADULT"}, 1); });
        const QStringList dump = m_log->messages();
        QCOMPARE(dump.size() - dump.indexOf(QRegularExpression(".*AFTER GROUPING.*")), 2);
    }

    void otherOperationsLogNothing()
    {
        makeModel(true, "1c");
        m_model->addItemsToModel({sProduct(), sProduct()});
        m_model->setSelected(0, true);
        m_model->getNumberOfNonExpiredProducts();
        m_model->getFareProductName(1);
        m_model->sortByPrice(Qt::AscendingOrder);
        m_model->setLogExtraFareProducts(true);
        QCOMPARE(m_log->messages(), QStringList());
        m_model->setLogFareProducts(false); // the other switch has no part in it
        m_model->printProducts({sProduct()});
        QCOMPARE(m_log->messages(), QStringList());
    }

    void switchedOffInTheMiddle_data()
    {
        const Table<QString, QString, int> row("products", "alwaysWritten", "count");
        row("numbered: titles, two dumps, grid size", "1a@2 3b@4 1x!", "", 1 + 2 + 1 + 4 + 2);
        row("duplicates", "1a@2 3b@2 1x!", "DUPLICATE POSITIONS", 1 + 2 + 1 + 2);
        row("not assigned", "1a@2 3b 1x!", "POSITION NOT ASSIGNED", 1 + 2 + 1 + 2);
        row("position 0", "1a@2 3b@0 1x!", "POSITION 0 ASSIGNED", 1 + 2 + 1 + 2);
        row("zones: all lines", "1a>1 3b>1 1c>2 1x!", "", 2 + 3 + 2 + 2 + 3 + 5);
    }

    void switchedOffInTheMiddle()
    {
        QFETCH(QString, products);
        QFETCH(QString, alwaysWritten);
        QFETCH(int, count);

        // `last` records are written, then the switch is off.
        const auto layOut = [&](int last) {
            makeModel(true, products);
            m_log->observe([&] {
                if (m_log->records().size() == last)
                    m_model->setLogFareProducts(false);
            });
            stdoutOf([&] { m_model->sortAndRegroup(layoutTypes, 2); });
            m_log->observe({});
            return m_log->messages();
        };
        const QStringList all = layOut(0);
        QCOMPARE(all.size(), count);
        const int always = all.indexOf(QRegularExpression(".*" + alwaysWritten + ".*"));
        for (int last = 1; last <= count; ++last) {
            QStringList expected = all.mid(0, last);
            if (!alwaysWritten.isEmpty() && always >= last)
                expected.append(all.at(always));
            QCOMPARE(layOut(last), expected);
        }
    }

    void switchedOnInTheMiddle_data()
    {
        addColumns<QString, QString, QString, int>("products", "emitted", "firstMessage", "count");
        const auto row = [](const char* name, const char* emitted, const char* message, int count) {
            const bool isNumbered = QByteArray(name).startsWith("numbered");
            QTest::newRow(name) << (isNumbered ? "1a@2 3b@4 1x!" : "1a>1 3b>1 1c>2 1x!") << emitted
                                << message << count;
        };
        row("numbered: when the rows are set, the second dump follows", "numberOfRowsChanged(2)",
            "------------------- FARE PRODUCTS AFTER --------------------", 1 + 4 + 2);
        row("numbered: when tiles come, the second dump follows", "countChanged(4)",
            "------------------- FARE PRODUCTS AFTER --------------------", 1 + 4 + 2);
        row("numbered: when the daily product comes, the grid size follows", "countChanged(5)",
            "NumberOfCols: 2", 2);
        row("zones: when the rows are reset, everything follows", "numberOfRowsChanged(0)",
            "3 products in our vector", 2 + 3 + 2 + 2 + 3 + 5);
        row("zones: when the first block is counted, the second zone follows",
            "numberOfRowsChanged(1)", "Group products for zone: 2", 1 + 3 + 5);
        row("zones: when the daily product comes, the grid size follows", "countChanged(5)",
            "NumberOfCols: 2", 3 + 5);
    }

    void switchedOnInTheMiddle()
    {
        QFETCH(QString, products);
        QFETCH(QString, emitted);
        QFETCH(QString, firstMessage);
        QFETCH(int, count);

        makeModel(false, products);
        m_model->setNumberOfRows(9);
        const auto turnOnAt = [&](const char* signal, int value) {
            if (emitted == QString("%1(%2)").arg(signal).arg(value))
                m_model->setLogFareProducts(true);
        };
        connect(m_model.get(), &PassengerTypesModel::numberOfRowsChanged, m_model.get(),
                [&](int rows) { turnOnAt("numberOfRowsChanged", rows); });
        connect(m_model.get(), &PassengerTypesModel::countChanged, m_model.get(),
                [&](int rows) { turnOnAt("countChanged", rows); });
        stdoutOf([this] { m_model->sortAndRegroup(layoutTypes, 2); });
        QCOMPARE(m_log->messages().size(), count);
        QCOMPARE(m_log->messages().first(), firstMessage);
    }

    void switchedOnByTheReportOfUnusablePositions()
    {
        makeModel(false, "1a@0");
        m_log->observe([this] { m_model->setLogFareProducts(true); });
        m_model->sortAndRegroup({}, 2);
        QCOMPARE(m_log->messages().mid(1), (QStringList{"NumberOfCols: 2", "NumberOfRows: 1"}));
    }

private:
    void makeModel(bool logFareProducts, const QString& products)
    {
        const TerminalHome home(layoutTypes);
        m_log->observe({});
        m_model = std::make_unique<PassengerTypesModel>(m_owner.get());
        m_model->setLogFareProducts(logFareProducts);
        m_log->clear();
        addProducts(*m_model, products);
    }

    std::unique_ptr<QObject> m_owner; // of models and their prototypes
    std::unique_ptr<LogCapture> m_log;
    std::unique_ptr<PassengerTypesModel> m_model;
};

QTEST_GUILESS_MAIN(TestGridLogging)
#include "tst_grid_logging.moc"
