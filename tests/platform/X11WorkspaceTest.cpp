#include "platform/x11/X11Workspace.h"

#include "platform/x11/X11GlobalHotkey.h"
#include "platform/x11/X11Keyboard.h"
#include "platform/x11/X11StartupNotification.h"
#include "tests/platform/PlainWindows.h"
#include "tests/fakes/FakeScheduler.h"
#include "tests/platform/PrivateDesktop.h"

#include <QApplication>
#include <QLineEdit>
#include <QTest>
#include <QWindow>

#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr std::array kWindowManagers{"openbox", "xfwm4", "metacity"};

constexpr quint32 kLetterV = 9;
constexpr quint32 kShift = 0x200;
constexpr quint32 kControl = 0x1000;

} // namespace

/// Real programs under real window managers, and under none.
class X11WorkspaceTest : public QObject
{
    Q_OBJECT

public:
    explicit X11WorkspaceTest(PrivateDesktop &desktop)
        : m_desktop(desktop)
    {
    }

private slots:
    void init();
    void cleanup();
    void emptyDesktopHasNoFrontmostApplication();
    void frontmostApplicationIsDescribed_data();
    void frontmostApplicationIsDescribed();
    void programWithoutEntryIsCalledByItsClass();
    void staleWindowManagerIsNotBelieved();
    void windowIsActivated_data() { addWindowManagers(); }
    void windowIsActivated();
    void minimisedWindowComesBack();
    void windowOnAnotherDesktopIsReached_data();
    void windowOnAnotherDesktopIsReached();
    void deadWindowIsIgnored_data() { addWindowManagers(); }
    void deadWindowIsIgnored();
    void laterWindowOfTheSameNumberIsNotActivated();
    void activationIsAnnouncedOnce();
    void laterListenerHearsOfTheSameWindow();
    void listenerHearsNothingOfAWindowThatIsKnownToBeInFront();
    void windowThatComesInFrontAheadOfOursIsNotAnnounced();
    void ownWindowGetsTheFocus_data() { addWindowManagers(); }
    void ownWindowGetsTheFocus();
    void hiddenWindowIsWithdrawnOnceTheWindowManagerHasDoneWithIt_data() { addWindowManagers(); }
    void hiddenWindowIsWithdrawnOnceTheWindowManagerHasDoneWithIt();
    void windowThatSomebodyHasDestroyedIsNotWithdrawn();
    void windowForAPersonsActionGetsTheFocus_data();
    void windowForAPersonsActionGetsTheFocus();
    void timeOfTheTokenBecomesTheUserTime();
    void ownTokensTellWhenThePersonActed();
    void timeThatLiesAheadIsNotBelieved();
    void ownWindowIsOurs();
    void installedProgramHasAName();

private:
    static void addWindowManagers();
    void startWindowManager(const QString &program);
    quint32 openTerminal(const QString &instanceName);
    bool isFrontmost(quint32 window) const;
    RunningApplication noted(quint32 window);

    PrivateDesktop &m_desktop;
    std::unique_ptr<X11Connection> m_connection;
    std::unique_ptr<DesktopEntries> m_entries;
    std::unique_ptr<X11KnownWindows> m_knownWindows;
    FakeScheduler m_scheduler;
    std::unique_ptr<X11Workspace> m_workspace;
};

void X11WorkspaceTest::init()
{
    m_connection = std::make_unique<X11Connection>(m_desktop.displayName());
    m_entries = std::make_unique<DesktopEntries>(QStringList{u"/usr/share/applications"_s}, u"C"_s);
    m_knownWindows = std::make_unique<X11KnownWindows>(*m_connection);
    m_workspace = std::make_unique<X11Workspace>(*m_connection, *m_knownWindows, *m_entries,
                                                 m_scheduler);
}

void X11WorkspaceTest::cleanup()
{
    m_workspace.reset();
    m_knownWindows.reset();
    m_connection.reset();
    m_desktop.endPrograms();
}

