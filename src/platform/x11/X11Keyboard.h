#pragma once

#include "platform/x11/X11Connection.h"

#include <functional>
#include <optional>
#include <vector>

/// The keyboard as it is mapped now: which key gives which symbol and which modifier.
///
/// A key is named by its X key code. The map is read when it is first needed, and again after it
/// has changed.
class X11Keyboard : private X11EventListener
{
public:
    /// The state of the modifiers besides those that are held.
    struct State
    {
        quint8 heldModifiers = 0;
        quint8 latchedModifiers = 0; ///< Count for the next key only.
        quint8 lockedModifiers = 0;
        quint8 lockedGroup = 0; ///< The layout that is active when no key changes it.
    };

    explicit X11Keyboard(X11Connection &connection);
    ~X11Keyboard() override;

    /// False if the server cannot tell; then no key is found.
    bool isSupported() const { return m_connection.xkb().isPresent; }

    /// The key that gives \a keysym, without Shift in any layout if possible, else with Shift.
    std::optional<quint8> findKey(quint32 keysym);
    /// The key that gives \a keysym without Shift in the layout \a group.
    std::optional<quint8> findKeyInGroup(quint32 keysym, int group);

    /// The bits of the modifiers that \a key sets while it is held; 0 for other keys.
    quint8 modifiersOfKey(quint8 key);
    /// The keys that set a modifier, but for those that switch a lock on and off.
    std::vector<quint8> modifierKeys();

    quint8 commandMask(); ///< Super; 0 if the keyboard has none.
    quint8 optionMask();  ///< Alt.
    /// Caps Lock, Num Lock and Scroll Lock.
    quint8 lockMask();

    State state();

    /// Called soon after the map has changed.
    std::function<void()> onLayoutChanged;

private:
    struct Key
    {
        std::vector<quint32> keysyms;
        int groupCount = 0;
        int levelCount = 0;
        quint8 modifiers = 0;
    };

    void handleX11Event(int type, const void *event) override;
    void selectEvents();
    void ensureLoaded();
    void load();
    void noteLayoutChanged();
    quint32 keysym(const Key &key, int group, int level) const;
    std::optional<quint8> findKeyAtLevel(quint32 keysym, int group, int level);
    quint8 maskOf(std::initializer_list<quint32> keysyms);

    X11Connection &m_connection;
    std::vector<Key> m_keys; ///< By key code.
    int m_groupCount = 0;
    bool m_isLoaded = false;
    bool m_isChangeAnnounced = false;
    QObject m_context;
};
