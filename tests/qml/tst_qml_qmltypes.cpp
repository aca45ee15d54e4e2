#include "LibraryModels.h"
#include "MetaObjectText.h"
#include "QmlScreen.h"
#include "QmlTest.h"
#include "Table.h"

#include <QFile>
#include <QQmlListProperty>
#include <QTest>

using rivo::models::ListItem;
using rivo::models::ListModel;

namespace
{

/// Any element of a plugins.qmltypes, which is a QML document: it is read by the engine itself.
class Element : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(QString file MEMBER file)
    Q_PROPERTY(QString prototype MEMBER prototype)
    Q_PROPERTY(QString type MEMBER type)
    Q_PROPERTY(QStringList exports MEMBER exports)
    Q_PROPERTY(QStringList dependencies MEMBER dependencies)
    Q_PROPERTY(QStringList values MEMBER values)
    Q_PROPERTY(QList<int> exportMetaObjectRevisions MEMBER exportMetaObjectRevisions)
    Q_PROPERTY(bool isCreatable MEMBER isCreatable)
    Q_PROPERTY(bool isPointer MEMBER isPointer)
    Q_PROPERTY(bool isReadonly MEMBER isReadonly)
    Q_PROPERTY(QQmlListProperty<Element> elements READ elements)
    Q_CLASSINFO("DefaultProperty", "elements")

public:
    QQmlListProperty<Element> elements() { return {this, &list}; }

    virtual QString kind() const { return QString(); }

    QString typeText() const { return isPointer ? type + QLatin1Char('*') : type; }

    QVector<const Element*> ofKind(const QStringList& kinds) const
    {
        QVector<const Element*> found;
        for (const Element* element : list) {
            if (kinds.contains(element->kind()))
                found.append(element);
        }
        return found;
    }

    QString name, file, prototype, type;
    QStringList exports, dependencies, values;
    QList<int> exportMetaObjectRevisions;
    bool isCreatable = true, isPointer = false, isReadonly = false;
    QList<Element*> list;
};

template <char Kind>
class ElementOf : public Element
{
public:
    QString kind() const override { return QString(QLatin1Char(Kind)); }
};

template <char Kind>
void registerElement(const char* name)
{
    qmlRegisterType<ElementOf<Kind>>("QtQuick.tooling", 1, 2, name);
}

QString propertyText(const QString& type, const QString& name, bool isWritable)
{
    return type + ' ' + name + (isWritable ? " writable" : " read-only");
}

QStringList propertiesOf(const Element& component)
{
    QStringList texts;
    for (const Element* property : component.ofKind({"P"}))
        texts.append(propertyText(property->typeText(), property->name, !property->isReadonly));
    return texts;
}

QStringList propertiesOf(const QMetaObject& type)
{
    QStringList texts;
    for (int i = type.propertyOffset(); i < type.propertyCount(); ++i) {
        const QMetaProperty property = type.property(i);
        const QByteArray name = property.typeName();
        texts.append(propertyText(name == "QString" ? "string" : name, property.name(),
                                  property.isWritable()));
    }
    return texts;
}

QString methodText(bool isSignal, const QString& type, const QString& name,
                   const QString& parameters)
{
    return QStringList{isSignal ? "signal" : "method", type.isEmpty() ? "void" : type, name,
                       '(' + parameters + ')'}
        .join(' ');
}

QStringList methodsOf(const Element& component)
{
    QStringList texts;
    for (const Element* method : component.ofKind({"S", "M"})) {
        QStringList parameters;
        for (const Element* parameter : method->ofKind({"A"}))
            parameters.append((parameter->typeText() + ' ' + parameter->name).trimmed());
        texts.append(methodText(method->kind() == "S", method->typeText(), method->name,
                                parameters.join(", ")));
    }
    return texts;
}

/// A signal without arguments that only reports a change of the property of its name is not listed.
bool isImplied(const QMetaObject& type, const QMetaMethod& method)
{
    if (method.methodType() != QMetaMethod::Signal || method.parameterCount() > 0)
        return false;
    for (int i = type.propertyOffset(); i < type.propertyCount(); ++i) {
        const QMetaProperty property = type.property(i);
        if (method.name() == QByteArray(property.name()) + "Changed" &&
            property.notifySignal() == method)
            return true;
    }
    return false;
}

QStringList methodsOf(const QMetaObject& type)
{
    QStringList texts;
    for (int i = type.methodOffset(); i < type.methodCount(); ++i) {
        const QMetaMethod method = type.method(i);
        if (!isImplied(type, method))
            texts.append(methodText(method.methodType() == QMetaMethod::Signal, method.typeName(),
                                    method.name(), metaobject::parameters(method)));
    }
    return texts;
}

