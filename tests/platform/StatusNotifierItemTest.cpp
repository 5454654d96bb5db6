#include "platform/linux/StatusNotifierItem.h"

#include "tests/platform/BusCaller.h"
#include "tests/platform/FakeStatusNotifierWatcher.h"
#include "tests/platform/PrivateDesktop.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QGuiApplication>
#include <QTest>

using namespace Qt::StringLiterals;

using Presence = StatusNotifierHosts::Presence;

namespace {

const auto kPath = u"/StatusNotifierItem"_s;
const auto kInterface = u"org.kde.StatusNotifierItem"_s;

/// As it comes over the bus.
QList<QImage> readPixmaps(const QVariant &value)
{
    const auto argument = value.value<QDBusArgument>();
    QList<QImage> images;
    argument.beginArray();
    while (!argument.atEnd()) {
        int width = 0;
        int height = 0;
        QByteArray bytes;
        argument.beginStructure();
        argument >> width >> height >> bytes;
        argument.endStructure();
        QImage image(width, height, QImage::Format_ARGB32);
        for (int i = 0; i < width * height && bytes.size() == 4 * width * height; ++i) {
            const auto part = [&](int offset) { return quint8(bytes[4 * i + offset]); };
            image.setPixel(i % width, i / width, qRgba(part(1), part(2), part(3), part(0)));
        }
        images.append(image);
    }
    argument.endArray();
    return images;
}

QImage paintFilled(int side, const QColor &color)
{
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(color);
    return image;
}

} // namespace

/// Counts the signals of the item.
class ItemListener : public QObject
{
    Q_OBJECT

public:
    explicit ItemListener(QDBusConnection &bus)
    {
        bus.connect({}, kPath, kInterface, u"NewIcon"_s, this, SLOT(noteIcon()));
        bus.connect({}, kPath, kInterface, u"NewToolTip"_s, this, SLOT(noteToolTip()));
    }

    int iconCount = 0;
    int toolTipCount = 0;

public slots:
    void noteIcon() { ++iconCount; }
    void noteToolTip() { ++toolTipCount; }
};

class StatusNotifierItemTest : public QObject
{
    Q_OBJECT

public:
    explicit StatusNotifierItemTest(QString busAddress)
        : m_busAddress(std::move(busAddress))
    {
    }

private slots:
    void init();
    void cleanup();
    void withoutAWatcherThereIsNoTray();
    void watcherWithAHostIsATray();
    void watcherWithoutAHostIsNone();
    void answerCountsAsSoonAsItIsThere();
    void itemRegistersOnce();
    void lateWatcherGetsTheItem();
    void itemRegistersOnlyWhenItIsCreated();
    void watcherThatRestartsGetsTheItemAgain();
    void newWatcherIsNotTakenForTheFormerOne();
    void hostsThatComeAndGoAreFollowed();
    void processOfTheWatcherIsLearnt();
    void itemSaysWhatItIs();
    void iconComesInAllSizes();
    void wideIconIsFitted();
    void changesAreTold();
    void leftClickIsToldWithItsToken();
    void menuRequestIsTold();
    void otherClicksDoNothing();
    void menuIsThere();

private:
    std::unique_ptr<FakeStatusNotifierWatcher> makeWatcher(bool hasHost)
    {
        return std::make_unique<FakeStatusNotifierWatcher>(m_busAddress, hasHost);
    }
    void makeItem();
    QVariant property(const QString &name) { return m_panel->property(kPath, kInterface, name); }

    QString m_busAddress;
    std::unique_ptr<BusCaller> m_panel;
    std::unique_ptr<ItemListener> m_listener;
    std::unique_ptr<StatusNotifierItem> m_item;
    QList<Presence> m_changes;
};

void StatusNotifierItemTest::init()
{
    m_panel = std::make_unique<BusCaller>(m_busAddress, u"panel"_s);
    m_listener = std::make_unique<ItemListener>(m_panel->bus());
    m_changes.clear();
}

void StatusNotifierItemTest::cleanup()
{
    m_item.reset();
    m_listener.reset();
    m_panel.reset();
}

void StatusNotifierItemTest::makeItem()
{
    m_item = std::make_unique<StatusNotifierItem>();
    m_item->onHostsChanged = [this] { m_changes.append(m_item->hosts()); };
}

void StatusNotifierItemTest::withoutAWatcherThereIsNoTray()
{
    makeItem();
    QTRY_COMPARE(m_item->hosts(), Presence::Absent);
    QVERIFY(!m_item->create());
}

void StatusNotifierItemTest::watcherWithAHostIsATray()
{
    const auto watcher = makeWatcher(true);
    makeItem();
    QTRY_COMPARE(m_item->hosts(), Presence::Present);
    QVERIFY(m_item->create());
}

void StatusNotifierItemTest::watcherWithoutAHostIsNone()
{
    const auto watcher = makeWatcher(false);
    makeItem();
    QTRY_COMPARE(m_item->hosts(), Presence::Absent);
    QVERIFY(!m_item->create());
    QTRY_COMPARE(watcher->items.size(), 1);
}

