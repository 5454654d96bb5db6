#include "tests/fakes/Listening.h"
#include "tests/window/TableFixture.h"

#include "window/SearchField.h"
#include "window/SpokenFocus.h"

#include <QAccessible>
#include <QFocusEvent>
#include <QInputMethodEvent>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// What a screen reader is told: where the focus is, by name, and what that is described as.
QStringList heard;

void note(QAccessibleEvent *event)
{
    const QAccessibleInterface *place = event->accessibleInterface();
    if (!place)
        return;
    if (event->type() == QAccessible::Focus)
        heard.append(u"focus: "_s + place->text(QAccessible::Name));
    else if (event->type() == QAccessible::DescriptionChanged)
        heard.append(u"description: "_s + place->text(QAccessible::Description));
}

} // namespace

class SpokenFocusTest : public QObject, private TableFixture
{
    Q_OBJECT

private slots:
    void initTestCase() { QAccessible::installUpdateHandler(note); }
    void init();
    void cleanup();

    void theFocusIsInTheFieldAtFirst();
    void keysThroughTheListTakeItThere_data();
    void keysThroughTheListTakeItThere();
    void keysThatActOnTheRowLeaveItThere_data();
    void keysThatActOnTheRowLeaveItThere();
    void whatIsTypedTakesItBack_data();
    void whatIsTypedTakesItBack();
    void whatAnInputMethodTypesTakesItBack();
    void itIsToldOnceThatItIsBack();
    void whenAMenuHasClosedThePlaceIsTold();
    void whenAMenuHasClosedAListWithoutASelectionIsNoPlace();
    void theFocusItselfTakesItBack();
    void inTheFieldAnAnnouncementIsItsDescription();
    void inTheListAnAnnouncementIsThatOfTheRow();
    void inAListWithoutASelectionItIsTheFields();
    void onlyWhatHasASoundIsAnnounced();
    void anEmptyAnnouncementTakesTheDescriptionBack();
    void anAnnouncementAfterTypingWaitsForAPause();
    void whoeverTypesOnHearsTheLastOneOnly();
    void whatIsAnnouncedAtOnceTakesThePlaceOfWhatWaits();
    void whatWaitsIsHeardWhereThePersonIsByThen();
    void whatWaitsIsDroppedAtTheEnd();
    void whoeverStopsListeningIsToldNothing();
    void nobodyListeningCausesNoWork();

private:
    void makeSpokenFocus()
    {
        m_spoken = std::make_unique<SpokenFocus>(*m_field, *m_view, *m_scheduler);
        heard.clear();
    }

    bool isInList() const { return m_view->isSpokenFocus(); }

    void focusField(Qt::FocusReason reason)
    {
        QFocusEvent event(QEvent::FocusIn, reason);
        QCoreApplication::sendEvent(m_field.get(), &event);
    }

    /// Onto \a row, as the keys of the field do.
    void goTo(int row)
    {
        QTest::keyClick(m_field.get(), Qt::Key_Down);
        m_view->selectRow(row);
        heard.clear();
    }

    QString description() const { return m_field->accessibleDescription(); }
    QString rowDescription(int row)
    {
        return QAccessible::queryAccessibleInterface(m_view.get())
            ->child(row)
            ->text(QAccessible::Description);
    }

    std::unique_ptr<QWidget> m_window;
    std::unique_ptr<SearchField> m_field;
    std::unique_ptr<SpokenFocus> m_spoken;
};

void SpokenFocusTest::init()
{
    setListening(true);
    setUpTable();
    make(SampleHistory::numbered(5));
    m_window = std::make_unique<QWidget>();
    m_field = std::make_unique<SearchField>(*m_scheduler, m_window.get());
    m_field->setAccessibleName(u"Search"_s);
    m_view->setParent(m_window.get());
    m_window->show();
    m_view->show();
    m_field->setFocus();
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    QTRY_VERIFY(m_field->hasFocus());
    makeSpokenFocus();
}

