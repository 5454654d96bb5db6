#include "tests/fakes/HistoryListFixture.h"
#include "tests/window/SampleHistory.h"

#include "appearance/SystemColors.h"
#include "tags/MaxLengthTextField.h"
#include "tags/NewTagAlert.h"
#include "tags/TagChipRow.h"
#include "tags/TagHoverContainer.h"
#include "window/ClipboardTableView.h"
#include "window/ClipboardTableViewController.h"

#include <QAbstractItemModelTester>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Scroll = ClipboardTableViewController::Scroll;

class ItemTagsTest : public QObject, private HistoryListFixture
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void togglingAddsAtTheEndAndTakesAway();
    void togglingTwiceLeavesTheTagsAndMovesTheTimeOn();
    void togglingOffTakesEveryOccurrence();
    void togglingAnUnknownEntryDoesNothing();
    void togglingRedrawsTheRowInPlace();
    void togglingOffTheTagOfTheFilterRemovesTheRow_data();
    void togglingOffTheTagOfTheFilterRemovesTheRow();
    void togglingOffARowThatIsNotSelectedLeavesTheSelection();
    void togglingOnAnUnlistedEntryListsIt();
    void togglingUnderASearchThatHidesTheEntryChangesNoRow();

    void aRenameReachesCatalogueHistoryAndList();
    void aRenameGoesFromTheCatalogueToTheHistoryToTheList();
    void theListTellsOfADeletionThatIsDoneElsewhere();
    void aCreationGoesFromTheCatalogueToTheHistoryToTheList();
    void aRefusedRenameLeavesTheEntriesAlone();
    void aRenameOfTheCaseAloneRewritesEveryEntry();
    void entriesGetTheNewNameAsItWasGiven();
    void aRenameTouchesTheRowsThatChangeAndNoOther();
    void aRenameHitsTheFirstOccurrence();
    void aToggleAfterARenameStartsFromTheNewName();

    void aDeletionReachesCatalogueHistoryAndList();
    void aDeletionLeavesTheFilterAlone();
    void deletingATagThatNobodyHasWritesNothing();

    void creatingTagsTheEntry();
    void theCreatedNameIsTrimmedAndCut();
    void aRefusedCreationTagsNothing();
    void movingLeavesTheEntriesAlone();

    void chipsOfTheMenuToggle();
    void withoutTagsTheMenuHasNoChips();
    void theMenuAsksForANewTag();
    void withFifteenTagsTheMenuAsksForNoMore();

    void theQuestionComesOnTheNextTurn();
    void theAnswerMakesATagAndGivesIt();
    void cancellingMakesNoTag();
    void aNameThatIsTakenMakesNoTag();
    void theQuestionIsAskedOnce();
    void pastingIntoTheQuestionTakesTheGivenText();
    void theListMayEndWithTheQuestionOpen();
    void theWindowMayEndBeforeTheQuestion();

private:
    void make(const QList<QStringList> &tagsOfEntries);
    ItemTags &tags() { return m_controller->itemTags(); }
    QUuid idAt(qsizetype place) const { return m_controller->items().at(place)->id; }
    QStringList listedAt(qsizetype row) const
    {
        return m_controller->filteredItems().at(row)->tags;
    }
    QStringList keptAt(qsizetype place) const { return m_controller->items().at(place)->tags; }
    QStringList storedOf(const QUuid &id) const;
    void filterBy(const QString &name);
    qsizetype storeCalls();
    QStringList stateOfFirst() const;
    void noteStates(QList<QStringList> &states);
    QMenu &openMenuAt(int row);
    static QAction *newTagEntry(const QMenu &menu);
    NewTagAlert *alert() const { return m_window->findChild<NewTagAlert *>(); }
    NewTagAlert &askFor(const QUuid &id);

    std::unique_ptr<QWidget> m_window;
    ClipboardTableView *m_view = nullptr;
    std::unique_ptr<ClipboardTableViewController> m_controller;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
};

void ItemTagsTest::init()
{
    setUpList();
}

void ItemTagsTest::cleanup()
{
    m_tester.reset();
    m_controller.reset();
    m_window.reset();
}

