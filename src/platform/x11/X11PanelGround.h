#pragma once

#include "platform/x11/X11Requests.h"

#include <QColor>
#include <QRect>

#include <optional>

/// Finds out what colour panels have, by looking at the screen.
class X11PanelGround
{
public:
    explicit X11PanelGround(X11Requests &requests)
        : m_requests(requests)
    {
    }

    /// The colour around an icon that lies in \a window and leaves its edge free. Absent if
    /// something covers it, or it is not on the screen.
    std::optional<QColor> behindIcon(quint32 window);

    /// The colour of the panels of a program; if it has none, of any. Absent if there is no panel,
    /// or it is covered. A \a processId of 0 is nobody's.
    std::optional<QColor> ofPanels(qint64 processId);

private:
    struct Place
    {
        QRect onScreen;
        quint32 outermost = 0; ///< The window itself, or what it lies in, right on the root.
    };

    std::optional<Place> placeOf(quint32 window);
    bool isSeenAt(const Place &place, const QPoint &point);
    QList<quint32> panels(qint64 processId);
    std::optional<QColor> colorOfPanel(quint32 window);
    QList<QRgb> pixelsAt(const QRect &part);

    X11Requests &m_requests;
};
