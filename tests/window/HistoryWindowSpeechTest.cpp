#include "tests/fakes/Listening.h"
#include "tests/window/HistoryWindowFixture.h"

#include "language/LanguageManager.h"
#include "tags/TagHoverContainer.h"
#include "window/FilterBarView.h"
#include "window/HistoryListModel.h"
#include "window/HistoryRowAccessible.h"
#include "window/PinButton.h"

#include <QAccessible>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// What a screen reader is told, as "what: name [description]".
QStringList heard;

QString nameOf(QAccessible::Event event)
{
    switch (event) {
    case QAccessible::Focus: return u"focus"_s;
    case QAccessible::SelectionAdd: return u"selected"_s;
    case QAccessible::ObjectCreated: return u"new"_s;
    case QAccessible::NameChanged: return u"name"_s;
    case QAccessible::DescriptionChanged: return u"description"_s;
    default: return {};
    }
}

void note(QAccessibleEvent *event)
{
    const QString what = nameOf(event->type());
    const QAccessibleInterface *place = event->accessibleInterface();
    if (what.isEmpty() || !place)
        return;
    const auto kind = event->type() == QAccessible::DescriptionChanged ? QAccessible::Description
                                                                        : QAccessible::Name;
    heard.append(what + u": "_s + place->text(kind));
}

/// All below \a root that is to be seen, itself included.
QList<QAccessibleInterface *> everythingIn(QAccessibleInterface *root)
{
    QList<QAccessibleInterface *> found{root};
    for (int i = 0; i < root->childCount(); ++i) {
        QAccessibleInterface *child = root->child(i);
        if (child && !child->state().invisible)
            found += everythingIn(child);
    }
    return found;
}

} // namespace

class HistoryWindowSpeechTest : public QObject, private HistoryWindowFixture
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void theWindowIsAWindowWithItsParts();
    void whatIsMereDecorationIsLeftOut();
    void whateverTakesTheFocusHasAName_data();
    void whateverTakesTheFocusHasAName();
    void theSearchFieldTellsItsTextAndCaret();
    void namesFollowTheLanguage();
    void thePinTellsItsState();
    void thePinIsTurnedByThoseWhoDoNotSee();
    void rowsAreItemsOfTheList();
    void aRowTellsItsState();
    void aRowSpeaksWhatItShows();
    void aRowSpeaksInTheLanguageOfTheInterface();
    void whatHasNoSoundIsLeftOut();
    void aRowThatIsNoTextSpeaksItsKindOnce();
    void aRowStaysThatOfItsEntry();
    void aRowOfAnEntryThatIsNotListedIsNowhere();
    void aRowIsPressed();
    void aRowIsMadeAFavorite();
    void aRowOpensItsMenu();
    void aRowTakesTheFocus();
    void arrowsInTheFieldAreHeardAsRows();
    void typingIsHeardInTheFieldAgain();
    void arrowsInTheListAreHeardOnce();
    void theNumberOfResultsIsToldWhenTypingRests();
    void nothingFoundIsToldAndCanBeRead();
    void aNewRowIsTold();
    void aListThatGrowsByManyIsNotToldRowByRow();
    void aChangedRowIsTold();
    void aRefusedFavoriteIsTold();
    void theRowMenuHasANameAndItsEntries();
    void tagsInTheMenuAreSwitches();
    void theAlertIsADialog();
    void placesOfAnEndedWindowAreForgotten();
    void rowsOfGoneEntriesAreForgotten();
    void nobodyListeningIsToldNothing();

private:
    QAccessibleInterface *spoken(QObject *object)
    {
        return QAccessible::queryAccessibleInterface(object);
    }
    QAccessibleInterface *list() { return spoken(table()); }
    QAccessibleInterface *row(int place) { return list()->child(place); }
    QString name(QAccessibleInterface *place) { return place->text(QAccessible::Name); }

    void doAction(QAccessibleInterface *place, const QString &action)
    {
        place->actionInterface()->doAction(action);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::MetaCall);
    }

    void makeAndOpen(const ClipboardItemList &items = SampleHistory::mixed())
    {
        make(items);
        openWholly();
        heard.clear();
    }

    std::unique_ptr<LanguageManager> m_languages;
};

void HistoryWindowSpeechTest::initTestCase()
{
    QAccessible::installUpdateHandler(note);
}

