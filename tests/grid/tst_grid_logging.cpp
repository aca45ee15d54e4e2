#include "AutomaticSpacing.h"
#include "ForeignRow.h"
#include "LogCapture.h"
#include "PassengerTypeItem.h"
#include "PassengerTypesModel.h"
#include "Products.h"
#include "StdoutCapture.h"
#include "TerminalHome.h"

#include <QtTest>

#include <functional>
#include <limits>
#include <memory>

namespace
{

constexpr int lowest = std::numeric_limits<int>::min();
constexpr int highest = std::numeric_limits<int>::max();

const QString constructing = "PassengerTypesModel::PassengerTypesModel(QObject*)";
const QString printing = "void PassengerTypesModel::printProducts(const QVector<sProduct>&)";
const QString supporting =
    "void PassengerTypesModel::setSupportedPassengerTypeCodes(const QStringList&)";
const QString positioning = "void PassengerTypesModel::sortBasedOnBackendAssignment()";
const QString grouping = "void PassengerTypesModel::sortBasedOnLocalData(const QStringList&)";
const QString groupingZone = "void PassengerTypesModel::sortAndGroupProductsForZone(const int&)";

const char* const before = "------------------- FARE PRODUCTS BEFORE --------------------";
const char* const after = "------------------- FARE PRODUCTS AFTER --------------------";
const char* const duplicates =
    "------------------- DUPLICATE POSITIONS IN FARE PRODUCTS --------------------";
const char* const notAssigned =
    "------------------- POSITION NOT ASSIGNED TO PRODUCT --------------------";
const char* const positionZero =
    "--- POSITION 0 ASSIGNED TO PRODUCT. THAT IS NOT ALLOWED. SHOULD ALWAYS START "
    "COUNTING/NUMBERING POSITION FROM 1 ---";
const char* const beforeGrouping = "------------------- BEFORE GROUPING --------------------";
const char* const afterGrouping = "------------------- AFTER GROUPING --------------------";

/// One record as a text that failures show whole.
QString record(const QString& function, const QString& message)
{
    return function + " | " + message;
}

/// The signature as g++ prints it, whichever compiler printed it.
QString spelled(QString function)
{
    return function.replace(QRegularExpression(" +([&*])"), "\\1");
}

/// Builds a message from its pieces: under automatic spacing a blank follows each number and each
/// character string, but no QString.
class Pieces
{
public:
    Pieces& operator<<(int number) { return add(QString::number(number), true); }
    Pieces& operator<<(const char* text) { return add(text, true); }
    Pieces& operator<<(const QString& text) { return add(text, false); }

    QString text() const { return m_text; }

private:
    Pieces& add(const QString& text, bool isSpaced)
    {
        m_text += text;
        if (isSpaced && el::Loggers::hasFlag(el::LoggingFlag::AutoSpacing))
            m_text += ' ';
        return *this;
    }

