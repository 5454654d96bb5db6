#include "foundation/LazyBytes.h"
#include "foundation/TextSignature.h"
#include "tests/fakes/CountingSource.h"
#include "tests/fakes/SlowSource.h"

#include <QScopeGuard>
#include <QTest>

#include <thread>

using namespace Qt::StringLiterals;

class LazyBytesTest : public QObject
{
    Q_OBJECT

private slots:
    void bytesInMemoryAreGivenWithoutACopy();
    void bytesElsewhereAreReadEachTime();
    void movedBytesLeaveMemoryInEveryCopy();
    void heldBytesAreReadOnce();
    void ofBytesThatWereNeverInMemoryTheSizeIsKnown();
    void whatTheSourceDoesNotGiveIsAbsent();
    void aSourceThatGivesAnotherSizeGivesNothing();
    void noBytesNeedNoSource();
    void copiesAreEqualWithoutReading();
    void anotherSizeIsUnequalWithoutReading();
    void equalityReadsWhatItHasTo();
    void whatCannotBeReadEqualsNothingElse();
    void aSlowSourceHoldsUpNobodyElse();
    void whatTwoWantAtTheSameTimeIsReadOnce();
    void aSignatureIsThatOfEveryCopyAndTheFirstCounts();
};

void LazyBytesTest::bytesInMemoryAreGivenWithoutACopy()
{
    const QByteArray bytes = "some bytes"_ba;
    const LazyBytes lazy(bytes);
    QVERIFY(lazy.isInMemory());
    QCOMPARE(lazy.bytes().constData(), bytes.constData());
}

void LazyBytesTest::bytesElsewhereAreReadEachTime()
{
    const auto source = std::make_shared<CountingSource>("abc"_ba);
    const LazyBytes lazy = LazyBytes::elsewhere(3, source);
    QVERIFY(!lazy.isInMemory());
    QCOMPARE(lazy.bytes(), "abc"_ba);
    QCOMPARE(lazy.read(), std::optional("abc"_ba));
    QCOMPARE(source->readCount.load(), 2);
}

void LazyBytesTest::movedBytesLeaveMemoryInEveryCopy()
{
    const LazyBytes lazy("abc"_ba);
    const LazyBytes copy = lazy;
    const auto source = std::make_shared<CountingSource>("abc"_ba);
    copy.moveTo(source);
    QVERIFY(!lazy.isInMemory());
    QCOMPARE(lazy.bytes(), "abc"_ba);
    QCOMPARE(source->readCount.load(), 1);
}

void LazyBytesTest::heldBytesAreReadOnce()
{
    const auto source = std::make_shared<CountingSource>("abc"_ba);
    const LazyBytes lazy = LazyBytes::elsewhere(3, source);
    QVERIFY(!lazy.atHand());
    auto held = lazy.hold();
    QCOMPARE(*held, "abc"_ba);
    QCOMPARE(lazy.atHand(), held);
    QCOMPARE(lazy.bytes(), "abc"_ba);
    QCOMPARE(lazy.hold(), held);
    QCOMPARE(source->readCount.load(), 1);

    held.reset();
    QVERIFY(!lazy.atHand());
    QCOMPARE(lazy.bytes(), "abc"_ba);
    QCOMPARE(source->readCount.load(), 2);
}

void LazyBytesTest::ofBytesThatWereNeverInMemoryTheSizeIsKnown()
{
    const auto source = std::make_shared<CountingSource>("abc"_ba);
    const LazyBytes lazy = LazyBytes::elsewhere(3, source);
    QCOMPARE(lazy.size(), 3);
    QVERIFY(!lazy.isEmpty());
    QCOMPARE(source->readCount.load(), 0);
}

void LazyBytesTest::whatTheSourceDoesNotGiveIsAbsent()
{
    const LazyBytes lazy
        = LazyBytes::elsewhere(3, std::make_shared<CountingSource>(std::nullopt));
    QVERIFY(!lazy.read());
    QVERIFY(!lazy.hold());
    QCOMPARE(lazy.bytes(), QByteArray());
}

