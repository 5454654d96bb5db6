#include "tests/fakes/CountingSource.h"
#include "tests/fakes/PaintedRegions.h"
#include "tests/fakes/SlowSource.h"
#include "tests/window/TableFixture.h"

#include "window/OverlayScroller.h"
#include "window/RowPictures.h"

#include <QFile>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <semaphore>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using SampleHistory::shared;
using SampleHistory::textItem;
using Scroll = ClipboardTableViewController::Scroll;

namespace {

const QByteArray kLongText = QByteArray("a ").repeated(2000) + "needle";

/// An entry with the long text, which lies in \a source.
ClipboardItemPointer longItem(const std::shared_ptr<CountingSource> &source)
{
    ClipboardItem entry = textItem(QString());
    entry.stringValue = Utf8Text::elsewhere(kLongText, source);
    return shared(entry);
}

} // namespace

class ClipboardTableViewControllerTest : public QObject, private TableFixture
{
    Q_OBJECT

private slots:
    void init() { setUpTable(); }
    void cleanup() { tearDownTable(); }
    void nothingIsSelectedAtFirst();
    void returnWithoutSelectionPastesTheFirstRowThatIsListed();
    void textsAreReadWithoutHoldingUpThePerson();
    void whatWasReadForAnEarlierTextShowsNothing();
    void returnPastesByWhatWasTypedLast();
    void returnPastesTheSelectedRow();
    void returnOnAnEmptyListDoesNothing();
    void downAndUpStopAtTheEnds();
    void upWithoutSelectionSelectsTheFirstRow();
    void keysInTheListMoveTheSelection();
    void aSelectedRowIsScrolledTo();
    void aDoubleClickPastes();
    void rowsThatMoveDuringADoubleClickAreOnlySelected();
    void aDoubleClickAcrossTwoRowsOnlySelects();
    void aPressOnTheStarDoesNotBeginADoubleClick();
    void aSingleClickOnlySelects();
    void spaceDoesNotPaste();
    void spaceAsksForAPreview();
    void spaceIsLeftAloneWhereThereIsNoPreview();
    void aPreviewIsPromisedThoughNobodyShowsIt();
    void aNewItemOnTopLeavesSelectionAndWhatIsInSightAlone();
    void filteringSelectsNothing();
    void theSelectionFollowsItsItem_data();
    void theSelectionFollowsItsItem();
    void theSelectionGoesWithItsItem_data();
    void theSelectionGoesWithItsItem();
    void searchingScrollsToTheTop();
    void unmarkingTheSelectedFavoriteSelectsTheNext_data();
    void unmarkingTheSelectedFavoriteSelectsTheNext();
    void unmarkingUnderASearchKeepsTheRow();
    void markingAnUnlistedItemListsIt();
    void theLimitRefusesAFurtherFavorite();
    void theStarTogglesWithoutSelecting();
    void aReleaseBesideTheStarDoesNothing();
    void aListThatChangesUnderThePressedStarHitsNoOther();
    void aThumbnailThatArrivesRedrawsItsRowAlone();
    void emptyTextsTellWhy();
    void theScrollerIsSeenByThePointerAtTheEdge();
    void theScrollerTakesNoPressUnlessItIsSeen();
    void anEntryThatComesDoesNotShowTheScroller();
    void tenThousandRowsNeedNoWidgets();

private:
    /// With the second press at a place of its own.
    void doubleClick(QPoint first, QPoint second)
    {
        QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {}, first);
        QTest::mouseDClick(m_view->viewport(), Qt::LeftButton, {}, second);
        QTest::mouseRelease(m_view->viewport(), Qt::LeftButton, {}, second);
    }
    bool isSpaceTaken()
    {
        QKeyEvent space(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, u" "_s);
        QCoreApplication::sendEvent(m_view.get(), &space);
        return space.isAccepted();
    }
};