void StatusNotifierItemTest::answerCountsAsSoonAsItIsThere()
{
    const auto watcher = makeWatcher(true);
    makeItem();
    QCOMPARE(m_item->hosts(), Presence::Pending);
    // The bus itself answers while the event loop stands; the watcher, in this very process,
    // cannot.
    QVERIFY(PrivateDesktop::waitUntil([this] { return m_item->create(); }));
    QCOMPARE(m_item->hosts(), Presence::Pending);
    QVERIFY(m_changes.isEmpty());
}

void StatusNotifierItemTest::itemRegistersOnce()
{
    const auto watcher = makeWatcher(true);
    makeItem();
    QVERIFY(PrivateDesktop::waitUntil([this] { return m_item->create(); }));
    QTRY_COMPARE(m_item->hosts(), Presence::Present);
    QTRY_VERIFY(m_item->hostProcessId() != 0);
    QCOMPARE(watcher->items, QStringList{QDBusConnection::sessionBus().baseService()});
}

void StatusNotifierItemTest::lateWatcherGetsTheItem()
{
    makeItem();
    QVERIFY(!m_item->create());
    QTRY_COMPARE(m_item->hosts(), Presence::Absent);
    const auto watcher = makeWatcher(true);
    QTRY_COMPARE(watcher->items, QStringList{QDBusConnection::sessionBus().baseService()});
    QTRY_COMPARE(m_item->hosts(), Presence::Present);
    QCOMPARE(m_changes.last(), Presence::Present);
}

void StatusNotifierItemTest::itemRegistersOnlyWhenItIsCreated()
{
    const auto watcher = makeWatcher(true);
    makeItem();
    QTRY_COMPARE(m_item->hosts(), Presence::Present);
    QTRY_VERIFY(m_item->hostProcessId() != 0);
    QVERIFY(watcher->items.isEmpty());
    QVERIFY(m_item->create());
    QTRY_COMPARE(watcher->items.size(), 1);
}

void StatusNotifierItemTest::watcherThatRestartsGetsTheItemAgain()
{
    auto watcher = makeWatcher(true);
    makeItem();
    QTRY_COMPARE(m_item->hosts(), Presence::Present);
    QVERIFY(m_item->create());
    QTRY_COMPARE(watcher->items.size(), 1);

    watcher.reset();
    QTRY_COMPARE(m_item->hosts(), Presence::Absent);
    watcher = makeWatcher(true);
    QTRY_COMPARE(watcher->items.size(), 1);
    QTRY_COMPARE(m_item->hosts(), Presence::Present);
}

void StatusNotifierItemTest::newWatcherIsNotTakenForTheFormerOne()
{
    auto watcher = makeWatcher(true);
    makeItem();
    QTRY_COMPARE(m_item->hosts(), Presence::Present);
    watcher.reset();
    QTRY_COMPARE(m_item->hosts(), Presence::Absent);
    m_changes.clear();
    watcher = makeWatcher(false);
    QTRY_VERIFY(m_changes.contains(Presence::Pending));
    QTRY_COMPARE(m_item->hosts(), Presence::Absent);
    QVERIFY(!m_changes.contains(Presence::Present));
}

void StatusNotifierItemTest::hostsThatComeAndGoAreFollowed()
{
    const auto watcher = makeWatcher(false);
    makeItem();
    QTRY_COMPARE(m_item->hosts(), Presence::Absent);
    watcher->setHost(true);
    QTRY_COMPARE(m_item->hosts(), Presence::Present);
    watcher->setHost(false);
    QTRY_COMPARE(m_item->hosts(), Presence::Absent);
    QCOMPARE(m_changes.last(), Presence::Absent);
}

void StatusNotifierItemTest::processOfTheWatcherIsLearnt()
{
    const auto watcher = makeWatcher(true);
    makeItem();
    QTRY_COMPARE(m_item->hostProcessId(), QCoreApplication::applicationPid());
}

void StatusNotifierItemTest::itemSaysWhatItIs()
{
    makeItem();
    m_item->setIcon(paintFilled, u"Paused"_s);
    QVERIFY(!m_item->create());
    QCOMPARE(property(u"Id"_s), QVariant(u"tessarine"_s));
    QCOMPARE(property(u"Category"_s), QVariant(u"ApplicationStatus"_s));
    QCOMPARE(property(u"Title"_s), QVariant(u"Tessarine"_s));
    QCOMPARE(property(u"Status"_s), QVariant(u"Active"_s));
    QCOMPARE(property(u"ItemIsMenu"_s), QVariant(false));
    QCOMPARE(property(u"IconName"_s), QVariant(QString()));
    QCOMPARE(property(u"IconAccessibleDesc"_s), QVariant(u"Paused"_s));
    QCOMPARE(property(u"Menu"_s).value<QDBusObjectPath>().path(), u"/MenuBar"_s);

    const auto toolTip = property(u"ToolTip"_s).value<QDBusArgument>();
    QCOMPARE(toolTip.currentSignature(), u"(sa(iiay)ss)"_s);
}

