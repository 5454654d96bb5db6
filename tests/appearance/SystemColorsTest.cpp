#include "appearance/SystemColors.h"

#include <QTest>

#include <cmath>

namespace {

qreal linear(float channel)
{
    return channel <= 0.04045F ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

qreal luminance(const QColor &color)
{
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF())
        + 0.0722 * linear(color.blueF());
}

qreal contrast(const QColor &one, const QColor &other)
{
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

QColor over(const QColor &top, qreal alpha, const QColor &below)
{
    const auto mix = [alpha](float a, float b) { return float(a * alpha + b * (1 - alpha)); };
    return QColor::fromRgbF(mix(top.redF(), below.redF()), mix(top.greenF(), below.greenF()),
                            mix(top.blueF(), below.blueF()));
}

/// The window background with the backdrop shining through that is worst for text.
QColor worstBackground(ColorScheme scheme)
{
    const QColor backdrop = scheme == ColorScheme::Dark ? Qt::white : Qt::black;
    return over(systemColors(scheme).windowBackgroundColor, 0.9, backdrop);
}

constexpr ColorScheme kSchemes[] = {ColorScheme::Light, ColorScheme::Dark};

} // namespace

class SystemColorsTest : public QObject
{
    Q_OBJECT

private slots:
    void textIsReadableOverAnyWallpaper_data();
    void textIsReadableOverAnyWallpaper();
    void whiteIsReadableOnFills();
    void fadedWhiteIsReadableOnTheSelection();
    void warningsAreReadableOnTheWindow();
    void namesTurnWhiteOnTheSelection();
};

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
        QCOMPARE_GE(contrast(colors.*color, colors.windowBackgroundColor), leastSolid);
        QCOMPARE_GE(contrast(colors.*color, worstBackground(scheme)), leastOverBackdrop);
    }
}

void SystemColorsTest::whiteIsReadableOnFills()
{
    for (const ColorScheme scheme : kSchemes) {
        const SystemColors colors = systemColors(scheme);
        QCOMPARE_GE(contrast(Qt::white, colors.accentFillColor), 4.5);
        QCOMPARE_GE(contrast(Qt::white, colors.redFillColor), 4.5);
    }
}

void SystemColorsTest::fadedWhiteIsReadableOnTheSelection()
{
    for (const ColorScheme scheme : kSchemes) {
        const SystemColors colors = systemColors(scheme);
        const QColor faded = colors.onSelection().secondaryLabelColor;
        const QColor shown = over(Qt::white, faded.alphaF(), colors.selectionColor);
        QCOMPARE_GE(contrast(shown, colors.selectionColor), 4.5);
    }
}

void SystemColorsTest::warningsAreReadableOnTheWindow()
{
    for (const ColorScheme scheme : kSchemes) {
        const SystemColors colors = systemColors(scheme);
        QCOMPARE_GE(contrast(colors.systemRedColor, colors.windowBackgroundColor), 4.5);
        QCOMPARE_GE(contrast(colors.systemOrangeColor, colors.windowBackgroundColor), 4.5);
        QCOMPARE_GE(contrast(colors.systemGreenColor, colors.windowBackgroundColor), 4.5);
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
