#include "window/LongTextReader.h"

namespace {

/// The end of the reader waits for the text that it is at.
constexpr qsizetype kLongestText = 4 * 1024 * 1024;

} // namespace

LongTextReader::LongTextReader(ClipboardItemList items, qsizetype mostBytes,
                               std::function<void()> onFinished)
    : m_thread([this, items = std::move(items), left = mostBytes,
                onFinished = std::move(onFinished)](const std::stop_token &stop) mutable {
        for (const ClipboardItemPointer &item : items) {
            if (stop.stop_requested())
                return;
            const qsizetype size = item->stringValue ? item->stringValue->longBytes().size() : 0;
            if (size == 0 || size > std::min(left, kLongestText))
                continue;
            m_held.push_back(item->stringValue->longBytes().hold());
            left -= size;
        }
        if (onFinished)
            onFinished();
    })
{
}
