#include "platform/linux/DBusMenu.h"

#include "tests/platform/BusCaller.h"
#include "tests/platform/PrivateDesktop.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const auto kPath = u"/Menu"_s;
const auto kInterface = u"com.canonical.dbusmenu"_s;

/// A menu as a panel reads it.
struct Line
{
    int id = -1;
    QVariantMap properties;
    QList<Line> children;
};

Line readLine(const QDBusArgument &argument)
{
    Line line;
    argument.beginStructure();
    argument >> line.id >> line.properties;
    argument.beginArray();
    while (!argument.atEnd()) {
        QDBusVariant child;
        argument >> child;
        line.children.append(readLine(child.variant().value<QDBusArgument>()));
    }
    argument.endArray();
    argument.endStructure();
    return line;
}

QMap<int, QVariantMap> readGroup(const QDBusArgument &argument)
{
    QMap<int, QVariantMap> group;
    argument.beginArray();
    while (!argument.atEnd()) {
        int id = -1;
        QVariantMap properties;
        argument.beginStructure();
        argument >> id >> properties;
        argument.endStructure();
        group.insert(id, properties);
    }
    argument.endArray();
    return group;
}

StatusMenuEntry separator(int id)
{
    StatusMenuEntry entry;
    entry.id = id;
    entry.isSeparator = true;
    return entry;
}

QList<StatusMenuEntry> sampleEntries()
{
    return {{1, u"Show"_s, {}, {}, false},
            separator(2),
            {3,
             u"Pause"_s,
             {},
             {{4, u"Now"_s, {}, {}, false}, {5, u"Later_on"_s, {}, {}, false}},
             false},
            {6, u"Quit"_s, QKeySequence(u"Ctrl+Q"_s), {}, false}};
}

} // namespace

/// Notes the signals of the menu.
class MenuListener : public QObject
{
    Q_OBJECT

public:
    explicit MenuListener(QDBusConnection &bus)
    {
        bus.connect({}, kPath, kInterface, u"LayoutUpdated"_s, this, SLOT(noteLayout(uint, int)));
        bus.connect({}, kPath, kInterface, u"ItemsPropertiesUpdated"_s, this,
                    SLOT(noteProperties(QDBusMessage)));
    }

    QList<uint> revisions;
    QList<QMap<int, QVariantMap>> updates;
    QList<QMap<int, QStringList>> removals;

public slots:
    void noteLayout(uint revision, int parent)
    {
        QCOMPARE(parent, 0);
        revisions.append(revision);
    }

    void noteProperties(const QDBusMessage &message)
    {
        updates.append(readGroup(message.arguments().at(0).value<QDBusArgument>()));
        const auto removed = message.arguments().at(1).value<QDBusArgument>();
        QMap<int, QStringList> names;
        removed.beginArray();
        while (!removed.atEnd()) {
            int id = -1;
            QStringList gone;
            removed.beginStructure();
            removed >> id >> gone;
            removed.endStructure();
            names.insert(id, gone);
        }
        removed.endArray();
        removals.append(names);
    }
};

class DBusMenuTest : public QObject
{
    Q_OBJECT

public:
    explicit DBusMenuTest(QString busAddress)
        : m_busAddress(std::move(busAddress))
    {
    }

private slots:
    void init();
    void cleanup();
    void wholeLayoutIsGiven();
    void layoutIsCutAtTheDepthAskedFor();
    void layoutOfASubmenuIsGiven();
    void unknownEntryIsRefused_data();
    void unknownEntryIsRefused();
    void onlyTheWantedPropertiesAreGiven();
    void underscoresAreDoubled();
    void shortcutsAreListsOfKeys_data();
    void shortcutsAreListsOfKeys();
    void clickChoosesAnEntry();
    void groupOfEventsTellsWhichAreUnknown();
    void otherEventsChooseNothing();
    void menuCanChangeAsItOpens();
    void menuThatStaysTheSameNeedsNoUpdate();
    void openingOfASubmenuIsNotAnOpeningOfTheMenu();
    void otherLinesMoveTheRevision();
    void otherTextsAreToldWithoutANewLayout();
    void droppedShortcutIsTold();
    void sameEntriesAreNotTold();
    void protocolIsTheThirdVersion();

private:
    QDBusMessage call(const QString &method, const QVariantList &arguments)
    {
        return m_panel->call(kPath, kInterface, method, arguments);
    }
    Line layout(int parent = 0, int depth = -1, const QStringList &names = {});
    uint revision() { return call(u"GetLayout"_s, {0, 0, QStringList()}).arguments()[0].toUInt(); }

