#pragma once

#include "DeferredDeletions.h"
#include "ItemFields.h"
#include "ListModel.h"
#include "ModelCalls.h"
#include "RandomRun.h"
#include "SignalLog.h"
#include "Soak.h"
#include "Table.h"

#include <QAbstractItemModelTester>
#include <QTest>

/// What every list model must pass, with any rows: calls that it has to reject, and random
/// operations beside a list of what it must show. Each model comes without rows and leaves without
/// rows; it is one for QAbstractItemModelTester, see TopLevelOnly.h.
namespace battery
{

using rivo::models::ListItem;
using rivo::models::ListModel;

inline void rejectedCallRows()
{
    addColumns<QByteArray, int>("call", "rows");
    for (const char* call : rejectedCalls()) {
        for (int rows : {0, 1, 5})
            QTest::addRow("%s (%d rows)", call, rows) << QByteArray(call) << rows;
    }
    for (const char* call : callsRejectedWithoutRows())
        QTest::addRow("%s (0 rows)", call) << QByteArray(call) << 0;
}

inline void runRejectedCall(ListModel& model, const ItemClass& itemClass)
{
    QFETCH(QByteArray, call);
    QFETCH(int, rows);
    QObject owner;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    for (int row = 0; row < rows; ++row)
        model.appendRow(itemClass.make(&owner));
    const QVector<ListItem*> before = itemsOf(model);
    QCOMPARE(before.size(), rows);
    SignalLog log(&model);

    QVERIFY(isRejection(makeCall(model, call, {})));
    runDeferredDeletions();

    QCOMPARE(log.take(), QStringList());
    QCOMPARE(model.rowCount(), rows);
    QCOMPARE(itemsOf(model), before);
    for (int row = 0; row < rows; ++row) {
        before.at(row)->triggerItemUpdate();
        QCOMPARE(log.take(), QStringList{rowChanged(row)});
    }
    model.takeRows(0, rows);
}

inline void seedRows(quint32 count)
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= count; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

/// See Soak.h about fewer steps.
inline void runRandomOperations(ListModel& model, const ItemClass& itemClass, int steps)
{
    QFETCH(quint32, seed);
    RandomRun run(model, itemClass, Choices(seed));
    for (int step = 0; step < steps / soakDivisor(); ++step) {
        const QString problem = run.step();
        QVERIFY2(problem.isEmpty(),
                 qPrintable(QString::fromLatin1("seed %1, %2").arg(seed).arg(problem)));
    }
}

} // namespace battery