void HistoryWindowSpeechTest::init()
{
    setListening(true);
    setUpWindow();
    m_languages = std::make_unique<LanguageManager>(*m_defaults);
    m_languages->install();
    m_languages->setLanguage(AppLanguage::English);
}

void HistoryWindowSpeechTest::cleanup()
{
    tearDownWindow();
    m_languages.reset();
}

void HistoryWindowSpeechTest::theWindowIsAWindowWithItsParts()
{
    makeAndOpen();
    QAccessibleInterface *window = spoken(&m_window->shell());
    QCOMPARE(window->role(), QAccessible::Window);
    QCOMPARE(name(window), u"Clipboard History"_s);
    QVERIFY(window->state().active);
    QCOMPARE(window->childCount(), 1);
    QAccessibleInterface *content = window->child(0);
    QList<QAccessible::Role> roles;
    for (int i = 0; i < content->childCount(); ++i) {
        QCOMPARE(content->child(i)->parent(), content);
        QCOMPARE(content->indexOfChild(content->child(i)), i);
        roles.append(content->child(i)->role());
    }
    QCOMPARE(roles, (QList<QAccessible::Role>{QAccessible::Graphic, QAccessible::EditableText,
                                              QAccessible::Grouping, QAccessible::CheckBox,
                                              QAccessible::Client}));
    QCOMPARE(list()->role(), QAccessible::List);
    QCOMPARE(name(list()), u"Clipboard History"_s);
    QCOMPARE(name(spoken(part("searchIcon"))), u"Search"_s);
    QCOMPARE(name(spoken(part("filterBar"))), u"Filter"_s);
}

void HistoryWindowSpeechTest::whatIsMereDecorationIsLeftOut()
{
    makeAndOpen();
    QObjectList told;
    for (QAccessibleInterface *place : everythingIn(spoken(&m_window->shell())))
        told.append(place->object());
    for (const char *name : {"windowDragView", "topResizeView", "bottomResizeView", "separatorLine"})
        QVERIFY2(part(name) && !told.contains(part(name)), name);
    QVERIFY(told.contains(field()));
}

void HistoryWindowSpeechTest::whateverTakesTheFocusHasAName_data()
{
    QTest::addColumn<AppLanguage>("language");
    QTest::newRow("English") << AppLanguage::English;
    QTest::newRow("Chinese") << AppLanguage::Chinese;
}

void HistoryWindowSpeechTest::whateverTakesTheFocusHasAName()
{
    QFETCH(AppLanguage, language);
    m_languages->setLanguage(language);
    for (const QString &tag : {u"one"_s, u"two"_s, u"three"_s, u"four"_s, u"five"_s, u"six"_s})
        QVERIFY(m_tags->createTag(tag));
    makeAndOpen();
    QStringList names;
    for (QAccessibleInterface *place : everythingIn(spoken(&m_window->shell()))) {
        if (place->state().focusable || place->actionInterface()) {
            if (place->role() != QAccessible::Client && place->role() != QAccessible::Graphic)
                QVERIFY2(!name(place).isEmpty(), qPrintable(QDebug::toString(place)));
        }
        names.append(name(place));
    }
    QVERIFY(names.contains(language == AppLanguage::English ? u"Favorite"_s : u"收藏"_s));
}

void HistoryWindowSpeechTest::theSearchFieldTellsItsTextAndCaret()
{
    makeAndOpen();
    QTest::keyClicks(field(), u"tide"_s);
    QAccessibleInterface *text = spoken(field());
    QCOMPARE(text->role(), QAccessible::EditableText);
    QCOMPARE(name(text), u"Search"_s);
    QVERIFY(text->state().focused && text->state().focusable && text->state().editable);
    QCOMPARE(text->textInterface()->text(0, 99), u"tide"_s);
    QCOMPARE(text->textInterface()->cursorPosition(), 4);
}

void HistoryWindowSpeechTest::namesFollowTheLanguage()
{
    makeAndOpen();
    m_languages->setLanguage(AppLanguage::Chinese);
    m_window->refreshLanguage();
    QCOMPARE(name(spoken(&m_window->shell())), u"剪贴板历史"_s);
    QCOMPARE(name(spoken(field())), u"搜索"_s);
    QCOMPARE(name(spoken(part("searchIcon"))), u"搜索"_s);
    QCOMPARE(name(spoken(part("filterBar"))), u"筛选"_s);
    QCOMPARE(name(spoken(part("filter.link"))), u"链接"_s);
    QCOMPARE(name(spoken(part("pinButton"))), u"固定窗口"_s);
    QCOMPARE(name(list()), u"剪贴板历史"_s);
}

