#include "window/RowPictures.h"

#include "core/ImageStorage.h"
#include "foundation/RegularFile.h"
#include "platform/ImageCodec.h"
#include "window/RowThumbnail.h"

#include <QDir>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Two or three screens of rows at the highest resolution, and five hundred rows at the usual one.
constexpr qsizetype kMaxBytes = 2 << 20;
/// What it costs at least to remember something, even that there is no picture.
constexpr qsizetype kMinCost = 512;
/// More rows than the tallest screen shows at once.
constexpr std::size_t kMaxWaiting = 64;
/// Without any compression 200 by 200 pixels have less.
constexpr qint64 kMaxFileBytes = 256 << 10;

std::optional<QByteArray> smallFile(const QString &path)
{
    const auto file = RegularFile::open(path);
    return file && file->size() <= kMaxFileBytes ? file->read() : std::nullopt;
}

} // namespace

RowPictures::RowPictures(QString imagesDirectory, const ImageCodec &codec, QObject *parent)
    : QObject(parent)
    , m_imagesDirectory(std::move(imagesDirectory))
    , m_codec(codec)
    , m_thumbnails(kMaxBytes)
    , m_queue("tessarine.row-pictures", kMaxWaiting)
{
}

RowPictures::~RowPictures() = default;

QImage RowPictures::thumbnail(const ClipboardItem &item, qreal devicePixelRatio)
{
    const Key key{thumbnailName(item), qRound(kSide * devicePixelRatio)};
    if (key.name.isEmpty())
        return {};
    if (const QImage *known = m_thumbnails.object(key))
        return *known;
    if (!m_requested.contains(key))
        request(key, item, devicePixelRatio);
    // A picture that has just got its file was shown before that.
    const QImage *earlier = m_thumbnails.object({uuidString(item.id), key.side});
    return earlier ? *earlier : QImage();
}

QString RowPictures::thumbnailName(const ClipboardItem &item)
{
    if (const auto name = thumbnailFileName(item))
        return *name;
    return item.imageRepresentation ? uuidString(item.id) : QString();
}

void RowPictures::request(const Key &key, const ClipboardItem &item, qreal devicePixelRatio)
{
    const auto make = [this, key, devicePixelRatio](const std::optional<QByteArray> &file) {
        const auto picture = file ? m_codec.imageFromPicture(*file) : std::nullopt;
        const QImage thumbnail
            = picture ? makeRowThumbnail(*picture, key.side, devicePixelRatio) : QImage();
        QMetaObject::invokeMethod(
            this, [this, key, thumbnail] { keep(key, thumbnail); }, Qt::QueuedConnection);
    };
    m_requested.insert(key);
    m_queue.enqueue({.fetch = fetcher(key.name, item),
                     .use = make,
                     .onDropped = [this, key] { m_requested.remove(key); }});
}

NewestFirstQueue::Fetch RowPictures::fetcher(const QString &name, const ClipboardItem &item) const
{
    if (!thumbnailFileName(item))
        return [picture = item.imageRepresentation] { return picture; };
    // A record that was tampered with must not reach files elsewhere.
    if (name.contains(u'/'))
        return [] { return std::nullopt; };
    return [path = QDir(m_imagesDirectory).filePath(name)] { return smallFile(path); };
}

void RowPictures::keep(const Key &key, const QImage &thumbnail)
{
    m_requested.remove(key);
    m_thumbnails.insert(key, new QImage(thumbnail), std::max(thumbnail.sizeInBytes(), kMinCost));
    if (!thumbnail.isNull())
        emit thumbnailArrived(key.name);
}
