#include "core/ClipboardItemManager.h"
#include "tests/fakes/HistoryFixture.h"


#include <QSet>
#include <QTest>

#include <atomic>
#include <random>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// What is wrong with a list that some thread has read; empty if nothing is.
QString complaintAbout(const ClipboardItemList &items)
{
    QSet<QUuid> ids;
    QSet<QByteArray> hashes;
    qsizetype plainCount = 0;
    for (qsizetype i = 0; i < items.size(); ++i) {
        const ClipboardItem &item = *items.at(i);
        if (i > 0 && items.at(i - 1)->timestamp < item.timestamp)
            return u"an older entry stands in front of a newer one"_s;
        if (item.deletedAt)
            return u"a tombstone is in the list"_s;
        ids.insert(item.id);
        hashes.insert(item.contentHash);
        plainCount += !item.isFavorite;
    }
    if (ids.size() != items.size())
        return u"an id is there twice"_s;
    if (hashes.size() != items.size())
        return u"a content is there twice"_s;
    if (plainCount > 1'000)
        return u"there are more entries than the capacity"_s;
    // Whole entries, not only whole lists.
    if (!items.isEmpty() && computeContentHash(*items.last()) != items.last()->contentHash)
        return u"an entry has the hash of another"_s;
    return {};
}

QSet<QUuid> idsOf(const ClipboardItemList &items)
{
    QSet<QUuid> ids;
    for (const ClipboardItemPointer &item : items)
        ids.insert(item->id);
    return ids;
}

} // namespace

/// The manager among many threads. The sanitizer for threads is to find nothing here.
class ClipboardItemManagerThreadsTest : public QObject, protected HistoryFixture
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void everyListThatIsReadIsWhole();
    void whatAThreadHasChangedItReads();
    void theStoreEndsWithWhatTheListHolds();

private:
    ClipboardItem add(int number);
    void addMany(int count);
    void changeAtRandom(const std::stop_token &stop);
    void readAndLook(const std::stop_token &stop);


    std::atomic<int> m_readCount;
    std::atomic<int> m_changeCount;
    std::mutex m_mutex; ///< Guards the complaints.
    QStringList m_complaints;
};

void ClipboardItemManagerThreadsTest::init()
{
    setUpHistory();
    m_readCount = 0;
    m_changeCount = 0;
    m_complaints.clear();
}

void ClipboardItemManagerThreadsTest::cleanup()
{
    tearDownHistory();
}

ClipboardItem ClipboardItemManagerThreadsTest::add(int number)
{
    // Every third has the time of the one before, and every seventh the text of an earlier one.
    if (number % 3 != 0)
        m_clock->advance(1s);
    ClipboardItem item = makeItem(ClipboardContentType::Text, m_clock->now());
    item.stringValue = Utf8Text(QString::number(number % 7 == 0 ? number - 500 : number));
    m_manager->addItem(item);
    return item;
}

void ClipboardItemManagerThreadsTest::addMany(int count)
{
    for (int i = 0; i < count; ++i) {
        add(i);
        // Not all at once, or the others would see little but the end.
        if (i % 50 == 0)
            m_manager->items();
    }
}

/// Stars, tags and takes away entries, all but the newest, and now and then the tags of all.
void ClipboardItemManagerThreadsTest::changeAtRandom(const std::stop_token &stop)
{
    std::minstd_rand random(7);
    while (!stop.stop_requested()) {
        const ClipboardItemList items = m_manager->items();
        for (int i = 0; i < 30 && items.size() > 1; ++i) {
            const auto index = 1 + qsizetype(random()) % (items.size() - 1);
            const QUuid id = items.at(index)->id;
            switch (random() % 8) {
            case 0:
            case 1: m_manager->removeItem(id, {}); break;
            case 2: m_manager->updateTags(id, {u"work"_s}); break;
            default: m_manager->toggleFavorite(id);
            }
        }
        ++m_changeCount;
        m_manager->renameTag(u"work"_s, u"office"_s);
        m_manager->removeTag(u"office"_s);
    }
}

void ClipboardItemManagerThreadsTest::readAndLook(const std::stop_token &stop)
{
    while (!stop.stop_requested()) {
        const QString complaint = complaintAbout(m_manager->items());
        ++m_readCount;
        if (complaint.isEmpty())
            continue;
        const std::lock_guard lock(m_mutex);
        m_complaints.append(complaint);
    }
}

void ClipboardItemManagerThreadsTest::everyListThatIsReadIsWhole()
{
    {
        std::vector<std::jthread> threads;
        threads.emplace_back([this](const std::stop_token &stop) { changeAtRandom(stop); });
        for (int i = 0; i < 3; ++i)
            threads.emplace_back([this](const std::stop_token &stop) { readAndLook(stop); });
        addMany(10'000);
        QTRY_VERIFY(m_readCount > 100 && m_changeCount > 10);
    }
    QCOMPARE(m_complaints, QStringList());
    QCOMPARE(complaintAbout(m_manager->items()), QString());
}

void ClipboardItemManagerThreadsTest::whatAThreadHasChangedItReads()
{
    const std::jthread other([this](const std::stop_token &stop) { changeAtRandom(stop); });
    for (int i = 0; i < 1'000; ++i) {
        const ClipboardItem item = add(i);
        QCOMPARE(m_manager->items().first()->id, item.id);
    }
}

void ClipboardItemManagerThreadsTest::theStoreEndsWithWhatTheListHolds()
{
    {
        const std::jthread other([this](const std::stop_token &stop) { changeAtRandom(stop); });
        addMany(2'000);
        QTRY_VERIFY(m_changeCount > 10);
    }
    m_manager->drain();
    QSet<QUuid> stored;
    int favoriteCount = 0;
    for (const ClipboardItem &item : m_history->live()) {
        stored.insert(item.id);
        favoriteCount += item.isFavorite;
    }
    QVERIFY(stored == idsOf(m_manager->items()));
    QVERIFY(favoriteCount > 0);
    QVERIFY(!m_history->tombstones().isEmpty());
}

QTEST_GUILESS_MAIN(ClipboardItemManagerThreadsTest)
#include "ClipboardItemManagerThreadsTest.moc"
