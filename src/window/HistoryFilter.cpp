#include "window/HistoryFilter.h"

#include "foundation/FreeMemory.h"
#include "window/ApplicationNames.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr std::array kRemoteWords{
    QStringView(u"remote"),
    QStringView(u"remote clipboard"),
    QStringView(u"远端"),
    QStringView(u"手机"),
};

/// As much of the long texts that had to be read stays in memory until the window closes.
constexpr qsizetype kMostHeldBytes = 32 * 1024 * 1024;

} // namespace

HistoryFilter::~HistoryFilter()
{
    if (m_heldTexts.empty())
        return;
    m_heldTexts.clear();
    returnFreeMemory();
}

void HistoryFilter::setCategory(const FilterCategory &category)
{
    m_category = category;
}

void HistoryFilter::setSearchText(const QString &text)
{
    if (text == m_searchText)
        return;
    m_searchText = text;
    m_query = LoweredQuery(text);
    m_isRemoteWordFound = std::ranges::any_of(kRemoteWords, [lowered = text.toLower()](auto word) {
        return word.contains(lowered);
    });
    m_foundSources.clear();
}

ClipboardItemList HistoryFilter::matchesIn(const ClipboardItemList &items)
{
    return *pass(items, Reading::Wait);
}

std::optional<ClipboardItemList> HistoryFilter::matchesAtHandIn(const ClipboardItemList &items)
{
    return pass(items, Reading::Skip);
}

bool HistoryFilter::matches(const ClipboardItem &item)
{
    return *matches(item, Reading::Wait);
}

std::optional<ClipboardItemList> HistoryFilter::pass(const ClipboardItemList &items,
                                                     Reading reading)
{
    m_hasNarrowed = false;
    m_unreadItems.clear();
    if (m_category.kind == FilterCategory::Kind::All && m_query.isEmpty())
        return items;
    // A text with the longer query in it has the shorter one too.
    m_hasNarrowed = !m_lastSearchText.isEmpty() && items.isSharedWith(m_lastItems)
        && m_category == m_lastCategory
        && m_searchText.toLower().contains(m_lastSearchText.toLower());
    const ClipboardItemList candidates = m_hasNarrowed ? m_lastMatches : items;

    ClipboardItemList matching;
    for (const ClipboardItemPointer &item : candidates) {
        const std::optional<bool> isMatch = matches(*item, reading);
        if (!isMatch)
            m_unreadItems.append(item);
        else if (*isMatch)
            matching.append(item);
    }
    if (!m_unreadItems.isEmpty())
        return std::nullopt;
    m_lastItems = items;
    m_lastMatches = matching;
    m_lastCategory = m_category;
    m_lastSearchText = m_searchText;
    return matching;
}

std::optional<bool> HistoryFilter::matches(const ClipboardItem &item, Reading reading)
{
    if (!isInCategory(item))
        return false;
    return m_query.isEmpty() ? std::optional(true) : isFound(item, reading);
}

bool HistoryFilter::isInCategory(const ClipboardItem &item) const
{
    switch (m_category.kind) {
    case FilterCategory::Kind::All: return true;
    case FilterCategory::Kind::Favorites: return item.isFavorite;
    case FilterCategory::Kind::Content: return item.contentType == m_category.contentType;
    case FilterCategory::Kind::Tag: return item.tags.contains(m_category.tagName);
    }
    return false;
}

std::optional<bool> HistoryFilter::isFound(const ClipboardItem &item, Reading reading)
{
    if (item.isRemoteClipboard && m_isRemoteWordFound)
        return true;
    if (item.sourceAppBundleID && !item.sourceAppBundleID->isEmpty()
        && isSourceFound(*item.sourceAppBundleID))
        return true;
    return item.stringValue ? isTextFound(*item.stringValue, reading) : false;
}

std::optional<bool> HistoryFilter::isTextFound(const Utf8Text &text, Reading reading)
{
    if (const auto answer = m_query.answerWithoutReading(text))
        return answer;
    auto bytes = text.longBytes().atHand();
    if (!bytes && reading == Reading::Skip)
        return std::nullopt;
    if (!bytes)
        bytes = text.longBytes().hold();
    if (!bytes)
        return false;
    hold(bytes);
    return m_query.isContainedInUtf8(*bytes);
}

/// The next letter will ask for it again. One text may go beyond the limit: read anew at each letter,
/// a huge one would cost more than its room.
void HistoryFilter::hold(const std::shared_ptr<const QByteArray> &bytes)
{
    if (m_heldByteCount < kMostHeldBytes && m_heldTexts.insert(bytes).second)
        m_heldByteCount += bytes->size();
}

bool HistoryFilter::isSourceFound(const QString &bundleID)
{
    const auto known = m_foundSources.constFind(bundleID);
    if (known != m_foundSources.constEnd())
        return *known;
    const bool isFound = m_query.isContainedIn(m_names.appDisplayName(bundleID));
    m_foundSources.insert(bundleID, isFound);
    return isFound;
}
