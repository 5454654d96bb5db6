#include "window/ListDifference.h"

#include <QHash>

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

namespace {

constexpr qsizetype kAlwaysAnimatedCount = 100;
constexpr qsizetype kMostAnimatedChanges = 50;
constexpr qsizetype kFewLeft = 2;
constexpr qsizetype kFewChanges = 50;

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

/// The shortest way from one list to another, for lists that are nearly the same: a copy on top of
/// ten thousand entries costs a comparison of pointers each, and no hashing. This is Myers' greedy
/// algorithm: diagonal k holds the pairs whose places differ by k, and each round reaches as far
/// along every diagonal as one more removal or insertion allows.
class ShortWay
{
public:
    ShortWay(const ClipboardItemList &before, const ClipboardItemList &after)
        : m_before(before)
        , m_after(after)
    {
    }

    /// The pairs that stay in place, in order; absent if there are more than kFewChanges changes.
    std::optional<std::vector<Pair>> find()
    {
        const qsizetype lastDiagonal = m_before.size() - m_after.size();
        for (qsizetype changes = std::abs(lastDiagonal); changes <= kFewChanges; ++changes) {
            while (qsizetype(m_reached.size()) <= changes)
                advance();
            if (isWithin(changes, lastDiagonal)
                && reached(changes, lastDiagonal) >= m_before.size())
                return pairs(changes, lastDiagonal);
        }
        return {};
    }

private:
    static bool isWithin(qsizetype changes, qsizetype diagonal)
    {
        return (changes - diagonal) % 2 == 0;
    }

    qsizetype reached(qsizetype changes, qsizetype diagonal) const
    {
        return m_reached[size_t(changes)][size_t(diagonal + changes)];
    }

    /// The diagonal from which the last of \a changes leads to \a diagonal.
    qsizetype origin(qsizetype changes, qsizetype diagonal) const
    {
        const bool isInsertion = diagonal == -changes
            || (diagonal != changes
                && reached(changes - 1, diagonal - 1) < reached(changes - 1, diagonal + 1));
        return isInsertion ? diagonal + 1 : diagonal - 1;
    }

    /// Where in the old list the part on \a diagonal begins that follows the last of \a changes.
    qsizetype start(qsizetype changes, qsizetype diagonal) const
    {
        if (changes == 0)
            return 0;
        const qsizetype from = origin(changes, diagonal);
        return reached(changes - 1, from) + (from < diagonal ? 1 : 0);
    }

    void advance()
    {
        const qsizetype changes = qsizetype(m_reached.size());
        std::vector<qsizetype> round(size_t(2 * changes + 1));
        for (qsizetype diagonal = -changes; diagonal <= changes; diagonal += 2) {
            qsizetype row = start(changes, diagonal);
            while (row < m_before.size() && row - diagonal < m_after.size()
                   && isSame(m_before[row], m_after[row - diagonal]))
                ++row;
            round[size_t(diagonal + changes)] = row;
        }
        m_reached.push_back(std::move(round));
    }

    static bool isSame(const ClipboardItemPointer &one, const ClipboardItemPointer &other)
    {
        return one == other || one->id == other->id;
    }

    std::vector<Pair> pairs(qsizetype changes, qsizetype diagonal) const
    {
        std::vector<Pair> pairs;
        pairs.reserve(size_t(m_before.size()));
        for (qsizetype end = m_before.size();; --changes) {
            const qsizetype first = start(changes, diagonal);
            while (end > first) {
                --end;
                pairs.push_back({end, end - diagonal});
            }
            if (changes == 0)
                break;
            diagonal = origin(changes, diagonal);
            end = reached(changes - 1, diagonal);
        }
        std::ranges::reverse(pairs);
        return pairs;
    }

    const ClipboardItemList &m_before;
    const ClipboardItemList &m_after;
    std::vector<std::vector<qsizetype>> m_reached; ///< For each number of changes, by diagonal.
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

/// Adds the entries that changed their place.
void appendMoved(std::vector<Pair> &pairs, const ListDifference &difference,
                 const ClipboardItemList &before, const ClipboardItemList &after)
{
    for (const qsizetype removed : difference.removedRows) {
        for (const qsizetype inserted : difference.insertedRows) {
            if (before[removed]->id == after[inserted]->id)
                pairs.push_back({removed, inserted});
        }
    }
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
    if (const auto kept = ShortWay(before, after).find()) {
        ListDifference difference{othersThan(*kept, &Pair::before, before.size()),
                                  othersThan(*kept, &Pair::after, after.size()), {}};
        std::vector<Pair> common = *kept;
        appendMoved(common, difference, before, after);
        difference.changedRows = changedRows(common, before, after);
        return difference;
    }
    const std::vector<Pair> common = commonEntries(before, after);
    const std::vector<Pair> kept = inOrder(common);
    return {othersThan(kept, &Pair::before, before.size()),
            othersThan(kept, &Pair::after, after.size()), changedRows(common, before, after)};
}

qsizetype oldRow(const ListDifference &difference, qsizetype newRow)
{
    const QList<qsizetype> &inserted = difference.insertedRows;
    qsizetype row = newRow - (std::ranges::lower_bound(inserted, newRow) - inserted.begin());
    for (const qsizetype removed : difference.removedRows) {
        if (removed > row)
            break;
        ++row;
    }
    return row;
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
