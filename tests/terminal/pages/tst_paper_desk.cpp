#include "../ScreenUnderTest.h"

#include <DriverDesk.h>
#include <PaperDesk.h>
#include <PaperPicture.h>

#include <QQuickImageProvider>

using namespace rivo;
using sales::SalesDesk;
using terminal::PaperDesk;

namespace
{

terminal::Terminal::Settings settingsIn(const QTemporaryDir& folder)
{
    terminal::Terminal::Settings settings;
    settings.isDemo = true;
    settings.journalFile = folder.filePath("journal.db");
    settings.ticketTime = 0;
    return settings;
}

void sellOne(terminal::Terminal& shown)
{
    for (int row = 0; !shown.desk()->add(row); ++row)
        QVERIFY(row < shown.grid()->rowCount());
    QVERIFY(shown.desk()->pay(SalesDesk::Cash));
    QTRY_COMPARE(shown.desk()->state(), SalesDesk::Selling);
}

} // namespace

class TestPaperDesk : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { prepareScreens(); }

    void papersHavePictures()
    {
        const QTemporaryDir folder;
        terminal::Terminal shown(exampleFeed("hill-valley"), settingsIn(folder));
        const std::unique_ptr<QQuickImageProvider> provider(shown.papers()->makeProvider());
        QCOMPARE(shown.papers()->ofLastPrinted(), QUrl());
        QCOMPARE(shown.papers()->ofTicket(1), QUrl());
        QCOMPARE(shown.papers()->ofReport(99), QUrl());
        sellOne(shown);
        const QUrl last = shown.papers()->ofLastPrinted();
        QCOMPARE(last.toString(QUrl::RemovePath), "image://paper");
        QSize size;
        const QImage picture = provider->requestImage(last.fileName(), &size, {});
        QCOMPARE(picture.width(), ticket::narrowPaper);
        QCOMPARE(size, picture.size());
        const QUrl past = shown.papers()->ofTicket(1);
        QVERIFY(past != last);
        QCOMPARE(provider->requestImage(past.fileName(), nullptr, {}), picture);
        const QUrl report = shown.papers()->ofReport(0);
        QVERIFY(provider->requestImage(report.fileName(), nullptr, {}) != picture);
        QCOMPARE(provider->requestImage(report.fileName(), nullptr, QSize(100, 0)).width(), 100);
    }

    void unknownPicturesAreEmpty()
    {
        const QTemporaryDir folder;
        terminal::Terminal shown(exampleFeed("hill-valley"), settingsIn(folder));
        const std::unique_ptr<QQuickImageProvider> provider(shown.papers()->makeProvider());
        for (const char* id : {"", "0", "1", "x"})
            QVERIFY(provider->requestImage(id, nullptr, QSize(100, 100)).isNull());
    }

    void newestPicturesAreKept()
    {
        const QTemporaryDir folder;
        terminal::Terminal shown(exampleFeed("hill-valley"), settingsIn(folder));
        const std::unique_ptr<QQuickImageProvider> provider(shown.papers()->makeProvider());
        QStringList ids;
        for (int made = 0; made <= PaperDesk::mostPictures; ++made)
            ids.append(shown.papers()->ofReport(0).fileName());
        QVERIFY(provider->requestImage(ids.first(), nullptr, {}).isNull());
        QVERIFY(!provider->requestImage(ids.at(1), nullptr, {}).isNull());
        QVERIFY(!provider->requestImage(ids.last(), nullptr, {}).isNull());
    }

    void screenLoadsPictures()
    {
        Complaints complaints;
        const QTemporaryDir folder;
        terminal::Terminal shown(exampleFeed("hill-valley"), settingsIn(folder));
        const terminal::Screen screen(shown, "sell", QSize(800, 480));
        sellOne(shown);
        QQmlComponent component(qmlEngine(screen.window()->findChild<QQuickItem*>("grid")));
        component.setData("import QtQuick 2.15\nImage {}", QUrl());
        const std::unique_ptr<QObject> image(component.create());
        QVERIFY2(image != nullptr, qPrintable(component.errorString()));
        image->setProperty("source", shown.papers()->ofLastPrinted());
        QTRY_COMPARE(image->property("implicitWidth").toInt(), ticket::narrowPaper);
        QCOMPARE(Complaints::take(), QStringList());
    }

    /// PBKDF2 of "password", one iteration.
    void driversLockTheDesk()
    {
        const QTemporaryDir folder;
        terminal::Terminal::Settings settings = settingsIn(folder);
        {
            terminal::Terminal open(exampleFeed("hill-valley"), settings);
            QVERIFY(!open.drivers()->isRequired());
            QVERIFY(!open.desk()->isLocked());
        }
        settings.drivers = {{42, "A. Nowak", 1, "salt",
                             QByteArray::fromHex("120fb6cffcf8b32c43e7225256c4f837"
                                                 "a86548c92ccc35480805987cb70be17b")}};
        terminal::Terminal shown(exampleFeed("hill-valley"), settings);
        QVERIFY(shown.desk()->isLocked());
        QVERIFY(shown.drivers()->signIn("42", "password"));
        QVERIFY(!shown.desk()->isLocked());
        QCOMPARE(shown.desk()->driverName(), "A. Nowak");
    }
};

QTEST_MAIN(TestPaperDesk)
#include "tst_paper_desk.moc"
