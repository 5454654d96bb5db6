#include "window/FilterBarView.h"

#include "appearance/InterfaceFont.h"
#include "foundation/UserDefaults.h"
#include "language/LanguageManager.h"
#include "tags/TagManager.h"
#include "window/OverflowMenu.h"

#include <QAccessible>
#include <QApplication>
#include <QSignalSpy>
#include <QStyle>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr int kGap = 8;
constexpr int kLongest = 110;

/// Names that take no more room than a pill may have.
const QStringList kFive{u"travel"_s, u"accounts"_s, u"sailing"_s, u"Work"_s, u"recipes"_s};

bool isNear(const QColor &color, const QColor &other)
{
    const auto distance = [](int one, int two) { return std::abs(one - two); };
    return distance(color.alpha(), other.alpha()) < 3
        && (other.alpha() == 0
            || (distance(color.red(), other.red()) < 6 && distance(color.green(), other.green()) < 6
                && distance(color.blue(), other.blue()) < 6));
}

int widthOf(const QString &title)
{
    return FilterButton::naturalWidth(title);
}

} // namespace

class FilterBarViewTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void sixPillsStandInARow();
    void aPillIsAsWideAsItsTitleAndTwelveOnEachSide();
    void pillsHaveTheColorsOfTheirState_data();
    void pillsHaveTheColorsOfTheirState();
    void aPressedPillIsFainter();
    void allIsSelectedAtFirst();
    void aClickSelectsAndTells();
    void clickingTheSelectedPillTellsNothing();

    void withoutTagsThereAreOnlyTheSixPills();
    void threeTagsHaveAPillEach();
    void ofFiveTagsTwoWaitBehindThePlus();
    void ofFifteenTagsTwelveWaitBehindThePlus();
    void pillsOfTagsFollowTheOthers();
    void theLanguageDecidesWhereTagsBegin_data();
    void theLanguageDecidesWhereTagsBegin();
    void exactlyThreeTagsNeedNoRoomForThePlus();
    void onePixelLessThanThreeTagsNeedMakesRoomForThePlus();
    void thePlusTakesRoomFromTheTags();
    void wherePillsDoNotFitThePlusStandsAlone();
    void whereThePlusDoesNotFitThereIsNothing();
    void moreThanFortyFourPixelsAreNeeded();
    void aLongNameTakesNoMoreThanItsShare();
    void namesOfFortyCharactersAreCut();
    void namesOfAnyLengthAreCutBeforeTheyAreMeasured();
    void namesAreNoAccessKeys();
    void namesThatComeTwiceHaveAPillEach();

    void aChangedHeightRebuildsNothing();
    void layingOutAtTheSameWidthRebuildsNothing();
    void aChangedWidthRebuildsTheTags();
    void aNewTagIsThereAtOnce();
    void theSecondNewsOfAChangeChangesNothing();
    void movingATagMovesItsPill();
    void deletingTheSelectedTagFallsBackToAll();
    void renamingTheSelectedTagFallsBackToAll();
    void theFallBackIsToldBeforeThePillsAreMadeAnew();
    void otherTagsMayGoWithoutAWord();
    void aTagThatMovesToTheMenuStaysSelected();

    void aTagsPillSelectsItsTag();
    void selectingATagThatIsHiddenLeavesThePlusAlone();
    void theMenuHasTheHiddenTagsInOrder();
    void theMenuHasAHundredTagsAtMost();
    void theMenuChecksTheSelectedTag();
    void theMenuOpensWhereTheMouseIs();
    void byKeyboardTheMenuOpensUnderThePlus();
    void byKeyboardTheCheckedTagLiesUnderThePlus();
    void choosingFromTheMenuSelects();
    void choosingTheCheckedTagAgainTellsNothing();
    void theMenuGoesWithThePlus();

    void aPressShowsOnlyInsideThePill();
    void aReleaseOutsideThePillSelectsNothing();
    void comingBackIntoThePillSelects();
    void aDisabledPillDoesNothing();
    void theRightButtonDoesNothing();

    void leftAndRightGoFromPillToPill();
    void spaceAndReturnSelect_data();
    void spaceAndReturnSelect();
    void tabGoesToTheSelectedPill();
    void tabLeavesTheBarInOneStep();
    void aHiddenSelectionHasTabGoToThePlus();
    void theFocusOutlivesItsPill();

    void pillsTellWhatTheyAre();
    void pillsCanBePressedByThoseWhoDoNotSee();

private:
    /// A catalogue as an earlier program may have left it: nothing is checked.
    void makeWithTags(const QStringList &names);
    void showIn(int width);
    FilterButton *pill(const QString &key) { return m_bar->findChild<FilterButton *>(key); }
    QList<FilterButton *> pills() { return m_bar->findChildren<FilterButton *>(); }
    QList<FilterButton *> tagPills() { return pills().mid(6); }
    FilterButton *plus() { return pills().last(); }
    QStringList titlesOf(const QList<FilterButton *> &buttons);
    QStringList tagTitles() { return titlesOf(tagPills()); }
    QStringList selectedTitles();
    int widthForTags(int room);
    OverflowMenu *openMenu();
    QStringList titlesOf(const QMenu &menu);
    void focus(FilterButton *button);
    /// What the pill itself draws, on nothing.
    static QImage drawn(FilterButton &button);

    std::unique_ptr<QTemporaryDir> m_directory;
    std::unique_ptr<UserDefaults> m_defaults;
    std::unique_ptr<TagManager> m_tags;
    std::unique_ptr<FilterBarView> m_bar;
};

