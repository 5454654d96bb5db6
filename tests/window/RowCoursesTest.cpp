#include "window/RowCourses.h"

#include "tests/fakes/FakeClock.h"
#include "tests/fakes/FakeScheduler.h"

#include <QTest>

#include <memory>

using namespace std::chrono_literals;

namespace {

using Time = std::chrono::duration<double>;

double straight(Time time)
{
    return time / 160ms;
}

/// Where nobody sees it move.
double still(Time)
{
    return 0.5;
}

constexpr RowCourses::Course kStraight{straight, 160ms};
constexpr RowCourses::Course kStill{still, 160ms};

} // namespace

class RowCoursesTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_courses.reset(); }

    void aRowThatIsNotUnderWayIsAtItsEnd();
    void theFirstPictureIsOneFrameOnItsWay();
    void eachFrameGoesOnAlongTheCourse();
    void aCourseEndsWithAFrameOfItsOwn();
    void aFrameThatComesLateIsDrawnWhereTheTimeIs();
    void whatIsNotSeenToDifferIsNotDrawn();
    void rowsShareTheirFrames();
    void aRowThatSetsOutAnewBeginsAtTheBeginning();
    void anUnwantedStepEndsThatCourseOnly();
    void aFinishedRowIsAtItsEndAndOthersGoOn();
    void withTheLastRowTheFramesEnd();
    void withAllRowsTheFramesEnd();
    void aStepMayFinishAnotherRow();
    void aStepMayFinishAllRows();
    void aLastStepMaySendItsRowOffAnew();
    void aClockThatIsSetBackEndsTheCourse();
    void afterTheEndOfTheObjectNothingIsDrawn();

private:
    void pass(std::chrono::milliseconds time)
    {
        m_clock.advance(time);
        m_scheduler.advance(time);
    }
    double position(const QUuid &id) const { return m_courses->position(id); }
    static bool isNear(double value, double wanted) { return std::abs(value - wanted) < 1e-9; }

    const QUuid m_first = QUuid::createUuid();
    const QUuid m_second = QUuid::createUuid();
    FakeScheduler m_scheduler;
    FakeClock m_clock;
    std::unique_ptr<RowCourses> m_courses;
    QList<QUuid> m_steps;
    std::function<bool(const QUuid &)> m_answer; ///< To a step; wanted if there is none.
};

void RowCoursesTest::init()
{
    m_steps.clear();
    m_answer = {};
    m_courses = std::make_unique<RowCourses>(m_scheduler, m_clock, [this](const QUuid &id) {
        m_steps.append(id);
        return !m_answer || m_answer(id);
    });
}

void RowCoursesTest::aRowThatIsNotUnderWayIsAtItsEnd()
{
    QCOMPARE(position(m_first), 1.0);
    m_courses->start(m_second, kStraight);
    QCOMPARE(position(m_first), 1.0);
}

void RowCoursesTest::theFirstPictureIsOneFrameOnItsWay()
{
    m_courses->start(m_first, kStraight);
    QVERIFY(isNear(position(m_first), 0.1));
    QVERIFY(m_steps.isEmpty()); // Whoever starts it draws it.
}

void RowCoursesTest::eachFrameGoesOnAlongTheCourse()
{
    m_courses->start(m_first, kStraight);
    for (int frame = 2; frame < 10; ++frame) {
        pass(16ms);
        QVERIFY(isNear(position(m_first), frame / 10.0));
        QCOMPARE(m_steps.size(), frame - 1);
    }
    QCOMPARE(m_steps.count(m_first), m_steps.size());
}

void RowCoursesTest::aCourseEndsWithAFrameOfItsOwn()
{
    m_courses->start(m_first, kStill);
    pass(128ms);
    QVERIFY(m_steps.isEmpty());
    pass(16ms);
    QCOMPARE(m_steps, QList<QUuid>{m_first});
    QCOMPARE(position(m_first), 1.0);
    QCOMPARE(m_scheduler.pendingCount(), 0);
}

void RowCoursesTest::aFrameThatComesLateIsDrawnWhereTheTimeIs()
{
    m_courses->start(m_first, kStraight);
    m_clock.advance(48ms);
    m_scheduler.advance(16ms);
    QVERIFY(isNear(position(m_first), 0.4));
    m_clock.advance(1h);
    m_scheduler.advance(16ms);
    QCOMPARE(position(m_first), 1.0);
    QCOMPARE(m_steps.size(), 2);
}

void RowCoursesTest::whatIsNotSeenToDifferIsNotDrawn()
{
    constexpr RowCourses::Course slow{[](Time time) { return time / 100s; }, 100s};
    m_courses->start(m_first, slow);
    // A shade in 255 takes 392 ms; half of one is rounded up.
    for (int frame = 0; frame < 60; ++frame)
        pass(16ms);
    QCOMPARE(m_steps.size(), 2);
}

void RowCoursesTest::rowsShareTheirFrames()
{
    m_courses->start(m_first, kStraight);
    pass(8ms);
    m_courses->start(m_second, kStraight);
    QCOMPARE(m_scheduler.pendingCount(), 1);
    pass(8ms);
    QVERIFY(isNear(position(m_first), 0.2));
    QVERIFY(isNear(position(m_second), 0.15));
    QCOMPARE(m_steps.size(), 2);
    QCOMPARE(m_scheduler.pendingCount(), 1);
}

