#include "core/ClipboardItemManager.h"
#include "tests/fakes/HistoryFixture.h"
#include "tests/fakes/SampleItems.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class ClipboardItemManagerTagsTest : public QObject, private HistoryFixture
{
    Q_OBJECT

private slots:
    void init() { setUpHistory(); }
    void cleanup() { tearDownHistory(); }
    void theTagsOfAnEntryAreReplaced();
    void theSameTagsOnceMoreMoveTheTimeOn();
    void anEntryThatIsNotThereIsNoWork();
    void aRenameReachesEveryEntryAndKeepsTheOrder();
    void onlyTheFirstOccurrenceIsRenamed();
    void aRenameOfTheCaseAloneRewritesEveryEntry();
    void removingTakesEveryOccurrence();
    void otherSpellingsAreOtherTags();
    void aTagThatNobodyHasIsNoWork();
    void theSynchronisationIsToldOfAnyChange_data();
    void theSynchronisationIsToldOfAnyChange();
    void aFailedUpdateIsPrintedAndStays();
    void changesOfAllEntriesAreWrittenOneByOneAndSilently_data();
    void changesOfAllEntriesAreWrittenOneByOneAndSilently();
    void whatCouldNotBeWrittenGoesWithTheNextWrite();

private:
    using Change = std::function<void(ClipboardItemManager &)>;

    QUuid add(const QStringList &tags);
    QStringList tagsAt(qsizetype place) const { return m_manager->items().at(place)->tags; }
    QStringList callsOf(const Change &change);
};

/// Puts an entry with \a tags on top.
QUuid ClipboardItemManagerTagsTest::add(const QStringList &tags)
{
    m_clock->advance(1s);
    ClipboardItem item = textItem(QString::number(m_manager->items().size()), m_clock->now());
    item.tags = tags;
    m_manager->addItem(item);
    m_manager->drain();
    return item.id;
}

/// What the store is asked for because of \a change.
QStringList ClipboardItemManagerTagsTest::callsOf(const Change &change)
{
    m_manager->drain();
    const qsizetype before = m_history->callsSoFar().size();
    change(*m_manager);
    m_manager->drain();
    return m_history->callsSoFar().mid(before);
}

void ClipboardItemManagerTagsTest::theTagsOfAnEntryAreReplaced()
{
    const QUuid id = add({u"old"_s});
    const QByteArray hash = m_manager->items().first()->contentHash;
    m_clock->advance(1s);
    m_manager->updateTags(id, {u"work"_s, u"home"_s});
    const ClipboardItemPointer item = m_manager->items().first();
    QCOMPARE(item->tags, (QStringList{u"work"_s, u"home"_s}));
    QCOMPARE(item->updatedAt, m_clock->now());
    QCOMPARE(item->timestamp, m_clock->now() - 1s);
    QCOMPARE(item->contentHash, hash);
    m_manager->drain();
    QCOMPARE(m_history->live().first(), *item);
}

void ClipboardItemManagerTagsTest::theSameTagsOnceMoreMoveTheTimeOn()
{
    const QUuid id = add({u"work"_s});
    m_clock->advance(1s);
    m_manager->updateTags(id, {u"work"_s, u"home"_s});
    m_manager->updateTags(id, {u"work"_s});
    QCOMPARE(tagsAt(0), QStringList{u"work"_s});
    QCOMPARE(m_manager->items().first()->updatedAt, m_clock->now());
}

void ClipboardItemManagerTagsTest::anEntryThatIsNotThereIsNoWork()
{
    add({u"work"_s});
    QVERIFY(callsOf([](auto &manager) { manager.updateTags(QUuid::createUuid(), {u"x"_s}); })
                .isEmpty());
    QCOMPARE(tagsAt(0), QStringList{u"work"_s});
}

