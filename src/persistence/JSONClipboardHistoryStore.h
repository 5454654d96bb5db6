#pragma once

#include "core/ClipboardHistoryStore.h"

class Clock;

/// The store for times when the database cannot be opened: one JSON file, read and written whole by
/// each operation.
///
/// A file that cannot be read is never written over. Dates lose what is finer than a second.
class JSONClipboardHistoryStore : public ClipboardHistoryStore
{
public:
    /// Does not touch the disk. \a clock must outlive the store.
    JSONClipboardHistoryStore(QString filePath, const Clock &clock);

    ClipboardItemList loadItems() override;
    void upsertItem(const ClipboardItem &item) override;
    void markItemsDeleted(const QList<QUuid> &ids) override;
    void hardDeleteItems(const QList<QUuid> &ids) override;
    void purgeDeletedItems() override;

    /// There is nothing to give back: each write rewrites the file.
    void compactStorage() override {}

private:
    QList<ClipboardItem> read() const;
    void write(const QList<ClipboardItem> &records) const;

    QString m_filePath;
    const Clock &m_clock;
};