    QString m_text;
};

QString literal(const char* text) { return (Pieces() << text).text(); }

/// What a product becomes in the dumps of the records.
Pieces piecesOf(const sProduct& product)
{
    return Pieces() << "FromStopGroupId: " << product.fromStopGroupId
                    << " ToStopGroupId: " << product.toStopGroupId
                    << " PassengerTypeId: " << product.passengerTypeId
                    << " PassengerTypeCode: " << product.passengerTypeCode
                    << " FareProductId: " << product.fareProductId
                    << " Name: " << product.fareProductName
                    << " Description: " << product.description;
}

QString printedLine(const sProduct& product)
{
    return record(printing, (piecesOf(product) << " Pos: " << product.pos).text());
}

QString groupedLine(const sProduct& product) { return record(grouping, piecesOf(product).text()); }

/// What a product becomes in the dump of the tiles.
QString tileLine(const sProduct& product)
{
    return record(grouping,
                  (Pieces() << "FromStopGroupId: " << product.fromStopGroupId
                            << " ToStopGroupId: " << product.toStopGroupId
                            << " PassengerTypeId: " << product.passengerTypeId
                            << " PassengerTypeCode: " << QString::number(product.passengerTypeCode)
                            << " FareProductId: " << product.fareProductId << " FareProductName: "
                            << product.fareProductName << " Description: " << product.description)
                      .text());
}

sProduct product(const QString& name, int type, int zone, int position = -1)
{
    sProduct product;
    product.fromStopGroupId = 4;
    product.toStopGroupId = zone;
    product.passengerTypeId = 20 + type;
    product.passengerTypeCode = type;
    product.fareProductId = name.isEmpty() ? 0 : name.at(0).unicode();
    product.fareProductName = name;
    product.description = "type " + QString::number(type);
    product.hasExpired = false;
    product.pos = position;
    return product;
}

sProduct placeholder(int type, int position = -1)
{
    sProduct placeholder;
    placeholder.passengerTypeCode = type;
    placeholder.pos = position;
    return placeholder;
}

void add(PassengerTypesModel& model, const sProduct& product, bool isDaily = false)
{
    model.addItem(product.passengerTypeId, product.description, typeText(product.passengerTypeCode),
                  product.icon, product.price, product.fareProductId, product.fareProductName,
                  product.isReturnFee, product.fromStopGroupId, product.toStopGroupId,
                  product.fareProductColor, product.hasExpired, product.fareDiscount, isDaily,
                  product.pos);
}

/// Hears of every record of logger "default" and acts at the one of the wanted number.
struct Listener : el::LogDispatchCallback
{
    int wantedRecord = 0;
    std::function<void()> action;
    int recordCount = 0;
    QVector<el::base::DispatchAction> dispatchActions;

    void handle(const el::LogDispatchData* data) override
    {
        if (data->logMessage()->logger()->id() != "default")
            return;
        dispatchActions.append(data->dispatchAction());
        if (++recordCount == wantedRecord && action)
            action();
    }

    static Listener* install()
    {
        el::Helpers::installLogDispatchCallback<Listener>("Listener");
        return el::Helpers::logDispatchCallback<Listener>("Listener");
    }

    static void uninstall() { el::Helpers::uninstallLogDispatchCallback<Listener>("Listener"); }
};

using Layout = std::function<void(PassengerTypesModel&)>;

} // namespace

Q_DECLARE_METATYPE(sProduct)

/// Every test runs with automatic spacing off and on.
class TestGridLogging : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data();
    void init();
    void cleanup();

    void recordsNameTheirOrigin();
    void piecesAreSpaced();

    void constructorIsAlwaysLogged_data();
    void constructorIsAlwaysLogged();
    void supportedTypesAreAlwaysLogged_data();
    void supportedTypesAreAlwaysLogged();

    void productsArePrinted_data();
    void productsArePrinted();
    void nothingIsPrintedOfNothing();

    void layoutByPosition_data();
    void layoutByPosition();
    void objectionToPositions_data();
    void objectionToPositions();

    void layoutByZones_data();
    void layoutByZones();
    void tilesWithoutDescriptionAreLeftOut();
    void tilesThatWereThereAreDumpedToo();
    void layoutOfNothing();
    void productsInVectorAreCounted();
    void groupingOneZone_data();
    void groupingOneZone();
    void otherOperationsAreSilent();

    void switchedOffInTheMiddle_data();
    void switchedOffInTheMiddle();
    void switchedOnInTheMiddle_data();
    void switchedOnInTheMiddle();
    void objectionTurnsSwitchOn();

private:
    PassengerTypesModel& makeModel(bool logFareProducts);
    QStringList records() const;

    std::unique_ptr<AutomaticSpacing> m_spacing;
    std::unique_ptr<QObject> m_owner; // of models and their prototypes
    std::unique_ptr<LogCapture> m_log;
    std::unique_ptr<PassengerTypesModel> m_model;
};

void TestGridLogging::initTestCase_data()
{
    QTest::addColumn<bool>("automaticSpacing");
    QTest::newRow("automatic spacing off") << false;
    QTest::newRow("automatic spacing on") << true;
}

void TestGridLogging::init()
{
    QFETCH_GLOBAL(bool, automaticSpacing);
    m_spacing = std::make_unique<AutomaticSpacing>(automaticSpacing);
    m_owner = std::make_unique<QObject>();
    m_log = std::make_unique<LogCapture>();
}

