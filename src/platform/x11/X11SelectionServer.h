#pragma once

#include "platform/Pasteboard.h"
#include "platform/x11/X11SelectionConnection.h"

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

/// Owns selections and hands out what we wrote to whoever asks, several programs at a time.
///
/// Nothing here waits for another program. The thread of the pasteboard hands in events and calls
/// expire() in time; that thread alone uses it.
class X11SelectionServer
{
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    enum class PictureFormat { Png, Tiff };

    using PictureDone = std::function<void(std::optional<QByteArray> file)>;
    /// Makes a picture of another format elsewhere and calls \a done with it later, on our thread;
    /// not if \a isWanted, which is asked on any thread, says no before the work has begun.
    using PictureEncoder =
        std::function<void(const LazyBytes &picture, PictureFormat format,
                           std::function<bool()> isWanted, PictureDone done)>;

    X11SelectionServer(X11SelectionConnection &connection, PictureEncoder encodePicture);
    ~X11SelectionServer();

    /// Takes CLIPBOARD for \a contents, or leaves it without owner if they are empty. Happens when
    /// the server has told the time.
    void write(const PasteboardContents &contents);

    /// Takes PRIMARY for what was written last and calls \a onDone with the outcome: false if
    /// CLIPBOARD is not ours any more, or somebody else is quicker.
    void alsoOwnPrimary(std::function<void(bool isOwned)> onDone);

    /// Takes CLIPBOARD for \a contents if nobody owns it, with the time \a since which its last
    /// owner had it: with a later one the server would refuse programs that copy with the time of
    /// an earlier key press.
    void takeOver(const PasteboardContents &contents, X11Time since);

    bool isOurs(X11Window owner) const { return owner == m_window; }

    /// What a write of ours put there, or an empty one cleared, if that is what the notice tells
    /// of; given out once.
    std::optional<PasteboardContents> takeWritten(const X11Event::OwnerChanged &notice);

    /// False if the event belongs to somebody else.
    bool handle(const X11Event::PropertyChanged &event, TimePoint now);
    void handle(const X11Event::ConversionRequested &request, TimePoint now);
    void handle(const X11Event::OwnershipLost &event);
    void handle(const X11Event::WindowDestroyed &event);

    /// When expire() wants to be called; absent while no transfer is under way.
    std::optional<TimePoint> deadline() const;
    void expire(TimePoint now);

private:
    /// A picture that we offer in another format than we have it in. It ends with its last offer.
    struct LazyPicture
    {
        enum class State
        {
            NotBegun,
            UnderWay,
            Done ///< Without success if there are no data.
        };

        bool hasFailed() const { return state == State::Done && data.isEmpty(); }

        PictureFormat format = PictureFormat::Png;
        LazyBytes source;
        QByteArray data;
        State state = State::NotBegun;
    };

    /// One target under which contents can be had.
    struct Form
    {
        X11Atom target = 0;
        X11Atom type = 0;
        LazyBytes data; ///< Shared with all forms of the same content.
        std::shared_ptr<LazyPicture> picture; ///< Null for what need not be made.

        bool isUnmade() const { return picture && picture->state != LazyPicture::State::Done; }
    };

    /// What we offer under one selection, and since when.
    struct Ownership
    {
        X11Atom selection = 0;
        X11Time since = 0;
        std::shared_ptr<const std::vector<Form>> forms; ///< Shared by both selections.
    };

    /// A wish to own that waits for the time.
    struct PendingOwnership
    {
        X11Atom selection = 0;
        PasteboardContents contents;
        std::function<void(bool)> onDone;
    };

    /// A write that is done, but of which the server has not told yet.
    struct Announcement
    {
        X11Time since = 0;
        PasteboardContents contents;
    };

    /// What a program wants in one request: targets, each followed by the property for it.
    struct Pairs
    {
        X11Atom type = 0;
        QList<X11Atom> atoms;
    };

    /// Data on their way to a program, piece by piece.
    struct OutgoingTransfer
    {
        X11Window requestor = 0;
        X11Atom property = 0;
        X11Atom type = 0;
        QByteArray data;
        qsizetype offset = 0;
        TimePoint lastProgress;
        bool isOver = false;
    };

    void takeClipboard(const PasteboardContents &contents, X11Time time);
    bool takePrimary(X11Time time);
    std::shared_ptr<const std::vector<Form>> makeForms(const PasteboardContents &contents);
    void addForms(std::vector<Form> &forms, const PasteboardContents &contents,
                  const PasteboardContents::Entry &entry);
    bool addForm(std::vector<Form> &forms, QStringView target, QStringView type,
                 const LazyBytes &data);
    void addLazyForm(std::vector<Form> &forms, QStringView target, PictureFormat format,
                     const LazyBytes &source);
    void addPng(std::vector<Form> &forms, const PasteboardContents::Entry &entry);
    Ownership *find(X11Atom selection);
    void setOwnership(X11Atom selection, std::optional<Ownership> ownership);

    bool convert(const Ownership &ownership, X11Window requestor, X11Atom target, X11Atom property,
                 TimePoint now);
    const Form *findForm(const Ownership &ownership, X11Atom target) const;
    bool hasToWait(const Ownership &ownership, const X11Event::ConversionRequested &request);
    bool isWanted(X11Atom target, const X11Event::ConversionRequested &request);
    void beginPng(const std::vector<Form> &forms);
    void begin(const std::shared_ptr<LazyPicture> &picture);
    void answerWaiting();
    std::optional<Pairs> readPairs(X11Window requestor, X11Atom property);
    bool convertMultiple(const Ownership &ownership, X11Window requestor, X11Atom property,
                         TimePoint now);
    void offerTargets(const Ownership &ownership, X11Window requestor, X11Atom property);
    bool send(X11Window requestor, X11Atom property, const Form &form, TimePoint now);
    void sendNextPiece(OutgoingTransfer &transfer, TimePoint now);
    template <typename Predicate>
    void endTransfers(Predicate isOver);

    X11SelectionConnection &m_connection;
    PictureEncoder m_encodePicture;
    X11Window m_window;
    qint64 m_pieceBytes;
    std::vector<Ownership> m_ownerships;
    std::deque<PendingOwnership> m_pending;
    std::deque<Announcement> m_announcements;
    std::vector<X11Event::ConversionRequested> m_waiting; ///< For a picture under way.
    std::vector<OutgoingTransfer> m_transfers;
};
