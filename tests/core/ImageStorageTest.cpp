#include "core/ImageStorage.h"

#include "foundation/UserDefaults.h"
#include "platform/linux/QtImageCodec.h"
#include "tests/fakes/FakeClock.h"
#include "tests/fakes/FileSizeLimit.h"
#include "tests/fakes/PrintedLines.h"

#include <QBuffer>
#include <QColor>
#include <QDir>
#include <QFile>
#include <QImageReader>
#include <QImageWriter>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

QImage picture(QSize size, QImage::Format format = QImage::Format_RGB888)
{
    QImage image(size, format);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            image.setPixelColor(x, y, QColor((x * 7) % 256, (y * 13) % 256, (x * y) % 256));
    }
    return image;
}

QByteArray fileOf(const QImage &image, const char *format,
                  QImageIOHandler::Transformations turn = QImageIOHandler::TransformationNone)
{
    QByteArray file;
    QBuffer buffer(&file);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, format);
    writer.setTransformation(turn);
    return writer.write(image) ? file : QByteArray();
}

QByteArray tiffOf(QSize size)
{
    return fileOf(picture(size), "TIFF");
}

ClipboardItemPointer entry(std::optional<QString> fileName, std::optional<QString> thumbnail = {})
{
    ClipboardItem item = makeItem(ClipboardContentType::Image, Timestamp{});
    item.imageFileName = std::move(fileName);
    item.imageThumbnailFileName = std::move(thumbnail);
    return std::make_shared<const ClipboardItem>(std::move(item));
}

mode_t modeOf(const QString &path)
{
    struct stat status = {};
    return stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 07777 : 0;
}

} // namespace

class ImageStorageTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void theSettingChoosesTheFormat_data();
    void theSettingChoosesTheFormat();
    void theSettingIsReadAtEachSave();
    void aTiffHoldsTheBytesAsTheyWereCaptured();
    void aPngHoldsEveryPixel();
    void namesTellTheLocalTimeAndEightRandomDigits();
    void picturesOfOneSecondHaveDifferentNames();
    void theThumbnailIsNamedLikeThePicture();

    void aThumbnailFitsInto200Pixels_data();
    void aThumbnailFitsInto200Pixels();
    void aTurnedPictureHasAnUprightThumbnail_data();
    void aTurnedPictureHasAnUprightThumbnail();
    void transparencyBecomesWhiteAndNotBlack();
    void filesAreForTheUserAlone_data();
    void filesAreForTheUserAlone();

    void unreadableBytesBecomeATiffWithoutThumbnail_data();
    void unreadableBytesBecomeATiffWithoutThumbnail();
    void withoutDirectoryNothingIsSaved_data();
    void withoutDirectoryNothingIsSaved();
    void aFileWhereTheDirectoryShouldBeIsTold();
    void aDirectoryThatWasRemovedIsMadeAnew();
    void whatCannotBeSavedHasAThumbnailAllTheSame_data();
    void whatCannotBeSavedHasAThumbnailAllTheSame();
    void aPictureMayBeTooLargeForItsFallback();

    void deletingTakesPictureAndThumbnail();
    void deletingTakesTheDerivedThumbnailOfARecordThatLostItsName();
    void deletingSparesWhatAnotherEntryNames();
    void deletingStaysInTheDirectory();
    void deletingWhatIsNotThereIsNoTrouble();

    void theSweepTakesWhatNobodyNames();
    void theSweepLeavesFilesThatAreStillToBeNamed();

private:
    ImageStorage::SavedImage save(const QByteArray &bytes) const
    {
        return m_storage->saveImage(bytes);
    }
    void setFormat(const QString &format) { m_defaults->set(u"image.storage.format"_s, format); }
    void open(const QString &directory);
    QString path(const QString &name) const { return m_storage->directory() + u'/' + name; }
    QByteArray contentOf(const QString &name) const;
    QImage imageOf(const std::optional<QString> &name) const { return QImage(path(name.value())); }
    QStringList allFiles() const;
    void touch(const QStringList &names) const;

    QtImageCodec m_codec;
    FakeClock m_clock;
    std::optional<QTemporaryDir> m_directory;
    std::optional<PrintedLines> m_printed;
    std::unique_ptr<UserDefaults> m_defaults;
    std::optional<ImageStorage> m_storage;
};

