#include "core/ClipboardItemManager.h"
#include "tests/fakes/HistoryFixture.h"


#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QUrl kPlace(u"file:///new/a.txt"_s);
const QByteArray kRenewed("bookmark of file:///new/a.txt");

} // namespace

/// How the manager leads entries to their files, and renews their bookmarks.
class ClipboardItemManagerFilesTest : public QObject, protected HistoryFixture
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void anEntryIsLedToItsFile();
    void aStaleBookmarkIsReplaced();
    void aRenewedEntryKeepsItsPlaceInTheList();
    void aGoodBookmarkIsLeftAlone();
    void aBookmarkOfAnotherLengthChangesTheHash();
    void aBookmarkOfTheSameLengthKeepsTheHash();
    void aSynchronisedEntryIsPendingAfterwards();
    void theSameBookmarkAgainIsNoChange();
    void anEntryThatIsGoneIsLeftAlone();
    void aRenewalThatFailsKeepsTheOldBookmark();
    void theFileIsHeldOnlyUntilTheChangeIsQueued();
    void aStoreThatFailsDoesNotTouchTheList();
    void theSameFileCopiedAgainIsOneEntry();

private:
    ClipboardItem add(const QByteArray &bookmark);
    void refresh(const ClipboardItem &item);
    ClipboardItem current(const ClipboardItem &item) const;
    QStringList trail() const { return m_printed->lines().filter(u"[DragPaste]"_s); }

};

void ClipboardItemManagerFilesTest::init()
{
    setUpHistory();
    m_defaults->set(u"debug.drag_paste_logging"_s, true);
}

void ClipboardItemManagerFilesTest::cleanup()
{
    tearDownHistory();
}

/// Adds an entry of /old/a.txt, and returns it as it is in the list.
ClipboardItem ClipboardItemManagerFilesTest::add(const QByteArray &bookmark)
{
    m_clock->advance(1s);
    ClipboardItem item = makeItem(ClipboardContentType::File, m_clock->now());
    item.stringValue = Utf8Text(u"a.txt"_s);
    item.fileTypes = {u"txt"_s};
    item.filePath = u"/old/a.txt"_s;
    item.fileBookmarkData = bookmark;
    m_manager->addItem(item);
    m_manager->drain();
    m_clock->advance(1s);
    return current(item);
}

void ClipboardItemManagerFilesTest::refresh(const ClipboardItem &item)
{
    m_manager->refreshStaleBookmark(item, kPlace, true);
    m_manager->drain();
}

/// \a item as the list has it now.
ClipboardItem ClipboardItemManagerFilesTest::current(const ClipboardItem &item) const
{
    for (const ClipboardItemPointer &listed : m_manager->items()) {
        if (listed->id == item.id)
            return *listed;
    }
    return {};
}

void ClipboardItemManagerFilesTest::anEntryIsLedToItsFile()
{
    const ClipboardItem item = add("token");
    m_files->bookmarks.places = {{"token", {kPlace, true}}};
    QCOMPARE(m_manager->resolveFileURL(item), (FileBookmarks::Resolved{kPlace, true}));
    QCOMPARE(current(item), item);
}

void ClipboardItemManagerFilesTest::aStaleBookmarkIsReplaced()
{
    const ClipboardItem item = add("old token");
    refresh(item);
    ClipboardItem expected = item;
    expected.fileBookmarkData = kRenewed;
    expected.updatedAt = m_clock->now();
    expected.contentHash = computeContentHash(expected);
    QCOMPARE(current(item), expected);
    QCOMPARE(expected.filePath, u"/old/a.txt"_s);
    QCOMPARE(callsSinceLoading(), QStringList({u"upsertItem"_s, u"upsertItem"_s}));
    QCOMPARE(m_history->live(), QList{expected});
    QCOMPARE(trail(), QStringList{u"[DragPaste] refreshStaleBookmark updated id="_s
                                  + uuidString(item.id) + u" bytes=29"_s});
}

void ClipboardItemManagerFilesTest::aRenewedEntryKeepsItsPlaceInTheList()
{
    const ClipboardItem item = add("old token");
    m_clock->advance(1s);
    ClipboardItem newer = makeItem(ClipboardContentType::Text, m_clock->now());
    newer.stringValue = Utf8Text(u"newer"_s);
    m_manager->addItem(newer);
    refresh(item);
    const ClipboardItemList items = m_manager->items();
    QCOMPARE(items.size(), 2);
    QCOMPARE(items.first()->id, newer.id);
    QCOMPARE(items.last()->timestamp, item.timestamp);
    QCOMPARE(items.last()->fileBookmarkData, kRenewed);
}

