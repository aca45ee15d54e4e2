// Every record of the models names the statement that wrote it: source file, line and function. All
// are of the logger "default" and of level Info.

#include "LogCapture.h"
#include "PassengerTypesModel.h"
#include "Products.h"
#include "StdoutCapture.h"
#include "TerminalHome.h"
#include "ZReportModel.h"

#include <QtTest>

#include <type_traits>

namespace
{

const QString grid = "GuiCore/src/Models/PassengerTypesModel.cpp";
const QString ordering = "GuiCore/src/Models/PassengerTypesModelOrdering.cpp";
const QString report = "GuiCore/src/Models/ZReportModel.cpp";

const QString printing = "void PassengerTypesModel::printProducts(const QVector<sProduct>&)";
const QString supporting =
    "void PassengerTypesModel::setSupportedPassengerTypeCodes(const QStringList&)";
const QString positioning = "void PassengerTypesModel::sortBasedOnBackendAssignment()";
const QString grouping = "void PassengerTypesModel::sortBasedOnLocalData(const QStringList&)";
const QString groupingZone = "void PassengerTypesModel::sortAndGroupProductsForZone(const int&)";

/// The number of the line that has the text, at its n-th occurrence in the file.
int lineOf(const QString& file, const QString& text, int occurrence)
{
    QFile source(SOURCE_FOLDER "/" + file);
    if (!source.open(QIODevice::ReadOnly))
        qFatal("%s cannot be read", qPrintable(source.fileName()));
    const QStringList lines = QString::fromUtf8(source.readAll()).split('\n');
    for (int line = 0; line < lines.size(); ++line) {
        if (lines.at(line).contains(text) && --occurrence == 0)
            return line + 1;
    }
    qFatal("%s does not have \"%s\"", qPrintable(file), qPrintable(text));
}

QString record(const QString& file, int line, const QString& function, const QString& message)
{
    // Spelt as g++ does.
    static const QRegularExpression blank(" +([&*])");
    QString signature = QString(function).replace(blank, "\\1");
    // With Qt 6 QVector is another name of QList, and g++ leaves out what qualifies such a name.
    if (std::is_same_v<QVector<int>, QList<int>>)
        signature.replace("const QVector", "QVector");
    return QStringLiteral("%1:%2 %3 | %4").arg(file, QString::number(line), signature, message);
}

/// A record that the statement with this text writes.
QString from(const QString& file, const QString& statement, const QString& function,
             const QString& message, int occurrence = 1)
{
    return record(file, lineOf(file, statement, occurrence), function, message);
}

QString literal(const QString& function, const QString& message)
{
    return from(ordering, "LOG(INFO) << \"" + message, function, message);
}

} // namespace

class TestLogOrigin : public QObject
{
    Q_OBJECT

private slots:
    void constructor();
    void supportedTypes();
    void layoutByPosition();
    void objectionToPositions();
    void layoutByZones();
    void zReport();

private:
    PassengerTypesModel* newGrid(const QStringList& order = {});
    QStringList records() const;

    QObject m_owner; // of models and their prototypes
    LogCapture m_log;
};

PassengerTypesModel* TestLogOrigin::newGrid(const QStringList& order)
{
    const TerminalHome home(order);
    auto* model = new PassengerTypesModel(&m_owner);
    model->setLogFareProducts(true);
    return model;
}

QStringList TestLogOrigin::records() const
{
    QStringList texts;
    for (const LogCapture::Record& each : m_log.records()) {
        texts.append(record(each.file, each.line, each.function, each.message));
        if (each.loggerId != "default" || each.level != el::Level::Info)
            texts.append("another logger or level");
    }
    return texts;
}

void TestLogOrigin::constructor()
{
    m_log.clear();
    newGrid({"PT_ADULT"});
    QCOMPARE(records(), QStringList(from(grid, "LOG(INFO) << message",
                                         "PassengerTypesModel::PassengerTypesModel(QObject*)",
                                         "TypeCodes Order: [1->PT_ADULT]")));
}

void TestLogOrigin::supportedTypes()
{
    PassengerTypesModel* model = newGrid();
    m_log.clear();
    model->setSupportedPassengerTypeCodes({"PT_ADULT"});
    model->setSupportedPassengerTypeCodes({"PT_ADULT", "PT_LFS"});
    QCOMPARE(records(),
             (QStringList{from(ordering, "LOG(INFO) << message", supporting,
                               "Products ordering in config is empty. Set default ordering. "
                               "TypeCodes Order: [1]"),
                          from(ordering, "LOG(INFO) << QStringLiteral(\"Append missing", supporting,
                               "Append missing type code 8 from config")}));
}

