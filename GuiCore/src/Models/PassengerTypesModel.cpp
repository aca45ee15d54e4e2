#include "PassengerTypesModel.h"

#include "PassengerTypeItem.h"
#include "ProductDump_p.h"

#include <core/ConfigManager.h>
#include <core/JsonObjectFactory.h>
#include <core/Logging.h>
#include <core/SettingsConfig.h>

#include <QDir>
#include <QHash>
#include <QStandardPaths>

#include <utility>

using rivo::core::ConfigManager;
using rivo::core::SettingsConfig;

namespace
{

// clang-format off
const QJsonWrapper::JsonObjectFactory::JsonObjectRegistration<SettingsConfig> // clazy:exclude=non-pod-global-static
    settingsConfigRegistration(QStringLiteral("settingsConfig"));
// clang-format on

const QString adultIcon = QStringLiteral("qrc:/icons/adult.svg");

ConfigManager* configManager()
{
    return ConfigManager::instance(QDir::homePath(), QStringLiteral("ProjectLink/"));
}

/// Stores `value`; false if it is what was stored already.
template <typename T>
bool replace(T& field, const T& value)
{
    if (field == value)
        return false;
    field = value;
    return true;
}

bool wantsFareProducts(const QStringList& logLevels)
{
    return logLevels.contains(QLatin1String("log_fareproducts"), Qt::CaseSensitive);
}

} // namespace

const QMap<QString, PassengerTypesModel::PassengerType> PassengerTypesModel::codeMap{
    {QStringLiteral("PT_ADULT"), PT_ADULT},
    {QStringLiteral("PT_STUDENT_1"), PT_STUDENT_1},
    {QStringLiteral("PT_SCHOOLBOY"), PT_SCHOOLBOY},
    {QStringLiteral("PT_DISABLED"), PT_DISABLED},
    {QStringLiteral("PT_MILITARY_1"), PT_MILITARY_1},
    {QStringLiteral("PT_LFS"), PT_LFS},
    {QStringLiteral("PT_STUDENT_2"), PT_STUDENT_2},
    {QStringLiteral("PT_MILITARY_2"), PT_MILITARY_2},
};

const QMap<PassengerTypesModel::PassengerType, QString> PassengerTypesModel::iconMap{
    {PT_ADULT, adultIcon},
    {PT_STUDENT_1, QStringLiteral("qrc:/icons/student.svg")},
    {PT_SCHOOLBOY, QStringLiteral("qrc:/icons/school.svg")},
    {PT_DISABLED, QStringLiteral("qrc:/icons/wheelchair.svg")},
    {PT_MILITARY_1, QStringLiteral("qrc:/icons/soldier.svg")},
    {PT_LFS, QStringLiteral("qrc:/icons/family_large.svg")},
    {PT_STUDENT_2, QStringLiteral("qrc:/icons/student.svg")},
    {PT_MILITARY_2, QStringLiteral("qrc:/icons/soldier.svg")},
};

PassengerTypesModel::PassengerTypesModel(QObject* parent)
    : ListModel(new PassengerTypeItem(parent), parent)
{
    SettingsConfig* settings = configManager()->settingsConfig();
    setLogExtraFareProducts(!QStandardPaths::locate(QStandardPaths::TempLocation,
                                                    QStringLiteral("debug"),
                                                    QStandardPaths::LocateFile)
                                 .isEmpty());
    setLogFareProducts(wantsFareProducts(settings->getLogLevels()));
    connect(settings, &SettingsConfig::logLevelsChanged, this,
            [this](const QStringList& levels) { setLogFareProducts(wantsFareProducts(levels)); });

    const QList<QVariant> order = configManager()->settingsConfig()->passengerTypeCodesOrder();
    QString message;
    for (const QVariant& entry : order) {
        const QString text = entry.toString();
        const int code = codeMap.value(text);
        m_typeCodesOrder.append(code);
        message += QStringLiteral("[%1->%2],").arg(code).arg(text);
    }
    if (order.isEmpty())
        message = QStringLiteral("Products ordering in config is empty..");
    message.prepend(QLatin1String("TypeCodes Order: "));
    message.chop(1);
    LOG(INFO) << message;
}

PassengerTypesModel::~PassengerTypesModel() = default;

void PassengerTypesModel::setNumberOfColumns(int numberOfColumns)
{
    if (replace(m_numberOfColumns, numberOfColumns))
        emit numberOfColumnsChanged(numberOfColumns);
}

