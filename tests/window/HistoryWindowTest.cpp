#include "tests/fakes/FakeDesktopAppearance.h"
#include "tests/fakes/FakePointerMonitor.h"
#include "tests/fakes/HistoryListFixture.h"
#include "tests/window/SampleHistory.h"

#include "appearance/InterfaceFont.h"
#include "language/LanguageManager.h"
#include "tags/MaxLengthTextField.h"
#include "tags/NewTagAlert.h"
#include "window/ClipboardSearchWindow.h"
#include "window/ClipboardSearchWindowCompat.h"
#include "window/ClipboardTableView.h"
#include "window/FilterButton.h"
#include "window/HistoryWindowFactory.h"
#include "window/OverflowMenu.h"
#include "window/PinButton.h"
#include "window/SearchField.h"

#include <QApplication>
#include <QScreen>
#include <QScrollBar>
#include <QClipboard>
#include <QMenu>
#include <QTest>
#include <QWindow>

#include <cmath>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString kFrameKey = u"ClipboardSearchWindowFrame"_s;
const QString kPinKey = u"ClipboardSearchWindowShowsPinButton"_s;

/// Notes what it is asked to do with our window, and whether that was on the screen then.
class WatchedWorkspace : public FakeWorkspace
{
public:
    void prepareOwnWindow(QWindow *window) override
    {
        calls.append(window && window->isVisible() ? u"prepare shown"_s : u"prepare hidden"_s);
    }
    void activateOwnWindow(QWindow *window) override
    {
        calls.append(window && window->isVisible() ? u"activate shown"_s : u"activate hidden"_s);
    }

    QStringList calls;
};

} // namespace

class HistoryWindowTest : public QObject, private HistoryListFixture
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void theDesktopDecidesOnTheKindOfWindow();
    void viewsStandWhereTheyBelong_data();
    void viewsStandWhereTheyBelong();
    void theWindowIsAFramelessToolOnTop();
    void partsHaveNamesForThoseWhoHear();
    void anOpenWindowTakesItsTextsAnew();
    void pillsHoldTheirTitlesInEachLanguage_data();
    void pillsHoldTheirTitlesInEachLanguage();

    void withoutSavedFrameTheWindowIsCentred();
    void theWindowOpensWhereItLastStood();
    void aFrameTooTallShrinksAndIsSavedSo();
    void aFrameOfAnotherWidthOpensAtTheWindowsWidth();
    void aFrameThatDoesNotParseCountsAsNone();
    void theFrameIsSavedOnEveryHide();

    void theWindowIsPreparedThenShownThenActivated();
    void openingFocusesTheEmptySearchField();
    void openingSelectsNothing();
    void showingAgainKeepsTheSearchText();

    void typingNarrowsTheList();
    void spaceInTheFieldIsText();
    void returnInTheFieldPastesAndHides();
    void returnOnAnEmptyListKeepsTheWindow();
    void pasteInTheFieldTakesTheTextAtHand();
    void theFieldNeverAsksTheClipboardItself();
    void copyInTheListLeavesTheClipboardAlone();
    void theFirstDownInTheListSelectsTheFirstRow();
    void textTypedInTheListGoesOnInTheSearch();
    void keysOfTheListWriteNothing();
    void upAndDownInTheFieldMoveTheSelection();
    void pageKeysInTheFieldMoveTheSelection();
    void menuKeysInTheFieldOpenTheMenuOfTheSelectedRow_data();
    void menuKeysInTheFieldOpenTheMenuOfTheSelectedRow();
    void escapeClearsTheFieldFirst();
    void escapeInTheEmptyFieldClosesAPinnedWindow();
    void escapeInTheListLeavesAPinnedWindowOpen();
    void escapeInTheListClosesAnUnpinnedWindow();
    void escapeInTheListOfAPinnedWindowClearsTheSearch();
    void aFilterNarrowsAndGivesTheFocusBack();
    void aTagNarrowsAndGivesTheFocusBack();
    void aRenameOfTheSelectedTagListsAllAgain();
    void tabGoesFromPartToPart();
    void aPillWithTheFocusHasARing();
    void theWindowTakesItsMenuAlong();
    void aPressOnTheMenuIsNoTurningAway();
    void aPressOnAMenuThatHasClosedSinceIsNoTurningAway();
    void aPressBesideAnOpenMenuIsATurningAway();
    void aDoubleClickPastesAndHides();
    void pastingHidesAPinnedWindowToo();
    void pastingHidesOnceThoughThePasteHidesToo_data();
    void pastingHidesOnceThoughThePasteHidesToo();

    void aClickOutsideHides();
    void aClickOutsideDoesNotHideAPinnedWindow();
    void anotherApplicationHides();
    void anotherApplicationDoesNotHideAPinnedWindow();
    void ourOwnActivationDoesNotHide();
    void losingTheKeyboardHides();
    void losingTheKeyboardDoesNotHideAPinnedWindow();
    void turningAwayIsToldBeforeTheWindowHides();
    void hidingOtherwiseIsNoTurningAway();
    void losingTheKeyboardWithoutTheFocusDoesNotHide();
    void losingTheKeyboardToAnotherWindowOfOursHides();
    void afterHidingNothingIsWatchedAnyMore();
    void formerListenersAreStillCalled();

    void theMenuOfARowLeavesTheWindowOpen();
    void theMenuOfARowClosesWithTheWindow();
    void aPressInTheShadowOfAMenuIsAPressOutside();
    void showingAFileHidesTheWindow();

    void theEntranceFades();
    void theExitFadesAndThenTheWindowIsGone();
    void aSecondHideDoesNothing();
    void aReversalStartsFromTheHalfFadedLook();
    void aReversalClearsTheSearch();
    void whileItGoesTheWindowPastesNothing();
    void withoutCompositorTheWindowComesAndGoesAtOnce();

    void thePinButtonPins();
    void turningThePinButtonOffUnpins();
    void withoutPinButtonTheFieldIsWider();

    void newItemsKeepTheSelection();
    void favoritesAreReported();
    void theDesktopsColorsAreFollowed();
    void withoutPreferenceThePaletteDecides();
    void cornersAreRound();

    void draggingTheHeadMovesTheWindow();
    void theHandlesResize();
    void warmingUpLeavesNothingBehind();
    void anAlertKeepsTheWindowOpenAndTheKeys();
    void anAlertGetsTheShapeOfTheWindow();
    void anAlertGoesWithTheWindow();

