#pragma once

#include <QByteArray>
#include <QObject>

#include <array>
#include <cstdlib>
#include <memory>
#include <optional>
#include <vector>

struct xcb_connection_t;
class QSocketNotifier;

enum class X11Atom : quint8
{
    CompositorSelection, ///< _NET_WM_CM_S with the number of our screen.
    GtkApplicationId,
    NetActiveWindow,
    NetSupportingWmCheck,
    NetWmPid,
    NetWmUserTime,
    Count,
};

/// Takes part in the events of a connection.
class X11EventListener
{
public:
    virtual ~X11EventListener() = default;

    /// \a event is an xcb_generic_event_t; \a type is its type, whether it was sent by the server
    /// or by a program. Errors of requests that nobody waits for do not come here.
    virtual void handleX11Event(int type, const void *event) = 0;
};

/// A reply of the server. It was allocated by the C library.
struct X11ReplyDeleter
{
    void operator()(void *reply) const { std::free(reply); }
};
template <typename T>
using X11Reply = std::unique_ptr<T, X11ReplyDeleter>;

/// The main thread's own connection to the X server.
///
/// It is separate from Qt's, so that grabs, raw events and errors are ours alone. Waiting here
/// means waiting for the server, never for another program. Requests about windows that have died
/// are answered with errors, which are dropped.
class X11Connection
{
public:
    struct Extension
    {
        bool isPresent = false;
        int firstEvent = 0;
        int majorOpcode = 0;
    };

    /// Connects to \a displayName; if that is empty, to the display of the environment.
    /// \throws PlatformError if there is no such display.
    explicit X11Connection(const QByteArray &displayName = {});
    ~X11Connection();
    X11Connection(const X11Connection &) = delete;
    X11Connection &operator=(const X11Connection &) = delete;

    xcb_connection_t *xcb() const { return m_xcb; }
    quint32 rootWindow() const { return m_rootWindow; }
    quint32 atom(X11Atom atom) const { return m_atoms[size_t(atom)]; }

    const Extension &xfixes() const { return m_xfixes; }
    const Extension &xinput() const { return m_xinput; }
    const Extension &xkb() const { return m_xkb; }
    const Extension &xtest() const { return m_xtest; }

    void flush();

    /// The answer to a request; null if it failed. \a getReply is xcb's function for it.
    template <typename Reply, typename Cookie, typename Error>
    X11Reply<Reply> reply(Reply *(*getReply)(xcb_connection_t *, Cookie, Error **), Cookie cookie)
    {
        Error *error = nullptr;
        X11Reply<Reply> answer(getReply(m_xcb, cookie, &error));
        std::free(error);
        noteWaited();
        return answer;
    }

    /// Asks for a property, of any type and up to some kilobytes; takeProperty() gets the answer.
    /// Asking for several before taking the first costs one round trip for all.
    quint32 requestProperty(quint32 window, quint32 property);
    /// The bytes of the property, empty if it is not set; absent if the window is not there.
    std::optional<QByteArray> takeProperty(quint32 request);

    void addListener(X11EventListener *listener);
    void removeListener(X11EventListener *listener);

    /// To be called after waiting for the server: events that came meanwhile lie in the queue, and
    /// nothing else would tell the event loop.
    void noteWaited();

    /// The server's time of the latest key or button press meant for this program; 0 if none.
    quint32 userTime() const { return m_userTime; }
    void noteUserTime(quint32 time);

private:
    void connectToServer(const QByteArray &displayName);
    void learnServer(int screenNumber);
    void processEvents();

    xcb_connection_t *m_xcb = nullptr;
    quint32 m_rootWindow = 0;
    std::array<quint32, size_t(X11Atom::Count)> m_atoms{};
    Extension m_xfixes;
    Extension m_xinput;
    Extension m_xkb;
    Extension m_xtest;
    quint32 m_userTime = 0;
    std::vector<X11EventListener *> m_listeners;
    std::unique_ptr<QSocketNotifier> m_notifier;
    bool m_isProcessingQueued = false;
    QObject m_context; ///< Ends the queued calls with the connection.
};
