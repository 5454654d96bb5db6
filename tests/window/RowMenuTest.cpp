#include "tests/window/TableFixture.h"

#include "language/LanguageManager.h"
#include "tags/NewTagAlert.h"
#include "tags/TagChipRow.h"
#include "tags/TagHoverContainer.h"

#include <QApplication>
#include <QMenu>
#include <QPointer>
#include <QSignalSpy>
#include <QWindow>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using SampleHistory::shared;

namespace {

const QString kSeparator = u"-"_s;

QMenu *openMenu()
{
    return qobject_cast<QMenu *>(QApplication::activePopupWidget());
}

QStringList titlesOf(const QMenu &menu)
{
    QStringList titles;
    for (const QAction *action : menu.actions())
        titles.append(action->isSeparator() ? kSeparator : action->text());
    return titles;
}

void choose(const QString &title)
{
    QMenu *menu = openMenu();
    for (QAction *action : menu->actions()) {
        if (action->text() == title) {
            QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
            return;
        }
    }
    QFAIL(qPrintable(u"no entry "_s + title));
}

const QStringList kCommonTitles{u"Paste"_s, u"Copy"_s, kSeparator, u"Favorite"_s, kSeparator,
                                u"New Tag…"_s, kSeparator, u"Delete"_s};

} // namespace

class RowMenuTest : public QObject, private TableFixture
{
    Q_OBJECT

private slots:
    void init() { setUpTable(); }
    void cleanup() { tearDownTable(); }

    void theMenuIsMadeByTheKindOfEntry_data();
    void theMenuIsMadeByTheKindOfEntry();
    void whatCannotBeSeenIsNotOffered();
    void aFavoriteCanBeUnmarked();
    void tagsAreOfferedWhereTheyCanBeChosen();
    void tagsAreSwitchesThatLeaveTheMenuOpen();
    void titlesAreInTheLanguageOfTheProgram();

    void aRightClickSelectsItsRow();
    void outsideTheRowsThereIsNoMenu();
    void otherButtonsThanTheLeftNeitherSelectNorPaste_data();
    void otherButtonsThanTheLeftNeitherSelectNorPaste();
    void keysOpenTheMenuAtTheRow_data();
    void keysOpenTheMenuAtTheRow();
    void withoutSelectionNoKeyOpensAMenu();
    void aKeyShowsTheRowFirst();
    void anotherRightClickOpensAnotherMenu();
    void aRightClickBesideTheMenuOpensThatOfItsRow();
    void aRightClickOutsideTheRowsClosesTheMenu();
    void aRightDoubleClickOpensTheMenu();
    void aQuickRightClickAfterClosingOpensTheMenuAgain();

    void pasteCopyAndPreviewGetTheEntry();
    void favoriteTogglesTheEntry();
    void deleteRemovesTheEntryAndLeavesTheSelection();
    void theFileIsShownWhereItIs();
    void aFileThatItsBookmarkDoesNotLeadToIsNotShown_data();
    void aFileThatItsBookmarkDoesNotLeadToIsNotShown();
    void anEntryThatIsNoLongerListedDoesNothing_data();
    void anEntryThatIsNoLongerListedDoesNothing();
    void aListThatMovedDoesNotMisleadTheMenu();
    void theMenuGoesWithItsEntry();

    void dismissingClosesTheMenu();
    void theListMayEndWhileTheMenuIsOpen();
    void theMenuHasTheLookThatIsAskedFor();

private:
    void rightClick(int row) { rightClick(contentOf(row)); }
    /// As a mouse does it, at \a position of the viewport.
    void rightClick(QPoint position)
    {
        QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
        QWindow *window = m_view->windowHandle();
        const QPoint place = m_view->viewport()->mapTo(m_view->window(), position);
        QTest::mousePress(window, Qt::RightButton, {}, place);
        QTest::mouseRelease(window, Qt::RightButton, {}, place);
    }
    ClipboardItem fileItem(const QString &path)
    {
        ClipboardItem item = SampleHistory::item(ClipboardContentType::File, u"notes.txt"_s);
        item.filePath = path;
        return item;
    }
};

