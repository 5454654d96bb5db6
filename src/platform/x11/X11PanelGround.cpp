#include "platform/x11/X11PanelGround.h"

#include "platform/linux/StatusIconDrawing.h"
#include "platform/x11/X11Pixels.h"

#include <xcb/xcb.h>

namespace {

/// Windows lie in few others; more means a ring.
constexpr int kMaxDepth = 32;

/// Along which lines of a panel its pixels are read, in parts of its thickness: most of what lies
/// on a panel does not reach to its edges.
constexpr double kSampledLines[] = {0.15, 0.5, 0.85};

} // namespace

std::optional<QColor> X11PanelGround::behindIcon(quint32 window)
{
    const std::optional<Place> place = placeOf(window);
    if (!place || !isSeenAt(*place, place->onScreen.center()))
        return std::nullopt;
    const QRect &box = place->onScreen;
    const QImage image = readPixels(m_requests, m_requests.rootWindow(), box);
    if (image.isNull())
        return std::nullopt;
    QList<QRgb> edge;
    for (int x = 0; x < image.width(); ++x)
        edge << image.pixel(x, 0) << image.pixel(x, image.height() - 1);
    for (int y = 0; y < image.height(); ++y)
        edge << image.pixel(0, y) << image.pixel(image.width() - 1, y);
    return prevailingColor(edge);
}

std::optional<QColor> X11PanelGround::ofPanels(qint64 processId)
{
    const QList<quint32> windows = panels(processId);
    for (const quint32 window : windows) {
        if (const std::optional<QColor> color = colorOfPanel(window))
            return color;
    }
    return std::nullopt;
}

QList<quint32> X11PanelGround::panels(qint64 processId)
{
    const QList<quint32> windows = propertyWords(m_requests.takeProperty(m_requests.requestProperty(
        m_requests.rootWindow(), m_requests.atom(X11AtomName::NetClientList))));
    QList<std::pair<quint32, quint32>> questions;
    for (const quint32 window : windows) {
        questions.append(
            {m_requests.requestProperty(window, m_requests.atom(X11AtomName::NetWmWindowType)),
             m_requests.requestProperty(window, m_requests.atom(X11AtomName::NetWmPid))});
    }

    QList<quint32> own;
    QList<quint32> others;
    for (qsizetype i = 0; i < windows.size(); ++i) {
        const QList<quint32> types = propertyWords(m_requests.takeProperty(questions[i].first));
        const QList<quint32> owner = propertyWords(m_requests.takeProperty(questions[i].second));
        if (!types.contains(m_requests.atom(X11AtomName::NetWmWindowTypeDock)))
            continue;
        const bool isOwn = processId != 0 && !owner.isEmpty() && owner.first() == processId;
        (isOwn ? own : others).append(windows[i]);
    }
    return own.isEmpty() ? others : own;
}

std::optional<QColor> X11PanelGround::colorOfPanel(quint32 window)
{
    const std::optional<Place> place = placeOf(window);
    if (!place || !isSeenAt(*place, place->onScreen.center()))
        return std::nullopt;
    const QRect &box = place->onScreen;
    QList<QRgb> pixels;
    for (const double part : kSampledLines) {
        if (box.width() >= box.height())
            pixels += pixelsAt({box.x(), box.y() + int(part * box.height()), box.width(), 1});
        else
            pixels += pixelsAt({box.x() + int(part * box.width()), box.y(), 1, box.height()});
    }
    return prevailingColor(pixels);
}

QList<QRgb> X11PanelGround::pixelsAt(const QRect &part)
{
    const QImage image = readPixels(m_requests, m_requests.rootWindow(), part);
    QList<QRgb> pixels;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            pixels.append(image.pixel(x, y));
    }
    return pixels;
}

std::optional<X11PanelGround::Place> X11PanelGround::placeOf(quint32 window)
{
    const auto geometryRequest = xcb_get_geometry(m_requests.xcb(), window);
    const auto originRequest =
        xcb_translate_coordinates(m_requests.xcb(), window, m_requests.rootWindow(), 0, 0);
    const auto rootRequest = xcb_get_geometry(m_requests.xcb(), m_requests.rootWindow());
    const auto geometry = m_requests.reply(xcb_get_geometry_reply, geometryRequest);
    const auto origin = m_requests.reply(xcb_translate_coordinates_reply, originRequest);
    const auto root = m_requests.reply(xcb_get_geometry_reply, rootRequest);
    if (!geometry || !origin || !root)
        return std::nullopt;

    Place place;
    place.onScreen = QRect(origin->dst_x, origin->dst_y, geometry->width, geometry->height) &
                     QRect(0, 0, root->width, root->height);
    for (int depth = 0; depth < kMaxDepth; ++depth) {
        const auto tree =
            m_requests.reply(xcb_query_tree_reply, xcb_query_tree(m_requests.xcb(), window));
        if (!tree || tree->parent == XCB_NONE)
            return std::nullopt;
        place.outermost = window;
        if (tree->parent == m_requests.rootWindow())
            return place;
        window = tree->parent;
    }
    return std::nullopt;
}

bool X11PanelGround::isSeenAt(const Place &place, const QPoint &point)
{
    const quint32 root = m_requests.rootWindow();
    const auto child =
        m_requests.reply(xcb_translate_coordinates_reply,
                         xcb_translate_coordinates(m_requests.xcb(), root, root, qint16(point.x()),
                                                   qint16(point.y())));
    return !place.onScreen.isEmpty() && child && child->child == place.outermost;
}