/// A list of entries, the first on top, and a history of the same.
void ItemTagsTest::make(const QList<QStringList> &tagsOfEntries)
{
    cleanup();
    ClipboardItemList items;
    for (const QStringList &names : tagsOfEntries) {
        ClipboardItem item = SampleHistory::textItem(u"entry %1"_s.arg(items.size()),
                                                     std::chrono::seconds(items.size()));
        item.tags = names;
        items.append(SampleHistory::shared(item));
        m_history->records.append(item);
    }
    openHistory();
    m_window = std::make_unique<QWidget>();
    m_window->resize(680, 500);
    m_view = new ClipboardTableView(*m_scheduler, *m_clock, 0, m_window.get());
    m_view->setColors(systemColors(ColorScheme::Light));
    m_view->setGeometry(0, 0, 680, 500);
    m_controller = std::make_unique<ClipboardTableViewController>(*m_view, 18,
                                                                  listCollaborators(), items);
    m_tester = std::make_unique<QAbstractItemModelTester>(
        m_view->model(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    m_window->show();
    m_view->setFocus();
}

QStringList ItemTagsTest::storedOf(const QUuid &id) const
{
    const ClipboardItemList items = m_manager->items();
    return items.at(indexOfItem(items, id))->tags;
}

void ItemTagsTest::filterBy(const QString &name)
{
    m_controller->setActiveFilter(FilterCategory::tag(name));
    m_controller->applyFilters(Scroll::ToTop);
}

qsizetype ItemTagsTest::storeCalls()
{
    m_manager->drain();
    return m_history->callsSoFar().size();
}

/// The tags in the catalogue, and those of the first entry in the history and in the list.
QStringList ItemTagsTest::stateOfFirst() const
{
    const auto joined = [](const QStringList &names) { return names.join(u' '); };
    return {joined(m_tags->tagNames()), joined(storedOf(idAt(0))), joined(keptAt(0))};
}

/// Notes how things stand when the catalogue tells of a change, and when the list does.
void ItemTagsTest::noteStates(QList<QStringList> &states)
{
    const auto note = [this, &states] { states.append(stateOfFirst()); };
    connect(m_tags.get(), &TagManager::tagsDidChange, m_view, note, Qt::DirectConnection);
    connect(m_view->model(), &QAbstractItemModel::dataChanged, m_view, note);
}

QMenu &ItemTagsTest::openMenuAt(int row)
{
    m_view->selectRow(row);
    QTest::keyClick(m_view, Qt::Key_Menu);
    return *static_cast<QMenu *>(QApplication::activePopupWidget());
}

QAction *ItemTagsTest::newTagEntry(const QMenu &menu)
{
    const QList<QAction *> actions = menu.actions();
    const auto found = std::ranges::find(actions, u"New Tag…"_s, &QAction::text);
    return found == actions.end() ? nullptr : *found;
}

NewTagAlert &ItemTagsTest::askFor(const QUuid &id)
{
    m_controller->requestNewTag(id);
    m_scheduler->advance(0ms);
    return *alert();
}

void ItemTagsTest::togglingAddsAtTheEndAndTakesAway()
{
    make({{u"home"_s}, {}});
    m_controller->toggleTag(u"work"_s, idAt(0));
    QCOMPARE(keptAt(0), (QStringList{u"home"_s, u"work"_s}));
    QCOMPARE(listedAt(0), keptAt(0));
    QCOMPARE(storedOf(idAt(0)), keptAt(0));
    m_controller->toggleTag(u"home"_s, idAt(0));
    QCOMPARE(keptAt(0), QStringList{u"work"_s});
    QCOMPARE(storedOf(idAt(0)), QStringList{u"work"_s});
    m_controller->toggleTag(u"Work"_s, idAt(0));
    QCOMPARE(keptAt(0), (QStringList{u"work"_s, u"Work"_s}));
    QCOMPARE(keptAt(1), QStringList());
}

void ItemTagsTest::togglingTwiceLeavesTheTagsAndMovesTheTimeOn()
{
    make({{u"home"_s}});
    const Timestamp before = m_manager->items().first()->updatedAt;
    m_clock->advance(1s);
    m_controller->toggleTag(u"work"_s, idAt(0));
    m_controller->toggleTag(u"work"_s, idAt(0));
    QCOMPARE(storedOf(idAt(0)), QStringList{u"home"_s});
    QVERIFY(m_manager->items().first()->updatedAt > before);
}

void ItemTagsTest::togglingOffTakesEveryOccurrence()
{
    make({{u"work"_s, u"home"_s, u"work"_s}});
    m_controller->toggleTag(u"work"_s, idAt(0));
    QCOMPARE(keptAt(0), QStringList{u"home"_s});
    QCOMPARE(storedOf(idAt(0)), QStringList{u"home"_s});
}

void ItemTagsTest::togglingAnUnknownEntryDoesNothing()
{
    make({{u"home"_s}});
    const qsizetype calls = storeCalls();
    m_controller->toggleTag(u"work"_s, QUuid::createUuid());
    QCOMPARE(storeCalls(), calls);
    QCOMPARE(keptAt(0), QStringList{u"home"_s});
}

void ItemTagsTest::togglingRedrawsTheRowInPlace()
{
    make({{}, {}, {}});
    m_view->selectRow(1);
    QSignalSpy changed(m_view->model(), &QAbstractItemModel::dataChanged);
    QSignalSpy reset(m_view->model(), &QAbstractItemModel::modelReset);
    m_controller->toggleTag(u"work"_s, idAt(1));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.first().first().toModelIndex().row(), 1);
    QCOMPARE(reset.count(), 0);
    QCOMPARE(m_view->selectedRow(), 1);
}

void ItemTagsTest::togglingOffTheTagOfTheFilterRemovesTheRow_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("selectedAfter");
    QTest::addColumn<QString>("textAfter");
    QTest::newRow("the first") << 0 << 0 << u"entry 2"_s;
    QTest::newRow("one between") << 1 << 1 << u"entry 3"_s;
    QTest::newRow("the last") << 2 << 1 << u"entry 2"_s;
}

