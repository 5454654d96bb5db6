#include "core/PasteboardWriting.h"

#include "foundation/TextTools.h"

namespace {

void addIfReadable(PasteboardContents &contents, QStringView type,
                   const std::optional<LazyBytes> &representation)
{
    if (auto bytes = representation ? representation->read() : std::nullopt)
        contents.add(type, *std::move(bytes));
}

} // namespace

PasteboardContents textFamilyContents(const ClipboardItem &item)
{
    PasteboardContents contents;
    const auto text = item.stringValue ? item.stringValue->read() : std::nullopt;
    if (text)
        contents.add(PasteboardType::kString, *text);
    if (text && item.contentType == ClipboardContentType::Url) {
        const QUrl url(decodedUtf8(*text), QUrl::StrictMode);
        if (url.isValid())
            contents.add(PasteboardType::kUrl, url.toEncoded());
    }
    addIfReadable(contents, PasteboardType::kHtml, item.htmlRepresentation);
    addIfReadable(contents, PasteboardType::kRtf, item.rtfRepresentation);
    return contents;
}
