#include "LibraryInterface.h"

#include "ItemSetters.h"
#include "LibraryModels.h"
#include "MetaObjectText.h"

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QSignalSpy>

#include <algorithm>

using rivo::models::ListItem;
using rivo::models::ListModel;

namespace
{

using Table = QMap<QString, QStringList>;

/// The type that QML declares for a role's value.
QString qmlType(const QString& type)
{
    static const QMap<QString, QString> types{
        {"int", "int"},        {"uint", "real"},      {"double", "real"},       {"bool", "bool"},
        {"QString", "string"}, {"QDateTime", "date"}, {"QGeoCoordinate", "var"}};
    return types.value(type, "no QML type for " + type);
}

/// A header without comments and macros of the meta-object compiler, blanks and line breaks merged.
QString header(const QString& className)
{
    for (const char* folder : {"/ListModel/", "/Models/"}) {
        QFile file(QStringLiteral(GUICORE_SOURCES) + folder + className + ".h");
        if (!file.open(QIODevice::ReadOnly))
            continue;
        QString text = QString::fromUtf8(file.readAll());
        text.remove(QRegularExpression("//[^\n]*"));
        text = text.simplified();
        text.remove(QRegularExpression("Q_(PROPERTY|ENUM)\\([^)]*\\)|Q_OBJECT"));
        return text;
    }
    return {};
}

/// An item in which as many fields as possible have a value of their own.
const ListItem& distinctItem(const ItemSetters& rows, QObject& owner)
{
    ListItem* item = rows.itemClass.make(&owner);
    for (int i = 0; i < rows.setters.size(); ++i)
        rows.setters.at(i).set(*item, rows.setters.at(i).sample(i + 1));
    return *item;
}

/// The getter, declared in the header, that returns what the role shows.
QString getterOf(int role, const ListItem& item, const ItemSetters& rows)
{
    for (const ItemField& field : rows.itemClass.fields) {
        if (field.role == role && sameValue(field.get(item), item.data(role)) &&
            header(rows.className).contains(QStringLiteral(" %1() const").arg(field.name)))
            return field.name;
    }
    return "no getter";
}

QStringList roleLines(const ListModel& model, const ItemSetters& rows)
{
    QObject owner;
    const ListItem& item = distinctItem(rows, owner);
    QStringList lines;
    const QHash<int, QByteArray> names = model.roleNames();
    for (auto name = names.cbegin(); name != names.cend(); ++name) {
        const QString type = QString::fromLatin1(item.data(name.key()).typeName());
        lines.append(QStringList{QString::number(name.key()), name.value(), qmlType(type), type,
                                 getterOf(name.key(), item, rows)}
                         .join(", "));
    }
    return lines;
}

/// "setSelected(int iRow, bool)"
QString signatureText(const QMetaMethod& method)
{
    QStringList parameters;
    for (int i = 0; i < method.parameterCount(); ++i)
        parameters.append(QString::fromLatin1(
            (method.parameterTypes().at(i) + ' ' + method.parameterNames().at(i)).trimmed()));
    return QString::fromLatin1(method.name()) + '(' + parameters.join(", ") + ')';
}

/// Public invokables and slots that the class itself adds.
QStringList callLines(const QMetaObject& type)
{
    QStringList lines;
    for (int i = type.methodOffset(); i < type.methodCount(); ++i) {
        const QMetaMethod method = type.method(i);
        if (method.access() == QMetaMethod::Public && method.methodType() != QMetaMethod::Signal)
            lines.append(signatureText(method) + ", " + method.typeName());
    }
    return lines;
}

/// Own properties of a model, then its own signals that belong to no property.
QStringList propertyLines(const QMetaObject& type)
{
    QStringList lines;
    QSet<int> notifiers;
    for (int i = type.propertyOffset(); i < type.propertyCount(); ++i) {
        const QMetaProperty property = type.property(i);
        const QString access = property.isWritable() ? "read-write" : "read-only";
        notifiers.insert(property.notifySignalIndex());
        lines.append(QStringList{property.name(), property.typeName(), access,
                                 signatureText(property.notifySignal())}
                         .join(", "));
    }
    for (int i = type.methodOffset(); i < type.methodCount(); ++i) {
        if (type.method(i).methodType() == QMetaMethod::Signal && !notifiers.contains(i))
            lines.append("signal " + signatureText(type.method(i)));
    }
    return lines;
}

/// Own properties of an item, each written with another value.
QStringList itemPropertyLines(const ItemSetters& itemClass)
{
    QObject owner;
    ListItem* item = itemClass.itemClass.make(&owner);
    const QMetaObject& type = *item->metaObject();
    QStringList lines;
    for (int i = type.propertyOffset(); i < type.propertyCount(); ++i) {
        const QMetaProperty property = type.property(i);
        const QVariant initial = property.read(item);
        const QVariant other = property.type() == QVariant::Bool ? QVariant(!initial.toBool())
                                                                 : QVariant(QStringLiteral("4711"));
        QSignalSpy changes(item, &ListItem::dataChanged);
        QString refreshes = "cannot be written";
        if (property.write(item, other) && property.read(item) != initial)
            refreshes = changes.isEmpty() ? "no" : "yes";
        QString line =
            QStringList{property.name(), property.typeName(), initial.toString(), refreshes}.join(
                ", ");
        if (property.hasNotifySignal())
            line += ", notifies";
        lines.append(line);
    }
    return lines;
}

QStringList setterLines(const ItemSetters& itemClass)
{
    QStringList lines;
    for (const ItemSetter& setter : itemClass.setters) {
        const QString announcement = itemClass.announcement(setter);
        if (!announcement.isEmpty())
            lines.append(setter.name + ", " + announcement);
    }
    for (const ItemField& field : itemClass.itemClass.fields) {
        if (field.role != 0 && !field.set)
            lines.append(setterName(field) + ", none");
    }
    return lines;
}

/// Fields that neither a role nor a property shows.
QStringList hiddenFieldLines(const ItemSetters& itemClass)
{
    QObject owner;
    const QMetaObject& type = *itemClass.itemClass.make(&owner)->metaObject();
    QStringList lines;
    for (const ItemSetter& setter : itemClass.setters) {
        if (!itemClass.hasRole(setter) && type.indexOfProperty(setter.field().toLatin1()) < 0)
            lines.append(setter.field() + ", " + QMetaType::typeName(setter.type));
    }
    return lines;
}

void addEnums(const QMetaObject& type, Table& tables)
{
    for (int i = type.enumeratorOffset(); i < type.enumeratorCount(); ++i) {
        const QMetaEnum enumeration = type.enumerator(i);
        for (int key = 0; key < enumeration.keyCount(); ++key)
            tables[QStringLiteral("Enum ") + enumeration.name()].append(
                enumeration.key(key) + QStringLiteral(", %1").arg(enumeration.value(key)));
    }
}

/// Name of the function or of the constant that is declared.
QString declaredName(const QString& declaration)
{
    static const QRegularExpression name("(\\w+)(\\(.*| = .*)?$");
    return declaration.startsWith("using ") ? declaration.section(' ', 1, 1)
                                            : name.match(declaration).captured(1);
}

bool isAccessor(const QString& name, const QMetaObject& type)
{
    for (int i = type.propertyOffset(); i < type.propertyCount(); ++i) {
        const QString property = type.property(i).name();
        if (name == property ||
            name == QStringLiteral("set") + property.at(0).toUpper() + property.mid(1))
            return true;
    }
    return false;
}

/// Public operations that are neither for QML nor accessors of a property.
QStringList operationLines(const QString& className, const QMetaObject& type)
{
    QStringList lines;
    for (QString declaration : declaredOperations(className)) {
        declaration.remove(" inline");
        if (!declaration.startsWith("Q_INVOKABLE ") && !isAccessor(declaredName(declaration), type))
            lines.append(declaration);
    }
    return lines;
}

/// Whether the model makes its rows; otherwise the application constructs them.
bool madeByTheModel(const QStringList& operations)
{
    return std::any_of(operations.cbegin(), operations.cend(), [](const QString& operation) {
        return declaredName(operation) == "addItem";
    });
}

QStringList constructorLines(const QString& itemClass)
{
    return declaredOperations(itemClass).filter(
        QRegularExpression("^(explicit )?" + itemClass + "\\("));
}

Table interfaceOf(const QString& className, const QMetaObject& type)
{
    Table tables{{"Properties", propertyLines(type)},
                 {"QML calls", callLines(type)},
                 {"C++ operations", operationLines(className, type)}};
    addEnums(type, tables);
    return tables;
}

/// What follows the public section.
QRegularExpression endOfPublicSection()
{
    return QRegularExpression("(signals|private slots|protected|private):");
}

/// Functions that the header does not declare as public operations.
QSet<QString> hiddenNames(const QString& className)
{
    QSet<QString> names{"qt_metacall", "qt_metacast", "metaObject", '~' + className};
    const QString text = header(className).section("public:", 1);
    auto matches =
        QRegularExpression("(\\w+)\\(").globalMatch(text, text.indexOf(endOfPublicSection()));
    while (matches.hasNext())
        names.insert(matches.next().captured(1));
    return names;
}

/// Names of exported functions and constants with their class taken off.
QStringList symbolsOf(const QString& className)
{
    static const QString all = [] {
        QProcess nm;
        nm.start(QStringLiteral(NM_FILE), {QStringLiteral("-DC"), QStringLiteral("--defined-only"),
                                           QStringLiteral(GUICORE_FILE)});
        return nm.waitForFinished() && nm.exitCode() == 0
                   ? QString::fromLocal8Bit(nm.readAllStandardOutput())
                   : QString();
    }();
    const QRegularExpression symbol("^[0-9a-f]+ [TBDR] (?:rivo::models::)?" + className + "::(.*)$",
                                    QRegularExpression::MultilineOption);
    QStringList symbols;
    auto matches = symbol.globalMatch(all);
    while (matches.hasNext())
        symbols.append(matches.next().captured(1));
    return symbols;
}

/// "const int& id = 3" as nm prints it: "int const&".
QString symbolType(QString parameter)
{
    parameter.remove(QRegularExpression(" = .*$"));
    parameter.replace(QRegularExpression("^(.*[ &*])\\w+$"), "\\1");
    parameter = parameter.trimmed();
    parameter.replace(QRegularExpression("^const (.*[^&*])([&*])$"), "\\1 const\\2");
    parameter.replace("qint32", "int");
    parameter.replace("ListItem", "rivo::models::ListItem");
    parameter.replace("RowExposureHandler", "void (*)(rivo::models::ListItem*)");
    return parameter;
}

/// A declared function as nm prints its symbol.
QString symbolText(const QString& declaration)
{
    static const QRegularExpression function("(\\w+)\\((.*)\\)( const)?$");
    const QRegularExpressionMatch parts = function.match(declaration);
    if (!parts.hasMatch())
        return declaredName(declaration);
    QStringList types;
    for (const QString& parameter : parts.captured(2).split(", ", Qt::SkipEmptyParts))
        types.append(symbolType(parameter));
    return parts.captured(1) + '(' + types.join(", ") + ')' + parts.captured(3);
}

} // namespace