void FilterBarViewTest::init()
{
    m_directory = std::make_unique<QTemporaryDir>();
    m_defaults = std::make_unique<UserDefaults>(m_directory->filePath(u"settings"_s));
    makeWithTags({});
}

void FilterBarViewTest::cleanup()
{
    m_bar.reset();
    m_tags.reset();
    m_defaults.reset();
}

void FilterBarViewTest::makeWithTags(const QStringList &names)
{
    m_bar.reset();
    m_tags.reset();
    m_defaults->remove(u"custom.tags.v2"_s);
    m_defaults->set(u"custom.tags"_s, names);
    m_tags = std::make_unique<TagManager>(*m_defaults);
    QCoreApplication::sendPostedEvents(m_tags.get()); // It has converted them, and tells.
    m_bar = std::make_unique<FilterBarView>(*m_tags);
    showIn(680);
}

void FilterBarViewTest::showIn(int width)
{
    m_bar->resize(width, 32);
    m_bar->show();
}

QStringList FilterBarViewTest::titlesOf(const QList<FilterButton *> &buttons)
{
    QStringList titles;
    for (const FilterButton *button : buttons)
        titles.append(button->text());
    return titles;
}

QStringList FilterBarViewTest::selectedTitles()
{
    QStringList titles;
    for (const FilterButton *button : pills()) {
        if (button->isSelected())
            titles.append(button->text());
    }
    return titles;
}

/// How wide the bar must be to have \a room for tags.
int FilterBarViewTest::widthForTags(int room)
{
    return pill(u"filter.favorite"_s)->geometry().right() + 1 + kGap + room + 24;
}

OverflowMenu *FilterBarViewTest::openMenu()
{
    QTest::mouseClick(plus(), Qt::LeftButton);
    return m_bar->findChild<OverflowMenu *>();
}

QStringList FilterBarViewTest::titlesOf(const QMenu &menu)
{
    QStringList titles;
    for (const QAction *action : menu.actions())
        titles.append(action->text());
    return titles;
}

void FilterBarViewTest::focus(FilterButton *button)
{
    m_bar->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_bar.get()));
    button->setFocus(Qt::TabFocusReason);
    QVERIFY(button->hasFocus());
}

