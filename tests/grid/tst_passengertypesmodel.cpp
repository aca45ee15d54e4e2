#include "ForeignRow.h"
#include "GridText.h"
#include "LogCapture.h"
#include "MetaObjectText.h"
#include "PassengerTypeItem.h"
#include "PassengerTypesModel.h"
#include "PassengerTypesModelInspector.h"
#include "Products.h"
#include "SignalLog.h"
#include "StdoutCapture.h"
#include "TerminalHome.h"

#include <core/JsonObjectFactory.h>

#include <QtTest>

#include <cstring>
#include <limits>
#include <memory>
#include <type_traits>

using QJsonWrapper::JsonObjectFactory;
using rivo::core::SettingsConfig;

namespace
{

using Model = PassengerTypesModel;

constexpr int lowest = std::numeric_limits<int>::min();
constexpr int highest = std::numeric_limits<int>::max();

/// Whether a public operation of the model has exactly this signature.
template <typename Signature, typename Operation>
constexpr bool is(Operation Model::*)
{
    return std::is_same_v<Operation, Signature>;
}

static_assert(std::is_base_of_v<rivo::models::ListModel, Model>);
static_assert(std::is_default_constructible_v<Model> && std::is_constructible_v<Model, QObject*>);

static_assert(is<int() const>(&Model::numberOfColumns));
static_assert(is<int() const>(&Model::numberOfRows));
static_assert(is<bool() const>(&Model::logFareProducts));
static_assert(is<bool() const>(&Model::logExtraFareProducts));
static_assert(is<void(int)>(&Model::setNumberOfColumns));
static_assert(is<void(int)>(&Model::setNumberOfRows));
static_assert(is<void(bool)>(&Model::setLogFareProducts));
static_assert(is<void(bool)>(&Model::setLogExtraFareProducts));

static_assert(is<void(const int&, const QString&, const QString&, const QString&, const double&,
                      const int&, QString, const bool&, const int&, const int&, QString,
                      const bool&, const double&, const bool&, int)>(&Model::addItem));
static_assert(is<void(const QVector<sProduct>&)>(&Model::addItemsToModel));
static_assert(is<QString(int)>(&Model::getFareProductName));
static_assert(is<void()>(&Model::clearData));
static_assert(is<void(const int&, const bool&)>(&Model::setSelected));
static_assert(is<int()>(&Model::getNumberOfNonExpiredProducts));
static_assert(is<void(Qt::SortOrder)>(&Model::sortByPrice));
static_assert(is<void(const QVector<sProduct>&)>(&Model::printProducts));

static_assert(is<void(QStringList const&)>(&Model::setSupportedPassengerTypeCodes));
static_assert(is<bool(QVector<sProduct> const&)>(&Model::hasBackendAssignedSortingToProducts));
static_assert(is<bool(QVector<sProduct> const&)>(&Model::checkForPosDuplicates));
static_assert(is<bool(QVector<sProduct> const&)>(&Model::hasBackendAssignedPosToProduct));
static_assert(is<bool(QVector<sProduct> const&)>(&Model::hasBackendAssignedPosToZero));
static_assert(is<void()>(&Model::sortBasedOnBackendAssignment));
static_assert(is<void(QStringList const&)>(&Model::sortBasedOnLocalData));
static_assert(is<QVector<int>(QVector<int>)>(&Model::getIndeces));
static_assert(is<void(QVector<sProduct>&, QVector<int>&)>(&Model::reOrder));
static_assert(is<void(QStringList const&, int const&)>(&Model::sortAndRegroup));
static_assert(is<void(int const&)>(&Model::sortAndGroupProductsForZone));

static_assert(is<void(int)>(&Model::numberOfColumnsChanged));
static_assert(is<void(int)>(&Model::numberOfRowsChanged));
static_assert(is<void()>(&Model::logFareProductsChanged));
static_assert(is<void()>(&Model::logExtraFareProductsChanged));

/// The members that the model is made of, in their order.
struct Members : rivo::models::ListModel
{
    using ListModel::ListModel;

    QVector<sProduct> products;
    QVector<sProduct> dailyProducts;
    QVector<sProduct> groupedProducts;
    int numberOfColumns = 3;
    QVector<int> supportedTypeCodes;
    QVector<int> typeCodesOrder;
    QVector<int> localTypeCodes;
    bool logFareProducts = false;
    int numberOfRows = 0;
    bool logExtraFareProducts = false;
};

static_assert(sizeof(Model) == sizeof(Members));

/// Distance of a member from the beginning of its object.
template <typename Object, typename Member>
std::ptrdiff_t placeOf(const Object& object, const Member& member)
{
    return reinterpret_cast<const char*>(&member) - reinterpret_cast<const char*>(&object);
}

/// What the model holds at the place where `Members` has `member`.
template <typename Member>
Member valueAtPlaceOf(const Model& model, const Members& members, const Member& member)
{
    Member value;
    std::memcpy(&value, reinterpret_cast<const char*>(&model) + placeOf(members, member),
                sizeof(value));
    return value;
}

// Before main(), but after the libraries were loaded: no model exists yet.
const QObject* const registeredAtLoad = JsonObjectFactory::m_ObjectsMap().value("settingsConfig");
const bool isRegisteredAtLoad = JsonObjectFactory::isRegistered("settingsConfig");

/// How many receivers follow the configured log levels.
int followersOf(const SettingsConfig* settings)
{
    struct Access : QObject
    {
        using QObject::receivers;
    };
    return (settings->*&Access::receivers)(SIGNAL(logLevelsChanged(QStringList)));
}

sProduct productWithPrice(double price)
{
    sProduct product;
    product.price = price;
    return product;
}

QList<double> pricesOf(const Model& model)
{
    QList<double> prices;
    for (int row = 0; row < model.rowCount(); ++row)
        prices.append(model.data(model.index(row, 0), PassengerTypeItem::PriceRole).toDouble());
    return prices;
}

PassengerTypeItem* tileAt(const Model& model, int row)
{
    return qobject_cast<PassengerTypeItem*>(model.itemFromRow(row));
}

} // namespace

