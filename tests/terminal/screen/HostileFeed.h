#pragma once

#include "../ScreenUnderTest.h"

/// Texts as no back office should write them.
inline const QStringList g_hostile{
    "<b>bold</b><img src=\"http://example.invalid/a.png\"><img src='file:///etc/passwd'>",
    "&lt;&amp;&#x41; <a href=\"http://example.invalid\">link</a>",
    QString("Donaudampfschifffahrtsgesellschaft").repeated(6),
    QString::fromUtf8("\u202e\u05e9\u05dc\u05d5\u05dd \u0645\u0631\u062d\u0628\u0627\u202c abc"),
    QString::fromUtf8(
        "\U0001F68C\U0001F39F \U0001F468\u200D\U0001F469\u200D\U0001F467 e\u0301\u0323"),
    QString("a\tb\nc\r\x01\x1b[31m\x7f d"),
};

inline const QStringList g_icons{
    "http://example.invalid/a.png", "file:///etc/passwd",      "data:image/png;base64,iVBORw0KGgo=",
    "qrc:/icons/missing.svg",       "qrc:/../icons/adult.svg", "javascript:alert(1)",
    "../icons/adult.svg",           "QRC:/icons/bus.svg"};

inline const QStringList g_colors{"",        "no colour",    "#12",     "#80ff0000", "transparent",
                                  "#ffffff", "#000000",      "#777777", "#808080",   "#ff0000",
                                  "#00ff00", "rgb(1, 2, 3)", "#0000ff", "yellow"};

inline QString text(int n) { return g_hostile.at(n % g_hostile.size()); }
inline QString iconUrl(int n) { return g_icons.at(n % g_icons.size()); }

inline rivo::feed::Feed hostileFeed()
{
    rivo::feed::Feed feed = exampleFeed("coast-line");
    int n = 0;
    feed.name = text(n++);
    for (int i = 0; i < g_colors.size(); ++i) {
        auto product = feed.products.first();
        product.fareProductColor = g_colors.at(i);
        product.pos = -1;
        feed.products.append(product);
    }
    for (auto& product : feed.products) {
        product.description = text(n);
        product.fareProductName = text(n + 1);
        product.icon = iconUrl(n);
        if (product.fareProductColor.isEmpty())
            product.fareProductColor = g_colors.at(n % g_colors.size());
        ++n;
    }
    for (auto& product : feed.fareProducts) {
        product.description = text(n);
        product.icon = iconUrl(n);
        for (QVariantList* list : {&product.passengerTypes, &product.ticketMaterial,
                                   &product.paymentMethod, &product.paymentChannel})
            *list = QVariantList{text(n), text(n + 1), 7};
        ++n;
    }
    for (auto& vehicle : feed.vehicles) {
        vehicle.registrationNumber = text(n);
        vehicle.internalNumber = text(n + 1);
        vehicle.drivingStatus = text(n + 2);
        vehicle.routeStatus = text(n + 3);
        vehicle.routeName = text(n + 4);
        ++n;
    }
    for (auto& device : feed.peripherals) {
        device.name = text(n) + " printer";
        device.stateStr = text(n + 1);
        device.icon = iconUrl(n);
        ++n;
    }
    for (auto& report : feed.zReports) {
        report.fromTicketNumber = text(n);
        report.toTicketNumber = text(n + 2);
        report.isClosed = true;
        ++n;
    }
    for (auto& zone : feed.network.zones)
        zone.name = text(n++);
    for (auto& route : feed.network.routes) {
        route.shortName = text(n++);
        route.longName = text(n++);
        route.color = g_colors.at(n % g_colors.size());
    }
    for (auto& trip : feed.network.trips)
        trip.headsign = text(n++);
    for (auto& stop : feed.network.stops)
        stop.name = text(n++);
    return feed;
}