void HistoryWindowSpeechTest::thePinTellsItsState()
{
    makeAndOpen();
    QAccessibleInterface *pin = spoken(part("pinButton"));
    QVERIFY(pin->state().checkable && !pin->state().checked);
    m_window->togglePin();
    QVERIFY(pin->state().checked);
    QCOMPARE(name(pin), u"Pin window"_s);
    QCOMPARE(pin->text(QAccessible::Description), u"Unpin window"_s);
}

void HistoryWindowSpeechTest::thePinIsTurnedByThoseWhoDoNotSee()
{
    makeAndOpen();
    doAction(spoken(part("pinButton")), QAccessibleActionInterface::toggleAction());
    QVERIFY(m_window->isPinned());
    QCOMPARE(part("pinButton")->toolTip(), u"Unpin window"_s);
    QTest::mouseClick(part("pinButton"), Qt::LeftButton);
    QVERIFY(!m_window->isPinned());
}

void HistoryWindowSpeechTest::rowsAreItemsOfTheList()
{
    makeAndOpen(SampleHistory::numbered(120));
    QCOMPARE(list()->childCount(), 120);
    for (const int place : {0, 3, 119}) {
        QCOMPARE(row(place)->role(), QAccessible::ListItem);
        QCOMPARE(row(place)->parent(), list());
        QCOMPARE(list()->indexOfChild(row(place)), place);
        QVERIFY(name(row(place)).contains(u"entry %1,"_s.arg(place)));
    }
    QCOMPARE(list()->child(120), nullptr);
    QCOMPARE(list()->child(-1), nullptr);
    const QPoint middle = row(1)->rect().center();
    QCOMPARE(list()->childAt(middle.x(), middle.y()), row(1));
}

void HistoryWindowSpeechTest::aRowTellsItsState()
{
    makeAndOpen(SampleHistory::numbered(120));
    QVERIFY(row(2)->state().selectable && row(2)->state().focusable);
    QVERIFY(!row(2)->state().selected && !row(2)->state().focused);
    QVERIFY(!row(2)->state().offscreen && !row(2)->state().invisible);
    QVERIFY(row(119)->state().offscreen);
    table()->selectRow(2);
    QVERIFY(row(2)->state().selected && !row(2)->state().focused);
    table()->setFocus();
    QVERIFY(row(2)->state().focused);
    QCOMPARE(list()->focusChild(), row(2));
    QVERIFY(!row(1)->state().focused);
}

void HistoryWindowSpeechTest::aRowSpeaksWhatItShows()
{
    ClipboardItem item = SampleHistory::textItem(u"The line\nthe next"_s, 2min);
    item.sourceAppBundleID = u"mail"_s;
    item.tags = QStringList{u"red"_s, u"blue"_s, u"old"_s};
    item.isFavorite = true;
    makeAndOpen({SampleHistory::shared(item)});
    QCOMPARE(name(row(0)), u"Text, The line / the next, from Mail, tagged red, blue, and 1 more, "
                           "2 minutes ago, favorite"_s);
}

void HistoryWindowSpeechTest::aRowSpeaksInTheLanguageOfTheInterface()
{
    m_languages->setLanguage(AppLanguage::Chinese);
    ClipboardItem item = SampleHistory::textItem(u"一行"_s, 2min);
    item.sourceAppBundleID = u"mail"_s;
    item.tags = QStringList{u"红"_s};
    item.isFavorite = true;
    makeAndOpen({SampleHistory::shared(item)});
    QCOMPARE(name(row(0)), u"文本, 一行, 来自Mail, 标签红, 2分钟前, 已收藏"_s);
}

void HistoryWindowSpeechTest::whatHasNoSoundIsLeftOut()
{
    const QString quiet = u"a\u202Eb\u200Bc\u0007d\uFEFFe\u00ADf"_s;
    makeAndOpen({SampleHistory::shared(SampleHistory::textItem(quiet))});
    QCOMPARE(name(row(0)), u"Text, abcdef, just now"_s);
}

void HistoryWindowSpeechTest::aRowThatIsNoTextSpeaksItsKindOnce()
{
    using Type = ClipboardContentType;
    makeAndOpen({SampleHistory::shared(SampleHistory::item(Type::Image)),
                 SampleHistory::shared(SampleHistory::item(Type::File)),
                 SampleHistory::shared(SampleHistory::textItem(u"  "_s))});
    QCOMPARE(name(row(0)), u"Image, just now"_s);
    QCOMPARE(name(row(1)), u"File, just now"_s);
    QCOMPARE(name(row(2)), u"Text, just now"_s);
}

