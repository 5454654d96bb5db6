#include "app/StatusItemIcon.h"

#include <QColor>
#include <QTest>

using namespace Qt::StringLiterals;

class StatusItemIconTest : public QObject
{
    Q_OBJECT

private slots:
    void boardIsAsWideAsItIsHigh_data();
    void boardIsAsWideAsItIsHigh();
    void pauseMarkStandsOutOnTheRight_data();
    void pauseMarkStandsOutOnTheRight();
    void pauseMarkIsFreeOfTheBoard_data();
    void pauseMarkIsFreeOfTheBoard();
    void onlyTheGivenColorIsUsed_data();
    void onlyTheGivenColorIsUsed();
    void smallBoardLiesOnWholePixels();
};

namespace {

void addSides()
{
    QTest::addColumn<int>("side");
    for (const int side : {16, 18, 22, 24, 32, 48})
        QTest::addRow("%d", side) << side;
}

bool isColumnEmpty(const QImage &image, int x)
{
    for (int y = 0; y < image.height(); ++y) {
        if (qAlpha(image.pixel(x, y)) > 0)
            return false;
    }
    return true;
}

int inkWidth(const QImage &image)
{
    int left = 0;
    int right = image.width() - 1;
    while (left < right && isColumnEmpty(image, left))
        ++left;
    while (right > left && isColumnEmpty(image, right))
        --right;
    return right - left + 1;
}

} // namespace

void StatusItemIconTest::boardIsAsWideAsItIsHigh_data()
{
    addSides();
}

void StatusItemIconTest::boardIsAsWideAsItIsHigh()
{
    QFETCH(int, side);
    const QImage image = statusItemImage(side, Qt::black, false);
    QCOMPARE(image.size(), QSize(side, side));
    QVERIFY(inkWidth(image) > side / 2);
}

void StatusItemIconTest::pauseMarkStandsOutOnTheRight_data()
{
    addSides();
}

void StatusItemIconTest::pauseMarkStandsOutOnTheRight()
{
    QFETCH(int, side);
    const QImage board = statusItemImage(side, Qt::black, false);
    const QImage paused = statusItemImage(side, Qt::black, true);
    QCOMPARE(paused.height(), side);
    QCOMPARE(paused.width(), side + qRound(side * 4 / 18.0));
    QVERIFY(inkWidth(paused) > inkWidth(board));
}

void StatusItemIconTest::pauseMarkIsFreeOfTheBoard_data()
{
    addSides();
}

void StatusItemIconTest::pauseMarkIsFreeOfTheBoard()
{
    QFETCH(int, side);
    const QImage image = statusItemImage(side, Qt::black, true);
    // From the middle of the mark's left half to the left there is ink, then a gap, then the board.
    const int badgeSide = qRound(side * 10.8 / 18);
    const int y = side - badgeSide / 2 - 1;
    QList<bool> changes;
    for (int x = image.width() - badgeSide / 2 - badgeSide / 4; x >= 0; --x) {
        const bool isInk = qAlpha(image.pixel(x, y)) > 127;
        if (changes.isEmpty() || changes.last() != isInk)
            changes.append(isInk);
    }
    QVERIFY(changes.size() >= 3);
    const int first = changes.first() ? 0 : 1;
    QVERIFY(changes.mid(first, 3) == QList<bool>({true, false, true}));
}

void StatusItemIconTest::onlyTheGivenColorIsUsed_data()
{
    QTest::addColumn<bool>("isPaused");
    QTest::newRow("running") << false;
    QTest::newRow("paused") << true;
}

void StatusItemIconTest::onlyTheGivenColorIsUsed()
{
    QFETCH(bool, isPaused);
    const QColor color(200, 40, 90);
    const QImage image = statusItemImage(22, color, isPaused);
    int opaqueCount = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            if (pixel.alpha() == 255) {
                QCOMPARE(pixel, color);
                ++opaqueCount;
            }
        }
    }
    QVERIFY(opaqueCount > 50);
}

void StatusItemIconTest::smallBoardLiesOnWholePixels()
{
    const QImage image = statusItemImage(16, Qt::black, false);
    // The edges of the board and of its lines; their corners are round.
    for (const int y : {6, 7, 9, 10, 12}) {
        QCOMPARE(qAlpha(image.pixel(1, y)), 0);
        QCOMPARE(qAlpha(image.pixel(2, y)), 255);
        QCOMPARE(qAlpha(image.pixel(13, y)), 255);
        QCOMPARE(qAlpha(image.pixel(14, y)), 0);
    }
    for (const int y : {6, 9, 12})
        QCOMPARE(qAlpha(image.pixel(9, y)), 0);
    for (const int y : {5, 7, 8, 10, 11, 13, 14})
        QCOMPARE(qAlpha(image.pixel(9, y)), 255);
}

QTEST_MAIN(StatusItemIconTest)

#include "StatusItemIconTest.moc"
