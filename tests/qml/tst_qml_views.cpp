#include "ModelKinds.h"
#include "QmlBlocks.h"
#include "QmlScreen.h"
#include "QmlTest.h"

#include <QFile>
#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickView>
#include <QQuickWindow>
#include <QRandomGenerator>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>

using rivo::models::ListItem;
using rivo::models::ListModel;

namespace
{

constexpr int mostRows = 40; // all of them fit into the window
constexpr int columns = 4;

struct ShownRow
{
    ListItem* item;
    int id;
    int number;
};

/// A view of Qt Quick in a window over one model, beside a list of the rows that it must show.
class Client
{
public:
    Client(const ModelKind& kind, const QString& file, quint32 seed)
        : m_kind(kind), m_random(seed), m_model(kind.makeModel(&m_owner)),
          m_roles(kind.values(0, 0).keys()), m_isGrid(file.startsWith("Grid"))
    {
        m_window.engine()->addImportPath(QStringLiteral(RIVO_QML_IMPORT_PATH));
        m_window.setInitialProperties({{"rows", QVariant::fromValue(m_model)}, {"roles", m_roles}});
        m_window.setSource(QUrl::fromLocalFile(QStringLiteral(QML_TEST_FILES "/") + file));
        m_window.show();
    }

    ~Client()
    {
        for (const ShownRow& row : qAsConst(m_taken))
            delete row.item;
    }

    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    bool isReady() { return m_window.rootObject() && QTest::qWaitForWindowExposed(&m_window); }

    // Operations. Each brings m_rows to what the view must show.

    void append() { insert(m_rows.size()); }
    void insertAtFront() { insert(0); }
    void insertInTheMiddle() { insert(m_rows.size() / 2); }
    void insertAnywhere() { insert(m_random.bounded(m_rows.size() + 1)); }

    void appendSeveral()
    {
        QVector<ListItem*> items;
        for (int i = 0; i < 3 && m_rows.size() < mostRows; ++i) {
            m_rows.append(newRow());
            items.append(m_rows.constLast().item);
        }
        m_model->appendRows(items);
    }

    void remove()
    {
        if (m_rows.isEmpty())
            return;
        const int row = m_random.bounded(m_rows.size());
        m_model->removeRow(row);
        m_rows.removeAt(row);
    }

    void removeBlock()
    {
        if (m_rows.isEmpty())
            return;
        const int row = m_random.bounded(m_rows.size());
        const int count = m_random.bounded(m_rows.size() - row) + 1;
        m_model->removeRows(row, count);
        m_rows.remove(row, count);
    }

    void take()
    {
        if (m_rows.isEmpty())
            return;
        const int row = m_random.bounded(m_rows.size());
        m_model->takeRow(row);
        m_taken.append(m_rows.takeAt(row));
    }

    void putBack()
    {
        if (m_taken.isEmpty() || m_rows.size() >= mostRows)
            return;
        m_rows.prepend(m_taken.takeFirst());
        m_model->insertRow(0, m_rows.constFirst().item);
    }

    void change()
    {
        if (m_rows.isEmpty())
            return;
        ShownRow& row = m_rows[m_random.bounded(m_rows.size())];
        row.number = m_random.bounded(1000);
        m_kind.change(row.item, row.number);
    }

    void changeFormerRow()
    {
        if (m_taken.isEmpty())
            return;
        m_taken.first().number = m_random.bounded(1000);
        m_kind.change(m_taken.constFirst().item, m_taken.constFirst().number);
    }

    void clear()
    {
        m_model->clear();
        m_rows.clear();
    }

    void doAnything()
    {
        static void (Client::*const operations[])() = {
            &Client::append,          &Client::insertAtFront,  &Client::insertInTheMiddle,
            &Client::insertAnywhere,  &Client::insertAnywhere, &Client::insertAnywhere,
            &Client::appendSeveral,   &Client::remove,         &Client::remove,
            &Client::removeBlock,     &Client::take,           &Client::putBack,
            &Client::change,          &Client::change,         &Client::change,
            &Client::changeFormerRow, &Client::change};
        if (m_random.bounded(40) == 0)
            clear();
        else
            (this->*operations[m_random.bounded(int(std::size(operations)))])();
    }

