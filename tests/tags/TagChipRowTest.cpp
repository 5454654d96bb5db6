#include "tags/TagChipRow.h"

#include "appearance/InterfaceFont.h"
#include "tags/TagHoverContainer.h"
#include "widgets/MenuLook.h"

#include <QAccessible>
#include <QMenu>
#include <QTest>
#include <QWidgetAction>

#include <cmath>
#include <set>

using namespace Qt::StringLiterals;

class TagChipRowTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void chipsStandInTheOrderOfTheTags();
    void chipsThatTheEntryHasAreOn();
    void aChipIsAsWideAsItsName();
    void aNameOfTwentyWideCharactersIsCut();
    void namesOfAnyLengthAreCutBeforeTheyAreMeasured();
    void thereAreAHundredChipsAtMost();
    void chipsFlowIntoLines();
    void aClickOnTheTextTogglesOnRelease();
    void aReleaseBesideTheChipTogglesNothing();
    void aPressOnTheCircleTogglesAtOnce();
    void otherButtonsToggleNothing();
    void togglingLeavesTheMenuOpen();
    void aPressBetweenTheChipsLeavesTheMenuOpen();
    void aChipStandsOutUnderThePointer_data();
    void aChipStandsOutUnderThePointer();
    void arrowsGoFromChipToChip();
    void spaceAndReturnToggleInTheMenu();
    void theMenuGoesOnWhereTheRowEnds();
    void escapeClosesTheMenu();
    void chipsAreSpokenOf();

private:
    void make(const QStringList &names, const QStringList &selected = {});
    void popUp();
    TagHoverContainer &chip(qsizetype place) const { return *m_row->chips().at(place); }
    void press(Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); }

    std::unique_ptr<TagChipRow> m_ownRow;
    std::unique_ptr<QMenu> m_menu;
    TagChipRow *m_row = nullptr;
    QAction *m_above = nullptr;
    QAction *m_below = nullptr;
    QStringList m_toggled;
};

void TagChipRowTest::init()
{
    m_toggled.clear();
}

void TagChipRowTest::cleanup()
{
    m_menu.reset();
    m_ownRow.reset();
}

void TagChipRowTest::make(const QStringList &names, const QStringList &selected)
{
    cleanup();
    m_ownRow
        = std::make_unique<TagChipRow>(names, selected, systemColors(ColorScheme::Light));
    m_row = m_ownRow.get();
    m_row->onToggle = [this](const QString &name) { m_toggled.append(name); };
    m_row->resize(m_row->sizeHint());
}

void TagChipRowTest::popUp()
{
    m_menu = std::make_unique<QMenu>();
    m_above = m_menu->addAction(u"Favorite"_s);
    auto *action = new QWidgetAction(m_menu.get());
    action->setDefaultWidget(m_ownRow.release());
    m_menu->addAction(action);
    m_below = m_menu->addAction(u"Delete"_s);
    applyMenuLook(*m_menu, {});
    m_menu->popup({100, 100});
    QVERIFY(QTest::qWaitForWindowExposed(m_menu.get()));
}

void TagChipRowTest::chipsStandInTheOrderOfTheTags()
{
    make({u"b"_s, u"a"_s, u"c"_s});
    QCOMPARE(m_row->chips().size(), 3);
    QCOMPARE(chip(0).tagText(), u"b"_s);
    QCOMPARE(chip(0).pos(), QPoint(8, 4));
    QCOMPARE(chip(1).tagText(), u"a"_s);
    QCOMPARE(chip(1).x(), chip(0).geometry().right() + 1 + 4);
    QCOMPARE(chip(2).tagText(), u"c"_s);
}

void TagChipRowTest::chipsThatTheEntryHasAreOn()
{
    make({u"work"_s, u"Work"_s}, {u"gone"_s, u"Work"_s});
    QVERIFY(!chip(0).isSelectedTag());
    QVERIFY(chip(1).isSelectedTag());
}

void TagChipRowTest::aChipIsAsWideAsItsName()
{
    make({u"i"_s, u"travel"_s, u"reading list"_s});
    QCOMPARE(chip(0).height(), 22);
    for (const TagHoverContainer *each : m_row->chips()) {
        const qreal text = QFontMetricsF(interfaceFont(11.5)).horizontalAdvance(each->tagText());
        QCOMPARE(each->width(), 6 + 13 + 4 + int(std::ceil(text)) + 8);
    }
    QVERIFY(chip(0).width() < 6 + 13 + 4 + 18 + 8); // A short name is not made room for.
}

