#include "platform/x11/X11SelectionConnection.h"

#include "platform/Platform.h"
#include "platform/x11/X11Requests.h"

#include <QHash>

#include <cstdlib>
#include <vector>

#include <xcb/xcb.h>
#include <xcb/xfixes.h>

using namespace Qt::StringLiterals;

namespace {

/// One reply of the server carries at most so much, so that the thread looks up now and then.
constexpr quint32 kReadBytes = 4 << 20;
constexpr qsizetype kMaxAtomNameLength = 256;
constexpr qsizetype kMaxKnownAtoms = 4096;

X11Event::OwnerChanged ownerChanged(const xcb_xfixes_selection_notify_event_t &event)
{
    return {event.selection, event.owner, event.selection_timestamp,
            event.subtype != XCB_XFIXES_SELECTION_EVENT_SET_SELECTION_OWNER};
}

} // namespace

struct X11SelectionConnection::Impl
{
    std::optional<X11Event::Any> translate(const xcb_generic_event_t &event) const;
    X11Property readProperty(X11Window window, X11Atom property, qint64 limit, bool isDeleting);
    void remember(X11Atom atom, const QString &name);

    xcb_connection_t *connection = nullptr;
    X11Window rootWindow = 0;
    quint8 firstFixesEvent = 0;
    std::unique_ptr<X11Requests> requests;
    QHash<QString, X11Atom> atomsByName;
    QHash<X11Atom, QString> namesByAtom;
};

X11SelectionConnection::X11SelectionConnection()
    : m_impl(std::make_unique<Impl>())
{
    int screenNumber = 0;
    xcb_connection_t *connection = xcb_connect(nullptr, &screenNumber);
    m_impl->connection = connection;
    if (xcb_connection_has_error(connection) != 0) {
        xcb_disconnect(connection);
        throw PlatformError("cannot open the X display");
    }
    // Without this, requests are limited to 256 kB.
    xcb_prefetch_maximum_request_length(connection);
    const xcb_query_extension_reply_t *fixes = xcb_get_extension_data(connection, &xcb_xfixes_id);
    if (fixes == nullptr || fixes->present == 0) {
        xcb_disconnect(connection);
        throw PlatformError("the X server lacks the XFixes extension");
    }
    m_impl->firstFixesEvent = fixes->first_event;
    const X11Reply<xcb_xfixes_query_version_reply_t> version(xcb_xfixes_query_version_reply(
        connection, xcb_xfixes_query_version(connection, 5, 0), nullptr));

    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (int before = screenNumber; before > 0 && screens.rem > 1; --before)
        xcb_screen_next(&screens);
    m_impl->rootWindow = screens.data->root;
    m_impl->requests =
        std::make_unique<X11Requests>(connection, m_impl->rootWindow, screenNumber);
}

X11SelectionConnection::~X11SelectionConnection()
{
    xcb_disconnect(m_impl->connection);
}

int X11SelectionConnection::fileDescriptor() const
{
    return xcb_get_file_descriptor(m_impl->connection);
}

bool X11SelectionConnection::isBroken() const
{
    return xcb_connection_has_error(m_impl->connection) != 0;
}

void X11SelectionConnection::flush()
{
    xcb_flush(m_impl->connection);
}

std::optional<X11Event::Any> X11SelectionConnection::nextEvent()
{
    while (const X11Reply<xcb_generic_event_t> event{xcb_poll_for_event(m_impl->connection)}) {
        if (auto translated = m_impl->translate(*event))
            return translated;
    }
    return std::nullopt;
}

std::optional<X11Event::Any> X11SelectionConnection::nextQueuedEvent()
{
    while (const X11Reply<xcb_generic_event_t> event{
        xcb_poll_for_queued_event(m_impl->connection)}) {
        if (auto translated = m_impl->translate(*event))
            return translated;
    }
    return std::nullopt;
}

/// Absent for what does not concern selections. Errors are among that: they tell of windows of
/// other programs that ended before our request reached them, which their silence shows as well.
std::optional<X11Event::Any>
X11SelectionConnection::Impl::translate(const xcb_generic_event_t &event) const
{
    const void *raw = &event;
    const quint8 type = event.response_type & 0x7f;
    // The top bit marks events sent by programs, who send this one and have no business with others.
    if (event.response_type != type && type != XCB_SELECTION_NOTIFY)
        return std::nullopt;
    if (type == firstFixesEvent + XCB_XFIXES_SELECTION_NOTIFY)
        return ownerChanged(*static_cast<const xcb_xfixes_selection_notify_event_t *>(raw));

    switch (type) {
    case XCB_SELECTION_NOTIFY: {
        const auto &answered = *static_cast<const xcb_selection_notify_event_t *>(raw);
        return X11Event::ConversionAnswered{answered.requestor, answered.property};
    }
    case XCB_PROPERTY_NOTIFY: {
        const auto &changed = *static_cast<const xcb_property_notify_event_t *>(raw);
        return X11Event::PropertyChanged{changed.window, changed.atom, changed.time,
                                         changed.state == XCB_PROPERTY_DELETE};
    }
    case XCB_SELECTION_REQUEST: {
        const auto &request = *static_cast<const xcb_selection_request_event_t *>(raw);
        return X11Event::ConversionRequested{request.requestor, request.selection, request.target,
                                             request.property, request.time};
    }
    case XCB_SELECTION_CLEAR:
        return X11Event::OwnershipLost{
            static_cast<const xcb_selection_clear_event_t *>(raw)->selection};
    case XCB_DESTROY_NOTIFY:
        return X11Event::WindowDestroyed{
            static_cast<const xcb_destroy_notify_event_t *>(raw)->window};
    default: return std::nullopt;
    }
}

