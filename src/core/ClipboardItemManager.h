#pragma once

#include "core/ClipboardHistoryStore.h"
#include "core/FileReferences.h"
#include "core/HistoryList.h"
#include "core/ImageStorage.h"
#include "foundation/IsolationQueue.h"

#include <QHash>
#include <QObject>

#include <functional>

class Clock;
class UserDefaults;

/// The one owner of the history: keeps it ordered and within its limits, and passes every change
/// on to the store.
///
/// The list in memory is the truth while the process runs; the store is a backing copy, written
/// behind every change. Every operation may be called from any thread and returns at once; a
/// completion runs on the thread of the manager, after the list has changed and without waiting for
/// the store. Ending the manager writes what is still queued.
///
/// A copied picture is in the list at once, with its bytes. Its files are made on a queue of their
/// own; the entry gets their names, and only then its row in the store, so that no row ever names
/// a file that is not there. For the same reason files go only after the row that names them.
class ClipboardItemManager : public QObject
{
    Q_OBJECT

public:
    using Completion = std::function<void()>;
    using ItemCompletion = std::function<void(std::optional<ClipboardItem>)>;

    /// Loads the history from \a store before it returns; a history that cannot be read leaves the
    /// list empty and the store untouched. What is handed over by reference must outlive the
    /// manager.
    ClipboardItemManager(std::unique_ptr<ClipboardHistoryStore> store, ImageStorage imageStorage,
                         const FileReferences &fileReferences, const UserDefaults &defaults,
                         const Clock &clock);
    ~ClipboardItemManager() override;

    /// The list, cheap to copy. Waits for the changes queued so far; not for their writing.
    ClipboardItemList items() const;

    /// The directory of the image files that the items name.
    QString imagesDirectory() const { return m_imageStorage.directory(); }

    /// How many entries that are no favourites are kept; favourites come on top, up to as many.
    qsizetype capacity() const;

    /// How many bytes the history holds, without what the store adds to them. Asks the disk for the
    /// size of every image file.
    qint64 diskUsageBytes() const;

    /// Puts \a item at the front. An entry with the same content goes; of it the new one keeps
    /// nothing but being a favourite. The hash of \a item need not be computed, but for a large one
    /// it had better be, since readers wait meanwhile. The completion runs when a picture has got
    /// its files too, or has failed to.
    void addItem(ClipboardItem item, Completion completion = {});

    void removeItem(const QUuid &id, Completion completion);

    enum class Favorites { Keep, Clear };

    /// Removes everything, or all but the favourites, for good, and compacts the store.
    void clearHistory(Favorites favorites, Completion completion);

    /// Removes what a lowered capacity leaves no room for.
    void enforceCurrentLimits(Completion completion);

    /// Emits favoriteLimitReached() instead if there are as many favourites as the capacity.
    void toggleFavorite(const QUuid &id);

    void updateTags(const QUuid &id, const QStringList &tags);

    /// Replaces the text of a text or a link and drops its rich forms. The completion gets the entry
    /// as it is then, or nothing if there is no such entry.
    void updateTextContent(const QUuid &id, const QString &text, ItemCompletion completion);

    /// Takes a tag from every entry that has it.
    void removeTag(const QString &name);

    /// Renames the first occurrence of a tag in every entry that has it.
    void renameTag(const QString &oldName, const QString &newName);

    /// Where the first file of \a item is now, by FileReferences::resolve(). To be asked before any
    /// use of the file. Waits for the file system, but not for long.
    std::optional<FileBookmarks::Resolved> resolveFileURL(const ClipboardItem &item) const;

    /// The same by the bookmark of \a item alone: a path may lead to another file by now.
    std::optional<FileBookmarks::Resolved> resolveBookmark(const ClipboardItem &item) const;

    /// The image file \a name of an entry, held open, so that it can be read even when the entry is
    /// deleted. Absent if there is none. Waits for the file system, but not for long.
    std::optional<LazyBytes> openImageFile(const QString &name) const;

    /// To be told what either of them gave: makes a new bookmark if the old one is stale. The
    /// entry keeps its place.
    void refreshStaleBookmark(const ClipboardItem &item, const QUrl &url, bool isStale);

    /// Waits until every change so far is in the store, and every picture in its files.
    void drain();

signals:
    /// A further favourite was refused; \a limit is how many there may be.
    void favoriteLimitReached(qsizetype limit);

private:
    using StoreWork = std::function<void(ClipboardHistoryStore &)>;

    /// Entries that have left the list with one change.
    struct Departures
    {
        QList<QUuid> ids; ///< To be marked as deleted.
        ClipboardItemList withFiles; ///< Whose files go as well, once the ids are marked.

        bool isEmpty() const { return ids.isEmpty(); }
        Departures &operator+=(const Departures &other);
    };

    void load();
    void persist(const QString &label, StoreWork work, ClipboardItemList withFiles = {});
    void persistChange(const QString &label, ClipboardItemPointer item,
                       const Departures &departures);
    void sweepImageFiles();
    void complete(Completion completion);

    // Inside a barrier block.
    void insert(ClipboardItem item, Completion completion);
    Departures takeDuplicateOf(ClipboardItem &item);
    enum class Files { Keep, Delete };
    void depart(const ClipboardItemPointer &item, Files files, Departures &departures);
    void applyLimits(Departures &departures);
    void remove(const QUuid &id);
    void clear(Favorites favorites);
    void invertFavorite(const QUuid &id);
    std::optional<ClipboardItem> replaceText(const QUuid &id, const QString &text);
    void replaceBookmark(const QUuid &id, const QByteArray &bookmark);
    void editTags(const QString &label, const QString &name,
                  const std::function<void(QStringList &)> &edit);
    ClipboardItemPointer replaceAt(qsizetype index, ClipboardItem item);
    void namePicture(const ClipboardItem &stored, const ImageStorage::SavedImage &saved);
    std::optional<qsizetype> indexToName(const ClipboardItem &stored,
                                         const ImageStorage::SavedImage &saved) const;

    // On the queue of pictures.
    void storePicture(const QUuid &id, const Completion &completion);
    ClipboardItemPointer pendingPicture(const QUuid &id) const;

    const FileReferences &m_fileReferences;
    const UserDefaults &m_defaults;
    const Clock &m_clock;
    ImageStorage m_imageStorage;
    std::unique_ptr<ClipboardHistoryStore> m_historyStore; ///< Belongs to the persistence queue.
    HistoryList m_items; ///< Belongs to the isolation queue.
    /// The entries whose picture is on its way to a file. They have no row yet; each gets one, as it
    /// is then, with what has departed for it. Belongs to the isolation queue.
    QHash<QUuid, Departures> m_pendingPictures;
    // The queues end before what their work touches.
    mutable SerialQueue m_persistenceQueue{"tessarine.persistence"};
    mutable IsolationQueue m_isolationQueue{"tessarine.isolation"};
    SerialQueue m_pictureQueue{"tessarine.pictures"};
};
