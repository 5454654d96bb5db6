#include "tests/window/HistoryWindowFixture.h"

#include "language/LanguageManager.h"
#include "tags/MaxLengthTextField.h"
#include "window/FilterButton.h"
#include "window/HistoryWindowFactory.h"
#include "window/PinButton.h"

#include <QApplication>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class HistoryWindowTest : public QObject, private HistoryWindowFixture
{
    Q_OBJECT

private slots:
    void init() { setUpWindow(); }
    void cleanup() { tearDownWindow(); }

    void theDesktopDecidesOnTheKindOfWindow();
    void theWindowIsAFramelessToolOnTop();
    void anOpenWindowTakesItsTextsAnew();
    void theWindowIsPreparedThenShownThenActivated();
    void openingFocusesTheEmptySearchField();
    void openingSelectsNothing();
    void showingAgainKeepsTheSearchText();
    void aDoubleClickPastesAndHides();
    void pastingHidesAPinnedWindowToo();
    void pastingHidesOnceThoughThePasteHidesToo_data();
    void pastingHidesOnceThoughThePasteHidesToo();
    void showingAFileHidesTheWindow();
    void thePinButtonPins();
    void turningThePinButtonOffUnpins();
    void aWindowThatIsNotGivenTheFocusAsksAgain();
    void aWindowOnItsWayOutAsksForNoFocus();
    void newItemsKeepTheSelection();
    void favoritesAreReported();
    void warmingUpLeavesNothingBehind();
    void anAlertKeepsTheWindowOpenAndTheKeys();
    void anAlertGoesWithTheWindow();
};

void HistoryWindowTest::theDesktopDecidesOnTheKindOfWindow()
{
    m_appearance->composited = true;
    const auto glass = makeHistoryWindow(collaborators(), {});
    QVERIFY(dynamic_cast<ClipboardSearchWindow *>(glass.get()));
    m_appearance->composited = false;
    const auto plain = makeHistoryWindow(collaborators(), {});
    QVERIFY(dynamic_cast<ClipboardSearchWindowCompat *>(plain.get()));
}

void HistoryWindowTest::theWindowIsAFramelessToolOnTop()
{
    make();
    const Qt::WindowFlags flags = m_window->shell().windowFlags();
    QVERIFY(flags.testFlag(Qt::FramelessWindowHint));
    QVERIFY(flags.testFlag(Qt::WindowStaysOnTopHint));
    QCOMPARE(flags & Qt::WindowType_Mask, Qt::Tool);
    QCOMPARE(m_window->shell().windowTitle(), u"Clipboard History"_s);
    QVERIFY(m_window->shell().testAttribute(Qt::WA_TranslucentBackground));
    makeCompat();
    QVERIFY(!m_window->shell().testAttribute(Qt::WA_TranslucentBackground));
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

    QCOMPARE(m_window->shell().windowTitle(), u"剪贴板历史"_s);
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

void HistoryWindowTest::aWindowThatIsNotGivenTheFocusAsksAgain()
{
    make();
    m_window->show();
    const auto activations = [this] { return m_desktop->calls.count(u"activate shown"_s); };
    pass(249ms);
    QCOMPARE(activations(), 1);
    pass(1ms);
    QCOMPARE(activations(), 2);
    QCOMPARE(m_desktop->activationTokens, QStringList{QString()}); // By the person's wish.
    QVERIFY(QTest::qWaitForWindowActive(&m_window->shell()));
    pass(5s);
    QCOMPARE(activations(), 2);
}

void HistoryWindowTest::aWindowOnItsWayOutAsksForNoFocus()
{
    make();
    m_window->show();
    pass(200ms);
    m_window->hide();
    pass(5s);
    QCOMPARE(m_desktop->calls.count(u"activate shown"_s), 1);
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

void HistoryWindowTest::warmingUpLeavesNothingBehind()
{
    warmUpHistoryWindow(collaborators());
    for (const QWidget *widget : QApplication::topLevelWidgets())
        QVERIFY(!widget->isVisible() && widget->findChildren<QWidget *>().isEmpty());
    QVERIFY(!m_appearance->onChanged);
    QVERIFY(!m_pointer->isRunning);
    QVERIFY(!m_defaults->contains(kFrameKey));
}

void HistoryWindowTest::anAlertKeepsTheWindowOpenAndTheKeys()
{
    make();
    openWholly();
    NewTagAlert &alert = askForATag();
    QVERIFY(alert.field().hasFocus());
    press(m_window->shell().mapToGlobal(alert.geometry().center()));
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
