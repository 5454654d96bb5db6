#include "tests/window/TableFixture.h"

#include <QScrollBar>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using SampleHistory::shared;

class RowDeletionTest : public QObject, private TableFixture
{
    Q_OBJECT

private slots:
    void init() { setUpTable(); }
    void cleanup() { tearDownTable(); }

    void aKeyDeletesTheSelectedRow_data();
    void aKeyDeletesTheSelectedRow();
    void withoutSelectionNothingIsDeleted();
    void theRowThatTakesThePlaceIsSelected_data();
    void theRowThatTakesThePlaceIsSelected();
    void aPressThatComesTooEarlyDoesNothing_data();
    void aPressThatComesTooEarlyDoesNothing();
    void clicksThatComeTooEarlyDoNothing();
    void aDoubleClickThatBeganTooEarlyDoesNotPaste();
    void theRowFadesBeforeItGoes();
    void theKeyWorksAgainAndAgain();
    void theViewDoesNotScroll();
    void theListIsShownAsTheHistoryIsThen();
    void theNeighbourIsSelectedWhereverItIsThen_data();
    void theNeighbourIsSelectedWhereverItIsThen();
    void aNeighbourThatGoesTooIsReplacedByItsPlace_data();
    void aNeighbourThatGoesTooIsReplacedByItsPlace();
    void aHeldKeyTakesOneAfterTheOtherThoughEntriesCome();
    void outOfSightAHeldKeyIsNoFaster();
    void underASearchTheRowThatTakesThePlaceIsSelected();
    void anEntryThatHasGoneMeanwhileIsNoHarm();
    void theListMayEndBeforeTheDeletion();
    void escIsPassedOnAllTheSame();

private:
    void press(Qt::Key key) { QTest::keyClick(m_view.get(), key); }
    void pass(std::chrono::milliseconds time)
    {
        m_clock->advance(time);
        m_scheduler->advance(time);
    }
    void showHistory()
    {
        m_controller->setItems(m_manager->items());
        m_controller->applyFilters(ClipboardTableViewController::Scroll::Keep);
    }
    void capture(const QString &text)
    {
        m_manager->addItem(SampleHistory::textItem(text));
        showHistory();
    }
    QString selectedText() const { return listedTexts().value(m_view->selectedRow()); }
    /// The history answers in its own time; then the row fades in ours.
    void waitForInput() { QTRY_VERIFY((pass(250ms), m_view->acceptsInput())); }
};

void RowDeletionTest::aKeyDeletesTheSelectedRow_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Backspace") << Qt::Key_Backspace;
    QTest::newRow("Delete") << Qt::Key_Delete;
}

void RowDeletionTest::aKeyDeletesTheSelectedRow()
{
    QFETCH(const Qt::Key, key);
    makeHistory(SampleHistory::numbered(3));
    m_view->selectRow(1);
    press(key);
    waitForInput();
    QCOMPARE(listedTexts(), (QStringList{u"entry 0"_s, u"entry 2"_s}));
    QCOMPARE(m_manager->items().size(), 2);
}

void RowDeletionTest::withoutSelectionNothingIsDeleted()
{
    makeHistory(SampleHistory::numbered(2));
    m_view->setFocus();
    press(Qt::Key_Delete);
    QVERIFY(m_view->acceptsInput());
    QCOMPARE(m_manager->items().size(), 2);
}

void RowDeletionTest::theRowThatTakesThePlaceIsSelected_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("selected");
    QTest::newRow("the first of many") << 4 << 0 << 0;
    QTest::newRow("one in the middle") << 4 << 1 << 1;
    QTest::newRow("the last but one") << 4 << 2 << 2;
    QTest::newRow("the last") << 4 << 3 << 2;
    QTest::newRow("the only one") << 1 << 0 << -1;
}

void RowDeletionTest::theRowThatTakesThePlaceIsSelected()
{
    QFETCH(const int, count);
    QFETCH(const int, row);
    QFETCH(const int, selected);
    makeHistory(SampleHistory::numbered(count));
    m_view->selectRow(row);
    press(Qt::Key_Delete);
    waitForInput();
    QCOMPARE(int(m_controller->filteredItems().size()), count - 1);
    QCOMPARE(m_view->selectedRow(), selected);
}

void RowDeletionTest::aPressThatComesTooEarlyDoesNothing_data()
{
    QTest::addColumn<Qt::Key>("key");
    for (const Qt::Key key : {Qt::Key_Delete, Qt::Key_Down, Qt::Key_End, Qt::Key_Return})
        QTest::newRow(qPrintable(QVariant::fromValue(key).toString())) << key;
}