void ClipboardItemManagerFilesTest::aGoodBookmarkIsLeftAlone()
{
    const ClipboardItem item = add("old token");
    m_manager->refreshStaleBookmark(item, kPlace, false);
    m_manager->drain();
    QCOMPARE(current(item), item);
    QCOMPARE(callsSinceLoading(), QStringList{u"upsertItem"_s});
    QVERIFY(m_files->access.started.isEmpty());
    QCOMPARE(trail(), QStringList());
}

void ClipboardItemManagerFilesTest::aBookmarkOfAnotherLengthChangesTheHash()
{
    const ClipboardItem item = add("short");
    refresh(item);
    QVERIFY(current(item).contentHash != item.contentHash);
}

void ClipboardItemManagerFilesTest::aBookmarkOfTheSameLengthKeepsTheHash()
{
    const ClipboardItem item = add(QByteArray(kRenewed.size(), 'x'));
    refresh(item);
    QCOMPARE(current(item).fileBookmarkData, kRenewed);
    QCOMPARE(current(item).contentHash, item.contentHash);
}

void ClipboardItemManagerFilesTest::aSynchronisedEntryIsPendingAfterwards()
{
    m_clock->advance(1s);
    ClipboardItem item = makeItem(ClipboardContentType::File, m_clock->now());
    item.filePath = u"/old/a.txt"_s;
    item.cloudRecordID = u"record"_s;
    item.syncStatus = SyncStatus::Synced;
    item.lastSyncTime = m_clock->now();
    m_history->records.append(item);
    openHistory();
    refresh(item);
    QCOMPARE(current(item).syncStatus, SyncStatus::Pending);
    QVERIFY(!current(item).lastSyncTime);
}

void ClipboardItemManagerFilesTest::theSameBookmarkAgainIsNoChange()
{
    const ClipboardItem item = add(kRenewed);
    refresh(item);
    QCOMPARE(current(item), item);
    QCOMPARE(callsSinceLoading(), QStringList{u"upsertItem"_s});
    QCOMPARE(trail(), QStringList{u"[DragPaste] refreshStaleBookmark skipped unchanged id="_s
                                  + uuidString(item.id)});
}

void ClipboardItemManagerFilesTest::anEntryThatIsGoneIsLeftAlone()
{
    const ClipboardItem item = add("old token");
    m_manager->removeItem(item.id, {});
    refresh(item);
    QVERIFY(m_manager->items().isEmpty());
    QCOMPARE(callsSinceLoading(), QStringList({u"upsertItem"_s, u"markItemsDeleted"_s}));
    QCOMPARE(trail(), QStringList{u"[DragPaste] refreshStaleBookmark skipped missing item id="_s
                                  + uuidString(item.id)});
}

void ClipboardItemManagerFilesTest::aRenewalThatFailsKeepsTheOldBookmark()
{
    const ClipboardItem item = add("old token");
    m_files->bookmarks.creationError = "gone";
    refresh(item);
    QCOMPARE(current(item), item);
    QCOMPARE(m_files->access.started, QList{kPlace});
    QCOMPARE(m_files->access.openCount, 0);
    QVERIFY(m_printed->contains(u"Failed to refresh stale bookmark for item: "_s
                                + uuidString(item.id) + u", error: gone"_s));
}

void ClipboardItemManagerFilesTest::theFileIsHeldOnlyUntilTheChangeIsQueued()
{
    const ClipboardItem item = add("old token");
    m_manager->refreshStaleBookmark(item, kPlace, true);
    QCOMPARE(m_files->access.started, QList{kPlace});
    QCOMPARE(m_files->access.openCount, 0);
}

void ClipboardItemManagerFilesTest::aStoreThatFailsDoesNotTouchTheList()
{
    const ClipboardItem item = add("old token");
    m_history->failing = {u"upsertItem"_s};
    refresh(item);
    QCOMPARE(current(item).fileBookmarkData, kRenewed);
    QVERIFY(m_printed->contains(u"Failed to refresh stale file bookmark: out of order"_s));
}

void ClipboardItemManagerFilesTest::theSameFileCopiedAgainIsOneEntry()
{
    const ClipboardItem item = add("short");
    refresh(item);
    const ClipboardItem again = add("short");
    QVERIFY(again.contentHash != current(item).contentHash);
    QCOMPARE(m_manager->items().size(), 1);
    QCOMPARE(m_manager->items().first()->id, again.id);
}

QTEST_GUILESS_MAIN(ClipboardItemManagerFilesTest)
#include "ClipboardItemManagerFilesTest.moc"
