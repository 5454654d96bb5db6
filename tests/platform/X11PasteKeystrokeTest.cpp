#include "platform/x11/X11PasteKeystroke.h"

#include "platform/linux/DesktopEntries.h"
#include "platform/x11/X11Keyboard.h"
#include "platform/x11/X11Workspace.h"
#include "platform/x11/XcbXkb.h"
#include "tests/platform/PlainWindows.h"
#include "tests/fakes/FakeScheduler.h"
#include "tests/platform/PrivateDesktop.h"

#include <QTest>

#include <thread>

#include <xcb/xcb.h>
#include <xcb/xinput.h>
#include <xcb/xtest.h>

using namespace Qt::StringLiterals;

namespace {

constexpr quint8 kShiftKey = 50;
constexpr quint8 kControlKey = 37;
constexpr quint8 kAltKey = 64;

/// In milliseconds, for other programs on a machine that is busy elsewhere.
constexpr int kPatience = 30'000;

} // namespace

/// Pastes into real programs. The person's keyboard is the server's own, apart from XTEST's, which
/// is the one that xdotool presses.
class X11PasteKeystrokeTest : public QObject
{
    Q_OBJECT

public:
    explicit X11PasteKeystrokeTest(PrivateDesktop &desktop)
        : m_desktop(desktop)
    {
    }

private slots:
    void init();
    void cleanup();
    void editorGetsTheText_data();
    void editorGetsTheText();
    void editorGetsTheTextWhileModifiersAreHeld_data();
    void editorGetsTheTextWhileModifiersAreHeld();
    void latchedModifierDoesNotMatter();
    void terminalGetsPrimary_data();
    void terminalGetsPrimary();
    void terminalGetsNothingThatIsNotOurs();
    void terminalGetsItsOwnChord();
    void heldModifiersArePutBack_data();
    void heldModifiersArePutBack();
    void modifiersLetGoMeanwhileStayUp();
    void laterReleaseByThePersonIsTheEnd();
    void secondPasteWorksAfterModifiersWerePutBack();
    void capsLockStaysAsItWas();
    void layoutStaysAsItWas();
    void focusIsSeenInTheTargetOnly_data();
    void focusIsSeenInTheTargetOnly();
    void dialogueOfTheTargetCounts();
    void laterWindowOfTheSameNumberGetsNoKeys_data();
    void laterWindowOfTheSameNumberGetsNoKeys();
    void windowThatTakesTheFocusMeanwhileGetsNoKeys();
    void nothingIsReleasedThatWasNotPressed();
    void keysArePermitted();

private:
    using KeyDown = PasteKeystroke::KeyDown;

    quint32 openEditor();
    void paste(quint32 window);
    void prepareFor(quint32 window);
    void pressWhenFocused();
    KeyDown type();
    QByteArray textOf(quint32 editor);
    void holdByPerson(quint8 key);
    void letGoByPerson(quint8 key);
    void fakeKeyOfPerson(int type, quint8 key);
    quint8 personsKeyboard();
    quint8 heldModifiers() { return m_keyboard->state().heldModifiers; }

    PrivateDesktop &m_desktop;
    std::unique_ptr<X11Connection> m_connection;
    std::unique_ptr<X11Keyboard> m_keyboard;
    std::unique_ptr<DesktopEntries> m_entries;
    std::unique_ptr<X11KnownWindows> m_knownWindows;
    FakeScheduler m_scheduler;
    std::unique_ptr<X11Workspace> m_workspace;
    std::unique_ptr<X11PasteKeystroke> m_keystroke;
    int m_primaryCount = 0;
    bool m_isPrimaryOurs = true;
};