private:
    void make(const ClipboardItemList &items = SampleHistory::mixed());
    void makeCompat(const ClipboardItemList &items = SampleHistory::mixed());
    HistoryWindowCollaborators collaborators();
    void watch();
    void pass(std::chrono::milliseconds time);
    void openWholly();
    /// The window has the focus as the desktop sees it meanwhile.
    QMenu &openRowMenu(int row);
    void dragBy(const char *handle, QPoint travel);
    NewTagAlert &askForATag();
    QRect geometryOf(const char *name);
    QImage picture();

    template <typename Widget = QWidget>
    Widget *part(const char *name)
    {
        return m_window->panel().findChild<Widget *>(QString::fromLatin1(name));
    }
    SearchField *field() { return part<SearchField>("searchField"); }
    ClipboardTableView *table() { return part<ClipboardTableView>("tableView"); }
    int rowCount() { return table()->model()->rowCount(); }

    std::unique_ptr<WatchedWorkspace> m_desktop;
    std::unique_ptr<FakePointerMonitor> m_pointer;
    std::unique_ptr<FakeDesktopAppearance> m_appearance;
    std::unique_ptr<HistoryWindow> m_window;
    QStringList m_pasted;
    QList<QUuid> m_toggled;
    int m_hiddenCount = 0;
};

void HistoryWindowTest::init()
{
    setUpList();
    m_desktop = std::make_unique<WatchedWorkspace>();
    m_pointer = std::make_unique<FakePointerMonitor>();
    m_appearance = std::make_unique<FakeDesktopAppearance>();
    m_appearance->dark = false;
    m_pasted.clear();
    m_toggled.clear();
    m_hiddenCount = 0;
}

void HistoryWindowTest::cleanup()
{
    m_window.reset();
}

HistoryWindowCollaborators HistoryWindowTest::collaborators()
{
    return {.workspace = *m_desktop,
            .pointerMonitor = *m_pointer,
            .appearance = *m_appearance,
            .defaults = *m_defaults,
            .list = listCollaborators()};
}

void HistoryWindowTest::make(const ClipboardItemList &items)
{
    m_window = std::make_unique<ClipboardSearchWindow>(collaborators(), items);
    watch();
}

void HistoryWindowTest::makeCompat(const ClipboardItemList &items)
{
    m_window = std::make_unique<ClipboardSearchWindowCompat>(collaborators(), items);
    watch();
}

void HistoryWindowTest::watch()
{
    m_window->onPasteSelected = [this](const ClipboardItemPointer &item) {
        m_pasted.append(item->stringValue.value_or(Utf8Text()).toString());
    };
    m_window->onFavoriteToggled = [this](const QUuid &id) { m_toggled.append(id); };
    m_window->onWindowHidden = [this] { ++m_hiddenCount; };
}

void HistoryWindowTest::pass(std::chrono::milliseconds time)
{
    for (; time.count() > 0; time -= 1ms) {
        m_clock->advance(1ms);
        m_scheduler->advance(1ms);
    }
}

void HistoryWindowTest::openWholly()
{
    m_window->show();
    pass(300ms);
    QVERIFY(QTest::qWaitForWindowActive(&m_window->panel()));
}

QRect HistoryWindowTest::geometryOf(const char *name)
{
    QWidget *widget = part(name);
    return {widget->mapTo(&m_window->panel(), QPoint()), widget->size()};
}

QImage HistoryWindowTest::picture()
{
    return m_window->panel().grab().toImage().convertToFormat(QImage::Format_ARGB32);
}

void HistoryWindowTest::theDesktopDecidesOnTheKindOfWindow()
{
    m_appearance->composited = true;
    const auto glass = makeHistoryWindow(collaborators(), {});
    QVERIFY(dynamic_cast<ClipboardSearchWindow *>(glass.get()));
    m_appearance->composited = false;
    const auto plain = makeHistoryWindow(collaborators(), {});
    QVERIFY(dynamic_cast<ClipboardSearchWindowCompat *>(plain.get()));
}

void HistoryWindowTest::viewsStandWhereTheyBelong_data()
{
    QTest::addColumn<int>("height");
    QTest::addColumn<bool>("isCompat");
    QTest::newRow("default height") << 500 << false;
    QTest::newRow("another height") << 380 << false;
    QTest::newRow("without a compositor") << 500 << true;
}

void HistoryWindowTest::viewsStandWhereTheyBelong()
{
    QFETCH(int, height);
    QFETCH(bool, isCompat);
    m_defaults->set(kFrameKey, u"{{10, 10}, {680, %1}}"_s.arg(height));
    isCompat ? makeCompat() : make();
    m_window->show();
    QCOMPARE(m_window->panel().size(), QSize(680, height));
    QCOMPARE(geometryOf("windowDragView"), QRect(0, 0, 680, 60));
    QCOMPARE(geometryOf("searchIcon"), QRect(24, 15, 32, 32));
    QCOMPARE(geometryOf("searchField"), QRect(64, 18, 590, 36));
    QCOMPARE(geometryOf("pinButton"), QRect(640, 26, 28, 28));
    QCOMPARE(geometryOf("filterBar"), QRect(0, 62, 680, 32));
    QCOMPARE(geometryOf("separatorLine"), QRect(24, 99, 632, 1));
    QCOMPARE(geometryOf("tableContainerView"), QRect(0, 100, 680, height - 100));
    QCOMPARE(geometryOf("tableView"), QRect(0, 100, 680, height - 100));
    QCOMPARE(geometryOf("topResizeView"), QRect(0, 0, 680, 8));
    QCOMPARE(geometryOf("bottomResizeView"), QRect(0, height - 8, 680, 8));
    QCOMPARE(table()->visualRect(table()->model()->index(1, 0)), QRect(0, 72, 680, 72));
}

void HistoryWindowTest::theWindowIsAFramelessToolOnTop()
{
    make();
    const Qt::WindowFlags flags = m_window->panel().windowFlags();
    QVERIFY(flags.testFlag(Qt::FramelessWindowHint));
    QVERIFY(flags.testFlag(Qt::WindowStaysOnTopHint));
    QCOMPARE(flags & Qt::WindowType_Mask, Qt::Tool);
    QCOMPARE(m_window->panel().windowTitle(), u"Clipboard History"_s);
    QVERIFY(m_window->panel().testAttribute(Qt::WA_TranslucentBackground));
    makeCompat();
    QVERIFY(!m_window->panel().testAttribute(Qt::WA_TranslucentBackground));
}

void HistoryWindowTest::partsHaveNamesForThoseWhoHear()
{
    make();
    QCOMPARE(field()->accessibleName(), u"Search"_s);
    QCOMPARE(field()->placeholderText(), u"Search"_s);
    QCOMPARE(table()->accessibleName(), u"Clipboard History"_s);
    QCOMPARE(part("searchIcon")->accessibleName(), u"Search"_s);
    QCOMPARE(part("pinButton")->accessibleName(), u"Pin window"_s);
    m_window->togglePin();
    QCOMPARE(part("pinButton")->accessibleName(), u"Unpin window"_s);
    QCOMPARE(part("pinButton")->toolTip(), u"Unpin window"_s);
}

