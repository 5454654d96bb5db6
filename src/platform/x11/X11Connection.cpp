#include "platform/x11/X11Connection.h"

#include "platform/x11/X11Platform.h"

#include "platform/Platform.h"
#include "platform/x11/XcbXkb.h"

#include <QSocketNotifier>

#include <algorithm>
#include <string>
#include <utility>

#include <xcb/sync.h>
#include <xcb/xcb.h>
#include <xcb/xfixes.h>
#include <xcb/xinput.h>
#include <xcb/xtest.h>

namespace {

/// The part of an event's type that tells that a program sent it.
constexpr int kSent = 0x80;

X11Connection::Extension learnExtension(xcb_connection_t *xcb, xcb_extension_t *extension)
{
    const xcb_query_extension_reply_t *data = xcb_get_extension_data(xcb, extension);
    if (!data || !data->present)
        return {};
    return {true, data->first_event, data->major_opcode};
}

xcb_screen_t *findScreen(xcb_connection_t *xcb, int screenNumber)
{
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(xcb));
    for (int i = 0; screens.rem > 0; ++i, xcb_screen_next(&screens)) {
        if (i == screenNumber)
            return screens.data;
    }
    return nullptr;
}

/// \throws PlatformError
xcb_connection_t *openDisplay(const QByteArray &name, int *screenNumber)
{
    if (name.isEmpty())
        throw PlatformError("There is no X11 display: DISPLAY is not set");
    xcb_connection_t *xcb = xcb_connect(name.constData(), screenNumber);
    if (xcb_connection_has_error(xcb) == 0 && findScreen(xcb, *screenNumber))
        return xcb;
    xcb_disconnect(xcb);
    throw PlatformError("The X11 display " + name.toStdString() + " cannot be reached");
}

} // namespace

bool isSentByProgram(const void *event)
{
    return (static_cast<const xcb_generic_event_t *>(event)->response_type & kSent) != 0;
}

void requireX11Display()
{
    int screenNumber = 0;
    xcb_disconnect(openDisplay(qgetenv("DISPLAY"), &screenNumber));
}

X11Connection::X11Connection(const QByteArray &displayName)
    : m_displayName(displayName.isEmpty() ? qgetenv("DISPLAY") : displayName)
{
    connectToServer();
    m_notifier =
        std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(xcb()), QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, &m_context,
                     [this] { processEvents(); });
}

X11Connection::~X11Connection()
{
    m_notifier.reset();
    xcb_disconnect(xcb());
}

void X11Connection::connectToServer()
{
    int screenNumber = 0;
    xcb_connection_t *xcb = openDisplay(m_displayName, &screenNumber);
    // Asked for before the first answer is awaited: two round trips for all.
    for (xcb_extension_t *extension :
         {&xcb_sync_id, &xcb_xfixes_id, &xcb_input_id, &xcb_xkb_id, &xcb_test_id})
        xcb_prefetch_extension_data(xcb, extension);
    xcb_prefetch_maximum_request_length(xcb);
    learn(xcb, findScreen(xcb, screenNumber)->root, screenNumber);
    learnExtensions();
    // Whoever asks first takes the answer from the wire, and events with it.
    xcb_get_maximum_request_length(xcb);
}

void X11Connection::learnExtensions()
{
    m_sync = learnExtension(xcb(), &xcb_sync_id);
    m_xfixes = learnExtension(xcb(), &xcb_xfixes_id);
    m_xinput = learnExtension(xcb(), &xcb_input_id);
    m_xkb = learnExtension(xcb(), &xcb_xkb_id);
    m_xtest = learnExtension(xcb(), &xcb_test_id);

    // An extension serves only those who have told it the version they speak.
    if (m_sync.isPresent)
        xcb_discard_reply(xcb(), xcb_sync_initialize(xcb(), 3, 0).sequence);
    const auto xfixesVersion =
        m_xfixes.isPresent ? std::optional(xcb_xfixes_query_version(xcb(), 5, 0)) : std::nullopt;
    const auto xinputVersion =
        m_xinput.isPresent ? std::optional(xcb_input_xi_query_version(xcb(), 2, 2)) : std::nullopt;
    const auto xkbVersion =
        m_xkb.isPresent ? std::optional(xcb_xkb_use_extension(xcb(), 1, 0)) : std::nullopt;
    if (xfixesVersion)
        m_xfixes.isPresent = reply(xcb_xfixes_query_version_reply, *xfixesVersion) != nullptr;
    if (xinputVersion)
        m_xinput.isPresent = reply(xcb_input_xi_query_version_reply, *xinputVersion) != nullptr;
    if (xkbVersion) {
        const auto version = reply(xcb_xkb_use_extension_reply, *xkbVersion);
        m_xkb.isPresent = version && version->supported;
    }
}

