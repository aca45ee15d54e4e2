#pragma once

#include "../ScreenUnderTest.h"

#include <QtTest>

/// What tests of one page share: a window of each size, taps, and no complaints of QML at the end.
class PageTest : public QObject
{
    Q_OBJECT

public:
    using SalesDesk = rivo::sales::SalesDesk;

    explicit PageTest(const QVector<QSize>& sizes = {{800, 480}, {1280, 800}}) : m_sizes(sizes) {}

private slots:
    void initTestCase_data()
    {
        QTest::addColumn<QSize>("size");
        for (const QSize size : m_sizes)
            QTest::addRow("%dx%d", size.width(), size.height()) << size;
    }
    void initTestCase()
    {
        prepareScreens();
        m_complaints = std::make_unique<Complaints>();
    }
    void init()
    {
        QFETCH_GLOBAL(QSize, size);
        m_size = size;
        start();
    }
    void cleanup()
    {
        m_shown.reset();
        QCOMPARE(Complaints::take().join('\n'), QString());
    }
    void cleanupTestCase() { m_complaints.reset(); }

protected:
    /// Before each test.
    virtual void start() {}

    /// Opens a window; everything is where it is drawn.
    void show(const rivo::feed::Feed& feed, const QString& page,
              const std::function<void(rivo::terminal::Terminal::Settings&)>& change = {})
    {
        m_shown.reset();
        m_shown = std::make_unique<ScreenUnderTest>(feed, page, m_size, change);
        m_shown->window()->grabWindow();
    }
    SalesDesk& desk() { return *m_shown->terminal().desk(); }

    /// So many tickets of the first tile, for which 10.00 is given.
    void sell(int tickets)
    {
        for (int i = 0; i < tickets; ++i)
            QVERIFY(desk().add(0));
        QVERIFY(desk().payCash(1000));
        QTRY_COMPARE(desk().state(), SalesDesk::Selling);
    }
    void enter(const QString& digits)
    {
        for (const QChar digit : digits)
            m_shown->tap("key-" + QString(digit));
    }

    QSize m_size;
    std::unique_ptr<ScreenUnderTest> m_shown;

private:
    const QVector<QSize> m_sizes;
    std::unique_ptr<Complaints> m_complaints;
};
