#include "appearance/SystemColors.h"

#include "appearance/Contrast.h"

#include <QTest>

namespace {

/// The window background with the backdrop shining through that is worst for text.
QColor worstBackground(ColorScheme scheme)
{
    const QColor backdrop = scheme == ColorScheme::Dark ? Qt::white : Qt::black;
    return composed(withAlpha(systemColors(scheme).windowBackgroundColor, 0.9), backdrop);
}

constexpr ColorScheme kSchemes[] = {ColorScheme::Light, ColorScheme::Dark};

} // namespace

class SystemColorsTest : public QObject
{
    Q_OBJECT

private slots:
    void eachNameHasItsColors_data();
    void eachNameHasItsColors();
    void textIsReadableOverAnyWallpaper_data();
    void textIsReadableOverAnyWallpaper();
    void whiteIsReadableOnFills();
    void fadedWhiteIsReadableOnTheSelection();
    void warningsAreReadableOnTheWindow();
    void namesTurnWhiteOnTheSelection();
};

void SystemColorsTest::eachNameHasItsColors_data()
{
    QTest::addColumn<QColor SystemColors::*>("color");
    QTest::addColumn<QColor>("light");
    QTest::addColumn<QColor>("dark");
    const auto row = [](const char *name, QColor SystemColors::*color, const QColor &light,
                        const QColor &dark) { QTest::newRow(name) << color << light << dark; };
    const auto rgb = [](QRgb value) { return QColor(value); };
    const auto at = [](const QColor &color, qreal alpha) { return withAlpha(color, alpha); };
    using Names = SystemColors;

    row("label", &Names::labelColor, rgb(0x1C1D20), rgb(0xECEDF0));
    row("secondary label", &Names::secondaryLabelColor, rgb(0x50535A), rgb(0xB4B7BE));
    row("tertiary label", &Names::tertiaryLabelColor, rgb(0x5F6269), rgb(0xA0A3AB));
    row("placeholder", &Names::placeholderTextColor, rgb(0x5F6269), rgb(0xA0A3AB));
    row("separator", &Names::separatorColor, at(rgb(0x1C1D20), 0.46), at(rgb(0xFFFFFF), 0.46));
    row("window", &Names::windowBackgroundColor, rgb(0xF6F6F8), rgb(0x1E1F23));
    row("raised surface", &Names::raisedSurfaceColor, rgb(0xFBFBFC), rgb(0x2A2B30));
    row("card", &Names::cardColor, rgb(0xFFFFFF), rgb(0x2A2B30));
    row("sidebar", &Names::sidebarColor, rgb(0xECEDF0), rgb(0x26272C));
    row("control", &Names::controlColor, rgb(0xFFFFFF), rgb(0x3A3B41));
    row("line of a control", &Names::controlLineColor, at(rgb(0), 0.18), at(rgb(0xFFFFFF), 0.12));
    row("switch that is off", &Names::switchOffColor, rgb(0x85888F), rgb(0x7A7D86));
    row("accent tint", &Names::controlAccentColor, rgb(0x2459C7), rgb(0x7BA4F7));
    row("accent fill", &Names::accentFillColor, rgb(0x2459C7), rgb(0x2E63D0));
    row("selection", &Names::selectionColor, rgb(0x1B4DB3), rgb(0x1F4CA8));
    row("blue", &Names::systemBlueColor, rgb(0x2459C7), rgb(0x7BA4F7));
    row("purple", &Names::systemPurpleColor, rgb(0x8A3FBE), rgb(0xC486F0));
    row("red", &Names::systemRedColor, rgb(0xA8201A), rgb(0xFF9A94));
    row("red fill", &Names::redFillColor, rgb(0xC62F2F), rgb(0xC62F2F));
    row("orange", &Names::systemOrangeColor, rgb(0x994400), rgb(0xFFAB5C));
    row("green", &Names::systemGreenColor, rgb(0x1F7F39), rgb(0x57CC6B));
    row("yellow", &Names::systemYellowColor, rgb(0xF5C400), rgb(0xFFD60A));
    row("line of the window", &Names::windowLineColor, at(rgb(0), 0.3), at(rgb(0), 0.3));
    row("rim of the window", &Names::windowRimColor, Qt::transparent, at(rgb(0xFFFFFF), 0.09));
    row("hint", &Names::hintFillColor, at(QColor(255, 242, 217), 0.97),
        at(QColor(64, 38, 13), 0.95));
    row("line of a hint", &Names::hintLineColor, at(QColor(255, 179, 102), 0.5),
        at(QColor(102, 64, 26), 0.8));
    row("text of a hint", &Names::hintTextColor, at(QColor(102, 51, 0), 0.85),
        at(QColor(255, 230, 204), 0.9));
    row("shadow of a hint", &Names::hintShadowColor, at(QColor(204, 102, 26), 0.15),
        at(rgb(0), 0.3));
}

