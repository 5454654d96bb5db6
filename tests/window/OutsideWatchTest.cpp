#include "window/OutsideWatch.h"

#include "tests/fakes/FakePointerMonitor.h"
#include "tests/fakes/FakeScheduler.h"
#include "tests/fakes/FakeWorkspace.h"

#include <QApplication>
#include <QMouseEvent>
#include <QTest>
#include <QWindow>

#include <memory>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class OutsideWatchTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void thePointerIsWatchedWhileTheWatchLives();
    void aPressBesideTheWindowIsATurningAway();
    void aPressInTheWindowIsNone();
    void aPressOnAnotherWindowOfOursIsNone();
    void aPressInTheMarginOfAnotherWindowIsATurningAway();
    void aPressThatOneOfOurWindowsGotIsNone_data();
    void aPressThatOneOfOurWindowsGotIsNone();
    void aPressBesideThatAWindowOfOursGotIsATurningAway();
    void aPressOnAWindowThatIsGoneByThenIsNone();
    void ofTwoPressesEitherIsATurningAway_data();
    void ofTwoPressesEitherIsATurningAway();
    void twoPressesTurnAwayOnce();
    void aPressBesideCountsThoughTheNextIsInTheWindow();
    void anotherApplicationIsATurningAwayAtOnce();
    void ourOwnApplicationIsNone();
    void theWatchMayEndWhenItTells();
    void withItsWindowTheWatchForgetsThePress();
    void whoeverListenedBeforeIsStillCalled();

private:
    static constexpr QPoint kBeside{20, 20};
    static constexpr QPoint kInside{250, 250};
    static constexpr QPoint kOnMenu{450, 150};
    static constexpr quint64 kTime = 5'000'000;
    static constexpr auto kLongEnough = 100ms;

    /// As the window system has it delivered.
    static void sendPress(QWidget &window, QPoint place, quint64 timestamp)
    {
        QMouseEvent event(QEvent::MouseButtonPress, window.mapFromGlobal(place), place,
                          Qt::LeftButton, Qt::LeftButton, {});
        event.setTimestamp(timestamp);
        QCoreApplication::sendEvent(window.windowHandle(), &event);
    }

    FakePointerMonitor m_pointer;
    FakeWorkspace m_workspace;
    FakeScheduler m_scheduler;
    std::unique_ptr<QWidget> m_window;
    std::unique_ptr<QWidget> m_menu; ///< Another window of ours, beside the first.
    std::unique_ptr<OutsideWatch> m_watch;
    int m_count = 0;
};

void OutsideWatchTest::init()
{
    m_count = 0;
    m_window = std::make_unique<QWidget>(nullptr, Qt::FramelessWindowHint);
    m_window->setGeometry(200, 100, 200, 300);
    m_window->show();
    m_menu = std::make_unique<QWidget>(nullptr, Qt::Tool | Qt::FramelessWindowHint);
    m_menu->setGeometry(420, 100, 100, 200);
    m_menu->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    QVERIFY(QTest::qWaitForWindowExposed(m_menu.get()));
    m_watch = std::make_unique<OutsideWatch>(m_pointer, m_workspace, m_scheduler, *m_window,
                                             [this] { ++m_count; });
}

void OutsideWatchTest::cleanup()
{
    m_watch.reset();
    m_menu.reset();
    m_window.reset();
}

void OutsideWatchTest::thePointerIsWatchedWhileTheWatchLives()
{
    QVERIFY(m_pointer.isRunning);
    m_pointer.press(kBeside);
    m_watch.reset();
    QVERIFY(!m_pointer.isRunning);
    QVERIFY(!m_pointer.onMousePressed);
    QVERIFY(!m_workspace.onApplicationActivated);
    m_scheduler.advance(kLongEnough);
    QCOMPARE(m_count, 0);
}

void OutsideWatchTest::aPressBesideTheWindowIsATurningAway()
{
    m_pointer.press(kBeside, kTime);
    QCOMPARE(m_count, 0); // It may yet turn out to be our own.
    m_scheduler.advance(16ms);
    QCOMPARE(m_count, 1);
    m_scheduler.advance(kLongEnough);
    QCOMPARE(m_count, 1);
}

void OutsideWatchTest::aPressInTheWindowIsNone()
{
    for (const QPoint corner : {m_window->geometry().topLeft(), m_window->geometry().bottomRight()})
        m_pointer.press(corner, kTime);
    m_scheduler.advance(kLongEnough);
    QCOMPARE(m_count, 0);
    m_pointer.press(m_window->geometry().bottomRight() + QPoint(1, 0), kTime);
    m_scheduler.advance(kLongEnough);
    QCOMPARE(m_count, 1);
}

void OutsideWatchTest::aPressOnAnotherWindowOfOursIsNone()
{
    m_pointer.press(kOnMenu, kTime);
    m_scheduler.advance(kLongEnough);
    QCOMPARE(m_count, 0);
    m_menu->hide();
    m_pointer.press(kOnMenu, kTime);
    m_scheduler.advance(kLongEnough);
    QCOMPARE(m_count, 1);
}

void OutsideWatchTest::aPressInTheMarginOfAnotherWindowIsATurningAway()
{
    m_menu->setContentsMargins(10, 10, 10, 10);
    m_pointer.press(m_menu->geometry().topLeft() + QPoint(10, 10), kTime);
    m_scheduler.advance(kLongEnough);
    QCOMPARE(m_count, 0);
    m_pointer.press(m_menu->geometry().topLeft() + QPoint(9, 10), kTime);
    m_scheduler.advance(kLongEnough);
    QCOMPARE(m_count, 1);
}

