#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <optional>

/// Makes calls that may never come back, as those to the file system do where a network volume has
/// gone, and waits for each of them for a while only. Any thread.
class BoundedCalls
{
public:
    /// Longer than a disk takes, but for one that has to start turning; short enough for a person.
    static constexpr auto kPatience = std::chrono::milliseconds(300);

    /// When as many calls hang, further ones are not made.
    static constexpr int kMaxPending = 8;

    explicit BoundedCalls(std::chrono::milliseconds patience = kPatience);

    /// What \a call returns, or throws; absent if that takes too long. It then goes on behind our
    /// back, even past the end of this object, so it must own whatever it uses.
    template <typename Result>
    std::optional<Result> run(std::function<Result()> call) const
    {
        // Counted down before the result is there: who has it may make the next call.
        auto task = std::make_shared<std::packaged_task<Result()>>(
            [pending = m_pendingCount, call = std::move(call)] {
                const CountDown countDown(*pending);
                return call();
            });
        std::future<Result> result = task->get_future();
        if (!startThread([task] { (*task)(); })
            || result.wait_for(m_patience) != std::future_status::ready)
            return std::nullopt;
        return result.get();
    }

private:
    /// Takes one off a number at its end.
    class CountDown
    {
    public:
        explicit CountDown(std::atomic<int> &count)
            : m_count(count)
        {
        }
        ~CountDown() { m_count.fetch_sub(1); }
        CountDown(const CountDown &) = delete;
        CountDown &operator=(const CountDown &) = delete;

    private:
        std::atomic<int> &m_count;
    };

    bool startThread(std::function<void()> work) const;

    std::chrono::milliseconds m_patience;
    std::shared_ptr<std::atomic<int>> m_pendingCount; ///< Shared with the threads that go on.
};
