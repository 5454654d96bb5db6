#pragma once

#include "platform/x11/X11SelectionConnection.h"

#include <vector>

/// Answers programs that hand over the clipboard before they end: they ask the owner of the
/// CLIPBOARD_MANAGER selection to save their targets, and some wait for seconds where nobody answers
/// (the freedesktop.org clipboard manager protocol).
///
/// Nothing is taken from them as long as they live; what they have copied was read when they copied
/// it. The thread of the pasteboard alone uses it.
class X11ClipboardManager
{
public:
    /// Becomes the manager as soon as the server has told the time, unless there is one.
    explicit X11ClipboardManager(X11SelectionConnection &connection);

    /// False if the event belongs to somebody else.
    bool handle(const X11Event::OwnerChanged &event);
    bool handle(const X11Event::PropertyChanged &event);
    bool handle(const X11Event::ConversionRequested &request);

    /// To be called whenever nothing is being read any more; \a isSaved tells whether the copy of
    /// the clipboard's owner is there.
    void answerWaiting(bool isSaved);

private:
    void wishToManage();

    X11SelectionConnection &m_connection;
    X11Window m_window;
    X11Atom m_selection;
    X11Atom m_timeProperty;
    X11Time m_since = 0;
    std::vector<X11Event::ConversionRequested> m_waiting; ///< To save targets; oldest first.
};
