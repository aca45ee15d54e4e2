#pragma once

#include "../ScreenUnderTest.h"

#include <PassengerTypeItem.h>
#include <ShoppingBasketModel.h>
#include <ShoppingItem.h>
#include <ZReportItem.h>

#include <QtQml>

/// The terminal as the QML tests see it: named items of its window to tap on, and what its models
/// and its printer say.
class SellingHarness : public QObject
{
    Q_OBJECT
    QML_NAMED_ELEMENT(Harness)
    QML_SINGLETON
    Q_PROPERTY(int basketCount READ basketCount)
    Q_PROPERTY(QString complaints READ complaints)
    Q_PROPERTY(QString printed READ printed)
    Q_PROPERTY(int refusals READ refusals)

public:
    explicit SellingHarness(QObject* parent = nullptr) : QObject(parent) {}

    /// Opens "coast-line", "hill-valley" or "empty". Devices of the examples have no faults.
    Q_INVOKABLE void open(const QString& feed, const QString& page)
    {
        m_shown = std::make_unique<ScreenUnderTest>(
            feedNamed(feed), page, QSize(1024, 600),
            [this](rivo::terminal::Terminal::Settings& settings) { prepare(settings); });
        watch();
    }
    Q_INVOKABLE void openProblems()
    {
        close();
        const auto result = rivo::feed::loadFeed(brokenFeed());
        m_problems = result.problemLines();
        m_problemScreen = std::make_unique<rivo::terminal::Screen>(m_problems, QSize(800, 480));
        m_problemScreen->window()->show();
        if (!QTest::qWaitForWindowExposed(m_problemScreen->window()))
            qFatal("There is no screen to show a window on");
    }
    Q_INVOKABLE void restart()
    {
        m_shown->restart();
        watch();
    }
    Q_INVOKABLE void close()
    {
        m_shown.reset();
        m_problemScreen.reset();
        m_journal.reset();
        m_ticketTime = 0;
        m_lockJournal = false;
        m_damageJournal = false;
        m_printed.clear();
    }

    /// For the next open(): "locked" or "damaged".
    Q_INVOKABLE void useJournal(const QString& state)
    {
        m_lockJournal = state == "locked";
        m_damageJournal = state == "damaged";
    }
    /// For the next open(): how long a ticket takes to be printed, 0 unless set.
    Q_INVOKABLE void setTicketTime(int milliseconds) { m_ticketTime = milliseconds; }

    /// Everything is where it will be drawn.
    Q_INVOKABLE void layOut() { m_shown->window()->grabWindow(); }

    Q_INVOKABLE void bringIntoView(QQuickItem* item) { m_shown->bringIntoView(item); }
    Q_INVOKABLE QQuickItem* item(const QString& name) { return m_shown->item(name); }
    Q_INVOKABLE QQuickItem* itemAt(const QString& name, int index)
    {
        return m_shown->all(name).value(index);
    }
    Q_INVOKABLE int countOf(const QString& name) { return m_shown->all(name).size(); }
    Q_INVOKABLE QString textOf(const QString& name)
    {
        const QQuickItem* found = m_shown->item(name);
        return found == nullptr ? QString() : found->property("text").toString();
    }
    Q_INVOKABLE bool isEnabled(const QString& name)
    {
        const QQuickItem* found = m_shown->item(name);
        return found != nullptr && found->isEnabled();
    }

    /// The tile of row `row` of the grid, scrolled into view; null if it is not shown.
    Q_INVOKABLE QQuickItem* tile(int row)
    {
        const auto* tiles = m_shown->terminal().tiles();
        const QModelIndexList shown = tiles->match(
            tiles->index(0), rivo::terminal::TileDesk::TileRole, row, 1, Qt::MatchExactly);
        if (shown.isEmpty())
            return nullptr;
        QQuickItem* grid = m_shown->item("grid");
        QMetaObject::invokeMethod(grid, "positionViewAtIndex", Q_ARG(int, shown.first().row()),
                                  Q_ARG(int, 4));
        QQuickItem* found = nullptr;
        m_shown->forEachItem(grid, [&](QQuickItem* item) {
            const QVariant tile = item->property("tile");
            if (item->inherits("QQuickAbstractButton") && tile.isValid() && tile.toInt() == row)
                found = item;
        });
        return found;
    }
    Q_INVOKABLE int placeholderRow() { return firstInert(true); }
    Q_INVOKABLE int expiredRow() { return firstInert(false); }

    Q_INVOKABLE QString basket(const QString& role)
    {
        QStringList texts;
        auto* model = m_shown->terminal().basket();
        for (int row = 0; row < model->rowCount(); ++row)
            texts.append(model->data(model->index(row, 0), model->roleNames().key(role.toLatin1()))
                             .toString());
        return texts.join('|');
    }
    Q_INVOKABLE QString selectedTiles()
    {
        QStringList rows;
        auto* model = m_shown->terminal().grid();
        for (int row = 0; row < model->rowCount(); ++row) {
            if (model->data(model->index(row, 0), PassengerTypeItem::SelectedRole).toBool())
                rows.append(QString::number(row));
        }
        return rows.join(',');
    }
    Q_INVOKABLE QString report(const QString& role)
    {
        QAbstractItemModel* model = m_shown->terminal().runningShift();
        return model->data(model->index(0, 0), model->roleNames().key(role.toLatin1())).toString();
    }
    Q_INVOKABLE int currentStop(int row)
    {
        const auto* line =
            qobject_cast<ShoppingItem*>(m_shown->terminal().basket()->itemFromRow(row));
        return line == nullptr ? -1 : line->currentStopId();
    }
    Q_INVOKABLE int contextStop() { return m_shown->terminal().trip()->context()->currentStopId(); }
    Q_INVOKABLE QString obstacle() { return m_shown->terminal().desk()->obstacle(); }
    Q_INVOKABLE void setNight(bool night) { m_shown->terminal().setNight(night); }
    Q_INVOKABLE QColor background() { return m_shown->window()->color(); }