void HistoryWindowTest::anOpenWindowTakesItsTextsAnew()
{
    LanguageManager language(*m_defaults);
    language.install();
    make();
    openWholly();
    m_window->togglePin();
    const QImage english = picture();
    language.setLanguage(AppLanguage::Chinese);
    m_window->refreshLanguage();

    QCOMPARE(m_window->panel().windowTitle(), u"剪贴板历史"_s);
    QCOMPARE(field()->placeholderText(), u"搜索"_s);
    QCOMPARE(part("pinButton")->toolTip(), u"取消固定窗口"_s);
    QCOMPARE(part<FilterButton>("filter.all")->text(), u"全部"_s);
    const QAbstractItemModel &rows = *table()->model();
    const QString spoken = rows.data(rows.index(0, 0), Qt::AccessibleTextRole).toString();
    QVERIFY2(spoken.contains(u"文本"_s) && !spoken.contains(u"TEXT"_s), qPrintable(spoken));

    QVERIFY(picture() != english);
    language.setLanguage(AppLanguage::English);
    m_window->refreshLanguage();
    QCOMPARE(picture(), english);
}

void HistoryWindowTest::pillsHoldTheirTitlesInEachLanguage_data()
{
    QTest::addColumn<AppLanguage>("language");
    QTest::newRow("English") << AppLanguage::English;
    QTest::newRow("Chinese") << AppLanguage::Chinese;
}

void HistoryWindowTest::pillsHoldTheirTitlesInEachLanguage()
{
    QFETCH(const AppLanguage, language);
    LanguageManager manager(*m_defaults);
    manager.setLanguage(language);
    manager.install();
    make();
    int right = 0;
    for (const FilterButton *pill : m_window->panel().findChildren<FilterButton *>()) {
        const QFontMetricsF metrics(interfaceFont(12, QFont::Medium));
        QCOMPARE(pill->width(), int(std::ceil(metrics.horizontalAdvance(pill->text()))) + 24);
        QVERIFY(pill->x() > right);
        right = pill->geometry().right();
    }
    QVERIFY(right > 0 && right < part("filterBar")->width());
}

void HistoryWindowTest::withoutSavedFrameTheWindowIsCentred()
{
    make();
    const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
    QCOMPARE(m_window->panel().geometry(),
             QRect(available.x() + (available.width() - 680) / 2,
                   available.y() + (available.height() - 500) / 2, 680, 500));
}

void HistoryWindowTest::theWindowOpensWhereItLastStood()
{
    m_defaults->set(kFrameKey, u"{{30, 40}, {680, 300}}"_s);
    make();
    m_window->show();
    QCOMPARE(m_window->panel().geometry(), QRect(30, 40, 680, 300));
}

void HistoryWindowTest::aFrameTooTallShrinksAndIsSavedSo()
{
    m_defaults->set(kFrameKey, u"{{30, 40}, {680, 9000}}"_s);
    make();
    const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
    const QRect shrunk(30, available.y(), 680, available.height());
    openWholly();
    QCOMPARE(m_window->panel().geometry(), shrunk);
    m_window->hide();
    QCOMPARE(m_defaults->string(kFrameKey),
             u"{{30, %1}, {680, %2}}"_s.arg(shrunk.y()).arg(shrunk.height()));
}

void HistoryWindowTest::aFrameOfAnotherWidthOpensAtTheWindowsWidth()
{
    m_defaults->set(kFrameKey, u"{{30, 40}, {1200, 300}}"_s);
    make();
    QCOMPARE(m_window->panel().geometry(), QRect(30, 40, 680, 300));
}

void HistoryWindowTest::aFrameThatDoesNotParseCountsAsNone()
{
    m_defaults->set(kFrameKey, u"somewhere"_s);
    make();
    QCOMPARE(m_window->panel().size(), QSize(680, 500));
}

void HistoryWindowTest::theFrameIsSavedOnEveryHide()
{
    makeCompat();
    m_window->show();
    m_window->panel().setGeometry(50, 60, 680, 320);
    m_window->hide();
    QCOMPARE(m_defaults->string(kFrameKey), u"{{50, 60}, {680, 320}}"_s);
}

void HistoryWindowTest::theWindowIsPreparedThenShownThenActivated()
{
    make();
    m_window->show();
    QCOMPARE(m_desktop->calls, (QStringList{u"prepare hidden"_s, u"activate shown"_s}));
}

void HistoryWindowTest::openingFocusesTheEmptySearchField()
{
    make();
    openWholly();
    QVERIFY(field()->hasFocus());
    QCOMPARE(field()->text(), QString());
}

void HistoryWindowTest::openingSelectsNothing()
{
    make();
    openWholly();
    QCOMPARE(table()->selectedRow(), -1);
}

void HistoryWindowTest::showingAgainKeepsTheSearchText()
{
    make();
    openWholly();
    QTest::keyClicks(field(), u"tide"_s);
    m_window->show();
    QCOMPARE(field()->text(), u"tide"_s);
    QCOMPARE(rowCount(), 1);
    QCOMPARE(m_desktop->calls.last(), u"activate shown"_s);
}

void HistoryWindowTest::typingNarrowsTheList()
{
    make();
    openWholly();
    QTest::keyClicks(field(), u"TIDE"_s);
    QCOMPARE(rowCount(), 1);
    QTest::keyClick(field(), Qt::Key_Backspace);
    QCOMPARE(rowCount(), 1);
    field()->selectAll();
    QTest::keyClick(field(), Qt::Key_Delete);
    QCOMPARE(rowCount(), 10);
}

void HistoryWindowTest::spaceInTheFieldIsText()
{
    make();
    openWholly();
    QTest::keyClick(field(), Qt::Key_Space);
    QCOMPARE(field()->text(), u" "_s);
    QVERIFY(m_window->isVisible());
}

void HistoryWindowTest::returnInTheFieldPastesAndHides()
{
    make(SampleHistory::texts({u"one"_s, u"two"_s}));
    openWholly();
    QTest::keyClicks(field(), u"tw"_s);
    QTest::keyClick(field(), Qt::Key_Return);
    QCOMPARE(m_pasted, QStringList{u"two"_s});
    QVERIFY(m_window->isHideAnimationInFlight());
    pass(160ms);
    QVERIFY(!m_window->isVisible());
}

void HistoryWindowTest::returnOnAnEmptyListKeepsTheWindow()
{
    make({});
    openWholly();
    QTest::keyClick(field(), Qt::Key_Return);
    QVERIFY(m_pasted.isEmpty());
    QVERIFY(!m_window->isHideAnimationInFlight());
}

void HistoryWindowTest::pasteInTheFieldTakesTheTextAtHand()
{
    m_pasteboardText = u"tide"_s;
    make();
    openWholly();
    const int wholeCount = rowCount();
    QTest::keySequence(field(), QKeySequence(QKeySequence::Paste));
    QCOMPARE(field()->text(), u"tide"_s);
    QVERIFY(rowCount() < wholeCount);
}