X11Atom X11SelectionConnection::atom(QStringView name)
{
    return atoms({name.toString()}).first();
}

QList<X11Atom> X11SelectionConnection::atoms(const QStringList &names)
{
    // Foreign programs can invent names without end; ours are soon asked for again.
    if (m_impl->atomsByName.size() + names.size() > kMaxKnownAtoms)
        m_impl->atomsByName.clear();
    // All questions go out before the first answer is awaited.
    std::vector<std::optional<xcb_intern_atom_cookie_t>> cookies;
    for (const QString &name : names) {
        if (m_impl->atomsByName.contains(name)) {
            cookies.emplace_back();
            continue;
        }
        const QByteArray bytes = name.toLatin1();
        cookies.emplace_back(xcb_intern_atom(
            m_impl->connection, 0, static_cast<quint16>(bytes.size()), bytes.constData()));
    }

    QList<X11Atom> atoms;
    for (qsizetype index = 0; index < names.size(); ++index) {
        if (const auto &cookie = cookies[static_cast<std::size_t>(index)]) {
            const X11Reply<xcb_intern_atom_reply_t> reply(
                xcb_intern_atom_reply(m_impl->connection, *cookie, nullptr));
            if (reply)
                m_impl->remember(reply->atom, names.at(index));
        }
        atoms.append(m_impl->atomsByName.value(names.at(index)));
    }
    return atoms;
}

QStringList X11SelectionConnection::atomNames(const QList<X11Atom> &atoms)
{
    // Foreign programs can invent names without end; ours are soon asked for again.
    if (m_impl->namesByAtom.size() + atoms.size() > kMaxKnownAtoms)
        m_impl->namesByAtom.clear();
    QList<std::pair<X11Atom, xcb_get_atom_name_cookie_t>> cookies;
    for (const X11Atom atom : atoms) {
        if (!m_impl->namesByAtom.contains(atom))
            cookies.append({atom, xcb_get_atom_name(m_impl->connection, atom)});
    }
    for (const auto &[atom, cookie] : cookies) {
        xcb_generic_error_t *error = nullptr;
        const X11Reply<xcb_get_atom_name_reply_t> reply(
            xcb_get_atom_name_reply(m_impl->connection, cookie, &error));
        std::free(error); // An atom that does not exist has no name.
        QString name;
        if (reply && xcb_get_atom_name_name_length(reply.get()) <= kMaxAtomNameLength)
            name = QString::fromLatin1(xcb_get_atom_name_name(reply.get()),
                                       xcb_get_atom_name_name_length(reply.get()));
        m_impl->namesByAtom.insert(atom, name);
    }

    QStringList names;
    for (const X11Atom atom : atoms)
        names.append(m_impl->namesByAtom.value(atom));
    return names;
}

void X11SelectionConnection::Impl::remember(X11Atom atom, const QString &name)
{
    atomsByName.insert(name, atom);
    namesByAtom.insert(atom, name);
}

X11Window X11SelectionConnection::createWindow()
{
    const X11Window window = xcb_generate_id(m_impl->connection);
    const quint32 eventMask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(m_impl->connection, XCB_COPY_FROM_PARENT, window, m_impl->rootWindow, -1, -1,
                      1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                      &eventMask);
    return window;
}

bool X11SelectionConnection::isOwnWindow(X11Window window) const
{
    return clientOf(window) == xcb_get_setup(m_impl->connection)->resource_id_base;
}

quint32 X11SelectionConnection::clientOf(X11Window window) const
{
    return window & ~xcb_get_setup(m_impl->connection)->resource_id_mask;
}

void X11SelectionConnection::destroyWindow(X11Window window)
{
    xcb_destroy_window(m_impl->connection, window);
}

void X11SelectionConnection::watch(X11Window window)
{
    const quint32 eventMask = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(m_impl->connection, window, XCB_CW_EVENT_MASK, &eventMask);
}

void X11SelectionConnection::unwatch(X11Window window)
{
    const quint32 eventMask = XCB_EVENT_MASK_NO_EVENT;
    xcb_change_window_attributes(m_impl->connection, window, XCB_CW_EVENT_MASK, &eventMask);
}