void LazyBytesTest::aSourceThatGivesAnotherSizeGivesNothing()
{
    const LazyBytes lazy = LazyBytes::elsewhere(3, std::make_shared<CountingSource>("abcd"_ba));
    QVERIFY(!lazy.read());
}

void LazyBytesTest::noBytesNeedNoSource()
{
    for (const LazyBytes &lazy : {LazyBytes(), LazyBytes(""_ba), LazyBytes::elsewhere(0, nullptr)}) {
        QVERIFY(lazy.isEmpty());
        QVERIFY(lazy.isInMemory());
        QCOMPARE(lazy.read(), std::optional(QByteArray()));
        QVERIFY(lazy.hold()->isEmpty());
        lazy.moveTo(nullptr);
        QCOMPARE(lazy, LazyBytes());
    }
}

void LazyBytesTest::copiesAreEqualWithoutReading()
{
    const auto source = std::make_shared<CountingSource>("abc"_ba);
    const LazyBytes lazy = LazyBytes::elsewhere(3, source);
    const LazyBytes copy = lazy;
    QVERIFY(copy == lazy);
    QCOMPARE(source->readCount.load(), 0);
}

void LazyBytesTest::anotherSizeIsUnequalWithoutReading()
{
    const auto source = std::make_shared<CountingSource>("abc"_ba);
    QVERIFY(!(LazyBytes::elsewhere(3, source) == LazyBytes("ab"_ba)));
    QCOMPARE(source->readCount.load(), 0);
}

void LazyBytesTest::equalityReadsWhatItHasTo()
{
    const LazyBytes lazy = LazyBytes::elsewhere(3, std::make_shared<CountingSource>("abc"_ba));
    QVERIFY(lazy == LazyBytes("abc"_ba));
    QVERIFY(!(lazy == LazyBytes("abd"_ba)));
}

void LazyBytesTest::whatCannotBeReadEqualsNothingElse()
{
    const auto nothing = std::make_shared<CountingSource>(std::nullopt);
    const LazyBytes lazy = LazyBytes::elsewhere(3, nothing);
    QVERIFY(lazy == lazy);
    QVERIFY(!(lazy == LazyBytes::elsewhere(3, nothing)));
    QVERIFY(!(lazy == LazyBytes("abc"_ba)));
}

void LazyBytesTest::aSlowSourceHoldsUpNobodyElse()
{
    const auto slow = std::make_shared<SlowSource>("abc"_ba);
    const LazyBytes waiting = LazyBytes::elsewhere(3, slow);
    std::jthread reader([&waiting] { waiting.bytes(); });
    const auto end = qScopeGuard([&slow] { slow->letGo(); });
    QTRY_COMPARE(slow->readCount.load(), 1);
    const LazyBytes other = LazyBytes::elsewhere(2, std::make_shared<CountingSource>("de"_ba));
    QCOMPARE(other.bytes(), "de"_ba); // Would never come back.
}

void LazyBytesTest::whatTwoWantAtTheSameTimeIsReadOnce()
{
    const auto slow = std::make_shared<SlowSource>("abc"_ba);
    const LazyBytes lazy = LazyBytes::elsewhere(3, slow);
    std::shared_ptr<const QByteArray> first;
    std::jthread reader([&] { first = lazy.hold(); });
    QTRY_COMPARE(slow->readCount.load(), 1);
    std::jthread release([&slow] { slow->letGo(); });
    const auto second = lazy.hold();
    reader.join();
    QCOMPARE(first, second);
    QCOMPARE(slow->readCount.load(), 1);
}

void LazyBytesTest::aSignatureIsThatOfEveryCopyAndTheFirstCounts()
{
    const LazyBytes lazy("abc"_ba);
    const LazyBytes copy = lazy;
    QVERIFY(!copy.signature());
    lazy.setSignature(nullptr);
    lazy.setSignature(TextSignature::of("abc"_ba));
    const TextSignature *signature = copy.signature();
    QVERIFY(signature);
    copy.setSignature(TextSignature::of("abc"_ba));
    QCOMPARE(lazy.signature(), signature);

    LazyBytes().setSignature(TextSignature::of("abc"_ba));
    QVERIFY(!LazyBytes().signature());
}

QTEST_GUILESS_MAIN(LazyBytesTest)
#include "LazyBytesTest.moc"
