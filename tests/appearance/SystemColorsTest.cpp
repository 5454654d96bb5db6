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