void X11WorkspaceTest::addWindowManagers()
{
    QTest::addColumn<QString>("windowManager");
    for (const char *name : kWindowManagers)
        QTest::newRow(name) << QString::fromLatin1(name);
    QTest::newRow("no window manager") << QString();
}

void X11WorkspaceTest::startWindowManager(const QString &program)
{
    // GTK programs tell their id, and xfwm4 runs, only where there is a bus.
    QVERIFY(!m_desktop.startBus().isEmpty());
    if (!program.isEmpty())
        QVERIFY(m_desktop.startWindowManager(program));
}

/// An xterm with \a instanceName as the first part of its class.
quint32 X11WorkspaceTest::openTerminal(const QString &instanceName)
{
    m_desktop.launch(u"xterm"_s, {u"-fa"_s, u"Mono"_s, u"-name"_s, instanceName, u"-e"_s,
                                  u"sleep"_s, u"1000"_s});
    quint32 window = 0;
    m_desktop.waitUntil([&] {
        window = m_desktop.xdotool(u"search --onlyvisible --classname ^%1$"_s.arg(instanceName))
                     .trimmed()
                     .split('\n')
                     .last()
                     .toUInt();
        return window != 0;
    });
    return window;
}

bool X11WorkspaceTest::isFrontmost(quint32 window) const
{
    const auto application = m_workspace->frontmostApplication();
    return application && application->window == window;
}

/// The program of \a window, as far as activating it goes.
RunningApplication X11WorkspaceTest::noted(quint32 window)
{
    RunningApplication application;
    application.window = window;
    if (const auto known = m_knownWindows->note(window))
        application.windowSerial = known->serial;
    return application;
}

void X11WorkspaceTest::emptyDesktopHasNoFrontmostApplication()
{
    QVERIFY(!m_workspace->frontmostApplication());
    startWindowManager(u"openbox"_s);
    QVERIFY(!m_workspace->frontmostApplication());
}

void X11WorkspaceTest::frontmostApplicationIsDescribed_data()
{
    QTest::addColumn<QString>("windowManager");
    QTest::addColumn<QStringList>("command");
    QTest::addColumn<QString>("windowClass");
    QTest::addColumn<QString>("identifier");
    QTest::addColumn<QString>("name");

    const QStringList terminal{u"xterm"_s, u"-fa"_s, u"Mono"_s};
    const QStringList editor{u"mousepad"_s, u"--disable-server"_s};
    for (const char *manager : {"openbox", "xfwm4", "metacity", ""}) {
        const QString program = QString::fromLatin1(manager);
        QTest::addRow("xterm under %s", *manager ? manager : "nothing")
            << program << terminal << u"XTerm"_s << u"debian-xterm"_s << u"XTerm"_s;
        QTest::addRow("mousepad under %s", *manager ? manager : "nothing")
            << program << editor << u"Mousepad"_s << u"org.xfce.mousepad"_s << u"Mousepad"_s;
    }
}

void X11WorkspaceTest::frontmostApplicationIsDescribed()
{
    QFETCH(QString, windowManager);
    QFETCH(QStringList, command);
    QFETCH(QString, windowClass);
    QFETCH(QString, identifier);
    QFETCH(QString, name);
    startWindowManager(windowManager);

    const quint32 window = m_desktop.openWindow(command.first(), command.mid(1), windowClass);
    QVERIFY(window != 0);
    if (windowManager.isEmpty())
        m_desktop.xdotool(u"windowfocus %1"_s.arg(window));

    QTRY_VERIFY(isFrontmost(window));
    const auto application = m_workspace->frontmostApplication();
    QCOMPARE(application->bundleIdentifier, identifier);
    QCOMPARE(application->localizedName, name);
    QCOMPARE(application->processId,
             m_desktop.xdotool(u"getwindowpid %1"_s.arg(window)).trimmed().toLongLong());
    QVERIFY(!m_workspace->isOwnApplication(*application));
}