void HistoryWindowTest::theFieldNeverAsksTheClipboardItself()
{
    make();
    openWholly();
    QGuiApplication::clipboard()->setText(u"from the clipboard"_s, QClipboard::Clipboard);
    QTest::mouseClick(field(), Qt::MiddleButton);
    QTest::keyClick(field(), Qt::Key_Insert, Qt::ShiftModifier);
    QVERIFY(!field()->text().contains(u"clipboard"_s));
    QCOMPARE(field()->contextMenuPolicy(), Qt::NoContextMenu);
}

void HistoryWindowTest::copyInTheListLeavesTheClipboardAlone()
{
    make();
    openWholly();
    QTest::keyClick(field(), Qt::Key_Down);
    QGuiApplication::clipboard()->setText(u"untouched"_s);
    table()->setFocus();
    QTest::keySequence(table(), QKeySequence(QKeySequence::Copy));
    QCOMPARE(QGuiApplication::clipboard()->text(), u"untouched"_s);
}

void HistoryWindowTest::theFirstDownInTheListSelectsTheFirstRow()
{
    make();
    openWholly();
    table()->setFocus(Qt::TabFocusReason);
    QTest::keyClick(table(), Qt::Key_Down);
    QCOMPARE(table()->selectedRow(), 0);
    QTest::keyClick(table(), Qt::Key_Down);
    QCOMPARE(table()->selectedRow(), 1);
}

void HistoryWindowTest::textTypedInTheListGoesOnInTheSearch()
{
    make();
    openWholly();
    QTest::keyClicks(field(), u"ti"_s);
    QTest::mouseClick(table()->viewport(), Qt::LeftButton, {}, QPoint(200, 30));
    table()->setFocus();
    const int count = rowCount();
    QTest::keyClick(table(), 'D', Qt::ShiftModifier);
    QVERIFY(field()->hasFocus());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_E);
    QCOMPARE(field()->text(), u"tiDe"_s);
    QVERIFY(rowCount() < count);
}

void HistoryWindowTest::keysOfTheListWriteNothing()
{
    make();
    openWholly();
    table()->setFocus();
    const auto press = [this](Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(table(), key, modifiers);
    };
    press(Qt::Key_Space);
    press(Qt::Key_Down);
    press(Qt::Key_End);
    press(Qt::Key_F5);
    for (const Qt::KeyboardModifier modifier :
         {Qt::ControlModifier, Qt::AltModifier, Qt::MetaModifier})
        press(Qt::Key_A, modifier);
    press(Qt::Key_Backspace);
    QCOMPARE(field()->text(), QString());
    QVERIFY(table()->hasFocus());
}

void HistoryWindowTest::upAndDownInTheFieldMoveTheSelection()
{
    make();
    openWholly();
    QTest::keyClick(field(), Qt::Key_Down);
    QTest::keyClick(field(), Qt::Key_Down);
    QCOMPARE(table()->selectedRow(), 1);
    QTest::keyClick(field(), Qt::Key_Up);
    QTest::keyClick(field(), Qt::Key_Up);
    QCOMPARE(table()->selectedRow(), 0);
    QVERIFY(field()->hasFocus());
}

void HistoryWindowTest::pageKeysInTheFieldMoveTheSelection()
{
    make(SampleHistory::numbered(100));
    openWholly();
    QTest::keyClick(field(), Qt::Key_Down);
    QTest::keyClick(field(), Qt::Key_PageDown);
    const int row = table()->selectedRow();
    QVERIFY(row > 2);
    QTest::keyClick(field(), Qt::Key_PageUp);
    QCOMPARE(table()->selectedRow(), 0);
    QVERIFY(field()->hasFocus());
}

void HistoryWindowTest::menuKeysInTheFieldOpenTheMenuOfTheSelectedRow_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::newRow("the menu key") << Qt::Key_Menu << Qt::KeyboardModifiers();
    QTest::newRow("Shift+F10") << Qt::Key_F10 << Qt::KeyboardModifiers(Qt::ShiftModifier);
}

void HistoryWindowTest::menuKeysInTheFieldOpenTheMenuOfTheSelectedRow()
{
    QFETCH(const Qt::Key, key);
    QFETCH(const Qt::KeyboardModifiers, modifiers);
    make(SampleHistory::numbered(5));
    openWholly();
    QTest::keyClick(field(), key, modifiers);
    QVERIFY(!QApplication::activePopupWidget());
    QTest::keyClick(field(), Qt::Key_Down);
    QTest::keyClick(field(), Qt::Key_Down);
    QTest::keyClick(field(), key, modifiers);
    QVERIFY(QApplication::activePopupWidget());
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Return);
    QCOMPARE(m_pasted, QStringList{u"entry 1"_s});
}

void HistoryWindowTest::escapeClearsTheFieldFirst()
{
    make();
    openWholly();
    QTest::keyClicks(field(), u"tide"_s);
    QTest::keyClick(field(), Qt::Key_Escape);
    QCOMPARE(field()->text(), QString());
    QCOMPARE(rowCount(), 10);
    QVERIFY(!m_window->isHideAnimationInFlight());
    QTest::keyClick(field(), Qt::Key_Escape);
    QVERIFY(m_window->isHideAnimationInFlight());
}

void HistoryWindowTest::escapeInTheEmptyFieldClosesAPinnedWindow()
{
    make();
    openWholly();
    m_window->togglePin();
    QTest::keyClick(field(), Qt::Key_Escape);
    QVERIFY(m_window->isHideAnimationInFlight());
}

void HistoryWindowTest::escapeInTheListLeavesAPinnedWindowOpen()
{
    make();
    openWholly();
    m_window->togglePin();
    table()->setFocus();
    QTest::keyClick(table(), Qt::Key_Escape);
    QVERIFY(m_window->isVisible());
    QVERIFY(!m_window->isHideAnimationInFlight());
}

void HistoryWindowTest::escapeInTheListClosesAnUnpinnedWindow()
{
    make();
    openWholly();
    QTest::keyClicks(field(), u"tide"_s);
    table()->setFocus();
    QTest::keyClick(table(), Qt::Key_Escape);
    QVERIFY(m_window->isHideAnimationInFlight());
}

void HistoryWindowTest::escapeInTheListOfAPinnedWindowClearsTheSearch()
{
    make();
    openWholly();
    m_window->togglePin();
    QTest::keyClicks(field(), u"tide"_s);
    table()->setFocus();
    QTest::keyClick(table(), Qt::Key_Escape);
    QCOMPARE(field()->text(), QString());
    QCOMPARE(rowCount(), 10);
    QVERIFY(!m_window->isHideAnimationInFlight());
}