void ItemTagsTest::togglingOffTheTagOfTheFilterRemovesTheRow()
{
    QFETCH(const int, row);
    QFETCH(const int, selectedAfter);
    QFETCH(const QString, textAfter);
    make({{u"work"_s}, {}, {u"work"_s}, {u"work"_s}});
    filterBy(u"work"_s);
    m_view->selectRow(row);
    m_controller->toggleTag(u"work"_s, m_controller->filteredItems().at(row)->id);
    QCOMPARE(m_controller->filteredItems().size(), 2);
    QCOMPARE(m_view->selectedRow(), selectedAfter);
    QCOMPARE(m_controller->filteredItems().at(selectedAfter)->stringValue->toString(), textAfter);
    // The last of all leaves nothing to select.
    for (int rest = 0; rest < 2; ++rest)
        m_controller->toggleTag(u"work"_s, m_controller->filteredItems().first()->id);
    QVERIFY(m_controller->filteredItems().isEmpty());
    QCOMPARE(m_view->selectedRow(), -1);
    QCOMPARE(m_controller->items().size(), 4);
}

void ItemTagsTest::togglingOffARowThatIsNotSelectedLeavesTheSelection()
{
    make({{u"work"_s}, {u"work"_s}, {u"work"_s}});
    filterBy(u"work"_s);
    m_view->selectRow(2);
    const QUuid selected = idAt(2);
    m_controller->toggleTag(u"work"_s, idAt(0));
    QCOMPARE(m_view->selectedRow(), 1);
    QCOMPARE(m_controller->filteredItems().at(1)->id, selected);
}

void ItemTagsTest::togglingOnAnUnlistedEntryListsIt()
{
    make({{u"work"_s}, {}, {u"work"_s}});
    filterBy(u"work"_s);
    m_controller->toggleTag(u"work"_s, idAt(1));
    QCOMPARE(m_controller->filteredItems().size(), 3);
    QCOMPARE(m_controller->filteredItems().at(1)->id, idAt(1));
    m_controller->toggleTag(u"other"_s, idAt(1));
    QCOMPARE(listedAt(1), (QStringList{u"work"_s, u"other"_s}));
}