QImage FilterBarViewTest::drawn(FilterButton &button)
{
    QImage image(button.size(), QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    button.render(&image, {}, {}, QWidget::RenderFlags());
    return image;
}

void FilterBarViewTest::sixPillsStandInARow()
{
    QStringList titles;
    int x = 24;
    for (const FilterButton *button : pills()) {
        titles.append(button->text());
        QCOMPARE(button->geometry(), QRect(x, 3, button->naturalWidth(), 26));
        x += button->width() + kGap;
    }
    QCOMPARE(titles, (QStringList{u"All"_s, u"Text"_s, u"Image"_s, u"File"_s, u"Link"_s,
                                  u"Favorite"_s}));
    QVERIFY(x < 656);
}

void FilterBarViewTest::aPillIsAsWideAsItsTitleAndTwelveOnEachSide()
{
    const QFontMetricsF metrics(interfaceFont(12, QFont::Medium));
    const FilterButton *button = pill(u"filter.favorite"_s);
    QCOMPARE(button->width(), int(std::ceil(metrics.horizontalAdvance(u"Favorite"_s))) + 24);
}

void FilterBarViewTest::pillsHaveTheColorsOfTheirState_data()
{
    QTest::addColumn<ColorScheme>("scheme");
    QTest::addColumn<bool>("isSelected");
    QTest::addColumn<QColor>("ground");
    QTest::addColumn<QColor>("line");
    QTest::addColumn<QColor>("title");
    const QColor lightFill(0x24, 0x59, 0xC7);
    const QColor darkFill(0x2E, 0x63, 0xD0);
    // The outline of a selected pill lies on its fill.
    QTest::newRow("light, selected")
        << ColorScheme::Light << true << lightFill << lightFill << QColor(Qt::white);
    QTest::newRow("light") << ColorScheme::Light << false << QColor(0, 0, 0, 0)
                           << QColor(0, 0, 0, 26) << QColor(0x50, 0x53, 0x5A);
    QTest::newRow("dark, selected")
        << ColorScheme::Dark << true << darkFill << darkFill << QColor(Qt::white);
    QTest::newRow("dark") << ColorScheme::Dark << false << QColor(0, 0, 0, 0)
                          << QColor(255, 255, 255, 26) << QColor(0xB4, 0xB7, 0xBE);
}

void FilterBarViewTest::pillsHaveTheColorsOfTheirState()
{
    QFETCH(const ColorScheme, scheme);
    QFETCH(const bool, isSelected);
    QFETCH(const QColor, ground);
    QFETCH(const QColor, line);
    QFETCH(const QColor, title);
    makeWithTags({u"████"_s});
    m_bar->setColors(systemColors(scheme));
    if (isSelected)
        m_bar->selectCategory(FilterCategory::tag(u"████"_s));
    const QImage image = drawn(*tagPills().first());
    QVERIFY(isNear(image.pixelColor(6, 13), ground));
    QVERIFY(isNear(image.pixelColor(image.width() / 2, 0), line));
    QVERIFY(isNear(image.pixelColor(16, 13), title));
}

void FilterBarViewTest::aPressedPillIsFainter()
{
    m_bar->setColors(systemColors(ColorScheme::Light));
    FilterButton *button = pill(u"filter.all"_s);
    QCOMPARE(drawn(*button).pixelColor(6, 13).alpha(), 255);
    QTest::mousePress(button, Qt::LeftButton);
    QCOMPARE(drawn(*button).pixelColor(6, 13).alpha(), 214); // 0.84
    QTest::mouseRelease(button, Qt::LeftButton);
    QCOMPARE(drawn(*button).pixelColor(6, 13).alpha(), 255);
}

void FilterBarViewTest::allIsSelectedAtFirst()
{
    QCOMPARE(m_bar->selectedCategory(), FilterCategory::all());
    QCOMPARE(selectedTitles(), QStringList{u"All"_s});
}

void FilterBarViewTest::aClickSelectsAndTells()
{
    QSignalSpy selected(m_bar.get(), &FilterBarView::filterSelected);
    QTest::mouseClick(pill(u"filter.link"_s), Qt::LeftButton);
    QCOMPARE(selected.count(), 1);
    QCOMPARE(selected.first().first().value<FilterCategory>(),
             FilterCategory::content(ClipboardContentType::Url));
    QCOMPARE(selectedTitles(), QStringList{u"Link"_s});
}

void FilterBarViewTest::clickingTheSelectedPillTellsNothing()
{
    QSignalSpy selected(m_bar.get(), &FilterBarView::filterSelected);
    QTest::mouseClick(pill(u"filter.all"_s), Qt::LeftButton);
    QCOMPARE(selected.count(), 0);
    QCOMPARE(selectedTitles(), QStringList{u"All"_s});
}

void FilterBarViewTest::withoutTagsThereAreOnlyTheSixPills()
{
    QCOMPARE(pills().size(), 6);
}

void FilterBarViewTest::threeTagsHaveAPillEach()
{
    makeWithTags(kFive.first(3));
    QCOMPARE(tagTitles(), kFive.first(3));
}

void FilterBarViewTest::ofFiveTagsTwoWaitBehindThePlus()
{
    makeWithTags(kFive);
    QCOMPARE(tagTitles(), kFive.first(3) + QStringList{u"+2"_s});
}

void FilterBarViewTest::ofFifteenTagsTwelveWaitBehindThePlus()
{
    QStringList names;
    for (int i = 1; i <= 15; ++i)
        names.append(u"tag %1"_s.arg(i));
    makeWithTags(names);
    QCOMPARE(tagTitles(), names.first(3) + QStringList{u"+12"_s});
    QCOMPARE(titlesOf(*openMenu()), names.mid(3));
}

void FilterBarViewTest::pillsOfTagsFollowTheOthers()
{
    makeWithTags(kFive);
    int x = pill(u"filter.favorite"_s)->geometry().right() + 1 + kGap;
    for (const FilterButton *button : tagPills()) {
        QCOMPARE(button->geometry(), QRect(x, 3, widthOf(button->text()), 26));
        QVERIFY(button->isVisible());
        x += button->width() + kGap;
    }
    QVERIFY(x - kGap <= 680 - 24);
}

void FilterBarViewTest::theLanguageDecidesWhereTagsBegin_data()
{
    QTest::addColumn<AppLanguage>("language");
    QTest::addColumn<QString>("title");
    QTest::newRow("English") << AppLanguage::English << u"Favorite"_s;
    QTest::newRow("Chinese") << AppLanguage::Chinese << u"收藏"_s;
}

void FilterBarViewTest::theLanguageDecidesWhereTagsBegin()
{
    QFETCH(const AppLanguage, language);
    QFETCH(const QString, title);
    LanguageManager manager(*m_defaults);
    manager.setLanguage(language);
    manager.install();
    makeWithTags(kFive);
    m_bar->refreshTitles();
    const FilterButton *last = pill(u"filter.favorite"_s);
    QCOMPARE(last->text(), title);
    QCOMPARE(last->width(), widthOf(title));
    QCOMPARE(tagTitles(), kFive.first(3) + QStringList{u"+2"_s});
    QCOMPARE(tagPills().first()->x(), last->geometry().right() + 1 + kGap);
}

void FilterBarViewTest::exactlyThreeTagsNeedNoRoomForThePlus()
{
    const QStringList names = kFive.first(3);
    makeWithTags(names);
    showIn(widthForTags(widthOf(names[0]) + widthOf(names[1]) + widthOf(names[2]) + 2 * kGap));
    QCOMPARE(tagTitles(), names);
    QCOMPARE(tagPills().last()->geometry().right() + 1, m_bar->width() - 24);
}

void FilterBarViewTest::onePixelLessThanThreeTagsNeedMakesRoomForThePlus()
{
    // The third is wider than the pill of the rest, so that two and that one do fit.
    const QStringList names{u"one"_s, u"two"_s, u"accounting"_s};
    makeWithTags(names);
    const int three = widthOf(names[0]) + widthOf(names[1]) + widthOf(names[2]) + 2 * kGap;
    showIn(widthForTags(three - 1));
    QCOMPARE(tagTitles(), (QStringList{names[0], names[1], u"+1"_s}));
}

void FilterBarViewTest::thePlusTakesRoomFromTheTags()
{
    // The third is narrower than the pill of the rest: where three just do not fit, neither do two
    // and that one.
    const QStringList names{u"accounts"_s, u"sailing"_s, u"i"_s};
    QVERIFY(widthOf(names[2]) < widthOf(u"+1"_s));
    makeWithTags(names);
    const int three = widthOf(names[0]) + widthOf(names[1]) + widthOf(names[2]) + 2 * kGap;
    showIn(widthForTags(three));
    QCOMPARE(tagTitles(), names);
    showIn(widthForTags(three - 1));
    QCOMPARE(tagTitles(), (QStringList{names[0], u"+2"_s}));
}

void FilterBarViewTest::wherePillsDoNotFitThePlusStandsAlone()
{
    makeWithTags(kFive);
    showIn(widthForTags(widthOf(kFive[0]) + kGap + widthOf(u"+4"_s) - 1));
    QCOMPARE(tagTitles(), QStringList{u"+5"_s});
    QCOMPARE(titlesOf(*openMenu()), kFive);
}

void FilterBarViewTest::whereThePlusDoesNotFitThereIsNothing()
{
    const QStringList names(100, u"wide enough"_s);
    const int room = widthOf(u"+100"_s);
    QVERIFY(room - 1 > 44);
    makeWithTags(names);
    showIn(widthForTags(room));
    QCOMPARE(tagTitles(), QStringList{u"+100"_s});
    showIn(widthForTags(room - 1));
    QVERIFY(tagPills().isEmpty());
}

void FilterBarViewTest::moreThanFortyFourPixelsAreNeeded()
{
    makeWithTags({u"i"_s});
    QVERIFY(widthOf(u"i"_s) <= 44);
    showIn(widthForTags(44));
    QVERIFY(tagPills().isEmpty());
    showIn(widthForTags(45));
    QCOMPARE(tagTitles(), QStringList{u"i"_s});
    showIn(0);
    QVERIFY(tagPills().isEmpty());
}

void FilterBarViewTest::aLongNameTakesNoMoreThanItsShare()
{
    const QString name = u"wwwwwwwwwwwwwwwwwwww"_s;
    makeWithTags({name, u"Work"_s});
    showIn(widthForTags(kLongest + kGap + widthOf(u"Work"_s)));
    QCOMPARE(tagTitles(), (QStringList{name, u"Work"_s}));
    QCOMPARE(tagPills().first()->width(), kLongest);
}

void FilterBarViewTest::namesOfFortyCharactersAreCut()
{
    // Both begin alike, and are cut before they begin to differ.
    const QString name = u"the minutes of the yacht club, corrected"_s;
    const QString other = name.first(39) + u'!';
    QCOMPARE(name.size(), 40);
    makeWithTags({name, other, u"the minutes"_s});
    showIn(900);
    QCOMPARE(tagPills().at(0)->width(), kLongest);
    QCOMPARE(tagPills().at(0)->text(), name);
    const QImage drawn = tagPills().at(0)->grab().toImage();
    QCOMPARE(drawn, tagPills().at(1)->grab().toImage());
    // Nothing is drawn where the padding is but the outline.
    for (int x = 110 - 12; x < 110 - 6; ++x) {
        for (int y = 6; y < 20; ++y)
            QCOMPARE(drawn.pixelColor(x, y), drawn.pixelColor(97, 5));
    }
}

void FilterBarViewTest::namesOfAnyLengthAreCutBeforeTheyAreMeasured()
{
    const QString name(1'000'000, u'x');
    makeWithTags({name, u"b"_s, u"c"_s, name});
    QCOMPARE(tagPills().first()->text(), name.first(200) + u"..."_s);
    QCOMPARE(tagPills().first()->width(), kLongest);
    QCOMPARE(titlesOf(*openMenu()).last(), name.first(200) + u"..."_s);
    tagPills().first()->click();
    QCOMPARE(m_bar->selectedCategory(), FilterCategory::tag(name));
}

void FilterBarViewTest::namesAreNoAccessKeys()
{
    makeWithTags({u"R&D"_s, u"b"_s, u"c"_s, u"Q&A\tlist"_s});
    QCOMPARE(tagPills().first()->text(), u"R&D"_s);
    QVERIFY(tagPills().first()->shortcut().isEmpty());
    QCOMPARE(titlesOf(*openMenu()), QStringList{u"Q&&A list"_s});
    m_bar->findChild<QMenu *>()->actions().first()->trigger();
    QCOMPARE(m_bar->selectedCategory(), FilterCategory::tag(u"Q&A\tlist"_s));
}

void FilterBarViewTest::namesThatComeTwiceHaveAPillEach()
{
    makeWithTags({u"Work"_s, u"Work"_s, u"i"_s, u"x"_s, u"x"_s});
    QCOMPARE(tagTitles(), (QStringList{u"Work"_s, u"Work"_s, u"i"_s, u"+2"_s}));
    QTest::mouseClick(tagPills().at(1), Qt::LeftButton);
    QCOMPARE(selectedTitles(), (QStringList{u"Work"_s, u"Work"_s}));
    openMenu()->actions().last()->trigger();
    QCOMPARE(m_bar->selectedCategory(), FilterCategory::tag(u"x"_s));
    m_tags->deleteTag(u"x"_s);
    QTRY_COMPARE(m_bar->selectedCategory(), FilterCategory::all());
    QCOMPARE(tagTitles(), (QStringList{u"Work"_s, u"Work"_s, u"i"_s}));
}

void FilterBarViewTest::aChangedHeightRebuildsNothing()
{
    makeWithTags(kFive);
    const QList<FilterButton *> before = tagPills();
    m_bar->resize(680, 40);
    QCOMPARE(tagPills(), before);
    QCOMPARE(pill(u"filter.all"_s)->y(), 7);
}

void FilterBarViewTest::layingOutAtTheSameWidthRebuildsNothing()
{
    makeWithTags(kFive);
    const QList<FilterButton *> before = tagPills();
    QResizeEvent resize(m_bar->size(), m_bar->size());
    QApplication::sendEvent(m_bar.get(), &resize);
    m_bar->hide();
    m_bar->show();
    QCOMPARE(tagPills(), before);
}

void FilterBarViewTest::aChangedWidthRebuildsTheTags()
{
    makeWithTags(kFive);
    showIn(widthForTags(widthOf(kFive[0]) + kGap + widthOf(u"+4"_s)));
    QCOMPARE(tagTitles(), (QStringList{kFive[0], u"+4"_s}));
    showIn(680);
    QCOMPARE(tagTitles(), kFive.first(3) + QStringList{u"+2"_s});
}

void FilterBarViewTest::aNewTagIsThereAtOnce()
{
    QVERIFY(m_tags->createTag(u"travel"_s));
    QCOMPARE(tagTitles(), QStringList{u"travel"_s});
    QVERIFY(tagPills().first()->isVisible());
}

void FilterBarViewTest::theSecondNewsOfAChangeChangesNothing()
{
    makeWithTags(kFive.first(3));
    m_bar->selectCategory(FilterCategory::tag(kFive[1]));
    QSignalSpy selected(m_bar.get(), &FilterBarView::filterSelected);
    QSignalSpy news(m_tags.get(), &TagManager::tagsDidChange);
    QVERIFY(m_tags->renameTag(kFive[1], u"ledger"_s));
    QTRY_COMPARE(news.count(), 2);
    QCOMPARE(selected.count(), 1);
    QCOMPARE(tagTitles(), (QStringList{kFive[0], u"ledger"_s, kFive[2]}));
    QCOMPARE(selectedTitles(), QStringList{u"All"_s});
}

void FilterBarViewTest::movingATagMovesItsPill()
{
    makeWithTags(kFive);
    showIn(900);
    QVERIFY(m_tags->moveTagToFront(u"recipes"_s));
    QCOMPARE(tagTitles(), (QStringList{u"recipes"_s, kFive[0], kFive[1], u"+2"_s}));
}

void FilterBarViewTest::deletingTheSelectedTagFallsBackToAll()
{
    makeWithTags(kFive);
    m_bar->selectCategory(FilterCategory::tag(u"Work"_s));
    QSignalSpy selected(m_bar.get(), &FilterBarView::filterSelected);
    m_tags->deleteTag(u"Work"_s);
    QTRY_COMPARE(selected.count(), 1);
    QCOMPARE(selected.first().first().value<FilterCategory>(), FilterCategory::all());
    QCOMPARE(selectedTitles(), QStringList{u"All"_s});
}

void FilterBarViewTest::renamingTheSelectedTagFallsBackToAll()
{
    makeWithTags(kFive);
    m_bar->selectCategory(FilterCategory::tag(kFive[0]));
    QSignalSpy selected(m_bar.get(), &FilterBarView::filterSelected);
    QVERIFY(m_tags->renameTag(kFive[0], u"Travel"_s));
    QCOMPARE(selected.count(), 1);
    QCOMPARE(selected.first().first().value<FilterCategory>(), FilterCategory::all());
    QCOMPARE(selectedTitles(), QStringList{u"All"_s});
}

void FilterBarViewTest::theFallBackIsToldBeforeThePillsAreMadeAnew()
{
    makeWithTags(kFive);
    m_bar->selectCategory(FilterCategory::tag(kFive[0]));
    QStringList titlesWhenTold;
    QStringList selectedWhenTold;
    connect(m_bar.get(), &FilterBarView::filterSelected, this, [&] {
        QCOMPARE(m_bar->selectedCategory(), FilterCategory::all());
        titlesWhenTold = tagTitles();
        selectedWhenTold = selectedTitles();
    });
    QVERIFY(m_tags->renameTag(kFive[0], u"trips"_s));
    QCOMPARE(titlesWhenTold, kFive.first(3) + QStringList{u"+2"_s});
    QCOMPARE(selectedWhenTold, QStringList{kFive[0]});
    QCOMPARE(tagTitles().first(), u"trips"_s);
    QCOMPARE(selectedTitles(), QStringList{u"All"_s});
}

void FilterBarViewTest::otherTagsMayGoWithoutAWord()
{
    makeWithTags(kFive);
    m_bar->selectCategory(FilterCategory::tag(kFive[0]));
    QSignalSpy selected(m_bar.get(), &FilterBarView::filterSelected);
    m_tags->deleteTag(kFive[1]);
    QTRY_COMPARE(tagTitles(), (QStringList{kFive[0], kFive[2], kFive[3], u"+1"_s}));
    QCOMPARE(selected.count(), 0);
    QCOMPARE(selectedTitles(), QStringList{kFive[0]});
}

void FilterBarViewTest::aTagThatMovesToTheMenuStaysSelected()
{
    makeWithTags(kFive);
    m_bar->selectCategory(FilterCategory::tag(kFive[2]));
    QSignalSpy selected(m_bar.get(), &FilterBarView::filterSelected);
    QVERIFY(m_tags->moveTagDown(kFive[2]));
    QVERIFY(selectedTitles().isEmpty());
    QCOMPARE(m_bar->selectedCategory(), FilterCategory::tag(kFive[2]));
    QCOMPARE(selected.count(), 0);
}

void FilterBarViewTest::aTagsPillSelectsItsTag()
{
    makeWithTags(kFive);
    QSignalSpy selected(m_bar.get(), &FilterBarView::filterSelected);
    QTest::mouseClick(tagPills().at(1), Qt::LeftButton);
    QCOMPARE(selected.count(), 1);
    QCOMPARE(selected.first().first().value<FilterCategory>(), FilterCategory::tag(kFive[1]));
    QCOMPARE(selectedTitles(), QStringList{kFive[1]});
    QTest::mouseClick(tagPills().at(1), Qt::LeftButton);
    QCOMPARE(selected.count(), 1);
}

void FilterBarViewTest::selectingATagThatIsHiddenLeavesThePlusAlone()
{
    makeWithTags(kFive);
    const QImage before = plus()->grab().toImage();
    m_bar->selectCategory(FilterCategory::tag(kFive[4]));
    QVERIFY(selectedTitles().isEmpty());
    QCOMPARE(tagTitles(), kFive.first(3) + QStringList{u"+2"_s});
    QCOMPARE(plus()->grab().toImage(), before);
}

void FilterBarViewTest::theMenuHasTheHiddenTagsInOrder()
{
    makeWithTags(kFive);
    QSignalSpy selected(m_bar.get(), &FilterBarView::filterSelected);
    OverflowMenu *menu = openMenu();
    QVERIFY(menu && menu->isVisible());
    QCOMPARE(titlesOf(*menu), kFive.mid(3));
    for (const QAction *action : menu->actions()) {
        QVERIFY(action->isEnabled());
        QVERIFY(!action->isChecked());
    }
    QCOMPARE(selected.count(), 0);
}

void FilterBarViewTest::theMenuHasAHundredTagsAtMost()
{
    QStringList names;
    for (int i = 0; i < 1000; ++i)
        names.append(QString::number(i));
    makeWithTags(names);
    QCOMPARE(openMenu()->actions().size(), 100);
}

void FilterBarViewTest::theMenuChecksTheSelectedTag()
{
    makeWithTags(kFive);
    m_bar->selectCategory(FilterCategory::tag(kFive[4]));
    const QList<QAction *> items = openMenu()->actions();
    QVERIFY(!items.at(0)->isChecked());
    QVERIFY(items.at(1)->isChecked());
}

void FilterBarViewTest::theMenuOpensWhereTheMouseIs()
{
    makeWithTags(kFive);
    m_bar->selectCategory(FilterCategory::tag(kFive[4]));
    const QPoint place(5, 7);
    QTest::mouseClick(plus(), Qt::LeftButton, {}, place);
    const auto *menu = m_bar->findChild<OverflowMenu *>();
    const QRect card = menu->geometry().marginsRemoved(menu->contentsMargins());
    QCOMPARE(card.topLeft(), plus()->mapToGlobal(place));
    QVERIFY(!menu->activeAction());
}

void FilterBarViewTest::byKeyboardTheMenuOpensUnderThePlus()
{
    makeWithTags(kFive);
    focus(plus());
    QTest::keyClick(plus(), Qt::Key_Space);
    const auto *menu = m_bar->findChild<OverflowMenu *>();
    const QRect card = menu->geometry().marginsRemoved(menu->contentsMargins());
    QCOMPARE(card.topLeft(), plus()->mapToGlobal(QPoint(0, 26 + 4)));
    QCOMPARE(menu->activeAction(), menu->actions().first());
}

void FilterBarViewTest::byKeyboardTheCheckedTagLiesUnderThePlus()
{
    makeWithTags(kFive);
    m_bar->move(0, 200);
    m_bar->selectCategory(FilterCategory::tag(kFive[4]));
    focus(plus());
    QTest::keyClick(plus(), Qt::Key_Return);
    auto *menu = m_bar->findChild<OverflowMenu *>();
    QAction *checked = menu->actions().at(1);
    QCOMPARE(menu->activeAction(), checked);
    const QPoint item = menu->mapToGlobal(menu->actionGeometry(checked).topLeft());
    QCOMPARE(item.y(), plus()->mapToGlobal(QPoint(0, 26 + 4)).y());
}

void FilterBarViewTest::choosingFromTheMenuSelects()
{
    makeWithTags(kFive);
    QSignalSpy selected(m_bar.get(), &FilterBarView::filterSelected);
    QPointer<OverflowMenu> menu = openMenu();
    QTest::mouseClick(menu, Qt::LeftButton, {},
                      menu->actionGeometry(menu->actions().at(1)).center());
    QCOMPARE(selected.count(), 1);
    QCOMPARE(selected.first().first().value<FilterCategory>(), FilterCategory::tag(kFive[4]));
    QTRY_VERIFY(!menu);
}

void FilterBarViewTest::choosingTheCheckedTagAgainTellsNothing()
{
    makeWithTags(kFive);
    m_bar->selectCategory(FilterCategory::tag(kFive[4]));
    QSignalSpy selected(m_bar.get(), &FilterBarView::filterSelected);
    openMenu()->actions().at(1)->trigger();
    QCOMPARE(selected.count(), 0);
    QCOMPARE(m_bar->selectedCategory(), FilterCategory::tag(kFive[4]));
}

void FilterBarViewTest::theMenuGoesWithThePlus()
{
    makeWithTags(kFive);
    QPointer<OverflowMenu> menu = openMenu();
    QVERIFY(menu);
    m_tags->deleteTag(kFive[4]);
    QTRY_VERIFY(!menu);
    QVERIFY(!QApplication::activePopupWidget());
}

void FilterBarViewTest::aPressShowsOnlyInsideThePill()
{
    FilterButton *button = pill(u"filter.text"_s);
    const QImage before = button->grab().toImage();
    QTest::mousePress(button, Qt::LeftButton);
    QVERIFY(button->isDown());
    QVERIFY(button->grab().toImage() != before);
    QTest::mouseMove(button, QPoint(-40, 5));
    QVERIFY(!button->isDown());
    QCOMPARE(button->grab().toImage(), before);
    QTest::mouseMove(button, QPoint(5, 5));
    QVERIFY(button->isDown());
    QTest::mouseRelease(button, Qt::LeftButton);
    QVERIFY(!button->isDown());
}

void FilterBarViewTest::aReleaseOutsideThePillSelectsNothing()
{
    FilterButton *button = pill(u"filter.text"_s);
    QTest::mousePress(button, Qt::LeftButton);
    QTest::mouseMove(button, QPoint(-40, 5));
    QTest::mouseRelease(button, Qt::LeftButton, {}, QPoint(-40, 5));
    QCOMPARE(selectedTitles(), QStringList{u"All"_s});
}

void FilterBarViewTest::comingBackIntoThePillSelects()
{
    FilterButton *button = pill(u"filter.text"_s);
    QTest::mousePress(button, Qt::LeftButton);
    QTest::mouseMove(button, QPoint(-40, 5));
    QTest::mouseMove(button, QPoint(5, 5));
    QTest::mouseRelease(button, Qt::LeftButton, {}, QPoint(5, 5));
    QCOMPARE(selectedTitles(), QStringList{u"Text"_s});
}

void FilterBarViewTest::aDisabledPillDoesNothing()
{
    FilterButton *button = pill(u"filter.text"_s);
    button->setEnabled(false);
    QTest::mousePress(button, Qt::LeftButton);
    QVERIFY(!button->isDown());
    QTest::mouseRelease(button, Qt::LeftButton);
    QCOMPARE(selectedTitles(), QStringList{u"All"_s});
}

void FilterBarViewTest::theRightButtonDoesNothing()
{
    QTest::mouseClick(pill(u"filter.text"_s), Qt::RightButton);
    QCOMPARE(selectedTitles(), QStringList{u"All"_s});
}

void FilterBarViewTest::leftAndRightGoFromPillToPill()
{
    makeWithTags(kFive);
    focus(pill(u"filter.all"_s));
    QTest::keyClick(m_bar->focusedButton(), Qt::Key_Left);
    QCOMPARE(m_bar->focusedButton(), pill(u"filter.all"_s));
    for (int i = 1; i < pills().size(); ++i) {
        QTest::keyClick(m_bar->focusedButton(), Qt::Key_Right);
        QCOMPARE(m_bar->focusedButton(), pills().at(i));
    }
    QTest::keyClick(m_bar->focusedButton(), Qt::Key_Right);
    QCOMPARE(m_bar->focusedButton(), plus());
    QTest::keyClick(m_bar->focusedButton(), Qt::Key_Left);
    QCOMPARE(m_bar->focusedButton(), tagPills().at(2));
    QCOMPARE(selectedTitles(), QStringList{u"All"_s});
}

void FilterBarViewTest::spaceAndReturnSelect_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("space") << Qt::Key_Space;
    QTest::newRow("return") << Qt::Key_Return;
    QTest::newRow("enter") << Qt::Key_Enter;
}