Q_DECLARE_METATYPE(QList<double>)

class TestPassengerTypesModel : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void metaObjectIsWhole();
    void propertiesAnnounceThemselves();
    void membersStandInOrder();

    void newModelHasDefaults();
    void setterAnnouncesDifferentValueOnce_data();
    void setterAnnouncesDifferentValueOnce();

    void constructorReadsDisplayOrder_data();
    void constructorReadsDisplayOrder();
    void constructorReadsLogLevels_data();
    void constructorReadsLogLevels();
    void constructorReadsMarkerFile_data();
    void constructorReadsMarkerFile();
    void markerFileIsReadOnce();
    void constructorLogsWhateverTheSwitchesSay();
    void eachModelReadsTheHomeOfItsTime();

    void prototypeBelongsToParentOfModel();
    void modelNeedsNoParent();
    void destructorLeavesRowsToTheirParents();

    void logLevelsAreFollowed_data();
    void logLevelsAreFollowed();
    void logLevelsFollowedByEveryModel();
    void subscriptionEndsWithModel();
    void settingsFileIsFollowed_data();
    void settingsFileIsFollowed();
    void displayOrderIsReadAtConstructionOnly();

    void settingsConfigIsRegisteredAtLoad();
    void registrationLeavesEntryAsItIs();
    void emptyRegistrationIsReported();

    void addedItemIsKeptAsRecord();
    void flagsOfAddedItemAreNotConfused();
    void dailyItemIsKeptApart();
    void addItemEmitsNothing();
    void addedTypeTextIsMapped_data();
    void addedTypeTextIsMapped();

    void clearDataForgetsProductsAndRows();
    void clearDataRemovesRowsWithoutProducts();
    void clearDataWithoutRowsEmitsNothing();
    void clearDataOfNewModelEmitsNothing();

    void setSelectedChangesOneTile();
    void setSelectedIgnoresRowsOutOfRange_data();
    void setSelectedIgnoresRowsOutOfRange();
    void setSelectedIgnoresForeignRows();
    void invokablesWorkByName();

    void nonExpiredTilesAreCounted();
    void nonExpiredTilesOfEmptyModel();

    void sortByPriceIsDescendingButForTheLastRow_data();
    void sortByPriceIsDescendingButForTheLastRow();

private:
    std::unique_ptr<QObject> m_owner; // of models and their prototypes
    std::unique_ptr<LogCapture> m_log;
    std::unique_ptr<TerminalHome> m_home;
};

void TestPassengerTypesModel::init()
{
    m_owner = std::make_unique<QObject>();
    m_log = std::make_unique<LogCapture>();
    m_home = std::make_unique<TerminalHome>();
}

void TestPassengerTypesModel::cleanup()
{
    m_home.reset();
    m_log.reset();
    m_owner.reset();
}

// Interface

void TestPassengerTypesModel::metaObjectIsWhole()
{
    const QMetaObject& type = Model::staticMetaObject;
    QCOMPARE(type.className(), "PassengerTypesModel");
    QCOMPARE(type.superClass()->className(), "rivo::models::ListModel");
    QCOMPARE(type.methodOffset(), QAbstractListModel::staticMetaObject.methodCount() + 12);
    QCOMPARE(metaobject::methods(type),
             (QStringList{
                 "public signal void numberOfColumnsChanged(int numberOfColumns)",
                 "public signal void numberOfRowsChanged(int numberOfRows)",
                 "public signal void logFareProductsChanged()",
                 "public signal void logExtraFareProductsChanged()",
                 "public invokable void setSelected(int iRow, bool)",
                 "public invokable int getNumberOfNonExpiredProducts()",
             }));
    QCOMPARE(metaobject::properties(type),
             (QStringList{
                 "int numberOfColumns: readable writable designable scriptable stored, "
                 "numberOfColumnsChanged",
                 "int numberOfRows: readable writable designable scriptable stored, "
                 "numberOfRowsChanged",
                 "bool logFareProducts: readable writable designable scriptable stored, "
                 "logFareProductsChanged",
                 "bool logExtraFareProducts: readable writable designable scriptable stored, "
                 "logExtraFareProductsChanged",
             }));
    QCOMPARE(metaobject::enums(type),
             QStringList("PassengerType: PT_ADULT=1 PT_STUDENT_1=3 PT_SCHOOLBOY=4 PT_DISABLED=5 "
                         "PT_MILITARY_1=7 PT_LFS=8 PT_STUDENT_2=9 PT_MILITARY_2=10"));
    QVERIFY(metaobject::hasNothingElse(type));

    const QMetaEnum passengerType = type.enumerator(type.enumeratorOffset());
    QCOMPARE(passengerType.scope(), "PassengerTypesModel");
    QVERIFY(!passengerType.isFlag());
    QVERIFY(!passengerType.isScoped());
    QCOMPARE(QMetaEnum::fromType<Model::PassengerType>().name(), passengerType.name());
}

void TestPassengerTypesModel::propertiesAnnounceThemselves()
{
    Model model(m_owner.get());
    SignalLog signalLog(&model);

    QVERIFY(model.setProperty("numberOfColumns", 5));
    QVERIFY(model.setProperty("numberOfRows", 6));
    QVERIFY(model.setProperty("logFareProducts", true));
    QVERIFY(model.setProperty("logExtraFareProducts", true));

    QCOMPARE(signalLog.take(),
             (QStringList{"numberOfColumnsChanged(5)", "numberOfRowsChanged(6)",
                          "logFareProductsChanged()", "logExtraFareProductsChanged()"}));
    QCOMPARE(model.property("numberOfColumns"), QVariant(5));
    QCOMPARE(model.property("numberOfRows"), QVariant(6));
    QCOMPARE(model.property("logFareProducts"), QVariant(true));
    QCOMPARE(model.property("logExtraFareProducts"), QVariant(true));
}

