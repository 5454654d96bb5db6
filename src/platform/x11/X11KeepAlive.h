#pragma once

#include "platform/linux/TakeOverLimit.h"
#include "platform/x11/X11SelectionReader.h"
#include "platform/x11/X11SelectionServer.h"

/// Keeps on the clipboard what a program copied, when that program has ended.
///
/// Only what was read from that very owner and was allowed to stay is taken over, and never from
/// an owner that lives. The thread of the pasteboard alone uses it.
class X11KeepAlive
{
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    /// \a server must outlive it.
    explicit X11KeepAlive(X11SelectionServer &server)
        : m_server(server)
    {
    }

    /// The clipboard has another owner, or was emptied on purpose.
    void ownerChanged() { m_copy.reset(); }

    /// What the owner since \a notice offers, as far as it was read.
    void setCopy(quint64 notice, const X11SelectionReader::Copy &copy);

    /// Whether there is something that could be taken over, if it is allowed.
    bool hasCopy() const;

    void allow(quint64 notice, TimePoint now);
    void discard(quint64 notice);

    /// The owner since \a ownedSince has ended.
    void ownerEnded(X11Time ownedSince, TimePoint now);

private:
    /// Of the latest owner.
    struct Kept
    {
        quint64 notice = 0;
        X11SelectionReader::Copy copy;
        bool isAllowed = false;
        std::optional<X11Time> endedOwnerSince;
    };

    void takeOverIfDue(TimePoint now);

    X11SelectionServer &m_server;
    std::optional<Kept> m_copy;
    TakeOverLimit m_limit;
};
