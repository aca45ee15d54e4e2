#include "ModelBattery.h"
#include "PassengerTypesModel.h"
#include "QmlBlocks.h"
#include "QmlTest.h"
#include "ShownModel.h"
#include "Table.h"

#include <QFile>
#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickView>
#include <QQuickWindow>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>

using rivo::models::ListModel;

namespace
{

constexpr int columns = 4;

/// A view of Qt Quick in a window over one model. All rows that a RandomRun makes fit into it.
class Client
{
public:
    Client(ListModel& model, const QStringList& roles, const QString& file)
        : m_roles(roles), m_isGrid(file.startsWith("Grid"))
    {
        m_window.engine()->addImportPath(QStringLiteral(RIVO_QML_IMPORT_PATH));
        m_window.setInitialProperties({{"rows", QVariant::fromValue(&model)}, {"roles", m_roles}});
        m_window.setSource(QUrl::fromLocalFile(QStringLiteral(QML_TEST_FILES "/") + file));
        m_window.show();
    }

    bool isReady() { return m_window.rootObject() && QTest::qWaitForWindowExposed(&m_window); }

    /// What the window shows otherwise than these rows; empty if nothing.
    QString difference(const QVector<QVariantMap>& rows)
    {
        QQuickItem* view = m_window.rootObject();
        QMetaObject::invokeMethod(view, "forceLayout");
        for (const char* property : {"count", "announcedCount"}) {
            if (view->property(property).toInt() != rows.size())
                return QStringLiteral("%1 is %2 instead of %3")
                    .arg(property)
                    .arg(view->property(property).toInt())
                    .arg(rows.size());
        }
        for (int row = 0; row < rows.size(); ++row) {
            const QString text = differenceOfRow(row, delegateOf(row), rowTexts(rows.at(row)));
            if (!text.isEmpty())
                return QStringLiteral("delegate %1: %2").arg(row).arg(text);
        }
        return delegateOf(rows.size()) ? QStringLiteral("a delegate too many") : QString();
    }

    /// Colours of the delegates' centres on the screen, "b" or "w"; "-" for one beyond the last.
    QString picture(int rows)
    {
        const QImage image = m_window.screen()->grabWindow(m_window.winId()).toImage();
        QString colours;
        for (int row = 0; row <= rows && image.rect().contains(centreOf(row)); ++row) {
            const QRgb colour = image.pixel(centreOf(row));
            colours += row == rows          ? (qGray(colour) == 255 ? "-" : "?")
                       : qGray(colour) == 0 ? "b"
                                            : "w";
        }
        return colours;
    }

    /// What must be on the screen.
    QString expectedPicture(int rows) const
    {
        QString colours = QStringLiteral("bw").repeated(rows).left(rows);
        if (QRect(0, 0, 100, 600).contains(centreOf(rows)))
            colours += '-';
        return colours;
    }

private:
    QPoint centreOf(int row) const
    {
        return m_isGrid ? QPoint(row % columns * 25 + 12, row / columns * 25 + 12)
                        : QPoint(50, row * 10 + 5);
    }

    QQuickItem* delegateOf(int row)
    {
        QQuickItem* item = nullptr;
        QMetaObject::invokeMethod(m_window.rootObject(), "itemAtIndex",
                                  Q_RETURN_ARG(QQuickItem*, item), Q_ARG(int, row));
        return item;
    }

    QString differenceOfRow(int row, const QQuickItem* delegate, const QStringList& expected) const
    {
        if (!delegate)
            return QStringLiteral("missing");
        if (delegate->property("index").toInt() != row)
            return QStringLiteral("has index %1").arg(delegate->property("index").toInt());
        const QPointF place =
            m_isGrid ? QPointF(row % columns * 25, row / columns * 25) : QPointF(0, row * 10);
        if (delegate->position() != place)
            return QStringLiteral("stands at %1, %2").arg(delegate->x()).arg(delegate->y());
        QVariant shown = delegate->property("shown");
        if (shown.userType() == qMetaTypeId<QJSValue>())
            shown = shown.value<QJSValue>().toVariant();
        const QVariantList values = shown.toList();
        QVariantMap read;
        for (int role = 0; role < m_roles.size(); ++role)
            read.insert(m_roles.at(role), values.value(role));
        return rowTexts(read) == expected
                   ? QString()
                   : QStringLiteral("shows\n%1\ninstead of\n%2")
                         .arg(rowTexts(read).join('\n'), expected.join('\n'));
    }

    const QStringList m_roles;
    const bool m_isGrid;
    QQuickView m_window;
};

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
        const Table<QString> row("document");
        row("of the QML module", "docs/qml.md");
        row("of the README", "README.md");
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

    void aViewFollowsEachOperation_data()
    {
        addColumns<QString, QString, quint32>("model", "file", "seed");
        for (const LibraryModel& model : libraryModels()) {
            for (const char* file : {"ListClient.qml", "GridClient.qml"}) {
                for (quint32 seed : {1U, 2U})
                    QTest::addRow("%s in %s, seed %u", model.name, file, seed)
                        << QString(model.name) << QString(file) << seed;
            }
        }
    }
    void aViewFollowsEachOperation()
    {
        QFETCH(QString, model);
        QFETCH(QString, file);
        QFETCH(quint32, seed);
        const LibraryModel& described = libraryModel(model);
        QObject owner;
        ListModel* shown = described.makeTopLevelOnly(&owner);
        battery::RandomRun run(*shown, described.itemClass, Choices(seed), battery::Judge::View);
        QStringList roles;
        for (const QByteArray& role : described.itemClass.roleNames())
            roles.append(role);
        Client client(*shown, roles, file);
        QVERIFY(client.isReady());
        for (int step = 0; step < 140; ++step) {
            if (step % 35 == 0) {
                run.turnEventLoop();
                QTRY_COMPARE(client.picture(shown->rowCount()),
                             client.expectedPicture(shown->rowCount()));
            }
            QCOMPARE(run.step(), QString());
            const QString difference = client.difference(run.shownRows());
            QVERIFY2(difference.isEmpty(),
                     qPrintable(QStringLiteral("step %1: %2").arg(step).arg(difference)));
        }
    }
};

int main(int argc, char** argv)
{
    const QTemporaryDir runtimeDir; // Qt asks for one that is the user's alone
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(runtimeDir.path()));
    qputenv("QT_QUICK_BACKEND", "software");
    const QGuiApplication application(argc, argv);
    // The offscreen platform never frees its screen; LeakSanitizer asks only that it can be
    // reached.
    [[maybe_unused]] static const QScreen* volatile screen = QGuiApplication::primaryScreen();
    TestQmlViews test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_qml_views.moc"
