#include "GridSignals.h"
#include "GridText.h"
#include "LogCapture.h"
#include "PassengerTypesModel.h"
#include "Products.h"
#include "StdoutCapture.h"
#include "TerminalHome.h"

#include <QtTest>

#include <cstdio>

// The grid must not depend on the order of hash tables, which Qt draws anew for every process. The
// program calls itself with several seeds; as a child it writes all that its layouts lead to.

namespace
{

const char* const childArgument = "--write-layouts";

const QStringList layoutTypes{"PT_LFS", "PT_ADULT", "PT_STUDENT_1", "PT_DISABLED"};

/// A fixed list of all types, several zones and products, in no order.
void addMixedProducts(PassengerTypesModel& model, bool hasPositions)
{
    const QVector<int> types{8, 3, 0, 10, 1, 7, 4, 9, 5};
    for (int i = 0; i < 60; ++i) {
        NewProduct product = usualProduct(types.at(i * 7 % types.size()), i * 13 % 17);
        product.record.fareProductName = QString("product %1").arg(i);
        product.record.toStopGroupId = i * 11 % 6 - 2;
        product.record.price = i * 37 % 101 / 4.0;
        product.record.isDaily = i % 10 == 9;
        product.record.pos = hasPositions ? i * 23 % 61 + 1 : -1;
        addItem(model, product);
    }
}

QStringList layoutsAsText()
{
    QStringList lines;
    for (const bool hasPositions : {false, true}) {
        const TerminalHome home({"PT_DISABLED", "PT_MILITARY_1", "PT_ADULT"});
        LogCapture log;
        QObject owner;
        PassengerTypesModel model(&owner);
        SignalLog signalLog(&model);
        model.setLogFareProducts(true);
        model.setSupportedPassengerTypeCodes(layoutTypes);
        addMixedProducts(model, hasPositions);
        const QString written = stdoutOf([&model] { model.sortAndRegroup(layoutTypes, 4); });
        lines << gridText(model) << allRoles(model) << written.split('\n') << log.messages()
              << signalLog.take() << model.getFareProductName(3);
        model.sortByPrice(Qt::DescendingOrder);
        lines << gridText(model);
    }
    return lines;
}

/// The order in which this process walks a hash table.
QString orderOfHash()
{
    QObject owner;
    const LogCapture quiet;
    QStringList keys;
    for (const int role : PassengerTypesModel(&owner).roleNames().keys())
        keys.append(QString::number(role));
    return keys.join(' ');
}

} // namespace

class TestHashSeed : public QObject
{
    Q_OBJECT

private slots:
    void layoutsAreTheSameUnderEverySeed();
};

void TestHashSeed::layoutsAreTheSameUnderEverySeed()
{
    const QStringList seeds{"0", "1", "42", "1000003", "4294967295", "", ""};
    QStringList expected;
    QSet<QString> hashOrders;
    for (const QString& seed : seeds) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove("QT_HASH_SEED"); // drawn at random
        if (!seed.isEmpty())
            environment.insert("QT_HASH_SEED", seed);
        QProcess child;
        child.setProcessEnvironment(environment);
        child.start(QStringLiteral(THIS_PROGRAM), {childArgument});
        QVERIFY2(child.waitForFinished(60000), qPrintable(child.errorString()));
        QCOMPARE(child.exitStatus(), QProcess::NormalExit);
        QVERIFY2(child.exitCode() == 0, child.readAllStandardError().constData());

        QStringList lines = QString::fromUtf8(child.readAllStandardOutput()).split('\n');
        hashOrders.insert(lines.takeFirst());
        QVERIFY(lines.size() > 400);
        if (expected.isEmpty())
            expected = lines;
        QCOMPARE(lines, expected);
    }
    QVERIFY2(hashOrders.size() > 1, "the seeds had no effect");
}

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    if (application.arguments().contains(childArgument)) {
        const QByteArray text = (QStringList(orderOfHash()) + layoutsAsText()).join('\n').toUtf8();
        return std::fwrite(text.constData(), 1, static_cast<std::size_t>(text.size()), stdout) ==
                       static_cast<std::size_t>(text.size())
                   ? 0
                   : 1;
    }
    TestHashSeed test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_hash_seed.moc"