void HistoryWindowTest::aFilterNarrowsAndGivesTheFocusBack()
{
    make();
    openWholly();
    table()->setFocus();
    QTest::mouseClick(part<FilterButton>("filter.favorite"), Qt::LeftButton);
    QCOMPARE(rowCount(), 2);
    QVERIFY(field()->hasFocus());
    QTest::mouseClick(part<FilterButton>("filter.all"), Qt::LeftButton);
    QCOMPARE(rowCount(), 10);
}

void HistoryWindowTest::aTagNarrowsAndGivesTheFocusBack()
{
    QVERIFY(m_tags->createTag(u"travel"_s));
    make();
    openWholly();
    table()->setFocus();
    const QList<FilterButton *> pills = m_window->panel().findChildren<FilterButton *>();
    QCOMPARE(pills.last()->text(), u"travel"_s);
    QTest::mouseClick(pills.last(), Qt::LeftButton);
    QCOMPARE(rowCount(), 2);
    QVERIFY(field()->hasFocus());
    m_tags->deleteTag(u"travel"_s);
    QTRY_COMPARE(rowCount(), 10);
}

void HistoryWindowTest::aRenameOfTheSelectedTagListsAllAgain()
{
    QVERIFY(m_tags->createTag(u"travel"_s));
    make();
    openWholly();
    QTest::mouseClick(m_window->panel().findChildren<FilterButton *>().last(), Qt::LeftButton);
    QCOMPARE(rowCount(), 2);
    QVERIFY(m_window->tableViewController().itemTags().renameTag(u"travel"_s, u"trips"_s));
    QCOMPARE(rowCount(), 10);
    QCOMPARE(m_window->panel().findChildren<FilterButton *>().last()->text(), u"trips"_s);
}

void HistoryWindowTest::tabGoesFromPartToPart()
{
    for (const QString &name : {u"travel"_s, u"sailing"_s})
        m_tags->createTag(name);
    make();
    openWholly();
    const QList<QWidget *> parts{part("filter.all"), part("pinButton"), table(), field()};
    for (QWidget *next : parts) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), next);
    }
    for (qsizetype i = parts.size() - 2; i >= 0; --i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
        QCOMPARE(QApplication::focusWidget(), parts.at(i));
    }
}

void HistoryWindowTest::aPillWithTheFocusHasARing()
{
    makeCompat();
    openWholly();
    const QPoint ring(24 - 3, 62 + 16);
    const QColor ground(picture().pixel(ring));
    QTest::keyClick(field(), Qt::Key_Tab);
    QVERIFY(part("filter.all")->hasFocus());
    QCOMPARE(QColor(picture().pixel(ring)), systemColors(ColorScheme::Light).controlAccentColor);
    QTest::keyClick(part("filter.all"), Qt::Key_Right);
    QCOMPARE(QColor(picture().pixel(ring)), ground);
}

void HistoryWindowTest::theWindowTakesItsMenuAlong()
{
    for (const QString &name : {u"travel"_s, u"sailing"_s, u"work"_s, u"recipes"_s})
        m_tags->createTag(name);
    make();
    openWholly();
    QTest::mouseClick(m_window->panel().findChildren<FilterButton *>().last(), Qt::LeftButton);
    const QPointer<OverflowMenu> menu = m_window->panel().findChild<OverflowMenu *>();
    QVERIFY(menu && menu->isVisible());
    m_window->hide();
    QVERIFY(!menu || !menu->isVisible());
}

void HistoryWindowTest::aPressOnTheMenuIsNoTurningAway()
{
    for (const QString &name : {u"travel"_s, u"sailing"_s, u"work"_s, u"recipes"_s})
        m_tags->createTag(name);
    make();
    openWholly();
    QTest::mouseClick(m_window->panel().findChildren<FilterButton *>().last(), Qt::LeftButton);
    auto *menu = m_window->panel().findChild<OverflowMenu *>();
    QVERIFY(menu);
    menu->move(0, 0);
    const QPoint onMenu = menu->geometry().center();
    QVERIFY(!m_window->panel().geometry().contains(onMenu));
    m_pointer->press(onMenu);
    QVERIFY(!m_window->isHideAnimationInFlight());
    menu->close();
    m_pointer->press(onMenu);
    QVERIFY(m_window->isHideAnimationInFlight());
}

void HistoryWindowTest::aPressOnAMenuThatHasClosedSinceIsNoTurningAway()
{
    make();
    openWholly();
    QMenu &menu = openRowMenu(1);
    menu.move(0, 0);
    const QPoint onCopy = menu.actionGeometry(menu.actions().at(1)).center();
    const QPoint place = menu.mapToGlobal(onCopy);
    QVERIFY(!m_window->panel().geometry().contains(place));
    QTest::mousePress(menu.windowHandle(), Qt::LeftButton, {}, onCopy);
    const auto pressedAt = quint64(QTest::lastMouseTimestamp);
    QTest::mouseRelease(menu.windowHandle(), Qt::LeftButton, {}, onCopy);
    QCOMPARE(m_copied.size(), 1);
    QVERIFY(!QApplication::activePopupWidget());

    m_pointer->press(place, pressedAt);
    QVERIFY(!m_window->isHideAnimationInFlight());
    m_pointer->press(place, pressedAt + 1);
    QVERIFY(m_window->isHideAnimationInFlight());
}

void HistoryWindowTest::aPressBesideAnOpenMenuIsATurningAway()
{
    make();
    openWholly();
    const QMenu &menu = openRowMenu(1);
    // The open menu gets it, wherever it is.
    const QPoint beside(1, 1);
    QVERIFY(!m_window->panel().geometry().contains(beside));
    QTest::mousePress(menu.windowHandle(), Qt::LeftButton, {}, menu.mapFromGlobal(beside));
    QVERIFY(!QApplication::activePopupWidget());
    m_pointer->press(beside, quint64(QTest::lastMouseTimestamp));
    QVERIFY(m_window->isHideAnimationInFlight());
}

void HistoryWindowTest::aDoubleClickPastesAndHides()
{
    make(SampleHistory::numbered(3));
    openWholly();
    QTest::mouseClick(table()->viewport(), Qt::LeftButton, {}, QPoint(200, 100));
    QTest::mouseDClick(table()->viewport(), Qt::LeftButton, {}, QPoint(200, 100));
    QCOMPARE(m_pasted, QStringList{u"entry 1"_s});
    QVERIFY(m_window->isHideAnimationInFlight());
}

void HistoryWindowTest::pastingHidesAPinnedWindowToo()
{
    make();
    openWholly();
    m_window->togglePin();
    QTest::keyClick(field(), Qt::Key_Return);
    QCOMPARE(m_pasted.size(), 1);
    QVERIFY(m_window->isHideAnimationInFlight());
}

