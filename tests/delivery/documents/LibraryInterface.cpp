#include "LibraryInterface.h"

#include "LibraryModels.h"
#include "MetaObjectText.h"

#include <QSet>

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

/// "setSelected(int iRow, bool)"
QString signatureText(const QMetaMethod& method)
{
    return QString::fromLatin1(method.name()) + '(' + metaobject::parameters(method) + ')';
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

Table interfaceOf(const QMetaObject& type)
{
    Table tables{{"Properties", propertyLines(type)}, {"QML calls", callLines(type)}};
    for (int i = type.enumeratorOffset(); i < type.enumeratorCount(); ++i) {
        const QMetaEnum enumeration = type.enumerator(i);
        for (int key = 0; key < enumeration.keyCount(); ++key)
            tables[QStringLiteral("Enum ") + enumeration.name()].append(
                enumeration.key(key) + QStringLiteral(", %1").arg(enumeration.value(key)));
    }
    return tables;
}

/// "silent", "fuzzy", "exact", "against <field>", "none", or nothing of a setter like most.
QString announcement(const ItemField& field)
{
    if (!field.set)
        return field.role != 0 ? "none" : "";
    if (field.announced == Announced::Never)
        return "silent";
    if (field.comparedWith)
        return QStringLiteral("against ") + field.comparedWith;
    if (field.initial.userType() != QMetaType::Double)
        return {};
    return field.announced == Announced::IfFuzzilyDifferent ? "fuzzy" : "exact";
}

void addRows(const ItemClass& rows, Table& tables)
{
    for (const ItemField& field : rows.fields) {
        const QString type = field.initial.typeName();
        const QString name = field.name;
        if (field.role != 0)
            tables["Roles"].append(
                QStringList{QString::number(field.role), field.roleName, qmlType(type), type, name}
                    .join(", "));
        else if (!rows.properties.contains(name))
            tables["Fields without a role"].append(name + ", " + type);
        if (!announcement(field).isEmpty())
            tables["Setters"].append("set" + name.left(1).toUpper() + name.mid(1) + ", " +
                                     announcement(field));
    }
    for (const QString& name : rows.properties) {
        const ItemField& field = rows.fields.at(rows.indexOf(name));
        const QString refreshes = field.announced == Announced::Never ? "no" : "yes";
        tables["Item properties"].append(
            QStringList{name, field.initial.typeName(), field.initial.toString(), refreshes}.join(
                ", "));
    }
}

} // namespace

InterfaceLines libraryInterface()
{
    InterfaceLines all{{"ListModel", interfaceOf(ListModel::staticMetaObject)}};
    for (const LibraryModel& model : libraryModels()) {
        Table tables = interfaceOf(*model.type);
        addRows(model.itemClass, tables);
        all.insert(model.name, tables);
    }
    return all;
}
