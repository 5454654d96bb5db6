#include "appearance/SystemColors.h"

#include <QGuiApplication>
#include <QPalette>

namespace {

constexpr qreal kSecondaryOnSelection = 0.7;
constexpr qreal kSeparatorAlpha = 0.35;
constexpr qreal kSelectionLineAlpha = 0.2;
constexpr qreal kStrongLineAlpha = 0.6;

SystemColors lightColors()
{
    SystemColors colors;
    colors.labelColor = QColor(0x1C, 0x1D, 0x20);
    colors.secondaryLabelColor = QColor(0x50, 0x53, 0x5A);
    colors.tertiaryLabelColor = QColor(0x5F, 0x62, 0x69);
    colors.placeholderTextColor = QColor(0x5F, 0x62, 0x69);
    colors.separatorColor = withAlpha(colors.labelColor, 0.46);
    colors.windowBackgroundColor = QColor(0xF6, 0xF6, 0xF8);
    colors.raisedSurfaceColor = QColor(0xFB, 0xFB, 0xFC);
    colors.cardColor = Qt::white;
    colors.sidebarColor = QColor(0xEC, 0xED, 0xF0);
    colors.controlColor = Qt::white;
    colors.controlLineColor = withAlpha(Qt::black, 0.18);
    colors.switchOffColor = QColor(0x85, 0x88, 0x8F);
    colors.controlAccentColor = QColor(0x24, 0x59, 0xC7);
    colors.accentFillColor = QColor(0x24, 0x59, 0xC7);
    colors.selectionColor = QColor(0x1B, 0x4D, 0xB3);
    colors.selectionLineColor = withAlpha(Qt::white, kSelectionLineAlpha);
    colors.systemBlueColor = QColor(0x24, 0x59, 0xC7);
    colors.systemPurpleColor = QColor(0x8A, 0x3F, 0xBE);
    colors.systemRedColor = QColor(0xA8, 0x20, 0x1A);
    colors.redFillColor = QColor(0xC6, 0x2F, 0x2F);
    colors.systemOrangeColor = QColor(0x99, 0x44, 0x00);
    colors.systemGreenColor = QColor(0x1F, 0x7F, 0x39);
    colors.systemYellowColor = QColor(0xF5, 0xC4, 0x00);
    colors.pillLineColor = withAlpha(Qt::black, 0.1);
    colors.windowLineColor = withAlpha(Qt::black, 0.3);
    colors.windowRimColor = Qt::transparent;
    colors.hintFillColor = withAlpha(QColor(255, 242, 217), 0.97);
    colors.hintLineColor = withAlpha(QColor(255, 179, 102), 0.5);
    colors.hintTextColor = withAlpha(QColor(102, 51, 0), 0.85);
    colors.hintShadowColor = withAlpha(QColor(204, 102, 26), 0.15);
    return colors;
}

SystemColors darkColors()
{
    SystemColors colors;
    colors.labelColor = QColor(0xEC, 0xED, 0xF0);
    colors.secondaryLabelColor = QColor(0xB4, 0xB7, 0xBE);
    colors.tertiaryLabelColor = QColor(0xA0, 0xA3, 0xAB);
    colors.placeholderTextColor = QColor(0xA0, 0xA3, 0xAB);
    colors.separatorColor = withAlpha(Qt::white, 0.46);
    colors.windowBackgroundColor = QColor(0x1E, 0x1F, 0x23);
    colors.raisedSurfaceColor = QColor(0x2A, 0x2B, 0x30);
    colors.cardColor = QColor(0x2A, 0x2B, 0x30);
    colors.sidebarColor = QColor(0x26, 0x27, 0x2C);
    colors.controlColor = QColor(0x3A, 0x3B, 0x41);
    colors.controlLineColor = withAlpha(Qt::white, 0.12);
    colors.switchOffColor = QColor(0x7A, 0x7D, 0x86);
    colors.controlAccentColor = QColor(0x7B, 0xA4, 0xF7);
    colors.accentFillColor = QColor(0x2E, 0x63, 0xD0);
    colors.selectionColor = QColor(0x1F, 0x4C, 0xA8);
    colors.selectionLineColor = withAlpha(Qt::white, kSelectionLineAlpha);
    colors.systemBlueColor = QColor(0x7B, 0xA4, 0xF7);
    colors.systemPurpleColor = QColor(0xC4, 0x86, 0xF0);
    colors.systemRedColor = QColor(0xFF, 0x9A, 0x94);
    colors.redFillColor = QColor(0xC6, 0x2F, 0x2F);
    colors.systemOrangeColor = QColor(0xFF, 0xAB, 0x5C);
    colors.systemGreenColor = QColor(0x57, 0xCC, 0x6B);
    colors.systemYellowColor = QColor(0xFF, 0xD6, 0x0A);
    colors.pillLineColor = withAlpha(Qt::white, 0.1);
    colors.windowLineColor = withAlpha(Qt::black, 0.3);
    colors.windowRimColor = withAlpha(Qt::white, 0.09);
    colors.hintFillColor = withAlpha(QColor(64, 38, 13), 0.95);
    colors.hintLineColor = withAlpha(QColor(102, 64, 26), 0.8);
    colors.hintTextColor = withAlpha(QColor(255, 230, 204), 0.9);
    colors.hintShadowColor = withAlpha(Qt::black, 0.3);
    return colors;
}

/// What light and dark have in common where contrasts are strong: \a ink on \a ground.
SystemColors strengthened(SystemColors colors, const QColor &ink, const QColor &ground)
{
    colors.isHighContrast = true;
    colors.labelColor = ink;
    for (QColor *surface :
         {&colors.windowBackgroundColor, &colors.raisedSurfaceColor, &colors.cardColor,
          &colors.sidebarColor, &colors.controlColor})
        *surface = ground;
    for (QColor *line : {&colors.separatorColor, &colors.pillLineColor, &colors.controlLineColor})
        *line = withAlpha(ink, kStrongLineAlpha);
    colors.windowLineColor = ink;
    colors.windowRimColor = Qt::transparent;
    colors.selectionLineColor = ink;
    for (QColor *color : {&colors.hintFillColor, &colors.hintLineColor, &colors.hintTextColor})
        color->setAlpha(255);
    colors.hintLineColor = colors.hintTextColor;
    return colors;
}

SystemColors lightHighContrastColors()
{
    SystemColors colors = strengthened(lightColors(), Qt::black, Qt::white);
    colors.secondaryLabelColor = QColor(0x2A, 0x2B, 0x30);
    colors.tertiaryLabelColor = QColor(0x3A, 0x3C, 0x42);
    colors.placeholderTextColor = colors.tertiaryLabelColor;
    colors.switchOffColor = QColor(0x5F, 0x62, 0x69);
    colors.controlAccentColor = QColor(0x12, 0x3F, 0x9C);
    colors.accentFillColor = QColor(0x12, 0x3F, 0x9C);
    colors.selectionColor = QColor(0x0F, 0x35, 0x84);
    colors.systemPurpleColor = QColor(0x6E, 0x2A, 0x9E);
    colors.systemRedColor = QColor(0x8F, 0x14, 0x10);
    colors.redFillColor = QColor(0xA0, 0x1E, 0x1E);
    colors.systemOrangeColor = QColor(0x7A, 0x36, 0x00);
    colors.systemGreenColor = QColor(0x12, 0x5E, 0x28);
    return colors;
}

SystemColors darkHighContrastColors()
{
    SystemColors colors = strengthened(darkColors(), Qt::white, Qt::black);
    colors.secondaryLabelColor = QColor(0xDD, 0xDF, 0xE4);
    colors.tertiaryLabelColor = QColor(0xC8, 0xCA, 0xD1);
    colors.placeholderTextColor = colors.tertiaryLabelColor;
    colors.switchOffColor = QColor(0x5F, 0x62, 0x69);
    colors.controlAccentColor = QColor(0x9C, 0xBD, 0xFF);
    colors.accentFillColor = QColor(0x1F, 0x4C, 0xA8);
    colors.selectionColor = QColor(0x1B, 0x44, 0x99);
    colors.systemBlueColor = colors.controlAccentColor;
    colors.redFillColor = QColor(0xA0, 0x1E, 0x1E);
    return colors;
}

} // namespace