void RowDeletionTest::aPressThatComesTooEarlyDoesNothing()
{
    QFETCH(const Qt::Key, key);
    makeHistory(SampleHistory::numbered(5));
    m_view->selectRow(1);
    press(Qt::Key_Delete);
    QVERIFY(!m_view->acceptsInput());
    press(key);
    waitForInput();
    QCOMPARE(m_manager->items().size(), 4);
    QCOMPARE(m_view->selectedRow(), 1);
    QVERIFY(m_pasted.isEmpty());
}

void RowDeletionTest::clicksThatComeTooEarlyDoNothing()
{
    makeHistory(SampleHistory::numbered(5));
    m_view->selectRow(1);
    press(Qt::Key_Delete);
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {}, contentOf(3));
    QTest::mouseDClick(m_view->viewport(), Qt::LeftButton, {}, contentOf(3));
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {}, starOf(3));
    QCOMPARE(m_view->selectedRow(), 1);
    QVERIFY(m_pasted.isEmpty());
    QVERIFY(m_toggled.isEmpty());
    waitForInput();
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {}, contentOf(3));
    QCOMPARE(m_view->selectedRow(), 3);
}

void RowDeletionTest::aDoubleClickThatBeganTooEarlyDoesNotPaste()
{
    makeHistory(SampleHistory::numbered(5));
    const QPoint place = contentOf(2);
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {}, contentOf(3));
    m_view->selectRow(1);
    press(Qt::Key_Delete);
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {}, place);
    waitForInput();
    QTest::mouseDClick(m_view->viewport(), Qt::LeftButton, {}, place);
    QVERIFY(m_pasted.isEmpty());
    QCOMPARE(selectedText(), u"entry 3"_s);
}

void RowDeletionTest::theRowFadesBeforeItGoes()
{
    makeHistory(SampleHistory::numbered(3));
    m_view->selectRow(1);
    const auto pendingBefore = m_scheduler->pendingCount();
    press(Qt::Key_Delete);
    QTRY_VERIFY(m_scheduler->pendingCount() > pendingBefore); // The history has answered.
    QCOMPARE(m_manager->items().size(), 2);
    pass(249ms);
    QCOMPARE(listedTexts().size(), 3);
    QVERIFY(!m_view->acceptsInput());
    pass(1ms);
    QCOMPARE(listedTexts(), (QStringList{u"entry 0"_s, u"entry 2"_s}));
    QVERIFY(m_view->acceptsInput());
}

void RowDeletionTest::theKeyWorksAgainAndAgain()
{
    makeHistory(SampleHistory::numbered(5));
    QVERIFY(QTest::qWaitForWindowActive(m_view.get()));
    m_view->setFocus();
    m_view->selectRow(1);
    for (const int left : {4, 3, 2}) {
        // To whoever has the focus, as from a keyboard.
        QTest::keyClick(m_view->windowHandle(), Qt::Key_Delete);
        QVERIFY(m_view->hasFocus());
        waitForInput();
        QCOMPARE(int(m_controller->filteredItems().size()), left);
    }
    QCOMPARE(listedTexts(), (QStringList{u"entry 0"_s, u"entry 4"_s}));
    QCOMPARE(m_view->selectedRow(), 1);
}

void RowDeletionTest::theViewDoesNotScroll()
{
    makeHistory(SampleHistory::numbered(50));
    m_view->selectRow(3);
    m_view->verticalScrollBar()->setValue(1000);
    const ClipboardItemPointer seen = m_controller->filteredItems().at(15);
    const QRect place = boxOf(seen);
    press(Qt::Key_Delete);
    waitForInput();
    QCOMPARE(int(m_controller->filteredItems().size()), 49);
    QCoreApplication::processEvents(); // The view lays itself out again later.
    QCOMPARE(m_view->selectedRow(), 3);
    QCOMPARE(boxOf(seen), place); // The deleted row was above.
}

void RowDeletionTest::theListIsShownAsTheHistoryIsThen()
{
    makeHistory(SampleHistory::numbered(3));
    m_view->selectRow(2);
    press(Qt::Key_Delete);
    capture(u"new"_s);
    waitForInput();
    QCOMPARE(listedTexts(), (QStringList{u"new"_s, u"entry 0"_s, u"entry 1"_s}));
    QCOMPARE(m_view->selectedRow(), 2);
}

void RowDeletionTest::theNeighbourIsSelectedWhereverItIsThen_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("selected");
    QTest::newRow("the next") << 1 << u"entry 2"_s;
    QTest::newRow("the one before the last") << 3 << u"entry 2"_s;
}

