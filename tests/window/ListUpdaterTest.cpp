#include "tests/window/TableFixture.h"

#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using SampleHistory::shared;
using Scroll = ClipboardTableViewController::Scroll;

namespace {

/// The first \a count entries replaced by others.
ClipboardItemList withReplaced(const ClipboardItemList &items, int count)
{
    return SampleHistory::numbered(count) + items.sliced(count);
}

ClipboardItemPointer retagged(const ClipboardItemPointer &item)
{
    ClipboardItem changed = *item;
    changed.tags = {u"travel"_s};
    return shared(changed);
}

} // namespace

class ListUpdaterTest : public QObject, private TableFixture
{
    Q_OBJECT

private slots:
    void init() { setUpTable(); }
    void cleanup() { tearDownTable(); }
    void theWayOfUpdatingFollowsTheNumbers_data();
    void theWayOfUpdatingFollowsTheNumbers();
    void scatteredMatchesOfAnyNumberAreFollowedRowByRow();
    void aNewItemIsOneInsertedRow();
    void aNewItemIsSeenAtTheTop();
    void whatIsInSightStaysThere_data();
    void whatIsInSightStaysThere();
    void rowsThatGoFromSightAreFollowedByTheNext();
    void aListShownAnewStandsWhereItStood();
    void theLastRowsDoNotLeaveAGap();
    void changedRowsAreRedrawnInPlace();
    void aRowThatMovesAndChangesIsShownAsItIsNow();
    void aCurrentRowThatGoesSelectsNothing();
    void theSelectionStaysWithItsItemAmongMoves();
    void theResultOfASearchIsThereAtOnce();
    void randomListsAreShownAsTheyAre();

private:
    void show(const ClipboardItemList &items, Scroll scroll = Scroll::Keep)
    {
        m_controller->setItems(items);
        m_controller->applyFilters(scroll);
    }
};

void ListUpdaterTest::theWayOfUpdatingFollowsTheNumbers_data()
{
    QTest::addColumn<ClipboardItemList>("before");
    QTest::addColumn<ClipboardItemList>("after");
    QTest::addColumn<int>("resetCount");
    const ClipboardItemList many = SampleHistory::numbered(500);
    const ClipboardItemList some = SampleHistory::numbered(150);
    const auto row = [](const char *name, const ClipboardItemList &before,
                        const ClipboardItemList &after, int resetCount) {
        QTest::newRow(name) << before << after << resetCount;
    };
    row("500 down to 2", many, {many[3], many[400]}, 1);
    row("500 down to 3", many, {many[3], many[70], many[400]}, 0);
    row("500 down to nothing", many, {}, 1);
    row("the first item of an empty list", {}, some.first(1), 1);
    row("60 of 150 replaced", some, withReplaced(some, 60), 1);
    row("20 of 150 replaced", some, withReplaced(some, 20), 0);
    row("25 of 150 replaced", some, withReplaced(some, 25), 0);
    row("26 of 150 replaced", some, withReplaced(some, 26), 1);
    row("all of 100 replaced", some.first(100), many.first(100), 0);
    row("growing to 100", some.first(1), some.first(100), 0);
    row("growing from 2 to 500", {many[3], many[400]}, many, 1);
    row("4 down to 2", some.first(4), some.first(2), 0);
    row("5 down to 2", some.first(5), some.first(2), 1);
}

void ListUpdaterTest::theWayOfUpdatingFollowsTheNumbers()
{
    QFETCH(ClipboardItemList, before);
    QFETCH(ClipboardItemList, after);
    make(before);
    QSignalSpy reset(m_view->model(), &QAbstractItemModel::modelReset);
    show(after);
    QTEST(int(reset.count()), "resetCount");
    QCOMPARE(m_controller->filteredItems(), after);
}

void ListUpdaterTest::scatteredMatchesOfAnyNumberAreFollowedRowByRow()
{
    const ClipboardItemList items = SampleHistory::numbered(5000);
    ClipboardItemList matches;
    for (int row = 7; row < 5000; row += 50)
        matches.append(items[row]);
    make(items);
    QSignalSpy reset(m_view->model(), &QAbstractItemModel::modelReset);
    show(matches, Scroll::ToTop);
    QCOMPARE(reset.count(), 0);
    QCOMPARE(m_controller->filteredItems(), matches);
}

