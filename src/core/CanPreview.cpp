#include "core/CanPreview.h"

#include "core/ClipboardItem.h"
#include "foundation/TextTools.h"

namespace {

bool isBlank(const Utf8Text &text)
{
    if (!trimmedUtf8(text.start()).isEmpty())
        return false;
    return !text.isLong() || trimmedUtf8(text.utf8()).isEmpty();
}

} // namespace

bool canPreview(const ClipboardItem &item)
{
    switch (item.contentType) {
    case ClipboardContentType::Text:
    case ClipboardContentType::Url: return item.stringValue && !isBlank(*item.stringValue);
    case ClipboardContentType::Image:
        return item.imageRepresentation.has_value() || item.imageFileName.has_value();
    case ClipboardContentType::File:
    case ClipboardContentType::Mixed: return false;
    }
    return false;
}
