#include "tests/window/HistoryWindowFixture.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class HistoryWindowMotionTest : public QObject, private HistoryWindowFixture
{
    Q_OBJECT

private slots:
    void init() { setUpWindow(); }
    void cleanup() { tearDownWindow(); }

    void theEntranceFades();
    void theExitFadesAndThenTheWindowIsGone();
    void aSecondHideDoesNothing();
    void aReversalStartsFromTheHalfFadedLook();
    void aReversalClearsTheSearch();
    void whileItGoesTheWindowPastesNothing();
    void withoutCompositorTheWindowComesAndGoesAtOnce();
};

void HistoryWindowMotionTest::theEntranceFades()
{
    make();
    m_window->show();
    const QPoint middle(340, 5);
    const int first = qAlpha(picture().pixel(middle));
    QVERIFY(first > 10);
    QVERIFY(first < 128);
    pass(80ms);
    const int half = qAlpha(picture().pixel(middle));
    QVERIFY(half > first + 40);
    pass(80ms);
    QCOMPARE(qAlpha(picture().pixel(middle)), 245); // The window is a little translucent.
}

void HistoryWindowMotionTest::theExitFadesAndThenTheWindowIsGone()
{
    make();
    openWholly();
    m_window->hide();
    QVERIFY(m_window->isHideAnimationInFlight());
    pass(120ms);
    QVERIFY(qAlpha(picture().pixel(340, 5)) < 160);
    QCOMPARE(m_hiddenCount, 0);
    QVERIFY(m_window->isVisible());
    pass(40ms);
    QCOMPARE(m_hiddenCount, 1);
    QVERIFY(!m_window->isVisible());
    QVERIFY(!m_window->isHideAnimationInFlight());
}

void HistoryWindowMotionTest::aSecondHideDoesNothing()
{
    make();
    openWholly();
    m_window->hide();
    pass(100ms);
    m_window->hide();
    pass(60ms);
    QCOMPARE(m_hiddenCount, 1);
    pass(500ms);
    QCOMPARE(m_hiddenCount, 1);
}

void HistoryWindowMotionTest::aReversalStartsFromTheHalfFadedLook()
{
    make();
    openWholly();
    m_window->hide();
    pass(80ms);
    const int leaving = qAlpha(picture().pixel(340, 5));
    QVERIFY(leaving < 230);
    QVERIFY(leaving > 60);
    m_window->show();
    QVERIFY(!m_window->isHideAnimationInFlight());
    QVERIFY(qAlpha(picture().pixel(340, 5)) >= leaving);
    pass(500ms);
    QCOMPARE(m_hiddenCount, 0);
    QVERIFY(m_window->isVisible());
    QCOMPARE(qAlpha(picture().pixel(340, 5)), 245);
    m_pointer->press(QPoint(1, 1));
    QVERIFY(m_window->isHideAnimationInFlight());
}

void HistoryWindowMotionTest::aReversalClearsTheSearch()
{
    make();
    openWholly();
    QTest::keyClicks(field(), u"tide"_s);
    m_window->hide();
    pass(50ms);
    m_window->show();
    QCOMPARE(field()->text(), QString());
    QCOMPARE(rowCount(), 10);
}

void HistoryWindowMotionTest::whileItGoesTheWindowPastesNothing()
{
    make();
    openWholly();
    QTest::keyClick(field(), Qt::Key_Return);
    QTest::keyClick(field(), Qt::Key_Return);
    QCOMPARE(m_pasted.size(), 1);
}

void HistoryWindowMotionTest::withoutCompositorTheWindowComesAndGoesAtOnce()
{
    makeCompat();
    m_window->show();
    QVERIFY(m_window->isVisible());
    QCOMPARE(qAlpha(picture().pixel(340, 5)), 255);
    m_window->hide();
    QVERIFY(!m_window->isVisible());
    QVERIFY(!m_window->isHideAnimationInFlight());
    QCOMPARE(m_hiddenCount, 1);
}

QTEST_MAIN(HistoryWindowMotionTest)
#include "HistoryWindowMotionTest.moc"
