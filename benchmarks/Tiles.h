#pragma once

#include <QQuickView>

class QAbstractItemModel;

/// A window with a GridView of 24 tiles in sight, which reads five roles of each.
class Tiles
{
public:
    Tiles();

    /// The model to show; null for none.
    void show(QAbstractItemModel* model);

    /// Makes, moves and destroys the tiles that the model's changes call for, as before the next
    /// frame. Drawing is the same for every model, and not part of it.
    void update();

    /// Tiles in sight or close to it.
    int count() const;

private:
    QQuickView m_window;
};
