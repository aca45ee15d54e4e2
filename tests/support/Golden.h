#pragma once

#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QString>
#include <QTest>

/// Compares `actual` with a stored file. On a difference the new content is left beside the test
/// program's working directory as NAME.fail, and the unified diff is printed; copying the .fail
/// file over the stored one accepts the change.
inline bool matchesGolden(const QString& goldenFile, const QByteArray& actual)
{
    QFile golden(goldenFile);
    if (golden.open(QIODevice::ReadOnly) && golden.readAll() == actual)
        return true;
    const QString failFile = QFileInfo(goldenFile).fileName() + QStringLiteral(".fail");
    QFile fail(failFile);
    if (fail.open(QIODevice::WriteOnly))
        fail.write(actual);
    fail.close();
    QProcess diff;
    diff.start(QStringLiteral("diff"), {QStringLiteral("-u"), goldenFile, failFile});
    diff.waitForFinished();
    qWarning("%s", diff.readAllStandardOutput().constData());
    qWarning("See %s", qPrintable(QFileInfo(failFile).absoluteFilePath()));
    return false;
}