void TestPassengerTypesModel::membersStandInOrder()
{
    Model model(m_owner.get());
    model.setNumberOfColumns(41);
    model.setNumberOfRows(42);
    const Members members(nullptr, m_owner.get());
    const PassengerTypesModelInspector inspector(model);

    QCOMPARE(placeOf(model, inspector.products()), placeOf(members, members.products));
    QCOMPARE(placeOf(model, inspector.dailyProducts()), placeOf(members, members.dailyProducts));
    QCOMPARE(placeOf(model, inspector.groupedProducts()),
             placeOf(members, members.groupedProducts));
    QCOMPARE(valueAtPlaceOf(model, members, members.numberOfColumns), 41);
    QCOMPARE(placeOf(model, inspector.supportedTypeCodes()),
             placeOf(members, members.supportedTypeCodes));
    QCOMPARE(placeOf(model, inspector.typeCodesOrder()), placeOf(members, members.typeCodesOrder));
    QCOMPARE(placeOf(model, inspector.localTypeCodes()), placeOf(members, members.localTypeCodes));
    QCOMPARE(valueAtPlaceOf(model, members, members.numberOfRows), 42);
    for (const bool on : {true, false}) {
        model.setLogFareProducts(on);
        model.setLogExtraFareProducts(!on);
        QCOMPARE(valueAtPlaceOf(model, members, members.logFareProducts), on);
        QCOMPARE(valueAtPlaceOf(model, members, members.logExtraFareProducts), !on);
    }
}

// Properties

void TestPassengerTypesModel::newModelHasDefaults()
{
    const Model model(m_owner.get());
    QCOMPARE(model.numberOfColumns(), 3);
    QCOMPARE(model.numberOfRows(), 0);
    QCOMPARE(model.logFareProducts(), false);
    QCOMPARE(model.logExtraFareProducts(), false);
    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(model.roleNames(), PassengerTypeItem(m_owner.get()).roleNames());

    const PassengerTypesModelInspector inspector(model);
    QVERIFY(inspector.products().isEmpty());
    QVERIFY(inspector.dailyProducts().isEmpty());
    QVERIFY(inspector.groupedProducts().isEmpty());
    QCOMPARE(inspector.supportedTypeCodes(), QVector<int>());
    QCOMPARE(inspector.typeCodesOrder(), QVector<int>());
    QCOMPARE(inspector.localTypeCodes(), QVector<int>());
}

void TestPassengerTypesModel::setterAnnouncesDifferentValueOnce_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariantList>("values");
    QTest::addColumn<QStringList>("emitted");

    QTest::newRow("columns of a new model are 3 already")
        << QByteArray("numberOfColumns") << QVariantList{3} << QStringList();
    QTest::newRow("rows of a new model are 0 already")
        << QByteArray("numberOfRows") << QVariantList{0} << QStringList();
    QTest::newRow("product dumps of a new model are off already")
        << QByteArray("logFareProducts") << QVariantList{false} << QStringList();
    QTest::newRow("extra diagnostics of a new model are off already")
        << QByteArray("logExtraFareProducts") << QVariantList{false} << QStringList();

    QTest::newRow("columns are announced with the new number")
        << QByteArray("numberOfColumns") << QVariantList{4, 4, 3}
        << QStringList{"numberOfColumnsChanged(4)", "numberOfColumnsChanged(3)"};
    QTest::newRow("rows are announced with the new number")
        << QByteArray("numberOfRows") << QVariantList{2, 2, 0}
        << QStringList{"numberOfRowsChanged(2)", "numberOfRowsChanged(0)"};
    QTest::newRow("product dumps are announced without a value")
        << QByteArray("logFareProducts") << QVariantList{true, true, false}
        << QStringList{"logFareProductsChanged()", "logFareProductsChanged()"};
    QTest::newRow("extra diagnostics are announced without a value")
        << QByteArray("logExtraFareProducts") << QVariantList{true, true, false}
        << QStringList{"logExtraFareProductsChanged()", "logExtraFareProductsChanged()"};

    QTest::newRow("columns are not bounded")
        << QByteArray("numberOfColumns") << QVariantList{0, -1, lowest, highest}
        << QStringList{"numberOfColumnsChanged(0)", "numberOfColumnsChanged(-1)",
                       "numberOfColumnsChanged(-2147483648)", "numberOfColumnsChanged(2147483647)"};
    QTest::newRow("rows are not bounded")
        << QByteArray("numberOfRows") << QVariantList{-1, lowest, highest}
        << QStringList{"numberOfRowsChanged(-1)", "numberOfRowsChanged(-2147483648)",
                       "numberOfRowsChanged(2147483647)"};
}

void TestPassengerTypesModel::setterAnnouncesDifferentValueOnce()
{
    QFETCH(QByteArray, property);
    QFETCH(QVariantList, values);
    QFETCH(QStringList, emitted);

    Model model(m_owner.get());
    SignalLog signalLog(&model);
    for (const QVariant& value : values) {
        QVERIFY(model.setProperty(property, value));
        QCOMPARE(model.property(property), value);
    }
    QCOMPARE(signalLog.take(), emitted);
}

// Construction