void X11PasteKeystrokeTest::init()
{
    m_connection = std::make_unique<X11Connection>(m_desktop.displayName());
    m_keyboard = std::make_unique<X11Keyboard>(*m_connection);
    m_entries = std::make_unique<DesktopEntries>(QStringList{u"/usr/share/applications"_s}, u"C"_s);
    m_knownWindows = std::make_unique<X11KnownWindows>(*m_connection);
    m_workspace = std::make_unique<X11Workspace>(*m_connection, *m_knownWindows, *m_entries,
                                                 m_scheduler);
    m_primaryCount = 0;
    m_isPrimaryOurs = true;
    m_keystroke = std::make_unique<X11PasteKeystroke>(*m_connection, *m_keyboard, *m_knownWindows,
                                                      *m_entries, [this] {
                                                          ++m_primaryCount;
                                                          return m_isPrimaryOurs;
                                                      });
    QVERIFY(m_desktop.startWindowManager(u"openbox"_s));
}

void X11PasteKeystrokeTest::cleanup()
{
    for (const quint8 key : {kShiftKey, kControlKey, kAltKey}) {
        letGoByPerson(key);
        m_desktop.xdotool(u"keyup %1"_s.arg(key));
    }
    QCOMPARE(heldModifiers(), quint8(0));
    m_keystroke.reset();
    m_workspace.reset();
    m_knownWindows.reset();
    m_keyboard.reset();
    m_connection.reset();
    m_desktop.endPrograms();
    m_desktop.setLayout(u"us"_s);
}

quint32 X11PasteKeystrokeTest::openEditor()
{
    const quint32 window =
        m_desktop.openWindow(u"mousepad"_s, {u"--disable-server"_s}, u"Mousepad"_s);
    m_desktop.activate(window);
    return window;
}

/// Pastes into \a window as the program does, once it has the focus.
void X11PasteKeystrokeTest::paste(quint32 window)
{
    QTRY_VERIFY_WITH_TIMEOUT(m_workspace->frontmostApplication() &&
                                 m_workspace->frontmostApplication()->window == window,
                             kPatience);
    // What the server has said of the keyboard is taken notice of, as in a program that idles.
    m_keyboard->state();
    QCoreApplication::processEvents();
    m_keystroke->prepare(*m_workspace->frontmostApplication());
    pressWhenFocused();
    QVERIFY(m_keystroke->postKeyUp());
}

void X11PasteKeystrokeTest::prepareFor(quint32 window)
{
    const auto known = m_knownWindows->note(window);
    QVERIFY(known);
    RunningApplication target;
    target.window = window;
    target.windowSerial = known->serial;
    m_keystroke->prepare(target);
}

void X11PasteKeystrokeTest::pressWhenFocused()
{
    // QTRY_COMPARE would press once more after it has worked.
    KeyDown keyDown = KeyDown::Failed;
    PrivateDesktop::waitUntil(
        [&] {
            keyDown = m_keystroke->postKeyDown();
            return keyDown == KeyDown::Posted;
        },
        kPatience / 1000);
    QCOMPARE(keyDown, KeyDown::Posted);
}

/// Presses and releases the chord; what came of it.
X11PasteKeystrokeTest::KeyDown X11PasteKeystrokeTest::type()
{
    const KeyDown keyDown = m_keystroke->postKeyDown();
    const bool isUp = keyDown != KeyDown::Posted || m_keystroke->postKeyUp();
    m_keyboard->state(); // Once it answers, the server has seen the keys.
    return isUp ? keyDown : KeyDown::Failed;
}

/// What was pasted into an editor; the clipboard is its own afterwards.
QByteArray X11PasteKeystrokeTest::textOf(quint32 editor)
{
    // The editor fetches the text on its own time, and marks its title once it has it.
    PrivateDesktop::waitUntil(
        [&] { return m_desktop.xdotool(u"getwindowname %1"_s.arg(editor)).startsWith('*'); });
    m_desktop.setLayout(u"us"_s);
    m_desktop.own(u"clipboard"_s, "nothing was copied");
    QByteArray text;
    PrivateDesktop::waitUntil(
        [&] {
            m_desktop.xdotool(u"key ctrl+a key ctrl+c"_s);
            text = m_desktop.clipboard();
            return text != "nothing was copied";
        },
        kPatience / 1000);
    return text;
}

