#pragma once

#include "platform/GlobalHotkey.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11HotkeyThread.h"

#include <QAbstractNativeEventFilter>

class X11Keyboard;
struct VirtualKey;

/// A key grab on the root window.
///
/// The key is grabbed by its place on the keyboard, so that it works in whatever layout is active,
/// and once for each state of the lock keys. It is grabbed anew when the keyboard changes. While it
/// is refused it is tried again with each change that a window manager notes on the root window:
/// that is when holders come and go, and it costs nothing while nobody does anything.
///
/// What is typed after a press is held back (see X11HotkeyThread) until the window that onPressed
/// has activated has the focus, or until onPressed returns if it has activated none.
///
/// An open menu of ours has the keyboard, and no grab of a key comes into play meanwhile; then the
/// press is found among the events for the menu, which does not get it.
class X11GlobalHotkey : public GlobalHotkey,
                        private X11EventListener,
                        private QAbstractNativeEventFilter
{
public:
    /// Both must outlive the hot key.
    X11GlobalHotkey(X11Connection &connection, X11Keyboard &keyboard,
                    const X11HotkeyThread::Patience &patience = {});
    ~X11GlobalHotkey() override;

    [[nodiscard]] int assign(quint32 keyCode, quint32 modifiers) override;
    void release() override;
    void suspend() override;
    void resume() override { regrab(); }
    bool isInForce() const override { return m_grab.has_value(); }
    std::optional<quint32> findKeyCode(quint32 nativeKey) override;

    /// To be called when the window manager has been asked to give the focus to \a window, one of
    /// ours.
    void noteActivation(quint32 window) { m_activatedWindow = window; }

private:
    using Grab = X11HotkeyThread::Grab;
    struct Combination
    {
        quint32 keyCode = 0;
        quint32 modifiers = 0;
    };

    void handleX11Event(int type, const void *event) override;
    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;
    void handlePress(const X11HotkeyThread::Press &press);
    void announcePress(quint32 time);
    std::optional<Grab> findGrab(const Combination &combination);
    std::optional<quint8> findKey(const VirtualKey &key);
    int grab(const std::optional<Grab> &wanted);
    void ungrab();
    void regrab();
    void regrabSoon();

    X11Connection &m_connection;
    X11Keyboard &m_keyboard;
    std::optional<Combination> m_combination; ///< Wanted, whether it is in force or not.
    std::optional<Grab> m_grab; ///< In force.
    bool m_isRegrabQueued = false;
    /// Since the press that is being announced, the latest that is to have the focus; 0 if none is.
    quint32 m_activatedWindow = 0;
    QObject m_context; ///< Ends the queued calls with the hot key.
    X11HotkeyThread m_thread;
};
