#pragma once

#include "core/ClipboardItem.h"

#include <functional>
#include <thread>
#include <vector>

/// Reads long texts that a search needs, or may need for the next letter, on a thread of its own, and
/// holds them until it ends.
class LongTextReader
{
public:
    /// Holds \a mostBytes at the most, of the first of \a items. \a onFinished is called on the thread,
    /// unless the reader ends before.
    LongTextReader(ClipboardItemList items, qsizetype mostBytes,
                   std::function<void()> onFinished = {});

private:
    std::vector<std::shared_ptr<const QByteArray>> m_held; ///< Belongs to the thread.
    std::jthread m_thread; ///< Ends first, after the text that it is at.
};
