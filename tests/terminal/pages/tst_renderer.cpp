#include "Table.h"

#include <Renderer.h>

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>

using rivo::terminal::isRasterQuicker;

/// Which of Qt Quick's renderers draws the screen.
class TestRenderer : public QObject
{
    Q_OBJECT

private slots:
    void init() { qunsetenv("QT_QUICK_BACKEND"); }
    void devices_data();
    void devices();
    void settingOfTheUserIsKept_data();
    void settingOfTheUserIsKept();
};

void TestRenderer::devices_data()
{
    const Table<QString, QStringList, bool> row("platform", "devices", "isRasterQuicker");
    row("X without a graphics processor", "xcb", {}, true);
    row("Wayland without a graphics processor", "wayland", {}, true);
    row("a screen without a renderer", "xcb", {"dri/card0"}, true);
    row("another renderer's name", "xcb", {"dri/by-path"}, true);
    row("X with a graphics processor", "xcb", {"dri/card0", "dri/renderD128"}, false);
    row("Wayland with a second graphics processor", "wayland", {"dri/renderD129"}, false);
    row("X with a driver of the processor's maker", "xcb", {"nvidia0"}, false);
    row("a platform that needs OpenGL", "eglfs", {}, false);
    row("a platform that needs OpenGL, by its long name", "eglfs_kms", {}, false);
}

void TestRenderer::devices()
{
    QFETCH(QString, platform);
    QFETCH(QStringList, devices);
    QFETCH(bool, isRasterQuicker);
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir("dri"));
    for (const QString& device : devices)
        QCOMPARE(mkfifo(qPrintable(folder.filePath(device)), 0600), 0);
    QCOMPARE(::isRasterQuicker(platform, folder.path()), isRasterQuicker);
}

void TestRenderer::settingOfTheUserIsKept_data()
{
    const Table<QByteArray> row("setting");
    row("OpenGL", "");
    row("the raster renderer", "software");
}

void TestRenderer::settingOfTheUserIsKept()
{
    QFETCH(QByteArray, setting);
    const QTemporaryDir folder;
    QVERIFY(isRasterQuicker("xcb", folder.path()));
    qputenv("QT_QUICK_BACKEND", setting);
    QVERIFY(!isRasterQuicker("xcb", folder.path()));
}

QTEST_GUILESS_MAIN(TestRenderer)
#include "tst_renderer.moc"