void SpokenFocusTest::cleanup()
{
    m_spoken.reset();
    m_field.reset();
    tearDownTable();
    m_window.reset();
}

void SpokenFocusTest::theFocusIsInTheFieldAtFirst()
{
    QVERIFY(!isInList());
    QVERIFY(heard.isEmpty());
}

void SpokenFocusTest::keysThroughTheListTakeItThere_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("up") << Qt::Key_Up;
    QTest::newRow("down") << Qt::Key_Down;
    QTest::newRow("page up") << Qt::Key_PageUp;
    QTest::newRow("page down") << Qt::Key_PageDown;
}

void SpokenFocusTest::keysThroughTheListTakeItThere()
{
    QFETCH(Qt::Key, key);
    QTest::keyClick(m_field.get(), key);
    QVERIFY(isInList());
    QVERIFY(m_field->hasFocus());
    m_view->selectRow(1);
    QCOMPARE(heard.size(), 1);
    QVERIFY(heard.first().startsWith(u"focus: "_s) && heard.first().contains(u"entry 1"_s));
}

void SpokenFocusTest::keysThatActOnTheRowLeaveItThere_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("return") << Qt::Key_Return;
    QTest::newRow("enter") << Qt::Key_Enter;
    QTest::newRow("menu") << Qt::Key_Menu;
    QTest::newRow("F10") << Qt::Key_F10;
    QTest::newRow("shift") << Qt::Key_Shift;
    QTest::newRow("control") << Qt::Key_Control;
    QTest::newRow("alt") << Qt::Key_Alt;
}

void SpokenFocusTest::keysThatActOnTheRowLeaveItThere()
{
    QFETCH(Qt::Key, key);
    QTest::keyClick(m_field.get(), key);
    QVERIFY(!isInList()); // Nor do they take it there.
    goTo(1);
    QTest::keyClick(m_field.get(), key);
    QVERIFY(isInList());
    QVERIFY(heard.isEmpty());
}

void SpokenFocusTest::whatIsTypedTakesItBack_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("letter") << Qt::Key_A;
    QTest::newRow("space") << Qt::Key_Space;
    QTest::newRow("backspace") << Qt::Key_Backspace;
    QTest::newRow("left") << Qt::Key_Left;
    QTest::newRow("escape") << Qt::Key_Escape;
}

void SpokenFocusTest::whatIsTypedTakesItBack()
{
    QFETCH(Qt::Key, key);
    goTo(1);
    QTest::keyClick(m_field.get(), key);
    QVERIFY(!isInList());
    QCOMPARE(heard.filter(u"focus: "_s), QStringList{u"focus: Search"_s});
}

void SpokenFocusTest::whatAnInputMethodTypesTakesItBack()
{
    goTo(1);
    QInputMethodEvent composition(u"ni"_s, {});
    QCoreApplication::sendEvent(m_field.get(), &composition);
    QVERIFY(!isInList());
    QCOMPARE(heard.filter(u"focus: "_s), QStringList{u"focus: Search"_s});
}

void SpokenFocusTest::itIsToldOnceThatItIsBack()
{
    goTo(1);
    QTest::keyClicks(m_field.get(), u"abc"_s);
    QCOMPARE(heard.filter(u"focus: "_s).size(), 1);
}

void SpokenFocusTest::whenAMenuHasClosedThePlaceIsTold()
{
    focusField(Qt::PopupFocusReason);
    QVERIFY(heard.contains(u"focus: Search"_s));
    goTo(2);
    focusField(Qt::PopupFocusReason);
    QVERIFY(isInList());
    QVERIFY(!heard.isEmpty() && heard.last().contains(u"entry 2"_s));
}

void SpokenFocusTest::whenAMenuHasClosedAListWithoutASelectionIsNoPlace()
{
    goTo(2);
    m_view->deselectAll();
    heard.clear();
    focusField(Qt::PopupFocusReason);
    QVERIFY(heard.contains(u"focus: Search"_s));
}

void SpokenFocusTest::theFocusItselfTakesItBack()
{
    goTo(1);
    focusField(Qt::TabFocusReason);
    QVERIFY(!isInList());
}

