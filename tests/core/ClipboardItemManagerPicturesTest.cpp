#include "core/ClipboardItemManager.h"
#include "tests/fakes/HistoryFixture.h"

#include "foundation/Digest.h"
#include "tests/fakes/SampleItems.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QSemaphore>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int kDeadline = 10'000;

} // namespace

/// How copied pictures come into files, whatever is done with their entries meanwhile.
class ClipboardItemManagerPicturesTest : public QObject, protected HistoryFixture
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void aPictureIsInTheListBeforeItIsStored();
    void aPictureIsNamedAndGivesUpItsBytes();
    void theRowIsWrittenOnceAndWithTheNames();
    void aDigestThatIsMissingIsComputed();
    void aDigestThatIsThereIsKept();
    void theCompletionComesWithTheNames();
    void aTextIsCompleteAtOnce();
    void thePictureSettingDecidesTheFormat();

    void theSamePictureTwiceIsOneEntryAndOneFile_data();
    void theSamePictureTwiceIsOneEntryAndOneFile();
    void aFavouriteCopiedAgainWhileItIsStoredStaysOne();
    void onePictureAfterTheOtherTakesItsTurn();

    void aPictureThatCannotBeSavedStaysInMemoryAndHasARow();
    void aPictureWithoutFileIsStoredWhenItIsCopiedAgain();
    void aCopyOfAPictureThatFailsMeanwhileTriesAgain();
    void memoryThatIsMissingCostsOnlyTheFile();

    void aChangeWhileItIsStoredIsInTheRow();
    void removedWhileItIsStoredItLeavesNothing();
    void clearedWhileItIsStoredItLeavesNothing();
    void aFavouriteIsClearedOfNothingWhileItIsStored();
    void evictedWhileItIsStoredItLeavesNothing();
    void unfavouredAndEvictedWhileItIsStoredItLeavesNothing();
    void whatItReplacedGoesAfterItsRow();
    void whatItReplacedGoesEvenIfItGoesItself();
    void whatItReplacedStaysIfItsRowFails();
    void aSweepSparesWhatIsBeingStored();

    void filesGoAfterTheTombstone();
    void filesThatWereTakenOverStayUntilTheirLastTombstone();
    void filesStayWhereTheTombstoneFails();
    void filesStayWhereClearingFails();
    void aFileOfTwoEntriesGoesWithTheSecond();

    void theEndStoresPictures();
    void whateverIsDoneListStoreAndFilesAgree();

private:
    ClipboardItem add(const QByteArray &picture);
    ClipboardItem addText(const QString &text);
    void holdStoring();
    void awaitStoring();
    void goOn();
    ClipboardItem onlyItem() const;
    QStringList files() const;
    QStringList filesOf(const ClipboardItem &item) const;
    QList<ClipboardItem> live() const { return m_history->live(); }
    /// Lets no picture be saved. A directory that were only gone would be made anew.
    void blockDirectory()
    {
        QVERIFY(QDir(m_images).removeRecursively());
        QVERIFY(QFile(m_images).open(QIODevice::WriteOnly));
    }
    void unblockDirectory()
    {
        QVERIFY(QFile::remove(m_images));
        QVERIFY(QDir().mkpath(m_images));
    }

    bool exists(const QString &name) const { return QFile::exists(m_images + u'/' + name); }
    void touch(const QString &name) const;
    ClipboardItem storedPicture(const QByteArray &picture, const QString &fileName);

    QSemaphore m_isStoring; ///< Released when the queue of pictures has come to a picture.
    QSemaphore m_mayGoOn;
    int m_storedCount = 0; ///< Belongs to the queue of pictures.
};

void ClipboardItemManagerPicturesTest::init()
{
    setUpHistory();
}