void X11WorkspaceTest::programWithoutEntryIsCalledByItsClass()
{
    m_entries = std::make_unique<DesktopEntries>(QStringList{}, u"C"_s);
    m_workspace = std::make_unique<X11Workspace>(*m_connection, *m_knownWindows, *m_entries,
                                                 m_scheduler);
    startWindowManager(u"openbox"_s);
    const quint32 window = openTerminal(u"xterm"_s);

    QTRY_VERIFY(isFrontmost(window));
    QCOMPARE(m_workspace->frontmostApplication()->bundleIdentifier, u"XTerm"_s);
    QCOMPARE(m_workspace->frontmostApplication()->localizedName, u"XTerm"_s);
}

void X11WorkspaceTest::staleWindowManagerIsNotBelieved()
{
    const quint32 first = openTerminal(u"first"_s);
    const quint32 second = openTerminal(u"second"_s);
    QProcess *manager = m_desktop.startWindowManager(u"openbox"_s);
    QVERIFY(manager);
    m_desktop.xdotool(u"windowactivate --sync %1"_s.arg(first));
    QTRY_VERIFY(isFrontmost(first));

    // A window manager that dies leaves what it wrote on the root window.
    manager->kill();
    manager->waitForFinished();
    m_desktop.run(u"xprop"_s, {u"-root"_s, u"-f"_s, u"_NET_ACTIVE_WINDOW"_s, u"32x"_s, u"-set"_s,
                               u"_NET_ACTIVE_WINDOW"_s, QString::number(first)});
    m_desktop.xdotool(u"windowfocus %1"_s.arg(second));
    QTRY_VERIFY(isFrontmost(second));
}

void X11WorkspaceTest::windowIsActivated()
{
    QFETCH(QString, windowManager);
    startWindowManager(windowManager);
    const quint32 first = openTerminal(u"first"_s);
    const quint32 second = openTerminal(u"second"_s);
    if (windowManager.isEmpty())
        m_desktop.xdotool(u"windowfocus %1"_s.arg(second));
    QTRY_VERIFY(isFrontmost(second));

    m_workspace->activate(noted(first));
    QTRY_VERIFY(isFrontmost(first));
    QCOMPARE(m_desktop.xdotool(u"getwindowfocus"_s).trimmed().toUInt(), first);

    m_workspace->activate(noted(second));
    QTRY_VERIFY(isFrontmost(second));
}

void X11WorkspaceTest::minimisedWindowComesBack()
{
    startWindowManager(u"openbox"_s);
    const quint32 first = openTerminal(u"first"_s);
    const quint32 second = openTerminal(u"second"_s);
    m_desktop.xdotool(u"windowminimize --sync %1"_s.arg(first));
    QTRY_VERIFY(isFrontmost(second));

    m_workspace->activate(noted(first));
    QTRY_VERIFY(isFrontmost(first));
}

void X11WorkspaceTest::windowOnAnotherDesktopIsReached_data()
{
    QTest::addColumn<QString>("windowManager");
    for (const char *name : kWindowManagers)
        QTest::newRow(name) << QString::fromLatin1(name);
}

void X11WorkspaceTest::windowOnAnotherDesktopIsReached()
{
    QFETCH(QString, windowManager);
    startWindowManager(windowManager);
    m_desktop.xdotool(u"set_num_desktops 2"_s);
    const quint32 first = openTerminal(u"first"_s);
    const quint32 second = openTerminal(u"second"_s);
    m_desktop.xdotool(u"set_desktop_for_window %1 1"_s.arg(first));
    QTRY_COMPARE(m_desktop.xdotool(u"get_desktop_for_window %1"_s.arg(first)).trimmed(), "1");
    QTRY_VERIFY(isFrontmost(second));

    m_workspace->activate(noted(first));
    QTRY_VERIFY(isFrontmost(first));
}

void X11WorkspaceTest::deadWindowIsIgnored()
{
    QFETCH(QString, windowManager);
    startWindowManager(windowManager);
    const quint32 alive = openTerminal(u"alive"_s);
    const quint32 dead = openTerminal(u"dead"_s);
    if (windowManager.isEmpty())
        m_desktop.xdotool(u"windowfocus %1"_s.arg(dead));
    QTRY_VERIFY(isFrontmost(dead));
    const RunningApplication application = *m_workspace->frontmostApplication();
    m_desktop.xdotool(u"windowkill %1"_s.arg(dead));
    QTRY_VERIFY(!isFrontmost(dead));

    m_workspace->activate(application);
    m_workspace->activate(noted(alive));
    QTRY_VERIFY(isFrontmost(alive));
}