void RowCoursesTest::aRowThatSetsOutAnewBeginsAtTheBeginning()
{
    m_courses->start(m_first, kStraight);
    pass(16ms);
    pass(16ms);
    m_courses->start(m_first, kStraight);
    QVERIFY(isNear(position(m_first), 0.1));
    QCOMPARE(m_scheduler.pendingCount(), 1);
    pass(16ms);
    QVERIFY(isNear(position(m_first), 0.2));
    // What the first course would have reached by now is forgotten.
    for (int frame = 0; frame < 7; ++frame)
        pass(16ms);
    QVERIFY(isNear(position(m_first), 0.9));
    pass(16ms);
    QCOMPARE(position(m_first), 1.0);
}

void RowCoursesTest::anUnwantedStepEndsThatCourseOnly()
{
    m_answer = [this](const QUuid &id) { return id != m_first; };
    m_courses->start(m_first, kStraight);
    m_courses->start(m_second, kStraight);
    pass(16ms);
    QCOMPARE(position(m_first), 1.0);
    QVERIFY(isNear(position(m_second), 0.2));
    pass(16ms);
    QCOMPARE(m_steps.count(m_first), 1);
    QCOMPARE(m_steps.count(m_second), 2);
}

void RowCoursesTest::aFinishedRowIsAtItsEndAndOthersGoOn()
{
    m_courses->start(m_first, kStraight);
    m_courses->start(m_second, kStraight);
    m_courses->finish(m_first);
    QCOMPARE(position(m_first), 1.0);
    QCOMPARE(m_steps, QList<QUuid>{m_first});
    pass(16ms);
    QCOMPARE(m_steps, (QList<QUuid>{m_first, m_second}));
    m_courses->finish(QUuid::createUuid());
    QCOMPARE(m_steps.size(), 2);
    QVERIFY(isNear(position(m_second), 0.2));
}

void RowCoursesTest::withTheLastRowTheFramesEnd()
{
    m_courses->start(m_first, kStraight);
    m_courses->finish(m_first);
    QCOMPARE(m_scheduler.pendingCount(), 0);
    m_courses->start(m_first, kStraight);
    pass(16ms);
    QCOMPARE(m_steps.size(), 2);
}

void RowCoursesTest::withAllRowsTheFramesEnd()
{
    m_courses->start(m_first, kStraight);
    m_courses->start(m_second, kStraight);
    m_courses->finishAll();
    QCOMPARE(position(m_first), 1.0);
    QCOMPARE(position(m_second), 1.0);
    QCOMPARE(m_scheduler.pendingCount(), 0);
    pass(16ms);
    QCOMPARE(m_steps.size(), 2);
    QCOMPARE(m_steps.count(m_first), 1);
}

void RowCoursesTest::aStepMayFinishAnotherRow()
{
    m_answer = [this](const QUuid &id) {
        if (m_steps.size() == 1)
            m_courses->finish(id == m_first ? m_second : m_first);
        return true;
    };
    m_courses->start(m_first, kStraight);
    m_courses->start(m_second, kStraight);
    pass(16ms);
    QCOMPARE(m_steps.size(), 2);
    const QUuid other = m_steps.first() == m_first ? m_second : m_first;
    QCOMPARE(position(other), 1.0);
    QVERIFY(isNear(position(m_steps.first()), 0.2));
}

void RowCoursesTest::aStepMayFinishAllRows()
{
    m_answer = [this](const QUuid &) {
        m_courses->finishAll();
        return true;
    };
    m_courses->start(m_first, kStraight);
    m_courses->start(m_second, kStraight);
    pass(16ms);
    QCOMPARE(m_steps.size(), 3); // The one that stepped is drawn at its end, too.
    QCOMPARE(m_scheduler.pendingCount(), 0);
}

void RowCoursesTest::aLastStepMaySendItsRowOffAnew()
{
    m_answer = [this](const QUuid &id) {
        if (m_steps.size() == 1)
            m_courses->start(id, kStraight);
        return true;
    };
    m_courses->start(m_first, kStill);
    pass(160ms);
    QCOMPARE(m_steps.size(), 1);
    QVERIFY(isNear(position(m_first), 0.1));
    pass(16ms);
    QVERIFY(isNear(position(m_first), 0.2));
    QCOMPARE(m_scheduler.pendingCount(), 1);
}

void RowCoursesTest::aClockThatIsSetBackEndsTheCourse()
{
    m_courses->start(m_first, kStraight);
    m_clock.advance(-1h);
    m_scheduler.advance(16ms);
    QCOMPARE(m_steps.size(), 1);
    QCOMPARE(position(m_first), 1.0);
    QCOMPARE(m_scheduler.pendingCount(), 0);
}

void RowCoursesTest::afterTheEndOfTheObjectNothingIsDrawn()
{
    m_courses->start(m_first, kStraight);
    m_courses.reset();
    pass(16ms);
    QVERIFY(m_steps.isEmpty());
}

QTEST_GUILESS_MAIN(RowCoursesTest)
#include "RowCoursesTest.moc"
