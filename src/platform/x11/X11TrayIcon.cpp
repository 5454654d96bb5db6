#include "platform/x11/X11TrayIcon.h"

#include "platform/linux/ScreenPoint.h"
#include "platform/linux/StatusIconDrawing.h"
#include "platform/x11/X11Pixels.h"

#include <QPainter>

#include <algorithm>
#include <utility>

#include <unistd.h>

#include <xcb/xcb.h>
#include <xcb/xcb_icccm.h>

using namespace std::chrono_literals;

namespace {

constexpr quint32 kLeftButton = 1;
constexpr quint32 kRightButton = 3;

/// The size before the panel says one; some keep it.
constexpr quint16 kFirstSide = 22;

constexpr int kLeastSide = 16;

/// A tray that lets the icon go mostly ends itself then, and one that destroys it might go on doing
/// so.
constexpr auto kPauseBeforeReturn = 1s;

/// A panel may give a window of any size; the icon lies in its middle then.
constexpr int kGreatestSide = 256;

constexpr quint32 kXembedVersion = 0;
constexpr quint32 kXembedMapped = 1;

constexpr char kWindowClass[] = "tessarine\0Tessarine"; // Instance and class, each with its zero.

constexpr quint32 kOwnEvents = XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_STRUCTURE_NOTIFY |
                               XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE |
                               XCB_EVENT_MASK_ENTER_WINDOW;

const xcb_screen_t *screenOf(xcb_connection_t *xcb, quint32 rootWindow)
{
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(xcb));
    while (screens.rem > 0 && screens.data->root != rootWindow)
        xcb_screen_next(&screens);
    return screens.rem > 0 ? screens.data : nullptr;
}

/// The depth of a visual; 0 if the screen has none of that number.
quint8 depthOf(const xcb_screen_t *screen, quint32 visual)
{
    for (auto depths = xcb_screen_allowed_depths_iterator(screen); depths.rem > 0;
         xcb_depth_next(&depths)) {
        for (auto visuals = xcb_depth_visuals_iterator(depths.data); visuals.rem > 0;
             xcb_visualtype_next(&visuals)) {
            if (visuals.data->visual_id == visual)
                return depths.data->depth;
        }
    }
    return 0;
}

} // namespace

X11TrayIcon::X11TrayIcon(X11Connection &connection, Scheduler &scheduler)
    : m_connection(connection)
    , m_scheduler(scheduler)
    , m_tray(connection)
    , m_panelGround(connection)
    , m_color(iconColorOnUnknownGround())
{
    m_connection.addListener(this);
    m_tray.onReplaced = [this] {
        undock();
        dock();
        m_connection.flush();
    };
    m_tray.onConfirmed = [this] {
        if (m_isEmbedded)
            return;
        // It may have missed the request.
        undock();
        dock();
        m_connection.flush();
    };
    m_tray.onWishesChanged = [this] {
        askForRoom();
        refreshColor();
    };
}

X11TrayIcon::~X11TrayIcon()
{
    m_connection.removeListener(this);
    undock();
    m_connection.flush();
}

void X11TrayIcon::show()
{
    if (std::exchange(m_isShown, true))
        return;
    dock();
}

void X11TrayIcon::hide()
{
    m_isShown = false;
    m_return.reset();
    undock();
    m_connection.flush();
}

void X11TrayIcon::setIcon(StatusItem::IconPainter painter, const QString &description)
{
    m_painter = std::move(painter);
    m_description = description.toUtf8();
    if (m_window == 0)
        return;
    setProperties();
    draw();
}

void X11TrayIcon::dock()
{
    if (!m_isShown || m_tray.window() == 0 || m_window != 0)
        return;
    m_look = findLook();
    createWindow();
    setProperties();
    askForRoom();
    m_tray.askForDocking(m_window);
    m_connection.flush();
}

void X11TrayIcon::dockAgainSoon()
{
    m_return = m_scheduler.after(kPauseBeforeReturn, [this] { m_tray.follow(); });
}

void X11TrayIcon::undock()
{
    if (m_window != 0)
        xcb_destroy_window(m_connection.xcb(), m_window);
    forgetWindow();
}

