#include "tests/window/HistoryWindowFixture.h"

#include "window/FilterButton.h"

#include <QApplication>
#include <QClipboard>
#include <QScreen>
#include <QScrollBar>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class HistoryWindowKeysTest : public QObject, private HistoryWindowFixture
{
    Q_OBJECT

private slots:
    void init() { setUpWindow(); }
    void cleanup() { tearDownWindow(); }

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
    void tabIntoTheListSelectsTheFirstRowInSight_data();
    void tabIntoTheListSelectsTheFirstRowInSight();
    void tabIntoTheListKeepsTheSelection();
    void tabIntoAnEmptyListSelectsNothing();
};

void HistoryWindowKeysTest::typingNarrowsTheList()
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

void HistoryWindowKeysTest::spaceInTheFieldIsText()
{
    make();
    openWholly();
    QTest::keyClick(field(), Qt::Key_Space);
    QCOMPARE(field()->text(), u" "_s);
    QVERIFY(m_window->isVisible());
}

void HistoryWindowKeysTest::returnInTheFieldPastesAndHides()
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

void HistoryWindowKeysTest::returnOnAnEmptyListKeepsTheWindow()
{
    make({});
    openWholly();
    QTest::keyClick(field(), Qt::Key_Return);
    QVERIFY(m_pasted.isEmpty());
    QVERIFY(!m_window->isHideAnimationInFlight());
}

void HistoryWindowKeysTest::pasteInTheFieldTakesTheTextAtHand()
{
    m_pasteboardText = u"tide"_s;
    make();
    openWholly();
    const int wholeCount = rowCount();
    QTest::keySequence(field(), QKeySequence(QKeySequence::Paste));
    QCOMPARE(field()->text(), u"tide"_s);
    QVERIFY(rowCount() < wholeCount);
}

void HistoryWindowKeysTest::theFieldNeverAsksTheClipboardItself()
{
    make();
    openWholly();
    QGuiApplication::clipboard()->setText(u"from the clipboard"_s, QClipboard::Clipboard);
    QTest::mouseClick(field(), Qt::MiddleButton);
    QTest::keyClick(field(), Qt::Key_Insert, Qt::ShiftModifier);
    QVERIFY(!field()->text().contains(u"clipboard"_s));
    QCOMPARE(field()->contextMenuPolicy(), Qt::NoContextMenu);
}

void HistoryWindowKeysTest::copyInTheListLeavesTheClipboardAlone()
{
    make();
    openWholly();
    QTest::keyClick(field(), Qt::Key_Down);
    QGuiApplication::clipboard()->setText(u"untouched"_s);
    table()->setFocus();
    QTest::keySequence(table(), QKeySequence(QKeySequence::Copy));
    QCOMPARE(QGuiApplication::clipboard()->text(), u"untouched"_s);
}

void HistoryWindowKeysTest::theFirstDownInTheListSelectsTheFirstRow()
{
    make();
    openWholly();
    table()->setFocus();
    QCOMPARE(table()->selectedRow(), -1);
    QTest::keyClick(table(), Qt::Key_Down);
    QCOMPARE(table()->selectedRow(), 0);
    QTest::keyClick(table(), Qt::Key_Down);
    QCOMPARE(table()->selectedRow(), 1);
}

void HistoryWindowKeysTest::textTypedInTheListGoesOnInTheSearch()
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

void HistoryWindowKeysTest::keysOfTheListWriteNothing()
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

void HistoryWindowKeysTest::upAndDownInTheFieldMoveTheSelection()
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

void HistoryWindowKeysTest::pageKeysInTheFieldMoveTheSelection()
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

void HistoryWindowKeysTest::menuKeysInTheFieldOpenTheMenuOfTheSelectedRow_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::newRow("the menu key") << Qt::Key_Menu << Qt::KeyboardModifiers();
    QTest::newRow("Shift+F10") << Qt::Key_F10 << Qt::KeyboardModifiers(Qt::ShiftModifier);
}

void HistoryWindowKeysTest::menuKeysInTheFieldOpenTheMenuOfTheSelectedRow()
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

void HistoryWindowKeysTest::escapeClearsTheFieldFirst()
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

void HistoryWindowKeysTest::escapeInTheEmptyFieldClosesAPinnedWindow()
{
    make();
    openWholly();
    m_window->togglePin();
    QTest::keyClick(field(), Qt::Key_Escape);
    QVERIFY(m_window->isHideAnimationInFlight());
}