void ItemTagsTest::togglingUnderASearchThatHidesTheEntryChangesNoRow()
{
    make({{}, {}});
    m_controller->setSearchText(u"entry 1"_s);
    m_controller->applyFilters(Scroll::ToTop);
    m_controller->toggleTag(u"work"_s, idAt(0));
    QCOMPARE(m_controller->filteredItems().size(), 1);
    QCOMPARE(storedOf(idAt(0)), QStringList{u"work"_s});
}

void ItemTagsTest::aRenameReachesCatalogueHistoryAndList()
{
    m_tags->createTag(u"work"_s);
    make({{u"a"_s, u"work"_s}, {}, {u"work"_s}});
    QVERIFY(tags().renameTag(u"work"_s, u"office"_s));
    QCOMPARE(m_tags->tagNames(), QStringList{u"office"_s});
    QCOMPARE(storedOf(idAt(0)), (QStringList{u"a"_s, u"office"_s}));
    QCOMPARE(storedOf(idAt(2)), QStringList{u"office"_s});
    QCOMPARE(keptAt(0), (QStringList{u"a"_s, u"office"_s}));
    QCOMPARE(keptAt(1), QStringList());
    QCOMPARE(listedAt(2), QStringList{u"office"_s});
}

void ItemTagsTest::aRenameGoesFromTheCatalogueToTheHistoryToTheList()
{
    m_tags->createTag(u"work"_s);
    QCoreApplication::sendPostedEvents(m_tags.get()); // The second news of it.
    make({{u"work"_s}});
    QList<QStringList> states;
    noteStates(states);
    QVERIFY(tags().renameTag(u"work"_s, u"office"_s));
    QCOMPARE(states, (QList<QStringList>{{u"office"_s, u"work"_s, u"work"_s},
                                         {u"office"_s, u"office"_s, u"office"_s}}));
}

void ItemTagsTest::theListTellsOfADeletionThatIsDoneElsewhere()
{
    m_tags->createTag(u"work"_s);
    QCoreApplication::sendPostedEvents(m_tags.get());
    make({{u"work"_s}});
    QList<QStringList> states;
    noteStates(states);
    QVERIFY(tags().deleteTag(u"work"_s));
    QCOMPARE(states, QList<QStringList>{QStringList(3, QString())});
}

void ItemTagsTest::aCreationGoesFromTheCatalogueToTheHistoryToTheList()
{
    make({{}});
    QList<QStringList> states;
    noteStates(states);
    QVERIFY(tags().createTag(u"work"_s, idAt(0)));
    QCOMPARE(states, (QList<QStringList>{{u"work"_s, QString(), QString()},
                                         {u"work"_s, u"work"_s, u"work"_s}}));
}

void ItemTagsTest::aRefusedRenameLeavesTheEntriesAlone()
{
    m_tags->createTag(u"work"_s);
    m_tags->createTag(u"home"_s);
    make({{u"work"_s}});
    const qsizetype calls = storeCalls();
    QVERIFY(!tags().renameTag(u"work"_s, u"HOME"_s));
    QVERIFY(!tags().renameTag(u"nobody"_s, u"somebody"_s));
    QVERIFY(!tags().renameTag(u"work"_s, u"  "_s));
    QCOMPARE(storeCalls(), calls);
    QCOMPARE(keptAt(0), QStringList{u"work"_s});
    QCOMPARE(storedOf(idAt(0)), QStringList{u"work"_s});
}

void ItemTagsTest::aRenameOfTheCaseAloneRewritesEveryEntry()
{
    m_tags->createTag(u"Work"_s);
    make({{u"Work"_s}, {u"Work"_s}});
    const qsizetype calls = storeCalls();
    QVERIFY(tags().renameTag(u"Work"_s, u"work"_s));
    QCOMPARE(storeCalls(), calls + 2);
    QCOMPARE(listedAt(0), QStringList{u"work"_s});
    QCOMPARE(listedAt(1), QStringList{u"work"_s});
}

