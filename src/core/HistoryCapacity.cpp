#include "core/HistoryCapacity.h"

#include "foundation/UserDefaults.h"

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace {

bool isNewer(const ClipboardItemPointer &one, const ClipboardItemPointer &other)
{
    return one->timestamp > other->timestamp;
}

} // namespace

qsizetype normalizedCapacity(qint64 value)
{
    const bool isAllowed = std::ranges::find(kAllowedCapacities, value)
        != std::end(kAllowedCapacities);
    return qsizetype(isAllowed ? value : kAllowedCapacities[0]);
}

qsizetype currentCapacity(const UserDefaults &defaults)
{
    return normalizedCapacity(defaults.integer(u"history.limit"_s));
}

ClipboardItemList trimToCapacity(ClipboardItemList &items, qsizetype capacity)
{
    if (!std::ranges::is_sorted(items, isNewer))
        std::ranges::stable_sort(items, isNewer);

    ClipboardItemList evicted;
    // Favourites may push the list over the capacity; only the others are counted.
    if (items.size() <= capacity)
        return evicted;
    qsizetype keptCount = 0;
    const auto isBeyond = [&](const ClipboardItemPointer &item) {
        if (item->isFavorite || ++keptCount <= capacity)
            return false;
        evicted.append(item);
        return true;
    };
    items.removeIf(isBeyond);
    return evicted;
}
