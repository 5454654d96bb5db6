#include "platform/x11/X11PasteKeystroke.h"

#include "platform/linux/DesktopEntries.h"
#include "platform/x11/XcbXkb.h"

#include <algorithm>

#include <xcb/xcb.h>
#include <xcb/xinput.h>
#include <xcb/xtest.h>

namespace {

constexpr quint32 kShiftLeft = 0xffe1;
constexpr quint32 kShiftRight = 0xffe2;
constexpr quint32 kControlLeft = 0xffe3;
constexpr quint32 kControlRight = 0xffe4;
constexpr quint32 kInsert = 0xff63;

/// Where the key is on every keyboard with the usual key codes, should no symbol tell.
constexpr quint8 kUsualInsertKey = 118;
constexpr quint8 kUsualControlKey = 37;
constexpr quint8 kUsualShiftKey = 50;

/// How often the focus may move while the keyboard is asked.
constexpr int kMaxAttempts = 3;

/// Keeps the server from serving anybody else.
class ServerGrab
{
public:
    explicit ServerGrab(X11Connection &connection)
        : m_connection(connection)
    {
        xcb_grab_server(m_connection.xcb());
    }

    ~ServerGrab()
    {
        xcb_ungrab_server(m_connection.xcb());
        m_connection.flush();
    }

    ServerGrab(const ServerGrab &) = delete;
    ServerGrab &operator=(const ServerGrab &) = delete;

private:
    X11Connection &m_connection;
};

bool hasKey(const QByteArray &heldKeys, quint8 key)
{
    return key / 8 < heldKeys.size() && (quint8(heldKeys[key / 8]) & (1 << (key % 8))) != 0;
}

} // namespace

X11PasteKeystroke::X11PasteKeystroke(X11Connection &connection, X11Keyboard &keyboard,
                                     X11KnownWindows &knownWindows, const DesktopEntries &entries,
                                     std::function<bool()> ownPrimary)
    : m_connection(connection)
    , m_keyboard(keyboard)
    , m_knownWindows(knownWindows)
    , m_entries(entries)
    , m_ownPrimary(std::move(ownPrimary))
    , m_windows(connection)
{
}

bool X11PasteKeystroke::isPermitted() const
{
    return m_connection.xtest().isPresent;
}

void X11PasteKeystroke::requestPermission()
{
    // X11 has nobody who could be asked: the extension is there or it is not.
}

void X11PasteKeystroke::prepare(const RunningApplication &target)
{
    m_target = target;
    const auto identity = m_windows.identity(m_knownWindows.find(target));
    const auto entry = m_entries.findById(target.bundleIdentifier);
    m_wantedChord = pasteChordFor(identity ? identity->instanceName : QString(),
                                  identity ? identity->className : QString(),
                                  entry ? entry->categories : QStringList());

    // In a terminal Shift+Insert pastes PRIMARY.
    const bool isTerminal = m_wantedChord != PasteChord::ControlV;
    const bool isShiftInsert =
        m_wantedChord == PasteChord::ShiftInsert || !findLetterV(m_keyboard.state().lockedGroup);
    m_wouldPasteOther = isTerminal && isShiftInsert && !m_ownPrimary();
}

std::optional<quint8> X11PasteKeystroke::findLetterV(int group) const
{
    if (const auto inActiveLayout = m_keyboard.findKeyInGroup('v', group))
        return inActiveLayout;
    // Programs look for the letters of shortcuts in the other layouts too.
    return m_keyboard.findKey('v');
}

X11PasteKeystroke::Chord X11PasteKeystroke::findChord(PasteChord chord, int group) const
{
    const auto firstOf = [this](quint32 left, quint32 right, quint8 usual) {
        const auto key = m_keyboard.findKey(left);
        return key ? *key : m_keyboard.findKey(right).value_or(usual);
    };
    const quint8 shift = firstOf(kShiftLeft, kShiftRight, kUsualShiftKey);
    const quint8 control = firstOf(kControlLeft, kControlRight, kUsualControlKey);
    const std::optional<quint8> letter = findLetterV(group);

    if (chord == PasteChord::ShiftInsert || !letter)
        return Chord{{shift}, m_keyboard.findKey(kInsert).value_or(kUsualInsertKey)};
    if (chord == PasteChord::ControlShiftV)
        return Chord{{control, shift}, *letter};
    return Chord{{control}, *letter};
}

