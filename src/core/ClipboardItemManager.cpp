#include "core/ClipboardItemManager.h"

#include "core/DiskUsage.h"
#include "core/HistoryCapacity.h"
#include "foundation/Digest.h"
#include "foundation/TaggedLog.h"
#include "platform/Clock.h"

#include <QDir>

#include <exception>
#include <utility>

using namespace Qt::StringLiterals;

ClipboardItemManager::Departures &
ClipboardItemManager::Departures::operator+=(const Departures &other)
{
    ids += other.ids;
    withFiles += other.withFiles;
    return *this;
}

ClipboardItemManager::ClipboardItemManager(std::unique_ptr<ClipboardHistoryStore> store,
                                           ImageStorage imageStorage,
                                           const FileReferences &fileReferences,
                                           const UserDefaults &defaults, const Clock &clock)
    : m_fileReferences(fileReferences)
    , m_defaults(defaults)
    , m_clock(clock)
    , m_imageStorage(std::move(imageStorage))
    , m_historyStore(std::move(store))
{
    load();
}

ClipboardItemManager::~ClipboardItemManager()
{
    // Queued store work reads the list, so it has to run while the list's queue still stands.
    drain();
}

ClipboardItemList ClipboardItemManager::items() const
{
    return m_isolationQueue.read([this] { return m_items.items(); });
}

qsizetype ClipboardItemManager::capacity() const
{
    return currentCapacity(m_defaults);
}

qint64 ClipboardItemManager::diskUsageBytes() const
{
    return ::diskUsageBytes(items(), imagesDirectory());
}

void ClipboardItemManager::addItem(ClipboardItem item, Completion completion)
{
    m_isolationQueue.barrier(
        [this, item = std::move(item), completion = std::move(completion)]() mutable {
            insert(std::move(item), std::move(completion));
        });
}

void ClipboardItemManager::removeItem(const QUuid &id, Completion completion)
{
    m_isolationQueue.barrier([this, id, completion = std::move(completion)] {
        remove(id);
        complete(completion);
    });
}

void ClipboardItemManager::clearHistory(Favorites favorites, Completion completion)
{
    m_isolationQueue.barrier([this, favorites, completion = std::move(completion)] {
        clear(favorites);
        complete(completion);
    });
}

void ClipboardItemManager::enforceCurrentLimits(Completion completion)
{
    m_isolationQueue.barrier([this, completion = std::move(completion)] {
        Departures evicted;
        applyLimits(evicted);
        // The sweep takes the files of what was evicted with it.
        persist(u"enforce current limits"_s, [this, ids = evicted.ids](ClipboardHistoryStore &store) {
            if (!ids.isEmpty())
                store.markItemsDeleted(ids);
            sweepImageFiles();
        });
        complete(completion);
    });
}

void ClipboardItemManager::toggleFavorite(const QUuid &id)
{
    m_isolationQueue.barrier([this, id] { invertFavorite(id); });
}

void ClipboardItemManager::updateTags(const QUuid &id, const QStringList &tags)
{
    m_isolationQueue.barrier([this, id, tags] {
        const auto index = m_items.indexOf(id);
        if (!index)
            return;
        ClipboardItem item = *m_items.items().at(*index);
        item.tags = tags;
        item.markChanged(ClipboardItem::ContentHash::Keep, m_clock.now());
        persistChange(u"update tags"_s, replaceAt(*index, std::move(item)), {});
    });
}

void ClipboardItemManager::updateTextContent(const QUuid &id, const QString &text,
                                             ItemCompletion completion)
{
    m_isolationQueue.barrier([this, id, text, completion = std::move(completion)] {
        complete([completion, item = replaceText(id, text)] {
            if (completion)
                completion(item);
        });
    });
}

void ClipboardItemManager::removeTag(const QString &name)
{
    m_isolationQueue.barrier([this, name] {
        editTags(u"remove tag"_s, name, [&name](QStringList &tags) { tags.removeAll(name); });
    });
}

void ClipboardItemManager::renameTag(const QString &oldName, const QString &newName)
{
    m_isolationQueue.barrier([this, oldName, newName] {
        editTags(u"rename tag"_s, oldName, [&](QStringList &tags) {
            tags[tags.indexOf(oldName)] = newName;
        });
    });
}

std::optional<FileBookmarks::Resolved>
ClipboardItemManager::resolveFileURL(const ClipboardItem &item) const
{
    return m_fileReferences.resolve(item);
}

