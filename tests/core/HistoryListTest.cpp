#include "core/HistoryList.h"
#include "tests/fakes/SampleItems.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const Timestamp kNow = timestampFromMicroseconds(1'776'000'000'000'000);

ClipboardItemPointer entry(const QString &text, std::chrono::seconds age, bool isFavorite = false)
{
    ClipboardItem item = textItem(text, kNow - age);
    item.isFavorite = isFavorite;
    return std::make_shared<const ClipboardItem>(std::move(item));
}

QStringList textsOf(const ClipboardItemList &items)
{
    QStringList texts;
    for (const ClipboardItemPointer &item : items)
        texts.append(item->stringValue->toString());
    return texts;
}

/// A small world of values, so that entries are equal in one way or another again and again.
ClipboardItem randomItem(QRandomGenerator &random)
{
    const auto optionally = [&random](auto value) {
        return random.bounded(2) ? std::optional(value) : std::nullopt;
    };
    const auto digit = [&random] { return QString::number(random.bounded(3)); };
    ClipboardItem item = makeItem(ClipboardContentType(random.bounded(5)),
                                  kNow + std::chrono::seconds(random.bounded(20)));
    item.stringValue = optionally(Utf8Text(QString(60, u' ') + digit() + QString(60, u' ')));
    item.htmlRepresentation = optionally(digit().toUtf8());
    item.rtfRepresentation = optionally(digit().toUtf8());
    item.imageRepresentation = optionally(digit().toUtf8());
    item.imageDigest = optionally(digit().toUtf8());
    item.imageFileName = optionally(digit());
    item.filePath = optionally(digit());
    item.isFavorite = random.bounded(3) == 0;
    // Stored hashes need not fit the content.
    item.contentHash = random.bounded(3) ? computeContentHash(item) : digit().toUtf8();
    return item;
}

/// The list as the rules tell it, looking at every entry each time.
struct PlainList
{
    ClipboardItemList items;

    void sort()
    {
        std::ranges::stable_sort(items, std::greater(),
                                 [](const ClipboardItemPointer &item) { return item->timestamp; });
    }

    ClipboardItemList trim(qsizetype capacity)
    {
        ClipboardItemList evicted;
        qsizetype count = 0;
        items.removeIf([&](const ClipboardItemPointer &item) {
            if (item->isFavorite || ++count <= capacity)
                return false;
            evicted.append(item);
            return true;
        });
        return evicted;
    }
};

} // namespace

class HistoryListTest : public QObject
{
    Q_OBJECT

private slots:
    void isSortedNewestFirst();
    void anEntryGoesInFrontOfThoseOfTheSameTime();
    void theOldestGoFirst();
    void favouritesNeitherCountNorGo();
    void favouritesBeyondTheCapacityStay();
    void trimmingWithinTheCapacityTakesNothing();
    void copiesDoNotChangeWithTheList();
    void behavesLikeAListThatLooksAtEveryEntry();
};

void HistoryListTest::isSortedNewestFirst()
{
    HistoryList list;
    list.assign({entry(u"c"_s, 9s), entry(u"a"_s, 1s), entry(u"b1"_s, 5s), entry(u"b2"_s, 5s)});
    QCOMPARE(textsOf(list.items()), (QStringList{u"a"_s, u"b1"_s, u"b2"_s, u"c"_s}));
    list.insert(entry(u"late"_s, 7s));
    QCOMPARE(textsOf(list.items()), (QStringList{u"a"_s, u"b1"_s, u"b2"_s, u"late"_s, u"c"_s}));
}

void HistoryListTest::anEntryGoesInFrontOfThoseOfTheSameTime()
{
    HistoryList list;
    for (const QString &text : {u"1"_s, u"2"_s, u"3"_s})
        list.insert(entry(text, 5s));
    QCOMPARE(textsOf(list.items()), (QStringList{u"3"_s, u"2"_s, u"1"_s}));
}