PasteKeystroke::KeyDown X11PasteKeystroke::postKeyDown()
{
    if (!isPermitted() || !m_keyboard.isSupported())
        return KeyDown::Failed;

    for (int attempt = 0; attempt < kMaxAttempts; ++attempt) {
        const quint32 focus = m_windows.focusWindow();
        if (!m_windows.belongsTo(focus, m_knownWindows.find(m_target)))
            return KeyDown::TargetNotFocused;
        if (m_wouldPasteOther)
            return KeyDown::Failed;

        m_earlierState = m_keyboard.state();
        const Chord chord = findChord(m_wantedChord, m_earlierState.lockedGroup);
        const std::vector<quint8> held = heldModifiers();
        m_liftedKeys = findOnKeyboards(held);

        // Everybody waits meanwhile, so there is one question only, and no other window gets the
        // focus between its answer and the keys.
        const ServerGrab grab(m_connection);
        if (m_windows.focusWindow() == focus) {
            pressChord(chord, held);
            return KeyDown::Posted;
        }
    }
    return KeyDown::TargetNotFocused;
}

void X11PasteKeystroke::pressChord(const Chord &chord, const std::vector<quint8> &heldModifiers)
{
    for (const quint8 key : heldModifiers)
        release(key);
    clearStickyModifiers();
    for (const quint8 modifier : chord.modifiers)
        press(modifier);
    press(chord.key);
    m_pressedChord = chord;
}

bool X11PasteKeystroke::postKeyUp()
{
    if (!m_pressedChord)
        return false;

    release(m_pressedChord->key);
    // Modifiers go down again while those of the chord are still held: a lone Alt would open the
    // program's menu when the person lets go of it.
    putBackModifiers(false);
    for (const quint8 modifier : m_pressedChord->modifiers)
        release(modifier);
    putBackModifiers(true);
    restoreStickyModifiers();
    m_connection.flush();
    m_liftedKeys.clear();
    m_pressedChord.reset();
    return true;
}

std::vector<quint8> X11PasteKeystroke::heldModifiers() const
{
    const auto keymap =
        m_connection.reply(xcb_query_keymap_reply, xcb_query_keymap(m_connection.xcb()));
    if (!keymap)
        return {};
    const QByteArray held(reinterpret_cast<const char *>(keymap->keys), sizeof keymap->keys);
    std::vector<quint8> keys = m_keyboard.modifierKeys();
    std::erase_if(keys, [&held](quint8 key) { return !hasKey(held, key); });
    return keys;
}

std::vector<X11PasteKeystroke::LiftedKey>
X11PasteKeystroke::findOnKeyboards(const std::vector<quint8> &heldModifiers) const
{
    if (heldModifiers.empty())
        return {};

    const std::vector<Device> devices = keyboards();
    std::vector<quint8> ids;
    std::ranges::transform(devices, std::back_inserter(ids), &Device::id);
    const std::vector<QByteArray> heldByDevice = heldKeys(ids);
    std::vector<LiftedKey> found;
    for (const quint8 key : heldModifiers) {
        for (size_t i = 0; i < devices.size(); ++i) {
            if (hasKey(heldByDevice[i], key))
                found.push_back({key, devices[i].id, devices[i].isFake});
        }
    }
    return found;
}

std::vector<X11PasteKeystroke::Device> X11PasteKeystroke::keyboards() const
{
    std::vector<Device> devices;
    if (!m_connection.xinput().isPresent)
        return devices;
    const auto reply =
        m_connection.reply(xcb_input_xi_query_device_reply,
                           xcb_input_xi_query_device(m_connection.xcb(), XCB_INPUT_DEVICE_ALL));
    if (!reply)
        return devices;
    auto infos = xcb_input_xi_query_device_infos_iterator(reply.get());
    for (; infos.rem > 0; xcb_input_xi_device_info_next(&infos)) {
        if (infos.data->type != XCB_INPUT_DEVICE_TYPE_SLAVE_KEYBOARD)
            continue;
        const QByteArrayView name(xcb_input_xi_device_info_name(infos.data),
                                  xcb_input_xi_device_info_name_length(infos.data));
        devices.push_back({quint8(infos.data->deviceid), name.contains("XTEST")});
    }
    return devices;
}

