#include "tests/window/TableFixture.h"

#include "window/FavoriteLimitHintOverlayView.h"

#include <QApplication>
#include <QScreen>
#include <QScrollBar>
#include <QWindow>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using SampleHistory::shared;
using View = FavoriteLimitHintOverlayView;

class FavoriteLimitHintTest : public QObject, private TableFixture
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { tearDownTable(); }

    void aRefusedFavoriteLeavesTheStarAndBeeps();
    void belowTheLimitThereIsNoHint();
    void theBubbleStandsOverTheStar();
    void theBubbleStaysOnTheScreen();
    void aRowOutOfSightOnlyBeeps();
    void anUnlistedEntryOnlyBeeps();
    void itStaysForAWhileAndFades();
    void aNewHintTakesThePlaceOfTheFormer();
    void itPopsUpFromTheLeft();
    void withReducedMotionItFadesInItsPlace();
    void aHintThatComesIsThereWhenMotionIsReduced();
    void aHintThatGoesIsGoneWhenMotionIsReduced();
    void itGoesWhenTheListMoves_data();
    void itGoesWhenTheListMoves();
    void itGoesWithTheWindow();
    void itTakesNoInputAndNoFocus();
    void theBubbleIsAsWideAsItsWordsWithinBounds_data();
    void theBubbleIsAsWideAsItsWordsWithinBounds();
    void theBubbleHasItsColors_data();
    void theBubbleHasItsColors();
    void aHintThatIsThereFollowsTheColors();
    void withoutACompositorItIsPlain();

private:
    View *hint() const;
    QRect bubbleOnScreen() const;
    void pressStar(int row);

    ClipboardItemList m_full; ///< As many favourites as there may be, under five other entries.
};

void FavoriteLimitHintTest::init()
{
    setUpTable();
    if (m_full.isEmpty()) {
        m_full = SampleHistory::numbered(1005);
        for (ClipboardItemPointer &item : m_full) {
            ClipboardItem favorite = *item;
            favorite.isFavorite = true;
            item = shared(favorite);
        }
        for (int row = 0; row < 5; ++row)
            m_full[row] = shared(SampleHistory::textItem(u"entry %1"_s.arg(row)));
    }
    make(m_full);
}

View *FavoriteLimitHintTest::hint() const
{
    View *found = nullptr;
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *view = qobject_cast<View *>(widget)) {
            if (found)
                qFatal("more than one hint");
            found = view;
        }
    }
    return found;
}

QRect FavoriteLimitHintTest::bubbleOnScreen() const
{
    return hint()->bubble().translated(hint()->geometry().topLeft());
}

void FavoriteLimitHintTest::pressStar(int row)
{
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {}, starOf(row));
}

void FavoriteLimitHintTest::aRefusedFavoriteLeavesTheStarAndBeeps()
{
    pressStar(2);
    QVERIFY(!m_controller->filteredItems().at(2)->isFavorite);
    QVERIFY(m_toggled.isEmpty());
    QCOMPARE(m_beepCount, 1);
    QVERIFY(hint() && hint()->isVisible());
}

void FavoriteLimitHintTest::belowTheLimitThereIsNoHint()
{
    m_controller->toggleFavorite(m_full[5]->id);
    pressStar(2);
    QVERIFY(m_controller->filteredItems().at(2)->isFavorite);
    QCOMPARE(m_beepCount, 0);
    QVERIFY(!hint());
}

void FavoriteLimitHintTest::theBubbleStandsOverTheStar()
{
    m_view->move(20, 100);
    pressStar(2);
    const QRect star = layoutOf(2).star.toRect().translated(
        m_view->viewport()->mapToGlobal(QPoint()));
    const QRect bubble = bubbleOnScreen();
    QCOMPARE(bubble.height(), 34);
    QCOMPARE(star.top() - (bubble.bottom() + 1), 2);
    QVERIFY(std::abs(bubble.center().x() - star.center().x()) <= 1);
}

