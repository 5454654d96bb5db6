#include "tests/window/HistoryWindowFixture.h"

#include "window/FilterButton.h"
#include "window/OverflowMenu.h"

#include <QApplication>
#include <QMouseEvent>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class HistoryWindowClosingTest : public QObject, private HistoryWindowFixture
{
    Q_OBJECT

private slots:
    void init() { setUpWindow(); }
    void cleanup() { tearDownWindow(); }

    void theWindowTakesItsMenuAlong();
    void aPressOnTheMenuIsNoTurningAway();
    void aPressOnAMenuThatHasClosedSinceIsNoTurningAway();
    void aPressBesideAnOpenMenuIsATurningAway();
    void aPressInsideIsNoTurningAwayThoughThePointerHasGoneOn();
    void aWindowThatIsClosedIsGoneAtOnce_data();
    void aWindowThatIsClosedIsGoneAtOnce();
    void aClickOutsideHides();
    void aClickOutsideDoesNotHideAPinnedWindow();
    void anotherApplicationHides();
    void anotherApplicationDoesNotHideAPinnedWindow();
    void ourOwnActivationDoesNotHide();
    void losingTheKeyboardHides();
    void losingTheKeyboardDoesNotHideAPinnedWindow();
    void turningAwayIsToldBeforeTheWindowHides();
    void hidingOtherwiseIsNoTurningAway();
    void losingTheKeyboardWithoutTheFocusDoesNotHide();
    void losingTheKeyboardToAnotherWindowOfOursHides();
    void afterHidingNothingIsWatchedAnyMore();
    void afterAReversalOnePressClosesOnce();
    void formerListenersAreStillCalled();
    void theMenuOfARowLeavesTheWindowOpen();
    void theMenuOfARowClosesWithTheWindow();
    void aPressInTheShadowOfAMenuIsAPressOutside();
};

void HistoryWindowClosingTest::theWindowTakesItsMenuAlong()
{
    for (const QString &name : {u"travel"_s, u"sailing"_s, u"work"_s, u"recipes"_s})
        m_tags->createTag(name);
    make();
    openWholly();
    QTest::mouseClick(m_window->shell().findChildren<FilterButton *>().last(), Qt::LeftButton);
    const QPointer<OverflowMenu> menu = m_window->shell().findChild<OverflowMenu *>();
    QVERIFY(menu && menu->isVisible());
    m_window->hide();
    QVERIFY(!menu || !menu->isVisible());
}

void HistoryWindowClosingTest::aPressOnTheMenuIsNoTurningAway()
{
    for (const QString &name : {u"travel"_s, u"sailing"_s, u"work"_s, u"recipes"_s})
        m_tags->createTag(name);
    make();
    openWholly();
    QTest::mouseClick(m_window->shell().findChildren<FilterButton *>().last(), Qt::LeftButton);
    auto *menu = m_window->shell().findChild<OverflowMenu *>();
    QVERIFY(menu);
    menu->move(0, 0);
    const QPoint onMenu = menu->geometry().center();
    QVERIFY(!m_window->shell().geometry().contains(onMenu));
    press(onMenu);
    QVERIFY(!m_window->isHideAnimationInFlight());
    menu->close();
    press(onMenu);
    QVERIFY(m_window->isHideAnimationInFlight());
}

void HistoryWindowClosingTest::aPressOnAMenuThatHasClosedSinceIsNoTurningAway()
{
    make();
    openWholly();
    QMenu &menu = openRowMenu(1);
    menu.move(0, 0);
    const QPoint onCopy = menu.actionGeometry(menu.actions().at(1)).center();
    const QPoint place = menu.mapToGlobal(onCopy);
    QVERIFY(!m_window->shell().geometry().contains(place));
    QTest::mousePress(menu.windowHandle(), Qt::LeftButton, {}, onCopy);
    const auto pressedAt = quint64(QTest::lastMouseTimestamp);
    QTest::mouseRelease(menu.windowHandle(), Qt::LeftButton, {}, onCopy);
    QCOMPARE(m_copied.size(), 1);
    QVERIFY(!QApplication::activePopupWidget());

    press(place, pressedAt);
    QVERIFY(!m_window->isHideAnimationInFlight());
    press(place, pressedAt + 1);
    QVERIFY(m_window->isHideAnimationInFlight());
}

void HistoryWindowClosingTest::aPressBesideAnOpenMenuIsATurningAway()
{
    make();
    openWholly();
    const QMenu &menu = openRowMenu(1);
    // The open menu gets it, wherever it is.
    const QPoint beside(1, 1);
    QVERIFY(!m_window->shell().geometry().contains(beside));
    QTest::mousePress(menu.windowHandle(), Qt::LeftButton, {}, menu.mapFromGlobal(beside));
    QVERIFY(!QApplication::activePopupWidget());
    press(beside, quint64(QTest::lastMouseTimestamp));
    QVERIFY(m_window->isHideAnimationInFlight());
}