void ClipboardItemManagerPicturesTest::cleanup()
{
    m_mayGoOn.release(1'000); // A test that failed may hold the queue.
    tearDownHistory();
    m_mayGoOn.tryAcquire(m_mayGoOn.available());
    m_isStoring.tryAcquire(m_isStoring.available());
}

ClipboardItem ClipboardItemManagerPicturesTest::add(const QByteArray &picture)
{
    m_clock->advance(1s);
    ClipboardItem item = makeItem(ClipboardContentType::Image, m_clock->now());
    item.imageRepresentation = picture;
    m_manager->addItem(item);
    return item;
}

ClipboardItem ClipboardItemManagerPicturesTest::addText(const QString &text)
{
    m_clock->advance(1s);
    const ClipboardItem item = textItem(text, m_clock->now());
    m_manager->addItem(item);
    return item;
}

/// From here on the queue of pictures waits before each picture.
void ClipboardItemManagerPicturesTest::holdStoring()
{
    m_storedCount = 0;
    m_codec->onImageWanted = [this] {
        ++m_storedCount;
        m_isStoring.release();
        m_mayGoOn.acquire();
    };
}

void ClipboardItemManagerPicturesTest::awaitStoring()
{
    QVERIFY(m_isStoring.tryAcquire(1, kDeadline));
}

void ClipboardItemManagerPicturesTest::goOn()
{
    m_mayGoOn.release(1'000);
    m_manager->drain();
}

ClipboardItem ClipboardItemManagerPicturesTest::onlyItem() const
{
    const ClipboardItemList items = m_manager->items();
    return items.size() == 1 ? *items.first() : ClipboardItem();
}

QStringList ClipboardItemManagerPicturesTest::files() const
{
    return QDir(m_images).entryList(QDir::Files | QDir::Hidden);
}

/// In the order of files().
QStringList ClipboardItemManagerPicturesTest::filesOf(const ClipboardItem &item) const
{
    return {item.imageFileName.value(), item.imageThumbnailFileName.value()};
}

void ClipboardItemManagerPicturesTest::touch(const QString &name) const
{
    QFile file(m_images + u'/' + name);
    QVERIFY(file.open(QIODevice::WriteOnly));
}

/// Begins anew with such an entry in the store, and with its files.
ClipboardItem ClipboardItemManagerPicturesTest::storedPicture(const QByteArray &picture,
                                                              const QString &fileName)
{
    ClipboardItem item = makeItem(ClipboardContentType::Image, m_clock->now());
    item.imageDigest = sha256Hex(picture);
    item.imageFileName = fileName + u".jpg"_s;
    item.imageThumbnailFileName = fileName + u"_thumb.jpg"_s;
    item.contentHash = computeContentHash(item);
    touch(*item.imageFileName);
    touch(*item.imageThumbnailFileName);
    m_history->records.append(item);
    openHistory();
    return item;
}

void ClipboardItemManagerPicturesTest::aPictureIsInTheListBeforeItIsStored()
{
    holdStoring();
    const ClipboardItem item = add("pixels");
    awaitStoring();
    QCOMPARE(onlyItem().id, item.id);
    QCOMPARE(onlyItem().imageRepresentation, "pixels"_ba);
    QVERIFY(!onlyItem().imageFileName);
    QCOMPARE(callsSinceLoading(), QStringList());
    goOn();
    QVERIFY(onlyItem().imageFileName);
}

void ClipboardItemManagerPicturesTest::aPictureIsNamedAndGivesUpItsBytes()
{
    const ClipboardItem item = add("pixels");
    m_manager->drain();
    QCOMPARE(onlyItem().id, item.id);
    QVERIFY(!onlyItem().imageRepresentation);
    QCOMPARE(files(), filesOf(onlyItem()));
    QCOMPARE(onlyItem().imageDigest, sha256Hex("pixels"));
    QCOMPARE(onlyItem().contentHash, computeContentHash(onlyItem()));
    QCOMPARE(onlyItem().timestamp, item.timestamp);
}

void ClipboardItemManagerPicturesTest::theRowIsWrittenOnceAndWithTheNames()
{
    m_history->onCall = [this](const QString &call) {
        if (call == "upsertItem"_L1 && files().size() != 2)
            m_history->failing = {u"upsertItem"_s};
    };
    add("pixels");
    m_manager->drain();
    QCOMPARE(callsSinceLoading(), QStringList{u"upsertItem"_s});
    QCOMPARE(live().size(), 1);
    QCOMPARE(live().first(), onlyItem());
    QVERIFY(live().first().imageFileName);
}

void ClipboardItemManagerPicturesTest::aDigestThatIsMissingIsComputed()
{
    add("pixels");
    QCOMPARE(onlyItem().imageDigest, sha256Hex("pixels"));
}

void ClipboardItemManagerPicturesTest::aDigestThatIsThereIsKept()
{
    ClipboardItem item = makeItem(ClipboardContentType::Image, m_clock->now());
    item.imageRepresentation = "pixels";
    item.imageDigest = "computed elsewhere";
    m_manager->addItem(item);
    QCOMPARE(onlyItem().imageDigest, "computed elsewhere"_ba);
}

void ClipboardItemManagerPicturesTest::theCompletionComesWithTheNames()
{
    holdStoring();
    bool isNamed = false;
    int count = 0;
    ClipboardItem item = makeItem(ClipboardContentType::Image, m_clock->now());
    item.imageRepresentation = "pixels";
    m_manager->addItem(item, [&] {
        ++count;
        isNamed = onlyItem().imageFileName.has_value();
    });
    awaitStoring();
    QCoreApplication::processEvents();
    QCOMPARE(count, 0);
    goOn();
    QTRY_COMPARE(count, 1);
    QVERIFY(isNamed);
}

void ClipboardItemManagerPicturesTest::aTextIsCompleteAtOnce()
{
    bool isComplete = false;
    m_manager->addItem(textItem(u"a"_s, m_clock->now()), [&] { isComplete = true; });
    QTRY_VERIFY(isComplete);
}

void ClipboardItemManagerPicturesTest::thePictureSettingDecidesTheFormat()
{
    m_defaults->set(u"image.storage.format"_s, u"tiff"_s);
    add("pixels");
    m_manager->drain();
    QFile file(m_images + u'/' + onlyItem().imageFileName.value());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), "pixels"_ba);
}

