#pragma once

#include "GuiCoreExport.h"
#include "ListItem.h"
#include "QHashStaticInit.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>
#include <QVariant>

/// The role table of FareProductItem.
struct GUICORE_EXPORT FareProductItemRolesHandling
{
    /// Role number to the name that QML uses.
    static const rivo::models::QHashStaticInit<int, QByteArray> PASSENGER_TYPE_ROLES_HASH_TABLE;
};

/// One entry of the fare product catalogue. A row of FareProductsModel.
///
/// Setters store and emit dataChanged() once if the value differs.
class GUICORE_EXPORT FareProductItem : public rivo::models::ListItem
{
    Q_OBJECT

public:
    /// Role numbers; QML uses the names in PASSENGER_TYPE_ROLES_HASH_TABLE. 258 is not used.
    enum Role {
        FareProductIdRole = 257,
        DescriptionRole = 259,
        ProductFairIconRole = 260,
        PriceRole = 261,
        DiscountRole = 262,
        FreeReturnRole = 263,
        PaperTicketRole = 264,
        TotalInBasketRole = 265
    };

    /// An entry with empty texts and lists, identifier -1, amounts 0 and flags false.
    explicit FareProductItem(QObject* parent = nullptr);

    /// All fields in their order.
    FareProductItem(const int& id, const QString& description, const QString& icon,
                    const double& price, const double& discount, const bool& freeReturn,
                    const bool& paperTicket, const QList<QVariant>& passengerTypes,
                    const QList<QVariant>& ticketMaterial, const QList<QVariant>& paymentMethod,
                    const QList<QVariant>& paymentChannel, const int& totalInBasket,
                    QObject* parent);

    ~FareProductItem() override;

    int id() const override; ///< fare product identifier; role "fareProductId"
    QVariant data(int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    QString description() const { return m_description; }
    QString icon() const { return m_icon; }  ///< URL; role "productFairIcon", so spelt in QML too
    double price() const { return m_price; } ///< currency units
    double discount() const { return m_discount; }     ///< as stated; not computed with here
    bool freeReturn() const { return m_freeReturn; }   ///< the way back is included
    bool paperTicket() const { return m_paperTicket; } ///< there is one on paper

    // What the product may be combined with: identifiers of types that the application chooses.
    // They have no role, but a change of them refreshes the row.
    QList<QVariant> passengerTypes() const { return m_passengerTypes; }
    QList<QVariant> ticketMaterial() const { return m_ticketMaterial; }
    QList<QVariant> paymentMethod() const { return m_paymentMethod; }
    QList<QVariant> paymentChannel() const { return m_paymentChannel; }

    int totalInBasket() const { return m_totalInBasket; } ///< tickets of this product in the basket

    void setDescription(const QString& value);
    void setIcon(const QString& value);
    void setPrice(const double& value);    ///< compares fuzzily
    void setDiscount(const double& value); ///< compares fuzzily
    void setFreeReturn(const bool& value);
    void setPaperTicket(const bool& value);
    void setTotalInBasket(const int& value);

    // Lists are equal if they hold equal values in the same order. Equality is QVariant's, which
    // finds "1" and 1 equal.
    void setPassengerTypes(const QList<QVariant>& value);
    void setTicketMaterial(const QList<QVariant>& value);
    void setPaymentMethod(const QList<QVariant>& value);
    void setPaymentChannel(const QList<QVariant>& value);

private:
    int m_id = -1;
    QString m_description = QLatin1String("");
    QString m_icon = QLatin1String("");
    double m_price = 0.0;
    double m_discount = 0.0;
    bool m_freeReturn = false;
    bool m_paperTicket = false;
    QList<QVariant> m_passengerTypes;
    QList<QVariant> m_ticketMaterial;
    QList<QVariant> m_paymentMethod;
    QList<QVariant> m_paymentChannel;
    int m_totalInBasket = 0;
};
