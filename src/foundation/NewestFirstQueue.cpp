#include "foundation/NewestFirstQueue.h"

#include "foundation/Log.h"
#include "foundation/ThreadName.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Longer than a disk takes for a small file.
constexpr auto kEndPatience = 200ms;

template <typename Work>
void runGuarded(Work &&work)
{
    try {
        work();
    } catch (const std::exception &error) {
        printLine(u"What was wished for failed: %1"_s.arg(QString::fromUtf8(error.what())));
    }
}

} // namespace

struct NewestFirstQueue::State
{
    std::mutex mutex; ///< Guards the fields below.
    std::condition_variable changed;
    std::deque<Wish> waiting; ///< The newest at the back.
    bool isUsing = false;
    bool isEnding = false;
    bool hasEnded = false;
};

NewestFirstQueue::NewestFirstQueue(std::string label, std::size_t capacity)
    : m_label(std::move(label))
    , m_capacity(capacity)
    , m_state(std::make_shared<State>())
{
}

NewestFirstQueue::~NewestFirstQueue()
{
    std::deque<Wish> dropped;
    std::unique_lock lock(m_state->mutex);
    m_state->isEnding = true;
    m_state->waiting.swap(dropped);
    m_state->changed.notify_all();
    m_state->changed.wait(lock, [this] { return !m_state->isUsing; });
    if (m_isStarted)
        m_state->changed.wait_for(lock, kEndPatience, [this] { return m_state->hasEnded; });
}

void NewestFirstQueue::enqueue(Wish wish)
{
    std::optional<Wish> dropped;
    {
        const std::lock_guard lock(m_state->mutex);
        m_state->waiting.push_back(std::move(wish));
        if (m_state->waiting.size() > m_capacity) {
            dropped = std::move(m_state->waiting.front());
            m_state->waiting.pop_front();
        }
    }
    m_state->changed.notify_all();
    startThread();
    if (dropped && dropped->onDropped)
        dropped->onDropped();
}

void NewestFirstQueue::startThread()
{
    if (m_isStarted)
        return;
    try {
        // Nobody can join a thread that hangs in the kernel.
        std::thread([label = m_label, state = m_state] {
            nameCurrentThread(label);
            run(*state);
        }).detach();
        m_isStarted = true;
    } catch (const std::system_error &) {
        // The next wish tries again.
    }
}

void NewestFirstQueue::run(State &state)
{
    while (true) {
        std::optional<Wish> wish;
        {
            std::unique_lock lock(state.mutex);
            state.changed.wait(lock, [&] { return state.isEnding || !state.waiting.empty(); });
            if (!state.isEnding) {
                wish = std::move(state.waiting.back());
                state.waiting.pop_back();
            }
        }
        if (!wish || !runOne(state, *wish))
            break;
    }
    const std::lock_guard lock(state.mutex);
    state.hasEnded = true;
    state.changed.notify_all();
}

bool NewestFirstQueue::runOne(State &state, const Wish &wish)
{
    std::optional<QByteArray> bytes;
    runGuarded([&] { bytes = wish.fetch(); });
    {
        const std::lock_guard lock(state.mutex);
        if (state.isEnding)
            return false;
        state.isUsing = true;
    }
    runGuarded([&] { wish.use(bytes); });
    const std::lock_guard lock(state.mutex);
    state.isUsing = false;
    state.changed.notify_all();
    return true;
}
