#include "platform/x11/X11HotkeyThread.h"

#include "foundation/ThreadName.h"
#include "platform/Platform.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/XcbXkb.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>
#include <xcb/xcb.h>

using namespace std::chrono_literals;

namespace {

/// Every union of some of the bits of \a mask, the empty one too.
std::vector<quint16> subsetsOf(quint8 mask)
{
    std::vector<quint16> subsets;
    quint16 subset = 0;
    do {
        subsets.push_back(subset);
        subset = quint16((subset - mask) & mask);
    } while (subset != 0);
    return subsets;
}

/// A held key repeats as release and press; this way only the presses come, and the release that
/// does come is the real one.
void disableRepeatedReleases(xcb_connection_t *xcb)
{
    const xcb_query_extension_reply_t *xkb = xcb_get_extension_data(xcb, &xcb_xkb_id);
    if (!xkb || !xkb->present)
        return;
    constexpr quint32 kFlag = XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT;
    xcb_discard_reply(xcb, xcb_xkb_use_extension(xcb, 1, 0).sequence);
    xcb_discard_reply(xcb,
                      xcb_xkb_per_client_flags(xcb, XCB_XKB_ID_USE_CORE_KBD, kFlag, kFlag, 0, 0, 0)
                          .sequence);
}

} // namespace

X11HotkeyThread::X11HotkeyThread(const X11Connection &connection, const Patience &patience,
                                 std::function<void(Press)> onPressed)
    : m_patience(patience)
    , m_onPressed(std::move(onPressed))
    , m_xcb(xcb_connect(connection.displayName().constData(), nullptr), xcb_disconnect)
    , m_rootWindow(connection.rootWindow())
{
    if (xcb_connection_has_error(m_xcb.get()) != 0)
        throw PlatformError("the X server takes no further connection");
    m_wakeDescriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (m_wakeDescriptor < 0)
        throw PlatformError("no event descriptor is left");
    disableRepeatedReleases(m_xcb.get());
    m_thread = std::thread([this] { run(); });
}

X11HotkeyThread::~X11HotkeyThread()
{
    m_isEnding = true;
    wake();
    m_thread.join();
    close(m_wakeDescriptor);
}

int X11HotkeyThread::grab(const Grab &wanted)
{
    std::vector<xcb_void_cookie_t> requests;
    for (const quint16 locks : subsetsOf(wanted.locks)) {
        requests.push_back(xcb_grab_key_checked(m_xcb.get(), 0, m_rootWindow,
                                                wanted.modifiers | locks, wanted.key,
                                                XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_SYNC));
    }
    int firstError = 0;
    for (const xcb_void_cookie_t request : requests) {
        const X11Reply<xcb_generic_error_t> error(xcb_request_check(m_xcb.get(), request));
        if (error && firstError == 0)
            firstError = error->error_code;
    }
    if (firstError != 0)
        ungrab(wanted); // Those that did succeed.
    wake(); // A press that came meanwhile lies in the queue, and nothing else would tell.
    return firstError;
}

void X11HotkeyThread::ungrab(const Grab &held)
{
    for (const quint16 locks : subsetsOf(held.locks))
        xcb_ungrab_key(m_xcb.get(), held.key, m_rootWindow, held.modifiers | locks);
    xcb_flush(m_xcb.get());
    wake(); // Sending reads as well.
}

void X11HotkeyThread::letKeysGo(const Press &press, quint32 window)
{
    {
        const std::lock_guard lock(m_mutex);
        m_answer = Answer{press.number, window};
    }
    wake();
}

void X11HotkeyThread::abandonPress()
{
    xcb_ungrab_keyboard(m_xcb.get(), XCB_CURRENT_TIME);
    const X11Reply<xcb_get_input_focus_reply_t> done(
        xcb_get_input_focus_reply(m_xcb.get(), xcb_get_input_focus(m_xcb.get()), nullptr));
    m_isPressAbandoned = true;
    wake(); // What came before the answer lies in the queue.
}

void X11HotkeyThread::wake()
{
    eventfd_write(m_wakeDescriptor, 1);
}

void X11HotkeyThread::run()
{
    nameCurrentThread("tessarine.hotkey");
    while (!m_isEnding && xcb_connection_has_error(m_xcb.get()) == 0) {
        const bool isPressAbandoned = m_isPressAbandoned.exchange(false);
        takeAnswer();
        handleEvents();
        if (isPressAbandoned)
            forgetPress();
        if (m_deadline && SteadyClock::now() >= *m_deadline)
            thaw();
        handleEvents(); // Sending reads as well, and nothing else would tell of that.
        waitForNews();
    }
}