void TestGridLogging::cleanup()
{
    m_model.reset();
    m_log.reset();
    m_owner.reset();
    m_spacing.reset();
}

PassengerTypesModel& TestGridLogging::makeModel(bool logFareProducts)
{
    const TerminalHome home({"PT_ADULT", "PT_STUDENT_1"});
    m_model = std::make_unique<PassengerTypesModel>(m_owner.get());
    m_model->setLogFareProducts(logFareProducts);
    m_log->clear();
    return *m_model;
}

QStringList TestGridLogging::records() const
{
    QStringList texts;
    for (const LogCapture::Record& entry : m_log->records())
        texts.append(record(spelled(entry.function), entry.message));
    return texts;
}

// Origin and pieces

void TestGridLogging::recordsNameTheirOrigin()
{
    Listener* listener = Listener::install();
    PassengerTypesModel& model = makeModel(true);
    model.setSupportedPassengerTypeCodes({"PT_LFS"});
    {
        const StdoutCapture quiet;
        for (const char* products : {"1a@2 1x!", "1a@2 1b@2", "1a", "1a@0", "1a 1b@4", "1a@-4"}) {
            model.clearData();
            addProducts(model, products);
            model.sortAndRegroup({"PT_ADULT"}, 2);
        }
    }
    const QVector<el::base::DispatchAction> dispatchActions = listener->dispatchActions;
    Listener::uninstall();

    QSet<QString> functions;
    const QVector<LogCapture::Record> entries = m_log->records();
    QCOMPARE(dispatchActions.size(), entries.size() + 1); // and the constructor's
    for (const el::base::DispatchAction action : dispatchActions)
        QCOMPARE(int(action), int(el::base::DispatchAction::NormalLog));
    for (const LogCapture::Record& entry : entries) {
        QCOMPARE(entry.loggerId, QString("default"));
        QCOMPARE(int(entry.level), 128);
        QVERIFY2(entry.file.startsWith("GuiCore/src/Models/PassengerTypesModel"),
                 qPrintable(entry.file));
        QVERIFY2(!entry.file.contains(".."), qPrintable(entry.file));
        QVERIFY2(entry.line > 0, qPrintable(entry.message));
        functions.insert(spelled(entry.function));
    }
    QCOMPARE(functions, (QSet<QString>{printing, supporting, positioning, grouping, groupingZone}));
}

void TestGridLogging::piecesAreSpaced()
{
    QFETCH_GLOBAL(bool, automaticSpacing);
    PassengerTypesModel& model = makeModel(true);
    model.printProducts({product("Day", 3, 9, 12)});
    add(model, product("Day", 1, 9));
    stdoutOf([&model] { model.sortAndRegroup({"PT_ADULT"}, 1); });

    const QStringList unspaced{
        "FromStopGroupId: 4 ToStopGroupId: 9 PassengerTypeId: 23 PassengerTypeCode: 3 "
        "FareProductId: 68 Name: Day Description: type 3 Pos: 12",
        "1 products in our vector",
        "------------------- BEFORE GROUPING --------------------",
        "FromStopGroupId: 4 ToStopGroupId: 9 PassengerTypeId: 21 PassengerTypeCode: 1 "
        "FareProductId: 68 Name: Day Description: type 1",
        "1 zones will be supported",
        "1 passengerTypeCodes will be supported",
        "Group products for zone: 9",
        "NumberOfCols: 1",
        "NumberOfRows: 1",
        "------------------- AFTER GROUPING --------------------",
        "FromStopGroupId: 4 ToStopGroupId: 9 PassengerTypeId: 21 PassengerTypeCode: 1 "
        "FareProductId: 68 FareProductName: Day Description: type 1",
    };
    const QStringList spaced{
        "FromStopGroupId:  4  ToStopGroupId:  9  PassengerTypeId:  23  PassengerTypeCode:  3  "
        "FareProductId:  68  Name:  Day Description:  type 3 Pos:  12 ",
        "1  products in our vector ",
        "------------------- BEFORE GROUPING -------------------- ",
        "FromStopGroupId:  4  ToStopGroupId:  9  PassengerTypeId:  21  PassengerTypeCode:  1  "
        "FareProductId:  68  Name:  Day Description:  type 1",
        "1 zones will be supported",
        "1 passengerTypeCodes will be supported",
        "Group products for zone: 9",
        "NumberOfCols: 1",
        "NumberOfRows: 1",
        "------------------- AFTER GROUPING -------------------- ",
        "FromStopGroupId:  4  ToStopGroupId:  9  PassengerTypeId:  21  PassengerTypeCode:  1 "
        "FareProductId:  68  FareProductName:  Day Description:  type 1",
    };
    QCOMPARE(m_log->messages(), automaticSpacing ? spaced : unspaced);
}

