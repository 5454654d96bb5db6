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
    void theLeastHeightIsKeptOffTheScreenToo_data();
    void theLeastHeightIsKeptOffTheScreenToo();
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
    QTest::newRow("too low") << QRect(300, 200, 680, 1) << kScreen << QRect(300, 200, 680, 244);
    QTest::newRow("too low, at the lower edge")
        << QRect(300, 740, 680, 1) << kScreen << QRect(300, 506, 680, 244);
    QTest::newRow("low screen") << QRect(5, 5, 680, 1) << QRect(0, 0, 1000, 200)
                                << QRect(5, 0, 680, 200);
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

void WindowFrameTest::theLeastHeightIsKeptOffTheScreenToo_data()
{
    using Edge = WindowFrame::Edge;
    QTest::addColumn<QRect>("frame");
    QTest::addColumn<Edge>("edge");
    QTest::addColumn<QRect>("screen");
    QTest::addColumn<QRect>("result");
    const QRect below(-700, 700, 680, 300);
    const QRect farBelow(-700, 1000, 680, 300);
    const QRect above(-700, -200, 680, 300);
    const QRect farAbove(-700, -500, 680, 300);
    const QRect low(0, 0, 1000, 200);
    QTest::newRow("lower edge, hardly any room") << below << Edge::Bottom << kScreen
                                                 << QRect(-700, 700, 680, 244);
    QTest::newRow("lower edge, no room") << farBelow << Edge::Bottom << kScreen
                                         << QRect(-700, 1000, 680, 244);
    QTest::newRow("upper edge, hardly any room") << above << Edge::Top << kScreen
                                                 << QRect(-700, -144, 680, 244);
    QTest::newRow("upper edge, no room") << farAbove << Edge::Top << kScreen
                                         << QRect(-700, -444, 680, 244);
    QTest::newRow("lower edge, low screen") << QRect(0, 0, 680, 200) << Edge::Bottom << low
                                            << QRect(0, 0, 680, 244);
    QTest::newRow("upper edge, low screen") << QRect(0, 0, 680, 200) << Edge::Top << low
                                            << QRect(0, -44, 680, 244);
}

void WindowFrameTest::theLeastHeightIsKeptOffTheScreenToo()
{
    QFETCH(QRect, frame);
    QFETCH(WindowFrame::Edge, edge);
    QFETCH(QRect, screen);
    QTEST(WindowFrame::resized(frame, edge, 0, screen), "result");
}

QTEST_GUILESS_MAIN(WindowFrameTest)
#include "WindowFrameTest.moc"
