#include "Table.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

namespace
{

struct Run
{
    QByteArray output;
    QByteArray errors;
    bool isGood = false;
};

/// A program with the core library of this file; with the one that it was linked against if empty.
Run run(const QString& program, const QString& core)
{
    const QTemporaryDir libraries; // the core library alone, so that nothing else is swapped
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove("LD_LIBRARY_PATH");
    if (!core.isEmpty()) {
        QFile::link(core, libraries.filePath("libRIVO_ARM_QtLib.so"));
        environment.insert("LD_LIBRARY_PATH", libraries.path());
    }
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, QStringList());
    Run result;
    const bool hasEnded = process.waitForFinished();
    result.output = process.readAllStandardOutput();
    result.errors = process.readAllStandardError();
    result.isGood =
        hasEnded && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    return result;
}

} // namespace

class ForeignCoreTest : public QObject
{
    Q_OBJECT

private slots:
    void itsClassesMayHaveAnySize_data();
    void itsClassesMayHaveAnySize();
};

void ForeignCoreTest::itsClassesMayHaveAnySize_data()
{
    const Table<QString, QString> row("program", "core");
    for (const QString& core : QString(FOREIGN_CORES).split('|')) {
        const QByteArray size = core.section('-', -1).section('/', 0, 0).toUtf8();
        QTest::addRow("%s bytes, at load time", size.constData()) << PROBE << core;
        QTest::addRow("%s bytes, instead of the one that was linked", size.constData())
            << PROBE_ON_FOREIGN << core;
    }
    row("at link time", PROBE_ON_FOREIGN, {});
}

void ForeignCoreTest::itsClassesMayHaveAnySize()
{
    QFETCH(QString, program);
    QFETCH(QString, core);
    const Run ours = run(PROBE, QString());
    QVERIFY2(ours.isGood, ours.errors.constData());
    const QByteArray ending("dumps: 0\nPT_ADULT\nPT_STUDENT_1\n");
    QVERIFY2(ours.output.endsWith(ending), ours.output.constData());
    const QByteArray roles = ours.output.chopped(ending.size());
    QCOMPARE(roles.count('\n'), 6);

    const Run theirs = run(program, core);
    QVERIFY2(theirs.isGood, theirs.errors.constData());
    QCOMPARE(theirs.output, roles + "dumps: 1\nPT_STUDENT_1\nPT_ADULT\n");
    // The registered object, and after it the manager's, which is never destroyed.
    QVERIFY2(theirs.errors.startsWith("made, aligned\nmade, "), theirs.errors.constData());
    QCOMPARE(theirs.errors.count("made, "), 2);
    QVERIFY2(theirs.errors.endsWith("destroyed, zeroed and intact\n"), theirs.errors.constData());
    QCOMPARE(theirs.errors.count("destroyed, "), 1);
    // Its logger wrote the record, although it knows nothing of texts of Qt.
    QVERIFY2(theirs.errors.contains(" TypeCodes Order: [3->PT_STUDENT_1],[1->PT_ADULT]\n"),
             theirs.errors.constData());
}

QTEST_GUILESS_MAIN(ForeignCoreTest)
#include "tst_foreign_core.moc"
