#include "tests/window/TableFixture.h"

#include <QLineEdit>
#include <QScrollBar>
#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Scroll = ClipboardTableViewController::Scroll;

namespace {

constexpr auto kLongEnough = 1s;

/// The curve of mass 1.2, stiffness 280 and damping 18, by hand.
double swung(std::chrono::duration<double> time)
{
    constexpr double kDecay = 18 / 2.4;
    const double frequency = std::sqrt(280 / 1.2 - kDecay * kDecay);
    const double angle = frequency * time.count();
    return 1
        - std::exp(-kDecay * time.count())
        * (std::cos(angle) + kDecay / frequency * std::sin(angle));
}

} // namespace

class RowSelectionFadeTest : public QObject, private TableFixture
{
    Q_OBJECT

private slots:
    void init()
    {
        setUpTable();
        make(SampleHistory::numbered(60));
        pass(kLongEnough);
    }
    void cleanup() { tearDownTable(); }

    void theGroundComesAndGoesByTheSpring();
    void textsAndStarsChangeTheirColorAtOnce();
    void aFurtherChangeSetsOutFromTheOpposite();
    void underAHeldKeyTheSelectionIsWhereThePersonIs();
    void underAHeldKeyWhatHasFadedIsDrawnAtRest();
    void onlyTheRowsConcernedAreDrawn();
    void nothingIsDrawnOnceNothingIsSeenToChange();
    void aRowThatIsWordedAnewIsAtRest();
    void aRowThatIsScrolledInIsAtRest();
    void aRowThatIsScrolledAwayIsAtRestWhenItComesBack();
    void aFilterAnswerIsAtRest();
    void aSelectedRowThatMovesIsAtRest();
    void aSelectedRowThatGoesTakesItsGroundAlong();
    void theFocusChangesNothing();
    void withReducedMotionItIsShort();
    void whatFadesEndsWhenMotionIsReduced();
    void nothingRunsWhileHidden();

private:
    QColor colorAt(QPoint point) { return m_view->viewport()->grab().toImage().pixelColor(point); }