void TagChipRowTest::aNameOfTwentyWideCharactersIsCut()
{
    make({QString(20, u'W') + QString(20, u'W'), QString(20, u'i')});
    QCOMPARE(chip(0).width(), 6 + 13 + 4 + 272 + 8);
    QVERIFY(chip(0).width() <= 304);
    QVERIFY(chip(1).width() < 200);
    QCOMPARE(m_row->width(), chip(0).width() + 16);
}

void TagChipRowTest::namesOfAnyLengthAreCutBeforeTheyAreMeasured()
{
    const QString marks = u"e"_s + QString(100'000, QChar(0x301));
    make({marks});
    QCOMPARE(chip(0).accessibleName(), marks.first(200) + u"..."_s);
    // Its one letter is narrow, and what stands for the marks is seen.
    QVERIFY(chip(0).width() < 100);
    QTest::mouseClick(&chip(0), Qt::LeftButton);
    QCOMPARE(m_toggled, QStringList{marks});
}

void TagChipRowTest::thereAreAHundredChipsAtMost()
{
    make(QStringList(10'000, u"label"_s));
    QCOMPARE(m_row->chips().size(), 100);
}

void TagChipRowTest::chipsFlowIntoLines()
{
    QStringList names;
    for (int i = 0; i < 15; ++i)
        names.append(u"label number %1"_s.arg(i));
    make(names);
    std::set<int> lines;
    for (const TagHoverContainer *each : m_row->chips()) {
        lines.insert(each->y());
        QVERIFY(each->geometry().right() < 8 + 304);
    }
    QVERIFY(lines.size() > 1);
    int expected = 4;
    for (const int y : lines) {
        QCOMPARE(y, expected);
        expected += 22 + 4;
    }
    QCOMPARE(m_row->height(), expected);
    // A chip begins a line only because it would not have fitted on the line before.
    for (qsizetype i = 1; i < m_row->chips().size(); ++i) {
        if (chip(i).y() != chip(i - 1).y())
            QVERIFY(chip(i - 1).geometry().right() + 1 + 4 + chip(i).width() > 8 + 304);
    }
}

void TagChipRowTest::aClickOnTheTextTogglesOnRelease()
{
    make({u"travel"_s, u"work"_s}, {u"work"_s});
    const QPoint onText(30, 11);
    QTest::mousePress(&chip(1), Qt::LeftButton, {}, onText);
    QVERIFY(m_toggled.isEmpty());
    QTest::mouseRelease(&chip(1), Qt::LeftButton, {}, onText);
    QCOMPARE(m_toggled, QStringList{u"work"_s});
    QVERIFY(!chip(1).isSelectedTag());
    QTest::mouseClick(&chip(1), Qt::LeftButton, {}, onText);
    QCOMPARE(m_toggled.size(), 2);
    QVERIFY(chip(1).isSelectedTag());
}

void TagChipRowTest::aReleaseBesideTheChipTogglesNothing()
{
    make({u"travel"_s});
    QTest::mousePress(&chip(0), Qt::LeftButton, {}, {30, 11});
    QTest::mouseRelease(&chip(0), Qt::LeftButton, {}, {30, 60});
    QVERIFY(m_toggled.isEmpty());
}

void TagChipRowTest::aPressOnTheCircleTogglesAtOnce()
{
    make({u"travel"_s});
    QTest::mousePress(&chip(0), Qt::LeftButton, {}, {10, 11});
    QCOMPARE(m_toggled, QStringList{u"travel"_s});
    QVERIFY(chip(0).isSelectedTag());
    QTest::mouseRelease(&chip(0), Qt::LeftButton, {}, {10, 11});
    QCOMPARE(m_toggled.size(), 1);
}

void TagChipRowTest::otherButtonsToggleNothing()
{
    make({u"travel"_s});
    QTest::mouseClick(&chip(0), Qt::RightButton, {}, {10, 11});
    QTest::mouseClick(&chip(0), Qt::MiddleButton, {}, {30, 11});
    QVERIFY(m_toggled.isEmpty());
}

void TagChipRowTest::togglingLeavesTheMenuOpen()
{
    make({u"travel"_s, u"work"_s});
    popUp();
    QTest::mouseClick(&chip(0), Qt::LeftButton, {}, {30, 11});
    QTest::mouseClick(&chip(1), Qt::LeftButton, {}, {10, 11});
    QCOMPARE(m_toggled, (QStringList{u"travel"_s, u"work"_s}));
    QVERIFY(m_menu->isVisible());
}

void TagChipRowTest::aPressBetweenTheChipsLeavesTheMenuOpen()
{
    make({u"travel"_s, u"work"_s});
    popUp();
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::RightButton})
        QTest::mouseClick(m_row, button, {}, {3, 3});
    QTest::mouseClick(&chip(0), Qt::RightButton, {}, {30, 11});
    QVERIFY(m_menu->isVisible());
}

void TagChipRowTest::aChipStandsOutUnderThePointer_data()
{
    QTest::addColumn<bool>("isAnimated");
    QTest::newRow("bit by bit") << true;
    QTest::newRow("at once") << false;
}

void TagChipRowTest::aChipStandsOutUnderThePointer()
{
    QFETCH(const bool, isAnimated);
    make({u"travel"_s, u"work"_s});
    m_row->setAnimated(isAnimated);
    const QImage atRest = m_row->grab().toImage();
    QEnterEvent enter({30, 11}, {30, 11}, {30, 11});
    QCoreApplication::sendEvent(&chip(0), &enter);
    QCOMPARE(chip(0).isRaised(), !isAnimated);
    QTRY_VERIFY(chip(0).isRaised());
    QVERIFY(!chip(1).isRaised());
    const QImage hovered = m_row->grab().toImage();
    QVERIFY(hovered != atRest);
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&chip(0), &leave);
    QTRY_VERIFY(!chip(0).isRaised());
    QTRY_COMPARE(m_row->grab().toImage(), atRest);
}

