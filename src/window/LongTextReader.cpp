#include "window/LongTextReader.h"

LongTextReader::LongTextReader(ClipboardItemList items)
    : m_thread([this, items = std::move(items)](const std::stop_token &stop) {
        for (const ClipboardItemPointer &item : items) {
            if (stop.stop_requested())
                return;
            if (item->stringValue && item->stringValue->isLong())
                m_held.push_back(item->stringValue->longBytes().hold());
        }
    })
{
}