void OutsideWatchTest::aPressThatOneOfOurWindowsGotIsNone_data()
{
    QTest::addColumn<bool>("isTheEventFirst");
    QTest::newRow("before it was told") << true;
    QTest::newRow("after it was told") << false;
}

void OutsideWatchTest::aPressThatOneOfOurWindowsGotIsNone()
{
    QFETCH(bool, isTheEventFirst);
    // The pointer has gone on by the time at which the press is told.
    if (isTheEventFirst)
        sendPress(*m_window, kInside, kTime);
    m_pointer.press(kBeside, kTime);
    m_scheduler.advance(15ms);
    if (!isTheEventFirst)
        sendPress(*m_window, kInside, kTime);
    m_scheduler.advance(kLongEnough);
    QCOMPARE(m_count, 0);
    m_pointer.press(kBeside, kTime + 1);
    m_scheduler.advance(kLongEnough);
    QCOMPARE(m_count, 1);
}

void OutsideWatchTest::aPressBesideThatAWindowOfOursGotIsATurningAway()
{
    // An open menu gets the presses beside it too.
    sendPress(*m_menu, kBeside, kTime);
    m_pointer.press(kBeside, kTime);
    m_scheduler.advance(kLongEnough);
    QCOMPARE(m_count, 1);
}

void OutsideWatchTest::aPressOnAWindowThatIsGoneByThenIsNone()
{
    sendPress(*m_menu, kOnMenu, kTime);
    m_menu.reset();
    m_pointer.press(kOnMenu, kTime);
    m_scheduler.advance(kLongEnough);
    QCOMPARE(m_count, 0);
}

void OutsideWatchTest::ofTwoPressesEitherIsATurningAway_data()
{
    QTest::addColumn<quint64>("own");
    QTest::newRow("the first is our own") << kTime;
    QTest::newRow("the second is our own") << kTime + 1;
}

void OutsideWatchTest::ofTwoPressesEitherIsATurningAway()
{
    QFETCH(quint64, own);
    sendPress(*m_menu, kOnMenu, own);
    m_menu->hide();
    // Both are told at once by a program that was busy.
    m_pointer.press(own == kTime ? kOnMenu : kBeside, kTime);
    m_pointer.press(own == kTime ? kBeside : kOnMenu, kTime + 1);
    m_scheduler.advance(kLongEnough);
    QCOMPARE(m_count, 1);
}

void OutsideWatchTest::twoPressesTurnAwayOnce()
{
    m_pointer.press(kBeside, kTime);
    m_scheduler.advance(10ms);
    m_pointer.press(kBeside, kTime + 10);
    m_scheduler.advance(kLongEnough);
    QCOMPARE(m_count, 1);
}

void OutsideWatchTest::aPressBesideCountsThoughTheNextIsInTheWindow()
{
    m_pointer.press(kBeside, kTime);
    m_pointer.press(kInside, kTime + 1);
    m_scheduler.advance(kLongEnough);
    QCOMPARE(m_count, 1);
}

void OutsideWatchTest::anotherApplicationIsATurningAwayAtOnce()
{
    m_workspace.onApplicationActivated({u"editor"_s, u"Editor"_s, 7, 7});
    QCOMPARE(m_count, 1);
}

void OutsideWatchTest::ourOwnApplicationIsNone()
{
    m_workspace.onApplicationActivated({u"tessarine"_s, u"Tessarine"_s, 5, 5});
    m_scheduler.advance(kLongEnough);
    QCOMPARE(m_count, 0);
}

void OutsideWatchTest::theWatchMayEndWhenItTells()
{
    const auto watchAndEnd = [this] {
        m_watch.reset();
        m_watch = std::make_unique<OutsideWatch>(m_pointer, m_workspace, m_scheduler, *m_window,
                                                 [this, note = u"told"_s] {
                                                     m_watch.reset();
                                                     m_count += int(note.size());
                                                 });
    };
    watchAndEnd();
    m_pointer.press(kBeside, kTime);
    m_scheduler.advance(kLongEnough);
    QCOMPARE(m_count, 4);
    QVERIFY(!m_watch);
    watchAndEnd();
    m_workspace.onApplicationActivated({u"editor"_s, u"Editor"_s, 7, 7});
    QCOMPARE(m_count, 8);
    QVERIFY(!m_watch);
}

void OutsideWatchTest::withItsWindowTheWatchForgetsThePress()
{
    m_pointer.press(kBeside, kTime);
    m_watch.reset();
    m_window.reset();
    m_scheduler.advance(kLongEnough);
    sendPress(*m_menu, kOnMenu, kTime);
    QCOMPARE(m_count, 0);
}

void OutsideWatchTest::whoeverListenedBeforeIsStillCalled()
{
    m_watch.reset();
    int pressCount = 0;
    m_pointer.onMousePressed = [&pressCount](QPoint, quint64) { ++pressCount; };
    m_watch = std::make_unique<OutsideWatch>(m_pointer, m_workspace, m_scheduler, *m_window,
                                             [this] { ++m_count; });
    m_pointer.press(kInside, kTime);
    QCOMPARE(pressCount, 1);
    m_watch.reset();
    m_pointer.press(kBeside, kTime);
    QCOMPARE(pressCount, 2);
    m_pointer.onMousePressed = {};
}

QTEST_MAIN(OutsideWatchTest)
#include "OutsideWatchTest.moc"