void X11TrayIcon::forgetWindow()
{
    if (m_colormap != 0)
        xcb_free_colormap(m_connection.xcb(), m_colormap);
    m_colormap = 0;
    m_window = 0;
    m_isEmbedded = false;
}

X11TrayIcon::Look X11TrayIcon::findLook() const
{
    const xcb_screen_t *screen = screenOf(m_connection.xcb(), m_connection.rootWindow());
    constexpr quint8 kDepthWithAlpha = 32;
    if (m_tray.visual() != 0 && depthOf(screen, m_tray.visual()) == kDepthWithAlpha)
        return {m_tray.visual(), kDepthWithAlpha, true};
    return {screen->root_visual, screen->root_depth, false};
}

void X11TrayIcon::createWindow()
{
    xcb_connection_t *xcb = m_connection.xcb();
    const quint32 root = m_connection.rootWindow();
    xcb_create_window_value_list_t values{};
    quint32 mask = XCB_CW_EVENT_MASK;
    values.event_mask = kOwnEvents;
    if (m_look.isTranslucent) {
        m_colormap = xcb_generate_id(xcb);
        xcb_create_colormap(xcb, XCB_COLORMAP_ALLOC_NONE, m_colormap, root, m_look.visual);
        mask |= XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_COLORMAP;
        values.colormap = m_colormap;
    } else {
        mask |= XCB_CW_BACK_PIXMAP;
        values.background_pixmap = XCB_BACK_PIXMAP_PARENT_RELATIVE;
    }
    m_window = xcb_generate_id(xcb);
    m_size = QSize(kFirstSide, kFirstSide);
    xcb_create_window_aux(xcb, m_look.depth, m_window, root, 0, 0, kFirstSide, kFirstSide, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, m_look.visual, mask, &values);
}

void X11TrayIcon::setProperties()
{
    xcb_connection_t *xcb = m_connection.xcb();
    const auto set = [&](quint32 property, quint32 type, quint8 format, size_t count,
                         const void *values) {
        xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, m_window, property, type, format,
                            quint32(count), values);
    };
    const quint32 xembedInfo[] = {kXembedVersion, kXembedMapped};
    const auto processId = quint32(getpid());
    const quint32 info = m_connection.atom(X11AtomName::XembedInfo);
    set(info, info, 32, 2, xembedInfo);
    set(m_connection.atom(X11AtomName::NetWmPid), XCB_ATOM_CARDINAL, 32, 1, &processId);
    set(XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8, sizeof kWindowClass, kWindowClass);
    set(m_connection.atom(X11AtomName::NetWmName), m_connection.atom(X11AtomName::Utf8String), 8,
        size_t(m_description.size()), m_description.constData());
}

void X11TrayIcon::askForRoom()
{
    if (m_window == 0)
        return;
    // Some panels give no more than what is asked for; the thickness of the panel is theirs to
    // choose.
    QSize room(kLeastSide, kLeastSide);
    if (m_tray.isVertical())
        room.setHeight(std::clamp(m_size.width(), kLeastSide, kGreatestSide));
    else
        room.setWidth(std::clamp(m_size.height(), kLeastSide, kGreatestSide));
    xcb_size_hints_t hints{};
    xcb_icccm_size_hints_set_min_size(&hints, room.width(), room.height());
    xcb_icccm_set_wm_normal_hints(m_connection.xcb(), m_window, &hints);
    m_connection.flush();
}

void X11TrayIcon::handleX11Event(int type, const void *event)
{
    switch (type) {
    case XCB_DESTROY_NOTIFY: handleDestruction(event); break;
    case XCB_REPARENT_NOTIFY: handleNewParent(event); break;
    case XCB_CONFIGURE_NOTIFY: handleSize(event); break;
    case XCB_EXPOSE: handleExposure(event); break;
    case XCB_ENTER_NOTIFY:
        if (isOwn(static_cast<const xcb_enter_notify_event_t *>(event)->event))
            announceGround();
        break;
    case XCB_BUTTON_RELEASE: handleButton(event); break;
    default: break;
    }
}