// Written always

void TestGridLogging::constructorIsAlwaysLogged_data()
{
    QTest::addColumn<QStringList>("order");
    QTest::addColumn<QStringList>("levels");
    QTest::addColumn<QString>("message");

    const QStringList on{"log_fareproducts"};
    QTest::newRow("order, switch off")
        << QStringList{"PT_ADULT", "X"} << QStringList() << "TypeCodes Order: [1->PT_ADULT],[0->X]";
    QTest::newRow("order, switch on")
        << QStringList{"PT_ADULT", "X"} << on << "TypeCodes Order: [1->PT_ADULT],[0->X]";
    QTest::newRow("no order, switch off")
        << QStringList() << QStringList()
        << "TypeCodes Order: Products ordering in config is empty.";
    QTest::newRow("no order, switch on")
        << QStringList() << on << "TypeCodes Order: Products ordering in config is empty.";
}

void TestGridLogging::constructorIsAlwaysLogged()
{
    QFETCH(QStringList, order);
    QFETCH(QStringList, levels);
    QFETCH(QString, message);

    const TerminalHome home(order, levels);
    const PassengerTypesModel model(m_owner.get());
    QCOMPARE(records(), QStringList(record(constructing, message)));
    const LogCapture::Record entry = m_log->records().first();
    QVERIFY2(entry.file.startsWith("GuiCore/src/Models/PassengerTypesModel"),
             qPrintable(entry.file));
    QCOMPARE(int(entry.level), 128);
    QVERIFY(entry.line > 0);
}

void TestGridLogging::supportedTypesAreAlwaysLogged_data()
{
    QTest::addColumn<bool>("logFareProducts");
    QTest::newRow("switch off") << false;
    QTest::newRow("switch on") << true;
}

void TestGridLogging::supportedTypesAreAlwaysLogged()
{
    QFETCH(bool, logFareProducts);

    const TerminalHome home;
    PassengerTypesModel model(m_owner.get());
    model.setLogFareProducts(logFareProducts);
    m_log->clear();
    model.setSupportedPassengerTypeCodes({"PT_ADULT", "PT_LFS"});
    model.setSupportedPassengerTypeCodes({"PT_MILITARY_1"});
    QCOMPARE(records(),
             (QStringList{
                 record(supporting, "Products ordering in config is empty. Set default ordering. "
                                    "TypeCodes Order: [1],[8]"),
                 record(supporting, "Append missing type code 7 from config"),
             }));
}

// Product dumps

void TestGridLogging::productsArePrinted_data()
{
    QTest::addColumn<QVector<sProduct>>("products");

    QTest::newRow("one product") << QVector<sProduct>{product("Day", 1, 2, 3)};
    QTest::newRow("several products, not sorted")
        << QVector<sProduct>{product("b", 3, 2, 2), product("a", 1, 1, 1), product("b", 3, 2, 2)};
    QTest::newRow("placeholder") << QVector<sProduct>{sProduct()};
    QTest::newRow("empty texts") << QVector<sProduct>{product("", 0, 0)};
    QTest::newRow("texts beyond ASCII")
        << QVector<sProduct>{product(QString::fromUtf8("Bilet roczny – żółty €"), 1, 1)};
    QTest::newRow("texts that look like places to fill")
        << QVector<sProduct>{product("%1 %s %msg %", 1, 1)};
    sProduct extreme = product("extreme", 1, highest, lowest);
    extreme.fromStopGroupId = lowest;
    extreme.passengerTypeId = highest;
    extreme.passengerTypeCode = lowest;
    extreme.fareProductId = -1;
    QTest::newRow("lowest and highest numbers") << QVector<sProduct>{extreme};
}