quint8 X11PasteKeystrokeTest::personsKeyboard()
{
    const auto reply =
        m_connection->reply(xcb_input_xi_query_device_reply,
                            xcb_input_xi_query_device(m_connection->xcb(), XCB_INPUT_DEVICE_ALL));
    auto infos = xcb_input_xi_query_device_infos_iterator(reply.get());
    for (; infos.rem > 0; xcb_input_xi_device_info_next(&infos)) {
        const QByteArrayView name(xcb_input_xi_device_info_name(infos.data),
                                  xcb_input_xi_device_info_name_length(infos.data));
        if (name == "Xvfb keyboard")
            return quint8(infos.data->deviceid);
    }
    return 0;
}

void X11PasteKeystrokeTest::fakeKeyOfPerson(int type, quint8 key)
{
    const int eventType =
        type + m_connection->xinput().firstEvent + XCB_INPUT_DEVICE_KEY_PRESS - XCB_KEY_PRESS;
    const X11Reply<xcb_generic_error_t> error(xcb_request_check(
        m_connection->xcb(),
        xcb_test_fake_input_checked(m_connection->xcb(), quint8(eventType), key, XCB_CURRENT_TIME,
                                    XCB_NONE, 0, 0, personsKeyboard())));
    QVERIFY(!error);
}

void X11PasteKeystrokeTest::holdByPerson(quint8 key)
{
    fakeKeyOfPerson(XCB_KEY_PRESS, key);
    QTRY_VERIFY_WITH_TIMEOUT((heldModifiers() & m_keyboard->modifiersOfKey(key)) != 0, kPatience);
}

void X11PasteKeystrokeTest::letGoByPerson(quint8 key)
{
    fakeKeyOfPerson(XCB_KEY_RELEASE, key);
}

void X11PasteKeystrokeTest::editorGetsTheText_data()
{
    QTest::addColumn<QString>("layouts");
    QTest::addColumn<int>("group");

    QTest::newRow("Latin layout") << u"us"_s << 0;
    QTest::newRow("the letter elsewhere") << u"us(dvorak)"_s << 0;
    QTest::newRow("second layout without Latin letters") << u"us,ru"_s << 1;
    QTest::newRow("second layout with Latin letters") << u"ru,us"_s << 1;
    QTest::newRow("no Latin letters at all") << u"ru"_s << 0;
    QTest::newRow("Chinese layout") << u"cn"_s << 0;
}

void X11PasteKeystrokeTest::editorGetsTheText()
{
    QFETCH(QString, layouts);
    QFETCH(int, group);
    m_desktop.own(u"clipboard"_s, "from the history");
    const quint32 window = openEditor();
    m_desktop.setLayout(layouts, group);
    QCOMPARE(int(m_keyboard->state().lockedGroup), group);

    paste(window);
    QCOMPARE(textOf(window), "from the history");
    QCOMPARE(m_primaryCount, 0);
}

void X11PasteKeystrokeTest::editorGetsTheTextWhileModifiersAreHeld_data()
{
    QTest::addColumn<QList<quint8>>("keys");
    QTest::addColumn<bool>("isByPerson");

    for (const bool isByPerson : {true, false}) {
        const char *who = isByPerson ? "the person" : "another program";
        QTest::addRow("Shift by %s", who) << QList<quint8>{kShiftKey} << isByPerson;
        QTest::addRow("Alt by %s", who) << QList<quint8>{kAltKey} << isByPerson;
        QTest::addRow("Shift and Alt by %s", who)
            << QList<quint8>{kShiftKey, kAltKey} << isByPerson;
        QTest::addRow("Control by %s", who) << QList<quint8>{kControlKey} << isByPerson;
        QTest::addRow("all by %s", who)
            << QList<quint8>{kShiftKey, kControlKey, kAltKey} << isByPerson;
    }
}