void TestPassengerTypesModel::constructorReadsDisplayOrder_data()
{
    QTest::addColumn<QStringList>("configured");
    QTest::addColumn<QVector<int>>("order");
    QTest::addColumn<QString>("message");

    QTest::newRow("without an order the closing dot stands once")
        << QStringList() << QVector<int>()
        << "TypeCodes Order: Products ordering in config is empty.";
    QTest::newRow("unknown text enters the order as 0")
        << QStringList{"PT_ADULT", "PT_LFS", "X"} << QVector<int>{1, 8, 0}
        << "TypeCodes Order: [1->PT_ADULT],[8->PT_LFS],[0->X]";
    QTest::newRow("single type has no comma") << QStringList{"PT_MILITARY_2"} << QVector<int>{10}
                                              << "TypeCodes Order: [10->PT_MILITARY_2]";
    QTest::newRow("all types in an order of their own")
        << QStringList{"PT_MILITARY_2", "PT_STUDENT_2", "PT_LFS",       "PT_MILITARY_1",
                       "PT_DISABLED",   "PT_SCHOOLBOY", "PT_STUDENT_1", "PT_ADULT"}
        << QVector<int>{10, 9, 8, 7, 5, 4, 3, 1}
        << "TypeCodes Order: [10->PT_MILITARY_2],[9->PT_STUDENT_2],[8->PT_LFS],[7->PT_MILITARY_1],"
           "[5->PT_DISABLED],[4->PT_SCHOOLBOY],[3->PT_STUDENT_1],[1->PT_ADULT]";
    QTest::newRow("repeated type stays repeated")
        << QStringList{"PT_ADULT", "PT_ADULT"} << QVector<int>{1, 1}
        << "TypeCodes Order: [1->PT_ADULT],[1->PT_ADULT]";
    QTest::newRow("case matters") << QStringList{"pt_adult"} << QVector<int>{0}
                                  << "TypeCodes Order: [0->pt_adult]";
    QTest::newRow("empty text is a type of its own, unknown")
        << QStringList{""} << QVector<int>{0} << "TypeCodes Order: [0->]";
    QTest::newRow("text is not taken for a place to fill")
        << QStringList{"%1", "%2"} << QVector<int>{0, 0} << "TypeCodes Order: [0->%1],[0->%2]";
    QTest::newRow("text beyond ASCII reaches the log")
        << QStringList{QString::fromUtf8("Dorosły")} << QVector<int>{0}
        << QString::fromUtf8("TypeCodes Order: [0->Dorosły]");
}

void TestPassengerTypesModel::constructorReadsDisplayOrder()
{
    QFETCH(QStringList, configured);
    QFETCH(QVector<int>, order);
    QFETCH(QString, message);

    m_home->writeSettings(configured, {});
    const Model model(m_owner.get());
    const PassengerTypesModelInspector inspector(model);
    QCOMPARE(inspector.typeCodesOrder(), order);
    QCOMPARE(inspector.supportedTypeCodes(), QVector<int>());
    QCOMPARE(inspector.localTypeCodes(), QVector<int>());
    QCOMPARE(m_log->messages(), QStringList(message));
}

void TestPassengerTypesModel::constructorReadsLogLevels_data()
{
    QTest::addColumn<QStringList>("levels");
    QTest::addColumn<bool>("logFareProducts");

    QTest::newRow("no level") << QStringList() << false;
    QTest::newRow("only level") << QStringList{"log_fareproducts"} << true;
    QTest::newRow("among others") << QStringList{"info", "log_fareproducts", "debug"} << true;
    QTest::newRow("others only") << QStringList{"info", "debug"} << false;
    QTest::newRow("twice") << QStringList{"log_fareproducts", "log_fareproducts"} << true;
    QTest::newRow("case matters") << QStringList{"LOG_FAREPRODUCTS", "Log_FareProducts"} << false;
    QTest::newRow("blanks matter")
        << QStringList{" log_fareproducts", "log_fareproducts "} << false;
    QTest::newRow("part of a name does not count")
        << QStringList{"log_fareproducts_all", "fareproducts"} << false;
}

void TestPassengerTypesModel::constructorReadsLogLevels()
{
    QFETCH(QStringList, levels);
    QFETCH(bool, logFareProducts);

    m_home->writeSettings({}, levels);
    const Model model(m_owner.get());
    QCOMPARE(model.logFareProducts(), logFareProducts);
    QCOMPARE(model.logExtraFareProducts(), false);
}

void TestPassengerTypesModel::constructorReadsMarkerFile_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("folder");
    QTest::addColumn<bool>("logExtraFareProducts");

    QTest::newRow("no marker file") << ""
                                    << "" << false;
    QTest::newRow("marker file") << "debug"
                                 << "" << true;
    QTest::newRow("a folder of that name is no marker file") << ""
                                                             << "debug" << false;
    QTest::newRow("case matters") << "DEBUG"
                                  << "" << false;
    QTest::newRow("an extension matters") << "debug.txt"
                                          << "" << false;
}

void TestPassengerTypesModel::constructorReadsMarkerFile()
{
    QFETCH(QString, file);
    QFETCH(QString, folder);
    QFETCH(bool, logExtraFareProducts);

    const QTemporaryDir temporary;
    if (!file.isEmpty())
        QVERIFY(QFile(temporary.filePath(file)).open(QIODevice::WriteOnly));
    if (!folder.isEmpty())
        QVERIFY(QDir(temporary.path()).mkdir(folder));

    const QByteArray before = qgetenv("TMPDIR");
    qputenv("TMPDIR", QFile::encodeName(temporary.path()));
    const Model model(m_owner.get());
    qputenv("TMPDIR", before);

    QCOMPARE(model.logExtraFareProducts(), logExtraFareProducts);
    QCOMPARE(model.logFareProducts(), false);
}

