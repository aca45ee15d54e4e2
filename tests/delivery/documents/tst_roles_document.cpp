#include "ItemSetters.h"
#include "LibraryInterface.h"
#include "LibraryModels.h"
#include "LogCapture.h"
#include "RolesDocument.h"

#include <QFile>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQmlExpression>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using rivo::models::ListItem;
using rivo::models::ListModel;

namespace
{

const QMap<QString, QString>& exampleNames()
{
    static const QMap<QString, QString> names{{"PassengerTypesModel", "passengerTypes"},
                                              {"ShoppingBasketModel", "basket"},
                                              {"FareProductsModel", "fareProducts"},
                                              {"ZReportModel", "zReports"},
                                              {"AssetsModel", "assets"},
                                              {"PeripheralsModel", "peripherals"}};
    return names;
}

/// A row that shows something in every role but the icon, for which there is no image.
ListItem* makeRow(const ItemSetters& itemClass, QObject* parent)
{
    ListItem* item = itemClass.itemClass.make(parent);
    for (const ItemSetter& setter : itemClass.setters) {
        if (setter.name != "setIcon")
            setter.set(*item, setter.sample(1));
    }
    return item;
}

/// An example on a screen of its own, over two rows: one with all values and an initial one.
class Screen
{
public:
    Screen(const QString& modelClass, const QString& qml)
        : m_model(libraryModel(modelClass).make(&m_owner)), m_component(&m_engine)
    {
        m_engine.addImportPath(QStringLiteral(RIVO_QML_IMPORT_PATH));
        QObject::connect(&m_engine, &QQmlEngine::warnings,
                         [this](const QList<QQmlError>& errors) { add(errors); });
        m_engine.setOutputWarningsToStandardError(false);
        const ItemSetters itemClass = settersOfRows(modelClass);
        m_model->appendRow(makeRow(itemClass, m_model));
        m_model->appendRow(itemClass.itemClass.make(m_model));
        m_component.setData(qml.toUtf8(), QUrl("qrc:/example.qml"));
        if (m_component.isReady())
            m_view.reset(m_component.createWithInitialProperties(
                {{exampleNames()[modelClass], QVariant::fromValue(m_model)}}));
        add(m_component.errors());
    }

    QStringList complaints() const { return m_complaints; }

    /// Value of an expression in the delegate of a row.
    QVariant inRow(int row, const QString& expression)
    {
        QQmlExpression itemAt(m_engine.rootContext(), m_view.get(),
                              QStringLiteral("itemAtIndex(%1)").arg(row));
        QObject* delegate = itemAt.evaluate().value<QObject*>();
        if (!delegate)
            return "no delegate";
        QQmlExpression inDelegate(QQmlEngine::contextForObject(delegate), delegate, expression);
        const QVariant value = inDelegate.evaluate();
        return inDelegate.hasError() ? QVariant(inDelegate.error().toString()) : value;
    }

    ListModel* model() const { return m_model; }

private:
    void add(const QList<QQmlError>& errors)
    {
        for (const QQmlError& error : errors)
            m_complaints.append(error.description());
    }

    QObject m_owner;
    ListModel* m_model;
    QStringList m_complaints;
    QQmlEngine m_engine;
    QQmlComponent m_component;
    std::unique_ptr<QObject> m_view;
};

/// The text that occurs exactly once, replaced.
QString replacedOnce(const QString& text, const QString& before, const QString& after)
{
    if (text.count(before) != 1)
        qFatal("\"%s\" occurs %d times", qPrintable(before), text.count(before));
    return QString(text).replace(before, after);
}

} // namespace

class TestRolesDocument : public QObject
{
    Q_OBJECT

public:
    /// Before the application: the platform without a window system that frees its screen, and
    /// nothing to complain about.
    static void initMain()
    {
        static const QTemporaryDir runtimeFiles;
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(runtimeFiles.path()));
        qputenv("QT_QPA_PLATFORM", "minimal");
        qputenv("QT_QUICK_BACKEND", "software");
    }

