#include "platform/linux/BoundedCalls.h"

#include <QTest>

#include <semaphore>
#include <stdexcept>
#include <thread>

using namespace std::chrono_literals;

class BoundedCallsTest : public QObject
{
    Q_OBJECT

private slots:
    void aCallThatReturnsIsAnswered();
    void aCallThatThrowsThrows();
    void aCallRunsOnAnotherThread();
    void aCallThatHangsIsGivenUpAndItsLateAnswerDropped();
    void whileTooManyHangNoFurtherCallIsMade();
    void anAnsweredCallCountsNoMore();

private:
    /// A call that returns when it is let go; it owns what it uses.
    struct Hanging
    {
        std::shared_ptr<std::binary_semaphore> mayGo = std::make_shared<std::binary_semaphore>(0);
        std::shared_ptr<std::binary_semaphore> isGone = std::make_shared<std::binary_semaphore>(0);

        std::function<int()> call() const
        {
            return [mayGo = mayGo, isGone = isGone] {
                mayGo->acquire();
                isGone->release();
                return 1;
            };
        }

        void end() const
        {
            mayGo->release();
            isGone->acquire();
        }
    };
};

void BoundedCallsTest::aCallThatReturnsIsAnswered()
{
    const BoundedCalls calls(1min);
    QCOMPARE(calls.run<int>([] { return 7; }), 7);
    const auto pointer = calls.run<std::unique_ptr<int>>([] { return std::make_unique<int>(8); });
    QCOMPARE(**pointer, 8);
}

void BoundedCallsTest::aCallThatThrowsThrows()
{
    const BoundedCalls calls(1min);
    QVERIFY_EXCEPTION_THROWN(calls.run<int>([]() -> int { throw std::range_error("far"); }),
                             std::range_error);
}

void BoundedCallsTest::aCallRunsOnAnotherThread()
{
    const auto id
        = BoundedCalls(1min).run<std::thread::id>([] { return std::this_thread::get_id(); });
    QVERIFY(id && *id != std::this_thread::get_id());
}

void BoundedCallsTest::aCallThatHangsIsGivenUpAndItsLateAnswerDropped()
{
    const Hanging hanging;
    {
        const BoundedCalls calls(1ms);
        QVERIFY(!calls.run<int>(hanging.call()));
    }
    hanging.end();
}

void BoundedCallsTest::whileTooManyHangNoFurtherCallIsMade()
{
    const BoundedCalls impatient(1ms);
    QList<Hanging> hanging(BoundedCalls::kMaxPending);
    for (const Hanging &one : hanging)
        QVERIFY(!impatient.run<int>(one.call()));

    const auto isMade = std::make_shared<std::atomic<bool>>(false);
    const auto call = [isMade] {
        *isMade = true;
        return 1;
    };
    QVERIFY(!impatient.run<int>(call));
    QVERIFY(!*isMade);
    for (const Hanging &one : hanging)
        one.end();
    bool isAnswered = false;
    QTRY_VERIFY(isAnswered || (isAnswered = impatient.run<int>(call).has_value()));
    QVERIFY(*isMade);
}

void BoundedCallsTest::anAnsweredCallCountsNoMore()
{
    const BoundedCalls calls(1min);
    for (int round = 0; round < 1'000; ++round)
        QCOMPARE(calls.run<int>([round] { return round; }), round);
}

QTEST_GUILESS_MAIN(BoundedCallsTest)
#include "BoundedCallsTest.moc"
