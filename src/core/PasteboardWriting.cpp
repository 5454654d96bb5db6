#include "core/PasteboardWriting.h"

PasteboardContents textFamilyContents(const ClipboardItem &item)
{
    PasteboardContents contents;
    if (item.stringValue)
        contents.add(PasteboardType::kString, item.stringValue->utf8());
    if (item.stringValue && item.contentType == ClipboardContentType::Url) {
        const QUrl url(item.stringValue->toString(), QUrl::StrictMode);
        if (url.isValid())
            contents.add(PasteboardType::kUrl, url.toEncoded());
    }
    if (item.htmlRepresentation)
        contents.add(PasteboardType::kHtml, *item.htmlRepresentation);
    if (item.rtfRepresentation)
        contents.add(PasteboardType::kRtf, *item.rtfRepresentation);
    return contents;
}
