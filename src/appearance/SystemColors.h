#pragma once

#include <QColor>

#include <optional>

enum class ColorScheme { Light, Dark };

/// The colours that views draw with, by their names. A view never writes a colour value itself.
struct SystemColors
{
    QColor labelColor;
    QColor secondaryLabelColor;
    QColor tertiaryLabelColor;
    QColor placeholderTextColor;
    QColor separatorColor; ///< Lines are drawn in separatorLineColor().
    QColor windowBackgroundColor; ///< Opaque; windows choose their own alpha.
    QColor raisedSurfaceColor; ///< Menus, popovers, alerts.
    QColor cardColor;
    QColor sidebarColor;
    QColor controlColor;
    QColor controlLineColor;
    QColor switchOffColor; ///< Under a white knob.
    QColor controlAccentColor; ///< As a tint, on the window background.
    QColor accentFillColor; ///< Under white text.
    QColor selectionColor; ///< Ground of the selected row.
    QColor selectionLineColor; ///< The line inside the edge of the selected row.
    QColor systemBlueColor;
    QColor systemPurpleColor;
    QColor systemRedColor;
    QColor redFillColor; ///< Under white text.
    QColor systemOrangeColor;
    QColor systemGreenColor;
    QColor systemYellowColor;
    QColor pillLineColor;
    QColor windowLineColor; ///< The line inside the edge of a translucent window.
    QColor windowRimColor; ///< Just within that line; transparent where it needs no help.

    QColor hintFillColor; ///< Of a bubble that warns; so are the next three.
    QColor hintLineColor;
    QColor hintTextColor;
    QColor hintShadowColor;

    /// For people who need it: the lines of the window and of the selected row are kStrongLine wide,
    /// and nothing on the selection is faded.
    bool isHighContrast = false;

    friend bool operator==(const SystemColors &, const SystemColors &) = default;

    QColor separatorLineColor() const;

    /// The same names as they are to be drawn on selectionColor.
    SystemColors onSelection() const;
};

inline constexpr qreal kStrongLine = 2;

/// How opaque a translucent window is if what is behind it is blurred, and if it is not.
inline constexpr qreal kBlurredWindowAlpha = 0.90;
inline constexpr qreal kPlainWindowAlpha = 0.96;

SystemColors systemColors(ColorScheme scheme);

/// The same for people who need strong contrasts.
SystemColors highContrastColors(ColorScheme scheme);

/// What the person prefers; where the desktop does not tell, what its own windows look like.
ColorScheme desktopColorScheme(std::optional<bool> prefersDark);

/// \a color with its alpha multiplied by \a alpha.
QColor withAlpha(QColor color, qreal alpha);