    /// What the window shows otherwise than it should; empty if nothing.
    QString difference()
    {
        QQuickItem* view = m_window.rootObject();
        QMetaObject::invokeMethod(view, "forceLayout");
        runDeferredDeletions();
        for (const char* property : {"count", "announcedCount"}) {
            if (view->property(property).toInt() != m_rows.size())
                return QStringLiteral("%1 is %2 instead of %3")
                    .arg(property)
                    .arg(view->property(property).toInt())
                    .arg(m_rows.size());
        }
        for (int row = 0; row < m_rows.size(); ++row) {
            const QString text = differenceOfRow(row, delegateOf(row));
            if (!text.isEmpty())
                return QStringLiteral("delegate %1: %2").arg(row).arg(text);
        }
        return delegateOf(m_rows.size()) ? QStringLiteral("a delegate too many") : QString();
    }

    /// Colours of the delegates' centres on the screen, "b" or "w"; "-" for one beyond the last.
    QString picture()
    {
        const QImage image = m_window.screen()->grabWindow(m_window.winId()).toImage();
        if (image.size() != QSize(100, 600))
            return QString();
        QString colours;
        for (int row = 0; row <= m_rows.size(); ++row) {
            const QPoint centre = m_isGrid
                                      ? QPoint(row % columns * 25 + 12, row / columns * 25 + 12)
                                      : QPoint(50, row * 10 + 5);
            const QRgb colour = image.pixel(centre);
            colours += row == m_rows.size() ? (qGray(colour) == 255 ? "-" : "?")
                       : qGray(colour) == 0 ? "b"
                                            : "w";
        }
        return colours;
    }

private:
    void insert(int row)
    {
        if (m_rows.size() >= mostRows)
            return;
        m_rows.insert(row, newRow());
        m_model->insertRow(row, m_rows.at(row).item);
    }

    ShownRow newRow()
    {
        const int id = ++m_lastId;
        const int number = m_random.bounded(1000);
        return {m_kind.makeItem(id, number, m_model), id, number};
    }

    QQuickItem* delegateOf(int row)
    {
        QQuickItem* item = nullptr;
        QMetaObject::invokeMethod(m_window.rootObject(), "itemAtIndex",
                                  Q_RETURN_ARG(QQuickItem*, item), Q_ARG(int, row));
        return item;
    }

    QString differenceOfRow(int row, const QQuickItem* delegate) const
    {
        if (!delegate)
            return QStringLiteral("missing");
        if (delegate->property("index").toInt() != row)
            return QStringLiteral("has index %1").arg(delegate->property("index").toInt());
        const QPointF place =
            m_isGrid ? QPointF(row % columns * 25, row / columns * 25) : QPointF(0, row * 10);
        if (delegate->position() != place)
            return QStringLiteral("stands at %1, %2").arg(delegate->x()).arg(delegate->y());
        const QVariantMap expected = m_kind.values(m_rows.at(row).id, m_rows.at(row).number);
        QVariant shown = delegate->property("shown");
        if (shown.userType() == qMetaTypeId<QJSValue>())
            shown = shown.value<QJSValue>().toVariant();
        const QVariantList values = shown.toList();
        QVariantMap read;
        for (int role = 0; role < m_roles.size(); ++role)
            read.insert(m_roles.at(role), values.value(role));
        const QStringList readTexts = modelkinds::rowTexts(read);
        const QStringList expectedTexts = modelkinds::rowTexts(expected);
        return readTexts == expectedTexts
                   ? QString()
                   : QStringLiteral("shows\n%1\ninstead of\n%2")
                         .arg(readTexts.join('\n'), expectedTexts.join('\n'));
    }

    const ModelKind& m_kind;
    QRandomGenerator m_random;
    QObject m_owner;
    ListModel* m_model;
    const QStringList m_roles;
    const bool m_isGrid;
    QVector<ShownRow> m_rows;
    QVector<ShownRow> m_taken;
    int m_lastId = 0;
    QQuickView m_window; // goes first
};

void viewRows()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("file");
    for (int kind = 0; kind < int(modelKinds().size()); ++kind) {
        for (const char* file : {"ListClient.qml", "GridClient.qml"})
            QTest::addRow("%s in %s", modelKinds()[std::size_t(kind)].name, file)
                << kind << QString::fromLatin1(file);
    }
}

/// The example in a document.
QByteArray documentedExample(const QString& document)
{
    QFile file(QStringLiteral(DOCUMENTED "/") + document);
    return file.open(QIODevice::ReadOnly)
               ? qmlBlocks(QString::fromUtf8(file.readAll())).value(0).toUtf8()
               : QByteArray();
}

} // namespace