void X11PasteKeystrokeTest::editorGetsTheTextWhileModifiersAreHeld()
{
    QFETCH(QList<quint8>, keys);
    QFETCH(bool, isByPerson);
    m_desktop.own(u"clipboard"_s, "from the history");
    const quint32 window = openEditor();
    quint8 modifiers = 0;
    for (const quint8 key : keys) {
        modifiers |= m_keyboard->modifiersOfKey(key);
        if (isByPerson)
            holdByPerson(key);
        else
            m_desktop.xdotool(u"keydown %1"_s.arg(key));
    }
    QCOMPARE(heldModifiers(), modifiers);

    paste(window);
    QCOMPARE(heldModifiers(), modifiers);
    for (const quint8 key : keys) {
        letGoByPerson(key);
        m_desktop.xdotool(u"keyup %1"_s.arg(key));
    }
    QCOMPARE(heldModifiers(), quint8(0));
    QCOMPARE(textOf(window), "from the history");
}

void X11PasteKeystrokeTest::latchedModifierDoesNotMatter()
{
    m_desktop.own(u"clipboard"_s, "from the history");
    const quint32 window = openEditor();
    // Sticky keys: Alt for the next key, and Shift until it is pressed again.
    m_desktop.run(u"/usr/bin/python3"_s,
                  {u"-c"_s, u"import ctypes\nx = ctypes.CDLL('libX11.so.6')\n"
                            "x.XOpenDisplay.restype = ctypes.c_void_p\n"
                            "d = ctypes.c_void_p(x.XOpenDisplay(None))\n"
                            "x.XkbLatchModifiers(d, 0x100, 8, 8)\n"
                            "x.XkbLockModifiers(d, 0x100, 1, 1)\nx.XSync(d, 0)\n"_s});
    QCOMPARE(m_keyboard->state().latchedModifiers, quint8(8));
    QCOMPARE(m_keyboard->state().lockedModifiers, quint8(1));

    paste(window);
    QCOMPARE(m_keyboard->state().latchedModifiers, quint8(0));
    QCOMPARE(m_keyboard->state().lockedModifiers, quint8(1));
    m_desktop.run(u"/usr/bin/python3"_s,
                  {u"-c"_s, u"import ctypes\nx = ctypes.CDLL('libX11.so.6')\n"
                            "x.XOpenDisplay.restype = ctypes.c_void_p\n"
                            "d = ctypes.c_void_p(x.XOpenDisplay(None))\n"
                            "x.XkbLockModifiers(d, 0x100, 1, 0)\nx.XSync(d, 0)\n"_s});
    QCOMPARE(textOf(window), "from the history");
}

void X11PasteKeystrokeTest::terminalGetsPrimary_data()
{
    QTest::addColumn<QString>("layouts");
    QTest::addColumn<int>("group");

    QTest::newRow("Latin layout") << u"us"_s << 0;
    QTest::newRow("second layout without Latin letters") << u"us,ru"_s << 1;
    QTest::newRow("no Latin letters at all") << u"ru"_s << 0;
}

void X11PasteKeystrokeTest::terminalGetsPrimary()
{
    QFETCH(QString, layouts);
    QFETCH(int, group);
    const QString path = m_desktop.folder() + u"/typed"_s;
    QFile::remove(path);
    m_desktop.own(u"clipboard"_s, "from the clipboard");
    m_desktop.own(u"primary"_s, "from the history");
    const quint32 window = m_desktop.openWindow(
        u"xterm"_s,
        {u"-fa"_s, u"Mono"_s, u"-e"_s, u"sh"_s, u"-c"_s, u"stty -icanon; head -c 16 > "_s + path},
        u"XTerm"_s);
    m_desktop.activate(window);
    m_desktop.setLayout(layouts, group);

    paste(window);
    QCOMPARE(m_primaryCount, 1);
    QByteArray typed;
    QTRY_VERIFY_WITH_TIMEOUT(
        [&] {
            QFile file(path);
            typed = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
            return !typed.isEmpty();
        }(),
        kPatience);
    QCOMPARE(typed, "from the history");
}

