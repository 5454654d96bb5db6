#include "platform/x11/X11GlobalHotkey.h"

#include "foundation/Log.h"
#include "platform/linux/VirtualKeyCodes.h"
#include "platform/x11/X11Keyboard.h"
#include "platform/x11/XcbXkb.h"

#include <xcb/xcb.h>

using namespace Qt::StringLiterals;

namespace {

constexpr quint32 kCommand = 0x100;
constexpr quint32 kShift = 0x200;
constexpr quint32 kOption = 0x800;
constexpr quint32 kControl = 0x1000;

/// The bits of an event's state that are modifiers, and not pointer buttons or layouts.
constexpr quint16 kAllModifiers = 0xff;

static_assert(HotkeyError::kHeldByAnother == XCB_ACCESS);

/// X key codes are the kernel's, moved by eight.
constexpr quint32 kKernelKeyOffset = 8;

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

} // namespace

X11GlobalHotkey::X11GlobalHotkey(X11Connection &connection, X11Keyboard &keyboard)
    : m_connection(connection)
    , m_keyboard(keyboard)
{
    disableRepeatedReleases();
    // The way round it would be to listen to all keys, which are nobody's business: a password for
    // the locked screen is among them. And the menu would get the key too, and keep the keyboard.
    printLine(u"While a menu of another program is open, all keys go to it, the hot key too"_s);
    m_keyboard.onLayoutChanged = [this] { regrab(); };
    m_connection.selectRootEvents(XCB_EVENT_MASK_PROPERTY_CHANGE);
    m_connection.addListener(this);
}

X11GlobalHotkey::~X11GlobalHotkey()
{
    release();
    m_connection.removeListener(this);
    m_keyboard.onLayoutChanged = nullptr;
}

void X11GlobalHotkey::disableRepeatedReleases()
{
    // A held key repeats as release and press; this way only the presses come, and the release
    // that does come is the real one.
    if (!m_connection.xkb().isPresent)
        return;
    constexpr quint32 kFlag = XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT;
    const auto cookie = xcb_xkb_per_client_flags_unchecked(
        m_connection.xcb(), XCB_XKB_ID_USE_CORE_KBD, kFlag, kFlag, 0, 0, 0);
    xcb_discard_reply(m_connection.xcb(), cookie.sequence);
}

int X11GlobalHotkey::assign(quint32 keyCode, quint32 modifiers)
{
    if (!m_keyboard.isSupported())
        return HotkeyError::kNotSupported;
    m_combination = Combination{keyCode, modifiers};
    return grab(findGrab(*m_combination));
}

void X11GlobalHotkey::release()
{
    m_combination.reset();
    ungrab();
}

std::optional<quint32> X11GlobalHotkey::findKeyCode(quint32 nativeKey)
{
    for (const VirtualKey &key : virtualKeys()) {
        if (findKey(key) == nativeKey)
            return key.code;
    }
    return std::nullopt;
}

std::optional<X11GlobalHotkey::Grab> X11GlobalHotkey::findGrab(const Combination &combination)
{
    const std::optional<VirtualKey> virtualKey = findVirtualKey(combination.keyCode);
    const auto key = virtualKey ? findKey(*virtualKey) : std::nullopt;
    if (!key)
        return std::nullopt;

    Grab grab;
    grab.key = *key;
    grab.locks = m_keyboard.lockMask();
    if (combination.modifiers & kShift)
        grab.modifiers |= XCB_MOD_MASK_SHIFT;
    if (combination.modifiers & kControl)
        grab.modifiers |= XCB_MOD_MASK_CONTROL;
    if (combination.modifiers & kOption)
        grab.modifiers |= m_keyboard.optionMask();
    if (combination.modifiers & kCommand) {
        if (m_keyboard.commandMask() == 0)
            return std::nullopt;
        grab.modifiers |= m_keyboard.commandMask();
    }
    return grab;
}

std::optional<quint8> X11GlobalHotkey::findKey(const VirtualKey &key)
{
    if (const auto byMeaning = m_keyboard.findKey(key.keysym))
        return byMeaning;
    // No layout of the keyboard has the letter: the person still knows its place.
    return quint8(key.position + kKernelKeyOffset);
}

int X11GlobalHotkey::grab(const std::optional<Grab> &wanted)
{
    if (!wanted)
        return HotkeyError::kNoSuchKey;
    std::vector<xcb_void_cookie_t> requests;
    for (const quint16 locks : subsetsOf(wanted->locks)) {
        requests.push_back(xcb_grab_key_checked(m_connection.xcb(), 0, m_connection.rootWindow(),
                                                wanted->modifiers | locks, wanted->key,
                                                XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    }
    int firstError = 0;
    for (const xcb_void_cookie_t request : requests) {
        const X11Reply<xcb_generic_error_t> error(xcb_request_check(m_connection.xcb(), request));
        if (error && firstError == 0)
            firstError = error->error_code;
    }
    m_connection.noteWaited();

    m_grab = wanted;
    if (firstError != 0)
        ungrab(); // Those that did succeed.
    return firstError;
}

void X11GlobalHotkey::ungrab()
{
    if (!m_grab)
        return;
    for (const quint16 locks : subsetsOf(m_grab->locks)) {
        xcb_ungrab_key(m_connection.xcb(), m_grab->key, m_connection.rootWindow(),
                       m_grab->modifiers | locks);
    }
    m_connection.flush();
    m_grab.reset();
    m_isHeld = false;
}

void X11GlobalHotkey::regrab()
{
    if (!m_combination)
        return;
    const std::optional<Grab> wanted = findGrab(*m_combination);
    if (m_grab && m_grab == wanted)
        return;
    const bool wasInForce = m_grab.has_value();
    ungrab();
    const int error = grab(wanted);
    if (error != 0 && wasInForce)
        printLine(u"Failed to register hotkey on the changed keyboard: %1"_s.arg(error));
    else if (error == 0 && !wasInForce && onAssignedLater)
        onAssignedLater();
}

void X11GlobalHotkey::regrabSoon()
{
    // A window manager notes one change in several properties.
    if (std::exchange(m_isRegrabQueued, true))
        return;
    QMetaObject::invokeMethod(
        &m_context,
        [this] {
            m_isRegrabQueued = false;
            regrab();
        },
        Qt::QueuedConnection);
}

void X11GlobalHotkey::handleX11Event(int type, const void *event)
{
    if (type == XCB_PROPERTY_NOTIFY && m_combination && !m_grab)
        regrabSoon();
    if (!m_grab || (type != XCB_KEY_PRESS && type != XCB_KEY_RELEASE))
        return;
    const auto *key = static_cast<const xcb_key_press_event_t *>(event);
    if (key->detail != m_grab->key)
        return;
    // The modifiers may be let go of first.
    if (type == XCB_KEY_RELEASE) {
        m_isHeld = false;
        return;
    }
    if ((key->state & kAllModifiers & ~m_grab->locks) != m_grab->modifiers)
        return;
    if (std::exchange(m_isHeld, true))
        return;
    m_connection.noteUserTime(key->time);
    if (onPressed)
        onPressed();
}
