#pragma once

#include <QAbstractItemModel>
#include <QJSValue>

#include <memory>

class QQmlEngine;

/// The engine of all that is in QML here, while this exists.
class QmlEngine
{
public:
    QmlEngine();
    ~QmlEngine();
    QmlEngine(const QmlEngine&) = delete;
    QmlEngine& operator=(const QmlEngine&) = delete;
};

QQmlEngine& qmlEngine();

/// QML's ListModel, filled and changed by JavaScript as a page does: from an array of objects that
/// has one property per field of the rows of Records.h. A loop over rows runs in JavaScript, and
/// what its garbage collector does in between is part of the cost.
class QmlList
{
public:
    QmlList();
    ~QmlList();

    QAbstractItemModel& model() { return *m_model; }

    void appendOne(int number) { call("appendOne", {number}); }
    /// appendOne() for `count` rows, in one loop.
    void appendEach(int first, int count) { call("appendEach", {first, count}); }
    /// append() with an array.
    void appendBlock(int first, int count) { call("appendBlock", {first, count}); }
    void insertInFront(int number) { call("insertInFront", {number}); }
    void removeOne(int row) { call("remove", {row, 1}); }
    void removeBlock(int row, int count) { call("remove", {row, count}); }
    void clear() { call("clear", {}); }
    void change(int row, int value) { call("change", {row, value}); }
    /// get() for every row, and reads all properties of what it returns.
    void getEach() { call("getEach", {}); }

    /// getEach() of another model whose get() does the same.
    static void getEachOf(const QJSValue& model);

private:
    void call(const char* function, const QJSValueList& arguments);

    std::unique_ptr<QAbstractItemModel> m_model;
    QJSValue m_object;
};
