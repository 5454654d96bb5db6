#pragma once

#include "core/ClipboardHistoryStore.h"

#include <QStringList>

#include <algorithm>
#include <functional>
#include <memory>
#include <mutex>

/// What a MemoryHistoryStore holds and was asked; it outlives the store, so that a test can look.
struct MemoryHistory
{
    std::mutex mutex; ///< Guards the fields below: the store runs on another thread.
    QList<ClipboardItem> records;
    QStringList calls; ///< The names of the operations, in order.
    QStringList failing; ///< Operations that throw "out of order".
    /// Called at the beginning of each operation with its name, on the thread of the store.
    std::function<void(const QString &call)> onCall;

    QList<ClipboardItem> live()
    {
        const std::lock_guard lock(mutex);
        QList<ClipboardItem> items = records;
        items.removeIf([](const ClipboardItem &item) { return item.deletedAt.has_value(); });
        return items;
    }

    QList<ClipboardItem> tombstones()
    {
        const std::lock_guard lock(mutex);
        QList<ClipboardItem> items = records;
        items.removeIf([](const ClipboardItem &item) { return !item.deletedAt.has_value(); });
        return items;
    }

    QStringList callsSoFar()
    {
        const std::lock_guard lock(mutex);
        return calls;
    }
};

/// A store that forgets with the test.
class MemoryHistoryStore : public ClipboardHistoryStore
{
public:
    explicit MemoryHistoryStore(std::shared_ptr<MemoryHistory> history)
        : m_history(std::move(history))
    {
    }

    ClipboardItemList loadItems() override
    {
        begin(QStringLiteral("loadItems"));
        ClipboardItemList items;
        for (const ClipboardItem &record : m_history->live())
            items.append(std::make_shared<const ClipboardItem>(record));
        return items;
    }

    void upsertItem(const ClipboardItem &item) override
    {
        begin(QStringLiteral("upsertItem"));
        const std::lock_guard lock(m_history->mutex);
        const auto record = std::ranges::find(m_history->records, item.id, &ClipboardItem::id);
        if (record == m_history->records.end())
            m_history->records.append(item);
        else if (item.updatedAt >= record->updatedAt)
            *record = item;
    }

    void markItemsDeleted(const QList<QUuid> &ids) override
    {
        begin(QStringLiteral("markItemsDeleted"));
        const std::lock_guard lock(m_history->mutex);
        for (const QUuid &id : ids) {
            const auto record = std::ranges::find(m_history->records, id, &ClipboardItem::id);
            if (record == m_history->records.end())
                m_history->records.append(makeTombstone(id, Timestamp{}));
            else
                record->deletedAt = record->updatedAt;
        }
    }

    void hardDeleteItems(const QList<QUuid> &ids) override
    {
        begin(QStringLiteral("hardDeleteItems"));
        const std::lock_guard lock(m_history->mutex);
        m_history->records.removeIf([&](const ClipboardItem &item) { return ids.contains(item.id); });
    }

    void purgeDeletedItems() override
    {
        begin(QStringLiteral("purgeDeletedItems"));
        const std::lock_guard lock(m_history->mutex);
        m_history->records.removeIf([](const ClipboardItem &item) { return bool(item.deletedAt); });
    }

    void compactStorage() override { begin(QStringLiteral("compactStorage")); }

private:
    void begin(const QString &call)
    {
        const std::lock_guard lock(m_history->mutex);
        m_history->calls.append(call);
        if (m_history->onCall)
            m_history->onCall(call);
        if (m_history->failing.contains(call))
            throw StoreError("out of order");
    }

    std::shared_ptr<MemoryHistory> m_history;
};