void ItemTagsTest::entriesGetTheNewNameAsItWasGiven()
{
    m_tags->createTag(u"work"_s);
    make({{u"work"_s}});
    const QString given = u" abcdefghijklmnopqrstuvw "_s;
    QVERIFY(tags().renameTag(u"work"_s, given));
    QCOMPARE(m_tags->tagNames(), QStringList{u"abcdefghijklmnopqrst"_s});
    QCOMPARE(keptAt(0), QStringList{given});
    QCOMPARE(storedOf(idAt(0)), QStringList{given});
}

void ItemTagsTest::aRenameTouchesTheRowsThatChangeAndNoOther()
{
    make({{u"work"_s}, {}, {u"work"_s}, {u"Work"_s}});
    m_view->selectRow(3);
    QSignalSpy changed(m_view->model(), &QAbstractItemModel::dataChanged);
    QSignalSpy reset(m_view->model(), &QAbstractItemModel::modelReset);
    m_controller->applyRenamedTag(u"work"_s, u"office"_s);
    QList<int> rows;
    for (const auto &arguments : changed) {
        QCOMPARE(arguments.at(0), arguments.at(1));
        rows.append(arguments.at(0).toModelIndex().row());
    }
    QCOMPARE(rows, (QList<int>{0, 2}));
    changed.clear();
    m_controller->applyRemovedTag(u"nobody"_s);
    m_controller->applyRenamedTag(u"nobody"_s, u"somebody"_s);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(reset.count(), 0);
    QCOMPARE(m_view->selectedRow(), 3);
    // What the list shows and what it keeps are the same entries, so nothing is left to update.
    QCOMPARE(m_controller->filteredItems(), m_controller->items());
}

void ItemTagsTest::aRenameHitsTheFirstOccurrence()
{
    make({{u"work"_s, u"a"_s, u"work"_s}});
    m_controller->applyRenamedTag(u"work"_s, u"office"_s);
    QCOMPARE(keptAt(0), (QStringList{u"office"_s, u"a"_s, u"work"_s}));
    QCOMPARE(listedAt(0), keptAt(0));
}

void ItemTagsTest::aToggleAfterARenameStartsFromTheNewName()
{
    m_tags->createTag(u"work"_s);
    make({{u"work"_s}});
    tags().renameTag(u"work"_s, u"office"_s);
    m_controller->toggleTag(u"home"_s, idAt(0));
    QCOMPARE(storedOf(idAt(0)), (QStringList{u"office"_s, u"home"_s}));
}

void ItemTagsTest::aDeletionReachesCatalogueHistoryAndList()
{
    m_tags->createTag(u"work"_s);
    make({{u"work"_s, u"a"_s, u"work"_s}, {u"a"_s}});
    QVERIFY(tags().deleteTag(u"work"_s));
    QVERIFY(m_tags->tagNames().isEmpty());
    QCOMPARE(storedOf(idAt(0)), QStringList{u"a"_s});
    QCOMPARE(keptAt(0), QStringList{u"a"_s});
    QCOMPARE(listedAt(0), QStringList{u"a"_s});
    QVERIFY(tags().deleteTag(u"work"_s));
}

void ItemTagsTest::aDeletionLeavesTheFilterAlone()
{
    m_tags->createTag(u"work"_s);
    make({{u"work"_s}, {}});
    filterBy(u"work"_s);
    tags().deleteTag(u"work"_s);
    QCOMPARE(m_controller->filteredItems().size(), 1);
    QCOMPARE(listedAt(0), QStringList());
}

void ItemTagsTest::deletingATagThatNobodyHasWritesNothing()
{
    m_tags->createTag(u"work"_s);
    make({{u"home"_s}});
    const qsizetype calls = storeCalls();
    QVERIFY(tags().deleteTag(u"work"_s));
    QCOMPARE(storeCalls(), calls);
}

