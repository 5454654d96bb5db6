#include "platform/x11/X11GlobalHotkey.h"

#include "foundation/Log.h"
#include "platform/linux/VirtualKeyCodes.h"
#include "platform/x11/X11Keyboard.h"

#include <QCoreApplication>

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

} // namespace

X11GlobalHotkey::X11GlobalHotkey(X11Connection &connection, X11Keyboard &keyboard,
                                 const X11HotkeyThread::Patience &patience)
    : m_connection(connection)
    , m_keyboard(keyboard)
    , m_thread(connection, patience, [this](const X11HotkeyThread::Press &press) {
        QMetaObject::invokeMethod(
            &m_context, [this, press] { handlePress(press); }, Qt::QueuedConnection);
    })
{
    // The way round it would be to listen to all keys, which are nobody's business: a password for
    // the locked screen is among them. And the menu would get the key too, and keep the keyboard.
    printLine(u"While a menu of another program is open, all keys go to it, the hot key too"_s);
    m_keyboard.onLayoutChanged = [this] { regrab(); };
    m_connection.selectRootEvents(XCB_EVENT_MASK_PROPERTY_CHANGE);
    m_connection.addListener(this);
    QCoreApplication::instance()->installNativeEventFilter(this);
}

X11GlobalHotkey::~X11GlobalHotkey()
{
    release();
    m_connection.removeListener(this);
    m_keyboard.onLayoutChanged = nullptr;
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

void X11GlobalHotkey::suspend()
{
    ungrab();
    m_thread.abandonPress();
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
    const int error = m_thread.grab(*wanted);
    if (error == 0)
        m_grab = wanted;
    return error;
}

void X11GlobalHotkey::ungrab()
{
    if (m_grab)
        m_thread.ungrab(*m_grab);
    m_grab.reset();
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

void X11GlobalHotkey::handleX11Event(int type, const void *)
{
    if (type == XCB_PROPERTY_NOTIFY && m_combination && !m_grab)
        regrabSoon();
}

bool X11GlobalHotkey::nativeEventFilter(const QByteArray &eventType, void *message, qintptr *)
{
    if (eventType != "xcb_generic_event_t")
        return false;
    const auto *key = static_cast<const xcb_key_press_event_t *>(message);
    // A press that comes to a window of ours, and not to the grab, was made while a menu of ours had
    // the keyboard.
    if (key->response_type != XCB_KEY_PRESS || !m_grab || key->detail != m_grab->key
        || (key->state & kAllModifiers & ~m_grab->locks) != m_grab->modifiers)
        return false;
    announcePress(key->time);
    return true;
}

void X11GlobalHotkey::handlePress(const X11HotkeyThread::Press &press)
{
    m_activatedWindow = 0;
    // The press has come by a connection of its own, and must not overtake what was before it: which
    // window is in front.
    m_connection.catchUp();
    announcePress(press.time);
    m_thread.letKeysGo(press, m_activatedWindow);
}

void X11GlobalHotkey::announcePress(quint32 time)
{
    // The combination may have been given back meanwhile.
    if (!m_grab)
        return;
    m_connection.noteUserTime(time);
    if (onPressed)
        onPressed();
}