void HistoryWindowClosingTest::aPressInsideIsNoTurningAwayThoughThePointerHasGoneOn()
{
    make();
    openWholly();
    constexpr quint64 pressedAt = 5'000'000;
    const QPoint inside(300, 10);
    QMouseEvent event(QEvent::MouseButtonPress, inside, m_window->shell().mapToGlobal(inside),
                      Qt::LeftButton, Qt::LeftButton, {});
    event.setTimestamp(pressedAt);
    const QPoint outside(1, 1);
    m_pointer->press(outside, pressedAt);
    QCoreApplication::sendEvent(m_window->shell().windowHandle(), &event);
    pass(100ms);
    QVERIFY(!m_window->isHideAnimationInFlight());
    m_pointer->press(outside, pressedAt + 1);
    pass(100ms);
    QVERIFY(m_window->isHideAnimationInFlight());
}

void HistoryWindowClosingTest::aWindowThatIsClosedIsGoneAtOnce_data()
{
    QTest::addColumn<bool>("isLeaving");
    QTest::newRow("open") << false;
    QTest::newRow("on its way out") << true;
}

void HistoryWindowClosingTest::aWindowThatIsClosedIsGoneAtOnce()
{
    QFETCH(bool, isLeaving);
    make();
    openWholly();
    if (isLeaving) {
        m_window->hide();
        pass(50ms);
    }
    QVERIFY(m_window->shell().close());
    QVERIFY(!m_window->isVisible());
    QCOMPARE(m_hiddenCount, 1);
    pass(500ms);
    QCOMPARE(m_hiddenCount, 1);
}

void HistoryWindowClosingTest::aClickOutsideHides()
{
    make();
    QVERIFY(!m_pointer->isRunning);
    openWholly();
    QVERIFY(m_pointer->isRunning);
    press(m_window->shell().geometry().center());
    QVERIFY(!m_window->isHideAnimationInFlight());
    press(m_window->shell().geometry().topLeft() - QPoint(1, 1));
    QVERIFY(m_window->isHideAnimationInFlight());
}

void HistoryWindowClosingTest::aClickOutsideDoesNotHideAPinnedWindow()
{
    make();
    openWholly();
    m_window->togglePin();
    press(QPoint(1, 1));
    QVERIFY(!m_window->isHideAnimationInFlight());
}

void HistoryWindowClosingTest::anotherApplicationHides()
{
    make();
    openWholly();
    m_desktop->onApplicationActivated({u"org.example.editor"_s, u"Editor"_s, 5, 5});
    QVERIFY(m_window->isHideAnimationInFlight());
}

void HistoryWindowClosingTest::anotherApplicationDoesNotHideAPinnedWindow()
{
    make();
    openWholly();
    m_window->togglePin();
    m_desktop->onApplicationActivated({u"org.example.editor"_s, u"Editor"_s, 5, 5});
    QVERIFY(!m_window->isHideAnimationInFlight());
}

void HistoryWindowClosingTest::ourOwnActivationDoesNotHide()
{
    make();
    openWholly();
    m_desktop->onApplicationActivated({u"tessarine"_s, u"Tessarine"_s, 5, 5});
    QVERIFY(!m_window->isHideAnimationInFlight());
}

void HistoryWindowClosingTest::losingTheKeyboardHides()
{
    make();
    openWholly();
    QWidget other;
    other.show();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    QVERIFY(m_window->isHideAnimationInFlight());
}

void HistoryWindowClosingTest::losingTheKeyboardDoesNotHideAPinnedWindow()
{
    make();
    openWholly();
    m_window->togglePin();
    QWidget other;
    other.show();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    QVERIFY(!m_window->isHideAnimationInFlight());
    QVERIFY(m_window->isVisible());
}

void HistoryWindowClosingTest::turningAwayIsToldBeforeTheWindowHides()
{
    make();
    openWholly();
    int toldCount = 0;
    m_window->onTurnedAway = [&] {
        ++toldCount;
        QVERIFY(!m_window->isHideAnimationInFlight());
    };
    press(QPoint(1, 1));
    QCOMPARE(toldCount, 1);
    m_desktop->onApplicationActivated({u"org.example.editor"_s, u"Editor"_s, 5, 5});
    QCOMPARE(toldCount, 1); // It is the same turning away.

    m_window->show();
    m_desktop->onApplicationActivated({u"org.example.editor"_s, u"Editor"_s, 5, 5});
    QCOMPARE(toldCount, 2);
}