void HistoryWindowSpeechTest::aRowStaysThatOfItsEntry()
{
    const ClipboardItemList items = SampleHistory::numbered(5);
    makeAndOpen(items);
    QAccessibleInterface *second = row(1);
    m_window->updateItems(SampleHistory::texts({u"new"_s}) + items);
    QCOMPARE(row(2), second);
    QCOMPARE(list()->indexOfChild(second), 2);
    QVERIFY(name(second).contains(u"entry 1"_s));
}

void HistoryWindowSpeechTest::aRowOfAnEntryThatIsNotListedIsNowhere()
{
    makeAndOpen(SampleHistory::numbered(5));
    QAccessibleInterface *second = row(1);
    QTest::keyClicks(field(), u"entry 4"_s);
    QCOMPARE(list()->childCount(), 1);
    QCOMPARE(list()->indexOfChild(second), -1);
    QVERIFY(second->state().invisible && second->state().invalid);
    QVERIFY(name(second).isEmpty());
    QVERIFY(second->rect().isEmpty());
    QVERIFY(second->actionInterface()->actionNames().isEmpty());
    doAction(second, QAccessibleActionInterface::pressAction());
    QVERIFY(m_pasted.isEmpty());
}

void HistoryWindowSpeechTest::aRowIsPressed()
{
    makeAndOpen(SampleHistory::numbered(5));
    QAccessibleActionInterface *actions = row(3)->actionInterface();
    QCOMPARE(actions->actionNames().first(), QAccessibleActionInterface::pressAction());
    QCOMPARE(actions->localizedActionName(QAccessibleActionInterface::pressAction()), u"Paste"_s);
    doAction(row(3), QAccessibleActionInterface::pressAction());
    QCOMPARE(m_pasted, QStringList{u"entry 3"_s});
}

void HistoryWindowSpeechTest::aRowIsMadeAFavorite()
{
    makeAndOpen(SampleHistory::numbered(5));
    const QString favorite = HistoryRowAccessible::favoriteAction();
    QCOMPARE(row(2)->actionInterface()->localizedActionName(favorite), u"Favorite"_s);
    doAction(row(2), favorite);
    QVERIFY(table()->items().at(2)->isFavorite);
    QVERIFY(name(row(2)).endsWith(u", favorite"_s));
    QCOMPARE(row(2)->actionInterface()->localizedActionName(favorite), u"Unfavorite"_s);
}

void HistoryWindowSpeechTest::aRowOpensItsMenu()
{
    makeAndOpen(SampleHistory::numbered(5));
    doAction(row(2), QAccessibleActionInterface::showMenuAction());
    QVERIFY(QApplication::activePopupWidget());
    QCOMPARE(QApplication::activePopupWidget()->objectName(), u"rowMenu"_s);
    QCOMPARE(table()->selectedRow(), 2);
}

void HistoryWindowSpeechTest::aRowTakesTheFocus()
{
    makeAndOpen(SampleHistory::numbered(120));
    doAction(row(60), QAccessibleActionInterface::setFocusAction());
    QVERIFY(table()->hasFocus());
    QVERIFY(row(60)->state().focused && row(60)->state().selected && !row(60)->state().offscreen);
}

void HistoryWindowSpeechTest::arrowsInTheFieldAreHeardAsRows()
{
    makeAndOpen(SampleHistory::numbered(5));
    QTest::keyClick(field(), Qt::Key_Down);
    QTest::keyClick(field(), Qt::Key_Down);
    heard.removeIf([](const QString &event) { return !event.startsWith(u"focus"_s); });
    QCOMPARE(heard, (QStringList{u"focus: Text, entry 0, just now"_s,
                                 u"focus: Text, entry 1, just now"_s}));
    QVERIFY(row(1)->state().focused);
    QVERIFY(field()->hasFocus());
}

void HistoryWindowSpeechTest::typingIsHeardInTheFieldAgain()
{
    makeAndOpen(SampleHistory::numbered(5));
    QTest::keyClick(field(), Qt::Key_Down);
    heard.clear();
    QTest::keyClicks(field(), u"en"_s);
    QCOMPARE(heard.filter(u"focus"_s), QStringList{u"focus: Search"_s});
    QVERIFY(!row(0)->state().focused);
}

