#pragma once

#include <QByteArray>
#include <QList>
#include <QStringList>

#include <memory>
#include <optional>
#include <variant>

class X11Requests;

using X11Window = quint32; ///< 0 for no window.
using X11Atom = quint32;   ///< 0 for none.
using X11Time = quint32;   ///< Milliseconds of the server; 0 stands for "now".

/// What the server tells about selections, in our words.
namespace X11Event {

/// Another owner, or the same one anew.
struct OwnerChanged
{
    X11Atom selection = 0;
    X11Window owner = 0; ///< 0 if there is none any more.
    X11Time ownedSince = 0;
    bool isOwnerGone = false; ///< The owner ended; nobody emptied the selection on purpose.
};

/// The owner has answered a conversion of ours.
struct ConversionAnswered
{
    X11Window requestor = 0;
    X11Atom property = 0; ///< 0 if it was refused.
};

struct PropertyChanged
{
    X11Window window = 0;
    X11Atom property = 0;
    X11Time time = 0;
    bool isDeleted = false;
};

/// Another program wants what we own.
struct ConversionRequested
{
    X11Window requestor = 0;
    X11Atom selection = 0;
    X11Atom target = 0;
    X11Atom property = 0; ///< 0 from programs of an older time.
    X11Time time = 0;
};

struct OwnershipLost
{
    X11Atom selection = 0;
};

struct WindowDestroyed
{
    X11Window window = 0;
};

using Any = std::variant<OwnerChanged, ConversionAnswered, PropertyChanged, ConversionRequested,
                         OwnershipLost, WindowDestroyed>;

} // namespace X11Event

/// A property of a window, read to the end.
struct X11Property
{
    X11Atom type = 0;   ///< 0 if there is no such property.
    int format = 0;     ///< Bits of one element: 8, 16 or 32.
    QByteArray data;    ///< Elements of 32 bits stand here in 32 bits, in the machine's order.
    bool isCut = false; ///< There was more than was asked for; it is gone.
};

/// A connection of its own to the X server for whoever reads and serves selections.
///
/// Its calls wait for the server at most, never for another program. Requests go out with flush(),
/// or with the next call that waits for a reply. One thread at a time.
class X11SelectionConnection
{
public:
    /// To the display that the environment names.
    /// \throws PlatformError if it cannot be reached or lacks XFixes.
    X11SelectionConnection();
    ~X11SelectionConnection();
    X11SelectionConnection(const X11SelectionConnection &) = delete;
    X11SelectionConnection &operator=(const X11SelectionConnection &) = delete;

    int fileDescriptor() const;
    /// The server is gone; nothing works any more.
    bool isBroken() const;
    void flush();

    /// The next event, absent if none has come.
    std::optional<X11Event::Any> nextEvent();
    /// The same without a look at the socket: what flush() has read on the way.
    std::optional<X11Event::Any> nextQueuedEvent();

    X11Atom atom(QStringView name);
    QList<X11Atom> atoms(const QStringList &names);
    /// Names that are absurdly long come back empty.
    QStringList atomNames(const QList<X11Atom> &atoms);

    /// An invisible window that carries properties; its changes are told.
    X11Window createWindow();
    bool isOwnWindow(X11Window window) const;
    /// A number that all windows of one program's connection share, and no others.
    quint32 clientOf(X11Window window) const;
    void destroyWindow(X11Window window);

    /// From now on the changes of another program's \a window, and its end, are told.
    void watch(X11Window window);
    void unwatch(X11Window window);

    /// Changes of the owner of \a selection are told.
    void watchOwner(X11Atom selection);

    void convert(X11Atom selection, X11Atom target, X11Window requestor, X11Atom property,
                 X11Time time);

    /// Reads and deletes a property. If it is longer than \a limit bytes, it is cut there.
    X11Property takeProperty(X11Window window, X11Atom property, qint64 limit);
    /// Reads a property, which stays; cut like above.
    X11Property readProperty(X11Window window, X11Atom property, qint64 limit);
    void deleteProperty(X11Window window, X11Atom property);
    void setProperty(X11Window window, X11Atom property, X11Atom type, QByteArrayView bytes);
    void setProperty(X11Window window, X11Atom property, X11Atom type,
                     const QList<quint32> &elements);

    /// How many bytes one setProperty() may carry.
    qint64 maxPropertyBytes() const;

    /// Changes \a property of our own \a window, so that the event tells the time of the server.
    void requestTime(X11Window window, X11Atom property);

    /// \a owner may be 0, so that nobody owns it. Returns who owns the selection now: a newer owner
    /// keeps it.
    X11Window setOwner(X11Atom selection, X11Window owner, X11Time time);
    X11Window owner(X11Atom selection);
    /// The same, but only if nobody owns the selection; other programs wait for the moment between
    /// the question and the taking. True if it is \a owner's now.
    bool takeOwnerless(X11Atom selection, X11Window owner, X11Time time);

    /// Tells all programs that \a owner has begun to own \a selection, as ICCCM 2.8 has it for
    /// those of managers.
    void announceManager(X11Atom selection, X11Window owner, X11Time time);

    /// For other questions to the same server.
    X11Requests &requests();

    /// Tells the requestor that its conversion is done, or with \a property 0 that it is refused.
    void answer(const X11Event::ConversionRequested &request, X11Atom property);

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};