void FavoriteLimitHintTest::theBubbleStaysOnTheScreen()
{
    const QRect available = m_view->screen()->availableGeometry();
    m_view->move(available.right() + 1 - m_view->width(), 100);
    pressStar(2);
    QCOMPARE(bubbleOnScreen().right(), available.right());
}

void FavoriteLimitHintTest::aRowOutOfSightOnlyBeeps()
{
    m_view->verticalScrollBar()->setValue(1000);
    m_controller->toggleFavorite(m_full[2]->id);
    QCOMPARE(m_beepCount, 1);
    QVERIFY(!hint());
    QVERIFY(m_toggled.isEmpty());
}

void FavoriteLimitHintTest::anUnlistedEntryOnlyBeeps()
{
    search(u"entry 4"_s);
    m_controller->toggleFavorite(m_full[2]->id);
    QCOMPARE(m_beepCount, 1);
    QVERIFY(!hint());
}

void FavoriteLimitHintTest::itStaysForAWhileAndFades()
{
    pressStar(2);
    pass(1199ms);
    QCOMPARE(hint()->pose().opacity, 1.0);
    pass(100ms);
    QVERIFY(hint()->pose().opacity < 1 && hint()->pose().opacity > 0);
    QVERIFY(hint()->pose().scale < 1);
    pass(60ms);
    QVERIFY(!hint());
    QCOMPARE(m_scheduler->pendingCount(), 0);
}

void FavoriteLimitHintTest::aNewHintTakesThePlaceOfTheFormer()
{
    pressStar(2);
    const QRect former = bubbleOnScreen();
    pass(1000ms);
    pressStar(3);
    QCOMPARE(bubbleOnScreen(), former.translated(0, 72));
    QCOMPARE(m_beepCount, 2);
    pass(1199ms);
    QCOMPARE(hint()->pose().opacity, 1.0);
    pass(200ms);
    QVERIFY(!hint());
}

void FavoriteLimitHintTest::itPopsUpFromTheLeft()
{
    pressStar(2);
    const QRect place = hint()->geometry();
    QVERIFY(hint()->pose().opacity < 0.2);
    QVERIFY(hint()->pose().scale < 0.85);
    QVERIFY(hint()->pose().shift < -8);
    qreal largest = 0;
    for (int i = 0; i < 300; ++i) {
        pass(1ms);
        largest = std::max(largest, hint()->pose().scale);
    }
    QVERIFY(largest > 1.02); // The spring swings.
    QCOMPARE(hint()->pose().opacity, 1.0);
    QCOMPARE(hint()->pose().shift, 0.0);
    pass(700ms);
    QVERIFY(std::abs(hint()->pose().scale - 1) < 0.001);
    QCOMPARE(hint()->geometry(), place);
}

void FavoriteLimitHintTest::withReducedMotionItFadesInItsPlace()
{
    m_controller->setLook({.isMotionReduced = true});
    pressStar(2);
    QVERIFY(hint()->pose().opacity < 0.2);
    const auto passStill = [this](std::chrono::milliseconds time) {
        for (; time.count() > 0 && hint(); time -= 1ms) {
            QCOMPARE(hint()->pose().scale, 1.0);
            QCOMPARE(hint()->pose().shift, 0.0);
            pass(1ms);
        }
    };
    passStill(100ms);
    QCOMPARE(hint()->pose().opacity, 1.0);
    passStill(1099ms);
    QCOMPARE(hint()->pose().opacity, 1.0); // It stays as long as otherwise.
    passStill(51ms);
    QVERIFY(hint()->pose().opacity < 1);
    passStill(50ms);
    QVERIFY(!hint());
}

void FavoriteLimitHintTest::aHintThatComesIsThereWhenMotionIsReduced()
{
    pressStar(2);
    pass(50ms);
    QVERIFY(hint()->pose().shift < 0);
    m_controller->setLook({.isMotionReduced = true});
    QCOMPARE(hint()->pose().opacity, 1.0);
    QCOMPARE(hint()->pose().shift, 0.0);
    QVERIFY(std::abs(hint()->pose().scale - 1) < 0.001);
    const View::Pose still = hint()->pose();
    pass(1149ms); // It stays as long as otherwise.
    QCOMPARE(hint()->pose().opacity, 1.0);
    QCOMPARE(hint()->pose().scale, still.scale);
    pass(101ms);
    QVERIFY(!hint());
}

