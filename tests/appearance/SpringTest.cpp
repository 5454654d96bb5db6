#include "appearance/Spring.h"

#include <QTest>

#include <cmath>

using namespace std::chrono_literals;

class SpringTest : public QObject
{
    Q_OBJECT

private slots:
    void itObeysTheLawOfSprings_data();
    void itObeysTheLawOfSprings();
    void itBeginsAtNothingAndRests();
    void aLooseSpringGoesBeyondItsPlace();
};

void SpringTest::itObeysTheLawOfSprings_data()
{
    QTest::addColumn<double>("mass");
    QTest::addColumn<double>("stiffness");
    QTest::addColumn<double>("damping");
    QTest::newRow("hint") << 1.0 << 250.0 << 15.0;
    QTest::newRow("selection") << 1.2 << 280.0 << 18.0;
    QTest::newRow("window") << 0.8 << 560.0 << 40.0;
}

/// Walks the way in small steps of Newton's law, and compares.
void SpringTest::itObeysTheLawOfSprings()
{
    QFETCH(const double, mass);
    QFETCH(const double, stiffness);
    QFETCH(const double, damping);
    const Spring spring{mass, stiffness, damping};
    constexpr double kStep = 1e-5;
    double position = 0;
    double speed = 0;
    for (int i = 1; i <= 50'000; ++i) {
        speed += kStep * (stiffness * (1 - position) - damping * speed) / mass;
        position += kStep * speed;
        if (i % 5000 == 0) {
            const double found = spring.positionAfter(std::chrono::duration<double>(i * kStep));
            QVERIFY2(std::abs(found - position) < 1e-3, qPrintable(QString::number(found)));
        }
    }
}

void SpringTest::itBeginsAtNothingAndRests()
{
    const Spring spring{1, 250, 15};
    QCOMPARE(spring.positionAfter(0s), 0.0);
    const auto settled = spring.settlingDuration();
    QVERIFY(settled > 800ms && settled < 1s);
    for (auto time = settled; time < 2s; time += 1ms)
        QVERIFY(std::abs(spring.positionAfter(time) - 1) <= 0.001);
    QVERIFY(std::abs(spring.positionAfter(settled / 2) - 1) > 0.001);
}

void SpringTest::aLooseSpringGoesBeyondItsPlace()
{
    const Spring spring{1, 250, 15};
    QVERIFY(spring.positionAfter(226ms) > 1.1); // Half a swing at 13.9 per second.
}

QTEST_APPLESS_MAIN(SpringTest)
#include "SpringTest.moc"