void PassengerTypesModel::setNumberOfRows(int numberOfRows)
{
    if (replace(m_numberOfRows, numberOfRows))
        emit numberOfRowsChanged(numberOfRows);
}

void PassengerTypesModel::setLogFareProducts(bool logFareProducts)
{
    if (replace(m_logFareProducts, logFareProducts))
        emit logFareProductsChanged();
}

void PassengerTypesModel::setLogExtraFareProducts(bool logExtraFareProducts)
{
    if (replace(m_logExtraFareProducts, logExtraFareProducts))
        emit logExtraFareProductsChanged();
}

void PassengerTypesModel::addItem(const int& passengerTypeId, const QString& description,
                                  const QString& passengerTypeCode, const QString& icon,
                                  const double& price, const int& fareProductId,
                                  QString fareProductName, const bool& isReturnFee,
                                  const int& fromStopGroupId, const int& toStopGroupId,
                                  QString fareProductColor, const bool& hasExpired,
                                  const double& fareDiscount, const bool& isDaily, int pos)
{
    sProduct product;
    product.passengerTypeId = passengerTypeId;
    product.description = description;
    product.passengerTypeCode = codeMap.value(passengerTypeCode);
    product.icon = icon;
    product.price = price;
    product.fareProductId = fareProductId;
    product.fareProductName = std::move(fareProductName);
    product.isReturnFee = isReturnFee;
    product.fromStopGroupId = fromStopGroupId;
    product.toStopGroupId = toStopGroupId;
    product.fareProductColor = std::move(fareProductColor);
    product.hasExpired = hasExpired;
    product.fareDiscount = fareDiscount;
    product.isDaily = isDaily;
    product.pos = pos;
    (isDaily ? m_dailyProducts : m_products).append(std::move(product));
}

void PassengerTypesModel::addItemsToModel(const QVector<sProduct>& products)
{
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): slots may change the list
    const QVector<sProduct> records = products;
    // One text for all rows of a type: to write it for each took a twelfth of a layout.
    QHash<int, QString> codes;
    for (const sProduct& record : records) {
        QString& code = codes[record.passengerTypeCode];
        if (code.isNull())
            code = QString::number(record.passengerTypeCode);
        const QString icon =
            record.icon.isEmpty()
                ? iconMap.value(static_cast<PassengerType>(record.passengerTypeCode), adultIcon)
                : record.icon;
        appendRow(new PassengerTypeItem(
            record.passengerTypeId, record.description, code, icon, record.price,
            record.fareProductId, record.fareProductName, 0, record.isReturnFee,
            record.fromStopGroupId, record.toStopGroupId, record.fareProductColor,
            record.hasExpired, record.fareDiscount, record.isDaily, record.pos, this));
    }
}

QString PassengerTypesModel::getFareProductName(int fareProductId)
{
    const QModelIndexList hits = match(index(0, 0), PassengerTypeItem::FareProductIdRole,
                                       QVariant(fareProductId), 1, Qt::MatchExactly);
    if (hits.isEmpty())
        return {};
    const auto* item = qobject_cast<PassengerTypeItem*>(rowAt(hits.first().row()));
    return item ? item->fareProductName() : QString();
}

void PassengerTypesModel::clearData()
{
    clear();
    m_products.resize(0);
    m_dailyProducts.resize(0);
    m_groupedProducts.resize(0);
}

void PassengerTypesModel::setSelected(const int& iRow, const bool& selected)
{
    if (auto* item = qobject_cast<PassengerTypeItem*>(rowAt(iRow)))
        item->setSelected(selected);
}

int PassengerTypesModel::getNumberOfNonExpiredProducts()
{
    int count = 0;
    for (int row = 0; row < rowCount(); ++row) {
        const auto* item = qobject_cast<PassengerTypeItem*>(rowAt(row));
        if (item && !item->hasExpired())
            ++count;
    }
    return count;
}

void PassengerTypesModel::sortByPrice(Qt::SortOrder order)
{
    Q_UNUSED(order)
    sortRangeByRole(0, Qt::DescendingOrder, 0, rowCount() - 1, PassengerTypeItem::PriceRole);
}

void PassengerTypesModel::printProducts(const QVector<sProduct>& products)
{
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): log callbacks may change it
    const QVector<sProduct> records = products;
    for (const sProduct& record : records) {
        if (m_logFareProducts)
            writeProduct(LOG(INFO), record) << " Pos: " << record.pos;
    }
}
