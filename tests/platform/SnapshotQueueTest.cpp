#include "platform/linux/SnapshotQueue.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

PasteboardSnapshot textSnapshot(QByteArray text)
{
    PasteboardSnapshot snapshot;
    snapshot.string = Utf8Text::fromUtf8(std::move(text));
    return snapshot;
}

QByteArray textOf(const PasteboardSnapshot &snapshot)
{
    return snapshot.string.value_or(Utf8Text()).utf8();
}

} // namespace

class SnapshotQueueTest : public QObject
{
    Q_OBJECT

private slots:
    void nothingIsPublishedAtFirst();
    void eachSnapshotMovesTheCount();
    void snapshotsAreTakenOnceAndInOrder();
    void theLatestStaysWhenAllAreTaken();
    void aPictureIsGivenOutOnce();
    void whatWasPassedOverIsNotGivenOut();
    void noticesAreCountedApartFromChanges();
    void whatIsDiscardedLeavesItsNumber();
    void theOldestGoWhenTheyAreTooMany();
    void theOldestGoWhenTheyAreTooLarge();
};

void SnapshotQueueTest::nothingIsPublishedAtFirst()
{
    SnapshotQueue queue;
    QCOMPARE(queue.changeCount(), quint64(0));
    QVERIFY(!queue.latest().string);
    QVERIFY(queue.takeSince(0).isEmpty());
}

void SnapshotQueueTest::eachSnapshotMovesTheCount()
{
    SnapshotQueue queue;
    queue.publish(textSnapshot("a"));
    queue.publish(textSnapshot("b"));
    QCOMPARE(queue.changeCount(), quint64(2));
    QCOMPARE(queue.latest().changeCount, quint64(2));
    QCOMPARE(textOf(queue.latest()), QByteArray("b"));
}

void SnapshotQueueTest::snapshotsAreTakenOnceAndInOrder()
{
    SnapshotQueue queue;
    queue.publish(textSnapshot("a"));
    queue.publish(textSnapshot("b"));
    const QList<PasteboardSnapshot> taken = queue.takeSince(0);
    QCOMPARE(taken.size(), 2);
    QCOMPARE(textOf(taken.at(0)), QByteArray("a"));
    QCOMPARE(taken.at(1).changeCount, quint64(2));

    queue.publish(textSnapshot("c"));
    const QList<PasteboardSnapshot> later = queue.takeSince(taken.last().changeCount);
    QCOMPARE(later.size(), 1);
    QCOMPARE(textOf(later.first()), QByteArray("c"));
}

void SnapshotQueueTest::theLatestStaysWhenAllAreTaken()
{
    SnapshotQueue queue;
    queue.publish(textSnapshot("a"));
    queue.takeSince(0);
    QCOMPARE(textOf(queue.latest()), QByteArray("a"));
    QVERIFY(queue.takeSince(1).isEmpty());
}

void SnapshotQueueTest::aPictureIsGivenOutOnce()
{
    SnapshotQueue queue;
    PasteboardSnapshot snapshot = textSnapshot("beside it");
    snapshot.image = PasteboardImage{"tiff", QSize(1, 1)};
    queue.publish(snapshot);
    QVERIFY(queue.latest().image.has_value());
    QVERIFY(queue.takeSince(0).first().image.has_value());
    QVERIFY(!queue.latest().image);
    QCOMPARE(textOf(queue.latest()), QByteArray("beside it"));
}

void SnapshotQueueTest::whatWasPassedOverIsNotGivenOut()
{
    SnapshotQueue queue;
    queue.publish(textSnapshot("passed over"));
    queue.publish(textSnapshot("wanted"));
    const QList<PasteboardSnapshot> taken = queue.takeSince(1);
    QCOMPARE(taken.size(), 1);
    QCOMPARE(textOf(taken.first()), QByteArray("wanted"));
}

void SnapshotQueueTest::noticesAreCountedApartFromChanges()
{
    SnapshotQueue queue;
    QCOMPARE(queue.addNotice(), quint64(1));
    QCOMPARE(queue.addNotice(), quint64(2));
    QCOMPARE(queue.noticedCount(), quint64(2));
    QCOMPARE(queue.changeCount(), quint64(0));
}

void SnapshotQueueTest::whatIsDiscardedLeavesItsNumber()
{
    SnapshotQueue queue;
    queue.publish(textSnapshot("a"));
    PasteboardSnapshot secret = textSnapshot("b");
    secret.notice = 7;
    secret.types = {u"public.utf8-plain-text"_s};
    secret.html = "b";
    queue.publish(secret);
    queue.discard(2);
    const PasteboardSnapshot latest = queue.latest();
    QCOMPARE(latest.changeCount, quint64(2));
    QCOMPARE(latest.notice, quint64(7));
    QVERIFY(latest.types.isEmpty() && !latest.string && !latest.html);
    QCOMPARE(textOf(queue.takeSince(0).first()), QByteArray("a"));
}

void SnapshotQueueTest::theOldestGoWhenTheyAreTooMany()
{
    constexpr int kPublished = 3000;
    SnapshotQueue queue;
    for (int number = 1; number <= kPublished; ++number)
        queue.publish(textSnapshot(QByteArray::number(number)));
    const QList<PasteboardSnapshot> taken = queue.takeSince(0);
    QVERIFY(taken.size() >= 1000);
    QVERIFY(taken.size() < kPublished);
    QCOMPARE(textOf(taken.last()), QByteArray::number(kPublished));
    QCOMPARE(taken.first().changeCount, quint64(kPublished - taken.size() + 1));
}

void SnapshotQueueTest::theOldestGoWhenTheyAreTooLarge()
{
    SnapshotQueue queue;
    const QByteArray large(100 << 20, 'x'); // Shared by all, so that the test takes little memory.
    for (int number = 0; number < 5; ++number)
        queue.publish(textSnapshot(large));
    QCOMPARE(queue.takeSince(0).size(), 2);

    const QByteArray huge(300 << 20, 'x');
    queue.publish(textSnapshot(huge));
    QCOMPARE(queue.latest().string->byteCount(), huge.size());
}

QTEST_GUILESS_MAIN(SnapshotQueueTest)
#include "SnapshotQueueTest.moc"
