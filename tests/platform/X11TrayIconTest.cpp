#include "platform/x11/X11TrayIcon.h"

#include "platform/linux/StatusIconDrawing.h"
#include "tests/fakes/FakeScheduler.h"
#include "tests/platform/FakeTray.h"
#include "tests/platform/PrivateDesktop.h"

#include <QPainter>
#include <QTest>

#include <algorithm>
#include <cstring>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// A square that leaves a quarter free on each side.
QImage paintSquare(int side, const QColor &color)
{
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter(&image).fillRect(image.rect().adjusted(side / 4, side / 4, -side / 4, -side / 4),
                              color);
    return image;
}

const QPoint kMiddle(12, 12);
const QPoint kEdge(1, 1);
const QColor kLight(241, 242, 244);
const QColor kDark(23, 24, 27);

} // namespace

class X11TrayIconTest : public QObject
{
    Q_OBJECT

public:
    explicit X11TrayIconTest(PrivateDesktop &desktop)
        : m_desktop(desktop)
    {
    }

private slots:
    void init();
    void cleanup();
    void withoutATrayThereIsNone();
    void iconDocksInTheTrayThatIsThere();
    void hiddenIconDoesNotDock();
    void iconDocksInALateTray();
    void hiddenIconLeavesTheTray();
    void trayThatEndsLeavesNoWindow_data();
    void trayThatEndsLeavesNoWindow();
    void trayThatComesBackGetsTheIcon_data();
    void trayThatComesBackGetsTheIcon();
    void iconThatIsLetGoLeavesNoWindow();
    void iconThatIsLostGoesBackAfterAWhile_data();
    void iconThatIsLostGoesBackAfterAWhile();
    void hiddenIconDoesNotGoBack();
    void trayThatIsSwitchedOffAndOnGetsTheIcon();
    void forgedEndIsNotBelieved();
    void newTrayTakesOver();
    void iconIsLegibleOnThePanel_data();
    void iconIsLegibleOnThePanel();
    void panelThatChangesItsColorIsFollowed();
    void coveredPanelIsNotMistaken();
    void colorOfTheTrayIsTaken();
    void colorOfTheTrayThatCannotBeSeenIsNot();
    void newIconIsDrawn();
    void iconIsDrawnInTheSizeOfThePanel_data();
    void iconIsDrawnInTheSizeOfThePanel();
    void hugeWindowHasAnIconInItsMiddle_data();
    void hugeWindowHasAnIconInItsMiddle();
    void roomIsAskedForAsWideAsThePanelIsThick();
    void iconHasANameForThoseWhoDoNotSee();
    void leftClickIsTold();
    void rightClickIsToldWithItsPlace();
    void otherClicksAreNot();
    void placesInTheIconAreKnown();

private:
    void makeIcon();
    void makeTray(const FakeTray::Look &look = {})
    {
        m_tray = std::make_unique<FakeTray>(m_desktop.displayName(), look);
    }
    /// Whether a window of this program lies on the root window itself.
    bool isOnTheDesktop();

    PrivateDesktop &m_desktop;
    std::unique_ptr<X11Connection> m_connection;
    std::unique_ptr<FakeScheduler> m_scheduler;
    std::unique_ptr<X11TrayIcon> m_icon;
    std::unique_ptr<FakeTray> m_tray;
    QList<int> m_sides; ///< In which the icon was painted.
    int m_groundCount = 0;
};

void X11TrayIconTest::init()
{
    m_scheduler = std::make_unique<FakeScheduler>();
    m_connection = std::make_unique<X11Connection>(m_desktop.displayName());
    m_sides.clear();
    m_groundCount = 0;
}

void X11TrayIconTest::cleanup()
{
    m_icon.reset();
    m_connection.reset();
    m_tray.reset();
}

void X11TrayIconTest::makeIcon()
{
    m_icon = std::make_unique<X11TrayIcon>(*m_connection, *m_scheduler);
    m_icon->onGroundMayHaveChanged = [this] { ++m_groundCount; };
    m_icon->setIcon(
        [this](int side, const QColor &color) {
            m_sides.append(side);
            return paintSquare(side, color);
        },
        u"Tessarine, paused"_s);
}