void ClipboardItemManagerPicturesTest::theSamePictureTwiceIsOneEntryAndOneFile_data()
{
    QTest::addColumn<QString>("moment");
    QTest::addColumn<int>("storedCount");
    QTest::newRow("before the first is stored") << u"before"_s << 2; // With the other picture.
    QTest::newRow("while the first is stored") << u"while"_s << 1;
    QTest::newRow("after the first is stored") << u"after"_s << 1;
}

void ClipboardItemManagerPicturesTest::theSamePictureTwiceIsOneEntryAndOneFile()
{
    QFETCH(QString, moment);
    QFETCH(int, storedCount);
    holdStoring();
    if (moment == "before"_L1) {
        add("pixels of another"); // The queue is busy with it.
        awaitStoring();
    }
    const ClipboardItem first = add("pixels");
    if (moment == "while"_L1)
        awaitStoring();
    if (moment == "after"_L1)
        goOn();
    const ClipboardItem again = add("pixels");
    goOn();
    QCOMPARE(m_storedCount, storedCount);
    if (moment == "before"_L1)
        m_manager->removeItem(m_manager->items().last()->id, {});
    m_manager->drain();

    QCOMPARE(onlyItem().id, again.id);
    QVERIFY(!onlyItem().imageRepresentation);
    QCOMPARE(files(), filesOf(onlyItem()));
    QCOMPARE(live().size(), 1);
    QCOMPARE(live().first(), onlyItem());
    QVERIFY(std::ranges::any_of(m_history->tombstones(), [&first](const ClipboardItem &tombstone) {
        return tombstone.id == first.id;
    }));
}

void ClipboardItemManagerPicturesTest::aFavouriteCopiedAgainWhileItIsStoredStaysOne()
{
    holdStoring();
    const ClipboardItem first = add("pixels");
    awaitStoring();
    m_manager->toggleFavorite(first.id);
    add("pixels");
    goOn();
    QVERIFY(onlyItem().isFavorite);
    QVERIFY(live().first().isFavorite);
    QCOMPARE(files(), filesOf(live().first()));
}

void ClipboardItemManagerPicturesTest::onePictureAfterTheOtherTakesItsTurn()
{
    for (int i = 0; i < 20; ++i)
        add("pixels " + QByteArray::number(i % 10));
    m_manager->drain();
    QCOMPARE(m_manager->items().size(), 10);
    QCOMPARE(files().size(), 20);
    QCOMPARE(live().size(), 10);
}

void ClipboardItemManagerPicturesTest::aPictureThatCannotBeSavedStaysInMemoryAndHasARow()
{
    blockDirectory();
    bool isComplete = false;
    ClipboardItem item = makeItem(ClipboardContentType::Image, m_clock->now());
    item.imageRepresentation = "pixels";
    m_manager->addItem(item, [&] { isComplete = true; });
    m_manager->drain();
    QTRY_VERIFY(isComplete);
    QCOMPARE(onlyItem().imageRepresentation, "pixels"_ba);
    QVERIFY(!onlyItem().imageFileName && !onlyItem().imageThumbnailFileName);
    QCOMPARE(live().size(), 1);
    QCOMPARE(live().first().id, item.id);
    QVERIFY(m_printed->contains(
        u"Failed to save fallback TIFF image: Not a directory"_s));
}

