#include "appearance/Spring.h"

#include <QTest>

#include <algorithm>
#include <cmath>
#include <complex>

using namespace std::chrono_literals;

namespace {

using Seconds = std::chrono::duration<double>;

void addSprings()
{
    QTest::addColumn<double>("mass");
    QTest::addColumn<double>("stiffness");
    QTest::addColumn<double>("damping");
    QTest::newRow("hint") << 1.0 << 250.0 << 15.0;
    QTest::newRow("selection") << 1.2 << 280.0 << 18.0;
    QTest::newRow("star") << 1.0 << 260.0 << 20.0;
    QTest::newRow("window") << 0.8 << 560.0 << 40.0;
    QTest::newRow("one that only just swings") << 1.0 << 100.0 << 19.999;
    QTest::newRow("one that no more swings") << 1.0 << 100.0 << 20.0;
    QTest::newRow("one that only just creeps") << 1.0 << 100.0 << 20.001;
    QTest::newRow("one that creeps") << 1.0 << 100.0 << 60.0;
    QTest::newRow("one in honey") << 2.0 << 100.0 << 4000.0;
}

Spring fetchedSpring()
{
    QFETCH(const double, mass);
    QFETCH(const double, stiffness);
    QFETCH(const double, damping);
    return {mass, stiffness, damping};
}

} // namespace

class SpringTest : public QObject
{
    Q_OBJECT

private slots:
    void itHasTheCurveOfItsRoots_data() { addSprings(); }
    void itHasTheCurveOfItsRoots();
    void itObeysTheLawOfSprings_data() { addSprings(); }
    void itObeysTheLawOfSprings();
    void itBeginsAtNothingAndRests_data() { addSprings(); }
    void itBeginsAtNothingAndRests();
    void settlingIsTimedByTheReach();
    void aLooseSpringGoesBeyondItsPlace();
    void aTightSpringDoesNot();
};

/// The solution by the roots of the characteristic equation, which are complex for those that swing.
void SpringTest::itHasTheCurveOfItsRoots()
{
    const Spring spring = fetchedSpring();
    const std::complex<double> half = spring.damping / (2 * spring.mass);
    const std::complex<double> distance = std::sqrt(half * half - spring.stiffness / spring.mass);
    for (double time = 0; time < 2; time += 0.01) {
        const std::complex<double> first = -half + distance;
        const std::complex<double> second = -half - distance;
        const double left = std::abs(distance) > 0
            ? ((first * std::exp(second * time) - second * std::exp(first * time))
               / (first - second)).real()
            : ((1.0 + half * time) * std::exp(-half * time)).real();
        const double found = spring.positionAfter(Seconds(time));
        QVERIFY2(std::abs(found - (1 - left)) < 1e-9, qPrintable(QString::number(found)));
    }
}

/// Walks the way in small steps of Newton's law, and compares.
void SpringTest::itObeysTheLawOfSprings()
{
    const Spring spring = fetchedSpring();
    constexpr double kStep = 1e-5;
    double position = 0;
    double speed = 0;
    for (int i = 1; i <= 50'000; ++i) {
        speed += kStep * (spring.stiffness * (1 - position) - spring.damping * speed) / spring.mass;
        position += kStep * speed;
        if (i % 5000 == 0) {
            const double found = spring.positionAfter(Seconds(i * kStep));
            QVERIFY2(std::abs(found - position) < 1e-3, qPrintable(QString::number(found)));
        }
    }
}

void SpringTest::itBeginsAtNothingAndRests()
{
    const Spring spring = fetchedSpring();
    QCOMPARE(spring.positionAfter(0s), 0.0);
    for (const double distance : {0.1, 0.001}) {
        const auto settled = spring.settlingDuration(distance);
        for (auto time = settled; time < 3 * settled; time += settled / 500 + 1ms)
            QVERIFY(std::abs(spring.positionAfter(time) - 1) <= distance);
        // Not much too late: it has not rested for half of the time.
        double farthest = 0;
        for (auto time = settled / 2; time < settled; time += 1ms)
            farthest = std::max(farthest, std::abs(spring.positionAfter(time) - 1));
        QVERIFY(farthest > distance);
    }
}

/// The reaches begin at 1.136 and 3.055, and fall by 7.5 and 25 in their logarithm each second.
void SpringTest::settlingIsTimedByTheReach()
{
    QCOMPARE(Spring({1, 250, 15}).settlingDuration(), 939ms);
    QCOMPARE(Spring({0.8, 560, 40}).settlingDuration(), 321ms);
    QCOMPARE(Spring({0.8, 560, 40}).settlingDuration(0.5 / 255), 295ms);
}

void SpringTest::aLooseSpringGoesBeyondItsPlace()
{
    const Spring spring{1, 250, 15};
    QVERIFY(spring.positionAfter(226ms) > 1.1); // Half a swing at 13.9 per second.
}

void SpringTest::aTightSpringDoesNot()
{
    for (const double damping : {20.0, 60.0}) {
        const Spring spring{1, 100, damping};
        double before = -1;
        for (auto time = 0ms; time < 2s; time += 10ms) {
            const double position = spring.positionAfter(time);
            QVERIFY(position > before && position < 1);
            before = position;
        }
    }
}

QTEST_APPLESS_MAIN(SpringTest)
#include "SpringTest.moc"
