#pragma once

#include <QtGlobal>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

class X11Connection;
struct xcb_connection_t;

/// Holds the grab of the hot key, and after each press the keyboard.
///
/// The server keeps back what is typed from the press on, until we know who is to have it: the
/// first letters come within milliseconds, and the window that they are meant for is not there yet.
/// A person must never be left without a keyboard, so this has a thread and a connection of its
/// own, which depend on nobody: after a moment the keys go to whoever has the focus.
///
/// Functions may be called by any thread.
class X11HotkeyThread
{
public:
    /// A key with one set of modifiers, and that set with each state of the locks.
    struct Grab
    {
        quint8 key = 0;
        quint16 modifiers = 0;
        quint8 locks = 0;

        friend bool operator==(const Grab &, const Grab &) = default;
    };

    /// One press of the key. \a time is the server's.
    struct Press
    {
        quint64 number = 0;
        quint32 time = 0;
    };

    /// For how long the keyboard is held.
    struct Patience
    {
        /// For somebody to answer a press. No more than a person puts up with as a keyboard that
        /// hesitates.
        std::chrono::milliseconds forAnswer{600};
        /// And then for a window manager to give the focus to the window that has been opened. On a
        /// machine that is busy it takes its time, and keys that go elsewhere are worse than late
        /// ones.
        std::chrono::milliseconds forFocus{1500};
    };

    /// Connects to the display of \a connection. \a onPressed is called on the thread, once for
    /// each press and not on auto-repeat.
    /// \throws PlatformError if the display cannot be used.
    X11HotkeyThread(const X11Connection &connection, const Patience &patience,
                    std::function<void(Press)> onPressed);
    ~X11HotkeyThread();
    X11HotkeyThread(const X11HotkeyThread &) = delete;
    X11HotkeyThread &operator=(const X11HotkeyThread &) = delete;

    /// Returns 0, or the server's error, and then nothing is grabbed. Waits for the server.
    [[nodiscard]] int grab(const Grab &wanted);
    void ungrab(const Grab &held);

    /// Answers \a press: what was typed since goes to \a window as soon as that has the focus, or
    /// at once to whoever has it if \a window is 0. An answer that comes too late does nothing.
    void letKeysGo(const Press &press, quint32 window);

    /// Lets the keyboard go in the midst of a press, whoever gets the keys. Returns when the server
    /// has done that and all that was asked of it before.
    void abandonPress();

private:
    using SteadyClock = std::chrono::steady_clock;

    struct Answer
    {
        quint64 press = 0;
        quint32 window = 0;
    };

    void wake();
    void run();
    void forgetPress();
    void handleEvents();
    void handlePress(quint8 key, quint32 time);
    void takeAnswer();
    bool hasFocus(quint32 window);
    void watchFocus(quint32 window, bool isWatched);
    void thaw();
    void allow(quint8 mode);
    void waitForNews() const;

    Patience m_patience;
    std::function<void(Press)> m_onPressed;
    std::unique_ptr<xcb_connection_t, void (*)(xcb_connection_t *)> m_xcb;
    quint32 m_rootWindow;

    // Of the thread.
    quint8 m_heldKey = 0; ///< 0 if none is held down.
    quint64 m_pressCount = 0;
    std::optional<SteadyClock::time_point> m_deadline; ///< Only while the keyboard is held.
    quint32 m_expectedWindow = 0; ///< The keys wait for it to have the focus; 0 if for none.

    int m_wakeDescriptor = -1;
    std::atomic<bool> m_isEnding = false;
    std::atomic<bool> m_isPressAbandoned = false;
    std::mutex m_mutex; ///< Guards the answer.
    std::optional<Answer> m_answer;
    std::thread m_thread;
};
