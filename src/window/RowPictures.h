#pragma once

#include "foundation/NewestFirstQueue.h"

#include <QCache>
#include <QImage>
#include <QObject>
#include <QSet>

class ImageCodec;
struct ClipboardItem;

/// The small pictures in the rows of the list, ready to be drawn; as many of them as were shown
/// lately.
///
/// What is not at hand is made elsewhere, for the rows drawn last first. Nothing waits for it.
class RowPictures : public QObject
{
    Q_OBJECT

public:
    /// The longer side of a thumbnail.
    static constexpr int kSide = 32;

    /// \a codec must outlive the object.
    RowPictures(QString imagesDirectory, const ImageCodec &codec, QObject *parent = nullptr);
    ~RowPictures() override;

    /// The thumbnail of \a item, see makeRowThumbnail(). Null if it has none, or none yet; in that
    /// case thumbnailArrived() follows.
    QImage thumbnail(const ClipboardItem &item, qreal devicePixelRatio);

    /// Tells the thumbnails of different entries apart; empty if \a item has none.
    static QString thumbnailName(const ClipboardItem &item);

signals:
    /// The entries of which thumbnailName() is \a name can be drawn with their thumbnail.
    void thumbnailArrived(const QString &name);

private:
    struct Key
    {
        QString name;
        int side; ///< In device pixels.

        friend bool operator==(const Key &, const Key &) = default;
        friend size_t qHash(const Key &key, size_t seed)
        {
            return qHashMulti(seed, key.name, key.side);
        }
    };

    void request(const Key &key, const ClipboardItem &item, qreal devicePixelRatio);
    NewestFirstQueue::Fetch fetcher(const QString &name, const ClipboardItem &item) const;
    void keep(const Key &key, const QImage &thumbnail);

    QString m_imagesDirectory;
    const ImageCodec &m_codec;
    QCache<Key, QImage> m_thumbnails; ///< Null images for what cannot be had.
    QSet<Key> m_requested;
    NewestFirstQueue m_queue; ///< Ends first, for what it makes comes here.
};