void FavoriteLimitHintTest::aHintThatGoesIsGoneWhenMotionIsReduced()
{
    pressStar(2);
    pass(1250ms);
    QVERIFY(hint()->pose().opacity < 1);
    m_controller->setLook({.isMotionReduced = true});
    QVERIFY(!hint());
    QCOMPARE(m_scheduler->pendingCount(), 0);
}

void FavoriteLimitHintTest::itGoesWhenTheListMoves_data()
{
    QTest::addColumn<std::function<void()>>("move");
    const auto add = [](const char *name, std::function<void()> move) {
        QTest::newRow(name) << std::move(move);
    };
    add("scrolling", [this] { m_view->verticalScrollBar()->setValue(10); });
    add("a new entry", [this] {
        m_controller->setItems(SampleHistory::texts({u"new"_s}) + m_full);
        m_controller->applyFilters(ClipboardTableViewController::Scroll::Keep);
    });
    add("another wording", [this] { m_controller->refreshTexts(); });
    add("a tag on its entry", [this] { m_controller->toggleTag(u"work"_s, m_full[2]->id); });
    add("a search", [this] { search(u"entry 7"_s); });
}

void FavoriteLimitHintTest::itGoesWhenTheListMoves()
{
    QFETCH(const std::function<void()>, move);
    pressStar(2);
    pass(100ms);
    QVERIFY(hint());
    move();
    QVERIFY(!hint());
    pass(2000ms);
}

void FavoriteLimitHintTest::itGoesWithTheWindow()
{
    pressStar(2);
    m_controller->dismissOverlays();
    QVERIFY(!hint());
    pressStar(2);
    tearDownTable();
    QVERIFY(!hint());
    pass(2000ms);
}

void FavoriteLimitHintTest::itTakesNoInputAndNoFocus()
{
    QVERIFY(QTest::qWaitForWindowActive(m_view.get()));
    pressStar(2);
    QVERIFY(QTest::qWaitForWindowExposed(hint()));
    QCOMPARE(QApplication::activeWindow(), m_view.get());
    const Qt::WindowFlags flags = hint()->windowFlags();
    QVERIFY(flags.testFlag(Qt::WindowTransparentForInput));
    QVERIFY(flags.testFlag(Qt::WindowDoesNotAcceptFocus));
    QVERIFY(hint()->testAttribute(Qt::WA_ShowWithoutActivating));
    QCOMPARE(hint()->windowHandle()->transientParent(), m_view->windowHandle());
}

void FavoriteLimitHintTest::theBubbleIsAsWideAsItsWordsWithinBounds_data()
{
    QTest::addColumn<QString>("message");
    QTest::addColumn<int>("least");
    QTest::addColumn<int>("most");
    QTest::newRow("a short one") << u"Full"_s << 100 << 100;
    QTest::newRow("English") << u"Favorite limit reached"_s << 150 << 200;
    QTest::newRow("Chinese") << u"已达收藏上限"_s << 100 << 140;
    QTest::newRow("a long one") << QString(80, u'w') << 220 << 220;
}

void FavoriteLimitHintTest::theBubbleIsAsWideAsItsWordsWithinBounds()
{
    QFETCH(const QString, message);
    QFETCH(const int, least);
    QFETCH(const int, most);
    const View view(message, {});
    const QRect bubble = view.bubble();
    QVERIFY2(bubble.width() >= least && bubble.width() <= most,
             qPrintable(QString::number(bubble.width())));
    QCOMPARE(bubble.height(), 34);
    QCOMPARE(view.size(), bubble.size() + QSize(40, 40));
    QCOMPARE(bubble.topLeft(), QPoint(20, 20));
}