void ClipboardTableViewControllerTest::nothingIsSelectedAtFirst()
{
    make(SampleHistory::numbered(3));
    QCOMPARE(m_view->selectedRow(), -1);
    m_view->setFocus();
    QCOMPARE(m_view->selectedRow(), -1);
}

void ClipboardTableViewControllerTest::returnWithoutSelectionPastesTheFirstRowThatIsListed()
{
    make(SampleHistory::texts({u"one"_s, u"two"_s, u"twin"_s}));
    search(u"tw"_s);
    QTest::keyClick(m_view.get(), Qt::Key_Return);
    QCOMPARE(m_pasted, QStringList{u"two"_s});
}

void ClipboardTableViewControllerTest::textsAreReadWithoutHoldingUpThePerson()
{
    const auto source = std::make_shared<SlowSource>(kLongText);
    make({shared(textItem(u"needy"_s)), longItem(source)});
    search(u"needl"_s);
    QTRY_COMPARE(source->readCount.load(), 1);
    QCOMPARE(m_controller->filteredItems().size(), 2);
    source->letGo();
    QTRY_COMPARE(m_controller->filteredItems().size(), 1);
    search(u"needles"_s); // It is at hand now.
    QVERIFY(m_controller->filteredItems().isEmpty());
    QCOMPARE(source->readCount.load(), 1);
}

void ClipboardTableViewControllerTest::whatWasReadForAnEarlierTextShowsNothing()
{
    const auto source = std::make_shared<CountingSource>(kLongText);
    make({shared(textItem(u"one"_s)), longItem(source)});
    search(u"needle"_s);
    QTRY_COMPARE(source->readCount.load(), 1);
    search(u"a"_s); // Known from the start of the text.
    QCOMPARE(m_controller->filteredItems().size(), 1);
    search(u""_s);
    QCoreApplication::processEvents();
    QCOMPARE(m_controller->filteredItems().size(), 2);
}

void ClipboardTableViewControllerTest::returnPastesByWhatWasTypedLast()
{
    make({shared(textItem(u"one"_s)), longItem(std::make_shared<CountingSource>(kLongText))});
    search(u"needle"_s);
    QTest::keyClick(m_view.get(), Qt::Key_Return);
    QCOMPARE(m_pasted, QStringList{QString::fromUtf8(kLongText)});
    search(u"one"_s);
    m_controller->selectNextRow();
    QVERIFY(m_controller->filteredItems().size() == 1 && m_view->selectedRow() == 0);
}

void ClipboardTableViewControllerTest::returnPastesTheSelectedRow()
{
    make(SampleHistory::numbered(3));
    m_view->selectRow(2);
    QTest::keyClick(m_view.get(), Qt::Key_Enter);
    QCOMPARE(m_pasted, QStringList{u"entry 2"_s});
}

void ClipboardTableViewControllerTest::returnOnAnEmptyListDoesNothing()
{
    make({});
    QTest::keyClick(m_view.get(), Qt::Key_Return);
    m_controller->selectNextRow();
    m_controller->selectPreviousRow();
    QVERIFY(m_pasted.isEmpty());
    QCOMPARE(m_view->selectedRow(), -1);
}

void ClipboardTableViewControllerTest::downAndUpStopAtTheEnds()
{
    make(SampleHistory::numbered(2));
    for (const int row : {0, 1, 1}) {
        m_controller->selectNextRow();
        QCOMPARE(m_view->selectedRow(), row);
    }
    for (const int row : {0, 0}) {
        m_controller->selectPreviousRow();
        QCOMPARE(m_view->selectedRow(), row);
    }
}

void ClipboardTableViewControllerTest::upWithoutSelectionSelectsTheFirstRow()
{
    make(SampleHistory::numbered(3));
    m_controller->selectPreviousRow();
    QCOMPARE(m_view->selectedRow(), 0);
    m_view->deselectAll();
    m_view->setFocus();
    QTest::keyClick(m_view.get(), Qt::Key_Up);
    QCOMPARE(m_view->selectedRow(), 0);
}