void ClipboardItemManagerPicturesTest::aPictureWithoutFileIsStoredWhenItIsCopiedAgain()
{
    blockDirectory();
    add("pixels");
    m_manager->drain();
    unblockDirectory();
    touch(u"of somebody else.jpg"_s);
    const ClipboardItem again = add("pixels");
    m_manager->drain();
    QCOMPARE(onlyItem().id, again.id);
    QVERIFY(!onlyItem().imageRepresentation);
    QCOMPARE(files(), filesOf(onlyItem()) + QStringList{u"of somebody else.jpg"_s});
    QCOMPARE(live().size(), 1);
}

void ClipboardItemManagerPicturesTest::aCopyOfAPictureThatFailsMeanwhileTriesAgain()
{
    blockDirectory();
    holdStoring();
    add("pixels");
    awaitStoring();
    const ClipboardItem again = add("pixels");
    m_mayGoOn.release();
    awaitStoring(); // The second one; the first has failed.
    unblockDirectory();
    goOn();
    QCOMPARE(onlyItem().id, again.id);
    QCOMPARE(files(), filesOf(onlyItem()));
}

void ClipboardItemManagerPicturesTest::memoryThatIsMissingCostsOnlyTheFile()
{
    m_codec->onImageWanted = [] { throw std::bad_alloc(); };
    const ClipboardItem item = add("pixels");
    m_manager->drain();
    QCOMPARE(onlyItem().imageRepresentation, "pixels"_ba);
    QCOMPARE(live().size(), 1);
    QVERIFY(m_printed->contains(u"Failed to save image: std::bad_alloc"_s));
    m_manager->updateTags(item.id, {u"work"_s});
    m_manager->drain();
    QCOMPARE(live().first().tags, QStringList{u"work"_s});
}

void ClipboardItemManagerPicturesTest::aChangeWhileItIsStoredIsInTheRow()
{
    holdStoring();
    const ClipboardItem item = add("pixels");
    awaitStoring();
    m_clock->advance(1s);
    m_manager->toggleFavorite(item.id);
    m_manager->updateTags(item.id, {u"work"_s, u"gone"_s});
    m_manager->renameTag(u"work"_s, u"office"_s);
    m_manager->removeTag(u"gone"_s);
    goOn();
    QCOMPARE(callsSinceLoading(), QStringList{u"upsertItem"_s});
    QCOMPARE(live().first(), onlyItem());
    QVERIFY(onlyItem().isFavorite);
    QCOMPARE(onlyItem().tags, QStringList{u"office"_s});
    QCOMPARE(onlyItem().updatedAt, m_clock->now());
    QCOMPARE(files(), filesOf(onlyItem()));
}

void ClipboardItemManagerPicturesTest::removedWhileItIsStoredItLeavesNothing()
{
    holdStoring();
    const ClipboardItem item = add("pixels");
    awaitStoring();
    m_manager->removeItem(item.id, {});
    goOn();
    QVERIFY(m_manager->items().isEmpty());
    QVERIFY(live().isEmpty());
    QCOMPARE(files(), QStringList());
}

void ClipboardItemManagerPicturesTest::clearedWhileItIsStoredItLeavesNothing()
{
    holdStoring();
    add("pixels");
    awaitStoring();
    m_manager->clearHistory(ClipboardItemManager::Favorites::Keep, {});
    goOn();
    QVERIFY(m_manager->items().isEmpty());
    QVERIFY(m_history->records.isEmpty());
    QCOMPARE(files(), QStringList());
}

void ClipboardItemManagerPicturesTest::aFavouriteIsClearedOfNothingWhileItIsStored()
{
    // Its row is still to come, and with it the tombstone of what it replaced.
    blockDirectory();
    const ClipboardItem first = add("pixels");
    m_manager->toggleFavorite(first.id);
    m_manager->drain();
    unblockDirectory();
    holdStoring();
    add("pixels");
    awaitStoring();
    m_manager->clearHistory(ClipboardItemManager::Favorites::Keep, {});
    goOn();
    QCOMPARE(m_history->records.size(), 1);
    QCOMPARE(live().first(), onlyItem());
    QVERIFY(onlyItem().isFavorite);
    QCOMPARE(files(), filesOf(onlyItem()));
}

