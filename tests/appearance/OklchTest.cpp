#include "appearance/Oklch.h"

#include "appearance/Contrast.h"

#include <QTest>

#include <cmath>
#include <numbers>

using namespace Qt::StringLiterals;

namespace {

double degrees(double radians)
{
    const double turned = radians * 180 / std::numbers::pi;
    return turned < 0 ? turned + 360 : turned;
}

} // namespace

class OklchTest : public QObject
{
    Q_OBJECT

private slots:
    void knownColorsHaveTheirPlaces_data();
    void knownColorsHaveTheirPlaces();
    void everyColorComesBack();
    void whatNoScreenShowsKeepsLightnessAndHue();
    void contrastsAreThoseOfTheDefinition();
    void translucentColorsAreMixed();
};

void OklchTest::knownColorsHaveTheirPlaces_data()
{
    QTest::addColumn<QColor>("color");
    QTest::addColumn<double>("lightness");
    QTest::addColumn<double>("chroma");
    QTest::addColumn<double>("hue");

    // As published for CSS Color 4.
    QTest::newRow("red") << QColor(255, 0, 0) << 0.62796 << 0.25768 << 29.234;
    QTest::newRow("green") << QColor(0, 255, 0) << 0.86644 << 0.29483 << 142.495;
    QTest::newRow("blue") << QColor(0, 0, 255) << 0.45201 << 0.31321 << 264.052;
}

void OklchTest::knownColorsHaveTheirPlaces()
{
    QFETCH(QColor, color);
    QFETCH(double, lightness);
    QFETCH(double, chroma);
    QFETCH(double, hue);

    const Oklch place = Oklch::from(color);
    QVERIFY(std::abs(place.lightness - lightness) < 0.0005);
    QVERIFY(std::abs(place.chroma - chroma) < 0.0005);
    QVERIFY(std::abs(degrees(place.hue) - hue) < 0.1);
}

void OklchTest::everyColorComesBack()
{
    for (int red = 0; red < 256; red += 15) {
        for (int green = 0; green < 256; green += 15) {
            for (int blue = 0; blue < 256; blue += 15) {
                const QColor color(red, green, blue);
                QCOMPARE(Oklch::from(color).toColor(), color);
            }
        }
    }
}

void OklchTest::whatNoScreenShowsKeepsLightnessAndHue()
{
    const Oklch wish{.lightness = 0.5, .chroma = 0.4, .hue = 1.9};
    const Oklch shown = Oklch::from(wish.toColor());
    QVERIFY(std::abs(shown.lightness - wish.lightness) < 0.01);
    QVERIFY(std::abs(shown.hue - wish.hue) < 0.05);
    QVERIFY(shown.chroma > 0.05 && shown.chroma < 0.2);
    QCOMPARE((Oklch{.lightness = 1, .chroma = 0.4, .hue = 1.9}.toColor()), QColor(Qt::white));
}

void OklchTest::contrastsAreThoseOfTheDefinition()
{
    QCOMPARE(contrastRatio(Qt::black, Qt::white), 21.0);
    QCOMPARE(contrastRatio(Qt::white, Qt::white), 1.0);
    // The lightest grey that is readable on white, by the definition.
    QVERIFY(contrastRatio(QColor(0x76, 0x76, 0x76), Qt::white) > 4.5);
    QVERIFY(contrastRatio(QColor(0x77, 0x77, 0x77), Qt::white) < 4.5);
}

void OklchTest::translucentColorsAreMixed()
{
    QCOMPARE(composed(QColor(255, 255, 255, 51), Qt::black).name(), u"#333333"_s);
    QCOMPARE(composed(Qt::red, Qt::blue), QColor(Qt::red));
}

QTEST_APPLESS_MAIN(OklchTest)
#include "OklchTest.moc"