void X11WorkspaceTest::laterWindowOfTheSameNumberIsNotActivated()
{
    PlainWindows windows(m_desktop.displayName());
    const quint32 number = windows.makeNumber();
    const quint32 other = windows.makeNumber();
    windows.open(other, "other");
    windows.open(number, "editor");
    windows.focus(number);
    const auto application = m_workspace->frontmostApplication();
    QVERIFY(application);
    windows.focus(other);
    m_workspace->activate(*application);
    QTRY_VERIFY(isFrontmost(number));

    windows.close(number);
    windows.open(number, "editor");
    windows.focus(other);
    QVERIFY(isFrontmost(other));
    QCoreApplication::processEvents();
    m_workspace->activate(*application);
    QVERIFY(isFrontmost(other));

    windows.focus(number);
    m_workspace->activate(*m_workspace->frontmostApplication());
    QVERIFY(isFrontmost(number));
}

void X11WorkspaceTest::activationIsAnnouncedOnce()
{
    QList<quint64> announced;
    m_workspace->onApplicationActivated = [&announced](const RunningApplication &application) {
        announced.append(application.window);
    };
    startWindowManager(u"openbox"_s);
    const quint32 first = openTerminal(u"first"_s);
    QTRY_COMPARE(announced, QList<quint64>{first});
    const quint32 second = openTerminal(u"second"_s);
    QTRY_COMPARE(announced, (QList<quint64>{first, second}));
    m_desktop.xdotool(u"windowactivate --sync %1"_s.arg(first));
    QTRY_COMPARE(announced, (QList<quint64>{first, second, first}));
}

void X11WorkspaceTest::laterListenerHearsOfTheSameWindow()
{
    QList<quint64> announced;
    const auto listen = [&announced](const RunningApplication &application) {
        announced.append(application.window);
    };
    startWindowManager(u"openbox"_s);
    m_workspace->onApplicationActivated = listen;
    const quint32 first = openTerminal(u"first"_s);
    QTRY_COMPARE(announced, QList<quint64>{first});

    m_workspace->onApplicationActivated = nullptr;
    const quint32 second = openTerminal(u"second"_s);
    QTRY_VERIFY(isFrontmost(second));
    QCoreApplication::processEvents();
    m_workspace->onApplicationActivated = listen;
    m_desktop.xdotool(u"windowactivate --sync %1"_s.arg(first));
    QTRY_COMPARE(announced, (QList<quint64>{first, first}));
}

void X11WorkspaceTest::listenerHearsNothingOfAWindowThatIsKnownToBeInFront()
{
    startWindowManager(u"openbox"_s);
    const quint32 first = openTerminal(u"first"_s);
    QTRY_VERIFY(isFrontmost(first));
    QList<quint64> announced;
    m_workspace->onApplicationActivated = [&announced](const RunningApplication &application) {
        announced.append(application.window);
    };
    m_desktop.run(u"xprop"_s, {u"-root"_s, u"-f"_s, u"_NET_ACTIVE_WINDOW"_s, u"32x"_s, u"-set"_s,
                               u"_NET_ACTIVE_WINDOW"_s, QString::number(first)});
    QVERIFY(isFrontmost(first));
    QCoreApplication::processEvents();
    const quint32 second = openTerminal(u"second"_s);
    QTRY_COMPARE(announced.value(announced.size() - 1), second);
    QCOMPARE(announced, QList<quint64>{second});
}