void TestGridLogging::productsArePrinted()
{
    QFETCH(QVector<sProduct>, products);

    PassengerTypesModel& model = makeModel(true);
    model.printProducts(products);
    QStringList expected;
    for (const sProduct& entry : qAsConst(products))
        expected.append(printedLine(entry));
    QCOMPARE(records(), expected);

    m_log->clear();
    model.setLogFareProducts(false);
    model.setLogExtraFareProducts(true);
    model.printProducts(products);
    QCOMPARE(records(), QStringList());
}

void TestGridLogging::nothingIsPrintedOfNothing()
{
    for (const bool logFareProducts : {false, true}) {
        makeModel(logFareProducts).printProducts({});
        QCOMPARE(records(), QStringList());
    }
}

// Layout by position

void TestGridLogging::layoutByPosition_data()
{
    QTest::addColumn<bool>("logFareProducts");
    QTest::newRow("switch off") << false;
    QTest::newRow("switch on") << true;
}

void TestGridLogging::layoutByPosition()
{
    QFETCH(bool, logFareProducts);

    PassengerTypesModel& model = makeModel(logFareProducts);
    const sProduct late = product("late", 3, 1, 4);
    const sProduct early = product("early", 1, 2, 2);
    add(model, late);
    add(model, early);
    add(model, product("daily", 1, 3), true);
    model.sortAndRegroup({}, 3);

    const QStringList expected{
        record(positioning, literal(before)),
        printedLine(late),
        printedLine(early),
        record(positioning, literal(after)),
        printedLine(placeholder(0, 1)),
        printedLine(early),
        printedLine(placeholder(0, 3)),
        printedLine(late),
        printedLine(placeholder(0, 5)),
        printedLine(placeholder(0, 6)),
        record(positioning, "NumberOfCols: 3"),
        record(positioning, "NumberOfRows: 3"),
    };
    QCOMPARE(records(), logFareProducts ? expected : QStringList());
}

void TestGridLogging::objectionToPositions_data()
{
    QTest::addColumn<QVector<int>>("positions");
    QTest::addColumn<QString>("objection");
    QTest::addColumn<bool>("logFareProducts");

    for (const bool logFareProducts : {false, true}) {
        const char* state = logFareProducts ? "on" : "off";
        QTest::addRow("duplicates, switch %s", state)
            << QVector<int>{2, 1, 2} << duplicates << logFareProducts;
        QTest::addRow("two without position, switch %s", state)
            << QVector<int>{-1, 4, -1} << duplicates << logFareProducts;
        QTest::addRow("one without position, switch %s", state)
            << QVector<int>{3, -1, 4} << notAssigned << logFareProducts;
        QTest::addRow("position 0, switch %s", state)
            << QVector<int>{0, 1, 2} << positionZero << logFareProducts;
        QTest::addRow("position below -1, switch %s", state)
            << QVector<int>{-2, 1} << notAssigned << logFareProducts;
        QTest::addRow("highest position, switch %s", state)
            << QVector<int>{1, highest} << notAssigned << logFareProducts;
    }
}

void TestGridLogging::objectionToPositions()
{
    QFETCH(QVector<int>, positions);
    QFETCH(QString, objection);
    QFETCH(bool, logFareProducts);

    PassengerTypesModel& model = makeModel(logFareProducts);
    QStringList dump;
    for (const int position : qAsConst(positions)) {
        const sProduct entry = product("p", 1, 1, position);
        add(model, entry);
        dump.append(printedLine(entry));
    }
    add(model, product("daily", 1, 3), true);
    model.sortAndRegroup({}, 3);

    const QString message = record(positioning, literal(qPrintable(objection)));
    const QStringList expected = QStringList(record(positioning, literal(before))) + dump +
                                 QStringList{message, record(positioning, "NumberOfCols: 3"),
                                             record(positioning, "NumberOfRows: 2")};
    QCOMPARE(records(), logFareProducts ? expected : QStringList(message));
}