void ItemTagsTest::creatingTagsTheEntry()
{
    make({{u"home"_s}, {}});
    QVERIFY(tags().createTag(u"work"_s, idAt(0)));
    QCOMPARE(m_tags->tagNames(), QStringList{u"work"_s});
    QCOMPARE(keptAt(0), (QStringList{u"home"_s, u"work"_s}));
    QCOMPARE(storedOf(idAt(0)), (QStringList{u"home"_s, u"work"_s}));
    QCOMPARE(keptAt(1), QStringList());
}

void ItemTagsTest::theCreatedNameIsTrimmedAndCut()
{
    make({{}});
    QVERIFY(tags().createTag(u"  abcdefghijklmnopqrstuvw "_s, idAt(0)));
    QCOMPARE(keptAt(0), QStringList{u"abcdefghijklmnopqrst"_s});
    QCOMPARE(m_tags->tagNames(), keptAt(0));
}

void ItemTagsTest::aRefusedCreationTagsNothing()
{
    m_tags->createTag(u"work"_s);
    make({{}});
    QVERIFY(!tags().createTag(u" work "_s, idAt(0)));
    QVERIFY(!tags().createTag(u" \n"_s, idAt(0)));
    for (int i = 2; i <= 15; ++i)
        m_tags->createTag(QString::number(i));
    QVERIFY(!tags().createTag(u"sixteenth"_s, idAt(0)));
    QCOMPARE(keptAt(0), QStringList());
}

void ItemTagsTest::movingLeavesTheEntriesAlone()
{
    for (const QString &name : {u"a"_s, u"b"_s, u"c"_s})
        m_tags->createTag(name);
    make({{u"a"_s, u"b"_s, u"c"_s}});
    const qsizetype calls = storeCalls();
    QVERIFY(tags().moveTagToFront(u"c"_s));
    QVERIFY(!tags().moveTagToFront(u"c"_s));
    QVERIFY(tags().moveTagDown(u"c"_s));
    QVERIFY(tags().moveTagUp(u"b"_s));
    QVERIFY(!tags().moveTagDown(u"c"_s));
    QCOMPARE(m_tags->tagNames(), (QStringList{u"a"_s, u"b"_s, u"c"_s}));
    QCOMPARE(storeCalls(), calls);
    QCOMPARE(keptAt(0), (QStringList{u"a"_s, u"b"_s, u"c"_s}));
}

void ItemTagsTest::chipsOfTheMenuToggle()
{
    m_tags->createTag(u"work"_s);
    m_tags->createTag(u"home"_s);
    make({{}, {u"home"_s, u"gone"_s}});
    QMenu &menu = openMenuAt(1);
    const auto chips = menu.findChild<TagChipRow *>()->chips();
    QCOMPARE(chips.size(), 2);
    QVERIFY(!chips.at(0)->isSelectedTag());
    QVERIFY(chips.at(1)->isSelectedTag());
    for (TagHoverContainer *chip : chips)
        QTest::mouseClick(chip, Qt::LeftButton, {}, {10, 10});
    QCOMPARE(keptAt(1), (QStringList{u"gone"_s, u"work"_s}));
    QCOMPARE(storedOf(idAt(1)), keptAt(1));
    QVERIFY(chips.at(0)->isSelectedTag());
    QVERIFY(!chips.at(1)->isSelectedTag());
    QVERIFY(menu.isVisible());
}

void ItemTagsTest::withoutTagsTheMenuHasNoChips()
{
    make({{u"home"_s}});
    QVERIFY(!openMenuAt(0).findChild<TagChipRow *>());
}

void ItemTagsTest::theMenuAsksForANewTag()
{
    make({{}, {}});
    QAction *entry = newTagEntry(openMenuAt(1));
    QVERIFY(entry);
    entry->trigger();
    m_scheduler->advance(0ms);
    QVERIFY(alert());
    QTest::keyClicks(&alert()->field(), u"travel"_s);
    alert()->confirm();
    QCOMPARE(keptAt(1), QStringList{u"travel"_s});
}

void ItemTagsTest::withFifteenTagsTheMenuAsksForNoMore()
{
    for (int i = 1; i <= 15; ++i)
        m_tags->createTag(QString::number(i));
    make({{}});
    QVERIFY(!newTagEntry(openMenuAt(0)));
}

