#include "PassengerTypes.h"

#include <algorithm>
#include <array>
#include <set>

namespace rivo::feed
{

namespace
{

struct PassengerType
{
    const char* text;
    int number;
};

// The catalogue of GuiCore's PassengerTypesModel, which the readers do not link: they serve
// programs without models too. A test holds the two together.
constexpr std::array<PassengerType, 8> passengerTypes = {{
    {"PT_ADULT", 1},
    {"PT_STUDENT_1", 3},
    {"PT_SCHOOLBOY", 4},
    {"PT_DISABLED", 5},
    {"PT_MILITARY_1", 7},
    {"PT_LFS", 8},
    {"PT_STUDENT_2", 9},
    {"PT_MILITARY_2", 10},
}};

} // namespace

int passengerTypeNumber(const QString& text)
{
    const auto* const type =
        std::find_if(passengerTypes.begin(), passengerTypes.end(),
                     [&](const auto& entry) { return text == QLatin1String(entry.text); });
    return type == passengerTypes.end() ? 0 : type->number;
}

QStringList passengerTypeTexts()
{
    QStringList texts;
    for (const PassengerType& type : passengerTypes)
        texts.append(QLatin1String(type.text));
    return texts;
}

QStringList passengerTypesOf(const QVector<FeedProduct>& products)
{
    QStringList texts;
    std::set<QString> seen;
    for (const FeedProduct& product : products) {
        if (seen.insert(product.passengerTypeCode).second)
            texts.append(product.passengerTypeCode);
    }
    std::stable_sort(texts.begin(), texts.end(), [](const QString& left, const QString& right) {
        return passengerTypeNumber(left) < passengerTypeNumber(right);
    });
    return texts;
}

QStringList distinctTypes(const QStringList& texts)
{
    QStringList distinct;
    std::set<int> seen;
    for (const QString& text : texts) {
        if (seen.insert(passengerTypeNumber(text)).second)
            distinct.append(text);
    }
    return distinct;
}

} // namespace rivo::feed
