#include "core/DiskUsage.h"

#include "core/ImageStorage.h"

#include <QDir>
#include <QFileInfo>

namespace {

template <typename Bytes>
qint64 sizeOf(const std::optional<Bytes> &bytes)
{
    return bytes ? bytes->size() : 0;
}

qint64 contentSize(const ClipboardItem &item)
{
    const qint64 textSize = item.stringValue ? item.stringValue->byteCount() : 0;
    const qint64 pathSize = item.filePath ? item.filePath->toUtf8().size() : 0;
    return textSize + pathSize + sizeOf(item.htmlRepresentation) + sizeOf(item.rtfRepresentation)
        + sizeOf(item.fileBookmarkData);
}

} // namespace

qint64 diskUsageBytes(const ClipboardItemList &items, const QString &imagesDirectory)
{
    qint64 sum = 0;
    for (const ClipboardItemPointer &item : items)
        sum += contentSize(*item);

    const QDir directory(imagesDirectory);
    for (const QString &name : imageFileNames(items)) {
        const QFileInfo file(directory.filePath(name));
        if (file.isFile())
            sum += file.size();
    }
    return sum;
}