void RowMenuTest::theMenuIsMadeByTheKindOfEntry_data()
{
    using Type = ClipboardContentType;
    QTest::addColumn<ClipboardItem>("item");
    QTest::addColumn<QStringList>("first");
    const QStringList previewText{u"Preview Text"_s, kSeparator};
    QTest::newRow("text") << SampleHistory::textItem(u"word"_s) << previewText;
    QTest::newRow("link") << SampleHistory::item(Type::Url, u"https://example.org"_s)
                          << previewText;
    ClipboardItem image = SampleHistory::item(Type::Image);
    QTest::newRow("picture that is lost") << image << QStringList();
    image.imageFileName = u"picture.jpg"_s;
    QTest::newRow("picture") << image << QStringList{u"Preview Image"_s, kSeparator};
    QTest::newRow("file") << fileItem(u"/tmp/notes.txt"_s)
                          << QStringList{u"Show in File Manager"_s, kSeparator};
    QTest::newRow("file without a path")
        << SampleHistory::item(Type::File, u"notes.txt"_s) << QStringList();
    QTest::newRow("mixed") << SampleHistory::item(Type::Mixed, u"word"_s) << QStringList();
}

void RowMenuTest::theMenuIsMadeByTheKindOfEntry()
{
    QFETCH(const ClipboardItem, item);
    QFETCH(const QStringList, first);
    LanguageManager language(*m_defaults);
    language.install();
    make({shared(item)});
    m_controller->onPreviewRequested = [](const ClipboardItemPointer &, QWidget &) {};
    rightClick(0);
    QVERIFY(openMenu());
    QCOMPARE(titlesOf(*openMenu()), first + kCommonTitles);
}

void RowMenuTest::whatCannotBeSeenIsNotOffered()
{
    make(SampleHistory::texts({u"word"_s, u" \n "_s}));
    rightClick(0);
    QCOMPARE(titlesOf(*openMenu()), kCommonTitles); // There is no preview at all.
    openMenu()->close();
    m_controller->onPreviewRequested = [](const ClipboardItemPointer &, QWidget &) {};
    rightClick(1);
    QCOMPARE(titlesOf(*openMenu()), kCommonTitles);
}

void RowMenuTest::aFavoriteCanBeUnmarked()
{
    ClipboardItem item = SampleHistory::textItem(u"word"_s);
    item.isFavorite = true;
    make({shared(item)});
    rightClick(0);
    QCOMPARE(titlesOf(*openMenu()).at(3), u"Unfavorite"_s);
}

void RowMenuTest::tagsAreOfferedWhereTheyCanBeChosen()
{
    const ClipboardItemList items = SampleHistory::numbered(2);
    make(items);
    QList<QUuid> asked;
    m_controller->onTagPopoverRequested = [&](const QUuid &id) { asked.append(id); };
    rightClick(1);
    QCOMPARE(titlesOf(*openMenu()).mid(5),
             (QStringList{u"Tags…"_s, kSeparator, u"Delete"_s}));
    choose(u"Tags…"_s);
    QCOMPARE(asked, QList<QUuid>{items[1]->id});
}

