#pragma once

#include <QTest>

template <typename... Values, typename... Names>
void addColumns(Names... names)
{
    static_assert(sizeof...(Values) == sizeof...(Names), "a name for each column");
    (QTest::addColumn<Values>(names), ...);
}

/// The rows of a data-driven test:
///
///     const Table<QByteArray, bool> row("bytes", "isValid");
///     row("no byte", "", true);
///     row("a letter cut in two", "\xC3", false);
template <typename... Values>
class Table
{
public:
    template <typename... Names>
    explicit Table(Names... names)
    {
        addColumns<Values...>(names...);
    }

    void operator()(const QByteArray& name, const Values&... values) const
    {
        (QTest::newRow(name.constData()) << ... << values);
    }
};
