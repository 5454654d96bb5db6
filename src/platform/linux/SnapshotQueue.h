#pragma once

#include "platform/Pasteboard.h"

#include <atomic>
#include <deque>
#include <mutex>

/// The snapshots that a pasteboard has published: one thread adds, another one takes. Any thread.
///
/// What was published and not yet taken waits here, so that no copy is lost while the main thread
/// is busy. Nobody need take anything: old snapshots go when there are too many or too large ones.
class SnapshotQueue
{
public:
    /// Counts a change of which nothing has been read yet, and returns its number.
    quint64 addNotice() { return m_noticedCount.fetch_add(1, std::memory_order_acq_rel) + 1; }
    quint64 noticedCount() const { return m_noticedCount.load(std::memory_order_acquire); }

    /// Numbers \a snapshot, keeps it, and only then moves the count.
    void publish(PasteboardSnapshot snapshot);

    quint64 changeCount() const { return m_changeCount.load(std::memory_order_acquire); }
    PasteboardSnapshot latest() const;

    /// The snapshots after \a changeCount that are still here, oldest first. Only the latest one is
    /// kept on, without its picture: whoever takes it may need the memory only for a moment.
    QList<PasteboardSnapshot> takeSince(quint64 changeCount);

    /// Nothing remains of the snapshot with that change count but that it was there.
    void discard(quint64 changeCount);

private:
    void dropOldest();
    void dropPicture();
    void dropSurplus();

    std::atomic<quint64> m_noticedCount = 0;
    std::atomic<quint64> m_changeCount = 0;
    mutable std::mutex m_mutex;                 ///< Guards the fields below.
    std::deque<PasteboardSnapshot> m_snapshots; ///< Oldest first.
    qsizetype m_byteCount = 0;                  ///< Of all snapshots.
};
