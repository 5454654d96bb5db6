#pragma once

#include "core/ClipboardItem.h"

#include <thread>
#include <vector>

/// Reads the long texts of a history ahead, on a thread of its own, and holds them until it ends: a
/// search that has begun will ask for all of them.
class LongTextReader
{
public:
    explicit LongTextReader(ClipboardItemList items);

private:
    std::vector<std::shared_ptr<const QByteArray>> m_held; ///< Belongs to the thread.
    std::jthread m_thread; ///< Ends first, after the text that it is at.
};