std::vector<QByteArray> X11PasteKeystroke::heldKeys(const std::vector<quint8> &devices) const
{
    std::vector<xcb_input_query_device_state_cookie_t> requests;
    for (const quint8 device : devices)
        requests.push_back(xcb_input_query_device_state(m_connection.xcb(), device));

    std::vector<QByteArray> held;
    for (const auto request : requests) {
        const auto state = m_connection.reply(xcb_input_query_device_state_reply, request);
        QByteArray &keys = held.emplace_back();
        if (!state)
            continue;
        auto classes = xcb_input_query_device_state_classes_iterator(state.get());
        for (; classes.rem > 0; xcb_input_input_state_next(&classes)) {
            if (classes.data->class_id != XCB_INPUT_INPUT_CLASS_KEY)
                continue;
            const auto *keyState = reinterpret_cast<const xcb_input_key_state_t *>(classes.data);
            keys =
                QByteArray(reinterpret_cast<const char *>(keyState->keys), sizeof keyState->keys);
        }
    }
    return held;
}

void X11PasteKeystroke::putBackModifiers(bool areOfChord)
{
    std::vector<LiftedKey> keys = m_liftedKeys;
    std::erase_if(keys, [&](const LiftedKey &lifted) {
        return areOfChord != (std::ranges::count(m_pressedChord->modifiers, lifted.key) > 0);
    });
    if (keys.empty())
        return;

    std::vector<quint8> devices;
    std::ranges::transform(keys, std::back_inserter(devices), &LiftedKey::device);
    const std::vector<QByteArray> held = heldKeys(devices);
    for (size_t i = 0; i < keys.size(); ++i) {
        if (keys[i].isFake) {
            press(keys[i].key);
        } else if (hasKey(held[i], keys[i].key)) {
            // On the keyboard where it is held, so that the person's own release will be the end
            // of it. There it is down, and a press alone would be a repeat.
            fakeKey(XCB_KEY_RELEASE, keys[i].key, keys[i].device);
            fakeKey(XCB_KEY_PRESS, keys[i].key, keys[i].device);
        }
    }
}

void X11PasteKeystroke::clearStickyModifiers()
{
    const quint8 stickyLocks = m_earlierState.lockedModifiers & ~m_keyboard.lockMask();
    // Latches always: where keys are sticky, lifting a modifier latches it.
    xcb_xkb_latch_lock_state(m_connection.xcb(), XCB_XKB_ID_USE_CORE_KBD, stickyLocks, 0, 0, 0,
                             0xff, 1, 0);
}

void X11PasteKeystroke::restoreStickyModifiers()
{
    // The layout too: there are keyboards where Ctrl and Shift together change it.
    const quint8 stickyLocks = m_earlierState.lockedModifiers & ~m_keyboard.lockMask();
    xcb_xkb_latch_lock_state(m_connection.xcb(), XCB_XKB_ID_USE_CORE_KBD, stickyLocks, stickyLocks,
                             1, m_earlierState.lockedGroup, 0, 0, 0);
}

void X11PasteKeystroke::press(quint8 key)
{
    // Another program's XTEST may have left the key down, and then a press would count as repeat.
    release(key);
    fakeKey(XCB_KEY_PRESS, key, 0);
}

void X11PasteKeystroke::release(quint8 key)
{
    fakeKey(XCB_KEY_RELEASE, key, 0);
}

void X11PasteKeystroke::fakeKey(int type, quint8 key, quint8 device)
{
    // The same events of one keyboard have numbers of their own, in the same order.
    if (device != 0)
        type += m_connection.xinput().firstEvent + XCB_INPUT_DEVICE_KEY_PRESS - XCB_KEY_PRESS;
    xcb_test_fake_input(m_connection.xcb(), quint8(type), key, XCB_CURRENT_TIME, XCB_NONE, 0, 0,
                        device);
}
