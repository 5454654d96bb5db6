#include "window/SpokenRow.h"

#include "foundation/TextTools.h"
#include "language/Localized.h"
#include "tags/Tag.h"
#include "window/ApplicationNames.h"
#include "window/HistoryRow.h"
#include "window/RelativeTime.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Heard as a short pause, in any language.
const QString kPause = u", "_s;

QString spokenType(ClipboardContentType type)
{
    switch (type) {
    case ClipboardContentType::Text: return localized(u"speech.type.text"_s, u"Text"_s);
    case ClipboardContentType::Image: return localized(u"speech.type.image"_s, u"Image"_s);
    case ClipboardContentType::File: return localized(u"speech.type.file"_s, u"File"_s);
    case ClipboardContentType::Url: return localized(u"speech.type.link"_s, u"Link"_s);
    case ClipboardContentType::Mixed:
        return localized(u"speech.type.mixed"_s, u"Mixed content"_s);
    }
    return {};
}

/// As many as the row shows.
QString spokenTags(const QStringList &tags)
{
    QStringList parts;
    for (const QString &name : tags.first(std::min(kShownTags, tags.size())))
        parts.append(shownTagName(name));
    if (tags.size() > kShownTags)
        parts.append(filledIn(localized(u"speech.more_tags"_s, u"and %d more"_s),
                              {tags.size() - kShownTags}));
    return filledIn(localized(u"speech.tags"_s, u"tagged %@"_s), {parts.join(kPause)});
}

} // namespace

QString spokenRow(const ClipboardItem &item, const HistoryRow &row, ApplicationNames &names,
                  Timestamp now)
{
    QStringList parts{spokenType(item.contentType)};
    if (!row.isPlaceholder) // Which would be the same word again.
        parts.append(row.content);
    if (item.isRemoteClipboard)
        parts.append(localized(u"speech.remote"_s, u"from another device"_s));
    if (item.sourceAppBundleID && !item.sourceAppBundleID->isEmpty())
        parts.append(filledIn(localized(u"speech.source"_s, u"from %@"_s),
                              {shownAppName(*item.sourceAppBundleID, names)}));
    if (!item.tags.isEmpty())
        parts.append(spokenTags(item.tags));
    parts.append(spokenRelativeTime(item.timestamp, now));
    if (item.isFavorite)
        parts.append(localized(u"speech.favorite"_s, u"favorite"_s));
    return speakable(parts.join(kPause));
}
