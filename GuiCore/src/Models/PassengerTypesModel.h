#pragma once

#include "GuiCoreExport.h"
#include "ListModel.h"
#include "sProduct.h"

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVector>

class ZoneIndex;

/// The selection grid: every sellable combination of a passenger type and a fare product, shown
/// by QML as numberOfColumns x numberOfRows tiles (rows of the model, row by row).
///
/// Use: setSupportedPassengerTypeCodes() at some point; then for each product list clearData(),
/// addItem() per product, sortAndRegroup(). Records become tiles only in sortAndRegroup(), which
/// appends PassengerTypeItem rows that are QObject children of this model.
///
/// Grid slots are numbered row by row from 0; back-office positions likewise from 1. A zone is a
/// destination stop group (sProduct::toStopGroupId). numberOfRows counts the rows of each zone's
/// largest type (9, 10 and 0 do not count) and one per daily product; it need not be tiles /
/// columns.
///
/// Layouts, checks and reOrder() are safe for any numbers: a column count of 0 counts as one column
/// wherever the layout divides by it, negative ones give no columns of use but no harm. A slot
/// connected to one of the signals may call back into the model in the middle of a layout (but not
/// delete it); that is safe, but what the grid then shows depends on the moment: lay it out anew.
class GUICORE_EXPORT PassengerTypesModel : public rivo::models::ListModel
{
    Q_OBJECT
    Q_PROPERTY(int numberOfColumns READ numberOfColumns WRITE setNumberOfColumns NOTIFY
                   numberOfColumnsChanged)
    Q_PROPERTY(int numberOfRows READ numberOfRows WRITE setNumberOfRows NOTIFY numberOfRowsChanged)
    Q_PROPERTY(bool logFareProducts READ logFareProducts WRITE setLogFareProducts NOTIFY
                   logFareProductsChanged)
    Q_PROPERTY(bool logExtraFareProducts READ logExtraFareProducts WRITE setLogExtraFareProducts
                   NOTIFY logExtraFareProductsChanged)

public:
    /// Passenger types; 0 stands for an unknown one. 2 and 6 are not used.
    enum PassengerType : int {
        PT_ADULT = 1,
        PT_STUDENT_1 = 3,
        PT_SCHOOLBOY = 4,
        PT_DISABLED = 5,
        PT_MILITARY_1 = 7,
        PT_LFS = 8,
        PT_STUDENT_2 = 9,
        PT_MILITARY_2 = 10
    };
    Q_ENUM(PassengerType)

    /// Type-code text ("PT_ADULT" ...) to number; case-sensitive, value() of an unknown text is 0.
    static const QMap<QString, PassengerType> codeMap;
    /// Number to icon URL. Look up with the adult icon as default, as addItemsToModel() does.
    static const QMap<PassengerType, QString> iconMap;

    /// Largest back-office position that is laid out, and the most placeholders that fill the last
    /// grid row.
    static constexpr int maximumGridSlots = 100000;

    /// Reads the configuration in ProjectLink/ of the home directory: the display order of
    /// passenger types (once, and logs it) and whether the log levels hold "log_fareproducts"
    /// (followed from then on). Checks once for the marker file "debug" in the temporary directory.
    ///
    /// A prototype tile becomes a child of `parent`, which must outlive the model's last use;
    /// without a parent the prototype is never freed.
    explicit PassengerTypesModel(QObject* parent = nullptr);
    ~PassengerTypesModel() override;

    int numberOfColumns() const { return m_numberOfColumns; }  ///< grid columns; 3 at first
    int numberOfRows() const { return m_numberOfRows; }        ///< grid rows; 0 at first
    bool logFareProducts() const { return m_logFareProducts; } ///< write product dumps to the log
    /// Extra diagnostics wanted: for QML and the application, not read by the library.
    bool logExtraFareProducts() const { return m_logExtraFareProducts; }

    // Each stores the value and emits its signal if it differs.
    void setNumberOfColumns(int numberOfColumns);
    void setNumberOfRows(int numberOfRows);
    void setLogFareProducts(bool logFareProducts);
    void setLogExtraFareProducts(bool logExtraFareProducts);

    /// Collects one product for the next layout; no row appears and nothing is emitted.
    /// `passengerTypeCode` is a text of codeMap, any other becomes type 0. `price` is in currency
    /// units, `pos` the back-office position counted from 1, -1 if none. Daily products are kept
    /// apart and laid out after the grid. The other values are those of sProduct.
    void addItem(const int& passengerTypeId, const QString& description,
                 const QString& passengerTypeCode, const QString& icon, const double& price,
                 const int& fareProductId, QString fareProductName, const bool& isReturnFee,
                 const int& fromStopGroupId, const int& toStopGroupId, QString fareProductColor,
                 const bool& hasExpired, const double& fareDiscount, const bool& isDaily, int pos);

    /// Appends one tile per record, in order, nothing filtered. A record without an icon gets that
    /// of its passenger type. Each tile becomes a child of the model and is an insertion of its own
    /// with its own countChanged().
    void addItemsToModel(const QVector<sProduct>& products);

    /// Name of the first tile with that fare product; a null string if there is none.
    QString getFareProductName(int fareProductId);

