#pragma once

#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QString>
#include <QTest>

/// Compares `actual` with a stored file. On a difference the new content is left beside the test
/// program's working directory as NAME.fail, and the unified diff is printed. With the environment
/// variable RIVO_UPDATE_GOLDENS, as scripts/update-goldens.sh sets it, the new content is stored.
inline bool matchesGolden(const QString& goldenFile, const QByteArray& actual)
{
    QFile golden(goldenFile);
    if (golden.open(QIODevice::ReadOnly) && golden.readAll() == actual)
        return true;
    golden.close();
    const bool isUpdate = qEnvironmentVariableIsSet("RIVO_UPDATE_GOLDENS");
    QFile written(isUpdate ? goldenFile
                           : QFileInfo(goldenFile).fileName() + QStringLiteral(".fail"));
    if (!written.open(QIODevice::WriteOnly) || written.write(actual) != actual.size())
        return false;
    written.close();
    if (isUpdate)
        return true;
    QProcess diff;
    diff.start(QStringLiteral("diff"), {QStringLiteral("-u"), goldenFile, written.fileName()});
    diff.waitForFinished();
    qWarning("%s", diff.readAllStandardOutput().constData());
    qWarning("See %s", qPrintable(QFileInfo(written).absoluteFilePath()));
    return false;
}
