#include "platform/x11/X11Pasteboard.h"

#include "platform/x11/X11PasteboardThread.h"

#include <QObject>

#include <atomic>

using namespace std::chrono_literals;

namespace {

/// Far more than the thread ever needs; but the main thread never waits without end.
constexpr auto kPrimaryPatience = 200ms;

} // namespace

struct X11Pasteboard::Impl
{
    Impl(X11Pasteboard &owner, const ImageCodec &codec)
        : pasteboard(owner)
        , thread(codec, snapshots, [this] { announce(); })
    {
    }

    /// On the pasteboard's thread. One call on its way is enough: it finds all there is.
    void announce()
    {
        if (isCallUnderWay.exchange(true))
            return;
        QMetaObject::invokeMethod(
            &mainThread,
            [this] {
                isCallUnderWay = false;
                if (pasteboard.onChanged)
                    pasteboard.onChanged();
            },
            Qt::QueuedConnection);
    }

    X11Pasteboard &pasteboard;
    SnapshotQueue snapshots;
    QObject mainThread; ///< Ends the calls on their way with the pasteboard.
    std::atomic<bool> isCallUnderWay = false;
    X11PasteboardThread thread;
};

X11Pasteboard::X11Pasteboard(const ImageCodec &codec)
    : m_impl(std::make_unique<Impl>(*this, codec))
{
}

X11Pasteboard::~X11Pasteboard() = default;

quint64 X11Pasteboard::changeCount() const
{
    return m_impl->snapshots.changeCount();
}

quint64 X11Pasteboard::noticedCount() const
{
    return m_impl->snapshots.noticedCount();
}

PasteboardSnapshot X11Pasteboard::snapshot() const
{
    return m_impl->snapshots.latest();
}

QList<PasteboardSnapshot> X11Pasteboard::takeSnapshotsSince(quint64 changeCount)
{
    return m_impl->snapshots.takeSince(changeCount);
}

void X11Pasteboard::write(const PasteboardContents &contents)
{
    m_impl->thread.write(contents);
}

void X11Pasteboard::keepAlive(const PasteboardSnapshot &snapshot)
{
    m_impl->thread.keepAlive(snapshot.notice);
}

void X11Pasteboard::discard(const PasteboardSnapshot &snapshot)
{
    m_impl->snapshots.discard(snapshot.changeCount);
    m_impl->thread.discard(snapshot.notice);
}

bool X11Pasteboard::alsoOwnPrimary()
{
    std::future<bool> isOwned = m_impl->thread.alsoOwnPrimary();
    return isOwned.wait_for(kPrimaryPatience) == std::future_status::ready && isOwned.get();
}
