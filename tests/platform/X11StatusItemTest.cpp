#include "platform/x11/X11StatusItem.h"

#include "platform/linux/StatusIconDrawing.h"
#include "tests/fakes/FakeDesktopAppearance.h"
#include "tests/fakes/FakeScheduler.h"
#include "tests/platform/BusCaller.h"
#include "tests/platform/FakeStatusNotifierWatcher.h"
#include "tests/platform/FakeTray.h"
#include "tests/platform/PrivateDesktop.h"

#include <QDBusArgument>
#include <QGuiApplication>
#include <QPainter>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr QPoint kMiddle(12, 12);

/// A disc that leaves the edge of its box free.
QImage paintDisc(int side, const QColor &color)
{
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setBrush(color);
    painter.setPen(Qt::NoPen);
    painter.drawEllipse(image.rect().adjusted(2, 2, -2, -2));
    return image;
}

} // namespace

class X11StatusItemTest : public QObject
{
    Q_OBJECT

public:
    X11StatusItemTest(PrivateDesktop &desktop, QString busAddress)
        : m_desktop(desktop)
        , m_busAddress(std::move(busAddress))
    {
    }

private slots:
    void init();
    void cleanup();
    void withoutAPanelThereIsNoItem();
    void traysOfBothKindsAreEnough_data();
    void traysOfBothKindsAreEnough();
    void thereIsOneIconWhereBothKindsAre();
    void unansweredQuestionHoldsTheWindowBackForAWhile();
    void lateHostTakesTheItemFromTheTray();
    void trayTakesTheItemWhenTheHostGoes();
    void trayTakesTheItemThatTheHostRefuses();
    void itemWaitsForPanels();
    void clicksComeFromBoth();
    void iconSuitsThePanelOfTheHost_data();
    void iconSuitsThePanelOfTheHost();
    void coveredPanelKeepsTheColor();
    void withoutAPanelInSightTheSchemeDecides_data();
    void withoutAPanelInSightTheSchemeDecides();
    void iconInTheTrayFollowsThePanel();

private:
    void makeTray(const QColor &ground = Qt::black)
    {
        FakeTray::Look look;
        look.ground = ground;
        m_tray = std::make_unique<FakeTray>(m_desktop.displayName(), look);
    }
    void makeWatcher(bool hasHost)
    {
        m_watcher = std::make_unique<FakeStatusNotifierWatcher>(m_busAddress, hasHost);
    }
    void makeItem();
    size_t iconCount() const { return m_tray->icons().size(); }
    /// Whether the program has made a window for a tray, which then lies on the root window still.
    bool hasWindow();
    /// The colour of the icon as hosts get it.
    QColor hostIconColor();
    /// Puts a panel without a tray on the screen, as a window manager would know it.
    void showDock(const QColor &ground);
    void cover(const QColor &color);
    void listClients(const std::vector<quint32> &windows);

    PrivateDesktop &m_desktop;
    QString m_busAddress;
    FakeDesktopAppearance m_appearance;
    std::unique_ptr<FakeScheduler> m_scheduler;
    std::unique_ptr<X11Connection> m_connection;
    std::unique_ptr<X11Connection> m_others; ///< Of the desktop's other programs.
    std::unique_ptr<FakeTray> m_tray;
    std::unique_ptr<FakeStatusNotifierWatcher> m_watcher;
    std::unique_ptr<BusCaller> m_panel;
    std::unique_ptr<X11StatusItem> m_item;
};

void X11StatusItemTest::init()
{
    m_scheduler = std::make_unique<FakeScheduler>();
    m_connection = std::make_unique<X11Connection>(m_desktop.displayName());
    m_others = std::make_unique<X11Connection>(m_desktop.displayName());
    m_panel = std::make_unique<BusCaller>(m_busAddress, u"panel"_s);
    m_appearance = FakeDesktopAppearance();
    listClients({});
}

void X11StatusItemTest::cleanup()
{
    m_item.reset();
    m_panel.reset();
    m_watcher.reset();
    m_tray.reset();
    m_others.reset();
    m_connection.reset();
}