void ClipboardTableViewControllerTest::keysInTheListMoveTheSelection()
{
    make(SampleHistory::numbered(50));
    m_view->setFocus();
    m_view->selectRow(0);
    QTest::keyClick(m_view.get(), Qt::Key_Down);
    QCOMPARE(m_view->selectedRow(), 1);
    QTest::keyClick(m_view.get(), Qt::Key_End);
    QCOMPARE(m_view->selectedRow(), 49);
    QTest::keyClick(m_view.get(), Qt::Key_PageUp);
    QVERIFY(m_view->selectedRow() < 49);
    QTest::keyClick(m_view.get(), Qt::Key_Home);
    QCOMPARE(m_view->selectedRow(), 0);
}

void ClipboardTableViewControllerTest::aSelectedRowIsScrolledTo()
{
    make(SampleHistory::numbered(50));
    for (int i = 0; i < 10; ++i)
        m_controller->selectNextRow();
    const QRect row = m_view->visualRect(m_view->model()->index(9, 0));
    QVERIFY(m_view->viewport()->rect().contains(row));
    QCOMPARE(row.bottom(), m_view->viewport()->rect().bottom());
}

void ClipboardTableViewControllerTest::aDoubleClickPastes()
{
    make(SampleHistory::numbered(3));
    doubleClick(contentOf(1), contentOf(1));
    QCOMPARE(m_pasted, QStringList{u"entry 1"_s});
    doubleClick(QPoint(300, 390), QPoint(300, 390));
    QCOMPARE(m_pasted.size(), 1);
}

void ClipboardTableViewControllerTest::rowsThatMoveDuringADoubleClickAreOnlySelected()
{
    const ClipboardItemList items = SampleHistory::numbered(3);
    make(items);
    const QPoint place = contentOf(1);
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {}, place);
    m_controller->setItems(SampleHistory::texts({u"new"_s}) + items);
    m_controller->applyFilters(Scroll::Keep);
    QCOMPARE(m_view->selectedRow(), 2);
    QTest::mouseDClick(m_view->viewport(), Qt::LeftButton, {}, place);
    QTest::mouseRelease(m_view->viewport(), Qt::LeftButton, {}, place);
    QVERIFY(m_pasted.isEmpty());
    QCOMPARE(m_view->selectedRow(), 1);
    doubleClick(place, place);
    QCOMPARE(m_pasted, QStringList{u"entry 0"_s});
}

void ClipboardTableViewControllerTest::aDoubleClickAcrossTwoRowsOnlySelects()
{
    make(SampleHistory::numbered(3));
    const QPoint border(300, m_view->rowBox(2).top());
    doubleClick(border - QPoint(0, 1), border + QPoint(0, 1));
    QVERIFY(m_pasted.isEmpty());
    QCOMPARE(m_view->selectedRow(), 2);
}

void ClipboardTableViewControllerTest::aPressOnTheStarDoesNotBeginADoubleClick()
{
    make(SampleHistory::numbered(3));
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {}, contentOf(1));
    doubleClick(starOf(1), contentOf(1));
    QVERIFY(m_pasted.isEmpty());
    QCOMPARE(m_toggled.size(), 1);
}

void ClipboardTableViewControllerTest::aSingleClickOnlySelects()
{
    make(SampleHistory::numbered(3));
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {}, contentOf(1));
    QCOMPARE(m_view->selectedRow(), 1);
    QVERIFY(m_pasted.isEmpty());
}

void ClipboardTableViewControllerTest::spaceDoesNotPaste()
{
    make(SampleHistory::numbered(3));
    m_view->selectRow(1);
    QTest::keyClick(m_view.get(), Qt::Key_Space);
    QVERIFY(m_pasted.isEmpty());
    QCOMPARE(m_view->selectedRow(), 1);
}