void TestPassengerTypesModel::markerFileIsReadOnce()
{
    const QTemporaryDir temporary;
    const QByteArray before = qgetenv("TMPDIR");
    qputenv("TMPDIR", QFile::encodeName(temporary.path()));

    Model without(m_owner.get());
    SignalLog signalsWithout(&without);
    QVERIFY(QFile(temporary.filePath("debug")).open(QIODevice::WriteOnly));
    Model with(m_owner.get());
    SignalLog signalsWith(&with);
    QVERIFY(QFile::remove(temporary.filePath("debug")));
    addProducts(without, "1a");
    without.sortAndRegroup({"PT_ADULT"}, 0);
    QTest::qWait(50);
    qputenv("TMPDIR", before);

    QCOMPARE(without.logExtraFareProducts(), false);
    QCOMPARE(with.logExtraFareProducts(), true);
    QVERIFY(!signalsWithout.take().contains("logExtraFareProductsChanged()"));
    QCOMPARE(signalsWith.take(), QStringList());
}

void TestPassengerTypesModel::constructorLogsWhateverTheSwitchesSay()
{
    m_home->writeSettings({"PT_ADULT"}, {"log_fareproducts"});
    const Model model(m_owner.get());
    QCOMPARE(model.logFareProducts(), true);
    QCOMPARE(m_log->messages(), QStringList("TypeCodes Order: [1->PT_ADULT]"));
}

void TestPassengerTypesModel::eachModelReadsTheHomeOfItsTime()
{
    const TerminalHome first({"PT_ADULT"}, {"log_fareproducts"});
    const Model one(m_owner.get());
    const TerminalHome second({"PT_LFS"});
    const Model other(m_owner.get());

    QCOMPARE(PassengerTypesModelInspector(one).typeCodesOrder(), QVector<int>{1});
    QCOMPARE(PassengerTypesModelInspector(other).typeCodesOrder(), QVector<int>{8});
    QCOMPARE(one.logFareProducts(), true);
    QCOMPARE(other.logFareProducts(), false);
}

// Lifetime

void TestPassengerTypesModel::prototypeBelongsToParentOfModel()
{
    auto* model = new Model(m_owner.get());
    QCOMPARE(m_owner->children().size(), 2);
    auto* prototype = qobject_cast<PassengerTypeItem*>(m_owner->children().first());
    QVERIFY(prototype);
    QCOMPARE(m_owner->children().last(), static_cast<QObject*>(model));
    QVERIFY(model->children().isEmpty());
    QCOMPARE(prototype->id(), -1);
    QCOMPARE(prototype->fareProductName(), QString());
    QCOMPARE(model->rowCount(), 0);

    QPointer<QObject> guard(prototype);
    delete model;
    QVERIFY(guard);
    m_owner.reset();
    QVERIFY(!guard);
}

void TestPassengerTypesModel::modelNeedsNoParent()
{
    // Kept for ever: nobody could free the prototype of a model without a parent.
    static auto* const model = new Model;
    QVERIFY(!model->parent());
    QVERIFY(model->children().isEmpty());
    QCOMPARE(model->roleNames().value(PassengerTypeItem::PosRole), QByteArray("pos"));
}

void TestPassengerTypesModel::destructorLeavesRowsToTheirParents()
{
    auto model = std::make_unique<Model>(m_owner.get());
    model->addItemsToModel({sProduct()});
    const QPointer<QObject> own(model->itemFromRow(0));
    const QPointer<QObject> foreign(new ForeignRow(QVariant(), m_owner.get()));
    model->appendRow(static_cast<ForeignRow*>(foreign.data()));
    SignalLog signalLog(model.get());

    model.reset();

    QVERIFY(!own);
    QVERIFY(foreign);
    QCOMPARE(signalLog.take(), QStringList());
}

// Configuration at run time

void TestPassengerTypesModel::logLevelsAreFollowed_data()
{
    QTest::addColumn<QStringList>("configured");
    QTest::addColumn<QStringList>("changed");
    QTest::addColumn<bool>("logFareProducts");
    QTest::addColumn<int>("emitted");

    QTest::newRow("switched on") << QStringList{"info"} << QStringList{"info", "log_fareproducts"}
                                 << true << 1;
    QTest::newRow("switched off") << QStringList{"log_fareproducts"} << QStringList() << false << 1;
    QTest::newRow("other level added while on")
        << QStringList{"log_fareproducts"} << QStringList{"info", "log_fareproducts"} << true << 0;
    QTest::newRow("other level added while off")
        << QStringList() << QStringList{"info"} << false << 0;
    QTest::newRow("case matters") << QStringList() << QStringList{"LOG_FAREPRODUCTS"} << false << 0;
}

void TestPassengerTypesModel::logLevelsAreFollowed()
{
    QFETCH(QStringList, configured);
    QFETCH(QStringList, changed);
    QFETCH(bool, logFareProducts);
    QFETCH(int, emitted);

    m_home->writeSettings({}, configured);
    Model model(m_owner.get());
    SignalLog signalLog(&model);
    for (int time = 0; time < 2; ++time) {
        emit m_home->settings()->logLevelsChanged(changed);
        QCOMPARE(model.logFareProducts(), logFareProducts);
        QCOMPARE(signalLog.take(),
                 time == 0 && emitted ? QStringList("logFareProductsChanged()") : QStringList());
    }
}

void TestPassengerTypesModel::logLevelsFollowedByEveryModel()
{
    Model one(m_owner.get());
    Model other(m_owner.get());
    one.setLogFareProducts(true);
    emit m_home->settings()->logLevelsChanged({"log_fareproducts"});
    QCOMPARE(one.logFareProducts(), true);
    QCOMPARE(other.logFareProducts(), true);
    emit m_home->settings()->logLevelsChanged({});
    QCOMPARE(one.logFareProducts(), false);
    QCOMPARE(other.logFareProducts(), false);
}

