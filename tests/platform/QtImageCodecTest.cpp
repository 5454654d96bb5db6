#include "platform/linux/QtImageCodec.h"


#include <QBuffer>
#include <QColorSpace>
#include <QImage>
#include <QImageWriter>
#include <QTest>
#include <QtEndian>

#include <sys/wait.h>
#include <unistd.h>

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

constexpr quint16 kAbsurdSide = 60'000;

template <typename Value>
QByteArray withLittleEndian(QByteArray file, qsizetype position, Value value)
{
    qToLittleEndian(value, file.data() + position);
    return file;
}

QByteArray bmpThatClaims(qint32 width, qint32 height)
{
    const QByteArray file = fileOf(colourful(QImage::Format_RGB32), "BMP");
    return withLittleEndian(withLittleEndian(file, 18, width), 22, height);
}

QByteArray gifThatClaims(quint16 width, quint16 height)
{
    // One transparent dot in a palette of two colours.
    QByteArray file = QByteArray::fromHex("47494638396101000100800000000000ffffff21f904010000000"
                                          "02c00000000010001000002014401003b");
    const qsizetype frame = file.indexOf(',');
    file = withLittleEndian(withLittleEndian(file, 6, width), 8, height);
    return withLittleEndian(withLittleEndian(file, frame + 5, width), frame + 7, height);
}

QByteArray jpegThatClaims(quint16 width, quint16 height)
{
    QByteArray file = fileOf(colourful(QImage::Format_RGB32), "JPEG");
    const qsizetype frame = file.indexOf(QByteArray::fromHex("ffc0"));
    qToBigEndian(height, file.data() + frame + 5);
    qToBigEndian(width, file.data() + frame + 7);
    return file;
}

QByteArray tiffThatClaims(quint32 width, quint32 height)
{
    QByteArray file = fileOf(colourful(QImage::Format_RGB32), "TIFF");
    const auto at = [&file](qsizetype position) { return file.constData() + position; };
    const auto directory = qFromLittleEndian<quint32>(at(4));
    const auto entryCount = qFromLittleEndian<quint16>(at(directory));
    for (int i = 0; i < entryCount; ++i) {
        const qsizetype entry = qsizetype(directory) + 2 + qsizetype(i) * 12;
        const auto tag = qFromLittleEndian<quint16>(at(entry));
        constexpr quint16 kImageWidth = 256;
        constexpr quint16 kImageLength = 257;
        constexpr quint16 kLong = 4;
        if (tag != kImageWidth && tag != kImageLength)
            continue;
        file = withLittleEndian(file, entry + 2, kLong);
        file = withLittleEndian(file, entry + 8, tag == kImageWidth ? width : height);
    }
    return file;
}

/// A peak of this process, in MiB, from what the system knows.
qint64 peakMebibytes(const QByteArray &name)
{
    QFile status(u"/proc/self/status"_s);
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith(name + ':'))
            return line.mid(name.size() + 1).simplified().split(' ').first().toLongLong() / 1024;
    }
    return -1;
}

/// How much more memory \a work asks the system for than the process had. A child does it, since
/// a process is never rid of its peaks.
template <typename Work>
int mebibytesTakenBy(Work work)
{
    const pid_t child = fork();
    if (child == 0) {
        const qint64 before = peakMebibytes("VmPeak");
        work();
        const qint64 taken = peakMebibytes("VmPeak") - before;
        _exit(before < 0 ? 255 : int(std::min<qint64>(taken, 254)));
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status))
        return -1;
    return WEXITSTATUS(status);
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
    void itsOwnResultComesBackAsItIs();
    void aJpegAndThePngOfItsPixelsGiveTheSameBytes();
    void theSizeIsToldInPixels();
    void whatAccompaniesThePixelsIsDropped();
    void aTurnedPhotographStandsUpright();
    void anAbsurdClaimIsRefused_data();
    void anAbsurdClaimIsRefused();
    void anAbsurdClaimCostsNoMemory_data();
    void anAbsurdClaimCostsNoMemory();
    void memoryThatIsTakenIsSeen();
    void anHonestClaimIsBelieved_data();
    void anHonestClaimIsBelieved();
    void whatIsNoPictureIsAbsent_data();
    void whatIsNoPictureIsAbsent();
    void largePicturesAreRead();
    void aLargePictureIsNotDecodedWhereSmallOnesAreMeant_data();
    void aLargePictureIsNotDecodedWhereSmallOnesAreMeant();
    void aPngHasTheSamePixels();
    void aKeptPngHasTheSamePixels();
    void aJpegIsCloseToThePixels();
    void theQualityOfAJpegCounts();
    void whatShinesThroughStandsBeforeWhite();

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