void FilterBarViewTest::spaceAndReturnSelect()
{
    QFETCH(const Qt::Key, key);
    focus(pill(u"filter.file"_s));
    QTest::keyClick(pill(u"filter.file"_s), key);
    QCOMPARE(selectedTitles(), QStringList{u"File"_s});
}

void FilterBarViewTest::tabGoesToTheSelectedPill()
{
    makeWithTags(kFive);
    for (FilterButton *selected : {pill(u"filter.link"_s), tagPills().at(1)}) {
        m_bar->selectCategory(*selected->filterCategory());
        for (const FilterButton *button : pills())
            QCOMPARE(button->focusPolicy(), button == selected ? Qt::TabFocus : Qt::NoFocus);
    }
}

void FilterBarViewTest::tabLeavesTheBarInOneStep()
{
    QWidget window;
    QWidget before(&window);
    before.setFocusPolicy(Qt::TabFocus);
    FilterBarView bar(*m_tags, &window);
    QWidget after(&window);
    after.setFocusPolicy(Qt::TabFocus);
    for (const QString &name : kFive)
        m_tags->createTag(name);
    bar.resize(680, 32);
    bar.selectCategory(FilterCategory::tag(kFive[1]));
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    before.setFocus();
    const auto press = [](Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); };
    for (const Qt::Key step : {Qt::Key_Left, Qt::Key_Right}) {
        press(Qt::Key_Tab);
        QVERIFY(bar.focusedButton());
        QCOMPARE(bar.focusedButton()->text(), kFive[1]);
        press(step);
        press(Qt::Key_Tab);
        QVERIFY(after.hasFocus());
        press(Qt::Key_Backtab);
        QCOMPARE(bar.focusedButton()->text(), kFive[1]);
        press(step);
        press(Qt::Key_Backtab);
        QVERIFY(before.hasFocus());
    }
}