void TestPassengerTypesModel::subscriptionEndsWithModel()
{
    const SettingsConfig* settings = m_home->settings();
    const int before = followersOf(settings);
    auto model = std::make_unique<Model>(m_owner.get());
    QCOMPARE(followersOf(settings), before + 1);
    model.reset();
    QCOMPARE(followersOf(settings), before);
    emit m_home->settings()->logLevelsChanged({"log_fareproducts"});
}

void TestPassengerTypesModel::settingsFileIsFollowed_data()
{
    QTest::addColumn<bool>("isThereAtStart");
    QTest::addColumn<bool>("isReplaced");

    QTest::newRow("file replaced") << true << true;
    QTest::newRow("file rewritten in place") << true << false;
    QTest::newRow("file created after start") << false << true;
}

void TestPassengerTypesModel::settingsFileIsFollowed()
{
    QFETCH(bool, isThereAtStart);
    QFETCH(bool, isReplaced);

    const auto write = [this, isReplaced](const QByteArray& levels) {
        const QByteArray content = R"({"logLevels": [)" + levels + "]}";
        if (isReplaced) {
            m_home->writeFile(content);
        } else {
            QFile file(m_home->settingsFile());
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(content);
        }
    };
    if (isThereAtStart)
        m_home->writeSettings({}, {});

    Model model(m_owner.get());
    QCOMPARE(model.logFareProducts(), false);
    SignalLog signalLog(&model);

    write(R"("log_fareproducts")");
    QTRY_COMPARE(model.logFareProducts(), true);
    QTest::qWait(300);
    QCOMPARE(signalLog.take(), QStringList("logFareProductsChanged()"));

    write(R"("log_fareproducts" )"); // differs on disk only
    QTest::qWait(300);
    write(R"("info", "log_fareproducts")"); // another list, the same switch
    QTest::qWait(300);
    QCOMPARE(signalLog.take(), QStringList());

    write(R"("info")");
    QTRY_COMPARE(model.logFareProducts(), false);
    QTest::qWait(300);
    QCOMPARE(signalLog.take(), QStringList("logFareProductsChanged()"));
}

void TestPassengerTypesModel::displayOrderIsReadAtConstructionOnly()
{
    m_home->writeSettings({"PT_ADULT"}, {});
    Model model(m_owner.get());
    m_log->clear();
    m_home->writeSettings({"PT_LFS"}, {"log_fareproducts"});
    QTRY_COMPARE(model.logFareProducts(), true);
    QCOMPARE(PassengerTypesModelInspector(model).typeCodesOrder(), QVector<int>{1});
    QCOMPARE(m_log->messages(), QStringList());

    const Model later(m_owner.get());
    QCOMPARE(PassengerTypesModelInspector(later).typeCodesOrder(), QVector<int>{8});
}

// Registry of configuration objects

void TestPassengerTypesModel::settingsConfigIsRegisteredAtLoad()
{
    QVERIFY(isRegisteredAtLoad);
    QVERIFY(qobject_cast<const SettingsConfig*>(registeredAtLoad));
    QVERIFY(!registeredAtLoad->parent());

    {
        const Model model(m_owner.get());
    }
    QCOMPARE(JsonObjectFactory::m_ObjectsMap().value("settingsConfig"), registeredAtLoad);
    QVERIFY(!JsonObjectFactory::isRegistered("SettingsConfig"));
    QVERIFY(!JsonObjectFactory::isRegistered(""));
}

void TestPassengerTypesModel::registrationLeavesEntryAsItIs()
{
    {
        const JsonObjectFactory::JsonObjectRegistration<SettingsConfig> again("settingsConfig");
        QCOMPARE(JsonObjectFactory::m_ObjectsMap().value("settingsConfig"), registeredAtLoad);
    }
    QCOMPARE(JsonObjectFactory::m_ObjectsMap().value("settingsConfig"), registeredAtLoad);
}

void TestPassengerTypesModel::emptyRegistrationIsReported()
{
    const QStringList before = JsonObjectFactory::m_ObjectsMap().keys();
    QTest::ignoreMessage(QtDebugMsg, "\n\n\n Requested empty class registration \n\n\n");
    const JsonObjectFactory::JsonObjectRegistration<SettingsConfig> empty{QString()};
    QVERIFY(!JsonObjectFactory::isRegistered(""));
    QCOMPARE(JsonObjectFactory::m_ObjectsMap().keys(), before);
}

// Products

void TestPassengerTypesModel::addedItemIsKeptAsRecord()
{
    Model model(m_owner.get());
    model.addItem(21, "Student", "PT_STUDENT_1", "file:///own.svg", 2.35, 77, "Day ticket", true, 4,
                  9, "#ff8800", true, 0.5, false, 12);

    const PassengerTypesModelInspector inspector(model);
    QCOMPARE(inspector.products().size(), 1);
    const sProduct& product = inspector.products().first();
    QCOMPARE(product.passengerTypeId, 21);
    QCOMPARE(product.description, QString("Student"));
    QCOMPARE(product.passengerTypeCode, 3);
    QCOMPARE(product.icon, QString("file:///own.svg"));
    QCOMPARE(product.price, 2.35);
    QCOMPARE(product.fareProductId, 77);
    QCOMPARE(product.fareProductName, QString("Day ticket"));
    QCOMPARE(product.isReturnFee, true);
    QCOMPARE(product.fromStopGroupId, 4);
    QCOMPARE(product.toStopGroupId, 9);
    QCOMPARE(product.fareProductColor, QString("#ff8800"));
    QCOMPARE(product.hasExpired, true);
    QCOMPARE(product.fareDiscount, 0.5);
    QCOMPARE(product.isDaily, false);
    QCOMPARE(product.pos, 12);
    QVERIFY(inspector.dailyProducts().isEmpty());
}

