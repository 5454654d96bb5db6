#include "capture/CaptureQueue.h"

#include "capture/ClipboardItemFactory.h"
#include "core/ClipboardItemManager.h"

#include <QPointer>
#include <QScopeGuard>

#include <utility>

namespace {

/// A single copy may be larger.
constexpr qsizetype kMaxUnderwayBytes = qsizetype(64) << 20;

} // namespace

CaptureQueue::CaptureQueue(ClipboardItemManager &itemManager)
    : m_itemManager(itemManager)
    , m_pictureCompletion([queue = QPointer(this)] {
        if (queue && queue->onPictureStored)
            queue->onPictureStored();
    })
{
}

CaptureQueue::~CaptureQueue() = default;

void CaptureQueue::add(ClipboardCopy copy)
{
    if (m_underwayCount == 0 && !takesLongToMake(copy)) {
        announce(record(copy));
        return;
    }
    ++m_underwayCount;
    m_underwayBytes += copy.snapshot.byteCount();
    m_queue.enqueue([this, copy = std::move(copy)] { recordSlowly(copy); });
}

bool CaptureQueue::isFull() const
{
    return m_underwayBytes > kMaxUnderwayBytes;
}

void CaptureQueue::announce(const std::optional<ClipboardItem> &item)
{
    if (item && onItem)
        onItem(*item);
}

void CaptureQueue::announceMade()
{
    QList<Made> list;
    {
        const std::lock_guard lock(m_mutex);
        list = std::exchange(m_made, {});
    }
    for (const Made &made : std::as_const(list)) {
        --m_underwayCount;
        m_underwayBytes -= made.byteCount;
        announce(made.item);
    }
    if (!list.isEmpty() && m_underwayCount == 0 && onIdle)
        onIdle();
}

std::optional<ClipboardItem> CaptureQueue::record(const ClipboardCopy &copy)
{
    auto item = makeClipboardItem(copy);
    if (item)
        m_itemManager.addItem(*item, item->imageRepresentation ? m_pictureCompletion : nullptr);
    return item;
}

void CaptureQueue::recordSlowly(const ClipboardCopy &copy)
{
    Made made{std::nullopt, copy.snapshot.byteCount()};
    // Without memory there is no entry, but what follows is not to wait for it.
    const auto guard = qScopeGuard([this, &made] {
        {
            const std::lock_guard lock(m_mutex);
            m_made.append(std::move(made));
        }
        QMetaObject::invokeMethod(this, &CaptureQueue::announceMade, Qt::QueuedConnection);
    });
    made.item = record(copy);
}
