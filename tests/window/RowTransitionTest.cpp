#include "tests/fakes/PaintedRegions.h"
#include "tests/window/TableFixture.h"

#include "window/RowTransition.h"

#include <QScrollBar>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Scroll = ClipboardTableViewController::Scroll;

namespace {

constexpr auto kLongEnough = 300ms;

} // namespace

class RowTransitionTest : public QObject, private TableFixture
{
    Q_OBJECT

private slots:
    void init() { setUpTable(); }
    void cleanup() { tearDownTable(); }
    void rowsThatComeFadeInAndTheOthersSlide();
    void rowsThatGoFadeOut();
    void theLastRowThatGoesFadesOut();
    void clicksLandWhereTheRowsWillBe();
    void aFurtherChangeGoesOnFromWhatIsSeen();
    void nothingMovesWhereTheListIsScrolledAway();
    void aSearchEndsIt();
    void withReducedMotionRowsFadeInTheirPlaces();
    void withReducedMotionADeletedRowFadesFaster();
    void rowsOnTheirWayArriveWhenMotionIsReduced();
    void rowsThatFadeAreGoneWhenMotionIsReduced();
    void nothingMovesWhileHidden();
    void aRowFadesOutBeforeItIsRemoved();
    void aRowThatNobodyCanSeeIsRemovedAtOnce();
    void aRowThatStaysAfterAllIsSeenAgain();
    void nothingIsCalledAfterTheEnd();

private:
    void show(const ClipboardItemList &items)
    {
        m_controller->setItems(items);
        m_controller->applyFilters(Scroll::Keep);
    }

    QImage picture() { return m_view->viewport()->grab().toImage(); }

    /// What is seen when all is over.
    QImage finalPicture()
    {
        pass(kLongEnough);
        return picture();
    }

    RowTransition &transition() { return *m_view->rowTransition(); }
    RowTransition::Look look(const ClipboardItemPointer &item)
    {
        return transition().look(item->id);
    }
};

void RowTransitionTest::rowsThatComeFadeInAndTheOthersSlide()
{
    const ClipboardItemList items = SampleHistory::numbered(20);
    make(items);
    const ClipboardItemPointer added = SampleHistory::texts({u"new"_s}).first();
    const ClipboardItemList after = ClipboardItemList{added} + items;
    show(after);
    qreal offset = -kRowHeight;
    qreal opacity = 0;
    for (int frame = 0; frame < 6; ++frame) {
        const RowTransition::Look come = look(added);
        const RowTransition::Look stayed = look(items[0]);
        QCOMPARE(come.offset, 0.0);
        QCOMPARE(stayed.opacity, 1.0);
        QVERIFY(come.opacity > opacity && come.opacity < 1);
        QVERIFY(stayed.offset > offset && stayed.offset < 0);
        opacity = come.opacity;
        offset = stayed.offset;
        pass(32ms);
    }
    pass(kLongEnough);
    QCOMPARE(look(added).opacity, 1.0);
    QCOMPARE(look(items[0]).offset, 0.0);
    QCOMPARE(transition().reach(), 0.0);
    QCOMPARE(m_scheduler->pendingCount(), 0); // No frame is drawn any more.
}

void RowTransitionTest::rowsThatGoFadeOut()
{
    const ClipboardItemList items = SampleHistory::numbered(3);
    make(items);
    const QImage before = picture();
    show(items.first(2));
    const QImage during = picture();
    QVERIFY(during != before);
    const QImage after = finalPicture();
    QVERIFY(during != after);
    make(items.first(2));
    QCOMPARE(after, picture());
}

void RowTransitionTest::theLastRowThatGoesFadesOut()
{
    ClipboardItem item = SampleHistory::textItem(u"one"_s);
    item.isFavorite = true;
    make({SampleHistory::shared(item)});
    m_controller->setActiveFilter(FilterCategory::favorites());
    m_controller->applyFilters(Scroll::ToTop);
    m_controller->toggleFavorite(item.id);
    QVERIFY(m_controller->filteredItems().isEmpty());
    const QImage during = picture();
    QVERIFY(during != finalPicture());
}