void HistoryWindowKeysTest::escapeInTheListLeavesAPinnedWindowOpen()
{
    make();
    openWholly();
    m_window->togglePin();
    table()->setFocus();
    QTest::keyClick(table(), Qt::Key_Escape);
    QVERIFY(m_window->isVisible());
    QVERIFY(!m_window->isHideAnimationInFlight());
}

void HistoryWindowKeysTest::escapeInTheListClosesAnUnpinnedWindow()
{
    make();
    openWholly();
    QTest::keyClicks(field(), u"tide"_s);
    table()->setFocus();
    QTest::keyClick(table(), Qt::Key_Escape);
    QVERIFY(m_window->isHideAnimationInFlight());
}

void HistoryWindowKeysTest::escapeInTheListOfAPinnedWindowClearsTheSearch()
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

void HistoryWindowKeysTest::aFilterNarrowsAndGivesTheFocusBack()
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

void HistoryWindowKeysTest::aTagNarrowsAndGivesTheFocusBack()
{
    QVERIFY(m_tags->createTag(u"travel"_s));
    make();
    openWholly();
    table()->setFocus();
    const QList<FilterButton *> pills = m_window->shell().findChildren<FilterButton *>();
    QCOMPARE(pills.last()->text(), u"travel"_s);
    QTest::mouseClick(pills.last(), Qt::LeftButton);
    QCOMPARE(rowCount(), 2);
    QVERIFY(field()->hasFocus());
    m_tags->deleteTag(u"travel"_s);
    QTRY_COMPARE(rowCount(), 10);
}

void HistoryWindowKeysTest::aRenameOfTheSelectedTagListsAllAgain()
{
    QVERIFY(m_tags->createTag(u"travel"_s));
    make();
    openWholly();
    QTest::mouseClick(m_window->shell().findChildren<FilterButton *>().last(), Qt::LeftButton);
    QCOMPARE(rowCount(), 2);
    QVERIFY(m_window->tableViewController().itemTags().renameTag(u"travel"_s, u"trips"_s));
    QCOMPARE(rowCount(), 10);
    QCOMPARE(m_window->shell().findChildren<FilterButton *>().last()->text(), u"trips"_s);
}

void HistoryWindowKeysTest::tabGoesFromPartToPart()
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

void HistoryWindowKeysTest::tabIntoTheListSelectsTheFirstRowInSight_data()
{
    QTest::addColumn<int>("scrolled");
    QTest::addColumn<int>("row");
    QTest::newRow("at the top") << 0 << 0;
    QTest::newRow("between two rows") << 5 * 72 + 20 << 6;
    QTest::newRow("at a row") << 5 * 72 << 5;
}

void HistoryWindowKeysTest::tabIntoTheListSelectsTheFirstRowInSight()
{
    QFETCH(const int, scrolled);
    QFETCH(const int, row);
    makeCompat(SampleHistory::numbered(50));
    openWholly();
    QScrollBar &scrollBar = *table()->verticalScrollBar();
    scrollBar.setValue(scrolled);
    QTest::keyClick(field(), Qt::Key_Backtab);
    QVERIFY(table()->hasFocus());
    QCOMPARE(table()->selectedRow(), row);
    QCOMPARE(scrollBar.value(), scrolled);
    pass(2s); // The selection springs.
    const QPoint ground(340, 100 + table()->rowBox(row).top() + 8);
    QCOMPARE(picture().pixelColor(ground), systemColors(ColorScheme::Light).selectionColor);
    QTest::keyClick(table(), Qt::Key_Down);
    QCOMPARE(table()->selectedRow(), row + 1);
}

void HistoryWindowKeysTest::tabIntoTheListKeepsTheSelection()
{
    make(SampleHistory::numbered(50));
    openWholly();
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(field(), Qt::Key_Down);
    QTest::keyClick(field(), Qt::Key_Backtab);
    QVERIFY(table()->hasFocus());
    QCOMPARE(table()->selectedRow(), 2);
}

void HistoryWindowKeysTest::tabIntoAnEmptyListSelectsNothing()
{
    make({});
    openWholly();
    QTest::keyClick(field(), Qt::Key_Backtab);
    QVERIFY(table()->hasFocus());
    QCOMPARE(table()->selectedRow(), -1);
}

QTEST_MAIN(HistoryWindowKeysTest)
#include "HistoryWindowKeysTest.moc"