void ListUpdaterTest::aNewItemIsOneInsertedRow()
{
    const ClipboardItemList items = SampleHistory::numbered(5000);
    make(items);
    QSignalSpy reset(m_view->model(), &QAbstractItemModel::modelReset);
    QSignalSpy inserted(m_view->model(), &QAbstractItemModel::rowsInserted);
    QSignalSpy removed(m_view->model(), &QAbstractItemModel::rowsRemoved);
    QSignalSpy changed(m_view->model(), &QAbstractItemModel::dataChanged);
    show(SampleHistory::texts({u"new"_s}) + items);
    QCOMPARE(inserted.count(), 1);
    QCOMPARE(inserted.first().at(1).toInt(), 0);
    QCOMPARE(inserted.first().at(2).toInt(), 0);
    QCOMPARE(reset.count() + removed.count() + changed.count(), 0);
}

void ListUpdaterTest::aNewItemIsSeenAtTheTop()
{
    const ClipboardItemList items = SampleHistory::numbered(50);
    make(items);
    m_view->selectRow(1);
    show(SampleHistory::texts({u"new"_s}) + items);
    QCOMPARE(m_view->verticalScrollBar()->value(), 0);
    QCOMPARE(m_view->rowBox(0).top(), 0);
    QCOMPARE(m_view->selectedRow(), 2);
}

void ListUpdaterTest::whatIsInSightStaysThere_data()
{
    QTest::addColumn<ClipboardItemList>("before");
    QTest::addColumn<ClipboardItemList>("after");
    const ClipboardItemList items = SampleHistory::numbered(60);
    const ClipboardItemList added = SampleHistory::texts({u"new"_s, u"newer"_s});
    const auto row = [&](const char *name, const ClipboardItemList &after) {
        QTest::newRow(name) << items << after;
    };
    row("an item comes above", added.first(1) + items);
    row("two come above", added + items);
    row("one comes and the last goes", added.first(1) + items.first(59));
    row("one above goes", items.sliced(1));
    row("some above go", items.first(2) + items.sliced(9));
    row("one below goes", items.first(59));
    row("one in sight comes to the top", ClipboardItemList{items[21]} + items.first(21)
                                             + items.sliced(22));
    row("one from below comes to the top", items.last(1) + items.first(59));
}

void ListUpdaterTest::whatIsInSightStaysThere()
{
    QFETCH(ClipboardItemList, before);
    QFETCH(ClipboardItemList, after);
    make(before);
    m_view->verticalScrollBar()->setValue(20 * kRowHeight + 30);
    const QRect place = boxOf(before[20]);
    QCOMPARE(place.top(), -30);
    show(after);
    QCOMPARE(boxOf(before[20]), place);
    QCoreApplication::processEvents(); // The view may lay itself out again.
    QCOMPARE(boxOf(before[20]), place);
    QCOMPARE(m_controller->filteredItems(), after);
}

void ListUpdaterTest::rowsThatGoFromSightAreFollowedByTheNext()
{
    const ClipboardItemList items = SampleHistory::numbered(60);
    make(items);
    m_view->verticalScrollBar()->setValue(20 * kRowHeight);
    // The two uppermost in sight; the one below them stays where it is seen.
    const QRect place = boxOf(items[22]);
    show(items.first(20) + items.sliced(22));
    QCOMPARE(boxOf(items[22]), place);
}

/// What so much of has changed has no row to hold on to; its place on the scroll bar stays.
void ListUpdaterTest::aListShownAnewStandsWhereItStood()
{
    const ClipboardItemList items = SampleHistory::numbered(500);
    QScrollBar *scrollBar = nullptr;
    const auto showFewerAt = [&](int place) {
        make(items);
        scrollBar = m_view->verticalScrollBar();
        scrollBar->setValue(place);
        QSignalSpy reset(m_view->model(), &QAbstractItemModel::modelReset);
        show(items.sliced(60));
        QCoreApplication::processEvents();
        QCOMPARE(reset.count(), 1);
        QCOMPARE(scrollBar->maximum(), 440 * kRowHeight - 400);
    };
    showFewerAt(20 * kRowHeight + 30);
    QCOMPARE(scrollBar->value(), 20 * kRowHeight + 30);
    showFewerAt(480 * kRowHeight);
    QCOMPARE(scrollBar->value(), scrollBar->maximum());
}

void ListUpdaterTest::theLastRowsDoNotLeaveAGap()
{
    const ClipboardItemList items = SampleHistory::numbered(60);
    make(items);
    m_view->verticalScrollBar()->setValue(m_view->verticalScrollBar()->maximum());
    show(items.first(50));
    QCOMPARE(m_view->verticalScrollBar()->maximum(), 50 * kRowHeight - 400);
    QCOMPARE(boxOf(items[49]).bottom(), m_view->viewport()->rect().bottom());
    show(items.first(3));
    QCOMPARE(m_view->verticalScrollBar()->value(), 0);
}