void X11SelectionConnection::watchOwner(X11Atom selection)
{
    xcb_xfixes_select_selection_input(m_impl->connection, m_impl->rootWindow, selection,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
}

void X11SelectionConnection::convert(X11Atom selection, X11Atom target, X11Window requestor,
                                     X11Atom property, X11Time time)
{
    xcb_convert_selection(m_impl->connection, requestor, selection, target, property, time);
}

X11Property X11SelectionConnection::takeProperty(X11Window window, X11Atom property, qint64 limit)
{
    return m_impl->readProperty(window, property, limit, true);
}

X11Property X11SelectionConnection::readProperty(X11Window window, X11Atom property, qint64 limit)
{
    return m_impl->readProperty(window, property, limit, false);
}

X11Property X11SelectionConnection::Impl::readProperty(X11Window window, X11Atom property,
                                                       qint64 limit, bool isDeleting)
{
    X11Property result;
    while (true) {
        const auto offset = static_cast<quint32>(result.data.size() / 4);
        const auto wanted = std::min<qint64>(kReadBytes, limit - result.data.size());
        const auto length = static_cast<quint32>((wanted + 3) / 4);
        // The server deletes a property only when nothing of it is left to read.
        const X11Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
            connection,
            xcb_get_property(connection, isDeleting ? 1 : 0, window, property,
                             XCB_GET_PROPERTY_TYPE_ANY, offset, length),
            nullptr));
        if (!reply || reply->type == XCB_NONE)
            return {};
        result.type = reply->type;
        result.format = reply->format;
        result.data.append(static_cast<const char *>(xcb_get_property_value(reply.get())),
                           xcb_get_property_value_length(reply.get()));
        if (reply->bytes_after == 0)
            return result;
        if (result.data.size() >= limit || xcb_get_property_value_length(reply.get()) == 0) {
            result.isCut = true;
            if (isDeleting)
                xcb_delete_property(connection, window, property);
            return result;
        }
    }
}

void X11SelectionConnection::deleteProperty(X11Window window, X11Atom property)
{
    xcb_delete_property(m_impl->connection, window, property);
}

void X11SelectionConnection::setProperty(X11Window window, X11Atom property, X11Atom type,
                                         QByteArrayView bytes)
{
    xcb_change_property(m_impl->connection, XCB_PROP_MODE_REPLACE, window, property, type, 8,
                        static_cast<quint32>(bytes.size()), bytes.data());
}

void X11SelectionConnection::setProperty(X11Window window, X11Atom property, X11Atom type,
                                         const QList<quint32> &elements)
{
    xcb_change_property(m_impl->connection, XCB_PROP_MODE_REPLACE, window, property, type, 32,
                        static_cast<quint32>(elements.size()), elements.constData());
}

qint64 X11SelectionConnection::maxPropertyBytes() const
{
    constexpr qint64 kRequestHeader = 64; // More than the fixed fields of the request.
    return qint64(xcb_get_maximum_request_length(m_impl->connection)) * 4 - kRequestHeader;
}

void X11SelectionConnection::requestTime(X11Window window, X11Atom property)
{
    xcb_change_property(m_impl->connection, XCB_PROP_MODE_APPEND, window, property,
                        XCB_ATOM_INTEGER, 32, 0, nullptr);
}

X11Window X11SelectionConnection::setOwner(X11Atom selection, X11Window owner, X11Time time)
{
    xcb_set_selection_owner(m_impl->connection, owner, selection, time);
    return this->owner(selection);
}

X11Window X11SelectionConnection::owner(X11Atom selection)
{
    const X11Reply<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
        m_impl->connection, xcb_get_selection_owner(m_impl->connection, selection), nullptr));
    return reply ? reply->owner : 0;
}

bool X11SelectionConnection::takeOwnerless(X11Atom selection, X11Window owner, X11Time time)
{
    xcb_grab_server(m_impl->connection);
    const bool isOwnerless = this->owner(selection) == 0;
    if (isOwnerless)
        xcb_set_selection_owner(m_impl->connection, owner, selection, time);
    xcb_ungrab_server(m_impl->connection);
    return isOwnerless && this->owner(selection) == owner;
}

void X11SelectionConnection::announceManager(X11Atom selection, X11Window owner, X11Time time)
{
    union
    {
        xcb_client_message_event_t message;
        char bytes[32];
    } event = {};
    event.message.response_type = XCB_CLIENT_MESSAGE;
    event.message.format = 32;
    event.message.window = m_impl->rootWindow;
    event.message.type = atom(u"MANAGER");
    event.message.data.data32[0] = time;
    event.message.data.data32[1] = selection;
    event.message.data.data32[2] = owner;
    xcb_send_event(m_impl->connection, 0, m_impl->rootWindow, XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                   event.bytes);
}

X11Requests &X11SelectionConnection::requests()
{
    return *m_impl->requests;
}

void X11SelectionConnection::answer(const X11Event::ConversionRequested &request, X11Atom property)
{
    // The server copies the 32 bytes of an event, whatever is used of them.
    union
    {
        xcb_selection_notify_event_t notify;
        char bytes[32];
    } event = {};
    event.notify.response_type = XCB_SELECTION_NOTIFY;
    event.notify.time = request.time;
    event.notify.requestor = request.requestor;
    event.notify.selection = request.selection;
    event.notify.target = request.target;
    event.notify.property = property;
    xcb_send_event(m_impl->connection, 0, request.requestor, XCB_EVENT_MASK_NO_EVENT, event.bytes);
}
