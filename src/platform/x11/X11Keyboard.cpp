#include "platform/x11/X11Keyboard.h"

#include "platform/x11/XcbXkb.h"

#include <algorithm>

#include <xcb/xcb.h>

namespace {

constexpr quint16 kCoreKeyboard = XCB_XKB_ID_USE_CORE_KBD;
constexpr quint16 kMapParts = XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP;

constexpr quint32 kNumLock = 0xff7f;
constexpr quint32 kScrollLock = 0xff14;
constexpr quint32 kAltLeft = 0xffe9;
constexpr quint32 kAltRight = 0xffea;
constexpr quint32 kSuperLeft = 0xffeb;
constexpr quint32 kSuperRight = 0xffec;

} // namespace

X11Keyboard::X11Keyboard(X11Connection &connection)
    : m_connection(connection)
{
    if (!isSupported())
        return;
    selectEvents();
    m_connection.addListener(this);
}

X11Keyboard::~X11Keyboard()
{
    m_connection.removeListener(this);
}

void X11Keyboard::selectEvents()
{
    constexpr quint16 kEvents =
        XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
    xcb_xkb_select_events(m_connection.xcb(), kCoreKeyboard, kEvents, 0, kEvents, kMapParts,
                          kMapParts, nullptr);
    m_connection.flush();
}

void X11Keyboard::handleX11Event(int type, const void *event)
{
    const auto *generic = static_cast<const xcb_generic_event_t *>(event);
    const bool isMapEvent =
        type == m_connection.xkb().firstEvent &&
        (generic->pad0 == XCB_XKB_NEW_KEYBOARD_NOTIFY || generic->pad0 == XCB_XKB_MAP_NOTIFY);
    if (isMapEvent || type == XCB_MAPPING_NOTIFY)
        noteLayoutChanged();
}

void X11Keyboard::noteLayoutChanged()
{
    m_isLoaded = false;
    // One change of layout comes as several events, and the map is whole after the last.
    if (m_isChangeAnnounced)
        return;
    m_isChangeAnnounced = true;
    QMetaObject::invokeMethod(
        &m_context,
        [this] {
            m_isChangeAnnounced = false;
            if (onLayoutChanged)
                onLayoutChanged();
        },
        Qt::QueuedConnection);
}

void X11Keyboard::ensureLoaded()
{
    if (m_isLoaded || !isSupported())
        return;
    m_isLoaded = true;
    load();
}

void X11Keyboard::load()
{
    m_keys.assign(256, {});
    m_groupCount = 0;
    const auto reply = m_connection.reply(
        xcb_xkb_get_map_reply, xcb_xkb_get_map(m_connection.xcb(), kCoreKeyboard, kMapParts, 0, 0,
                                               0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0));
    if (!reply)
        return;

    xcb_xkb_get_map_map_t map{};
    xcb_xkb_get_map_map_unpack(xcb_xkb_get_map_map(reply.get()), reply->nTypes, reply->nKeySyms,
                               reply->nKeyActions, reply->totalActions, reply->totalKeyBehaviors,
                               reply->virtualMods, reply->totalKeyExplicit, reply->totalModMapKeys,
                               reply->totalVModMapKeys, reply->present, &map);

    auto keys = xcb_xkb_get_map_map_syms_rtrn_iterator(reply.get(), &map);
    for (size_t code = reply->firstKeySym; keys.rem > 0 && code < m_keys.size();
         ++code, xcb_xkb_key_sym_map_next(&keys)) {
        const xcb_keysym_t *keysyms = xcb_xkb_key_sym_map_syms(keys.data);
        Key &key = m_keys[code];
        key.keysyms.assign(keysyms, keysyms + xcb_xkb_key_sym_map_syms_length(keys.data));
        key.groupCount = keys.data->groupInfo & 0x0f;
        key.levelCount = keys.data->width;
        m_groupCount = std::max(m_groupCount, key.groupCount);
    }
    auto modifiers = xcb_xkb_get_map_map_modmap_rtrn_iterator(reply.get(), &map);
    for (; modifiers.rem > 0; xcb_xkb_key_mod_map_next(&modifiers))
        m_keys[modifiers.data->keycode].modifiers = modifiers.data->mods;
}

quint32 X11Keyboard::keysym(const Key &key, int group, int level) const
{
    if (key.groupCount == 0 || level >= key.levelCount)
        return 0;
    // Keys that are the same in all layouts have one group only.
    const size_t index = size_t(group % key.groupCount) * size_t(key.levelCount) + size_t(level);
    return index < key.keysyms.size() ? key.keysyms[index] : 0;
}

std::optional<quint8> X11Keyboard::findKeyAtLevel(quint32 wanted, int group, int level)
{
    for (size_t code = 0; code < m_keys.size(); ++code) {
        if (keysym(m_keys[code], group, level) == wanted)
            return quint8(code);
    }
    return std::nullopt;
}

std::optional<quint8> X11Keyboard::findKey(quint32 keysym)
{
    ensureLoaded();
    for (int level = 0; level < 2; ++level) {
        for (int group = 0; group < m_groupCount; ++group) {
            if (const auto key = findKeyAtLevel(keysym, group, level))
                return key;
        }
    }
    return std::nullopt;
}

std::optional<quint8> X11Keyboard::findKeyInGroup(quint32 keysym, int group)
{
    ensureLoaded();
    return findKeyAtLevel(keysym, group, 0);
}

quint8 X11Keyboard::modifiersOfKey(quint8 key)
{
    ensureLoaded();
    return key < m_keys.size() ? m_keys[key].modifiers : quint8(0);
}

std::vector<quint8> X11Keyboard::modifierKeys()
{
    const auto locks = lockMask();
    std::vector<quint8> keys;
    for (size_t code = 0; code < m_keys.size(); ++code) {
        if ((m_keys[code].modifiers & ~locks) != 0)
            keys.push_back(quint8(code));
    }
    return keys;
}

quint8 X11Keyboard::maskOf(std::initializer_list<quint32> keysyms)
{
    ensureLoaded();
    for (const quint32 wanted : keysyms) {
        for (const Key &key : m_keys) {
            if (key.modifiers != 0 && keysym(key, 0, 0) == wanted)
                return key.modifiers;
        }
    }
    return 0;
}

quint8 X11Keyboard::commandMask()
{
    return maskOf({kSuperLeft, kSuperRight});
}

quint8 X11Keyboard::optionMask()
{
    const quint8 mask = maskOf({kAltLeft, kAltRight});
    return mask != 0 ? mask : quint8(XCB_MOD_MASK_1);
}

quint8 X11Keyboard::lockMask()
{
    return quint8(XCB_MOD_MASK_LOCK | maskOf({kNumLock}) | maskOf({kScrollLock}));
}

X11Keyboard::State X11Keyboard::state()
{
    if (!isSupported())
        return {};
    const auto reply = m_connection.reply(xcb_xkb_get_state_reply,
                                          xcb_xkb_get_state(m_connection.xcb(), kCoreKeyboard));
    if (!reply)
        return {};
    return {reply->baseMods, reply->latchedMods, reply->lockedMods, reply->lockedGroup};
}
