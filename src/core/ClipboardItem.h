#pragma once

#include "foundation/Timestamp.h"
#include "foundation/Utf8Text.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <QUuid>

#include <memory>
#include <optional>

/// What kind of thing was copied. Nothing makes Mixed any more; stored entries may still be.
enum class ClipboardContentType { Text, Image, File, Url, Mixed };

/// Where an entry stands towards a synchronisation that may come later.
enum class SyncStatus { Local, Pending, Synced, Failed };

/// The stored name of \a type: "text", "image", "file", "url" or "mixed".
QString rawValue(ClipboardContentType type);
QString rawValue(SyncStatus status);
std::optional<ClipboardContentType> contentTypeFromRaw(QStringView raw);
std::optional<SyncStatus> syncStatusFromRaw(QStringView raw);

/// \a id as it is printed and stored: upper case, without braces.
QString uuidString(const QUuid &id);

/// One entry of the history. Copies are independent of each other.
struct ClipboardItem
{
    QUuid id;
    Timestamp timestamp; ///< When it was copied; the history is ordered by this.
    ClipboardContentType contentType = ClipboardContentType::Text;
    std::optional<Utf8Text> stringValue; ///< For files the names, joined by ", ".
    std::optional<LazyBytes> htmlRepresentation; ///< As it was copied, byte for byte.
    std::optional<LazyBytes> rtfRepresentation; ///< As it was copied, byte for byte.
    /// TIFF of a picture that has no file yet. In memory only.
    std::optional<QByteArray> imageRepresentation;
    std::optional<QString> imageFileName; ///< Inside the images directory.
    std::optional<QString> imageThumbnailFileName; ///< Inside the images directory.
    std::optional<QByteArray> imageDigest; ///< sha256Hex() of the TIFF as it was copied.
    std::optional<QString> filePath; ///< Of the first copied file; see FilePath.
    std::optional<QByteArray> fileBookmarkData; ///< Of the first copied file.
    QStringList fileTypes; ///< The extension of every file, empty where it has none.
    bool isFavorite = false;
    std::optional<QString> cloudRecordID;
    SyncStatus syncStatus = SyncStatus::Local;
    std::optional<Timestamp> lastSyncTime;
    std::optional<QString> sourceAppBundleID; ///< As the desktop told it, not lower-cased.
    bool isRemoteClipboard = false;
    Timestamp updatedAt;
    QByteArray contentHash; ///< See computeContentHash().
    std::optional<Timestamp> deletedAt; ///< Set on tombstones, which only stores hold.
    QStringList tags; ///< Names.

    friend bool operator==(const ClipboardItem &, const ClipboardItem &) = default;

    /// Whether the entry holds what \a other holds: by the hash, else by the fields that matter for
    /// the type.
    bool hasSameContent(const ClipboardItem &other) const;

    /// The text on one line, cut to \a limit characters, "..." after a cut. Absent without text.
    std::optional<QString> singleLinePreview(qsizetype limit) const;

    enum class ContentHash { Keep, Refresh };

    /// Notes a change at \a now. With Refresh the hash is computed anew and the entry is no
    /// tombstone any more.
    void markChanged(ContentHash contentHash, Timestamp now);

    /// Has a later synchronisation look at the entry again, if one ever knew it.
    void markForSync();
};

/// A new entry of \a type, copied at \a now: a fresh id, updatedAt equal to the time, no hash yet.
ClipboardItem makeItem(ClipboardContentType type, Timestamp now);

/// 64 hexadecimal digits that stand for the content: the same text with other line ends or other
/// white space around it has the same hash.
QByteArray computeContentHash(const ClipboardItem &item);

/// An entry of the list. Shared, since every reader's copy of the list would otherwise copy it, and
/// constant: a change puts a new entry in its place.
using ClipboardItemPointer = std::shared_ptr<const ClipboardItem>;

/// The history, newest first. Copies share their elements.
using ClipboardItemList = QList<ClipboardItemPointer>;

/// The index of the first element of \a items that holds what \a item holds; absent if none does.
std::optional<qsizetype> firstDuplicateIndex(const ClipboardItemList &items,
                                             const ClipboardItem &item);

/// The index of the entry \a id, -1 if there is none. Looks at one after the other.
qsizetype indexOfItem(const ClipboardItemList &items, const QUuid &id);
