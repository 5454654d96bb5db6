#include "tests/window/HistoryWindowFixture.h"

#include "window/HistoryPanel.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class HistoryWindowMotionTest : public QObject, private HistoryWindowFixture
{
    Q_OBJECT

private slots:
    void init() { setUpWindow(); }
    void cleanup() { tearDownWindow(); }

    void theEntranceFadesAndGrows();
    void theExitFadesShrinksAndThenTheWindowIsGone();
    void atRestTheWindowIsPaintedAsItIs();
    void aWindowThatComesOrGoesIsWhereItWillBe();
    void keysAndClicksWorkFromTheFirstFrame();
    void aSecondHideDoesNothing();
    void showingAWindowThatComesEndsTheEntrance();
    void hidingAWindowThatComesTakesItAway();
    void aReversalStartsFromTheHalfFadedLook();
    void aReversalClearsTheSearch();
    void aReversalWatchesThePointerOnce();
    void aWindowThatIsGoneIsNotWatchedFor();
    void onlyTheLastOfManyTogglesCounts_data();
    void onlyTheLastOfManyTogglesCounts();
    void aWindowShownAgainByThePasteGoesAllTheSame();
    void whileItGoesTheWindowPastesNothing();
    void aWindowMayEndWhileItMoves_data();
    void aWindowMayEndWhileItMoves();
    void aSelectedRowKeepsItsColorWhileTheWindowGoes();
    void withoutCompositorTheContentFadesOverAStillGround();
    void withReducedMotionTheWindowComesAndGoesAtOnce_data();
    void withReducedMotionTheWindowComesAndGoesAtOnce();
    void reducedMotionIsFollowedWhileTheWindowIsOpen();
    void blurDoesNotComeBackWhileTheWindowGoes();

private:
    /// On the ground of the window, within its edge also while it is smaller.
    static constexpr QPoint kGround{600, 40};

    int opacityOfGround() { return qAlpha(picture().pixel(kGround)); }
    const Presentation &shown()
    {
        return m_window->shell().findChild<HistoryPanel *>()->presentationLayer().presentation();
    }
    void toggle()
    {
        if (m_window->isVisible() && !m_window->isHideAnimationInFlight())
            m_window->hide();
        else
            m_window->show();
    }
};

void HistoryWindowMotionTest::theEntranceFadesAndGrows()
{
    make();
    m_window->show();
    const int first = opacityOfGround();
    QVERIFY(first > 10);
    QVERIFY(first < 128);
    QCOMPARE(qAlpha(picture().pixel(340, 3)), 0);
    pass(80ms);
    QVERIFY(opacityOfGround() > first + 40);
    pass(200ms);
    QCOMPARE(opacityOfGround(), 245); // The window is a little translucent.
    QCOMPARE(qAlpha(picture().pixel(340, 3)), 245);
}

void HistoryWindowMotionTest::theExitFadesShrinksAndThenTheWindowIsGone()
{
    make();
    openWholly();
    m_window->hide();
    QVERIFY(m_window->isHideAnimationInFlight());
    pass(144ms);
    QVERIFY(opacityOfGround() < 60);
    QVERIFY(shown().scale < 0.99);
    QCOMPARE(m_hiddenCount, 0);
    QVERIFY(m_window->isVisible());
    pass(16ms);
    QCOMPARE(m_hiddenCount, 1);
    QVERIFY(!m_window->isVisible());
    QVERIFY(!m_window->isHideAnimationInFlight());
    QCOMPARE(shown(), Presentation());
}

void HistoryWindowMotionTest::atRestTheWindowIsPaintedAsItIs()
{
    make();
    openWholly();
    QVERIFY(!part("glassContainerView")->graphicsEffect());
}

void HistoryWindowMotionTest::aWindowThatComesOrGoesIsWhereItWillBe()
{
    make();
    m_window->show();
    const QRect frame = m_window->shell().geometry();
    QCOMPARE(frame.size(), QSize(680, 500));
    QCOMPARE(geometryOf("pinButton"), QRect(640, 26, 28, 28));
    pass(300ms);
    QCOMPARE(m_window->shell().geometry(), frame);
    m_window->hide();
    pass(100ms);
    QCOMPARE(m_window->shell().geometry(), frame);
    QCOMPARE(geometryOf("pinButton"), QRect(640, 26, 28, 28));
}

void HistoryWindowMotionTest::keysAndClicksWorkFromTheFirstFrame()
{
    make();
    m_window->show();
    QVERIFY(m_window->shell().focusWidget() == field());
    const QImage before = picture();
    QTest::keyClicks(field(), u"tide"_s);
    QCOMPARE(field()->text(), u"tide"_s);
    QCOMPARE(rowCount(), 1);
    QVERIFY(picture() != before);
    QTest::mouseClick(m_window->shell().windowHandle(), Qt::LeftButton, {}, QPoint(642, 28));
    QVERIFY(m_window->isPinned());
    QVERIFY(shown().opacity < 0.3);
}

