#include "appearance/Look.h"

#include "appearance/Contrast.h"
#include "appearance/Oklch.h"

#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

/// What desktops offer, and what no desktop should.
const QList<QColor> kAccents{
    "#3584e4", "#2190a4", "#3a944a", "#c88800", "#ed5b00", "#e62d42", "#d56199",
    "#9141ac", "#6f8396", "#3daee9", "#ffff00", "#00ff00", "#00ffff", "#ff00ff",
    "#ff0000", "#0000ff", "#000000", "#ffffff", "#808080", "#1e1f23"};

using Role = QColor SystemColors::*;

struct Pair
{
    const char *name;
    Role text;
    Role ground;
    double least;           ///< On the ground as it is.
    double leastOnAnything; ///< Where a backdrop shines through; 0 for grounds that are opaque.
    double leastInContrast; ///< With high contrast.
};

using C = SystemColors;
constexpr Pair kPairs[] = {
    {"label", &C::labelColor, &C::windowBackgroundColor, 14, 10.3, 20},
    {"secondary", &C::secondaryLabelColor, &C::windowBackgroundColor, 7, 5.6, 10},
    {"tertiary", &C::tertiaryLabelColor, &C::windowBackgroundColor, 5.6, 4.5, 10},
    {"placeholder", &C::placeholderTextColor, &C::windowBackgroundColor, 5.6, 4.5, 10},
    {"accent tint", &C::controlAccentColor, &C::windowBackgroundColor, 4.5, 4.5, 7},
    {"blue", &C::systemBlueColor, &C::windowBackgroundColor, 5.6, 4.5, 6},
    {"purple", &C::systemPurpleColor, &C::windowBackgroundColor, 4.5, 4, 7},
    {"red", &C::systemRedColor, &C::windowBackgroundColor, 4.5, 4.5, 7},
    {"orange", &C::systemOrangeColor, &C::windowBackgroundColor, 4.5, 4.5, 7},
    {"green", &C::systemGreenColor, &C::windowBackgroundColor, 4.5, 3.5, 7},
    {"label on a menu", &C::labelColor, &C::raisedSurfaceColor, 11, 0, 20},
    {"secondary on a menu", &C::secondaryLabelColor, &C::raisedSurfaceColor, 6, 0, 10},
    {"tertiary on a menu", &C::tertiaryLabelColor, &C::raisedSurfaceColor, 4.5, 0, 10},
    {"label on a card", &C::labelColor, &C::cardColor, 11, 0, 20},
    {"secondary on a card", &C::secondaryLabelColor, &C::cardColor, 6, 0, 10},
    {"label in the sidebar", &C::labelColor, &C::sidebarColor, 12, 0, 20},
    {"secondary in the sidebar", &C::secondaryLabelColor, &C::sidebarColor, 6, 0, 10},
    {"label on a control", &C::labelColor, &C::controlColor, 9, 0, 20},
    {"placeholder on a control", &C::placeholderTextColor, &C::controlColor, 4.3, 0, 10},
    {"red on a control", &C::systemRedColor, &C::controlColor, 4.5, 0, 7},
};

/// Contrasts that are less than they should be, one a line.
QStringList weakPairs(const Look &look)
{
    const SystemColors colors = look.colors();
    QStringList weak;
    const auto expect = [&](const QString &name, double contrast, double least) {
        if (contrast < least)
            weak.append(u"%1: %2, not %3"_s.arg(name).arg(contrast).arg(least));
    };
    for (const Pair &pair : kPairs) {
        const QColor text = colors.*pair.text;
        const QColor ground = colors.*pair.ground;
        expect(QLatin1StringView(pair.name), contrastRatio(text, ground),
               look.isHighContrast ? pair.leastInContrast : pair.least);
        for (const Qt::GlobalColor backdrop : {Qt::black, Qt::white}) {
            const QColor seen = composed(withAlpha(ground, look.windowAlpha()), backdrop);
            expect(QLatin1StringView(pair.name) + u" on anything"_s, contrastRatio(text, seen),
                   pair.leastOnAnything);
        }
    }
    const double least = look.isHighContrast ? 7 : 4.5;
    const QColor faded = colors.onSelection().tertiaryLabelColor;
    expect(u"white on the fill"_s, contrastRatio(Qt::white, colors.accentFillColor), least);
    expect(u"white on the red fill"_s, contrastRatio(Qt::white, colors.redFillColor), least);
    expect(u"faded on the selection"_s,
           contrastRatio(composed(faded, colors.selectionColor), colors.selectionColor), least);
    for (const Role ground : {&C::accentFillColor, &C::selectionColor}) {
        expect(u"fill on the window"_s,
               contrastRatio(colors.*ground, colors.windowBackgroundColor), 1.6);
    }
    const QColor hint = composed(colors.hintFillColor, colors.windowBackgroundColor);
    expect(u"hint"_s, contrastRatio(composed(colors.hintTextColor, hint), hint), least);
    expect(u"switch"_s, contrastRatio(Qt::white, colors.switchOffColor), 3);
    return weak;
}