void HistoryWindowTest::pastingHidesOnceThoughThePasteHidesToo_data()
{
    QTest::addColumn<bool>("isCompat");

    QTest::newRow("with a compositor") << false;
    QTest::newRow("without one") << true;
}

void HistoryWindowTest::pastingHidesOnceThoughThePasteHidesToo()
{
    QFETCH(bool, isCompat);
    isCompat ? makeCompat() : make();
    openWholly();
    m_window->onPasteSelected = [this](const ClipboardItemPointer &) { m_window->hide(); };
    QTest::keyClick(field(), Qt::Key_Return);
    pass(160ms);
    QVERIFY(!m_window->isVisible());
    QCOMPARE(m_hiddenCount, 1);
}

void HistoryWindowTest::aClickOutsideHides()
{
    make();
    QVERIFY(!m_pointer->isRunning);
    openWholly();
    QVERIFY(m_pointer->isRunning);
    m_pointer->press(m_window->panel().geometry().center());
    QVERIFY(!m_window->isHideAnimationInFlight());
    m_pointer->press(m_window->panel().geometry().topLeft() - QPoint(1, 1));
    QVERIFY(m_window->isHideAnimationInFlight());
}

void HistoryWindowTest::aClickOutsideDoesNotHideAPinnedWindow()
{
    make();
    openWholly();
    m_window->togglePin();
    m_pointer->press(QPoint(1, 1));
    QVERIFY(!m_window->isHideAnimationInFlight());
}

void HistoryWindowTest::anotherApplicationHides()
{
    make();
    openWholly();
    m_desktop->onApplicationActivated({u"org.example.editor"_s, u"Editor"_s, 5, 5});
    QVERIFY(m_window->isHideAnimationInFlight());
}

void HistoryWindowTest::anotherApplicationDoesNotHideAPinnedWindow()
{
    make();
    openWholly();
    m_window->togglePin();
    m_desktop->onApplicationActivated({u"org.example.editor"_s, u"Editor"_s, 5, 5});
    QVERIFY(!m_window->isHideAnimationInFlight());
}

void HistoryWindowTest::ourOwnActivationDoesNotHide()
{
    make();
    openWholly();
    m_desktop->onApplicationActivated({u"tessarine"_s, u"Tessarine"_s, 5, 5});
    QVERIFY(!m_window->isHideAnimationInFlight());
}

void HistoryWindowTest::losingTheKeyboardHides()
{
    make();
    openWholly();
    QWidget other;
    other.show();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    QVERIFY(m_window->isHideAnimationInFlight());
}

void HistoryWindowTest::losingTheKeyboardDoesNotHideAPinnedWindow()
{
    make();
    openWholly();
    m_window->togglePin();
    QWidget other;
    other.show();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    QVERIFY(!m_window->isHideAnimationInFlight());
    QVERIFY(m_window->isVisible());
}

void HistoryWindowTest::turningAwayIsToldBeforeTheWindowHides()
{
    make();
    openWholly();
    int toldCount = 0;
    m_window->onTurnedAway = [&] {
        ++toldCount;
        QVERIFY(!m_window->isHideAnimationInFlight());
    };
    m_pointer->press(QPoint(1, 1));
    QCOMPARE(toldCount, 1);
    m_desktop->onApplicationActivated({u"org.example.editor"_s, u"Editor"_s, 5, 5});
    QCOMPARE(toldCount, 1); // It is the same turning away.

    m_window->show();
    m_desktop->onApplicationActivated({u"org.example.editor"_s, u"Editor"_s, 5, 5});
    QCOMPARE(toldCount, 2);
}

void HistoryWindowTest::hidingOtherwiseIsNoTurningAway()
{
    make();
    openWholly();
    bool isTold = false;
    m_window->onTurnedAway = [&] { isTold = true; };
    m_window->hide();
    m_pointer->press(QPoint(1, 1));
    pass(160ms);
    QVERIFY(!isTold);

    openWholly();
    m_window->togglePin();
    m_pointer->press(QPoint(1, 1));
    QVERIFY(!isTold);
}

void HistoryWindowTest::losingTheKeyboardWithoutTheFocusDoesNotHide()
{
    // As when another program takes the keyboard for a while.
    make();
    openWholly();
    m_desktop->frontmost =
        RunningApplication{u"tessarine"_s, u"Tessarine"_s, m_window->panel().winId(), 5};
    QWidget other;
    other.show();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    QVERIFY(m_window->isVisible());
    QVERIFY(!m_window->isHideAnimationInFlight());

    m_desktop->onApplicationActivated({u"org.example.editor"_s, u"Editor"_s, 5, 5});
    QVERIFY(m_window->isHideAnimationInFlight());
}

void HistoryWindowTest::losingTheKeyboardToAnotherWindowOfOursHides()
{
    make();
    openWholly();
    QWidget other;
    other.show();
    m_desktop->frontmost =
        RunningApplication{u"tessarine"_s, u"Tessarine"_s, other.winId(), 5};
    QVERIFY(QTest::qWaitForWindowActive(&other));
    QVERIFY(m_window->isHideAnimationInFlight());
}

void HistoryWindowTest::afterHidingNothingIsWatchedAnyMore()
{
    make();
    openWholly();
    m_window->hide();
    pass(160ms);
    QVERIFY(!m_pointer->isRunning);
    QVERIFY(!m_pointer->onMousePressed);
    QVERIFY(!m_desktop->onApplicationActivated);
    m_window.reset();
    QVERIFY(!m_appearance->onChanged);
}

void HistoryWindowTest::formerListenersAreStillCalled()
{
    int callCount = 0;
    m_desktop->onApplicationActivated = [&](const RunningApplication &) { ++callCount; };
    m_appearance->onChanged = [&] { ++callCount; };
    make();
    openWholly();
    m_desktop->onApplicationActivated({u"tessarine"_s, {}, 1, 1});
    m_appearance->onChanged();
    QCOMPARE(callCount, 2);
    m_window->hide();
    pass(160ms);
    m_desktop->onApplicationActivated({u"tessarine"_s, {}, 1, 1});
    QCOMPARE(callCount, 3);
}

QMenu &HistoryWindowTest::openRowMenu(int row)
{
    m_desktop->frontmost =
        RunningApplication{u"tessarine"_s, u"Tessarine"_s, m_window->panel().winId(), 5};
    table()->selectRow(row);
    QTest::keyClick(table(), Qt::Key_Menu);
    return dynamic_cast<QMenu &>(*QApplication::activePopupWidget());
}

void HistoryWindowTest::theMenuOfARowLeavesTheWindowOpen()
{
    make();
    openWholly();
    openRowMenu(1);
    m_pointer->press(QApplication::activePopupWidget()->geometry().center());
    QVERIFY(!m_window->isHideAnimationInFlight());
    QApplication::activePopupWidget()->close();
    QVERIFY(QTest::qWaitForWindowActive(&m_window->panel()));
    QVERIFY(m_window->isVisible() && !m_window->isHideAnimationInFlight());
}

