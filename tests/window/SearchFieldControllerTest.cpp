#include "tests/fakes/FakeTextPreview.h"
#include "tests/window/TableFixture.h"

#include "language/LanguageManager.h"
#include "window/SearchField.h"
#include "window/SearchFieldController.h"

#include <QScrollBar>
#include <QSignalSpy>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

using Focus = TextPreview::Focus;

class SearchFieldControllerTest : public QObject, private TableFixture
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void typingSearchesTheList();
    void whatThePersonDidNotTypeIsNotSearchedFor();
    void returnPastesTheSelectedRowOrTheFirst();
    void arrowsMoveThroughTheList();
    void keysOfTheListReachIt();
    void escapeEmptiesTheFieldAndThenCancels();
    void clearingListsEverythingFromTheTop();
    void withoutAPreviewAllIsTheLists();
    void anOpenPreviewGetsTheField();
    void typingSearchesInAnOpenPreview();
    void arrowsGoFromMatchToMatch();
    void otherKeysDoNothingInAnOpenPreview();
    void escapeEmptiesTheFieldAndThenClosesThePreview();
    void afterThePreviewTheListHasTheFieldAgain();
    void aPreviewThatGoesOnKeepsTheTextOfTheList();
    void clearingForgetsTheTextThatWasKeptAside();
    void aPreviewThatFadesOutStillGetsTheKeys();
    void aPreviewThatIsGoneGetsNoKeys();
    void whileTextIsEditedTheFieldIsIdle();
    void anIdleFieldLeavesTheFocusToNobody();
    void editingEndsWithThePreview();
    void editingWithoutAPreviewLeavesTheFieldAlone();
    void namesFollowTheLanguage();

private:
    void useController(TextPreview *preview)
    {
        m_search = std::make_unique<SearchFieldController>(*m_field, *m_view, *m_controller,
                                                           preview);
        m_search->refreshLanguage();
    }

    void openPreview()
    {
        m_preview->isShown = true;
        m_search->setPreviewOpen(true);
    }
    void closePreview()
    {
        m_preview->isShown = false;
        m_search->setPreviewOpen(false);
    }

    void press(Qt::Key key) { QTest::keyClick(m_field.get(), key); }
    void type(const QString &text) { QTest::keyClicks(m_field.get(), text); }

    std::unique_ptr<QWidget> m_window;
    std::unique_ptr<SearchField> m_field;
    std::unique_ptr<FakeTextPreview> m_preview;
    std::unique_ptr<LanguageManager> m_languages;
    std::unique_ptr<SearchFieldController> m_search;
};

void SearchFieldControllerTest::init()
{
    setUpTable();
    m_languages = std::make_unique<LanguageManager>(*m_defaults);
    m_languages->install();
    m_languages->setLanguage(AppLanguage::English);
    make(SampleHistory::numbered(30));
    m_window = std::make_unique<QWidget>();
    m_field = std::make_unique<SearchField>(*m_scheduler, m_window.get());
    m_view->setParent(m_window.get());
    m_window->show();
    m_view->show();
    m_preview = std::make_unique<FakeTextPreview>();
    useController(m_preview.get());
}

void SearchFieldControllerTest::cleanup()
{
    m_search.reset();
    m_preview.reset();
    m_field.reset();
    tearDownTable();
    m_window.reset();
    m_languages.reset();
}

void SearchFieldControllerTest::typingSearchesTheList()
{
    type(u"entry 2"_s);
    QCOMPARE(m_controller->searchText(), u"entry 2"_s);
    QCOMPARE(listedTexts().size(), 11);
    press(Qt::Key_Backspace);
    QCOMPARE(listedTexts().size(), 30);
    QVERIFY(m_preview->queries.isEmpty());
}

void SearchFieldControllerTest::whatThePersonDidNotTypeIsNotSearchedFor()
{
    m_field->setText(u"entry 2"_s);
    QCOMPARE(m_controller->searchText(), QString());
    QCOMPARE(listedTexts().size(), 30);
}

void SearchFieldControllerTest::returnPastesTheSelectedRowOrTheFirst()
{
    press(Qt::Key_Return);
    m_view->selectRow(3);
    press(Qt::Key_Enter);
    QCOMPARE(m_pasted, (QStringList{u"entry 0"_s, u"entry 3"_s}));
}

