#include "TileDesk.h"

#include "TextFit.h"

#include <PassengerTypeItem.h>
#include <PassengerTypesModel.h>
#include <sProduct.h>

#include <QGuiApplication>

#include <algorithm>
#include <set>
#include <tuple>
#include <utility>

namespace rivo::terminal
{

namespace
{

/// What a driver sees of a tile.
struct Face
{
    QString passenger;
    QString product;
    QString zones;
    qint64 price = 0;
    double discount = 0.0;
    int flags = 0;
};

bool operator<(const Face& a, const Face& b)
{
    const auto fields = [](const Face& face) {
        return std::tie(face.passenger, face.product, face.zones, face.price, face.discount,
                        face.flags);
    };
    return fields(a) < fields(b);
}

} // namespace

TileDesk::TileDesk(PassengerTypesModel& grid, TileLook look, QObject* parent)
    : QAbstractListModel(parent), m_grid(grid), m_look(std::move(look))
{
    connect(&grid, &QAbstractItemModel::dataChanged, this, &TileDesk::forward);
}

const PassengerTypeItem* TileDesk::tileAt(int row) const
{
    return qobject_cast<PassengerTypeItem*>(m_grid.itemFromRow(row));
}

void TileDesk::clear()
{
    replaceShown({});
    m_tiles.clear();
    m_texts.clear();
}

void TileDesk::layOut()
{
    m_tiles.clear();
    for (int row = 0; row < m_grid.rowCount(); ++row) {
        const PassengerTypeItem* tile = tileAt(row);
        if (!isPlaceholder(tile->fareProductName(), tile->hasExpired()))
            m_tiles.append(row);
    }
    readTexts();
    makeTabs();
    show();
}

void TileDesk::nameZones()
{
    readTexts();
    if (!m_shown.isEmpty())
        emit dataChanged(index(0), index(m_shown.size() - 1), {ZonesRole, MarkRole});
}

/// The texts of all tiles; tiles that would look alike get a mark.
void TileDesk::readTexts()
{
    m_fitted.clear();
    m_words.clear();
    m_shortNames.reset();
    m_texts = QVector<Texts>(m_grid.rowCount());
    QHash<QPair<int, int>, QString> zones;
    QMap<Face, int> faces; // the first row of each
    QHash<int, QVector<int>> equalRows;
    for (const int row : qAsConst(m_tiles)) {
        const PassengerTypeItem& tile = *tileAt(row);
        const QPair<int, int> ends(m_look.originOf(tile), tile.toStopGroupId());
        QString& text = zones[ends];
        if (text.isNull())
            text = m_look.zonesText(ends.first, ends.second);
        m_texts[row].zones = text;
        const int flags =
            int(tile.isReturnFee()) | int(tile.isDaily()) << 1 | int(tile.hasExpired()) << 2;
        const Face face{tile.description(),
                        tile.fareProductName(),
                        text,
                        m_look.minorUnits(tile.price()),
                        tile.fareDiscount(),
                        flags};
        const auto known = faces.constFind(face);
        if (known == faces.constEnd())
            faces.insert(face, row);
        else
            equalRows[*known].append(row);
    }
    for (auto rows = equalRows.cbegin(); rows != equalRows.cend(); ++rows)
        markEqualTiles(QVector<int>{rows.key()} + rows.value());
}

QStringList TileDesk::names() const
{
    QStringList names;
    for (const int row : m_tiles)
        names << tileAt(row)->description() << tileAt(row)->fareProductName()
              << m_texts.at(row).zones << m_texts.at(row).mark;
    for (const Tab& tab : m_tabs)
        names << tab.title;
    names.sort();
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

/// Details are added until all marks differ; tiles that do not differ in any are counted.
void TileDesk::markEqualTiles(const QVector<int>& rows)
{
    QVector<QStringList> details;
    QHash<QPair<QPair<int, int>, QPair<int, int>>, int> times; // of tiles with the same numbers
    for (const int row : rows) {
        const PassengerTypeItem& tile = *tileAt(row);
        int& time = times[{{tile.id(), tile.fareProductId()},
                           {tile.fromStopGroupId(), tile.toStopGroupId()}}];
        details.append(m_look.details(tile, time++));
    }
    QVector<QStringList> marks(rows.size());
    const auto differ = [](const QVector<QStringList>& lists) {
        const std::set<QStringList> distinct(lists.begin(), lists.end());
        return static_cast<int>(distinct.size());
    };
    for (int detail = 0; detail < details.first().size(); ++detail) {
        if (differ(marks) == rows.size())
            break;
        std::set<QString> values;
        for (const QStringList& each : qAsConst(details))
            values.insert(each.value(detail));
        if (values.size() < 2)
            continue;
        for (int i = 0; i < rows.size(); ++i)
            marks[i].append(details.at(i).value(detail));
    }
    QMap<QStringList, int> equal;
    const bool areDistinct = differ(marks) == rows.size();
    for (int i = 0; i < rows.size(); ++i) {
        const int time = ++equal[marks.at(i)];
        QStringList mark = marks.at(i);
        mark.removeAll(QString());
        if (!areDistinct)
            mark.append(QStringLiteral("(%1)").arg(time));
        m_texts[rows.at(i)].mark = mark.join(QStringLiteral(" · "));
    }
}

void TileDesk::countSold(const QString& passenger, const QString& product, int toZone, int tickets)
{
    m_sold[{passenger, {product, toZone}}] += tickets;
    if (m_tabs.first().kind != Often && !oftenSold().isEmpty())
        makeTabs(); // with one more; the tab that is shown stays
}

QVector<int> TileDesk::zonesInOrder(const QHash<int, int>& tilesOfZones) const
{
    QVector<int> zones;
    const QVector<int> ahead = m_look.zonesAhead();
    for (const int zone : ahead) {
        if (tilesOfZones.contains(zone) && !zones.contains(zone))
            zones.append(zone);
    }
    QVector<int> others;
    for (auto zone = tilesOfZones.cbegin(); zone != tilesOfZones.cend(); ++zone) {
        if (!zones.contains(zone.key()))
            others.append(zone.key());
    }
    std::sort(others.begin(), others.end(), [this](int a, int b) {
        return std::make_pair(m_look.zoneName(a), a) < std::make_pair(m_look.zoneName(b), b);
    });
    return zones + others;
}

void TileDesk::makeTabs()
{
    const Tab before = m_tabs.at(m_tab);
    QHash<int, int> tilesOfZones;
    for (const int row : qAsConst(m_tiles))
        ++tilesOfZones[tileAt(row)->toStopGroupId()];
    m_tabs.clear();
    const int often = oftenSold().size();
    if (often > 0)
        m_tabs.append({Often, 0, tr("Often"), often});
    m_tabs.append({All, 0, tr("All"), m_tiles.size()});
    if (tilesOfZones.size() > 1) {
        const QVector<int> zones = zonesInOrder(tilesOfZones);
        for (const int zone : zones) {
            const QString name = zone == 0 ? tr("Anywhere") : m_look.zoneName(zone);
            m_tabs.append({Zone, zone, name, tilesOfZones.value(zone)});
        }
    }
    if (m_notSold > 0)
        m_tabs.append({NotSold, 0, tr("Not now"), m_notSold});
    const auto same = std::find_if(m_tabs.begin(), m_tabs.end(), [&](const Tab& tab) {
        return tab.kind == before.kind && tab.zone == before.zone;
    });
    const bool isThere = same != m_tabs.end();
    m_tab = isThere ? static_cast<int>(same - m_tabs.begin()) : often > 0 ? 1 : 0;
    m_fitted.clear();
    m_shortNames.reset();
    emit tabsChanged();
    emit tabChanged();
}

QVariantList TileDesk::tabs() const
{
    QVariantList maps;
    for (const Tab& tab : m_tabs)
        maps.append(QVariantMap{{QStringLiteral("kind"), tab.kind},
                                {QStringLiteral("zone"), tab.zone},
                                {QStringLiteral("title"), tab.title},
                                {QStringLiteral("count"), tab.count}});
    return maps;
}

void TileDesk::setTab(int tab)
{
    if (tab < 0 || tab >= m_tabs.size())
        return;
    const bool wasSearching = std::exchange(m_isSearching, false);
    m_search.clear();
    if (m_tab == tab && !wasSearching)
        return;
    m_tab = tab;
    emit tabChanged();
    if (wasSearching)
        emit searchChanged();
    show();
}

void TileDesk::showFirstTab(int room)
{
    const bool isAllShown = m_tiles.size() <= room;
    const int all = m_tabs.first().kind == Often ? 1 : 0;
    setTab(isAllShown ? all : 0);
}

/// The tiles that were sold most; what was sold equally often stays in the order of the grid.
QVector<int> TileDesk::oftenSold() const
{
    QVector<QPair<int, int>> counts; // negative, and the row
    for (const int row : m_tiles) {
        const PassengerTypeItem& tile = *tileAt(row);
        const int sold =
            m_sold.value({tile.description(), {tile.fareProductName(), tile.toStopGroupId()}});
        if (sold > 0 && !tile.hasExpired())
            counts.append({-sold, row});
    }
    std::sort(counts.begin(), counts.end());
    QVector<int> rows;
    for (int i = 0; i < std::min(mostOften, static_cast<int>(counts.size())); ++i)
        rows.append(counts.at(i).second);
    return rows;
}

QVector<int> TileDesk::tilesOfTab(const Tab& tab) const
{
    QVector<int> rows;
    switch (tab.kind) {
    case Often:
        return oftenSold();
    case All:
        if (!m_keepsLayout)
            return m_tiles;
        for (int row = 0; row < (m_tiles.isEmpty() ? 0 : m_grid.rowCount()); ++row)
            rows.append(row);
        return rows;
    case Zone:
        std::copy_if(m_tiles.begin(), m_tiles.end(), std::back_inserter(rows),
                     [&](int row) { return tileAt(row)->toStopGroupId() == tab.zone; });
        return rows;
    case NotSold:
        break;
    }
    return rows;
}

void TileDesk::show() { replaceShown(m_isSearching ? found() : tilesOfTab(m_tabs.at(m_tab))); }

void TileDesk::replaceShown(const QVector<int>& rows)
{
    m_isFilled = false;
    emit filledChanged();
    beginResetModel();
    m_shown = rows;
    m_shownAt.fill(-1, m_grid.rowCount());
    for (int i = 0; i < rows.size(); ++i)
        m_shownAt[rows.at(i)] = i;
    endResetModel();
    m_isFilled = true;
    emit filledChanged();
    emit tilesChanged();
}

void TileDesk::setKeepsLayout(bool keepsLayout)
{
    if (m_keepsLayout == keepsLayout)
        return;
    m_keepsLayout = keepsLayout;
    emit keepsLayoutChanged();
    if (kind() == All && !m_isSearching)
        show();
}

// The model.

int TileDesk::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_shown.size();
}

QHash<int, QByteArray> TileDesk::roleNames() const
{
    QHash<int, QByteArray> names = m_grid.roleNames();
    names.insert(TileRole, "tile");
    names.insert(ZonesRole, "zones");
    names.insert(MarkRole, "mark");
    return names;
}

QVariant TileDesk::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= m_shown.size())
        return {};
    const int row = m_shown.at(index.row());
    switch (role) {
    case TileRole:
        return row;
    case ZonesRole:
        return m_texts.at(row).zones;
    case MarkRole:
        return m_texts.at(row).mark;
    default:
        return m_grid.data(m_grid.index(row, 0), role);
    }
}

void TileDesk::forward(const QModelIndex& first, const QModelIndex& last, const QVector<int>& roles)
{
    for (int row = first.row(); row <= last.row(); ++row) {
        const int shown = m_shownAt.value(row, -1);
        if (shown >= 0)
            emit dataChanged(index(shown), index(shown), roles);
    }
}

QVariantMap TileDesk::fit(const QString& text, double width, double height, int pixelSize,
                          int leastSize, int weight) const
{
    const QString key = QStringLiteral("%1 %2 %3 %4 %5 ")
                            .arg(width)
                            .arg(height)
                            .arg(pixelSize)
                            .arg(leastSize)
                            .arg(weight) +
                        text;
    QVariantMap& fit = m_fitted[key];
    if (fit.isEmpty()) {
        if (!m_shortNames)
            m_shortNames.emplace(names());
        QFont font = QGuiApplication::font();
        font.setPixelSize(pixelSize);
        font.setWeight(weight);
        const FittedText found = fitted(text, {width, height}, font, leastSize, *m_shortNames);
        fit = {{QStringLiteral("text"), found.text},
               {QStringLiteral("pixelSize"), found.pixelSize}};
    }
    return fit;
}

} // namespace rivo::terminal
