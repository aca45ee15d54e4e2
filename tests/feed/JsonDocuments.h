#pragma once

#include <QByteArray>
#include <QByteArrayList>

/// A document with `products`, each in a line of its own from line 2 on.
inline QByteArray document(const QByteArray& products, const QByteArray& more = {})
{
    return R"({"format": "rivo-feed", "version": 1, "currency": "EUR")" + more +
           ", \"products\": [\n" + products + "\n]}";
}

/// A product with everything that is required, and `more` keys behind it.
inline QByteArray product(const QByteArray& more = {})
{
    return R"({"passengerTypeId": 1, "description": "Adult", "passengerTypeCode": "PT_ADULT", )"
           R"("price": 2.5, "fareProductId": 3, "fareProductName": "Single", )"
           R"("fromStopGroupId": 4, "toStopGroupId": 5)" +
           more + '}';
}

inline QByteArray joined(int count, const QByteArray& text)
{
    QByteArrayList list;
    for (int i = 0; i < count; ++i)
        list.append(text);
    return list.join(",\n");
}
