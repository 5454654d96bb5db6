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
    m_pace.taken(kOwner, false, m_now);
}

void SelectionPaceTest::interrupt(int times)
{
    for (int time = 0; time < times; ++time)
        m_pace.taken(kOwner, true, m_now += 1ms);
}

void SelectionPaceTest::aBurstIsNotSlowed()
{
    for (std::size_t content = 1; content <= 10'000; ++content) {
        m_pace.taken(kOwner, false, m_now += 1ms);
        m_pace.gave(content, m_now);
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
        m_pace.taken(kOwner, false, m_now += 1ms);
        m_pace.gave(7, m_now);
    }
    QVERIFY(m_pace.isRestless());
}

void SelectionPaceTest::pausesGrowToAnEnd()
{
    interrupt(17);
    const auto first = m_pace.pause();
    interrupt(1);
    QCOMPARE(m_pace.pause(), 2 * first);
    interrupt(100);
    QCOMPARE(m_pace.pause(), 512ms);
}

void SelectionPaceTest::anotherOwnerBeginsAfresh()
{
    interrupt(100);
    m_pace.taken(kOwner + 1, true, m_now);
    QVERIFY(!m_pace.isRestless());
}

void SelectionPaceTest::somethingNewBeginsAfresh()
{
    m_pace.gave(7, m_now);
    interrupt(100);
    m_pace.gave(8, m_now);
    QVERIFY(!m_pace.isRestless());
}

void SelectionPaceTest::aQuietTimeBeginsAfresh()
{
    interrupt(100);
    m_pace.taken(kOwner, false, m_now + 1s);
    QVERIFY(m_pace.isRestless());
    m_pace.taken(kOwner, false, m_now + 3s);
    QVERIFY(!m_pace.isRestless());
}

void SelectionPaceTest::whatCannotBeComparedIsNew()
{
    for (int time = 0; time < 100; ++time)
        m_pace.gave(0, m_now);
    QVERIFY(!m_pace.isRestless());
}

QTEST_GUILESS_MAIN(SelectionPaceTest)
#include "SelectionPaceTest.moc"