void X11StatusItemTest::makeItem()
{
    m_item = std::make_unique<X11StatusItem>(*m_connection, m_appearance, *m_scheduler);
    m_item->setIcon(paintDisc, u"Tessarine"_s);
}

QColor X11StatusItemTest::hostIconColor()
{
    const QVariant value = m_panel->property(u"/StatusNotifierItem"_s,
                                             u"org.kde.StatusNotifierItem"_s, u"IconPixmap"_s);
    const auto argument = value.value<QDBusArgument>();
    int width = 0;
    int height = 0;
    QByteArray bytes;
    argument.beginArray();
    argument.beginStructure();
    argument >> width >> height >> bytes;
    argument.endStructure();
    argument.endArray();
    const qsizetype middle = 4 * (qsizetype(height) / 2 * width + width / 2);
    if (bytes.size() < middle + 4)
        return {};
    return QColor(quint8(bytes[middle + 1]), quint8(bytes[middle + 2]), quint8(bytes[middle + 3]));
}

bool X11StatusItemTest::hasWindow()
{
    m_connection->reply(xcb_get_input_focus_reply, xcb_get_input_focus(m_connection->xcb()));
    const auto tree = m_others->reply(xcb_query_tree_reply,
                                      xcb_query_tree(m_others->xcb(), m_others->rootWindow()));
    const quint32 *windows = xcb_query_tree_children(tree.get());
    return std::any_of(
        windows, windows + xcb_query_tree_children_length(tree.get()), [this](quint32 window) {
            const auto name =
                m_others->takeProperty(m_others->requestProperty(window, XCB_ATOM_WM_CLASS));
            return name && name->startsWith("tessarine");
        });
}

void X11StatusItemTest::listClients(const std::vector<quint32> &windows)
{
    xcb_change_property(m_others->xcb(), XCB_PROP_MODE_REPLACE, m_others->rootWindow(),
                        m_others->atom(X11AtomName::NetClientList), XCB_ATOM_WINDOW, 32,
                        quint32(windows.size()), windows.data());
    m_others->reply(xcb_get_input_focus_reply, xcb_get_input_focus(m_others->xcb()));
}

void X11StatusItemTest::showDock(const QColor &ground)
{
    const quint32 dock = xcb_generate_id(m_others->xcb());
    const quint32 values[] = {ground.rgb() & 0xffffff, 1};
    xcb_create_window(m_others->xcb(), XCB_COPY_FROM_PARENT, dock, m_others->rootWindow(), 0, 740,
                      1024, 28, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values);
    const quint32 type = m_others->atom(X11AtomName::NetWmWindowTypeDock);
    xcb_change_property(m_others->xcb(), XCB_PROP_MODE_REPLACE, dock,
                        m_others->atom(X11AtomName::NetWmWindowType), XCB_ATOM_ATOM, 32, 1, &type);
    xcb_map_window(m_others->xcb(), dock);
    listClients({dock});
}

void X11StatusItemTest::cover(const QColor &color)
{
    const quint32 window = xcb_generate_id(m_others->xcb());
    const quint32 values[] = {color.rgb() & 0xffffff, 1};
    xcb_create_window(m_others->xcb(), XCB_COPY_FROM_PARENT, window, m_others->rootWindow(), 0, 0,
                      1024, 768, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values);
    xcb_map_window(m_others->xcb(), window);
    m_others->reply(xcb_get_input_focus_reply, xcb_get_input_focus(m_others->xcb()));
}

void X11StatusItemTest::withoutAPanelThereIsNoItem()
{
    makeItem();
    QVERIFY(!m_item->create());
}

void X11StatusItemTest::traysOfBothKindsAreEnough_data()
{
    QTest::addColumn<bool>("isTray");
    QTest::newRow("tray") << true;
    QTest::newRow("host") << false;
}

