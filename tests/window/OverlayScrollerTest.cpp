#include "window/OverlayScroller.h"

#include "tests/fakes/FakeScheduler.h"

#include <QScrollBar>
#include <QTest>

using namespace std::chrono_literals;

/// A list of 1000 of which 400 are in sight, with a scroller as high as that: its knob is 160 high
/// at first, and has a way of 236 for the 600.
class OverlayScrollerTest : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void itIsSeenForAMoment();
    void itStaysWhileThePointerIsOnIt();
    void aRangeThatChangesIsNotSeen();
    void whatHasNothingToScrollIsNotSeen();
    void theKnobIsDragged();
    void aPressInTheLaneGoesOnByAPage();
    void aDragOutlastsThePointerOnIt();
    void otherButtonsAreLeftToTheList();

private:
    static constexpr int kKnobTop = 2;
    static constexpr int kKnobEnd = 2 + 158;

    void hoverAt(int y) { QTest::mouseMove(m_scroller, QPoint(4, y)); }
    void leave() { QTest::mouseMove(m_list.get(), QPoint(10, 10)); }

    void press(int y) { QTest::mousePress(m_scroller, Qt::LeftButton, {}, QPoint(4, y)); }
    void move(int y)
    {
        const QPoint place(4, y);
        QMouseEvent event(QEvent::MouseMove, place, m_scroller->mapToGlobal(place), Qt::NoButton,
                          Qt::LeftButton, {});
        QCoreApplication::sendEvent(m_scroller, &event);
    }
    void release(int y) { QTest::mouseRelease(m_scroller, Qt::LeftButton, {}, QPoint(4, y)); }

    FakeScheduler m_scheduler;
    std::unique_ptr<QWidget> m_list;
    QScrollBar *m_bar = nullptr;
    OverlayScroller *m_scroller = nullptr;
};

void OverlayScrollerTest::init()
{
    m_list = std::make_unique<QWidget>();
    m_list->resize(100, 400);
    m_bar = new QScrollBar(Qt::Vertical, m_list.get());
    m_bar->hide();
    m_bar->setRange(0, 600);
    m_bar->setPageStep(400);
    m_scroller = new OverlayScroller(m_scheduler, *m_bar, m_list.get());
    m_scroller->setColors(systemColors(ColorScheme::Light));
    m_scroller->setGeometry(92, 0, 8, 400);
    m_list->show();
    leave();
}

void OverlayScrollerTest::itIsSeenForAMoment()
{
    QVERIFY(!m_scroller->isVisible());
    m_bar->setValue(100);
    QVERIFY(m_scroller->isVisible());
    m_scheduler.advance(500ms);
    m_bar->setValue(200);
    m_scheduler.advance(799ms);
    QVERIFY(m_scroller->isVisible());
    m_scheduler.advance(1ms);
    QVERIFY(!m_scroller->isVisible());
}

void OverlayScrollerTest::itStaysWhileThePointerIsOnIt()
{
    m_bar->setValue(100);
    hoverAt(300);
    m_scheduler.advance(5s);
    QVERIFY(m_scroller->isVisible());
    m_bar->setValue(200);
    m_scheduler.advance(5s);
    QVERIFY(m_scroller->isVisible());
    leave();
    m_scheduler.advance(799ms);
    QVERIFY(m_scroller->isVisible());
    m_scheduler.advance(1ms);
    QVERIFY(!m_scroller->isVisible());
}

void OverlayScrollerTest::aRangeThatChangesIsNotSeen()
{
    m_bar->setValue(600);
    m_scheduler.advance(1s);
    m_bar->setRange(0, 500); // Takes the value along.
    QCOMPARE(m_bar->value(), 500);
    QVERIFY(!m_scroller->isVisible());
    m_bar->setRange(0, 700);
    m_bar->setValue(572); // As a row that comes above has the others stay.
    QVERIFY(!m_scroller->isVisible());
    QCoreApplication::sendPostedEvents();
    m_bar->setValue(560);
    QVERIFY(m_scroller->isVisible());
}

void OverlayScrollerTest::whatHasNothingToScrollIsNotSeen()
{
    m_scroller->flash();
    QVERIFY(m_scroller->isVisible());
    m_scheduler.advance(1s);
    m_bar->setRange(0, 0);
    m_scroller->flash();
    QVERIFY(!m_scroller->isVisible());
}

void OverlayScrollerTest::theKnobIsDragged()
{
    m_scroller->flash();
    press(kKnobTop + 50);
    QCOMPARE(m_bar->value(), 0);
    move(kKnobTop + 50 + 119); // Half its way.
    QVERIFY(qAbs(m_bar->value() - 300) <= 2);
    move(1000);
    QCOMPARE(m_bar->value(), 600);
    move(-1000);
    QCOMPARE(m_bar->value(), 0);
    release(-1000);
    move(200);
    QCOMPARE(m_bar->value(), 0);
}

void OverlayScrollerTest::aPressInTheLaneGoesOnByAPage()
{
    m_scroller->flash();
    press(kKnobEnd + 20);
    QCOMPARE(m_bar->value(), 400);
    move(390);
    QCOMPARE(m_bar->value(), 400);
    release(390);
    press(kKnobTop + 3);
    QCOMPARE(m_bar->value(), 0);
}

void OverlayScrollerTest::aDragOutlastsThePointerOnIt()
{
    m_scroller->flash();
    press(kKnobTop + 10);
    leave();
    m_scheduler.advance(5s);
    QVERIFY(m_scroller->isVisible());
    release(300);
    m_scheduler.advance(800ms);
    QVERIFY(!m_scroller->isVisible());
}

void OverlayScrollerTest::otherButtonsAreLeftToTheList()
{
    m_scroller->flash();
    const QPointF place(4, 300);
    QMouseEvent event(QEvent::MouseButtonPress, place, m_scroller->mapToGlobal(place),
                      Qt::RightButton, Qt::RightButton, {});
    event.accept();
    QCoreApplication::sendEvent(m_scroller, &event);
    QVERIFY(!event.isAccepted());
    QCOMPARE(m_bar->value(), 0);
}

QTEST_MAIN(OverlayScrollerTest)
#include "OverlayScrollerTest.moc"
