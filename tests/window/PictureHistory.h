#pragma once

#include "tests/window/SampleHistory.h"

#include "language/LanguageManager.h"

#include <QHash>

/// The entries that pictures of the history window show, so that two of them can be laid side by
/// side.
namespace PictureHistory {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using Type = ClipboardContentType;

/// From the program that is called by the last part of its identifier.
inline ClipboardItemPointer from(const char *source, ClipboardItem made,
                                 const QStringList &tags = {})
{
    made.sourceAppBundleID = u"org.example."_s + QLatin1StringView(source);
    made.tags = tags;
    return SampleHistory::shared(made);
}

inline ClipboardItem favorite(ClipboardItem made)
{
    made.isFavorite = true;
    return made;
}

inline ClipboardItem remote(ClipboardItem made)
{
    made.isRemoteClipboard = true;
    return made;
}

inline ClipboardItem text(std::chrono::seconds age, const QString &words)
{
    return SampleHistory::textItem(words, age);
}

inline ClipboardItem link(std::chrono::seconds age, const QString &address)
{
    return SampleHistory::item(Type::Url, address, age);
}

inline ClipboardItem image(std::chrono::seconds age, const QString &thumbnail)
{
    ClipboardItem made = SampleHistory::item(Type::Image, {}, age);
    made.imageThumbnailFileName = thumbnail + u"_thumb.png"_s;
    return made;
}

inline ClipboardItem file(std::chrono::seconds age, const QString &name)
{
    ClipboardItem made = SampleHistory::item(Type::File, name, age);
    made.filePath = u"/home/nora/"_s + name;
    return made;
}

inline ClipboardItem tides(std::chrono::seconds age)
{
    return text(age, u"The tide tables for Saturday: high water 06:42 (4.1 m), low water 12:55 "
                     "(0.8 m), high water 19:10 (4.0 m)"_s);
}

inline const QString &trains()
{
    static const QString address =
        u"https://www.slovenia-trains.example/timetable?from=ljubljana&to=trieste&day=2026-05-02"_s;
    return address;
}

inline const QString &sketches()
{
    static const QString words = u"周五下午三点在二楼会议室讨论新版设计，请带上打印好的草图。"_s;
    return words;
}

inline ClipboardItemList english()
{
    return {
        from("terminal",
             text(0s, u"SELECT tag, count(*) FROM entries GROUP BY tag ORDER BY 2 DESC;"_s),
             {u"snippets"_s}),
        from("web", link(3min, trains()), {u"travel"_s}),
        from("screenshot", image(8min, u"chart"_s)),
        from("mail", favorite(tides(26min)), {u"sailing"_s, u"travel"_s, u"Work"_s}),
        from("Files", file(1h, u"Rechnung 2026-114 – Bäckerei Lindner.pdf"_s), {u"accounts"_s}),
        SampleHistory::shared(remote(text(2h, u"Gate changed: B42 → C17, boarding 18:25"_s))),
        from("chat", text(26h, sketches()), {u"Work"_s}),
        from("chat", text(27h, u"شكراً جزيلاً، وصل الطرد هذا الصباح"_s)),
        from("terminal",
             text(50h,
                  u"sha256:9f86d081884c7d659a2feaa0c55ad015a3bf4f1b2b0b822cd15d6c15b0f00a08"_s)),
        from("text-editor",
             favorite(text(75h, u"🎂 Nora turns seven — balloons, candles, the good camera 📷"_s)),
             {u"recipes"_s}),
    };
}

inline ClipboardItemList chinese()
{
    return {
        from(
            "chat",
            text(0s,
                 u"周五下午三点在二楼会议室讨论新版设计，请带上打印好的草图和上次的会议记录，我们从"
                 "第三页开始。"_s),
            {u"工作"_s}),
        from("web", link(5min, u"https://map.example.cn/route?from=虹桥火车站&to=外滩"_s),
             {u"出行"_s}),
        from("screenshot", image(18min, u"evening"_s)),
        from("mail",
             favorite(
                 text(1h, u"订单号 SF1387-2040-6651，预计明天 14:00 前送达，请保持电话畅通。"_s)),
             {u"购物"_s, u"家"_s, u"账目"_s, u"代码"_s}),
        from("Files", file(3h, u"二〇二六年度预算（第三稿）.csv"_s), {u"账目"_s}),
        SampleHistory::shared(
            remote(text(26h, u"取件码 7-3-0921，请于今晚八点前到东门快递柜取件"_s))),
        from("text-editor",
             text(27h, u"const total = items.reduce((sum, it) => sum + it.price * it.qty, 0);"_s),
             {u"代码"_s}),
        from("web", favorite(text(50h, u"山重水复疑无路，柳暗花明又一村。"_s)), {u"读书"_s}),
        from("text-editor",
             text(75h, u"🧧 除夕菜单：清蒸鲈鱼、四喜丸子、八宝饭、春卷"_s)),
    };
}

/// What a search for a word finds that is in all of them.
inline ClipboardItemList englishFound()
{
    return {
        from("text-editor",
             text(12min, u"Water the tomatoes, feed the cat, keys under the third pot"_s)),
        from("mail", favorite(text(26min, u"high water 06:42 (4.1 m), low water 12:55 (0.8 m)"_s)),
             {u"sailing"_s}),
        from("web",
             link(26h, u"https://boatyard.example/articles/below-the-waterline-antifouling-for-"
                       "wooden-hulls"_s),
             {u"sailing"_s, u"reading list"_s}),
        from("Files", file(100h, u"watermark-landscape.zip"_s)),
    };
}

inline ClipboardItemList englishTagged()
{
    return {
        from("web", link(3min, trains()), {u"travel"_s}),
        from("mail", favorite(tides(26min)), {u"sailing"_s, u"travel"_s, u"Work"_s}),
        from("maps", image(2h, u"evening"_s), {u"travel"_s}),
        from("web",
             favorite(text(26h, u"Pension Zlata Ladja, Jurčičev trg 1, 1000 Ljubljana, +386 1 555 "
                                "0117"_s)),
             {u"travel"_s}),
        from("mail", file(50h, u"tickets-ljubljana-trieste.pdf"_s), {u"travel"_s, u"accounts"_s}),
        from("text-editor",
             text(75h, u"Packing: passport, adapter, swimming things, the blue notebook"_s),
             {u"travel"_s}),
    };
}

inline ClipboardItemList englishAtWork()
{
    return {
        from("chat", text(26h, sketches()), {u"Work"_s}),
        from("mail", favorite(tides(27h)), {u"sailing"_s, u"travel"_s, u"Work"_s}),
        from("web", link(50h, u"https://wiki.northpier.example/harbour/berths?season=2027"_s),
             {u"Work"_s, u"reading list"_s}),
        from("mail", file(7 * 24h, u"berth-plan-final-FINAL-2.pdf"_s), {u"Work"_s}),
    };
}

/// Pictures of all shapes, and one whose file is not there.
inline ClipboardItemList thumbnails()
{
    ClipboardItemList items;
    for (const auto &name : {u"chart"_s, u"wide"_s, u"tall"_s, u"flat"_s, u"small"_s, u"gone"_s})
        items.append(SampleHistory::shared(image(0s, name)));
    return items;
}

inline QStringList tags(AppLanguage language)
{
    if (language == AppLanguage::Chinese) {
        return {u"出行"_s, u"工作"_s, u"账目"_s, u"购物"_s, u"家"_s, u"代码"_s, u"读书"_s};
    }
    return {u"travel"_s, u"accounts"_s,     u"sailing"_s, u"recipes"_s,
            u"Work"_s,   u"reading list"_s, u"snippets"_s};
}

/// Names of the programs; those that are missing are made of their identifiers.
inline QHash<QString, QString> applicationNames(AppLanguage language)
{
    if (language != AppLanguage::Chinese)
        return {};
    return {
        {u"org.example.chat"_s, u"聊天"_s},        {u"org.example.web"_s, u"网页"_s},
        {u"org.example.screenshot"_s, u"截图"_s},  {u"org.example.mail"_s, u"邮件"_s},
        {u"org.example.Files"_s, u"文件管理器"_s}, {u"org.example.text-editor"_s, u"文本编辑器"_s}};
}

} // namespace PictureHistory
