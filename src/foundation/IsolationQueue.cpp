#include "foundation/IsolationQueue.h"

void IsolationQueue::barrier(SerialQueue::Work change)
{
    m_writer.enqueue([this, change = std::move(change)] {
        const std::unique_lock lock(m_mutex);
        change();
    });
}
