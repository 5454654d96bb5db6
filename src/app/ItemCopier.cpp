#include "app/ItemCopier.h"

#include "core/ClipboardItemManager.h"
#include "core/PasteboardWriting.h"
#include "foundation/FilePath.h"
#include "foundation/InternalCopies.h"

ItemCopier::ItemCopier(InternalCopies &internalCopies, Pasteboard &pasteboard,
                       ClipboardItemManager &itemManager)
    : m_internalCopies(internalCopies)
    , m_pasteboard(pasteboard)
    , m_itemManager(itemManager)
{
}

void ItemCopier::copyItem(const ClipboardItem &item)
{
    emit m_internalCopies.tessarineInternalCopyWillWrite();
    m_pasteboard.write(contentsOf(item));
}

PasteboardContents ItemCopier::contentsOf(const ClipboardItem &item)
{
    PasteboardContents contents;
    switch (item.contentType) {
    case ClipboardContentType::Text:
    case ClipboardContentType::Url: {
        // What cannot be read back is left out, and the rest is better than nothing.
        [[maybe_unused]] const bool isComplete = writeTextFamilyToPasteboard(item, contents);
        break;
    }
    case ClipboardContentType::Image:
        if (auto picture = pictureOf(item))
            contents.addAsTiff(*std::move(picture));
        break;
    case ClipboardContentType::File:
        if (const auto url = fileUrlOf(item))
            contents.add(PasteboardType::kFileUrl, url->toEncoded());
        break;
    case ClipboardContentType::Mixed: break;
    }
    return contents;
}

std::optional<LazyBytes> ItemCopier::pictureOf(const ClipboardItem &item) const
{
    if (item.imageRepresentation)
        return LazyBytes(*item.imageRepresentation);
    return item.imageFileName ? m_itemManager.openImageFile(*item.imageFileName) : std::nullopt;
}

std::optional<QUrl> ItemCopier::fileUrlOf(const ClipboardItem &item)
{
    if (const auto resolved = m_itemManager.resolveFileURL(item)) {
        m_itemManager.refreshStaleBookmark(item, resolved->url, resolved->isStale);
        return resolved->url;
    }
    return item.filePath ? std::optional(FilePath::toUrl(*item.filePath)) : std::nullopt;
}
