#include "Table.h"

#include <PictureFile.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QTemporaryDir>
#include <QtTest>

#include <functional>

#include <sys/stat.h>
#include <unistd.h>

using rivo::terminal::savePictureFile;

/// What a picture of the screen may replace.
class TestPictureFile : public QObject
{
    Q_OBJECT

private slots:
    void aNewFileIsForTheUserAlone();
    void aPictureOfBeforeIsReplaced();
    void whatIsThereStays_data();
    void whatIsThereStays();
    void aFolderThatCannotBeWrittenIsReported();

private:
    static QImage picture(Qt::GlobalColor colour)
    {
        QImage image(4, 4, QImage::Format_RGB32);
        image.fill(colour);
        return image;
    }
};

namespace
{

QByteArray contents(const QString& name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool write(const QString& name, const QByteArray& bytes)
{
    QFile file(name);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

using Make = std::function<bool(const QByteArray& path, const QByteArray& other)>;

} // namespace

Q_DECLARE_METATYPE(Make)

void TestPictureFile::aNewFileIsForTheUserAlone()
{
    const QTemporaryDir folder;
    const QString name = folder.filePath("page.png");
    QCOMPARE(savePictureFile(picture(Qt::red), name), QString());
    QCOMPARE(QImage(name).pixelColor(0, 0), QColor(Qt::red));
    QCOMPARE(QFileInfo(name).permissions() & (QFileDevice::ReadGroup | QFileDevice::ReadOther |
                                              QFileDevice::WriteGroup | QFileDevice::WriteOther),
             QFileDevice::Permissions());
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files), QStringList("page.png"));
}

void TestPictureFile::aPictureOfBeforeIsReplaced()
{
    const QTemporaryDir folder;
    const QString name = folder.filePath("page.png");
    QCOMPARE(savePictureFile(picture(Qt::red), name), QString());
    QCOMPARE(savePictureFile(picture(Qt::blue), name), QString());
    QCOMPARE(QImage(name).pixelColor(0, 0), QColor(Qt::blue));
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files), QStringList("page.png"));
}

void TestPictureFile::whatIsThereStays_data()
{
    const Table<Make, QString> row("make", "problem");
    row(
        "a link to a file",
        [](const QByteArray& path, const QByteArray& other) {
            return ::symlink(other.constData(), path.constData()) == 0;
        },
        QStringLiteral("it is a link"));
    row(
        "a link to a file that is missing",
        [](const QByteArray& path, const QByteArray& other) {
            return ::symlink((other + ".missing").constData(), path.constData()) == 0;
        },
        QStringLiteral("it is a link"));
    row(
        "a second name of a file",
        [](const QByteArray& path, const QByteArray& other) {
            return ::link(other.constData(), path.constData()) == 0;
        },
        QStringLiteral("it has several names"));
    row(
        "a pipe",
        [](const QByteArray& path, const QByteArray&) {
            return ::mkfifo(path.constData(), 0600) == 0;
        },
        QStringLiteral("it is not a regular file"));
    row(
        "a folder",
        [](const QByteArray& path, const QByteArray&) {
            return ::mkdir(path.constData(), 0700) == 0;
        },
        QStringLiteral("it is not a regular file"));
    row(
        "a text", [](const QByteArray& path, const QByteArray&) { return write(path, "a text"); },
        QStringLiteral("it is no picture of rivo-terminal"));
    row(
        "an empty file", [](const QByteArray& path, const QByteArray&) { return write(path, ""); },
        QStringLiteral("it is no picture of rivo-terminal"));
    row(
        "a picture of another program",
        [](const QByteArray& path, const QByteArray&) {
            return picture(Qt::green).save(QFile::decodeName(path), "PNG");
        },
        QStringLiteral("it is no picture of rivo-terminal"));
}

void TestPictureFile::whatIsThereStays()
{
    QFETCH(Make, make);
    const QTemporaryDir folder;
    const QString name = folder.filePath("page.png");
    const QString other = folder.filePath("other.png");
    QVERIFY(picture(Qt::green).save(other));
    const QByteArray before = contents(other);
    QVERIFY(make(QFile::encodeName(name), QFile::encodeName(other)));
    const QStringList files = QDir(folder.path()).entryList(QDir::AllEntries | QDir::System);
    const bool isFile = QFileInfo(name).isFile();
    const QByteArray bytes = isFile ? contents(name) : QByteArray();
    QTEST(savePictureFile(picture(Qt::red), name), "problem");
    QCOMPARE(contents(other), before);
    if (isFile)
        QCOMPARE(contents(name), bytes);
    QCOMPARE(QDir(folder.path()).entryList(QDir::AllEntries | QDir::System), files);
}

void TestPictureFile::aFolderThatCannotBeWrittenIsReported()
{
    const QTemporaryDir folder;
    QVERIFY(!savePictureFile(picture(Qt::red), folder.filePath("missing/page.png")).isEmpty());
    QVERIFY(write(folder.filePath("file"), ""));
    QVERIFY(!savePictureFile(picture(Qt::red), folder.filePath("file/page.png")).isEmpty());
}

QTEST_MAIN(TestPictureFile)
#include "tst_picture_file.moc"
