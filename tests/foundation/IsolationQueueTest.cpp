#include "foundation/IsolationQueue.h"

#include <QTest>

#include <atomic>
#include <latch>
#include <vector>

class IsolationQueueTest : public QObject
{
    Q_OBJECT

private slots:
    void aReadSeesTheChangesQueuedBefore();
    void readersRunInParallel();
    void aChangeRunsAlone();
    void changesGetThroughBetweenManyReaders();
};

void IsolationQueueTest::aReadSeesTheChangesQueuedBefore()
{
    int value = 0;
    IsolationQueue queue("test");
    for (int i = 1; i <= 1'000; ++i) {
        queue.barrier([&value, i] { value = i; });
        if (i % 10 == 0)
            QCOMPARE(queue.read([&value] { return value; }), i);
    }
}

void IsolationQueueTest::readersRunInParallel()
{
    IsolationQueue queue("test");
    std::latch bothInside(2);
    // Each reader waits for the other one: this ends only if both are let in.
    const auto meet = [&] {
        return queue.read([&] {
            bothInside.arrive_and_wait();
            return true;
        });
    };
    std::atomic<bool> hasMet = false;
    std::jthread other([&] { hasMet = meet(); });
    QVERIFY(meet());
    other.join();
    QVERIFY(hasMet);
}

void IsolationQueueTest::aChangeRunsAlone()
{
    IsolationQueue queue("test");
    std::atomic<bool> isReading = false;
    std::atomic<bool> haveMet = false;
    std::latch readerIsInside(1);
    std::latch changeIsQueued(1);
    std::jthread reader([&] {
        queue.read([&] {
            isReading = true;
            readerIsInside.count_down();
            changeIsQueued.wait();
            isReading = false;
            return 0;
        });
    });
    readerIsInside.wait();
    queue.barrier([&] { haveMet = isReading.load(); });
    changeIsQueued.count_down();
    queue.drain();
    QVERIFY(!haveMet);
}

void IsolationQueueTest::changesGetThroughBetweenManyReaders()
{
    // Both halves are changed together, and not atomic: a reader must never see one without the
    // other.
    std::pair<int, int> value;
    std::atomic<bool> isTorn = false;
    std::atomic<bool> isOver = false;
    IsolationQueue queue("test");
    {
        std::vector<std::jthread> readers;
        for (int i = 0; i < 3; ++i) {
            readers.emplace_back([&] {
                while (!isOver) {
                    const auto seen = queue.read([&value] { return value; });
                    if (seen.first != seen.second)
                        isTorn = true;
                }
            });
        }
        for (int i = 1; i <= 2'000; ++i)
            queue.barrier([&value, i] { value = {i, i}; });
        queue.drain();
        isOver = true;
    }
    QVERIFY(!isTorn);
    QCOMPARE(value.first, 2'000);
}

QTEST_APPLESS_MAIN(IsolationQueueTest)
#include "IsolationQueueTest.moc"
