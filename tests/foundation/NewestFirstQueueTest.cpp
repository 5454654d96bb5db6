#include "foundation/NewestFirstQueue.h"
#include "tests/fakes/PrintedLines.h"

#include <QDir>
#include <QTest>

#include <atomic>
#include <mutex>
#include <semaphore>
#include <stdexcept>
#include <thread>

using namespace Qt::StringLiterals;

namespace {

/// Fetching that does not come back before it is released. Shared with a thread that may be left
/// behind.
struct Hanging
{
    std::binary_semaphore begun{0};
    std::binary_semaphore released{0};
    std::atomic<bool> isOver = false;

    static NewestFirstQueue::Fetch fetch(const std::shared_ptr<Hanging> &hanging)
    {
        return [hanging] {
            hanging->begun.release();
            hanging->released.acquire();
            hanging->isOver = true;
            return std::optional(QByteArray("late"));
        };
    }
};

/// What the queue's thread has been told, to be looked at from the test's.
class Results
{
public:
    NewestFirstQueue::Use use(const QByteArray &name)
    {
        return [this, name](const std::optional<QByteArray> &bytes) {
            const std::lock_guard lock(m_mutex);
            m_lines.append(name + ": " + bytes.value_or("nothing"));
            m_threads.append(std::this_thread::get_id());
        };
    }

    QByteArrayList lines() const
    {
        const std::lock_guard lock(m_mutex);
        return m_lines;
    }

    std::thread::id threadOf(int line) const
    {
        const std::lock_guard lock(m_mutex);
        return m_threads.at(line);
    }

private:
    mutable std::mutex m_mutex; ///< Guards both lists.
    QByteArrayList m_lines;
    QList<std::thread::id> m_threads;
};

NewestFirstQueue::Fetch giving(const QByteArray &bytes)
{
    return [bytes] { return std::optional(bytes); };
}

} // namespace

class NewestFirstQueueTest : public QObject
{
    Q_OBJECT

private slots:
    void whatIsFetchedIsUsedOnAThreadOfItsOwn();
    void whatCannotBeFetchedIsToldToo();
    void theNewestComesFirst();
    void theOldestIsDroppedWhenTooManyWait();
    void theEndDropsWhatWaits();
    void theEndLeavesAFetchBehindThatHangs();
    void theEndWaitsForAUseThatHasBegun();
    void anUnusedQueueHasNoThread();
    void workThatThrowsIsReportedAndTheNextRuns();
};

void NewestFirstQueueTest::whatIsFetchedIsUsedOnAThreadOfItsOwn()
{
    Results results;
    NewestFirstQueue queue("test", 4);
    queue.enqueue({giving("bytes"), results.use("one")});
    QTRY_COMPARE(results.lines(), QByteArrayList{"one: bytes"});
    queue.enqueue({giving("more"), results.use("two")});
    QTRY_COMPARE(results.lines().size(), 2);
    QVERIFY(results.threadOf(0) != std::this_thread::get_id());
    QVERIFY(results.threadOf(0) == results.threadOf(1));
}

void NewestFirstQueueTest::whatCannotBeFetchedIsToldToo()
{
    Results results;
    NewestFirstQueue queue("test", 4);
    queue.enqueue({[] { return std::nullopt; }, results.use("one")});
    QTRY_COMPARE(results.lines(), QByteArrayList{"one: nothing"});
}

void NewestFirstQueueTest::theNewestComesFirst()
{
    const auto hanging = std::make_shared<Hanging>();
    Results results;
    NewestFirstQueue queue("test", 4);
    queue.enqueue({Hanging::fetch(hanging), results.use("first")});
    hanging->begun.acquire();
    for (const char *name : {"a", "b", "c"})
        queue.enqueue({giving("bytes"), results.use(name)});
    hanging->released.release();
    QTRY_COMPARE(results.lines(),
                 QByteArrayList({"first: late", "c: bytes", "b: bytes", "a: bytes"}));
}