bool X11TrayIconTest::isOnTheDesktop()
{
    const auto tree = m_connection->reply(
        xcb_query_tree_reply, xcb_query_tree(m_connection->xcb(), m_connection->rootWindow()));
    const quint32 *windows = xcb_query_tree_children(tree.get());
    return std::any_of(windows, windows + xcb_query_tree_children_length(tree.get()),
                       [this](quint32 window) {
                           const auto name = m_connection->takeProperty(
                               m_connection->requestProperty(window, XCB_ATOM_WM_CLASS));
                           return name && name->startsWith("tessarine");
                       });
}

void X11TrayIconTest::withoutATrayThereIsNone()
{
    makeIcon();
    QVERIFY(!m_icon->hasTray());
    m_icon->show();
    QVERIFY(!isOnTheDesktop());
}

void X11TrayIconTest::iconDocksInTheTrayThatIsThere()
{
    makeTray();
    makeIcon();
    QVERIFY(m_icon->hasTray());
    m_icon->show();
    m_icon->show();
    QTRY_COMPARE(m_tray->icons().size(), 1u);
    QTRY_VERIFY(m_groundCount > 0);
    QVERIFY(!isOnTheDesktop());
}

void X11TrayIconTest::hiddenIconDoesNotDock()
{
    makeIcon();
    makeTray();
    QTRY_VERIFY(m_icon->hasTray());
    m_icon->show();
    QTRY_COMPARE(m_tray->icons().size(), 1u);
}

void X11TrayIconTest::iconDocksInALateTray()
{
    makeIcon();
    m_icon->show();
    makeTray();
    QTRY_COMPARE(m_tray->icons().size(), 1u);
    QVERIFY(m_icon->hasTray());
}

void X11TrayIconTest::hiddenIconLeavesTheTray()
{
    makeTray();
    makeIcon();
    m_icon->show();
    QTRY_VERIFY(m_groundCount > 0);
    m_icon->hide();
    QTRY_VERIFY(m_tray->icons().empty());
    QVERIFY(m_icon->hasTray());
    m_icon->show();
    QTRY_COMPARE(m_tray->icons().size(), 1u);
}

void X11TrayIconTest::trayThatEndsLeavesNoWindow_data()
{
    QTest::addColumn<bool>("isKind");
    QTest::newRow("lets go of its icons") << true;
    QTest::newRow("crashes") << false;
}

void X11TrayIconTest::trayThatEndsLeavesNoWindow()
{
    QFETCH(bool, isKind);
    makeTray();
    makeIcon();
    m_icon->show();
    QTRY_VERIFY(m_groundCount > 0);
    if (isKind)
        m_tray->close();
    m_tray.reset();
    QTRY_VERIFY(!m_icon->hasTray());
    QTRY_VERIFY(!isOnTheDesktop());
}

void X11TrayIconTest::trayThatComesBackGetsTheIcon_data()
{
    trayThatEndsLeavesNoWindow_data();
}

void X11TrayIconTest::trayThatComesBackGetsTheIcon()
{
    QFETCH(bool, isKind);
    makeTray();
    makeIcon();
    m_icon->show();
    for (int i = 0; i < 3; ++i) {
        QTRY_COMPARE(m_tray->icons().size(), 1u);
        QTRY_COMPARE(m_tray->pixel(kMiddle), iconColorOnUnknownGround());
        if (isKind)
            m_tray->close();
        m_tray.reset();
        makeTray();
    }
    QTRY_COMPARE(m_tray->icons().size(), 1u);
}

void X11TrayIconTest::iconThatIsLetGoLeavesNoWindow()
{
    makeTray();
    makeIcon();
    m_icon->show();
    QTRY_VERIFY(m_groundCount > 0);
    m_tray->letGoOfIcon();
    QTRY_VERIFY(!isOnTheDesktop());
}

void X11TrayIconTest::iconThatIsLostGoesBackAfterAWhile_data()
{
    QTest::addColumn<bool>("isDestroyed");
    QTest::newRow("destroyed") << true;
    QTest::newRow("let go") << false;
}

void X11TrayIconTest::iconThatIsLostGoesBackAfterAWhile()
{
    QFETCH(bool, isDestroyed);
    makeTray();
    makeIcon();
    m_icon->show();
    for (int i = 0; i < 2; ++i) {
        QTRY_COMPARE(m_tray->pixel(kMiddle), iconColorOnUnknownGround());
        if (isDestroyed)
            m_tray->destroyIcon();
        else
            m_tray->letGoOfIcon();
        QTRY_VERIFY(m_tray->icons().empty() && m_scheduler->pendingCount() == 1);
        m_scheduler->advance(999ms);
        QVERIFY(!isOnTheDesktop());
        m_scheduler->advance(1ms);
        QTRY_COMPARE(m_tray->icons().size(), 1u);
    }
}