void HistoryWindowSpeechTest::arrowsInTheListAreHeardOnce()
{
    makeAndOpen(SampleHistory::numbered(5));
    table()->setFocus();
    QTest::keyClick(table(), Qt::Key_Down);
    heard.clear();
    QTest::keyClick(table(), Qt::Key_Down);
    QCOMPARE(heard.filter(u"focus"_s), QStringList{u"focus: Text, entry 1, just now"_s});
    QCOMPARE(heard.filter(u"selected"_s), QStringList{u"selected: Text, entry 1, just now"_s});
}

void HistoryWindowSpeechTest::theNumberOfResultsIsToldWhenTypingRests()
{
    makeAndOpen(SampleHistory::numbered(20));
    QTest::keyClicks(field(), u"entry 1"_s);
    pass(400ms);
    QVERIFY(heard.filter(u"description"_s).isEmpty());
    pass(200ms);
    QCOMPARE(heard.filter(u"description"_s), QStringList{u"description: Results: 11"_s});
    QCOMPARE(spoken(field())->text(QAccessible::Description), u"Results: 11"_s);
}

void HistoryWindowSpeechTest::nothingFoundIsToldAndCanBeRead()
{
    makeAndOpen(SampleHistory::numbered(20));
    QTest::keyClicks(field(), u"nowhere"_s);
    pass(600ms);
    QCOMPARE(heard.filter(u"description"_s),
             QStringList{u"description: Nothing matches “nowhere”"_s});
    QCOMPARE(list()->childCount(), 1);
    QCOMPARE(row(0)->role(), QAccessible::StaticText);
    QCOMPARE(name(row(0)), u"Nothing matches “nowhere”"_s);
    QCOMPARE(row(0)->text(QAccessible::Description), u"Esc clears the search"_s);
    QCOMPARE(row(0)->parent(), list());
    QCOMPARE(list()->indexOfChild(row(0)), 0);
    QVERIFY(!row(0)->state().invisible);
}

void HistoryWindowSpeechTest::aNewRowIsTold()
{
    const ClipboardItemList items = SampleHistory::numbered(5);
    makeAndOpen(items);
    m_window->updateItems(SampleHistory::texts({u"fresh"_s}) + items);
    QCOMPARE(heard.filter(u"new: Text"_s), QStringList{u"new: Text, fresh, just now"_s});
}

void HistoryWindowSpeechTest::aListThatGrowsByManyIsNotToldRowByRow()
{
    makeAndOpen(SampleHistory::numbered(500));
    QTest::keyClicks(field(), u"entry 499"_s);
    QCOMPARE(list()->childCount(), 1);
    heard.clear();
    QTest::keyClick(field(), Qt::Key_Escape);
    QCOMPARE(list()->childCount(), 500);
    QVERIFY(heard.filter(u"new: "_s).isEmpty());
}

void HistoryWindowSpeechTest::aChangedRowIsTold()
{
    makeAndOpen(SampleHistory::numbered(5));
    m_window->tableViewController().toggleFavorite(table()->items().at(1)->id);
    QCOMPARE(heard.filter(u"name: "_s), QStringList{u"name: Text, entry 1, just now, favorite"_s});
}

void HistoryWindowSpeechTest::aRefusedFavoriteIsTold()
{
    m_defaults->set(u"history.limit"_s, 1000);
    ClipboardItemList items = SampleHistory::numbered(1001);
    for (int i = 0; i < 1000; ++i) {
        auto favorite = std::make_shared<ClipboardItem>(*items[i]);
        favorite->isFavorite = true;
        items[i] = favorite;
    }
    std::rotate(items.begin(), items.end() - 1, items.end());
    makeAndOpen(items);
    m_window->tableViewController().toggleFavorite(items.first()->id);
    QCOMPARE(heard.filter(u"description: "_s),
             QStringList{u"description: Favorite limit reached"_s});
    heard.clear();
    QTest::keyClick(field(), Qt::Key_Down);
    m_window->tableViewController().toggleFavorite(items.first()->id);
    QCOMPARE(heard.filter(u"description: "_s),
             QStringList{u"description: Favorite limit reached"_s});
    QCOMPARE(row(0)->text(QAccessible::Description), u"Favorite limit reached"_s);
}

