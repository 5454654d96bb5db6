#include "window/HistoryRow.h"

#include "foundation/TextTools.h"
#include "language/Localized.h"
#include "platform/Clock.h"
#include "tags/Tag.h"
#include "window/ApplicationNames.h"
#include "window/RelativeTime.h"
#include "window/SpokenRow.h"

#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kContentLength = 80;
// Names may have been made by anybody, and each line is drawn again and again.
constexpr qsizetype kFileNameUnits = 480;
constexpr qsizetype kAppNameUnits = 100;
constexpr int kCachedRows = 64;

QString typeWord(ClipboardContentType type)
{
    switch (type) {
    case ClipboardContentType::Text: return localized(u"type.text"_s, u"TEXT"_s);
    case ClipboardContentType::Image: return localized(u"type.image"_s, u"IMAGE"_s);
    case ClipboardContentType::File: return localized(u"type.file"_s, u"FILE"_s);
    case ClipboardContentType::Url: return localized(u"type.link"_s, u"LINK"_s);
    case ClipboardContentType::Mixed: return localized(u"type.mixed"_s, u"MIXED"_s);
    }
    return {};
}

QString capitalised(QString word)
{
    if (!word.isEmpty())
        word[0] = word[0].toUpper();
    return word;
}

void setContent(HistoryRow &row, const ClipboardItem &item)
{
    if (const auto line = item.singleLinePreview(kContentLength)) {
        row.content = *line;
    } else if (item.contentType == ClipboardContentType::File && item.filePath) {
        row.content = shortened(QFileInfo(*item.filePath).fileName(), kFileNameUnits);
    } else {
        row.isPlaceholder = true;
        row.content = item.contentType == ClipboardContentType::Image
            ? localized(u"content.image"_s, u"[Image]"_s)
            : capitalised(rawValue(item.contentType));
    }
}

QString metaLine(const ClipboardItem &item, ApplicationNames &names)
{
    QStringList parts{typeWord(item.contentType)};
    if (item.isRemoteClipboard)
        parts.append(localized(u"type.remote"_s, u"REMOTE"_s));
    if (item.sourceAppBundleID && !item.sourceAppBundleID->isEmpty())
        parts.append(isolatedName(shownAppName(*item.sourceAppBundleID, names)));
    for (const QString &name : item.tags.first(std::min(kShownTags, item.tags.size())))
        parts.append(isolatedName(shownTagName(name)));
    if (item.tags.size() > kShownTags)
        parts.append(u'+' + QString::number(item.tags.size() - kShownTags));
    return parts.join(u" · "_s);
}

} // namespace

QString shownAppName(const QString &bundleID, ApplicationNames &names)
{
    return shortened(names.appDisplayName(bundleID), kAppNameUnits);
}

HistoryRow makeHistoryRow(const ClipboardItem &item, ApplicationNames &names, Timestamp now)
{
    HistoryRow row;
    setContent(row, item);
    row.meta = metaLine(item, names);
    row.time = relativeTime(item.timestamp, now);
    return row;
}

HistoryRowCache::HistoryRowCache(ApplicationNames &names, const Clock &clock)
    : m_names(names)
    , m_clock(clock)
    , m_entries(kCachedRows)
{
}

const HistoryRow &HistoryRowCache::row(const ClipboardItemPointer &item)
{
    return entry(item).row;
}

QString HistoryRowCache::spokenRow(const ClipboardItemPointer &item)
{
    const Entry &shown = entry(item);
    return ::spokenRow(*item, shown.row, m_names, shown.madeAt);
}

void HistoryRowCache::forgetAll()
{
    m_entries.clear();
}

const HistoryRowCache::Entry &HistoryRowCache::entry(const ClipboardItemPointer &item)
{
    Entry *entry = m_entries.object(item->id);
    if (!entry || entry->item.lock() != item) {
        const Timestamp now = m_clock.now();
        entry = new Entry{item, now, makeHistoryRow(*item, m_names, now)};
        m_entries.insert(item->id, entry);
    }
    return *entry;
}
