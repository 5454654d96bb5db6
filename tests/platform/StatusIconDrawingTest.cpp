#include "platform/linux/StatusIconDrawing.h"

#include <QPainter>
#include <QTest>

using namespace Qt::StringLiterals;

class StatusIconDrawingTest : public QObject
{
    Q_OBJECT

private slots:
    void iconIsDarkOnLightGroundAndLightOnDark_data();
    void iconIsDarkOnLightGroundAndLightOnDark();
    void colorForUnknownGroundIsLegibleOnBoth();
    void mostPixelsGiveTheColor();
    void noPixelsGiveNoColor();
    void drawingIsAsHighAsTheRoomIsNarrow_data();
    void drawingIsAsHighAsTheRoomIsNarrow();
    void wideDrawingLosesItsMarginsFirst();
    void drawingThatIsStillTooWideIsMadeSmaller();
    void noRoomIsNoHarm();
};

namespace {

/// Draws a bar over the whole height, \a inkLeft to \a inkRight in parts of the height, in an image
/// that is \a widthPerHeight times as wide as high.
StatusItem::IconPainter barPainter(double widthPerHeight, double inkLeft, double inkRight,
                                   QList<int> *sides = nullptr)
{
    return [=](int side, const QColor &color) {
        if (sides)
            sides->append(side);
        QImage image(qRound(side * widthPerHeight), side, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        const int left = qRound(side * inkLeft);
        QPainter(&image).fillRect(left, 0, qRound(side * inkRight) - left, side, color);
        return image;
    };
}

QRect inkOf(const QImage &image)
{
    QRect ink;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) > 0)
                ink |= QRect(x, y, 1, 1);
        }
    }
    return ink;
}

} // namespace

void StatusIconDrawingTest::iconIsDarkOnLightGroundAndLightOnDark_data()
{
    QTest::addColumn<QColor>("ground");
    QTest::addColumn<bool>("isLight");

    QTest::newRow("white") << QColor(Qt::white) << false;
    QTest::newRow("light grey") << QColor(241, 242, 244) << false;
    QTest::newRow("middle grey") << QColor(150, 150, 150) << false;
    QTest::newRow("yellow") << QColor(Qt::yellow) << false;
    QTest::newRow("dark grey") << QColor(56, 56, 56) << true;
    QTest::newRow("black") << QColor(Qt::black) << true;
    QTest::newRow("blue") << QColor(Qt::blue) << true;
    QTest::newRow("dark red") << QColor(Qt::darkRed) << true;
}

void StatusIconDrawingTest::iconIsDarkOnLightGroundAndLightOnDark()
{
    QFETCH(QColor, ground);
    QFETCH(bool, isLight);
    const QColor color = iconColorOn(ground);
    QCOMPARE(color.lightness() > 128, isLight);
    QVERIFY(isLegible(color, ground));
}

void StatusIconDrawingTest::colorForUnknownGroundIsLegibleOnBoth()
{
    QVERIFY(isLegible(iconColorOnUnknownGround(), Qt::white));
    QVERIFY(isLegible(iconColorOnUnknownGround(), Qt::black));
    QVERIFY(!isLegible(Qt::black, QColor(56, 56, 56)));
}

void StatusIconDrawingTest::mostPixelsGiveTheColor()
{
    QList<QRgb> pixels(30, qRgb(200, 200, 200));
    pixels += QList<QRgb>(30, qRgb(202, 202, 202));
    pixels += QList<QRgb>(50, qRgb(0, 0, 0));
    QCOMPARE(prevailingColor(pixels), std::optional(QColor(201, 201, 201)));
}

void StatusIconDrawingTest::noPixelsGiveNoColor()
{
    QVERIFY(!prevailingColor({}));
}

void StatusIconDrawingTest::drawingIsAsHighAsTheRoomIsNarrow_data()
{
    QTest::addColumn<QSize>("room");
    QTest::addColumn<QRect>("ink");

    QTest::newRow("square") << QSize(24, 24) << QRect(6, 0, 12, 24);
    QTest::newRow("wide") << QSize(40, 24) << QRect(14, 0, 12, 24);
    QTest::newRow("high") << QSize(24, 40) << QRect(6, 8, 12, 24);
}

void StatusIconDrawingTest::drawingIsAsHighAsTheRoomIsNarrow()
{
    QFETCH(QSize, room);
    QFETCH(QRect, ink);
    const QImage image = drawIconInto(room, barPainter(1, 0.25, 0.75), Qt::red);
    QCOMPARE(image.size(), room);
    QCOMPARE(inkOf(image), ink);
    QCOMPARE(image.pixelColor(ink.center()), QColor(Qt::red));
}

void StatusIconDrawingTest::wideDrawingLosesItsMarginsFirst()
{
    // 20 high and 25 wide, of which 5 to 25 is ink.
    const QImage image = drawIconInto({20, 20}, barPainter(1.25, 0.25, 1.25), Qt::red);
    QCOMPARE(inkOf(image), QRect(0, 0, 20, 20));
}

void StatusIconDrawingTest::drawingThatIsStillTooWideIsMadeSmaller()
{
    QList<int> sides;
    const QImage image = drawIconInto({20, 20}, barPainter(1.5, 0, 1.25, &sides), Qt::red);
    QCOMPARE(sides, (QList<int>{20, 16}));
    QCOMPARE(inkOf(image), QRect(0, 2, 20, 16));
}

void StatusIconDrawingTest::noRoomIsNoHarm()
{
    QVERIFY(drawIconInto({0, 20}, barPainter(1, 0, 1), Qt::red).isNull());
}

QTEST_GUILESS_MAIN(StatusIconDrawingTest)

#include "StatusIconDrawingTest.moc"
