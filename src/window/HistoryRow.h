#pragma once

#include "core/ClipboardItem.h"

#include <QCache>

class ApplicationNames;
class Clock;

/// The texts of one row of the list.
struct HistoryRow
{
    QString content;
    bool isPlaceholder = false; ///< The content is a word of ours, not of the entry.
    QString meta; ///< What it is, where it came from, its tags.
    QString time;

    friend bool operator==(const HistoryRow &, const HistoryRow &) = default;
};

/// How many tags of an entry its row names; of the others it gives the number.
inline constexpr qsizetype kShownTags = 2;

/// What is shown of the name of the application that an entry came from.
QString shownAppName(const QString &bundleID, ApplicationNames &names);

HistoryRow makeHistoryRow(const ClipboardItem &item, ApplicationNames &names, Timestamp now);

/// The texts of the rows that were shown lately. A row keeps its texts, its time included, until
/// its entry changes or the texts are forgotten.
class HistoryRowCache
{
public:
    /// Both must outlive the cache.
    HistoryRowCache(ApplicationNames &names, const Clock &clock);

    /// Valid until the next call.
    const HistoryRow &row(const ClipboardItemPointer &item);

    /// The same for those who hear it.
    QString spokenRow(const ClipboardItemPointer &item);

    void forgetAll();

private:
    struct Entry
    {
        std::weak_ptr<const ClipboardItem> item;
        Timestamp madeAt;
        HistoryRow row;
    };

    const Entry &entry(const ClipboardItemPointer &item);

    ApplicationNames &m_names;
    const Clock &m_clock;
    QCache<QUuid, Entry> m_entries;
};
