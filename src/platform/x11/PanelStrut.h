#pragma once

#include <QList>
#include <QRect>

/// What a panel keeps of the whole screen for itself, as it tells the window manager: a strip along
/// one edge. It is as deep as the panel's inner side is far from that edge, across other monitors
/// too. All in the screen's own pixels.
struct PanelStrut
{
    Qt::Edge edge = Qt::TopEdge;
    int depth = 0;
    int start = 0; ///< Where on the edge the strip begins,
    int end = 0; ///< and its last pixel there.

    friend bool operator==(const PanelStrut &, const PanelStrut &) = default;
};

/// From the values of _NET_WM_STRUT_PARTIAL or, where that has too few, of _NET_WM_STRUT.
QList<PanelStrut> panelStruts(const QList<quint32> &partial, const QList<quint32> &whole);

/// What \a struts leave of \a monitor, a part of a screen of the size \a screen. All of it if they
/// leave nothing.
QRect withoutStruts(const QRect &monitor, QSize screen, const QList<PanelStrut> &struts);
