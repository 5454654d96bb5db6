#include "platform/x11/X11Blur.h"

#include "platform/x11/QtX11Connection.h"

#include <QPainterPath>
#include <QRegion>
#include <QTransform>
#include <QWindow>

#include <utility>

#include <xcb/xcb.h>

namespace {

/// \a shape in device pixels, as four numbers for each of the boxes that make it up.
QList<quint32> boxesOf(const QPainterPath &shape, qreal pixelRatio)
{
    const QPainterPath inPixels = QTransform::fromScale(pixelRatio, pixelRatio).map(shape);
    QList<quint32> boxes;
    for (const QRect &box : QRegion(inPixels.toFillPolygon().toPolygon())) {
        for (const int number : {box.x(), box.y(), box.width(), box.height()})
            boxes.append(quint32(number));
    }
    return boxes;
}

} // namespace

X11Blur::X11Blur(X11Connection &connection)
    : m_connection(connection)
    , m_property(connection.atom(X11AtomName::KdeBlurBehindRegion))
{
    m_connection.selectRootEvents(XCB_EVENT_MASK_PROPERTY_CHANGE);
    m_connection.addListener(this);
    const auto request = m_connection.requestProperty(m_connection.rootWindow(), m_property);
    const auto offer = m_connection.takeProperty(request);
    m_isOffered = offer && !offer->isEmpty();
}

X11Blur::~X11Blur()
{
    m_connection.removeListener(this);
}

void X11Blur::blurBehind(QWindow *window, const QPainterPath &shape) const
{
    // On Qt's connection, because there the window is created before and mapped after this.
    xcb_connection_t *xcb = qtX11Connection();
    if (!xcb)
        return;
    const auto id = quint32(window->winId());
    const QList<quint32> boxes = boxesOf(shape, window->devicePixelRatio());
    if (boxes.isEmpty()) {
        xcb_delete_property(xcb, id, m_property);
    } else {
        xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, id, m_property, XCB_ATOM_CARDINAL, 32,
                            quint32(boxes.size()), boxes.constData());
    }
    xcb_flush(xcb);
}

void X11Blur::handleX11Event(int type, const void *event)
{
    if (type != XCB_PROPERTY_NOTIFY)
        return;
    const auto *notice = static_cast<const xcb_property_notify_event_t *>(event);
    if (notice->window != m_connection.rootWindow() || notice->atom != m_property)
        return;
    const bool isOffered = notice->state == XCB_PROPERTY_NEW_VALUE;
    if (std::exchange(m_isOffered, isOffered) != isOffered && onChanged)
        onChanged();
}