void SearchFieldControllerTest::arrowsMoveThroughTheList()
{
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    QCOMPARE(m_view->selectedRow(), 2);
    press(Qt::Key_Up);
    QCOMPARE(m_view->selectedRow(), 1);
    QVERIFY(m_preview->steps.isEmpty());
}

void SearchFieldControllerTest::keysOfTheListReachIt()
{
    const QSignalSpy menu(m_view.get(), &ClipboardTableView::menuRequested);
    m_view->selectRow(0);
    press(Qt::Key_PageDown);
    const int row = m_view->selectedRow();
    QVERIFY(row > 1);
    press(Qt::Key_PageUp);
    QCOMPARE(m_view->selectedRow(), 0);
    QCOMPARE(menu.count(), 0);
    press(Qt::Key_Menu);
    QCOMPARE(menu.count(), 1);
    QCOMPARE(menu.first().first().toInt(), 0);
}

void SearchFieldControllerTest::escapeEmptiesTheFieldAndThenCancels()
{
    const QSignalSpy cancelled(m_search.get(), &SearchFieldController::cancelled);
    type(u"entry 2"_s);
    press(Qt::Key_Escape);
    QCOMPARE(m_field->text(), QString());
    QCOMPARE(listedTexts().size(), 30);
    QCOMPARE(cancelled.count(), 0);
    press(Qt::Key_Escape);
    QCOMPARE(cancelled.count(), 1);
}

void SearchFieldControllerTest::clearingListsEverythingFromTheTop()
{
    type(u"entry"_s);
    m_view->verticalScrollBar()->setValue(500);
    m_search->clearListSearch();
    QCOMPARE(m_field->text(), QString());
    QCOMPARE(m_controller->searchText(), QString());
    QCOMPARE(listedTexts().size(), 30);
    QCOMPARE(m_view->verticalScrollBar()->value(), 0);
}

void SearchFieldControllerTest::withoutAPreviewAllIsTheLists()
{
    useController(nullptr);
    const QSignalSpy cancelled(m_search.get(), &SearchFieldController::cancelled);
    type(u"entry 2"_s);
    QCOMPARE(listedTexts().size(), 11);
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    QCOMPARE(m_pasted, QStringList{u"entry 2"_s});
    press(Qt::Key_Escape);
    press(Qt::Key_Escape);
    QCOMPARE(cancelled.count(), 1);
    m_search->setPreviewTextEditing(true);
    QVERIFY(m_field->isEnabled());
}

void SearchFieldControllerTest::anOpenPreviewGetsTheField()
{
    type(u"entry 2"_s);
    QCOMPARE(m_field->placeholderText(), u"Search"_s);
    openPreview();
    QCOMPARE(m_field->text(), QString());
    QCOMPARE(m_field->placeholderText(), u"Search in Preview"_s);
    QCOMPARE(m_field->accessibleName(), u"Search in Preview"_s);
    QVERIFY(m_field->isEnabled());
    QVERIFY(m_preview->queries.isEmpty());
    QCOMPARE(listedTexts().size(), 11);
}

void SearchFieldControllerTest::typingSearchesInAnOpenPreview()
{
    openPreview();
    type(u"no"_s);
    QCOMPARE(m_preview->queries, (QStringList{u"n"_s, u"no"_s}));
    QCOMPARE(m_controller->searchText(), QString());
    QCOMPARE(listedTexts().size(), 30);
}

void SearchFieldControllerTest::arrowsGoFromMatchToMatch()
{
    openPreview();
    press(Qt::Key_Down);
    press(Qt::Key_Up);
    QCOMPARE(m_preview->steps, (QList<int>{1, -1}));
    QCOMPARE(m_view->selectedRow(), -1);
}

void SearchFieldControllerTest::otherKeysDoNothingInAnOpenPreview()
{
    const QSignalSpy menu(m_view.get(), &ClipboardTableView::menuRequested);
    m_view->selectRow(0);
    openPreview();
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_PageDown, Qt::Key_Menu})
        press(key);
    QVERIFY(m_pasted.isEmpty());
    QCOMPARE(m_view->selectedRow(), 0);
    QCOMPARE(menu.count(), 0);
}

