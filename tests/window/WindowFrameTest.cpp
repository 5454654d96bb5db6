#include "window/WindowFrame.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr QRect kScreen(100, 50, 1200, 700);

} // namespace

class WindowFrameTest : public QObject
{
    Q_OBJECT

private slots:
    void aFrameIsWrittenAndReadBack();
    void theStoredWidthIsIgnored();
    void fractionsAndBlanksAreRead();
    void whatIsNoFrameIsNotRead_data();
    void whatIsNoFrameIsNotRead();
    void aNewWindowStandsInTheMiddle();
    void aFrameIsBroughtOntoTheScreen_data();
    void aFrameIsBroughtOntoTheScreen();
    void draggingStopsAtTheEdges();
    void theTopEdgeMovesWhileTheBottomStays();
    void theBottomEdgeMovesWhileTheTopStays();
    void anEdgeStopsAtTheScreen();
    void theHeightStaysWithinItsLimits();
};

void WindowFrameTest::aFrameIsWrittenAndReadBack()
{
    const QRect frame(-12, 34, 680, 456);
    QCOMPARE(WindowFrame::toString(frame), u"{{-12, 34}, {680, 456}}"_s);
    QCOMPARE(WindowFrame::fromString(u"{{-12, 34}, {680, 456}}"_s), frame);
}

void WindowFrameTest::theStoredWidthIsIgnored()
{
    QCOMPARE(WindowFrame::fromString(u"{{1, 2}, {900, 300}}"_s), QRect(1, 2, 680, 300));
    QCOMPARE(WindowFrame::fromString(u"{{1, 2}, {0, 300}}"_s), QRect(1, 2, 680, 300));
}

void WindowFrameTest::fractionsAndBlanksAreRead()
{
    QCOMPARE(WindowFrame::fromString(u" {{1.5,2},{680.0,  300}} "_s), QRect(2, 2, 680, 300));
}

void WindowFrameTest::whatIsNoFrameIsNotRead_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << u""_s;
    QTest::newRow("words") << u"somewhere"_s;
    QTest::newRow("too few numbers") << u"{{1, 2}, {3}}"_s;
    QTest::newRow("no braces") << u"1, 2, 3, 4"_s;
    QTest::newRow("something after") << u"{{1, 2}, {3, 4}} x"_s;
    QTest::newRow("no height") << u"{{1, 2}, {680, 0}}"_s;
    QTest::newRow("negative height") << u"{{1, 2}, {680, -4}}"_s;
    QTest::newRow("no number") << u"{{a, 2}, {680, 300}}"_s;
    QTest::newRow("beyond all screens") << u"{{1, 2}, {680, 99999999999999999999}}"_s;
}

void WindowFrameTest::whatIsNoFrameIsNotRead()
{
    QFETCH(QString, text);
    QVERIFY(!WindowFrame::fromString(text));
}

void WindowFrameTest::aNewWindowStandsInTheMiddle()
{
    QCOMPARE(WindowFrame::centred(kScreen), QRect(360, 150, 680, 500));
}

void WindowFrameTest::aFrameIsBroughtOntoTheScreen_data()
{
    QTest::addColumn<QRect>("frame");
    QTest::addColumn<QRect>("screen");
    QTest::addColumn<QRect>("result");
    QTest::newRow("where it is") << QRect(300, 200, 680, 300) << kScreen
                                 << QRect(300, 200, 680, 300);
    QTest::newRow("left and above") << QRect(-900, -900, 680, 300) << kScreen
                                    << QRect(100, 50, 680, 300);
    QTest::newRow("right and below") << QRect(9000, 9000, 680, 300) << kScreen
                                     << QRect(620, 450, 680, 300);
    QTest::newRow("too tall") << QRect(300, 200, 680, 5000) << kScreen << QRect(300, 50, 680, 700);
    QTest::newRow("narrow screen") << QRect(5, 5, 680, 300) << QRect(0, 0, 480, 800)
                                   << QRect(0, 5, 480, 300);
    QTest::newRow("second screen") << QRect(-500, 100, 680, 300) << QRect(-1920, 0, 1920, 1080)
                                   << QRect(-680, 100, 680, 300);
}

void WindowFrameTest::aFrameIsBroughtOntoTheScreen()
{
    QFETCH(QRect, frame);
    QFETCH(QRect, screen);
    QTEST(WindowFrame::clamped(frame, screen), "result");
}

void WindowFrameTest::draggingStopsAtTheEdges()
{
    const QRect frame(300, 200, 680, 300);
    QCOMPARE(WindowFrame::moved(frame, QPoint(10, -20), kScreen), QRect(310, 180, 680, 300));
    QCOMPARE(WindowFrame::moved(frame, QPoint(2000, 2000), kScreen), QRect(620, 450, 680, 300));
    QCOMPARE(WindowFrame::moved(frame, QPoint(-2000, -2000), kScreen), QRect(100, 50, 680, 300));
}

void WindowFrameTest::theTopEdgeMovesWhileTheBottomStays()
{
    const QRect frame(300, 200, 680, 300);
    const auto dragged = [&](int travel) {
        return WindowFrame::resized(frame, WindowFrame::Edge::Top, travel, kScreen);
    };
    QCOMPARE(dragged(-40), QRect(300, 160, 680, 340));
    QCOMPARE(dragged(40), QRect(300, 240, 680, 260));
}

void WindowFrameTest::theBottomEdgeMovesWhileTheTopStays()
{
    const QRect frame(300, 200, 680, 300);
    const auto dragged = [&](int travel) {
        return WindowFrame::resized(frame, WindowFrame::Edge::Bottom, travel, kScreen);
    };
    QCOMPARE(dragged(40), QRect(300, 200, 680, 340));
    QCOMPARE(dragged(-40), QRect(300, 200, 680, 260));
}

void WindowFrameTest::anEdgeStopsAtTheScreen()
{
    const QRect frame(300, 200, 680, 300);
    QCOMPARE(WindowFrame::resized(frame, WindowFrame::Edge::Top, -400, kScreen),
             QRect(300, 50, 680, 450));
    QCOMPARE(WindowFrame::resized(frame, WindowFrame::Edge::Bottom, 400, kScreen),
             QRect(300, 200, 680, 550));
}

void WindowFrameTest::theHeightStaysWithinItsLimits()
{
    const QRect frame(300, 200, 680, 300);
    QCOMPARE(WindowFrame::resized(frame, WindowFrame::Edge::Top, 200, kScreen),
             QRect(300, 256, 680, 244));
    QCOMPARE(WindowFrame::resized(frame, WindowFrame::Edge::Bottom, -200, kScreen),
             QRect(300, 200, 680, 244));
    QCOMPARE(WindowFrame::resized(frame, WindowFrame::Edge::Bottom, 900, kScreen).height(), 550);
}

QTEST_GUILESS_MAIN(WindowFrameTest)
#include "WindowFrameTest.moc"