void HistoryListTest::theOldestGoFirst()
{
    HistoryList list;
    list.assign({entry(u"a"_s, 1s), entry(u"b"_s, 2s), entry(u"c"_s, 3s), entry(u"d"_s, 4s)});
    QCOMPARE(textsOf(list.trim(2)), (QStringList{u"c"_s, u"d"_s}));
    QCOMPARE(textsOf(list.items()), (QStringList{u"a"_s, u"b"_s}));
}

void HistoryListTest::favouritesNeitherCountNorGo()
{
    HistoryList list;
    list.assign({entry(u"a"_s, 1s), entry(u"b"_s, 2s, true), entry(u"c"_s, 3s),
                 entry(u"d"_s, 4s, true), entry(u"e"_s, 5s), entry(u"f"_s, 6s, true)});
    QCOMPARE(list.favoriteCount(), 3);
    QCOMPARE(textsOf(list.trim(1)), (QStringList{u"c"_s, u"e"_s}));
    QCOMPARE(textsOf(list.items()), (QStringList{u"a"_s, u"b"_s, u"d"_s, u"f"_s}));
}

void HistoryListTest::favouritesBeyondTheCapacityStay()
{
    HistoryList list;
    list.assign({entry(u"a"_s, 1s, true), entry(u"b"_s, 2s, true), entry(u"c"_s, 3s)});
    QVERIFY(list.trim(1).isEmpty());
    QCOMPARE(list.items().size(), 3);
}

void HistoryListTest::trimmingWithinTheCapacityTakesNothing()
{
    HistoryList list;
    QVERIFY(list.trim(1).isEmpty());
    list.insert(entry(u"a"_s, 1s));
    QVERIFY(list.trim(1).isEmpty());
    QCOMPARE(list.items().size(), 1);
}

void HistoryListTest::copiesDoNotChangeWithTheList()
{
    HistoryList list;
    list.assign({entry(u"a"_s, 1s), entry(u"b"_s, 2s)});
    const ClipboardItemList copy = list.items();
    list.insert(entry(u"c"_s, 0s));
    list.trim(1);
    QCOMPARE(textsOf(copy), (QStringList{u"a"_s, u"b"_s}));
}

void HistoryListTest::behavesLikeAListThatLooksAtEveryEntry()
{
    QRandomGenerator random(5);
    HistoryList list;
    PlainList plain;
    int duplicateCount = 0;
    for (int round = 0; round < 20'000; ++round) {
        const ClipboardItem item = randomItem(random);
        const auto expected = firstDuplicateIndex(plain.items, item);
        QCOMPARE(list.firstDuplicateIndex(item), expected);
        duplicateCount += expected.has_value();
        const auto pointer = std::make_shared<const ClipboardItem>(item);
        const qsizetype index = plain.items.isEmpty() ? 0 : random.bounded(plain.items.size());
        switch (random.bounded(8)) {
        case 0:
            if (plain.items.isEmpty())
                break;
            plain.items.removeAt(index);
            list.removeAt(index);
            break;
        case 1: {
            if (plain.items.isEmpty())
                break;
            ClipboardItem changed = item;
            changed.timestamp = plain.items.at(index)->timestamp;
            const auto replacement = std::make_shared<const ClipboardItem>(changed);
            plain.items[index] = replacement;
            list.replaceAt(index, replacement);
            break;
        }
        case 2: {
            const qsizetype capacity = random.bounded(30);
            QCOMPARE(list.trim(capacity), plain.trim(capacity));
            break;
        }
        case 3:
            if (random.bounded(20) == 0) {
                std::shuffle(plain.items.begin(), plain.items.end(), random);
                list.assign(plain.items);
                plain.sort();
            }
            break;
        default:
            plain.items.prepend(pointer);
            plain.sort();
            list.insert(pointer);
        }
        if (list.items() != plain.items)
            QFAIL(qPrintable(u"the lists differ in round %1"_s.arg(round)));
        QCOMPARE(list.favoriteCount(),
                 std::ranges::count_if(plain.items,
                                       [](const auto &element) { return element->isFavorite; }));
    }
    QVERIFY(duplicateCount > 2'000 && duplicateCount < 18'000);
}

QTEST_APPLESS_MAIN(HistoryListTest)
#include "HistoryListTest.moc"
