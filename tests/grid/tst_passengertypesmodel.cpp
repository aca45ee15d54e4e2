#include "ForeignRow.h"
#include "LogCapture.h"
#include "MetaObjectText.h"
#include "PassengerTypeItem.h"
#include "PassengerTypesModel.h"
#include "Products.h"
#include "SignalLog.h"
#include "StdoutCapture.h"
#include "Table.h"
#include "TerminalHome.h"

#include <core/JsonObjectFactory.h>

#include <QtTest>

#include <limits>
#include <memory>

using QJsonWrapper::JsonObjectFactory;
using rivo::core::SettingsConfig;

namespace
{

using Model = PassengerTypesModel;

constexpr int lowest = std::numeric_limits<int>::min();
constexpr int highest = std::numeric_limits<int>::max();

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

PassengerTypeItem* tileAt(const Model& model, int row)
{
    return qobject_cast<PassengerTypeItem*>(model.itemFromRow(row));
}

} // namespace

class TestPassengerTypesModel : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_owner = std::make_unique<QObject>();
        m_log = std::make_unique<LogCapture>();
        m_home = std::make_unique<TerminalHome>();
    }

    void cleanup()
    {
        m_home.reset();
        m_log.reset();
        m_owner.reset();
    }

    // Interface

    void metaObjectIsWhole()
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
        QCOMPARE(
            metaobject::enums(type),
            QStringList("PassengerType: PT_ADULT=1 PT_STUDENT_1=3 PT_SCHOOLBOY=4 PT_DISABLED=5 "
                        "PT_MILITARY_1=7 PT_LFS=8 PT_STUDENT_2=9 PT_MILITARY_2=10"));
        QVERIFY(metaobject::hasNothingElse(type));

        const QMetaEnum passengerType = type.enumerator(type.enumeratorOffset());
        QCOMPARE(passengerType.scope(), "PassengerTypesModel");
        QVERIFY(!passengerType.isFlag());
        QVERIFY(!passengerType.isScoped());
        QCOMPARE(QMetaEnum::fromType<Model::PassengerType>().name(), passengerType.name());
    }

    // Properties

    void setterAnnouncesDifferentValueOnce_data()
    {
        const Table<QByteArray, QVariantList, QString> row("property", "values", "emitted");
        row("columns: 3 at first, no bounds", "numberOfColumns",
            {3, 4, 4, 3, 0, -1, lowest, highest},
            "numberOfColumnsChanged(4) numberOfColumnsChanged(3) numberOfColumnsChanged(0) "
            "numberOfColumnsChanged(-1) numberOfColumnsChanged(-2147483648) "
            "numberOfColumnsChanged(2147483647)");
        row("rows: 0 at first, no bounds", "numberOfRows", {0, 2, 2, -1, lowest, highest},
            "numberOfRowsChanged(2) numberOfRowsChanged(-1) numberOfRowsChanged(-2147483648) "
            "numberOfRowsChanged(2147483647)");
        row("product dumps: off at first, announced without a value", "logFareProducts",
            {false, true, true, true, false}, "logFareProductsChanged() logFareProductsChanged()");
        row("extra diagnostics: off at first, announced without a value", "logExtraFareProducts",
            {false, true, true, true, false},
            "logExtraFareProductsChanged() logExtraFareProductsChanged()");
    }

    void setterAnnouncesDifferentValueOnce()
    {
        QFETCH(QByteArray, property);
        QFETCH(QVariantList, values);
        QFETCH(QString, emitted);

        Model model(m_owner.get());
        QCOMPARE(model.property(property), values.first());
        SignalLog signalLog(&model);
        for (const QVariant& value : values) {
            QVERIFY(model.setProperty(property, value));
            QCOMPARE(model.property(property), value);
        }
        QCOMPARE(signalLog.take().join(' '), emitted);
    }

    // Construction

    void logLevelsDecideAboutProductDumps_data()
    {
        const Table<QStringList, bool> row("levels", "isOn");
        row("no level", {}, false);
        row("only level", {"log_fareproducts"}, true);
        row("among others", {"info", "log_fareproducts", "debug"}, true);
        row("others only", {"info", "debug"}, false);
        row("twice", {"log_fareproducts", "log_fareproducts"}, true);
        row("case matters", {"LOG_FAREPRODUCTS", "Log_FareProducts"}, false);
        row("blanks matter", {" log_fareproducts", "log_fareproducts "}, false);
        row("part of a name does not count", {"log_fareproducts_all", "fareproducts"}, false);
    }

    void logLevelsDecideAboutProductDumps()
    {
        QFETCH(QStringList, levels);
        QFETCH(bool, isOn);

        // Those of the start, then those that follow, twice.
        for (const QStringList& first : {levels, QStringList(), QStringList("log_fareproducts")}) {
            const TerminalHome home({}, first);
            Model model(m_owner.get());
            Model other(m_owner.get());
            const bool wasOn = first == levels ? isOn : !first.isEmpty();
            QCOMPARE(model.logFareProducts(), wasOn);
            QCOMPARE(model.logExtraFareProducts(), false);
            SignalLog signalLog(&model);
            other.setLogFareProducts(!isOn);
            for (const bool isChange : {wasOn != isOn, false}) {
                emit home.settings()->logLevelsChanged(levels);
                QCOMPARE(model.logFareProducts(), isOn);
                QCOMPARE(other.logFareProducts(), isOn);
                QCOMPARE(signalLog.take(),
                         isChange ? QStringList("logFareProductsChanged()") : QStringList());
            }
        }
    }

    void constructorReadsMarkerFile_data()
    {
        const Table<QString, QString, bool> row("file", "folder", "logExtraFareProducts");
        row("no marker file", "", "", false);
        row("marker file", "debug", "", true);
        row("a folder of that name is no marker file", "", "debug", false);
        row("case matters", "DEBUG", "", false);
        row("an extension matters", "debug.txt", "", false);
    }

    void constructorReadsMarkerFile()
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

    void markerFileIsReadOnce()
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

    void eachModelReadsTheHomeOfItsTime()
    {
        const TerminalHome first({"PT_ADULT"}, {"log_fareproducts"});
        const Model one(m_owner.get());
        const TerminalHome second({"PT_LFS"});
        const Model other(m_owner.get());

        QCOMPARE(m_log->messages(),
                 (QStringList{"TypeCodes Order: [1->PT_ADULT]", "TypeCodes Order: [8->PT_LFS]"}));
        QCOMPARE(one.logFareProducts(), true);
        QCOMPARE(other.logFareProducts(), false);
    }

    void modelNeedsNoParent()
    {
        // Kept for ever: the prototype of a model without a parent is never freed.
        static auto* const model = new Model;
        QVERIFY(!model->parent());
        QVERIFY(model->children().isEmpty());
        QCOMPARE(model->roleNames().value(PassengerTypeItem::PosRole), QByteArray("pos"));
    }

    // Configuration at run time

    void subscriptionEndsWithModel()
    {
        const SettingsConfig* settings = m_home->settings();
        const int before = followersOf(settings);
        auto model = std::make_unique<Model>(m_owner.get());
        QCOMPARE(followersOf(settings), before + 1);
        model.reset();
        QCOMPARE(followersOf(settings), before);
        emit m_home->settings()->logLevelsChanged({"log_fareproducts"});
    }

    void settingsFileIsFollowedButForTheDisplayOrder()
    {
        m_home->writeSettings({"PT_ADULT"}, {});
        Model model(m_owner.get());
        m_log->clear();
        m_home->writeSettings({"PT_LFS"}, {"log_fareproducts"});
        QTRY_COMPARE(model.logFareProducts(), true);
        QCOMPARE(m_log->messages(), QStringList());
        QCOMPARE(stdoutOf([&model] { model.getIndeces({1}); }), QByteArray("Indeces: [0]\n"));

        const Model later(m_owner.get());
        QCOMPARE(m_log->messages(), QStringList("TypeCodes Order: [8->PT_LFS]"));
        m_home->writeSettings({}, {"info"});
        QTRY_COMPARE(model.logFareProducts(), false);
    }

    // Registry of configuration objects

    void settingsConfigIsRegisteredAtLoad()
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

    // Clearing

    void clearedTilesAreDestroyedInTheEventLoop()
    {
        Model model(m_owner.get());
        model.addItemsToModel({sProduct(), sProduct()});
        const QPointer<QObject> tile(model.itemFromRow(0));
        model.clearData();
        QCOMPARE(model.rowCount(), 0);
        QVERIFY(tile);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!tile);
    }

    void clearedProductsLeaveNoTrace()
    {
        Model model(m_owner.get());
        QVector<NewProduct> products = productsFrom("1a 3b 1c!");
        for (const NewProduct& product : qAsConst(products))
            addItem(model, product);
        stdoutOf([&model] { model.sortAndRegroup({"PT_ADULT"}, 2); });
        model.clearData();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        for (const NewProduct& product : qAsConst(products))
            QVERIFY2(product.record.fareProductName.isDetached(),
                     "the model still shares the name");
    }

    // Tiles

    void setSelectedChangesOneTile()
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

    void setSelectedIgnoresRowsThatAreNoTiles()
    {
        Model model(m_owner.get());
        model.appendRowFromQml(new ForeignRow(false, &model));
        model.addItemsToModel({sProduct()});
        SignalLog signalLog(&model);
        for (const int row :
             {-1, 0, 2, lowest, highest}) // row 0 is another class, the rest no rows
            model.setSelected(row, true);
        QCOMPARE(signalLog.take(), QStringList());
        QCOMPARE(tileAt(model, 1)->selected(), false);
    }

    void nonExpiredTilesAreCounted()
    {
        Model model(m_owner.get());
        addProducts(model, "1a 1b!"); // no tiles yet
        QCOMPARE(model.getNumberOfNonExpiredProducts(), 0);
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

    void sortByPriceIsDescendingButForTheLastRow_data()
    {
        const Table<QString, QString> row("prices", "sorted");
        row("no rows", "", "");
        row("one row", "5", "5");
        row("of two rows the first has nothing to change with", "1 2", "1 2");
        row("the last row stays though it costs most", "5 1 7 9", "7 5 1 9");
        row("the last row stays though it costs least", "5 1 7 0", "7 5 1 0");
        row("equal prices", "2 3 2 3 2", "3 3 2 2 2");
        row("fractions and negative prices", "-0.5 0.25 -1 0.5 0", "0.5 0.25 -0.5 -1 0");
    }

    void sortByPriceIsDescendingButForTheLastRow()
    {
        QFETCH(QString, prices);
        QFETCH(QString, sorted);

        for (const Qt::SortOrder order : {Qt::AscendingOrder, Qt::DescendingOrder}) {
            Model model(m_owner.get());
            for (const QString& price : prices.split(' ', Qt::SkipEmptyParts)) {
                sProduct product;
                product.price = price.toDouble();
                model.addItemsToModel({product});
            }
            SignalLog signalLog(&model);
            model.sortByPrice(order);
            QStringList result;
            for (int row = 0; row < model.rowCount(); ++row)
                result.append(QString::number(tileAt(model, row)->price()));
            QCOMPARE(result.join(' '), sorted);
            QCOMPARE(signalLog.take(), QStringList());
        }
    }

private:
    std::unique_ptr<QObject> m_owner; // of models and their prototypes
    std::unique_ptr<LogCapture> m_log;
    std::unique_ptr<TerminalHome> m_home;
};

QTEST_GUILESS_MAIN(TestPassengerTypesModel)
#include "tst_passengertypesmodel.moc"