void ClipboardTableViewControllerTest::spaceAsksForAPreview()
{
    const ClipboardItemList items = SampleHistory::numbered(3);
    make(items);
    QList<QUuid> asked;
    m_controller->onPreviewRequested = [&](const ClipboardItemPointer &item, QWidget &responder) {
        QCOMPARE(&responder, m_view.get());
        asked.append(item->id);
    };
    m_view->selectRow(1);
    QVERIFY(isSpaceTaken());
    QCOMPARE(asked, QList<QUuid>{items[1]->id});
    QCOMPARE(m_view->selectedRow(), 1);
}

void ClipboardTableViewControllerTest::spaceIsLeftAloneWhereThereIsNoPreview()
{
    ClipboardItem file = SampleHistory::item(ClipboardContentType::File, u"notes.txt"_s);
    file.filePath = u"/tmp/notes.txt"_s;
    make({shared(file), shared(SampleHistory::textItem(u" "_s))});
    bool isAsked = false;
    m_controller->onPreviewRequested = [&](const ClipboardItemPointer &, QWidget &) {
        isAsked = true;
    };
    m_view->setFocus();
    QVERIFY(!isSpaceTaken());
    QCOMPARE(m_view->selectedRow(), -1);
    for (const int row : {0, 1}) {
        m_view->selectRow(row);
        QVERIFY(!isSpaceTaken());
        QCOMPARE(m_view->selectedRow(), row);
    }
    QVERIFY(!isAsked);
}

void ClipboardTableViewControllerTest::aPreviewIsPromisedThoughNobodyShowsIt()
{
    make(SampleHistory::numbered(1));
    QVERIFY(m_controller->requestPreview(m_controller->items().first()));
}

void ClipboardTableViewControllerTest::aNewItemOnTopLeavesSelectionAndWhatIsInSightAlone()
{
    const ClipboardItemList items = SampleHistory::numbered(500);
    make(items);
    m_view->selectRow(20);
    m_view->verticalScrollBar()->setValue(700);
    const QRect before = boxOf(items[12]);
    m_controller->setItems(SampleHistory::texts({u"new"_s}) + items);
    m_controller->applyFilters(Scroll::Keep);
    QCoreApplication::processEvents(); // The view lays itself out again later.
    QCOMPARE(m_controller->filteredItems().size(), 501);
    QCOMPARE(m_view->selectedRow(), 21);
    QCOMPARE(boxOf(items[12]), before);
}

void ClipboardTableViewControllerTest::filteringSelectsNothing()
{
    make(SampleHistory::mixed());
    m_controller->setActiveFilter(FilterCategory::favorites());
    m_controller->applyFilters(Scroll::ToTop);
    QCOMPARE(m_controller->filteredItems().size(), 2);
    QCOMPARE(m_view->selectedRow(), -1);
}

void ClipboardTableViewControllerTest::theSelectionFollowsItsItem_data()
{
    QTest::addColumn<int>("count");
    QTest::newRow("row by row") << 20;
    QTest::newRow("shown anew") << 5000;
}

void ClipboardTableViewControllerTest::theSelectionFollowsItsItem()
{
    QFETCH(int, count);
    make(SampleHistory::numbered(count));
    m_view->selectRow(15);
    search(u"entry 1"_s);
    const int row = m_view->selectedRow();
    QCOMPARE(row, 6); // After the entries 1 and 10 to 14.
    QCOMPARE(m_controller->filteredItems().at(row)->stringValue->toString(), u"entry 15"_s);
    search({});
    QCOMPARE(m_view->selectedRow(), 15);
}

void ClipboardTableViewControllerTest::theSelectionGoesWithItsItem_data()
{
    theSelectionFollowsItsItem_data();
}

