#include "platform/x11/X11IncomingTransfer.h"

#include <utility>

namespace {

/// Each notice costs a question to the server, and there are programs that send false ones.
constexpr int kMaxEmptyNotices = 64;

} // namespace

X11IncomingTransfer::X11IncomingTransfer(X11SelectionConnection &connection, X11Atom selection,
                                         X11Atom target, X11Time time, qint64 byteLimit)
    : m_connection(connection)
    , m_target(target)
    , m_property(connection.atom(u"TESSARINE_SELECTION"))
    , m_incremental(connection.atom(u"INCR"))
    , m_window(connection.createWindow())
    , m_byteLimit(byteLimit)
{
    m_connection.convert(selection, target, m_window, m_property, time);
}

X11IncomingTransfer::~X11IncomingTransfer()
{
    if (m_window != 0)
        m_connection.destroyWindow(m_window);
}

bool X11IncomingTransfer::handle(const X11Event::ConversionAnswered &event)
{
    if (event.requestor != m_window || m_window == 0)
        return false;
    if (m_state != State::Asked)
        return true;
    if (event.property != m_property) {
        m_state = State::Failed;
        return true;
    }
    // One byte more shows whether the limit is passed.
    X11Property whole = m_connection.takeProperty(m_window, m_property, m_byteLimit + 1);
    if (whole.type == m_incremental) {
        // The size that the owner announces is a guess, and sometimes empty. Reading has deleted
        // the property, which tells the owner to begin.
        m_state = State::Incremental;
        return true;
    }
    m_state = whole.type == 0 || whole.data.size() > m_byteLimit ? State::Failed : State::Complete;
    m_result = std::move(whole);
    return true;
}

bool X11IncomingTransfer::handle(const X11Event::PropertyChanged &event)
{
    if (event.window != m_window || m_window == 0)
        return false;
    if (m_state == State::Incremental && !event.isDeleted && event.property == m_property)
        append(m_connection.takeProperty(m_window, m_property,
                                         m_byteLimit - m_result.data.size() + 1));
    return true;
}

void X11IncomingTransfer::append(X11Property piece)
{
    if (piece.type == 0) {
        // An earlier reading has taken this piece already, or there was none.
        if (++m_emptyNotices > kMaxEmptyNotices)
            m_state = State::Failed;
        return;
    }
    m_emptyNotices = 0;
    if (m_result.type == 0) {
        m_result.type = piece.type;
        m_result.format = piece.format;
    }
    if (piece.data.isEmpty()) {
        m_state = State::Complete;
        return;
    }
    m_result.data += piece.data;
    if (m_result.data.size() > m_byteLimit)
        m_state = State::Failed;
}

X11Window X11IncomingTransfer::releaseWindow()
{
    return std::exchange(m_window, 0);
}
