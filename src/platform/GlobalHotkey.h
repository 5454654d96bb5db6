#pragma once

#include <QtGlobal>

#include <functional>
#include <optional>

/// The key combination that reaches us whatever application has the focus. Main thread only.
class GlobalHotkey
{
public:
    virtual ~GlobalHotkey() = default;

    /// Asks for the combination. \a keyCode and \a modifiers are the stored numbers (see
    /// HotkeySettings). Returns 0, or the desktop's error number if it was refused; then no
    /// combination is in force, and it is asked for again when something on the desktop has
    /// changed. An earlier combination must have been released.
    [[nodiscard]] virtual int assign(quint32 keyCode, quint32 modifiers) = 0;

    /// Gives the combination back, or the wish for it; does nothing without one.
    virtual void release() = 0;

    /// Gives the combination back until resume(), for a time in which this program does nothing at
    /// all and a press would be lost, if not all that is typed after it. Returns when the desktop
    /// knows.
    virtual void suspend() = 0;
    /// The same as a change on the desktop after a refusal.
    virtual void resume() = 0;

    /// Whether a combination is in force, and not only wanted.
    virtual bool isInForce() const = 0;

    /// The code with which a key of this keyboard can be asked for; absent if there is none.
    /// \a nativeKey is the desktop's number of the key, as in QKeyEvent::nativeScanCode().
    virtual std::optional<quint32> findKeyCode(quint32 nativeKey) = 0;

    /// Called when a combination that was refused has come into force.
    std::function<void()> onAssignedLater;

    /// Called once for each press, not on auto-repeat. Where the desktop allows it, what the person
    /// types after the press is held back and goes, from the first letter on, to the window that is
    /// given the focus in this call (Workspace::activateOwnWindow()).
    std::function<void()> onPressed;
};

/// Values of GlobalHotkey::assign() that mean the same on every desktop.
namespace HotkeyError {
inline constexpr int kNoSuchKey = -1; ///< No key of this keyboard has that meaning.
inline constexpr int kNotSupported = -2; ///< The desktop offers no global keys.
inline constexpr int kHeldByAnother = 10; ///< Another program has the combination.
} // namespace HotkeyError