void HistoryWindowTest::theMenuOfARowClosesWithTheWindow()
{
    make();
    openWholly();
    m_window->togglePin();
    openRowMenu(1);
    m_window->hide();
    QVERIFY(!QApplication::activePopupWidget());
    pass(160ms);
    QVERIFY(!m_window->isVisible());
}

void HistoryWindowTest::aPressInTheShadowOfAMenuIsAPressOutside()
{
    m_defaults->set(kFrameKey, u"{{0, 0}, {680, 300}}"_s);
    make();
    openWholly();
    openRowMenu(1);
    const QRect menu = QApplication::activePopupWidget()->geometry();
    QVERIFY(!m_window->panel().geometry().contains(menu.bottomLeft()));
    m_pointer->press(menu.bottomLeft() + QPoint(5, -5));
    QVERIFY(m_window->isHideAnimationInFlight());
    QVERIFY(!QApplication::activePopupWidget());
}

void HistoryWindowTest::showingAFileHidesTheWindow()
{
    ClipboardItem file = SampleHistory::item(ClipboardContentType::File, u"notes.txt"_s);
    file.filePath = u"/tmp/notes.txt"_s;
    file.fileBookmarkData = "token";
    const QUrl place(u"file:///tmp/moved.txt"_s);
    m_files->bookmarks.places = {{"token", {place, false}}};
    make({SampleHistory::shared(file)});
    openWholly();
    m_window->togglePin();
    QTest::keyClick(&openRowMenu(0), Qt::Key_Return);
    QCOMPARE(m_fileViewer->shown, QList<QList<QUrl>>{{place}});
    QVERIFY(m_window->isHideAnimationInFlight());
}

void HistoryWindowTest::theEntranceFades()
{
    make();
    m_window->show();
    const QPoint middle(340, 5);
    const int first = qAlpha(picture().pixel(middle));
    QVERIFY(first > 10);
    QVERIFY(first < 128);
    pass(80ms);
    const int half = qAlpha(picture().pixel(middle));
    QVERIFY(half > first + 40);
    pass(80ms);
    QCOMPARE(qAlpha(picture().pixel(middle)), 245); // The window is a little translucent.
}

void HistoryWindowTest::theExitFadesAndThenTheWindowIsGone()
{
    make();
    openWholly();
    m_window->hide();
    QVERIFY(m_window->isHideAnimationInFlight());
    pass(120ms);
    QVERIFY(qAlpha(picture().pixel(340, 5)) < 160);
    QCOMPARE(m_hiddenCount, 0);
    QVERIFY(m_window->isVisible());
    pass(40ms);
    QCOMPARE(m_hiddenCount, 1);
    QVERIFY(!m_window->isVisible());
    QVERIFY(!m_window->isHideAnimationInFlight());
}

void HistoryWindowTest::aSecondHideDoesNothing()
{
    make();
    openWholly();
    m_window->hide();
    pass(100ms);
    m_window->hide();
    pass(60ms);
    QCOMPARE(m_hiddenCount, 1);
    pass(500ms);
    QCOMPARE(m_hiddenCount, 1);
}

void HistoryWindowTest::aReversalStartsFromTheHalfFadedLook()
{
    make();
    openWholly();
    m_window->hide();
    pass(80ms);
    const int leaving = qAlpha(picture().pixel(340, 5));
    QVERIFY(leaving < 230);
    QVERIFY(leaving > 60);
    m_window->show();
    QVERIFY(!m_window->isHideAnimationInFlight());
    QVERIFY(qAlpha(picture().pixel(340, 5)) >= leaving);
    pass(500ms);
    QCOMPARE(m_hiddenCount, 0);
    QVERIFY(m_window->isVisible());
    QCOMPARE(qAlpha(picture().pixel(340, 5)), 245);
    m_pointer->press(QPoint(1, 1));
    QVERIFY(m_window->isHideAnimationInFlight());
}

void HistoryWindowTest::aReversalClearsTheSearch()
{
    make();
    openWholly();
    QTest::keyClicks(field(), u"tide"_s);
    m_window->hide();
    pass(50ms);
    m_window->show();
    QCOMPARE(field()->text(), QString());
    QCOMPARE(rowCount(), 10);
}

void HistoryWindowTest::whileItGoesTheWindowPastesNothing()
{
    make();
    openWholly();
    QTest::keyClick(field(), Qt::Key_Return);
    QTest::keyClick(field(), Qt::Key_Return);
    QCOMPARE(m_pasted.size(), 1);
}

void HistoryWindowTest::withoutCompositorTheWindowComesAndGoesAtOnce()
{
    makeCompat();
    m_window->show();
    QVERIFY(m_window->isVisible());
    QCOMPARE(qAlpha(picture().pixel(340, 5)), 255);
    m_window->hide();
    QVERIFY(!m_window->isVisible());
    QVERIFY(!m_window->isHideAnimationInFlight());
    QCOMPARE(m_hiddenCount, 1);
}

void HistoryWindowTest::thePinButtonPins()
{
    make();
    openWholly();
    const QImage before = picture();
    QTest::mouseClick(part("pinButton"), Qt::LeftButton);
    QVERIFY(m_window->isPinned());
    QVERIFY(picture() != before);
    QTest::mouseClick(part("pinButton"), Qt::LeftButton);
    QVERIFY(!m_window->isPinned());
}

void HistoryWindowTest::turningThePinButtonOffUnpins()
{
    make();
    openWholly();
    m_window->togglePin();
    m_defaults->set(kPinKey, true);
    m_window->refreshPinButtonVisibility();
    QVERIFY(m_window->isPinned());
    m_defaults->set(kPinKey, false);
    m_window->refreshPinButtonVisibility();
    QVERIFY(!m_window->isPinned());
    QVERIFY(!part("pinButton")->isVisible());
}

void HistoryWindowTest::withoutPinButtonTheFieldIsWider()
{
    m_defaults->set(kPinKey, false);
    make();
    m_window->show();
    QVERIFY(!part("pinButton")->isVisible());
    QVERIFY(!part("pinButton")->isEnabled());
    QCOMPARE(geometryOf("searchField"), QRect(64, 18, 604, 36));
    m_defaults->set(kPinKey, true);
    m_window->refreshPinButtonVisibility();
    QCOMPARE(geometryOf("searchField"), QRect(64, 18, 590, 36));
    QVERIFY(part("pinButton")->isVisible());
}

