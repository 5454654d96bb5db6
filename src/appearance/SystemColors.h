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
    QColor separatorColor; ///< To be used at kSeparatorAlpha of its own alpha.
    QColor windowBackgroundColor; ///< Opaque; windows choose their own alpha.
    QColor raisedSurfaceColor; ///< Menus, popovers, alerts.
    QColor cardColor;
    QColor sidebarColor;
    QColor controlColor;
    QColor controlLineColor;
    QColor switchOffColor; ///< Under a white knob.
    QColor controlAccentColor; ///< As a tint, on the window background.
    QColor accentFillColor; ///< Under white text.
    QColor selectionColor; ///< Ground of the selected row; white at 0.7 reads well on it.
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

    friend bool operator==(const SystemColors &, const SystemColors &) = default;

    /// The same names as they are to be drawn on selectionColor.
    SystemColors onSelection() const;
};

inline constexpr qreal kSeparatorAlpha = 0.35;

SystemColors systemColors(ColorScheme scheme);

/// What the person prefers; where the desktop does not tell, what its own windows look like.
ColorScheme desktopColorScheme(std::optional<bool> prefersDark);

/// \a color with its alpha multiplied by \a alpha.
QColor withAlpha(QColor color, qreal alpha);