void X11WorkspaceTest::windowThatComesInFrontAheadOfOursIsNotAnnounced()
{
    startWindowManager(u"openbox"_s);
    const quint32 first = openTerminal(u"first"_s);
    const quint32 second = openTerminal(u"second"_s);
    QTRY_VERIFY(isFrontmost(second));
    QWidget own;
    const quint64 ownWindow = own.winId();
    QList<quint64> announced;
    m_workspace->onApplicationActivated = [&announced](const RunningApplication &application) {
        announced.append(application.window);
    };

    m_workspace->noteUserAction({});
    m_workspace->activateOwnWindow(own.windowHandle()); // Which cannot come yet.
    m_desktop.xdotool(u"windowactivate --sync %1"_s.arg(first));
    QTRY_VERIFY(isFrontmost(first));
    QCoreApplication::processEvents();
    QCOMPARE(announced, QList<quint64>());

    own.show();
    m_workspace->activateOwnWindow(own.windowHandle());
    QTRY_COMPARE(announced, QList<quint64>{ownWindow});
    m_desktop.xdotool(u"windowactivate --sync %1"_s.arg(first));
    QTRY_COMPARE(announced, (QList<quint64>{ownWindow, first}));
}

void X11WorkspaceTest::ownWindowGetsTheFocus()
{
    QFETCH(QString, windowManager);
    startWindowManager(windowManager);
    const quint32 terminal = openTerminal(u"terminal"_s);

    X11Keyboard keyboard(*m_connection);
    X11GlobalHotkey hotkey(*m_connection, keyboard);
    QCOMPARE(hotkey.assign(kLetterV, kControl | kShift), 0);

    // The second round is the hard one: Qt knows the time of the first, which is long over, and
    // in between the person was busy elsewhere.
    for (const QString &text : {u"first"_s, u"second"_s}) {
        if (windowManager.isEmpty())
            m_desktop.xdotool(u"windowfocus %1"_s.arg(terminal));
        else
            m_desktop.xdotool(u"windowactivate --sync %1"_s.arg(terminal));
        m_desktop.xdotool(u"key a key b"_s);
        QTRY_VERIFY(isFrontmost(terminal));

        QLineEdit field;
        field.setWindowFlags(Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::Tool);
        hotkey.onPressed = [this, &field] {
            field.winId();
            m_workspace->prepareOwnWindow(field.windowHandle());
            field.show();
            m_workspace->activateOwnWindow(field.windowHandle());
        };
        m_desktop.xdotool(u"key ctrl+shift+v"_s);
        QTRY_VERIFY(field.isActiveWindow());
        QTRY_VERIFY(isFrontmost(quint32(field.winId())));
        QVERIFY(m_workspace->isOwnApplication(*m_workspace->frontmostApplication()));
        m_desktop.xdotool(u"type "_s + text);
        QTRY_COMPARE(field.text(), text);

        field.hide();
        m_workspace->activate(noted(terminal));
        QTRY_VERIFY(isFrontmost(terminal));
    }
}

void X11WorkspaceTest::hiddenWindowIsWithdrawnOnceTheWindowManagerHasDoneWithIt()
{
    QFETCH(QString, windowManager);
    startWindowManager(windowManager);
    openTerminal(u"terminal"_s); // It shows that windows are taken charge of.
    QLineEdit field;
    field.setWindowFlags(Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::Tool);
    field.winId();
    QVERIFY(m_workspace->isWithdrawn(field.windowHandle()));
    field.show();
    QVERIFY(QTest::qWaitForWindowExposed(&field));
    if (!windowManager.isEmpty())
        QTRY_VERIFY(!m_workspace->isWithdrawn(field.windowHandle()));
    field.hide();
    QTRY_VERIFY(m_workspace->isWithdrawn(field.windowHandle()));
}

void X11WorkspaceTest::windowThatSomebodyHasDestroyedIsNotWithdrawn()
{
    QWindow window;
    window.create();
    QVERIFY(m_workspace->isWithdrawn(&window));
    PlainWindows(m_desktop.displayName()).close(quint32(window.winId()));
    QVERIFY(!m_workspace->isWithdrawn(&window));
}

