#pragma once

#include "GuiCoreExport.h"
#include "ListItem.h"
#include "QHashStaticInit.h"

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QVariant>

/// The role table of PassengerTypeItem.
struct GUICORE_EXPORT PassengerTypeItemRolesHandling
{
    /// Role number to the name that QML uses.
    static const rivo::models::QHashStaticInit<int, QByteArray> PASSENGER_TYPE_ROLES_HASH_TABLE;
};

/// One tile of the selection grid: a fare product for one passenger type, with the view's own
/// state `selected` and `totalInBasket`. A row of PassengerTypesModel.
///
/// Setters store and emit dataChanged() once if the value differs; the exceptions are noted.
class GUICORE_EXPORT PassengerTypeItem : public rivo::models::ListItem
{
    Q_OBJECT

public:
    /// Role numbers; QML uses the names in PASSENGER_TYPE_ROLES_HASH_TABLE.
    enum Role {
        PassengerTypeIdRole = 257,
        DescriptionRole = 258,
        FareProductIconRole = 259,
        PriceRole = 260,
        FareProductIdRole = 261,
        FareProductNameRole = 262,
        TotalInBasketRole = 263,
        IsReturnFeeRole = 264,
        FromStopGroupIdRole = 265,
        ToStopGroupIdRole = 266,
        FareProductColorRole = 267,
        HasExpiredRole = 268,
        FareDiscountRole = 269,
        SelectedRole = 270,
        IsDailyRole = 271,
        PosRole = 272
    };

    /// A tile with empty texts, identifiers and position -1, amounts 0 and flags false.
    explicit PassengerTypeItem(QObject* parent = nullptr);

    /// `code` is the PassengerType number as decimal text. A new tile is not selected.
    PassengerTypeItem(const int& id, const QString& description, const QString& code,
                      const QString& icon, const double& price, const int& fareProductId,
                      const QString& fareProductName, const int& totalInBasket,
                      const bool& isReturnFee, const int& fromStopGroupId, const int& toStopGroupId,
                      const QString& fareProductColor, const bool& hasExpired,
                      const double& fareDiscount, const bool& isDaily, int pos, QObject* parent);

    ~PassengerTypeItem() override;

    int id() const override; ///< passenger type identifier
    QVariant data(int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    QString description() const { return m_description; } ///< of the passenger type
    QString code() const { return m_code; }               ///< has no role: C++ only
    QString icon() const { return m_icon; }               ///< URL; role "fareProductIcon"
    double price() const { return m_price; }              ///< currency units
    int fareProductId() const { return m_fareProductId; }
    QString fareProductName() const { return m_fareProductName; }
    int totalInBasket() const { return m_totalInBasket; } ///< tickets of this tile in the basket
    bool isReturnFee() const { return m_isReturnFee; }
    int fromStopGroupId() const { return m_fromStopGroupId; }       ///< origin zone
    int toStopGroupId() const { return m_toStopGroupId; }           ///< destination zone
    QString fareProductColor() const { return m_fareProductColor; } ///< as in sProduct
    bool hasExpired() const { return m_hasExpired; } ///< no longer valid; true for placeholders
    double fareDiscount() const { return m_fareDiscount; } ///< as in sProduct
    bool selected() const { return m_selected; }
    bool isDaily() const { return m_isDaily; }
    int pos() const { return m_pos; } ///< back-office position, counted from 1; -1 if none

    void setId(const int& value);
    void setDescription(const QString& value);
    void setCode(const QString& value);
    void setIcon(const QString& value);
    void setPrice(const double& value); ///< compares fuzzily
    void setFareProductId(const int& value);
    void setFareProductName(const QString& value); ///< silent: stores, never emits
    void setTotalInBasket(const int& value);
    void setIsReturnFee(const bool& value);
    void setFromStopGroupId(const int& value);
    void setToStopGroupId(const int& value);
    void setFareProductColor(const QString& value);
    void setHasExpired(const bool& value);
    void setFareDiscount(const double& value); ///< compares exactly, unlike the price
    void setSelected(const bool& value);
    void setIsDaily(const bool& value);
    void setPos(const int& value);

private:
    int m_id = -1;
    QString m_description = QLatin1String("");
    QString m_code = QLatin1String("");
    QString m_icon = QLatin1String("");
    double m_price = 0.0;
    int m_fareProductId = -1;
    QString m_fareProductName = QLatin1String("");
    int m_totalInBasket = 0;
    bool m_isReturnFee = false;
    int m_fromStopGroupId = -1;
    int m_toStopGroupId = -1;
    QString m_fareProductColor = QLatin1String("");
    bool m_hasExpired = false;
    double m_fareDiscount = 0.0;
    bool m_selected = false;
    bool m_isDaily = false;
    int m_pos = -1;
};
