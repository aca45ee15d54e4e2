#include "ModelCalls.h"

#include <QHash>
#include <QStringList>

#include <climits>

using rivo::models::ListItem;
using rivo::models::ListModel;

namespace
{

/// A call taken apart.
struct Call
{
    ListModel& model;
    QStringList words; ///< arguments
    QModelIndex parent;
    const RowMaker& makeRow;

    int number(int at) const
    {
        const QString& word = words.at(at);
        if (word == "max" || word == "min")
            return word == "max" ? INT_MAX : INT_MIN;
        return word.startsWith('n') ? itemsOf(model).size() + word.mid(1).toInt() : word.toInt();
    }

    ListItem* row(int at) const { return words.at(at) == "null" ? nullptr : makeRow(number(at)); }

    QVector<ListItem*> rows() const
    {
        QVector<ListItem*> made;
        for (int at = 0; at < words.size(); ++at)
            made.append(row(at));
        return made;
    }
};

QString text(bool result) { return result ? QStringLiteral("true") : QStringLiteral("false"); }

QString text(const ListItem* row)
{
    return row ? QString::number(row->id()) : QStringLiteral("null");
}

QString text(const QVariant& value)
{
    return value.isValid() ? QString::number(value.toMap().size()) : QStringLiteral("invalid");
}

using Operation = QString (*)(const Call&);

template <typename Action>
QString silent(Action&& action)
{
    action();
    return {};
}

const QHash<QString, Operation>& operations()
{
    using C = const Call&;
    static const QHash<QString, Operation> all{
        {"appendRow", [](C c) { return silent([&] { c.model.appendRow(c.row(0)); }); }},
        {"appendRowFromQml",
         [](C c) { return silent([&] { c.model.appendRowFromQml(c.row(0)); }); }},
        {"appendRows", [](C c) { return silent([&] { c.model.appendRows(c.rows()); }); }},
        {"insertRow",
         [](C c) { return silent([&] { c.model.insertRow(c.number(0), c.row(1)); }); }},
        {"insertAgain", // the row of that number
         [](C c) {
             return silent(
                 [&] { c.model.insertRow(c.number(0), c.model.itemFromRow(c.number(1))); });
         }},
        {"removeRow", [](C c) { return text(c.model.removeRow(c.number(0), c.parent)); }},
        {"removeRows",
         [](C c) { return text(c.model.removeRows(c.number(0), c.number(1), c.parent)); }},
        {"takeRow", [](C c) { return text(c.model.takeRow(c.number(0), c.parent)); }},
        {"takeRows",
         [](C c) { return idsOf(c.model.takeRows(c.number(0), c.number(1), c.parent)); }},
        {"clear", [](C c) { return silent([&] { c.model.clear(); }); }},
        {"changeRow",
         [](C c) {
             return silent([&] { c.model.itemFromRow(c.number(0))->triggerItemUpdate(); });
         }},
        {"itemFromRow", [](C c) { return text(c.model.itemFromRow(c.number(0))); }},
        {"get", [](C c) { return text(c.model.get(c.number(0))); }},
        {"getInvalid", [](C c) { return text(c.model.get(QModelIndex())); }},
        {"dataOfInvalid", [](C c) { return text(c.model.data(QModelIndex(), Qt::UserRole + 1)); }},
        {"indexFromItem", [](C c) { return text(c.model.indexFromItem(c.row(0)).isValid()); }},

        // Inherited and left as they are: rows come and go through the operations above only.
        {"insertRows", [](C c) { return text(c.model.insertRows(c.number(0), c.number(1))); }},
        {"insertColumns", [](C c) { return text(c.model.insertColumns(0, 1)); }},
        {"removeColumns", [](C c) { return text(c.model.removeColumns(0, 1)); }},
        {"moveRows",
         [](C c) { return text(c.model.moveRows(QModelIndex(), 0, 1, QModelIndex(), 2)); }},
        {"setData",
         [](C c) { return text(c.model.setData(c.model.index(0, 0), 7, Qt::UserRole + 1)); }},
    };
    return all;
}

} // namespace

QVector<ListItem*> itemsOf(const ListModel& model)
{
    QVector<ListItem*> items;
    for (int row = 0; ListItem* item = model.itemFromRow(row); ++row)
        items.append(item);
    return items;
}

QString idsOf(const QVector<ListItem*>& items)
{
    QStringList texts;
    for (const ListItem* item : items)
        texts << QString::number(item->id());
    return texts.join(QLatin1Char(' '));
}

QString makeCall(ListModel& model, const QString& call, const RowMaker& makeRow)
{
    const QString parent = call.section(" below ", 1);
    QStringList words = call.section(" below ", 0, 0).split(' ');
    const Operation operation = operations().value(words.takeFirst());
    if (!operation)
        qFatal("no operation of a list model: %s", qPrintable(call));
    return operation(
        {model, words, parent.isEmpty() ? QModelIndex() : model.index(parent.toInt(), 0), makeRow});
}

const QVector<const char*>& rejectedCalls()
{
    static const QVector<const char*> calls{
        "appendRow null", "appendRowFromQml null", "appendRows", "insertRow 0 null",
        "insertRow max null",

        // -2 means the first row to the take forms only.
        "removeRow -1", "removeRow -2", "removeRow n", "removeRow max", "removeRow min",
        "removeRow n below 0",

        "removeRows 0 0", "removeRows 0 -1", "removeRows 0 min", "removeRows -1 1",
        "removeRows -1 3", "removeRows -2 1", "removeRows min 1", "removeRows n 1",
        "removeRows 0 n+1", "removeRows n-1 2", "removeRows n-2 3", "removeRows 0 max",
        "removeRows 1 max", "removeRows max 1", "removeRows max max", "removeRows min min",

        "takeRow -1", "takeRow -3", "takeRow n", "takeRow max", "takeRow min", "takeRow n below 0",

        "takeRows 0 0", "takeRows -2 0", "takeRows 0 -2", "takeRows 0 min", "takeRows -1 1",
        "takeRows -3 1", "takeRows -1 -1", "takeRows min 1", "takeRows n 1", "takeRows 0 n+1",
        "takeRows -2 n+1", "takeRows 1 -1", "takeRows max -1", "takeRows -2 max", "takeRows 1 max",
        "takeRows max 1", "takeRows min min",

        "itemFromRow -1", "itemFromRow -2", "itemFromRow n", "itemFromRow max", "itemFromRow min",
        "get -1", "get -2", "get n", "get max", "get min", "getInvalid", "dataOfInvalid",
        "indexFromItem null",

        "insertRows 0 1", "insertColumns", "removeColumns", "moveRows", "setData"};
    return calls;
}

const QVector<const char*>& callsRejectedWithoutRows()
{
    static const QVector<const char*> calls{"takeRow -2", "takeRows 0 -1", "takeRows -2 -1",
                                            "clear"};
    return calls;
}

bool isRejection(const QString& result)
{
    return QStringList{"", "false", "null", "invalid"}.contains(result);
}