void ClipboardTableViewControllerTest::theSelectionGoesWithItsItem()
{
    QFETCH(int, count);
    make(SampleHistory::numbered(count));
    m_view->selectRow(2);
    search(u"entry 1"_s);
    QCOMPARE(m_view->selectedRow(), -1);
    QTest::keyClick(m_view.get(), Qt::Key_Return);
    QCOMPARE(m_pasted, QStringList{u"entry 1"_s});
}

void ClipboardTableViewControllerTest::searchingScrollsToTheTop()
{
    make(SampleHistory::numbered(500));
    m_view->verticalScrollBar()->setValue(3000);
    search(u"entry"_s);
    QCOMPARE(m_view->verticalScrollBar()->value(), 0);
}

void ClipboardTableViewControllerTest::unmarkingTheSelectedFavoriteSelectsTheNext_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("selected");
    QTest::newRow("the row that takes its place") << 3 << 1 << 1;
    QTest::newRow("the last row") << 3 << 2 << 1;
    QTest::newRow("nothing") << 1 << 0 << -1;
}

void ClipboardTableViewControllerTest::unmarkingTheSelectedFavoriteSelectsTheNext()
{
    QFETCH(int, count);
    QFETCH(int, row);
    ClipboardItemList items;
    for (int i = 0; i < count; ++i) {
        ClipboardItem item = SampleHistory::textItem(QString::number(i));
        item.isFavorite = true;
        items.append(shared(item));
    }
    make(items);
    m_controller->setActiveFilter(FilterCategory::favorites());
    m_controller->applyFilters(Scroll::ToTop);
    m_view->selectRow(row);
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {}, starOf(row));
    QCOMPARE(int(m_controller->filteredItems().size()), count - 1);
    QTEST(m_view->selectedRow(), "selected");
    QCOMPARE(m_toggled, QList<QUuid>{items[row]->id});
}

void ClipboardTableViewControllerTest::unmarkingUnderASearchKeepsTheRow()
{
    ClipboardItem item = SampleHistory::textItem(u"two"_s);
    item.isFavorite = true;
    ClipboardItemList items = SampleHistory::texts({u"one"_s, u"twin"_s, u"twelve"_s});
    items.insert(2, shared(item));
    make(items);
    search(u"tw"_s);
    QCOMPARE(m_controller->filteredItems().size(), 3);
    const QSignalSpy changed(m_view->model(), &QAbstractItemModel::dataChanged);
    const QSignalSpy inserted(m_view->model(), &QAbstractItemModel::rowsInserted);
    const QSignalSpy removed(m_view->model(), &QAbstractItemModel::rowsRemoved);
    const QSignalSpy reset(m_view->model(), &QAbstractItemModel::modelReset);
    m_controller->toggleFavorite(item.id);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.first().at(0).toModelIndex().row(), 1);
    QCOMPARE(changed.first().at(1).toModelIndex().row(), 1);
    QCOMPARE(inserted.count() + removed.count() + reset.count(), 0);
    QCOMPARE(listedTexts(), (QStringList{u"twin"_s, u"two"_s, u"twelve"_s}));
    QVERIFY(!m_controller->filteredItems().at(1)->isFavorite);
}

void ClipboardTableViewControllerTest::markingAnUnlistedItemListsIt()
{
    const ClipboardItemList items = SampleHistory::numbered(2);
    make(items);
    m_controller->setActiveFilter(FilterCategory::favorites());
    m_controller->applyFilters(Scroll::ToTop);
    QVERIFY(m_controller->filteredItems().isEmpty());
    m_controller->toggleFavorite(items[1]->id);
    QCOMPARE(m_controller->filteredItems().size(), 1);
    m_controller->toggleFavorite(QUuid::createUuid());
    QCOMPARE(m_toggled, QList<QUuid>{items[1]->id});
}