void ClipboardItemManagerTagsTest::aRenameReachesEveryEntryAndKeepsTheOrder()
{
    add({u"a"_s, u"work"_s, u"b"_s});
    add({u"a"_s});
    add({u"work"_s});
    const auto untouched = m_manager->items().at(1);
    m_clock->advance(1s);
    QCOMPARE(callsOf([](auto &manager) { manager.renameTag(u"work"_s, u"office"_s); }),
             QStringList(2, u"upsertItem"_s));
    QCOMPARE(tagsAt(0), QStringList{u"office"_s});
    QCOMPARE(m_manager->items().at(1), untouched);
    QCOMPARE(tagsAt(2), (QStringList{u"a"_s, u"office"_s, u"b"_s}));
    QCOMPARE(m_manager->items().at(2)->updatedAt, m_clock->now());
}

void ClipboardItemManagerTagsTest::onlyTheFirstOccurrenceIsRenamed()
{
    add({u"home"_s, u"work"_s, u"work"_s});
    m_manager->renameTag(u"work"_s, u"office"_s);
    QCOMPARE(tagsAt(0), (QStringList{u"home"_s, u"office"_s, u"work"_s}));
}

void ClipboardItemManagerTagsTest::aRenameOfTheCaseAloneRewritesEveryEntry()
{
    add({u"Work"_s});
    add({u"Work"_s, u"work"_s});
    QCOMPARE(callsOf([](auto &manager) { manager.renameTag(u"Work"_s, u"work"_s); }),
             QStringList(2, u"upsertItem"_s));
    QCOMPARE(tagsAt(0), (QStringList{u"work"_s, u"work"_s}));
    QCOMPARE(tagsAt(1), QStringList{u"work"_s});
}

void ClipboardItemManagerTagsTest::removingTakesEveryOccurrence()
{
    add({u"work"_s, u"home"_s, u"work"_s});
    add({u"home"_s});
    add({u"work"_s});
    m_clock->advance(1s);
    QCOMPARE(callsOf([](auto &manager) { manager.removeTag(u"work"_s); }),
             QStringList(2, u"upsertItem"_s));
    QCOMPARE(tagsAt(0), QStringList());
    QCOMPARE(tagsAt(1), QStringList{u"home"_s});
    QCOMPARE(tagsAt(2), QStringList{u"home"_s});
    QCOMPARE(m_manager->items().at(0)->updatedAt, m_clock->now());
    QVERIFY(m_manager->items().at(1)->updatedAt < m_clock->now());
}

void ClipboardItemManagerTagsTest::otherSpellingsAreOtherTags()
{
    const QStringList tags{u"Work"_s, u"work "_s, u"wor"_s};
    add(tags);
    m_manager->removeTag(u"work"_s);
    m_manager->renameTag(u"work"_s, u"office"_s);
    QCOMPARE(tagsAt(0), tags);
}

void ClipboardItemManagerTagsTest::aTagThatNobodyHasIsNoWork()
{
    add({u"home"_s});
    QVERIFY(callsOf([](auto &manager) { manager.removeTag(u"work"_s); }).isEmpty());
    QVERIFY(callsOf([](auto &manager) { manager.renameTag(u"work"_s, u"x"_s); }).isEmpty());
}

void ClipboardItemManagerTagsTest::theSynchronisationIsToldOfAnyChange_data()
{
    QTest::addColumn<Change>("change");
    QTest::newRow("rename") << Change([](auto &manager) { manager.renameTag(u"work"_s, u"x"_s); });
    QTest::newRow("removal") << Change([](auto &manager) { manager.removeTag(u"work"_s); });
    QTest::newRow("update") << Change([](auto &manager) {
        for (const ClipboardItemPointer &item : manager.items())
            manager.updateTags(item->id, {});
    });
}