// Layout by zones

void TestGridLogging::layoutByZones_data()
{
    QTest::addColumn<bool>("logFareProducts");
    QTest::newRow("switch off") << false;
    QTest::newRow("switch on") << true;
}

void TestGridLogging::layoutByZones()
{
    QFETCH(bool, logFareProducts);

    PassengerTypesModel& model = makeModel(logFareProducts);
    const sProduct a = product("a", 1, 7);
    const sProduct b = product("b", 3, -2);
    const sProduct c = product("c", 1, -2);
    const sProduct d = product("d", 9, 7);
    const sProduct daily = product("e", 1, 3);
    for (const sProduct& entry : {d, c, b, a})
        add(model, entry);
    add(model, daily, true);
    stdoutOf([&model] { model.sortAndRegroup({"PT_ADULT", "PT_STUDENT_1"}, 2); });

    const QStringList expected{
        record(grouping, (Pieces() << 4 << " products in our vector").text()),
        record(grouping, literal(beforeGrouping)),
        groupedLine(a),
        groupedLine(b),
        groupedLine(c),
        groupedLine(d),
        record(grouping, "2 zones will be supported"),
        record(grouping, "3 passengerTypeCodes will be supported"),
        record(groupingZone, "Group products for zone: -2"),
        record(groupingZone, "Group products for zone: 7"),
        record(grouping, "NumberOfCols: 2"),
        record(grouping, "NumberOfRows: 3"),
        record(grouping, literal(afterGrouping)),
        tileLine(c),
        tileLine(b),
        tileLine(a),
        tileLine(placeholder(3)),
        tileLine(d),
        tileLine(daily),
    };
    QCOMPARE(records(), logFareProducts ? expected : QStringList());
}

void TestGridLogging::tilesWithoutDescriptionAreLeftOut()
{
    PassengerTypesModel& model = makeModel(true);
    sProduct silent = product("silent", 1, 1);
    silent.description.clear();
    const sProduct shown = product("xshown", 1, 1);
    const sProduct nameless = [] {
        sProduct entry = product("ynameless", 1, 1);
        entry.fareProductName.clear();
        return entry;
    }();
    for (const sProduct& entry : {silent, shown, nameless})
        add(model, entry);
    stdoutOf([&model] { model.sortAndRegroup({"PT_ADULT"}, 1); });

    const QStringList texts = records();
    QCOMPARE(texts.filter(groupedLine(silent)).size(), 1); // records are dumped all the same
    QCOMPARE(texts.mid(texts.indexOf(record(grouping, literal(afterGrouping))) + 1),
             (QStringList{tileLine(shown), tileLine(nameless)}));
}

void TestGridLogging::tilesThatWereThereAreDumpedToo()
{
    PassengerTypesModel& model = makeModel(true);
    const sProduct old = product("old", 5, 8, 6);
    const sProduct fresh = product("fresh", 1, 1);
    model.addItemsToModel({old});
    model.appendRow(new ForeignRow("a description", &model));
    add(model, fresh);
    stdoutOf([&model] { model.sortAndRegroup({"PT_ADULT"}, 1); });

    const QStringList texts = records();
    QCOMPARE(texts.mid(texts.indexOf(record(grouping, literal(afterGrouping))) + 1),
             (QStringList{tileLine(old), tileLine(fresh)}));
}

void TestGridLogging::layoutOfNothing()
{
    PassengerTypesModel& model = makeModel(true);
    model.sortAndRegroup({"PT_ADULT"}, 0);
    QCOMPARE(records(), (QStringList{
                            record(grouping, (Pieces() << 0 << " products in our vector").text()),
                            record(grouping, literal(beforeGrouping)),
                            record(grouping, "0 zones will be supported"),
                            record(grouping, "0 passengerTypeCodes will be supported"),
                            record(grouping, "NumberOfCols: 3"),
                            record(grouping, "NumberOfRows: 0"),
                            record(grouping, literal(afterGrouping)),
                        }));
}

