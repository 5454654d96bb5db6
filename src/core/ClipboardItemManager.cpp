#include "core/ClipboardItemManager.h"

#include "core/DiskUsage.h"
#include "core/HistoryCapacity.h"
#include "foundation/Digest.h"
#include "foundation/TaggedLog.h"
#include "platform/Clock.h"

#include <algorithm>
#include <exception>

using namespace Qt::StringLiterals;

namespace {

QList<QUuid> idsOf(const ClipboardItemList &items)
{
    QList<QUuid> ids;
    ids.reserve(items.size());
    for (const ClipboardItemPointer &item : items)
        ids.append(item->id);
    return ids;
}

} // namespace

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

void ClipboardItemManager::addItem(ClipboardItem item)
{
    m_isolationQueue.barrier([this, item = std::move(item)] { insert(item); });
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
        const QList<QUuid> evictedIds = applyLimits();
        persist(u"enforce current limits"_s, [this, evictedIds](ClipboardHistoryStore &store) {
            if (!evictedIds.isEmpty())
                store.markItemsDeleted(evictedIds);
            const QStringList fileNames = m_imageStorage.fileNames();
            m_imageStorage.removeUnreferencedFiles(fileNames, items());
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
        persistUpsert(u"update tags"_s, replaceAt(*index, std::move(item)), {});
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
    const QList<QUuid> evictedIds = applyLimits();
    if (!evictedIds.isEmpty()) {
        persist(u"normalize loaded history"_s, [evictedIds](ClipboardHistoryStore &store) {
            store.markItemsDeleted(evictedIds);
        });
    }
    printLine(u"Loaded %1 items from disk"_s.arg(m_items.items().size()));
}

void ClipboardItemManager::persist(const QString &label, StoreWork work)
{
    m_persistenceQueue.enqueue([this, label, work = std::move(work)] {
        try {
            work(*m_historyStore);
        } catch (const std::exception &error) {
            printLine(u"Failed to %1: %2"_s.arg(label, QString::fromUtf8(error.what())));
        }
    });
}

void ClipboardItemManager::persistUpsert(const QString &label, ClipboardItemPointer item,
                                         QList<QUuid> deletedIds)
{
    persist(label, [item = std::move(item), deletedIds](ClipboardHistoryStore &store) {
        if (item)
            store.upsertItem(*item);
        if (!deletedIds.isEmpty())
            store.markItemsDeleted(deletedIds);
    });
}

void ClipboardItemManager::complete(Completion completion)
{
    if (completion)
        QMetaObject::invokeMethod(this, std::move(completion), Qt::QueuedConnection);
}

void ClipboardItemManager::insert(ClipboardItem item)
{
    if (item.contentType == ClipboardContentType::Image && item.imageRepresentation
        && !item.imageDigest)
        item.imageDigest = sha256Hex(*item.imageRepresentation);
    item.markChanged(ClipboardItem::ContentHash::Refresh, m_clock.now());

    QList<QUuid> deletedIds;
    ClipboardItemPointer replacedImage;
    if (const auto index = m_items.firstDuplicateIndex(item)) {
        const ClipboardItemPointer old = m_items.items().at(*index);
        deletedIds.append(old->id);
        item.isFavorite = item.isFavorite || old->isFavorite;
        const bool isImage = item.contentType == ClipboardContentType::Image;
        if (isImage && item.imageRepresentation && !item.imageFileName && old->imageFileName) {
            item.imageFileName = old->imageFileName;
            item.imageThumbnailFileName = old->imageThumbnailFileName;
            item.imageRepresentation.reset();
        } else if (isImage) {
            replacedImage = old;
        } else {
            m_imageStorage.deleteImageFiles(*old);
        }
        m_items.removeAt(*index);
    }

    storeImage(item);
    if (replacedImage && replacedImage->imageFileName != item.imageFileName)
        m_imageStorage.deleteImageFiles(*replacedImage);

    auto added = std::make_shared<const ClipboardItem>(std::move(item));
    m_items.insert(added);
    deletedIds += applyLimits();
    persistUpsert(u"persist clipboard item"_s, std::move(added), deletedIds);
}

void ClipboardItemManager::storeImage(ClipboardItem &item)
{
    if (item.contentType != ClipboardContentType::Image || !item.imageRepresentation)
        return;
    ImageStorage::SavedImage saved = m_imageStorage.saveImage(*item.imageRepresentation);
    if (!saved.fileName)
        return;
    item.imageFileName = std::move(saved.fileName);
    item.imageThumbnailFileName = std::move(saved.thumbnailFileName);
    item.imageRepresentation.reset();
    item.contentHash = computeContentHash(item);
}

QList<QUuid> ClipboardItemManager::applyLimits()
{
    const ClipboardItemList evicted = m_items.trim(capacity());
    for (const ClipboardItemPointer &item : evicted)
        m_imageStorage.deleteImageFiles(*item);
    return idsOf(evicted);
}

void ClipboardItemManager::remove(const QUuid &id)
{
    const auto index = m_items.indexOf(id);
    if (!index)
        return;
    m_imageStorage.deleteImageFiles(*m_items.items().at(*index));
    m_items.removeAt(*index);
    persist(u"delete clipboard item"_s,
            [id](ClipboardHistoryStore &store) { store.markItemsDeleted({id}); });
}

void ClipboardItemManager::clear(Favorites favorites)
{
    ClipboardItemList deleted;
    ClipboardItemList kept;
    for (const ClipboardItemPointer &item : m_items.items()) {
        const bool isKept = favorites == Favorites::Keep && item->isFavorite;
        (isKept ? kept : deleted).append(item);
    }
    for (const ClipboardItemPointer &item : std::as_const(deleted))
        m_imageStorage.deleteImageFiles(*item);
    m_items.assign(std::move(kept));

    const QList<QUuid> ids = idsOf(deleted);
    persist(u"delete clipboard items"_s, [this, ids](ClipboardHistoryStore &store) {
        store.hardDeleteItems(ids);
        store.purgeDeletedItems();
        const QStringList fileNames = m_imageStorage.fileNames();
        m_imageStorage.removeUnreferencedFiles(fileNames, items());
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
    const QList<QUuid> evictedIds = applyLimits();
    // Without its star the entry may have been the one too many.
    if (evictedIds.contains(id))
        changed.reset();
    persistUpsert(u"toggle favorite"_s, std::move(changed), evictedIds);
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
    persistUpsert(u"update text content"_s, replaceAt(*index, item), {});
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
    persistUpsert(u"refresh stale file bookmark"_s, replaceAt(*index, std::move(item)), {});
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
        changed.append(replaceAt(index, std::move(item)));
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