std::optional<FileBookmarks::Resolved>
ClipboardItemManager::resolveBookmark(const ClipboardItem &item) const
{
    return m_fileReferences.resolveBookmark(item);
}

std::optional<LazyBytes> ClipboardItemManager::openImageFile(const QString &name) const
{
    return m_fileReferences.open(QDir(imagesDirectory()).filePath(name));
}

void ClipboardItemManager::refreshStaleBookmark(const ClipboardItem &item, const QUrl &url,
                                                bool isStale)
{
    if (!isStale)
        return;
    const auto scope = m_fileReferences.startAccess(url);
    const auto bookmark = m_fileReferences.renewBookmark(item.id, url);
    if (bookmark)
        m_isolationQueue.barrier(
            [this, id = item.id, bookmark] { replaceBookmark(id, *bookmark); });
}

void ClipboardItemManager::drain()
{
    m_isolationQueue.drain();
    m_pictureQueue.drain();
    // A picture that has its files still has to be named, and only then is it written.
    m_isolationQueue.drain();
    m_persistenceQueue.drain();
}

void ClipboardItemManager::load()
{
    try {
        m_items.assign(m_historyStore->loadItems());
    } catch (const std::exception &error) {
        printLine(u"Failed to load clipboard history: "_s + QString::fromUtf8(error.what()));
        return;
    }
    Departures evicted;
    applyLimits(evicted);
    persistChange(u"normalize loaded history"_s, nullptr, evicted);
    printLine(u"Loaded %1 items from disk"_s.arg(m_items.items().size()));
}

void ClipboardItemManager::persist(const QString &label, StoreWork work,
                                   ClipboardItemList withFiles)
{
    m_persistenceQueue.enqueue([this, label, work = std::move(work),
                                withFiles = std::move(withFiles)] {
        try {
            work(*m_historyStore);
            if (!withFiles.isEmpty())
                m_imageStorage.deleteImageFiles(withFiles, items());
        } catch (const std::exception &error) {
            printLine(u"Failed to %1: %2"_s.arg(label, QString::fromUtf8(error.what())));
        }
    });
}

void ClipboardItemManager::persistChange(const QString &label, ClipboardItemPointer item,
                                         const Departures &departures)
{
    if (item && m_pendingPictures.contains(item->id))
        item.reset(); // The row that is to come holds this change too.
    if (!item && departures.isEmpty())
        return;
    const auto work = [item = std::move(item), ids = departures.ids](ClipboardHistoryStore &store) {
        if (item)
            store.upsertItem(*item);
        if (!ids.isEmpty())
            store.markItemsDeleted(ids);
    };
    persist(label, work, departures.withFiles);
}

void ClipboardItemManager::sweepImageFiles()
{
    const QStringList fileNames = m_imageStorage.fileNames();
    m_imageStorage.removeUnreferencedFiles(fileNames, items());
}

void ClipboardItemManager::complete(Completion completion)
{
    if (completion)
        QMetaObject::invokeMethod(this, std::move(completion), Qt::QueuedConnection);
}

void ClipboardItemManager::insert(ClipboardItem item, Completion completion)
{
    if (item.contentType == ClipboardContentType::Image && item.imageRepresentation
        && !item.imageDigest)
        item.imageDigest = sha256Hex(*item.imageRepresentation);
    item.deletedAt.reset(); // It lives, whatever it was before.
    item.markChanged(item.contentHash.isEmpty() ? ClipboardItem::ContentHash::Refresh
                                                : ClipboardItem::ContentHash::Keep,
                     m_clock.now());

    Departures departures = takeDuplicateOf(item);
    const bool isPicture
        = item.contentType == ClipboardContentType::Image && item.imageRepresentation;
    const auto added = std::make_shared<const ClipboardItem>(std::move(item));
    m_items.insert(added);
    applyLimits(departures);

    // A capacity that is full of newer entries may have taken it out again.
    if (!isPicture || !m_items.indexOf(added->id)) {
        persistChange(u"persist clipboard item"_s, added, departures);
        return complete(std::move(completion));
    }
    m_pendingPictures.insert(added->id, departures);
    m_pictureQueue.enqueue([this, id = added->id, completion = std::move(completion)] {
        storePicture(id, completion);
    });
}