    Q_INVOKABLE int problemCount() const { return m_problems.size(); }
    /// The texts of the window with the problems, in their order.
    Q_INVOKABLE QString problemTexts()
    {
        QStringList texts;
        ScreenUnderTest::forEachItem(m_problemScreen->window()->contentItem(),
                                     [&](QQuickItem* item) {
                                         if (item->inherits("QQuickText"))
                                             texts.append(item->property("text").toString());
                                     });
        return texts.join('\n');
    }
    Q_INVOKABLE QString problemLines() const { return m_problems.join('\n'); }
    Q_INVOKABLE int problemButtons()
    {
        int buttons = 0;
        ScreenUnderTest::forEachItem(
            m_problemScreen->window()->contentItem(),
            [&](QQuickItem* item) { buttons += item->inherits("QQuickAbstractButton") ? 1 : 0; });
        return buttons;
    }

    int basketCount() { return m_shown->terminal().basket()->rowCount(); }
    QString complaints() { return Complaints::take().join('\n'); }
    /// How many lines of the basket were printed after each ticket: "1,2,3".
    QString printed() const { return m_printed.join(','); }
    /// How often the desk said no since the start.
    int refusals() const { return m_refusals; }

private:
    using Feed = rivo::feed::Feed;

    int firstInert(bool wantsPlaceholder)
    {
        auto* grid = m_shown->terminal().grid();
        for (int row = 0; row < grid->rowCount(); ++row) {
            const QVariantMap tile = grid->get(row).toMap();
            const bool isExpired = tile.value("hasExpired").toBool();
            const bool isPlaceholder = m_shown->terminal().presentation()->isPlaceholder(
                tile.value("fareProductName").toString(), isExpired);
            if (isExpired && isPlaceholder == wantsPlaceholder)
                return row;
        }
        return -1;
    }

    static Feed feedNamed(const QString& name)
    {
        if (name == "empty") {
            Feed feed;
            feed.currency = "EUR";
            return feed;
        }
        Feed feed = exampleFeed(name);
        for (auto& device : feed.peripherals)
            device.warning = device.blueWarning = device.yellowWarning = device.error = false;
        return feed;
    }
    /// A short path, so that every problem is in sight: the list makes visible lines alone.
    QString brokenFeed()
    {
        QFile file("broken.json");
        if (!QDir::setCurrent(m_folder.path()) || !file.open(QIODevice::WriteOnly))
            qFatal("The broken feed cannot be written");
        file.write(R"({"format": "rivo-feed", "version": 1, "currency": "EUR",
                       "supportedPassengerTypes": ["PT_ADULT"],
                       "products": [{"price": -1, "fareProductName": "<b>bold</b>"}],
                       "columns": "three"})");
        return file.fileName();
    }
    void prepare(rivo::terminal::Terminal::Settings& settings)
    {
        settings.ticketTime = m_ticketTime;
        if (m_damageJournal) {
            QFile file(settings.journalFile);
            if (file.open(QIODevice::WriteOnly))
                file.write(QByteArray(5000, 'x'));
        }
        if (m_lockJournal) {
            m_journal = std::make_unique<rivo::sales::Journal>();
            m_journal->open(settings.journalFile, rivo::sales::Currency("EUR", 2), 1);
        }
    }
    void watch()
    {
        m_printed.clear();
        m_refusals = 0;
        connect(m_shown->terminal().desk(), &rivo::sales::SalesDesk::refused, this,
                [this] { ++m_refusals; });
        ShoppingBasketModel* basket = m_shown->terminal().basket();
        connect(basket, &QAbstractItemModel::dataChanged, this, [this, basket] {
            int printed = 0;
            for (int row = 0; row < basket->rowCount(); ++row)
                printed += qobject_cast<ShoppingItem*>(basket->itemFromRow(row))->printed() ? 1 : 0;
            const QString text = QString::number(printed);
            if (printed > 0 && m_printed.value(m_printed.size() - 1) != text)
                m_printed.append(text);
        });
    }

    const Complaints m_complaints; ///< from the first test on, after Qt Test has its own handler
    const QTemporaryDir m_folder;
    std::unique_ptr<ScreenUnderTest> m_shown;
    std::unique_ptr<rivo::terminal::Screen> m_problemScreen;
    std::unique_ptr<rivo::sales::Journal> m_journal; ///< the other program that has it open
    QStringList m_problems;
    QStringList m_printed;
    int m_refusals = 0;
    int m_ticketTime = 0;
    bool m_lockJournal = false;
    bool m_damageJournal = false;
};
