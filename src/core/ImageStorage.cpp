#include "core/ImageStorage.h"

#include "core/Thumbnail.h"
#include "foundation/Log.h"
#include "foundation/PrivateFiles.h"
#include "foundation/UserDefaults.h"
#include "platform/Clock.h"
#include "platform/ImageCodec.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <mutex>
#include <system_error>

using namespace Qt::StringLiterals;

/// The bases of files that are being written, or whose names are on their way to an entry.
struct ImageStorage::Claims
{
    std::mutex mutex; ///< Guards the set.
    QSet<QString> bases;
};

namespace {

constexpr double kDefaultJPEGCompressionQuality = 0.9;
constexpr double kThumbnailCompressionFactor = 0.7;
constexpr int kThumbnailLongestSide = 200;
constexpr qsizetype kRandomDigits = 8;

enum class Format { Jpeg, Png, Tiff };

Format formatNamed(const QString &name)
{
    if (name == "png"_L1)
        return Format::Png;
    return name == "tiff"_L1 ? Format::Tiff : Format::Jpeg;
}

QString thumbnailName(const QString &base)
{
    return base + u"_thumb.jpg"_s;
}

/// The thumbnail that belongs to an image file, whether the record names it or not.
QString derivedThumbnailName(const QString &imageFileName)
{
    return thumbnailName(QFileInfo(imageFileName).completeBaseName());
}

QString baseOf(const QString &fileName)
{
    QString base = QFileInfo(fileName).completeBaseName();
    if (base.endsWith("_thumb"_L1))
        base.chop(6);
    return base;
}

/// Creates the file. The directory may have been removed while the program runs, and is then made
/// anew.
void writeIn(const QString &directory, const QString &name, const QByteArray &bytes)
{
    const QString path = QDir(directory).filePath(name);
    try {
        writePrivateFile(path, bytes);
    } catch (const std::system_error &error) {
        if (error.code() != std::errc::no_such_file_or_directory
            || !ensurePrivateDirectory(directory))
            throw;
        writePrivateFile(path, bytes);
    }
}

/// The files that go with \a item.
void addNames(const ClipboardItem &item, QSet<QString> &names)
{
    if (item.imageFileName)
        names.insert(*item.imageFileName);
    if (const auto name = thumbnailFileName(item))
        names.insert(*name);
}

} // namespace

ImageStorage::ImageStorage(QString directory, const ImageCodec &codec,
                           const UserDefaults &defaults, const Clock &clock)
    : m_directory(std::move(directory))
    , m_codec(codec)
    , m_defaults(defaults)
    , m_clock(clock)
    , m_claims(std::make_shared<Claims>())
{
}

ImageStorage::~ImageStorage() = default;
ImageStorage::ImageStorage(ImageStorage &&) noexcept = default;

ImageStorage::SavedImage ImageStorage::saveImage(const QByteArray &tiff) const
{
    const QString base = newBase();
    SavedImage saved;
    saved.claim = claim(base);
    // Once for both files: it is a tenth of the work, and the largest piece of memory.
    const std::optional<QImage> image = m_codec.imageFromPicture(tiff);
    saved.fileName = savePicture(base, tiff, image);
    saved.thumbnailFileName = saveThumbnail(base, image);
    return saved;
}

void ImageStorage::deleteImageFiles(const ClipboardItemList &gone,
                                    const ClipboardItemList &kept) const
{
    QSet<QString> names;
    for (const ClipboardItemPointer &item : gone)
        addNames(*item, names);
    if (names.isEmpty())
        return;
    names.subtract(imageFileNames(kept));
    for (const QString &name : std::as_const(names))
        remove(name);
}

void ImageStorage::deleteImageFiles(const SavedImage &image) const
{
    if (image.fileName)
        remove(*image.fileName);
    if (image.thumbnailFileName)
        remove(*image.thumbnailFileName);
}

void ImageStorage::removeUnreferencedFiles(const QStringList &fileNames,
                                           const ClipboardItemList &items) const
{
    const QSet<QString> referenced = imageFileNames(items);
    for (const QString &name : fileNames) {
        if (!name.startsWith(u'.') && !referenced.contains(name))
            remove(name);
    }
}