void TagChipRowTest::arrowsGoFromChipToChip()
{
    const QString wide = u"quite a long label"_s;
    make({wide, wide, wide, u"short"_s});
    popUp();
    QVERIFY(chip(2).y() > chip(0).y());
    QCOMPARE(chip(1).y(), chip(0).y());
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    QVERIFY(chip(0).hasFocus());
    press(Qt::Key_Left);
    QVERIFY(chip(0).hasFocus());
    press(Qt::Key_Right);
    QVERIFY(chip(1).hasFocus());
    press(Qt::Key_Right);
    QVERIFY(chip(2).hasFocus());
    press(Qt::Key_Up);
    QVERIFY(chip(0).hasFocus());
    press(Qt::Key_Down);
    QVERIFY(chip(2).hasFocus());
    press(Qt::Key_Right);
    press(Qt::Key_Right);
    QVERIFY(chip(3).hasFocus());
    QVERIFY(m_toggled.isEmpty());
}

void TagChipRowTest::spaceAndReturnToggleInTheMenu()
{
    make({u"travel"_s, u"work"_s});
    popUp();
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    press(Qt::Key_Space);
    QCOMPARE(m_toggled, QStringList{u"travel"_s});
    press(Qt::Key_Right);
    press(Qt::Key_Return);
    QCOMPARE(m_toggled, (QStringList{u"travel"_s, u"work"_s}));
    QVERIFY(chip(0).isSelectedTag());
    QVERIFY(chip(1).isSelectedTag());
    QVERIFY(m_menu->isVisible());
}

void TagChipRowTest::theMenuGoesOnWhereTheRowEnds()
{
    make({u"travel"_s, u"work"_s});
    popUp();
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    QVERIFY(chip(0).hasFocus());
    press(Qt::Key_Down);
    QCOMPARE(m_menu->activeAction(), m_below);
    QVERIFY(!chip(0).hasFocus());
    press(Qt::Key_Up);
    QVERIFY(chip(0).hasFocus());
    press(Qt::Key_Tab);
    QCOMPARE(m_menu->activeAction(), m_below);
    press(Qt::Key_Up);
    press(Qt::Key_Up);
    QCOMPARE(m_menu->activeAction(), m_above);
    QVERIFY(!chip(0).hasFocus());
}

void TagChipRowTest::escapeClosesTheMenu()
{
    make({u"travel"_s});
    popUp();
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    press(Qt::Key_Escape);
    QVERIFY(!m_menu->isVisible());
}

void TagChipRowTest::chipsAreSpokenOf()
{
    make({u"travel"_s}, {u"travel"_s});
    QAccessibleInterface *spoken = QAccessible::queryAccessibleInterface(&chip(0));
    QVERIFY(spoken);
    QCOMPARE(spoken->text(QAccessible::Name), u"travel"_s);
    QCOMPARE(spoken->text(QAccessible::Description), u"Toggle this tag selection"_s);
    QCOMPARE(chip(0).toolTip(), u"Toggle this tag selection"_s);
    QCOMPARE(spoken->role(), QAccessible::CheckBox);
    QVERIFY(spoken->state().checked);
}

QTEST_MAIN(TagChipRowTest)
#include "TagChipRowTest.moc"
