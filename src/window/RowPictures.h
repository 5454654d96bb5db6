#pragma once

#include "foundation/NewestFirstQueue.h"
#include "window/RowPictureName.h"

#include <QCache>
#include <QHash>
#include <QImage>
#include <QObject>
#include <QSet>

#include <memory>

class DesktopIcons;
class ImageCodec;

/// The small pictures in the rows of the list, ready to be drawn: as many of them as were shown
/// lately, and all icons of programs.
///
/// What is not at hand is made elsewhere, for the rows drawn last first. Nothing waits for it.
class RowPictures : public QObject
{
    Q_OBJECT

public:
    /// \a codec must outlive the object. \a icons is asked by work that may outlive it.
    RowPictures(QString imagesDirectory, const ImageCodec &codec,
                std::shared_ptr<const DesktopIcons> icons, QObject *parent = nullptr);
    ~RowPictures() override;

    // Null if there is no such picture, or none yet; in that case arrived() follows.

    /// The contentPicture() of \a item, see makeRowThumbnail() and makeRowIcon().
    QImage content(const ClipboardItem &item, qreal devicePixelRatio);
    /// The sourcePicture() of \a item, see makeRowIcon().
    QImage source(const ClipboardItem &item, qreal devicePixelRatio);

    /// From now on programs that had no icon are asked for anew: they may have been installed
    /// since.
    void forgetMissingSources();

signals:
    void arrived(const RowPictureName &name);

private:
    struct Key
    {
        RowPictureName name;
        int side; ///< In device pixels.

        friend bool operator==(const Key &, const Key &) = default;
        friend size_t qHash(const Key &key, size_t seed)
        {
            return qHashMulti(seed, key.name, key.side);
        }
    };

    QImage known(const Key &key, const ClipboardItem &item);
    void request(const Key &key, const ClipboardItem &item, qreal devicePixelRatio);
    NewestFirstQueue::Fetch fetcher(const Key &key, const ClipboardItem &item) const;
    NewestFirstQueue::Fetch thumbnailFetcher(const QString &name, const ClipboardItem &item) const;
    void keep(const Key &key, const QImage &picture);

    QString m_imagesDirectory;
    const ImageCodec &m_codec;
    std::shared_ptr<const DesktopIcons> m_icons;
    QHash<Key, QImage> m_sourceIcons; ///< For good: programs are few. Null for those without one.
    QCache<Key, QImage> m_pictures; ///< Null images for what cannot be had.
    QSet<Key> m_requested;
    NewestFirstQueue m_queue; ///< Ends first, for what it makes comes here.
};
