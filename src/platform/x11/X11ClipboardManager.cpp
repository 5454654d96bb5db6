#include "platform/x11/X11ClipboardManager.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// One program ends after the other; more at a time are up to no good.
constexpr std::size_t kMaxWaiting = 64;

} // namespace

X11ClipboardManager::X11ClipboardManager(X11SelectionConnection &connection)
    : m_connection(connection)
    , m_window(connection.createWindow())
    , m_selection(connection.atom(u"CLIPBOARD_MANAGER"))
    , m_timeProperty(connection.atom(u"TESSARINE_TIME"))
{
    m_connection.watchOwner(m_selection);
    wishToManage();
}

void X11ClipboardManager::wishToManage()
{
    m_connection.requestTime(m_window, m_timeProperty);
}

bool X11ClipboardManager::handle(const X11Event::OwnerChanged &event)
{
    if (event.selection != m_selection)
        return false;
    if (event.owner == 0 || event.isOwnerGone)
        wishToManage();
    return true;
}

bool X11ClipboardManager::handle(const X11Event::PropertyChanged &event)
{
    if (event.window != m_window)
        return false;
    const bool isTime = event.property == m_timeProperty && !event.isDeleted;
    if (isTime && m_connection.takeOwnerless(m_selection, m_window, event.time)) {
        m_since = event.time;
        m_connection.announceManager(m_selection, m_window, event.time);
    }
    return true;
}

bool X11ClipboardManager::handle(const X11Event::ConversionRequested &request)
{
    if (request.selection != m_selection)
        return false;
    X11Atom property = request.property != 0 ? request.property : request.target;
    if (m_connection.isOwnWindow(request.requestor)) {
        property = 0; // The claim of a program that means harm.
    } else if (request.target == m_connection.atom(u"SAVE_TARGETS") && m_waiting.size() < kMaxWaiting) {
        m_waiting.push_back(request);
        return true;
    } else if (request.target == m_connection.atom(u"TARGETS")) {
        const auto targets =
            m_connection.atoms({u"TARGETS"_s, u"TIMESTAMP"_s, u"SAVE_TARGETS"_s});
        m_connection.setProperty(request.requestor, property, m_connection.atom(u"ATOM"), targets);
    } else if (request.target == m_connection.atom(u"TIMESTAMP")) {
        m_connection.setProperty(request.requestor, property, m_connection.atom(u"INTEGER"),
                                 QList<quint32>{m_since});
    } else {
        property = 0;
    }
    m_connection.answer(request, property);
    return true;
}

void X11ClipboardManager::answerWaiting(bool isSaved)
{
    for (const auto &request : std::exchange(m_waiting, {})) {
        const X11Atom property = request.property != 0 ? request.property : request.target;
        if (isSaved)
            m_connection.setProperty(request.requestor, property, m_connection.atom(u"NULL"),
                                     QByteArrayView());
        m_connection.answer(request, isSaved ? property : 0);
    }
}