void SystemColorsTest::eachNameHasItsColors()
{
    QFETCH(QColor SystemColors::*, color);
    QTEST(systemColors(ColorScheme::Light).*color, "light");
    QTEST(systemColors(ColorScheme::Dark).*color, "dark");
}

void SystemColorsTest::textIsReadableOverAnyWallpaper_data()
{
    QTest::addColumn<QColor SystemColors::*>("color");
    QTest::addColumn<qreal>("leastSolid");
    QTest::addColumn<qreal>("leastOverBackdrop");

    QTest::newRow("label") << &SystemColors::labelColor << 14.0 << 10.3;
    QTest::newRow("secondary label") << &SystemColors::secondaryLabelColor << 7.0 << 5.6;
    QTest::newRow("tertiary label") << &SystemColors::tertiaryLabelColor << 5.6 << 4.5;
    QTest::newRow("placeholder") << &SystemColors::placeholderTextColor << 5.6 << 4.5;
    QTest::newRow("accent tint") << &SystemColors::controlAccentColor << 5.7 << 4.5;
    QTest::newRow("system blue") << &SystemColors::systemBlueColor << 5.7 << 4.5;
}

void SystemColorsTest::textIsReadableOverAnyWallpaper()
{
    QFETCH(QColor SystemColors::*, color);
    QFETCH(qreal, leastSolid);
    QFETCH(qreal, leastOverBackdrop);

    for (const ColorScheme scheme : kSchemes) {
        const SystemColors colors = systemColors(scheme);
        QCOMPARE_GE(contrastRatio(colors.*color, colors.windowBackgroundColor), leastSolid);
        QCOMPARE_GE(contrastRatio(colors.*color, worstBackground(scheme)), leastOverBackdrop);
    }
}

void SystemColorsTest::whiteIsReadableOnFills()
{
    for (const ColorScheme scheme : kSchemes) {
        const SystemColors colors = systemColors(scheme);
        QCOMPARE_GE(contrastRatio(Qt::white, colors.accentFillColor), 4.5);
        QCOMPARE_GE(contrastRatio(Qt::white, colors.redFillColor), 4.5);
    }
}

void SystemColorsTest::fadedWhiteIsReadableOnTheSelection()
{
    for (const ColorScheme scheme : kSchemes) {
        const SystemColors colors = systemColors(scheme);
        const QColor faded = colors.onSelection().secondaryLabelColor;
        const QColor shown = composed(faded, colors.selectionColor);
        QCOMPARE_GE(contrastRatio(shown, colors.selectionColor), 4.5);
    }
}

void SystemColorsTest::warningsAreReadableOnTheWindow()
{
    for (const ColorScheme scheme : kSchemes) {
        const SystemColors colors = systemColors(scheme);
        QCOMPARE_GE(contrastRatio(colors.systemRedColor, colors.windowBackgroundColor), 4.5);
        QCOMPARE_GE(contrastRatio(colors.systemOrangeColor, colors.windowBackgroundColor), 4.5);
        QCOMPARE_GE(contrastRatio(colors.systemGreenColor, colors.windowBackgroundColor), 4.5);
    }
}

void SystemColorsTest::namesTurnWhiteOnTheSelection()
{
    const SystemColors colors = systemColors(ColorScheme::Light).onSelection();
    QCOMPARE(colors.labelColor, QColor(Qt::white));
    QCOMPARE(colors.controlAccentColor, QColor(Qt::white));
    QCOMPARE(colors.systemPurpleColor, QColor(Qt::white));
    QCOMPARE(qRound(colors.tertiaryLabelColor.alphaF() * 100), 70);
    QCOMPARE(colors.selectionColor, systemColors(ColorScheme::Light).selectionColor);
}

QTEST_GUILESS_MAIN(SystemColorsTest)
#include "SystemColorsTest.moc"
