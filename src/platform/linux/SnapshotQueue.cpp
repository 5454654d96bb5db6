#include "platform/linux/SnapshotQueue.h"

namespace {

constexpr std::size_t kMaxSnapshots = 1024;
constexpr qsizetype kMaxByteCount = qsizetype(256) << 20;

} // namespace

void SnapshotQueue::publish(PasteboardSnapshot snapshot)
{
    const std::lock_guard lock(m_mutex);
    snapshot.changeCount = m_changeCount.load(std::memory_order_relaxed) + 1;
    const quint64 changeCount = snapshot.changeCount;
    m_byteCount += snapshot.byteCount();
    m_snapshots.push_back(std::move(snapshot));
    dropSurplus();
    m_changeCount.store(changeCount, std::memory_order_release);
}

PasteboardSnapshot SnapshotQueue::latest() const
{
    const std::lock_guard lock(m_mutex);
    return m_snapshots.empty() ? PasteboardSnapshot() : m_snapshots.back();
}

QList<PasteboardSnapshot> SnapshotQueue::takeSince(quint64 changeCount)
{
    const std::lock_guard lock(m_mutex);
    QList<PasteboardSnapshot> taken;
    for (const PasteboardSnapshot &snapshot : m_snapshots) {
        if (snapshot.changeCount > changeCount)
            taken.append(snapshot);
    }
    while (m_snapshots.size() > 1)
        dropOldest();
    dropPicture();
    return taken;
}

void SnapshotQueue::discard(quint64 changeCount)
{
    const std::lock_guard lock(m_mutex);
    for (PasteboardSnapshot &snapshot : m_snapshots) {
        if (snapshot.changeCount != changeCount)
            continue;
        m_byteCount -= snapshot.byteCount();
        PasteboardSnapshot emptied;
        emptied.changeCount = changeCount;
        emptied.notice = snapshot.notice;
        snapshot = std::move(emptied);
    }
}

void SnapshotQueue::dropOldest()
{
    m_byteCount -= m_snapshots.front().byteCount();
    m_snapshots.pop_front();
}

/// Of the one that is left.
void SnapshotQueue::dropPicture()
{
    if (m_snapshots.empty())
        return;
    m_snapshots.back().image.reset();
    m_byteCount = m_snapshots.back().byteCount();
}

/// The latest one stays, however large it is.
void SnapshotQueue::dropSurplus()
{
    while (m_snapshots.size() > 1 &&
           (m_snapshots.size() > kMaxSnapshots || m_byteCount > kMaxByteCount))
        dropOldest();
}
