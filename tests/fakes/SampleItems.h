#pragma once

#include "core/ClipboardItem.h"

#include <random>
#include <string_view>

/// A copied text with its hash, as capture and insertion leave it.
inline ClipboardItem textItem(const QString &text, Timestamp time)
{
    ClipboardItem item = makeItem(ClipboardContentType::Text, time);
    item.stringValue = Utf8Text(text);
    item.contentHash = computeContentHash(item);
    return item;
}

/// An entry in which no field is absent or has its default, but for the picture in memory and the
/// mark of deletion.
inline ClipboardItem itemWithEveryField(Timestamp time)
{
    using namespace std::chrono_literals;
    ClipboardItem item = makeItem(ClipboardContentType::File, time);
    item.stringValue = Utf8Text(QStringLiteral("naïve 文字 \"quoted\" \U0001F600\n\ttabbed"));
    item.htmlRepresentation = QByteArray("<b>\0\xFF</b>", 9);
    item.rtfRepresentation = QByteArray("{\\rtf1 \xE4}");
    item.imageFileName = QStringLiteral("picture.jpg");
    item.imageThumbnailFileName = QStringLiteral("picture_thumb.jpg");
    item.imageDigest = QByteArray(64, 'd');
    item.filePath = QStringLiteral("/home/someone/Ünïcode/a b.TXT");
    item.fileBookmarkData = QByteArray("\0\1\2\xFE", 4);
    item.fileTypes = {QStringLiteral("TXT"), QString(), QStringLiteral("md")};
    item.isFavorite = true;
    item.cloudRecordID = QStringLiteral("record-7");
    item.syncStatus = SyncStatus::Failed;
    item.lastSyncTime = time + 5s;
    item.sourceAppBundleID = QStringLiteral("org.example.Editor");
    item.isRemoteClipboard = true;
    item.updatedAt = time + 60s;
    item.contentHash = QByteArray(64, 'c');
    item.tags = {QStringLiteral("work"), QStringLiteral("später"), QStringLiteral("a \"b\", c")};
    return item;
}

/// \a item as it comes back from where times have no fractions of a second.
inline ClipboardItem inWholeSeconds(ClipboardItem item)
{
    const auto cut = [](Timestamp &time) { time = std::chrono::floor<std::chrono::seconds>(time); };
    cut(item.timestamp);
    cut(item.updatedAt);
    if (item.lastSyncTime)
        cut(*item.lastSyncTime);
    if (item.deletedAt)
        cut(*item.deletedAt);
    return item;
}

/// Makes entries in which anything is that a field may hold.
class RandomItems
{
public:
    explicit RandomItems(unsigned int seed) : m_random(seed) {}

    ClipboardItem next()
    {
        ClipboardItem item = makeItem(ClipboardContentType(below(5)), time());
        item.stringValue = maybe([this] { return Utf8Text(text()); });
        item.htmlRepresentation = maybe([this] { return LazyBytes(bytes()); });
        item.rtfRepresentation = maybe([this] { return LazyBytes(bytes()); });
        item.imageFileName = maybe([this] { return text(); });
        item.imageThumbnailFileName = maybe([this] { return text(); });
        item.imageDigest = maybe([this] { return bytes().toHex(); });
        item.filePath = maybe([this] { return text(); });
        item.fileBookmarkData = maybe([this] { return bytes(); });
        item.fileTypes = texts();
        item.isFavorite = below(2);
        item.cloudRecordID = maybe([this] { return text(); });
        item.syncStatus = SyncStatus(below(4));
        item.lastSyncTime = maybe([this] { return time(); });
        item.sourceAppBundleID = maybe([this] { return text(); });
        item.isRemoteClipboard = below(2);
        item.updatedAt = time();
        item.contentHash = computeContentHash(item);
        item.tags = texts();
        return item;
    }

    int below(int end) { return std::uniform_int_distribution(0, end - 1)(m_random); }

private:
    template <typename Make>
    auto maybe(Make make) -> std::optional<decltype(make())>
    {
        if (below(3) == 0)
            return std::nullopt;
        return make();
    }

    /// Between the years 33 and 3900, with fractions of a second.
    Timestamp time()
    {
        constexpr qint64 kFarAway = 61'000'000'000'000'000;
        return timestampFromMicroseconds(
            std::uniform_int_distribution(-kFarAway, kFarAway)(m_random));
    }

    /// Short ones, long ones, and empty ones; all kinds of characters, in runs and mixed.
    QString text()
    {
        QString text;
        for (int rest = length(); rest > 0; --rest)
            text += QChar::fromUcs4(character());
        return text;
    }

    char32_t character()
    {
        using namespace std::string_view_literals;
        static constexpr auto kTraps
            = U"\0\t\n\r\x1B\x7F\x85\xA0\u2028\uFEFF\uFFFD\uFFFF\\\"/<&\U0001F600\U0010FFFF"sv;
        switch (below(4)) {
        case 0: return kTraps[size_t(below(int(kTraps.size())))];
        case 1: return char32_t(0x400 + below(0x100));
        default: return char32_t(' ' + below(95));
        }
    }

    QByteArray bytes()
    {
        QByteArray bytes(length(), Qt::Uninitialized);
        for (char &byte : bytes)
            byte = char(below(256));
        return bytes;
    }

    QStringList texts()
    {
        QStringList texts;
        for (int rest = below(4); rest > 0; --rest)
            texts.append(text());
        return texts;
    }

    int length() { return below(8) == 0 ? below(5'000) : below(20); }

    std::mt19937 m_random;
};
