#pragma once

#include <QByteArray>
#include <QList>

#include <array>
#include <cstdlib>
#include <memory>
#include <optional>

struct xcb_connection_t;

enum class X11AtomName : quint8
{
    CompositorSelection, ///< _NET_WM_CM_S with the number of our screen.
    GtkApplicationId,
    KdeBlurBehindRegion,
    Manager,
    NetActiveWindow,
    NetClientList,
    NetCurrentDesktop,
    NetStartupInfo,
    NetStartupInfoBegin,
    NetSupportingWmCheck,
    NetSystemTrayColors,
    NetSystemTrayOpcode,
    NetSystemTrayOrientation,
    NetSystemTraySelection, ///< _NET_SYSTEM_TRAY_S with the number of our screen.
    NetSystemTrayVisual,
    NetWmDesktop,
    NetWmName,
    NetWmPid,
    NetWmState,
    NetWmStateSkipPager,
    NetWmStateSkipTaskbar,
    NetWmStrut,
    NetWmStrutPartial,
    NetWmUserTime,
    NetWmWindowType,
    NetWmWindowTypeDock,
    Utf8String,
    WmState,
    XembedInfo,
    XsettingsSelection, ///< _XSETTINGS_S with the number of our screen.
    XsettingsSettings,
    Count,
};

/// A reply of the server. It was allocated by the C library.
struct X11ReplyDeleter
{
    void operator()(void *reply) const { std::free(reply); }
};
template <typename T>
using X11Reply = std::unique_ptr<T, X11ReplyDeleter>;

/// Questions to the X server over one connection, which belongs to somebody else and to one thread.
///
/// Waiting here means waiting for the server, never for another program. Requests about windows
/// that have died are answered with errors, which are dropped.
class X11Requests
{
public:
    /// Waits for one answer of the server.
    X11Requests(xcb_connection_t *xcb, quint32 rootWindow, int screenNumber)
    {
        learn(xcb, rootWindow, screenNumber);
    }
    virtual ~X11Requests() = default;
    X11Requests(const X11Requests &) = delete;
    X11Requests &operator=(const X11Requests &) = delete;

    xcb_connection_t *xcb() const { return m_xcb; }
    quint32 rootWindow() const { return m_rootWindow; }
    quint32 atom(X11AtomName name) const { return m_atoms[size_t(name)]; }

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

protected:
    X11Requests() = default;

    /// To be called once, before anything else. Waits for one answer of the server.
    void learn(xcb_connection_t *xcb, quint32 rootWindow, int screenNumber);

private:
    /// Called after each answer: events that came meanwhile lie in the queue of the connection.
    virtual void noteWaited() {}

    xcb_connection_t *m_xcb = nullptr;
    quint32 m_rootWindow = 0;
    std::array<quint32, size_t(X11AtomName::Count)> m_atoms{};
};

/// The values of 32 bits in a property that takeProperty() has returned; none if it is absent.
QList<quint32> propertyWords(const std::optional<QByteArray> &property);
