#pragma once

#include "GuiCoreExport.h"
#include "ListItem.h"
#include "QHashStaticInit.h"

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QVariant>

/// The role table of PeripheralItem.
struct GUICORE_EXPORT PeripheralItemRolesHandling
{
    /// Role number to the name that QML uses.
    static const rivo::models::QHashStaticInit<int, QByteArray> PERIPHERAL_ROLES_HASH_TABLE;
};

/// One device attached to the terminal. A row of PeripheralsModel; give it a QObject parent, best
/// the model.
///
/// Setters store and emit dataChanged() once if the value differs.
class GUICORE_EXPORT PeripheralItem : public rivo::models::ListItem
{
    Q_OBJECT

public:
    /// Role numbers; QML uses the names in PERIPHERAL_ROLES_HASH_TABLE.
    enum Role {
        IdRole = 257,
        PeripheralNameRole = 258,
        IdentityRole = 259,
        IconSourceRole = 260,
        WarningRole = 261,
        BlueWarningRole = 262,
        YellowWarningRole = 263,
        ErrorRole = 264,
        DeviceStateRole = 265,
        StateStrRole = 266
    };

    /// A device without any report yet: every warning and the error are on. Empty texts,
    /// identifier -1, identity and state 0.
    explicit PeripheralItem(QObject* parent = nullptr);

    /// All fields in their order.
    PeripheralItem(const int& id, const QString& name, const unsigned int& identity,
                   const QString& icon, bool warning, bool blueWarning, bool yellowWarning,
                   bool error, const int& deviceState, QString stateStr, QObject* parent);

    ~PeripheralItem() override;

    int id() const override; ///< of the caller's choice; need not be unique
    QVariant data(int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    QString name() const { return m_name; }              ///< role "peripheralName"
    unsigned int identity() const { return m_identity; } ///< identity number, up to 2^32 - 1
    QString icon() const { return m_icon; }              ///< URL; role "iconSource"
    bool warning() const { return m_warning; }
    bool blueWarning() const { return m_blueWarning; }
    bool yellowWarning() const { return m_yellowWarning; }
    bool error() const { return m_error; }
    int deviceState() const { return m_deviceState; } ///< a number of the application
    QString stateStr() const { return m_stateStr; }   ///< the state in words

    void setId(const int& value);
    void setName(const QString& value);
    void setIdentity(const unsigned int& value);
    void setIcon(const QString& value);
    void setWarning(const bool& value);
    void setBlueWarning(const bool& value);
    void setYellowWarning(const bool& value);
    void setError(const bool& value);
    void setDeviceState(const int& value);
    void setStateStr(const QString& value);

private:
    int m_id = -1;
    QString m_name = QLatin1String("");
    unsigned int m_identity = 0;
    QString m_icon = QLatin1String("");
    bool m_warning = true;
    bool m_blueWarning = true;
    bool m_yellowWarning = true;
    bool m_error = true;
    int m_deviceState = 0;
    QString m_stateStr = QLatin1String("");
};