void RowMenuTest::tagsAreSwitchesThatLeaveTheMenuOpen()
{
    ClipboardItem item = SampleHistory::textItem(u"word"_s);
    item.tags = {u"travel"_s};
    RowMenu rowMenu;
    QSignalSpy toggled(&rowMenu, &RowMenu::tagToggled);
    rowMenu.popUp(item, {.tagNames = {u"travel"_s, u"work"_s}}, {100, 100},
                  QContextMenuEvent::Mouse);
    const auto *chips = openMenu()->findChild<TagChipRow *>();
    QVERIFY(chips);
    QCOMPARE(chips->chips().size(), 2);
    QVERIFY(chips->chips().first()->isSelectedTag());
    QVERIFY(!chips->chips().last()->isSelectedTag());
    QTest::mouseClick(chips->chips().last(), Qt::LeftButton);
    QCOMPARE(toggled, (QList<QVariantList>{{u"work"_s, item.id}}));
    QVERIFY(openMenu());
    // They stand after the star and before the deletion.
    const QStringList titles = titlesOf(*openMenu());
    QCOMPARE(titles.mid(titles.indexOf(u"Favorite"_s)),
             (QStringList{u"Favorite"_s, kSeparator, u"Tags"_s, kSeparator, u"Delete"_s}));
}

void RowMenuTest::titlesAreInTheLanguageOfTheProgram()
{
    LanguageManager language(*m_defaults);
    language.setLanguage(AppLanguage::Chinese);
    language.install();
    make({shared(fileItem(u"/tmp/notes.txt"_s))});
    rightClick(0);
    QCOMPARE(titlesOf(*openMenu()),
             (QStringList{u"在文件管理器中显示"_s, kSeparator, u"粘贴"_s, u"复制"_s, kSeparator,
                          u"收藏"_s, kSeparator, u"新建标签…"_s, kSeparator, u"删除"_s}));
}

void RowMenuTest::aRightClickSelectsItsRow()
{
    make(SampleHistory::numbered(5));
    m_view->selectRow(0);
    rightClick(3);
    QCOMPARE(m_view->selectedRow(), 3);
    QVERIFY(openMenu());
    QVERIFY(m_pasted.isEmpty());
}

void RowMenuTest::outsideTheRowsThereIsNoMenu()
{
    make(SampleHistory::numbered(2));
    m_view->selectRow(1);
    rightClick(QPoint(300, 390));
    QVERIFY(!openMenu());
    QCOMPARE(m_view->selectedRow(), 1);
}

void RowMenuTest::otherButtonsThanTheLeftNeitherSelectNorPaste_data()
{
    QTest::addColumn<Qt::MouseButton>("button");
    QTest::newRow("right") << Qt::RightButton;
    QTest::newRow("middle") << Qt::MiddleButton;
    QTest::newRow("back") << Qt::BackButton;
}

void RowMenuTest::otherButtonsThanTheLeftNeitherSelectNorPaste()
{
    QFETCH(const Qt::MouseButton, button);
    make(SampleHistory::numbered(3));
    m_view->selectRow(0);
    QTest::mouseDClick(m_view->viewport(), button, {}, contentOf(1));
    QTest::mouseClick(m_view->viewport(), button, {}, QPoint(300, 390));
    QCOMPARE(m_view->selectedRow(), 0);
    QVERIFY(m_pasted.isEmpty());
}

void RowMenuTest::keysOpenTheMenuAtTheRow_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::newRow("the menu key") << Qt::Key_Menu << Qt::KeyboardModifiers();
    QTest::newRow("Shift+F10") << Qt::Key_F10 << Qt::KeyboardModifiers(Qt::ShiftModifier);
}

void RowMenuTest::keysOpenTheMenuAtTheRow()
{
    QFETCH(const Qt::Key, key);
    QFETCH(const Qt::KeyboardModifiers, modifiers);
    make(SampleHistory::numbered(5));
    m_view->selectRow(2);
    QTest::keyClick(m_view.get(), key, modifiers);
    QMenu *menu = openMenu();
    QVERIFY(menu);
    const QPoint corner = menu->mapToGlobal(
        menu->rect().marginsRemoved(menu->contentsMargins()).topLeft());
    const RowLayout layout = layoutOf(2);
    QCOMPARE(m_view->viewport()->mapFromGlobal(corner),
             QPointF(layout.content.left(), layout.selection.bottom()).toPoint());
    QCOMPARE(menu->activeAction(), menu->actions().first());
    // Return chooses what is shown as chosen.
    QTest::keyClick(menu, Qt::Key_Return);
    QCOMPARE(m_pasted, QStringList{u"entry 2"_s});
    QVERIFY(!openMenu());
}

