#include "QmlBlocks.h"
#include "Table.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

namespace
{

QString document(const QString& name)
{
    QFile file(QStringLiteral(DOCUMENTED "/") + name);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QStringList documentsWithQml()
{
    QStringList names{"README.md"};
    for (const QString& name : QDir(QStringLiteral(DOCUMENTED "/docs")).entryList({"*.md"}))
        names.append("docs/" + name);
    names.erase(
        std::remove_if(names.begin(), names.end(),
                       [](const QString& name) { return qmlBlocks(document(name)).isEmpty(); }),
        names.end());
    return names;
}

/// What qmllint prints; some findings leave its exit code at 0.
QString complaints(const QString& qml)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath("Example.qml"));
    if (!file.open(QIODevice::WriteOnly) || file.write(qml.toUtf8()) < 0)
        return "cannot write the example";
    file.close();
    QStringList arguments{"--check-unqualified"};
    for (const QString& path : QStringLiteral(QML_IMPORT_PATHS).split(':'))
        arguments << "-I" << path;
    QProcess linter;
    linter.setProcessChannelMode(QProcess::MergedChannels);
    linter.start(QStringLiteral(QMLLINT), arguments << file.fileName());
    if (!linter.waitForFinished() || linter.exitStatus() != QProcess::NormalExit)
        return "the linter did not end";
    const QString output = QString::fromUtf8(linter.readAll());
    return linter.exitCode() == 0 ? output
                                  : output + QString("exit code %1").arg(linter.exitCode());
}

} // namespace

/// The QML in the documents.
class TestDocumentedQml : public QObject
{
    Q_OBJECT

private slots:
    void blocks_data()
    {
        const Table<QString, QStringList> row("markdown", "blocks");
        row("no block", "text\n", {});
        row("another language", "```cpp\nint i;\n```\n", {});
        row("no language", "```\nItem {}\n```\n", {});
        row("one block", "a\n```qml\nItem {\n}\n```\nb\n", {"Item {\n}\n"});
        row("two blocks, one between them in another language",
            "```qml\nA {}\n```\n```cpp\nint i;\n```\n```qml\nB {}\n```\n", {"A {}\n", "B {}\n"});
    }

    void blocks()
    {
        QFETCH(QString, markdown);
        QFETCH(QStringList, blocks);
        QCOMPARE(qmlBlocks(markdown), blocks);
    }

    void documentsThatHaveQml()
    {
        QCOMPARE(documentsWithQml(), (QStringList{"README.md", "docs/qml.md", "docs/roles.md"}));
    }

    void everyBlockPassesTheLinter_data()
    {
        QTest::addColumn<QString>("qml");
        for (const QString& name : documentsWithQml()) {
            const QStringList blocks = qmlBlocks(document(name));
            for (int i = 0; i < blocks.size(); ++i)
                QTest::addRow("%s, block %d", qPrintable(name), i + 1) << blocks.at(i);
        }
    }

    void everyBlockPassesTheLinter()
    {
        QFETCH(QString, qml);
        QCOMPARE(complaints(qml), QString());
    }

    void aFaultIsNoticed_data()
    {
        const Table<QString, QString> row("before", "after");
        row("property that the model does not have", "grid.numberOfColumns", "grid.numberOfColumn");
        row("call that the model does not have", "grid.setSelected(", "grid.select(");
        row("role that is not declared", "tile.fareProductName", "tile.fareProductText");
        row("unqualified name", "view.grid.setSelected", "grid.setSelected");
        row("type that the module does not have", "property PassengerTypesModel",
            "property PassengersModel");
        row("module without import", "import Rivo.GuiCore 1.0\n", "");
        row("brace missing", "    }\n}\n", "    }\n");
    }

    void aFaultIsNoticed()
    {
        QFETCH(QString, before);
        QFETCH(QString, after);
        QString qml = qmlBlocks(document("README.md")).value(0);
        QCOMPARE(qml.count(before), 1);
        QVERIFY(!complaints(qml.replace(before, after)).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestDocumentedQml)
#include "tst_documented_qml.moc"
