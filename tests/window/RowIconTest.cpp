#include "appearance/RoundedBox.h"
#include "platform/linux/QtImageCodec.h"
#include "window/RowIcon.h"

#include <QBuffer>
#include <QColor>
#include <QPainter>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QByteArray kDrawing = "<?xml version=\"1.0\"?>\n<!-- A licence. -->\n"
                            "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"48\" height=\"24\">"
                            "<rect width=\"48\" height=\"24\" fill=\"#ff0000\"/></svg>";

QByteArray png(const QSize &size, const QColor &color)
{
    QImage image(size, QImage::Format_ARGB32);
    image.fill(color);
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    image.save(&file, "png");
    return file.data();
}

} // namespace

class RowIconTest : public QObject
{
    Q_OBJECT

private slots:
    void picturesAndDrawingsAreFitted_data();
    void picturesAndDrawingsAreFitted();
    void whatIsNoIconIsNull_data();
    void whatIsNoIconIsNull();
    void aBadgeHasARing();
    void theIconEndsWhereItsBadgeIsRound();

private:
    const QtImageCodec m_codec;
};

void RowIconTest::picturesAndDrawingsAreFitted_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<qreal>("scale");
    QTest::addColumn<QSize>("icon");
    QTest::newRow("drawing") << kDrawing << 1.0 << QSize(32, 16);
    QTest::newRow("drawing at a doubled scale") << kDrawing << 2.0 << QSize(64, 32);
    QTest::newRow("large picture") << png({128, 128}, Qt::red) << 1.25 << QSize(40, 40);
    QTest::newRow("small picture") << png({16, 16}, Qt::red) << 1.0 << QSize(32, 32);
}

void RowIconTest::picturesAndDrawingsAreFitted()
{
    QFETCH(const QByteArray, file);
    QFETCH(const qreal, scale);
    const QImage icon = makeRowIcon(file, qRound(32 * scale), scale, m_codec);
    QTEST(icon.size(), "icon");
    QCOMPARE(icon.devicePixelRatio(), scale);
    QCOMPARE(icon.pixelColor(icon.rect().center()), QColor(Qt::red));
}

void RowIconTest::whatIsNoIconIsNull_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("text") << QByteArray("no icon at all");
    QTest::newRow("half a drawing") << kDrawing.first(70);
    QTest::newRow("half a picture") << png({64, 64}, Qt::red).first(30);
    QTest::newRow("compressed noise") << QByteArray("\x1f\x8b\x08 and so on");
}

void RowIconTest::whatIsNoIconIsNull()
{
    QFETCH(const QByteArray, file);
    QVERIFY(makeRowIcon(file, 32, 1, m_codec).isNull());
}

void RowIconTest::aBadgeHasARing()
{
    const QImage icon = makeRowIcon(png({48, 48}, Qt::red), 12, 1, m_codec);
    QImage canvas(14, 14, QImage::Format_RGB32);
    canvas.fill(Qt::blue);
    QPainter painter(&canvas);
    painter.setRenderHint(QPainter::Antialiasing);
    drawSourceBadge(painter, QRectF(0, 0, 14, 14), icon, Qt::white);
    painter.end();
    QCOMPARE(canvas.pixelColor(0, 7), QColor(Qt::white));
    QCOMPARE(canvas.pixelColor(1, 7), QColor(Qt::red));
    QCOMPARE(canvas.pixelColor(12, 7), QColor(Qt::red));
    QCOMPARE(canvas.pixelColor(13, 7), QColor(Qt::white));
    QCOMPARE(canvas.pixelColor(0, 0), QColor(Qt::blue));
}

void RowIconTest::theIconEndsWhereItsBadgeIsRound()
{
    const QImage icon = makeRowIcon(png({48, 48}, Qt::red), 24, 2, m_codec);
    QImage canvas(28, 28, QImage::Format_ARGB32_Premultiplied);
    canvas.setDevicePixelRatio(2);
    canvas.fill(Qt::transparent);
    QPainter painter(&canvas);
    drawSourceBadge(painter, QRectF(0, 0, 14, 14), icon, Qt::white);
    painter.end();
    QImage ground(canvas.size(), canvas.format());
    ground.setDevicePixelRatio(2);
    ground.fill(Qt::transparent);
    QPainter onGround(&ground);
    fillRoundedBox(onGround, QRectF(0, 0, 14, 14), 4, Qt::white);
    onGround.end();
    const auto alphas = [](const QImage &image) { return image.convertToFormat(QImage::Format_Alpha8); };
    QCOMPARE(alphas(canvas), alphas(ground));
    QVERIFY(canvas.pixelColor(2, 2).alpha() < 255);
    QCOMPARE(canvas.pixelColor(3, 3), QColor(Qt::red));
}

QTEST_MAIN(RowIconTest)
#include "RowIconTest.moc"
