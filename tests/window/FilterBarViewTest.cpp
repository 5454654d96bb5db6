#include "window/FilterBarView.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class FilterBarViewTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void sixPillsStandInARow();
    void allIsSelectedAtFirst();
    void aClickSelectsAndTells();
    void clickingTheSelectedPillTellsNothing();
    void aReleaseOutsideThePillSelectsNothing();
    void aFilterWithoutPillLeavesNoneSelected();

private:
    FilterButton *pill(const QString &key) { return m_bar->findChild<FilterButton *>(key); }
    QStringList selectedTitles();

    std::unique_ptr<FilterBarView> m_bar;
};

void FilterBarViewTest::init()
{
    m_bar = std::make_unique<FilterBarView>();
    m_bar->resize(680, 32);
    m_bar->show();
}

QStringList FilterBarViewTest::selectedTitles()
{
    QStringList titles;
    for (const FilterButton *button : m_bar->findChildren<FilterButton *>()) {
        if (button->isSelected())
            titles.append(button->text());
    }
    return titles;
}

void FilterBarViewTest::sixPillsStandInARow()
{
    const QList<FilterButton *> pills = m_bar->findChildren<FilterButton *>();
    QStringList titles;
    int x = 24;
    for (const FilterButton *button : pills) {
        titles.append(button->text());
        QCOMPARE(button->geometry(), QRect(x, 3, button->naturalWidth(), 26));
        x += button->width() + 8;
    }
    QCOMPARE(titles, (QStringList{u"All"_s, u"Text"_s, u"Image"_s, u"File"_s, u"Link"_s,
                                  u"Favorite"_s}));
    QVERIFY(x < 656);
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

void FilterBarViewTest::aReleaseOutsideThePillSelectsNothing()
{
    FilterButton *button = pill(u"filter.text"_s);
    QTest::mousePress(button, Qt::LeftButton);
    QVERIFY(button->isDown());
    QTest::mouseMove(button, QPoint(-40, 5));
    QTest::mouseRelease(button, Qt::LeftButton, {}, QPoint(-40, 5));
    QCOMPARE(selectedTitles(), QStringList{u"All"_s});
}

void FilterBarViewTest::aFilterWithoutPillLeavesNoneSelected()
{
    m_bar->selectCategory(FilterCategory::tag(u"travel"_s));
    QVERIFY(selectedTitles().isEmpty());
}

QTEST_MAIN(FilterBarViewTest)
#include "FilterBarViewTest.moc"