void ItemTagsTest::theQuestionComesOnTheNextTurn()
{
    make({{}});
    m_controller->requestNewTag(idAt(0));
    QVERIFY(!alert());
    m_scheduler->advance(0ms);
    QVERIFY(alert());
    QVERIFY(alert()->isVisible());
    QCOMPARE(alert()->geometry(), m_window->rect());
    QVERIFY(m_window->focusWidget() == &alert()->field());
}

void ItemTagsTest::theAnswerMakesATagAndGivesIt()
{
    make({{}, {}});
    QPointer<NewTagAlert> asked = &askFor(idAt(1));
    QTest::keyClicks(&asked->field(), u" travel "_s);
    QTest::keyClick(&asked->field(), Qt::Key_Return);
    QCOMPARE(m_tags->tagNames(), QStringList{u"travel"_s});
    QCOMPARE(keptAt(1), QStringList{u"travel"_s});
    QCOMPARE(storedOf(idAt(1)), QStringList{u"travel"_s});
    QVERIFY(!asked->isVisible());
    QTRY_VERIFY(!asked);
    QVERIFY(m_window->focusWidget() == m_view);
}

void ItemTagsTest::cancellingMakesNoTag()
{
    make({{}});
    NewTagAlert &asked = askFor(idAt(0));
    QTest::keyClicks(&asked.field(), u"travel"_s);
    QTest::keyClick(&asked.field(), Qt::Key_Escape);
    QVERIFY(m_tags->tagNames().isEmpty());
    QCOMPARE(keptAt(0), QStringList());
    askFor(idAt(0));
    m_controller->dismissOverlays();
    QTRY_VERIFY(!alert());
    m_controller->requestNewTag(idAt(0));
    m_controller->dismissOverlays();
    m_scheduler->advance(1s);
    QVERIFY(!alert());
}

void ItemTagsTest::aNameThatIsTakenMakesNoTag()
{
    m_tags->createTag(u"travel"_s);
    make({{}});
    NewTagAlert &asked = askFor(idAt(0));
    QTest::keyClicks(&asked.field(), u"travel"_s);
    QTest::keyClick(&asked.field(), Qt::Key_Return);
    QCOMPARE(keptAt(0), QStringList());
    QCOMPARE(m_tags->tagNames(), QStringList{u"travel"_s});
    QCOMPARE(m_beepCount, 1);
}

void ItemTagsTest::theQuestionIsAskedOnce()
{
    make({{}, {}});
    askFor(idAt(0));
    NewTagAlert &second = askFor(idAt(1));
    QCOMPARE(m_window->findChildren<NewTagAlert *>().size(), 1);
    QTest::keyClicks(&second.field(), u"travel"_s);
    second.confirm();
    QCOMPARE(keptAt(0), QStringList());
    QCOMPARE(keptAt(1), QStringList{u"travel"_s});
}

void ItemTagsTest::pastingIntoTheQuestionTakesTheGivenText()
{
    make({{}});
    m_pasteboardText = u"from the pasteboard, and long"_s;
    NewTagAlert &asked = askFor(idAt(0));
    QTest::keyClick(&asked.field(), Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(asked.field().text(), u"from the pasteboard,"_s);
    QCOMPARE(m_beepCount, 1);
}

void ItemTagsTest::theListMayEndWithTheQuestionOpen()
{
    make({{}});
    const QPointer<NewTagAlert> asked = &askFor(idAt(0));
    m_tester.reset();
    m_controller.reset();
    QVERIFY(!asked);
}

void ItemTagsTest::theWindowMayEndBeforeTheQuestion()
{
    make({{}});
    QWidget other;
    tags().requestNewTag(idAt(0), other);
    tags().requestNewTag(idAt(0), *std::make_unique<QWidget>());
    m_scheduler->advance(1s);
    QVERIFY(other.findChildren<NewTagAlert *>().isEmpty());
}

QTEST_MAIN(ItemTagsTest)
#include "ItemTagsTest.moc"
