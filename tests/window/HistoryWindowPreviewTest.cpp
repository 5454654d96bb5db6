#include "tests/fakes/FakeTextPreview.h"
#include "tests/window/HistoryWindowFixture.h"

#include "language/LanguageManager.h"
#include "window/FilterButton.h"

#include <qpa/qwindowsysteminterface.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

using Focus = TextPreview::Focus;

class HistoryWindowPreviewTest : public QObject, private HistoryWindowFixture
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { tearDownWindow(); }

    void withoutAPreviewNothingIsShown();
    void spaceInTheListShowsTheRow();
    void theListGivesWayToThePreview();
    void thePreviewBorrowsTheSearchField();
    void afterThePreviewTheListIsAsItWas();
    void goingOnToAnotherEntryKeepsTheListsText();
    void typingSearchesInThePreview();
    void arrowsGoFromMatchToMatch();
    void returnPastesNothing();
    void keysOfTheListDoNothing();
    void escapeEmptiesTheFieldThenClosesThePreview();
    void escapeElsewhereClosesThePreviewOnly_data();
    void escapeElsewhereClosesThePreviewOnly();
    void aFilterClosesThePreview();
    void theWheelIsOfferedToThePreview();
    void whileTheTextIsEditedNothingIsSearched();
    void thePreviewMayTakeTheKeyboard();
    void anotherApplicationClosesTheWindow();
    void hidingClosesThePreviewWithoutTheFocus();
    void aReversalForgetsTheListsText();
    void aSavedTextIsListed();
    void aSaveOfAnEntryThatIsGoneTellsSo();
    void aSaveMayOutliveTheWindow();
    void theLanguageIsFollowed();
    void theWindowMayEndWhileThePreviewIsOpen();

private:
    static constexpr QPointF kHead{300, 40}; ///< Where nothing uses the wheel.

    void openPreview()
    {
        QTest::keyClick(field(), Qt::Key_Down);
        QTest::keyClick(table(), Qt::Key_Space);
    }

    FakeTextPreview *m_preview = nullptr;
};

void HistoryWindowPreviewTest::init()
{
    setUpWindow();
    HistoryWindowCollaborators with = collaborators();
    with.makeTextPreview = [this] {
        auto preview = std::make_unique<FakeTextPreview>();
        m_preview = preview.get();
        return preview;
    };
    m_window = std::make_unique<ClipboardSearchWindow>(with, SampleHistory::mixed());
    watch();
    openWholly();
}

void HistoryWindowPreviewTest::withoutAPreviewNothingIsShown()
{
    make();
    openWholly();
    openPreview();
    QVERIFY(!m_window->tableViewController().onPreviewRequested);
    QVERIFY(part("tableContainerView")->isVisible());
    QCOMPARE(field()->placeholderText(), u"Search"_s);
}

void HistoryWindowPreviewTest::spaceInTheListShowsTheRow()
{
    openPreview();
    QCOMPARE(m_preview->shownItems.size(), 1);
    QCOMPARE(m_preview->shownItems.first(), m_window->tableViewController().items().first());
    QCOMPARE(m_preview->parent, &m_window->shell());
    QCOMPARE(m_preview->responder, table());
    QTest::keyClick(field(), Qt::Key_Space);
    QCOMPARE(m_preview->shownItems.size(), 1);
}

void HistoryWindowPreviewTest::theListGivesWayToThePreview()
{
    openPreview();
    QVERIFY(!part("tableContainerView")->isVisible());
    m_preview->hidePreview(Focus::Leave);
    QVERIFY(!part("tableContainerView")->isVisible());
    m_preview->fadeOut();
    QVERIFY(part("tableContainerView")->isVisible());
}

void HistoryWindowPreviewTest::thePreviewBorrowsTheSearchField()
{
    QTest::keyClicks(field(), u"tide"_s);
    openPreview();
    QCOMPARE(field()->text(), QString());
    QCOMPARE(field()->placeholderText(), u"Search in Preview"_s);
    QCOMPARE(field()->accessibleName(), u"Search in Preview"_s);
    QVERIFY(field()->isEnabled());
    QVERIFY(m_preview->queries.isEmpty());
}

void HistoryWindowPreviewTest::afterThePreviewTheListIsAsItWas()
{
    QTest::keyClicks(field(), u"tide"_s);
    QCOMPARE(rowCount(), 1);
    openPreview();
    QTest::keyClicks(field(), u"moon"_s);
    QCOMPARE(rowCount(), 1);
    m_preview->fadeOut();
    QCOMPARE(field()->text(), u"tide"_s);
    QCOMPARE(field()->placeholderText(), u"Search"_s);
    QCOMPARE(rowCount(), 1);
    QTest::keyClick(field(), Qt::Key_Backspace);
    QCOMPARE(m_window->tableViewController().searchText(), u"tid"_s);
}