    /// From 0 for the bare window to 1 for the ground of the selected row.
    double groundOf(int row)
    {
        const QPoint point = layoutOf(row).selection.center().toPoint() + QPoint(0, 28);
        QImage image(m_view->viewport()->size(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        m_view->viewport()->render(&image, {}, {}, {});
        return image.pixelColor(point).alphaF();
    }

    static bool isNear(double value, double wanted) { return std::abs(value - wanted) < 0.006; }
};

void RowSelectionFadeTest::theGroundComesAndGoesByTheSpring()
{
    m_view->selectRow(1);
    pass(kLongEnough);
    QCOMPARE(groundOf(1), 1.0);
    m_view->selectRow(2);
    for (auto time = 16ms; time < 900ms; time += 16ms) {
        const double part = std::clamp(swung(time), 0.0, 1.0);
        QVERIFY2(isNear(groundOf(2), part), qPrintable(QString::number(groundOf(2) - part)));
        QVERIFY(isNear(groundOf(1), 1 - part));
        pass(16ms);
    }
    QCOMPARE(groundOf(2), 1.0);
    QCOMPARE(groundOf(1), 0.0);
}

void RowSelectionFadeTest::textsAndStarsChangeTheirColorAtOnce()
{
    ClipboardItem item = SampleHistory::textItem(u"███"_s);
    item.isFavorite = true;
    make({SampleHistory::shared(item)});
    const SystemColors colors = systemColors(ColorScheme::Light);
    const QPoint letter = layoutOf(0).content.topLeft().toPoint() + QPoint(4, 10);
    QCOMPARE(colorAt(letter), colors.labelColor);
    QCOMPARE(colorAt(starOf(0)), colors.controlAccentColor);
    m_view->selectRow(0);
    QVERIFY(groundOf(0) < 0.1);
    QCOMPARE(colorAt(letter), QColor(Qt::white));
    QCOMPARE(colorAt(starOf(0)), QColor(Qt::white));
    pass(112ms);
    m_view->deselectAll();
    QVERIFY(groundOf(0) > 0.9);
    QCOMPARE(colorAt(letter), colors.labelColor);
    QCOMPARE(colorAt(starOf(0)), colors.controlAccentColor);
}

void RowSelectionFadeTest::aFurtherChangeSetsOutFromTheOpposite()
{
    m_view->selectRow(0);
    pass(112ms);
    const double reached = groundOf(0);
    QVERIFY(reached > 0.5 && reached < 0.9);
    m_view->selectRow(1);
    QVERIFY(isNear(groundOf(0), 1 - swung(16ms)));
    pass(112ms);
    m_view->selectRow(0);
    QVERIFY(isNear(groundOf(0), swung(16ms)));
    QVERIFY(isNear(groundOf(1), 1 - swung(16ms)));
    pass(kLongEnough);
    QCOMPARE(groundOf(0), 1.0);
    QCOMPARE(groundOf(1), 0.0);
}

void RowSelectionFadeTest::underAHeldKeyTheSelectionIsWhereThePersonIs()
{
    m_controller->selectNextRow();
    pass(33ms);
    for (int i = 1; i < 30; ++i) {
        m_controller->selectNextRow();
        const auto [first, last] = m_view->rowsInSight();
        for (int row = first; row < last; ++row)
            QCOMPARE(groundOf(row), row == i ? 1.0 : 0.0);
        pass(33ms);
    }
    pass(kLongEnough);
    QCOMPARE(groundOf(29), 1.0);
    QCOMPARE(m_scheduler->pendingCount(), 0);
}

void RowSelectionFadeTest::underAHeldKeyWhatHasFadedIsDrawnAtRest()
{
    m_view->selectRow(0);
    pass(kLongEnough);
    m_view->selectRow(1);
    pass(33ms);
    QCoreApplication::processEvents();
    PaintedRegions painted(*m_view->viewport());
    m_view->selectRow(2);
    QCoreApplication::processEvents();
    QCOMPARE(painted.whole(), QRegion(m_view->rowBox(0) | m_view->rowBox(1) | m_view->rowBox(2)));
}

void RowSelectionFadeTest::onlyTheRowsConcernedAreDrawn()
{
    m_view->selectRow(1);
    pass(kLongEnough);
    waitUntilDrawn();
    PaintedRegions painted(*m_view->viewport());
    m_view->selectRow(2);
    for (int frame = 0; frame < 12; ++frame) {
        QCoreApplication::processEvents();
        pass(16ms);
    }
    QVERIFY(painted.regions().size() > 5);
    QCOMPARE(painted.whole(), QRegion(m_view->rowBox(1) | m_view->rowBox(2)));
}

void RowSelectionFadeTest::nothingIsDrawnOnceNothingIsSeenToChange()
{
    m_view->selectRow(0);
    pass(kLongEnough);
    m_view->selectRow(1);
    waitUntilDrawn();
    // Beyond its place, between 157 and 393 ms, the spring swings where there is nothing to be seen.
    PaintedRegions painted(*m_view->viewport());
    pass(176ms);
    QCoreApplication::processEvents();
    QVERIFY(painted.regions().size() > 0);
    painted.clear();
    for (int frame = 0; frame < 12; ++frame) {
        pass(16ms);
        QCoreApplication::processEvents();
    }
    QCOMPARE(painted.regions().size(), 0);
    pass(490ms);
    QCOMPARE(m_scheduler->pendingCount(), 0);
}

void RowSelectionFadeTest::aRowThatIsWordedAnewIsAtRest()
{
    m_view->selectRow(1);
    m_controller->toggleFavorite(m_controller->filteredItems().at(1)->id);
    QCOMPARE(groundOf(1), 1.0);
    m_view->selectRow(2);
    m_controller->refreshTexts();
    QCOMPARE(groundOf(1), 0.0);
    QCOMPARE(groundOf(2), 1.0);
}

void RowSelectionFadeTest::aRowThatIsScrolledInIsAtRest()
{
    m_view->selectRow(1);
    QTest::keyClick(m_view.get(), Qt::Key_End);
    QCOMPARE(m_view->selectedRow(), 59);
    QCOMPARE(groundOf(59), 1.0);
}

void RowSelectionFadeTest::aRowThatIsScrolledAwayIsAtRestWhenItComesBack()
{
    m_view->selectRow(1);
    m_view->verticalScrollBar()->setValue(1000);
    pass(32ms);
    m_view->verticalScrollBar()->setValue(0);
    QCOMPARE(groundOf(1), 1.0);
}

void RowSelectionFadeTest::aFilterAnswerIsAtRest()
{
    m_view->selectRow(11);
    m_view->scrollToTop();
    search(u"entry 11"_s);
    QCOMPARE(m_view->selectedRow(), 0);
    QCOMPARE(groundOf(0), 1.0);
}

void RowSelectionFadeTest::aSelectedRowThatMovesIsAtRest()
{
    m_view->selectRow(3);
    pass(kLongEnough);
    ClipboardItemList items = m_controller->items();
    items.move(3, 0);
    m_controller->setItems(items);
    m_controller->applyFilters(Scroll::Keep);
    QCOMPARE(m_view->selectedRow(), 0);
    pass(kLongEnough - 984ms);
    QVERIFY(groundOf(0) > 0); // It fades in as a row that comes, with its ground.
    const double row = m_view->rowTransition()->look(items[0]->id).opacity;
    QVERIFY(isNear(groundOf(0), row));
}

void RowSelectionFadeTest::aSelectedRowThatGoesTakesItsGroundAlong()
{
    make(SampleHistory::numbered(1));
    m_view->selectRow(0);
    pass(kLongEnough);
    m_controller->setItems({});
    m_controller->applyFilters(Scroll::Keep);
    const QPoint ground = RowLayout(QRectF(0, 0, 680, 72)).selection.center().toPoint();
    QImage image(m_view->viewport()->size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    m_view->viewport()->render(&image, {}, {}, {});
    QCOMPARE(image.pixelColor(ground + QPoint(0, 28)).alpha(), 0);
}

void RowSelectionFadeTest::theFocusChangesNothing()
{
    QLineEdit field;
    field.show();
    m_view->selectRow(1);
    pass(kLongEnough);
    const auto expectRest = [this] {
        QCOMPARE(groundOf(1), 1.0);
        QCOMPARE(groundOf(0), 0.0);
        QCOMPARE(m_scheduler->pendingCount(), 0);
    };
    m_view->activateWindow();
    m_view->setFocus();
    QVERIFY(QTest::qWaitForWindowActive(m_view.get()));
    expectRest();
    field.activateWindow();
    field.setFocus();
    QVERIFY(QTest::qWaitForWindowActive(&field));
    expectRest();
}

void RowSelectionFadeTest::withReducedMotionItIsShort()
{
    m_controller->setLook({.isMotionReduced = true});
    m_view->selectRow(1);
    double before = 0;
    for (auto time = 16ms; time < 100ms; time += 16ms) {
        QVERIFY(groundOf(1) > before && groundOf(1) < 1);
        before = groundOf(1);
        pass(16ms);
    }
    QCOMPARE(groundOf(1), 1.0);
    QCOMPARE(m_scheduler->pendingCount(), 0);
}

void RowSelectionFadeTest::whatFadesEndsWhenMotionIsReduced()
{
    m_view->selectRow(1);
    pass(kLongEnough);
    m_view->selectRow(2);
    pass(64ms);
    QCoreApplication::processEvents();
    PaintedRegions painted(*m_view->viewport());
    m_view->setMotionReduced(true);
    QCOMPARE(groundOf(1), 0.0);
    QCOMPARE(groundOf(2), 1.0);
    QCOMPARE(m_scheduler->pendingCount(), 0);
    painted.clear();
    QCoreApplication::processEvents();
    QCOMPARE(painted.whole(), QRegion(m_view->rowBox(1) | m_view->rowBox(2)));
}

void RowSelectionFadeTest::nothingRunsWhileHidden()
{
    m_view->hide();
    m_view->selectRow(1);
    QCOMPARE(m_scheduler->pendingCount(), 0);
    m_view->show();
    QCOMPARE(groundOf(1), 1.0);
    m_view->selectRow(2);
    m_view->hide();
    pass(32ms);
    QCOMPARE(m_scheduler->pendingCount(), 0);
}

QTEST_MAIN(RowSelectionFadeTest)
#include "RowSelectionFadeTest.moc"
