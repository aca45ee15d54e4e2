#include "LibraryInterface.h"
#include "LibraryModels.h"
#include "LogCapture.h"
#include "RolesDocument.h"
#include "Table.h"

#include <QFile>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQmlExpression>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using rivo::models::ListModel;

namespace
{

/// Values of a row that shows something in every role but the icon, for which there is no image.
QVariantList shownValues(const ItemClass& rows)
{
    QVariantList values = rows.numberedValues(1, 1);
    for (const ItemField& field : rows.fields) {
        if (QLatin1String("icon") == field.name)
            values[field.number] = field.initial;
    }
    return values;
}

/// Name of the property that the model is given to in an example.
QString modelProperty(const QString& modelClass, const QString& qml)
{
    return qml.section("required property " + modelClass + ' ', 1).section('\n', 0, 0);
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
        const ItemClass& rows = rowsOf(modelClass);
        m_model->appendRow(rows.build(shownValues(rows), m_model));
        m_model->appendRow(rows.make(m_model));
        m_component.setData(qml.toUtf8(), QUrl("qrc:/example.qml"));
        if (m_component.isReady())
            m_view.reset(m_component.createWithInitialProperties(
                {{modelProperty(modelClass, qml), QVariant::fromValue(m_model)}}));
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
        qFatal("\"%s\" occurs %d times", qPrintable(before), static_cast<int>(text.count(before)));
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

    void statesWhatTheLibraryHasAndNothingElse_data()
    {
        const Table<QString> row("className");
        for (const QString& name : m_library.keys())
            row(qPrintable(name), name);
    }

    void statesWhatTheLibraryHasAndNothingElse()
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

    // The comparison notices errors.

    void anErrorIsNoticed_data()
    {
        addColumns<QString, QString, QStringList>("before", "after", "found");
        const auto row = [](const QString& before, const QString& after, const QString& place,
                            const QString& missing, const QString& surplus = {}) {
            QStringList found;
            if (!missing.isEmpty())
                found << place + ": missing " + missing;
            if (!surplus.isEmpty())
                found << place + ": surplus " + surplus;
            QTest::addRow("%s instead of %s", qPrintable(after), qPrintable(before))
                << before << after << found;
        };
        row("| `updated` | `bool` | the application's own mark |\n", "",
            "AssetsModel, Fields without a role", "updated, bool");
        row("| `productFairIcon` |", "| `productFareIcon` |", "FareProductsModel, Roles",
            "260, productFairIcon, string, QString, icon",
            "260, productFareIcon, string, QString, icon");
        row("| `string` | `QString` | `fromTicketNumber` |",
            "| `string` | `QString` | `toTicketNumber` |", "ZReportModel, Roles",
            "264, fromTicketData, string, QString, fromTicketNumber",
            "264, fromTicketData, string, QString, toTicketNumber");
        row("| `identity` | `real` |", "| `identity` | `int` |", "PeripheralsModel, Roles",
            "259, identity, real, uint, identity", "259, identity, int, uint, identity");
        row("| `payMethod` | `int` | -1 | no |", "| `payMethod` | `int` | -1 | yes |",
            "ShoppingBasketModel, Item properties", "payMethod, int, -1, no",
            "payMethod, int, -1, yes");
        row("| `setCommission` | exact |", "| `setCommission` | fuzzy |", "ZReportModel, Setters",
            "setCommission, exact", "setCommission, fuzzy");
        row("against `ticketSumAmnt`", "against `parcelAmnt`", "ZReportModel, Setters",
            "setCardSellAmnt, against ticketSumAmnt", "setCardSellAmnt, against parcelAmnt");
        row("| `setUpdated` | silent |\n", "| `setUpdated` | silent |\n| `setId` | none |\n",
            "AssetsModel, Setters", "", "setId, none");
        row("`countChanged(int)`", "`countChanged(int count)`", "ListModel, Properties",
            "count, int, read-only, countChanged(int)",
            "count, int, read-only, countChanged(int count)");
        row("`itemFromRow(int iRow)`", "`itemFromRow(int row)`", "ListModel, QML calls",
            "itemFromRow(int iRow), ListItem*", "itemFromRow(int row), ListItem*");
        row("| `PT_LFS` | 8 |", "| `PT_LFS` | 6 |", "PassengerTypesModel, Enum PassengerType",
            "PT_LFS, 8", "PT_LFS, 6");
        row("| `setPayMethod` | silent |\n",
            "| `setPayMethod` | silent |\n| `setPayMethod` | silent |\n",
            "ShoppingBasketModel, Setters", "", "setPayMethod, silent");
        row("`setSelected(int iRow, bool)` | `void` | selects",
            "`setSelected(int iRow, bool)` | `void` | marks", "", "");
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
        addColumns<QString, QStringList>("markdown", "faults");
        const auto row = [](const char* name, const QString& markdown, const QStringList& faults) {
            QTest::newRow(name) << "## M\n" + markdown << faults;
        };
        const QString example = "example out of place in M";
        const QString roles = "### Roles\n| Role | Unit | Meaning |\n|---|---|---|\n";
        row("table outside of a heading", "\n| A |\n", {"table out of place in M"});
        row("row with a cell too few", roles + "| 1 | 2 |\n", {"wrong width: | 1 | 2 |"});
        row("row with a cell too many", roles + "| 1 | 2 | 3 | 4 |\n",
            {"wrong width: | 1 | 2 | 3 | 4 |"});
        row("role without a meaning", roles + "| 1 | - | |\n", {"M, 1: no Meaning"});
        row("role without a unit", roles + "| 1 | | x |\n", {"M, 1: no Unit"});
        row("role of which nothing is said", roles + "| 1 | | ` ` |\n",
            {"M, 1: no Unit", "M, 1: no Meaning"});
        row("code that is no example", "### Roles\n```qml\n```\n", {example});
        row("example in another language", "### Example\n```cpp\n```\n", {example});
        row("second example", "### Example\n```qml\nA\n```\n```qml\nB\n```\n", {example});
    }

    void aFaultOfTheMarkdownIsNoticed()
    {
        QFETCH(QString, markdown);
        QFETCH(QStringList, faults);
        QCOMPARE(parseRolesDocument(markdown).faults, faults);
    }

    // The QML types, by a delegate that declares every role.

    void theQmlTypesHoldTheValues_data() { everyModel(); }

    void theQmlTypesHoldTheValues()
    {
        QFETCH(QString, model);
        QString properties = "required property var model;";
        QMap<int, QString> expressions;
        for (const QString& line : m_document.lines[model]["Roles"]) {
            const QStringList cells = line.split(", ");
            const bool canBeDeclared = cells[1] != "id";
            expressions[cells[0].toInt()] = canBeDeclared ? cells[1] : "model.id";
            if (canBeDeclared)
                properties += "required property " + cells[2] + ' ' + cells[1] + ';';
        }
        Screen screen(model, "import QtQuick 2.15\nimport Rivo.GuiCore 1.0\nListView {\n"
                             "required property " +
                                 model +
                                 " rows\n"
                                 "height: 100; model: rows; delegate: Item {" +
                                 properties + "}}");
        QCOMPARE(screen.complaints().join('\n'), QString());
        for (auto role = expressions.cbegin(); role != expressions.cend(); ++role) {
            const QVariant expected = screen.model()->index(0).data(role.key());
            const QVariant shown = screen.inRow(0, role.value());
            QVERIFY2(expected.isValid() && shown == expected, qPrintable(role.value()));
        }
    }

    // The examples.

    void everyModelHasAnExample()
    {
        for (const LibraryModel& model : libraryModels())
            QVERIFY2(m_document.examples.contains(model.name), model.name);
        QCOMPARE(m_document.examples.size(), static_cast<int>(libraryModels().size()));
    }

    void examplesShowTheirRows_data()
    {
        const Table<QString, QString, QString, QString> row("className", "expression", "filledRow",
                                                            "initialRow");
        row("grid", "PassengerTypesModel", "children[0].text", "description 1 3.00", " 0.00");
        row("basket", "ShoppingBasketModel", "text", "description 1 destination 1 5.00 *",
            "  0.00");
        row("fare products", "FareProductsModel", "children[1].text", "description 1 2.50",
            " 0.00");
        row("Z reports", "ZReportModel", "text", "6: 5.50 (2) 2024-05-01", "0: 0.00");
        row("fleet", "AssetsModel", "text", "registrationNumber 1 routeName 1 6°", " ");
        row("devices", "PeripheralsModel", "text + color", "name 1 stateStr 1#000000", " #8b0000");
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

    void examplesShowPlainText_data() { everyModel(); }

    void examplesShowPlainText()
    {
        QFETCH(QString, model);
        const QString qml = m_document.examples[model];
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
        const Table<QString, QString, QString> row("className", "before", "after");
        row("corrected role", "FareProductsModel", "required property string productFairIcon",
            "required property string productFareIcon");
        row("unknown role in a text", "ShoppingBasketModel", "text: description",
            "text: descriptions");
        row("type that cannot be declared", "AssetsModel", "property var assetCoordinate",
            "property coordinate assetCoordinate");
        row("another name of the model", "ZReportModel", "model: zReports", "model: reports");
        row("model of another type", "ZReportModel", "property ZReportModel",
            "property AssetsModel");
        row("property of another name", "PassengerTypesModel", "cellWidth: width",
            "cellWidths: width");
        row("brace missing", "PeripheralsModel", "    }\n}\n", "    }\n");
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
    LogCapture m_log;
    QString m_markdown;
    RolesDocument m_document;
    InterfaceLines m_library;
};

QTEST_MAIN(TestRolesDocument)

#include "tst_roles_document.moc"