void X11Connection::flush()
{
    // A connection that is closed for a request of ours is not readable: nothing else would tell.
    if (xcb_flush(xcb()) <= 0)
        noteWaited();
}

void X11Connection::selectRootEvents(quint32 mask)
{
    m_rootEvents |= mask;
    xcb_change_window_attributes(xcb(), rootWindow(), XCB_CW_EVENT_MASK, &m_rootEvents);
    flush();
}

void X11Connection::addListener(X11EventListener *listener)
{
    m_listeners.push_back(listener);
}

void X11Connection::removeListener(X11EventListener *listener)
{
    std::erase(m_listeners, listener);
}

void X11Connection::noteWaited()
{
    if (m_isProcessingQueued)
        return;
    m_isProcessingQueued = true;
    QMetaObject::invokeMethod(
        &m_context,
        [this] {
            m_isProcessingQueued = false;
            processEvents();
        },
        Qt::QueuedConnection);
}

void X11Connection::catchUp()
{
    // Whatever the server has sent before an answer stands in the queue before that.
    reply(xcb_get_input_focus_reply, xcb_get_input_focus(xcb()));
    processEvents();
}

void X11Connection::noteUserTime(quint32 time)
{
    // The server's clock wraps round after 49 days; zero stands for no time at all.
    if (time != 0 && (m_userTime == 0 || qint32(time - m_userTime) > 0))
        m_userTime = time;
}

quint32 X11Connection::serverTime()
{
    if (!m_sync.isPresent)
        return 0;
    if (!m_serverTimeCounter)
        m_serverTimeCounter = findServerTimeCounter();
    if (*m_serverTimeCounter == 0)
        return 0;
    // The only way to it that brings an answer, and not an event that would have to be waited for.
    const auto time = reply(xcb_sync_query_counter_reply,
                            xcb_sync_query_counter(xcb(), *m_serverTimeCounter));
    return time ? time->counter_value.lo : 0;
}

quint32 X11Connection::findServerTimeCounter()
{
    constexpr QByteArrayView kName("SERVERTIME");
    const auto counters = reply(xcb_sync_list_system_counters_reply,
                                xcb_sync_list_system_counters(xcb()));
    if (!counters)
        return 0;
    for (auto counter = xcb_sync_list_system_counters_counters_iterator(counters.get());
         counter.rem > 0; xcb_sync_systemcounter_next(&counter)) {
        // Right behind the length. The library's own function reckons with padding in between.
        const char *name = reinterpret_cast<const char *>(&counter.data->name_len)
            + sizeof counter.data->name_len;
        if (QByteArrayView(name, counter.data->name_len) == kName)
            return counter.data->counter;
    }
    return 0;
}

void X11Connection::processEvents()
{
    while (const X11Reply<xcb_generic_event_t> event{xcb_poll_for_event(xcb())}) {
        const int type = event->response_type & ~kSent;
        if (type == 0) // An error of a request that nobody waits for.
            continue;
        // A listener may end another one, or itself.
        const std::vector<X11EventListener *> listeners = m_listeners;
        for (X11EventListener *listener : listeners) {
            if (std::ranges::find(m_listeners, listener) != m_listeners.end())
                listener->handleX11Event(type, event.get());
        }
    }
    if (xcb_connection_has_error(xcb()) == 0 || std::exchange(m_isLost, true))
        return;
    // A server that is gone stays readable for ever.
    m_notifier->setEnabled(false);
    if (onLost)
        onLost();
}
