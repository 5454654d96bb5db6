#include "platform/linux/QtImageCodec.h"

#include <QBuffer>
#include <QColorSpace>
#include <QImage>
#include <QImageWriter>
#include <QTest>
#include <QtEndian>

using namespace Qt::StringLiterals;

namespace {

QImage colourful(QImage::Format format)
{
    QImage image(31, 17, format);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixelColor(x, y, QColor((x * 8) % 256, (y * 15) % 256, (x * y) % 256));
    }
    return image;
}

QByteArray fileOf(const QImage &image, const char *format, int compression = -1)
{
    QByteArray file;
    QBuffer buffer(&file);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, format);
    writer.setCompression(compression);
    return writer.write(image) ? file : QByteArray();
}

/// A small PNG that claims to be of another size.
QByteArray pngThatClaims(quint32 width, quint32 height)
{
    QByteArray file = fileOf(colourful(QImage::Format_RGB32), "PNG");
    constexpr qsizetype kHeader = 12; // Signature and length, then "IHDR" and its fields.
    qToBigEndian(width, file.data() + kHeader + 4);
    qToBigEndian(height, file.data() + kHeader + 8);
    // The reader checks the sum over the header, so that it has to be right for the claim to count.
    quint32 sum = 0xFFFFFFFF;
    for (const char byte : file.mid(kHeader, 17)) {
        sum ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit)
            sum = (sum >> 1) ^ ((sum & 1) != 0 ? 0xEDB88320 : 0);
    }
    qToBigEndian(~sum, file.data() + kHeader + 17);
    return file;
}

} // namespace

class QtImageCodecTest : public QObject
{
    Q_OBJECT

private slots:
    void theSamePixelsGiveTheSameBytes_data();
    void theSamePixelsGiveTheSameBytes();
    void pixelsSurvive();
    void transparencySurvives();
    void onePixelMakesADifference();
    void theSizeIsToldInPixels();
    void whatAccompaniesThePixelsIsDropped();
    void aTurnedPhotographStandsUpright();
    void anAbsurdClaimIsRefused_data();
    void anAbsurdClaimIsRefused();
    void whatIsNoPictureIsAbsent_data();
    void whatIsNoPictureIsAbsent();
    void largePicturesAreRead();
    void aPngHasTheSamePixels();

private:
    QtImageCodec m_codec;
};

void QtImageCodecTest::theSamePixelsGiveTheSameBytes_data()
{
    QTest::addColumn<QByteArray>("file");
    const QImage image = colourful(QImage::Format_RGB32);
    QTest::newRow("PNG") << fileOf(image, "PNG");
    QTest::newRow("PNG with an alpha channel that hides nothing")
        << fileOf(image.convertToFormat(QImage::Format_ARGB32), "PNG");
    QTest::newRow("BMP") << fileOf(image, "BMP");
    QTest::newRow("TIFF") << fileOf(image, "TIFF");
    QTest::newRow("compressed TIFF") << fileOf(image, "TIFF", 1);
    QTest::newRow("PPM") << fileOf(image, "PPM");
}

void QtImageCodecTest::theSamePixelsGiveTheSameBytes()
{
    QFETCH(QByteArray, file);
    QVERIFY(!file.isEmpty());
    const QByteArray png = fileOf(colourful(QImage::Format_RGB888), "PNG");
    const auto expected = m_codec.tiffFromPicture(png);
    const auto image = m_codec.tiffFromPicture(file);
    QVERIFY(expected && image);
    QVERIFY(image->tiff == expected->tiff);
    // Our own result is a picture like any other.
    QVERIFY(m_codec.tiffFromPicture(image->tiff)->tiff == expected->tiff);
}

void QtImageCodecTest::pixelsSurvive()
{
    const QImage image = colourful(QImage::Format_RGB32);
    const auto result = m_codec.tiffFromPicture(fileOf(image, "PNG"));
    QVERIFY(result);
    QCOMPARE(QImage::fromData(result->tiff).convertToFormat(QImage::Format_RGB32), image);
}

void QtImageCodecTest::transparencySurvives()
{
    QImage image = colourful(QImage::Format_ARGB32);
    image.setPixelColor(3, 4, QColor(200, 100, 50, 128));
    const auto result = m_codec.tiffFromPicture(fileOf(image, "PNG"));
    QVERIFY(result);
    const QColor pixel = QImage::fromData(result->tiff).pixelColor(3, 4);
    QCOMPARE(pixel.alpha(), 128);
    QVERIFY(qAbs(pixel.red() - 200) <= 1);
}