void HistoryWindowTest::newItemsKeepTheSelection()
{
    const ClipboardItemList items = SampleHistory::numbered(3);
    make(items);
    openWholly();
    QTest::keyClick(field(), Qt::Key_Down);
    m_window->updateItems(SampleHistory::texts({u"new"_s}) + items);
    QCOMPARE(rowCount(), 4);
    QCOMPARE(table()->selectedRow(), 1);
}

void HistoryWindowTest::favoritesAreReported()
{
    const ClipboardItemList items = SampleHistory::numbered(3);
    make(items);
    openWholly();
    QTest::mouseClick(table()->viewport(), Qt::LeftButton, {}, QPoint(651, 36));
    QCOMPARE(m_toggled, QList<QUuid>{items[0]->id});
}

void HistoryWindowTest::theDesktopsColorsAreFollowed()
{
    makeCompat();
    m_window->show();
    QCOMPARE(QColor(picture().pixel(340, 5)), QColor(0xF6, 0xF6, 0xF8));
    m_appearance->dark = true;
    m_appearance->onChanged();
    QCOMPARE(QColor(picture().pixel(340, 5)), QColor(0x1E, 0x1F, 0x23));
}

void HistoryWindowTest::withoutPreferenceThePaletteDecides()
{
    m_appearance->dark.reset();
    makeCompat();
    m_window->show();
    const QPalette palette = QGuiApplication::palette();
    QApplication::setPalette(QPalette(QColor(40, 40, 40)));
    QCoreApplication::sendPostedEvents();
    QCOMPARE(QColor(picture().pixel(340, 5)), QColor(0x1E, 0x1F, 0x23));
    QApplication::setPalette(QPalette(QColor(240, 240, 240)));
    QCoreApplication::sendPostedEvents();
    QCOMPARE(QColor(picture().pixel(340, 5)), QColor(0xF6, 0xF6, 0xF8));
    QApplication::setPalette(palette);
}

void HistoryWindowTest::cornersAreRound()
{
    make();
    openWholly();
    // The selected last row reaches into the lower corners.
    QTest::keyClick(field(), Qt::Key_PageDown);
    QTest::keyClick(field(), Qt::Key_PageDown);
    const QImage image = picture();
    for (const QPoint corner : {QPoint(0, 0), QPoint(679, 0), QPoint(0, 499), QPoint(679, 499),
                                QPoint(7, 7), QPoint(672, 492)})
        QCOMPARE(qAlpha(image.pixel(corner)), 0);
    QVERIFY(qAlpha(image.pixel(9, 9)) > 200);
    makeCompat();
    m_window->show();
    QVERIFY(!m_window->panel().mask().contains(QPoint(3, 3)));
    QVERIFY(m_window->panel().mask().contains(QPoint(7, 7)));
    QVERIFY(m_window->panel().mask().contains(QPoint(340, 0)));
}

void HistoryWindowTest::dragBy(const char *handle, QPoint travel)
{
    QWidget *view = part(handle);
    const QPoint start(300, 3);
    const QPoint globalStart = view->mapToGlobal(start);
    QTest::mousePress(view, Qt::LeftButton, {}, start);
    // The view moves along, so that the place in it has to be found anew.
    QTest::mouseMove(view, view->mapFromGlobal(globalStart + travel));
    QTest::mouseRelease(view, Qt::LeftButton, {}, view->mapFromGlobal(globalStart + travel));
}

void HistoryWindowTest::draggingTheHeadMovesTheWindow()
{
    m_defaults->set(kFrameKey, u"{{40, 50}, {680, 400}}"_s);
    make();
    openWholly();
    dragBy("windowDragView", QPoint(12, 34));
    QCOMPARE(m_window->panel().geometry(), QRect(52, 84, 680, 400));
    dragBy("windowDragView", QPoint(-900, -900));
    QCOMPARE(m_window->panel().pos(),
             QGuiApplication::primaryScreen()->availableGeometry().topLeft());
}

void HistoryWindowTest::theHandlesResize()
{
    m_defaults->set(kFrameKey, u"{{40, 150}, {680, 400}}"_s);
    make();
    openWholly();
    dragBy("topResizeView", QPoint(70, -30));
    QCOMPARE(m_window->panel().geometry(), QRect(40, 120, 680, 430));
    dragBy("bottomResizeView", QPoint(70, 20));
    QCOMPARE(m_window->panel().geometry(), QRect(40, 120, 680, 450));
    QCOMPARE(geometryOf("tableView"), QRect(0, 100, 680, 350));
    dragBy("bottomResizeView", QPoint(0, -900));
    QCOMPARE(m_window->panel().height(), 244);
}

void HistoryWindowTest::warmingUpLeavesNothingBehind()
{
    warmUpHistoryWindow(collaborators());
    QVERIFY(QApplication::topLevelWidgets().isEmpty());
    QVERIFY(!m_appearance->onChanged);
    QVERIFY(!m_pointer->isRunning);
    QVERIFY(!m_defaults->contains(kFrameKey));
}

NewTagAlert &HistoryWindowTest::askForATag()
{
    ClipboardTableViewController &list = m_window->tableViewController();
    list.requestNewTag(list.items().first()->id);
    pass(16ms);
    return *m_window->panel().findChild<NewTagAlert *>();
}

void HistoryWindowTest::anAlertKeepsTheWindowOpenAndTheKeys()
{
    make();
    openWholly();
    NewTagAlert &alert = askForATag();
    QVERIFY(alert.field().hasFocus());
    m_pointer->press(m_window->panel().mapToGlobal(alert.geometry().center()));
    m_desktop->onApplicationActivated({u"tessarine"_s, u"Tessarine"_s, 1, 1});
    QVERIFY(!m_window->isHideAnimationInFlight());
    // Coming to the front again gives the keyboard to the search field.
    m_window->show();
    QVERIFY(alert.field().hasFocus());
    QTest::keyClicks(QApplication::focusWidget(), u"x"_s);
    QVERIFY(field()->text().isEmpty());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    QVERIFY(!m_window->isHideAnimationInFlight());
    QVERIFY(m_window->isVisible());
    QVERIFY(field()->hasFocus());
}

void HistoryWindowTest::anAlertGetsTheShapeOfTheWindow()
{
    make();
    openWholly();
    const QImage before = picture();
    askForATag();
    const QImage veiled = picture();
    QCOMPARE(veiled.pixelColor(2, 2).alpha(), 0);
    QVERIFY(veiled.pixelColor(340, 60) != before.pixelColor(340, 60));
}

void HistoryWindowTest::anAlertGoesWithTheWindow()
{
    make();
    openWholly();
    const QPointer<NewTagAlert> alert = &askForATag();
    m_window->hide();
    QVERIFY(!alert || !alert->isVisible());
    pass(1s);
    QTRY_VERIFY(!alert);
    QVERIFY(m_tags->tagNames().isEmpty());
}

QTEST_MAIN(HistoryWindowTest)
#include "HistoryWindowTest.moc"