void X11TrayIcon::handleDestruction(const void *event)
{
    if (!isOwn(static_cast<const xcb_destroy_notify_event_t *>(event)->window) ||
        isSentByProgram(event))
        return;
    forgetWindow();
    dockAgainSoon();
    m_connection.flush();
}

void X11TrayIcon::handleNewParent(const void *event)
{
    const auto *notice = static_cast<const xcb_reparent_notify_event_t *>(event);
    if (!isOwn(notice->window) || isSentByProgram(event))
        return;
    const bool isLetGo = notice->parent == m_connection.rootWindow();
    // What a panel lets go of would lie on the desktop as a window of its own.
    if (isLetGo && m_isEmbedded) {
        undock();
        dockAgainSoon();
    } else {
        m_isEmbedded = !isLetGo;
    }
    m_connection.flush();
}

void X11TrayIcon::handleSize(const void *event)
{
    const auto *notice = static_cast<const xcb_configure_notify_event_t *>(event);
    const QSize size(notice->width, notice->height);
    if (!isOwn(notice->window) || std::exchange(m_size, size) == size)
        return;
    askForRoom();
    draw();
}

void X11TrayIcon::handleExposure(const void *event)
{
    const auto *notice = static_cast<const xcb_expose_event_t *>(event);
    if (!isOwn(notice->window) || notice->count != 0)
        return;
    draw();
    announceGround();
}

void X11TrayIcon::announceGround()
{
    if (onGroundMayHaveChanged)
        onGroundMayHaveChanged();
}

void X11TrayIcon::handleButton(const void *event)
{
    const auto *release = static_cast<const xcb_button_release_event_t *>(event);
    const QPoint place(release->event_x, release->event_y);
    if (!isOwn(release->event) || !QRect(QPoint(), m_size).contains(place))
        return;
    m_connection.noteUserTime(release->time);
    if (release->detail == kLeftButton && onClicked)
        onClicked();
    else if (release->detail == kRightButton && onMenuRequested)
        onMenuRequested(deviceIndependent(QPoint(release->root_x, release->root_y)));
}

void X11TrayIcon::refreshColor()
{
    if (m_window == 0 || !m_isEmbedded)
        return;
    const std::optional<QColor> behind = m_panelGround.behindIcon(m_window);
    QColor color = m_color;
    // What the panel asks for holds unless it is plainly wrong.
    const std::optional<QColor> wanted = m_tray.iconColor();
    if (wanted && (!behind || isLegible(*wanted, *behind)))
        color = *wanted;
    else if (behind)
        color = iconColorOn(*behind);
    if (std::exchange(m_color, color) != color)
        draw();
}

bool X11TrayIcon::contains(const QPoint &place)
{
    if (m_window == 0 || !m_isEmbedded)
        return false;
    const auto inWindow = m_connection.reply(
        xcb_translate_coordinates_reply,
        xcb_translate_coordinates(m_connection.xcb(), m_connection.rootWindow(), m_window,
                                  qint16(place.x()), qint16(place.y())));
    return inWindow && QRect(QPoint(), m_size).contains(QPoint(inWindow->dst_x, inWindow->dst_y));
}

void X11TrayIcon::draw()
{
    if (m_window == 0 || !m_painter || m_size.isEmpty())
        return;
    const QSize size = m_size.boundedTo({kGreatestSide, kGreatestSide});
    const QPoint place((m_size.width() - size.width()) / 2, (m_size.height() - size.height()) / 2);
    const QImage icon = drawIconInto(size, m_painter, m_color);
    const QImage picture = m_look.isTranslucent ? icon : onGround(icon, place);
    drawPixels(m_connection, m_window, m_look.depth, place, picture);
    m_connection.flush();
}

QImage X11TrayIcon::onGround(const QImage &icon, const QPoint &place)
{
    // The server paints the panel's own ground where the window is cleared.
    xcb_clear_area(m_connection.xcb(), 0, m_window, 0, 0, 0, 0);
    const QImage ground = readPixels(m_connection, m_window, icon.rect().translated(place));
    // Not on the screen, or not wholly: it is drawn when it comes there.
    if (ground.isNull())
        return {};
    QImage picture = ground.convertToFormat(QImage::Format_RGB32);
    QPainter(&picture).drawImage(0, 0, icon);
    return picture;
}