double hueDistance(const QColor &one, const QColor &other)
{
    const double distance = std::abs(Oklch::from(one).hue - Oklch::from(other).hue);
    return std::min(distance, 6.2832 - distance);
}

} // namespace

class LookTest : public QObject
{
    Q_OBJECT

private slots:
    void everythingIsReadableOverAnyBackdrop_data();
    void everythingIsReadableOverAnyBackdrop();
    void aReadableAccentIsTakenAsItIs();
    void aYellowAccentStaysYellow();
    void withoutAccentTheColorsAreOurOwn();
    void highContrastHasStrongLinesAndNothingFaded();
    void theWindowIsOpaqueWhereItMustBe();
    void colorsFollowEachChange();
};

void LookTest::everythingIsReadableOverAnyBackdrop_data()
{
    QTest::addColumn<Look>("look");

    for (const ColorScheme scheme : {ColorScheme::Light, ColorScheme::Dark}) {
        for (const bool isHighContrast : {false, true}) {
            const QByteArray name = QByteArray(scheme == ColorScheme::Light ? "light" : "dark")
                + (isHighContrast ? ", high contrast" : "");
            Look look{.scheme = scheme, .isBlurred = true, .isHighContrast = isHighContrast};
            QTest::newRow(name) << look;
            for (const QColor &accent : kAccents) {
                look.accent = accent;
                QTest::newRow(name + ", " + accent.name().toLatin1()) << look;
            }
        }
    }
}

void LookTest::everythingIsReadableOverAnyBackdrop()
{
    QFETCH(Look, look);
    QCOMPARE(weakPairs(look).join(u'\n'), QString());
}

void LookTest::aReadableAccentIsTakenAsItIs()
{
    const QColor navy(0x10, 0x2A, 0x70);
    const SystemColors colors = Look{.accent = navy}.colors();
    QCOMPARE(colors.controlAccentColor, navy);
    QCOMPARE(colors.accentFillColor, navy);
    QCOMPARE(colors.selectionColor, navy);
}

void LookTest::aYellowAccentStaysYellow()
{
    const QColor yellow(0xF5, 0xC4, 0x00);
    for (const ColorScheme scheme : {ColorScheme::Light, ColorScheme::Dark}) {
        const SystemColors colors = Look{.scheme = scheme, .accent = yellow}.colors();
        for (const Role role : {&C::controlAccentColor, &C::accentFillColor, &C::selectionColor})
            QVERIFY(hueDistance(colors.*role, yellow) < 0.06);
        QVERIFY(colors.selectionColor.lightness() <= colors.accentFillColor.lightness());
    }
    QCOMPARE((Look{.scheme = ColorScheme::Dark, .accent = yellow}.colors().controlAccentColor),
             yellow);
}

void LookTest::withoutAccentTheColorsAreOurOwn()
{
    for (const ColorScheme scheme : {ColorScheme::Light, ColorScheme::Dark})
        QVERIFY(Look{.scheme = scheme}.colors() == systemColors(scheme));
}

void LookTest::highContrastHasStrongLinesAndNothingFaded()
{
    const SystemColors light = Look{.isHighContrast = true}.colors();
    QCOMPARE(light.windowBackgroundColor, QColor(Qt::white));
    QCOMPARE(light.windowLineColor, QColor(Qt::black));
    const SystemColors dark = Look{.scheme = ColorScheme::Dark, .isHighContrast = true}.colors();
    QCOMPARE(dark.windowBackgroundColor, QColor(Qt::black));
    for (const SystemColors &colors : {light, dark}) {
        QCOMPARE(qRound(colors.separatorLineColor().alphaF() * 100), 60);
        QCOMPARE(qRound(colors.pillLineColor.alphaF() * 100), 60);
        QCOMPARE(colors.onSelection().secondaryLabelColor, QColor(Qt::white));
        QCOMPARE(colors.onSelection().tertiaryLabelColor, QColor(Qt::white));
    }
    QCOMPARE(qRound(Look{}.colors().separatorLineColor().alphaF() * 100), 16);
}

void LookTest::theWindowIsOpaqueWhereItMustBe()
{
    QCOMPARE(Look{}.windowAlpha(), 0.96);
    QCOMPARE(Look{.isBlurred = true}.windowAlpha(), 0.90);
    QCOMPARE((Look{.isBlurred = true, .isHighContrast = true}.windowAlpha()), 1.0);
    QCOMPARE(Look{.isTranslucent = false}.windowAlpha(), 1.0);
}

void LookTest::colorsFollowEachChange()
{
    const Look light;
    const Look green{.accent = QColor(0x3A, 0x94, 0x4A)};
    const SystemColors first = light.colors();
    QVERIFY(green.colors() != first);
    QVERIFY(light.colors() == first);
    QVERIFY((Look{.isHighContrast = true}.colors()) != first);
    QVERIFY(light.colors() == first);
}

QTEST_APPLESS_MAIN(LookTest)
#include "LookTest.moc"