void SpokenFocusTest::inTheFieldAnAnnouncementIsItsDescription()
{
    m_view->selectRow(1);
    heard.clear();
    m_spoken->announce(u"3 results"_s);
    QCOMPARE(description(), u"3 results"_s);
    QCOMPARE(rowDescription(1), QString());
    QCOMPARE(heard, QStringList{u"description: 3 results"_s});
}

void SpokenFocusTest::inTheListAnAnnouncementIsThatOfTheRow()
{
    goTo(1);
    m_spoken->announce(u"Copied"_s);
    QCOMPARE(rowDescription(1), u"Copied"_s);
    QCOMPARE(description(), QString());
    QCOMPARE(heard, QStringList{u"description: Copied"_s});
}

void SpokenFocusTest::inAListWithoutASelectionItIsTheFields()
{
    goTo(1);
    m_view->deselectAll();
    m_spoken->announce(u"Copied"_s);
    QCOMPARE(description(), u"Copied"_s);
}

void SpokenFocusTest::onlyWhatHasASoundIsAnnounced()
{
    m_spoken->announce(u"a\u202Eb\u0007c"_s);
    QCOMPARE(description(), u"abc"_s);
}

void SpokenFocusTest::anEmptyAnnouncementTakesTheDescriptionBack()
{
    m_spoken->announce(u"3 results"_s);
    m_spoken->announce({});
    QCOMPARE(description(), QString());
}

void SpokenFocusTest::anAnnouncementAfterTypingWaitsForAPause()
{
    m_spoken->announceAfterTyping(u"3 results"_s);
    pass(499ms);
    QCOMPARE(description(), QString());
    pass(1ms);
    QCOMPARE(description(), u"3 results"_s);
}

void SpokenFocusTest::whoeverTypesOnHearsTheLastOneOnly()
{
    m_spoken->announceAfterTyping(u"30 results"_s);
    pass(400ms);
    m_spoken->announceAfterTyping(u"3 results"_s);
    pass(499ms);
    QVERIFY(heard.isEmpty());
    pass(1s);
    QCOMPARE(heard, QStringList{u"description: 3 results"_s});
}

void SpokenFocusTest::whatIsAnnouncedAtOnceTakesThePlaceOfWhatWaits()
{
    m_spoken->announceAfterTyping(u"3 results"_s);
    m_spoken->announce(u"Copied"_s);
    pass(1s);
    QCOMPARE(heard, QStringList{u"description: Copied"_s});
}

void SpokenFocusTest::whatWaitsIsHeardWhereThePersonIsByThen()
{
    m_spoken->announceAfterTyping(u"3 results"_s);
    goTo(1);
    m_view->selectRow(2);
    pass(500ms);
    QCOMPARE(rowDescription(2), u"3 results"_s);
    QCOMPARE(description(), QString());
}

void SpokenFocusTest::whatWaitsIsDroppedAtTheEnd()
{
    m_spoken->announceAfterTyping(u"3 results"_s);
    m_spoken.reset();
    pass(1s);
    QCOMPARE(description(), QString());
    QTest::keyClick(m_field.get(), Qt::Key_Down);
    QVERIFY(!isInList());
}

void SpokenFocusTest::whoeverStopsListeningIsToldNothing()
{
    m_spoken->announceAfterTyping(u"3 results"_s);
    setListening(false);
    pass(1s);
    QCOMPARE(description(), QString());
}

void SpokenFocusTest::nobodyListeningCausesNoWork()
{
    setListening(false);
    const int work = m_scheduler->pendingCount();
    QTest::keyClick(m_field.get(), Qt::Key_Down);
    QVERIFY(!isInList());
    m_spoken->announce(u"Copied"_s);
    m_spoken->announceAfterTyping(u"3 results"_s);
    QCOMPARE(m_scheduler->pendingCount(), work);
    QCOMPARE(description(), QString());
}

QTEST_MAIN(SpokenFocusTest)
#include "SpokenFocusTest.moc"
