#include "platform/x11/PanelStrut.h"

#include <algorithm>
#include <array>

namespace {

constexpr qsizetype kWholeCount = 4;
constexpr qsizetype kPartialCount = 12;

/// No screen of a server is larger.
constexpr quint32 kMostPixels = 0x7fff;

int pixels(quint32 value)
{
    return int(std::min(value, kMostPixels));
}

/// The strip's inner side, counted from where the screen begins.
int innerSide(const PanelStrut &strut, QSize screen)
{
    switch (strut.edge) {
    case Qt::RightEdge: return screen.width() - strut.depth;
    case Qt::BottomEdge: return screen.height() - strut.depth;
    default: return strut.depth;
    }
}

/// A panel's own monitor is the one within which its inner side lies. The strip of a panel at an
/// inner edge covers the monitors beyond wholly, and it is not on those.
void cut(QRect &rest, const QRect &monitor, const PanelStrut &strut, QSize screen)
{
    const bool isUpright = strut.edge == Qt::LeftEdge || strut.edge == Qt::RightEdge;
    const int side = innerSide(strut, screen);
    const auto [first, last] = isUpright ? std::pair(monitor.top(), monitor.bottom())
                                         : std::pair(monitor.left(), monitor.right());
    const auto [near, far] = isUpright ? std::pair(monitor.left(), monitor.right())
                                       : std::pair(monitor.top(), monitor.bottom());
    if (strut.end < first || strut.start > last || side <= near || side > far)
        return;
    switch (strut.edge) {
    case Qt::LeftEdge: rest.setLeft(std::max(rest.left(), side)); break;
    case Qt::TopEdge: rest.setTop(std::max(rest.top(), side)); break;
    case Qt::RightEdge: rest.setRight(std::min(rest.right(), side - 1)); break;
    case Qt::BottomEdge: rest.setBottom(std::min(rest.bottom(), side - 1)); break;
    }
}

} // namespace

QList<PanelStrut> panelStruts(const QList<quint32> &partial, const QList<quint32> &whole)
{
    constexpr std::array kEdges{Qt::LeftEdge, Qt::RightEdge, Qt::TopEdge, Qt::BottomEdge};
    const bool isPartial = partial.size() >= kPartialCount;
    const QList<quint32> &depths = isPartial ? partial : whole;
    QList<PanelStrut> struts;
    if (depths.size() < kWholeCount)
        return struts;
    for (qsizetype i = 0; i < kWholeCount; ++i) {
        if (depths[i] == 0)
            continue;
        PanelStrut strut{kEdges[size_t(i)], pixels(depths[i]), 0, int(kMostPixels)};
        if (isPartial) {
            strut.start = pixels(partial[kWholeCount + 2 * i]);
            strut.end = pixels(partial[kWholeCount + 2 * i + 1]);
        }
        struts.append(strut);
    }
    return struts;
}

QRect withoutStruts(const QRect &monitor, QSize screen, const QList<PanelStrut> &struts)
{
    QRect rest = monitor;
    for (const PanelStrut &strut : struts)
        cut(rest, monitor, strut, screen);
    return rest.isValid() ? rest : monitor;
}
