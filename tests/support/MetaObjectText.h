#pragma once

#include <QMetaEnum>
#include <QMetaMethod>
#include <QMetaObject>
#include <QMetaProperty>
#include <QStringList>

/// What a class itself adds to its meta-object, as texts to be compared whole: a member too many
/// fails as well as one too few.
namespace metaobject
{

/// "int iRow, bool"
inline QString parameters(const QMetaMethod& method)
{
    QStringList texts;
    for (int i = 0; i < method.parameterCount(); ++i)
        texts.append(QString::fromLatin1(
            (method.parameterTypes().at(i) + ' ' + method.parameterNames().at(i)).trimmed()));
    return texts.join(QLatin1String(", "));
}

/// Methods in index order: "public signal void countChanged(int)". A clone is an overload that a
/// default argument makes.
inline QStringList methods(const QMetaObject& type)
{
    // In the order of QMetaMethod::Access and QMetaMethod::MethodType.
    const QStringList access{"private", "protected", "public"};
    const QStringList kinds{"invokable", "signal", "slot", "constructor"};
    QStringList texts;
    for (int i = type.methodOffset(); i < type.methodCount(); ++i) {
        const QMetaMethod method = type.method(i);
        QString text = QString::fromLatin1("%1 %2 %3 %4(%5)")
                           .arg(access.at(method.access()), kinds.at(method.methodType()),
                                QLatin1String(method.typeName()),
                                QString::fromLatin1(method.name()), parameters(method));
        if (method.attributes() & QMetaMethod::Cloned)
            text += QLatin1String(" clone");
        if (method.revision() != 0)
            text += QString::fromLatin1(" revision %1").arg(method.revision());
        texts.append(text);
    }
    return texts;
}

/// Properties in index order, each with the flags that are set and its signal:
/// "int count: readable designable scriptable stored, countChanged".
inline QStringList properties(const QMetaObject& type)
{
    QStringList texts;
    for (int i = type.propertyOffset(); i < type.propertyCount(); ++i) {
        const QMetaProperty property = type.property(i);
        QString text = QString::fromLatin1("%1 %2:").arg(QLatin1String(property.typeName()),
                                                         QLatin1String(property.name()));
        const auto flag = [&text](bool set, const char* name) {
            if (set)
                text += QLatin1Char(' ') + QLatin1String(name);
        };
        flag(property.isReadable(), "readable");
        flag(property.isWritable(), "writable");
        flag(property.isResettable(), "resettable");
        flag(property.isDesignable(), "designable");
        flag(property.isScriptable(), "scriptable");
        flag(property.isStored(), "stored");
        flag(property.isUser(), "user");
        flag(property.isConstant(), "constant");
        flag(property.isFinal(), "final");
        flag(property.isRequired(), "required");
        flag(property.isEnumType(), "enum");
        flag(property.revision() != 0, "revised");
        if (property.hasNotifySignal())
            text += QString::fromLatin1(", %1").arg(
                QString::fromLatin1(property.notifySignal().name()));
        texts.append(text);
    }
    return texts;
}

/// Enumerations: "PassengerType: PT_ADULT=1 PT_STUDENT_1=3".
inline QStringList enums(const QMetaObject& type)
{
    QStringList texts;
    for (int i = type.enumeratorOffset(); i < type.enumeratorCount(); ++i) {
        const QMetaEnum enumeration = type.enumerator(i);
        QString text = QString::fromLatin1("%1:").arg(QLatin1String(enumeration.name()));
        for (int key = 0; key < enumeration.keyCount(); ++key)
            text += QString::fromLatin1(" %1=%2")
                        .arg(QLatin1String(enumeration.key(key)))
                        .arg(enumeration.value(key));
        texts.append(text);
    }
    return texts;
}

/// Neither constructors nor class notes.
inline bool hasNothingElse(const QMetaObject& type)
{
    return type.constructorCount() == 0 && type.classInfoCount() == type.classInfoOffset();
}

} // namespace metaobject
