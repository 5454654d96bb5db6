#pragma once

#include "core/ClipboardItem.h"

#include <unordered_map>

/// Knows where to look for entries that hold the same content, so that a copy need not be compared
/// with the whole history.
class ContentIndex
{
public:
    /// The index points at \a item until it is removed.
    void add(const ClipboardItem &item);
    void remove(const ClipboardItem &item);
    void clear() { m_items.clear(); }

    /// Every entry that hasSameContent() as \a item, and perhaps others, in no order; an entry may
    /// appear twice.
    std::vector<const ClipboardItem *> candidates(const ClipboardItem &item) const;

private:
    std::unordered_multimap<size_t, const ClipboardItem *> m_items;
};