void QtImageCodecTest::itsOwnResultComesBackAsItIs()
{
    const auto image = m_codec.tiffFromPicture(fileOf(colourful(QImage::Format_RGB32), "PNG"));
    const auto again = m_codec.tiffFromPicture(image->tiff);
    QVERIFY(again);
    QCOMPARE(again->tiff.constData(), image->tiff.constData());
    QCOMPARE(again->size, image->size);
}

void QtImageCodecTest::aJpegAndThePngOfItsPixelsGiveTheSameBytes()
{
    const QByteArray jpeg = fileOf(colourful(QImage::Format_RGB32), "JPEG");
    const auto fromJpeg = m_codec.tiffFromPicture(jpeg);
    const auto fromPng = m_codec.tiffFromPicture(fileOf(QImage::fromData(jpeg), "PNG"));
    QVERIFY(fromJpeg && fromPng);
    QVERIFY(fromJpeg->tiff == fromPng->tiff);
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

void QtImageCodecTest::anAbsurdClaimCostsNoMemory_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("PNG") << pngThatClaims(kAbsurdSide, kAbsurdSide);
    QTest::newRow("BMP") << bmpThatClaims(kAbsurdSide, kAbsurdSide);
    QTest::newRow("BMP upside down") << bmpThatClaims(kAbsurdSide, -int(kAbsurdSide));
    QTest::newRow("GIF") << gifThatClaims(kAbsurdSide, kAbsurdSide);
    QTest::newRow("JPEG") << jpegThatClaims(kAbsurdSide, kAbsurdSide);
    QTest::newRow("TIFF") << tiffThatClaims(kAbsurdSide, kAbsurdSide);
    QTest::newRow("PPM") << QByteArray("P6 60000 60000 255\n");
    QTest::newRow("XBM") << QByteArray("#define a_width 60000\n#define a_height 60000\n"
                                       "static char a_bits[] = { 0x00 };\n");
    QTest::newRow("XPM") << QByteArray("/* XPM */\nstatic char *a[] = {\n"
                                       "\"60000 60000 1 1\",\n\"a c #000000\",\n\"a\"};\n");
}

void QtImageCodecTest::anAbsurdClaimCostsNoMemory()
{
    QFETCH(QByteArray, file);
    QVERIFY(!m_codec.tiffFromPicture(file));
    const int taken = mebibytesTakenBy([&] { m_codec.tiffFromPicture(file); });
    QVERIFY2(taken >= 0 && taken < 32, qPrintable(u"%1 MiB"_s.arg(taken)));
}

/// Without this the test above could not fail.
void QtImageCodecTest::memoryThatIsTakenIsSeen()
{
    QImage image(4000, 4000, QImage::Format_Mono);
    image.fill(0);
    const QByteArray file = fileOf(image, "PNG");
    QVERIFY(mebibytesTakenBy([&] { m_codec.tiffFromPicture(file); }) > 60);
}

/// It is the claim for which the files above are refused.
void QtImageCodecTest::anHonestClaimIsBelieved_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("PNG") << pngThatClaims(31, 17);
    QTest::newRow("BMP") << bmpThatClaims(31, 17);
    QTest::newRow("GIF") << gifThatClaims(1, 1);
    QTest::newRow("JPEG") << jpegThatClaims(31, 17);
    QTest::newRow("TIFF") << tiffThatClaims(31, 17);
}

