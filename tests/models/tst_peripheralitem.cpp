#include "ItemBattery.h"
#include "PeripheralFields.h"

#include <QSignalSpy>
#include <QTest>

using rivo::models::ListItem;

namespace
{

/// The members of a device.
struct Members : ListItem
{
    int id;
    QString name;
    unsigned int identity;
    QString icon;
    bool warning;
    bool blueWarning;
    bool yellowWarning;
    bool error;
    int deviceState;
    QString stateStr;
};

ItemUnderTest peripheralItem()
{
    return itemUnderTest<PeripheralItem, Members>(
        peripheralItemClass(),
        {{257, "id"},
         {258, "peripheralName"},
         {259, "identity"},
         {260, "iconSource"},
         {261, "warning"},
         {262, "blueWarning"},
         {263, "yellowWarning"},
         {264, "error"},
         {265, "deviceState"},
         {266, "stateStr"}},
        PeripheralItemRolesHandling::PERIPHERAL_ROLES_HASH_TABLE.hash,
        {"PeripheralItem::PeripheralItem(QObject*)",
         "PeripheralItem::PeripheralItem(int const&, QString const&, unsigned int const&, "
         "QString const&, bool, bool, bool, bool, int const&, QString, QObject*)"});
}

} // namespace

class TestPeripheralItem : public ItemBattery
{
    Q_OBJECT

public:
    TestPeripheralItem() : ItemBattery(peripheralItem()) {}

private slots:
    void aDeviceThatNobodyHasReportedOnShowsEveryWarningAndTheError()
    {
        compare(PeripheralItem(), {-1, "", 0U, "", true, true, true, true, 0, ""});
    }

    void aWarningIsTakenBackOnce()
    {
        PeripheralItem device;
        QSignalSpy changes(&device, &ListItem::dataChanged);
        device.setWarning(false);
        QCOMPARE(changes.count(), 1);
        device.setWarning(false);
        QCOMPARE(changes.count(), 1);
        compare(device, {-1, "", 0U, "", false, true, true, true, 0, ""});
    }

    void identityNumbersAreUnsigned()
    {
        PeripheralItem device;
        QSignalSpy changes(&device, &ListItem::dataChanged);
        device.setIdentity(4294967295U);
        QCOMPARE(changes.count(), 1);
        const QVariant identity = device.data(259);
        QCOMPARE(identity.userType(), int(QMetaType::UInt));
        QCOMPARE(identity.toLongLong(), 4294967295LL);
        QCOMPARE(identity.toString(), "4294967295");
    }
};

QTEST_GUILESS_MAIN(TestPeripheralItem)

#include "tst_peripheralitem.moc"
