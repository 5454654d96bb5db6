#pragma once

#include "core/ClipboardItem.h"

/// A copied text with its hash, as capture and insertion leave it.
inline ClipboardItem textItem(const QString &text, Timestamp time)
{
    ClipboardItem item = makeItem(ClipboardContentType::Text, time);
    item.stringValue = Utf8Text(text);
    item.contentHash = computeContentHash(item);
    return item;
}

/// An entry in which no field is absent or has its default, but for the picture in memory and the
/// mark of deletion.
inline ClipboardItem itemWithEveryField(Timestamp time)
{
    using namespace std::chrono_literals;
    ClipboardItem item = makeItem(ClipboardContentType::File, time);
    item.stringValue = Utf8Text(QStringLiteral("naïve 文字 \"quoted\" \U0001F600\n\ttabbed"));
    item.htmlRepresentation = QByteArray("<b>\0\xFF</b>", 9);
    item.rtfRepresentation = QByteArray("{\\rtf1 \xE4}");
    item.imageFileName = QStringLiteral("picture.jpg");
    item.imageThumbnailFileName = QStringLiteral("picture_thumb.jpg");
    item.imageDigest = QByteArray(64, 'd');
    item.filePath = QStringLiteral("/home/someone/Ünïcode/a b.TXT");
    item.fileBookmarkData = QByteArray("\0\1\2\xFE", 4);
    item.fileTypes = {QStringLiteral("TXT"), QString(), QStringLiteral("md")};
    item.isFavorite = true;
    item.cloudRecordID = QStringLiteral("record-7");
    item.syncStatus = SyncStatus::Failed;
    item.lastSyncTime = time + 5s;
    item.sourceAppBundleID = QStringLiteral("org.example.Editor");
    item.isRemoteClipboard = true;
    item.updatedAt = time + 60s;
    item.contentHash = QByteArray(64, 'c');
    item.tags = {QStringLiteral("work"), QStringLiteral("später"), QStringLiteral("a \"b\", c")};
    return item;
}
