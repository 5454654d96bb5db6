#include "tests/window/TableFixture.h"

#include "window/StarPop.h"

#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// The curve of mass 1, stiffness 260 and damping 20, by hand.
double swung(std::chrono::duration<double> time)
{
    const double frequency = std::sqrt(260.0 - 100);
    const double angle = frequency * time.count();
    return 1 - std::exp(-10 * time.count()) * (std::cos(angle) + 10 / frequency * std::sin(angle));
}

} // namespace

class StarPopTest : public QObject, private TableFixture
{
    Q_OBJECT

private slots:
    void init()
    {
        setUpTable();
        make(SampleHistory::numbered(5));
        pass(1s);
    }
    void cleanup() { tearDownTable(); }

    void itGrowsByTheSpring();
    void aClickedStarPopsAndNoOther();
    void theStarStaysInItsPlace();
    void aRefusedClickPopsAndChangesNothing();
    void aKeyDoesNotPop();
    void withReducedMotionNothingPops();
    void aStarThatPopsEndsWhenMotionIsReduced();

private:
    QImage starPicture(int row)
    {
        const QRect star = layoutOf(row).star.toAlignedRect();
        return m_view->viewport()->grab(star).toImage().convertToFormat(QImage::Format_ARGB32);
    }
    void click(int row) { QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {}, starOf(row)); }

    /// As far as the picture differs from the window.
    static QRect inkOf(const QImage &picture)
    {
        QRect ink;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                if (picture.pixel(x, y) != picture.pixel(0, 0))
                    ink |= QRect(x, y, 1, 1);
            }
        }
        return ink;
    }
};

void StarPopTest::itGrowsByTheSpring()
{
    int stepCount = 0;
    StarPop pop(*m_scheduler, *m_clock, [&](const QUuid &) {
        ++stepCount;
        return true;
    });
    const QUuid id = QUuid::createUuid();
    QCOMPARE(pop.scale(id), 1.0);
    pop.start(id);
    double largest = 0;
    for (auto time = 16ms; time < 700ms; time += 16ms) {
        QVERIFY(std::abs(pop.scale(id) - (0.95 + 0.05 * swung(time))) < 1e-9);
        largest = std::max(largest, pop.scale(id));
        pass(16ms);
    }
    QVERIFY(largest > 1.003); // The spring swings.
    pass(100ms);
    QCOMPARE(pop.scale(id), 1.0);
    QCOMPARE(pop.scale(QUuid::createUuid()), 1.0);
    QVERIFY(stepCount > 15);
    QCOMPARE(m_scheduler->pendingCount(), 0);
}

void StarPopTest::aClickedStarPopsAndNoOther()
{
    waitUntilDrawn();
    PaintedRegions painted(*m_view->viewport());
    click(1);
    QCOMPARE(m_toggled.size(), 1);
    const QImage popping = starPicture(1);
    waitUntilDrawn();
    painted.clear();
    for (int frame = 0; frame < 10; ++frame) {
        pass(16ms);
        QCoreApplication::processEvents();
    }
    QVERIFY(painted.regions().size() > 3);
    QVERIFY(m_view->rowBox(1).contains(painted.whole().boundingRect()));
    pass(1s);
    QVERIFY(starPicture(1) != popping);
    QCOMPARE(m_scheduler->pendingCount(), 0);
}

void StarPopTest::theStarStaysInItsPlace()
{
    click(1);
    QVERIFY(m_controller->filteredItems().at(1)->isFavorite);
    const QRect small = inkOf(starPicture(1));
    pass(1s);
    const QRect whole = inkOf(starPicture(1));
    QVERIFY(whole.contains(small));
    QVERIFY(std::abs(small.center().x() - whole.center().x()) <= 1);
    QVERIFY(std::abs(small.center().y() - whole.center().y()) <= 1);
    const QRect star(QPoint(), layoutOf(1).star.size().toSize());
    QVERIFY(star.contains(whole));
}

void StarPopTest::aRefusedClickPopsAndChangesNothing()
{
    ClipboardItemList items = SampleHistory::numbered(1001);
    for (int i = 1; i < items.size(); ++i) {
        ClipboardItem favorite = *items[i];
        favorite.isFavorite = true;
        items[i] = SampleHistory::shared(favorite);
    }
    make(items);
    waitUntilDrawn();
    const QPoint beside = contentOf(0);
    const QImage before = starPicture(0);
    click(0);
    QTest::mouseMove(m_view->viewport(), beside);
    QVERIFY(starPicture(0) != before);
    pass(2s);
    QTRY_COMPARE(starPicture(0), before); // The pointer leaves when the server has moved it.
    QVERIFY(m_toggled.isEmpty());
}

void StarPopTest::aKeyDoesNotPop()
{
    m_controller->toggleFavorite(m_controller->filteredItems().at(1)->id);
    const QImage first = starPicture(1);
    QCOMPARE(m_scheduler->pendingCount(), 0);
    pass(1s);
    QCOMPARE(starPicture(1), first);
}

void StarPopTest::withReducedMotionNothingPops()
{
    m_controller->setLook({.isMotionReduced = true});
    click(1);
    QCOMPARE(m_toggled.size(), 1);
    const QImage first = starPicture(1);
    QCOMPARE(m_scheduler->pendingCount(), 0);
    pass(1s);
    QCOMPARE(starPicture(1), first);
}

void StarPopTest::aStarThatPopsEndsWhenMotionIsReduced()
{
    QList<QUuid> drawn;
    StarPop pop(*m_scheduler, *m_clock, [&](const QUuid &id) {
        drawn.append(id);
        return true;
    });
    const QUuid id = QUuid::createUuid();
    pop.start(id);
    pass(40ms);
    QVERIFY(pop.scale(id) < 1);
    drawn.clear();
    pop.setMotionReduced(true);
    QCOMPARE(pop.scale(id), 1.0);
    QCOMPARE(drawn, QList<QUuid>{id});
    QCOMPARE(m_scheduler->pendingCount(), 0);
    pop.setMotionReduced(false);
    QCOMPARE(pop.scale(id), 1.0);
}

QTEST_MAIN(StarPopTest)
#include "StarPopTest.moc"
