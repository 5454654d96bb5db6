#include "window/RowThumbnail.h"

#include <QColor>
#include <QPainter>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QImage filled(const QSize &size, const QColor &color)
{
    QImage image(size, QImage::Format_RGB888);
    image.fill(color);
    return image;
}

} // namespace

class RowThumbnailTest : public QObject
{
    Q_OBJECT

private slots:
    void fillsTheSquareWithItsProportions_data();
    void fillsTheSquareWithItsProportions();
    void keepsItsColors();
    void cornersAreRound_data();
    void cornersAreRound();
    void whatShinesThroughStaysClear();
    void isDrawnInTheMiddleOnWholePixels_data();
    void isDrawnInTheMiddleOnWholePixels();
    void aWhitePictureHasAnEdge();
};

void RowThumbnailTest::fillsTheSquareWithItsProportions_data()
{
    QTest::addColumn<QSize>("picture");
    QTest::addColumn<qreal>("scale");
    QTest::addColumn<QSize>("thumbnail");
    QTest::newRow("wide") << QSize(200, 100) << 1.0 << QSize(32, 16);
    QTest::newRow("tall") << QSize(50, 200) << 1.0 << QSize(8, 32);
    QTest::newRow("small, made larger") << QSize(8, 4) << 1.0 << QSize(32, 16);
    QTest::newRow("a line") << QSize(1000, 2) << 1.0 << QSize(32, 1);
    QTest::newRow("of the very size") << QSize(32, 32) << 1.0 << QSize(32, 32);
    QTest::newRow("a quarter more pixels") << QSize(200, 100) << 1.25 << QSize(40, 20);
    QTest::newRow("twice the pixels") << QSize(200, 150) << 2.0 << QSize(64, 48);
    QTest::newRow("a large one that has no thumbnail yet")
        << QSize(4000, 3000) << 1.0 << QSize(32, 24);
}

void RowThumbnailTest::fillsTheSquareWithItsProportions()
{
    QFETCH(const QSize, picture);
    QFETCH(const qreal, scale);
    QFETCH(const QSize, thumbnail);
    const QImage made = makeRowThumbnail(filled(picture, Qt::red), qRound(32 * scale), scale);
    QCOMPARE(made.size(), thumbnail);
    QCOMPARE(made.devicePixelRatio(), scale);
}

void RowThumbnailTest::keepsItsColors()
{
    QImage picture = filled({200, 200}, Qt::blue);
    QPainter(&picture).fillRect(0, 0, 100, 200, Qt::yellow);
    for (const qreal scale : {1.0, 1.25, 2.0}) {
        const int side = qRound(32 * scale);
        const QImage made = makeRowThumbnail(picture, side, scale);
        QCOMPARE(made.pixelColor(side / 4, side / 2), QColor(Qt::yellow));
        QCOMPARE(made.pixelColor(side * 3 / 4, side / 2), QColor(Qt::blue));
        // To the very edges.
        QCOMPARE(made.pixelColor(0, side / 2), QColor(Qt::yellow));
        QCOMPARE(made.pixelColor(side - 1, side / 2), QColor(Qt::blue));
        QCOMPARE(made.pixelColor(side / 4, side - 1), QColor(Qt::yellow));
    }
}

void RowThumbnailTest::cornersAreRound_data()
{
    QTest::addColumn<QSize>("picture");
    QTest::addColumn<int>("clear"); ///< So many pixels of the first line have less than half.
    QTest::newRow("by six") << QSize(200, 200) << 4;
    QTest::newRow("by a quarter of the shorter side") << QSize(200, 50) << 1;
}

void RowThumbnailTest::cornersAreRound()
{
    QFETCH(const QSize, picture);
    QFETCH(const int, clear);
    const QImage made = makeRowThumbnail(filled(picture, Qt::red), 32, 1);
    int count = 0;
    while (qAlpha(made.pixel(count, 0)) < 128)
        ++count;
    QCOMPARE(count, clear);
    const int right = made.width() - 1;
    const int bottom = made.height() - 1;
    for (const QPoint corner : {QPoint(0, 0), {right, 0}, {0, bottom}, {right, bottom}})
        QVERIFY(qAlpha(made.pixel(corner)) < 128);
    QCOMPARE(qAlpha(made.pixel(made.rect().center())), 255);
}

void RowThumbnailTest::whatShinesThroughStaysClear()
{
    QImage picture({100, 100}, QImage::Format_RGBA8888);
    picture.fill(Qt::transparent);
    QCOMPARE(qAlpha(makeRowThumbnail(picture, 32, 1).pixel(16, 16)), 0);
}

void RowThumbnailTest::isDrawnInTheMiddleOnWholePixels_data()
{
    QTest::addColumn<qreal>("scale");
    for (const qreal scale : {1.0, 1.25, 2.0})
        QTest::addRow("%g", scale) << scale;
}

void RowThumbnailTest::isDrawnInTheMiddleOnWholePixels()
{
    QFETCH(const qreal, scale);
    const QImage thumbnail
        = makeRowThumbnail(filled({200, 100}, Qt::red), qRound(32 * scale), scale);
    QImage canvas(QSize(64, 64) * scale, QImage::Format_RGB32);
    canvas.setDevicePixelRatio(scale);
    canvas.fill(Qt::white);
    QPainter painter(&canvas);
    painter.setRenderHint(QPainter::Antialiasing);
    drawRowThumbnail(painter, QRectF(16, 17, 32, 32), thumbnail, Qt::transparent);
    painter.end();

    QRect red;
    for (int y = 0; y < canvas.height(); ++y) {
        for (int x = 0; x < canvas.width(); ++x) {
            if (canvas.pixelColor(x, y) == Qt::red)
                red |= QRect(x, y, 1, 1);
        }
    }
    QCOMPARE(red.size(), thumbnail.size());
    const QPointF middle = QPointF(32, 33) * scale;
    QVERIFY(std::abs(QRectF(red).center().x() - middle.x()) <= 0.5);
    QVERIFY(std::abs(QRectF(red).center().y() - middle.y()) <= 0.5);
}

void RowThumbnailTest::aWhitePictureHasAnEdge()
{
    for (const qreal scale : {1.0, 2.0}) {
        const QImage thumbnail
            = makeRowThumbnail(filled({200, 200}, Qt::white), qRound(32 * scale), scale);
        QImage canvas(QSize(32, 32) * scale, QImage::Format_RGB32);
        canvas.setDevicePixelRatio(scale);
        canvas.fill(Qt::white);
        QPainter painter(&canvas);
        painter.setRenderHint(QPainter::Antialiasing);
        drawRowThumbnail(painter, QRectF(0, 0, 32, 32), thumbnail, Qt::black);
        painter.end();
        const int middle = canvas.height() / 2;
        QCOMPARE(canvas.pixelColor(0, middle), QColor(Qt::black));
        QCOMPARE(canvas.pixelColor(1, middle), QColor(Qt::white));
        QCOMPARE(canvas.pixelColor(canvas.width() - 1, middle), QColor(Qt::black));
    }
}

QTEST_MAIN(RowThumbnailTest)
#include "RowThumbnailTest.moc"
