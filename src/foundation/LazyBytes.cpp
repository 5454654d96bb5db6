#include "foundation/LazyBytes.h"

#include "foundation/TextSignature.h"

#include <atomic>
#include <mutex>

namespace {

/// Guards the pointers of every state. One for all: it is held for the copying of a pointer, and a
/// mutex in each would outweigh it.
std::mutex stateMutex;

} // namespace

struct LazyBytes::State
{
    State(qsizetype byteCount, std::shared_ptr<const QByteArray> present,
          std::shared_ptr<const ByteSource> absent)
        : size(byteCount)
        , bytes(std::move(present))
        , source(std::move(absent))
    {
    }
    ~State() { delete signature.load(); }
    State(const State &) = delete;
    State &operator=(const State &) = delete;

    const qsizetype size;
    std::shared_ptr<const QByteArray> bytes; ///< Null if they lie elsewhere.
    std::weak_ptr<const QByteArray> held; ///< What somebody holds of bytes that lie elsewhere.
    std::shared_ptr<const ByteSource> source;
    /// Owned, and never changed again; asked for without a lock, thousands of times in a row.
    std::atomic<const TextSignature *> signature = nullptr;
    std::atomic<bool> isBeingRead = false;
};

/// Whoever has it reads: what two want at the same time is read once.
class LazyBytes::ReadTurn
{
public:
    explicit ReadTurn(State &state) : m_isTaken(state.isBeingRead)
    {
        while (m_isTaken.exchange(true))
            m_isTaken.wait(true);
    }
    ~ReadTurn()
    {
        m_isTaken = false;
        m_isTaken.notify_one();
    }
    ReadTurn(const ReadTurn &) = delete;
    ReadTurn &operator=(const ReadTurn &) = delete;

private:
    std::atomic<bool> &m_isTaken;
};

LazyBytes::LazyBytes(QByteArray bytes)
{
    if (bytes.isEmpty())
        return;
    const qsizetype size = bytes.size();
    auto shared = std::make_shared<const QByteArray>(std::move(bytes));
    m_state = std::make_shared<State>(size, std::move(shared), nullptr);
}

LazyBytes LazyBytes::elsewhere(qsizetype size, std::shared_ptr<const ByteSource> source)
{
    LazyBytes bytes;
    if (size > 0)
        bytes.m_state = std::make_shared<State>(size, nullptr, std::move(source));
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

std::shared_ptr<const QByteArray> LazyBytes::atHand() const
{
    std::shared_ptr<const ByteSource> source;
    return m_state ? bytesAtHand(source) : std::make_shared<const QByteArray>();
}

std::shared_ptr<const QByteArray> LazyBytes::hold() const
{
    if (!m_state)
        return std::make_shared<const QByteArray>();
    std::shared_ptr<const ByteSource> source;
    if (auto bytes = bytesAtHand(source))
        return bytes;
    const ReadTurn turn(*m_state);
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

const TextSignature *LazyBytes::signature() const
{
    return m_state ? m_state->signature.load() : nullptr;
}

void LazyBytes::setSignature(std::unique_ptr<const TextSignature> signature) const
{
    const TextSignature *none = nullptr;
    if (m_state && m_state->signature.compare_exchange_strong(none, signature.get()))
        signature.release();
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