void X11StatusItemTest::traysOfBothKindsAreEnough()
{
    QFETCH(bool, isTray);
    if (isTray)
        makeTray();
    else
        makeWatcher(true);
    makeItem();
    QVERIFY(PrivateDesktop::waitUntil([this] { return m_item->create(); }));
    if (isTray)
        QTRY_COMPARE(iconCount(), 1u);
    else
        QTRY_COMPARE(m_watcher->items.size(), 1);
}

void X11StatusItemTest::thereIsOneIconWhereBothKindsAre()
{
    makeTray();
    makeWatcher(true);
    makeItem();
    QVERIFY(m_item->create());
    QTRY_COMPARE(m_watcher->items.size(), 1);
    QTRY_VERIFY(m_scheduler->now() == 0ms && hostIconColor().isValid());
    m_scheduler->advance(10s);
    QVERIFY(hostIconColor().isValid()); // Many events have passed by then.
    QCOMPARE(iconCount(), 0u);
}

void X11StatusItemTest::unansweredQuestionHoldsTheWindowBackForAWhile()
{
    makeTray();
    makeWatcher(true);
    makeItem();
    // The watcher, in this very process, cannot answer until the event loop turns.
    QVERIFY(m_item->create());
    m_scheduler->advance(999ms);
    QVERIFY(!hasWindow());
    m_scheduler->advance(1ms);
    QVERIFY(hasWindow());
    // The answer still counts.
    QTRY_VERIFY(!hasWindow());
    QTRY_COMPARE(iconCount(), 0u);
}

void X11StatusItemTest::lateHostTakesTheItemFromTheTray()
{
    makeTray();
    makeItem();
    QVERIFY(m_item->create());
    QTRY_COMPARE(iconCount(), 1u);
    makeWatcher(true);
    QTRY_COMPARE(iconCount(), 0u);
    QCOMPARE(m_watcher->items.size(), 1);
}

void X11StatusItemTest::trayTakesTheItemWhenTheHostGoes()
{
    makeTray();
    makeWatcher(true);
    makeItem();
    QVERIFY(m_item->create());
    QTRY_COMPARE(m_watcher->items.size(), 1);
    m_watcher->setHost(false);
    QTRY_COMPARE(iconCount(), 1u);
    m_watcher->setHost(true);
    QTRY_COMPARE(iconCount(), 0u);
    m_watcher.reset();
    QTRY_COMPARE(iconCount(), 1u);
}

void X11StatusItemTest::trayTakesTheItemThatTheHostRefuses()
{
    makeTray();
    makeWatcher(true);
    m_watcher->refusesItems = true;
    makeItem();
    QVERIFY(m_item->create());
    QTRY_COMPARE(iconCount(), 1u);
    // The next one is not blamed for it.
    m_watcher.reset();
    makeWatcher(true);
    QTRY_COMPARE(iconCount(), 0u);
    QCOMPARE(m_watcher->items.size(), 1);
}

void X11StatusItemTest::itemWaitsForPanels()
{
    makeItem();
    QVERIFY(!m_item->create());
    makeTray();
    QTRY_COMPARE(iconCount(), 1u);
}

void X11StatusItemTest::clicksComeFromBoth()
{
    makeTray();
    makeItem();
    QStringList tokens;
    m_item->onClicked = [&tokens](const QString &token) { tokens.append(token); };
    QList<QPoint> places;
    m_item->onMenuRequested = [&places](const QPoint &place) { places.append(place); };
    QVERIFY(m_item->create());
    QTRY_COMPARE(m_tray->pixel(kMiddle), iconColorOnUnknownGround());
    QVERIFY(m_item->contains({115, 65}));
    m_desktop.xdotool(u"mousemove 115 65 click 1 click 3"_s);
    QTRY_COMPARE(places, QList<QPoint>{QPoint(115, 65)});
    QCOMPARE(tokens, QStringList{QString()});

    const auto callItem = [this](const QString &method, const QVariantList &arguments) {
        m_panel->call(u"/StatusNotifierItem"_s, u"org.kde.StatusNotifierItem"_s, method, arguments);
    };
    callItem(u"ProvideXdgActivationToken"_s, {u"token"_s});
    callItem(u"Activate"_s, {1, 2});
    callItem(u"ContextMenu"_s, {3, 4});
    QCOMPARE(tokens, (QStringList{QString(), u"token"_s}));
    QCOMPARE(places, (QList<QPoint>{QPoint(115, 65), QPoint(3, 4)}));
}