QColor SystemColors::separatorLineColor() const
{
    return isHighContrast ? separatorColor : withAlpha(separatorColor, kSeparatorAlpha);
}

SystemColors SystemColors::onSelection() const
{
    SystemColors colors = *this;
    const QColor faded = withAlpha(Qt::white, isHighContrast ? 1 : kSecondaryOnSelection);
    colors.labelColor = Qt::white;
    colors.secondaryLabelColor = faded;
    colors.tertiaryLabelColor = faded;
    colors.controlAccentColor = Qt::white;
    colors.systemBlueColor = Qt::white;
    colors.systemPurpleColor = Qt::white;
    return colors;
}

SystemColors systemColors(ColorScheme scheme)
{
    static const SystemColors light = lightColors();
    static const SystemColors dark = darkColors();
    return scheme == ColorScheme::Dark ? dark : light;
}

SystemColors highContrastColors(ColorScheme scheme)
{
    return scheme == ColorScheme::Dark ? darkHighContrastColors() : lightHighContrastColors();
}

ColorScheme desktopColorScheme(std::optional<bool> prefersDark)
{
    constexpr int kMiddleLightness = 128;
    const QColor window = QGuiApplication::palette().color(QPalette::Window);
    const bool isDark = prefersDark.value_or(window.lightness() < kMiddleLightness);
    return isDark ? ColorScheme::Dark : ColorScheme::Light;
}

QColor withAlpha(QColor color, qreal alpha)
{
    color.setAlphaF(float(color.alphaF() * alpha));
    return color;
}
