#include "platform/linux/PlainTiff.h"

#include "foundation/Digest.h"

#include <QBuffer>
#include <QColor>
#include <QImageReader>
#include <QTest>
#include <QtEndian>

using namespace Qt::StringLiterals;

namespace {

QImage colourful(QSize size, QImage::Format format)
{
    QImage image(size, format);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const int alpha = format == QImage::Format_RGBA8888 ? (x * 40) % 256 : 255;
            image.setPixelColor(x, y, QColor((x * 8) % 256, (y * 15) % 256, (x * y) % 256, alpha));
        }
    }
    return image;
}

} // namespace

class PlainTiffTest : public QObject
{
    Q_OBJECT

private slots:
    void pixelsComeBackUnchanged_data();
    void pixelsComeBackUnchanged();
    void theImageKeepsTheFileAlive();
    void otherProgramsReadIt_data();
    void otherProgramsReadIt();
    void theBytesStayAsTheyAre_data();
    void theBytesStayAsTheyAre();
    void whatIsNotExactlyOursIsLeftToOthers_data();
    void whatIsNotExactlyOursIsLeftToOthers();
};

void PlainTiffTest::pixelsComeBackUnchanged_data()
{
    QTest::addColumn<QImage>("image");
    QTest::newRow("opaque") << colourful({32, 16}, QImage::Format_RGB888);
    QTest::newRow("lines of an odd length") << colourful({31, 17}, QImage::Format_RGB888);
    QTest::newRow("one pixel") << colourful({1, 1}, QImage::Format_RGB888);
    QTest::newRow("transparent") << colourful({31, 17}, QImage::Format_RGBA8888);
}

void PlainTiffTest::pixelsComeBackUnchanged()
{
    QFETCH(QImage, image);
    QCOMPARE(PlainTiff::imageIn(PlainTiff::fromImage(image)), image);
}

void PlainTiffTest::theImageKeepsTheFileAlive()
{
    const QImage image = colourful({300, 200}, QImage::Format_RGB888);
    QByteArray file = PlainTiff::fromImage(image);
    const QImage shared = PlainTiff::imageIn(file);
    QCOMPARE(shared.constBits(), reinterpret_cast<const uchar *>(file.constData()) + file.size()
                                     - qsizetype(300) * 200 * 3);
    QImage changed = shared;
    file.clear();
    changed.fill(Qt::red);
    QCOMPARE(shared, image);
}

void PlainTiffTest::otherProgramsReadIt_data()
{
    pixelsComeBackUnchanged_data();
}

void PlainTiffTest::otherProgramsReadIt()
{
    QFETCH(QImage, image);
    QByteArray file = PlainTiff::fromImage(image);
    QBuffer buffer(&file);
    QImageReader reader(&buffer, "tiff");
    const QImage result = reader.read();
    QVERIFY2(!result.isNull(), qPrintable(reader.errorString()));
    QCOMPARE(result.hasAlphaChannel(), image.hasAlphaChannel());
    QCOMPARE(result.size(), image.size());
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor expected = image.pixelColor(x, y);
            const QColor actual = result.pixelColor(x, y);
            QCOMPARE(actual.alpha(), expected.alpha());
            // The library multiplies alpha into the colours, and some of them is lost.
            const int tolerance = expected.alpha() == 0 ? 255 : 255 / expected.alpha();
            QVERIFY(qAbs(actual.red() - expected.red()) <= tolerance);
            QVERIFY(qAbs(actual.green() - expected.green()) <= tolerance);
            QVERIFY(qAbs(actual.blue() - expected.blue()) <= tolerance);
        }
    }
}

/// Stored entries know their pictures by these digests.
void PlainTiffTest::theBytesStayAsTheyAre_data()
{
    QTest::addColumn<QImage>("image");
    QTest::addColumn<QByteArray>("digest");
    QTest::newRow("opaque")
        << colourful({31, 17}, QImage::Format_RGB888)
        << "6c5bc88a7b10a640313eadff331355dd9ca72d8e6615153ed59276199c870832"_ba;
    QTest::newRow("transparent")
        << colourful({31, 17}, QImage::Format_RGBA8888)
        << "832eceb6bf0208af2a199db1fb86fc3b5b9ded1c950ab51cd40ef5da130b6e67"_ba;
}

void PlainTiffTest::theBytesStayAsTheyAre()
{
    QFETCH(QImage, image);
    QFETCH(QByteArray, digest);
    QCOMPARE(sha256Hex(PlainTiff::fromImage(image)), digest);
}

void PlainTiffTest::whatIsNotExactlyOursIsLeftToOthers_data()
{
    QTest::addColumn<QByteArray>("file");
    const QByteArray file = PlainTiff::fromImage(colourful({8, 4}, QImage::Format_RGB888));
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("a header alone") << file.first(208);
    QTest::newRow("a byte too few") << file.chopped(1);
    QTest::newRow("a byte too many") << file + 'x';
    QByteArray other = file;
    other[100] = char(other[100] + 1);
    QTest::newRow("another header") << other;
    const auto claims = [&file](qint32 width, qint32 height) {
        QByteArray changed = file;
        qToLittleEndian(width, changed.data() + 18);
        qToLittleEndian(height, changed.data() + 30);
        return changed;
    };
    QCOMPARE(claims(8, 4), file);
    QTest::newRow("as many pixels otherwise") << claims(4, 8);
    QTest::newRow("an absurd size") << claims(2'000'000'000, 2'000'000'000);
    QTest::newRow("a negative size") << claims(-8, -4);
    QTest::newRow("no size") << claims(0, 4);
}

void PlainTiffTest::whatIsNotExactlyOursIsLeftToOthers()
{
    QFETCH(QByteArray, file);
    QVERIFY(PlainTiff::imageIn(file).isNull());
}

QTEST_GUILESS_MAIN(PlainTiffTest)
#include "PlainTiffTest.moc"