void QtImageCodecTest::anHonestClaimIsBelieved()
{
    QFETCH(QByteArray, file);
    QVERIFY(m_codec.tiffFromPicture(file));
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

void QtImageCodecTest::aLargePictureIsNotDecodedWhereSmallOnesAreMeant_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("PNG") << fileOf(colourful(QImage::Format_RGB32), "PNG");
    QTest::newRow("our own")
        << m_codec.tiffFromPicture(fileOf(colourful(QImage::Format_RGB32), "PNG"))->tiff;
}

void QtImageCodecTest::aLargePictureIsNotDecodedWhereSmallOnesAreMeant()
{
    QFETCH(const QByteArray, file); // Of 31 by 17.
    QCOMPARE(m_codec.imageFromSmallPicture(file, 31)->size(), QSize(31, 17));
    QVERIFY(!m_codec.imageFromSmallPicture(file, 30));

    QImage bomb(9000, 10'000, QImage::Format_Mono);
    bomb.fill(0);
    const QByteArray png = fileOf(bomb, "PNG");
    const int taken = mebibytesTakenBy([&] { m_codec.imageFromSmallPicture(png, 1024); });
    QVERIFY2(taken >= 0 && taken < 32, qPrintable(u"%1 MiB"_s.arg(taken)));
}

void QtImageCodecTest::aPngHasTheSamePixels()
{
    const QImage image = colourful(QImage::Format_RGB32);
    const auto png = m_codec.pngFromPicture(fileOf(image, "TIFF"));
    QVERIFY(png);
    QCOMPARE(QImage::fromData(*png, "PNG").convertToFormat(QImage::Format_RGB32), image);
    QVERIFY(!m_codec.pngFromPicture("no picture"));
}

void QtImageCodecTest::aKeptPngHasTheSamePixels()
{
    QImage image = colourful(QImage::Format_ARGB32);
    image.setPixelColor(3, 4, QColor(200, 100, 50, 128));
    const auto png = m_codec.pngFromImage(image);
    QVERIFY(png);
    QCOMPARE(QImage::fromData(*png, "PNG").convertToFormat(QImage::Format_ARGB32), image);
    QVERIFY(!m_codec.pngFromImage(QImage()));
}

void QtImageCodecTest::aJpegIsCloseToThePixels()
{
    QImage image(64, 64, QImage::Format_RGB888);
    image.fill(QColor(40, 90, 160));
    const auto jpeg = m_codec.jpegFromImage(image, 0.9);
    QVERIFY(jpeg);
    const QColor pixel = QImage::fromData(*jpeg, "JPEG").pixelColor(30, 30);
    QVERIFY(qAbs(pixel.red() - 40) < 4 && qAbs(pixel.green() - 90) < 4);
    QVERIFY(!m_codec.jpegFromImage(QImage(), 0.9));
}

void QtImageCodecTest::theQualityOfAJpegCounts()
{
    const QImage image = colourful(QImage::Format_RGB888);
    QVERIFY(m_codec.jpegFromImage(image, 0.9)->size() > m_codec.jpegFromImage(image, 0.7)->size());
}

void QtImageCodecTest::whatShinesThroughStandsBeforeWhite()
{
    QImage image(48, 16, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    for (int y = 0; y < 16; ++y) {
        for (int x = 16; x < 32; ++x) {
            image.setPixelColor(x, y, QColor(0, 0, 0, 128));
            image.setPixelColor(x + 16, y, Qt::black);
        }
    }
    const QImage result = QImage::fromData(*m_codec.jpegFromImage(image, 1), "JPEG");
    QVERIFY(qAbs(result.pixelColor(8, 8).red() - 255) < 4);
    QVERIFY(qAbs(result.pixelColor(24, 8).green() - 127) < 4);
    QVERIFY(qAbs(result.pixelColor(40, 8).blue()) < 4);
}

QTEST_GUILESS_MAIN(QtImageCodecTest)
#include "QtImageCodecTest.moc"
