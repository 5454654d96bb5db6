#pragma once

#include "core/ClipboardItem.h"

#include <QSet>

/// The image files of the history: one flat directory that holds nothing else.
class ImageStorage
{
public:
    explicit ImageStorage(QString directory) : m_directory(std::move(directory)) {}

    struct SavedImage
    {
        std::optional<QString> fileName; ///< Absent if no file holds the picture.
        std::optional<QString> thumbnailFileName;
    };

    QString directory() const { return m_directory; }

    /// Stores the picture and its thumbnail. Pictures are not put into files yet: both names are
    /// absent, and the entry keeps its bytes in memory.
    SavedImage saveImage(const QByteArray &tiff) const;

    /// Removes the picture and the thumbnail that \a item names, as far as they exist.
    void deleteImageFiles(const ClipboardItem &item) const;

    /// Removes every file that no element of \a items names, but for names that begin with a dot.
    void removeUnreferencedFiles(const QStringList &fileNames,
                                 const ClipboardItemList &items) const;

    /// What the directory holds now.
    QStringList fileNames() const;

private:
    QString m_directory;
};

/// The names of all files that belong to \a items: pictures, thumbnails, and the thumbnails that
/// follow from the name of a picture whether the record names them or not.
QSet<QString> imageFileNames(const ClipboardItemList &items);
