#include "core/PasteboardWriting.h"

#include "foundation/TextTools.h"

namespace {

bool write(PasteboardContents &pasteboard, QStringView type,
           const std::optional<LazyBytes> &representation)
{
    if (!representation)
        return true;
    auto bytes = representation->read();
    if (bytes)
        pasteboard.add(type, *std::move(bytes));
    return bytes.has_value();
}

bool writeText(const ClipboardItem &item, PasteboardContents &pasteboard)
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
    const bool hasText = writeText(item, pasteboard);
    const bool hasHtml = write(pasteboard, PasteboardType::kHtml, item.htmlRepresentation);
    const bool hasRtf = write(pasteboard, PasteboardType::kRtf, item.rtfRepresentation);
    return hasText && hasHtml && hasRtf;
}