void HistoryWindowPreviewTest::goingOnToAnotherEntryKeepsTheListsText()
{
    QTest::keyClicks(field(), u"tide"_s);
    openPreview();
    QTest::keyClicks(field(), u"moon"_s);
    m_preview->onVisibilityChanged(true);
    m_preview->fadeOut();
    QCOMPARE(field()->text(), u"tide"_s);
}

void HistoryWindowPreviewTest::typingSearchesInThePreview()
{
    openPreview();
    QTest::keyClicks(field(), u"ti"_s);
    QCOMPARE(m_preview->queries, (QStringList{u"t"_s, u"ti"_s}));
    QCOMPARE(rowCount(), 10);
    QCOMPARE(m_window->tableViewController().searchText(), QString());
}

void HistoryWindowPreviewTest::arrowsGoFromMatchToMatch()
{
    openPreview();
    const int row = table()->selectedRow();
    QTest::keyClick(field(), Qt::Key_Down);
    QTest::keyClick(field(), Qt::Key_Down);
    QTest::keyClick(field(), Qt::Key_Up);
    QCOMPARE(m_preview->steps, (QList<int>{1, 1, -1}));
    QCOMPARE(table()->selectedRow(), row);
}

void HistoryWindowPreviewTest::returnPastesNothing()
{
    openPreview();
    QTest::keyClick(field(), Qt::Key_Return);
    QVERIFY(m_pasted.isEmpty());
    QVERIFY(!m_window->isHideAnimationInFlight());
    m_preview->fadeOut();
    QTest::keyClick(field(), Qt::Key_Return);
    QCOMPARE(m_pasted.size(), 1);
}

void HistoryWindowPreviewTest::keysOfTheListDoNothing()
{
    openPreview();
    const int row = table()->selectedRow();
    QTest::keyClick(field(), Qt::Key_PageDown);
    QCOMPARE(table()->selectedRow(), row);
    QTest::keyClick(field(), Qt::Key_Menu);
    QVERIFY(!QApplication::activePopupWidget());
}

void HistoryWindowPreviewTest::escapeEmptiesTheFieldThenClosesThePreview()
{
    openPreview();
    QTest::keyClicks(field(), u"x"_s);
    QTest::keyClick(field(), Qt::Key_Escape);
    QCOMPARE(field()->text(), QString());
    QCOMPARE(m_preview->queries.last(), QString());
    QVERIFY(m_preview->hideRequests.isEmpty());
    QTest::keyClick(field(), Qt::Key_Escape);
    QCOMPARE(m_preview->hideRequests, QList<Focus>{Focus::Restore});
    QVERIFY(!m_window->isHideAnimationInFlight());
    m_preview->fadeOut();
    QTest::keyClick(field(), Qt::Key_Escape);
    QVERIFY(m_window->isHideAnimationInFlight());
}

void HistoryWindowPreviewTest::escapeElsewhereClosesThePreviewOnly_data()
{
    QTest::addColumn<bool>("isPinned");
    QTest::newRow("not pinned") << false;
    QTest::newRow("pinned") << true;
}

void HistoryWindowPreviewTest::escapeElsewhereClosesThePreviewOnly()
{
    QFETCH(bool, isPinned);
    if (isPinned)
        m_window->togglePin();
    openPreview();
    QTest::keyClicks(field(), u"x"_s);
    QTest::keyClick(part("filter.all"), Qt::Key_Escape);
    QCOMPARE(m_preview->hideRequests, QList<Focus>{Focus::Restore});
    QCOMPARE(field()->text(), u"x"_s);
    QVERIFY(!m_window->isHideAnimationInFlight());
}

void HistoryWindowPreviewTest::aFilterClosesThePreview()
{
    openPreview();
    QTest::mouseClick(part("filter.text"), Qt::LeftButton);
    QCOMPARE(m_preview->hideRequests, QList<Focus>{Focus::Leave});
    QVERIFY(field()->hasFocus());
    QVERIFY(rowCount() < 10);
    m_preview->fadeOut();
    QTest::mouseClick(part("filter.all"), Qt::LeftButton);
    QCOMPARE(m_preview->hideRequests.size(), 1);
    QCOMPARE(rowCount(), 10);
}

void HistoryWindowPreviewTest::theWheelIsOfferedToThePreview()
{
    const auto turnWheel = [this] {
        QWindow *window = m_window->shell().windowHandle();
        QWindowSystemInterface::handleWheelEvent(window, kHead, window->mapToGlobal(kHead), {},
                                                 QPoint(0, -120));
        QCoreApplication::processEvents();
    };
    turnWheel();
    QCOMPARE(m_preview->wheelCount, 0);
    openPreview();
    turnWheel();
    QCOMPARE(m_preview->wheelCount, 1);
}

