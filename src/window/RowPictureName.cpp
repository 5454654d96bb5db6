#include "window/RowPictureName.h"

#include "core/ImageStorage.h"

RowPictureName contentPicture(const ClipboardItem &item)
{
    using Kind = RowPictureName::Kind;
    if (item.contentType == ClipboardContentType::File && item.filePath)
        return {Kind::FileIcon, *item.filePath};
    if (item.contentType != ClipboardContentType::Image)
        return {};
    if (const auto name = thumbnailFileName(item))
        return {Kind::Thumbnail, *name};
    // A picture that has no file yet is called like its entry.
    return {Kind::Thumbnail, item.imageRepresentation ? uuidString(item.id) : QString()};
}

RowPictureName sourcePicture(const ClipboardItem &item)
{
    return {RowPictureName::Kind::SourceIcon, item.sourceAppBundleID.value_or(QString())};
}
