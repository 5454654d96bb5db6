#pragma once

#include "platform/Scheduler.h"

#include <algorithm>
#include <memory>
#include <vector>

/// A scheduler whose time passes only when a test says so.
class FakeScheduler : public Scheduler
{
public:
    std::unique_ptr<ScheduledWork> after(std::chrono::milliseconds delay, Work work) override
    {
        return std::make_unique<Handle>(add(delay, {}, std::move(work)));
    }

    std::unique_ptr<ScheduledWork> every(std::chrono::milliseconds period, Work work) override
    {
        return std::make_unique<Handle>(add(period, period, std::move(work)));
    }

    void runAfter(std::chrono::milliseconds delay, Work work) override
    {
        m_detached.push_back(add(delay, {}, std::move(work)));
    }

    /// Lets \a step pass: everything that falls due runs, in order, at its own moment.
    void advance(std::chrono::milliseconds step)
    {
        const auto end = m_now + step;
        while (const auto entry = nextDue(end)) {
            m_now = entry->due;
            const Work work = entry->work;
            if (entry->period.count() > 0)
                entry->due += entry->period;
            else
                entry->isDone = true;
            work();
        }
        m_now = end;
    }

    std::chrono::milliseconds now() const { return m_now; }

    /// How much work there is still to do.
    int pendingCount() const
    {
        return int(std::ranges::count_if(m_entries, [](const std::weak_ptr<Entry> &weak) {
            const auto entry = weak.lock();
            return entry && !entry->isDone;
        }));
    }

private:
    struct Entry
    {
        std::chrono::milliseconds due;
        std::chrono::milliseconds period;
        Work work;
        bool isDone = false;
    };

    struct Handle : ScheduledWork
    {
        explicit Handle(std::shared_ptr<Entry> kept) : entry(std::move(kept)) {}
        std::shared_ptr<Entry> entry;
    };

    std::shared_ptr<Entry> add(std::chrono::milliseconds delay, std::chrono::milliseconds period,
                               Work work)
    {
        auto entry = std::make_shared<Entry>(Entry{m_now + delay, period, std::move(work)});
        m_entries.push_back(entry);
        return entry;
    }

    /// The earliest entry that is due at \a end and still wanted; among equals the oldest.
    std::shared_ptr<Entry> nextDue(std::chrono::milliseconds end)
    {
        std::shared_ptr<Entry> next;
        for (const auto &weak : m_entries) {
            const auto entry = weak.lock();
            if (entry && !entry->isDone && entry->due <= end && (!next || entry->due < next->due))
                next = entry;
        }
        return next;
    }

    std::chrono::milliseconds m_now{0};
    std::vector<std::weak_ptr<Entry>> m_entries;
    std::vector<std::shared_ptr<Entry>> m_detached;
};
