#pragma once

#include "sProduct.h"

#include <QByteArray>
#include <QHash>
#include <QVector>

class PassengerTypeItem;
class QObject;
class QStandardItem;

/// Most rows of a model here.
constexpr int maximumRows = 100000;

/// What row `number` shows, in every model that is compared; the same in each run. Identities,
/// product numbers, positions and both texts are in orders of their own, and no value of them comes
/// twice. Beyond maximumRows the records start again.
const sProduct& record(int number);

/// The first `count` in that order.
QVector<sProduct> records(int count);

/// Roles of a row of sixteen fields, ascending, and their names.
const QVector<int>& roles();
const QHash<int, QByteArray>& roleNames();

/// A row of ours with the fields of the record. Its texts are the record's own.
PassengerTypeItem* newItem(const sProduct& product, QObject* parent);

/// The same row as an item of QStandardItemModel: one value per role.
QStandardItem* newStandardItem(const sProduct& product);