void TestGridLogging::productsInVectorAreCounted()
{
    PassengerTypesModel& model = makeModel(true);
    for (int i = 0; i < 12; ++i) {
        sProduct counted = product("p", i % 2 == 0 ? 1 : 3, i % 3);
        counted.passengerTypeId = i; // does not tell types apart
        add(model, counted);
    }
    add(model, product("daily", 1, 1), true); // does not count
    stdoutOf([&model] { model.sortAndRegroup({"PT_ADULT"}, 1); });
    const QStringList texts = records();
    QCOMPARE(texts.first(), record(grouping, (Pieces() << 12 << " products in our vector").text()));
    QVERIFY(texts.contains(record(grouping, "3 zones will be supported")));
    QVERIFY(texts.contains(record(grouping, "2 passengerTypeCodes will be supported")));
    QVERIFY(texts.contains(record(grouping, "NumberOfRows: 7")));
}

void TestGridLogging::groupingOneZone_data()
{
    QTest::addColumn<int>("zone");

    QTest::newRow("zone with products") << 1;
    QTest::newRow("zone without products") << 2;
    QTest::newRow("lowest zone") << lowest;
    QTest::newRow("highest zone") << highest;
}

void TestGridLogging::groupingOneZone()
{
    QFETCH(int, zone);

    PassengerTypesModel& model = makeModel(true);
    add(model, product("a", 1, 1));
    stdoutOf([&] { model.sortAndGroupProductsForZone(zone); });
    QCOMPARE(records(),
             QStringList(record(groupingZone, QString("Group products for zone: %1").arg(zone))));
    m_log->clear();
    model.setLogFareProducts(false);
    stdoutOf([&] { model.sortAndGroupProductsForZone(zone); });
    QCOMPARE(records(), QStringList());
}

void TestGridLogging::otherOperationsAreSilent()
{
    PassengerTypesModel& model = makeModel(true);
    model.addItemsToModel({product("a", 1, 1, 1), product("b", 1, 1, 2)});
    add(model, product("c", 1, 1));
    model.setSelected(0, true);
    model.getNumberOfNonExpiredProducts();
    model.getFareProductName(1);
    model.sortByPrice(Qt::AscendingOrder);
    QVector<sProduct> products{product("a", 1, 1), product("b", 1, 1)};
    QVector<int> numbers{1, 0};
    model.reOrder(products, numbers);
    stdoutOf([&model] { model.getIndeces({1, 3}); });
    model.setNumberOfColumns(7);
    model.setNumberOfRows(7);
    model.setLogExtraFareProducts(true);
    model.clearData();
    QCOMPARE(records(), QStringList());
}

// The switch is tested again at each place

void TestGridLogging::switchedOffInTheMiddle_data()
{
    QTest::addColumn<QString>("products");
    QTest::addColumn<QString>("alwaysWritten");
    QTest::addColumn<int>("count");

    QTest::newRow("numbered: titles, two dumps, grid size") << "1a@2 3b@4 1x!"
                                                            << "" << 1 + 2 + 1 + 4 + 2;
    QTest::newRow("duplicates") << "1a@2 3b@2 1x!" << duplicates << 1 + 2 + 1 + 2;
    QTest::newRow("not assigned") << "1a@2 3b 1x!" << notAssigned << 1 + 2 + 1 + 2;
    QTest::newRow("position 0") << "1a@2 3b@0 1x!" << positionZero << 1 + 2 + 1 + 2;
    QTest::newRow("zones: all lines") << "1a>1 3b>1 1c>2 1x!"
                                      << "" << 2 + 3 + 2 + 2 + 3 + 5;
}

void TestGridLogging::switchedOffInTheMiddle()
{
    QFETCH(QString, products);
    QFETCH(QString, alwaysWritten);
    QFETCH(int, count);

    const auto layOut = [this, &products](int switchedOffAt) {
        PassengerTypesModel& model = makeModel(true);
        addProducts(model, products);
        Listener* listener = Listener::install();
        listener->wantedRecord = switchedOffAt;
        listener->action = [&model] { model.setLogFareProducts(false); };
        stdoutOf([&model] { model.sortAndRegroup({"PT_ADULT", "PT_STUDENT_1"}, 2); });
        Listener::uninstall();
        return records();
    };
    const QStringList all = layOut(0);
    QCOMPARE(all.size(), count);
    for (int last = 1; last <= count; ++last) {
        QStringList expected = all.mid(0, last);
        if (!alwaysWritten.isEmpty()) {
            const QString always = record(positioning, literal(qPrintable(alwaysWritten)));
            if (!expected.contains(always))
                expected.append(always);
        }
        QCOMPARE(layOut(last), expected);
    }
}