InterfaceLines libraryInterface()
{
    QObject owner;
    InterfaceLines all{{"ListModel", interfaceOf("ListModel", ListModel::staticMetaObject)}};
    for (const LibraryModel& described : libraryModels()) {
        const ListModel* model = described.make(&owner);
        const ItemSetters rows = settersOfRows(described.name);
        Table tables = interfaceOf(described.name, *model->metaObject());
        if (!madeByTheModel(tables["C++ operations"]))
            tables["C++ operations"] += constructorLines(rows.className);
        tables["Roles"] = roleLines(*model, rows);
        tables["Item properties"] = itemPropertyLines(rows);
        tables["Setters"] = setterLines(rows);
        tables["Fields without a role"] = hiddenFieldLines(rows);
        all.insert(described.name, tables);
    }
    return all;
}

QStringList declaredOperations(const QString& className)
{
    QString text = header(className).section("public:", 1);
    text.remove(QRegularExpression("enum [^;]*;"));
    text.truncate(text.indexOf(QRegularExpression(endOfPublicSection().pattern() + "|\\};")));
    text.replace(QRegularExpression(" ?\\{[^{}]*\\}"), " inline;");
    QStringList declarations;
    for (QString declaration : text.split(';')) {
        declaration = declaration.remove(" override").trimmed();
        if (!declaration.isEmpty() && !declaration.startsWith('~'))
            declarations.append(declaration);
    }
    return declarations;
}

