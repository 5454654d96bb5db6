#include "window/LongTextSigner.h"

#include "foundation/TextSignature.h"

namespace {

bool isUnsigned(const ClipboardItem &item)
{
    return item.stringValue && item.stringValue->isLong()
        && !item.stringValue->longBytes().signature();
}

} // namespace

LongTextSigner::LongTextSigner(ClipboardItemList items)
    : m_thread([items = std::move(items)](const std::stop_token &stop) {
        for (const ClipboardItemPointer &item : items) {
            if (stop.stop_requested())
                return;
            if (!isUnsigned(*item))
                continue;
            const LazyBytes &text = item->stringValue->longBytes();
            if (const auto bytes = text.hold())
                text.setSignature(TextSignature::of(*bytes, stop));
        }
    })
{
}
