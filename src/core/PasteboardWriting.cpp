#include "core/PasteboardWriting.h"

#include "foundation/TextTools.h"

namespace {

/// False if \a representation is there and cannot be read.
bool writeIfPresent(PasteboardContents &pasteboard, QStringView type,
                    const std::optional<LazyBytes> &representation)
{
    if (!representation)
        return true;
    auto bytes = representation->read();
    if (bytes)
        pasteboard.add(type, *std::move(bytes));
    return bytes.has_value();
}

bool writeTextIfPresent(const ClipboardItem &item, PasteboardContents &pasteboard)
{
    if (!item.stringValue)
        return true;
    const auto text = item.stringValue->read();
    if (!text)
        return false;
    pasteboard.add(PasteboardType::kString, *text);
    if (item.contentType != ClipboardContentType::Url)
        return true;
    const QUrl url(decodedUtf8(*text), QUrl::StrictMode);
    if (url.isValid())
        pasteboard.add(PasteboardType::kUrl, url.toEncoded());
    return true;
}

} // namespace

bool writeTextFamilyToPasteboard(const ClipboardItem &item, PasteboardContents &pasteboard)
{
    const bool isTextComplete = writeTextIfPresent(item, pasteboard);
    const bool isHtmlComplete
        = writeIfPresent(pasteboard, PasteboardType::kHtml, item.htmlRepresentation);
    const bool isRtfComplete
        = writeIfPresent(pasteboard, PasteboardType::kRtf, item.rtfRepresentation);
    return isTextComplete && isHtmlComplete && isRtfComplete;
}
