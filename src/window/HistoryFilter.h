#pragma once

#include "foundation/LoweredQuery.h"
#include "window/FilterCategory.h"

#include <memory>
#include <unordered_set>

class ApplicationNames;

/// Which entries of the history the list shows.
///
/// An entry is found by its text, by the name of the program that it came from, and if it came from
/// another device by words for that; case does not matter.
class HistoryFilter
{
public:
    /// \a names must outlive the filter.
    explicit HistoryFilter(ApplicationNames &names) : m_names(names) {}
    ~HistoryFilter();
    HistoryFilter(const HistoryFilter &) = delete;
    HistoryFilter &operator=(const HistoryFilter &) = delete;

    const FilterCategory &category() const { return m_category; }
    const QString &searchText() const { return m_searchText; }
    void setCategory(const FilterCategory &category);
    void setSearchText(const QString &text);

    /// The entries of \a items that match, in their order. While a search text grows at an end,
    /// only what matched before is looked at again.
    ClipboardItemList matchesIn(const ClipboardItemList &items);

    /// Whether the last pass looked only at what the one before had found.
    bool hasNarrowed() const { return m_hasNarrowed; }

    /// The same rule for one entry.
    bool matches(const ClipboardItem &item);

private:
    bool isInCategory(const ClipboardItem &item) const;
    bool isFound(const ClipboardItem &item);
    bool isSourceFound(const QString &bundleID);
    bool isTextFound(const Utf8Text &text);
    std::shared_ptr<const QByteArray> heldBytes(const Utf8Text &text);

    ApplicationNames &m_names;
    FilterCategory m_category;
    QString m_searchText;
    LoweredQuery m_query{QString()};
    bool m_isRemoteWordFound = false;
    QHash<QString, bool> m_foundSources; ///< What isSourceFound() gave for the present query.
    std::unordered_set<std::shared_ptr<const QByteArray>> m_heldTexts; ///< Read back to be searched.
    qsizetype m_heldByteCount = 0;
    bool m_hasNarrowed = false;

    // The last pass. Holding the lists keeps their buffers from being used for others.
    ClipboardItemList m_lastItems;
    ClipboardItemList m_lastMatches;
    FilterCategory m_lastCategory;
    QString m_lastSearchText;
};
