#include "QmlPeer.h"

#include "Measure.h"
#include "PassengerTypeItem.h"
#include "Records.h"

#include <QQmlComponent>
#include <QQmlEngine>

namespace
{

QQmlEngine* engineOfAll = nullptr;
QJSValue functionsOfAll;

QJSValue functions()
{
    static const QString script = QStringLiteral(R"((function (records) {
        return {
            appendOne: function (rows, number) { rows.append(records[number % records.length]); },
            appendEach: function (rows, first, count) {
                for (var i = first; i < first + count; ++i)
                    rows.append(records[i % records.length]);
            },
            appendBlock: function (rows, first, count) {
                rows.append(records.slice(first, first + count));
            },
            insertInFront: function (rows, number) { rows.insert(0, records[number % records.length]); },
            remove: function (rows, row, count) { rows.remove(row, count); },
            clear: function (rows) { rows.clear(); },
            change: function (rows, row, value) { rows.setProperty(row, "totalInBasket", value); },
            getEach: function (rows) {
                var names = Object.keys(records[0]);
                var read = 0;
                for (var i = 0; i < rows.count; ++i) {
                    var row = rows.get(i);
                    for (var name of names)
                        read += row[name] !== undefined ? 1 : 0;
                }
                if (read !== rows.count * names.length)
                    throw new Error("a row without all values");
            }
        };
    }))");
    QJSValue& made = functionsOfAll;
    if (made.isUndefined()) {
        QQmlEngine& engine = qmlEngine();
        QJSValue objects = engine.newArray(static_cast<quint32>(fromTenRowsInQml.back()));
        const QVector<int>& all = roles();
        for (int number = 0; number < fromTenRowsInQml.back(); ++number) {
            const std::unique_ptr<PassengerTypeItem> item(newItem(record(number), nullptr));
            QJSValue object = engine.newObject();
            for (const int role : all)
                object.setProperty(QString::fromLatin1(roleNames().value(role)),
                                   engine.toScriptValue(item->data(role)));
            objects.setProperty(static_cast<quint32>(number), object);
        }
        made = engine.evaluate(script).call({objects});
    }
    return made;
}

void run(const char* function, const QJSValueList& arguments)
{
    const QJSValue result = functions().property(QLatin1String(function)).call(arguments);
    if (result.isError())
        qFatal("%s: %s", function, qPrintable(result.toString()));
}

} // namespace

QmlEngine::QmlEngine() { engineOfAll = new QQmlEngine; }

QmlEngine::~QmlEngine()
{
    functionsOfAll = QJSValue();
    delete engineOfAll;
}

QQmlEngine& qmlEngine() { return *engineOfAll; }

QmlList::QmlList()
{
    QQmlComponent component(&qmlEngine());
    component.setData("import QtQuick 2.15\nListModel {}", QUrl(QStringLiteral("qrc:/List.qml")));
    m_model.reset(qobject_cast<QAbstractItemModel*>(component.create()));
    if (!m_model)
        qFatal("no ListModel: %s", qPrintable(component.errorString()));
    QQmlEngine::setObjectOwnership(m_model.get(), QQmlEngine::CppOwnership);
    m_object = qmlEngine().newQObject(m_model.get());
}

QmlList::~QmlList() = default;

void QmlList::getEachOf(const QJSValue& model) { run("getEach", {model}); }

void QmlList::call(const char* function, const QJSValueList& arguments)
{
    run(function, QJSValueList{m_object} + arguments);
}