void X11StatusItemTest::iconSuitsThePanelOfTheHost_data()
{
    QTest::addColumn<QColor>("ground");
    QTest::newRow("light") << QColor(241, 242, 244);
    QTest::newRow("dark") << QColor(23, 24, 27);
}

void X11StatusItemTest::iconSuitsThePanelOfTheHost()
{
    QFETCH(QColor, ground);
    // The desktop's own choice says nothing of the panel.
    m_appearance.dark = ground.lightness() > 128;
    makeWatcher(true);
    makeItem();
    QVERIFY(PrivateDesktop::waitUntil([this] { return m_item->create(); }));
    QTRY_COMPARE(m_watcher->items.size(), 1);
    showDock(ground);
    QTRY_VERIFY((m_scheduler->advance(300ms), hostIconColor() == iconColorOn(ground)));
}

void X11StatusItemTest::coveredPanelKeepsTheColor()
{
    makeWatcher(true);
    makeItem();
    QVERIFY(PrivateDesktop::waitUntil([this] { return m_item->create(); }));
    showDock(Qt::black);
    QTRY_VERIFY((m_scheduler->advance(300ms), hostIconColor() == iconColorOn(Qt::black)));
    cover(Qt::white);
    m_item->refreshColorSoon();
    m_scheduler->advance(300ms);
    QCOMPARE(hostIconColor(), iconColorOn(Qt::black));
}

void X11StatusItemTest::withoutAPanelInSightTheSchemeDecides_data()
{
    QTest::addColumn<std::optional<bool>>("prefersDark");
    QTest::addColumn<QColor>("color");

    QTest::newRow("dark") << std::optional(true) << iconColorOn(Qt::black);
    QTest::newRow("light") << std::optional(false) << iconColorOn(Qt::white);
    QTest::newRow("not told") << std::optional<bool>() << iconColorOnUnknownGround();
}

void X11StatusItemTest::withoutAPanelInSightTheSchemeDecides()
{
    QFETCH(std::optional<bool>, prefersDark);
    QFETCH(QColor, color);
    m_appearance.dark = prefersDark;
    makeWatcher(true);
    makeItem();
    QVERIFY(PrivateDesktop::waitUntil([this] { return m_item->create(); }));
    QTRY_COMPARE(m_watcher->items.size(), 1);
    QTRY_VERIFY((m_scheduler->advance(300ms), hostIconColor() == color));
}

void X11StatusItemTest::iconInTheTrayFollowsThePanel()
{
    makeTray(QColor(241, 242, 244));
    makeItem();
    QVERIFY(m_item->create());
    QTRY_COMPARE(m_tray->pixel(kMiddle), iconColorOnUnknownGround());
    m_scheduler->advance(300ms);
    QTRY_COMPARE(m_tray->pixel(kMiddle), iconColorOn(Qt::white));
    m_tray->setGround(QColor(23, 24, 27));
    QTRY_VERIFY((m_scheduler->advance(300ms), m_tray->pixel(kMiddle) == iconColorOn(Qt::black)));
}

int main(int argc, char *argv[])
{
    PrivateDesktop desktop;
    if (!desktop.start())
        return EXIT_FAILURE;
    const QString address = desktop.startBus();
    qputenv("DBUS_SESSION_BUS_ADDRESS", address.toUtf8());
    QGuiApplication application(argc, argv);
    X11StatusItemTest test(desktop, address);
    return address.isEmpty() ? EXIT_FAILURE : QTest::qExec(&test, argc, argv);
}

#include "X11StatusItemTest.moc"
#include "moc_FakeStatusNotifierWatcher.cpp"
