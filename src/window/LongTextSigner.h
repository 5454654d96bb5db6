#pragma once

#include "core/ClipboardItem.h"

#include <thread>

/// Reads the long texts of a history that have no signature yet, and gives them one, on a thread of
/// its own. No text stays in memory.
class LongTextSigner
{
public:
    explicit LongTextSigner(ClipboardItemList items);

private:
    std::jthread m_thread; ///< Ends after the text that it is at.
};