void FilterBarViewTest::aHiddenSelectionHasTabGoToThePlus()
{
    makeWithTags(kFive);
    m_bar->selectCategory(FilterCategory::tag(kFive[4]));
    QCOMPARE(plus()->focusPolicy(), Qt::TabFocus);
    QCOMPARE(pill(u"filter.all"_s)->focusPolicy(), Qt::NoFocus);
}

void FilterBarViewTest::theFocusOutlivesItsPill()
{
    makeWithTags(kFive);
    focus(tagPills().at(1));
    m_tags->deleteTag(kFive[1]);
    QTRY_COMPARE(tagPills().at(1)->text(), kFive[2]);
    QCOMPARE(m_bar->focusedButton(), pill(u"filter.all"_s));
}

void FilterBarViewTest::pillsTellWhatTheyAre()
{
    makeWithTags(kFive);
    QAccessibleInterface *link = QAccessible::queryAccessibleInterface(pill(u"filter.link"_s));
    QCOMPARE(link->role(), QAccessible::RadioButton);
    QCOMPARE(link->text(QAccessible::Name), u"Link"_s);
    QVERIFY(link->state().checkable);
    QVERIFY(!link->state().checked);
    m_bar->selectCategory(FilterCategory::content(ClipboardContentType::Url));
    QVERIFY(link->state().checked);

    QAccessibleInterface *rest = QAccessible::queryAccessibleInterface(plus());
    QCOMPARE(rest->role(), QAccessible::ButtonMenu);
    QCOMPARE(rest->text(QAccessible::Name), u"More tags: 2"_s);
    QVERIFY(rest->state().hasPopup);
    QVERIFY(!rest->state().checkable);
}

void FilterBarViewTest::pillsCanBePressedByThoseWhoDoNotSee()
{
    QAccessibleInterface *file = QAccessible::queryAccessibleInterface(pill(u"filter.file"_s));
    QAccessibleActionInterface *actions = file->actionInterface();
    QVERIFY(actions->actionNames().contains(QAccessibleActionInterface::pressAction()));
    actions->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(selectedTitles(), QStringList{u"File"_s});
}

QTEST_MAIN(FilterBarViewTest)
#include "FilterBarViewTest.moc"