void X11PasteKeystrokeTest::terminalGetsNothingThatIsNotOurs()
{
    const quint32 window = m_desktop.openWindow(
        u"xterm"_s, {u"-fa"_s, u"Mono"_s, u"-e"_s, u"sleep"_s, u"1000"_s}, u"XTerm"_s);
    m_desktop.activate(window);
    m_isPrimaryOurs = false;
    prepareFor(window);
    QCOMPARE(m_keystroke->postKeyDown(), KeyDown::Failed);
    QVERIFY(!m_keystroke->postKeyUp());

    m_isPrimaryOurs = true;
    prepareFor(window);
    pressWhenFocused();
    QVERIFY(m_keystroke->postKeyUp());
}

void X11PasteKeystrokeTest::terminalGetsItsOwnChord()
{
    // A window that says it is a terminal and prints the keys that it gets.
    const QString path = m_desktop.folder() + u"/keys"_s;
    m_desktop.launch(
        u"/usr/bin/python3"_s,
        {u"-c"_s,
         u"import sys\nfrom Xlib import X, display\nd = display.Display()\n"
         "w = d.screen().root.create_window(0, 0, 200, 200, 0, X.CopyFromParent,"
         " event_mask=X.KeyPressMask)\n"
         "w.set_wm_class('konsole', 'konsole')\nw.map()\nd.flush()\n"
         "f = open(sys.argv[1], 'w')\n"
         "while True:\n"
         "    e = d.next_event()\n"
         "    if e.type == X.KeyPress: print(e.detail, e.state, file=f, flush=True)\n"_s,
         path});
    const quint32 window = m_desktop.findWindow(u"konsole"_s);
    m_desktop.activate(window);

    paste(window);
    QCOMPARE(m_primaryCount, 0);
    QByteArray keys;
    QTRY_VERIFY_WITH_TIMEOUT(
        [&] {
            QFile file(path);
            keys = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
            return keys.count('\n') >= 3;
        }(),
        kPatience);
    // Control, then Shift with Control held, then V with both.
    QCOMPARE(keys, "37 0\n50 4\n55 5\n");
}

void X11PasteKeystrokeTest::heldModifiersArePutBack_data()
{
    QTest::addColumn<quint8>("key");

    QTest::newRow("Shift") << kShiftKey;
    QTest::newRow("Alt") << kAltKey;
    QTest::newRow("Control, which is a key of the chord") << kControlKey;
}

void X11PasteKeystrokeTest::heldModifiersArePutBack()
{
    QFETCH(quint8, key);
    const quint32 window = openEditor();
    holdByPerson(key);
    const quint8 modifiers = heldModifiers();

    prepareFor(window);
    pressWhenFocused();
    const quint8 control = m_keyboard->modifiersOfKey(kControlKey);
    QCOMPARE(heldModifiers(), control);
    QVERIFY(m_keystroke->postKeyUp());
    QCOMPARE(heldModifiers(), modifiers);
}

void X11PasteKeystrokeTest::modifiersLetGoMeanwhileStayUp()
{
    const quint32 window = openEditor();
    for (const quint8 key : {kShiftKey, kAltKey, kControlKey})
        holdByPerson(key);
    const quint8 shift = m_keyboard->modifiersOfKey(kShiftKey);

    prepareFor(window);
    pressWhenFocused();
    letGoByPerson(kAltKey);
    letGoByPerson(kControlKey);
    QVERIFY(m_keystroke->postKeyUp());
    QCOMPARE(heldModifiers(), shift);
}

void X11PasteKeystrokeTest::laterReleaseByThePersonIsTheEnd()
{
    const quint32 window = openEditor();
    holdByPerson(kShiftKey);
    holdByPerson(kControlKey);
    prepareFor(window);
    pressWhenFocused();
    QVERIFY(m_keystroke->postKeyUp());

    letGoByPerson(kShiftKey);
    letGoByPerson(kControlKey);
    QCOMPARE(heldModifiers(), quint8(0));
}

