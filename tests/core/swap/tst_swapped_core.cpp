#include "Table.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

class SwappedCoreTest : public QObject
{
    Q_OBJECT

private slots:
    void theModelsUseTheCoreLibraryThatIsLoaded_data();
    void theModelsUseTheCoreLibraryThatIsLoaded();
    void aLibraryLinkedAgainstAnotherCoreNamesItTheSameWay();
};

void SwappedCoreTest::theModelsUseTheCoreLibraryThatIsLoaded_data()
{
    // swappedIn: if empty, what the program was linked against
    // record: the end of the first line that is logged
    const Table<QString, QString, QByteArray, QByteArray> row("program", "swappedIn", "output",
                                                              "record");
    const QByteArray ours("fare products logged: 0\nPT_ADULT\nPT_STUDENT_1\n");
    // The second line is the dump that the other one's settings switch on.
    const QByteArray other("fare products logged: 1\nIndeces: [1, 0]\nPT_STUDENT_1\nPT_ADULT\n");
    const QByteArray ourRecord("TypeCodes Order: Products ordering in config is empty.\n");
    const QByteArray otherRecord(
        "[default] TypeCodes Order: [3->PT_STUDENT_1],[1->PT_ADULT]\n"); // the logger's own format
    row("ours, linked", PROBE, {}, ours, ourRecord);
    row("another one takes over at load time", PROBE, OTHER_CORE, other, otherRecord);
    row("another one, linked", PROBE_ON_STUB, {}, other, otherRecord);
    row("ours takes over from another one at load time", PROBE_ON_STUB, OUR_CORE, ours, ourRecord);
}

void SwappedCoreTest::theModelsUseTheCoreLibraryThatIsLoaded()
{
    QFETCH(QString, program);
    QFETCH(QString, swappedIn);
    QFETCH(QByteArray, output);
    QFETCH(QByteArray, record);
    // A folder with the core library alone, so that nothing else can be swapped by it.
    const QTemporaryDir libraries;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove("LD_LIBRARY_PATH");
    if (!swappedIn.isEmpty()) {
        QVERIFY(QFile::link(swappedIn, libraries.filePath("libRIVO_ARM_QtLib.so")));
        environment.insert("LD_LIBRARY_PATH", libraries.path());
    }
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, QStringList());
    QVERIFY(process.waitForFinished());
    const QByteArray errors = process.readAllStandardError();
    QVERIFY2(process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0,
             errors.constData());
    QCOMPARE(process.readAllStandardOutput(), output);
    QVERIFY2(errors.left(errors.indexOf('\n') + 1).endsWith(' ' + record), errors.constData());
}

void SwappedCoreTest::aLibraryLinkedAgainstAnotherCoreNamesItTheSameWay()
{
    QProcess readelf;
    readelf.start(READELF, {"-d", GUICORE_ON_STUB});
    QVERIFY(readelf.waitForFinished());
    const QByteArray dynamic = readelf.readAllStandardOutput();
    QVERIFY2(dynamic.contains("[libRIVO_ARM_QtLib.so]"), dynamic.constData());
}

QTEST_GUILESS_MAIN(SwappedCoreTest)
#include "tst_swapped_core.moc"