class TestQmlViews : public QmlTest
{
    Q_OBJECT

private slots:
    void theDocumentedExampleSelectsTheTileThatIsTapped_data()
    {
        QTest::addColumn<QString>("document");
        QTest::newRow("of the QML module") << "docs/qml.md";
        QTest::newRow("of the README") << "README.md";
    }

    void theDocumentedExampleSelectsTheTileThatIsTapped()
    {
        QFETCH(QString, document);
        QObject owner;
        PassengerTypesModel grid(&owner);
        sProduct forSale;
        forSale.hasExpired = false;
        grid.addItemsToModel({forSale, forSale, forSale});
        QTemporaryDir folder;
        QFile file(folder.filePath("Example.qml"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.write(documentedExample(document)) > 0);
        file.close();
        QQuickView window;
        window.engine()->addImportPath(QStringLiteral(RIVO_QML_IMPORT_PATH));
        window.setResizeMode(QQuickView::SizeRootObjectToView);
        window.setInitialProperties({{"grid", QVariant::fromValue(&grid)}});
        window.setSource(QUrl::fromLocalFile(file.fileName()));
        window.resize(300, 100);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        const auto selected = [&grid] {
            QString text;
            for (int row = 0; row < grid.rowCount(); ++row)
                text += grid.get(row).toMap().value("selected").toBool() ? '1' : '0';
            return text;
        };
        QTest::mouseClick(&window, Qt::LeftButton, Qt::NoModifier, QPoint(150, 50));
        QCOMPARE(selected(), QStringLiteral("010"));
        QTest::mouseClick(&window, Qt::LeftButton, Qt::NoModifier, QPoint(250, 50));
        QCOMPARE(selected(), QStringLiteral("011"));
        QTest::mouseClick(&window, Qt::LeftButton, Qt::NoModifier, QPoint(150, 50));
        QCOMPARE(selected(), QStringLiteral("001"));
    }

    void aViewFollowsEachOperation_data() { viewRows(); }
    void aViewFollowsEachOperation()
    {
        QFETCH(int, kind);
        QFETCH(QString, file);
        Client client(modelKinds().at(std::size_t(kind)), file, 7);
        QVERIFY(client.isReady());
        QCOMPARE(client.difference(), QString());
        QTRY_COMPARE(client.picture(), QStringLiteral("-"));
        void (Client::*const operations[])() = {&Client::append,
                                                &Client::append,
                                                &Client::insertAtFront,
                                                &Client::append,
                                                &Client::insertInTheMiddle,
                                                &Client::appendSeveral,
                                                &Client::change,
                                                &Client::take,
                                                &Client::changeFormerRow,
                                                &Client::insertAtFront,
                                                &Client::putBack,
                                                &Client::change,
                                                &Client::remove};
        for (auto operation : operations) {
            (client.*operation)();
            QCOMPARE(client.difference(), QString());
        }
        QTRY_COMPARE(client.picture(), QStringLiteral("bwbwbwbw-"));
        client.removeBlock();
        QCOMPARE(client.difference(), QString());
        client.clear();
        QCOMPARE(client.difference(), QString());
        client.append();
        QCOMPARE(client.difference(), QString());
        QTRY_COMPARE(client.picture(), QStringLiteral("b-"));
    }

    void aViewFollowsRandomOperations_data() { viewRows(); }
    void aViewFollowsRandomOperations()
    {
        QFETCH(int, kind);
        QFETCH(QString, file);
        for (quint32 seed : {1U, 2U}) {
            Client client(modelKinds().at(std::size_t(kind)), file, seed);
            QVERIFY(client.isReady());
            for (int step = 0; step < 120; ++step) {
                client.doAnything();
                const QString difference = client.difference();
                QVERIFY2(difference.isEmpty(), qPrintable(QStringLiteral("seed %1, step %2: %3")
                                                              .arg(seed)
                                                              .arg(step)
                                                              .arg(difference)));
            }
        }
    }
};

int main(int argc, char** argv)
{
    const QTemporaryDir runtimeDir; // Qt asks for one that is the user's alone
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(runtimeDir.path()));
    QQuickWindow::setSceneGraphBackend(QSGRendererInterface::Software);
    const QGuiApplication application(argc, argv);
    // The offscreen platform never frees its screen; LeakSanitizer asks only that it can be
    // reached.
    [[maybe_unused]] static const QScreen* volatile screen = QGuiApplication::primaryScreen();
    TestQmlViews test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_qml_views.moc"