void ClipboardTableViewControllerTest::theLimitRefusesAFurtherFavorite()
{
    ClipboardItemList items;
    for (int i = 0; i < 1000; ++i) {
        ClipboardItem item = SampleHistory::textItem(QString::number(i));
        item.isFavorite = true;
        items.append(shared(item));
    }
    items.prepend(shared(SampleHistory::textItem(u"one too many"_s)));
    make(items);
    m_controller->toggleFavorite(items[0]->id);
    QVERIFY(m_toggled.isEmpty());
    QVERIFY(!m_controller->filteredItems().first()->isFavorite);
    m_controller->toggleFavorite(items[1]->id);
    m_controller->toggleFavorite(items[0]->id);
    QVERIFY(m_controller->filteredItems().first()->isFavorite);
}

void ClipboardTableViewControllerTest::theStarTogglesWithoutSelecting()
{
    const ClipboardItemList items = SampleHistory::numbered(3);
    make(items);
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {}, starOf(1));
    QCOMPARE(m_toggled, QList<QUuid>{items[1]->id});
    QVERIFY(m_controller->filteredItems().at(1)->isFavorite);
    QCOMPARE(m_view->selectedRow(), -1);
    QTest::mouseDClick(m_view->viewport(), Qt::LeftButton, {}, starOf(1));
    QVERIFY(m_pasted.isEmpty());
}

void ClipboardTableViewControllerTest::aReleaseBesideTheStarDoesNothing()
{
    make(SampleHistory::numbered(3));
    QTest::mousePress(m_view->viewport(), Qt::LeftButton, {}, starOf(1));
    QTest::mouseMove(m_view->viewport(), starOf(2));
    QTest::mouseRelease(m_view->viewport(), Qt::LeftButton, {}, starOf(2));
    QVERIFY(m_toggled.isEmpty());
}

void ClipboardTableViewControllerTest::aThumbnailThatArrivesRedrawsItsRowAlone()
{
    ClipboardItemList items = SampleHistory::numbered(4);
    ClipboardItem picture = SampleHistory::item(ClipboardContentType::Image);
    picture.imageThumbnailFileName = u"picture_thumb.jpg"_s;
    items.insert(2, shared(picture));
    QFile file(m_images + u"/picture_thumb.jpg"_s);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("pixels");
    file.close();
    std::binary_semaphore mayDecode{0};
    m_codec->onImageWanted = [&mayDecode] { mayDecode.acquire(); };
    make(items);
    QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
    QCoreApplication::processEvents();

    QSignalSpy arrived(m_pictures.get(), &RowPictures::arrived);
    const QSignalSpy reset(m_view->model(), &QAbstractItemModel::modelReset);
    const QSignalSpy changed(m_view->model(), &QAbstractItemModel::dataChanged);
    PaintedRegions painted(*m_view->viewport());
    mayDecode.release();
    QVERIFY(arrived.wait());
    QTRY_COMPARE(painted.regions(),
                 QList<QRegion>{m_view->visualRect(m_view->model()->index(2, 0))});
    QCOMPARE(reset.count() + changed.count(), 0);

    const QRect icon = RowLayout(painted.regions().first().boundingRect()).icon.toRect();
    QCOMPARE(m_view->viewport()->grab(icon).toImage().pixelColor(16, 16), QColor(Qt::white));
}

void ClipboardTableViewControllerTest::aListThatChangesUnderThePressedStarHitsNoOther()
{
    const ClipboardItemList items = SampleHistory::numbered(3);
    const ClipboardItemList more = SampleHistory::texts({u"new"_s}) + items;
    make(items);
    const QPoint star = starOf(1);
    QTest::mousePress(m_view->viewport(), Qt::LeftButton, {}, star);
    m_controller->setItems(more);
    m_controller->applyFilters(Scroll::Keep);
    QTest::mouseRelease(m_view->viewport(), Qt::LeftButton, {}, star);
    QVERIFY(m_toggled.isEmpty());

    QTest::mousePress(m_view->viewport(), Qt::LeftButton, {}, starOf(1));
    m_controller->setItems(more.sliced(2));
    m_controller->applyFilters(Scroll::Keep);
    QTest::mouseRelease(m_view->viewport(), Qt::LeftButton, {}, star);
    QVERIFY(m_toggled.isEmpty());
    QCOMPARE(m_view->selectedRow(), -1);
}