void RowDeletionTest::theNeighbourIsSelectedWhereverItIsThen()
{
    QFETCH(const int, row);
    QFETCH(const QString, selected);
    makeHistory(SampleHistory::numbered(4));
    m_view->selectRow(row);
    const auto pendingBefore = m_scheduler->pendingCount();
    press(Qt::Key_Delete);
    capture(u"while it is written"_s);
    QTRY_VERIFY(m_scheduler->pendingCount() > pendingBefore);
    capture(u"while the row fades"_s);
    waitForInput();
    QCOMPARE(selectedText(), selected);
}

void RowDeletionTest::aNeighbourThatGoesTooIsReplacedByItsPlace_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("neighbour");
    QTest::addColumn<int>("selected");
    QTest::newRow("in the middle") << 1 << 2 << 1;
    QTest::newRow("at the end") << 3 << 2 << 0;
}

void RowDeletionTest::aNeighbourThatGoesTooIsReplacedByItsPlace()
{
    QFETCH(const int, row);
    QFETCH(const int, neighbour);
    QFETCH(const int, selected);
    makeHistory(SampleHistory::numbered(4));
    m_view->selectRow(row);
    const QUuid neighbourId = m_controller->items().at(neighbour)->id;
    press(Qt::Key_Delete);
    m_manager->removeItem(neighbourId, {});
    showHistory();
    waitForInput();
    QCOMPARE(listedTexts().size(), 2);
    QCOMPARE(m_view->selectedRow(), selected);
}

void RowDeletionTest::aHeldKeyTakesOneAfterTheOtherThoughEntriesCome()
{
    makeHistory(SampleHistory::numbered(6));
    m_view->selectRow(1);
    for (int i = 0; i < 3; ++i) {
        press(Qt::Key_Delete);
        press(Qt::Key_Delete); // The keyboard repeats it before the row is gone.
        capture(u"new %1"_s.arg(i));
        waitForInput();
    }
    QCOMPARE(listedTexts(), (QStringList{u"new 2"_s, u"new 1"_s, u"new 0"_s, u"entry 0"_s,
                                         u"entry 4"_s, u"entry 5"_s}));
    QCOMPARE(selectedText(), u"entry 4"_s);
}

void RowDeletionTest::outOfSightAHeldKeyIsNoFaster()
{
    makeHistory(SampleHistory::numbered(50));
    m_view->selectRow(40);
    m_view->scrollToTop();
    const auto pendingBefore = m_scheduler->pendingCount();
    press(Qt::Key_Delete);
    QTRY_VERIFY(m_scheduler->pendingCount() > pendingBefore); // The history has answered.
    pass(249ms);
    QVERIFY(!m_view->acceptsInput());
    pass(1ms);
    QVERIFY(m_view->acceptsInput());
}

void RowDeletionTest::underASearchTheRowThatTakesThePlaceIsSelected()
{
    makeHistory(SampleHistory::texts({u"one"_s, u"two"_s, u"three"_s, u"twelve"_s}));
    search(u"tw"_s);
    m_view->selectRow(1);
    press(Qt::Key_Delete);
    waitForInput();
    QCOMPARE(listedTexts(), QStringList{u"two"_s});
    QCOMPARE(m_view->selectedRow(), 0);
    QCOMPARE(m_controller->items().size(), 3);
}

void RowDeletionTest::anEntryThatHasGoneMeanwhileIsNoHarm()
{
    makeHistory(SampleHistory::numbered(3));
    m_manager->removeItem(m_controller->items().at(1)->id, {});
    m_view->selectRow(1);
    press(Qt::Key_Delete);
    waitForInput();
    QCOMPARE(listedTexts(), (QStringList{u"entry 0"_s, u"entry 2"_s}));
    QCOMPARE(m_view->selectedRow(), 1);
}

void RowDeletionTest::theListMayEndBeforeTheDeletion()
{
    makeHistory(SampleHistory::numbered(3));
    m_view->selectRow(1);
    press(Qt::Key_Delete);
    tearDownTable();
    QTRY_COMPARE(m_manager->items().size(), 2);
    QCoreApplication::processEvents();
}

void RowDeletionTest::escIsPassedOnAllTheSame()
{
    makeHistory(SampleHistory::numbered(3));
    m_view->selectRow(1);
    press(Qt::Key_Delete);
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QCoreApplication::sendEvent(m_view.get(), &escape);
    QVERIFY(!escape.isAccepted());
    waitForInput();
}

QTEST_MAIN(RowDeletionTest)
#include "RowDeletionTest.moc"