void X11TrayIconTest::hiddenIconDoesNotGoBack()
{
    makeTray();
    makeIcon();
    m_icon->show();
    QTRY_VERIFY(m_groundCount > 0);
    m_tray->destroyIcon();
    QTRY_COMPARE(m_scheduler->pendingCount(), 1);
    m_icon->hide();
    QCOMPARE(m_scheduler->pendingCount(), 0);
}

void X11TrayIconTest::trayThatIsSwitchedOffAndOnGetsTheIcon()
{
    makeTray();
    makeIcon();
    m_icon->show();
    QTRY_VERIFY(m_groundCount > 0);
    m_tray->resign();
    QTRY_VERIFY(!isOnTheDesktop());
    m_tray->announce();
    QTRY_COMPARE(m_tray->icons().size(), 1u);
    QTRY_COMPARE(m_tray->pixel(kMiddle), iconColorOnUnknownGround());
}

void X11TrayIconTest::forgedEndIsNotBelieved()
{
    makeTray();
    makeIcon();
    m_icon->show();
    QTRY_VERIFY(m_groundCount > 0);
    m_tray->forgeDestructionOf(m_tray->icon());
    m_tray->forgeDestructionOf(m_tray->panel());
    // This comes after them.
    const int before = m_groundCount;
    m_tray->setGround(kLight);
    QTRY_VERIFY(m_groundCount > before);
    QVERIFY(m_icon->hasTray());
    QVERIFY(m_icon->contains({115, 65}));
    QCOMPARE(m_tray->icons().size(), 1u);
}

void X11TrayIconTest::newTrayTakesOver()
{
    makeTray();
    makeIcon();
    m_icon->show();
    QTRY_VERIFY(m_groundCount > 0);
    const std::unique_ptr<FakeTray> former = std::move(m_tray);
    makeTray();
    QTRY_COMPARE(m_tray->icons().size(), 1u);
    QTRY_VERIFY(former->icons().empty());
}

void X11TrayIconTest::iconIsLegibleOnThePanel_data()
{
    QTest::addColumn<QColor>("ground");
    QTest::addColumn<bool>("hasAlpha");

    QTest::newRow("light") << kLight << false;
    QTest::newRow("dark") << kDark << false;
    QTest::newRow("with alpha") << kDark << true;
}

void X11TrayIconTest::iconIsLegibleOnThePanel()
{
    QFETCH(QColor, ground);
    QFETCH(bool, hasAlpha);
    FakeTray::Look look;
    look.ground = ground;
    look.hasAlpha = hasAlpha;
    makeTray(look);
    makeIcon();
    m_icon->show();
    QTRY_COMPARE(m_tray->pixel(kMiddle), iconColorOnUnknownGround());
    QCOMPARE(m_tray->iconDepth(), quint8(hasAlpha ? 32 : 24));
    // Without a compositor nothing is seen through a window with alpha.
    const QColor seen = hasAlpha ? QColor(Qt::black) : ground;
    QCOMPARE(m_tray->pixel(kEdge), seen);
    m_icon->refreshColor();
    QTRY_COMPARE(m_tray->pixel(kMiddle), iconColorOn(seen));
    QCOMPARE(m_tray->pixel(kEdge), seen);
}

void X11TrayIconTest::panelThatChangesItsColorIsFollowed()
{
    makeTray();
    makeIcon();
    m_icon->show();
    QTRY_COMPARE(m_tray->pixel(kMiddle), iconColorOnUnknownGround());
    m_icon->refreshColor();
    QTRY_COMPARE(m_tray->pixel(kMiddle), iconColorOn(Qt::black));

    const int before = m_groundCount;
    m_tray->setGround(kLight);
    QTRY_VERIFY(m_groundCount > before);
    m_icon->refreshColor();
    QTRY_COMPARE(m_tray->pixel(kMiddle), iconColorOn(kLight));
    QCOMPARE(m_tray->pixel(kEdge), kLight);
}