void X11WorkspaceTest::windowForAPersonsActionGetsTheFocus_data()
{
    QTest::addColumn<QString>("windowManager");
    QTest::addColumn<QString>("token");
    for (const char *manager : {"openbox", "xfwm4", "metacity"}) {
        const QString program = QString::fromLatin1(manager);
        QTest::addRow("no token under %s", manager) << program << QString();
        QTest::addRow("token of this moment under %s", manager) << program << u"panel_TIME%1"_s;
        QTest::addRow("token without a time under %s", manager) << program << u"panel_TIME0"_s;
    }
}

void X11WorkspaceTest::windowForAPersonsActionGetsTheFocus()
{
    QFETCH(QString, windowManager);
    QFETCH(QString, token);
    startWindowManager(windowManager);
    const quint32 terminal = openTerminal(u"terminal"_s);

    for (int round = 0; round < 2; ++round) {
        m_desktop.xdotool(u"windowactivate --sync %1"_s.arg(terminal));
        m_desktop.xdotool(u"key a key b"_s);
        QTRY_VERIFY(isFrontmost(terminal));

        QLineEdit field;
        field.setWindowFlags(Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::Tool);
        field.winId();
        m_workspace->noteUserAction(
            token.contains(u"%1"_s) ? token.arg(m_connection->serverTime()) : token);
        m_workspace->prepareOwnWindow(field.windowHandle());
        field.show();
        m_workspace->activateOwnWindow(field.windowHandle());
        QTRY_VERIFY(isFrontmost(quint32(field.winId())));
        m_desktop.xdotool(u"type seen"_s);
        QTRY_COMPARE(field.text(), u"seen"_s);
    }
}

void X11WorkspaceTest::timeOfTheTokenBecomesTheUserTime()
{
    const quint32 now = m_connection->serverTime();
    QVERIFY(now != 0);
    m_connection->noteUserTime(now - 60'000);
    const quint32 actedAt = now - 30'000;
    m_workspace->noteUserAction(u"panel_TIME%1"_s.arg(actedAt));
    QCOMPARE(m_connection->userTime(), actedAt);
}

void X11WorkspaceTest::ownTokensTellWhenThePersonActed()
{
    m_connection->noteUserTime(4711);
    const QString token = m_workspace->newActivationToken();
    QCOMPARE(startupTimeOf(token), m_connection->userTime());
    QVERIFY(startupTimeOf(token) != 0);
    QVERIFY(m_workspace->newActivationToken() != token);
}

void X11WorkspaceTest::timeThatLiesAheadIsNotBelieved()
{
    const quint32 now = m_connection->serverTime();
    QVERIFY(now != 0);
    m_workspace->noteUserAction(u"panel_TIME%1"_s.arg(now + 1'000'000));
    QVERIFY(m_connection->userTime() - now < 100'000);
    const quint32 noted = m_connection->userTime();
    m_workspace->noteUserAction(u"panel_TIME%1"_s.arg(now - 1));
    QCOMPARE(m_connection->userTime(), noted);
}

void X11WorkspaceTest::ownWindowIsOurs()
{
    RunningApplication application;
    application.bundleIdentifier = u"other"_s;
    QVERIFY(!m_workspace->isOwnApplication(application));
    application.processId = QCoreApplication::applicationPid();
    QVERIFY(m_workspace->isOwnApplication(application));
    application.processId = 0;
    application.bundleIdentifier = QGuiApplication::desktopFileName();
    QVERIFY(m_workspace->isOwnApplication(application));
}

void X11WorkspaceTest::installedProgramHasAName()
{
    QCOMPARE(m_workspace->applicationName(u"org.xfce.mousepad"_s), u"Mousepad"_s);
    QVERIFY(!m_workspace->applicationName(u"org.nowhere.Nothing"_s));
}

int main(int argc, char *argv[])
{
    PrivateDesktop desktop;
    if (!desktop.start())
        return EXIT_FAILURE;
    qputenv("QT_QPA_PLATFORM", "xcb");
    QApplication::setDesktopFileName(u"own"_s);
    QApplication application(argc, argv);
    X11WorkspaceTest test(desktop);
    return QTest::qExec(&test, argc, argv);
}

#include "X11WorkspaceTest.moc"
