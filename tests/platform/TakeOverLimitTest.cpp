#include "platform/linux/TakeOverLimit.h"

#include <QTest>

using namespace std::chrono_literals;

class TakeOverLimitTest : public QObject
{
    Q_OBJECT

private slots:
    void theSameContentMayComeBackAFewTimes();
    void aQuietTimeBeginsAnew();
    void attemptsThatAreRefusedProlongTheExchange();
    void otherContentMayComeOftenButNotForEver();
};

namespace {

const TakeOverLimit::TimePoint kStart = TakeOverLimit::TimePoint() + 1h;

int roundsUntilRefused(TakeOverLimit &limit, bool isContentNew)
{
    int rounds = 0;
    while (limit.beginRound(isContentNew ? std::size_t(rounds) : 7, kStart + rounds * 1ms))
        ++rounds;
    return rounds;
}

} // namespace

void TakeOverLimitTest::theSameContentMayComeBackAFewTimes()
{
    TakeOverLimit limit;
    QCOMPARE(roundsUntilRefused(limit, false), 4);
}

void TakeOverLimitTest::aQuietTimeBeginsAnew()
{
    TakeOverLimit limit;
    roundsUntilRefused(limit, false);
    QVERIFY(limit.beginRound(7, kStart + 3s));
}

void TakeOverLimitTest::attemptsThatAreRefusedProlongTheExchange()
{
    TakeOverLimit limit;
    roundsUntilRefused(limit, false);
    for (int second = 1; second <= 10; ++second)
        QVERIFY(!limit.beginRound(7, kStart + second * 1s));
    QVERIFY(limit.beginRound(7, kStart + 12s));
}

void TakeOverLimitTest::otherContentMayComeOftenButNotForEver()
{
    TakeOverLimit limit;
    QCOMPARE(roundsUntilRefused(limit, true), 256);
}

QTEST_GUILESS_MAIN(TakeOverLimitTest)
#include "TakeOverLimitTest.moc"