void X11TrayIconTest::coveredPanelIsNotMistaken()
{
    makeTray();
    makeIcon();
    m_icon->show();
    QTRY_COMPARE(m_tray->pixel(kMiddle), iconColorOnUnknownGround());
    m_icon->refreshColor();
    QTRY_COMPARE(m_tray->pixel(kMiddle), iconColorOn(Qt::black));

    // Another program covers the panel with white.
    X11Connection other(m_desktop.displayName());
    const quint32 cover = xcb_generate_id(other.xcb());
    const quint32 values[] = {0xffffff, 1};
    xcb_create_window(other.xcb(), XCB_COPY_FROM_PARENT, cover, other.rootWindow(), 0, 0, 1024, 768,
                      0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values);
    xcb_map_window(other.xcb(), cover);
    other.flush();
    QTRY_COMPARE(m_tray->pixel(kMiddle), QColor(Qt::white));
    m_icon->refreshColor();
    xcb_destroy_window(other.xcb(), cover);
    other.flush();
    QTRY_COMPARE(m_tray->pixel(kMiddle), iconColorOn(Qt::black));
}

void X11TrayIconTest::colorOfTheTrayIsTaken()
{
    FakeTray::Look look;
    look.iconColor = QColor(Qt::green);
    makeTray(look);
    makeIcon();
    m_icon->show();
    QTRY_VERIFY(m_groundCount > 0);
    m_icon->refreshColor();
    QTRY_COMPARE(m_tray->pixel(kMiddle), QColor(Qt::green));
    m_tray->setIconColor(Qt::yellow);
    QTRY_COMPARE(m_tray->pixel(kMiddle), QColor(Qt::yellow));
}

void X11TrayIconTest::colorOfTheTrayThatCannotBeSeenIsNot()
{
    FakeTray::Look look;
    look.iconColor = QColor(20, 20, 20);
    makeTray(look);
    makeIcon();
    m_icon->show();
    QTRY_VERIFY(m_groundCount > 0);
    m_icon->refreshColor();
    QTRY_COMPARE(m_tray->pixel(kMiddle), iconColorOn(Qt::black));
}

void X11TrayIconTest::newIconIsDrawn()
{
    makeTray();
    makeIcon();
    m_icon->show();
    QTRY_COMPARE(m_tray->pixel(kMiddle), iconColorOnUnknownGround());
    m_icon->setIcon(
        [](int side, const QColor &) {
            QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
            image.fill(Qt::transparent); // Nothing may be left of what was there before.
            return image;
        },
        u"Empty"_s);
    QTRY_COMPARE(m_tray->pixel(kMiddle), QColor(Qt::black));
}

void X11TrayIconTest::iconIsDrawnInTheSizeOfThePanel_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("side");

    QTest::newRow("small") << QSize(16, 16) << 16;
    QTest::newRow("large") << QSize(48, 48) << 48;
    QTest::newRow("wide") << QSize(48, 30) << 30;
    QTest::newRow("high") << QSize(30, 48) << 30;
}

void X11TrayIconTest::iconIsDrawnInTheSizeOfThePanel()
{
    QFETCH(QSize, size);
    QFETCH(int, side);
    makeTray();
    makeIcon();
    m_icon->show();
    QTRY_COMPARE(m_tray->pixel(kMiddle), iconColorOnUnknownGround());
    m_tray->resizeIcon(size);
    QTRY_COMPARE(m_sides.last(), side);
    QTRY_COMPARE(m_tray->pixel({size.width() / 2, size.height() / 2}), iconColorOnUnknownGround());
    QTRY_COMPARE(m_tray->pixel({size.width() / 2 - (side / 2 - side / 4) - 1, size.height() / 2}),
                 QColor(Qt::black));
}

void X11TrayIconTest::hugeWindowHasAnIconInItsMiddle_data()
{
    QTest::addColumn<bool>("hasAlpha");
    QTest::newRow("on the ground of the panel") << false;
    QTest::newRow("with alpha") << true;
}

void X11TrayIconTest::hugeWindowHasAnIconInItsMiddle()
{
    QFETCH(bool, hasAlpha);
    FakeTray::Look look;
    look.hasAlpha = hasAlpha;
    makeTray(look);
    makeIcon();
    m_icon->show();
    QTRY_VERIFY(m_groundCount > 0);
    for (const int side : {3000, 20000}) {
        m_sides.clear();
        m_tray->resizeIcon({side, side});
        // What comes before it has been drawn once it is.
        m_tray->resizeIcon({24, 24});
        QTRY_VERIFY(!m_sides.isEmpty() && m_sides.last() == 24);
        QCOMPARE(*std::ranges::max_element(m_sides), 256);
    }
    m_tray->resizeIcon({300, 24});
    QTRY_COMPARE(m_tray->pixel({150, 12}), iconColorOnUnknownGround());
    QCOMPARE(m_tray->pixel({10, 12}), QColor(Qt::black));
}