void TestGridLogging::switchedOnInTheMiddle_data()
{
    QTest::addColumn<QString>("products");
    QTest::addColumn<QString>("emitted");
    QTest::addColumn<QString>("firstFunction");
    QTest::addColumn<QString>("firstMessage");
    QTest::addColumn<int>("count");

    QTest::newRow("numbered: when the rows are set, the second dump follows")
        << "1a@2 3b@4 1x!"
        << "numberOfRowsChanged(2)" << positioning << after << 1 + 4 + 2;
    QTest::newRow("numbered: when tiles come, the second dump follows")
        << "1a@2 3b@4 1x!"
        << "countChanged(4)" << positioning << after << 1 + 4 + 2;
    QTest::newRow("numbered: when the daily product comes, the grid size follows")
        << "1a@2 3b@4 1x!"
        << "countChanged(5)" << positioning << "NumberOfCols: 2" << 2;
    QTest::newRow("zones: when the rows are reset, everything follows")
        << "1a>1 3b>1 1c>2 1x!"
        << "numberOfRowsChanged(0)" << grouping << "3 products in our vector"
        << 2 + 3 + 2 + 2 + 3 + 5;
    QTest::newRow("zones: when the first block is counted, the second zone follows")
        << "1a>1 3b>1 1c>2 1x!"
        << "numberOfRowsChanged(1)" << groupingZone << "Group products for zone: 2" << 1 + 3 + 5;
    QTest::newRow("zones: when the daily product comes, the grid size follows")
        << "1a>1 3b>1 1c>2 1x!"
        << "countChanged(5)" << grouping << "NumberOfCols: 2" << 3 + 5;
}

void TestGridLogging::switchedOnInTheMiddle()
{
    QFETCH(QString, products);
    QFETCH(QString, emitted);
    QFETCH(QString, firstFunction);
    QFETCH(QString, firstMessage);
    QFETCH(int, count);

    PassengerTypesModel& model = makeModel(false);
    model.setNumberOfRows(9);
    addProducts(model, products);
    const auto turnOnAt = [&](const char* signal, int value) {
        if (emitted == QString("%1(%2)").arg(signal).arg(value))
            model.setLogFareProducts(true);
    };
    connect(&model, &PassengerTypesModel::numberOfRowsChanged, &model,
            [&](int rows) { turnOnAt("numberOfRowsChanged", rows); });
    connect(&model, &PassengerTypesModel::countChanged, &model,
            [&](int rows) { turnOnAt("countChanged", rows); });
    stdoutOf([&model] { model.sortAndRegroup({"PT_ADULT", "PT_STUDENT_1"}, 2); });

    const QStringList texts = records();
    QCOMPARE(texts.size(), count);
    QVERIFY2(texts.first().simplified().startsWith(firstFunction + " | "),
             qPrintable(texts.first()));
    QCOMPARE(m_log->messages().first().simplified(), firstMessage);
}

void TestGridLogging::objectionTurnsSwitchOn()
{
    PassengerTypesModel& model = makeModel(false);
    addProducts(model, "1a@0");
    Listener* listener = Listener::install();
    listener->wantedRecord = 1;
    listener->action = [&model] { model.setLogFareProducts(true); };
    model.sortAndRegroup({}, 2);
    Listener::uninstall();
    QCOMPARE(records(), (QStringList{record(positioning, literal(positionZero)),
                                     record(positioning, "NumberOfCols: 2"),
                                     record(positioning, "NumberOfRows: 1")}));
}

QTEST_GUILESS_MAIN(TestGridLogging)
#include "tst_grid_logging.moc"
