#pragma once

#include "foundation/LoweredQuery.h"
#include "window/FilterCategory.h"

#include <memory>
#include <optional>
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

    /// The same if no text has to be read back for it; else absent, and unreadItems() are those whose
    /// texts it takes.
    std::optional<ClipboardItemList> matchesAtHandIn(const ClipboardItemList &items);
    const ClipboardItemList &unreadItems() const { return m_unreadItems; }

    /// Whether the last pass looked only at what the one before had found.
    bool hasNarrowed() const { return m_hasNarrowed; }

    /// The same rule for one entry.
    bool matches(const ClipboardItem &item);

private:
    enum class Reading { Skip, Wait };

    std::optional<ClipboardItemList> pass(const ClipboardItemList &items, Reading reading);
    bool isInCategory(const ClipboardItem &item) const;
    // Absent if it cannot be told without reading, and that is to be skipped.
    std::optional<bool> matches(const ClipboardItem &item, Reading reading);
    std::optional<bool> isFound(const ClipboardItem &item, Reading reading);
    std::optional<bool> isTextFound(const Utf8Text &text, Reading reading);
    bool isSourceFound(const QString &bundleID);
    void hold(const std::shared_ptr<const QByteArray> &bytes);

    ApplicationNames &m_names;
    FilterCategory m_category;
    QString m_searchText;
    LoweredQuery m_query{QString()};
    bool m_isRemoteWordFound = false;
    QHash<QString, bool> m_foundSources; ///< What isSourceFound() gave for the present query.
    std::unordered_set<std::shared_ptr<const QByteArray>> m_heldTexts; ///< Read back to be searched.
    qsizetype m_heldByteCount = 0;
    bool m_hasNarrowed = false;
    ClipboardItemList m_unreadItems;

    // The last pass. Holding the lists keeps their buffers from being used for others.
    ClipboardItemList m_lastItems;
    ClipboardItemList m_lastMatches;
    FilterCategory m_lastCategory;
    QString m_lastSearchText;
};
