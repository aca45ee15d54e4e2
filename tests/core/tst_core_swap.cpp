#include "Table.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

class CoreSwapTest : public QObject
{
    Q_OBJECT

private slots:
    void anotherLibraryTakesOverAtLoadTime_data();
    void anotherLibraryTakesOverAtLoadTime();
};

void CoreSwapTest::anotherLibraryTakesOverAtLoadTime_data()
{
    const Table<QString, QByteArray> row("libraryFolder", "output");
    row("the library that it was linked against", {}, ";0;1\n");
    row("a library written from the boundary's headers", QString(STUB_FOLDER),
        "from the stub,log_fareproducts;2;1\n");
}

void CoreSwapTest::anotherLibraryTakesOverAtLoadTime()
{
    QFETCH(QString, libraryFolder);
    QFETCH(QByteArray, output);
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("LD_LIBRARY_PATH", libraryFolder);
    process.setProcessEnvironment(environment);
    const QTemporaryDir folder;
    process.setWorkingDirectory(folder.path());
    process.start(SWAP_PROBE, QStringList());
    QVERIFY(process.waitForFinished());
    const QByteArray errors = process.readAllStandardError();
    QVERIFY2(process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0,
             errors.constData());
    QCOMPARE(process.readAllStandardOutput(), output);
    QVERIFY2(errors.endsWith(" logged\n"), errors.constData());
    QCOMPARE(errors.count('\n'), 1);
}

QTEST_GUILESS_MAIN(CoreSwapTest)
#include "tst_core_swap.moc"
