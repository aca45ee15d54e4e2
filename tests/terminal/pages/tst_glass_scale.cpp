#include "Table.h"

#include <GlassScale.h>

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QtTest>

#include <cmath>

using rivo::terminal::Glass;
using rivo::terminal::GlassScale;
using rivo::terminal::pixelsPerMillimetre;

Q_DECLARE_METATYPE(Glass)

/// Sizes in pixels from millimetres and angles.
class TestGlassScale : public QObject
{
    Q_OBJECT

private slots:
    void pixelsOfAMillimetre_data();
    void pixelsOfAMillimetre();
    void lengthsAreNotShorter_data();
    void lengthsAreNotShorter();
    void capitalLettersAreHighEnough_data();
    void capitalLettersAreHighEnough();
    void anInstanceKeepsItsScale();
};

void TestGlassScale::pixelsOfAMillimetre_data()
{
    const Table<Glass, QSize, QSize, QSizeF, double> row("glass", "window", "screen", "millimetres",
                                                         "expected");
    const QSize small(800, 480);
    const QSize panel(1280, 800);
    const QSizeF tenInches(217, 136);
    const double small7 = 933.0 / 177.8;
    const double scale = 1509.4 / 256.1;
    row("the size on the command line", Glass{{154, 86}, 1}, QSize(1024, 573), panel, tenInches,
        1173.4 / 176.4);
    row("the screen's own size", {}, panel, panel, tenInches, scale);
    row("a window that does not fill the screen", {}, small, panel, tenInches, scale);
    row("half as large again", Glass{{}, 1.5}, panel, panel, tenInches, 1.5 * scale);
    row("a size on the command line, and smaller", Glass{{160, 96}, 0.5}, small, panel, tenInches,
        2.5);
    row("a screen of no size", {}, small, panel, {}, small7);
    row("a screen of no size, twice as large", Glass{{}, 2}, small, panel, {}, 2 * small7);
    row("a screen without pixels", {}, small, {}, tenInches, small7);
    row("an aspect ratio as size", {}, small, panel, QSizeF(16, 10), small7);
    row("centimetres as size", {}, small, panel, QSizeF(21.7, 13.6), small7);
    row("ten times too large", {}, small, panel, QSizeF(2170, 1360), small7);
    row("a projector of two pixels for each centimetre", {}, small, QSize(320, 200),
        QSizeF(1300, 812), small7);
    row("pixels that are not square", {}, small, panel, QSizeF(217, 163), small7);
    row("pixels that are too small to be true", {}, small, QSize(3840, 2400), QSizeF(150, 94),
        small7);
}

void TestGlassScale::pixelsOfAMillimetre()
{
    QFETCH(Glass, glass);
    QFETCH(QSize, window);
    QFETCH(QSize, screen);
    QFETCH(QSizeF, millimetres);
    QFETCH(double, expected);
    const double found = pixelsPerMillimetre(glass, window, screen, millimetres);
    QVERIFY2(std::abs(found / expected - 1.0) < 0.001, qPrintable(QString::number(found)));
}

void TestGlassScale::lengthsAreNotShorter_data()
{
    const Table<double, double, int> row("scale", "millimetres", "pixels");
    row("a finger on 7 inches with 800x480 pixels", 5.247, 9.0, 48);
    row("a finger on 7 inches with 1280x800 pixels", 8.489, 9.0, 77);
    row("whole pixels stay", 5.0, 9.0, 45);
    row("a thin line is a pixel", 2.0, 0.1, 1);
    row("nothing is nothing", 5.0, 0.0, 0);
}

void TestGlassScale::lengthsAreNotShorter()
{
    QFETCH(double, scale);
    QFETCH(double, millimetres);
    GlassScale::set(scale);
    QTEST(GlassScale().length(millimetres), "pixels");
}

void TestGlassScale::capitalLettersAreHighEnough_data()
{
    addColumns<double, double, double>("scale", "arcMinutes", "millimetres");
    for (const double scale : {3.78, 5.247, 6.675, 8.489}) {
        QTest::addRow("main text with %g pixels", scale) << scale << 20.0 << 4.07;
        QTest::addRow("small text with %g pixels", scale) << scale << 12.0 << 2.44;
    }
}

void TestGlassScale::capitalLettersAreHighEnough()
{
    QFETCH(double, scale);
    QFETCH(double, arcMinutes);
    QFETCH(double, millimetres);
    GlassScale::set(scale);
    QFont font = QGuiApplication::font();
    font.setPixelSize(GlassScale().text(arcMinutes));
    const double capital = QFontMetricsF(font).capHeight();
    const double expected = millimetres * scale;
    QVERIFY2(capital >= expected - 0.5 && capital <= expected + 1.5,
             qPrintable(QString("%1 instead of %2").arg(capital).arg(expected)));
}

void TestGlassScale::anInstanceKeepsItsScale()
{
    GlassScale::set(5.0);
    const GlassScale before;
    GlassScale::set(10.0);
    QCOMPARE(before.pixelsPerMillimetre(), 5.0);
    QCOMPARE(GlassScale().pixelsPerMillimetre(), 10.0);
}

QTEST_MAIN(TestGlassScale)
#include "tst_glass_scale.moc"
