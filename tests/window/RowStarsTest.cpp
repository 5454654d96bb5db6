#include "tests/window/TableFixture.h"

#include "window/RowStars.h"

#include <QTest>

using namespace std::chrono_literals;
using Star = RowState::Star;

class RowStarsTest : public QObject, private TableFixture
{
    Q_OBJECT

private slots:
    void init()
    {
        setUpTable();
        make(SampleHistory::numbered(3));
        pass(1s);
        m_stars = std::make_unique<RowStars>(*m_view, *m_scheduler, *m_clock);
        m_clicked.clear();
        m_stars->onClicked = [this](int row) { m_clicked.append(row); };
    }
    void cleanup()
    {
        m_stars.reset();
        tearDownTable();
    }

    void aStarIsWhereItsRowHasIt();
    void oneStarIsUnderThePointer();
    void aPressedPointerPassesOverStars();
    void aClickIsAPressAndAReleaseOnOneStar();
    void aStarThatThePointerLeavesIsNotPressed();
    void aPressBesideIsNotForTheStars();
    void aStarWhoseRowMovesIsStillPressed();
    void aStarWhoseRowGoesIsNotClicked();
    void aClickPops();

private:
    std::unique_ptr<RowStars> m_stars;
    QList<int> m_clicked;
};

void RowStarsTest::aStarIsWhereItsRowHasIt()
{
    QVERIFY(m_stars->areAt(starOf(0)));
    QVERIFY(m_stars->areAt(starOf(2)));
    QVERIFY(!m_stars->areAt(contentOf(0)));
    QVERIFY(!m_stars->areAt(starOf(2) + QPoint(0, kRowHeight))); // There is no fourth row.
}

void RowStarsTest::oneStarIsUnderThePointer()
{
    QVERIFY(!m_stars->move(starOf(1), Qt::NoButton));
    QVERIFY(m_stars->state(1) == Star::Hovered);
    m_stars->move(starOf(2), Qt::NoButton);
    QVERIFY(m_stars->state(1) == Star::Rest);
    QVERIFY(m_stars->state(2) == Star::Hovered);
    m_stars->leave();
    QVERIFY(m_stars->state(2) == Star::Rest);
}

void RowStarsTest::aPressedPointerPassesOverStars()
{
    m_stars->move(starOf(1), Qt::LeftButton);
    QVERIFY(m_stars->state(1) == Star::Rest);
}

void RowStarsTest::aClickIsAPressAndAReleaseOnOneStar()
{
    QVERIFY(m_stars->press(starOf(1)));
    QVERIFY(m_stars->state(1) == Star::Pressed);
    QVERIFY(m_clicked.isEmpty());
    QVERIFY(m_stars->release(starOf(1)));
    QVERIFY(m_stars->state(1) == Star::Hovered);
    QCOMPARE(m_clicked, QList<int>{1});
    QVERIFY(!m_stars->release(starOf(1)));
    QCOMPARE(m_clicked.size(), 1);
}

void RowStarsTest::aStarThatThePointerLeavesIsNotPressed()
{
    m_stars->press(starOf(1));
    QVERIFY(m_stars->move(starOf(2), Qt::LeftButton));
    QVERIFY(m_stars->state(1) == Star::Rest);
    QVERIFY(m_stars->state(2) == Star::Rest);
    m_stars->move(starOf(1), Qt::LeftButton);
    QVERIFY(m_stars->state(1) == Star::Pressed);
    m_stars->move(starOf(2), Qt::LeftButton);
    QVERIFY(m_stars->release(starOf(2)));
    QVERIFY(m_clicked.isEmpty());
}

void RowStarsTest::aPressBesideIsNotForTheStars()
{
    QVERIFY(!m_stars->press(contentOf(1)));
    QVERIFY(!m_stars->release(starOf(1)));
    QVERIFY(m_clicked.isEmpty());
}

void RowStarsTest::aStarWhoseRowMovesIsStillPressed()
{
    m_stars->press(starOf(0));
    m_controller->setItems(SampleHistory::numbered(1) + m_controller->items());
    m_controller->applyFilters(ClipboardTableViewController::Scroll::Keep);
    QVERIFY(m_stars->release(starOf(1)));
    QCOMPARE(m_clicked, QList<int>{1});
}

void RowStarsTest::aStarWhoseRowGoesIsNotClicked()
{
    m_stars->press(starOf(0));
    m_controller->setItems(m_controller->items().mid(1));
    m_controller->applyFilters(ClipboardTableViewController::Scroll::Keep);
    QVERIFY(m_stars->release(starOf(0)));
    QVERIFY(m_clicked.isEmpty());
}

void RowStarsTest::aClickPops()
{
    const QUuid id = m_view->items().at(1)->id;
    double scaleWhenTold = 1;
    m_stars->onClicked = [&](int) { scaleWhenTold = m_stars->scale(id); };
    m_stars->click(1);
    QVERIFY(scaleWhenTold < 1);
    QCOMPARE(m_stars->scale(m_view->items().at(0)->id), 1.0);
    m_stars->finishPops();
    QCOMPARE(m_stars->scale(id), 1.0);
}

QTEST_MAIN(RowStarsTest)
#include "RowStarsTest.moc"