    QString m_busAddress;
    std::unique_ptr<BusCaller> m_panel;
    std::unique_ptr<MenuListener> m_listener;
    std::unique_ptr<DBusMenu> m_menu;
    QList<int> m_chosen;
    int m_openCount = 0;
};

void DBusMenuTest::init()
{
    m_panel = std::make_unique<BusCaller>(m_busAddress, u"panel"_s);
    m_listener = std::make_unique<MenuListener>(m_panel->bus());
    m_menu = std::make_unique<DBusMenu>();
    m_menu->onWillOpen = [this] { ++m_openCount; };
    m_menu->onEntryChosen = [this](int id) { m_chosen.append(id); };
    m_menu->setEntries(sampleEntries());
    QVERIFY(m_menu->offer(kPath));
    m_chosen.clear();
    m_openCount = 0;
}

void DBusMenuTest::cleanup()
{
    m_menu.reset();
    m_listener.reset();
    m_panel.reset();
}

Line DBusMenuTest::layout(int parent, int depth, const QStringList &names)
{
    const QDBusMessage answer = call(u"GetLayout"_s, {parent, depth, names});
    if (answer.signature() != "u(ia{sv}av)"_L1)
        return {};
    return readLine(answer.arguments().at(1).value<QDBusArgument>());
}

void DBusMenuTest::wholeLayoutIsGiven()
{
    const Line root = layout();
    QCOMPARE(root.id, 0);
    QCOMPARE(root.properties, (QVariantMap{{u"children-display"_s, u"submenu"_s}}));
    QCOMPARE(root.children.size(), 4);
    QCOMPARE(root.children[0].id, 1);
    QCOMPARE(root.children[0].properties, (QVariantMap{{u"label"_s, u"Show"_s}}));
    QCOMPARE(root.children[1].properties, (QVariantMap{{u"type"_s, u"separator"_s}}));
    QCOMPARE(root.children[2].properties,
             (QVariantMap{{u"label"_s, u"Pause"_s}, {u"children-display"_s, u"submenu"_s}}));
    QCOMPARE(root.children[2].children.size(), 2);
    QCOMPARE(root.children[2].children[1].id, 5);
    QCOMPARE(root.children[3].id, 6);
}

void DBusMenuTest::layoutIsCutAtTheDepthAskedFor()
{
    QVERIFY(layout(0, 0).children.isEmpty());
    const Line root = layout(0, 1);
    QCOMPARE(root.children.size(), 4);
    QVERIFY(root.children[2].children.isEmpty());
}

void DBusMenuTest::layoutOfASubmenuIsGiven()
{
    const Line submenu = layout(3);
    QCOMPARE(submenu.id, 3);
    QCOMPARE(submenu.children.size(), 2);
    QCOMPARE(submenu.children[0].id, 4);
}

void DBusMenuTest::unknownEntryIsRefused_data()
{
    QTest::addColumn<QString>("method");
    QTest::addColumn<QVariantList>("arguments");

    const QVariant nothing = QVariant::fromValue(QDBusVariant(0));
    QTest::newRow("layout") << u"GetLayout"_s << QVariantList{99, -1, QStringList()};
    QTest::newRow("property") << u"GetProperty"_s << QVariantList{99, u"label"_s};
    QTest::newRow("property that it has not") << u"GetProperty"_s << QVariantList{1, u"icon"_s};
    QTest::newRow("event") << u"Event"_s << QVariantList{-1, u"clicked"_s, nothing, 0u};
}

void DBusMenuTest::unknownEntryIsRefused()
{
    QFETCH(QString, method);
    QFETCH(QVariantList, arguments);
    const QDBusMessage answer = call(method, arguments);
    QCOMPARE(answer.type(), QDBusMessage::ErrorMessage);
    QCOMPARE(answer.errorName(), u"org.freedesktop.DBus.Error.InvalidArgs"_s);
    QVERIFY(m_chosen.isEmpty());
}

