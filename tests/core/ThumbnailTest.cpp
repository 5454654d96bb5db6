#include "core/Thumbnail.h"

#include <QColor>
#include <QTest>

namespace {

constexpr int kSide = 200;

QImage gradient(QSize size)
{
    QImage image(size, QImage::Format_RGB888);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, qRgb(x * 255 / size.width(), y * 255 / size.height(), 90));
    }
    return image;
}

bool areClose(QRgb one, QRgb other, int tolerance)
{
    return qAbs(qRed(one) - qRed(other)) <= tolerance
        && qAbs(qGreen(one) - qGreen(other)) <= tolerance
        && qAbs(qBlue(one) - qBlue(other)) <= tolerance;
}

} // namespace

class ThumbnailTest : public QObject
{
    Q_OBJECT

private slots:
    void itLooksLikeThePicture_data();
    void itLooksLikeThePicture();
    void fineLinesBecomeGrey_data();
    void fineLinesBecomeGrey();
    void transparencyStays();
};

void ThumbnailTest::itLooksLikeThePicture_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("a screen") << QSize(3840, 2160);
    QTest::newRow("not much larger") << QSize(300, 260);
    QTest::newRow("what is not divided evenly") << QSize(2399, 1801);
    QTest::newRow("very high") << QSize(210, 5000);
}

void ThumbnailTest::itLooksLikeThePicture()
{
    QFETCH(QSize, size);
    const QImage image = gradient(size);
    const QImage thumbnail = thumbnailOf(image, kSide);
    QCOMPARE(std::max(thumbnail.width(), thumbnail.height()), kSide);
    for (int y = 0; y < thumbnail.height(); ++y) {
        for (int x = 0; x < thumbnail.width(); ++x) {
            const QRgb expected = image.pixel((2 * x + 1) * size.width() / thumbnail.width() / 2,
                                              (2 * y + 1) * size.height() / thumbnail.height() / 2);
            QVERIFY(areClose(thumbnail.pixel(x, y), expected, 6));
        }
    }
}

void ThumbnailTest::fineLinesBecomeGrey_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("reduced evenly") << QSize(3200, 1600);
    QTest::newRow("reduced unevenly") << QSize(3840, 2160);
    QTest::newRow("scaled alone") << QSize(800, 600);
}

/// Every second line of such a picture is easily lost.
void ThumbnailTest::fineLinesBecomeGrey()
{
    QFETCH(QSize, size);
    QImage image(size, QImage::Format_RGB888);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, y % 2 == 0 ? qRgb(0, 0, 0) : qRgb(255, 255, 255));
    }
    const QImage thumbnail = thumbnailOf(image, kSide);
    for (int y = 0; y < thumbnail.height(); ++y)
        QVERIFY(areClose(thumbnail.pixel(kSide / 2, y), qRgb(127, 127, 127), 24));
}

void ThumbnailTest::transparencyStays()
{
    QImage image(1000, 1000, QImage::Format_RGBA8888);
    image.fill(QColor(200, 0, 0, 128));
    const QColor pixel = thumbnailOf(image, kSide).pixelColor(100, 100);
    QVERIFY(qAbs(pixel.alpha() - 128) <= 1);
    QVERIFY(qAbs(pixel.red() - 200) <= 2);
}

QTEST_GUILESS_MAIN(ThumbnailTest)
#include "ThumbnailTest.moc"