void HistoryWindowSpeechTest::theRowMenuHasANameAndItsEntries()
{
    makeAndOpen(SampleHistory::numbered(2));
    QAccessibleInterface *menu = spoken(&openRowMenu(1));
    QCOMPARE(menu->role(), QAccessible::PopupMenu);
    QCOMPARE(name(menu), u"Actions for the entry"_s);
    QStringList entries;
    for (int i = 0; i < menu->childCount(); ++i) {
        if (menu->child(i)->role() == QAccessible::MenuItem)
            entries.append(name(menu->child(i)));
    }
    QCOMPARE(entries, (QStringList{u"Paste"_s, u"Copy"_s, u"Favorite"_s, u"New Tag…"_s,
                                   u"Delete"_s}));
    QVERIFY(menu->child(0)->state().focused);
}

void HistoryWindowSpeechTest::tagsInTheMenuAreSwitches()
{
    QVERIFY(m_tags->createTag(u"travel"_s));
    fillHistory(SampleHistory::numbered(2));
    makeAndOpen(m_manager->items());
    auto *chip = openRowMenu(1).findChild<TagHoverContainer *>();
    QVERIFY(chip);
    QAccessibleInterface *tag = spoken(chip);
    QCOMPARE(tag->role(), QAccessible::CheckBox);
    QCOMPARE(name(tag), u"travel"_s);
    QCOMPARE(name(tag->parent()), u"Tags"_s);
    QVERIFY(!tag->state().checked);
    doAction(tag, QAccessibleActionInterface::toggleAction());
    QVERIFY(tag->state().checked);
    QCOMPARE(table()->items().at(1)->tags, QStringList{u"travel"_s});
}

void HistoryWindowSpeechTest::theAlertIsADialog()
{
    makeAndOpen(SampleHistory::numbered(2));
    QAccessibleInterface *alert = spoken(&askForATag());
    QCOMPARE(alert->role(), QAccessible::Dialog);
    QVERIFY(alert->state().modal);
    QCOMPARE(name(alert), u"New Tag"_s);
    QCOMPARE(alert->parent(), spoken(&m_window->shell())->child(0));
    QVERIFY(alert->parent()->indexOfChild(alert) >= 0);
    QStringList names;
    for (QAccessibleInterface *place : everythingIn(alert)) {
        if (place->state().focusable)
            names.append(name(place));
        if (place->state().focused)
            QCOMPARE(place->text(QAccessible::Description),
                     u"Enter a tag name (up to 20 characters):"_s);
    }
    names.sort();
    QCOMPARE(names, (QStringList{u"Cancel"_s, u"New Tag"_s, u"OK"_s}));
}

void HistoryWindowSpeechTest::placesOfAnEndedWindowAreForgotten()
{
    makeAndOpen(SampleHistory::numbered(2));
    QList<QAccessible::Id> told;
    for (QAccessibleInterface *place : everythingIn(spoken(&m_window->shell())))
        told.append(QAccessible::uniqueId(place));
    QVERIFY(told.size() > 10);
    told.removeOne(QAccessible::uniqueId(spoken(&m_window->shell()))); // It may be opened again.
    m_window.reset();
    for (const QAccessible::Id id : told)
        QCOMPARE(QAccessible::accessibleInterface(id), nullptr);
}

void HistoryWindowSpeechTest::rowsOfGoneEntriesAreForgotten()
{
    makeAndOpen(SampleHistory::numbered(1));
    const QAccessible::Id first = QAccessible::uniqueId(row(0));
    constexpr int kManyChanges = 100;
    for (int i = 0; i < kManyChanges; ++i) {
        QVERIFY(i > 1 || QAccessible::accessibleInterface(first)); // They may come back.
        m_window->updateItems(SampleHistory::numbered(1));
        QCOMPARE(name(row(0)), u"Text, entry 0, just now"_s);
    }
    QCOMPARE(QAccessible::accessibleInterface(first), nullptr);
    QCOMPARE(list()->indexOfChild(row(0)), 0);
}

void HistoryWindowSpeechTest::nobodyListeningIsToldNothing()
{
    setListening(false);
    make(SampleHistory::numbered(50));
    openWholly();
    heard.clear();
    QTest::keyClick(field(), Qt::Key_Down);
    QTest::keyClicks(field(), u"entry 1"_s);
    pass(600ms);
    QVERIFY(heard.isEmpty());
    QVERIFY(field()->accessibleDescription().isEmpty());
}

QTEST_MAIN(HistoryWindowSpeechTest)
#include "HistoryWindowSpeechTest.moc"