void SearchFieldControllerTest::escapeEmptiesTheFieldAndThenClosesThePreview()
{
    const QSignalSpy cancelled(m_search.get(), &SearchFieldController::cancelled);
    openPreview();
    type(u"n"_s);
    press(Qt::Key_Escape);
    QCOMPARE(m_field->text(), QString());
    QCOMPARE(m_preview->queries, (QStringList{u"n"_s, QString()}));
    QVERIFY(m_preview->hideRequests.isEmpty());
    press(Qt::Key_Escape);
    QCOMPARE(m_preview->hideRequests, QList<Focus>{Focus::Restore});
    QCOMPARE(cancelled.count(), 0);
}

void SearchFieldControllerTest::afterThePreviewTheListHasTheFieldAgain()
{
    type(u"entry 2"_s);
    m_view->selectRow(4);
    openPreview();
    type(u"no"_s);
    closePreview();
    QCOMPARE(m_field->text(), u"entry 2"_s);
    QCOMPARE(m_field->placeholderText(), u"Search"_s);
    QCOMPARE(listedTexts().size(), 11);
    QCOMPARE(m_view->selectedRow(), 4);
    type(u"7"_s);
    QCOMPARE(listedTexts(), QStringList{u"entry 27"_s});
    QCOMPARE(m_preview->queries.size(), 2);
}

void SearchFieldControllerTest::aPreviewThatGoesOnKeepsTheTextOfTheList()
{
    type(u"entry 2"_s);
    openPreview();
    type(u"no"_s);
    openPreview();
    QCOMPARE(m_field->text(), u"no"_s);
    closePreview();
    QCOMPARE(m_field->text(), u"entry 2"_s);
}

void SearchFieldControllerTest::clearingForgetsTheTextThatWasKeptAside()
{
    type(u"entry 2"_s);
    openPreview();
    m_search->clearListSearch();
    closePreview();
    QCOMPARE(m_field->text(), QString());
    QCOMPARE(listedTexts().size(), 30);
}

void SearchFieldControllerTest::aPreviewThatFadesOutStillGetsTheKeys()
{
    openPreview();
    m_preview->hidePreview(Focus::Leave);
    press(Qt::Key_Return);
    press(Qt::Key_Down);
    QVERIFY(m_pasted.isEmpty());
    QCOMPARE(m_preview->steps, QList<int>{1});
}

void SearchFieldControllerTest::aPreviewThatIsGoneGetsNoKeys()
{
    openPreview();
    closePreview();
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    QVERIFY(m_preview->steps.isEmpty());
    QCOMPARE(m_pasted, QStringList{u"entry 0"_s});
}

void SearchFieldControllerTest::whileTextIsEditedTheFieldIsIdle()
{
    openPreview();
    m_search->setPreviewTextEditing(true);
    QVERIFY(!m_field->isEnabled());
    m_search->setPreviewTextEditing(false);
    QVERIFY(m_field->isEnabled());
}

void SearchFieldControllerTest::anIdleFieldLeavesTheFocusToNobody()
{
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    m_field->setFocus();
    QCOMPARE(m_window->focusWidget(), m_field.get());
    openPreview();
    m_search->setPreviewTextEditing(true);
    QCOMPARE(m_window->focusWidget(), nullptr);
}

void SearchFieldControllerTest::editingEndsWithThePreview()
{
    openPreview();
    m_search->setPreviewTextEditing(true);
    closePreview();
    QVERIFY(m_field->isEnabled());
    openPreview();
    QVERIFY(m_field->isEnabled());
}

void SearchFieldControllerTest::editingWithoutAPreviewLeavesTheFieldAlone()
{
    m_search->setPreviewTextEditing(true);
    QVERIFY(m_field->isEnabled());
}

void SearchFieldControllerTest::namesFollowTheLanguage()
{
    m_languages->setLanguage(AppLanguage::Chinese);
    m_search->refreshLanguage();
    QCOMPARE(m_field->placeholderText(), u"搜索"_s);
    QCOMPARE(m_field->accessibleName(), u"搜索"_s);
    openPreview();
    const QString name = m_field->placeholderText();
    QVERIFY(name != u"搜索"_s && name != u"Search in Preview"_s);
    m_languages->setLanguage(AppLanguage::English);
    m_search->refreshLanguage();
    QCOMPARE(m_field->placeholderText(), u"Search in Preview"_s);
}

QTEST_MAIN(SearchFieldControllerTest)
#include "SearchFieldControllerTest.moc"