void X11TrayIconTest::roomIsAskedForAsWideAsThePanelIsThick()
{
    FakeTray::Look look;
    look.icon = QSize(1, 30);
    makeTray(look);
    makeIcon();
    m_icon->show();
    const auto leastWidth = [this] {
        constexpr int kMinWidth = 5; // After flags, position and size.
        quint32 words[18] = {};
        const QByteArray hints =
            m_tray->iconProperty(XCB_ATOM_WM_NORMAL_HINTS).value_or(QByteArray());
        std::memcpy(words, hints.constData(), std::min(sizeof words, size_t(hints.size())));
        return words[kMinWidth];
    };
    QTRY_COMPARE(leastWidth(), 30u);
    m_tray->resizeIcon({30, 20});
    QTRY_COMPARE(leastWidth(), 20u);
}

void X11TrayIconTest::iconHasANameForThoseWhoDoNotSee()
{
    makeTray();
    makeIcon();
    m_icon->show();
    QTRY_COMPARE(m_tray->icons().size(), 1u);
    const quint32 name = m_tray->connection().atom(X11AtomName::NetWmName);
    QCOMPARE(m_tray->iconProperty(name), std::optional(QByteArray("Tessarine, paused")));
    m_icon->setIcon(paintSquare, u"Tessarine"_s);
    m_connection->flush();
    QTRY_COMPARE(m_tray->iconProperty(name), std::optional(QByteArray("Tessarine")));
}

void X11TrayIconTest::leftClickIsTold()
{
    makeTray();
    makeIcon();
    int clickCount = 0;
    m_icon->onClicked = [&clickCount] { ++clickCount; };
    m_icon->show();
    QTRY_VERIFY(m_groundCount > 0);
    QCOMPARE(m_connection->userTime(), 0u);
    m_desktop.xdotool(u"mousemove 115 65 mousedown 1"_s);
    m_desktop.xdotool(u"mouseup 1"_s);
    QTRY_COMPARE(clickCount, 1);
    QVERIFY(m_connection->userTime() != 0);
}

void X11TrayIconTest::rightClickIsToldWithItsPlace()
{
    makeTray();
    makeIcon();
    QList<QPoint> places;
    m_icon->onMenuRequested = [&places](const QPoint &place) { places.append(place); };
    m_icon->show();
    QTRY_VERIFY(m_groundCount > 0);
    m_desktop.xdotool(u"mousemove 115 65 click 3"_s);
    QTRY_COMPARE(places, QList<QPoint>{QPoint(115, 65)});
}

void X11TrayIconTest::otherClicksAreNot()
{
    makeTray();
    makeIcon();
    int clickCount = 0;
    int menuCount = 0;
    m_icon->onClicked = [&clickCount] { ++clickCount; };
    m_icon->onMenuRequested = [&menuCount](const QPoint &) { ++menuCount; };
    m_icon->show();
    QTRY_VERIFY(m_groundCount > 0);
    // The wheel, the middle button, and a button that is let go of elsewhere.
    m_desktop.xdotool(u"mousemove 115 65 click 2 click 4 click 5 mousedown 1 mousemove 200 90"_s);
    m_desktop.xdotool(u"mouseup 1 mousemove 115 65 click 3"_s);
    QTRY_COMPARE(menuCount, 1);
    QCOMPARE(clickCount, 0);
}

void X11TrayIconTest::placesInTheIconAreKnown()
{
    makeTray();
    makeIcon();
    QVERIFY(!m_icon->contains({115, 65}));
    m_icon->show();
    QTRY_VERIFY(m_groundCount > 0);
    QVERIFY(m_icon->contains({105, 53}));
    QVERIFY(m_icon->contains({128, 76}));
    QVERIFY(!m_icon->contains({129, 76}));
    QVERIFY(!m_icon->contains({104, 53}));
    m_icon->hide();
    QVERIFY(!m_icon->contains({115, 65}));
}

int main(int argc, char *argv[])
{
    return runOnPrivateDesktop<X11TrayIconTest>(argc, argv);
}

#include "X11TrayIconTest.moc"
