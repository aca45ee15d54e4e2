#pragma once

#include "LibraryModels.h"
#include "QmlScreen.h"
#include "Table.h"

#include <QVariantMap>

/// A row as texts "role: value" in the order of the role names.
inline QStringList rowTexts(const QVariantMap& values)
{
    QStringList texts;
    for (auto value = values.cbegin(); value != values.cend(); ++value)
        texts.append(value.key() + QStringLiteral(": ") + valueText(value.value()));
    return texts;
}

/// The same of a row that ItemClass::makeNumbered() made.
inline QStringList numberedTexts(const ItemClass& itemClass, int id, int n)
{
    const QVariantList values = itemClass.numberedValues(id, n);
    QVariantMap row;
    for (const ItemField& field : itemClass.fields) {
        if (field.role != 0)
            row.insert(QString::fromLatin1(field.roleName), values.at(field.number));
    }
    return rowTexts(row);
}

/// A model with three rows, numbered from 0, shown to QML as "model". Identities are `step` apart.
class ShownModel
{
public:
    explicit ShownModel(const QString& name, int idStep = 1)
        : described(libraryModel(name)), itemClass(described.itemClass),
          model(described.make(&owner)), step(idStep)
    {
        for (int n : {0, 1, 2})
            model->appendRow(itemClass.makeNumbered(step * n, n, model));
        screen.show("model", model);
    }

    QVariant evaluate(const QString& script) { return screen.evaluate(script); }

    /// What a script returns, or the kind of error that it throws.
    QVariant attempt(const QString& script)
    {
        return evaluate(
            QStringLiteral("(function() { try { %1 } catch (error) { return error.name } })()")
                .arg(script));
    }

    QStringList expectedRow(int n) const { return numberedTexts(itemClass, step * n, n); }

    const LibraryModel& described;
    const ItemClass& itemClass;
    QObject owner;
    rivo::models::ListModel* model;
    const int step;
    QmlScreen screen;
};

/// Test data: each of these scripts with each model.
inline void everyModelWith(const QStringList& scripts)
{
    addColumns<QString, QString>("model", "script");
    for (const LibraryModel& model : libraryModels()) {
        for (const QString& script : scripts)
            QTest::addRow("%s: %s", model.name, qPrintable(script))
                << QString::fromLatin1(model.name) << script;
    }
}
