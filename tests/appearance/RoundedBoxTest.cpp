#include "appearance/RoundedBox.h"

#include <QImage>
#include <QPainter>
#include <QTest>

/// Whatever the scale, edges are sharp: no pixel on a straight edge is mixed of two colours.
class RoundedBoxTest : public QObject
{
    Q_OBJECT

private slots:
    void edgesAreOnWholePixels_data();
    void edgesAreOnWholePixels();
    void aLineIsAWholeNumberOfPixelsThick_data();
    void aLineIsAWholeNumberOfPixelsThick();
    void neighboursStayFlush();
    void cornersAreRound();

private:
    static QImage canvas(qreal scale)
    {
        QImage image(64, 64, QImage::Format_RGB32);
        image.setDevicePixelRatio(scale);
        image.fill(Qt::white);
        return image;
    }

    static int middle(const QImage &image) { return qRound(11 * image.devicePixelRatio()); }

    /// The colours along a row or a column of pixels through the middle, each named once.
    static QList<QColor> across(const QImage &image, Qt::Orientation orientation)
    {
        const int at = middle(image);
        QList<QColor> colors;
        for (int i = 0; i < image.width(); ++i) {
            const QColor color = orientation == Qt::Horizontal ? image.pixelColor(i, at)
                                                               : image.pixelColor(at, i);
            if (colors.isEmpty() || colors.last() != color)
                colors.append(color);
        }
        return colors;
    }
};

void RoundedBoxTest::edgesAreOnWholePixels_data()
{
    QTest::addColumn<qreal>("scale");
    for (const qreal scale : {1.0, 1.25, 1.5, 1.75, 2.0})
        QTest::addRow("scale %g", scale) << scale;
}

void RoundedBoxTest::edgesAreOnWholePixels()
{
    QFETCH(const qreal, scale);
    QImage image = canvas(scale);
    QPainter painter(&image);
    fillRoundedBox(painter, QRectF(3.3, 5, 21, 19), 4, Qt::black);
    painter.end();
    const QList<QColor> sharp{Qt::white, Qt::black, Qt::white};
    QCOMPARE(across(image, Qt::Horizontal), sharp);
    QCOMPARE(across(image, Qt::Vertical), sharp);
}

void RoundedBoxTest::aLineIsAWholeNumberOfPixelsThick_data()
{
    QTest::addColumn<qreal>("scale");
    QTest::addColumn<qreal>("thickness");
    QTest::addColumn<int>("pixels");
    QTest::newRow("one, scale 1") << 1.0 << 1.0 << 1;
    QTest::newRow("one, scale 1.25") << 1.25 << 1.0 << 1;
    QTest::newRow("one, scale 1.5") << 1.5 << 1.0 << 2;
    QTest::newRow("one, scale 2") << 2.0 << 1.0 << 2;
    QTest::newRow("two, scale 1.25") << 1.25 << 2.0 << 3;
    QTest::newRow("thinnest, scale 1") << 1.0 << kThinnestLine << 1;
    QTest::newRow("thinnest, scale 2") << 2.0 << kThinnestLine << 1;
    QTest::newRow("thinnest, scale 3") << 3.0 << kThinnestLine << 1;
}

void RoundedBoxTest::aLineIsAWholeNumberOfPixelsThick()
{
    QFETCH(const qreal, scale);
    QFETCH(const qreal, thickness);
    QFETCH(const int, pixels);
    QImage image = canvas(scale);
    QPainter painter(&image);
    lineRoundedBox(painter, QRectF(3, 3, 15, 15), 2, Qt::black, thickness);
    painter.end();
    const QList<QColor> sharp{Qt::white, Qt::black, Qt::white, Qt::black, Qt::white};
    QCOMPARE(across(image, Qt::Horizontal), sharp);
    int black = 0;
    for (int x = 0; x < middle(image); ++x)
        black += image.pixelColor(x, middle(image)) == QColor(Qt::black) ? 1 : 0;
    QCOMPARE(black, pixels);
}

void RoundedBoxTest::neighboursStayFlush()
{
    QImage image = canvas(1.25);
    QPainter painter(&image);
    for (int x = 2; x < 30; x += 7)
        fillRoundedBox(painter, QRectF(x, 2, 7, 30), 0, Qt::black);
    painter.end();
    QCOMPARE(across(image, Qt::Horizontal), (QList<QColor>{Qt::white, Qt::black, Qt::white}));
}

void RoundedBoxTest::cornersAreRound()
{
    QImage image = canvas(2);
    QPainter painter(&image);
    fillRoundedBox(painter, QRectF(2, 2, 20, 20), 100, Qt::black);
    painter.end();
    QCOMPARE(image.pixelColor(5, 5), QColor(Qt::white));
    QCOMPARE(image.pixelColor(24, 5), QColor(Qt::black));
}

QTEST_MAIN(RoundedBoxTest)
#include "RoundedBoxTest.moc"