void TestPassengerTypesModel::flagsOfAddedItemAreNotConfused()
{
    Model model(m_owner.get());
    Product("PT_ADULT").returnFee().addTo(model);
    Product("PT_ADULT").expired().addTo(model);
    Product("PT_ADULT").daily().addTo(model);

    const PassengerTypesModelInspector inspector(model);
    const auto flags = [](const sProduct& product) {
        return QList<bool>{product.isReturnFee, product.hasExpired, product.isDaily};
    };
    QCOMPARE(flags(inspector.products().at(0)), (QList<bool>{true, false, false}));
    QCOMPARE(flags(inspector.products().at(1)), (QList<bool>{false, true, false}));
    QCOMPARE(flags(inspector.dailyProducts().at(0)), (QList<bool>{false, false, true}));
}

void TestPassengerTypesModel::dailyItemIsKeptApart()
{
    Model model(m_owner.get());
    addProducts(model, "1a 1b! 1c 1d@7!");
    const PassengerTypesModelInspector inspector(model);
    QCOMPARE(gridText(inspector.products()), QString("1a 1c"));
    QCOMPARE(gridText(inspector.dailyProducts()), QString("1b 1d@7"));
    QVERIFY(inspector.dailyProducts().first().isDaily);
    QVERIFY(inspector.groupedProducts().isEmpty());
    QCOMPARE(model.rowCount(), 0);
}

void TestPassengerTypesModel::addItemEmitsNothing()
{
    m_home->writeSettings({}, {"log_fareproducts"});
    Model model(m_owner.get());
    m_log->clear();
    SignalLog signalLog(&model);
    addProducts(model, "1a 3b@2 1c!");
    QCOMPARE(signalLog.take(), QStringList());
    QCOMPARE(m_log->messages(), QStringList());
    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(model.numberOfRows(), 0);
}

void TestPassengerTypesModel::addedTypeTextIsMapped_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("code");

    QTest::newRow("known text") << "PT_MILITARY_2" << 10;
    QTest::newRow("unknown text is no error") << "PT_PENSIONER" << 0;
    QTest::newRow("empty text is no error") << "" << 0;
}

void TestPassengerTypesModel::addedTypeTextIsMapped()
{
    QFETCH(QString, text);
    QFETCH(int, code);

    Model model(m_owner.get());
    m_log->clear();
    Product(text).addTo(model);
    Product(text).daily().addTo(model);
    const PassengerTypesModelInspector inspector(model);
    QCOMPARE(inspector.products().first().passengerTypeCode, code);
    QCOMPARE(inspector.dailyProducts().first().passengerTypeCode, code);
    QCOMPARE(m_log->messages(), QStringList());
}

void TestPassengerTypesModel::clearDataForgetsProductsAndRows()
{
    m_home->writeSettings({"PT_LFS", "PT_ADULT"}, {"log_fareproducts"});
    Model model(m_owner.get());
    model.setLogExtraFareProducts(true);
    model.setSupportedPassengerTypeCodes({"PT_ADULT", "PT_LFS"});
    addProducts(model, "1a 8a 1b 8b 1c!");
    stdoutOf([&model] { model.sortAndRegroup({"PT_ADULT", "PT_LFS"}, 2); });
    QCOMPARE(gridText(model), QString("8a 1a | 8b 1b | 1c"));
    const QPointer<QObject> tile(model.itemFromRow(0));

    SignalLog signalLog(&model);
    model.clearData();

    const PassengerTypesModelInspector inspector(model);
    QCOMPARE(model.rowCount(), 0);
    QVERIFY(inspector.products().isEmpty());
    QVERIFY(inspector.dailyProducts().isEmpty());
    QVERIFY(inspector.groupedProducts().isEmpty());
    QCOMPARE(model.numberOfColumns(), 2);
    QCOMPARE(model.numberOfRows(), 3);
    QCOMPARE(inspector.supportedTypeCodes(), (QVector<int>{1, 8}));
    QCOMPARE(inspector.typeCodesOrder(), (QVector<int>{8, 1}));
    QCOMPARE(inspector.localTypeCodes(), (QVector<int>{1, 8}));
    QCOMPARE(model.logFareProducts(), true);
    QCOMPARE(model.logExtraFareProducts(), true);
    QCOMPARE(signalLog.take(), announcedRemoval(0, 4, 0) + QStringList(countChanged(0)));
    QVERIFY(tile);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!tile);
}

void TestPassengerTypesModel::clearDataRemovesRowsWithoutProducts()
{
    Model model(m_owner.get());
    model.addItemsToModel({sProduct(), sProduct()});
    SignalLog signalLog(&model);
    model.clearData();
    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(signalLog.take(), announcedRemoval(0, 1, 0) + QStringList(countChanged(0)));
}

void TestPassengerTypesModel::clearDataWithoutRowsEmitsNothing()
{
    Model model(m_owner.get());
    addProducts(model, "1a 1b!");
    SignalLog signalLog(&model);
    model.clearData();
    QVERIFY(PassengerTypesModelInspector(model).products().isEmpty());
    QVERIFY(PassengerTypesModelInspector(model).dailyProducts().isEmpty());
    QCOMPARE(signalLog.take(), QStringList());
}

void TestPassengerTypesModel::clearDataOfNewModelEmitsNothing()
{
    Model model(m_owner.get());
    SignalLog signalLog(&model);
    model.clearData();
    model.clearData();
    QCOMPARE(signalLog.take(), QStringList());
}

// Tiles