QSet<QString> declaredSymbols(const QString& className)
{
    QSet<QString> symbols;
    for (const QString& declaration : declaredOperations(className)) {
        if (!declaration.endsWith(" inline") && !declaration.startsWith("using ") &&
            !declaration.contains("constexpr "))
            symbols.insert(symbolText(declaration));
    }
    return symbols;
}

QSet<QString> exportedSymbols(const QString& className)
{
    const QSet<QString> hidden = hiddenNames(className);
    QSet<QString> symbols;
    for (const QString& symbol : symbolsOf(className)) {
        if (symbol != "staticMetaObject" && !hidden.contains(symbol.section('(', 0, 0)))
            symbols.insert(symbol);
    }
    return symbols;
}

QSet<QString> exportedSetters(const QString& className)
{
    QSet<QString> names;
    for (const QString& symbol : symbolsOf(className)) {
        if (symbol.startsWith("set"))
            names.insert(symbol.section('(', 0, 0));
    }
    return names;
}

QMap<QString, int> declaredRoles(const QString& itemClass)
{
    QMap<QString, int> roles;
    auto matches = QRegularExpression("(\\w+Role) = (\\d+)").globalMatch(header(itemClass));
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        roles.insert(match.captured(1), match.captured(2).toInt());
    }
    return roles;
}
