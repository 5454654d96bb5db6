#include "appearance/Hairline.h"

#include <QImage>
#include <QPainter>
#include <QTest>

class HairlineTest : public QObject
{
    Q_OBJECT

private slots:
    void aLineIsOnWholePixels_data();
    void aLineIsOnWholePixels();
};

void HairlineTest::aLineIsOnWholePixels_data()
{
    QTest::addColumn<qreal>("scale");
    QTest::addColumn<QRectF>("line");
    QTest::addColumn<QRect>("pixels");

    QTest::newRow("lying, scale 1") << 1.0 << QRectF(3, 7, 10, 1) << QRect(3, 7, 10, 1);
    QTest::newRow("lying, between pixels") << 1.25 << QRectF(4, 10, 8, 1) << QRect(5, 13, 10, 1);
    QTest::newRow("lying, on a pixel") << 1.25 << QRectF(4, 8, 8, 1) << QRect(5, 10, 10, 1);
    QTest::newRow("lying, scale 1.5") << 1.5 << QRectF(4, 8, 8, 1) << QRect(6, 12, 12, 2);
    QTest::newRow("standing, scale 1.25") << 1.25 << QRectF(10, 4, 1, 8) << QRect(13, 5, 1, 10);
    QTest::newRow("standing, scale 2") << 2.0 << QRectF(3, 2, 1, 5) << QRect(6, 4, 2, 10);
}

void HairlineTest::aLineIsOnWholePixels()
{
    QFETCH(const qreal, scale);
    QFETCH(const QRectF, line);
    QFETCH(const QRect, pixels);
    QImage image(32, 32, QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    drawHairline(painter, line, Qt::black);
    painter.end();
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor wanted = pixels.contains(x, y) ? Qt::black : Qt::white;
            QCOMPARE(image.pixelColor(x, y), wanted);
        }
    }
}

QTEST_MAIN(HairlineTest)
#include "HairlineTest.moc"