void RowTransitionTest::clicksLandWhereTheRowsWillBe()
{
    const ClipboardItemList items = SampleHistory::numbered(10);
    make(items);
    show(SampleHistory::texts({u"new"_s}) + items);
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {}, QPoint(300, 10));
    QCOMPARE(m_view->selectedRow(), 0);
    QTest::keyClick(m_view.get(), Qt::Key_Return);
    QCOMPARE(m_pasted, QStringList{u"new"_s});
}

void RowTransitionTest::aFurtherChangeGoesOnFromWhatIsSeen()
{
    ClipboardItemList items = SampleHistory::numbered(20);
    make(items);
    const auto prepend = [&](const QString &text) {
        items = SampleHistory::texts({text}) + items;
        show(items);
    };
    prepend(u"new"_s);
    pass(100ms);
    const ClipboardItemPointer first = items[0];
    const ClipboardItemPointer second = items[1];
    const RowTransition::Look firstLook = look(first);
    const qreal seen = look(second).offset;
    prepend(u"newer"_s);
    // A frame further on, but near to where it was: no jump by a row.
    QVERIFY(std::abs(look(second).offset - (seen - kRowHeight)) < kRowHeight / 4.0);
    QVERIFY(look(second).offset > seen - kRowHeight);
    QVERIFY(look(first).opacity >= firstLook.opacity);
    pass(kLongEnough);
    QCOMPARE(look(second).offset, 0.0);
}

void RowTransitionTest::nothingMovesWhereTheListIsScrolledAway()
{
    const ClipboardItemList items = SampleHistory::numbered(60);
    make(items);
    m_view->verticalScrollBar()->setValue(1500);
    pass(1s); // The scroller goes.
    const QImage before = picture();
    const int pending = m_scheduler->pendingCount();
    show(SampleHistory::texts({u"new"_s}) + items);
    QCOMPARE(picture(), before);
    QVERIFY(m_scheduler->pendingCount() <= pending + 1); // The scroller's, but no frame's.
}

void RowTransitionTest::aSearchEndsIt()
{
    const ClipboardItemList items = SampleHistory::numbered(20);
    make(items);
    show(SampleHistory::texts({u"new"_s}) + items);
    search(u"entry 1"_s);
    const QImage first = picture();
    QCOMPARE(finalPicture(), first);
}

void RowTransitionTest::withReducedMotionRowsFadeInTheirPlaces()
{
    const ClipboardItemList items = SampleHistory::numbered(20);
    make(items);
    pass(1s);
    m_controller->setLook({.isMotionReduced = true});
    const ClipboardItemList added = SampleHistory::texts({u"new"_s});
    show(added + items);
    QCOMPARE(transition().reach(), 0.0);
    QVERIFY(look(added[0]).opacity < 0.5);
    pass(99ms);
    QCOMPARE(transition().reach(), 0.0);
    pass(1ms);
    QCOMPARE(look(added[0]).opacity, 1.0);
    QCOMPARE(m_scheduler->pendingCount(), 0);
}

void RowTransitionTest::withReducedMotionADeletedRowFadesFaster()
{
    const ClipboardItemList items = SampleHistory::numbered(5);
    make(items);
    m_controller->setLook({.isMotionReduced = true});
    int doneCount = 0;
    transition().fadeOut(items[2]->id, [&] { ++doneCount; });
    pass(50ms);
    QVERIFY(look(items[2]).opacity > 0.2 && look(items[2]).opacity < 0.8);
    pass(50ms);
    QCOMPARE(doneCount, 1);
}