void StatusNotifierItemTest::iconComesInAllSizes()
{
    makeItem();
    m_item->setIcon(paintFilled, u"Tessarine"_s);
    m_item->setColor(QColor(1, 2, 3));
    QVERIFY(!m_item->create());
    const QVariant value = property(u"IconPixmap"_s);
    QCOMPARE(value.value<QDBusArgument>().currentSignature(), u"a(iiay)"_s);
    QList<int> sides;
    for (const QImage &image : readPixmaps(value)) {
        QCOMPARE(image.width(), image.height());
        QCOMPARE(image.pixelColor(0, 0), QColor(1, 2, 3));
        sides.append(image.width());
    }
    QCOMPARE(sides, (QList<int>{16, 22, 24, 32, 48, 64}));
}

void StatusNotifierItemTest::wideIconIsFitted()
{
    makeItem();
    m_item->setIcon(
        [](int side, const QColor &color) {
            QImage image(side * 5 / 4, side, QImage::Format_ARGB32_Premultiplied);
            image.fill(color);
            return image;
        },
        u"Wide"_s);
    QVERIFY(!m_item->create());
    const QList<QImage> images = readPixmaps(property(u"IconPixmap"_s));
    QCOMPARE(images.size(), 6);
    for (const QImage &image : images)
        QCOMPARE(image.width(), image.height());
}

void StatusNotifierItemTest::changesAreTold()
{
    makeItem();
    QVERIFY(!m_item->create());
    m_item->setIcon(paintFilled, u"Paused"_s);
    QTRY_COMPARE(m_listener->iconCount, 1);
    QTRY_COMPARE(m_listener->toolTipCount, 1);
    m_item->setColor(Qt::red);
    m_item->setColor(Qt::red);
    m_item->setColor(Qt::blue);
    QTRY_COMPARE(m_listener->iconCount, 3);
    QCOMPARE(m_listener->toolTipCount, 1);
}

void StatusNotifierItemTest::leftClickIsToldWithItsToken()
{
    makeItem();
    QStringList tokens;
    m_item->onClicked = [&tokens](const QString &token) { tokens.append(token); };
    QVERIFY(!m_item->create());
    m_panel->call(kPath, kInterface, u"ProvideXdgActivationToken"_s, {u"token_TIME12"_s});
    m_panel->call(kPath, kInterface, u"Activate"_s, {10, 20});
    m_panel->call(kPath, kInterface, u"Activate"_s, {10, 20});
    QCOMPARE(tokens, (QStringList{u"token_TIME12"_s, QString()}));
}

void StatusNotifierItemTest::menuRequestIsTold()
{
    makeItem();
    QList<QPoint> places;
    m_item->onMenuRequested = [&places](const QPoint &place) { places.append(place); };
    QVERIFY(!m_item->create());
    m_panel->call(kPath, kInterface, u"ContextMenu"_s, {11, 22});
    QCOMPARE(places, QList<QPoint>{QPoint(11, 22)});
}

void StatusNotifierItemTest::otherClicksDoNothing()
{
    makeItem();
    bool isCalled = false;
    m_item->onClicked = [&isCalled](const QString &) { isCalled = true; };
    m_item->onMenuRequested = [&isCalled](const QPoint &) { isCalled = true; };
    QVERIFY(!m_item->create());
    QCOMPARE(m_panel->call(kPath, kInterface, u"SecondaryActivate"_s, {1, 2}).type(),
             QDBusMessage::ReplyMessage);
    QCOMPARE(m_panel->call(kPath, kInterface, u"Scroll"_s, {1, u"vertical"_s}).type(),
             QDBusMessage::ReplyMessage);
    QVERIFY(!isCalled);
}

void StatusNotifierItemTest::menuIsThere()
{
    makeItem();
    int chosen = 0;
    bool isOpening = false;
    m_item->onMenuEntryChosen = [&chosen](int id) { chosen = id; };
    m_item->onMenuWillOpen = [&isOpening] { isOpening = true; };
    m_item->setMenu({{7, u"Quit"_s, {}, {}, false}});
    QVERIFY(!m_item->create());
    const auto menuCall = [this](const QString &method, const QVariantList &arguments) {
        return m_panel->call(u"/MenuBar"_s, u"com.canonical.dbusmenu"_s, method, arguments);
    };
    menuCall(u"AboutToShow"_s, {0});
    QVERIFY(isOpening);
    menuCall(u"Event"_s, {7, u"clicked"_s, QVariant::fromValue(QDBusVariant(0)), 0u});
    QCOMPARE(chosen, 7);
}

int main(int argc, char *argv[])
{
    PrivateDesktop desktop;
    const QString address = desktop.startBus();
    qputenv("DBUS_SESSION_BUS_ADDRESS", address.toUtf8());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    StatusNotifierItemTest test(address);
    return address.isEmpty() ? EXIT_FAILURE : QTest::qExec(&test, argc, argv);
}

#include "StatusNotifierItemTest.moc"
#include "moc_FakeStatusNotifierWatcher.cpp"
