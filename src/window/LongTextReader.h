#pragma once

#include "core/ClipboardItem.h"

#include <thread>
#include <vector>

/// Reads long texts ahead, on a thread of its own, and holds them until it ends: those that a search
/// has found may be asked for again by the next letter.
class LongTextReader
{
public:
    /// Holds \a mostBytes at the most, of the first of \a items.
    LongTextReader(ClipboardItemList items, qsizetype mostBytes);

private:
    std::vector<std::shared_ptr<const QByteArray>> m_held; ///< Belongs to the thread.
    std::jthread m_thread; ///< Ends first, after the text that it is at.
};
