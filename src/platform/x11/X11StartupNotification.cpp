#include "platform/x11/X11StartupNotification.h"

#include "platform/x11/X11Requests.h"

#include <cstring>

#include <unistd.h>

#include <xcb/xcb.h>

using namespace Qt::StringLiterals;

namespace {

/// A launcher's own tokens are shorter by far; no window manager need put together more.
constexpr qsizetype kMaxTokenBytes = 1000;

/// What stands between the name of a start and the time of the person's action.
constexpr QStringView kTimeMark = u"_TIME";

QByteArray completionMessage(const QString &token)
{
    QByteArray message("remove: ID=\"");
    for (const char byte : token.toUtf8().left(kMaxTokenBytes)) {
        if (byte == '"' || byte == '\\')
            message += '\\';
        message += byte;
    }
    return message + '"';
}

/// Tells the pieces of one message from those of others. It is never seen.
quint32 createMessageWindow(X11Requests &requests)
{
    const quint32 window = xcb_generate_id(requests.xcb());
    const quint32 overrideRedirect = 1;
    xcb_create_window(requests.xcb(), XCB_COPY_FROM_PARENT, window, requests.rootWindow(), -1, -1,
                      1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT,
                      XCB_CW_OVERRIDE_REDIRECT, &overrideRedirect);
    return window;
}

} // namespace

quint32 startupTimeOf(QStringView token)
{
    const qsizetype mark = token.lastIndexOf(kTimeMark);
    return mark < 0 ? 0 : token.sliced(mark + kTimeMark.size()).toUInt();
}

QString newStartupToken(quint32 number, quint32 time)
{
    return u"tessarine-%1-%2%3%4"_s.arg(getpid()).arg(number).arg(kTimeMark).arg(time);
}

void completeStartup(X11Requests &requests, const QString &token)
{
    QByteArray message = completionMessage(token);
    message += '\0'; // It ends there, in whichever piece that is.

    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 8;
    event.window = createMessageWindow(requests);
    event.type = requests.atom(X11AtomName::NetStartupInfoBegin);
    constexpr qsizetype kPieceBytes = sizeof event.data.data8;
    for (qsizetype sent = 0; sent < message.size(); sent += kPieceBytes) {
        const QByteArray piece = message.mid(sent, kPieceBytes).leftJustified(kPieceBytes, '\0');
        std::memcpy(event.data.data8, piece.constData(), kPieceBytes);
        xcb_send_event(requests.xcb(), 0, requests.rootWindow(), XCB_EVENT_MASK_PROPERTY_CHANGE,
                       reinterpret_cast<const char *>(&event));
        event.type = requests.atom(X11AtomName::NetStartupInfo);
    }
    xcb_destroy_window(requests.xcb(), event.window);
    xcb_flush(requests.xcb());
}