void ClipboardTableViewControllerTest::emptyTextsTellWhy()
{
    // Told by what is painted: each state has a picture of its own, and none is blank.
    QList<QImage> pictures;
    const auto take = [&] { pictures.append(m_view->viewport()->grab().toImage()); };
    make({});
    take();
    make(SampleHistory::numbered(1));
    search(u"x"_s);
    take();
    search({});
    m_controller->setActiveFilter(FilterCategory::favorites());
    m_controller->applyFilters(Scroll::ToTop);
    take();
    m_view->setEmptyText({}, {});
    take();
    for (qsizetype i = 0; i < pictures.size(); ++i) {
        for (qsizetype j = 0; j < i; ++j)
            QVERIFY(pictures[i] != pictures[j]);
    }
}

void ClipboardTableViewControllerTest::theScrollerIsSeenByThePointerAtTheEdge()
{
    make(SampleHistory::numbered(50));
    const auto *scroller = m_view->findChild<OverlayScroller *>();
    QTest::mouseMove(m_view->viewport(), QPoint(671, 100));
    QVERIFY(!scroller->isVisible());
    QTest::mouseMove(m_view->viewport(), QPoint(672, 100));
    QVERIFY(scroller->isVisible());
    // It never lies over a star.
    QVERIFY(scroller->x() > layoutOf(0).star.right());
}

void ClipboardTableViewControllerTest::theScrollerTakesNoPressUnlessItIsSeen()
{
    make(SampleHistory::numbered(50));
    QWidget *const scroller = m_view->findChild<OverlayScroller *>();
    const QPoint edge(676, 300);
    QVERIFY(m_view->childAt(edge) != scroller);
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {}, edge);
    QCOMPARE(m_view->selectedRow(), 4);
    QTest::mouseMove(m_view->viewport(), edge);
    QCOMPARE(m_view->childAt(edge), scroller);
    QTest::mouseMove(m_view->viewport(), contentOf(0));
    m_scheduler->advance(800ms);
    QVERIFY(m_view->childAt(edge) != scroller);
}

void ClipboardTableViewControllerTest::anEntryThatComesDoesNotShowTheScroller()
{
    const ClipboardItemList items = SampleHistory::numbered(50);
    make(items);
    QTest::mouseMove(m_view->viewport(), contentOf(0));
    QCoreApplication::processEvents();
    QScrollBar &scrollBar = *m_view->verticalScrollBar();
    scrollBar.setValue(500);
    const auto *scroller = m_view->findChild<OverlayScroller *>();
    QVERIFY(scroller->isVisible());
    m_scheduler->advance(1s);
    m_controller->setItems(SampleHistory::texts({u"new"_s}) + items);
    m_controller->applyFilters(Scroll::Keep);
    QCoreApplication::processEvents(); // The view lays itself out again later.
    QCOMPARE(scrollBar.value(), 572);
    QVERIFY(!scroller->isVisible());
}

void ClipboardTableViewControllerTest::tenThousandRowsNeedNoWidgets()
{
    make(SampleHistory::numbered(3));
    const qsizetype few = m_view->findChildren<QWidget *>().size();
    make(SampleHistory::numbered(10'000));
    m_view->grab();
    QCOMPARE(m_view->findChildren<QWidget *>().size(), few);
    QCOMPARE(m_view->model()->rowCount(), 10'000);
    QCOMPARE(m_view->verticalScrollBar()->maximum(), 10'000 * 72 - 400);
}

QTEST_MAIN(ClipboardTableViewControllerTest)
#include "ClipboardTableViewControllerTest.moc"