void HistoryWindowClosingTest::hidingOtherwiseIsNoTurningAway()
{
    make();
    openWholly();
    bool isTold = false;
    m_window->onTurnedAway = [&] { isTold = true; };
    m_window->hide();
    press(QPoint(1, 1));
    pass(160ms);
    QVERIFY(!isTold);

    openWholly();
    m_window->togglePin();
    press(QPoint(1, 1));
    QVERIFY(!isTold);
}

void HistoryWindowClosingTest::losingTheKeyboardWithoutTheFocusDoesNotHide()
{
    // As when another program takes the keyboard for a while.
    make();
    openWholly();
    m_desktop->frontmost =
        RunningApplication{u"tessarine"_s, u"Tessarine"_s, m_window->shell().winId(), 5};
    QWidget other;
    other.show();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    QVERIFY(m_window->isVisible());
    QVERIFY(!m_window->isHideAnimationInFlight());

    m_desktop->onApplicationActivated({u"org.example.editor"_s, u"Editor"_s, 5, 5});
    QVERIFY(m_window->isHideAnimationInFlight());
}

void HistoryWindowClosingTest::losingTheKeyboardToAnotherWindowOfOursHides()
{
    make();
    openWholly();
    QWidget other;
    other.show();
    m_desktop->frontmost =
        RunningApplication{u"tessarine"_s, u"Tessarine"_s, other.winId(), 5};
    QVERIFY(QTest::qWaitForWindowActive(&other));
    QVERIFY(m_window->isHideAnimationInFlight());
}

void HistoryWindowClosingTest::afterHidingNothingIsWatchedAnyMore()
{
    make();
    openWholly();
    m_window->hide();
    pass(160ms);
    QVERIFY(!m_pointer->isRunning);
    QVERIFY(!m_pointer->onMousePressed);
    QVERIFY(!m_desktop->onApplicationActivated);
    m_window.reset();
    QVERIFY(!m_appearance->onChanged);
}

void HistoryWindowClosingTest::afterAReversalOnePressClosesOnce()
{
    make();
    openWholly();
    int turnedAwayCount = 0;
    m_window->onTurnedAway = [&] { ++turnedAwayCount; };
    for (int reversal = 0; reversal < 2; ++reversal) {
        m_window->hide();
        pass(50ms);
        m_window->show();
        pass(300ms);
    }
    press(QPoint(1, 1));
    pass(300ms);
    QCOMPARE(turnedAwayCount, 1);
    QCOMPARE(m_hiddenCount, 1);
    QVERIFY(!m_pointer->isRunning);
    QVERIFY(!m_pointer->onMousePressed);
    QVERIFY(!m_desktop->onApplicationActivated);
}

void HistoryWindowClosingTest::formerListenersAreStillCalled()
{
    int callCount = 0;
    m_desktop->onApplicationActivated = [&](const RunningApplication &) { ++callCount; };
    m_appearance->onChanged = [&] { ++callCount; };
    make();
    openWholly();
    m_desktop->onApplicationActivated({u"tessarine"_s, {}, 1, 1});
    m_appearance->onChanged();
    QCOMPARE(callCount, 2);
    m_window->hide();
    pass(160ms);
    m_desktop->onApplicationActivated({u"tessarine"_s, {}, 1, 1});
    QCOMPARE(callCount, 3);
}

void HistoryWindowClosingTest::theMenuOfARowLeavesTheWindowOpen()
{
    make();
    openWholly();
    openRowMenu(1);
    press(QApplication::activePopupWidget()->geometry().center());
    QVERIFY(!m_window->isHideAnimationInFlight());
    QApplication::activePopupWidget()->close();
    QVERIFY(QTest::qWaitForWindowActive(&m_window->shell()));
    QVERIFY(m_window->isVisible() && !m_window->isHideAnimationInFlight());
}

void HistoryWindowClosingTest::theMenuOfARowClosesWithTheWindow()
{
    make();
    openWholly();
    m_window->togglePin();
    openRowMenu(1);
    m_window->hide();
    QVERIFY(!QApplication::activePopupWidget());
    pass(160ms);
    QVERIFY(!m_window->isVisible());
}

void HistoryWindowClosingTest::aPressInTheShadowOfAMenuIsAPressOutside()
{
    m_defaults->set(kFrameKey, u"{{0, 0}, {680, 300}}"_s);
    make();
    openWholly();
    openRowMenu(1);
    const QRect menu = QApplication::activePopupWidget()->geometry();
    QVERIFY(!m_window->shell().geometry().contains(menu.bottomLeft()));
    press(menu.bottomLeft() + QPoint(5, -5));
    QVERIFY(m_window->isHideAnimationInFlight());
    QVERIFY(!QApplication::activePopupWidget());
}

QTEST_MAIN(HistoryWindowClosingTest)
#include "HistoryWindowClosingTest.moc"