void HistoryWindowPreviewTest::whileTheTextIsEditedNothingIsSearched()
{
    openPreview();
    field()->setFocus();
    const QImage before = field()->grab().toImage();
    m_preview->onTextEditingStateChanged(true);
    QVERIFY(!field()->isEnabled());
    QVERIFY(!m_window->shell().focusWidget());
    QVERIFY(field()->grab().toImage() != before);
    m_preview->onTextEditingStateChanged(false);
    QVERIFY(field()->isEnabled());
    m_preview->onTextEditingStateChanged(true);
    m_preview->fadeOut();
    QVERIFY(field()->isEnabled());
    openPreview();
    QVERIFY(field()->isEnabled());
}

void HistoryWindowPreviewTest::thePreviewMayTakeTheKeyboard()
{
    openPreview();
    QWidget previewPanel;
    previewPanel.show();
    previewPanel.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&previewPanel));
    QVERIFY(!m_window->isHideAnimationInFlight());
    m_preview->fadeOut();
    m_window->shell().activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&m_window->shell()));
    previewPanel.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&previewPanel));
    QVERIFY(m_window->isHideAnimationInFlight());
}

void HistoryWindowPreviewTest::anotherApplicationClosesTheWindow()
{
    openPreview();
    m_desktop->onApplicationActivated({u"editor"_s, u"Editor"_s, 7, 7});
    QVERIFY(m_window->isHideAnimationInFlight());
    QCOMPARE(m_preview->hideRequests, QList<Focus>{Focus::Leave});
}

void HistoryWindowPreviewTest::hidingClosesThePreviewWithoutTheFocus()
{
    openPreview();
    m_window->hide();
    QCOMPARE(m_preview->hideRequests, QList<Focus>{Focus::Leave});
    // It fades for longer than the window does.
    pass(160ms);
    QCOMPARE(m_hiddenCount, 1);
    m_preview->fadeOut();
    QVERIFY(!m_window->isVisible());
}

void HistoryWindowPreviewTest::aReversalForgetsTheListsText()
{
    QTest::keyClicks(field(), u"tide"_s);
    openPreview();
    m_window->hide();
    pass(50ms);
    m_window->show();
    m_preview->fadeOut();
    QCOMPARE(field()->text(), QString());
    QCOMPARE(m_window->tableViewController().searchText(), QString());
    QCOMPARE(rowCount(), 10);
}

void HistoryWindowPreviewTest::aSavedTextIsListed()
{
    m_manager->addItem(SampleHistory::textItem(u"before"_s));
    m_manager->drain();
    m_window->updateItems(m_manager->items());
    openPreview();
    std::optional<ClipboardItem> saved;
    m_preview->onTextSaveRequested(m_preview->shownItems.first()->id, u"after"_s,
                                   [&](const auto &item) { saved = item; });
    QTRY_VERIFY(saved);
    QCOMPARE(saved->stringValue->toString(), u"after"_s);
    const ClipboardItemList listed = m_window->tableViewController().items();
    QCOMPARE(listed.size(), 1);
    QCOMPARE(listed.first()->stringValue->toString(), u"after"_s);
}

void HistoryWindowPreviewTest::aSaveOfAnEntryThatIsGoneTellsSo()
{
    bool isAnswered = false;
    m_preview->onTextSaveRequested(QUuid::createUuid(), u"after"_s, [&](const auto &item) {
        QVERIFY(!item);
        isAnswered = true;
    });
    QTRY_VERIFY(isAnswered);
}

void HistoryWindowPreviewTest::aSaveMayOutliveTheWindow()
{
    bool isAnswered = false;
    m_preview->onTextSaveRequested(QUuid::createUuid(), u"after"_s,
                                   [&](const auto &) { isAnswered = true; });
    m_window.reset();
    m_manager->drain();
    QCoreApplication::processEvents();
    QVERIFY(!isAnswered);
}

void HistoryWindowPreviewTest::theLanguageIsFollowed()
{
    LanguageManager language(*m_defaults);
    language.install();
    openPreview();
    language.setLanguage(AppLanguage::Chinese);
    m_window->refreshLanguage();
    QCOMPARE(field()->placeholderText(), u"在预览中搜索"_s);
    m_preview->fadeOut();
    QCOMPARE(field()->placeholderText(), u"搜索"_s);
}

void HistoryWindowPreviewTest::theWindowMayEndWhileThePreviewIsOpen()
{
    openPreview();
    m_window.reset();
    pass(500ms);
    QCOMPARE(m_hiddenCount, 0);
    QVERIFY(!m_pointer->onMousePressed);
}

QTEST_MAIN(HistoryWindowPreviewTest)
#include "HistoryWindowPreviewTest.moc"
