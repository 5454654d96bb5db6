#pragma once

#include <QByteArray>

#include <functional>
#include <memory>
#include <optional>
#include <string>

/// Fetches bytes and makes something of them, on a thread of its own, for a reader who moves on: what
/// was asked for last comes first, and what has waited too long behind newer wishes is dropped.
///
/// The thread begins with the first wish. Fetching may take for ever, as reading a file does where a
/// network volume has gone; the end of the queue leaves it behind then.
class NewestFirstQueue
{
public:
    using Fetch = std::function<std::optional<QByteArray>()>;
    using Use = std::function<void(const std::optional<QByteArray> &)>;

    struct Wish
    {
        Fetch fetch; ///< May outlive the queue, so it must own whatever it uses.
        Use use; ///< Gets what was fetched. Is over when the queue ends, and not begun after that.
        std::function<void()> onDropped = {}; ///< Called by the wish that takes the place.
    };

    /// \a capacity wishes may wait.
    NewestFirstQueue(std::string label, std::size_t capacity);

    /// Drops what waits, without a word.
    ~NewestFirstQueue();
    NewestFirstQueue(const NewestFirstQueue &) = delete;
    NewestFirstQueue &operator=(const NewestFirstQueue &) = delete;

    /// Returns at once. By one thread only.
    void enqueue(Wish wish);

private:
    struct State;

    void startThread();
    static void run(State &state);
    /// False if the queue has ended meanwhile.
    static bool runOne(State &state, const Wish &wish);

    std::string m_label;
    std::size_t m_capacity;
    std::shared_ptr<State> m_state; ///< Shared with the thread, which may be left behind.
    bool m_isStarted = false;
};
