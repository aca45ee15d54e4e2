#include "RandomRun.h"

#include "ModelCalls.h"

#include <QDateTime>
#include <QSet>

#include <algorithm>
#include <cstring>

namespace battery
{

void RandomRun::expectInsertion(int position, std::vector<Row> rows)
{
    if (rows.empty())
        return;
    const int size = static_cast<int>(rows.size());
    for (Row& row : rows)
        ++row.connections;
    m_rows.insert(m_rows.begin() + position, rows.cbegin(), rows.cend());
    m_expected += announcedInsertion(position, position + size - 1, rowCount());
    for (int row = position; row < position + size; ++row)
        m_touched.append(row);
    limitRows();
}

void RandomRun::limitRows()
{
    if (rowCount() <= mostRows)
        return;
    const int row = m_random.bounded(mostRows / 2);
    const int size = rowCount() - mostRows / 2 - m_random.bounded(mostRows / 4);
    m_touched.clear();
    expect(m_model.removeRows(row, size), "removeRows() is false");
    expectDestruction(row, size);
}

void RandomRun::expectDestruction(int row, int size)
{
    for (int i = row; i < row + size; ++i)
        m_dying.append(at(i).item);
    m_removed.insert(m_removed.end(), m_rows.begin() + row, m_rows.begin() + row + size);
    expectRemoval(row, size);
}

void RandomRun::expectExtraction(int row, int size)
{
    m_taken.insert(m_taken.end(), m_rows.begin() + row, m_rows.begin() + row + size);
    expectRemoval(row, size);
    // Rows that were taken may be destroyed.
    while (m_taken.size() > mostTaken) {
        delete m_taken.front().item;
        m_taken.erase(m_taken.begin());
    }
}

void RandomRun::expectRemoval(int row, int size)
{
    m_rows.erase(m_rows.begin() + row, m_rows.begin() + row + size);
    m_expected += announcedRemoval(row, row + size - 1, rowCount());
    if (row > 0)
        m_touched.append(row - 1);
    if (row < rowCount())
        m_touched.append(row);
}

void RandomRun::expectRowChanges(int row, bool announced)
{
    m_touched.append(row);
    for (int i = 0; announced && i < at(row).connections; ++i)
        m_expected.append(rowChanged(row));
}

void RandomRun::expect(bool holds, const char* otherwise)
{
    if (!holds)
        m_problem += QLatin1String(otherwise) + QLatin1String("; ");
}

void RandomRun::compareSignals()
{
    const QStringList emitted = m_log.take();
    if (emitted != m_expected)
        m_problem +=
            QString::fromLatin1("emitted {%1} instead of {%2}; ")
                .arg(emitted.join(QLatin1String(", ")), m_expected.join(QLatin1String(", ")));
    if (m_witnessed != m_expectedWitnessed)
        m_problem += QString::fromLatin1("another receiver was called %1 times instead of %2; ")
                         .arg(m_witnessed)
                         .arg(m_expectedWitnessed);
}

void RandomRun::compareRows()
{
    expect(m_model.rowCount() == rowCount(), "rowCount()");
    expect(m_model.property("count").toInt() == rowCount(), "count");
    expect(itemsOf(m_model) == pointers(m_rows), "other rows than expected");
}

void RandomRun::compareValues(int row)
{
    const QModelIndex index = m_model.index(row, 0);
    for (const ItemField& field : m_itemClass.fields) {
        const QVariant expected = at(row).values.at(field.number);
        expect(sameValue(field.get(*at(row).item), expected), field.name);
        if (field.role != 0)
            expect(sameValue(m_model.data(index, field.role), expected), field.name);
    }
    expect(at(row).item->id() == at(row).values.first().toInt(), "id()");
    expect(at(row).item->parent() == at(row).parent, "the row has another parent");
}

void RandomRun::compareEverything()
{
    const int roles = m_itemClass.roleNames().size();
    for (int row = 0; row < rowCount(); ++row) {
        compareValues(row);
        const QVariantMap exported = m_model.get(row).toMap();
        expect(exported.size() == roles, "get() has another number of keys");
        for (const ItemField& field : m_itemClass.fields) {
            if (field.role != 0)
                expect(sameValue(exported.value(QString::fromLatin1(field.roleName)),
                                 at(row).values.at(field.number)),
                       "get()");
        }
    }
}

QVector<QVariantList> RandomRun::samplesOf(const ItemClass& itemClass)
{
    QVector<QVariantList> samples;
    for (const ItemField& field : itemClass.fields)
        samples.append(field.samples());
    return samples;
}

Qt::SortOrder RandomRun::randomOrder()
{
    return m_random.bounded(2) == 0 ? Qt::AscendingOrder : Qt::DescendingOrder;
}

QVariant RandomRun::randomSample(const ItemField& field)
{
    const QVariantList& samples = m_samples.at(field.number);
    return samples.at(m_random.bounded(samples.size()));
}

int RandomRun::randomShownField()
{
    return randomField([](const ItemField& field) { return field.role != 0; });
}

int RandomRun::randomOrderedField()
{
    return randomField([](const ItemField& field) {
        return field.role != 0 && field.initial.userType() < QMetaType::User;
    });
}

int RandomRun::randomSettableField()
{
    return randomField([this](const ItemField& field) {
        return field.set && !(m_isForView && field.announced == Announced::Never);
    });
}

int RandomRun::randomField(const std::function<bool(const ItemField&)>& isWanted)
{
    QVector<int> wanted;
    for (const ItemField& field : m_itemClass.fields) {
        if (isWanted(field))
            wanted.append(field.number);
    }
    return wanted.at(m_random.bounded(wanted.size()));
}

RandomRun::Row RandomRun::newRow()
{
    Row row;
    row.parent = m_random.bounded(2) == 0 ? nullptr : &m_owner;
    row.values = m_itemClass.initialValues();
    for (const ItemField& field : m_itemClass.fields) {
        if (!field.set)
            row.values[field.number] = randomSample(field);
    }
    row.item = m_itemClass.construct(row.values, row.parent);
    for (int i = m_random.bounded(2 * m_itemClass.fields.size()); i > 0; --i)
        change(row);
    QObject::connect(row.item, &ListItem::dataChanged, &m_owner, [this] { ++m_witnessed; });
    m_witnessed = 0;
    m_expectedWitnessed = 0;
    return row;
}

bool RandomRun::change(Row& row)
{
    const int index = randomSettableField();
    const ItemField& field = m_itemClass.fields.at(index);
    const QVariant value = randomSample(field);
    const SetterEffect effect = setterEffect(m_itemClass, row.values, index, value);
    field.set(*row.item, value);
    if (effect.isStored)
        row.values[index] = value;
    m_expectedWitnessed += effect.isAnnounced && row.isWatched ? 1 : 0;
    return effect.isAnnounced;
}

QVector<ListItem*> RandomRun::pointers(const std::vector<Row>& rows)
{
    QVector<ListItem*> items;
    for (const Row& row : rows)
        items.append(row.item);
    return items;
}

std::function<bool(const RandomRun::Row&, const RandomRun::Row&)>
RandomRun::valueOrder(int field, Qt::SortOrder order)
{
    return [field, order](const Row& a, const Row& b) {
        const int result = compare(a.values.at(field), b.values.at(field));
        return order == Qt::AscendingOrder ? result < 0 : result > 0;
    };
}

bool RandomRun::areEqual(const QVariant& a, const QVariant& b)
{
    if (a.userType() < QMetaType::User)
        return compare(a, b) == 0;
    const auto size = static_cast<std::size_t>(QMetaType(a.userType()).sizeOf());
    return std::memcmp(a.constData(), b.constData(), size) == 0;
}

int RandomRun::compare(const QVariant& a, const QVariant& b)
{
    switch (a.userType()) {
    case QMetaType::QString:
        if (a.toString() == b.toString())
            return 0;
        return a.toString().compare(b.toString(), Qt::CaseInsensitive) < 0 ? -1 : 1;
    case QMetaType::Double:
        if (a.toDouble() == b.toDouble() || qFuzzyCompare(a.toDouble(), b.toDouble()))
            return 0;
        return a.toDouble() < b.toDouble() ? -1 : 1;
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
        if (a.toLongLong() == b.toLongLong())
            return 0;
        return a.toLongLong() < b.toLongLong() ? -1 : 1;
    case QMetaType::QDateTime:
        if (a.toDateTime() == b.toDateTime())
            return 0;
        return a.toDateTime() < b.toDateTime() ? -1 : 1;
    default:
        qFatal("no order of type %d", a.userType());
    }
    return 0;
}

void RandomRun::adoptOrder(int first, int last)
{
    const QVector<ListItem*> items = itemsOf(m_model).mid(first, last - first);
    std::vector<Row> sorted;
    for (const ListItem* item : items) {
        const auto row = std::find_if(m_rows.cbegin() + first, m_rows.cbegin() + last,
                                      [item](const Row& r) { return r.item == item; });
        if (row == m_rows.cbegin() + last)
            return expect(false, "a row came from elsewhere");
        sorted.push_back(*row);
    }
    const QSet<ListItem*> different(items.cbegin(), items.cend());
    expect(different.size() == last - first, "rows were lost or doubled");
    if (m_problem.isEmpty())
        std::copy(sorted.cbegin(), sorted.cend(), m_rows.begin() + first);
}

} // namespace battery