    /// Removes all tiles, as clear() does, and forgets all collected products. Grid size, type
    /// codes and log switches stay.
    void clearData();

    /// Selects or deselects one tile; its dataChanged() follows if that is a change. Other tiles
    /// stay as they are; a row out of range or of another class is ignored.
    Q_INVOKABLE void setSelected(const int& iRow, const bool&);

    /// Number of tiles that have not expired; placeholders are expired.
    Q_INVOKABLE int getNumberOfNonExpiredProducts();

    /// Sorts the tiles by price, always descending whatever `order` says; the last tile keeps its
    /// place. Emits nothing, like every sort of ListModel.
    void sortByPrice(Qt::SortOrder order);

    /// Logs one line per record while logFareProducts is on.
    void printProducts(const QVector<sProduct>& products);

    /// Sets the passenger types that the terminal sells to (texts of codeMap, others count as type
    /// 0) and completes the display order by those that the configuration forgot; without a
    /// configured order it becomes the supported types, ascending. A configured order of the same
    /// length is trusted as it stands. Logs what it adds; emits nothing.
    void setSupportedPassengerTypeCodes(QStringList const& codes);

    /// Lays the grid out, by back-office positions if any product has one, otherwise zone by zone
    /// with one column per passenger type; then the daily products. `codes` are the passenger
    /// types of the zone layout. `columns` 0 lets the model choose: the number of types of the
    /// previous zone layout if that is 1 to 4, otherwise 3. Appends rows without clearing: call
    /// clearData() before the products are added. Emits numberOfColumnsChanged(),
    /// numberOfRowsChanged() and the insertions on the way.
    void sortAndRegroup(QStringList const& codes, int const& columns);

    // Steps of the layout, called by sortAndRegroup().

    /// Any `pos` other than -1.
    bool hasBackendAssignedSortingToProducts(QVector<sProduct> const& products);
    /// Two products share a `pos`; -1 counts like any other value.
    bool checkForPosDuplicates(QVector<sProduct> const& products);
    /// No `pos` of -1.
    bool hasBackendAssignedPosToProduct(QVector<sProduct> const& products);
    /// Any `pos` of 0.
    bool hasBackendAssignedPosToZero(QVector<sProduct> const& products);
    /// Any `pos` below -1 or above maximumGridSlots.
    static bool hasBackendAssignedPosOutOfRange(QVector<sProduct> const& products);

    /// Appends the products by position: holes in the numbering and the rest of the last row become
    /// placeholders, unless the rest is more than maximumGridSlots. numberOfRows comes before the
    /// tiles. Duplicate, missing and 0 positions are logged, those out of range as missing, and the
    /// products are appended in position order as they are; numberOfRows comes after them. The
    /// products stay sorted, with a placeholder in front if position 1 is missing. Then the daily
    /// products, by zone. Without products only those are laid out.
    void sortBasedOnBackendAssignment();

    /// Appends the products zone by zone for the passenger types `codes`, then the daily products.
    /// numberOfRows starts from 0 and grows with each zone. The products stay sorted by fare
    /// product and zone.
    void sortBasedOnLocalData(QStringList const& codes);

    /// Appends the block of one zone to the grouped products and raises numberOfRows by its rows,
    /// for the passenger types of the last zone layout; nothing happens for a zone without
    /// products. If the slots of getIndeces() are no permutation, the block stays sorted by type.
    void sortAndGroupProductsForZone(int const& zone);

    /// Slots for the products of a zone, from their passenger types (ascending): per distinct type
    /// one run column, column + W, ... of length (size of `codes`) / W, at least one, W being
    /// numberOfColumns. The column is the type's place in the display order (without the types that
    /// the layout is not made for, unless it has as many entries as there are distinct types),
    /// otherwise the first of 0 to 3 that no other type has, otherwise -1. Notes left-out types,
    /// and the slots while logFareProducts is on, on standard output. Memory: distinct types x
    /// length of the runs.
    QVector<int> getIndeces(QVector<int> codes);

    /// Moves the product at k to place indices[k], for every k, in place; `indices` ends as 0, 1,
    /// 2, ... Nothing happens unless both lists are equally long and `indices` holds each of 0 ..
    /// length - 1 once.
    void reOrder(QVector<sProduct>& products, QVector<int>& indices);

signals:
    void numberOfColumnsChanged(int numberOfColumns);
    void numberOfRowsChanged(int numberOfRows);
    void logFareProductsChanged();
    void logExtraFareProductsChanged();

private:
    int divisorColumns() const;
    void raiseNumberOfRows(int rows);
    const char* objectionToPositions();
    void appendProductsAsTheyAre();
    QVector<sProduct> arrangeByPosition();
    void appendDailyProducts();
    QVector<int> localPartOfOrder() const;
    Q_DECL_HIDDEN void groupZone(int zone, ZoneIndex& index);

    QVector<sProduct> m_products;
    QVector<sProduct> m_dailyProducts;
    QVector<sProduct> m_groupedProducts;
    int m_numberOfColumns = 3;
    QVector<int> m_supportedTypeCodes;
    QVector<int> m_typeCodesOrder;
    QVector<int> m_localTypeCodes;
    bool m_logFareProducts = false;
    int m_numberOfRows = 0;
    bool m_logExtraFareProducts = false;
};