void QtImageCodecTest::onePixelMakesADifference()
{
    QImage image = colourful(QImage::Format_RGB32);
    const auto before = m_codec.tiffFromPicture(fileOf(image, "PNG"));
    image.setPixelColor(0, 0, Qt::white);
    const auto after = m_codec.tiffFromPicture(fileOf(image, "PNG"));
    QVERIFY(before->tiff != after->tiff);
}

void QtImageCodecTest::theSizeIsToldInPixels()
{
    const auto result = m_codec.tiffFromPicture(fileOf(colourful(QImage::Format_RGB32), "PNG"));
    QCOMPARE(result->size, QSize(31, 17));
}

void QtImageCodecTest::whatAccompaniesThePixelsIsDropped()
{
    QImage image = colourful(QImage::Format_RGB32);
    const auto plain = m_codec.tiffFromPicture(fileOf(image, "PNG"));
    image.setText(u"Author"_s, u"somebody"_s);
    image.setDotsPerMeterX(5000);
    image.setDotsPerMeterY(7000);
    image.setColorSpace(QColorSpace(QColorSpace::AdobeRgb));
    const auto accompanied = m_codec.tiffFromPicture(fileOf(image, "PNG"));
    QVERIFY(plain->tiff == accompanied->tiff);
}

void QtImageCodecTest::aTurnedPhotographStandsUpright()
{
    QByteArray file;
    QBuffer buffer(&file);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "jpeg");
    writer.setTransformation(QImageIOHandler::TransformationRotate90);
    QVERIFY(writer.write(colourful(QImage::Format_RGB32)));
    const auto result = m_codec.tiffFromPicture(file);
    QVERIFY(result);
    QCOMPARE(result->size, QSize(17, 31));
}

void QtImageCodecTest::anAbsurdClaimIsRefused_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("60,000 x 60,000") << pngThatClaims(60'000, 60'000);
    QTest::newRow("very wide") << pngThatClaims(1'000'000, 1'000);
    // A few kilobytes of file that would really become 400 MB.
    QImage bomb(10'001, 10'000, QImage::Format_Mono);
    bomb.fill(0);
    QTest::newRow("just too large, and true") << fileOf(bomb, "PNG");
}

void QtImageCodecTest::anAbsurdClaimIsRefused()
{
    QFETCH(QByteArray, file);
    QVERIFY(!m_codec.tiffFromPicture(file));
}

void QtImageCodecTest::whatIsNoPictureIsAbsent_data()
{
    QTest::addColumn<QByteArray>("file");
    const QByteArray png = fileOf(colourful(QImage::Format_RGB32), "PNG");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("text") << QByteArray("no picture");
    QTest::newRow("only a signature") << png.first(8);
    QTest::newRow("only a header") << png.first(40);
    QTest::newRow("no extent") << pngThatClaims(0, 17);
    QTest::newRow("a drawing") << QByteArray(
        "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"9\" height=\"9\"/>");
}

void QtImageCodecTest::whatIsNoPictureIsAbsent()
{
    QFETCH(QByteArray, file);
    QVERIFY(!m_codec.tiffFromPicture(file));
}

void QtImageCodecTest::largePicturesAreRead()
{
    // More than Qt grants by itself, which is 128 MB.
    QImage image(7680, 4500, QImage::Format_RGB32);
    image.fill(Qt::darkGreen);
    const auto result = m_codec.tiffFromPicture(fileOf(image, "BMP"));
    QVERIFY(result);
    QCOMPARE(result->size, image.size());
}

void QtImageCodecTest::aPngHasTheSamePixels()
{
    const QImage image = colourful(QImage::Format_RGB32);
    const auto png = m_codec.pngFromPicture(fileOf(image, "TIFF"));
    QVERIFY(png);
    QCOMPARE(QImage::fromData(*png, "PNG").convertToFormat(QImage::Format_RGB32), image);
    QVERIFY(!m_codec.pngFromPicture("no picture"));
}

QTEST_GUILESS_MAIN(QtImageCodecTest)
#include "QtImageCodecTest.moc"
