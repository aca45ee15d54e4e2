#pragma once

#include "Choices.h"
#include "ItemFields.h"
#include "ListModel.h"
#include "SignalLog.h"

#include <QAbstractItemModelTester>
#include <QPointer>

#include <functional>
#include <vector>

namespace battery
{

using rivo::models::ListItem;
using rivo::models::ListModel;

/// What judges the model: its signals and rows, or a view too, which learns of nothing silent.
enum class Judge { Model, View };

/// Random operations on a model beside a list of what it must show.
class RandomRun
{
public:
    RandomRun(ListModel& model, const ItemClass& itemClass, Choices choices,
              Judge judge = Judge::Model);
    ~RandomRun();
    RandomRun(const RandomRun&) = delete;
    RandomRun& operator=(const RandomRun&) = delete;

    /// What the rows must show, by role names.
    QVector<QVariantMap> shownRows() const;

    /// Destroys the removed rows; a view does so whenever it waits for the window system.
    void turnEventLoop();

    /// Nothing is left to decide by.
    bool isOver() const { return m_random.areUsedUp(); }

    /// Does one operation and compares; returns what differs.
    QString step();

private:
    /// A row as it must be.
    struct Row
    {
        ListItem* item;
        QObject* parent;
        QVariantList values; ///< per field of the item class
        int connections = 0; ///< to the model
        bool isWatched = true;
    };

    struct Operation
    {
        const char* name;
        int weight;
        void (RandomRun::*run)();
        bool isSilent = false;
    };

    static constexpr int mostRows = 60;
    static constexpr int mostTaken = 20;

    const Operation& nextOperation();

    // Operations. Each states in m_expected what the model must emit and brings m_rows to what it
    // must show.
    void insert();
    /// Rows that were taken out come back.
    void putBack();
    /// In one of the ways that there are for so many rows.
    void bringIn(const std::vector<Row>& rows);
    void removeRow();
    void removeRows();
    void clear();
    void takeRow();
    void takeRows();
    void sort();
    void sortByRole();
    void sortRangeByRole();
    void changeRow();
    /// Rows that left the model do not reach it any more, connected or not.
    void changeFormerRow();
    void triggerItemUpdate();
    void callInVain();
    void lookUp();

    // Expectations.
    void expectInsertion(int position, std::vector<Row> rows);
    /// Keeps the model small: an insertion too many is followed by a removal.
    void limitRows();
    void expectDestruction(int row, int size);
    void expectExtraction(int row, int size);
    void expectRemoval(int row, int size);
    void expectRowChanges(int row, bool announced);
    void expect(bool holds, const char* otherwise);

    // Comparisons.
    void compareSignals();
    void compareRows();
    void compareValues(int row);
    void compareEverything();

    // Helpers.
    static QVector<QVariantList> samplesOf(const ItemClass& itemClass);
    Row& at(int row) { return m_rows.at(static_cast<std::size_t>(row)); }
    int rowCount() const { return static_cast<int>(m_rows.size()); }
    int randomRow() { return m_random.bounded(rowCount()); }

    Qt::SortOrder randomOrder();
    QVariant randomSample(const ItemField& field);
    int randomShownField();
    /// Of a type that QVariant orders.
    int randomOrderedField();
    int randomSettableField();
    int randomField(const std::function<bool(const ItemField&)>& isWanted);
    Row newRow();
    /// Sets a random field; whether that must be announced.
    bool change(Row& row);
    static QVector<ListItem*> pointers(const std::vector<Row>& rows);
    static std::function<bool(const Row&, const Row&)> valueOrder(int field, Qt::SortOrder order);
    /// Coordinates are equal to copies that share their data.
    static bool areEqual(const QVariant& a, const QVariant& b);
    /// Two values of one of the types that rows show. Of texts that differ in case alone each is
    /// the greater one.
    static int compare(const QVariant& a, const QVariant& b);
    /// An unstable sort leaves equal rows in any order: takes over what the model has between
    /// `first` and `last` if it is a permutation of what was there.
    void adoptOrder(int first, int last);

    ListModel& m_model;
    const ItemClass m_itemClass;
    const QVector<QVariantList> m_samples = samplesOf(m_itemClass);
    const bool m_isForView;
    QObject m_owner;
    Choices m_random;
    QAbstractItemModelTester m_tester;
    SignalLog m_log;

    std::vector<Row> m_rows;
    std::vector<Row> m_taken;
    std::vector<Row> m_removed; ///< until the event loop runs
    QVector<QPointer<ListItem>> m_dying;
    QStringList m_expected;
    QVector<int> m_touched;
    QString m_problem;
    int m_witnessed = 0;
    int m_expectedWitnessed = 0;
    int m_steps = 0;
};

} // namespace battery