void X11PasteKeystrokeTest::secondPasteWorksAfterModifiersWerePutBack()
{
    m_desktop.own(u"clipboard"_s, "first");
    const quint32 window = openEditor();
    holdByPerson(kControlKey);
    paste(window);
    letGoByPerson(kControlKey);
    QCOMPARE(textOf(window), "first");

    m_desktop.own(u"clipboard"_s, "second");
    const quint32 otherWindow = openEditor();
    m_desktop.xdotool(u"keydown 37"_s);
    paste(otherWindow);
    m_desktop.xdotool(u"keyup 37"_s);
    QCOMPARE(textOf(otherWindow), "second");
}

void X11PasteKeystrokeTest::capsLockStaysAsItWas()
{
    m_desktop.own(u"clipboard"_s, "from the history");
    const quint32 window = openEditor();
    m_desktop.xdotool(u"key Caps_Lock key Num_Lock"_s);
    const quint8 locks = m_keyboard->state().lockedModifiers;
    QVERIFY(locks != 0);

    paste(window);
    QCOMPARE(m_keyboard->state().lockedModifiers, locks);
    m_desktop.xdotool(u"key Caps_Lock key Num_Lock"_s);
    QCOMPARE(textOf(window), "from the history");
}

void X11PasteKeystrokeTest::layoutStaysAsItWas()
{
    // On this keyboard Control and Shift together change it, and both go down again at the end.
    const quint32 window = openEditor();
    m_desktop.run(u"setxkbmap"_s, {u"-option"_s, u"grp:ctrl_shift_toggle"_s});
    m_desktop.setLayout(u"us,ru"_s);
    holdByPerson(kControlKey);
    fakeKeyOfPerson(XCB_KEY_PRESS, kShiftKey);
    QTRY_COMPARE_WITH_TIMEOUT(m_keyboard->state().lockedGroup, quint8(1), kPatience);

    prepareFor(window);
    const bool isDown = m_keystroke->postKeyDown() == KeyDown::Posted;
    const bool isUp = m_keystroke->postKeyUp();
    const int group = m_keyboard->state().lockedGroup;
    letGoByPerson(kShiftKey);
    letGoByPerson(kControlKey);
    m_desktop.run(u"setxkbmap"_s, {u"-option"_s, u""_s});
    QVERIFY(isDown && isUp);
    QCOMPARE(group, 1);
}

void X11PasteKeystrokeTest::focusIsSeenInTheTargetOnly_data()
{
    QTest::addColumn<bool>("isManaged");

    QTest::newRow("window manager") << true;
    QTest::newRow("no window manager") << false;
}

void X11PasteKeystrokeTest::focusIsSeenInTheTargetOnly()
{
    QFETCH(bool, isManaged);
    if (!isManaged)
        m_desktop.endPrograms();
    const quint32 terminal = m_desktop.openWindow(
        u"xterm"_s, {u"-fa"_s, u"Mono"_s, u"-e"_s, u"sleep"_s, u"1000"_s}, u"XTerm"_s);
    // GTK puts the focus into a small window within the editor's.
    const quint32 editor =
        m_desktop.openWindow(u"mousepad"_s, {u"--disable-server"_s}, u"Mousepad"_s);
    const auto giveFocus = [&](quint32 window) {
        m_desktop.xdotool(
            (isManaged ? u"windowactivate --sync %1"_s : u"windowfocus %1"_s).arg(window));
    };

    prepareFor(editor);
    giveFocus(editor);
    QTRY_COMPARE_WITH_TIMEOUT(type(), KeyDown::Posted, kPatience);
    giveFocus(terminal);
    QTRY_COMPARE_WITH_TIMEOUT(type(), KeyDown::TargetNotFocused, kPatience);

    prepareFor(terminal);
    QCOMPARE(type(), KeyDown::Posted);
    m_desktop.xdotool(u"windowkill %1"_s.arg(terminal));
    QTRY_COMPARE_WITH_TIMEOUT(type(), KeyDown::TargetNotFocused, kPatience);
    m_keystroke->prepare({});
    QCOMPARE(type(), KeyDown::TargetNotFocused);
}