private slots:
    void initTestCase()
    {
        QFile file(QStringLiteral(ROLES_DOCUMENT));
        QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.fileName()));
        m_markdown = QString::fromUtf8(file.readAll());
        m_document = parseRolesDocument(m_markdown);
        m_library = libraryInterface();
    }

    // The document against the library.

    void tellsWhatTheLibraryHasAndNothingElse_data()
    {
        QTest::addColumn<QString>("className");
        for (const QString& name : m_library.keys())
            QTest::newRow(qPrintable(name)) << name;
    }

    void tellsWhatTheLibraryHasAndNothingElse()
    {
        QFETCH(QString, className);
        QVERIFY(!m_document.lines[className].isEmpty());
        QCOMPARE(differences({{className, m_document.lines[className]}},
                             {{className, m_library[className]}})
                     .join('\n'),
                 QString());
    }

    void describesNoOtherClass()
    {
        QCOMPARE(m_document.lines.keys(), m_library.keys());
        QCOMPARE(m_document.faults, QStringList());
    }

    void enumeratorsAreTheNamesWithACapitalAndRole_data() { modelClasses(); }

    void enumeratorsAreTheNamesWithACapitalAndRole()
    {
        QFETCH(QString, className);
        QMap<QString, int> expected;
        for (const QString& line : m_document.lines[className]["Roles"]) {
            const QStringList cells = line.split(", ");
            expected.insert(cells[1].at(0).toUpper() + cells[1].mid(1) + "Role", cells[0].toInt());
        }
        QVERIFY(!expected.isEmpty());
        QCOMPARE(declaredRoles(settersOfRows(className).className), expected);
    }

    // What the comparison rests on.

    void headersDeclareWhatTheLibraryExports_data()
    {
        QTest::addColumn<QString>("className");
        for (const QString& name : m_library.keys())
            QTest::newRow(qPrintable(name)) << name;
    }

    void headersDeclareWhatTheLibraryExports()
    {
        QFETCH(QString, className);
        QVERIFY(!declaredSymbols(className).isEmpty());
        QCOMPARE(QStringList((exportedSymbols(className) - declaredSymbols(className)).values()),
                 QStringList());
        QCOMPARE(QStringList((declaredSymbols(className) - exportedSymbols(className)).values()),
                 QStringList());
    }

    void everySetterIsTried_data() { modelClasses(); }

    void everySetterIsTried()
    {
        QFETCH(QString, className);
        const ItemSetters itemClass = settersOfRows(className);
        QSet<QString> names;
        for (const ItemSetter& setter : itemClass.setters)
            names.insert(setter.name);
        QCOMPARE(names, exportedSetters(itemClass.className));
    }

    // The comparison notices errors.

    void anErrorIsNoticed_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("after");
        QTest::addColumn<QStringList>("found");
        QTest::newRow("a role is missing")
            << "| 272 | `pos` | `int` | `int` | `pos` | grid position from 1 | set by the back "
               "office; -1 if not |\n"
            << "" << QStringList{"PassengerTypesModel, Roles: missing 272, pos, int, int, pos"};
        QTest::newRow("the unused role is given a meaning")
            << "| 259 | `description` |"
            << "| 258 | `code` | `int` | `int` | `code` | - | x |\n| 259 | `description` |"
            << QStringList{"FareProductsModel, Roles: surplus 258, code, int, int, code"};
        QTest::newRow("a role's name is corrected")
            << "| `productFairIcon` |"
            << "| `productFareIcon` |"
            << QStringList{
                   "FareProductsModel, Roles: missing 260, productFairIcon, string, QString, icon",
                   "FareProductsModel, Roles: surplus 260, productFareIcon, string, QString, "
                   "icon"};
        QTest::newRow("a role shows another field")
            << "| `string` | `QString` | `fromTicketNumber` |"
            << "| `string` | `QString` | `toTicketNumber` |"
            << QStringList{"ZReportModel, Roles: missing 264, fromTicketData, string, QString, "
                           "fromTicketNumber",
                           "ZReportModel, Roles: surplus 264, fromTicketData, string, QString, "
                           "toTicketNumber"};
        QTest::newRow("a role has another C++ type")
            << "| 267 | `zNumberData` | `real` | `double` |"
            << "| 267 | `zNumberData` | `real` | `int` |"
            << QStringList{"ZReportModel, Roles: missing 267, zNumberData, real, double, zNumber",
                           "ZReportModel, Roles: surplus 267, zNumberData, real, int, zNumber"};
        QTest::newRow("a role has a QML type that does not hold its values")
            << "| `identity` | `real` |"
            << "| `identity` | `int` |"
            << QStringList{"PeripheralsModel, Roles: missing 259, identity, real, uint, identity",
                           "PeripheralsModel, Roles: surplus 259, identity, int, uint, identity"};
        QTest::newRow("an item's property is corrected")
            << "| `pasengerType` |"
            << "| `passengerType` |"
            << QStringList{
                   "ShoppingBasketModel, Item properties: missing pasengerType, int, -1, no",
                   "ShoppingBasketModel, Item properties: surplus passengerType, int, -1, no"};
        QTest::newRow("a silent property is said to refresh the row")
            << "| `payMethod` | `int` | -1 | no |"
            << "| `payMethod` | `int` | -1 | yes |"
            << QStringList{"ShoppingBasketModel, Item properties: missing payMethod, int, -1, no",
                           "ShoppingBasketModel, Item properties: surplus payMethod, int, -1, yes"};
        QTest::newRow("a property has another default")
            << "| -999999 |"
            << "| -1 |"
            << QStringList{
                   "ShoppingBasketModel, Item properties: missing routeId, int, -999999, no",
                   "ShoppingBasketModel, Item properties: surplus routeId, int, -1, no"};
        QTest::newRow("a setter compares otherwise")
            << "| `setCommission` | exact |"
            << "| `setCommission` | fuzzy |"
            << QStringList{"ZReportModel, Setters: missing setCommission, exact",
                           "ZReportModel, Setters: surplus setCommission, fuzzy"};
        QTest::newRow("a setter compares with another field")
            << "against `ticketSumAmnt`"
            << "against `parcelAmnt`"
            << QStringList{"ZReportModel, Setters: missing setCardSellAmnt, against ticketSumAmnt",
                           "ZReportModel, Setters: surplus setCardSellAmnt, against parcelAmnt"};
        QTest::newRow("a setter that is not there is left out")
            << "| `setId` | none |\n| `setTicketSumAmnt` |"
            << "| `setTicketSumAmnt` |"
            << QStringList{"ZReportModel, Setters: missing setId, none"};
        QTest::newRow("a setter is said not to be there")
            << "| `setUpdated` | silent |\n"
            << "| `setUpdated` | silent |\n| `setId` | none |\n"
            << QStringList{"AssetsModel, Setters: surplus setId, none"};
        QTest::newRow("a hidden field is left out")
            << "| `updated` | `bool` | the application's own mark |\n"
            << "" << QStringList{"AssetsModel, Fields without a role: missing updated, bool"};
        QTest::newRow("a property has another signal")
            << "`countChanged(int)`"
            << "`countChanged(int count)`"
            << QStringList{
                   "ListModel, Properties: missing count, int, read-only, countChanged(int)",
                   "ListModel, Properties: surplus count, int, read-only, countChanged(int count)"};
        QTest::newRow("an argument of a call has another name")
            << "`itemFromRow(int iRow)`"
            << "`itemFromRow(int row)`"
            << QStringList{"ListModel, QML calls: missing itemFromRow(int iRow), ListItem*",
                           "ListModel, QML calls: surplus itemFromRow(int row), ListItem*"};
        QTest::newRow("a call returns another type")
            << "| `removeRow(int row)` | `bool` |"
            << "| `removeRow(int row)` | `void` |"
            << QStringList{"ListModel, QML calls: missing removeRow(int row), bool",
                           "ListModel, QML calls: surplus removeRow(int row), void"};
        QTest::newRow("a key has another value")
            << "| `PT_LFS` | 8 |"
            << "| `PT_LFS` | 6 |"
            << QStringList{"PassengerTypesModel, Enum PassengerType: missing PT_LFS, 8",
                           "PassengerTypesModel, Enum PassengerType: surplus PT_LFS, 6"};
        QTest::newRow("arguments of an operation in another order")
            << "int first, int last, int role"
            << "int role, int first, int last"
            << QStringList{"ListModel, C++ operations: missing void sortRangeByRole(int column, "
                           "Qt::SortOrder order, int first, int last, int role)",
                           "ListModel, C++ operations: surplus void sortRangeByRole(int column, "
                           "Qt::SortOrder order, int role, int first, int last)"};
        QTest::newRow("arguments of a row's constructor in another order")
            << "bool blueWarning, bool yellowWarning"
            << "bool yellowWarning, bool blueWarning"
            << QStringList{
                   "PeripheralsModel, C++ operations: missing PeripheralItem(const int& id, "
                   "const QString& name, const unsigned int& identity, const QString& icon, "
                   "bool warning, bool blueWarning, bool yellowWarning, bool error, "
                   "const int& deviceState, QString stateStr, QObject* parent)",
                   "PeripheralsModel, C++ operations: surplus PeripheralItem(const int& id, "
                   "const QString& name, const unsigned int& identity, const QString& icon, "
                   "bool warning, bool yellowWarning, bool blueWarning, bool error, "
                   "const int& deviceState, QString stateStr, QObject* parent)"};
        QTest::newRow("an operation is missing")
            << "| `void clearData()` | no tiles, no records; first step of a layout |\n"
            << "" << QStringList{"PassengerTypesModel, C++ operations: missing void clearData()"};
        QTest::newRow("a row is there twice")
            << "| `setPayMethod` | silent |\n"
            << "| `setPayMethod` | silent |\n| `setPayMethod` | silent |\n"
            << QStringList{"ShoppingBasketModel, Setters: surplus setPayMethod, silent"};
        QTest::newRow("a table has an unknown heading")
            << "### Fields without a role\n\n| Field | Type | Meaning |\n|---|---|---|\n| `updated`"
            << "### Hidden\n\n| Field | Type | Meaning |\n|---|---|---|\n| `updated`"
            << QStringList{"AssetsModel, Fields without a role: missing updated, bool",
                           "AssetsModel, Hidden: surplus updated, bool"};
        QTest::newRow("what only explains may change")
            << "| `setSelected(int iRow, bool)` | `void` | selects"
            << "| `setSelected(int iRow, bool)` | `void` | marks" << QStringList();
    }

    void anErrorIsNoticed()
    {
        QFETCH(QString, before);
        QFETCH(QString, after);
        QFETCH(QStringList, found);
        const RolesDocument changed = parseRolesDocument(replacedOnce(m_markdown, before, after));
        QCOMPARE(differences(changed.lines, m_library), found);
    }

    void aFaultOfTheMarkdownIsNoticed_data()
    {
        QTest::addColumn<QString>("markdown");
        QTest::addColumn<QStringList>("faults");
        QTest::newRow("table outside of a heading") << "## M\n\n| A |\n"
                                                    << QStringList{"table out of place in M"};
        QTest::newRow("row with a cell too few") << "## M\n### Roles\n| A | B |\n|---|---|\n| 1 |\n"
                                                 << QStringList{"wrong width: | 1 |"};
        QTest::newRow("row with a cell too many") << "## M\n### Roles\n| A |\n|---|\n| 1 | 2 |\n"
                                                  << QStringList{"wrong width: | 1 | 2 |"};
        QTest::newRow("role without a meaning")
            << "## M\n### Roles\n| Role | Unit | Meaning |\n|---|---|---|\n| 1 | - | |\n"
            << QStringList{"M, 1: no Meaning"};
        QTest::newRow("role without a unit")
            << "## M\n### Roles\n| Role | Unit | Meaning |\n|---|---|---|\n| 1 | | x |\n"
            << QStringList{"M, 1: no Unit"};
        QTest::newRow("role of which nothing is said")
            << "## M\n### Roles\n| Role | Unit | Meaning |\n|---|---|---|\n| 1 | | ` ` |\n"
            << (QStringList{"M, 1: no Unit", "M, 1: no Meaning"});
        QTest::newRow("code that is no example") << "## M\n### Roles\n```qml\n```\n"
                                                 << QStringList{"example out of place in M"};
        QTest::newRow("example in another language") << "## M\n### Example\n```cpp\n```\n"
                                                     << QStringList{"example out of place in M"};
        QTest::newRow("second example") << "## M\n### Example\n```qml\nA\n```\n```qml\nB\n```\n"
                                        << QStringList{"example out of place in M"};
    }

    void aFaultOfTheMarkdownIsNoticed()
    {
        QFETCH(QString, markdown);
        QFETCH(QStringList, faults);
        QCOMPARE(parseRolesDocument(markdown).faults, faults);
    }

    // The QML types, by a delegate that declares every role.

    void theQmlTypesHoldTheValues_data() { modelClasses(); }

    void theQmlTypesHoldTheValues()
    {
        QFETCH(QString, className);
        QString properties = "required property var model;";
        QMap<int, QString> expressions;
        for (const QString& line : m_document.lines[className]["Roles"]) {
            const QStringList cells = line.split(", ");
            const bool canBeDeclared = cells[1] != "id";
            expressions[cells[0].toInt()] = canBeDeclared ? cells[1] : "model.id";
            if (canBeDeclared)
                properties += "required property " + cells[2] + ' ' + cells[1] + ';';
        }
        const QString model = exampleNames()[className];
        Screen screen(className, "import QtQuick 2.15\nListView { required property var " + model +
                                     "; height: 100; model: " + model + "; delegate: Item {" +
                                     properties + "}}");
        QCOMPARE(screen.complaints().join('\n'), QString());
        for (auto role = expressions.cbegin(); role != expressions.cend(); ++role) {
            const QVariant expected = screen.model()->index(0).data(role.key());
            const QVariant shown = screen.inRow(0, role.value());
            QVERIFY2(expected.isValid() && shown == expected, qPrintable(role.value()));
        }
    }

    // The examples.

    void everyModelHasAnExample() { QCOMPARE(m_document.examples.keys(), exampleNames().keys()); }

    void examplesShowTheirRows_data()
    {
        QTest::addColumn<QString>("className");
        QTest::addColumn<QString>("expression");
        QTest::addColumn<QString>("filledRow");
        QTest::addColumn<QString>("initialRow");
        QTest::newRow("grid") << "PassengerTypesModel"
                              << "children[0].text"
                              << "4712 6.00"
                              << " 0.00";
        QTest::newRow("basket") << "ShoppingBasketModel"
                                << "text"
                                << "4712 4712 6.00 *"
                                << "  0.00";
        QTest::newRow("fare products") << "FareProductsModel"
                                       << "children[1].text"
                                       << "4712 6.00"
                                       << " 0.00";
        QTest::newRow("Z reports") << "ZReportModel"
                                   << "text"
                                   << "6: 6.00 (4712) 1970-01-01"
                                   << "0: 0.00";
        QTest::newRow("fleet") << "AssetsModel"
                               << "text"
                               << "4712 4712 6°"
                               << " ";
        QTest::newRow("devices") << "PeripheralsModel"
                                 << "text + color"
                                 << "4712 4712#8b0000"
                                 << " #8b0000";
    }

    void examplesShowTheirRows()
    {
        QFETCH(QString, className);
        QFETCH(QString, expression);
        QFETCH(QString, filledRow);
        QFETCH(QString, initialRow);
        Screen screen(className, m_document.examples[className]);
        QCOMPARE(screen.complaints().join('\n'), QString());
        QCOMPARE(screen.inRow(0, expression).toString(), filledRow);
        QCOMPARE(screen.inRow(1, expression).toString(), initialRow);
        QCOMPARE(screen.complaints().join('\n'), QString());
    }

    void examplesShowPlainText_data() { modelClasses(); }

    void examplesShowPlainText()
    {
        QFETCH(QString, className);
        const QString qml = m_document.examples[className];
        QVERIFY(qml.contains("Text {"));
        QCOMPARE(qml.count("textFormat: Text.PlainText"), qml.count("Text {"));
    }

    void aTapInTheGridSelectsTheTile()
    {
        Screen screen("PassengerTypesModel", m_document.examples["PassengerTypesModel"]);
        const auto selected = [&screen](int row) {
            return screen.model()->index(row).data(270).toBool();
        };
        QVERIFY(selected(0));
        QVERIFY(!selected(1));
        for (int row : {0, 1})
            screen.inRow(row, "children[1].clicked(null)");
        QCOMPARE(screen.complaints().join('\n'), QString());
        QVERIFY(!selected(0));
        QVERIFY(selected(1));
    }

    void theBasketWritesAPropertyOfTheTicket()
    {
        Screen screen("ShoppingBasketModel", m_document.examples["ShoppingBasketModel"]);
        QVERIFY(!screen.inRow(1, "payInCash()").isValid());
        QCOMPARE(screen.complaints().join('\n'), QString());
        QCOMPARE(screen.model()->itemFromRow(1)->property("payMethod"), QVariant(1));
    }

    void aFaultOfAnExampleIsNoticed_data()
    {
        QTest::addColumn<QString>("className");
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("after");
        QTest::newRow("corrected role") << "FareProductsModel"
                                        << "required property string productFairIcon"
                                        << "required property string productFareIcon";
        QTest::newRow("unknown role in a text") << "ShoppingBasketModel"
                                                << "text: description"
                                                << "text: descriptions";
        QTest::newRow("type that cannot be declared") << "AssetsModel"
                                                      << "property var assetCoordinate"
                                                      << "property coordinate assetCoordinate";
        QTest::newRow("another name of the model") << "ZReportModel"
                                                   << "model: zReports"
                                                   << "model: reports";
        QTest::newRow("model of another type") << "ZReportModel"
                                               << "property ZReportModel"
                                               << "property AssetsModel";
        QTest::newRow("property of another name") << "PassengerTypesModel"
                                                  << "cellWidth: width"
                                                  << "cellWidths: width";
        QTest::newRow("brace missing") << "PeripheralsModel"
                                       << "    }\n}\n"
                                       << "    }\n";
    }

    void aFaultOfAnExampleIsNoticed()
    {
        QFETCH(QString, className);
        QFETCH(QString, before);
        QFETCH(QString, after);
        const QString qml = m_document.examples[className];
        const Screen screen(className, replacedOnce(qml, before, after));
        QVERIFY(!screen.complaints().isEmpty());
    }

private:
    static void modelClasses()
    {
        QTest::addColumn<QString>("className");
        for (const QString& name : exampleNames().keys())
            QTest::newRow(qPrintable(name)) << name;
    }

    LogCapture m_log;
    QString m_markdown;
    RolesDocument m_document;
    InterfaceLines m_library;
};

QTEST_MAIN(TestRolesDocument)

#include "tst_roles_document.moc"
