#pragma once

#include "platform/x11/X11Requests.h"

#include <QObject>

#include <functional>
#include <vector>

class QSocketNotifier;

/// Takes part in the events of a connection.
class X11EventListener
{
public:
    virtual ~X11EventListener() = default;

    /// \a event is an xcb_generic_event_t; \a type is its type, whether it was sent by the server
    /// or by a program. Errors of requests that nobody waits for do not come here.
    virtual void handleX11Event(int type, const void *event) = 0;
};

/// Whether another program made up an event, which the server then passed on.
bool isSentByProgram(const void *event);

/// The main thread's own connection to the X server.
///
/// It is separate from Qt's, so that grabs, raw events and errors are ours alone.
class X11Connection : public X11Requests
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
    ~X11Connection() override;

    /// Never empty.
    const QByteArray &displayName() const { return m_displayName; }

    const Extension &xfixes() const { return m_xfixes; }
    const Extension &xinput() const { return m_xinput; }
    const Extension &xkb() const { return m_xkb; }
    const Extension &xtest() const { return m_xtest; }

    void flush();

    /// To be called after waiting for the server by other means than reply(): events that came
    /// meanwhile lie in the queue, and nothing else would tell the event loop.
    void noteWaited() override;

    /// Has the events of \a mask on the root window told to the listeners, besides those that were
    /// asked for before.
    void selectRootEvents(quint32 mask);

    void addListener(X11EventListener *listener);
    void removeListener(X11EventListener *listener);

    /// The server's time of the latest key or button press meant for this program; 0 if none.
    quint32 userTime() const { return m_userTime; }
    void noteUserTime(quint32 time);

    /// Tells the listeners of all that has happened up to now. Waits for the server's answer.
    void catchUp();

    /// The server's time of this moment; 0 if it does not tell. Waits for its answer.
    quint32 serverTime();

    /// Called once, from the event loop, after the connection has ended: nothing can be done with
    /// it any more.
    std::function<void()> onLost;

private:
    void connectToServer();
    void learnExtensions();
    void processEvents();
    quint32 findServerTimeCounter();

    QByteArray m_displayName;
    Extension m_sync;
    Extension m_xfixes;
    Extension m_xinput;
    Extension m_xkb;
    Extension m_xtest;
    quint32 m_rootEvents = 0;
    quint32 m_userTime = 0;
    std::optional<quint32> m_serverTimeCounter; ///< 0 if there is none.
    std::vector<X11EventListener *> m_listeners;
    std::unique_ptr<QSocketNotifier> m_notifier;
    bool m_isProcessingQueued = false;
    bool m_isLost = false;
    QObject m_context; ///< Ends the queued calls with the connection.
};