void ClipboardItemManagerPicturesTest::evictedWhileItIsStoredItLeavesNothing()
{
    holdStoring();
    const ClipboardItem item = add("pixels");
    awaitStoring();
    for (int i = 0; i < 1'000; ++i)
        addText(QString::number(i));
    goOn();
    QCOMPARE(m_manager->items().size(), 1'000);
    QCOMPARE(live().size(), 1'000);
    QCOMPARE(m_history->tombstones().size(), 1);
    QCOMPARE(m_history->tombstones().first().id, item.id);
    QCOMPARE(files(), QStringList());
}

void ClipboardItemManagerPicturesTest::unfavouredAndEvictedWhileItIsStoredItLeavesNothing()
{
    holdStoring();
    const ClipboardItem item = add("pixels");
    m_manager->toggleFavorite(item.id);
    for (int i = 0; i < 1'000; ++i)
        addText(QString::number(i));
    awaitStoring();
    m_manager->toggleFavorite(item.id);
    goOn();
    QCOMPARE(live().size(), 1'000);
    QCOMPARE(files(), QStringList());
}

void ClipboardItemManagerPicturesTest::whatItReplacedGoesAfterItsRow()
{
    for (int i = 0; i < 1'000; ++i)
        addText(QString::number(i));
    m_manager->drain();
    holdStoring();
    const ClipboardItem item = add("pixels"); // Evicts the oldest text.
    awaitStoring();
    QCOMPARE(m_manager->items().size(), 1'000);
    QCOMPARE(live().size(), 1'000);
    goOn();
    QCOMPARE(callsSinceLoading().last(2), (QStringList{u"upsertItem"_s, u"markItemsDeleted"_s}));
    QCOMPARE(live().size(), 1'000);
    QCOMPARE(live().last().id, item.id);
}

void ClipboardItemManagerPicturesTest::whatItReplacedGoesEvenIfItGoesItself()
{
    for (int i = 0; i < 1'000; ++i)
        addText(QString::number(i));
    m_manager->drain();
    holdStoring();
    const ClipboardItem item = add("pixels");
    awaitStoring();
    m_manager->removeItem(item.id, {});
    goOn();
    QCOMPARE(m_manager->items().size(), 999);
    QCOMPARE(live().size(), 999);
}

void ClipboardItemManagerPicturesTest::whatItReplacedStaysIfItsRowFails()
{
    const ClipboardItem old = storedPicture("pixels of old", u"old"_s);
    for (int i = 0; i < 999; ++i)
        addText(QString::number(i));
    m_manager->drain();
    m_history->failing = {u"upsertItem"_s};
    add("pixels"); // Evicts the old one.
    m_manager->drain();
    QVERIFY(m_printed->contains(u"Failed to persist clipboard item: out of order"_s));
    QCOMPARE(m_history->tombstones().size(), 0);
    QVERIFY(exists(u"old.jpg"_s));
}

void ClipboardItemManagerPicturesTest::aSweepSparesWhatIsBeingStored()
{
    QSemaphore isFileWritten;
    m_codec->onThumbnailWanted = [&] {
        isFileWritten.release();
        m_mayGoOn.acquire();
    };
    add("pixels");
    QVERIFY(isFileWritten.tryAcquire(1, kDeadline));
    QCOMPARE(files().size(), 1);
    touch(u"stray.jpg"_s);
    m_manager->enforceCurrentLimits({});
    QTRY_VERIFY(!exists(u"stray.jpg"_s));
    QCOMPARE(files().size(), 1);
    goOn();
    m_codec->onThumbnailWanted = {};
    QCOMPARE(files(), filesOf(onlyItem()));
    m_manager->enforceCurrentLimits({});
    m_manager->drain();
    QCOMPARE(files(), filesOf(onlyItem()));
}

void ClipboardItemManagerPicturesTest::filesGoAfterTheTombstone()
{
    const ClipboardItem item = storedPicture("pixels", u"a"_s);
    bool wasThere = false;
    m_history->onCall = [&](const QString &) { wasThere = exists(u"a.jpg"_s); };
    m_manager->removeItem(item.id, {});
    m_manager->drain();
    QVERIFY(wasThere);
    QCOMPARE(files(), QStringList());
}

void ClipboardItemManagerPicturesTest::filesThatWereTakenOverStayUntilTheirLastTombstone()
{
    storedPicture("pixels", u"a"_s);
    QList<bool> wereThere;
    m_history->onCall = [&](const QString &call) {
        m_mayGoOn.tryAcquire(1, kDeadline);
        if (call == "markItemsDeleted"_L1)
            wereThere.append(exists(u"a.jpg"_s));
    };
    addText(u"something for the store to wait at"_s);
    const ClipboardItem again = add("pixels");
    m_manager->removeItem(again.id, {});
    QCOMPARE(m_manager->items().size(), 1);
    goOn();
    // One is of the entry that was replaced, one of that which had taken its files over.
    QCOMPARE(wereThere, (QList<bool>{true, true}));
    QCOMPARE(files(), QStringList());
}

void ClipboardItemManagerPicturesTest::filesStayWhereTheTombstoneFails()
{
    const ClipboardItem item = storedPicture("pixels", u"a"_s);
    m_history->failing = {u"markItemsDeleted"_s};
    m_manager->removeItem(item.id, {});
    m_manager->drain();
    QVERIFY(m_manager->items().isEmpty());
    QCOMPARE(files(), (QStringList{u"a.jpg"_s, u"a_thumb.jpg"_s}));
}

void ClipboardItemManagerPicturesTest::filesStayWhereClearingFails()
{
    storedPicture("pixels", u"a"_s);
    m_history->failing = {u"hardDeleteItems"_s};
    m_manager->clearHistory(ClipboardItemManager::Favorites::Clear, {});
    m_manager->drain();
    QCOMPARE(files(), (QStringList{u"a.jpg"_s, u"a_thumb.jpg"_s}));
}

/// As it is after an end between a new row and the tombstone of the one that it replaces.
void ClipboardItemManagerPicturesTest::aFileOfTwoEntriesGoesWithTheSecond()
{
    const ClipboardItem one = storedPicture("pixels", u"a"_s);
    const ClipboardItem other = storedPicture("pixels", u"a"_s);
    QCOMPARE(m_manager->items().size(), 2);
    m_manager->removeItem(one.id, {});
    m_manager->drain();
    QCOMPARE(files(), (QStringList{u"a.jpg"_s, u"a_thumb.jpg"_s}));
    m_manager->removeItem(other.id, {});
    m_manager->drain();
    QCOMPARE(files(), QStringList());
}

void ClipboardItemManagerPicturesTest::theEndStoresPictures()
{
    for (int i = 0; i < 20; ++i)
        add("pixels " + QByteArray::number(i));
    m_manager.reset();
    QCOMPARE(live().size(), 20);
    QCOMPARE(files().size(), 40);
    for (const ClipboardItem &item : live())
        QVERIFY(exists(item.imageFileName.value()) && exists(item.imageThumbnailFileName.value()));
}

void ClipboardItemManagerPicturesTest::whateverIsDoneListStoreAndFilesAgree()
{
    QRandomGenerator random(20'260'412);
    const auto anyItem = [&] {
        const ClipboardItemList items = m_manager->items();
        return items.isEmpty() ? QUuid() : items.at(random.bounded(items.size()))->id;
    };
    for (int i = 0; i < 3'000; ++i) {
        switch (random.bounded(8)) {
        case 0: addText(QString::number(random.bounded(5))); break;
        case 1: m_manager->removeItem(anyItem(), {}); break;
        case 2: m_manager->toggleFavorite(anyItem()); break;
        case 3: m_manager->updateTags(anyItem(), {QString::number(i)}); break;
        case 4: m_manager->enforceCurrentLimits({}); break;
        case 5:
            if (random.bounded(20) == 0)
                m_manager->clearHistory(ClipboardItemManager::Favorites::Keep, {});
            break;
        default: add("pixels " + QByteArray::number(random.bounded(6))); break;
        }
    }
    m_manager->drain();

    QStringList named;
    QList<ClipboardItem> listed;
    for (const ClipboardItemPointer &item : m_manager->items()) {
        listed.append(*item);
        if (item->contentType != ClipboardContentType::Image)
            continue;
        QVERIFY(!item->imageRepresentation);
        named += filesOf(*item);
    }
    named.sort();
    QCOMPARE(files(), named);
    QList<ClipboardItem> rows = live();
    QVERIFY(!rows.isEmpty());
    std::ranges::sort(rows, std::greater(), &ClipboardItem::timestamp);
    QCOMPARE(rows, listed);
}

QTEST_GUILESS_MAIN(ClipboardItemManagerPicturesTest)
#include "ClipboardItemManagerPicturesTest.moc"