/// Takes out the entry that \a item replaces, and lets it inherit what there is to inherit.
ClipboardItemManager::Departures ClipboardItemManager::takeDuplicateOf(ClipboardItem &item)
{
    Departures departures;
    const auto index = m_items.firstDuplicateIndex(item);
    if (!index)
        return departures;
    const ClipboardItemPointer old = m_items.items().at(*index);
    item.isFavorite = item.isFavorite || old->isFavorite;
    const bool isImage = item.contentType == ClipboardContentType::Image;
    if (isImage && item.imageRepresentation && !item.imageFileName && old->imageFileName) {
        item.imageFileName = old->imageFileName;
        item.imageThumbnailFileName = old->imageThumbnailFileName;
        item.imageRepresentation.reset();
    }
    const bool areFilesShared = isImage && item.imageFileName == old->imageFileName;
    m_items.removeAt(*index);
    depart(old, areFilesShared ? Files::Keep : Files::Delete, departures);
    return departures;
}

/// Notes that \a item has left the list.
void ClipboardItemManager::depart(const ClipboardItemPointer &item, Files files,
                                  Departures &departures)
{
    // What was to be written with its row is written with its end.
    departures += m_pendingPictures.take(item->id);
    departures.ids.append(item->id);
    if (files == Files::Delete && (item->imageFileName || item->imageThumbnailFileName))
        departures.withFiles.append(item);
}

void ClipboardItemManager::applyLimits(Departures &departures)
{
    for (const ClipboardItemPointer &item : m_items.trim(capacity()))
        depart(item, Files::Delete, departures);
}

void ClipboardItemManager::remove(const QUuid &id)
{
    const auto index = m_items.indexOf(id);
    if (!index)
        return;
    const ClipboardItemPointer item = m_items.items().at(*index);
    m_items.removeAt(*index);
    Departures departures;
    depart(item, Files::Delete, departures);
    persistChange(u"delete clipboard item"_s, nullptr, departures);
}

void ClipboardItemManager::clear(Favorites favorites)
{
    Departures departures;
    ClipboardItemList kept;
    for (const ClipboardItemPointer &item : m_items.items()) {
        if (favorites == Favorites::Keep && item->isFavorite)
            kept.append(item);
        else
            depart(item, Files::Delete, departures);
    }
    m_items.assign(std::move(kept));
    // No tombstone is to come after those that are purged now.
    for (Departures &pending : m_pendingPictures)
        departures += std::exchange(pending, {});

    // The sweep takes the files of what was deleted with it.
    persist(u"delete clipboard items"_s, [this, ids = departures.ids](ClipboardHistoryStore &store) {
        store.hardDeleteItems(ids);
        store.purgeDeletedItems();
        sweepImageFiles();
        try {
            store.compactStorage();
        } catch (const std::exception &error) {
            printLine(u"Storage compaction skipped: "_s + QString::fromUtf8(error.what()));
        }
    });
}

void ClipboardItemManager::invertFavorite(const QUuid &id)
{
    const auto index = m_items.indexOf(id);
    if (!index)
        return;
    ClipboardItem item = *m_items.items().at(*index);
    if (!item.isFavorite) {
        const qsizetype limit = capacity();
        if (m_items.favoriteCount() >= limit) {
            complete([this, limit] { emit favoriteLimitReached(limit); });
            return;
        }
    }
    item.isFavorite = !item.isFavorite;
    item.markChanged(ClipboardItem::ContentHash::Keep, m_clock.now());
    ClipboardItemPointer changed = replaceAt(*index, std::move(item));
    Departures evicted;
    applyLimits(evicted);
    // Without its star the entry may have been the one too many.
    if (evicted.ids.contains(id))
        changed.reset();
    persistChange(u"toggle favorite"_s, std::move(changed), evicted);
}

std::optional<ClipboardItem> ClipboardItemManager::replaceText(const QUuid &id, const QString &text)
{
    const auto index = m_items.indexOf(id);
    if (!index)
        return std::nullopt;
    ClipboardItem item = *m_items.items().at(*index);
    if (item.contentType != ClipboardContentType::Text
        && item.contentType != ClipboardContentType::Url)
        return std::nullopt;

    QString normalized = text;
    normalized.replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n');
    const Utf8Text newText(normalized);
    if (item.stringValue == newText && !item.htmlRepresentation && !item.rtfRepresentation)
        return item;

    item.stringValue = newText;
    item.htmlRepresentation.reset();
    item.rtfRepresentation.reset();
    item.markChanged(ClipboardItem::ContentHash::Refresh, m_clock.now());
    persistChange(u"update text content"_s, replaceAt(*index, item), {});
    return item;
}

