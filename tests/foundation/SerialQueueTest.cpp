#include "foundation/SerialQueue.h"
#include "tests/fakes/PrintedLines.h"

#include <QTest>

#include <atomic>
#include <stdexcept>
#include <vector>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class SerialQueueTest : public QObject
{
    Q_OBJECT

private slots:
    void runsWorkInTheOrderOfItsArrival();
    void runsOnAThreadOfItsOwn();
    void drainWaitsForWhatWasQueuedBefore();
    void drainingAnEmptyQueueReturns();
    void drainingForAWhileTellsWhetherItIsDone();
    void endingRunsWhatIsQueued();
    void endingRunsWhatTheLastWorkQueues();
    void workThatThrowsIsReportedAndTheNextRuns();
    void whatWorkHoldsEndsBeforeDrainReturns();
    void manyThreadsMayQueueAtOnce();
};

void SerialQueueTest::runsWorkInTheOrderOfItsArrival()
{
    std::vector<int> order;
    SerialQueue queue("test");
    for (int i = 0; i < 1'000; ++i)
        queue.enqueue([&order, i] { order.push_back(i); });
    queue.drain();
    QCOMPARE(order.size(), size_t(1'000));
    QVERIFY(std::ranges::is_sorted(order));
}

void SerialQueueTest::runsOnAThreadOfItsOwn()
{
    std::thread::id first;
    std::thread::id second;
    SerialQueue queue("test");
    queue.enqueue([&first] { first = std::this_thread::get_id(); });
    queue.enqueue([&second] { second = std::this_thread::get_id(); });
    queue.drain();
    QVERIFY(first == second);
    QVERIFY(first != std::this_thread::get_id());
}

void SerialQueueTest::drainWaitsForWhatWasQueuedBefore()
{
    std::atomic<bool> mayFinish = false;
    std::atomic<bool> isFinished = false;
    SerialQueue queue("test");
    queue.enqueue([&] {
        mayFinish.wait(false);
        isFinished = true;
    });
    QVERIFY(!isFinished);
    mayFinish = true;
    mayFinish.notify_all();
    queue.drain();
    QVERIFY(isFinished);
}

void SerialQueueTest::drainingAnEmptyQueueReturns()
{
    SerialQueue queue("test");
    queue.drain();
    queue.drain();
}

void SerialQueueTest::drainingForAWhileTellsWhetherItIsDone()
{
    std::atomic<bool> mayFinish = false;
    SerialQueue queue("test");
    QVERIFY(queue.drainFor(1ms));
    queue.enqueue([&mayFinish] { mayFinish.wait(false); });
    QVERIFY(!queue.drainFor(1ms));
    mayFinish = true;
    mayFinish.notify_all();
    QVERIFY(queue.drainFor(10s));
}

void SerialQueueTest::endingRunsWhatIsQueued()
{
    int count = 0;
    {
        SerialQueue queue("test");
        for (int i = 0; i < 100; ++i)
            queue.enqueue([&count] { ++count; });
    }
    QCOMPARE(count, 100);
}

void SerialQueueTest::endingRunsWhatTheLastWorkQueues()
{
    bool hasRun = false;
    {
        SerialQueue queue("test");
        queue.enqueue([&] { queue.enqueue([&hasRun] { hasRun = true; }); });
    }
    QVERIFY(hasRun);
}

void SerialQueueTest::workThatThrowsIsReportedAndTheNextRuns()
{
    const PrintedLines printed;
    bool hasRun = false;
    SerialQueue queue("tessarine.test");
    queue.enqueue([] { throw std::runtime_error("out of luck"); });
    queue.enqueue([&hasRun] { hasRun = true; });
    queue.drain();
    QVERIFY(hasRun);
    QCOMPARE(printed.lines(), QStringList{u"Work on queue tessarine.test failed: out of luck"_s});
}

void SerialQueueTest::whatWorkHoldsEndsBeforeDrainReturns()
{
    auto held = std::make_shared<int>(7);
    const std::weak_ptr<int> observer = held;
    SerialQueue queue("test");
    queue.enqueue([held = std::move(held)] {});
    queue.drain();
    QVERIFY(observer.expired());
}

void SerialQueueTest::manyThreadsMayQueueAtOnce()
{
    int count = 0; // Only the queue touches it.
    SerialQueue queue("test");
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([&] {
                for (int j = 0; j < 1'000; ++j)
                    queue.enqueue([&count] { ++count; });
                queue.drain();
            });
        }
    }
    QCOMPARE(count, 4'000);
}

QTEST_APPLESS_MAIN(SerialQueueTest)
#include "SerialQueueTest.moc"