void DBusMenuTest::onlyTheWantedPropertiesAreGiven()
{
    const Line root = layout(0, -1, {u"label"_s});
    QVERIFY(root.properties.isEmpty());
    QCOMPARE(root.children[2].properties, (QVariantMap{{u"label"_s, u"Pause"_s}}));

    const QDBusMessage some =
        call(u"GetGroupProperties"_s,
             {QVariant::fromValue(QList<int>{3, 2, 99}), QStringList{u"label"_s}});
    QCOMPARE(some.signature(), u"a(ia{sv})"_s);
    const QMap<int, QVariantMap> group = readGroup(some.arguments()[0].value<QDBusArgument>());
    QCOMPARE(group.keys(), (QList<int>{2, 3}));
    QCOMPARE(group[3], (QVariantMap{{u"label"_s, u"Pause"_s}}));

    const QDBusMessage all =
        call(u"GetGroupProperties"_s, {QVariant::fromValue(QList<int>()), QStringList()});
    QCOMPARE(readGroup(all.arguments()[0].value<QDBusArgument>()).size(), 6);
}

void DBusMenuTest::underscoresAreDoubled()
{
    const QDBusMessage answer = call(u"GetProperty"_s, {5, u"label"_s});
    QCOMPARE(answer.arguments()[0].value<QDBusVariant>().variant(), QVariant(u"Later__on"_s));
}

void DBusMenuTest::shortcutsAreListsOfKeys_data()
{
    QTest::addColumn<QString>("shortcut");
    QTest::addColumn<QStringList>("keys");

    QTest::newRow("control") << u"Ctrl+Q"_s << QStringList{u"Control"_s, u"Q"_s};
    QTest::newRow("comma") << u"Ctrl+,"_s << QStringList{u"Control"_s, u","_s};
    QTest::newRow("plus") << u"Alt++"_s << QStringList{u"Alt"_s, u"plus"_s};
    QTest::newRow("all modifiers")
        << u"Ctrl+Alt+Shift+Meta+F5"_s
        << QStringList{u"Control"_s, u"Alt"_s, u"Shift"_s, u"Super"_s, u"F5"_s};
}

void DBusMenuTest::shortcutsAreListsOfKeys()
{
    QFETCH(QString, shortcut);
    QFETCH(QStringList, keys);
    m_menu->setEntries({{1, u"Entry"_s, QKeySequence(shortcut), {}, false}});
    const QDBusMessage answer = call(u"GetProperty"_s, {1, u"shortcut"_s});
    const QVariant value = answer.arguments()[0].value<QDBusVariant>().variant();
    QCOMPARE(value.value<QDBusArgument>().currentSignature(), u"aas"_s);
    QCOMPARE(qdbus_cast<QList<QStringList>>(value), QList<QStringList>{keys});
}

void DBusMenuTest::clickChoosesAnEntry()
{
    const QVariant nothing = QVariant::fromValue(QDBusVariant(0));
    const QDBusMessage answer = call(u"Event"_s, {5, u"clicked"_s, nothing, 4711u});
    QCOMPARE(answer.type(), QDBusMessage::ReplyMessage);
    QCOMPARE(m_chosen, QList<int>{5});
}

void DBusMenuTest::groupOfEventsTellsWhichAreUnknown()
{
    QProcess tool; // It needs no type of its own for the structure.
    tool.setProgram(u"gdbus"_s);
    tool.setArguments(
        {u"call"_s, u"--address"_s, m_busAddress, u"--dest"_s,
         QDBusConnection::sessionBus().baseService(), u"--object-path"_s, kPath, u"--method"_s,
         kInterface + u".EventGroup"_s,
         u"[(6, 'clicked', <0>, 0), (77, 'clicked', <0>, 0), (1, 'hovered', <0>, 0)]"_s});
    tool.start();
    QTRY_COMPARE(tool.state(), QProcess::NotRunning);
    QCOMPARE(tool.readAllStandardOutput().trimmed(), QByteArray("([77],)"));
    QCOMPARE(m_chosen, QList<int>{6});
}

void DBusMenuTest::otherEventsChooseNothing()
{
    const QVariant nothing = QVariant::fromValue(QDBusVariant(0));
    for (const auto &name : {u"hovered"_s, u"opened"_s, u"closed"_s, u"x-unknown"_s})
        call(u"Event"_s, {1, name, nothing, 0u});
    QVERIFY(m_chosen.isEmpty());
    QCOMPARE(m_openCount, 0);
}

