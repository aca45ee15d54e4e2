#pragma once

// Properties without a notify signal are part of the interface.
// clazy:excludeall=qproperty-without-notify

#include "GuiCoreExport.h"
#include "ListItem.h"
#include "QHashStaticInit.h"

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QVariant>

/// The role table of ShoppingItem.
struct GUICORE_EXPORT ShoppingItemRolesHandling
{
    /// Role number to the name that QML uses.
    static const rivo::models::QHashStaticInit<int, QByteArray> SHOPPING_ITEM_ROLES_HASH_TABLE;
};

/// One ticket of the sale in progress: what it is, how far its handling got, and the route and trip
/// of the sale. A row of ShoppingBasketModel.
///
/// Setters store and emit dataChanged() once if the value differs; the exceptions are noted. The
/// trip, the way of payment and isReturnFee are properties for QML, none with a notify signal: a
/// binding to one does not follow it. Only fromStopId, toStopId and isReturnFee refresh the row
/// when written.
class GUICORE_EXPORT ShoppingItem : public rivo::models::ListItem
{
    Q_OBJECT
    Q_PROPERTY(int routeId READ routeId WRITE setRouteId)
    Q_PROPERTY(int fromStopId READ fromStopId WRITE setFromStopId)
    Q_PROPERTY(int toStopId READ toStopId WRITE setToStopId)
    Q_PROPERTY(int currentStopId READ currentStopId WRITE setCurrentStopId)
    Q_PROPERTY(int tripsRouteId READ tripsRouteId WRITE setTripsRouteId)
    Q_PROPERTY(int tripsExecutionId READ tripsExecutionId WRITE setTripsExecutionId)
    Q_PROPERTY(
        QString publicRouteExecutionId READ publicRouteExecutionId WRITE setPublicRouteExecutionId)
    Q_PROPERTY(int payMethod READ payMethod WRITE setPayMethod)
    Q_PROPERTY(int ticketMaterialId READ ticketMaterialId WRITE setTicketMaterialId)
    Q_PROPERTY(int pasengerType READ pasengerType WRITE setPasengerType)
    Q_PROPERTY(int payChannel READ payChannel WRITE setPayChannel)
    Q_PROPERTY(bool isReturnFee READ isReturnFee WRITE setIsReturnFee)

public:
    /// Role numbers; QML uses the names in SHOPPING_ITEM_ROLES_HASH_TABLE.
    enum Role {
        IdRole = 257,
        PassengerTypeIdRole = 258,
        FareProductIdRole = 259,
        FromStopGroupIdRole = 260,
        ToStopGroupIdRole = 261,
        DescriptionRole = 262,
        FareProductNameRole = 263,
        ShoppingItemIconRole = 264,
        PriceRole = 265,
        AcceptedRole = 266,
        PrintedRole = 267,
        OriginRole = 268,
        DestinationRole = 269,
        IsReturnFeeRole = 270,
        IsDailyRole = 271
    };

    /// A ticket with empty texts, all integers -1 but routeId (-999999), price 0 and flags false.
    explicit ShoppingItem(QObject* parent = nullptr);

    /// Neither accepted nor printed yet, and without trip context: what the arguments do not give
    /// has its default.
    ShoppingItem(const int& id, const int& passengerTypeId, const int& fareProductId,
                 const int& fromStopGroupId, const int& toStopGroupId, const QString& description,
                 const QString& fareProductName, const QString& icon, const double& price,
                 const QString& origin, const QString& destination, const bool& isReturnFee,
                 const bool& isDaily, QObject* parent);

    ~ShoppingItem() override;

    int id() const override; ///< number of the ticket in its basket; need not be unique
    QVariant data(int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    int passengerTypeId() const { return m_passengerTypeId; }
    int fareProductId() const { return m_fareProductId; }
    int fromStopGroupId() const { return m_fromStopGroupId; } ///< origin zone
    int toStopGroupId() const { return m_toStopGroupId; }     ///< destination zone
    QString description() const { return m_description; }
    QString fareProductName() const { return m_fareProductName; }
    QString icon() const { return m_icon; }               ///< URL; role "shoppingItemIcon"
    double price() const { return m_price; }              ///< currency units
    QString origin() const { return m_origin; }           ///< name of the stop or zone
    QString destination() const { return m_destination; } ///< name of the stop or zone
    bool isReturnFee() const { return m_isReturnFee; }
    bool isDaily() const { return m_isDaily; }
    bool accepted() const
    {
        return m_accepted;
    } ///< set by the application while the ticket is handled
    bool printed() const
    {
        return m_printed;
    } ///< set by the application while the ticket is handled
    int routeId() const { return m_routeId; } ///< -999999 without trip context
    int fromStopId() const { return m_fromStopId; }
    int toStopId() const { return m_toStopId; }
    int currentStopId() const { return m_currentStopId; } ///< of the trip context at the sale
    int tripsRouteId() const { return m_tripsRouteId; }
    int tripsExecutionId() const { return m_tripsExecutionId; }
    // Numbers of the application; -1 until it sets them.
    int payMethod() const { return m_payMethod; }
    int ticketMaterialId() const { return m_ticketMaterialId; }
    int pasengerType() const { return m_pasengerType; } ///< spelt as QML binds to it
    int payChannel() const { return m_payChannel; }
    /// Empty for a dynamic trip.
    QString publicRouteExecutionId() const { return m_publicRouteExecutionId; }

    void setPassengerTypeId(const int& value);
    void setFareProductId(const int& value);
    void setFromStopGroupId(const int& value);
    void setToStopGroupId(const int& value);
    void setDescription(const QString& value);
    void setFareProductName(const QString& value);
    void setIcon(const QString& value);
    void setPrice(const double& value); ///< compares exactly: every change is announced
    void setAccepted(const bool& value);
    void setPrinted(const bool& value);
    void setOrigin(const QString& value);
    void setDestination(const QString& value);
    void setIsReturnFee(const bool& value);
    void setIsDaily(const bool& value);
    void setFromStopId(const int& value);
    void setToStopId(const int& value);

    // Silent: these always store and never emit.
    void setRouteId(int value);
    void setCurrentStopId(int value);
    void setTripsRouteId(int value);
    void setTripsExecutionId(int value);
    void setPublicRouteExecutionId(QString value);
    void setPayMethod(int value);
    void setTicketMaterialId(int value);
    void setPasengerType(int value);
    void setPayChannel(int value);

private:
    int m_id = -1;
    int m_passengerTypeId = -1;
    int m_fareProductId = -1;
    int m_fromStopGroupId = -1;
    int m_toStopGroupId = -1;
    QString m_description = QLatin1String("");
    QString m_fareProductName = QLatin1String("");
    QString m_icon = QLatin1String("");
    double m_price = 0.0;
    QString m_origin = QLatin1String("");
    QString m_destination = QLatin1String("");
    bool m_isReturnFee = false;
    bool m_isDaily = false;
    bool m_accepted = false;
    bool m_printed = false;
    int m_routeId = -999999;
    int m_fromStopId = -1;
    int m_toStopId = -1;
    int m_currentStopId = -1;
    int m_tripsRouteId = -1;
    int m_tripsExecutionId = -1;
    int m_payMethod = -1;
    int m_ticketMaterialId = -1;
    int m_pasengerType = -1;
    int m_payChannel = -1;
    QString m_publicRouteExecutionId = QLatin1String("");
};