void RowMenuTest::withoutSelectionNoKeyOpensAMenu()
{
    make(SampleHistory::numbered(2));
    m_view->setFocus();
    QTest::keyClick(m_view.get(), Qt::Key_Menu);
    QTest::keyClick(m_view.get(), Qt::Key_F10, Qt::ShiftModifier);
    m_view->selectRow(0);
    QTest::keyClick(m_view.get(), Qt::Key_F10);
    QVERIFY(!openMenu());
}

void RowMenuTest::aKeyShowsTheRowFirst()
{
    make(SampleHistory::numbered(50));
    m_view->selectRow(40);
    m_view->scrollToTop();
    QTest::keyClick(m_view.get(), Qt::Key_Menu);
    QVERIFY(openMenu());
    QVERIFY(m_view->viewport()->rect().contains(contentOf(40)));
}

void RowMenuTest::anotherRightClickOpensAnotherMenu()
{
    const ClipboardItemList items = SampleHistory::numbered(5);
    make(items);
    rightClick(1);
    const QPointer<QMenu> former = openMenu();
    former->close();
    rightClick(3);
    QVERIFY(openMenu() && openMenu() != former);
    choose(u"Copy"_s);
    QCOMPARE(m_copied, QList<QUuid>{items[3]->id});
    QTRY_VERIFY(!former);
}

void RowMenuTest::aRightClickBesideTheMenuOpensThatOfItsRow()
{
    const ClipboardItemList items = SampleHistory::numbered(5);
    make(items);
    rightClick(2);
    QVERIFY(openMenu());
    rightClick(1); // Above the menu.
    QTRY_COMPARE(m_view->selectedRow(), 1);
    QTRY_VERIFY(openMenu());
    choose(u"Copy"_s);
    QCOMPARE(m_copied, QList<QUuid>{items[1]->id});
    QVERIFY(!openMenu());
}

void RowMenuTest::aRightClickOutsideTheRowsClosesTheMenu()
{
    make(SampleHistory::numbered(2));
    rightClick(1);
    rightClick(QPoint(30, 390));
    QCoreApplication::processEvents();
    QVERIFY(!openMenu());
    QCOMPARE(m_view->selectedRow(), 1);
}

void RowMenuTest::aRightDoubleClickOpensTheMenu()
{
    make(SampleHistory::numbered(3));
    QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
    const QPoint place = m_view->viewport()->mapTo(m_view->window(), contentOf(1));
    QTest::mouseDClick(m_view->windowHandle(), Qt::RightButton, {}, place);
    QCoreApplication::processEvents();
    QVERIFY(openMenu());
    QCOMPARE(m_view->selectedRow(), 1);
}

void RowMenuTest::aQuickRightClickAfterClosingOpensTheMenuAgain()
{
    make(SampleHistory::numbered(3));
    rightClick(1);
    openMenu()->close();
    QTest::lastMouseTimestamp -= QTest::mouseDoubleClickInterval; // Within a double click's time.
    rightClick(1);
    QCoreApplication::processEvents();
    QVERIFY(openMenu());
}

void RowMenuTest::pasteCopyAndPreviewGetTheEntry()
{
    const ClipboardItemList items = SampleHistory::numbered(3);
    make(items);
    QList<QUuid> previewed;
    m_controller->onPreviewRequested = [&](const ClipboardItemPointer &item, QWidget &responder) {
        QCOMPARE(&responder, m_view.get());
        previewed.append(item->id);
    };
    rightClick(1);
    choose(u"Paste"_s);
    QCOMPARE(m_pasted, QStringList{u"entry 1"_s});
    rightClick(2);
    choose(u"Copy"_s);
    QCOMPARE(m_copied, QList<QUuid>{items[2]->id});
    rightClick(0);
    choose(u"Preview Text"_s);
    QCOMPARE(previewed, QList<QUuid>{items[0]->id});
    QCOMPARE(m_pasted.size(), 1);
    QVERIFY(m_view->isVisible());
}

