#include "tests/window/SampleHistory.h"

#include "window/ListDifference.h"

#include <QTest>

using namespace Qt::StringLiterals;
using SampleHistory::shared;

namespace {

using Rows = QList<qsizetype>;

/// What the list becomes when the difference is carried out.
ClipboardItemList applied(ClipboardItemList before, const ClipboardItemList &after,
                          const ListDifference &difference)
{
    for (auto row = difference.removedRows.crbegin(); row != difference.removedRows.crend(); ++row)
        before.removeAt(*row);
    for (const qsizetype row : difference.insertedRows)
        before.insert(row, after[row]);
    return before;
}

} // namespace

class ListDifferenceTest : public QObject
{
    Q_OBJECT

private slots:
    void equalListsDoNotDiffer();
    void aNewEntryOnTopIsOneInsertion();
    void missingEntriesAreRemovals();
    void aMovedEntryIsARemovalAndAnInsertion();
    void aChangedEntryKeepsItsRow_data();
    void aChangedEntryKeepsItsRow();
    void theDateOfTheLastChangeDoesNotShow();
    void carryingItOutGivesTheNewList();
    void itIsTheSmallestOfNearlyEqualLists();
    void aRowThatStaysKnowsWhereItStood();
    void theWayOfUpdating_data();
    void theWayOfUpdating();
};

void ListDifferenceTest::equalListsDoNotDiffer()
{
    const ClipboardItemList items = SampleHistory::numbered(5);
    QCOMPARE(listDifference(items, items), ListDifference());
    const ClipboardItemList copy(items.begin(), items.end());
    QCOMPARE(listDifference(items, copy), ListDifference());
    QCOMPARE(listDifference({}, {}), ListDifference());
}

void ListDifferenceTest::aNewEntryOnTopIsOneInsertion()
{
    const ClipboardItemList before = SampleHistory::numbered(5);
    const ClipboardItemList after = SampleHistory::texts({u"new"_s}) + before;
    QCOMPARE(listDifference(before, after), (ListDifference{{}, Rows{0}, {}}));
}

void ListDifferenceTest::missingEntriesAreRemovals()
{
    const ClipboardItemList before = SampleHistory::numbered(5);
    QCOMPARE(listDifference(before, {before[1], before[3]}),
             (ListDifference{Rows{0, 2, 4}, {}, {}}));
    QCOMPARE(listDifference(before, {}), (ListDifference{Rows{0, 1, 2, 3, 4}, {}, {}}));
}

void ListDifferenceTest::aMovedEntryIsARemovalAndAnInsertion()
{
    const ClipboardItemList before = SampleHistory::numbered(4);
    const ClipboardItemList after{before[3], before[0], before[1], before[2]};
    QCOMPARE(listDifference(before, after), (ListDifference{Rows{3}, Rows{0}, {}}));
}

void ListDifferenceTest::aChangedEntryKeepsItsRow_data()
{
    using Change = std::function<void(ClipboardItem &)>;
    QTest::addColumn<Change>("change");
    const auto row = [](const char *name, Change change) { QTest::newRow(name) << change; };
    row("hash", [](auto &entry) { entry.contentHash = "other"; });
    row("text", [](auto &entry) { entry.stringValue = Utf8Text(u"other"_s); });
    row("path", [](auto &entry) { entry.filePath = u"other"_s; });
    row("image file", [](auto &entry) { entry.imageFileName = u"other"_s; });
    row("thumbnail file", [](auto &entry) { entry.imageThumbnailFileName = u"other"_s; });
    row("type", [](auto &entry) { entry.contentType = ClipboardContentType::Url; });
    row("favourite", [](auto &entry) { entry.isFavorite = true; });
    row("source", [](auto &entry) { entry.sourceAppBundleID = u"other"_s; });
    row("remote", [](auto &entry) { entry.isRemoteClipboard = true; });
    row("tags", [](auto &entry) { entry.tags = {u"other"_s}; });
    row("time", [](auto &entry) { entry.timestamp += std::chrono::seconds(1); });
}

void ListDifferenceTest::aChangedEntryKeepsItsRow()
{
    QFETCH(std::function<void(ClipboardItem &)>, change);
    const ClipboardItemList before = SampleHistory::numbered(3);
    ClipboardItem changed = *before[1];
    change(changed);
    const ClipboardItemList after{before[0], shared(changed), before[2]};
    QCOMPARE(listDifference(before, after), (ListDifference{{}, {}, Rows{1}}));
}