void DBusMenuTest::menuCanChangeAsItOpens()
{
    m_menu->onWillOpen = [this] {
        QList<StatusMenuEntry> entries = sampleEntries();
        entries[0].title = u"Changed"_s;
        m_menu->setEntries(entries);
    };
    QCOMPARE(call(u"AboutToShow"_s, {0}).arguments(), QVariantList{true});
    QCOMPARE(layout().children[0].properties[u"label"_s], QVariant(u"Changed"_s));
    // The second time nothing is new.
    QCOMPARE(call(u"AboutToShow"_s, {0}).arguments(), QVariantList{false});
}

void DBusMenuTest::menuThatStaysTheSameNeedsNoUpdate()
{
    QCOMPARE(call(u"AboutToShow"_s, {0}).arguments(), QVariantList{false});
    QCOMPARE(m_openCount, 1);
    const QVariant nothing = QVariant::fromValue(QDBusVariant(0));
    call(u"Event"_s, {0, u"opened"_s, nothing, 0u});
    QCOMPARE(m_openCount, 2);
    const QDBusMessage group =
        call(u"AboutToShowGroup"_s, {QVariant::fromValue(QList<int>{0, 3, 99})});
    QCOMPARE(group.signature(), u"aiai"_s);
    QCOMPARE(qdbus_cast<QList<int>>(group.arguments()[0]), QList<int>());
    QCOMPARE(qdbus_cast<QList<int>>(group.arguments()[1]), QList<int>{99});
    QCOMPARE(m_openCount, 3);
}

void DBusMenuTest::openingOfASubmenuIsNotAnOpeningOfTheMenu()
{
    QCOMPARE(call(u"AboutToShow"_s, {3}).arguments(), QVariantList{false});
    QCOMPARE(m_openCount, 0);
}

void DBusMenuTest::otherLinesMoveTheRevision()
{
    const uint before = revision();
    QList<StatusMenuEntry> entries = sampleEntries();
    entries[2].children.removeLast();
    m_menu->setEntries(entries);
    QTRY_COMPARE(m_listener->revisions, QList<uint>{before + 1});
    QCOMPARE(revision(), before + 1);
    QVERIFY(m_listener->updates.isEmpty());
}

void DBusMenuTest::otherTextsAreToldWithoutANewLayout()
{
    const uint before = revision();
    QList<StatusMenuEntry> entries = sampleEntries();
    entries[2].children[0].title = u"Resume"_s;
    m_menu->setEntries(entries);
    QTRY_COMPARE(m_listener->updates.size(), 1);
    QCOMPARE(m_listener->updates[0],
             (QMap<int, QVariantMap>{{4, QVariantMap{{u"label"_s, u"Resume"_s}}}}));
    QVERIFY(m_listener->removals[0].isEmpty());
    QVERIFY(m_listener->revisions.isEmpty());
    QCOMPARE(revision(), before);
}

void DBusMenuTest::droppedShortcutIsTold()
{
    QList<StatusMenuEntry> entries = sampleEntries();
    entries[3].shortcut = {};
    m_menu->setEntries(entries);
    QTRY_COMPARE(m_listener->removals.size(), 1);
    QCOMPARE(m_listener->removals[0], (QMap<int, QStringList>{{6, QStringList{u"shortcut"_s}}}));
}

void DBusMenuTest::sameEntriesAreNotTold()
{
    m_menu->setEntries(sampleEntries());
    QList<StatusMenuEntry> entries = sampleEntries();
    entries.removeFirst();
    m_menu->setEntries(entries);
    QTRY_COMPARE(m_listener->revisions.size(), 1);
    QVERIFY(m_listener->updates.isEmpty());
}

void DBusMenuTest::protocolIsTheThirdVersion()
{
    QCOMPARE(m_panel->property(kPath, kInterface, u"Version"_s), QVariant(3u));
    QCOMPARE(m_panel->property(kPath, kInterface, u"Status"_s), QVariant(u"normal"_s));
}

int main(int argc, char *argv[])
{
    PrivateDesktop desktop;
    const QString address = desktop.startBus();
    qputenv("DBUS_SESSION_BUS_ADDRESS", address.toUtf8());
    QCoreApplication application(argc, argv);
    DBusMenuTest test(address);
    return address.isEmpty() ? EXIT_FAILURE : QTest::qExec(&test, argc, argv);
}

#include "DBusMenuTest.moc"