void RowMenuTest::favoriteTogglesTheEntry()
{
    const ClipboardItemList items = SampleHistory::numbered(3);
    make(items);
    rightClick(1);
    choose(u"Favorite"_s);
    QVERIFY(m_controller->filteredItems().at(1)->isFavorite);
    rightClick(1);
    choose(u"Unfavorite"_s);
    QVERIFY(!m_controller->filteredItems().at(1)->isFavorite);
    QCOMPARE(m_toggled, QList<QUuid>(2, items[1]->id));
}

void RowMenuTest::deleteRemovesTheEntryAndLeavesTheSelection()
{
    makeHistory(SampleHistory::numbered(4));
    rightClick(1);
    m_view->selectRow(2);
    choose(u"Delete"_s);
    QVERIFY(m_view->acceptsInput());
    QTRY_COMPARE((m_clock->advance(250ms), m_scheduler->advance(250ms), listedTexts()),
                 (QStringList{u"entry 0"_s, u"entry 2"_s, u"entry 3"_s}));
    QCOMPARE(m_manager->items().size(), 3);
    QCOMPARE(m_view->selectedRow(), 1); // Still the same entry.
}

void RowMenuTest::theFileIsShownWhereItIs()
{
    ClipboardItem item = fileItem(u"/tmp/notes.txt"_s);
    item.fileBookmarkData = "old";
    const QUrl place = QUrl::fromLocalFile(u"/tmp/moved.txt"_s);
    m_files->bookmarks.places.insert("old", {place, true});
    makeHistory({shared(item)});
    int goneCount = 0;
    m_controller->onWindowHidden = [&] {
        ++goneCount;
        QCOMPARE(m_fileViewer->shown.size(), 1);
    };
    rightClick(0);
    choose(openMenu()->actions().first()->text());
    QCOMPARE(m_fileViewer->shown, QList<QList<QUrl>>{{place}});
    QCOMPARE(goneCount, 1);
    // The stale bookmark is made anew.
    QTRY_COMPARE(m_manager->items().first()->fileBookmarkData,
                 "bookmark of " + place.toEncoded());
}

void RowMenuTest::aFileThatItsBookmarkDoesNotLeadToIsNotShown_data()
{
    QTest::addColumn<std::optional<QByteArray>>("bookmark");
    QTest::newRow("no bookmark") << std::optional<QByteArray>();
    QTest::newRow("a corrupt one") << std::optional<QByteArray>("corrupt");
}

/// The path would lead to a file, but nobody knows whether that is the one that was copied.
void RowMenuTest::aFileThatItsBookmarkDoesNotLeadToIsNotShown()
{
    ClipboardItem item = fileItem(u"/tmp/notes.txt"_s);
    QFETCH(const std::optional<QByteArray>, bookmark);
    item.fileBookmarkData = bookmark;
    m_files->access.files = {QUrl::fromLocalFile(*item.filePath)};
    make({shared(item)});
    QVERIFY(m_manager->resolveFileURL(item));
    bool isGone = false;
    m_controller->onWindowHidden = [&] { isGone = true; };
    rightClick(0);
    choose(openMenu()->actions().first()->text());
    QVERIFY(m_fileViewer->shown.isEmpty());
    QVERIFY(!isGone);
}

void RowMenuTest::anEntryThatIsNoLongerListedDoesNothing_data()
{
    QTest::addColumn<QString>("title");
    for (const QString &title :
         {u"Show in File Manager"_s, u"Preview Text"_s, u"Paste"_s, u"Copy"_s, u"Favorite"_s,
          u"Tags…"_s, u"New Tag…"_s, u"Delete"_s})
        QTest::newRow(qPrintable(title)) << title;
}

