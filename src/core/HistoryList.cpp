#include "core/HistoryList.h"

#include <algorithm>

namespace {

Timestamp timeOf(const ClipboardItemPointer &item)
{
    return item->timestamp;
}

} // namespace

void HistoryList::assign(ClipboardItemList items)
{
    if (!std::ranges::is_sorted(items, std::greater(), timeOf))
        std::ranges::stable_sort(items, std::greater(), timeOf);
    m_items = std::move(items);
    m_contents.clear();
    m_favoriteCount = 0;
    for (const ClipboardItemPointer &item : std::as_const(m_items))
        noteAdded(*item);
}

std::optional<qsizetype> HistoryList::indexOf(const QUuid &id) const
{
    const auto found = std::ranges::find_if(
        m_items, [&id](const ClipboardItemPointer &item) { return item->id == id; });
    if (found == m_items.end())
        return std::nullopt;
    return found - m_items.begin();
}

std::optional<qsizetype> HistoryList::firstDuplicateIndex(const ClipboardItem &item) const
{
    std::optional<qsizetype> first;
    for (const ClipboardItem *candidate : m_contents.candidates(item)) {
        if (!candidate->hasSameContent(item))
            continue;
        const qsizetype place = placeOf(*candidate);
        if (!first || place < *first)
            first = place;
    }
    return first;
}

void HistoryList::insert(const ClipboardItemPointer &item)
{
    unshare();
    m_items.insert(firstNotNewerThan(item->timestamp), item);
    noteAdded(*item);
}

void HistoryList::replaceAt(qsizetype index, const ClipboardItemPointer &item)
{
    Q_ASSERT(m_items.at(index)->timestamp == item->timestamp);
    unshare();
    noteRemoved(*m_items.at(index));
    m_items[index] = item;
    noteAdded(*item);
}

void HistoryList::removeAt(qsizetype index)
{
    unshare();
    noteRemoved(*m_items.at(index));
    m_items.removeAt(index);
}

ClipboardItemList HistoryList::trim(qsizetype capacity)
{
    // The oldest stand at the end: count from there how many have to go.
    qsizetype surplus = m_items.size() - m_favoriteCount - capacity;
    qsizetype begin = m_items.size();
    while (surplus > 0) {
        --begin;
        if (!m_items.at(begin)->isFavorite)
            --surplus;
    }
    ClipboardItemList evicted;
    if (begin == m_items.size())
        return evicted;

    unshare();
    const ClipboardItemList tail = m_items.sliced(begin);
    m_items.resize(begin);
    for (const ClipboardItemPointer &item : tail) {
        if (item->isFavorite) {
            m_items.append(item);
        } else {
            noteRemoved(*item);
            evicted.append(item);
        }
    }
    return evicted;
}

/// Makes the list ours alone; to be called before each change. Qt looks at the number of sharers
/// without ordering: what another thread has read of a copy that it has just given back could come
/// after the change. Counting one sharer up and down is ordered.
void HistoryList::unshare()
{
    if (m_items.isDetached())
        const ClipboardItemList sharer = m_items;
    else
        m_items = ClipboardItemList(m_items.cbegin(), m_items.cend());
}

/// Entries of the same time stand together, and there are few of them.
qsizetype HistoryList::placeOf(const ClipboardItem &item) const
{
    qsizetype place = firstNotNewerThan(item.timestamp);
    while (m_items.at(place).get() != &item)
        ++place;
    return place;
}

qsizetype HistoryList::firstNotNewerThan(Timestamp time) const
{
    return std::ranges::lower_bound(m_items, time, std::greater(), timeOf) - m_items.begin();
}

void HistoryList::noteAdded(const ClipboardItem &item)
{
    m_contents.add(item);
    m_favoriteCount += item.isFavorite;
}

void HistoryList::noteRemoved(const ClipboardItem &item)
{
    m_contents.remove(item);
    m_favoriteCount -= item.isFavorite;
}
