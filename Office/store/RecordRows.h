#pragma once

#include <QByteArray>
#include <QVariant>
#include <QVector>

#include <optional>

namespace rivo::backoffice
{

/// A row of a journal's table, read from the content of a sealed record.
struct RecordRow
{
    QByteArray table;
    QVector<QVariant> values; ///< qint64, double, QString, QByteArray, or invalid for null
};

/// The rows of a content, in their order: docs/journal.md has the form. Nothing for anything else.
std::optional<QVector<RecordRow>> rowsOf(const QByteArray& content);

} // namespace rivo::backoffice
