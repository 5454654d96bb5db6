#include "tests/fakes/FakeClock.h"
#include "tests/fakes/FakeScheduler.h"

#include "appearance/Easing.h"
#include "window/WindowMotion.h"

#include <QTest>
#include <QWidget>

#include <cmath>

using namespace std::chrono_literals;

class WindowMotionTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void theEntranceBeginsUnseenAndSmaller();
    void theEntranceFadesAndGrowsByItsCurves();
    void theExitFadesAndShrinksByItsCurves();
    void theEntranceEndsAsLateAsItsSpring();
    void theExitEndsAsLateAsItsFade();
    void anEntranceOvertakesAnExitFromWhereItStands();
    void anExitOvertakesAnEntranceFromWhereItStands();
    void settlingEndsWhatIsGoingOn();
    void finishingEndsAnEntranceWhereItWasGoing();
    void finishingEndsAnExitWhereItWasGoing();
    void finishingWhatIsOverDoesNothing();
    void aFadeLeavesTheSizeAlone();

private:
    void make(WindowMotion::Kind kind);
    void pass(std::chrono::milliseconds time);
    const Presentation &shown() const { return m_layer->presentation(); }
    std::function<void()> counting() { return [this] { ++m_finishedCount; }; }

    std::unique_ptr<QWidget> m_view;
    std::unique_ptr<FakeScheduler> m_scheduler;
    std::unique_ptr<FakeClock> m_clock;
    std::unique_ptr<PresentationLayer> m_layer;
    std::unique_ptr<WindowMotion> m_motion;
    int m_finishedCount = 0;
};

namespace {

constexpr double kFrame = 0.016; ///< What is drawn is seen a frame later.

/// A weight of 0.8 on a spring of 560 with a damping of 40: 25 = 40 / (2 * 0.8) is its decay, and
/// 700 = 560 / 0.8 the square of its undamped frequency.
double springAfter(double seconds)
{
    const double frequency = std::sqrt(700.0 - 25.0 * 25.0);
    return 1
        - std::exp(-25 * seconds)
        * (std::cos(frequency * seconds) + 25 / frequency * std::sin(frequency * seconds));
}

bool isNear(double value, double expected)
{
    return std::abs(value - expected) < 1e-6;
}

} // namespace

void WindowMotionTest::init()
{
    make(WindowMotion::Kind::FadeAndScale);
}

void WindowMotionTest::cleanup()
{
    m_motion.reset();
}

void WindowMotionTest::make(WindowMotion::Kind kind)
{
    m_motion.reset();
    m_view = std::make_unique<QWidget>();
    m_scheduler = std::make_unique<FakeScheduler>();
    m_clock = std::make_unique<FakeClock>();
    m_layer = std::make_unique<PresentationLayer>(*m_view);
    m_motion = std::make_unique<WindowMotion>(*m_layer, kind, *m_scheduler, *m_clock);
    m_finishedCount = 0;
}

void WindowMotionTest::pass(std::chrono::milliseconds time)
{
    for (; time.count() > 0; time -= 1ms) {
        m_clock->advance(1ms);
        m_scheduler->advance(1ms);
    }
}

void WindowMotionTest::theEntranceBeginsUnseenAndSmaller()
{
    m_motion->enter(WindowMotion::Start::Unseen, counting());
    QVERIFY(isNear(shown().opacity, easeOut(kFrame / 0.16)));
    QVERIFY(isNear(shown().scale, 0.975 + 0.025 * springAfter(kFrame)));
}

void WindowMotionTest::theEntranceFadesAndGrowsByItsCurves()
{
    m_motion->enter(WindowMotion::Start::Unseen, counting());
    for (int frame = 1; frame < 9; ++frame) {
        pass(16ms);
        const double seconds = kFrame * (frame + 1);
        QVERIFY(isNear(shown().opacity, easeOut(seconds / 0.16)));
        QVERIFY(isNear(shown().scale, 0.975 + 0.025 * springAfter(seconds)));
    }
    pass(16ms);
    QCOMPARE(shown().opacity, 1.0);
    QVERIFY(shown().scale < 1);
}

void WindowMotionTest::theExitFadesAndShrinksByItsCurves()
{
    m_motion->leave(counting());
    for (int frame = 1; frame < 9; ++frame) {
        const double seconds = kFrame * frame;
        QVERIFY(isNear(shown().opacity, 1 - easeIn(seconds / 0.16)));
        QVERIFY(isNear(shown().scale, 1 - 0.012 * easeIn(seconds / 0.15)));
        pass(16ms);
    }
}