void NewestFirstQueueTest::theOldestIsDroppedWhenTooManyWait()
{
    const auto hanging = std::make_shared<Hanging>();
    Results results;
    QByteArrayList dropped;
    NewestFirstQueue queue("test", 2);
    queue.enqueue({Hanging::fetch(hanging), results.use("first")});
    hanging->begun.acquire();
    for (const char *name : {"a", "b", "c", "d"}) {
        queue.enqueue(
            {giving("bytes"), results.use(name), [&dropped, name] { dropped.append(name); }});
    }
    QCOMPARE(dropped, QByteArrayList({"a", "b"}));
    hanging->released.release();
    QTRY_COMPARE(results.lines(), QByteArrayList({"first: late", "d: bytes", "c: bytes"}));
}

void NewestFirstQueueTest::theEndDropsWhatWaits()
{
    const auto hanging = std::make_shared<Hanging>();
    Results results;
    bool isTold = false;
    {
        NewestFirstQueue queue("test", 4);
        queue.enqueue({Hanging::fetch(hanging), results.use("first")});
        hanging->begun.acquire();
        queue.enqueue({giving("bytes"), results.use("waiting"), [&isTold] { isTold = true; }});
    }
    hanging->released.release();
    QTRY_VERIFY(hanging->isOver);
    QTRY_COMPARE(hanging.use_count(), 1); // The thread has ended.
    QCOMPARE(results.lines(), QByteArrayList());
    QVERIFY(!isTold);
}

void NewestFirstQueueTest::theEndLeavesAFetchBehindThatHangs()
{
    const auto hanging = std::make_shared<Hanging>();
    auto results = std::make_unique<Results>();
    auto queue = std::make_unique<NewestFirstQueue>("test", 4);
    queue->enqueue({Hanging::fetch(hanging), results->use("first")});
    hanging->begun.acquire();
    queue.reset();
    QVERIFY(!hanging->isOver);
    results.reset(); // Whoever wanted it may go as well.
    hanging->released.release();
    QTRY_COMPARE(hanging.use_count(), 1);
}

void NewestFirstQueueTest::theEndWaitsForAUseThatHasBegun()
{
    std::binary_semaphore begun{0};
    std::atomic<bool> isEnding = false;
    std::atomic<bool> isOver = false;
    {
        NewestFirstQueue queue("test", 4);
        queue.enqueue({giving("bytes"), [&](const auto &) {
                           begun.release();
                           isEnding.wait(false);
                           // Whoever does not wait is at its end by now.
                           for (int i = 0; i < 1'000; ++i)
                               std::this_thread::yield();
                           isOver = true;
                       }});
        begun.acquire();
        isEnding = true;
        isEnding.notify_all();
    }
    QVERIFY(isOver);
}

void NewestFirstQueueTest::anUnusedQueueHasNoThread()
{
    const auto threadCount = [] { return QDir(u"/proc/self/task"_s).entryList().size(); };
    const qsizetype before = threadCount();
    const NewestFirstQueue queue("test", 4);
    QCOMPARE(threadCount(), before);
}

void NewestFirstQueueTest::workThatThrowsIsReportedAndTheNextRuns()
{
    const PrintedLines printed;
    Results results;
    NewestFirstQueue queue("test", 4);
    queue.enqueue({giving("bytes"), [](const auto &) { throw std::runtime_error("no use"); }});
    QTRY_COMPARE(printed.lines(), QStringList{u"What was wished for failed: no use"_s});
    queue.enqueue({[]() -> std::optional<QByteArray> { throw std::runtime_error("no bytes"); },
                   results.use("two")});
    QTRY_COMPARE(results.lines(), QByteArrayList{"two: nothing"});
    QCOMPARE(printed.lines().last(), u"What was wished for failed: no bytes"_s);
}

QTEST_APPLESS_MAIN(NewestFirstQueueTest)
#include "NewestFirstQueueTest.moc"
