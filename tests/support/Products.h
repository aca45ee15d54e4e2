#pragma once

#include "PassengerTypesModel.h"

#include <QRegularExpression>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <algorithm>
#include <type_traits>

// Products as short texts: the number of the passenger type and letters, which together are the
// name, or a name in quotes; then, as needed and in this order, "#" the fare product number, ">"
// the zone, "@" the position, "!" for a daily product, and other fields in braces:
//
//     1a  3b>7  8c@5  1"Day ticket"#2  9e!  4f{price=2.5,description="",expired=true}
//
// Without: fare product numbers from 1 in the order of the line, zone 1, no position.

/// A product as an application adds it: the passenger type is a text.
struct NewProduct
{
    QString typeText;
    sProduct record;
};

inline void addItem(PassengerTypesModel& model, const NewProduct& product)
{
    const sProduct& record = product.record;
    model.addItem(record.passengerTypeId, record.description, product.typeText, record.icon,
                  record.price, record.fareProductId, record.fareProductName, record.isReturnFee,
                  record.fromStopGroupId, record.toStopGroupId, record.fareProductColor,
                  record.hasExpired, record.fareDiscount, record.isDaily, record.pos);
}

/// Type-code text of a passenger type number; a text that no type has for any other number.
inline QString typeText(int code)
{
    return PassengerTypesModel::codeMap.key(static_cast<PassengerTypesModel::PassengerType>(code),
                                            QStringLiteral("PT_UNKNOWN"));
}

inline QStringList typeTexts(const QVector<int>& codes)
{
    QStringList texts;
    for (const int code : codes)
        texts.append(typeText(code));
    return texts;
}

/// The product that stands at `place` of a line and has no more than a passenger type.
inline NewProduct usualProduct(int code, int place)
{
    NewProduct product{typeText(code), {}};
    product.record.passengerTypeId = 1;
    product.record.description = QStringLiteral("a passenger type");
    product.record.passengerTypeCode = code;
    product.record.price = 1.0;
    product.record.fareProductId = place + 1;
    product.record.fareProductName = QString::number(code) + QLatin1Char("abcdefghij"[place % 10]);
    product.record.toStopGroupId = 1;
    product.record.hasExpired = false;
    return product;
}

/// A field that a short text may name.
struct ProductField
{
    const char* name;
    QVariant (*get)(const sProduct&);
    void (*set)(sProduct&, const QVariant&);
};

template <auto member>
constexpr ProductField productField(const char* name)
{
    return {name, [](const sProduct& product) { return QVariant::fromValue(product.*member); },
            [](sProduct& product, const QVariant& value) {
                product.*member = value.value<std::decay_t<decltype(product.*member)>>();
            }};
}

/// All fields but the passenger type. The first five have signs of their own.
inline const QVector<ProductField> productFields{
    productField<&sProduct::fareProductName>("name"),
    productField<&sProduct::fareProductId>("#"),
    productField<&sProduct::toStopGroupId>(">"),
    productField<&sProduct::pos>("@"),
    productField<&sProduct::isDaily>("!"),
    productField<&sProduct::passengerTypeId>("typeId"),
    productField<&sProduct::description>("description"),
    productField<&sProduct::icon>("icon"),
    productField<&sProduct::price>("price"),
    productField<&sProduct::isReturnFee>("returnFee"),
    productField<&sProduct::fromStopGroupId>("from"),
    productField<&sProduct::fareProductColor>("color"),
    productField<&sProduct::hasExpired>("expired"),
    productField<&sProduct::fareDiscount>("discount")};

inline QString withoutQuotes(const QString& text)
{
    return text.startsWith('"') ? text.mid(1, text.size() - 2) : text;
}

inline void setNamedFields(NewProduct& product, const QString& texts)
{
    static const QRegularExpression pattern(R"re((\w+)=("[^"]*"|[^,]*),?)re");
    for (auto it = pattern.globalMatch(texts); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        const QString value = withoutQuotes(match.captured(2));
        if (match.captured(1) == "type")
            product.typeText = value;
        for (const ProductField& field : productFields) {
            if (match.captured(1) == field.name)
                field.set(product.record, value);
        }
    }
}

inline QVector<NewProduct> productsFrom(const QString& line)
{
    static const QRegularExpression pattern(
        R"re((-?\d+)([a-z]*|"[^"]*")(#-?\d+)?(>-?\d+)?(@-?\d+)?(!?)(?:\{([^}]*)\})?(?: +|$))re");
    QVector<NewProduct> products;
    int end = 0;
    for (auto it = pattern.globalMatch(line); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        if (match.capturedStart() != end)
            break;
        end = match.capturedEnd();
        NewProduct product = usualProduct(match.captured(1).toInt(), products.size());
        const QString name = match.captured(2);
        product.record.fareProductName =
            name.startsWith('"') ? withoutQuotes(name) : match.captured(1) + name;
        for (int field = 1; field < 4; ++field) {
            if (!match.captured(field + 2).isEmpty())
                productFields.at(field).set(product.record, match.captured(field + 2).mid(1));
        }
        product.record.isDaily = !match.captured(6).isEmpty();
        setNamedFields(product, match.captured(7));
        products.append(product);
    }
    if (end != line.size())
        qFatal("\"%s\" are no products", qPrintable(line.mid(end)));
    return products;
}

/// The short text of the product at `place` of a line.
inline QString shortText(const NewProduct& product, int place)
{
    const NewProduct usual = usualProduct(product.record.passengerTypeCode, place);
    const sProduct& record = product.record;
    const QString code = QString::number(record.passengerTypeCode);
    const bool isPlain =
        QRegularExpression('^' + code + "[a-z]*$").match(record.fareProductName).hasMatch();
    QString text = isPlain ? record.fareProductName : code + '"' + record.fareProductName + '"';
    QStringList named;
    if (product.typeText != usual.typeText)
        named.append("type=\"" + product.typeText + '"');
    for (int field = 1; field < productFields.size(); ++field) {
        const QVariant value = productFields.at(field).get(record);
        if (value == productFields.at(field).get(usual.record))
            continue;
        const QString name = productFields.at(field).name;
        if (field < 5)
            text += name + (field < 4 ? value.toString() : QString());
        else
            named.append(name + "=\"" + value.toString() + '"');
    }
    return named.isEmpty() ? text : text + '{' + named.join(',') + '}';
}

inline void addProducts(PassengerTypesModel& model, const QString& line)
{
    const QVector<NewProduct> products = productsFrom(line);
    for (const NewProduct& product : products)
        addItem(model, product);
}
