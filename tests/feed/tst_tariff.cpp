#include "Table.h"
#include "Tariff.h"

#include <QtTest>

using namespace rivo::feed;

using Spans = QVector<QPair<int, int>>;

Q_DECLARE_METATYPE(Spans)

class TariffTest : public QObject
{
    Q_OBJECT

private slots:
    void turningPoints_data();
    void turningPoints();
};

void TariffTest::turningPoints_data()
{
    // ofGroups: one span per group
    const Table<Spans, Spans, QVector<int>> row("ofGroups", "ofProducts", "points");
    row("without times there are none", {}, {}, {});
    row("a span has its begin and its end", Spans{{3600, 7200}}, {}, {3600, 7200});
    row("times of products count too", {}, Spans{{0, 86400}}, {0, 86400});
    row("points of both are in order", Spans{{7200, 9000}, {0, 60}}, Spans{{3600, 8000}},
        {0, 60, 3600, 7200, 8000, 9000});
    row("a point is there once", Spans{{0, 3600}, {3600, 7200}}, Spans{{0, 7200}, {7200, 9000}},
        {0, 3600, 7200, 9000});
}

void TariffTest::turningPoints()
{
    QFETCH(Spans, ofGroups);
    QFETCH(Spans, ofProducts);
    Tariff tariff;
    for (const auto& [begin, end] : qAsConst(ofGroups))
        tariff.times.append({{{begin, end, -1}}});
    for (const auto& [begin, end] : qAsConst(ofProducts)) {
        TariffValidity validity;
        validity.times.append({begin, end, -1});
        tariff.validities.append(validity);
    }
    QTEST(tariff.turningPoints(), "points");
}

QTEST_APPLESS_MAIN(TariffTest)
#include "tst_tariff.moc"
