#pragma once

#include "tests/fakes/FakeClock.h"

#include "core/ClipboardItem.h"

#include <QRandomGenerator>

/// Entries for tests and pictures of the history window.
namespace SampleHistory {

using namespace std::chrono_literals;

inline ClipboardItem item(ClipboardContentType type, const std::optional<QString> &text = {},
                          std::chrono::microseconds age = 0s)
{
    ClipboardItem made = makeItem(type, FakeClock().now() - age);
    if (text)
        made.stringValue = Utf8Text(*text);
    made.contentHash = computeContentHash(made);
    return made;
}

inline ClipboardItem textItem(const QString &text, std::chrono::microseconds age = 0s)
{
    return item(ClipboardContentType::Text, text, age);
}

inline ClipboardItemPointer shared(const ClipboardItem &value)
{
    return std::make_shared<const ClipboardItem>(value);
}

inline ClipboardItemList texts(const QStringList &lines)
{
    ClipboardItemList list;
    for (const QString &line : lines)
        list.append(shared(textItem(line)));
    return list;
}

/// "entry 0", "entry 1", …
inline ClipboardItemList numbered(int count)
{
    ClipboardItemList list;
    for (int i = 0; i < count; ++i)
        list.append(shared(textItem(QStringLiteral("entry %1").arg(i))));
    return list;
}

/// "tag 1", "tag 2", …
inline QStringList numberedTags(int count)
{
    QStringList names;
    for (int i = 1; i <= count; ++i)
        names.append(QStringLiteral("tag %1").arg(i));
    return names;
}

/// One of each kind, with sources, tags, favourites and scripts.
inline ClipboardItemList mixed()
{
    const auto from = [](ClipboardItem made, const char *source, const QStringList &tags = {}) {
        made.sourceAppBundleID = QString::fromLatin1(source);
        made.tags = tags;
        return made;
    };
    using Type = ClipboardContentType;
    ClipboardItem image = from(item(Type::Image, {}, 8min), "org.example.screenshot");
    image.imageThumbnailFileName = QStringLiteral("chart_thumb.png");
    ClipboardItem tides = from(
        textItem(QStringLiteral("The tide tables for Saturday: high water 06:42 (4.1 m), low water "
                                "12:55 (0.8 m), high water 19:10 (4.0 m)"), 26min),
        "org.example.mail", {QStringLiteral("sailing"), QStringLiteral("travel"),
                             QStringLiteral("weather")});
    tides.isFavorite = true;
    ClipboardItem file =
        from(item(Type::File, QStringLiteral("Rechnung 2026-114 – Bäckerei Lindner.pdf"), 1h),
             "org.example.Files", {QStringLiteral("accounts")});
    file.filePath = QStringLiteral("/home/nora/Rechnung 2026-114 – Bäckerei Lindner.pdf");
    ClipboardItem remote = textItem(QStringLiteral("Gate changed: B42 → C17, boarding 18:25"), 2h);
    remote.isRemoteClipboard = true;
    ClipboardItem party = from(
        textItem(QStringLiteral("🎂 Nora turns seven — balloons, candles, the good camera 📷"), 75h),
        "org.example.text-editor", {QStringLiteral("recipes")});
    party.isFavorite = true;
    return {
        shared(from(textItem(QStringLiteral(
                        "SELECT tag, count(*) FROM entries GROUP BY tag ORDER BY 2 DESC;")),
                    "org.example.terminal", {QStringLiteral("snippets")})),
        shared(
            from(item(Type::Url,
                      QStringLiteral("https://www.slovenia-trains.example/timetable?from=ljubljana"
                                     "&to=trieste&day=2026-05-02"),
                      3min),
                 "org.example.web", {QStringLiteral("travel")})),
        shared(image),
        shared(tides),
        shared(file),
        shared(remote),
        shared(from(
            textItem(QStringLiteral("周五下午三点在二楼会议室讨论新版设计，请带上打印好的草图。"),
                     26h),
            "org.example.chat", {QStringLiteral("Work")})),
        shared(from(textItem(QStringLiteral("شكراً جزيلاً، وصل الطرد هذا الصباح"), 27h),
                    "org.example.chat")),
        shared(from(item(Type::Mixed, QStringLiteral("Two pictures and a caption"), 50h),
                    "org.example.office")),
        shared(party),
    };
}

/// Texts of random words, 95 % of 50 to 500 bytes and 5 % of 20 to 100 kB; always the same ones.
inline ClipboardItemList corpus(int count)
{
    static const char *const syllables[] = {
        "ba", "con", "der", "el",  "fi",  "gor", "hen", "in",  "jo", "kal", "lum", "mi", "nor",
        "os", "pra", "qui", "ran", "sol", "te",  "ur",  "ven", "wo", "xe",  "yl",  "zu"};
    QRandomGenerator random(7);
    ClipboardItemList list;
    list.reserve(count);
    for (int i = 0; i < count; ++i) {
        const int size = random.bounded(100) < 5 ? random.bounded(20'000, 100'000)
                                                 : random.bounded(50, 500);
        QByteArray text;
        while (text.size() < size) {
            for (int part = random.bounded(1, 4); part > 0; --part)
                text += syllables[random.bounded(int(std::size(syllables)))];
            text += ' ';
        }
        ClipboardItem made = makeItem(ClipboardContentType::Text,
                                      FakeClock().now() - std::chrono::minutes(i));
        made.stringValue = Utf8Text::fromUtf8(text);
        made.contentHash = QByteArray::number(i);
        made.sourceAppBundleID = QStringLiteral("org.example.program-%1").arg(i % 20);
        list.append(shared(made));
    }
    return list;
}

} // namespace SampleHistory
