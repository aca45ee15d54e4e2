#pragma once

#include "ShortNames.h"

#include <QAbstractListModel>
#include <QHash>
#include <QMap>
#include <QStringList>
#include <QVariantList>
#include <QVector>

#include <functional>
#include <optional>

class PassengerTypeItem;
class PassengerTypesModel;

namespace rivo::terminal
{

/// What else a product says of itself, for tiles that look alike without it: the first texts in
/// which they differ are shown.
using TileDetails = std::function<QStringList(const PassengerTypeItem& tile, int which)>;

/// How tiles are shown, and in which order.
struct TileLook
{
    std::function<QString(int zone)> zoneName;
    std::function<QString(int from, int to)> zonesText;
    /// What a price is in the smallest units that are shown.
    std::function<qint64(double units)> minorUnits;
    /// The zone where a ticket of the tile begins.
    std::function<int(const PassengerTypeItem& tile)> originOf;
    TileDetails details;
    /// Zones that the trip still reaches, the next one first.
    std::function<QVector<int>()> zonesAhead;
};

/// The tiles of the selection grid that are on the screen: all of them, those of one tab, or those
/// that a search finds.
///
/// A list of its own beside the grid, whose rows stay as they are: it has the roles of the grid,
/// and more. It is reset as a whole when the tiles or the choice of them change.
class TileDesk : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY tilesChanged)
    Q_PROPERTY(bool filled READ isFilled NOTIFY filledChanged)
    Q_PROPERTY(QVariantList tabs READ tabs NOTIFY tabsChanged)
    Q_PROPERTY(int tab READ tab WRITE setTab NOTIFY tabChanged)
    Q_PROPERTY(rivo::terminal::TileDesk::Kind kind READ kind NOTIFY tabChanged)
    Q_PROPERTY(bool searching READ isSearching WRITE setSearching NOTIFY searchChanged)
    Q_PROPERTY(QString search READ search WRITE setSearch NOTIFY searchChanged)
    Q_PROPERTY(QStringList letters READ letters NOTIFY searchChanged)
    Q_PROPERTY(bool keepsLayout READ keepsLayout WRITE setKeepsLayout NOTIFY keepsLayoutChanged)

public:
    enum Kind {
        Often,  ///< what was sold most, the first of it first
        All,    ///< the grid
        Zone,   ///< what leads to one zone
        NotSold ///< no tiles: what is not sold here and now
    };
    Q_ENUM(Kind)

    enum Role {
        TileRole = 300, ///< row of the grid
        ZonesRole,      ///< "from → to", by name
        MarkRole        ///< how the tile differs from others that look alike; usually empty
    };

    /// Tiles on the tab of what is sold often.
    static constexpr int mostOften = 24;

    /// `grid` outlives the desk. It shows nothing before layOut().
    TileDesk(PassengerTypesModel& grid, TileLook look, QObject* parent = nullptr);

    /// Call before the rows of the grid change: there are no tiles until layOut().
    void clear();
    /// Call when the grid was laid out. The tab stays if there is one for its zone.
    void layOut();
    /// Call when origins may have changed.
    void nameZones();

    /// Counts tickets that were sold, by what they are and not where they begin. The tab of what is
    /// sold often has them when it is shown next.
    void countSold(const QString& passenger, const QString& product, int toZone, int tickets = 1);

    /// How many products are not sold here and now; a tab has them if there are any. Call before
    /// layOut().
    void setNotSold(int products) { m_notSold = products; }

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;
    int count() const { return m_shown.size(); }
    /// False while the rows are replaced. A view has to let go of the model then: Qt's views
    /// complain of a reset while they load rows.
    bool isFilled() const { return m_isFilled; }

    /// Maps of kind, zone, title and count, in the order of the trip.
    QVariantList tabs() const;
    int tab() const { return m_tab; }
    Kind kind() const { return m_tabs.at(m_tab).kind; }
    void setTab(int tab); ///< ends a search; an unknown one is ignored
    /// The tab to begin with: all tiles if they are no more than `room`, otherwise what is sold
    /// often, if anything was sold.
    Q_INVOKABLE void showFirstTab(int room);

    bool isSearching() const { return m_isSearching; }
    void setSearching(bool isSearching); ///< begins with an empty text
    /// Begin of a word of the passenger, the product or a zone, in any writing of its letters.
    QString search() const { return m_search; }
    void setSearch(const QString& text);
    /// The letters that lead to tiles when they are added to the search.
    QStringList letters() const;

    /// Whether all tiles keep the columns of the grid, with its placeholders.
    bool keepsLayout() const { return m_keepsLayout; }
    void setKeepsLayout(bool keepsLayout);

    /// How a text of a tile is shown in a room: {text, pixelSize}. Smaller than `pixelSize`, but
    /// not than `leastSize`; shortened only if that is not enough, and never where it differs from
    /// the texts of other tiles. `weight` is that of QFont.
    Q_INVOKABLE QVariantMap fit(const QString& text, double width, double height, int pixelSize,
                                int leastSize, int weight) const;

signals:
    void tilesChanged();
    void filledChanged();
    void tabsChanged();
    void tabChanged();
    void searchChanged();
    void keepsLayoutChanged();

private:
    struct Tab
    {
        Kind kind = All;
        int zone = 0;
        QString title;
        int count = 0;
    };
    struct Texts
    {
        QString zones;
        QString mark;
    };
    using SoldKey = QPair<QString, QPair<QString, int>>;

    const PassengerTypeItem* tileAt(int row) const;
    void readTexts();
    void markEqualTiles(const QVector<int>& rows);
    void makeTabs();
    QVector<int> zonesInOrder(const QHash<int, int>& tilesOfZones) const;
    QVector<int> oftenSold() const;
    QVector<int> tilesOfTab(const Tab& tab) const;
    QVector<int> found() const;
    QStringList wordsOf(int row) const;
    QStringList names() const;
    void show();
    void replaceShown(const QVector<int>& rows);
    void forward(const QModelIndex& first, const QModelIndex& last, const QVector<int>& roles);

    PassengerTypesModel& m_grid;
    const TileLook m_look;
    QVector<int> m_tiles;   ///< rows of the grid that are no placeholders
    QVector<Texts> m_texts; ///< by row of the grid
    QVector<int> m_shown;   ///< rows of the grid
    QVector<int> m_shownAt; ///< by row of the grid; -1 = not shown
    QVector<Tab> m_tabs{Tab()};
    int m_tab = 0;
    int m_notSold = 0;
    QHash<SoldKey, int> m_sold;
    bool m_isSearching = false;
    QString m_search;
    bool m_keepsLayout = true;
    bool m_isFilled = true;
    // What is read again only when the tiles change.
    mutable std::optional<ShortNames> m_shortNames;
    mutable QMap<QString, QStringList> m_words; ///< by text
    mutable QMap<QString, QVariantMap> m_fitted;
};

} // namespace rivo::terminal