void X11PasteKeystrokeTest::dialogueOfTheTargetCounts()
{
    const quint32 editor = openEditor();
    prepareFor(editor);
    QTRY_COMPARE_WITH_TIMEOUT(type(), KeyDown::Posted, kPatience);

    m_desktop.xdotool(u"key ctrl+f"_s); // The search dialogue or bar, then the open dialogue.
    m_desktop.xdotool(u"key ctrl+o"_s);
    QTRY_VERIFY_WITH_TIMEOUT(m_workspace->frontmostApplication() &&
                                 m_workspace->frontmostApplication()->window != editor,
                             kPatience);
    QCOMPARE(type(), KeyDown::Posted);
}

void X11PasteKeystrokeTest::laterWindowOfTheSameNumberGetsNoKeys_data()
{
    QTest::addColumn<QByteArray>("laterClass");
    QTest::addColumn<bool>("isEndKnown");

    QTest::newRow("another window of the same program") << "editor"_ba << true;
    QTest::newRow("another program, before the end is told") << "mail"_ba << false;
}

void X11PasteKeystrokeTest::laterWindowOfTheSameNumberGetsNoKeys()
{
    QFETCH(QByteArray, laterClass);
    QFETCH(bool, isEndKnown);
    m_desktop.endPrograms();
    PlainWindows windows(m_desktop.displayName());
    const quint32 number = windows.makeNumber();
    windows.open(number, "editor");
    windows.focus(number);
    const auto target = m_workspace->frontmostApplication();
    QVERIFY(target);
    m_keystroke->prepare(*target);
    QCOMPARE(type(), KeyDown::Posted);
    QVERIFY(windows.takePresses(number) > 0);

    windows.close(number);
    windows.open(number, laterClass);
    windows.focus(number);
    if (isEndKnown) {
        m_keyboard->state();
        QCoreApplication::processEvents();
    }
    m_keystroke->prepare(*target);
    QCOMPARE(type(), KeyDown::TargetNotFocused);
    QCOMPARE(windows.takePresses(number), 0);
}

void X11PasteKeystrokeTest::windowThatTakesTheFocusMeanwhileGetsNoKeys()
{
    m_desktop.endPrograms();
    PlainWindows windows(m_desktop.displayName());
    const quint32 target = windows.makeNumber();
    const quint32 thief = windows.makeNumber();
    windows.open(target, "editor");
    windows.open(thief, "thief");
    prepareFor(target);

    std::jthread restless([&windows, target, thief](const std::stop_token &stop) {
        while (!stop.stop_requested()) {
            windows.focus(thief);
            windows.focus(target);
        }
    });
    int postedCount = 0;
    for (int i = 0; i < 20000 && postedCount < 300; ++i)
        postedCount += type() == KeyDown::Posted ? 1 : 0;
    restless.request_stop();
    restless.join();
    QVERIFY(postedCount > 0);
    QCOMPARE(windows.takePresses(thief), 0);
}

void X11PasteKeystrokeTest::nothingIsReleasedThatWasNotPressed()
{
    QVERIFY(!m_keystroke->postKeyUp());
}

void X11PasteKeystrokeTest::keysArePermitted()
{
    QVERIFY(m_keystroke->isPermitted());

    PrivateDesktop bare;
    const QByteArray display = m_desktop.displayName();
    const bool isStarted = bare.start({u"-extension"_s, u"XTEST"_s});
    qputenv("DISPLAY", display);
    QVERIFY(isStarted);
    X11Connection connection(bare.displayName());
    X11Keyboard keyboard(connection);
    X11KnownWindows knownWindows(connection);
    X11PasteKeystroke keystroke(connection, keyboard, knownWindows, *m_entries, {});
    QVERIFY(!keystroke.isPermitted());
    keystroke.requestPermission();
    QCOMPARE(keystroke.postKeyDown(), KeyDown::Failed);
    QVERIFY(!keystroke.postKeyUp());
}

int main(int argc, char *argv[])
{
    return runOnPrivateDesktop<X11PasteKeystrokeTest>(argc, argv);
}

#include "X11PasteKeystrokeTest.moc"
