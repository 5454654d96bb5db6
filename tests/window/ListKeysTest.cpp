#include "tests/window/TableFixture.h"

#include "window/ListKeys.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class ListKeysTest : public QObject, private TableFixture
{
    Q_OBJECT

private slots:
    void init()
    {
        setUpTable();
        make(SampleHistory::numbered(3));
        m_keys = std::make_unique<ListKeys>(*m_view);
    }
    void cleanup()
    {
        m_keys.reset();
        tearDownTable();
    }

    void keysForOthersAreIgnored();
    void keysFromRowToRowAreLeftToTheView();
    void theFirstArrowSelectsTheFirstRow();
    void withoutRowsAnArrowSelectsNothing();
    void returnAndDeleteAreTold();
    void whatIsWrittenIsHandedOn_data();
    void whatIsWrittenIsHandedOn();
    void theMenuKeysWantASelectedRow();
    void spaceIsForTheSelectedRow();
    void whileNoInputIsAcceptedOnlyEscapeGoesOn();

private:
    struct Press
    {
        bool isTaken; ///< By the keys; the view does nothing more.
        bool isIgnored; ///< The parents of the view get it.
    };

    Press press(int key, const QString &text = {}, Qt::KeyboardModifiers modifiers = {})
    {
        QKeyEvent event(QEvent::KeyPress, key, modifiers, text);
        const bool isTaken = m_keys->press(event);
        return {isTaken, !event.isAccepted()};
    }

    std::unique_ptr<ListKeys> m_keys;
};

void ListKeysTest::keysForOthersAreIgnored()
{
    const Press escape = press(Qt::Key_Escape);
    QVERIFY(escape.isTaken && escape.isIgnored);
    const Press copy = press(Qt::Key_C, u"\x3"_s, Qt::ControlModifier);
    QVERIFY(copy.isTaken && copy.isIgnored);
}

void ListKeysTest::keysFromRowToRowAreLeftToTheView()
{
    m_view->selectRow(0);
    for (const int key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_PageDown, Qt::Key_Home, Qt::Key_End})
        QVERIFY(!press(key).isTaken);
    QCOMPARE(m_view->selectedRow(), 0);
}

void ListKeysTest::theFirstArrowSelectsTheFirstRow()
{
    for (const int key : {Qt::Key_Down, Qt::Key_Up}) {
        m_view->deselectAll();
        QVERIFY(press(key).isTaken);
        QCOMPARE(m_view->selectedRow(), 0);
        QVERIFY(!press(key).isTaken);
    }
}

void ListKeysTest::withoutRowsAnArrowSelectsNothing()
{
    make({});
    ListKeys keys(*m_view);
    QKeyEvent down(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier);
    QVERIFY(!keys.press(down));
    QCOMPARE(m_view->selectedRow(), -1);
}

void ListKeysTest::returnAndDeleteAreTold()
{
    // The controller would act on them.
    m_view->disconnect(m_controller.get());
    QSignalSpy enter(m_view.get(), &ClipboardTableView::enterPressed);
    QSignalSpy deletion(m_view.get(), &ClipboardTableView::deletePressed);
    for (const int key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Delete, Qt::Key_Backspace})
        QVERIFY(press(key, u"\b"_s).isTaken);
    QCOMPARE(enter.count(), 2);
    QCOMPARE(deletion.count(), 2);
}

void ListKeysTest::whatIsWrittenIsHandedOn_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<bool>("isWritten");
    QTest::newRow("a letter") << u"a"_s << int(Qt::NoModifier) << true;
    QTest::newRow("a capital") << u"A"_s << int(Qt::ShiftModifier) << true;
    QTest::newRow("a letter beyond the first plane") << u"𝒜"_s << int(Qt::NoModifier) << true;
    QTest::newRow("a control") << u"\x1"_s << int(Qt::ControlModifier) << false;
    QTest::newRow("with Ctrl") << u"a"_s << int(Qt::ControlModifier) << false;
    QTest::newRow("with Alt") << u"a"_s << int(Qt::AltModifier) << false;
    QTest::newRow("nothing") << QString() << int(Qt::NoModifier) << false;
}

void ListKeysTest::whatIsWrittenIsHandedOn()
{
    QFETCH(const QString, text);
    QFETCH(const int, modifiers);
    QFETCH(const bool, isWritten);
    QStringList written;
    connect(m_view.get(), &ClipboardTableView::textKeyPressed, this,
            [&written](QKeyEvent *event) { written.append(event->text()); });
    QCOMPARE(press(Qt::Key_A, text, Qt::KeyboardModifiers(modifiers)).isTaken, isWritten);
    QCOMPARE(written, isWritten ? QStringList{text} : QStringList());
}

void ListKeysTest::theMenuKeysWantASelectedRow()
{
    m_view->disconnect(m_controller.get());
    QList<int> rows;
    connect(m_view.get(), &ClipboardTableView::menuRequested, this,
            [&rows](int row) { rows.append(row); });
    press(Qt::Key_Menu);
    QVERIFY(rows.isEmpty());
    m_view->selectRow(1);
    press(Qt::Key_Menu);
    press(Qt::Key_F10, {}, Qt::ShiftModifier);
    QCOMPARE(rows, (QList<int>{1, 1}));
    QVERIFY(press(Qt::Key_F10).isTaken);
    QCOMPARE(rows.size(), 2);
}

void ListKeysTest::spaceIsForTheSelectedRow()
{
    QList<int> rows;
    m_view->onSpace = [&rows](int row) {
        rows.append(row);
        return row == 1;
    };
    QVERIFY(press(Qt::Key_Space, u" "_s).isIgnored);
    m_view->selectRow(1);
    QVERIFY(!press(Qt::Key_Space, u" "_s).isIgnored);
    m_view->selectRow(2);
    QVERIFY(press(Qt::Key_Space, u" "_s).isIgnored); // It is not wanted there.
    QCOMPARE(rows, (QList<int>{1, 2}));
    m_view->onSpace = nullptr;
    QVERIFY(press(Qt::Key_Space, u" "_s).isIgnored);
}

void ListKeysTest::whileNoInputIsAcceptedOnlyEscapeGoesOn()
{
    m_view->setAcceptsInput(false);
    QSignalSpy enter(m_view.get(), &ClipboardTableView::enterPressed);
    for (const int key : {Qt::Key_Return, Qt::Key_Down, Qt::Key_PageDown}) {
        const Press pressed = press(key);
        QVERIFY(pressed.isTaken && !pressed.isIgnored);
    }
    QCOMPARE(enter.count(), 0);
    QCOMPARE(m_view->selectedRow(), -1);
    QVERIFY(press(Qt::Key_Escape).isIgnored);
}

QTEST_MAIN(ListKeysTest)
#include "ListKeysTest.moc"
