#include "platform/x11/X11Pixels.h"

#include "platform/x11/X11Connection.h"
#include "tests/platform/PrivateDesktop.h"

#include <QGuiApplication>
#include <QTest>

#include <xcb/xcb.h>

class X11PixelsTest : public QObject
{
    Q_OBJECT

private slots:
    void pictureIsDrawnAtItsPlace();
    void pictureLargerThanARequestIsDrawnWhole();

private:
    quint32 makePixmap(const QSize &size)
    {
        const quint32 pixmap = xcb_generate_id(m_connection.xcb());
        xcb_create_pixmap(m_connection.xcb(), kDepth, pixmap, m_connection.rootWindow(),
                          quint16(size.width()), quint16(size.height()));
        return pixmap;
    }
    QColor pixel(quint32 drawable, const QPoint &place)
    {
        const QImage image = readPixels(m_connection, drawable, QRect(place, QSize(1, 1)));
        return image.isNull() ? QColor() : image.pixelColor(0, 0);
    }

    static constexpr quint8 kDepth = 24;
    X11Connection m_connection;
};

void X11PixelsTest::pictureIsDrawnAtItsPlace()
{
    const quint32 pixmap = makePixmap({20, 20});
    QImage ground(20, 20, QImage::Format_RGB32);
    ground.fill(Qt::white);
    drawPixels(m_connection, pixmap, kDepth, {}, ground);
    QImage square(4, 4, QImage::Format_RGB32);
    square.fill(Qt::red);
    drawPixels(m_connection, pixmap, kDepth, {8, 3}, square);
    QCOMPARE(pixel(pixmap, {8, 3}), QColor(Qt::red));
    QCOMPARE(pixel(pixmap, {11, 6}), QColor(Qt::red));
    QCOMPARE(pixel(pixmap, {7, 3}), QColor(Qt::white));
    QCOMPARE(pixel(pixmap, {12, 7}), QColor(Qt::white));
}

void X11PixelsTest::pictureLargerThanARequestIsDrawnWhole()
{
    constexpr QSize kSize(3000, 3000);
    QImage picture(kSize, QImage::Format_RGB32);
    const qint64 maxBytes = 4 * qint64(xcb_get_maximum_request_length(m_connection.xcb()));
    QVERIFY(picture.sizeInBytes() > maxBytes);
    picture.fill(Qt::blue);
    const quint32 pixmap = makePixmap(kSize);
    drawPixels(m_connection, pixmap, kDepth, {}, picture);
    QCOMPARE(pixel(pixmap, {0, 0}), QColor(Qt::blue));
    QCOMPARE(pixel(pixmap, {1500, 1500}), QColor(Qt::blue));
    QCOMPARE(pixel(pixmap, {2999, 2999}), QColor(Qt::blue));
}

int main(int argc, char *argv[])
{
    PrivateDesktop desktop;
    if (!desktop.start())
        return EXIT_FAILURE;
    QGuiApplication application(argc, argv);
    X11PixelsTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "X11PixelsTest.moc"
