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

} // namespace

HistoryFilter::~HistoryFilter()
{
    if (!m_hasLongTexts)
        return;
    m_longTextReader.reset();
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
    if (m_category.kind == FilterCategory::Kind::All && m_query.isEmpty())
        return items;
    // A text with the longer query in it has the shorter one too.
    const bool isNarrowed = !m_lastSearchText.isEmpty() && items.isSharedWith(m_lastItems)
        && m_category == m_lastCategory
        && m_searchText.toLower().contains(m_lastSearchText.toLower());
    const ClipboardItemList candidates = isNarrowed ? m_lastMatches : items;

    ClipboardItemList matching;
    for (const ClipboardItemPointer &item : candidates) {
        if (matches(*item))
            matching.append(item);
    }
    // After the pass, which is not to wait for it.
    if (m_hasLongTexts && !m_longTextReader)
        m_longTextReader.emplace(items);
    m_lastItems = items;
    m_lastMatches = matching;
    m_lastCategory = m_category;
    m_lastSearchText = m_searchText;
    return matching;
}

bool HistoryFilter::matches(const ClipboardItem &item)
{
    return isInCategory(item) && (m_query.isEmpty() || isFound(item));
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

bool HistoryFilter::isFound(const ClipboardItem &item)
{
    if (item.isRemoteClipboard && m_isRemoteWordFound)
        return true;
    if (item.sourceAppBundleID && !item.sourceAppBundleID->isEmpty()
        && isSourceFound(*item.sourceAppBundleID))
        return true;
    return item.stringValue && isTextFound(*item.stringValue);
}

bool HistoryFilter::isTextFound(const Utf8Text &text)
{
    m_hasLongTexts = m_hasLongTexts || text.isLong();
    if (m_query.isContainedInUtf8(text.start()))
        return true;
    if (!text.isLong())
        return false;
    // The next letter will ask for it again.
    const auto bytes = text.longBytes().hold();
    if (!bytes)
        return false;
    m_heldTexts.insert(bytes);
    return m_query.isContainedInUtf8(*bytes);
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