void ListDifferenceTest::theDateOfTheLastChangeDoesNotShow()
{
    const ClipboardItemList before = SampleHistory::numbered(1);
    ClipboardItem changed = *before[0];
    changed.updatedAt += std::chrono::seconds(1);
    QCOMPARE(listDifference(before, {shared(changed)}), ListDifference());
}

void ListDifferenceTest::carryingItOutGivesTheNewList()
{
    QRandomGenerator random(11);
    for (int round = 0; round < 200; ++round) {
        const ClipboardItemList pool = SampleHistory::numbered(20);
        ClipboardItemList lists[2];
        for (ClipboardItemList &list : lists) {
            for (const ClipboardItemPointer &entry : pool) {
                if (random.bounded(3) > 0)
                    list.insert(random.bounded(list.size() + 1), entry);
            }
        }
        const ListDifference difference = listDifference(lists[0], lists[1]);
        QCOMPARE(applied(lists[0], lists[1], difference), lists[1]);
    }
}

void ListDifferenceTest::itIsTheSmallestOfNearlyEqualLists()
{
    QRandomGenerator random(3);
    const ClipboardItemList before = SampleHistory::numbered(2000);
    for (int round = 0; round < 60; ++round) {
        // None of these touches an entry twice, so none of them can be saved.
        const int changes = random.bounded(60);
        ClipboardItemList after = before;
        int needed = 0;
        for (int i = 0; i < changes; ++i) {
            const qsizetype row = i * 30 + random.bounded(10);
            switch (random.bounded(3)) {
            case 0: after.replace(row, SampleHistory::numbered(1).first()); needed += 2; break;
            case 1: std::swap(after[row], after[row + 5]); needed += 4; break;
            default: std::swap(after[row], after[row + 1]); needed += 2; break;
            }
        }
        if (round % 2) {
            after = SampleHistory::numbered(1) + after;
            ++needed;
        }
        const ListDifference difference = listDifference(before, after);
        QCOMPARE(int(difference.removedRows.size() + difference.insertedRows.size()), needed);
        QCOMPARE(applied(before, after, difference), after);
        QVERIFY(difference.changedRows.isEmpty());
    }
}

void ListDifferenceTest::aRowThatStaysKnowsWhereItStood()
{
    const ClipboardItemList before = SampleHistory::numbered(9);
    const ClipboardItemList added = SampleHistory::texts({u"new"_s, u"newer"_s});
    const ClipboardItemList after{added[0], before[2], before[3], added[1], before[6], before[8]};
    const ListDifference difference = listDifference(before, after);
    QCOMPARE(oldRow(difference, 1), 2);
    QCOMPARE(oldRow(difference, 2), 3);
    QCOMPARE(oldRow(difference, 4), 6);
    QCOMPARE(oldRow(difference, 5), 8);
}

void ListDifferenceTest::theWayOfUpdating_data()
{
    QTest::addColumn<int>("oldCount");
    QTest::addColumn<int>("newCount");
    QTest::addColumn<int>("removedCount");
    QTest::addColumn<int>("changeCount");
    QTest::addColumn<bool>("isReload");
    QTest::newRow("first entry of an empty list") << 0 << 1 << 0 << 1 << true;
    QTest::newRow("new entry on top of thousands") << 5000 << 5001 << 0 << 1 << false;
    QTest::newRow("500 down to 2") << 500 << 2 << 498 << 498 << true;
    QTest::newRow("500 down to 3") << 500 << 3 << 497 << 497 << false;
    QTest::newRow("60 of 150 replaced") << 150 << 150 << 60 << 120 << true;
    QTest::newRow("20 of 150 replaced") << 150 << 150 << 20 << 40 << false;
    QTest::newRow("growing to 100") << 2 << 100 << 0 << 98 << false;
    QTest::newRow("growing to 101") << 2 << 101 << 0 << 99 << true;
    QTest::newRow("50 changes among thousands") << 5000 << 5050 << 0 << 50 << false;
    QTest::newRow("51 changes among thousands") << 5000 << 5051 << 0 << 51 << true;
    QTest::newRow("4 down to 2") << 4 << 2 << 2 << 2 << false;
    QTest::newRow("5 down to 2") << 5 << 2 << 3 << 3 << true;
    QTest::newRow("down to nothing") << 10 << 0 << 10 << 10 << true;
}

void ListDifferenceTest::theWayOfUpdating()
{
    QFETCH(int, oldCount);
    QFETCH(int, newCount);
    QFETCH(int, removedCount);
    QFETCH(int, changeCount);
    QTEST(chooseListUpdate(oldCount, newCount, removedCount, changeCount) == ListUpdate::Reload,
          "isReload");
}

QTEST_GUILESS_MAIN(ListDifferenceTest)
#include "ListDifferenceTest.moc"