void RowTransitionTest::rowsOnTheirWayArriveWhenMotionIsReduced()
{
    const ClipboardItemList items = SampleHistory::numbered(20);
    make(items);
    pass(1s);
    const ClipboardItemPointer added = SampleHistory::texts({u"new"_s}).first();
    show(ClipboardItemList{added} + items);
    pass(50ms);
    QVERIFY(transition().reach() > 0);
    QCoreApplication::processEvents();
    PaintedRegions painted(*m_view->viewport());
    m_controller->setLook({.isMotionReduced = true});
    QCOMPARE(transition().reach(), 0.0);
    QCOMPARE(look(added).opacity, 1.0);
    QCOMPARE(look(items[0]).offset, 0.0);
    QCOMPARE(m_scheduler->pendingCount(), 0);
    QCoreApplication::processEvents();
    QCOMPARE(painted.whole(), QRegion(m_view->viewport()->rect()));
}

void RowTransitionTest::rowsThatFadeAreGoneWhenMotionIsReduced()
{
    const ClipboardItemList items = SampleHistory::numbered(5);
    make(items);
    pass(1s); // The scroller goes.
    QStringList done;
    transition().fadeOut(items[1]->id, [&] {
        done.append(u"first"_s);
        show({items[0], items[2], items[3], items[4]});
    });
    transition().fadeOut(items[3]->id, [&] { done.append(u"second"_s); });
    pass(100ms);
    m_controller->setLook({.isMotionReduced = true});
    done.sort();
    QCOMPARE(done, (QStringList{u"first"_s, u"second"_s}));
    QCOMPARE(look(items[3]).opacity, 1.0);
    QCOMPARE(look(items[2]).offset, 0.0);
    QCOMPARE(m_scheduler->pendingCount(), 0);
    m_controller->setLook({.isMotionReduced = true});
    pass(kLongEnough);
    QCOMPARE(done.size(), 2);
}

void RowTransitionTest::nothingMovesWhileHidden()
{
    const ClipboardItemList items = SampleHistory::numbered(20);
    make(items);
    m_view->hide();
    const auto pendingBefore = m_scheduler->pendingCount();
    show(SampleHistory::texts({u"new"_s}) + items);
    QCOMPARE(m_scheduler->pendingCount(), pendingBefore);
}

void RowTransitionTest::aRowFadesOutBeforeItIsRemoved()
{
    const ClipboardItemList items = SampleHistory::numbered(5);
    make(items);
    const QUuid id = items[2]->id;
    int doneCount = 0;
    transition().fadeOut(id, [&] {
        ++doneCount;
        QCOMPARE(transition().look(id).opacity, 0.0);
    });
    // Gentle at both ends.
    pass(25ms);
    QVERIFY(transition().look(id).opacity > 0.9);
    pass(100ms);
    QVERIFY(transition().look(id).opacity > 0.3 && transition().look(id).opacity < 0.6);
    QCOMPARE(look(items[1]).opacity, 1.0);
    pass(124ms);
    QCOMPARE(doneCount, 0);
    pass(1ms);
    QCOMPARE(doneCount, 1);
}

void RowTransitionTest::aRowThatNobodyCanSeeIsRemovedAtOnce()
{
    const ClipboardItemList items = SampleHistory::numbered(50);
    make(items);
    int doneCount = 0;
    const auto done = [&] { ++doneCount; };
    transition().fadeOut(QUuid::createUuid(), done);
    QCOMPARE(doneCount, 1);
    m_view->hide();
    transition().fadeOut(items[0]->id, done);
    QCOMPARE(doneCount, 2);
}

void RowTransitionTest::aRowThatStaysAfterAllIsSeenAgain()
{
    const ClipboardItemList items = SampleHistory::numbered(5);
    make(items);
    transition().fadeOut(items[2]->id, [] {});
    pass(kLongEnough);
    QCOMPARE(look(items[2]).opacity, 1.0);
}

void RowTransitionTest::nothingIsCalledAfterTheEnd()
{
    const ClipboardItemList items = SampleHistory::numbered(5);
    make(items);
    bool isCalled = false;
    transition().fadeOut(items[2]->id, [&] { isCalled = true; });
    tearDownTable();
    pass(kLongEnough);
    QVERIFY(!isCalled);
}

QTEST_MAIN(RowTransitionTest)
#include "RowTransitionTest.moc"
