#include "tests/window/HistoryWindowFixture.h"

#include "window/WindowFrame.h"

#include <QScreen>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class HistoryWindowPlacementTest : public QObject, private HistoryWindowFixture
{
    Q_OBJECT

private slots:
    void init() { setUpWindow(); }
    void cleanup() { tearDownWindow(); }

    void panelsThatComeAreSpared();
    void panelsThatLeaveNothingAreNotBelieved_data();
    void panelsThatLeaveNothingAreNotBelieved();
    void withoutSavedFrameTheWindowIsCentred();
    void theWindowOpensWhereItLastStood();
    void aFrameTooTallShrinksAndIsSavedSo();
    void aFrameOfAnotherWidthOpensAtTheWindowsWidth();
    void aFrameThatDoesNotParseCountsAsNone();
    void theFrameIsSavedOnEveryHide();
    void draggingTheHeadMovesTheWindow();
    void aMoveByTheDesktopStands();
    void theHandlesResize();

private:
    void dragBy(const char *handle, QPoint travel);
};

void HistoryWindowPlacementTest::dragBy(const char *handle, QPoint travel)
{
    QWidget *view = part(handle);
    const QPoint start(300, 3);
    const QPoint globalStart = view->mapToGlobal(start);
    QTest::mousePress(view, Qt::LeftButton, {}, start);
    // The view moves along, so that the place in it has to be found anew.
    QTest::mouseMove(view, view->mapFromGlobal(globalStart + travel));
    QTest::mouseRelease(view, Qt::LeftButton, {}, view->mapFromGlobal(globalStart + travel));
}

void HistoryWindowPlacementTest::withoutSavedFrameTheWindowIsCentred()
{
    make();
    const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
    QCOMPARE(m_window->shell().geometry(),
             QRect(available.x() + (available.width() - 680) / 2,
                   available.y() + (available.height() - 500) / 2, 680, 500));
}

void HistoryWindowPlacementTest::theWindowOpensWhereItLastStood()
{
    m_defaults->set(kFrameKey, u"{{30, 40}, {680, 300}}"_s);
    make();
    m_window->show();
    QCOMPARE(m_window->shell().geometry(), QRect(30, 40, 680, 300));
}

void HistoryWindowPlacementTest::aFrameTooTallShrinksAndIsSavedSo()
{
    m_defaults->set(kFrameKey, u"{{30, 40}, {680, 9000}}"_s);
    make();
    const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
    const QRect shrunk(30, available.y(), 680, available.height());
    openWholly();
    QCOMPARE(m_window->shell().geometry(), shrunk);
    m_window->hide();
    QCOMPARE(m_defaults->string(kFrameKey),
             u"{{30, %1}, {680, %2}}"_s.arg(shrunk.y()).arg(shrunk.height()));
}

void HistoryWindowPlacementTest::aFrameOfAnotherWidthOpensAtTheWindowsWidth()
{
    m_defaults->set(kFrameKey, u"{{30, 40}, {1200, 300}}"_s);
    make();
    QCOMPARE(m_window->shell().geometry(), QRect(30, 40, 680, 300));
}

void HistoryWindowPlacementTest::aFrameThatDoesNotParseCountsAsNone()
{
    m_defaults->set(kFrameKey, u"somewhere"_s);
    make();
    QCOMPARE(m_window->shell().size(), QSize(680, 500));
}

void HistoryWindowPlacementTest::theFrameIsSavedOnEveryHide()
{
    makeCompat();
    m_window->show();
    m_window->shell().setGeometry(50, 60, 680, 320);
    m_window->hide();
    QCOMPARE(m_defaults->string(kFrameKey), u"{{50, 60}, {680, 320}}"_s);
}

void HistoryWindowPlacementTest::draggingTheHeadMovesTheWindow()
{
    m_defaults->set(kFrameKey, u"{{40, 50}, {680, 400}}"_s);
    make();
    openWholly();
    dragBy("windowDragView", QPoint(12, 34));
    QCOMPARE(m_window->shell().geometry(), QRect(52, 84, 680, 400));
    dragBy("windowDragView", QPoint(-900, -900));
    QCOMPARE(m_window->shell().pos(),
             QGuiApplication::primaryScreen()->availableGeometry().topLeft());
}

void HistoryWindowPlacementTest::aMoveByTheDesktopStands()
{
    m_defaults->set(kFrameKey, u"{{40, 50}, {680, 400}}"_s);
    make();
    openWholly();
    m_window->shell().windowHandle()->setPosition(70, 90);
    QTRY_COMPARE(m_window->shell().pos(), QPoint(70, 90));
    QCoreApplication::processEvents();
    QCOMPARE(m_window->shell().pos(), QPoint(70, 90));
    m_window->hide();
    QCOMPARE(m_defaults->string(kFrameKey), u"{{70, 90}, {680, 400}}"_s);
}

void HistoryWindowPlacementTest::theHandlesResize()
{
    m_defaults->set(kFrameKey, u"{{40, 150}, {680, 400}}"_s);
    make();
    openWholly();
    dragBy("topResizeView", QPoint(70, -30));
    QCOMPARE(m_window->shell().geometry(), QRect(40, 120, 680, 430));
    dragBy("bottomResizeView", QPoint(70, 20));
    QCOMPARE(m_window->shell().geometry(), QRect(40, 120, 680, 450));
    QCOMPARE(geometryOf("tableView"), QRect(0, 100, 680, 350));
    dragBy("bottomResizeView", QPoint(0, -900));
    QCOMPARE(m_window->shell().height(), 244);
}

void HistoryWindowPlacementTest::panelsThatLeaveNothingAreNotBelieved_data()
{
    QTest::addColumn<QRect>("available");
    QTest::newRow("no height") << QRect(0, 300, 800, 0);
    QTest::newRow("no width") << QRect(400, 0, 0, 600);
    QTest::newRow("nothing") << QRect();
    QTest::newRow("a strip") << QRect(0, 0, 800, 20);
}

void HistoryWindowPlacementTest::panelsThatLeaveNothingAreNotBelieved()
{
    QFETCH(QRect, available);
    m_desktop->available = available;
    make();
    m_window->show();
    QCOMPARE(m_window->shell().geometry(),
             WindowFrame::centred(QGuiApplication::primaryScreen()->geometry()));
}

void HistoryWindowPlacementTest::panelsThatComeAreSpared()
{
    m_desktop->available = QRect(30, 0, 740, 600);
    make();
    m_window->show();
    QCOMPARE(m_window->shell().geometry(), QRect(60, 50, 680, 500));
    m_desktop->available = QRect(70, 0, 700, 540);
    m_desktop->onAvailableGeometryChanged();
    QCOMPARE(m_window->shell().geometry(), QRect(70, 40, 680, 500));
}

QTEST_MAIN(HistoryWindowPlacementTest)
#include "HistoryWindowPlacementTest.moc"
