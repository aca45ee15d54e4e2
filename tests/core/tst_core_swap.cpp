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
    QTest::addColumn<QString>("libraryFolder");
    QTest::addColumn<QByteArray>("output");
    QTest::newRow("the library that it was linked against") << QString() << QByteArray(";0;1\n");
    QTest::newRow("a library written from the boundary's headers")
        << QString(STUB_FOLDER) << QByteArray("from the stub,log_fareproducts;2;1\n");
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
