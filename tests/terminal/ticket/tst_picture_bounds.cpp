#include "Table.h"

#include <PictureBounds.h>

#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QtEndian>
#include <QtTest>

#include <sys/stat.h>

using rivo::ticket::isPictureWithinBounds;

/// Which pictures of others are loaded.
class TestPictureBounds : public QObject
{
    Q_OBJECT

private slots:
    void pictures_data();
    void pictures();
    void whatIsNoFileIsNoPicture();
};

namespace
{

constexpr int largestFile = 8 << 20;

QByteArray png(int width, int height)
{
    QImage image(width, height, QImage::Format_Mono);
    image.fill(0);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

quint32 checksum(const QByteArray& bytes)
{
    quint32 sum = 0xffffffff;
    for (const char byte : bytes) {
        sum ^= static_cast<quint8>(byte);
        for (int bit = 0; bit < 8; ++bit)
            sum = (sum >> 1) ^ ((sum & 1) != 0 ? 0xedb88320 : 0);
    }
    return ~sum;
}

/// A picture of one pixel whose header names other sizes.
QByteArray lyingPng(quint32 width, quint32 height)
{
    constexpr int kind =
        12; // of the header; the sizes and the rest of it follow, then its checksum
    constexpr int length = 17;
    QByteArray bytes = png(1, 1);
    qToBigEndian(width, bytes.data() + kind + 4);
    qToBigEndian(height, bytes.data() + kind + 8);
    qToBigEndian(checksum(bytes.mid(kind, length)), bytes.data() + kind + length);
    return bytes;
}

} // namespace

void TestPictureBounds::pictures_data()
{
    const Table<QByteArray, bool> row("bytes", "isWithin");
    row("a small picture", png(32, 32), true);
    row("the largest picture", png(4096, 4096), true);
    row("too wide", png(4097, 1), false);
    row("too high", png(1, 4097), false);
    row("a header of 100,000 x 100,000 pixels and nothing else", lyingPng(100000, 100000), false);
    row("a header of the largest numbers", lyingPng(0x7fffffff, 0x7fffffff), false);
    row("the largest file", png(32, 32).leftJustified(largestFile, '\0'), true);
    row("a file that is too large", png(32, 32).leftJustified(largestFile + 1, '\0'), false);
    row("a text", "a text", false);
    row("no byte", "", false);
    row("half a header", png(32, 32).left(20), false);
}

void TestPictureBounds::pictures()
{
    QFETCH(QByteArray, bytes);
    const QTemporaryDir folder;
    QFile file(folder.filePath("picture"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
    file.close();
    QTEST(isPictureWithinBounds(file.fileName()), "isWithin");
}

void TestPictureBounds::whatIsNoFileIsNoPicture()
{
    const QTemporaryDir folder;
    QVERIFY(!isPictureWithinBounds(QString()));
    QVERIFY(!isPictureWithinBounds(folder.path()));
    QVERIFY(!isPictureWithinBounds(folder.filePath("missing.png")));
    const QString pipe = folder.filePath("pipe.png");
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QVERIFY(!isPictureWithinBounds(pipe));
}

QTEST_MAIN(TestPictureBounds)
#include "tst_picture_bounds.moc"
