#pragma once

#include "platform/x11/X11SelectionConnection.h"

/// One conversion asked of the owner of a selection, up to its last byte.
///
/// Each has a window of its own: several toolkits know a transfer by the requestor's window alone
/// and mix up two that go to the same one.
class X11IncomingTransfer
{
public:
    enum class State
    {
        Asked,
        Incremental, ///< The owner sends piece by piece.
        Complete,
        Failed ///< Refused, larger than allowed, or nothing but notices came.
    };

    /// Asks at once. \a byteLimit is the length at which the transfer fails.
    X11IncomingTransfer(X11SelectionConnection &connection, X11Atom selection, X11Atom target,
                        X11Time time, qint64 byteLimit);
    ~X11IncomingTransfer();
    X11IncomingTransfer(const X11IncomingTransfer &) = delete;
    X11IncomingTransfer &operator=(const X11IncomingTransfer &) = delete;

    /// False if the event does not concern this transfer.
    bool handle(const X11Event::ConversionAnswered &event);
    bool handle(const X11Event::PropertyChanged &event);

    State state() const { return m_state; }
    bool isPending() const { return m_state == State::Asked || m_state == State::Incremental; }
    X11Atom target() const { return m_target; }
    const X11Property &result() const { return m_result; }
    qint64 receivedBytes() const { return m_result.data.size(); }

    /// Hands over the window, which must live on for a while: the owner may be about to write to
    /// it, and some programs end when they write to a window that is gone.
    [[nodiscard]] X11Window releaseWindow();

private:
    void append(X11Property piece);

    X11SelectionConnection &m_connection;
    X11Atom m_target;
    X11Atom m_property;
    X11Atom m_incremental;
    X11Window m_window;
    qint64 m_byteLimit;
    State m_state = State::Asked;
    X11Property m_result;
    int m_emptyNotices = 0; ///< In a row.
};
