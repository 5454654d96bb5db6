#include "window/RowPictures.h"

#include "core/ImageStorage.h"
#include "foundation/RegularFile.h"
#include "platform/DesktopIcons.h"
#include "platform/ImageCodec.h"
#include "window/RowIcon.h"
#include "window/RowThumbnail.h"

#include <QDir>

#include <algorithm>
#include <functional>
#include <optional>

using Kind = RowPictureName::Kind;

namespace {

constexpr int kContentSide = 32;
constexpr int kSourceSide = 12;
/// Two or three screens of rows at the highest resolution, and five hundred rows at the usual one.
constexpr qsizetype kMaxBytes = 2 << 20;
/// What it costs at least to remember something, even that there is no picture.
constexpr qsizetype kMinCost = 512;
/// More than the tallest screen shows at once.
constexpr std::size_t kMaxWaiting = 128;
/// Without any compression 200 by 200 pixels have less.
constexpr qint64 kMaxThumbnailBytes = 256 << 10;
/// Thumbnails have 200; a file of that size may hold ten thousand.
constexpr int kMaxThumbnailSide = 1024;

std::optional<QByteArray> smallFile(const QString &path)
{
    const auto file = RegularFile::open(path);
    return file ? file->readUpTo(kMaxThumbnailBytes) : std::nullopt;
}

/// Makes what a row shows of the bytes that were fetched for it.
using Maker = std::function<QImage(const QByteArray &bytes)>;

Maker makerOf(Kind kind, const ClipboardItem &item, int side, qreal devicePixelRatio,
              const ImageCodec &codec)
{
    if (kind != Kind::Thumbnail) {
        return [=, &codec](const QByteArray &file) {
            return makeRowIcon(file, side, devicePixelRatio, codec);
        };
    }
    const bool isFile = thumbnailFileName(item).has_value();
    return [=, &codec](const QByteArray &bytes) {
        const std::optional<QImage> picture = isFile
            ? codec.imageFromSmallPicture(bytes, kMaxThumbnailSide)
            : codec.imageFromPicture(bytes);
        return picture ? makeRowThumbnail(*picture, side, devicePixelRatio) : QImage();
    };
}

} // namespace

RowPictures::RowPictures(QString imagesDirectory, const ImageCodec &codec,
                         std::shared_ptr<const DesktopIcons> icons, QObject *parent)
    : QObject(parent)
    , m_imagesDirectory(std::move(imagesDirectory))
    , m_codec(codec)
    , m_icons(std::move(icons))
    , m_pictures(kMaxBytes)
    , m_queue("tessarine.row-pictures", kMaxWaiting)
{
}

RowPictures::~RowPictures() = default;

QImage RowPictures::content(const ClipboardItem &item, qreal devicePixelRatio)
{
    const Key key{contentPicture(item), qRound(kContentSide * devicePixelRatio)};
    request(key, item, devicePixelRatio);
    return known(key, item);
}

QImage RowPictures::source(const ClipboardItem &item, qreal devicePixelRatio)
{
    const Key key{sourcePicture(item), qRound(kSourceSide * devicePixelRatio)};
    request(key, item, devicePixelRatio);
    return m_sourceIcons.value(key);
}

void RowPictures::forgetMissingSources()
{
    m_sourceIcons.removeIf([](const auto &icon) { return icon->isNull(); });
}

QImage RowPictures::known(const Key &key, const ClipboardItem &item)
{
    if (key.name.isEmpty())
        return {};
    if (const QImage *picture = m_pictures.object(key))
        return *picture;
    // A picture that has just got its file was shown before that.
    const QImage *earlier
        = m_pictures.object({{Kind::Thumbnail, uuidString(item.id)}, key.side});
    return earlier ? *earlier : QImage();
}

/// Does nothing if the picture is at hand, is on its way, or is known not to be had.
void RowPictures::request(const Key &key, const ClipboardItem &item, qreal devicePixelRatio)
{
    if (key.name.isEmpty() || m_sourceIcons.contains(key) || m_pictures.contains(key)
        || m_requested.contains(key))
        return;
    m_requested.insert(key);
    const auto make = [this, key, maker = makerOf(key.name.kind, item, key.side, devicePixelRatio,
                                                  m_codec)](const std::optional<QByteArray> &file) {
        const QImage picture = file ? maker(*file) : QImage();
        QMetaObject::invokeMethod(
            this, [this, key, picture] { keep(key, picture); }, Qt::QueuedConnection);
    };
    m_queue.enqueue({.fetch = fetcher(key, item),
                     .use = make,
                     .onDropped = [this, key] { m_requested.remove(key); }});
}

NewestFirstQueue::Fetch RowPictures::fetcher(const Key &key, const ClipboardItem &item) const
{
    const QString &name = key.name.text;
    switch (key.name.kind) {
    case Kind::Thumbnail: return thumbnailFetcher(name, item);
    case Kind::FileIcon:
        return [icons = m_icons, name, side = key.side] { return icons->fileIcon(name, side); };
    case Kind::SourceIcon:
        return [icons = m_icons, name, side = key.side] {
            return icons->applicationIcon(name, side);
        };
    }
    return {};
}

NewestFirstQueue::Fetch RowPictures::thumbnailFetcher(const QString &name,
                                                      const ClipboardItem &item) const
{
    if (!thumbnailFileName(item))
        return [picture = item.imageRepresentation] { return picture; };
    // A record that was tampered with must not reach files elsewhere.
    if (name.contains(u'/'))
        return [] { return std::nullopt; };
    return [path = QDir(m_imagesDirectory).filePath(name)] { return smallFile(path); };
}

void RowPictures::keep(const Key &key, const QImage &picture)
{
    m_requested.remove(key);
    if (key.name.kind == Kind::SourceIcon)
        m_sourceIcons.insert(key, picture);
    else
        m_pictures.insert(key, new QImage(picture), std::max(picture.sizeInBytes(), kMinCost));
    if (!picture.isNull())
        emit arrived(key.name);
}
