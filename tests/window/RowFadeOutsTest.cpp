#include "tests/fakes/FakeClock.h"
#include "tests/fakes/FakeScheduler.h"

#include "window/RowFadeOuts.h"

#include <QTest>

#include <memory>

using namespace std::chrono_literals;

class RowFadeOutsTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_fades.reset(); }

    void aRowFadesAndIsGoneOnlyThen();
    void everyStepIsDrawn();
    void aRowThatFadesAlreadyGoesOnFromWhatIsSeen();
    void finishingEndsAllAtOnce();
    void aFadeThatBeginsAtTheEndOfAnotherIsItsOwn();
    void nothingIsDoneAfterTheEnd();

private:
    std::function<void()> counting() { return [this] { ++m_doneCount; }; }
    void pass(std::chrono::milliseconds time)
    {
        for (; time.count() > 0; time -= 1ms) {
            m_clock->advance(1ms);
            m_scheduler->advance(1ms);
        }
    }

    const QUuid m_id = QUuid::createUuid();
    std::unique_ptr<FakeScheduler> m_scheduler;
    std::unique_ptr<FakeClock> m_clock;
    std::unique_ptr<RowFadeOuts> m_fades;
    int m_stepCount = 0;
    int m_doneCount = 0;
};

void RowFadeOutsTest::init()
{
    m_fades.reset();
    m_scheduler = std::make_unique<FakeScheduler>();
    m_clock = std::make_unique<FakeClock>();
    m_fades = std::make_unique<RowFadeOuts>(*m_scheduler, *m_clock, [this] { ++m_stepCount; });
    m_stepCount = 0;
    m_doneCount = 0;
}

void RowFadeOutsTest::aRowFadesAndIsGoneOnlyThen()
{
    double opacityAtTheEnd = 1;
    m_fades->start(m_id, 200ms, [&] {
        ++m_doneCount;
        opacityAtTheEnd = m_fades->opacity(m_id);
    });
    double before = 1;
    for (int frame = 0; frame < 11; ++frame) {
        pass(16ms);
        QVERIFY(m_fades->opacity(m_id) < before);
        before = m_fades->opacity(m_id);
    }
    QCOMPARE(m_fades->opacity(QUuid::createUuid()), 1.0);
    QCOMPARE(m_doneCount, 0);
    pass(24ms);
    QCOMPARE(m_doneCount, 1);
    QCOMPARE(opacityAtTheEnd, 0.0);
    QCOMPARE(m_fades->opacity(m_id), 1.0); // Another row of the entry would be seen.
    QCOMPARE(m_scheduler->pendingCount(), 0);
}

void RowFadeOutsTest::everyStepIsDrawn()
{
    m_fades->start(m_id, 200ms, counting());
    for (int frame = 0; frame < 12; ++frame) {
        const int before = m_stepCount;
        pass(16ms);
        QVERIFY(m_stepCount > before);
    }
    const int before = m_stepCount;
    pass(8ms);
    QVERIFY(m_stepCount > before);
}

void RowFadeOutsTest::aRowThatFadesAlreadyGoesOnFromWhatIsSeen()
{
    int formerCount = 0;
    m_fades->start(m_id, 200ms, [&] { ++formerCount; });
    pass(100ms);
    const double seen = m_fades->opacity(m_id);
    m_fades->start(m_id, 200ms, counting());
    QVERIFY(m_fades->opacity(m_id) <= seen);
    QVERIFY(m_fades->opacity(m_id) > seen - 0.1);
    pass(200ms);
    QCOMPARE(formerCount, 0);
    QCOMPARE(m_doneCount, 1);
}

void RowFadeOutsTest::finishingEndsAllAtOnce()
{
    m_fades->start(m_id, 200ms, counting());
    m_fades->start(QUuid::createUuid(), 200ms, counting());
    pass(50ms);
    m_fades->finishAll();
    QCOMPARE(m_doneCount, 2);
    QCOMPARE(m_fades->opacity(m_id), 1.0);
    QCOMPARE(m_scheduler->pendingCount(), 0);
    m_fades->finishAll();
    QCOMPARE(m_doneCount, 2);
}

void RowFadeOutsTest::aFadeThatBeginsAtTheEndOfAnotherIsItsOwn()
{
    const QUuid next = QUuid::createUuid();
    m_fades->start(m_id, 200ms, [&] {
        ++m_doneCount;
        m_fades->start(next, 200ms, counting());
    });
    m_fades->finishAll();
    QCOMPARE(m_doneCount, 1);
    QVERIFY(m_fades->opacity(next) < 1);
    pass(200ms);
    QCOMPARE(m_doneCount, 2);
}

void RowFadeOutsTest::nothingIsDoneAfterTheEnd()
{
    m_fades->start(m_id, 200ms, counting());
    m_fades.reset();
    pass(1s);
    QCOMPARE(m_doneCount, 0);
    QCOMPARE(m_scheduler->pendingCount(), 0);
}

QTEST_GUILESS_MAIN(RowFadeOutsTest)
#include "RowFadeOutsTest.moc"