void TestPassengerTypesModel::setSelectedChangesOneTile()
{
    Model model(m_owner.get());
    model.addItemsToModel({sProduct(), sProduct(), sProduct()});
    SignalLog signalLog(&model);
    const auto selection = [&model] {
        return QList<bool>{tileAt(model, 0)->selected(), tileAt(model, 1)->selected(),
                           tileAt(model, 2)->selected()};
    };

    model.setSelected(1, true);
    QCOMPARE(selection(), (QList<bool>{false, true, false}));
    QCOMPARE(signalLog.take(), QStringList(rowChanged(1)));

    model.setSelected(1, true);
    model.setSelected(0, false);
    QCOMPARE(signalLog.take(), QStringList());

    model.setSelected(2, true); // several tiles may be selected
    QCOMPARE(selection(), (QList<bool>{false, true, true}));
    QCOMPARE(signalLog.take(), QStringList(rowChanged(2)));

    model.setSelected(1, false);
    QCOMPARE(selection(), (QList<bool>{false, false, true}));
    QCOMPARE(signalLog.take(), QStringList(rowChanged(1)));
}

void TestPassengerTypesModel::setSelectedIgnoresRowsOutOfRange_data()
{
    QTest::addColumn<int>("row");

    QTest::newRow("before the first row") << -1;
    QTest::newRow("one past the last row") << 2;
    QTest::newRow("lowest number") << lowest;
    QTest::newRow("highest number") << highest;
}

void TestPassengerTypesModel::setSelectedIgnoresRowsOutOfRange()
{
    QFETCH(int, row);

    Model model(m_owner.get());
    model.addItemsToModel({sProduct(), sProduct()});
    SignalLog signalLog(&model);
    model.setSelected(row, true);
    QCOMPARE(tileAt(model, 0)->selected(), false);
    QCOMPARE(tileAt(model, 1)->selected(), false);
    QCOMPARE(signalLog.take(), QStringList());
}

void TestPassengerTypesModel::setSelectedIgnoresForeignRows()
{
    Model model(m_owner.get());
    model.appendRowFromQml(new ForeignRow(false, &model));
    model.addItemsToModel({sProduct()});
    SignalLog signalLog(&model);
    model.setSelected(0, true);
    QCOMPARE(signalLog.take(), QStringList());
    model.setSelected(1, true);
    QCOMPARE(signalLog.take(), QStringList(rowChanged(1)));
}

void TestPassengerTypesModel::invokablesWorkByName()
{
    Model model(m_owner.get());
    sProduct sold;
    sold.hasExpired = false;
    model.addItemsToModel({sProduct(), sold});

    QVERIFY(QMetaObject::invokeMethod(&model, "setSelected", Q_ARG(int, 1), Q_ARG(bool, true)));
    QCOMPARE(tileAt(model, 1)->selected(), true);
    int count = -1;
    QVERIFY(QMetaObject::invokeMethod(&model, "getNumberOfNonExpiredProducts",
                                      Q_RETURN_ARG(int, count)));
    QCOMPARE(count, 1);
}

void TestPassengerTypesModel::nonExpiredTilesAreCounted()
{
    Model model(m_owner.get());
    sProduct sold;
    sold.hasExpired = false;
    model.addItemsToModel({sold, sProduct(), sold, sProduct()});
    model.appendRowFromQml(new ForeignRow(false, &model));
    SignalLog signalLog(&model);

    QCOMPARE(model.getNumberOfNonExpiredProducts(), 2);
    QCOMPARE(signalLog.take(), QStringList());

    tileAt(model, 0)->setHasExpired(true);
    QCOMPARE(model.getNumberOfNonExpiredProducts(), 1);
    model.removeRow(2);
    QCOMPARE(model.getNumberOfNonExpiredProducts(), 0);
}

void TestPassengerTypesModel::nonExpiredTilesOfEmptyModel()
{
    Model model(m_owner.get());
    QCOMPARE(model.getNumberOfNonExpiredProducts(), 0);
    addProducts(model, "1a 1b!"); // records are no tiles yet
    QCOMPARE(model.getNumberOfNonExpiredProducts(), 0);
}

void TestPassengerTypesModel::sortByPriceIsDescendingButForTheLastRow_data()
{
    QTest::addColumn<QList<double>>("prices");
    QTest::addColumn<QList<double>>("sorted");

    using Prices = QList<double>;
    QTest::newRow("no rows") << Prices() << Prices();
    QTest::newRow("one row") << Prices{5} << Prices{5};
    QTest::newRow("of two rows the first has nothing to change with")
        << Prices{1, 2} << Prices{1, 2};
    QTest::newRow("last row keeps its place though it is the dearest")
        << Prices{5, 1, 7, 9} << Prices{7, 5, 1, 9};
    QTest::newRow("last row keeps its place though it is the cheapest")
        << Prices{5, 1, 7, 0} << Prices{7, 5, 1, 0};
    QTest::newRow("equal prices") << Prices{2, 3, 2, 3, 2} << Prices{3, 3, 2, 2, 2};
    QTest::newRow("fractions and negative prices")
        << Prices{-0.5, 0.25, -1, 0.5, 0} << Prices{0.5, 0.25, -0.5, -1, 0};
}

void TestPassengerTypesModel::sortByPriceIsDescendingButForTheLastRow()
{
    QFETCH(QList<double>, prices);
    QFETCH(QList<double>, sorted);

    for (const Qt::SortOrder order : {Qt::AscendingOrder, Qt::DescendingOrder}) {
        Model model(m_owner.get());
        for (const double price : qAsConst(prices))
            model.addItemsToModel({productWithPrice(price)});
        SignalLog signalLog(&model);
        model.sortByPrice(order);
        QCOMPARE(pricesOf(model), sorted);
        QCOMPARE(signalLog.take(), QStringList());
    }
}

QTEST_GUILESS_MAIN(TestPassengerTypesModel)
#include "tst_passengertypesmodel.moc"
