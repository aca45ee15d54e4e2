#pragma once

#include "PassengerTypesModel.h"

#include <QRegularExpression>
#include <QString>
#include <QStringList>
#include <QVector>

#include <utility>

/// A product with named fields:
///
///     Product("PT_ADULT").named("Single").toZone(3).at(5).addTo(model);
class Product
{
public:
    explicit Product(QString typeCode) : m_typeCode(std::move(typeCode)) {}

    // clang-format off
    Product& typeId(int id) { m_typeId = id; return *this; }
    Product& described(const QString& description) { m_description = description; return *this; }
    Product& icon(const QString& icon) { m_icon = icon; return *this; }
    Product& price(double price) { m_price = price; return *this; }
    Product& id(int fareProductId) { m_fareProductId = fareProductId; return *this; }
    Product& named(const QString& name) { m_name = name; return *this; }
    Product& returnFee(bool isReturnFee = true) { m_isReturnFee = isReturnFee; return *this; }
    Product& fromZone(int zone) { m_fromZone = zone; return *this; }
    Product& toZone(int zone) { m_toZone = zone; return *this; }
    Product& color(const QString& color) { m_color = color; return *this; }
    Product& expired(bool hasExpired = true) { m_hasExpired = hasExpired; return *this; }
    Product& discount(double discount) { m_discount = discount; return *this; }
    Product& daily(bool isDaily = true) { m_isDaily = isDaily; return *this; }
    Product& at(int position) { m_position = position; return *this; }
    // clang-format on

    void addTo(PassengerTypesModel& model) const
    {
        model.addItem(m_typeId, m_description, m_typeCode, m_icon, m_price, m_fareProductId, m_name,
                      m_isReturnFee, m_fromZone, m_toZone, m_color, m_hasExpired, m_discount,
                      m_isDaily, m_position);
    }

private:
    QString m_typeCode;
    int m_typeId = 1;
    QString m_description = "a passenger type";
    QString m_icon;
    double m_price = 1.0;
    int m_fareProductId = 1;
    QString m_name = "a product";
    bool m_isReturnFee = false;
    int m_fromZone = 0;
    int m_toZone = 1;
    QString m_color;
    bool m_hasExpired = false;
    double m_discount = 0.0;
    bool m_isDaily = false;
    int m_position = -1;
};

/// Type-code text of a passenger type number; a text that no type has for any other number.
inline QString typeText(int code)
{
    return PassengerTypesModel::codeMap.key(static_cast<PassengerTypesModel::PassengerType>(code),
                                            "PT_UNKNOWN");
}

inline QStringList typeTexts(const QVector<int>& codes)
{
    QStringList texts;
    for (const int code : codes)
        texts.append(typeText(code));
    return texts;
}

/// Products from a line such as "1a 3b>7 8c@5 1d#2 9e!", each with its passenger type number and
/// letters, which together are its name, and then, as needed and in this order, "#" its product
/// number, ">" its zone, "@" its position, "!" for a daily one. Without: numbers from 1 in the
/// order of the line, zone 1, no position.
inline QVector<Product> productsFrom(const QString& line)
{
    static const QRegularExpression pattern(
        R"(^((\d+)[a-z]*)(?:#(-?\d+))?(?:>(-?\d+))?(?:@(-?\d+))?(!?)$)");
    QVector<Product> products;
    for (const QString& word : line.split(' ', Qt::SkipEmptyParts)) {
        const QRegularExpressionMatch match = pattern.match(word);
        if (!match.hasMatch())
            qFatal("\"%s\" is no product", qPrintable(word));
        const auto number = [&match](int group, int otherwise) {
            return match.captured(group).isEmpty() ? otherwise : match.captured(group).toInt();
        };
        products.append(Product(typeText(number(2, 0)))
                            .named(match.captured(1))
                            .id(number(3, products.size() + 1))
                            .toZone(number(4, 1))
                            .at(number(5, -1))
                            .daily(!match.captured(6).isEmpty()));
    }
    return products;
}

inline void addProducts(PassengerTypesModel& model, const QString& line)
{
    for (const Product& product : productsFrom(line))
        product.addTo(model);
}