QStringList enumsOf(const Element& component)
{
    QStringList texts;
    for (const Element* enumeration : component.ofKind({"E"}))
        texts.append(enumeration->name + ": " + enumeration->values.join(' '));
    return texts;
}

QStringList enumsOf(const QMetaObject& type)
{
    QStringList texts;
    for (int i = type.enumeratorOffset(); i < type.enumeratorCount(); ++i) {
        const QMetaEnum enumeration = type.enumerator(i);
        QStringList keys;
        for (int key = 0; key < enumeration.keyCount(); ++key)
            keys.append(QLatin1String(enumeration.key(key)));
        texts.append(QLatin1String(enumeration.name()) + QLatin1String(": ") + keys.join(' '));
    }
    return texts;
}

struct ExportedType
{
    QByteArray name;
    const QMetaObject* type;
    bool creatable;
};

QVector<ExportedType> exportedTypes()
{
    QVector<ExportedType> types{{"ListItem", &ListItem::staticMetaObject, false},
                                {"ListModel", &ListModel::staticMetaObject, false}};
    for (const LibraryModel& model : libraryModels()) {
        const ItemClass& rows = model.itemClass;
        types.append({rows.type->className(), rows.type, false});
        types.append({model.name, model.type, model.isMadeByQml});
    }
    return types;
}

} // namespace

/// plugins.qmltypes describes to tools what an engine with the module does.
class TestQmlTypes : public QmlTest
{
    Q_OBJECT

    QmlScreen m_screen;
    std::unique_ptr<QObject> m_document;

    const Element& module() const { return *static_cast<const Element*>(m_document.get()); }

    const Element* componentOf(const QMetaObject& type) const
    {
        for (const Element* component : module().list) {
            if (component->name == QLatin1String(type.className()))
                return component;
        }
        return nullptr;
    }

private slots:
    void initTestCase()
    {
        qmlRegisterModule("QtQuick.tooling", 1, 2);
        qmlRegisterUncreatableType<Element>("QtQuick.tooling", 1, 2, "Element", "");
        registerElement<'F'>("Module");
        registerElement<'C'>("Component");
        registerElement<'P'>("Property");
        registerElement<'S'>("Signal");
        registerElement<'M'>("Method");
        registerElement<'A'>("Parameter");
        registerElement<'E'>("Enum");
        QFile file(QStringLiteral(RIVO_QML_IMPORT_PATH "/Rivo/GuiCore/plugins.qmltypes"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QString error;
        m_document = m_screen.createWith(QString(), QString::fromUtf8(file.readAll()), &error);
        QVERIFY2(m_document, qPrintable(error));
        m_screen.importModule();
    }

    void theExportsAreThoseOfTheModule()
    {
        QStringList described;
        for (const Element* component : module().list)
            described += component->exports;
        described.sort();
        QStringList expected;
        for (const ExportedType& type : exportedTypes())
            expected.append(QStringLiteral("Rivo.GuiCore/%1 1.0").arg(QLatin1String(type.name)));
        expected.sort();
        QCOMPARE(described, expected);
    }

    void theModuleNeedsNoOther() { QCOMPARE(module().dependencies, QStringList()); }

    void basesAreDescribedToo()
    {
        for (const Element* component : module().list) {
            if (component->prototype.isEmpty())
                QCOMPARE(component->name, QStringLiteral("QObject"));
            else
                QVERIFY2(std::any_of(module().list.cbegin(), module().list.cend(),
                                     [component](const Element* base) {
                                         return base->name == component->prototype;
                                     }),
                         qPrintable(component->prototype));
        }
    }

    void type_data()
    {
        const Table<int> row("index");
        int index = 0;
        for (const ExportedType& type : exportedTypes())
            row(type.name, index++);
    }

    void type()
    {
        QFETCH(int, index);
        const ExportedType exported = exportedTypes().at(index);
        const QMetaObject& type = *exported.type;
        QVERIFY(qmlTypeId("Rivo.GuiCore", 1, 0, exported.name) != -1);
        const Element* component = componentOf(type);
        QVERIFY(component);
        QCOMPARE(
            component->exports,
            QStringList{QStringLiteral("Rivo.GuiCore/%1 1.0").arg(QLatin1String(exported.name))});
        QCOMPARE(component->exportMetaObjectRevisions, QList<int>{0});
        QCOMPARE(component->prototype, QString::fromLatin1(type.superClass()->className()));
        QCOMPARE(propertiesOf(*component), propertiesOf(type));
        QCOMPARE(methodsOf(*component), methodsOf(type));
        QCOMPARE(enumsOf(*component), enumsOf(type));

        QCOMPARE(component->isCreatable, exported.creatable);
    }
};

QTEST_GUILESS_MAIN(TestQmlTypes)
#include "tst_qml_qmltypes.moc"
