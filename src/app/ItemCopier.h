#pragma once

#include "core/ClipboardItem.h"
#include "platform/Pasteboard.h"

#include <QUrl>

class ClipboardItemManager;
class InternalCopies;

/// Puts an entry of the history on the pasteboard for the person to paste by hand. Main thread only.
///
/// Nothing tells of what cannot be had any more; the pasteboard is empty then.
class ItemCopier
{
public:
    /// Everything handed in must outlive the copier.
    ItemCopier(InternalCopies &internalCopies, Pasteboard &pasteboard,
               ClipboardItemManager &itemManager);

    /// Replaces what is on the pasteboard; capture does not see it. The entry may be deleted right
    /// after.
    void copyItem(const ClipboardItem &item);

private:
    PasteboardContents contentsOf(const ClipboardItem &item);
    std::optional<LazyBytes> pictureOf(const ClipboardItem &item) const;
    std::optional<QUrl> fileUrlOf(const ClipboardItem &item);

    InternalCopies &m_internalCopies;
    Pasteboard &m_pasteboard;
    ClipboardItemManager &m_itemManager;
};
