#include "core/ClipboardItemManager.h"
#include "tests/fakes/HistoryFixture.h"

#include "core/ClipboardHistoryStore.h"
#include "foundation/Digest.h"
#include "tests/fakes/SampleItems.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTest>
#include <QThread>

#include <optional>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class ClipboardItemManagerTest : public QObject, protected HistoryFixture
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void loadsTheHistoryNewestFirst();
    void aHistoryThatCannotBeReadIsLeftAlone();
    void loadingTakesWhatIsBeyondTheCapacity();

    void aNewEntryIsInTheListAtOnce();
    void aNewEntryGetsItsHashAndUpdateTime();
    void aHashThatComesWithAnEntryIsNotComputedAgain();
    void theSameTextTwiceIsOneEntryAtTheFront();
    void aCopiedFavouriteStaysOneAndLosesItsTags();
    void anEntryOfEqualContentBelowIsReplaced();
    void thePictureOfAKnownFileTakesOverItsNames();
    void aReplacedTextLosesItsImageFiles();
    void aStoreThatFailsDoesNotTouchTheList();
    void aFailedInsertionSkipsTheDeletion();

    void removingLeavesATombstone();
    void removingAnUnknownEntryStillCompletes();
    void completionsRunOnTheThreadOfTheManager();

    void aFavouriteIsToggledAndStamped();
    void noMoreFavouritesThanTheCapacity();
    void unfavouringTheOldestOfAFullListEvictsIt();

    void anEditReplacesTheText();
    void anEditNormalisesLineEndsAndNothingElse();
    void anEditThatChangesNothingIsNotStamped();
    void anEditWithTheSameTextDropsRichData();
    void onlyTextsAndLinksAreEdited();

    void theOldestGoesWhenTheHistoryIsFull();
    void anOldFavouriteStays();
    void anUnofferedCapacityIsTheSmallest();
    void aLoweredCapacityIsEnforced();
    void filesThatNobodyNamesAreSwept();

    void clearingKeepsFavourites();
    void clearingEverythingLeavesNothing();
    void clearingGoesOnWhereCompactionFails();
    void clearingEndsWhereDeletionFails();

    void theEndWritesWhatIsQueued();
    void theEndFinishesASweep();
    void theDiskUsageIsThatOfTheList();

private:
    void fill(int count, bool areFavourites = false);
    ClipboardItem add(const QString &text);
    ClipboardItem stored(ClipboardItem item);
    ClipboardItem onlyItem() const;
    QStringList texts() const;
    QString imagePath(const QString &name) const { return m_images + u'/' + name; }
    void writeImage(const QString &name) const;

};

void ClipboardItemManagerTest::init()
{
    setUpHistory();
}

void ClipboardItemManagerTest::cleanup()
{
    tearDownHistory();
}

/// Puts \a count entries into the store, a second apart, the oldest first.
void ClipboardItemManagerTest::fill(int count, bool areFavourites)
{
    for (int i = 0; i < count; ++i) {
        m_clock->advance(1s);
        ClipboardItem item = textItem(QString::number(m_history->records.size()), m_clock->now());
        item.isFavorite = areFavourites;
        m_history->records.append(item);
    }
}

ClipboardItem ClipboardItemManagerTest::add(const QString &text)
{
    m_clock->advance(1s);
    ClipboardItem item = makeItem(ClipboardContentType::Text, m_clock->now());
    item.stringValue = Utf8Text(text);
    m_manager->addItem(item);
    return item;
}

/// Begins anew with \a item in the store.
ClipboardItem ClipboardItemManagerTest::stored(ClipboardItem item)
{
    m_history->records.append(item);
    openHistory();
    return item;
}

ClipboardItem ClipboardItemManagerTest::onlyItem() const
{
    const ClipboardItemList items = m_manager->items();
    return items.size() == 1 ? *items.first() : ClipboardItem();
}

QStringList ClipboardItemManagerTest::texts() const
{
    QStringList texts;
    for (const ClipboardItemPointer &item : m_manager->items())
        texts.append(item->stringValue ? item->stringValue->toString() : u"-"_s);
    return texts;
}