void FavoriteLimitHintTest::theBubbleHasItsColors_data()
{
    QTest::addColumn<ColorScheme>("scheme");
    QTest::addColumn<QColor>("fill");
    QTest::addColumn<QColor>("line");
    QTest::addColumn<QColor>("text");
    QTest::addColumn<QColor>("shadow");
    QTest::newRow("light") << ColorScheme::Light << QColor(255, 242, 217, 247)
                           << QColor(255, 210, 158) << QColor(125, 80, 33)
                           << QColor(204, 102, 26, 38);
    QTest::newRow("dark") << ColorScheme::Dark << QColor(64, 38, 13, 242) << QColor(94, 59, 23)
                          << QColor(236, 211, 185) << QColor(0, 0, 0, 77);
}

void FavoriteLimitHintTest::theBubbleHasItsColors()
{
    QFETCH(const ColorScheme, scheme);
    QFETCH(const QColor, fill);
    QFETCH(const QColor, line);
    QFETCH(const QColor, text);
    QFETCH(const QColor, shadow);
    View view(u"████"_s, {scheme, true});
    const QImage image = view.grab().toImage().convertToFormat(QImage::Format_ARGB32);
    const QRect bubble = view.bubble();
    const auto isNear = [&](QPoint point, const QColor &color) {
        const QColor found = image.pixelColor(point);
        return std::abs(found.red() - color.red()) < 4
            && std::abs(found.green() - color.green()) < 4
            && std::abs(found.blue() - color.blue()) < 4;
    };
    const QPoint inFill(bubble.left() + 20, bubble.top() + 5);
    QVERIFY(isNear(inFill, fill));
    QVERIFY(std::abs(image.pixelColor(inFill).alpha() - fill.alpha()) < 4);
    QVERIFY(isNear({bubble.center().x(), bubble.top()}, line));
    QVERIFY(isNear(bubble.center() - QPoint(6, 0), text));
    // Where the edge would be if the shadow did not lie lower, half of its strength is seen.
    const QColor below = image.pixelColor(bubble.center().x(), bubble.bottom() + 2);
    QVERIFY(std::abs(below.alpha() - shadow.alpha() / 2) < 5);
    QVERIFY(std::abs(below.red() - shadow.red()) < 16);
    // Round ends, a shadow beside them, and nothing at the edge of the window.
    QVERIFY(image.pixelColor(bubble.topLeft()).alpha() < 40);
    QVERIFY(image.pixelColor(bubble.center().x(), bubble.bottom() + 3).alpha() > 5);
    QCOMPARE(image.pixelColor(0, bubble.center().y()).alpha(), 0);
    QCOMPARE(image.pixelColor(bubble.center().x(), image.height() - 1).alpha(), 0);
}

void FavoriteLimitHintTest::aHintThatIsThereFollowsTheColors()
{
    m_controller->setLook({ColorScheme::Light, true});
    pressStar(2);
    pass(1000ms);
    const QImage light = hint()->grab().toImage();
    m_controller->setLook({ColorScheme::Dark, true});
    QVERIFY(hint()->grab().toImage() != light);
}

void FavoriteLimitHintTest::withoutACompositorItIsPlain()
{
    m_controller->setLook({ColorScheme::Light, false});
    pressStar(2);
    QCOMPARE(hint()->bubble(), hint()->rect());
    QVERIFY(!hint()->mask().isEmpty());
    QVERIFY(!hint()->mask().contains(QPoint(0, 0)));
    QVERIFY(hint()->mask().contains(QPoint(4, 4)));
    QCOMPARE(hint()->pose().opacity, 1.0);
    QCOMPARE(hint()->pose().scale, 1.0);
    const QImage image = hint()->grab().toImage();
    QCOMPARE(image.pixelColor(20, 5).alpha(), 255);
    pass(1199ms);
    QVERIFY(hint());
    pass(200ms);
    QVERIFY(!hint());
}

QTEST_MAIN(FavoriteLimitHintTest)
#include "FavoriteLimitHintTest.moc"