void ClipboardItemManager::replaceBookmark(const QUuid &id, const QByteArray &bookmark)
{
    const auto log = [&](const QString &outcome, const QString &detail = {}) {
        logDragPaste(m_defaults, [&] {
            return u"refreshStaleBookmark "_s + outcome + u" id="_s + uuidString(id) + detail;
        });
    };
    const auto index = m_items.indexOf(id);
    if (!index) {
        log(u"skipped missing item"_s);
        return;
    }
    ClipboardItem item = *m_items.items().at(*index);
    if (item.fileBookmarkData == bookmark) {
        log(u"skipped unchanged"_s);
        return;
    }
    item.fileBookmarkData = bookmark;
    item.markChanged(ClipboardItem::ContentHash::Refresh, m_clock.now());
    persistChange(u"refresh stale file bookmark"_s, replaceAt(*index, std::move(item)), {});
    log(u"updated"_s, u" bytes="_s + QString::number(bookmark.size()));
}

void ClipboardItemManager::editTags(const QString &label, const QString &name,
                                    const std::function<void(QStringList &)> &edit)
{
    ClipboardItemList changed;
    for (qsizetype index = 0; index < m_items.items().size(); ++index) {
        if (!m_items.items().at(index)->tags.contains(name))
            continue;
        ClipboardItem item = *m_items.items().at(index);
        edit(item.tags);
        item.markChanged(ClipboardItem::ContentHash::Keep, m_clock.now());
        ClipboardItemPointer edited = replaceAt(index, std::move(item));
        if (!m_pendingPictures.contains(edited->id))
            changed.append(std::move(edited));
    }
    if (changed.isEmpty())
        return;
    persist(label, [changed](ClipboardHistoryStore &store) {
        for (const ClipboardItemPointer &item : changed) {
            try {
                store.upsertItem(*item);
            } catch (const std::exception &) {
                // One entry that cannot be written must not keep the others from being written.
            }
        }
    });
}

ClipboardItemPointer ClipboardItemManager::replaceAt(qsizetype index, ClipboardItem item)
{
    auto pointer = std::make_shared<const ClipboardItem>(std::move(item));
    m_items.replaceAt(index, pointer);
    return pointer;
}

void ClipboardItemManager::storePicture(const QUuid &id, const Completion &completion)
{
    const ClipboardItemPointer item = pendingPicture(id);
    if (!item)
        return complete(completion);
    ImageStorage::SavedImage saved;
    try {
        saved = m_imageStorage.saveImage(*item->imageRepresentation);
    } catch (const std::exception &error) {
        // Most likely the memory did not suffice. The entry has to get its row all the same.
        printLine(u"Failed to save image: "_s + QString::fromUtf8(error.what()));
    }
    m_isolationQueue.barrier([this, item, saved, completion] {
        namePicture(*item, saved);
        complete(completion);
    });
}

/// Absent if the entry has gone meanwhile, or has got the files of an equal one.
ClipboardItemPointer ClipboardItemManager::pendingPicture(const QUuid &id) const
{
    return m_isolationQueue.read([this, &id]() -> ClipboardItemPointer {
        const auto index = m_items.indexOf(id);
        return index && m_pendingPictures.contains(id) ? m_items.items().at(*index) : nullptr;
    });
}

/// Gives the files of \a stored to the entry, and the entry to the store.
void ClipboardItemManager::namePicture(const ClipboardItem &stored,
                                       const ImageStorage::SavedImage &saved)
{
    const auto index = indexToName(stored, saved);
    if (!index)
        return m_persistenceQueue.enqueue([this, saved] { m_imageStorage.deleteImageFiles(saved); });
    ClipboardItem item = *m_items.items().at(*index);
    if (saved.fileName) {
        item.imageFileName = saved.fileName;
        item.imageThumbnailFileName = saved.thumbnailFileName;
        item.imageRepresentation.reset();
        item.contentHash = computeContentHash(item);
    }
    const Departures departures = m_pendingPictures.take(item.id);
    persistChange(u"persist clipboard item"_s, replaceAt(*index, std::move(item)), departures);
}

std::optional<qsizetype>
ClipboardItemManager::indexToName(const ClipboardItem &stored,
                                  const ImageStorage::SavedImage &saved) const
{
    if (m_pendingPictures.contains(stored.id))
        return m_items.indexOf(stored.id);
    // The same picture may have been copied again meanwhile. It is stored once more only if there
    // is nothing to share.
    const auto again = saved.fileName ? m_items.firstDuplicateIndex(stored) : std::nullopt;
    if (again && m_pendingPictures.contains(m_items.items().at(*again)->id))
        return again;
    return std::nullopt;
}
