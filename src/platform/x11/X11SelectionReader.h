#pragma once

#include "platform/Pasteboard.h"
#include "platform/linux/SelectionPace.h"
#include "platform/linux/SelectionPlan.h"
#include "platform/x11/X11IncomingTransfer.h"

#include <chrono>
#include <memory>
#include <vector>

/// Reads what capture needs from the owner of the CLIPBOARD selection, one owner at a time.
///
/// The offer is read first, then a password manager's mark where there is one, then all wanted
/// formats at once. Nothing here waits: the thread of the pasteboard hands in events and calls
/// expire() in time. That thread alone uses it.
class X11SelectionReader
{
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    struct Copy
    {
        PasteboardSnapshot snapshot; ///< Without image.
        QByteArray picture;          ///< The picture's file as offered; empty if none was read.
        QString pictureTarget;       ///< The target under which it was offered.
    };

    explicit X11SelectionReader(X11SelectionConnection &connection);
    ~X11SelectionReader();

    /// Reads what the new owner offers; a reading that still runs is given up. An owner that takes
    /// the selection again and again because it is asked is asked later, and in the end no more.
    /// False if no reading has begun.
    bool start(const X11Event::OwnerChanged &event, TimePoint now);

    /// The owner will answer no more: what has come is what there is.
    void ownerEnded();

    void cancel();

    /// Somebody is being asked at the moment.
    bool isReading() const { return m_stage != Stage::Idle && m_stage != Stage::Pause; }

    /// False if the event belongs to somebody else.
    bool handle(const X11Event::ConversionAnswered &event, TimePoint now);
    bool handle(const X11Event::PropertyChanged &event, TimePoint now);

    /// When expire() wants to be called; absent while nothing is under way.
    std::optional<TimePoint> deadline() const;
    void expire(TimePoint now);

    /// Called when a copy was read, also if the offer was all that came. Not called for an owner
    /// that did not even say what it offers.
    std::function<void(Copy)> onRead;

private:
    enum class Stage
    {
        Idle,
        Pause, ///< Before a restless owner is asked again.
        Offer,
        Mark,
        Contents
    };

    /// One of the forms wanted, and the targets that are left to be tried for it.
    struct Wish
    {
        QStringView type;
        QStringList targets;
        QString target; ///< The one that was asked for last.
        std::unique_ptr<X11IncomingTransfer> transfer;
    };

    /// The window of a transfer given up, kept so that the owner can come to its end.
    struct AbandonedWindow
    {
        X11Window window = 0;
        TimePoint end;
    };

    void begin(TimePoint now);
    void pause(TimePoint now);
    template <typename Event>
    bool dispatch(const Event &event, TimePoint now);
    void advance();
    void readOffer(const X11IncomingTransfer &offer);
    void readMark(const X11IncomingTransfer &mark);
    void askForContents();
    void askForPicture();
    bool isPictureMissing() const;
    void addWish(QStringView type, const QStringList &targets);
    bool tryNextTarget(Wish &wish);
    bool isAnswered(const Wish &wish) const;
    bool isAbandoned(X11Window window) const;
    std::unique_ptr<X11IncomingTransfer> ask(QStringView target);
    void finish();
    Copy makeCopy() const;
    QString typeName(const X11Property &property) const;
    Utf8Text textOf(const X11Property &property) const;
    qint64 receivedBytes() const;
    TimePoint readingDeadline() const;
    std::optional<TimePoint> nudgeTime() const;
    void nudgeOwner(TimePoint now);
    void abandonTransfers();

    X11SelectionConnection &m_connection;
    Stage m_stage = Stage::Idle;
    SelectionPace m_pace;
    X11Time m_ownedSince = 0; ///< Since when the selection has its owner.
    TimePoint m_pauseEnd;
    TimePoint m_startedAt;
    TimePoint m_lastProgress;
    TimePoint m_lastNudge;
    int m_nudgesLeft = 0; ///< In this reading.
    qint64 m_byteLimit; ///< For all of one copy.
    SelectionPlan m_plan;
    bool m_isOfferKnown = false; ///< Otherwise the plan is a guess.
    std::vector<Wish> m_wishes;  ///< In the earlier stages the only one is the question itself.
    std::vector<AbandonedWindow> m_abandoned; ///< Oldest first.
};
