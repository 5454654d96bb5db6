#pragma once

#include "core/ClipboardItem.h"

#include <QSet>

class Clock;
class ImageCodec;
class QImage;
class UserDefaults;

/// The image files of the history: one flat directory that holds nothing else. Any thread.
///
/// A picture and its thumbnail have names of one base, the local time and eight random digits, so
/// that the thumbnail's name follows from the picture's.
class ImageStorage
{
public:
    /// \a codec, \a defaults and \a clock must outlive the storage. The directory is not created
    /// before a picture is saved.
    ImageStorage(QString directory, const ImageCodec &codec, const UserDefaults &defaults,
                 const Clock &clock);
    ~ImageStorage();
    ImageStorage(ImageStorage &&) noexcept;

    struct SavedImage
    {
        std::optional<QString> fileName; ///< Absent if no file holds the picture.
        std::optional<QString> thumbnailFileName;
        /// While it is held, fileNames() leaves the new files out, which nobody names yet.
        std::shared_ptr<const void> claim;
    };

    QString directory() const { return m_directory; }

    /// Stores the picture in the format of the settings, and a thumbnail of it. What a name is
    /// returned for has reached the disk. A format that fails gives way to the TIFF itself; failures
    /// are printed.
    SavedImage saveImage(const QByteArray &tiff) const;

    /// Removes the pictures and the thumbnails of \a gone, as far as they exist and no element of
    /// \a kept names them.
    void deleteImageFiles(const ClipboardItemList &gone, const ClipboardItemList &kept) const;

    /// Removes what saveImage() has made.
    void deleteImageFiles(const SavedImage &image) const;

    /// Removes those of \a fileNames that no element of \a items names, but for names that begin
    /// with a dot.
    void removeUnreferencedFiles(const QStringList &fileNames,
                                 const ClipboardItemList &items) const;

    /// What the directory holds now, but for files that somebody is about to name.
    QStringList fileNames() const;

private:
    struct Claims;

    std::shared_ptr<const void> claim(const QString &base) const;
    QString newBase() const;
    std::optional<QString> savePicture(const QString &base, const QByteArray &tiff,
                                       const std::optional<QImage> &image) const;
    std::optional<QString> saveThumbnail(const QString &base,
                                         const std::optional<QImage> &image) const;
    std::optional<QString> written(const QString &name, const QByteArray &bytes,
                                   const QString &complaint = {}) const;
    void remove(const QString &name) const;

    QString m_directory;
    const ImageCodec &m_codec;
    const UserDefaults &m_defaults;
    const Clock &m_clock;
    /// Shared with the claims that were given out.
    std::shared_ptr<Claims> m_claims;
};

/// The name of the thumbnail of \a item, which follows from that of the picture if the record does
/// not tell it; absent if it has neither. There need be no such file.
std::optional<QString> thumbnailFileName(const ClipboardItem &item);

/// The names of all files that belong to \a items: pictures, thumbnails, and the thumbnails that
/// follow from the name of a picture whether the record names them or not.
QSet<QString> imageFileNames(const ClipboardItemList &items);