QStringList ImageStorage::fileNames() const
{
    QStringList names = QDir(m_directory).entryList(QDir::Files | QDir::System);
    // Claims are looked at after the files, and before the caller looks at the entries: what has no
    // claim any more is named by then.
    const std::lock_guard lock(m_claims->mutex);
    names.removeIf([this](const QString &name) { return m_claims->bases.contains(baseOf(name)); });
    return names;
}

std::shared_ptr<const void> ImageStorage::claim(const QString &base) const
{
    {
        const std::lock_guard lock(m_claims->mutex);
        m_claims->bases.insert(base);
    }
    return {nullptr, [claims = m_claims, base](const void *) {
                const std::lock_guard lock(claims->mutex);
                claims->bases.remove(base);
            }};
}

QString ImageStorage::newBase() const
{
    const qint64 milliseconds = microsecondsSinceEpoch(m_clock.now()) / 1000;
    const QString time = QDateTime::fromMSecsSinceEpoch(milliseconds)
                             .toString(u"yyyy-MM-dd_HH-mm-ss"_s);
    const QString digits = QUuid::createUuid().toString(QUuid::Id128).left(kRandomDigits);
    return time + u'_' + digits.toUpper();
}

std::optional<QString> ImageStorage::savePicture(const QString &base, const QByteArray &tiff,
                                                 const std::optional<QImage> &image) const
{
    const QString tiffName = base + u".tiff"_s;
    const Format format
        = formatNamed(m_defaults.string(u"image.storage.format"_s).value_or(QString()));
    if (format == Format::Tiff)
        return written(tiffName, tiff, u"Failed to save TIFF image: "_s);

    const bool isPng = format == Format::Png;
    std::optional<QByteArray> file;
    if (image) {
        file = isPng ? m_codec.pngFromImage(*image)
                     : m_codec.jpegFromImage(*image, kDefaultJPEGCompressionQuality);
    }
    if (auto name = file ? written(base + (isPng ? u".png"_s : u".jpg"_s), *file) : std::nullopt)
        return name;
    printLine(u"Failed to save image as %1, fallback to TIFF"_s.arg(isPng ? u"PNG"_s : u"JPEG"_s));
    return written(tiffName, tiff, u"Failed to save fallback TIFF image: "_s);
}

std::optional<QString> ImageStorage::saveThumbnail(const QString &base,
                                                   const std::optional<QImage> &image) const
{
    if (!image)
        return std::nullopt;
    const auto file = m_codec.jpegFromImage(thumbnailOf(*image, kThumbnailLongestSide),
                                           kThumbnailCompressionFactor);
    if (!file)
        return std::nullopt;
    return written(thumbnailName(base), *file, u"Failed to save thumbnail: "_s);
}

std::optional<QString> ImageStorage::written(const QString &name, const QByteArray &bytes,
                                             const QString &complaint) const
{
    try {
        writeIn(m_directory, name, bytes);
        return name;
    } catch (const std::system_error &error) {
        if (!complaint.isEmpty())
            printLine(complaint + QString::fromUtf8(error.what()));
        return std::nullopt;
    }
}

void ImageStorage::remove(const QString &name) const
{
    // A record that was tampered with must not reach files elsewhere.
    if (!name.contains(u'/'))
        QFile::remove(QDir(m_directory).filePath(name));
}

std::optional<QString> thumbnailFileName(const ClipboardItem &item)
{
    if (item.imageThumbnailFileName || !item.imageFileName)
        return item.imageThumbnailFileName;
    return derivedThumbnailName(*item.imageFileName);
}

QSet<QString> imageFileNames(const ClipboardItemList &items)
{
    QSet<QString> names;
    for (const ClipboardItemPointer &item : items) {
        addNames(*item, names);
        if (item->imageFileName)
            names.insert(derivedThumbnailName(*item->imageFileName));
    }
    return names;
}
