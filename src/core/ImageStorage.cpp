#include "core/ImageStorage.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

/// The thumbnail that belongs to an image file, whether the record names it or not.
QString derivedThumbnailName(const QString &imageFileName)
{
    return QFileInfo(imageFileName).completeBaseName() + u"_thumb.jpg"_s;
}

} // namespace

ImageStorage::SavedImage ImageStorage::saveImage(const QByteArray &) const
{
    return {};
}

void ImageStorage::deleteImageFiles(const ClipboardItem &item) const
{
    const QDir directory(m_directory);
    if (item.imageFileName)
        QFile::remove(directory.filePath(*item.imageFileName));
    if (item.imageThumbnailFileName)
        QFile::remove(directory.filePath(*item.imageThumbnailFileName));
    else if (item.imageFileName)
        QFile::remove(directory.filePath(derivedThumbnailName(*item.imageFileName)));
}

void ImageStorage::removeUnreferencedFiles(const QStringList &fileNames,
                                           const ClipboardItemList &items) const
{
    const QDir directory(m_directory);
    const QSet<QString> referenced = imageFileNames(items);
    for (const QString &name : fileNames) {
        if (!name.startsWith(u'.') && !referenced.contains(name))
            QFile::remove(directory.filePath(name));
    }
}

QStringList ImageStorage::fileNames() const
{
    return QDir(m_directory).entryList(QDir::Files | QDir::System);
}

QSet<QString> imageFileNames(const ClipboardItemList &items)
{
    QSet<QString> names;
    for (const ClipboardItemPointer &item : items) {
        if (item->imageFileName) {
            names.insert(*item->imageFileName);
            names.insert(derivedThumbnailName(*item->imageFileName));
        }
        if (item->imageThumbnailFileName)
            names.insert(*item->imageThumbnailFileName);
    }
    return names;
}
