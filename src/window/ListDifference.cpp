#include "window/ListDifference.h"

#include <QHash>

#include <algorithm>
#include <vector>

namespace {

constexpr qsizetype kAlwaysAnimatedCount = 100;
constexpr qsizetype kMostAnimatedChanges = 50;
constexpr qsizetype kFewLeft = 2;

bool looksDifferent(const ClipboardItem &one, const ClipboardItem &other)
{
    return one.contentHash != other.contentHash || one.stringValue != other.stringValue
        || one.filePath != other.filePath || one.imageFileName != other.imageFileName
        || one.imageThumbnailFileName != other.imageThumbnailFileName
        || one.contentType != other.contentType || one.isFavorite != other.isFavorite
        || one.sourceAppBundleID != other.sourceAppBundleID
        || one.isRemoteClipboard != other.isRemoteClipboard || one.tags != other.tags
        || one.timestamp != other.timestamp;
}

/// An entry that both lists have.
struct Pair
{
    qsizetype before;
    qsizetype after;
};

/// The pairs in the order of the old list.
std::vector<Pair> commonEntries(const ClipboardItemList &before, const ClipboardItemList &after)
{
    QHash<QUuid, qsizetype> places;
    places.reserve(after.size());
    for (qsizetype row = 0; row < after.size(); ++row)
        places.insert(after[row]->id, row);
    std::vector<Pair> pairs;
    for (qsizetype row = 0; row < before.size(); ++row) {
        const auto place = places.constFind(before[row]->id);
        if (place != places.constEnd())
            pairs.push_back({row, *place});
    }
    return pairs;
}

/// The largest part of \a pairs whose entries stand in the same order in both lists: the longest
/// ascending subsequence of the new places.
std::vector<Pair> inOrder(const std::vector<Pair> &pairs)
{
    if (std::ranges::is_sorted(pairs, {}, &Pair::after))
        return pairs;
    std::vector<size_t> tails; // The pair that ends the best sequence of each length.
    std::vector<size_t> previous(pairs.size(), pairs.size());
    for (size_t i = 0; i < pairs.size(); ++i) {
        const auto longer = std::ranges::lower_bound(
            tails, pairs[i].after, {}, [&pairs](size_t tail) { return pairs[tail].after; });
        if (longer != tails.begin())
            previous[i] = *std::prev(longer);
        if (longer == tails.end())
            tails.push_back(i);
        else
            *longer = i;
    }
    std::vector<Pair> kept;
    for (size_t i = tails.back(); i != pairs.size(); i = previous[i])
        kept.push_back(pairs[i]);
    std::ranges::reverse(kept);
    return kept;
}

/// All indexes below \a count but \a kept, which ascend.
QList<qsizetype> othersThan(const std::vector<Pair> &kept, qsizetype Pair::*side, qsizetype count)
{
    QList<qsizetype> others;
    others.reserve(count - qsizetype(kept.size()));
    auto next = kept.begin();
    for (qsizetype row = 0; row < count; ++row) {
        if (next != kept.end() && (*next).*side == row)
            ++next;
        else
            others.append(row);
    }
    return others;
}

QList<qsizetype> changedRows(const std::vector<Pair> &pairs, const ClipboardItemList &before,
                             const ClipboardItemList &after)
{
    QList<qsizetype> rows;
    for (const Pair &pair : pairs) {
        const ClipboardItemPointer &old = before[pair.before];
        const ClipboardItemPointer &now = after[pair.after];
        if (old != now && looksDifferent(*old, *now))
            rows.append(pair.after);
    }
    std::ranges::sort(rows);
    return rows;
}

} // namespace

ListDifference listDifference(const ClipboardItemList &before, const ClipboardItemList &after)
{
    if (before.isSharedWith(after))
        return {};
    const std::vector<Pair> common = commonEntries(before, after);
    const std::vector<Pair> kept = inOrder(common);
    return {othersThan(kept, &Pair::before, before.size()),
            othersThan(kept, &Pair::after, after.size()), changedRows(common, before, after)};
}

ListUpdate chooseListUpdate(qsizetype oldCount, qsizetype newCount, qsizetype removedCount,
                            qsizetype changeCount)
{
    if (oldCount == 0)
        return ListUpdate::Reload;
    if (newCount >= oldCount && newCount <= kAlwaysAnimatedCount)
        return ListUpdate::Animate;
    if (newCount > kAlwaysAnimatedCount && changeCount > kMostAnimatedChanges)
        return ListUpdate::Reload;
    const bool isMostlyRemoved = removedCount >= std::max<qsizetype>(3, oldCount / 2);
    if (newCount < oldCount && isMostlyRemoved && newCount <= kFewLeft)
        return ListUpdate::Reload;
    return ListUpdate::Animate;
}