void ClipboardItemManagerTest::writeImage(const QString &name) const
{
    QFile file(imagePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("picture");
}

void ClipboardItemManagerTest::loadsTheHistoryNewestFirst()
{
    fill(3);
    openHistory();
    QCOMPARE(texts(), (QStringList{u"2"_s, u"1"_s, u"0"_s}));
    QCOMPARE(callsSinceLoading(), QStringList());
    QVERIFY(m_printed->contains(u"Loaded 3 items from disk"_s));
}

void ClipboardItemManagerTest::aHistoryThatCannotBeReadIsLeftAlone()
{
    fill(3);
    m_history->failing = {u"loadItems"_s};
    m_manager.reset();
    m_printed.emplace();
    openHistory();
    QVERIFY(m_manager->items().isEmpty());
    m_manager->drain();
    QCOMPARE(callsSinceLoading(), QStringList());
    QCOMPARE(m_printed->lines(),
             QStringList{u"Failed to load clipboard history: out of order"_s});
}

void ClipboardItemManagerTest::loadingTakesWhatIsBeyondTheCapacity()
{
    fill(1'003);
    openHistory();
    m_manager->drain();
    QCOMPARE(m_manager->items().size(), 1'000);
    QCOMPARE(m_history->tombstones().size(), 3);
    QCOMPARE(callsSinceLoading(), QStringList{u"markItemsDeleted"_s});
    QVERIFY(m_printed->contains(u"Loaded 1000 items from disk"_s));
}

void ClipboardItemManagerTest::aNewEntryIsInTheListAtOnce()
{
    for (int i = 0; i < 50; ++i) {
        const ClipboardItem item = add(QString::number(i));
        QCOMPARE(m_manager->items().first()->id, item.id);
    }
}

void ClipboardItemManagerTest::aNewEntryGetsItsHashAndUpdateTime()
{
    ClipboardItem item = makeItem(ClipboardContentType::Text, m_clock->now());
    item.stringValue = Utf8Text(u"a"_s);
    m_clock->advance(1s);
    m_manager->addItem(item);
    QCOMPARE(onlyItem().contentHash, computeContentHash(item));
    QCOMPARE(onlyItem().updatedAt, m_clock->now());
    QCOMPARE(onlyItem().timestamp, item.timestamp);
}

void ClipboardItemManagerTest::aHashThatComesWithAnEntryIsNotComputedAgain()
{
    ClipboardItem item = makeItem(ClipboardContentType::Text, m_clock->now());
    item.stringValue = Utf8Text(u"a"_s);
    item.contentHash = "computed before";
    m_manager->addItem(item);
    QCOMPARE(onlyItem().contentHash, QByteArray("computed before"));
}

void ClipboardItemManagerTest::theSameTextTwiceIsOneEntryAtTheFront()
{
    const ClipboardItem first = add(u"a"_s);
    add(u"b"_s);
    const ClipboardItem again = add(u" a "_s);
    QCOMPARE(texts(), (QStringList{u" a "_s, u"b"_s}));
    QVERIFY(again.id != first.id);
    QCOMPARE(m_manager->items().first()->id, again.id);
    QCOMPARE(m_manager->items().first()->timestamp, again.timestamp);
    m_manager->drain();
    QCOMPARE(m_history->live().size(), 2);
    QCOMPARE(m_history->tombstones().size(), 1);
    QCOMPARE(m_history->tombstones().first().id, first.id);
}

void ClipboardItemManagerTest::aCopiedFavouriteStaysOneAndLosesItsTags()
{
    ClipboardItem favourite = textItem(u"a"_s, m_clock->now());
    favourite.isFavorite = true;
    favourite.tags = {u"work"_s};
    favourite.sourceAppBundleID = u"org.example.Old"_s;
    stored(favourite);
    add(u"a"_s);
    QVERIFY(onlyItem().isFavorite);
    QVERIFY(onlyItem().tags.isEmpty());
    QVERIFY(!onlyItem().sourceAppBundleID);
}

void ClipboardItemManagerTest::anEntryOfEqualContentBelowIsReplaced()
{
    fill(20);
    openHistory();
    add(u"3"_s);
    QCOMPARE(m_manager->items().size(), 20);
    QCOMPARE(texts().first(), u"3"_s);
    QCOMPARE(texts().count(u"3"_s), 1);
}

void ClipboardItemManagerTest::thePictureOfAKnownFileTakesOverItsNames()
{
    ClipboardItem known = makeItem(ClipboardContentType::Image, m_clock->now());
    known.imageDigest = sha256Hex("pixels");
    known.imageFileName = u"a.png"_s;
    known.imageThumbnailFileName = u"a_thumb.jpg"_s;
    known.contentHash = computeContentHash(known);
    stored(known);
    writeImage(u"a.png"_s);
    writeImage(u"a_thumb.jpg"_s);

    m_clock->advance(1s);
    ClipboardItem again = makeItem(ClipboardContentType::Image, m_clock->now());
    again.imageRepresentation = "pixels";
    m_manager->addItem(again);

    QCOMPARE(onlyItem().id, again.id);
    QCOMPARE(onlyItem().imageDigest, known.imageDigest);
    QCOMPARE(onlyItem().imageFileName, u"a.png"_s);
    QCOMPARE(onlyItem().imageThumbnailFileName, u"a_thumb.jpg"_s);
    QVERIFY(!onlyItem().imageRepresentation);
    QCOMPARE(QDir(m_images).entryList(QDir::Files), (QStringList{u"a.png"_s, u"a_thumb.jpg"_s}));
}

void ClipboardItemManagerTest::aReplacedTextLosesItsImageFiles()
{
    ClipboardItem odd = textItem(u"a"_s, m_clock->now());
    odd.imageFileName = u"a.png"_s;
    stored(odd);
    writeImage(u"a.png"_s);
    writeImage(u"a_thumb.jpg"_s);
    writeImage(u"b.png"_s);
    add(u"a"_s);
    QVERIFY(!onlyItem().imageFileName);
    m_manager->drain();
    QCOMPARE(QDir(m_images).entryList(QDir::Files), QStringList{u"b.png"_s});
}

void ClipboardItemManagerTest::aStoreThatFailsDoesNotTouchTheList()
{
    m_history->failing = {u"upsertItem"_s};
    add(u"a"_s);
    m_manager->drain();
    QCOMPARE(texts(), QStringList{u"a"_s});
    QVERIFY(m_printed->contains(u"Failed to persist clipboard item: out of order"_s));
    m_history->failing.clear();
    add(u"b"_s);
    m_manager->drain();
    QCOMPARE(texts(), (QStringList{u"b"_s, u"a"_s}));
    openHistory();
    QCOMPARE(texts(), QStringList{u"b"_s});
}

void ClipboardItemManagerTest::aFailedInsertionSkipsTheDeletion()
{
    add(u"a"_s);
    m_manager->drain();
    m_history->failing = {u"upsertItem"_s};
    add(u"a"_s);
    m_manager->drain();
    QCOMPARE(callsSinceLoading(), (QStringList{u"upsertItem"_s, u"upsertItem"_s}));
    QCOMPARE(m_history->live().size(), 1);
}

void ClipboardItemManagerTest::removingLeavesATombstone()
{
    ClipboardItem item = textItem(u"a"_s, m_clock->now());
    item.imageFileName = u"a.png"_s;
    stored(item);
    writeImage(u"a.png"_s);
    bool isComplete = false;
    m_manager->removeItem(item.id, [&isComplete] { isComplete = true; });
    QTRY_VERIFY(isComplete);
    QVERIFY(m_manager->items().isEmpty());
    m_manager->drain();
    QVERIFY(!QFile::exists(imagePath(u"a.png"_s)));
    QCOMPARE(m_history->tombstones().size(), 1);
    QCOMPARE(callsSinceLoading(), QStringList{u"markItemsDeleted"_s});
}

void ClipboardItemManagerTest::removingAnUnknownEntryStillCompletes()
{
    add(u"a"_s);
    m_manager->drain();
    bool isComplete = false;
    m_manager->removeItem(QUuid::createUuid(), [&isComplete] { isComplete = true; });
    QTRY_VERIFY(isComplete);
    m_manager->drain();
    QCOMPARE(callsSinceLoading(), QStringList{u"upsertItem"_s});
    m_manager->removeItem(QUuid::createUuid(), {});
    m_manager->drain();
}

void ClipboardItemManagerTest::completionsRunOnTheThreadOfTheManager()
{
    QThread *thread = nullptr;
    const auto note = [&thread] { thread = QThread::currentThread(); };
    std::jthread([&] { m_manager->removeItem(QUuid::createUuid(), note); }).join();
    m_manager->drain();
    QVERIFY(!thread); // Not before the event loop has its turn.
    QTRY_COMPARE(thread, QThread::currentThread());
}

void ClipboardItemManagerTest::aFavouriteIsToggledAndStamped()
{
    const ClipboardItem item = add(u"a"_s);
    const QByteArray hash = onlyItem().contentHash;
    m_clock->advance(1s);
    m_manager->toggleFavorite(item.id);
    QVERIFY(onlyItem().isFavorite);
    QCOMPARE(onlyItem().updatedAt, m_clock->now());
    QCOMPARE(onlyItem().contentHash, hash);
    m_manager->toggleFavorite(item.id);
    QVERIFY(!onlyItem().isFavorite);
    m_manager->toggleFavorite(QUuid::createUuid());
    m_manager->drain();
    QCOMPARE(callsSinceLoading(), QStringList(3, u"upsertItem"_s));
}

void ClipboardItemManagerTest::noMoreFavouritesThanTheCapacity()
{
    fill(1'000, true);
    fill(1);
    openHistory();
    QSignalSpy refused(m_manager.get(), &ClipboardItemManager::favoriteLimitReached);
    const ClipboardItem plain = *m_manager->items().first();
    m_manager->toggleFavorite(plain.id);
    QVERIFY(!m_manager->items().first()->isFavorite);
    QTRY_COMPARE(refused.count(), 1);
    QCOMPARE(refused.first().first().value<qsizetype>(), 1'000);
    m_manager->drain();
    QCOMPARE(callsSinceLoading(), QStringList());

    m_manager->toggleFavorite(m_manager->items().at(1)->id);
    QVERIFY(!m_manager->items().at(1)->isFavorite);
    m_manager->toggleFavorite(plain.id);
    QVERIFY(m_manager->items().first()->isFavorite);
}

void ClipboardItemManagerTest::unfavouringTheOldestOfAFullListEvictsIt()
{
    fill(1, true);
    fill(1'000);
    openHistory();
    const QUuid oldest = m_manager->items().last()->id;
    m_manager->toggleFavorite(oldest);
    m_manager->drain();
    QCOMPARE(m_manager->items().size(), 1'000);
    QCOMPARE(callsSinceLoading(), QStringList{u"markItemsDeleted"_s});
    QCOMPARE(m_history->tombstones().first().id, oldest);
}

void ClipboardItemManagerTest::anEditReplacesTheText()
{
    const ClipboardItem item = add(u"a"_s);
    add(u"b"_s);
    m_clock->advance(1s);
    std::optional<ClipboardItem> edited;
    m_manager->updateTextContent(item.id, u"https://a.org"_s,
                                 [&edited](const auto &result) { edited = result; });
    QTRY_VERIFY(edited);
    QCOMPARE(texts(), (QStringList{u"b"_s, u"https://a.org"_s}));
    QVERIFY(*edited == *m_manager->items().at(1));
    QCOMPARE(edited->contentType, ClipboardContentType::Text);
    QCOMPARE(edited->timestamp, item.timestamp);
    QCOMPARE(edited->updatedAt, m_clock->now());
    QCOMPARE(edited->contentHash, computeContentHash(*edited));
    m_manager->drain();
    QCOMPARE(m_history->live().first().stringValue, Utf8Text(u"https://a.org"_s));
    // The list finds the new content, and the old one no more.
    add(u"a"_s);
    QCOMPARE(m_manager->items().size(), 3);
    add(u"https://a.org"_s);
    QCOMPARE(m_manager->items().size(), 3);
}

void ClipboardItemManagerTest::anEditNormalisesLineEndsAndNothingElse()
{
    const ClipboardItem item = add(u"a"_s);
    m_manager->updateTextContent(item.id, u" a\r\nb\rc\r\r\nd "_s, {});
    QCOMPARE(onlyItem().stringValue, Utf8Text(u" a\nb\nc\n\nd "_s));
}

void ClipboardItemManagerTest::anEditThatChangesNothingIsNotStamped()
{
    const ClipboardItem item = add(u"a\nb"_s);
    const Timestamp before = onlyItem().updatedAt;
    m_clock->advance(1s);
    std::optional<ClipboardItem> edited;
    m_manager->updateTextContent(item.id, u"a\r\nb"_s,
                                 [&edited](const auto &result) { edited = result; });
    QTRY_VERIFY(edited);
    QCOMPARE(edited->updatedAt, before);
    m_manager->drain();
    QCOMPARE(callsSinceLoading(), QStringList{u"upsertItem"_s});
}

void ClipboardItemManagerTest::anEditWithTheSameTextDropsRichData()
{
    ClipboardItem rich = textItem(u"a"_s, m_clock->now());
    rich.htmlRepresentation = "<b>a</b>"_ba;
    rich.contentHash = computeContentHash(rich);
    stored(rich);
    m_manager->updateTextContent(rich.id, u"a"_s, {});
    QVERIFY(!onlyItem().htmlRepresentation);
    QVERIFY(onlyItem().contentHash != rich.contentHash);
    QCOMPARE(onlyItem().contentHash, textItem(u"a"_s, m_clock->now()).contentHash);
}

void ClipboardItemManagerTest::onlyTextsAndLinksAreEdited()
{
    ClipboardItem image = makeItem(ClipboardContentType::Image, m_clock->now());
    image.imageFileName = u"a.png"_s;
    image.contentHash = computeContentHash(image);
    stored(image);
    for (const QUuid &id : {image.id, QUuid::createUuid()}) {
        bool isComplete = false;
        m_manager->updateTextContent(id, u"a"_s, [&isComplete](const auto &result) {
            QVERIFY(!result);
            isComplete = true;
        });
        QTRY_VERIFY(isComplete);
    }
    QVERIFY(onlyItem() == image);
}

void ClipboardItemManagerTest::theOldestGoesWhenTheHistoryIsFull()
{
    fill(5, true);
    fill(1'000);
    openHistory();
    const QUuid oldestPlain = m_manager->items().at(999)->id;
    add(u"new"_s);
    QCOMPARE(m_manager->items().size(), 1'005);
    QVERIFY(!texts().contains(u"5"_s));
    m_manager->drain();
    QCOMPARE(m_history->tombstones().size(), 1);
    QCOMPARE(m_history->tombstones().first().id, oldestPlain);
    QCOMPARE(callsSinceLoading(), (QStringList{u"upsertItem"_s, u"markItemsDeleted"_s}));
}

void ClipboardItemManagerTest::anOldFavouriteStays()
{
    fill(1, true);
    fill(1'000);
    openHistory();
    for (int i = 0; i < 3; ++i)
        add(u"new %1"_s.arg(i));
    QCOMPARE(texts().last(), u"0"_s);
    QCOMPARE(m_manager->items().size(), 1'001);
}

void ClipboardItemManagerTest::anUnofferedCapacityIsTheSmallest()
{
    m_defaults->set(u"history.limit"_s, 500);
    fill(1'001);
    openHistory();
    QCOMPARE(m_manager->capacity(), 1'000);
    QCOMPARE(m_manager->items().size(), 1'000);
    QCOMPARE(m_defaults->integer(u"history.limit"_s), 500);
}

void ClipboardItemManagerTest::aLoweredCapacityIsEnforced()
{
    m_defaults->set(u"history.limit"_s, 10'000);
    fill(5'000);
    m_history->records.first().imageFileName = u"oldest.png"_s;
    m_history->records.last().imageFileName = u"newest.png"_s;
    writeImage(u"oldest.png"_s);
    writeImage(u"newest.png"_s);
    openHistory();
    QCOMPARE(m_manager->items().size(), 5'000);

    m_defaults->set(u"history.limit"_s, 1'000);
    bool isComplete = false;
    m_manager->enforceCurrentLimits([&isComplete] { isComplete = true; });
    QTRY_VERIFY(isComplete);
    QCOMPARE(m_manager->items().size(), 1'000);
    QCOMPARE(texts().last(), u"4000"_s);
    m_manager->drain();
    QCOMPARE(m_history->tombstones().size(), 4'000);
    QCOMPARE(QDir(m_images).entryList(QDir::Files), QStringList{u"newest.png"_s});
}

void ClipboardItemManagerTest::filesThatNobodyNamesAreSwept()
{
    ClipboardItem image = makeItem(ClipboardContentType::Image, m_clock->now());
    image.imageFileName = u"a.png"_s;
    image.contentHash = computeContentHash(image);
    stored(image);
    for (const QString &name : {u"a.png"_s, u"a_thumb.jpg"_s, u"b.png"_s, u".hidden"_s})
        writeImage(name);
    m_manager->enforceCurrentLimits({});
    m_manager->drain();
    QCOMPARE(QDir(m_images).entryList(QDir::Files | QDir::Hidden),
             (QStringList{u".hidden"_s, u"a.png"_s, u"a_thumb.jpg"_s}));
    QCOMPARE(callsSinceLoading(), QStringList());
}

void ClipboardItemManagerTest::clearingKeepsFavourites()
{
    ClipboardItem favourite = textItem(u"kept"_s, m_clock->now());
    favourite.isFavorite = true;
    favourite.imageFileName = u"kept.png"_s;
    stored(favourite);
    writeImage(u"kept.png"_s);
    writeImage(u"stray.png"_s);
    m_manager->removeItem(add(u"gone before"_s).id, {});
    add(u"gone"_s);
    bool isComplete = false;
    m_manager->clearHistory(ClipboardItemManager::Favorites::Keep,
                            [&isComplete] { isComplete = true; });
    QTRY_VERIFY(isComplete);
    QCOMPARE(texts(), QStringList{u"kept"_s});
    m_manager->drain();
    QCOMPARE(m_history->live().size(), 1);
    QCOMPARE(m_history->tombstones().size(), 0);
    QCOMPARE(QDir(m_images).entryList(QDir::Files), QStringList{u"kept.png"_s});
    QCOMPARE(callsSinceLoading().last(3),
             (QStringList{u"hardDeleteItems"_s, u"purgeDeletedItems"_s, u"compactStorage"_s}));
}

void ClipboardItemManagerTest::clearingEverythingLeavesNothing()
{
    fill(3, true);
    fill(3);
    m_history->records.first().imageFileName = u"a.png"_s;
    writeImage(u"a.png"_s);
    writeImage(u".hidden"_s);
    openHistory();
    m_manager->clearHistory(ClipboardItemManager::Favorites::Clear, {});
    QVERIFY(m_manager->items().isEmpty());
    m_manager->drain();
    QVERIFY(m_history->records.isEmpty());
    QCOMPARE(QDir(m_images).entryList(QDir::Files | QDir::Hidden), QStringList{u".hidden"_s});
}

void ClipboardItemManagerTest::clearingGoesOnWhereCompactionFails()
{
    add(u"a"_s);
    m_history->failing = {u"compactStorage"_s};
    m_manager->drain();
    m_printed.emplace();
    m_manager->clearHistory(ClipboardItemManager::Favorites::Keep, {});
    m_manager->drain();
    QVERIFY(m_history->records.isEmpty());
    QCOMPARE(m_printed->lines(), QStringList{u"Storage compaction skipped: out of order"_s});
}

void ClipboardItemManagerTest::clearingEndsWhereDeletionFails()
{
    add(u"a"_s);
    writeImage(u"stray.png"_s);
    m_history->failing = {u"hardDeleteItems"_s};
    m_manager->drain();
    m_printed.emplace();
    m_manager->clearHistory(ClipboardItemManager::Favorites::Keep, {});
    m_manager->drain();
    QCOMPARE(callsSinceLoading().last(), u"hardDeleteItems"_s);
    QVERIFY(QFile::exists(imagePath(u"stray.png"_s)));
    QCOMPARE(m_printed->lines(),
             QStringList{u"Failed to delete clipboard items: out of order"_s});
}

void ClipboardItemManagerTest::theEndWritesWhatIsQueued()
{
    for (int i = 0; i < 500; ++i)
        add(QString::number(i));
    m_manager.reset();
    QCOMPARE(m_history->live().size(), 500);
}

void ClipboardItemManagerTest::theEndFinishesASweep()
{
    for (int round = 0; round < 20; ++round) {
        openHistory();
        add(u"a"_s);
        writeImage(u"stray.png"_s);
        m_manager->clearHistory(ClipboardItemManager::Favorites::Keep, {});
        m_manager.reset();
        QVERIFY(!QFile::exists(imagePath(u"stray.png"_s)));
        QVERIFY(m_history->records.isEmpty());
    }
}

void ClipboardItemManagerTest::theDiskUsageIsThatOfTheList()
{
    ClipboardItem image = makeItem(ClipboardContentType::Image, m_clock->now());
    image.imageFileName = u"a.png"_s;
    image.contentHash = computeContentHash(image);
    stored(image);
    writeImage(u"a.png"_s);
    writeImage(u"stray.png"_s);
    add(u"ä"_s);
    QCOMPARE(m_manager->diskUsageBytes(), qstrlen("picture") + 2);
}

QTEST_GUILESS_MAIN(ClipboardItemManagerTest)
#include "ClipboardItemManagerTest.moc"