void TestLogOrigin::layoutByPosition()
{
    PassengerTypesModel* model = newGrid();
    addProducts(*model, "1a@2");
    m_log.clear();
    model->sortAndRegroup({"PT_ADULT"}, 2);
    const auto printed = [](const QString& message) {
        return from(grid, "writeProduct(LOG(INFO), record)", printing, message);
    };
    const QString product = "FromStopGroupId: 0 ToStopGroupId: 1 PassengerTypeId: 1 "
                            "PassengerTypeCode: 1 FareProductId: 1 Name: 1a Description: "
                            "a passenger type Pos: 2";
    QCOMPARE(
        records(),
        (QStringList{
            literal(positioning, "------------------- FARE PRODUCTS BEFORE --------------------"),
            printed(product),
            literal(positioning, "------------------- FARE PRODUCTS AFTER --------------------"),
            printed("FromStopGroupId: 0 ToStopGroupId: 0 PassengerTypeId: 0 PassengerTypeCode: 0 "
                    "FareProductId: 0 Name: ---DUMMY--- Description: ---NOT FOR SALE--- Pos: 1"),
            printed(product),
            from(ordering, "QStringLiteral(\"NumberOfCols", positioning, "NumberOfCols: 2"),
            from(ordering, "QStringLiteral(\"NumberOfRows", positioning, "NumberOfRows: 1"),
        }));
}

void TestLogOrigin::objectionToPositions()
{
    PassengerTypesModel* model = newGrid();
    model->setLogFareProducts(false);
    m_log.clear();
    for (const char* products : {"1a@1 1b@1", "1a@1 1b", "1a@0"}) {
        model->clearData();
        addProducts(*model, products);
        model->sortAndRegroup({"PT_ADULT"}, 2);
    }
    const auto objection = [](const QString& message) {
        return from(ordering, "LOG(INFO) << objection", positioning, message);
    };
    QCOMPARE(
        records(),
        (QStringList{
            objection(
                "------------------- DUPLICATE POSITIONS IN FARE PRODUCTS --------------------"),
            objection("------------------- POSITION NOT ASSIGNED TO PRODUCT --------------------"),
            objection("--- POSITION 0 ASSIGNED TO PRODUCT. THAT IS NOT ALLOWED. SHOULD ALWAYS "
                      "START COUNTING/NUMBERING POSITION FROM 1 ---"),
        }));
}

void TestLogOrigin::layoutByZones()
{
    PassengerTypesModel* model = newGrid();
    addProducts(*model, "0x>2 1b>2 1a>1 1d>1!");
    m_log.clear();
    stdoutOf([model] { model->sortAndRegroup({"PT_ADULT", "unknown"}, 2); });
    const auto product = [](int zone, int code, int id, const QString& name) {
        return from(
            ordering, "writeProduct(LOG(INFO), product)", grouping,
            QStringLiteral("FromStopGroupId: 0 ToStopGroupId: %1 PassengerTypeId: 1 "
                           "PassengerTypeCode: %2 FareProductId: %3 Name: %4 Description: "
                           "a passenger type")
                .arg(QString::number(zone), QString::number(code), QString::number(id), name));
    };
    const auto tile = [](int zone, int code, int id, const QString& name) {
        return from(
            ordering, "writeTile(LOG(INFO), *tile)", grouping,
            QStringLiteral("FromStopGroupId: 0 ToStopGroupId: %1 PassengerTypeId: 1 "
                           "PassengerTypeCode: %2 FareProductId: %3 FareProductName: %4 "
                           "Description: a passenger type")
                .arg(QString::number(zone), QString::number(code), QString::number(id), name));
    };
    const auto zone = [](int number) {
        return from(ordering, "el::base::Writer(el::Level::Info, __FILE__, __LINE__", groupingZone,
                    QStringLiteral("Group products for zone: %1").arg(number));
    };
    QCOMPARE(records(),
             (QStringList{
                 from(ordering, "LOG(INFO) << static_cast<int>(m_products.size())", grouping,
                      "3 products in our vector"),
                 literal(grouping, "------------------- BEFORE GROUPING --------------------"),
                 product(2, 0, 1, "0x"),
                 product(2, 1, 2, "1b"),
                 product(1, 1, 3, "1a"),
                 from(ordering, "LOG(INFO) << QStringLiteral(\"%1 zones", grouping,
                      "2 zones will be supported"),
                 // The statement goes on in the next line.
                 record(ordering, lineOf(ordering, "%1 passengerTypeCodes will", 1) - 1, grouping,
                        "2 passengerTypeCodes will be supported"),
                 zone(1),
                 zone(2),
                 from(ordering, "QStringLiteral(\"NumberOfCols", grouping, "NumberOfCols: 2", 2),
                 from(ordering, "QStringLiteral(\"NumberOfRows", grouping, "NumberOfRows: 3", 2),
                 literal(grouping, "------------------- AFTER GROUPING --------------------"),
                 tile(1, 1, 3, "1a"),
                 tile(2, 0, 1, "0x"),
                 tile(2, 1, 2, "1b"),
                 tile(1, 1, 4, "1d"),
             }));
}

void TestLogOrigin::zReport()
{
    ZReportModel reports(&m_owner);
    m_log.clear();
    reports.addItem(7, 0, 0.0, 0, 0.0, 0, 0.0, {}, {}, 0.0, 0.0, false, 0.0, {}, 1.5, 2.5);
    QCOMPARE(records(),
             QStringList(from(report, "LOG(INFO)",
                              "void ZReportModel::addItem(const qint32&, const qint32&, const "
                              "double&, const qint32&, const double&, const qint32&, const "
                              "double&, const QString&, const QString&, const double&, const "
                              "double&, const bool&, const double&, const QDateTime&, const "
                              "double&, const double&)",
                              "id: 7 currentDept: 1.5 maxAllowedDebt: 2.5")));
}

QTEST_GUILESS_MAIN(TestLogOrigin)

#include "tst_log_origin.moc"
