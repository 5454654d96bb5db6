#include "core/ClipboardHistoryStore.h"

ClipboardItem makeTombstone(const QUuid &id, Timestamp now)
{
    ClipboardItem tombstone = makeItem(ClipboardContentType::Text, now);
    tombstone.id = id;
    tombstone.syncStatus = SyncStatus::Pending;
    tombstone.deletedAt = now;
    // QUuid spells in lower case.
    tombstone.contentHash = "tombstone:" + id.toByteArray(QUuid::WithoutBraces);
    return tombstone;
}
