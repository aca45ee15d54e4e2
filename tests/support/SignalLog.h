#pragma once

#include <QMetaMethod>
#include <QMetaObject>
#include <QModelIndex>
#include <QObject>
#include <QStringList>
#include <QVector>

/// Everything that an object emits while this lives, in order, as short texts:
///
///     SignalLog log(&model);
///     model.appendRow(item);
///     QCOMPARE(log.take(), announcedInsertion(0, 0, 1));
///
/// Covers each signal of each class below QObject, also those that the test does not expect. Nested
/// emissions stand where they happened. An index is written as its row, or "-" if invalid.
class SignalLog : public QObject // a hand-written receiver: no Q_OBJECT, see qt_metacall()
{
public:
    explicit SignalLog(const QObject* sender)
    {
        const QMetaObject* type = sender->metaObject();
        for (int i = QObject::staticMetaObject.methodCount(); i < type->methodCount(); ++i) {
            const QMetaMethod method = type->method(i);
            if (method.methodType() != QMetaMethod::Signal ||
                method.attributes() & QMetaMethod::Cloned)
                continue;
            const int slot = QObject::staticMetaObject.methodCount() + m_signals.size();
            m_signals.append(method);
            QMetaObject::connect(sender, i, this, slot, Qt::DirectConnection);
        }
    }

    /// The texts since the last take().
    QStringList take()
    {
        const QStringList taken = m_texts;
        m_texts.clear();
        return taken;
    }

    int qt_metacall(QMetaObject::Call call, int id, void** arguments) override
    {
        id = QObject::qt_metacall(call, id, arguments);
        if (id < 0 || call != QMetaObject::InvokeMetaMethod)
            return id;
        m_texts.append(text(m_signals.at(id), arguments + 1));
        return id - m_signals.size();
    }

private:
    static QString text(const QMetaMethod& method, void** arguments)
    {
        QStringList values;
        for (int i = 0; i < method.parameterCount(); ++i)
            values.append(text(method, i, arguments[i]));
        return QString::fromLatin1("%1(%2)").arg(QString::fromLatin1(method.name()),
                                                 values.join(QLatin1String(", ")));
    }

    static QString text(const QMetaMethod& method, int parameter, const void* value)
    {
        const QByteArray type = method.parameterTypes().at(parameter);
        if (type == "int")
            return QString::number(*static_cast<const int*>(value));
        if (type == "bool")
            return QLatin1String(*static_cast<const bool*>(value) ? "true" : "false");
        if (type == "QString")
            return *static_cast<const QString*>(value);
        if (type == "QModelIndex") {
            const auto* index = static_cast<const QModelIndex*>(value);
            return index->isValid() ? QString::number(index->row()) : QString::fromLatin1("-");
        }
        if (type == "QVector<int>" || type == "QList<int>") { // one type with Qt 6
            QStringList numbers;
            for (int number : *static_cast<const QVector<int>*>(value))
                numbers.append(QString::number(number));
            return QString::fromLatin1("[%1]").arg(numbers.join(QLatin1String(", ")));
        }
        return QString::fromLatin1(type);
    }

    QVector<QMetaMethod> m_signals;
    QStringList m_texts;
};

inline QString countChanged(int count)
{
    return QString::fromLatin1("countChanged(%1)").arg(count);
}

/// One whole row reported as changed.
inline QString rowChanged(int row)
{
    return QString::fromLatin1("dataChanged(%1, %1, [])").arg(row);
}

/// One block of rows coming in: what a list model emits from begin to end, `count` rows after it.
inline QStringList announcedInsertion(int first, int last, int count)
{
    return {QString::fromLatin1("rowsAboutToBeInserted(-, %1, %2)").arg(first).arg(last),
            QString::fromLatin1("rowsInserted(-, %1, %2)").arg(first).arg(last),
            countChanged(count)};
}

/// One block of rows going out, `count` rows after it.
inline QStringList announcedRemoval(int first, int last, int count,
                                    const QString& parent = QStringLiteral("-"))
{
    return {
        QString::fromLatin1("rowsAboutToBeRemoved(%3, %1, %2)").arg(first).arg(last).arg(parent),
        QString::fromLatin1("rowsRemoved(%3, %1, %2)").arg(first).arg(last).arg(parent),
        countChanged(count)};
}