void ListUpdaterTest::changedRowsAreRedrawnInPlace()
{
    ClipboardItemList items = SampleHistory::numbered(200);
    make(items);
    m_view->verticalScrollBar()->setValue(700);
    for (const int row : {3, 12, 150})
        items[row] = retagged(items[row]);
    QSignalSpy changed(m_view->model(), &QAbstractItemModel::dataChanged);
    QSignalSpy inserted(m_view->model(), &QAbstractItemModel::rowsInserted);
    QSignalSpy removed(m_view->model(), &QAbstractItemModel::rowsRemoved);
    show(items);
    QList<int> rows;
    for (const QVariantList &arguments : changed)
        rows.append(arguments.first().toModelIndex().row());
    QCOMPARE(rows, (QList<int>{3, 12, 150}));
    QCOMPARE(inserted.count() + removed.count(), 0);
    QCOMPARE(m_view->verticalScrollBar()->value(), 700);
}

void ListUpdaterTest::aRowThatMovesAndChangesIsShownAsItIsNow()
{
    const ClipboardItemList items = SampleHistory::numbered(20);
    make(items);
    const ClipboardItemPointer changed = retagged(items[9]);
    const ClipboardItemList after
        = ClipboardItemList{changed} + items.first(9) + items.sliced(10);
    QSignalSpy dataChanged(m_view->model(), &QAbstractItemModel::dataChanged);
    show(after);
    QCOMPARE(m_controller->filteredItems().first(), changed);
    QCOMPARE(dataChanged.count(), 1);
    QCOMPARE(dataChanged.first().first().toModelIndex().row(), 0);
}

void ListUpdaterTest::aCurrentRowThatGoesSelectsNothing()
{
    const ClipboardItemList items = SampleHistory::numbered(5);
    make(items);
    // The focus alone makes the first row current.
    m_view->selectionModel()->setCurrentIndex(m_view->model()->index(0, 0),
                                              QItemSelectionModel::NoUpdate);
    show(items.sliced(1));
    QCOMPARE(m_view->selectedRow(), -1);
}

void ListUpdaterTest::theSelectionStaysWithItsItemAmongMoves()
{
    const ClipboardItemList items = SampleHistory::numbered(30);
    make(items);
    m_view->selectRowInPlace(8);
    show(ClipboardItemList{items[8]} + items.first(8) + items.sliced(9));
    QCOMPARE(m_view->selectedRow(), 0);
    show(items);
    QCOMPARE(m_view->selectedRow(), 8);
    QCOMPARE(m_view->verticalScrollBar()->value(), 0);
}

void ListUpdaterTest::theResultOfASearchIsThereAtOnce()
{
    make(SampleHistory::numbered(80));
    search(u"entry 7"_s);
    const QImage first = m_view->viewport()->grab().toImage();
    m_clock->advance(std::chrono::seconds(1));
    m_scheduler->advance(std::chrono::seconds(1));
    QCOMPARE(m_view->viewport()->grab().toImage(), first);
}

void ListUpdaterTest::randomListsAreShownAsTheyAre()
{
    QRandomGenerator random(21);
    const ClipboardItemList pool = SampleHistory::numbered(130);
    make({});
    for (int round = 0; round < 60; ++round) {
        ClipboardItemList next;
        const int odds = random.bounded(1, 8);
        for (const ClipboardItemPointer &item : pool) {
            if (random.bounded(8) >= odds)
                continue;
            const bool isMoved = random.bounded(8) == 0;
            next.insert(isMoved ? random.bounded(next.size() + 1) : next.size(), item);
        }
        const int selected = m_view->selectedRow();
        const QUuid selectedId
            = selected < 0 ? QUuid() : m_controller->filteredItems().at(selected)->id;
        m_view->verticalScrollBar()->setValue(random.bounded(3000));
        show(next);
        QCOMPARE(m_controller->filteredItems(), next);
        QCOMPARE(m_view->selectedRow(), int(indexOfItem(next, selectedId)));
        if (!next.isEmpty())
            m_view->selectRowInPlace(random.bounded(int(next.size())));
    }
}

QTEST_MAIN(ListUpdaterTest)
#include "ListUpdaterTest.moc"