void WindowMotionTest::theEntranceEndsAsLateAsItsSpring()
{
    m_motion->enter(WindowMotion::Start::Unseen, counting());
    pass(279ms);
    QCOMPARE(m_finishedCount, 0);
    pass(1ms);
    QCOMPARE(m_finishedCount, 1);
    QCOMPARE(shown(), Presentation());
    pass(1s);
    QCOMPARE(m_finishedCount, 1);
    QCOMPARE(m_scheduler->pendingCount(), 0);
}

void WindowMotionTest::theExitEndsAsLateAsItsFade()
{
    m_motion->leave(counting());
    pass(159ms);
    QCOMPARE(m_finishedCount, 0);
    pass(1ms);
    QCOMPARE(m_finishedCount, 1);
    QCOMPARE(shown(), (Presentation{.opacity = 0, .scale = 0.988}));
    QCOMPARE(m_scheduler->pendingCount(), 0);
}

void WindowMotionTest::anEntranceOvertakesAnExitFromWhereItStands()
{
    m_motion->leave(counting());
    pass(96ms);
    const Presentation before = shown();
    QVERIFY(before.opacity < 0.7 && before.opacity > 0.2);
    m_motion->enter(WindowMotion::Start::WhereItStands, counting());
    QVERIFY(isNear(shown().opacity, std::lerp(before.opacity, 1, easeOut(kFrame / 0.16))));
    QVERIFY(isNear(shown().scale, std::lerp(before.scale, 1, springAfter(kFrame))));
    pass(279ms);
    QCOMPARE(m_finishedCount, 0);
    pass(1ms);
    QCOMPARE(m_finishedCount, 1);
    QCOMPARE(shown(), Presentation());
}

void WindowMotionTest::anExitOvertakesAnEntranceFromWhereItStands()
{
    m_motion->enter(WindowMotion::Start::Unseen, counting());
    pass(48ms);
    const Presentation before = shown();
    QVERIFY(before.opacity < 0.7 && before.scale < 0.99);
    m_motion->leave(counting());
    QVERIFY(isNear(shown().opacity, before.opacity * (1 - easeIn(kFrame / 0.16))));
    QVERIFY(isNear(shown().scale, std::lerp(before.scale, 0.988, easeIn(kFrame / 0.15))));
    pass(160ms);
    QCOMPARE(m_finishedCount, 1);
    QCOMPARE(shown(), (Presentation{.opacity = 0, .scale = 0.988}));
}

void WindowMotionTest::settlingEndsWhatIsGoingOn()
{
    m_motion->leave(counting());
    pass(50ms);
    m_motion->settle();
    QCOMPARE(shown(), Presentation());
    pass(1s);
    QCOMPARE(m_finishedCount, 0);
    QCOMPARE(shown(), Presentation());
}

void WindowMotionTest::finishingEndsAnEntranceWhereItWasGoing()
{
    m_motion->enter(WindowMotion::Start::Unseen, counting());
    pass(50ms);
    m_motion->finish();
    QCOMPARE(shown(), Presentation());
    QCOMPARE(m_finishedCount, 1);
    pass(1s);
    QCOMPARE(m_finishedCount, 1);
    QCOMPARE(m_scheduler->pendingCount(), 0);
}

void WindowMotionTest::finishingEndsAnExitWhereItWasGoing()
{
    m_motion->leave([this] {
        ++m_finishedCount;
        m_motion.reset(); // As where the window goes with it.
    });
    pass(50ms);
    m_motion->finish();
    QCOMPARE(shown(), (Presentation{.opacity = 0, .scale = 0.988}));
    QCOMPARE(m_finishedCount, 1);
    pass(1s);
    QCOMPARE(m_finishedCount, 1);
}

void WindowMotionTest::finishingWhatIsOverDoesNothing()
{
    m_motion->finish();
    QCOMPARE(shown(), Presentation());
    m_motion->leave(counting());
    pass(160ms);
    m_motion->finish();
    QCOMPARE(m_finishedCount, 1);
    m_motion->settle();
    m_motion->finish();
    QCOMPARE(shown(), Presentation());
    QCOMPARE(m_finishedCount, 1);
}

void WindowMotionTest::aFadeLeavesTheSizeAlone()
{
    make(WindowMotion::Kind::Fade);
    m_motion->enter(WindowMotion::Start::Unseen, counting());
    QVERIFY(isNear(shown().opacity, easeOut(kFrame / 0.16)));
    for (int frame = 0; frame < 17; ++frame) {
        QCOMPARE(shown().scale, 1.0);
        pass(16ms);
    }
    pass(8ms);
    QCOMPARE(m_finishedCount, 1);
    m_motion->leave(counting());
    for (int frame = 0; frame < 9; ++frame) {
        QCOMPARE(shown().scale, 1.0);
        pass(16ms);
    }
    pass(16ms);
    QCOMPARE(shown(), (Presentation{.opacity = 0, .scale = 1}));
}

QTEST_MAIN(WindowMotionTest)
#include "WindowMotionTest.moc"