void HistoryWindowMotionTest::aSecondHideDoesNothing()
{
    make();
    openWholly();
    m_window->hide();
    pass(100ms);
    const Presentation before = shown();
    m_window->hide();
    QCOMPARE(shown(), before);
    pass(60ms);
    QCOMPARE(m_hiddenCount, 1);
    pass(500ms);
    QCOMPARE(m_hiddenCount, 1);
}

void HistoryWindowMotionTest::showingAWindowThatComesEndsTheEntrance()
{
    make();
    m_window->show();
    QTest::keyClicks(field(), u"tide"_s);
    pass(50ms);
    m_window->show();
    QCOMPARE(shown(), Presentation());
    QCOMPARE(field()->text(), u"tide"_s);
    pass(500ms);
    QCOMPARE(shown(), Presentation());
    QVERIFY(m_window->isVisible());
}

void HistoryWindowMotionTest::hidingAWindowThatComesTakesItAway()
{
    make();
    m_window->show();
    pass(48ms);
    const Presentation before = shown();
    m_window->hide();
    QVERIFY(shown().opacity <= before.opacity);
    QVERIFY(shown().opacity > before.opacity - 0.1);
    QVERIFY(qAbs(shown().scale - before.scale) < 0.002);
    pass(160ms);
    QVERIFY(!m_window->isVisible());
    QCOMPARE(m_hiddenCount, 1);
    pass(500ms);
    QCOMPARE(m_hiddenCount, 1);
}

void HistoryWindowMotionTest::aReversalStartsFromTheHalfFadedLook()
{
    make();
    openWholly();
    m_window->hide();
    pass(96ms);
    const Presentation leaving = shown();
    const int leavingGround = opacityOfGround();
    QVERIFY(leavingGround < 200);
    QVERIFY(leavingGround > 60);
    m_window->show();
    QVERIFY(!m_window->isHideAnimationInFlight());
    QVERIFY(opacityOfGround() >= leavingGround);
    QVERIFY(shown().scale >= leaving.scale);
    pass(500ms);
    QCOMPARE(m_hiddenCount, 0);
    QVERIFY(m_window->isVisible());
    QCOMPARE(shown(), Presentation());
    press(QPoint(1, 1));
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

void HistoryWindowMotionTest::aReversalWatchesThePointerOnce()
{
    int turnedAwayCount = 0;
    make();
    m_window->onTurnedAway = [&] { ++turnedAwayCount; };
    openWholly();
    for (int i = 0; i < 3; ++i) {
        m_window->hide();
        pass(50ms);
        m_window->show();
    }
    press(QPoint(1, 1));
    QCOMPARE(turnedAwayCount, 1);
    pass(200ms);
    QVERIFY(!m_window->isVisible());
    QVERIFY(!m_pointer->isRunning);
    QVERIFY(!m_pointer->onMousePressed);
    QVERIFY(!m_desktop->onApplicationActivated);
}

void HistoryWindowMotionTest::aWindowThatIsGoneIsNotWatchedFor()
{
    make();
    openWholly();
    QVERIFY(m_pointer->isRunning);
    m_window->hide();
    QVERIFY(m_pointer->isRunning);
    pass(160ms);
    QVERIFY(!m_pointer->isRunning);
    QVERIFY(!m_desktop->onApplicationActivated);
}

void HistoryWindowMotionTest::onlyTheLastOfManyTogglesCounts_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("isVisible");
    QTest::newRow("the last one hides") << 10 << false;
    QTest::newRow("the last one shows") << 11 << true;
}

void HistoryWindowMotionTest::onlyTheLastOfManyTogglesCounts()
{
    QFETCH(int, count);
    QFETCH(bool, isVisible);
    make();
    for (int i = 0; i < count; ++i) {
        toggle();
        pass(10ms);
    }
    pass(500ms);
    QCOMPARE(m_window->isVisible(), isVisible);
    QVERIFY(!m_window->isHideAnimationInFlight());
    QCOMPARE(m_hiddenCount, isVisible ? 0 : 1);
    QCOMPARE(m_pointer->isRunning, isVisible);
    QCOMPARE(shown(), Presentation());
}

void HistoryWindowMotionTest::aWindowShownAgainByThePasteGoesAllTheSame()
{
    make();
    openWholly();
    m_window->onPasteSelected = [this](const ClipboardItemPointer &) {
        m_window->hide();
        m_window->show();
    };
    QTest::keyClick(field(), Qt::Key_Return);
    QVERIFY(m_window->isHideAnimationInFlight());
    pass(160ms);
    QCOMPARE(m_hiddenCount, 1);
}

void HistoryWindowMotionTest::whileItGoesTheWindowPastesNothing()
{
    make();
    openWholly();
    QTest::keyClick(field(), Qt::Key_Return);
    QTest::keyClick(field(), Qt::Key_Return);
    QCOMPARE(m_pasted.size(), 1);
}