void ImageStorageTest::init()
{
    m_defaults.reset(); // It is written at its end, and so has to end before its directory.
    m_directory.emplace();
    m_printed.emplace();
    m_defaults = std::make_unique<UserDefaults>(m_directory->filePath(u"tessarine.conf"_s));
    QVERIFY(QDir(m_directory->path()).mkdir(u"images"_s));
    open(m_directory->filePath(u"images"_s));
}

void ImageStorageTest::cleanup()
{
    m_storage.reset();
    m_printed.reset();
}

void ImageStorageTest::open(const QString &directory)
{
    m_storage.emplace(directory, m_codec, *m_defaults, m_clock);
}

QByteArray ImageStorageTest::contentOf(const QString &name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList ImageStorageTest::allFiles() const
{
    return QDir(m_storage->directory()).entryList(QDir::Files | QDir::Hidden);
}

void ImageStorageTest::touch(const QStringList &names) const
{
    for (const QString &name : names) {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
}

void ImageStorageTest::theSettingChoosesTheFormat_data()
{
    QTest::addColumn<QString>("setting");
    QTest::addColumn<QString>("extension");
    QTest::addColumn<QByteArray>("format");
    QTest::newRow("jpeg") << u"jpeg"_s << u"jpg"_s << "jpeg"_ba;
    QTest::newRow("png") << u"png"_s << u"png"_s << "png"_ba;
    QTest::newRow("tiff") << u"tiff"_s << u"tiff"_s << "tiff"_ba;
    QTest::newRow("nothing is set") << QString() << u"jpg"_s << "jpeg"_ba;
    QTest::newRow("no format that we write") << u"gif"_s << u"jpg"_s << "jpeg"_ba;
    QTest::newRow("capital letters") << u"PNG"_s << u"jpg"_s << "jpeg"_ba;
    QTest::newRow("an extension") << u"tif"_s << u"jpg"_s << "jpeg"_ba;
}

void ImageStorageTest::theSettingChoosesTheFormat()
{
    QFETCH(QString, setting);
    QFETCH(QString, extension);
    QFETCH(QByteArray, format);
    if (!setting.isNull())
        setFormat(setting);
    const auto saved = save(tiffOf({30, 20}));
    QVERIFY(saved.fileName && saved.thumbnailFileName);
    QVERIFY(saved.fileName->endsWith(u'.' + extension));
    QCOMPARE(QImageReader::imageFormat(path(*saved.fileName)), format);
    QCOMPARE(QImageReader::imageFormat(path(*saved.thumbnailFileName)), "jpeg"_ba);
    QCOMPARE(imageOf(saved.fileName).size(), QSize(30, 20));
    QCOMPARE(m_printed->lines(), QStringList());
}

void ImageStorageTest::theSettingIsReadAtEachSave()
{
    const QString before = save(tiffOf({30, 20})).fileName.value();
    setFormat(u"png"_s);
    const QString after = save(tiffOf({30, 20})).fileName.value();
    QVERIFY(after.endsWith(u".png"_s));
    QCOMPARE(QImageReader::imageFormat(path(before)), "jpeg"_ba);
}

void ImageStorageTest::aTiffHoldsTheBytesAsTheyWereCaptured()
{
    setFormat(u"tiff"_s);
    const auto captured = m_codec.tiffFromPicture(fileOf(picture({30, 20}), "PNG"));
    const QByteArray content = contentOf(save(captured->tiff).fileName.value());
    QVERIFY(content == captured->tiff);
}

void ImageStorageTest::aPngHoldsEveryPixel()
{
    setFormat(u"png"_s);
    QImage image = picture({30, 20}, QImage::Format_ARGB32);
    image.setPixelColor(3, 4, QColor(200, 100, 50, 128));
    const QByteArray tiff = fileOf(image, "TIFF");
    QCOMPARE(imageOf(save(tiff).fileName).convertToFormat(QImage::Format_RGBA8888),
             m_codec.imageFromPicture(tiff).value());
}

void ImageStorageTest::namesTellTheLocalTimeAndEightRandomDigits()
{
    const QByteArray before = qgetenv("TZ");
    qputenv("TZ", "Asia/Kolkata");
    tzset();
    m_clock.set(timestampFromMicroseconds(1'776'000'000'999'999)); // 13:20:00 UTC
    const QString name = save(tiffOf({30, 20})).fileName.value();
    before.isNull() ? qunsetenv("TZ") : qputenv("TZ", before);
    tzset();
    static const QRegularExpression expected(u"^2026-04-12_18-50-00_[0-9A-F]{8}\\.jpg$"_s);
    QVERIFY2(expected.match(name).hasMatch(), qPrintable(name));
}

void ImageStorageTest::picturesOfOneSecondHaveDifferentNames()
{
    const QString one = save(tiffOf({30, 20})).fileName.value();
    const QString other = save(tiffOf({30, 20})).fileName.value();
    QVERIFY(one != other);
    QCOMPARE(one.left(20), other.left(20));
    QCOMPARE(allFiles().size(), 4);
}

void ImageStorageTest::theThumbnailIsNamedLikeThePicture()
{
    for (const QString &format : {u"jpeg"_s, u"png"_s, u"tiff"_s}) {
        setFormat(format);
        const auto saved = save(tiffOf({30, 20}));
        const QString base = saved.fileName->left(saved.fileName->lastIndexOf(u'.'));
        QCOMPARE(saved.thumbnailFileName, base + u"_thumb.jpg"_s);
    }
}

void ImageStorageTest::aThumbnailFitsInto200Pixels_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QSize>("thumbnail");
    QTest::newRow("broad") << QSize(4000, 1000) << QSize(200, 50);
    QTest::newRow("high") << QSize(300, 1200) << QSize(50, 200);
    QTest::newRow("just too broad") << QSize(201, 100) << QSize(200, 100);
    QTest::newRow("just fitting") << QSize(200, 200) << QSize(200, 200);
    QTest::newRow("small, which is not enlarged") << QSize(30, 20) << QSize(30, 20);
    QTest::newRow("a line") << QSize(3000, 2) << QSize(200, 1);
    QTest::newRow("a dot") << QSize(1, 1) << QSize(1, 1);
}

void ImageStorageTest::aThumbnailFitsInto200Pixels()
{
    QFETCH(QSize, size);
    QFETCH(QSize, thumbnail);
    const auto saved = save(tiffOf(size));
    QCOMPARE(imageOf(saved.thumbnailFileName).size(), thumbnail);
    QCOMPARE(imageOf(saved.fileName).size(), size);
}

void ImageStorageTest::aTurnedPictureHasAnUprightThumbnail_data()
{
    QTest::addColumn<QByteArray>("file");
    QImage image(400, 100, QImage::Format_RGB888);
    image.fill(Qt::white);
    for (int y = 0; y < 100; ++y) {
        for (int x = 0; x < 40; ++x)
            image.setPixelColor(x, y, Qt::black);
    }
    constexpr auto kTurn = QImageIOHandler::TransformationRotate90;
    QTest::newRow("JPEG") << fileOf(image, "JPEG", kTurn);
    QTest::newRow("TIFF") << fileOf(image, "TIFF", kTurn);
}

void ImageStorageTest::aTurnedPictureHasAnUprightThumbnail()
{
    QFETCH(QByteArray, file);
    const auto saved = save(file);
    const QImage thumbnail = imageOf(saved.thumbnailFileName);
    QCOMPARE(thumbnail.size(), QSize(50, 200));
    // The black end that was at the left is on top now.
    QVERIFY(qGray(thumbnail.pixel(25, 5)) < 50);
    QVERIFY(qGray(thumbnail.pixel(25, 195)) > 200);
    QCOMPARE(imageOf(saved.fileName).size(), QSize(100, 400));
}

void ImageStorageTest::transparencyBecomesWhiteAndNotBlack()
{
    QImage image(400, 400, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    const auto saved = save(fileOf(image, "TIFF"));
    QVERIFY(qGray(imageOf(saved.fileName).pixel(200, 200)) > 250);
    QVERIFY(qGray(imageOf(saved.thumbnailFileName).pixel(100, 100)) > 250);
}

void ImageStorageTest::filesAreForTheUserAlone_data()
{
    QTest::addColumn<uint>("mask");
    QTest::newRow("nothing masked") << 0u;
    QTest::newRow("everything masked") << 0777u;
}

void ImageStorageTest::filesAreForTheUserAlone()
{
    QFETCH(const uint, mask);
    const mode_t before = umask(mask);
    const auto saved = save(tiffOf({30, 20}));
    umask(before);
    QCOMPARE(modeOf(path(saved.fileName.value())), mode_t(0600));
    QCOMPARE(modeOf(path(saved.thumbnailFileName.value())), mode_t(0600));
}

void ImageStorageTest::unreadableBytesBecomeATiffWithoutThumbnail_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QStringList>("lines");
    QTest::newRow("jpeg") << u"jpeg"_s
                          << QStringList{u"Failed to save image as JPEG, fallback to TIFF"_s};
    QTest::newRow("png") << u"png"_s
                         << QStringList{u"Failed to save image as PNG, fallback to TIFF"_s};
    QTest::newRow("tiff") << u"tiff"_s << QStringList();
}

void ImageStorageTest::unreadableBytesBecomeATiffWithoutThumbnail()
{
    QFETCH(QString, format);
    QFETCH(QStringList, lines);
    setFormat(format);
    const auto saved = save("no picture");
    QVERIFY(saved.fileName->endsWith(u".tiff"_s));
    QVERIFY(!saved.thumbnailFileName);
    QCOMPARE(contentOf(*saved.fileName), "no picture"_ba);
    QCOMPARE(allFiles(), QStringList{*saved.fileName});
    QCOMPARE(m_printed->lines(), lines);
}

void ImageStorageTest::withoutDirectoryNothingIsSaved_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QStringList>("lines");
    const QString thumbnail = u"Failed to save thumbnail: Not a directory"_s;
    const QString fallback = u"Failed to save fallback TIFF image: Not a directory"_s;
    QTest::newRow("jpeg") << u"jpeg"_s
                          << QStringList{u"Failed to save image as JPEG, fallback to TIFF"_s,
                                         fallback, thumbnail};
    QTest::newRow("png") << u"png"_s
                         << QStringList{u"Failed to save image as PNG, fallback to TIFF"_s,
                                        fallback, thumbnail};
    QTest::newRow("tiff") << u"tiff"_s
                          << QStringList{
                                 u"Failed to save TIFF image: Not a directory"_s,
                                 thumbnail};
}

void ImageStorageTest::withoutDirectoryNothingIsSaved()
{
    QFETCH(QString, format);
    QFETCH(QStringList, lines);
    setFormat(format);
    touch({u"a file"_s});
    open(path(u"a file/nowhere"_s));
    const auto saved = save(tiffOf({30, 20}));
    QVERIFY(!saved.fileName);
    QVERIFY(!saved.thumbnailFileName);
    QCOMPARE(m_printed->lines(), lines);
    QCOMPARE(m_storage->fileNames(), QStringList());
}

void ImageStorageTest::aFileWhereTheDirectoryShouldBeIsTold()
{
    touch({u"a file"_s});
    setFormat(u"tiff"_s);
    open(path(u"a file"_s));
    QVERIFY(!save("no picture").fileName);
    QCOMPARE(m_printed->lines(), QStringList{u"Failed to save TIFF image: Not a directory"_s});
}

void ImageStorageTest::aDirectoryThatWasRemovedIsMadeAnew()
{
    QVERIFY(save(tiffOf({30, 20})).fileName);
    QVERIFY(QDir(m_storage->directory()).removeRecursively());
    const auto saved = save(tiffOf({30, 20}));
    QCOMPARE(imageOf(saved.fileName).size(), QSize(30, 20));
    QVERIFY(saved.thumbnailFileName);
    QCOMPARE(modeOf(m_storage->directory()), mode_t(0700));
    QCOMPARE(m_printed->lines(), QStringList());
}

void ImageStorageTest::whatCannotBeSavedHasAThumbnailAllTheSame_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QStringList>("lines");
    QTest::newRow("jpeg") << u"jpeg"_s
                          << QStringList{u"Failed to save image as JPEG, fallback to TIFF"_s,
                                         u"Failed to save fallback TIFF image: File too large"_s};
    QTest::newRow("tiff") << u"tiff"_s
                          << QStringList{u"Failed to save TIFF image: File too large"_s};
}

void ImageStorageTest::whatCannotBeSavedHasAThumbnailAllTheSame()
{
    QFETCH(QString, format);
    QFETCH(QStringList, lines);
    setFormat(format);
    const QByteArray tiff = tiffOf({900, 900});
    const FileSizeLimit limit(50'000);
    const auto saved = save(tiff);
    QVERIFY(!saved.fileName);
    // Nothing is left of what was begun.
    QCOMPARE(allFiles(), QStringList{saved.thumbnailFileName.value()});
    QCOMPARE(m_printed->lines(), lines);
}

void ImageStorageTest::aPictureMayBeTooLargeForItsFallback()
{
    const QByteArray tiff = tiffOf({900, 900});
    const FileSizeLimit limit(1'500'000);
    QVERIFY(tiff.size() > 1'500'000);
    QVERIFY(save(tiff).fileName);
    QCOMPARE(m_printed->lines(), QStringList());
}

void ImageStorageTest::deletingTakesPictureAndThumbnail()
{
    touch({u"a.jpg"_s, u"other.jpg"_s, u"a_thumb.jpg"_s, u"b.jpg"_s, u"b_thumb.jpg"_s});
    m_storage->deleteImageFiles({entry(u"a.jpg"_s, u"other.jpg"_s)}, {});
    // The thumbnail that the record names is the one that goes.
    QCOMPARE(allFiles(), (QStringList{u"a_thumb.jpg"_s, u"b.jpg"_s, u"b_thumb.jpg"_s}));
}

void ImageStorageTest::deletingTakesTheDerivedThumbnailOfARecordThatLostItsName()
{
    touch({u"2026.a.tiff"_s, u"2026.a_thumb.jpg"_s, u"b_thumb.jpg"_s});
    m_storage->deleteImageFiles({entry(u"2026.a.tiff"_s)}, {});
    QCOMPARE(allFiles(), QStringList{u"b_thumb.jpg"_s});
}

void ImageStorageTest::deletingSparesWhatAnotherEntryNames()
{
    touch({u"a.jpg"_s, u"a_thumb.jpg"_s, u"b.jpg"_s, u"b_thumb.jpg"_s});
    m_storage->deleteImageFiles({entry(u"a.jpg"_s), entry(u"b.jpg"_s)}, {entry(u"a.jpg"_s)});
    QCOMPARE(allFiles(), (QStringList{u"a.jpg"_s, u"a_thumb.jpg"_s}));
}

void ImageStorageTest::deletingStaysInTheDirectory()
{
    QFile outside(m_directory->filePath(u"outside.jpg"_s));
    QVERIFY(outside.open(QIODevice::WriteOnly));
    m_storage->deleteImageFiles({entry(u"../outside.jpg"_s), entry(outside.fileName())}, {});
    QVERIFY(outside.exists());
}

void ImageStorageTest::deletingWhatIsNotThereIsNoTrouble()
{
    m_storage->deleteImageFiles({entry(u"lost.jpg"_s), entry({}), entry(QString())}, {});
    QCOMPARE(m_printed->lines(), QStringList());
}

void ImageStorageTest::theSweepTakesWhatNobodyNames()
{
    touch({u"a.jpg"_s, u"a_thumb.jpg"_s, u"named.jpg"_s, u"b.png"_s, u"b_thumb.jpg"_s,
           u"notes.txt"_s, u".hidden"_s});
    m_storage->removeUnreferencedFiles(m_storage->fileNames(),
                                       {entry(u"a.jpg"_s, u"named.jpg"_s)});
    QCOMPARE(allFiles(), (QStringList{u".hidden"_s, u"a.jpg"_s, u"a_thumb.jpg"_s, u"named.jpg"_s}));
}

void ImageStorageTest::theSweepLeavesFilesThatAreStillToBeNamed()
{
    auto saved = save(tiffOf({30, 20}));
    const auto copy = saved;
    touch({u"b.png"_s});
    QCOMPARE(m_storage->fileNames(), QStringList{u"b.png"_s});
    saved = {};
    QCOMPARE(m_storage->fileNames(), QStringList{u"b.png"_s});
    m_storage->deleteImageFiles(copy);
    QCOMPARE(allFiles(), QStringList{u"b.png"_s});

    const QString later = save(tiffOf({30, 20})).fileName.value();
    QVERIFY(m_storage->fileNames().contains(later));
}

QTEST_GUILESS_MAIN(ImageStorageTest)
#include "ImageStorageTest.moc"
