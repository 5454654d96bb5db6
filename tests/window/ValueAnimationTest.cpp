#include "tests/fakes/FakeClock.h"
#include "tests/fakes/FakeScheduler.h"

#include "appearance/Easing.h"
#include "window/ValueAnimation.h"

#include <QTest>

using namespace std::chrono_literals;

class ValueAnimationTest : public QObject
{
    Q_OBJECT

private slots:
    void theFirstFrameIsDrawnAtOnceAndIsAlreadyOnTheWay();
    void valuesRunToTheEndAndThenItIsOver();
    void aClockThatJumpsBackDoesNotHoldItUp();
    void stoppingLeavesTheValueWhereItStands();
    void finishingBringsTheValueToTheEndAtOnce();
    void finishingWhatDoesNotRunDoesNothing();
    void itMayBeGoneAtItsEnd();
    void aNewCourseReplacesTheFormer();
    void easingBeginsAtNothingAndEndsAtOne();
};

namespace {

double straight(double progress)
{
    return progress;
}

struct Watched
{
    FakeScheduler scheduler;
    FakeClock clock;
    ValueAnimation animation{scheduler, clock};
    QList<double> values;
    int finishedCount = 0;

    void start(double from, double to)
    {
        animation.start({from, to, 160ms, straight}, [this](double value) { values.append(value); },
                        [this] { ++finishedCount; });
    }

    void pass(std::chrono::milliseconds time)
    {
        for (; time.count() > 0; time -= 1ms) {
            clock.advance(1ms);
            scheduler.advance(1ms);
        }
    }
};

} // namespace

void ValueAnimationTest::theFirstFrameIsDrawnAtOnceAndIsAlreadyOnTheWay()
{
    Watched watched;
    watched.start(0, 1);
    QCOMPARE(watched.values, QList<double>{0.1});
}

void ValueAnimationTest::valuesRunToTheEndAndThenItIsOver()
{
    Watched watched;
    watched.start(1, 0);
    watched.pass(159ms);
    QCOMPARE(watched.finishedCount, 0);
    QVERIFY(std::ranges::is_sorted(watched.values, std::greater()));
    watched.pass(1ms);
    QCOMPARE(watched.finishedCount, 1);
    QCOMPARE(watched.values.last(), 0.0);
    const qsizetype count = watched.values.size();
    watched.pass(500ms);
    QCOMPARE(watched.values.size(), count);
}

void ValueAnimationTest::aClockThatJumpsBackDoesNotHoldItUp()
{
    Watched watched;
    watched.start(0, 1);
    watched.clock.advance(-1h);
    watched.scheduler.advance(160ms);
    QCOMPARE(watched.values.last(), 1.0);
    QCOMPARE(watched.finishedCount, 1);
    QVERIFY(std::ranges::all_of(watched.values, [](double v) { return v >= 0 && v <= 1; }));
}

void ValueAnimationTest::stoppingLeavesTheValueWhereItStands()
{
    Watched watched;
    watched.start(0, 1);
    watched.pass(50ms);
    const QList<double> values = watched.values;
    watched.animation.stop();
    watched.pass(500ms);
    QCOMPARE(watched.values, values);
    QCOMPARE(watched.finishedCount, 0);
}

void ValueAnimationTest::finishingBringsTheValueToTheEndAtOnce()
{
    Watched watched;
    watched.start(0, 1);
    watched.pass(50ms);
    const qsizetype count = watched.values.size();
    watched.animation.finish();
    QCOMPARE(watched.values.size(), count + 1);
    QCOMPARE(watched.values.last(), 1.0);
    QCOMPARE(watched.finishedCount, 1);
    watched.pass(500ms);
    QCOMPARE(watched.values.size(), count + 1);
    QCOMPARE(watched.finishedCount, 1);
}

void ValueAnimationTest::finishingWhatDoesNotRunDoesNothing()
{
    Watched watched;
    watched.animation.finish();
    watched.start(0, 1);
    watched.animation.stop();
    const QList<double> values = watched.values;
    watched.animation.finish();
    QCOMPARE(watched.values, values);
    watched.start(0, 1);
    watched.pass(160ms);
    watched.animation.finish();
    QCOMPARE(watched.finishedCount, 1);
}

void ValueAnimationTest::itMayBeGoneAtItsEnd()
{
    FakeScheduler scheduler;
    FakeClock clock;
    int finishedCount = 0;
    auto animation = std::make_unique<ValueAnimation>(scheduler, clock);
    animation->start({0, 1, 160ms, straight}, [](double) {},
                     [&] {
                         animation.reset();
                         ++finishedCount;
                     });
    animation->finish();
    QVERIFY(!animation);
    QCOMPARE(finishedCount, 1);
    QCOMPARE(scheduler.pendingCount(), 0);
}

void ValueAnimationTest::aNewCourseReplacesTheFormer()
{
    Watched watched;
    watched.start(0, 1);
    watched.pass(100ms);
    watched.start(0.5, 0);
    watched.pass(100ms);
    QCOMPARE(watched.finishedCount, 0);
    watched.pass(60ms);
    QCOMPARE(watched.finishedCount, 1);
    QCOMPARE(watched.values.last(), 0.0);
}

void ValueAnimationTest::easingBeginsAtNothingAndEndsAtOne()
{
    for (const auto easing : {easeIn, easeOut}) {
        QCOMPARE(easing(0), 0.0);
        QCOMPARE(easing(1), 1.0);
    }
    QVERIFY(easeIn(0.3) < 0.3);
    QVERIFY(easeOut(0.3) > 0.3);
}

QTEST_GUILESS_MAIN(ValueAnimationTest)
#include "ValueAnimationTest.moc"