void HistoryWindowMotionTest::aWindowMayEndWhileItMoves_data()
{
    QTest::addColumn<bool>("isLeaving");
    QTest::newRow("while it comes") << false;
    QTest::newRow("while it goes") << true;
}

void HistoryWindowMotionTest::aWindowMayEndWhileItMoves()
{
    QFETCH(bool, isLeaving);
    make();
    m_window->show();
    pass(50ms);
    if (isLeaving)
        m_window->hide();
    pass(50ms);
    m_window.reset();
    pass(500ms);
    QCOMPARE(m_hiddenCount, 0);
    QVERIFY(!m_pointer->isRunning);
    QVERIFY(!m_pointer->onMousePressed);
    QVERIFY(!m_desktop->onApplicationActivated);
}

void HistoryWindowMotionTest::aSelectedRowKeepsItsColorWhileTheWindowGoes()
{
    make();
    openWholly();
    QTest::keyClick(field(), Qt::Key_Down);
    pass(2s);
    const QImage before = table()->grab().toImage();
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    QVERIFY(!m_window->shell().isActiveWindow());
    QVERIFY(m_window->isHideAnimationInFlight());
    pass(100ms);
    QCOMPARE(table()->grab().toImage(), before);
    QCOMPARE(table()->selectedRow(), 0);
}

void HistoryWindowMotionTest::withoutCompositorTheContentFadesOverAStillGround()
{
    const QColor ground(0xF6, 0xF6, 0xF8);
    const QPoint separator(340, 99);
    makeCompat();
    m_window->show();
    QVERIFY(m_window->isVisible());
    QCOMPARE(QColor(picture().pixel(kGround)), ground);
    const int first = qGray(picture().pixel(separator));
    QVERIFY(first < qGray(ground.rgb()));
    pass(80ms);
    const int half = qGray(picture().pixel(separator));
    QVERIFY(half < first);
    QCOMPARE(shown().scale, 1.0);
    pass(200ms);
    const int last = qGray(picture().pixel(separator));
    QVERIFY(last < half);
    m_window->hide();
    QVERIFY(m_window->isHideAnimationInFlight());
    pass(144ms);
    QVERIFY(qGray(picture().pixel(separator)) > half);
    QCOMPARE(QColor(picture().pixel(kGround)), ground);
    QCOMPARE(m_hiddenCount, 0);
    pass(16ms);
    QCOMPARE(m_hiddenCount, 1);
    QVERIFY(!m_window->isVisible());
}

void HistoryWindowMotionTest::withReducedMotionTheWindowComesAndGoesAtOnce_data()
{
    QTest::addColumn<bool>("isCompat");
    QTest::newRow("with a compositor") << false;
    QTest::newRow("without one") << true;
}

void HistoryWindowMotionTest::withReducedMotionTheWindowComesAndGoesAtOnce()
{
    QFETCH(bool, isCompat);
    m_appearance->reducedMotion = true;
    isCompat ? makeCompat() : make();
    m_window->show();
    QVERIFY(m_window->isVisible());
    QCOMPARE(shown(), Presentation());
    m_window->hide();
    QVERIFY(!m_window->isVisible());
    QVERIFY(!m_window->isHideAnimationInFlight());
    QCOMPARE(m_hiddenCount, 1);
    QVERIFY(!m_pointer->isRunning);
    m_window->show();
    QVERIFY(m_window->isVisible());
    QTest::keyClick(field(), Qt::Key_Return);
    QCOMPARE(m_pasted.size(), 1);
    QCOMPARE(m_hiddenCount, 2);
}

void HistoryWindowMotionTest::reducedMotionIsFollowedWhileTheWindowIsOpen()
{
    make();
    openWholly();
    m_window->hide();
    pass(50ms);
    m_appearance->reducedMotion = true;
    m_appearance->onChanged();
    QVERIFY(!m_window->isVisible()); // What is under way ends at once.
    QCOMPARE(m_hiddenCount, 1);
    m_window->show();
    QCOMPARE(shown(), Presentation());
    m_appearance->reducedMotion = false;
    m_appearance->onChanged();
    m_window->hide();
    QVERIFY(m_window->isHideAnimationInFlight());
    pass(160ms);
    QCOMPARE(m_hiddenCount, 2);
}

void HistoryWindowMotionTest::blurDoesNotComeBackWhileTheWindowGoes()
{
    m_appearance->blur = true;
    make();
    openWholly();
    QVERIFY(!m_appearance->blurredShape.isEmpty());
    m_window->hide();
    QVERIFY(m_appearance->blurredShape.isEmpty());
    m_appearance->onChanged();
    QVERIFY(m_appearance->blurredShape.isEmpty());
    m_window->show();
    QVERIFY(!m_appearance->blurredShape.isEmpty());
}

QTEST_MAIN(HistoryWindowMotionTest)
#include "HistoryWindowMotionTest.moc"
