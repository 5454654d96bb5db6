#include "foundation/LazyBytes.h"

#include <mutex>

namespace {

/// One for all: it is held for the copying of a pointer, and a mutex in each would outweigh it.
std::mutex stateMutex;

/// One reads at a time: what two readers want is read once, and the source has one reader anyway.
std::mutex readMutex;

} // namespace

struct LazyBytes::State
{
    const qsizetype size;
    std::shared_ptr<const QByteArray> bytes; ///< Null if they lie elsewhere.
    std::weak_ptr<const QByteArray> held; ///< What somebody holds of bytes that lie elsewhere.
    std::shared_ptr<const ByteSource> source;
};

LazyBytes::LazyBytes(QByteArray bytes)
{
    if (bytes.isEmpty())
        return;
    const qsizetype size = bytes.size();
    auto shared = std::make_shared<const QByteArray>(std::move(bytes));
    m_state = std::make_shared<State>(State{size, std::move(shared), {}, {}});
}

LazyBytes LazyBytes::elsewhere(qsizetype size, std::shared_ptr<const ByteSource> source)
{
    LazyBytes bytes;
    if (size > 0)
        bytes.m_state = std::make_shared<State>(State{size, {}, {}, std::move(source)});
    return bytes;
}

qsizetype LazyBytes::size() const
{
    return m_state ? m_state->size : 0;
}

bool LazyBytes::isInMemory() const
{
    const std::lock_guard lock(stateMutex);
    return !m_state || m_state->bytes;
}

std::optional<QByteArray> LazyBytes::read() const
{
    if (!m_state)
        return QByteArray();
    const auto bytes = hold();
    return bytes ? std::optional(*bytes) : std::nullopt;
}

/// What need not be read; null if there is nothing, and then \a source is the present one.
std::shared_ptr<const QByteArray>
LazyBytes::bytesAtHand(std::shared_ptr<const ByteSource> &source) const
{
    const std::lock_guard lock(stateMutex);
    if (m_state->bytes)
        return m_state->bytes;
    source = m_state->source;
    return m_state->held.lock();
}

std::shared_ptr<const QByteArray> LazyBytes::hold() const
{
    if (!m_state)
        return std::make_shared<const QByteArray>();
    std::shared_ptr<const ByteSource> source;
    if (auto bytes = bytesAtHand(source))
        return bytes;
    const std::lock_guard readLock(readMutex);
    if (auto bytes = bytesAtHand(source))
        return bytes;
    std::optional<QByteArray> read = source->read();
    if (!read || read->size() != m_state->size)
        return nullptr;
    auto bytes = std::make_shared<const QByteArray>(*std::move(read));
    const std::lock_guard lock(stateMutex);
    m_state->held = bytes;
    return bytes;
}

void LazyBytes::moveTo(std::shared_ptr<const ByteSource> source) const
{
    if (!m_state)
        return;
    std::shared_ptr<const QByteArray> dropped; // It ends outside of the lock.
    const std::lock_guard lock(stateMutex);
    m_state->source = std::move(source);
    dropped = std::exchange(m_state->bytes, nullptr);
}

bool operator==(const LazyBytes &one, const LazyBytes &other)
{
    if (one.m_state == other.m_state)
        return true;
    if (one.size() != other.size())
        return false;
    const auto bytes = one.hold();
    const auto otherBytes = other.hold();
    return bytes && otherBytes && *bytes == *otherBytes;
}
