#include "platform/linux/SelectionPace.h"

#include <QTest>

using namespace std::chrono_literals;

class SelectionPaceTest : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void aBurstIsNotSlowed();
    void aFewInterruptionsAreNoUnrest();
    void whoInterruptsEachQuestionIsRestless();
    void whoGivesTheSameOverAndOverIsRestless();
    void pausesGrowToAnEnd();
    void theLastPauseWaitsForQuiet();
    void whoGoesOnIsGivenUp();
    void anotherOwnerBeginsAfresh();
    void somethingNewBeginsAfresh();
    void aQuietTimeBeginsAfresh();
    void whatCannotBeComparedIsNew();

private:
    void interrupt(int times);

    SelectionPace m_pace;
    SelectionPace::TimePoint m_now;
};

namespace {

constexpr quint32 kOwner = 1;

} // namespace

void SelectionPaceTest::init()
{
    m_pace = {};
    m_now = SelectionPace::TimePoint() + 1h;
    m_pace.noteTaken(kOwner, false, m_now);
}

void SelectionPaceTest::interrupt(int times)
{
    for (int time = 0; time < times; ++time)
        m_pace.noteTaken(kOwner, true, m_now += 1ms);
}

void SelectionPaceTest::aBurstIsNotSlowed()
{
    for (std::size_t content = 1; content <= 10'000; ++content) {
        m_pace.noteTaken(kOwner, false, m_now += 1ms);
        m_pace.noteGiven(content);
        QVERIFY(!m_pace.isRestless());
    }
}

void SelectionPaceTest::aFewInterruptionsAreNoUnrest()
{
    interrupt(16);
    QVERIFY(!m_pace.isRestless());
}

void SelectionPaceTest::whoInterruptsEachQuestionIsRestless()
{
    interrupt(17);
    QVERIFY(m_pace.isRestless());
}

void SelectionPaceTest::whoGivesTheSameOverAndOverIsRestless()
{
    for (int time = 0; time < 18; ++time) {
        QVERIFY(!m_pace.isRestless());
        m_pace.noteTaken(kOwner, false, m_now += 1ms);
        m_pace.noteGiven(7);
    }
    QVERIFY(m_pace.isRestless());
}

void SelectionPaceTest::pausesGrowToAnEnd()
{
    interrupt(17);
    QCOMPARE(m_pace.pause(), 2ms);
    interrupt(1);
    QCOMPARE(m_pace.pause(), 4ms);
    interrupt(13);
    QCOMPARE(m_pace.pause(), 512ms);
    QVERIFY(!m_pace.isLastPause());
}

void SelectionPaceTest::theLastPauseWaitsForQuiet()
{
    interrupt(32);
    QVERIFY(m_pace.isLastPause());
    QCOMPARE(m_pace.pause(), 2s);
    m_pace.noteTaken(kOwner, false, m_now += 1ms);
    QVERIFY(m_pace.isLastPause());
}

void SelectionPaceTest::whoGoesOnIsGivenUp()
{
    interrupt(33);
    QVERIFY(m_pace.isRestless());
    QVERIFY(!m_pace.pause());
}

void SelectionPaceTest::anotherOwnerBeginsAfresh()
{
    interrupt(100);
    m_pace.noteTaken(kOwner + 1, true, m_now);
    QVERIFY(!m_pace.isRestless());
}

void SelectionPaceTest::somethingNewBeginsAfresh()
{
    m_pace.noteGiven(7);
    interrupt(100);
    m_pace.noteGiven(8);
    QVERIFY(!m_pace.isRestless());
}

void SelectionPaceTest::aQuietTimeBeginsAfresh()
{
    interrupt(100);
    m_pace.noteTaken(kOwner, false, m_now += 9s);
    QVERIFY(m_pace.isRestless());
    m_pace.noteTaken(kOwner, false, m_now += 9s);
    QVERIFY(m_pace.isRestless());
    m_pace.noteTaken(kOwner, false, m_now += 11s);
    QVERIFY(!m_pace.isRestless());
}

void SelectionPaceTest::whatCannotBeComparedIsNew()
{
    for (int time = 0; time < 100; ++time)
        m_pace.noteGiven(0);
    QVERIFY(!m_pace.isRestless());
}

QTEST_GUILESS_MAIN(SelectionPaceTest)
#include "SelectionPaceTest.moc"