void ClipboardItemManagerTagsTest::theSynchronisationIsToldOfAnyChange()
{
    QFETCH(const Change, change);
    ClipboardItem synced = textItem(u"synced"_s, m_clock->now());
    synced.tags = {u"work"_s};
    synced.cloudRecordID = u"record-7"_s;
    synced.syncStatus = SyncStatus::Synced;
    synced.lastSyncTime = m_clock->now();
    ClipboardItem local = textItem(u"local"_s, m_clock->now() - 1s);
    local.tags = {u"work"_s};
    local.lastSyncTime = m_clock->now();
    m_history->records = {synced, local};
    openHistory();

    m_clock->advance(1s);
    change(*m_manager);
    const ClipboardItemList items = m_manager->items();
    QCOMPARE(items[0]->updatedAt, m_clock->now());
    QCOMPARE(items[0]->syncStatus, SyncStatus::Pending);
    QVERIFY(!items[0]->lastSyncTime);
    QCOMPARE(items[0]->cloudRecordID, u"record-7"_s);
    QCOMPARE(items[1]->updatedAt, m_clock->now());
    QCOMPARE(items[1]->syncStatus, SyncStatus::Local);
    QCOMPARE(items[1]->lastSyncTime, local.lastSyncTime);
    m_manager->drain();
    QCOMPARE(m_history->live(), (QList<ClipboardItem>{*items[0], *items[1]}));
}

void ClipboardItemManagerTagsTest::aFailedUpdateIsPrintedAndStays()
{
    const QUuid id = add({});
    m_history->failing = {u"upsertItem"_s};
    m_printed.emplace();
    m_manager->updateTags(id, {u"work"_s});
    m_manager->drain();
    QCOMPARE(m_printed->lines(), QStringList{u"Failed to update tags: out of order"_s});
    QCOMPARE(tagsAt(0), QStringList{u"work"_s});
    QCOMPARE(m_history->live().first().tags, QStringList());
}

void ClipboardItemManagerTagsTest::changesOfAllEntriesAreWrittenOneByOneAndSilently_data()
{
    QTest::addColumn<Change>("change");
    QTest::addColumn<QStringList>("tags");
    QTest::newRow("rename") << Change([](auto &manager) { manager.renameTag(u"work"_s, u"x"_s); })
                            << QStringList{u"x"_s};
    QTest::newRow("removal") << Change([](auto &manager) { manager.removeTag(u"work"_s); })
                             << QStringList();
}

void ClipboardItemManagerTagsTest::changesOfAllEntriesAreWrittenOneByOneAndSilently()
{
    QFETCH(const Change, change);
    QFETCH(const QStringList, tags);
    for (int i = 0; i < 3; ++i)
        add({u"work"_s});
    m_printed.emplace();
    int writes = 0;
    m_history->onCall = [this, &writes](const QString &) {
        ++writes;
        m_history->failing = writes == 2 ? QStringList{u"upsertItem"_s} : QStringList();
    };
    QCOMPARE(callsOf(change), QStringList(3, u"upsertItem"_s));
    m_history->onCall = nullptr;
    QCOMPARE(m_printed->lines(), QStringList());
    int written = 0;
    for (const ClipboardItem &record : m_history->live())
        written += record.tags == tags ? 1 : 0;
    QCOMPARE(written, 2);
    for (qsizetype place = 0; place < 3; ++place)
        QCOMPARE(tagsAt(place), tags);
}

void ClipboardItemManagerTagsTest::whatCouldNotBeWrittenGoesWithTheNextWrite()
{
    const QUuid id = add({u"work"_s});
    m_history->failing = {u"upsertItem"_s};
    m_manager->renameTag(u"work"_s, u"office"_s);
    m_manager->drain();
    m_history->failing.clear();
    QCOMPARE(m_history->live().first().tags, QStringList{u"work"_s});
    m_manager->toggleFavorite(id);
    m_manager->drain();
    QCOMPARE(m_history->live().first().tags, QStringList{u"office"_s});
}

QTEST_GUILESS_MAIN(ClipboardItemManagerTagsTest)
#include "ClipboardItemManagerTagsTest.moc"