/// Nothing of it comes any more, not even the release of the key. It may have been among the last
/// events itself: taken for one that is still held, it would have the next press taken for a repeat.
void X11HotkeyThread::forgetPress()
{
    m_heldKey = 0;
    if (m_deadline)
        thaw();
}

void X11HotkeyThread::handleEvents()
{
    while (const X11Reply<xcb_generic_event_t> event{xcb_poll_for_event(m_xcb.get())}) {
        const auto *key = reinterpret_cast<const xcb_key_press_event_t *>(event.get());
        const auto *focus = reinterpret_cast<const xcb_focus_in_event_t *>(event.get());
        // Without the bit that tells that a program sent it: nobody else is to let the keys go.
        switch (event->response_type) {
        case XCB_KEY_PRESS: handlePress(key->detail, key->time); break;
        case XCB_KEY_RELEASE:
            // The modifiers may be let go of first. With the key itself the grab ends.
            if (key->detail == m_heldKey)
                m_heldKey = 0;
            else
                allow(XCB_ALLOW_SYNC_KEYBOARD);
            break;
        case XCB_FOCUS_IN:
            if (focus->event == m_expectedWindow && focus->detail != XCB_NOTIFY_DETAIL_POINTER)
                thaw();
            break;
        case XCB_UNMAP_NOTIFY:
        case XCB_DESTROY_NOTIFY:
            // The window that was to get the keys is gone, and both name it in the same place.
            if (reinterpret_cast<const xcb_unmap_notify_event_t *>(event.get())->window
                == m_expectedWindow)
                thaw();
            break;
        default: break;
        }
    }
}

void X11HotkeyThread::handlePress(quint8 key, quint32 time)
{
    if (m_heldKey == 0) {
        m_heldKey = key;
        m_deadline = SteadyClock::now() + m_patience.forAnswer;
        m_onPressed({++m_pressCount, time});
    } else if (key == m_heldKey) {
        allow(XCB_ALLOW_SYNC_KEYBOARD);
    } else {
        // Fast fingers are at the first letter before the hot key is up. It ends our grab, which
        // would swallow it, and goes where it would go without.
        m_heldKey = 0;
        allow(XCB_ALLOW_REPLAY_KEYBOARD);
    }
}

void X11HotkeyThread::takeAnswer()
{
    std::optional<Answer> answer;
    {
        const std::lock_guard lock(m_mutex);
        answer = std::exchange(m_answer, std::nullopt);
    }
    if (!m_deadline || !answer || answer->press != m_pressCount)
        return;
    m_expectedWindow = answer->window;
    if (m_expectedWindow == 0) {
        thaw();
        return;
    }
    m_deadline = SteadyClock::now() + m_patience.forFocus;
    // Watched first and looked at second, so that the moment between is not missed.
    watchFocus(m_expectedWindow, true);
    if (hasFocus(m_expectedWindow))
        thaw();
}

bool X11HotkeyThread::hasFocus(quint32 window)
{
    const X11Reply<xcb_get_input_focus_reply_t> focus(
        xcb_get_input_focus_reply(m_xcb.get(), xcb_get_input_focus(m_xcb.get()), nullptr));
    return focus && focus->focus == window;
}

void X11HotkeyThread::watchFocus(quint32 window, bool isWatched)
{
    const quint32 mask = isWatched ? XCB_EVENT_MASK_FOCUS_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY
                                   : XCB_EVENT_MASK_NO_EVENT;
    xcb_change_window_attributes(m_xcb.get(), window, XCB_CW_EVENT_MASK, &mask);
}

/// From here on each key under our grab is asked about, as long as the hot key is held down.
void X11HotkeyThread::thaw()
{
    m_deadline.reset();
    if (m_expectedWindow != 0)
        watchFocus(std::exchange(m_expectedWindow, 0), false);
    allow(XCB_ALLOW_SYNC_KEYBOARD);
}

void X11HotkeyThread::allow(quint8 mode)
{
    xcb_allow_events(m_xcb.get(), mode, XCB_CURRENT_TIME);
    xcb_flush(m_xcb.get());
}

void X11HotkeyThread::waitForNews() const
{
    int timeout = -1;
    if (m_deadline) {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(*m_deadline - SteadyClock::now());
        timeout = int(std::max(left, 0ms).count());
    }
    std::array<pollfd, 2> descriptors{
        {{xcb_get_file_descriptor(m_xcb.get()), POLLIN, 0}, {m_wakeDescriptor, POLLIN, 0}}};
    poll(descriptors.data(), descriptors.size(), timeout);
    eventfd_t count = 0;
    eventfd_read(m_wakeDescriptor, &count);
}