void RowMenuTest::anEntryThatIsNoLongerListedDoesNothing()
{
    QFETCH(const QString, title);
    LanguageManager language(*m_defaults);
    language.install();
    ClipboardItem item = SampleHistory::textItem(u"one"_s);
    if (title == u"Show in File Manager"_s) {
        item = fileItem(u"/tmp/notes.txt"_s);
        item.fileBookmarkData = "token";
        m_files->bookmarks.places = {{"token", {QUrl::fromLocalFile(*item.filePath), false}}};
    }
    makeHistory(ClipboardItemList{shared(item)} + SampleHistory::texts({u"two"_s}));
    int count = 0;
    m_controller->onPreviewRequested = [&](const ClipboardItemPointer &, QWidget &) { ++count; };
    m_controller->onWindowHidden = [&] { ++count; };
    if (title != u"New Tag…"_s)
        m_controller->onTagPopoverRequested = [&](const QUuid &) { ++count; };
    rightClick(0);
    search(u"two"_s);
    choose(title);
    m_scheduler->advance(0ms);
    QCOMPARE(count, 0);
    QVERIFY(m_fileViewer->shown.isEmpty());
    QVERIFY(!m_view->window()->findChild<NewTagAlert *>());
    QVERIFY(m_pasted.isEmpty());
    QVERIFY(m_copied.isEmpty());
    QVERIFY(m_toggled.isEmpty());
    QCOMPARE(m_manager->items().size(), 2);
}

void RowMenuTest::aListThatMovedDoesNotMisleadTheMenu()
{
    const ClipboardItemList items = SampleHistory::numbered(3);
    make(items);
    rightClick(1);
    m_controller->setItems(SampleHistory::texts({u"new"_s}) + items);
    m_controller->applyFilters(ClipboardTableViewController::Scroll::Keep);
    choose(u"Paste"_s);
    QCOMPARE(m_pasted, QStringList{u"entry 1"_s});
}

void RowMenuTest::theMenuGoesWithItsEntry()
{
    const ClipboardItemList items = SampleHistory::numbered(3);
    make(items);
    const auto show = [this](const ClipboardItemList &shown) {
        m_controller->setItems(shown);
        m_controller->applyFilters(ClipboardTableViewController::Scroll::Keep);
    };
    rightClick(2);
    show({items[2], items[0], items[1]});
    QVERIFY(openMenu()); // It has only moved.
    show({items[2], items[1]});
    QVERIFY(openMenu()); // Another one has gone.
    show({items[1]});
    QVERIFY(!openMenu());
    rightClick(0);
    QVERIFY(openMenu());
}

void RowMenuTest::dismissingClosesTheMenu()
{
    make(SampleHistory::numbered(3));
    rightClick(1);
    QVERIFY(openMenu());
    m_controller->dismissOverlays();
    QVERIFY(!openMenu());
    m_controller->dismissOverlays();
}

void RowMenuTest::theListMayEndWhileTheMenuIsOpen()
{
    make(SampleHistory::numbered(3));
    rightClick(1);
    const QPointer<QMenu> menu = openMenu();
    tearDownTable();
    QVERIFY(!menu);
    QVERIFY(!openMenu());
    QCoreApplication::processEvents();
}

void RowMenuTest::theMenuHasTheLookThatIsAskedFor()
{
    make(SampleHistory::numbered(3));
    for (const ColorScheme scheme : {ColorScheme::Light, ColorScheme::Dark}) {
        m_controller->setLook({scheme, false});
        rightClick(1);
        QVERIFY(openMenu()->contentsMargins().isNull());
        QCOMPARE(openMenu()->grab().toImage().pixelColor(10, 3),
                 systemColors(scheme).raisedSurfaceColor);
        openMenu()->close();
    }
    m_controller->setLook({ColorScheme::Dark, true});
    rightClick(1);
    QVERIFY(!openMenu()->contentsMargins().isNull());
}

QTEST_MAIN(RowMenuTest)
#include "RowMenuTest.moc"
